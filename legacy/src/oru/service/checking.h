// The dry run of a change set: every problem, nothing applied.
#ifndef ORU_SERVICE_CHECKING_H
#define ORU_SERVICE_CHECKING_H

#include <memory>
#include <string>

#include <legacy/oru/files/values.h>
#include <legacy/oru/infoitemdirectory.h>

namespace Legacy {
namespace Oru {
namespace Service {

class Checker {
public:
    // For the settings of directory.
    static std::unique_ptr<Checker> Make(InfoItemDirectory& directory);
    virtual ~Checker() = default;
    // The report ReadValues would give for values, with nothing applied.
    virtual Files::ValuesReport Check(std::string const& values) = 0;
};

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy

#endif
