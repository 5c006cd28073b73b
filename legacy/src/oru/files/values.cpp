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

#include <legacy/oru/files/explain.h>
#include <legacy/oru/oru.h>

#include "families.h"
#include "valueform.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {

namespace {

using namespace ValueForm;

// ---- checking ------------------------------------------------------------

// The families whose model check refuses every value are checked by what
// their own classes offer instead: table membership, or bounds.
bool CheckItem(ItemBase const& item, InfoPtr const& info, Sink& sink, std::string const& pointer) {
    std::string text;
    bool ok = true;
    switch (info->GetType()) {
        case OruType_t::NumericSparse:
            VisitElement(info->GetNumericType(), [&](auto traits) {
                using T = decltype(traits);
                auto const* sparseInfo = dynamic_cast<NumericSparseInfo<T> const*>(info.get());
                auto const* sparse = As<NumericSparseItem<T>>(item);
                ok = sparseInfo && sparse && sparseInfo->IsPresent(sparse->GetVal());
            });
            if (!ok) {
                AppendValue(text, item, info.get());
                sink.Add(pointer, Quoted(info->GetName()) + text + " is not an allowed value");
            }
            return ok;
        case OruType_t::StringSparse: {
            auto const* sparseInfo = dynamic_cast<StringSparseInfo const*>(info.get());
            auto const* sparse = As<StringSparseItem>(item);
            if (sparseInfo && sparse && sparseInfo->IsPresent(sparse->Val())) {
                return true;
            }
            AppendValue(text, item, info.get());
            sink.Add(pointer, Quoted(info->GetName()) + text + " is not an allowed value");
            return false;
        }
        case OruType_t::Coordinate:
        case OruType_t::Rectangle:
        case OruType_t::RectArray:
            ok = false;
            VisitGeometry(info->GetNumericType(), [&](auto traits) {
                using T = decltype(traits);
                if (auto const* coordinateInfo =
                        dynamic_cast<CoordinateInfo<T> const*>(info.get())) {
                    auto const* coordinate = As<CoordinateItem<T>>(item);
                    ok = coordinate && coordinate->WithinBounds(*coordinateInfo);
                } else if (auto const* rectInfo = dynamic_cast<RectInfo<T> const*>(info.get())) {
                    auto const* rect = As<RectItem<T>>(item);
                    ok = rect && rect->WithinBounds(*rectInfo);
                }
                if constexpr (std::is_same<T, U16Traits>::value) {
                    if (auto const* rectsInfo = dynamic_cast<RectArrayInfo<T> const*>(info.get())) {
                        auto const* rects = As<RectArrayItem<T>>(item);
                        ok = rects && rects->WithinBounds(*rectsInfo);
                    }
                }
            });
            if (!ok) {
                AppendValue(text, item, info.get());
                sink.Add(pointer, Quoted(info->GetName()) + text + " is outside its bounds");
            }
            return ok;
        default:
            break;
    }
    if (item.Validate(info)) {
        std::optional<Explanation> const why = Explain(item, info);
        sink.Add(pointer, why ? why->text : Quoted(info->GetName()) + "the value fails its check");
        return false;
    }
    // A composite's own check looks at its shape; its parts are checked here.
    if (OruType_t::Composite == info->GetType()) {
        auto const* composite = As<CompositeItem>(item);
        auto const* compositeInfo = dynamic_cast<CompositeInfo const*>(info.get());
        if (!composite || !compositeInfo) {
            return true;
        }
        for (std::size_t i = 0; i < composite->GetSize(); ++i) {
            CompositeItem::ConstItemPtr const child = composite->GetItem(i);
            InfoPtr const childInfo = compositeInfo->GetInfo(i);
            if (child && childInfo) {
                ok = CheckItem(*child, childInfo, sink, Child(pointer, i)) && ok;
            }
        }
    }
    return ok;
}

// The payload size the record of item needs, without the 32-bit wrap of
// GetSerialDataSize; false when a composite's count passes its 16 bits.
bool RecordSize(ItemBase const& item, std::uint64_t& size, std::string& problem) {
    auto const* const composite = As<CompositeItem>(item);
    if (!composite) {
        size = item.GetSerialDataSize();
        return true;
    }
    if (composite->GetSize() > 0xFFFFu) {
        problem = "a composite record holds at most 65535 children, this one has " +
                  std::to_string(composite->GetSize());
        return false;
    }
    size = 2;  // the count
    for (std::size_t i = 0; i < composite->GetSize(); ++i) {
        CompositeItem::ConstItemPtr const child = composite->GetItem(i);
        std::uint64_t childSize = 0;
        if (child && !RecordSize(*child, childSize, problem)) {
            return false;
        }
        size += 10 + childSize;  // each child is a record of its own
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

}  // namespace

ValuesReport ReadValues(std::string const& json, InfoItemDirectory& directory, Apply mode) {
    ValuesReport report;
    Sink sink(report.problems);
    auto delta = std::make_shared<InfoItemDirectoryDelta>();
    // Where each setting's member stands in origins, to find a key given
    // twice and to name the value the directory refuses.
    std::vector<std::pair<unsigned int, std::string>> origins;
    std::unordered_map<unsigned int, std::size_t> seen;
    std::unordered_set<std::string> unknown;
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
            sink.Add(std::move(pointer), "no setting has this path");
            return true;
        }
        InfoPtr const info = slot->GetInfoHolder()->GetInfo();
        auto const first = seen.emplace(info->GetId(), origins.size());
        if (!first.second) {
            if (origins[first.first->second].second == pointer) {
                refusal = "the key appears twice";
                return false;
            }
            sink.Add(std::move(pointer), "the setting is given twice, under another path");
            return true;
        }
        ItemPtr const item = ReadItem(value, *info, sink, pointer);
        std::string const limit = item ? RecordLimit(*item) : std::string();
        if (!limit.empty()) {
            sink.Add(pointer, limit);
        }
        bool const passed = item && limit.empty() && CheckItem(*item, info, sink, pointer);
        sink.EndValue(pointer);
        if (passed) {
            delta->AddItem(boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item)));
        }
        origins.emplace_back(info->GetId(), std::move(pointer));
        return true;
    };

    Problems syntax;
    if (!ReadJsonMembers(json, onMember, syntax)) {
        report.problems = std::move(syntax);
        return report;
    }
    auto const& items = delta->GetItemHolderPtrMap_addMod();
    if (items.empty() || (Apply::AllOrNothing == mode && !report.problems.empty())) {
        return report;
    }
    int const code = directory.UpdateFromDelta(delta, false, true);
    if (code == 0) {
        report.applied = items.size();
        return report;
    }
    // The directory stops at its first failure, in id order; what went before stays.
    unsigned int refused = 0;
    for (auto const& entry : items) {
        if (directory.FindItem(entry.first) == entry.second) {
            ++report.applied;
        } else {
            refused = entry.first;
            break;
        }
    }
    std::string pointer;
    for (auto const& origin : origins) {
        if (origin.first == refused) {
            pointer = origin.second;
        }
    }
    report.problems.push_back(
        Problem{pointer, "the directory refused the value with code " + std::to_string(code) +
                             "; " + std::to_string(report.applied) + " of " +
                             std::to_string(items.size()) + " values were applied"});
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
        std::string const limit = RecordLimit(item);
        value.clear();
        if (!limit.empty() || !AppendValue(value, item, &info)) {
            problems.push_back(Problem{"/" + PointerToken(paths.Path(info)),
                                       limit.empty() ? NoValueForm(item) : limit});
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
            problems.push_back(Problem{pointer + problem.pointer, problem.message});
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
