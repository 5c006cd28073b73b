#include <legacy/oru/files/check.h>

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <legacy/oru/files/values.h>
#include <legacy/oru/oru.h>

#include "checkrules.h"
#include "valueform.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {

namespace {

using namespace ValueForm;

// Whether a family's record and text give back every value it can hold, so
// that the round trip could refuse nothing the family rule passed. Whole
// numbers travel in full width in the record (big-endian, never mapped) and
// as exact digits in the text, which is read back without rounding; a flag is
// one byte and true or false. Float and double are mapped and rounded, and
// the other families carry texts, names or addresses their forms may change.
template <class T>
constexpr bool FormsKeepEveryValue() {
    constexpr bool whole = T::numericType != NumericType_t::Undefined &&
                           T::numericType != NumericType_t::Float &&
                           T::numericType != NumericType_t::Double;
    switch (T::type) {
        case OruType_t::Bool:
            return true;
        case OruType_t::Numeric:
        case OruType_t::NumericSparse:
        case OruType_t::NumericArray:
            return whole;
        default:
            return false;
    }
}

template <class InfoT>
struct IsSparse : std::false_type {};
template <class T>
struct IsSparse<NumericSparseInfo<T>> : std::true_type {
    using Item = NumericSparseItem<T>;
};

class Checker {
public:
    explicit Checker(Problems& problems) : problems_(problems) {}

    void Add(std::string pointer, std::string message) {
        problems_.push_back(Problem(std::move(pointer), std::move(message)));
    }
    bool Empty() const { return problems_.empty(); }

    // ---- bounds -------------------------------------------------------

    template <class E>
    void Bounded(E value, E min, E max, std::string const& pointer) {
        // Only strictly beyond a bound fails, as the model's check says; a
        // NaN passes here and is refused by its record.
        if (value < min) {
            Add(pointer, NumberText(value) + " is below the minimum " + NumberText(min));
        } else if (value > max) {
            Add(pointer, NumberText(value) + " is above the maximum " + NumberText(max));
        }
    }

    void Sized(unsigned long long size, unsigned long long min, unsigned long long max,
               char const* what, std::string const& pointer) {
        if (size < min) {
            Add(pointer,
                std::to_string(size) + " " + what + ", below the minimum " + std::to_string(min));
        } else if (size > max) {
            Add(pointer,
                std::to_string(size) + " " + what + ", above the maximum " + std::to_string(max));
        }
    }

    template <class T>
    void Within(CoordinateItem<T> const& item, CoordinateInfo<T> const& info,
                std::string const& pointer, char const* x, char const* y) {
        Bounded(item.X()->GetVal(), info.X()->GetMin(), info.X()->GetMax(), Child(pointer, x));
        Bounded(item.Y()->GetVal(), info.Y()->GetMin(), info.Y()->GetMax(), Child(pointer, y));
    }

    template <class T>
    void Within(RectItem<T> const& item, RectInfo<T> const& info, std::string const& pointer) {
        Within(*item.TopLeft(), *info.TopLeft(), pointer, "left", "top");
        Within(*item.BottomRight(), *info.BottomRight(), pointer, "right", "bottom");
    }

    // ---- the rule of each family -------------------------------------------

    template <class T>
    void Rule(NumericItem<T> const& item, NumericInfo<T> const& info, std::string const& pointer) {
        Bounded(item.GetVal(), info.GetMin(), info.GetMax(), pointer);
    }

    template <class T>
    void Rule(NumericArrayItem<T> const& item, NumericArrayInfo<T> const& info,
              std::string const& pointer) {
        // The elements have no bounds of their own: descriptions carry none.
        Sized(item.GetSize(), info.GetMinSize(), info.GetMaxSize(), "elements", pointer);
    }

    template <class T>
    void Rule(NumericSparseItem<T> const& item, NumericSparseInfo<T> const& info,
              std::string const& pointer) {
        if (info.IsPresent(item.GetVal())) {
            return;
        }
        std::vector<std::string> allowed;
        for (auto const& entry : info.GetTable()) {
            allowed.push_back(NumberText(entry));
        }
        Add(pointer, NumberText(item.GetVal()) + " is not in the table" + Allowed(allowed));
    }

