#include "families.h"

namespace Legacy {
namespace Oru {
namespace Files {

char const* OruTypeText(OruType_t type) noexcept {
    // The families without a printed name (sparse strings, endpoint arrays,
    // rectangle arrays, extended values) print "Invalid", as the model does.
    switch (type) {
        case OruType_t::Undefined:
            return "Undefined";
        case OruType_t::Bool:
            return "Bool";
        case OruType_t::Numeric:
            return "Numeric";
        case OruType_t::NumericArray:
            return "NumericArray";
        case OruType_t::NumericSparse:
            return "NumericSparse";
        case OruType_t::Enum:
            return "Enum";
        case OruType_t::String:
            return "String";
        case OruType_t::StringArray:
            return "StringArray";
        case OruType_t::BoolArray:
            return "BoolArray";
        case OruType_t::Colour:
            return "Colour";
        case OruType_t::Coordinate:
            return "Coordinate";
        case OruType_t::Rectangle:
            return "Rectangle";
        case OruType_t::Orientation:
            return "Orientation";
        case OruType_t::Addr:
            return "Addr";
        case OruType_t::LocalizedString:
            return "LocalizedString";
        case OruType_t::Endpoint:
            return "Endpoint";
        case OruType_t::AppEndpoint:
            return "AppEndpoint";
        case OruType_t::Connection:
            return "Connection";
        case OruType_t::Composite:
            return "Composite";
        case OruType_t::Collection:
            return "Collection";
        default:
            return "Invalid";
    }
}

char const* NumericTypeText(NumericType_t type) noexcept {
    static char const* const texts[] = {"Undefined", "U8",  "S8",  "U16",   "S16",   "U32",
                                        "S32",       "U64", "S64", "Float", "Double"};
    auto const value = static_cast<std::uint32_t>(type);
    return value < sizeof(texts) / sizeof(texts[0]) ? texts[value] : "Invalid";
}

std::string BracketedTypeText(OruType_t type, NumericType_t numericType) {
    std::string text = OruTypeText(type);
    text += '(';
    text += NumericTypeText(numericType);
    text += ')';
    return text;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
