// What the commands share to work with settings files: loading a
// description into a directory, and naming a setting by its path.
#ifndef ORU_TOOL_DESCRIBED_H
#define ORU_TOOL_DESCRIBED_H

#include <iosfwd>
#include <string>

#include <legacy/oru/files/problem.h>
#include <legacy/oru/infoitemdirectory.h>

namespace OruTool {

// Reads the description in FILE into directory; false after one line per
// problem on err, each led by "oru COMMAND: FILE".
bool LoadDescription(std::string const& command, std::string const& file,
                     Legacy::Oru::InfoItemDirectory& directory, std::ostream& err);

// "Audio/Input/Gain" for the id of a setting of directory; empty if it has none.
std::string SettingPath(Legacy::Oru::InfoItemDirectory const& directory, unsigned int id);

// The setting's path in a values file's problem ("/Audio~1Input~1Gain/2" gives
// "Audio/Input/Gain"), and where inside the value it lies ("/2"; may be empty).
void SplitPointer(std::string const& pointer, std::string& path, std::string& inside);

}  // namespace OruTool

#endif
