// Check: the one rule of whether a value is acceptable for a setting. Every
// reader, writer and explainer of settings (values and description files, the
// oru program, the service, Python) asks it; none decides on its own.
//
// A value passes when
//   - the model's Validate passes it, where that check decides;
//   - the files layer's rule passes it where the model is silent or refuses
//     every value (sparse tables, geometry, disabled enumeration entries, the
//     sizes of rectangle and endpoint arrays, colour bounds);
//   - it survives its own forms: its serial record (Serialize, then
//     Deserialize) and its values-file text (WriteValue, then ReadValue) give
//     the same value back, and the record can hold it (RecordLimit).
// The rule of each family is in docs/settings-files.md.
//
// Reads item and info only; several threads may check at once if nobody
// writes them.
#ifndef LEGACY_ORU_FILES_CHECK_H
#define LEGACY_ORU_FILES_CHECK_H

#include <string>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/files/problem.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {
namespace Files {

// Every problem of item as a value of info; empty when it passes. Each
// problem's pointer starts with pointer and names the element at fault
// ("/Overlay~1PrivacyMasks/3/right"); its message names the bound
// ("4000 is above the maximum 3840"). The path of the problems is left empty
// for the caller that knows the setting.
ORU_API Problems Check(ItemBase const& item, boost::intrusive_ptr<InfoBase const> const& info,
                       std::string const& pointer = "");

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
