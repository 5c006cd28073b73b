#include <legacy/oru/files/values.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <legacy/oru/files/check.h>
#include <legacy/oru/oru.h>
#include <legacy/oru/recordlayout.h>

#include "checkrules.h"
#include "families.h"
#include "valueform.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {

namespace {

using namespace ValueForm;

// The payload size the record of item needs, without the 32-bit wrap of
// GetSerialDataSize; false when a composite's count passes its 16 bits.
bool RecordSize(ItemBase const& item, std::uint64_t& size, std::string& problem) {
    auto const* const composite = As<CompositeItem>(item);
    if (!composite) {
        size = item.GetSerialDataSize();
        return true;
    }
    if (composite->GetSize() > RecordLayout::k_maxChildren) {
        problem = "a composite record holds at most 65535 children, this one has " +
                  std::to_string(composite->GetSize());
        return false;
    }
    size = RecordLayout::k_childCountSize;
    for (std::size_t i = 0; i < composite->GetSize(); ++i) {
        CompositeItem::ConstItemPtr const child = composite->GetItem(i);
        std::uint64_t childSize = 0;
        if (child && !RecordSize(*child, childSize, problem)) {
            return false;
        }
        size += RecordLayout::FlatSize(childSize);  // each child is a record of its own
    }
    return true;
}

// The section path of each setting, looked up once per section.
class PathNames {
public:
    explicit PathNames(InfoItemDirectory const& directory) : directory_(directory) {}

    std::string Path(InfoBase const& info) {
        InfoItemSectionId const id(info.GetId());
        unsigned int const section = id.GetSectionId(id.Depth());
        auto found = sections_.find(section);
        if (found == sections_.end()) {
            found = sections_.emplace(section, directory_.FindSection(id).GetSectionName()).first;
        }
        return found->second + "/" + info.GetName();
    }

private:
    InfoItemDirectory const& directory_;
    std::unordered_map<unsigned int, std::string> sections_;
};

std::vector<std::string> AllPaths(InfoItemDirectory const& directory) {
    std::vector<boost::intrusive_ptr<InfoItemHolder const>> slots;
    directory.GetAllInfoItems(slots);
    PathNames names(directory);
    std::vector<std::string> paths;
    paths.reserve(slots.size());
    for (auto const& slot : slots) {
        paths.push_back(names.Path(*slot->GetInfoHolder()->GetInfo()));
    }
    return paths;
}

}  // namespace

ValuesReport ReadValues(std::string const& json, InfoItemDirectory& directory, Apply mode) {
    ValuesReport report;
    Sink sink(report.problems);
    auto delta = std::make_shared<InfoItemDirectoryDelta>();
    // Where each setting's member stands in origins, to find a key given
    // twice and to name the value the directory refuses.
    struct Origin {
        unsigned int id;
        std::string pointer;
        std::string path;
    };
    std::vector<Origin> origins;
    std::unordered_map<unsigned int, std::size_t> seen;
    std::unordered_set<std::string> unknown;
    // Every path, gathered at the first unknown one, to suggest the nearest.
    std::vector<std::string> paths;
    std::size_t const expected = std::min<std::size_t>(json.size() / 16, std::size_t(1) << 20);
    seen.reserve(expected);
    origins.reserve(expected);

    auto const onMember = [&](std::string const& key, JsonValue& value, std::string& refusal) {
        std::string pointer;
        pointer.reserve(key.size() + 8);
        pointer += "/";
        pointer += PointerToken(key);
        sink.BeginValue();
        boost::intrusive_ptr<InfoItemHolder const> const slot = directory.FindInfoItem(key);
        if (!slot) {
            if (!unknown.insert(key).second) {
                refusal = "the key appears twice";
                return false;
            }
            if (paths.empty()) {
                paths = AllPaths(directory);
            }
            sink.Add(std::move(pointer),
                     "no setting has this path" + CheckRules::DidYouMean(key, paths), key);
            return true;
        }
        InfoPtr const info = slot->GetInfoHolder()->GetInfo();
        auto const first = seen.emplace(info->GetId(), origins.size());
        if (!first.second) {
            if (origins[first.first->second].pointer == pointer) {
                refusal = "the key appears twice";
                return false;
            }
            sink.Add(std::move(pointer), "the setting is given twice, under another path", key);
            return true;
        }
        sink.SetPath(key);
        ItemPtr const item = ReadItem(value, *info, sink, pointer);
        bool passed = false;
        if (item) {
            Problems const found = Check(*item, info, pointer);
            for (Problem const& problem : found) {
                sink.Add(problem.pointer, problem.message);
            }
            passed = found.empty();
        }
        sink.EndValue(pointer);
        sink.SetPath(std::string());
        if (passed) {
            delta->AddItem(boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item)));
        }
        origins.push_back(Origin{info->GetId(), std::move(pointer), key});
        return true;
    };

    Problems syntax;
    if (!ReadJsonMembers(json, onMember, syntax)) {
        report.problems = std::move(syntax);
        return report;
    }
    auto const& items = delta->GetItemHolderPtrMap_addMod();
    if (items.empty() || Apply::Nothing == mode ||
        (Apply::AllOrNothing == mode && !report.problems.empty())) {
        return report;
    }
    // The item step of UpdateFromDelta, one SetItem at a time in id order, so
    // that what the directory applied is counted as it happens: an observer
    // may remove settings in ItemChanged_, applied ones included.
    int code = 0;
    unsigned int refused = 0;
    for (auto const& entry : items) {
        code = directory.SetItem(entry.second);
        if (code != 0) {
            refused = entry.first;
            break;
        }
        ++report.applied;
    }
    if (code == 0) {
        return report;
    }
    std::string pointer;
    std::string path;
    for (auto const& origin : origins) {
        if (origin.id == refused) {
            pointer = origin.pointer;
            path = origin.path;
        }
    }
    report.problems.push_back(Problem{pointer,
                                      "the directory refused the value with code " +
                                          std::to_string(code) + "; " +
                                          std::to_string(report.applied) + " of " +
                                          std::to_string(items.size()) + " values were applied",
                                      path});
    return report;
}

