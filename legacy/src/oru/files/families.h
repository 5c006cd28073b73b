// The family vocabulary of settings files: the texts of the type words, and
// the table of the families a description may name, each with its Info class.
#ifndef LEGACY_ORU_FILES_SRC_FAMILIES_H
#define LEGACY_ORU_FILES_SRC_FAMILIES_H

#include <string>

#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {
namespace Files {

// "Numeric", "Bool", "Invalid" for the families that print no name.
char const* OruTypeText(OruType_t type) noexcept;

// "U32", "Undefined", "Invalid" beyond the table.
char const* NumericTypeText(NumericType_t type) noexcept;

// "Numeric(U32)", "Bool(Undefined)": the type text of check messages.
std::string BracketedTypeText(OruType_t type, NumericType_t numericType);

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
