// The catalogue of families: every concrete Info and Item class of the model,
// once, with the type bytes of its records, its family name as the oru
// program prints it ("Numeric:U32") and its factories. Code above the model
// (settings files, the program, the service, Python, tests) asks it instead of
// keeping a list of its own, in two ways:
//
//   - at compile time, as overload sets: ForEachFamily calls a function once
//     per family with a Tag that names its Info and Item classes;
//     VisitFamily, VisitInfo and VisitItem call it for one family, chosen by
//     the type bytes (no dynamic_cast);
//   - at run time, as rows: Families(), FindFamily(name), FindFamily(type,
//     numericType), for code that needs the names.
//
// A class that answers a family's type bytes from GetType and GetNumericType
// is that family's class, or derives from it: the visits rely on it.
//
// Threads: the table is constant once built; any thread may read it.
#ifndef LEGACY_ORU_CATALOGUE_H
#define LEGACY_ORU_CATALOGUE_H

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <legacy/oru/addr.h>
#include <legacy/oru/bool.h>
#include <legacy/oru/collection.h>
#include <legacy/oru/colour.h>
#include <legacy/oru/composite.h>
#include <legacy/oru/coordinate.h>
#include <legacy/oru/enum.h>
#include <legacy/oru/export.h>
#include <legacy/oru/extended.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/localizedstring.h>
#include <legacy/oru/localizedstringvalue.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/numericarray.h>
#include <legacy/oru/numericsparse.h>
#include <legacy/oru/rectarray.h>
#include <legacy/oru/stringarray.h>
#include <legacy/oru/stringvalue.h>
#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {
namespace Catalogue {

// What a serial record with the family's type bytes turns into.
enum class Record : std::uint8_t {
    // The Item class writes such records and reads them back.
    Read,
    // The Item is made, then refuses the record (-26): it has no serial form.
    Refused,
    // No record reads into the class (-41).
    None,
};

// The Info of a family that has none (orientations: their Items are checked
// against nothing).
struct NoInfo;

// "Numeric" for the numeric family; the word before ":U32" in a family name.
constexpr char const* FamilyWord(OruType_t type) noexcept {
    switch (type) {
        case OruType_t::Bool:
            return "Bool";
        case OruType_t::Numeric:
            return "Numeric";
        case OruType_t::NumericArray:
            return "NumericArray";
        case OruType_t::NumericSparse:
            return "NumericSparse";
        case OruType_t::Enum:
            return "Enum";
        case OruType_t::String:
            return "String";
        case OruType_t::StringArray:
            return "StringArray";
        case OruType_t::BoolArray:
            return "BoolArray";
        case OruType_t::StringSparse:
            return "StringSparse";
        case OruType_t::Colour:
            return "Colour";
        case OruType_t::Coordinate:
            return "Coordinate";
        case OruType_t::Rectangle:
            return "Rectangle";
        case OruType_t::Orientation:
            return "Orientation";
        case OruType_t::Addr:
            return "Addr";
        case OruType_t::LocalizedString:
            return "LocalizedString";
        case OruType_t::Endpoint:
            return "Endpoint";
        case OruType_t::AppEndpoint:
            return "AppEndpoint";
        case OruType_t::Connection:
            return "Connection";
        case OruType_t::AppEndpointArray:
            return "AppEndpointArray";
        case OruType_t::RectArray:
            return "RectArray";
        case OruType_t::Extended:
            return "Extended";
        case OruType_t::Composite:
            return "Composite";
        case OruType_t::Collection:
            return "Collection";
        case OruType_t::Undefined:
            break;
    }
    return "Undefined";
}

// "U32" for an element type, "" for Undefined (a family without one).
constexpr char const* ElementWord(NumericType_t type) noexcept {
    switch (type) {
        case NumericType_t::U8:
            return "U8";
        case NumericType_t::S8:
            return "S8";
        case NumericType_t::U16:
            return "U16";
        case NumericType_t::S16:
            return "S16";
        case NumericType_t::U32:
            return "U32";
        case NumericType_t::S32:
            return "S32";
        case NumericType_t::U64:
            return "U64";
        case NumericType_t::S64:
            return "S64";
        case NumericType_t::Float:
            return "Float";
        case NumericType_t::Double:
            return "Double";
        case NumericType_t::Undefined:
            break;
    }
    return "";
}

// One family at compile time: its classes and type bytes. Info is NoInfo
// where the family has no Info class.
template <class InfoT, class ItemT, OruType_t Type, NumericType_t Element, Record Form>
struct Tag {
    using Info = InfoT;
    using Item = ItemT;
    static constexpr OruType_t type = Type;
    // Undefined for a family without an element type.
    static constexpr NumericType_t numericType = Element;
    static constexpr Record record = Form;
    static constexpr bool hasInfo = !std::is_same<InfoT, NoInfo>::value;
    // "Numeric" (without the element type).
    static constexpr char const* familyWord = FamilyWord(Type);
};

template <class... Tags>
struct List {
    static constexpr std::size_t size = sizeof...(Tags);
};

namespace Detail {

template <class... Lists>
struct Concat;
template <class... A>
struct Concat<List<A...>> {
    using Type = List<A...>;
};
template <class... A, class... B, class... Rest>
struct Concat<List<A...>, List<B...>, Rest...> {
    using Type = typename Concat<List<A..., B...>, Rest...>::Type;
};

template <template <class> class InfoT, template <class> class ItemT, OruType_t Type, class... Ts>
using PerElement = List<Tag<InfoT<Ts>, ItemT<Ts>, Type, Ts::k_numericType, Record::Read>...>;

template <template <class> class InfoT, template <class> class ItemT, OruType_t Type>
using Numerics = PerElement<InfoT, ItemT, Type, U8Traits, S8Traits, U16Traits, S16Traits, U32Traits,
                            S32Traits, U64Traits, S64Traits, FloatTraits, DoubleTraits>;

template <template <class> class InfoT, template <class> class ItemT, OruType_t Type>
using Geometries = PerElement<InfoT, ItemT, Type, U16Traits, S32Traits, FloatTraits>;

template <class InfoT, class ItemT, OruType_t Type, Record Form = Record::Read>
using Plain = List<Tag<InfoT, ItemT, Type, NumericType_t::Undefined, Form>>;

}  // namespace Detail

// Every family, by type byte, then by element type: the one list. The
// registry that ItemBase::Deserialize dispatches through is built from it.
using All = typename Detail::Concat<
    Detail::Plain<BoolInfo, BoolItem, OruType_t::Bool>,
    Detail::Numerics<NumericInfo, NumericItem, OruType_t::Numeric>,
    Detail::Numerics<NumericArrayInfo, NumericArrayItem, OruType_t::NumericArray>,
    Detail::Numerics<NumericSparseInfo, NumericSparseItem, OruType_t::NumericSparse>,
    Detail::Plain<EnumInfo, EnumItem, OruType_t::Enum>,
    Detail::Plain<StringInfo, StringItem, OruType_t::String>,
    Detail::Plain<StringArrayInfo, StringArrayItem, OruType_t::StringArray>,
    Detail::Plain<BoolArrayInfo, BoolArrayItem, OruType_t::BoolArray>,
    Detail::Plain<StringSparseInfo, StringSparseItem, OruType_t::StringSparse>,
    Detail::Plain<ColourInfo, ColourItem, OruType_t::Colour>,
    Detail::Geometries<CoordinateInfo, CoordinateItem, OruType_t::Coordinate>,
    Detail::Geometries<RectInfo, RectItem, OruType_t::Rectangle>,
    Detail::Plain<NoInfo, OrientationItem, OruType_t::Orientation>,
    Detail::Plain<AddrInfo, AddrItem, OruType_t::Addr>,
    // Localized strings have classes, but no record reads into one.
    Detail::Plain<LocalizedStringInfo, LocalizedStringItem, OruType_t::LocalizedString,
                  Record::None>,
    Detail::Plain<EndpointInfo, EndpointItem, OruType_t::Endpoint>,
    Detail::Plain<AppEndpointInfo, AppEndpointItem, OruType_t::AppEndpoint>,
    Detail::Plain<AppEndpointArrayInfo, AppEndpointArrayItem, OruType_t::AppEndpointArray>,
    // Rectangle arrays exist for 16-bit corners only.
    List<Tag<RectArrayInfo<U16Traits>, RectArrayItem<U16Traits>, OruType_t::RectArray,
             NumericType_t::U16, Record::Read>>,
    // Extended values live only in memory.
    Detail::Plain<ExtendedInfo, ExtendedItem, OruType_t::Extended, Record::None>,
    Detail::Plain<CompositeInfo, CompositeItem, OruType_t::Composite>,
    // A collection's record is recognised, yet it reads nothing.
    Detail::Plain<CollectionInfo, CollectionItem, OruType_t::Collection, Record::Refused>>::Type;

namespace Detail {

template <class... Tags, class F>
void ForEach(List<Tags...>, F& f) {
    (f(Tags{}), ...);
}

template <class T>
constexpr bool Matches(OruType_t type, NumericType_t numericType) noexcept {
    // A family without an element type answers every element byte, as its
    // records' dispatch does.
    return T::type == type &&
           (T::numericType == NumericType_t::Undefined || T::numericType == numericType);
}

template <class... Tags, class F>
bool VisitOne(List<Tags...>, OruType_t type, NumericType_t numericType, F& f) {
    return ((Matches<Tags>(type, numericType) ? (f(Tags{}), true) : false) || ...);
}

template <class T, class Base, class F>
bool VisitInfoAs(Base& info, F& f) {
    if constexpr (T::hasInfo) {
        using Target = std::conditional_t<std::is_const<Base>::value, typename T::Info const,
                                          typename T::Info>;
        f(static_cast<Target&>(info));
        return true;
    } else {
        (void)info;
        (void)f;
        return false;
    }
}

template <class T, class Base, class F>
bool VisitItemAs(Base& item, F& f) {
    using Target =
        std::conditional_t<std::is_const<Base>::value, typename T::Item const, typename T::Item>;
    f(static_cast<Target&>(item));
    return true;
}

template <class... Tags, class Base, class F>
bool VisitInfo(List<Tags...>, Base& info, OruType_t type, NumericType_t numericType, F& f) {
    return ((Matches<Tags>(type, numericType) ? VisitInfoAs<Tags>(info, f) : false) || ...);
}

template <class... Tags, class Base, class F>
bool VisitItem(List<Tags...>, Base& item, OruType_t type, NumericType_t numericType, F& f) {
    return ((Matches<Tags>(type, numericType) ? VisitItemAs<Tags>(item, f) : false) || ...);
}

}  // namespace Detail

// Calls f(tag) once for every family, in the order of All.
template <class F>
void ForEachFamily(F&& f) {
    Detail::ForEach(All{}, f);
}

// Calls f(tag) for the family of these type bytes; false when no family has
// them (f is not called).
template <class F>
bool VisitFamily(OruType_t type, NumericType_t numericType, F&& f) {
    return Detail::VisitOne(All{}, type, numericType, f);
}

// Calls f(concrete) with info as its own Info class, chosen by its type bytes;
// false for bytes no family with an Info class has. Base is InfoBase or
// InfoBase const.
template <class Base, class F>
std::enable_if_t<std::is_base_of<InfoBase, std::remove_const_t<Base>>::value, bool> VisitInfo(
    Base& info, F&& f) {
    return Detail::VisitInfo(All{}, info, info.GetType(), info.GetNumericType(), f);
}

// The same for an Item and its own Item class.
template <class Base, class F>
std::enable_if_t<std::is_base_of<ItemBase, std::remove_const_t<Base>>::value, bool> VisitItem(
    Base& item, F&& f) {
    return Detail::VisitItem(All{}, item, item.GetType(), item.GetNumericType(), f);
}

namespace Detail {

struct Bytes {
    OruType_t type;
    NumericType_t numericType;
    bool found;
};

// The type bytes of the family whose Info or Item class is C.
template <class C, class... Tags>
constexpr Bytes BytesOf(List<Tags...>) {
    Bytes bytes{OruType_t{}, NumericType_t::Undefined, false};
    ((void)((std::is_same<C, typename Tags::Item>::value ||
             std::is_same<C, typename Tags::Info>::value) &&
            (bytes = Bytes{Tags::type, Tags::numericType, true}, true)),
     ...);
    return bytes;
}

}  // namespace Detail

// object as C, an Info or Item class of the catalogue, when its type bytes
// name C's family; null otherwise (and for null). The checked cast for code
// above the model, in place of dynamic_cast.
template <class C, class Base>
auto As(Base* object) noexcept -> std::conditional_t<std::is_const<Base>::value, C const*, C*> {
    constexpr Detail::Bytes bytes = Detail::BytesOf<C>(All{});
    static_assert(bytes.found, "C is an Info or Item class of the catalogue");
    if (!object || object->GetType() != bytes.type ||
        (bytes.numericType != NumericType_t::Undefined &&
         object->GetNumericType() != bytes.numericType)) {
        return nullptr;
    }
    return static_cast<std::conditional_t<std::is_const<Base>::value, C const*, C*>>(object);
}

// One family at run time.
struct ORU_API Family {
    OruType_t type;
    // Undefined for a family without an element type.
    NumericType_t numericType;
    Record record;
    // "Numeric:U32", or "Bool" for a family without an element type.
    std::string name;
    // "Numeric".
    char const* familyWord;
    // A new Info of the family (count 0; an enumeration's localized flag is
    // false); null where the family has no Info class.
    InfoBase* (*makeInfo)(unsigned int id, std::string const& name, Permission_t const& permission);
    // A new Item of the family with that id and its default value (count 0).
    ItemBase* (*makeItem)(unsigned int id);
};

// Every family, in the order of All.
ORU_API std::vector<Family> const& Families();

// The family of that exact name ("Numeric:U32"), or null.
ORU_API Family const* FindFamily(std::string const& name);

// The family of these type bytes, or null.
ORU_API Family const* FindFamily(OruType_t type, NumericType_t numericType);

// "Numeric:U32" for these type bytes, whether or not a family has them.
ORU_API std::string FamilyName(OruType_t type, NumericType_t numericType);

}  // namespace Catalogue
}  // namespace Oru
}  // namespace Legacy

#endif
