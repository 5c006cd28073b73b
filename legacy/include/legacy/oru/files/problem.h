// Problem: one thing wrong with a settings file, or with one value in it:
// where it is, as a JSON pointer into the file ("/settings/3/max"; empty for
// the file as a whole), and what is wrong, in words.
//
// Plain values; any thread.
#ifndef LEGACY_ORU_FILES_PROBLEM_H
#define LEGACY_ORU_FILES_PROBLEM_H

#include <string>
#include <vector>

#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {
namespace Files {

struct ORU_API Problem {
    std::string pointer;
    std::string message;

    bool operator==(Problem const& other) const {
        return pointer == other.pointer && message == other.message;
    }
    bool operator!=(Problem const& other) const { return !(*this == other); }
};

using Problems = std::vector<Problem>;

// "/settings/3/max: max is below min", or the message alone for the whole file.
ORU_API std::string ToString(Problem const& problem);

// A JSON pointer token for a member name: "~" becomes "~0" and "/" "~1", so
// "Audio/Input/Gain" becomes "Audio~1Input~1Gain".
ORU_API std::string PointerToken(std::string const& name);

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
