// Planning a description's ids: the sections and info numbers of the
// directory with what the file adds, so that every id is known, and every
// clash found, before anything is applied.
#ifndef LEGACY_ORU_FILES_IDPLAN_H
#define LEGACY_ORU_FILES_IDPLAN_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "descriptionreader.h"

namespace Legacy {
namespace Oru {
namespace Files {
namespace DescriptionForm {

// The width of the info number field of a section at depth 1 to 4.
inline unsigned int InfoFieldMask(std::size_t depth) {
    return (1u << (30 - 6 * depth)) - 1u;
}

// The sections and info numbers of the directory, with what this file adds
// to them, so that every id is known before anything is applied.
class Plan {
public:
    explicit Plan(InfoItemDirectory const& directory) : directory_(directory) {}

    // The section of path, existing or planned; a problem when it cannot be made.
    template <class P>
    bool Section(std::string const& path, P const& pointer, Reader& reader, SectionId& out) {
        std::vector<std::string> levels;
        std::size_t start = 0;
        while (true) {
            std::size_t const slash = path.find('/', start);
            levels.push_back(path.substr(start, slash - start));
            if (slash == std::string::npos) {
                break;
            }
            start = slash + 1;
        }
        if (levels.size() > InfoItemSectionId::MaxDepth()) {
            reader.Add(PointerText(pointer),
                       "the section path " + Shown(path) + " is deeper than " +
                           std::to_string(InfoItemSectionId::MaxDepth()) + " levels");
            return false;
        }
        std::string name;
        InfoItemSectionId parent;
        for (std::size_t level = 0; level < levels.size(); ++level) {
            if (levels[level].empty()) {
                reader.Add(PointerText(pointer),
                           "the section path " + Shown(path) + " has an empty level");
                return false;
            }
            name += (level ? "/" : "") + levels[level];
            SectionId found = Find(name);
            if (!found.IsValid()) {
                std::set<unsigned> const used = Used(parent, level == 0);
                unsigned number = 0;
                if (!used.empty()) {
                    number = *used.rbegin() + 1;
                    if (number > InfoItemSectionId::MaxSubsectionPerSubsection()) {
                        number = 0;
                        while (used.count(number)) {
                            ++number;
                        }
                    }
                }
                if (number > InfoItemSectionId::MaxSubsectionPerSubsection()) {
                    // Once per section, however many settings it would hold.
                    if (full_.insert(name).second) {
                        reader.Add(PointerText(pointer),
                                   "no section number is left for " + Shown(name) +
                                       ": a level holds at most " +
                                       std::to_string(
                                           InfoItemSectionId::MaxSubsectionPerSubsection() + 1) +
                                       " sections");
                    }
                    return false;
                }
                InfoItemSectionId const id =
                    level == 0 ? InfoItemSectionId::CreateLevel1SectionId(
                                     static_cast<unsigned char>(number))
                               : parent.CreateSectionId(static_cast<unsigned char>(number));
                found = SectionId(name, id);
                if (!found.IsValid() || found.GetSectionName() != name) {
                    reader.Add(PointerText(pointer),
                               "the section path " + Shown(path) + " is not valid");
                    return false;
                }
                planned_.push_back(found);
            }
            parent = found.GetInfoItemSectionId();
            out = found;
        }
        return true;
    }

    // The section that an explicit id names for path: the existing one, which
    // must be the path's, or the numbers of the id for levels still missing.
    template <class P>
    bool SectionOf(unsigned int id, std::string const& path, P const& pointer, Reader& reader,
                   SectionId& out) {
        InfoItemSectionId const infoId(id);
        if (!infoId.IsValidInfoItemId()) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " is no info id");
            return false;
        }
        // A path and section number that passed once pass again: the levels
        // they planned stay planned and the directory does not change.
        auto const passed = passed_.find(path);
        if (passed != passed_.end() &&
            passed->second.GetInfoItemSectionId() == infoId.GetSectionId(infoId.Depth())) {
            out = passed->second;
            return true;
        }
        std::size_t const depth = infoId.Depth();
        std::size_t levels =
            1 + static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
        if (levels != depth) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " lies at depth " +
                                                 std::to_string(depth) + ", the section " +
                                                 Shown(path) + " has " + std::to_string(levels) +
                                                 " levels");
            return false;
        }
        SectionId const wanted(path, infoId.GetSectionId(depth));
        if (!wanted.IsValid() || wanted.GetSectionName() != path) {
            reader.Add(PointerText(pointer), "the section path " + Shown(path) + " is not valid");
            return false;
        }
        for (std::size_t level = 1; level <= depth; ++level) {
            std::string const name = wanted.GetSectionName(level).substr(
                wanted.GetSectionName(level).front() == '/' ? 1 : 0);
            InfoItemSectionId const number = wanted.GetInfoItemSectionId(level);
            SectionId const byName = Find(name);
            SectionId const byNumber = Find(number);
            if (byName.IsValid() && byName.GetInfoItemSectionId() != number) {
                reader.Add(PointerText(pointer),
                           "id " + Hex(id) + " does not lie in section " + Shown(name));
                return false;
            }
            if (!byName.IsValid() && byNumber.IsValid()) {
                reader.Add(PointerText(pointer), "id " + Hex(id) + " lies in section " +
                                                     Shown(byNumber.GetSectionName()) +
                                                     ", not in " + Shown(name));
                return false;
            }
            if (!byName.IsValid()) {
                planned_.push_back(SectionId(name, number));
            }
        }
        out = wanted;
        passed_[path] = wanted;
        return true;
    }

