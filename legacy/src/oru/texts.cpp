#include "texts.h"

namespace Legacy {
namespace Oru {
namespace Texts {

std::string const& Empty() {
    static std::string const text;
    return text;
}

std::string const& False() {
    static std::string const text("False");
    return text;
}

std::string const& True() {
    static std::string const text("True");
    return text;
}

std::string const& Separator() {
    static std::string const text(", ");
    return text;
}

std::string const& UriSeparator() {
    static std::string const text("://");
    return text;
}

}  // namespace Texts
}  // namespace Oru
}  // namespace Legacy
