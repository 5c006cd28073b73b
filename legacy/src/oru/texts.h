// Constant texts shared by the text forms of the families.
#ifndef LEGACY_ORU_SRC_TEXTS_H
#define LEGACY_ORU_SRC_TEXTS_H

#include <string>

namespace Legacy {
namespace Oru {
namespace Texts {

std::string const& Empty();
std::string const& False();
std::string const& True();
std::string const& Separator();     // ", "
std::string const& UriSeparator();  // "://"

inline std::string const& Bool(bool value) {
    return value ? True() : False();
}

}  // namespace Texts
}  // namespace Oru
}  // namespace Legacy

#endif
