#include "registry.h"

#include <legacy/oru/addr.h>
#include <legacy/oru/bool.h>
#include <legacy/oru/collection.h>
#include <legacy/oru/colour.h>
#include <legacy/oru/composite.h>
#include <legacy/oru/coordinate.h>
#include <legacy/oru/enum.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/numericarray.h>
#include <legacy/oru/numericsparse.h>
#include <legacy/oru/rectarray.h>
#include <legacy/oru/stringarray.h>
#include <legacy/oru/stringvalue.h>

#include "typetext.h"

namespace Legacy {
namespace Oru {
namespace Registry {

namespace {

template <class I>
ItemBase* Make(unsigned int id) {
    return new I(id);
}

constexpr NumericType_t k_none = NumericType_t::Undefined;

// A row whose class reads its records. The bytes are written out rather than
// taken from GetTypeStatic(), which is not constexpr; the dispatch test checks
// that each class made answers the bytes of its row.
template <class I>
constexpr Row Reads(OruType_t type, char const* family, NumericType_t element = k_none) {
    return Row{type, element, Record::Read, &Make<I>, family};
}

#define ORU_NUMERIC_ROW(T) Reads<NumericItem<T>>(OruType_t::Numeric, "Numeric", T::k_numericType),
#define ORU_ARRAY_ROW(T) \
    Reads<NumericArrayItem<T>>(OruType_t::NumericArray, "NumericArray", T::k_numericType),
#define ORU_SPARSE_ROW(T) \
    Reads<NumericSparseItem<T>>(OruType_t::NumericSparse, "NumericSparse", T::k_numericType),
#define ORU_COORDINATE_ROW(T) \
    Reads<CoordinateItem<T>>(OruType_t::Coordinate, "Coordinate", T::k_numericType),
#define ORU_RECTANGLE_ROW(T) \
    Reads<RectItem<T>>(OruType_t::Rectangle, "Rectangle", T::k_numericType),

}  // namespace

// clang-format off
constexpr Row k_rows[] = {
    Reads<BoolItem>(OruType_t::Bool, "Bool"),
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_NUMERIC_ROW)
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_ARRAY_ROW)
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_SPARSE_ROW)
    Reads<EnumItem>(OruType_t::Enum, "Enum"),
    Reads<StringItem>(OruType_t::String, "String"),
    Reads<StringArrayItem>(OruType_t::StringArray, "StringArray"),
    Reads<BoolArrayItem>(OruType_t::BoolArray, "BoolArray"),
    Reads<StringSparseItem>(OruType_t::StringSparse, "StringSparse"),
    Reads<ColourItem>(OruType_t::Colour, "Colour"),
    LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(ORU_COORDINATE_ROW)
    LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(ORU_RECTANGLE_ROW)
    Reads<OrientationItem>(OruType_t::Orientation, "Orientation"),
    Reads<AddrItem>(OruType_t::Addr, "Addr"),
    // Localized strings have a class, but no record reads into one.
    Row{OruType_t::LocalizedString, k_none, Record::None, nullptr, "LocalizedString"},
    Reads<EndpointItem>(OruType_t::Endpoint, "Endpoint"),
    Reads<AppEndpointItem>(OruType_t::AppEndpoint, "AppEndpoint"),
    Reads<AppEndpointArrayItem>(OruType_t::AppEndpointArray, "AppEndpointArray"),
    // Rectangle arrays exist for 16-bit corners only.
    Reads<RectArrayItem<U16Traits>>(OruType_t::RectArray, "RectArray", NumericType_t::U16),
    // Extended values live only in memory.
    Row{OruType_t::Extended, k_none, Record::None, nullptr, "Extended"},
    Reads<CompositeItem>(OruType_t::Composite, "Composite"),
    // A collection has a row so that its record is recognised, yet it reads nothing.
    Row{OruType_t::Collection, k_none, Record::Refused, &Make<CollectionItem>, "Collection"},
};
// clang-format on

#undef ORU_NUMERIC_ROW
#undef ORU_ARRAY_ROW
#undef ORU_SPARSE_ROW
#undef ORU_COORDINATE_ROW
#undef ORU_RECTANGLE_ROW

namespace {

constexpr std::size_t k_rowCount = sizeof(k_rows) / sizeof(k_rows[0]);
static_assert(k_rowCount < k_noRow, "a row's number fits a byte");

constexpr RowIndex MakeIndex() {
    RowIndex index{};
    for (auto& line : index.row) {
        for (std::uint8_t& cell : line) {
            cell = k_noRow;
        }
    }
    for (std::size_t i = 0; i < k_rowCount; ++i) {
        auto const type = static_cast<std::uint32_t>(k_rows[i].type);
        auto const element = static_cast<std::uint32_t>(k_rows[i].numericType);
        for (std::size_t column = 0; column < k_elementColumns; ++column) {
            if (element == 0 || column == element) {
                // Two rows for one pair of bytes make this a compile error.
                index.row[type][column] = index.row[type][column] == k_noRow
                                              ? static_cast<std::uint8_t>(i)
                                              : throw "two rows for one pair of type bytes";
            }
        }
    }
    return index;
}

}  // namespace

constexpr RowIndex k_rowIndex = MakeIndex();

Rows All() noexcept {
    return Rows(k_rows, k_rowCount);
}

std::string Name(Row const& row) {
    std::string name = row.family;
    if (row.numericType != NumericType_t::Undefined) {
        name += ':';
        name += NumericTypeText(row.numericType);
    }
    return name;
}

}  // namespace Registry
}  // namespace Oru
}  // namespace Legacy
