#include <legacy/oru/files/problem.h>

namespace Legacy {
namespace Oru {
namespace Files {

std::string ToString(Problem const& problem) {
    if (problem.pointer.empty()) {
        return problem.path.empty() ? problem.message : problem.path + ": " + problem.message;
    }
    // A values file's pointer spells the path already; a description's does not.
    std::string const own = "/" + PointerToken(problem.path);
    bool const spelled =
        problem.path.empty() ||
        (problem.pointer.compare(0, own.size(), own) == 0 &&
         (problem.pointer.size() == own.size() || problem.pointer[own.size()] == '/'));
    if (spelled) {
        return problem.pointer + ": " + problem.message;
    }
    return problem.pointer + " (" + problem.path + "): " + problem.message;
}

std::string PointerToken(std::string const& name) {
    std::string token;
    token.reserve(name.size());
    for (char const c : name) {
        if (c == '~') {
            token += "~0";
        } else if (c == '/') {
            token += "~1";
        } else {
            token += c;
        }
    }
    return token;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