    void Rule(EnumItem const& item, EnumInfo const& info, std::string const& pointer) {
        ElemType<int> entry;
        if (info.GetElem(item.GetVal(), entry) != 0) {
            Add(pointer,
                std::to_string(item.GetVal()) + " is no entry" + Allowed(EnabledNames(info)));
        } else if (entry.disabled) {
            Add(pointer,
                "\"" + Shown(entry.name, 32) + "\" is disabled" + Allowed(EnabledNames(info)));
        }
    }

    void Rule(BoolItem const& item, BoolInfo const& info, std::string const& pointer) {
        if (info.GetFixed() && item.GetVal() != info.GetDefault()) {
            Add(pointer,
                std::string("the setting is fixed at ") + (info.GetDefault() ? "true" : "false"));
        }
    }

    void Rule(StringItem const& item, StringInfo const& info, std::string const& pointer) {
        if (item.GetVal().size() > info.GetMaxLength()) {
            Add(pointer, "the text is " + std::to_string(item.GetVal().size()) +
                             " bytes, above the maximum length " +
                             std::to_string(info.GetMaxLength()) + " bytes");
        }
    }

    void Rule(StringArrayItem const& item, StringArrayInfo const& info,
              std::string const& pointer) {
        Sized(item.GetSize(), info.GetMinSize(), info.GetMaxSize(), "strings", pointer);
    }

    void Rule(BoolArrayItem const& item, BoolArrayInfo const& info, std::string const& pointer) {
        Sized(item.GetSize(), info.GetMinSize(), info.GetMaxSize(), "flags", pointer);
    }

    void Rule(StringSparseItem const& item, StringSparseInfo const& info,
              std::string const& pointer) {
        if (info.IsPresent(item.Val())) {
            return;
        }
        std::vector<std::string> allowed;
        for (auto const& entry : info.GetTable()) {
            allowed.push_back(Shown(entry, 32));
        }
        Add(pointer, "\"" + Shown(item.Val(), 32) + "\" is not in the table" + Allowed(allowed));
    }

    void Rule(ColourItem const& item, ColourInfo const& info, std::string const& pointer) {
        Vintor::Colour_t const& value = item.Val();
        Vintor::Colour_t const& min = info.GetMin();
        Vintor::Colour_t const& max = info.GetMax();
        // Both bounds all zero, as a new Info has them, is a colour without bounds.
        if (min == Vintor::Colour_t() && max == Vintor::Colour_t()) {
            return;
        }
        Bounded(value.a, min.a, max.a, Child(pointer, "a"));
        Bounded(value.r, min.r, max.r, Child(pointer, "r"));
        Bounded(value.g, min.g, max.g, Child(pointer, "g"));
        Bounded(value.b, min.b, max.b, Child(pointer, "b"));
    }

    template <class T>
    void Rule(CoordinateItem<T> const& item, CoordinateInfo<T> const& info,
              std::string const& pointer) {
        Within(item, info, pointer, "x", "y");
    }

    template <class T>
    void Rule(RectItem<T> const& item, RectInfo<T> const& info, std::string const& pointer) {
        Within(item, info, pointer);
    }

    template <class T>
    void Rule(RectArrayItem<T> const& item, RectArrayInfo<T> const& info,
              std::string const& pointer) {
        Sized(item.GetSize(), info.GetMinSize(), info.GetMaxSize(), "rectangles", pointer);
        auto const topLeft = info.TopLeft();
        auto const bottomRight = info.BottomRight();
        auto const& rects = item.Val();
        for (std::size_t i = 0; i < rects.size(); ++i) {
            std::string const at = Child(pointer, i);
            Within(*rects[i].TopLeft(), *topLeft, at, "left", "top");
            Within(*rects[i].BottomRight(), *bottomRight, at, "right", "bottom");
        }
    }

    void Rule(AddrItem const& item, AddrInfo const&, std::string const& pointer) {
        std::string const why = CheckRules::HostProblem(item.Val().ToString());
        if (!why.empty()) {
            Add(pointer, why);
        }
    }

    void Rule(EndpointItem const& item, EndpointInfo const&, std::string const& pointer) {
        std::string const why = CheckRules::EndpointProblem(item.Val());
        if (!why.empty()) {
            Add(pointer, why);
        }
    }

