// Description files: the sections and Infos of a directory as JSON.
//
//   {"settings": [{"path": "Audio/Input/Gain", "type": "Numeric:U32",
//                  "min": 0, "max": 100, "default": 50, "permission": 3}]}
//
// "type" is a family name as `oru encode --families` prints it; every other
// key is the Info's setter without "Set", in lower camel case. The format of
// every family is in docs/settings-files.md.
//
// One thread at a time per directory, as the directory's own rule says.
#ifndef LEGACY_ORU_FILES_DESCRIPTION_H
#define LEGACY_ORU_FILES_DESCRIPTION_H

#include <string>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/files/problem.h>
#include <legacy/oru/infoitemdirectory.h>

namespace Legacy {
namespace Oru {
namespace Files {

// Adds the sections and Infos that json describes to directory. All or
// nothing: when anything is wrong the directory is left as it was and every
// problem found is answered; an empty answer means all was added.
ORU_API Problems ReadDescription(std::string const& json, InfoItemDirectory& directory);

// The description of every Info in directory, in the order of their ids.
ORU_API std::string WriteDescription(InfoItemDirectory const& directory);

// The family names a description may use, as `oru encode --families` prints them.
ORU_API std::vector<std::string> DescribedFamilies();

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
