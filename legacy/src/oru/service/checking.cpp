#include "checking.h"

#include <legacy/oru/files/description.h>

namespace Legacy {
namespace Oru {
namespace Service {

namespace {

// Values are checked each against its own Info, so a second directory of
// the same description answers for the device without touching it.
class ScratchChecker : public Checker {
public:
    explicit ScratchChecker(std::string const& description) {
        Files::ReadDescription(description, scratch_);
    }
    Files::ValuesReport Check(std::string const& values) override {
        return Files::ReadValues(values, scratch_, Files::Apply::AllOrNothing);
    }

private:
    InfoItemDirectory scratch_;
};

}  // namespace

std::unique_ptr<Checker> Checker::Make(std::string const& description, InfoItemDirectory&) {
    return std::make_unique<ScratchChecker>(description);
}

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy
