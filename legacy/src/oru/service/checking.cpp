#include "checking.h"

namespace Legacy {
namespace Oru {
namespace Service {

namespace {

// The files layer's one check, run over the device itself with nothing applied.
class DirectoryChecker : public Checker {
public:
    explicit DirectoryChecker(InfoItemDirectory& directory) : directory_(directory) {}
    Files::ValuesReport Check(std::string const& values) override {
        return Files::ReadValues(values, directory_, Files::Apply::Nothing);
    }

private:
    InfoItemDirectory& directory_;
};

}  // namespace

std::unique_ptr<Checker> Checker::Make(InfoItemDirectory& directory) {
    return std::make_unique<DirectoryChecker>(directory);
}

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy
