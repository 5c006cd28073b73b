#include "families.h"

#include <cstdint>

namespace Legacy {
namespace Oru {
namespace Files {

char const* OruTypeText(OruType_t type) noexcept {
    // The families without a printed name (sparse strings, endpoint arrays,
    // rectangle arrays, extended values) print "Invalid", as the model does.
    switch (type) {
        case OruType_t::Undefined:
            return "Undefined";
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
        case OruType_t::Composite:
            return "Composite";
        case OruType_t::Collection:
            return "Collection";
        default:
            return "Invalid";
    }
}

char const* NumericTypeText(NumericType_t type) noexcept {
    static char const* const texts[] = {"Undefined", "U8",  "S8",  "U16",   "S16",   "U32",
                                        "S32",       "U64", "S64", "Float", "Double"};
    auto const value = static_cast<std::uint32_t>(type);
    return value < sizeof(texts) / sizeof(texts[0]) ? texts[value] : "Invalid";
}

std::string BracketedTypeText(OruType_t type, NumericType_t numericType) {
    std::string text = OruTypeText(type);
    text += '(';
    text += NumericTypeText(numericType);
    text += ')';
    return text;
}

namespace {

template <class InfoT>
InfoBase* Create() {
    return new InfoT(0, std::string(), Permission_t());
}

InfoBase* CreateEnum() {
    return new EnumInfo(0, std::string(), Permission_t(), false);
}

template <class InfoT>
Family Plain(char const* name) {
    InfoT const probe(0, std::string(), Permission_t());
    return Family{name, probe.GetType(), NumericType_t::Undefined, &Create<InfoT>};
}

template <template <class> class InfoT, class T>
Family Numeric(char const* family) {
    InfoT<T> const probe(0, std::string(), Permission_t());
    return Family{std::string(family) + ":" + NumericTypeText(T::k_numericType), probe.GetType(),
                  T::k_numericType, &Create<InfoT<T>>};
}

template <template <class> class InfoT>
void AddNumeric(std::vector<Family>& families, char const* family) {
#define ORU_FILES_ADD(T) families.push_back(Numeric<InfoT, T>(family));
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_FILES_ADD)
#undef ORU_FILES_ADD
}

template <template <class> class InfoT>
void AddGeometry(std::vector<Family>& families, char const* family) {
#define ORU_FILES_ADD(T) families.push_back(Numeric<InfoT, T>(family));
    LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(ORU_FILES_ADD)
#undef ORU_FILES_ADD
}

std::vector<Family> MakeFamilies() {
    std::vector<Family> families;
    families.push_back(Plain<BoolInfo>("Bool"));
    AddNumeric<NumericInfo>(families, "Numeric");
    AddNumeric<NumericArrayInfo>(families, "NumericArray");
    AddNumeric<NumericSparseInfo>(families, "NumericSparse");
    families.push_back(Family{"Enum", OruType_t::Enum, NumericType_t::Undefined, &CreateEnum});
    families.push_back(Plain<StringInfo>("String"));
    families.push_back(Plain<StringArrayInfo>("StringArray"));
    families.push_back(Plain<BoolArrayInfo>("BoolArray"));
    families.push_back(Plain<StringSparseInfo>("StringSparse"));
    families.push_back(Plain<ColourInfo>("Colour"));
    AddGeometry<CoordinateInfo>(families, "Coordinate");
    AddGeometry<RectInfo>(families, "Rectangle");
    families.push_back(Plain<AddrInfo>("Addr"));
    families.push_back(Plain<EndpointInfo>("Endpoint"));
    families.push_back(Plain<AppEndpointInfo>("AppEndpoint"));
    families.push_back(Plain<AppEndpointArrayInfo>("AppEndpointArray"));
    families.push_back(Numeric<RectArrayInfo, U16Traits>("RectArray"));
    families.push_back(Plain<CompositeInfo>("Composite"));
    // No serial form, but an Info class each.
    families.push_back(Plain<CollectionInfo>("Collection"));
    families.push_back(Plain<ExtendedInfo>("Extended"));
    families.push_back(Plain<LocalizedStringInfo>("LocalizedString"));
    return families;
}

}  // namespace

std::vector<Family> const& Families() {
    static std::vector<Family> const families = MakeFamilies();
    return families;
}

Family const* FindFamily(std::string const& name) {
    for (Family const& family : Families()) {
        if (family.name == name) {
            return &family;
        }
    }
    return nullptr;
}

Family const* FamilyOf(InfoBase const& info) {
    OruType_t const type = info.GetType();
    NumericType_t const numericType = info.GetNumericType();
    for (Family const& family : Families()) {
        if (family.type == type && family.numericType == numericType) {
            return &family;
        }
    }
    return nullptr;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
