// InfoItemDirectoryDelta: a change set of sections, Infos and Items that a
// caller gathers and then applies to one or more directories with
// InfoItemDirectory::UpdateFromDelta. It holds additions and replacements
// only; nothing in it removes anything. It knows no directory.
//
// Copies share the holders. No locks: built on one thread, it may be applied
// on another.
//
// Return codes: 0 done; -32 null holder; -47 the id is in the set already.
#ifndef LEGACY_ORU_INFOITEMDIRECTORYDELTA_H
#define LEGACY_ORU_INFOITEMDIRECTORYDELTA_H

#include <map>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infoitemholderdefs.h>
#include <legacy/oru/sectionid.h>

namespace Legacy {
namespace Oru {

class ORU_API InfoItemDirectoryDelta {
public:
    using SectionIdMap = std::map<InfoItemSectionId, SectionId const>;
    using InfoHolderPtrMap = std::map<unsigned int, boost::intrusive_ptr<InfoHolder const>>;
    using ItemHolderPtrMap = std::map<unsigned int, boost::intrusive_ptr<ItemHolder const>>;

    // An empty change set.
    InfoItemDirectoryDelta();
    // Copies the three maps; the holders are shared.
    InfoItemDirectoryDelta(InfoItemDirectoryDelta const& other);
    InfoItemDirectoryDelta& operator=(InfoItemDirectoryDelta const& other);
    virtual ~InfoItemDirectoryDelta();

    // Adds a section under its packed id; -47 if that id is in the set. The
    // section is not checked here: an invalid one stands under 0xFFFFFFFF
    // and is refused when the set is applied.
    int AddSection(SectionId const& sectionId);
    // Adds an Info under its id; -32 null, -47 if the id is in the set (the
    // first addition wins).
    int AddInfo(boost::intrusive_ptr<InfoHolder const> const& info);
    // Adds an Item under its id; -32 null, -47 if the id is in the set.
    int AddItem(boost::intrusive_ptr<ItemHolder const> const& item);

    // The sections, ascending by packed id.
    SectionIdMap const& GetSectionIdMap_addMod() const noexcept { return sections_; }
    // The Infos, ascending by id.
    InfoHolderPtrMap const& GetInfoHolderPtrMap_addMod() const noexcept { return infos_; }
    // The Items, ascending by id.
    ItemHolderPtrMap const& GetItemHolderPtrMap_addMod() const noexcept { return items_; }

    // True if the set holds no section, Info or Item.
    bool Empty() const;

private:
    SectionIdMap sections_;
    InfoHolderPtrMap infos_;
    ItemHolderPtrMap items_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
