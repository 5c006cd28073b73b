// Texts of the type vocabulary, internal to the library and its program: the
// stream form of OruType_t and NumericType_t, their one-run form, and the
// bracketed form of validation messages.
#ifndef LEGACY_ORU_SRC_TYPETEXT_H
#define LEGACY_ORU_SRC_TYPETEXT_H

#include <ostream>
#include <string>

#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {

// Four families that classes do return (9, 140, 141, 252) have no text and
// print "Invalid"; callers compare against these texts.
inline char const* OruTypeText(OruType_t type) noexcept {
    switch (static_cast<std::uint32_t>(type)) {
        case 0:
            return "Undefined";
        case 1:
            return "Bool";
        case 2:
            return "Numeric";
        case 3:
            return "NumericArray";
        case 4:
            return "NumericSparse";
        case 5:
            return "Enum";
        case 6:
            return "String";
        case 7:
            return "StringArray";
        case 8:
            return "BoolArray";
        case 128:
            return "Colour";
        case 129:
            return "Coordinate";
        case 130:
            return "Rectangle";
        case 131:
            return "Orientation";
        case 134:
            return "Addr";
        case 135:
            return "LocalizedString";
        case 136:
            return "Endpoint";
        case 137:
            return "AppEndpoint";
        case 138:
            return "Connection";
        case 253:
            return "Composite";
        case 254:
            return "Collection";
        default:
            return "Invalid";
    }
}

inline char const* NumericTypeText(NumericType_t type) noexcept {
    static char const* const texts[] = {"Undefined", "U8",  "S8",  "U16",   "S16",   "U32",
                                        "S32",       "U64", "S64", "Float", "Double"};
    auto const value = static_cast<std::uint32_t>(type);
    return value < sizeof(texts) / sizeof(texts[0]) ? texts[value] : "Invalid";
}

inline std::ostream& operator<<(std::ostream& out, OruType_t type) {
    return out << OruTypeText(type);
}

inline std::ostream& operator<<(std::ostream& out, NumericType_t type) {
    return out << NumericTypeText(type);
}

// "NumericU32", "Bool": the element's text follows directly, left out for 0.
inline std::string TypeText(OruType_t type, NumericType_t numericType) {
    std::string text = OruTypeText(type);
    if (numericType != NumericType_t::Undefined) {
        text += NumericTypeText(numericType);
    }
    return text;
}

// "Numeric(U32)", "Bool(Undefined)": the form of validation messages.
inline std::string BracketedTypeText(OruType_t type, NumericType_t numericType) {
    std::string text = OruTypeText(type);
    text += '(';
    text += NumericTypeText(numericType);
    text += ')';
    return text;
}

}  // namespace Oru
}  // namespace Legacy

#endif
