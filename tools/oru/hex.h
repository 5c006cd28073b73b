// Hexadecimal text of bytes and of serial records, as the program prints them.
#ifndef ORU_TOOL_HEX_H
#define ORU_TOOL_HEX_H

#include <cstddef>
#include <string>
#include <vector>

#include <legacy/oru/itembase.h>

namespace OruTool {

// "0A 1B 2C": upper-case pairs separated by blanks.
std::string HexBytes(unsigned char const* bytes, std::size_t count);

// The record laid flat: ten header bytes, then the payload.
std::vector<unsigned char> FlatRecord(Legacy::Oru::ItemBase::SerialStruct_t const& record);

// "header | payload" of a record laid flat, each part as HexBytes writes it.
std::string FlatRecordHex(std::vector<unsigned char> const& flat);

}  // namespace OruTool

#endif
