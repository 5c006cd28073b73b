#include <legacy/oru/files/explain.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <legacy/oru/catalogue.h>
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
    auto const* const arrayInfo = Catalogue::As<InfoT>(info);
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
    auto const* const numericInfo = Catalogue::As<NumericInfo<T>>(info);
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

std::optional<Failure> CompositeFailure(CompositeItem const& item, InfoBase const* info) {
    auto const* const compositeInfo = Catalogue::As<CompositeInfo>(info);
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
    auto const* const boolInfo = Catalogue::As<BoolInfo>(info);
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
    auto const* const enumInfo = Catalogue::As<EnumInfo>(info);
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
    auto const* const stringInfo = Catalogue::As<StringInfo>(info);
    if (!stringInfo) {
        return TypeMismatch(item, info);
    }
    if (item.GetVal().size() <= stringInfo->GetMaxLength()) {
        return std::nullopt;
    }
    return Compose("TypesSystemStringValidationLength",
                   {stringInfo->GetName(), Text(stringInfo->GetMaxLength())});
}

// The failing check's composition for each class the model checks; every
// other family passes every check.
template <class I>
std::optional<Failure> FailureOf(I const&, InfoBase const*) {
    return std::nullopt;
}
template <class T>
std::optional<Failure> FailureOf(NumericItem<T> const& item, InfoBase const* info) {
    return NumericFailure<T>(item, info);
}
template <class T>
std::optional<Failure> FailureOf(NumericArrayItem<T> const& item, InfoBase const* info) {
    return SizeFailure<NumericArrayInfo<T>>(item, info, item.GetSize(),
                                            "TypesSystemNumericArrayValidationMinSize",
                                            "TypesSystemNumericArrayValidationMaxSize");
}
// The model refuses every value of these families.
template <class T>
std::optional<Failure> FailureOf(NumericSparseItem<T> const& item, InfoBase const* info) {
    return Illegal(item, info);
}
template <class T>
std::optional<Failure> FailureOf(CoordinateItem<T> const& item, InfoBase const* info) {
    return Illegal(item, info);
}
template <class T>
std::optional<Failure> FailureOf(RectItem<T> const& item, InfoBase const* info) {
    return Illegal(item, info);
}
template <class T>
std::optional<Failure> FailureOf(RectArrayItem<T> const& item, InfoBase const* info) {
    return Illegal(item, info);
}
std::optional<Failure> FailureOf(BoolItem const& item, InfoBase const* info) {
    return BoolFailure(item, info);
}
std::optional<Failure> FailureOf(BoolArrayItem const& item, InfoBase const* info) {
    // One key for both bounds, as the check writes it.
    return SizeFailure<BoolArrayInfo>(item, info, item.GetSize(), "BoolArrayValidationMinSize",
                                      "BoolArrayValidationMinSize");
}
std::optional<Failure> FailureOf(StringArrayItem const& item, InfoBase const* info) {
    return SizeFailure<StringArrayInfo>(item, info, item.GetSize(),
                                        "TypesSystemStringArrayValidationMinSize",
                                        "TypesSystemStringArrayValidationMaxSize");
}
std::optional<Failure> FailureOf(EnumItem const& item, InfoBase const* info) {
    return EnumFailure(item, info);
}
std::optional<Failure> FailureOf(StringItem const& item, InfoBase const* info) {
    return StringFailure(item, info);
}
std::optional<Failure> FailureOf(CompositeItem const& item, InfoBase const* info) {
    return CompositeFailure(item, info);
}
std::optional<Failure> FailureOf(ExtendedItem const& item, InfoBase const* info) {
    if (!Catalogue::As<ExtendedInfo>(info)) {
        return TypeMismatch(item, info);
    }
    return std::nullopt;
}

std::optional<Failure> Derive(ItemBase const& item, InfoBase const* info) {
    std::optional<Failure> out;
    Catalogue::VisitItem(item, [&](auto const& concrete) { out = FailureOf(concrete, info); });
    return out;
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
