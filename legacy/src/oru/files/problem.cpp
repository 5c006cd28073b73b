#include <legacy/oru/files/problem.h>

namespace Legacy {
namespace Oru {
namespace Files {

std::string ToString(Problem const& problem) {
    if (problem.pointer.empty()) {
        return problem.message;
    }
    return problem.pointer + ": " + problem.message;
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