    // The next free info number of section: past the highest in use, or the
    // lowest hole once the field is full. The all-ones number of the field is
    // the section's own id, so the last info number is one below it at every
    // depth (the section map's own allocation hands it out; this file does not).
    template <class P>
    bool NextId(SectionId const& section, P const& pointer, Reader& reader, unsigned int& out) {
        InfoItemSectionId const sectionId = section.GetInfoItemSectionId();
        std::set<unsigned int> const& used = UsedNumbers(sectionId);
        std::size_t const last = InfoFieldMask(sectionId.Depth()) - 1u;
        std::size_t number = used.empty() ? 0 : static_cast<std::size_t>(*used.rbegin()) + 1;
        if (number > last) {
            number = 0;
            while (used.count(static_cast<unsigned int>(number))) {
                ++number;
            }
        }
        if (number > last) {
            if (full_.insert(section.GetSectionName()).second) {
                reader.Add(PointerText(pointer),
                           "no info number is left in section " + Shown(section.GetSectionName()) +
                               ": it holds at most " + std::to_string(last + 1) + " settings");
            }
            return false;
        }
        out = sectionId.CreateInfoItemId(number);
        return true;
    }

    // A problem when id or the name in section is taken, in the directory or
    // earlier in this file. path stays alive as long as the plan: it is kept
    // by reference, to name the setting that took an id.
    template <class P>
    bool Claim(unsigned int id, std::string const& path, P const& pointer, Reader& reader) {
        // The directory takes a section id as a setting's id; a file never may.
        if (!InfoItemSectionId(id).IsValidInfoItemId()) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " is no info id");
            return false;
        }
        if (directory_.FindInfo(id)) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " is taken by " + Shown(PathOf(id)));
            return false;
        }
        auto const earlier = ids_.find(id);
        if (earlier != ids_.end()) {
            reader.Add(PointerText(pointer),
                       "id " + Hex(id) + " is taken by " + Shown(*earlier->second));
            return false;
        }
        ids_.emplace(id, &path);
        InfoItemSectionId const infoId(id);
        unsigned int const mask = InfoFieldMask(infoId.Depth());
        UsedNumbers(InfoItemSectionId(id | mask)).insert(id & mask);
        return true;
    }

    std::vector<SectionId> const& PlannedSections() const { return planned_; }

    static std::string Hex(unsigned int id) { return HexId(id); }

private:
    SectionId Find(std::string const& name) const {
        SectionId const found = directory_.FindSection(name);
        if (found.IsValid()) {
            return found;
        }
        for (SectionId const& section : planned_) {
            if (section.GetSectionName() == name) {
                return section;
            }
        }
        return SectionId();
    }

    SectionId Find(InfoItemSectionId const& id) const {
        SectionId const found = directory_.FindSection(id);
        if (found.IsValid() && found.GetInfoItemSectionId() == id) {
            return found;
        }
        for (SectionId const& section : planned_) {
            if (section.GetInfoItemSectionId() == id) {
                return section;
            }
        }
        return SectionId();
    }

    // The subsection numbers in use below parent (the root when top).
    std::set<unsigned> Used(InfoItemSectionId const& parent, bool top) const {
        std::vector<SectionId> existing;
        if (top) {
            directory_.GetTopLevelSections(existing);
        } else {
            directory_.GetSubsections(parent, existing);
        }
        std::size_t const depth = top ? 1 : parent.Depth() + 1;
        std::set<unsigned> used;
        for (SectionId const& section : existing) {
            used.insert(section.GetSubsectionId(depth));
        }
        for (SectionId const& section : planned_) {
            if (section.GetSectionDepth() == depth &&
                (top || section.GetInfoItemSectionId(depth - 1) == parent)) {
                used.insert(section.GetSubsectionId(depth));
            }
        }
        return used;
    }

    // The info numbers in use in a section, from the directory once, then kept
    // up to date as this file claims ids.
    std::set<unsigned int>& UsedNumbers(InfoItemSectionId const& sectionId) {
        auto const known = used_.find(static_cast<unsigned int>(sectionId));
        if (known != used_.end()) {
            return known->second;
        }
        std::set<unsigned int>& used = used_[static_cast<unsigned int>(sectionId)];
        unsigned int const mask = InfoFieldMask(sectionId.Depth());
        std::vector<boost::intrusive_ptr<InfoHolder const>> infos;
        if (directory_.FindInfos(sectionId, infos) == 0) {
            for (auto const& holder : infos) {
                unsigned int const id = holder->GetInfo()->GetId();
                if ((id | mask) == static_cast<unsigned int>(sectionId)) {
                    used.insert(id & mask);
                }
            }
        }
        return used;
    }

    std::string PathOf(unsigned int id) const {
        SectionId const section = directory_.FindSection(InfoItemSectionId(id));
        auto const holder = directory_.FindInfo(id);
        std::string name = holder ? holder->GetInfo()->GetName() : std::string();
        return section.IsValid() ? section.GetSectionName() + "/" + name : name;
    }

    InfoItemDirectory const& directory_;
    std::vector<SectionId> planned_;
    std::map<unsigned int, std::string const*> ids_;
    std::map<unsigned int, std::set<unsigned int>> used_;
    // The sections already reported as full.
    std::set<std::string> full_;
    // The section of each path that SectionOf passed.
    std::unordered_map<std::string, SectionId> passed_;
};

}  // namespace DescriptionForm
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
