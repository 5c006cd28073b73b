#include <legacy/oru/infoitemdirectorydelta.h>

namespace Legacy {
namespace Oru {

namespace {

int const kOk = 0;
int const kNullPointer = -32;
int const kPresent = -47;

}  // namespace

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
    return sections_.emplace(sectionId.GetInfoItemSectionId(), sectionId).second ? kOk : kPresent;
}

int InfoItemDirectoryDelta::AddInfo(boost::intrusive_ptr<InfoHolder const> const& info) {
    if (!info) {
        return kNullPointer;
    }
    return infos_.emplace(info->GetInfo()->GetId(), info).second ? kOk : kPresent;
}

int InfoItemDirectoryDelta::AddItem(boost::intrusive_ptr<ItemHolder const> const& item) {
    if (!item) {
        return kNullPointer;
    }
    return items_.emplace(item->GetItem()->GetId(), item).second ? kOk : kPresent;
}

bool InfoItemDirectoryDelta::Empty() const {
    return sections_.empty() && infos_.empty() && items_.empty();
}

}  // namespace Oru
}  // namespace Legacy
