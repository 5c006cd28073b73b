// Reading a value for `oru encode` so that the record written holds exactly
// what the user typed: the words are put into the form the family reads,
// every number is checked against the element's range before the library
// sees it (the library wraps 300 into a U8 as 44), the whole text must be
// read, and the record must read back to the same value.
#ifndef ORU_TOOL_VALUES_H
#define ORU_TOOL_VALUES_H

#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/itembase.h>

#include "families.h"

namespace OruTool {

// Makes an Item of the family under id holding the value of the words;
// false with a one-line reason otherwise.
bool ReadValue(Family const& family, unsigned int id, std::vector<std::string> const& words,
               boost::intrusive_ptr<Legacy::Oru::ItemBase>& item, std::string& problem);

// Whether the serial form can hold the item: a composite's count has 16
// bits and every size field 32. False with the reason otherwise.
bool FitsRecord(Legacy::Oru::ItemBase const& item, std::string& problem);

// Writes the record of item and reads it back; false with the reason when
// the value read back differs from the item's, as lossy wire mappings do, or
// when decode would print a list of texts that reads as another value.
bool SurvivesRecord(Family const& family, Legacy::Oru::ItemBase const& item,
                    std::string const& typed, std::string& problem);

// "0 to 255": the range of the family's numbers; empty if it has none.
std::string RangeText(Family const& family);

}  // namespace OruTool

#endif
