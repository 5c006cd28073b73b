// InfoItemDirectory: the store of one device's settings. It holds the section
// tree, every Info under its packed id, and for each Info its present Item;
// it finds them by id, by section and name, by path ("Audio/Input/Gain") and
// by section subtree, and is brought up to date in bulk from a change set.
//
// A copy of a directory is a second handle on the same state. A class derived
// from it observes every change of an Info or Item through InfoChanged_ and
// ItemChanged_, called on the caller's thread after the change is in place.
//
// No locks: one thread at a time, or one caller-side lock that covers every
// copy, since copies share their state. Holders given out may cross threads.
//
// Return codes: 0 done; -22 section numbers used up; -25 absent section or
// setting; -32 null argument; -41 malformed id or a change of identity or
// type; -47 id or name taken.
#ifndef LEGACY_ORU_INFOITEMDIRECTORY_H
#define LEGACY_ORU_INFOITEMDIRECTORY_H

#include <list>
#include <memory>
#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infoitemholderdefs.h>
#include <legacy/oru/sectionid.h>

namespace Legacy {
namespace Oru {

class InfoItemDirectoryDelta;
// Held by pointer only, so that users of the directory do not compile the
// containers' headers.
class InfoItemHolderMap;
class SectionMap;

class ORU_API InfoItemDirectory {
public:
    // An empty directory with a section tree and a slot map of its own.
    InfoItemDirectory();
    // Shares the state of `other`.
    InfoItemDirectory(InfoItemDirectory const& other);
    // Shares the state of `other` and gives up its own.
    InfoItemDirectory& operator=(InfoItemDirectory const& other);
    virtual ~InfoItemDirectory();

    // Creates every missing level of path `name`; `out` is the last. -47,
    // with `out` set, if the path exists.
    int AddSection(std::string const& name, SectionId& out);
    // Creates every missing level of `sectionId` with its numbers; 0 if it exists.
    int AddSection(SectionId const& sectionId);
    // The section at path `name`, or the cleared SectionId.
    SectionId FindSection(std::string const& name) const;
    // The section `id` names, or that info id `id` lies in; else the cleared SectionId.
    SectionId FindSection(InfoItemSectionId const& id) const;
    // The depth-1 sections by number; empties `out` first.
    void GetTopLevelSections(std::vector<SectionId>& out) const;
    // The direct subsections of section `id`; empties `out` first.
    int GetSubsections(InfoItemSectionId const& id, std::vector<SectionId>& out) const;
    // Appends the sections without subsections.
    void GetLeafSections(std::list<SectionId>& out) const;

    // Enters a new setting under its Info's id and name, in the section the
    // id addresses. -32 null; -47 id or name taken; -25 no such section;
    // -41 malformed id. On failure nothing is entered.
    int AddInfo(boost::intrusive_ptr<InfoHolder const> const& info);
    // Replaces the Info of a setting by one of the same id, name and types.
    // -32 null; -25 absent; -41 other name or type.
    int SetInfo(boost::intrusive_ptr<InfoHolder const> const& info);
    // Replaces the Item of a setting by one of the Info's id and types; the
    // value is not checked against the Info. -25 absent; -41 other type;
    // -32 null.
    int SetItem(boost::intrusive_ptr<ItemHolder const> const& item);

    // The Info of setting `id`, or null.
    boost::intrusive_ptr<InfoHolder const> FindInfo(unsigned int const& id) const;
    // The Info named `infoName` in section `sectionName`, or null.
    boost::intrusive_ptr<InfoHolder const> FindInfo(std::string const& sectionName,
                                                    std::string const& infoName) const;
    // The Item of setting `id`; null if absent or without Item. Allocates nothing.
    boost::intrusive_ptr<ItemHolder const> FindItem(unsigned int const& id) const;
    // The Item at `path`, split at its last "/" into section path and name.
    boost::intrusive_ptr<ItemHolder const> FindItem(std::string const& path) const;
    boost::intrusive_ptr<ItemHolder const> FindItem(std::string const& sectionName,
                                                    std::string const& infoName) const;
    // The slot of setting `id`, or null.
    boost::intrusive_ptr<InfoItemHolder const> FindInfoItem(unsigned int const& id) const;
    boost::intrusive_ptr<InfoItemHolder const> FindInfoItem(std::string const& path) const;
    boost::intrusive_ptr<InfoItemHolder const> FindInfoItem(std::string const& sectionName,
                                                            std::string const& infoName) const;

    // Append the Infos, Items or slots of section `id` and its subtree: its
    // own ascending by id, then its subsections' by name. Settings without
    // an Item are skipped by FindItems. -25 (out untouched) if `id` is no
    // section of the tree.
    int FindInfos(InfoItemSectionId const& id,
                  std::vector<boost::intrusive_ptr<InfoHolder const>>& out) const;
    int FindItems(InfoItemSectionId const& id,
                  std::vector<boost::intrusive_ptr<ItemHolder const>>& out) const;
    int FindInfoItems(InfoItemSectionId const& id,
                      std::vector<boost::intrusive_ptr<InfoItemHolder const>>& out) const;
    // Every slot ascending by id; empties `out` first.
    void GetAllInfoItems(std::vector<boost::intrusive_ptr<InfoItemHolder const>>& out) const;

    // Applies a change set: its sections, then its Infos if `updateInfos`,
    // then its Items if `updateItems`, each ascending by id. Stops at the
    // first failure and answers it; what was applied stays. -32 null delta.
    int UpdateFromDelta(std::shared_ptr<InfoItemDirectoryDelta> const& delta, bool updateInfos,
                        bool updateItems);

    // True if no setting is entered; sections do not count.
    bool Empty() const;
    // Drops every section and setting, for every copy; calls no change operation.
    void Clear();

protected:
    // After AddInfo (`oldInfo` null) or SetInfo; `holder` shows the new state.
    virtual void InfoChanged_(boost::intrusive_ptr<InfoHolder const> const& oldInfo,
                              boost::intrusive_ptr<InfoItemHolder const> const& holder);
    // After SetItem; `oldItem` is null for the first Item of a setting.
    virtual void ItemChanged_(boost::intrusive_ptr<ItemHolder const> const& oldItem,
                              boost::intrusive_ptr<InfoItemHolder const> const& holder);

private:
    // Splits `path` at its last "/"; false, nothing set, if there is none.
    bool ParseInfoPath_(std::string const& path, std::string& sectionName,
                        std::string& infoName) const;
    // The slot of `infoName` in `sectionName`, or null.
    boost::intrusive_ptr<InfoItemHolder> FindSlot_(std::string const& sectionName,
                                                   std::string const& infoName) const;
    // The slot of `id`, or null.
    boost::intrusive_ptr<InfoItemHolder> const* FindSlot_(unsigned int id) const;
    // Appends what `pick` takes of each slot of section `id`'s subtree.
    template <class Holder, class Pick>
    int CollectIn_(InfoItemSectionId const& id, std::vector<Holder>& out, Pick pick) const;

    std::shared_ptr<SectionMap> sectionMap_;
    std::shared_ptr<InfoItemHolderMap> holderMap_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
