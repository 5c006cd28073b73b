#include <legacy/oru/infoitemdirectorydelta.h>

#include "codes.h"

namespace Legacy {
namespace Oru {

InfoItemDirectoryDelta::InfoItemDirectoryDelta() = default;

InfoItemDirectoryDelta::InfoItemDirectoryDelta(InfoItemDirectoryDelta const& other) = default;

InfoItemDirectoryDelta& InfoItemDirectoryDelta::operator=(InfoItemDirectoryDelta const& other) {
    if (this != &other) {
        // The map of sections holds const values, so it is rebuilt, not assigned
        // element by element; the copy is made first so that a failure changes nothing.
        InfoItemDirectoryDelta copy(other);
        sections_.swap(copy.sections_);
        infos_.swap(copy.infos_);
        items_.swap(copy.items_);
    }
    return *this;
}

InfoItemDirectoryDelta::~InfoItemDirectoryDelta() = default;

int InfoItemDirectoryDelta::AddSection(SectionId const& sectionId) {
    return sections_.emplace(sectionId.GetInfoItemSectionId(), sectionId).second ? Codes::k_ok
                                                                                 : Codes::k_present;
}

int InfoItemDirectoryDelta::AddInfo(boost::intrusive_ptr<InfoHolder const> const& info) {
    if (!info) {
        return Codes::k_nullPointer;
    }
    return infos_.emplace(info->GetInfo()->GetId(), info).second ? Codes::k_ok : Codes::k_present;
}

int InfoItemDirectoryDelta::AddItem(boost::intrusive_ptr<ItemHolder const> const& item) {
    if (!item) {
        return Codes::k_nullPointer;
    }
    return items_.emplace(item->GetItem()->GetId(), item).second ? Codes::k_ok : Codes::k_present;
}

bool InfoItemDirectoryDelta::Empty() const {
    return sections_.empty() && infos_.empty() && items_.empty();
}

}  // namespace Oru
}  // namespace Legacy