std::string WriteValues(InfoItemDirectory const& directory) {
    Problems ignored;
    return WriteValues(directory, ignored);
}

std::string WriteValues(InfoItemDirectory const& directory, Problems& problems) {
    std::vector<boost::intrusive_ptr<InfoItemHolder const>> slots;
    directory.GetAllInfoItems(slots);
    PathNames paths(directory);
    std::string out = "{";
    std::string value;
    bool first = true;
    for (auto const& slot : slots) {
        auto const& itemHolder = slot->GetItemHolder();
        if (!itemHolder) {
            continue;
        }
        InfoBase const& info = *slot->GetInfoHolder()->GetInfo();
        ItemBase const& item = *itemHolder->GetItem();
        value.clear();
        if (!AppendValue(value, item, &info)) {
            std::string const path = paths.Path(info);
            problems.push_back(Problem("/" + PointerToken(path), NoValueForm(item), path));
            continue;
        }
        // A value its own forms would change is not written as if it were held.
        Problems const forms = CheckRules::Forms(item, info, std::string());
        if (!forms.empty()) {
            std::string const path = paths.Path(info);
            for (Problem const& problem : forms) {
                problems.push_back(
                    Problem("/" + PointerToken(path) + problem.pointer, problem.message, path));
            }
            continue;
        }
        out += first ? "\n  " : ",\n  ";
        first = false;
        AppendJsonString(out, paths.Path(info));
        out += ": ";
        out += value;
    }
    out += first ? "}\n" : "\n}\n";
    return out;
}

boost::intrusive_ptr<ItemBase> ReadValue(std::string const& json, InfoBase const& info,
                                         Problems& problems, std::string const& pointer) {
    JsonValue value;
    Problems refused;
    if (!ReadJsonValue(json, value, refused)) {
        for (Problem const& problem : refused) {
            problems.push_back(Problem(pointer + problem.pointer, problem.message));
        }
        return nullptr;
    }
    Sink sink(problems);
    ItemPtr item = ReadItem(value, info, sink, pointer);
    sink.EndValue(pointer);
    return item;
}

std::string RecordLimit(ItemBase const& item) {
    std::string problem;
    std::uint64_t size = 0;
    if (!RecordSize(item, size, problem)) {
        return problem;
    }
    if (size > 0xFFFFFFFFu) {
        return "the record would need " + std::to_string(size) +
               " payload bytes; its size field holds at most 4294967295";
    }
    return std::string();
}

std::string WriteValue(ItemBase const& item) {
    std::string out;
    if (!AppendValue(out, item, nullptr)) {
        return "null";
    }
    return out;
}

std::string WriteValue(ItemBase const& item, InfoBase const& info) {
    std::string out;
    if (!AppendValue(out, item, &info)) {
        return "null";
    }
    return out;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
