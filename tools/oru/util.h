// Small text helpers shared by the commands: ids and quoting.
#ifndef ORU_TOOL_UTIL_H
#define ORU_TOOL_UTIL_H

#include <cstdint>
#include <string>

namespace OruTool {

// "0x420C0005".
std::string HexId(std::uint32_t value);

// Reads decimal or 0x-hex, nothing else: no sign, no spaces, no suffix. On
// failure problem says why in a few words.
bool ParseId(std::string const& text, std::uint32_t& value, std::string& problem);

// The argument as it goes into a one-line message: quoted, control
// characters shown as '?', a long one cut short.
std::string Quote(std::string const& text);

// The whole of FILE ("-" is standard input); false with a reason if it
// cannot be read (a directory, a missing file, a read error).
bool ReadInput(std::string const& file, std::string& input, std::string& problem);

// text, closed by a newline if it is not already.
std::string WithNewline(std::string text);

// The info field of a packed id of that depth.
inline std::uint32_t RawInfoField(std::uint32_t raw, std::size_t depth) {
    return raw & ((1u << (30 - 6 * depth)) - 1u);
}

}  // namespace OruTool

#endif
