#include <legacy/oru/files/check.h>

#include <legacy/oru/files/explain.h>
#include <legacy/oru/files/values.h>

namespace Legacy {
namespace Oru {
namespace Files {

Problems Check(ItemBase const& item, boost::intrusive_ptr<InfoBase const> const& info,
               std::string const& pointer) {
    Problems problems;
    if (auto const explanation = Explain(item, info)) {
        problems.push_back(Problem{pointer, explanation->text, std::string()});
    }
    std::string const limit = RecordLimit(item);
    if (!limit.empty()) {
        problems.push_back(Problem{pointer, limit, std::string()});
    }
    return problems;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
