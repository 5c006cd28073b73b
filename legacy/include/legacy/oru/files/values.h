// Values files: a device's values as JSON, one member per setting path.
//
//   {"Audio/Input/Gain": 72, "Device/Name": "cam-1"}
//
// Each family has a natural JSON form (numbers, true/false, strings, arrays,
// URI text, small objects), listed in docs/settings-files.md.
//
// One thread at a time per directory, as the directory's own rule says.
#ifndef LEGACY_ORU_FILES_VALUES_H
#define LEGACY_ORU_FILES_VALUES_H

#include <cstddef>
#include <string>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/files/problem.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/infoitemdirectory.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {
namespace Files {

enum class Apply {
    // The values that pass are applied; the others are reported.
    Passing,
    // Nothing is applied when any value fails.
    AllOrNothing,
    // Every value is read and checked, and nothing is applied: a dry run.
    Nothing,
};

struct ORU_API ValuesReport {
    // Every value that could not be read or failed Check, each with its
    // setting's path (pointer and path) and the reason.
    Problems problems;
    // How many settings were set (none for Apply::Nothing).
    std::size_t applied = 0;
};

// Reads the values in json for the settings of directory, checks each with
// Check, and applies those that pass as one change set, so that observers
// see ItemChanged_ for each.
ORU_API ValuesReport ReadValues(std::string const& json, InfoItemDirectory& directory,
                                Apply mode = Apply::Passing);

// The present values of every setting in directory that has one. A setting
// whose value cannot be written is left out: one of a family without a value
// form, and one whose serial record could not hold the value (see RecordLimit).
ORU_API std::string WriteValues(InfoItemDirectory const& directory);

// The same, and each setting left out is reported in problems with its path
// as pointer and the reason.
ORU_API std::string WriteValues(InfoItemDirectory const& directory, Problems& problems);

// One value in its JSON form, read for info: a new Item with the Info's id,
// not yet checked; null with the problems added (their pointers start with
// pointer) when the value cannot be read.
ORU_API boost::intrusive_ptr<ItemBase> ReadValue(std::string const& json, InfoBase const& info,
                                                 Problems& problems,
                                                 std::string const& pointer = "");

// The JSON form of one Item's value.
ORU_API std::string WriteValue(ItemBase const& item);

// The same, in the form a values file gives the setting of info: an
// enumeration by its entry's name, as WriteValues writes it.
ORU_API std::string WriteValue(ItemBase const& item, InfoBase const& info);

// Why the serial record of item could not hold its value, in words ("a
// composite record holds at most 65535 children, this one has 65537"); empty
// when it can. The model writes such a record all the same (a composite's
// count keeps its low 16 bits, a size past 4 GiB wraps), and it reads back as
// another value, so the readers and writers of values files refuse it.
ORU_API std::string RecordLimit(ItemBase const& item);

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
