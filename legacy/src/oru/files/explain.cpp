#include <legacy/oru/files/explain.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <legacy/oru/files/check.h>
#include <legacy/oru/oru.h>

#include "families.h"
#include "valueform.h"

namespace Legacy {
namespace Oru {
namespace Files {

namespace {

// What a failing check composed: its key and argument texts, plus the texts
// for people where they differ (an 8-bit bound written as a number).
struct Failure {
    std::string key;
    std::vector<std::string> arguments;
    std::vector<std::string> readable;
};

Failure Compose(char const* key, std::vector<std::string> arguments) {
    Failure failure{key, std::move(arguments), {}};
    failure.readable = failure.arguments;
    return failure;
}

// The stream text of a value in a fresh default stream, as the checks write it.
template <class V>
std::string Text(V const& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

// A bound as the checks write it (8-bit elements as one raw character), and
// as a number for people.
template <class T>
std::pair<std::string, std::string> BoundTexts(typename T::Element bound) {
    std::string const exact = Text(static_cast<typename T::DumpType>(bound));
    if constexpr (sizeof(typename T::Element) == 1) {
        return {exact, Text(static_cast<int>(bound))};
    } else {
        return {exact, exact};
    }
}

Failure TypeMismatch(ItemBase const& item, InfoBase const* info) {
    return Compose("TypesSystemValidateTypeMismatch",
                   {info ? info->GetName() : std::string("Unknown"),
                    info ? BracketedTypeText(info->GetType(), info->GetNumericType())
                         : std::string("NULL-Info"),
                    BracketedTypeText(item.GetType(), item.GetNumericType())});
}

Failure Illegal(ItemBase const& item, InfoBase const* info) {
    return Compose("TypesSystemIllegalValidatationError",
                   {info ? info->GetName() : std::string("Unknown"),
                    BracketedTypeText(item.GetType(), item.GetNumericType())});
}

// Size bounds of the array families: below the minimum first, then above the
// maximum, each with its own key.
template <class InfoT>
std::optional<Failure> SizeFailure(ItemBase const& item, InfoBase const* info,
                                   unsigned long long size, char const* minKey,
                                   char const* maxKey) {
    auto const* const arrayInfo = dynamic_cast<InfoT const*>(info);
    if (!arrayInfo) {
        return TypeMismatch(item, info);
    }
    if (size < arrayInfo->GetMinSize()) {
        return Compose(minKey, {arrayInfo->GetName(), Text(arrayInfo->GetMinSize())});
    }
    if (size > arrayInfo->GetMaxSize()) {
        return Compose(maxKey, {arrayInfo->GetName(), Text(arrayInfo->GetMaxSize())});
    }
    return std::nullopt;
}

template <class T>
std::optional<Failure> NumericFailure(NumericItem<T> const& item, InfoBase const* info) {
    auto const* const numericInfo = dynamic_cast<NumericInfo<T> const*>(info);
    if (!numericInfo) {
        return TypeMismatch(item, info);
    }
    char const* key = nullptr;
    typename T::Element bound{};
    // Only strictly beyond a bound fails, so a NaN passes both.
    if (item.GetVal() < numericInfo->GetMin()) {
        key = "TypesSystemNumericValidationMin";
        bound = numericInfo->GetMin();
    } else if (item.GetVal() > numericInfo->GetMax()) {
        key = "TypesSystemNumericValidationMax";
        bound = numericInfo->GetMax();
    } else {
        return std::nullopt;
    }
    auto const texts = BoundTexts<T>(bound);
    Failure failure = Compose(key, {numericInfo->GetName(), texts.first});
    failure.readable[1] = texts.second;
    return failure;
}

template <class T>
bool TryNumeric(ItemBase const& item, InfoBase const* info, std::optional<Failure>& out) {
    if (auto const* const numeric = dynamic_cast<NumericItem<T> const*>(&item)) {
        out = NumericFailure<T>(*numeric, info);
        return true;
    }
    if (auto const* const array = dynamic_cast<NumericArrayItem<T> const*>(&item)) {
        out = SizeFailure<NumericArrayInfo<T>>(item, info, array->GetSize(),
                                               "TypesSystemNumericArrayValidationMinSize",
                                               "TypesSystemNumericArrayValidationMaxSize");
        return true;
    }
    if (dynamic_cast<NumericSparseItem<T> const*>(&item)) {
        out = Illegal(item, info);
        return true;
    }
    return false;
}

template <class T>
bool TryGeometry(ItemBase const& item, InfoBase const* info, std::optional<Failure>& out) {
    if (dynamic_cast<CoordinateItem<T> const*>(&item) || dynamic_cast<RectItem<T> const*>(&item)) {
        out = Illegal(item, info);
        return true;
    }
    return false;
}

std::optional<Failure> CompositeFailure(CompositeItem const& item, InfoBase const* info) {
    // The composite tests the Info's family word before its class.
    auto const* const compositeInfo = info && info->GetType() == OruType_t::Composite
                                          ? dynamic_cast<CompositeInfo const*>(info)
                                          : nullptr;
    if (!compositeInfo) {
        return TypeMismatch(item, info);
    }
    if (compositeInfo->GetSize() != item.GetSize()) {
        return Compose("TypesSystemCompositeValidationSize",
                       {compositeInfo->GetName(), Text(item.GetSize())});
    }
    for (std::size_t i = 0; i < item.GetSize(); ++i) {
        CompositeInfo::ConstInfoPtr const childInfo = compositeInfo->GetInfo(i);
        if (!childInfo || !childInfo->IsEqualType(item.GetItem(i))) {
            return Compose("TypesSystemCompositeTypeMismatch", {compositeInfo->GetName(), Text(i)});
        }
    }
    return std::nullopt;
}

std::optional<Failure> BoolFailure(BoolItem const& item, InfoBase const* info) {
    auto const* const boolInfo = dynamic_cast<BoolInfo const*>(info);
    if (!boolInfo) {
        return TypeMismatch(item, info);
    }
    if (!boolInfo->GetFixed() || item.GetVal() == boolInfo->GetDefault()) {
        return std::nullopt;
    }
    return Compose("TypesSystemBoolValidationFixedVal",
                   {boolInfo->GetName(), Text(boolInfo->GetDefault())});
}

std::optional<Failure> EnumFailure(EnumItem const& item, InfoBase const* info) {
    auto const* const enumInfo = dynamic_cast<EnumInfo const*>(info);
    if (!enumInfo) {
        return TypeMismatch(item, info);
    }
    // A disabled entry is still known to the check.
    if (enumInfo->IsPresent(item.GetVal())) {
        return std::nullopt;
    }
    return Compose("TypesSystemEnumValidationValue", {enumInfo->GetName(), Text(item.GetVal())});
}

std::optional<Failure> StringFailure(StringItem const& item, InfoBase const* info) {
    auto const* const stringInfo = dynamic_cast<StringInfo const*>(info);
    if (!stringInfo) {
        return TypeMismatch(item, info);
    }
    if (item.GetVal().size() <= stringInfo->GetMaxLength()) {
        return std::nullopt;
    }
    return Compose("TypesSystemStringValidationLength",
                   {stringInfo->GetName(), Text(stringInfo->GetMaxLength())});
}

// The failing check's composition, found by the item's family word and then
// its class; nothing when the family's conditions hold or the item is of no
// class the model checks.
std::optional<Failure> Derive(ItemBase const& item, InfoBase const* info) {
    std::optional<Failure> out;
    switch (item.GetType()) {
        case OruType_t::Numeric:
        case OruType_t::NumericArray:
        case OruType_t::NumericSparse:
#define ORU_FILES_TRY_NUMERIC(T)                                                       \
    if (item.GetNumericType() == T::k_numericType && TryNumeric<T>(item, info, out)) { \
        return out;                                                                    \
    }
            LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_FILES_TRY_NUMERIC)
#undef ORU_FILES_TRY_NUMERIC
            break;
        case OruType_t::Coordinate:
        case OruType_t::Rectangle:
#define ORU_FILES_TRY_GEOMETRY(T)                                                       \
    if (item.GetNumericType() == T::k_numericType && TryGeometry<T>(item, info, out)) { \
        return out;                                                                     \
    }
            LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(ORU_FILES_TRY_GEOMETRY)
#undef ORU_FILES_TRY_GEOMETRY
            break;
        case OruType_t::RectArray:
            if (dynamic_cast<RectArrayItem<U16Traits> const*>(&item)) {
                return Illegal(item, info);
            }
            break;
        case OruType_t::Bool:
            if (auto const* const flag = dynamic_cast<BoolItem const*>(&item)) {
                return BoolFailure(*flag, info);
            }
            break;
        case OruType_t::BoolArray:
            if (auto const* const flags = dynamic_cast<BoolArrayItem const*>(&item)) {
                // One key for both bounds, as the check writes it.
                return SizeFailure<BoolArrayInfo>(item, info, flags->GetSize(),
                                                  "BoolArrayValidationMinSize",
                                                  "BoolArrayValidationMinSize");
            }
            break;
        case OruType_t::StringArray:
            if (auto const* const strings = dynamic_cast<StringArrayItem const*>(&item)) {
                return SizeFailure<StringArrayInfo>(item, info, strings->GetSize(),
                                                    "TypesSystemStringArrayValidationMinSize",
                                                    "TypesSystemStringArrayValidationMaxSize");
            }
            break;
        case OruType_t::Enum:
            if (auto const* const choice = dynamic_cast<EnumItem const*>(&item)) {
                return EnumFailure(*choice, info);
            }
            break;
        case OruType_t::String:
            if (auto const* const text = dynamic_cast<StringItem const*>(&item)) {
                return StringFailure(*text, info);
            }
            break;
        case OruType_t::Composite:
            if (auto const* const composite = dynamic_cast<CompositeItem const*>(&item)) {
                return CompositeFailure(*composite, info);
            }
            break;
        case OruType_t::Extended:
            if (dynamic_cast<ExtendedItem const*>(&item) &&
                !dynamic_cast<ExtendedInfo const*>(info)) {
                return TypeMismatch(item, info);
            }
            break;
        default:
            // The other families pass every check.
            break;
    }
    return std::nullopt;
}

LocalizedString MessageOf(std::string const& key, std::vector<std::string> const& arguments) {
    LocalizedString message(key);
    for (std::string const& text : arguments) {
        boost::intrusive_ptr<ItemBase const> const argument(StringItem::Create(0, text));
        message.AddArgument(argument);
    }
    return message;
}

// The catalogue's text; without one, the key and the arguments, so that
// people never read an empty explanation.
std::string Render(std::string const& key, std::vector<std::string> const& arguments) {
    std::string text = MessageOf(key, arguments).GetString("");
    if (!text.empty()) {
        return text;
    }
    text = key.empty() ? std::string("the check failed") : key;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        text += i == 0 ? ": " : ", ";
        text += arguments[i];
    }
    return text;
}

}  // namespace

std::optional<Explanation> Explain(ItemBase const& item,
                                   boost::intrusive_ptr<InfoBase const> const& info) {
    // Sparse tables and geometry: the model refuses every value of its own
    // family, and the files rule decides instead.
    OruType_t const type = item.GetType();
    bool const filesDecide = info && info->GetType() == type &&
                             info->GetNumericType() == item.GetNumericType() &&
                             (type == OruType_t::NumericSparse || type == OruType_t::Coordinate ||
                              type == OruType_t::Rectangle || type == OruType_t::RectArray);
    if (filesDecide || !item.Validate(info)) {
        Problems const problems = Check(item, info);
        if (problems.empty()) {
            return std::nullopt;
        }
        Problem const& first = problems.front();
        return Explanation{LocalizedString(),
                           ValueForm::Quoted(info ? info->GetName() : std::string("Unknown")) +
                               (first.pointer.empty() ? std::string() : first.pointer + ": ") +
                               first.message};
    }
    std::optional<Failure> failure = Derive(item, info.get());
    if (!failure) {
        // A class of its own that fails in its own way: its composition cannot
        // be known, so say which setting and type, without a key.
        std::string const name = info ? info->GetName() : std::string("Unknown");
        return Explanation{LocalizedString(),
                           ValueForm::Quoted(name) + "a value of type " +
                               BracketedTypeText(item.GetType(), item.GetNumericType()) +
                               " fails its check"};
    }
    return Explanation{MessageOf(failure->key, failure->arguments),
                       Render(failure->key, failure->readable)};
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
