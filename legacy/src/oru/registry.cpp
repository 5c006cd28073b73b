#include "registry.h"

#include <legacy/oru/catalogue.h>

#include "typetext.h"

namespace Legacy {
namespace Oru {
namespace Registry {

namespace {

template <class I>
ItemBase* Make(unsigned int id) {
    return new I(id);
}

template <class T>
constexpr Row RowOf() {
    return Row{T::type, T::numericType, T::record,
               T::record == Record::None ? nullptr : &Make<typename T::Item>, T::familyWord};
}

template <class... Tags>
constexpr RowTable MakeRows(Catalogue::List<Tags...>) {
    return RowTable{{RowOf<Tags>()...}};
}

static_assert(k_rowCount < k_noRow, "a row's number fits a byte");

}  // namespace

constexpr RowTable k_rows = MakeRows(Catalogue::All{});

namespace {

constexpr RowIndex MakeIndex() {
    RowIndex index{};
    for (auto& line : index.row) {
        for (std::uint8_t& cell : line) {
            cell = k_noRow;
        }
    }
    for (std::size_t i = 0; i < k_rowCount; ++i) {
        auto const type = static_cast<std::uint32_t>(k_rows.row[i].type);
        auto const element = static_cast<std::uint32_t>(k_rows.row[i].numericType);
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
    return Rows(k_rows.row, k_rowCount);
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
