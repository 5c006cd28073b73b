// The sample device of oru demo, describe and demo --values: one setting of
// every family with a serial form, each Info with bounds and a default, each
// Item holding a value (one of them beyond its Info's maximum, to be refused).
#ifndef ORU_TOOL_SAMPLE_H
#define ORU_TOOL_SAMPLE_H

#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/infobase.h>
#include <legacy/oru/infoitemdirectory.h>
#include <legacy/oru/itembase.h>

namespace OruTool {

// One setting of the sample device: its Info, and an Item set to a value.
struct Setting {
    boost::intrusive_ptr<Legacy::Oru::InfoBase> info;
    boost::intrusive_ptr<Legacy::Oru::ItemBase> item;
    std::string name;  // for a family without an Info class
};

// The setting's name: its path ("Audio/Input/Gain").
std::string NameOf(Setting const& setting);

// The settings of the sample device, under ids of their own.
std::vector<Setting> SampleSettings();

// The sample device in a directory: each setting that has an Info under its
// path's section, its Info renamed to the last level, with its value set.
void SampleDirectory(Legacy::Oru::InfoItemDirectory& directory);

}  // namespace OruTool

#endif
