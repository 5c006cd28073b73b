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

// The ids read so far, each with where it stands among the values read: an
// open-addressing table, so that a value read costs no allocation of its own.
class SeenIds {
public:
    static constexpr std::size_t k_new = static_cast<std::size_t>(-1);

    void Reserve(std::size_t count) { Grow(count); }

    // Where id was read first, or k_new when it was not, and is now at index.
    std::size_t Insert(unsigned int id, std::size_t index) {
        if ((count_ + 1) * 2 > slots_.size()) {
            Grow(count_ + 1);
        }
        std::size_t at = Slot(id);
        while (slots_[at].used) {
            if (slots_[at].id == id) {
                return slots_[at].index;
            }
            at = (at + 1) & (slots_.size() - 1);
        }
        slots_[at] = Entry{id, true, index};
        ++count_;
        return k_new;
    }

private:
    struct Entry {
        unsigned int id;
        bool used;
        std::size_t index;
    };

    std::size_t Slot(unsigned int id) const {
        // Fibonacci hashing spreads ids that differ in their low bits only.
        return static_cast<std::size_t>((id * 0x9E3779B97F4A7C15ull) >> 32) & (slots_.size() - 1);
    }

    // Room for count entries at most half full.
    void Grow(std::size_t count) {
        std::size_t size = 16;
        while (size < count * 2) {
            size *= 2;
        }
        if (size <= slots_.size()) {
            return;
        }
        std::vector<Entry> old(size, Entry{0, false, 0});
        old.swap(slots_);
        for (Entry const& entry : old) {
            if (entry.used) {
                std::size_t at = Slot(entry.id);
                while (slots_[at].used) {
                    at = (at + 1) & (slots_.size() - 1);
                }
                slots_[at] = entry;
            }
        }
    }

    std::vector<Entry> slots_;
    std::size_t count_ = 0;
};

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
    // The values that passed, with their ids: sorted once at the end rather
    // than kept in a tree as they come.
    std::vector<std::pair<unsigned int, boost::intrusive_ptr<ItemHolder const>>> passing;
    // Each setting read, in file order, with its key kept in one buffer: to
    // find a key given twice and to name the value the directory refuses.
    struct Origin {
        unsigned int id;
        std::size_t keyAt;
        std::size_t keySize;
    };
    std::vector<Origin> origins;
    std::string keys;
    SeenIds seen;
    std::unordered_set<std::string> unknown;
    // Every path, gathered at the first unknown one, to suggest the nearest.
    std::vector<std::string> paths;
    std::size_t const expected = std::min<std::size_t>(json.size() / 16, std::size_t(1) << 20);
    origins.reserve(expected);
    passing.reserve(expected);
    // The keys are never longer than the text that spells them: one buffer.
    keys.reserve(json.size());
    seen.Reserve(expected);

    auto const onMember = [&](std::string const& key, JsonValue& value, std::string& refusal) {
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
            sink.Add("/" + PointerToken(key),
                     "no setting has this path" + CheckRules::DidYouMean(key, paths), key);
            return true;
        }
        InfoPtr const info = slot->GetInfoHolder()->GetInfo();
        std::size_t const earlier = seen.Insert(info->GetId(), origins.size());
        if (earlier != SeenIds::k_new) {
            Origin const& first = origins[earlier];
            if (keys.compare(first.keyAt, first.keySize, key) == 0) {
                refusal = "the key appears twice";
                return false;
            }
            sink.Add("/" + PointerToken(key), "the setting is given twice, under another path",
                     key);
            return true;
        }
        // Read and checked under the value's own pointer (""): a passing value
        // builds no pointer and no path; its problems get both afterwards.
        std::size_t const before = report.problems.size();
        std::string const root;
        ItemPtr const item = ReadItem(value, *info, sink, root);
        bool passed = false;
        if (item) {
            Problems const found = Check(*item, info, root);
            for (Problem const& problem : found) {
                sink.Add(problem.pointer, problem.message);
            }
            passed = found.empty();
        }
        if (report.problems.size() > before) {
            std::string const pointer = "/" + PointerToken(key);
            sink.EndValue(root);
            for (std::size_t i = before; i < report.problems.size(); ++i) {
                report.problems[i].pointer.insert(0, pointer);
                report.problems[i].path = key;
            }
        }
        if (passed) {
            passing.emplace_back(item->GetId(),
                                 boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item)));
        }
        origins.push_back(Origin{info->GetId(), keys.size(), key.size()});
        keys += key;
        return true;
    };

    Problems syntax;
    if (!ReadJsonMembers(json, onMember, syntax)) {
        report.problems = std::move(syntax);
        return report;
    }
    // In id order, the first of equal ids kept, as a change set holds them.
    std::stable_sort(passing.begin(), passing.end(),
                     [](auto const& a, auto const& b) { return a.first < b.first; });
    passing.erase(std::unique(passing.begin(), passing.end(),
                              [](auto const& a, auto const& b) { return a.first == b.first; }),
                  passing.end());
    auto const& items = passing;
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
            path = keys.substr(origin.keyAt, origin.keySize);
            pointer = "/" + PointerToken(path);
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
