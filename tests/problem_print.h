// Problems of the settings-file readers print as their pointer, message and path in
// failure messages; a message is cut at 300 characters, since some quote
// megabytes of input.
#ifndef ORU_TESTS_PROBLEM_PRINT_H
#define ORU_TESTS_PROBLEM_PRINT_H

#include <ostream>

#include <legacy/oru/files/problem.h>

namespace Legacy {
namespace Oru {
namespace Files {

inline void PrintTo(Problem const& problem, std::ostream* out) {
    *out << "{\"" << problem.pointer << "\", \"" << problem.message.substr(0, 300) << "\"";
    if (!problem.path.empty()) {
        *out << ", \"" << problem.path.substr(0, 300) << "\"";
    }
    *out << "}";
}

// The problems without their setting's paths, for tests about where and what.
inline Problems Unpathed(Problems problems) {
    for (Problem& problem : problems) {
        problem.path.clear();
    }
    return problems;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
