// Problem: one thing wrong with a settings file, or with one value in it:
// where it is, as a JSON pointer into the file ("/settings/3/max"; empty for
// the file as a whole), the setting it concerns, and what is wrong, in words.
//
// Plain values; any thread.
#ifndef LEGACY_ORU_FILES_PROBLEM_H
#define LEGACY_ORU_FILES_PROBLEM_H

#include <string>
#include <utility>
#include <vector>

#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {
namespace Files {

struct ORU_API Problem {
    Problem() = default;
    Problem(std::string pointer_, std::string message_, std::string path_ = std::string())
        : pointer(std::move(pointer_)), message(std::move(message_)), path(std::move(path_)) {}

    std::string pointer;
    std::string message;
    // The path of the setting the problem concerns ("Audio/Input/Gain"); empty
    // when it concerns no one setting.
    std::string path;

    bool operator==(Problem const& other) const {
        return pointer == other.pointer && message == other.message && path == other.path;
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
