#include "families.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <sstream>

namespace OruTool {

namespace {

using namespace Legacy::Oru;

// How each family's VALUE words are written: an overload per Item class of
// the catalogue, so that a family added there cannot go without one.
struct Syntax {
    char const* help;
    char const* example;
};

Syntax SyntaxOf(BoolItem const*) {
    return {"1, 0, True or False", "True"};
}
template <class T>
Syntax SyntaxOf(NumericItem<T> const*) {
    return {"one number in the element's range", "72"};
}
template <class T>
Syntax SyntaxOf(NumericArrayItem<T> const*) {
    return {"a count, then that many numbers; or (a, b, c) as decode prints it", "3 1 2 3"};
}
template <class T>
Syntax SyntaxOf(NumericSparseItem<T> const*) {
    return {"one number in the element's range", "7"};
}
Syntax SyntaxOf(EnumItem const*) {
    return {"the entry's number", "3"};
}
Syntax SyntaxOf(StringItem const*) {
    return {"the text: the VALUE words joined by blanks", "hello world"};
}
Syntax SyntaxOf(StringArrayItem const*) {
    return {"a count, then one VALUE per element; or (a, b, c) as decode prints it", "3 a 'b c' d"};
}
Syntax SyntaxOf(BoolArrayItem const*) {
    return {"a count, then that many flags; or (True, False)", "3 True False 1"};
}
Syntax SyntaxOf(StringSparseItem const*) {
    return {"the text: the VALUE words joined by blanks", "hello"};
}
Syntax SyntaxOf(ColourItem const*) {
    return {"alpha red green blue, bare or in brackets", "0 1 2 255"};
}
template <class T>
Syntax SyntaxOf(CoordinateItem<T> const*) {
    return {"x y; or (x, y) as decode prints it", "5 7"};
}
template <class T>
Syntax SyntaxOf(RectItem<T> const*) {
    return {"left top right bottom; or (TLC(l, t), BRC(r, b))", "1 2 3 4"};
}
Syntax SyntaxOf(OrientationItem const*) {
    return {"bearing inclination roll, whole numbers from 0 (as the record keeps them)", "90 1 2"};
}
Syntax SyntaxOf(AddrItem const*) {
    return {"a host name or address", "camera.local"};
}
Syntax SyntaxOf(EndpointItem const*) {
    return {"address:port, an IPv6 address in brackets", "[::1]:80"};
}
Syntax SyntaxOf(AppEndpointItem const*) {
    return {"address:port", "10.0.0.1:80"};
}
Syntax SyntaxOf(AppEndpointArrayItem const*) {
    return {"one URI per VALUE; or (a, b) as decode prints it",
            "http://10.0.0.1:80 rtsp://10.0.0.2:554"};
}
template <class T>
Syntax SyntaxOf(RectArrayItem<T> const*) {
    return {"a count, then four numbers per rectangle", "1 1 2 3 4"};
}
Syntax SyntaxOf(CompositeItem const*) {
    return {"one child per VALUE: 'FAMILY VALUE'", "'Numeric:U16 65' 'String pcm'"};
}

// The catalogue's families whose records read back, with their syntax.
std::vector<Family> MakeFamilies() {
    std::vector<Family> families;
    Catalogue::ForEachFamily([&families](auto tag) {
        using Tag = decltype(tag);
        if constexpr (Tag::record == Catalogue::Record::Read) {
            Catalogue::Family const* const row = Catalogue::FindFamily(Tag::type, Tag::numericType);
            Syntax const syntax = SyntaxOf(static_cast<typename Tag::Item const*>(nullptr));
            families.push_back(Family{row, row->name, static_cast<std::uint8_t>(Tag::type),
                                      static_cast<std::uint8_t>(Tag::numericType), syntax.help,
                                      syntax.example});
        }
    });
    return families;
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

}  // namespace

std::vector<Family> const& Families() {
    static std::vector<Family> const families = MakeFamilies();
    return families;
}

Family const* FindFamily(std::string const& name) {
    std::string const wanted = Lower(name);
    for (Family const& family : Families()) {
        if (Lower(family.name) == wanted) {
            return &family;
        }
    }
    return nullptr;
}

std::string FamilyName(std::uint8_t typeByte, std::uint8_t numericTypeByte) {
    for (Family const& family : Families()) {
        if (family.typeByte == typeByte && family.numericTypeByte == numericTypeByte) {
            return family.name;
        }
    }
    auto const type = static_cast<OruType_t>(typeByte);
    std::string name = Catalogue::FamilyWord(type);
    if (name == "Undefined" && typeByte != 0) {
        std::ostringstream text;
        text << "type 0x" << std::hex << std::uppercase << std::setw(2) << std::setfill('0')
             << static_cast<unsigned>(typeByte);
        name = text.str();
    }
    if (numericTypeByte != 0) {
        auto const element = static_cast<NumericType_t>(numericTypeByte);
        std::string const word = Catalogue::ElementWord(element);
        name += ":" + (word.empty() ? std::to_string(numericTypeByte) : word);
    }
    return name;
}

}  // namespace OruTool
