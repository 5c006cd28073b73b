#include <legacy/oru/resultelem.h>

namespace Legacy {
namespace Oru {

ResultElem::ResultElem(Vintor::SeverityLevel_t const& severity,
                       boost::intrusive_ptr<ItemBase const> const& item,
                       boost::intrusive_ptr<InfoBase const> const& info)
    : severity_(severity) {
    if (item) {
        item_.reset(item->DeepCopy());
    }
    if (info) {
        info_.reset(info->DeepCopy());
    }
}

ResultElem::~ResultElem() = default;

std::string ResultElem::GetAsString() const {
    return std::string();
}

}  // namespace Oru
}  // namespace Legacy
