// Which Item classes read records: one row per family of the catalogue, with
// the factory that makes its Item and the family word the oru program prints.
// Built at compile time from the catalogue's one list; it sits above every
// family in the include graph, so that the base of all Items does not.
// ItemBase::Deserialize dispatches through it; the tests read it.
//
// Threads: the table is constant; any thread may read it at any time.
#ifndef LEGACY_ORU_SRC_REGISTRY_H
#define LEGACY_ORU_SRC_REGISTRY_H

#include <cstddef>
#include <cstdint>
#include <string>

#include <legacy/oru/catalogue.h>
#include <legacy/oru/export.h>
#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {

class ItemBase;

namespace Registry {

// What a record with the row's type bytes turns into.
using Record = Catalogue::Record;

struct Row {
    OruType_t type;
    // Undefined for a family without an element type: such a family ignores
    // the record's element byte here and refuses a wrong one when it reads.
    NumericType_t numericType;
    Record record;
    // A new Item of the class with that id and its default value; null where
    // the record is None.
    ItemBase* (*makeItem)(unsigned int id);
    // "Numeric", as the program prints it before ":U32".
    char const* family;
};

// Every row, by type byte, then by element type.
class Rows {
public:
    Rows(Row const* begin, std::size_t size) noexcept : begin_(begin), size_(size) {}
    Row const* begin() const noexcept { return begin_; }
    Row const* end() const noexcept { return begin_ + size_; }
    std::size_t size() const noexcept { return size_; }

private:
    Row const* begin_;
    std::size_t size_;
};

ORU_API Rows All() noexcept;

// The table behind Find, in registry.cpp: row numbers by type byte and
// element byte (0 to 10; a family without an element type fills its whole
// line, and column 0 also answers element bytes above 10).
constexpr std::size_t k_elementColumns = 11;
constexpr std::uint8_t k_noRow = 0xFF;
constexpr std::size_t k_rowCount = Catalogue::All::size;
struct RowIndex {
    std::uint8_t row[256][k_elementColumns];
};
struct RowTable {
    Row row[k_rowCount];
};
// Exported, so that the tests' copy of Find reads the library's one table.
extern ORU_API RowTable const k_rows;
extern ORU_API RowIndex const k_rowIndex;

// The row of a record with these two type bytes, or null where no class has
// them. Inline and constant time: every record read, a composite's children
// included, is dispatched here.
inline Row const* Find(std::uint8_t type, std::uint8_t numericType) noexcept {
    std::uint8_t const i = k_rowIndex.row[type][numericType < k_elementColumns ? numericType : 0];
    return i == k_noRow ? nullptr : &k_rows.row[i];
}

// "Numeric:U32" for a row with an element type, "Bool" for one without.
ORU_API std::string Name(Row const& row);

}  // namespace Registry
}  // namespace Oru
}  // namespace Legacy

#endif