    void Rule(AppEndpointItem const& item, AppEndpointInfo const&, std::string const& pointer) {
        std::string const why = CheckRules::AppEndpointProblem(item.Val());
        if (!why.empty()) {
            Add(pointer, why);
        }
    }

    void Rule(AppEndpointArrayItem const& item, AppEndpointArrayInfo const& info,
              std::string const& pointer) {
        Sized(item.Val().size(), info.GetMinSize(), info.GetMaxSize(), "endpoints", pointer);
        auto const& endpoints = item.Val();
        for (std::size_t i = 0; i < endpoints.size(); ++i) {
            std::string const why = CheckRules::AppEndpointProblem(endpoints[i]);
            if (!why.empty()) {
                Add(Child(pointer, i), why);
            }
        }
    }

    void Rule(CompositeItem const& item, CompositeInfo const& info, std::string const& pointer) {
        if (info.GetSize() != item.GetSize()) {
            Add(pointer, "expected " + std::to_string(info.GetSize()) +
                             " values, one per part, not " + std::to_string(item.GetSize()));
            return;
        }
        for (std::size_t i = 0; i < item.GetSize(); ++i) {
            CompositeItem::ConstItemPtr const child = item.GetItem(i);
            InfoPtr const childInfo = info.GetInfo(i);
            if (!child || !childInfo) {
                Add(Child(pointer, i), "the part is missing");
                continue;
            }
            Value(*child, childInfo, Child(pointer, i), false);
        }
    }

    // The families the model alone decides (flags, collections, extended and
    // localized values): its check is the rule.
    void Rule(ItemBase const& item, InfoBase const& info, std::string const& pointer) {
        (void)item;
        (void)info;
        (void)pointer;
    }

    // ---- one value ----------------------------------------------------------

    // The family rule, then, when that passes and whole is set, the record
    // and text rules; a composite's parts are checked by their family rules
    // and travel in the composite's record.
    void Value(ItemBase const& item, InfoPtr const& info, std::string const& pointer, bool whole) {
        if (!info) {
            Add(pointer, "there is no definition to check the value against");
            return;
        }
        if (item.GetType() != info->GetType() || item.GetNumericType() != info->GetNumericType()) {
            Add(pointer, "a value of type " +
                             Catalogue::FamilyName(item.GetType(), item.GetNumericType()) +
                             " for a setting of type " +
                             Catalogue::FamilyName(info->GetType(), info->GetNumericType()));
            return;
        }
        std::size_t const before = problems_.size();
        bool formsKeep = false;
        bool const known =
            Catalogue::VisitFamily(info->GetType(), info->GetNumericType(), [&](auto tag) {
                using T = decltype(tag);
                Family<T>(item, *info, pointer);
                // Only an array's record can outgrow its size field.
                formsKeep = FormsKeepEveryValue<T>() &&
                            (T::type != OruType_t::NumericArray || RecordLimit(item).empty());
            });
        if (!known || problems_.size() > before) {
            return;
        }
        // The model has the last word where the family rule passed.
        if (item.Validate(info) && !ModelRefusesAll(info->GetType())) {
            Add(pointer, "the value fails its check");
            return;
        }
        if (whole && !formsKeep) {
            RoundTrips(item, *info, pointer);
        }
    }

    template <class T>
    void Family(ItemBase const& item, InfoBase const& info, std::string const& pointer) {
        if constexpr (T::hasInfo) {
            // The type bytes are equal, so both are of the family's classes.
            Rule(static_cast<typename T::Item const&>(item),
                 static_cast<typename T::Info const&>(info), pointer);
        } else {
            (void)item;
            (void)info;
            (void)pointer;
        }
    }

    // Sparse tables and geometry: the model refuses every value and leaves the
    // rule to the files layer.
    static bool ModelRefusesAll(OruType_t type) {
        return type == OruType_t::NumericSparse || type == OruType_t::Coordinate ||
               type == OruType_t::Rectangle || type == OruType_t::RectArray;
    }

