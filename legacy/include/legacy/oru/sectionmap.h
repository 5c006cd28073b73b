// The tree of sections: hands out the numbers that section and info ids are
// packed from, translates between paths and ids both ways, and records which
// info names and ids live in which section. It knows infos by name and id
// only; the info objects are kept elsewhere.
//
// No locks: const operations may run together, a writer needs the map alone.
//
// Threads: no locks; const operations may run on several threads at once
// while nobody writes the map.
#ifndef LEGACY_ORU_SECTIONMAP_H
#define LEGACY_ORU_SECTIONMAP_H

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/sectionid.h>
#include <vintor/noncopyable.h>

namespace Legacy {
namespace Oru {

class SectionMap;

// One node of the section tree: a section, its subsections by name and by
// number, and its infos by name and by id. The root stands for no section.
class ORU_API SectionMapElement {
public:
    // A node for `sectionId`, with no subsections or infos.
    explicit SectionMapElement(SectionId const& sectionId);
    // Copies the node and each subtree, once for the by-name map and once
    // more for the by-number map, so the two maps of a copy hold different
    // objects.
    SectionMapElement(SectionMapElement const& other);
    SectionMapElement& operator=(SectionMapElement const& other) = delete;
    virtual ~SectionMapElement();

    // The section of this node; the cleared section in the root.
    SectionId const& GetSectionId() const;

protected:
    // The root.
    SectionMapElement();

    // Walks or creates each level of `name`, allocating numbers; `out` is the
    // last level. -47 with `out` set if the whole path exists.
    int AddSection_(std::string const& name, SectionId& out);
    // Walks or creates each level of `sectionId` with the numbers it gives;
    // 0 if it exists.
    int AddSection_(SectionId const& sectionId);
    // The section at path `name`.
    int FindSection_(std::string const& name, SectionId& out) const;
    // The section that `id` is, or that info id `id` lies in.
    int FindSection_(InfoItemSectionId const& id, SectionId& out) const;
    // Appends the sections of the children, by ascending number.
    void GetTopLevelSections_(std::vector<SectionId>& out) const;
    // Appends the direct subsections of section `id`, by ascending number.
    int GetSubsections_(InfoItemSectionId const& id, std::vector<SectionId>& out) const;
    // Registers info `name` under the caller's `id`, in the section `id` lies in.
    int AddInfo_(InfoItemSectionId const& id, std::string const& name);
    // Registers info `infoName` in section `sectionName` under a new id.
    int AddInfo_(std::string const& sectionName, std::string const& infoName,
                 InfoItemSectionId& id);
    // The id of info `infoName` in section `sectionName`.
    int FindInfo_(std::string const& sectionName, std::string const& infoName,
                  InfoItemSectionId& id) const;
    // The section path and name of info `id`.
    int FindInfo_(InfoItemSectionId const& id, std::string& sectionName,
                  std::string& infoName) const;
    // Appends the info ids of section `id` and its subtree, or info `id` alone.
    int GetInfos_(InfoItemSectionId const& id, std::vector<unsigned int>& out) const;
    // Appends the sections without subsections, walking children by name.
    void GetLeafSections_(std::list<SectionId>& out) const;

private:
    friend class SectionMap;

    // Makes or finds the direct child for `sectionId`, one level deeper.
    int AddNewSectionMapElement_(SectionId const& sectionId,
                                 std::shared_ptr<SectionMapElement>& out);
    // Enters info `name` with `id` in this node; `out` gets the id it holds.
    int AddNewInfo_(InfoItemSectionId const& id, std::string const& name, InfoItemSectionId& out);
    // The child named by the first component of `name`; `rest` is what follows.
    int FindNextSectionMapElement_(std::string name, std::string& rest,
                                   std::shared_ptr<SectionMapElement>& next) const;
    // The child whose number is `id`'s subsection number one level below this.
    int FindNextSectionMapElement_(InfoItemSectionId const& id,
                                   std::shared_ptr<SectionMapElement>& next) const;
    // Splits off the first component of `name`, skipping one leading "/".
    static void ParseSectionName_(std::string const& name, std::string& head, std::string& rest);

    std::size_t Depth_() const;

    SectionId sectionId_;
    std::map<std::string, std::shared_ptr<SectionMapElement>> subsectionsByName_;
    std::map<unsigned char, std::shared_ptr<SectionMapElement>> subsectionsByNumber_;
    std::map<std::string, InfoItemSectionId> infosByName_;
    std::map<InfoItemSectionId, std::string> infosById_;
    bool isRoot_;
};

// The section tree as callers see it. Every operation forwards to the root.
// Not copyable; a directory shares it instead.
//
// Return codes: 0 done; -22 numbers used up; -25 no such section or info;
// -32 a null element in the tree; -41 malformed argument, or an id that cannot
// lie there; -47 a name or number is taken.
class ORU_API SectionMap : private Vintor::NonCopyable {
public:
    // An empty tree.
    SectionMap();

    // Creates every missing level of path `name`, with numbers allocated from
    // 0 upwards; `out` is the last level. -47, with `out` set, if the whole
    // path exists already; -22 if a level has no number left.
    int AddSection(std::string const& name, SectionId& out);
    // Creates every missing level of `sectionId` with the numbers it carries.
    // 0 if it exists; -47 if a name or number stands for another section.
    int AddSection(SectionId const& sectionId);

    // The section at path `name`.
    int FindSection(std::string const& name, SectionId& out) const;
    // The section `id` names, or for an info id the section it lies in.
    int FindSection(InfoItemSectionId const& id, SectionId& out) const;

    // Appends the depth-1 sections, by ascending number.
    void GetTopLevelSections(std::vector<SectionId>& out) const;
    // Appends the direct subsections of section `id`, by ascending number.
    int GetSubsections(InfoItemSectionId const& id, std::vector<SectionId>& out) const;
    // Appends every section without subsections, walking children by name.
    void GetLeafSections(std::list<SectionId>& out) const;

    // Registers info `name` under `id`, chosen by the caller, in the section
    // that `id` lies in. -25 if that section does not exist.
    int AddInfo(InfoItemSectionId const& id, std::string const& name);
    // Registers info `infoName` in section `sectionName` under a newly
    // allocated id. -47, with `id` set to the existing id, if the name is taken.
    int AddInfo(std::string const& sectionName, std::string const& infoName, InfoItemSectionId& id);

    // The id of info `infoName` in section `sectionName`.
    int FindInfo(std::string const& sectionName, std::string const& infoName,
                 InfoItemSectionId& id) const;
    // The section path and the name of info `id`; -41 if `id` is no info id.
    int FindInfo(InfoItemSectionId const& id, std::string& sectionName,
                 std::string& infoName) const;

    // Appends the ids of the infos of section `id` (its own, ascending, then
    // its subsections' in name order), or of info `id` alone. An info id and
    // a wildcard both answer -25, as callers expect of this lookup.
    int GetInfos(InfoItemSectionId const& id, std::vector<unsigned int>& out) const;

    // Drops every section and info; numbering starts over.
    void Clear();

private:
    std::shared_ptr<SectionMapElement> root_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
