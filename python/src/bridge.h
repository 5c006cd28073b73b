// The module's calls into the files layer that the layer's own API may
// answer more directly in time, each in one place: family names, the dry
// run of a change set, and where a problem lies.
#ifndef ORU_PYTHON_BRIDGE_H
#define ORU_PYTHON_BRIDGE_H

#include <string>

#include <legacy/oru/files/problem.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/infoitemdirectory.h>
#include <legacy/oru/itembase.h>

namespace OruPython {

namespace Files = Legacy::Oru::Files;

// The family of an Info or Item as descriptions name it ("Numeric:U32").
std::string FamilyOf(Legacy::Oru::InfoBase const& info);
std::string FamilyOf(Legacy::Oru::ItemBase const& item);

// True for the families whose values hold floats ("Numeric:Float", "Colour").
bool HoldsFloats(std::string const& family);

// The problems the values in json would meet in directory; nothing applied.
Files::Problems DryRun(std::string const& json, Legacy::Oru::InfoItemDirectory& directory);

// The setting path a problem of a values file is about; empty for the file.
std::string PathOf(Files::Problem const& problem);

}  // namespace OruPython

#endif