    void RoundTrips(ItemBase const& item, InfoBase const& info, std::string const& pointer) {
        Catalogue::Family const* const family =
            Catalogue::FindFamily(info.GetType(), info.GetNumericType());
        if (!family || family->record != Catalogue::Record::Read) {
            return;
        }
        std::string const limit = RecordLimit(item);
        if (!limit.empty()) {
            Add(pointer, limit);
            return;
        }
        std::string text;
        bool const hasText = AppendValue(text, item, &info);
        ItemBase::SerialStruct_t record;
        boost::intrusive_ptr<ItemBase> back;
        int code = item.Serialize(&record);
        if (code == 0) {
            ItemBase::ConstSerialStruct_t const view(record);
            code = ItemBase::Deserialize(&view, back);
        }
        if (code != 0 || !back) {
            Add(pointer,
                "its record cannot be written and read back (code " + std::to_string(code) + ")");
            return;
        }
        boost::intrusive_ptr<ItemBase const> const backConst(back);
        std::string backText;
        bool const backHasText = AppendValue(backText, *back, &info);
        // Families whose equality is a distance compare their texts too.
        if (!item.IsEqualValue(backConst) || backHasText != hasText || backText != text) {
            Add(pointer, (hasText ? Shown(text, 64) : std::string("the value")) +
                             " does not survive its record: it reads back as " +
                             (backHasText ? Shown(backText, 64) : std::string("another value")));
            return;
        }
        if (!hasText) {
            return;
        }
        JsonValue json;
        Problems ignored;
        if (!ReadJsonValue(text, json, ignored)) {
            Add(pointer, "its text " + Shown(text, 64) + " cannot be read back");
            return;
        }
        Problems unread;
        Sink sink(unread);
        ItemPtr const again = ReadItem(json, info, sink, pointer);
        std::string againText;
        if (again) {
            AppendValue(againText, *again, &info);
        }
        boost::intrusive_ptr<ItemBase const> const againConst(again);
        if (!again || !item.IsEqualValue(againConst) || againText != text) {
            Add(pointer, Shown(text, 64) + " does not survive its text form" +
                             (again ? ": it reads back as " + Shown(againText, 64)
                                    : ": " + (unread.empty() ? std::string("it cannot be read")
                                                             : unread.front().message)));
        }
    }

private:
    static std::string Allowed(std::vector<std::string> const& names) {
        if (names.empty()) {
            return "; no entry is allowed";
        }
        std::string text = "; allowed: ";
        std::size_t shown = 0;
        for (std::string const& name : names) {
            if (shown == 16) {
                text += ", ... (" + std::to_string(names.size()) + " in all)";
                break;
            }
            text += shown++ == 0 ? "" : ", ";
            text += name;
        }
        return text;
    }

    static std::vector<std::string> EnabledNames(EnumInfo const& info) {
        std::vector<std::string> names;
        for (auto const& entry : info.GetTable()) {
            if (!entry.disabled) {
                names.push_back(entry.name.empty() ? std::to_string(entry.value)
                                                   : Shown(entry.name, 32));
            }
        }
        return names;
    }

    Problems& problems_;
};

}  // namespace

Problems CheckRules::Forms(ItemBase const& item, InfoBase const& info, std::string const& pointer) {
    Problems problems;
    Checker(problems).RoundTrips(item, info, pointer);
    return problems;
}

Problems CheckRules::TableForms(InfoBase const& info, std::string const& pointer) {
    Problems problems;
    Checker checker(problems);
    auto const entries = [&](auto& item, auto const& table) {
        for (std::size_t i = 0; i < table.size(); ++i) {
            item.SetVal(table[i]);
            checker.RoundTrips(item, info, Child(pointer, i));
        }
    };
    Catalogue::VisitInfo(info, [&](auto const& concrete) {
        using InfoT = std::decay_t<decltype(concrete)>;
        if constexpr (std::is_same<InfoT, StringSparseInfo>::value) {
            boost::intrusive_ptr<StringSparseItem> item(new StringSparseItem(info.GetId()));
            entries(*item, concrete.GetTable());
        } else if constexpr (IsSparse<InfoT>::value) {
            boost::intrusive_ptr<typename IsSparse<InfoT>::Item> item(
                new typename IsSparse<InfoT>::Item(info.GetId()));
            entries(*item, concrete.GetTable());
        }
    });
    return problems;
}

Problems Check(ItemBase const& item, boost::intrusive_ptr<InfoBase const> const& info,
               std::string const& pointer) {
    Problems problems;
    Checker(problems).Value(item, info, pointer, true);
    return problems;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
