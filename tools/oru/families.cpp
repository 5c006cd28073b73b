#include "families.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "typetext.h"
#include "values.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

template <class I>
ItemBase* MakeItem(unsigned int id) {
    return new I(id);
}

template <class I>
InfoBase* MakeInfo(unsigned int id) {
    return new I(id, "", Permission_t());
}

template <template <class> class Item, class T>
Family NumericFamily(char const* family, OruType_t type) {
    return Family{std::string(family) + ":" + NumericTypeText(T::k_numericType),
                  static_cast<std::uint8_t>(type), static_cast<std::uint8_t>(T::k_numericType),
                  &MakeItem<Item<T>>, nullptr};
}

template <template <class> class Item>
void AddNumericFamilies(std::vector<Family>& families, char const* family, OruType_t type) {
#define ORU_TOOL_ADD_FAMILY(T) families.push_back(NumericFamily<Item, T>(family, type));
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_TOOL_ADD_FAMILY)
#undef ORU_TOOL_ADD_FAMILY
}

// Coordinates and rectangles exist for three element types only.
template <template <class> class Item>
void AddGeometryFamilies(std::vector<Family>& families, char const* family, OruType_t type) {
    families.push_back(NumericFamily<Item, U16Traits>(family, type));
    families.push_back(NumericFamily<Item, S32Traits>(family, type));
    families.push_back(NumericFamily<Item, FloatTraits>(family, type));
}

// Three numbers: bearing, inclination, roll (the family reads no text itself).
bool ReadOrientation(ItemBase& item, std::vector<std::string> const& values, std::ostream& errors) {
    auto* const orientation = dynamic_cast<OrientationItem*>(&item);
    std::string text;
    for (std::string const& value : values) {
        text += value + " ";
    }
    std::istringstream in(text);
    Orientation_t read;
    std::string rest;
    if (!orientation || !(in >> read.bearing >> read.inclination >> read.roll) || (in >> rest)) {
        errors << "Error parsing orientation: give bearing, inclination and roll\n";
        return false;
    }
    orientation->Set(read);
    return true;
}

// Each argument one URI.
bool ReadAppEndpoints(ItemBase& item, std::vector<std::string> const& values,
                      std::ostream& errors) {
    auto* const array = dynamic_cast<AppEndpointArrayItem*>(&item);
    if (!array) {
        return false;
    }
    AppEndpointArrayItem::Value_t read;
    for (std::string const& uri : values) {
        if (uri.find("://") == std::string::npos) {
            errors << "Error parsing appEndpoint: '" << uri << "' is no URI\n";
            return false;
        }
        read.push_back(AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri(uri));
    }
    array->SetVal(read);
    return true;
}

// Each argument one child: its family's name, a blank, the child's value,
// read as strictly as a value of its own.
bool ReadChildren(ItemBase& item, std::vector<std::string> const& values, std::ostream& errors) {
    auto* const composite = dynamic_cast<CompositeItem*>(&item);
    if (!composite) {
        return false;
    }
    for (std::string const& value : values) {
        std::string const name = value.substr(0, value.find(' '));
        Family const* const family = FindFamily(name);
        if (!family || family->readArgs) {
            errors << "Error parsing child '" << value << "': give a family with a text form, "
                   << "then its value\n";
            return false;
        }
        std::istringstream words(value.size() > name.size() ? value.substr(name.size() + 1) : "");
        std::vector<std::string> childWords;
        for (std::string word; words >> word;) {
            childWords.push_back(word);
        }
        boost::intrusive_ptr<ItemBase> child;
        std::string problem;
        if (!ReadValue(*family, 0, childWords, child, problem)) {
            errors << "Error parsing child '" << value << "': " << problem << "\n";
            return false;
        }
        composite->AddItem(child);
    }
    return true;
}

// How each family's VALUE words are written, by the family's name before ':'.
struct Syntax {
    char const* prefix;
    char const* help;
    char const* example;
};

Syntax const k_syntax[] = {
    {"Bool", "1, 0, True or False", "True"},
    {"Numeric", "one number in the element's range", "72"},
    {"NumericArray", "a count, then that many numbers; or (a, b, c) as decode prints it",
     "3 1 2 3"},
    {"NumericSparse", "one number in the element's range", "7"},
    {"Enum", "the entry's number", "3"},
    {"String", "the text: the VALUE words joined by blanks", "hello"},
    {"StringArray", "a count, then that many words; or (a, b, c)", "3 a b c"},
    {"BoolArray", "a count, then that many flags; or (True, False)", "3 True False 1"},
    {"StringSparse", "the text", "hello"},
    {"Colour", "alpha red green blue, bare or in brackets", "0 1 2 255"},
    {"Coordinate", "x y; or (x, y) as decode prints it", "5 7"},
    {"Rectangle", "left top right bottom; or (TLC(l, t), BRC(r, b))", "1 2 3 4"},
    {"Orientation", "bearing inclination roll, whole numbers from 0 (as the record keeps them)",
     "90 1 2"},
    {"Addr", "a host name or address", "camera.local"},
    {"Endpoint", "address:port, an IPv6 address in brackets", "[::1]:80"},
    {"AppEndpoint", "address:port", "10.0.0.1:80"},
    {"AppEndpointArray", "one URI per VALUE", "http://10.0.0.1:80/a rtsp://cam/live"},
    {"RectArray", "a count, then four numbers per rectangle", "1 1 2 3 4"},
    {"Composite", "one child per VALUE: 'FAMILY VALUE'", "'Numeric:U16 65' 'String pcm'"},
};

std::vector<Family> MakeFamilies() {
    std::vector<Family> families;
    families.push_back(Family{"Bool", 1, 0, &MakeItem<BoolItem>, nullptr});
    AddNumericFamilies<NumericItem>(families, "Numeric", OruType_t::Numeric);
    AddNumericFamilies<NumericArrayItem>(families, "NumericArray", OruType_t::NumericArray);
    AddNumericFamilies<NumericSparseItem>(families, "NumericSparse", OruType_t::NumericSparse);
    families.push_back(Family{"Enum", 5, 0, &MakeItem<EnumItem>, nullptr});
    families.push_back(Family{"String", 6, 0, &MakeItem<StringItem>, nullptr});
    families.push_back(Family{"StringArray", 7, 0, &MakeItem<StringArrayItem>, nullptr});
    families.push_back(Family{"BoolArray", 8, 0, &MakeItem<BoolArrayItem>, nullptr});
    families.push_back(Family{"StringSparse", 9, 0, &MakeItem<StringSparseItem>, nullptr});
    families.push_back(Family{"Colour", 128, 0, &MakeItem<ColourItem>, nullptr});
    AddGeometryFamilies<CoordinateItem>(families, "Coordinate", OruType_t::Coordinate);
    AddGeometryFamilies<RectItem>(families, "Rectangle", OruType_t::Rectangle);
    families.push_back(Family{"Orientation", 131, 0, &MakeItem<OrientationItem>, nullptr,
                              &ReadOrientation, "bearing inclination roll"});
    families.push_back(Family{"Addr", 134, 0, &MakeItem<AddrItem>, nullptr});
    families.push_back(Family{"Endpoint", 136, 0, &MakeItem<EndpointItem>, nullptr});
    families.push_back(
        Family{"AppEndpoint", 137, 0, &MakeItem<AppEndpointItem>, &MakeInfo<AppEndpointInfo>});
    families.push_back(Family{"AppEndpointArray", 140, 0, &MakeItem<AppEndpointArrayItem>, nullptr,
                              &ReadAppEndpoints, "one URI per VALUE"});
    families.push_back(NumericFamily<RectArrayItem, U16Traits>("RectArray", OruType_t::RectArray));
    families.push_back(Family{"Composite", 253, 0, &MakeItem<CompositeItem>, nullptr, &ReadChildren,
                              "one child per VALUE: 'FAMILY TEXT'"});
    return families;
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

}  // namespace

static std::vector<Family> WithSyntax(std::vector<Family> families) {
    for (Family& family : families) {
        std::string const prefix = family.name.substr(0, family.name.find(':'));
        for (Syntax const& syntax : k_syntax) {
            if (prefix == syntax.prefix) {
                family.valueHelp = syntax.help;
                family.example = syntax.example;
            }
        }
    }
    return families;
}

std::vector<Family> const& Families() {
    static std::vector<Family> const families = WithSyntax(MakeFamilies());
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
    std::string name = OruTypeText(static_cast<OruType_t>(typeByte));
    if (name == "Invalid") {
        std::ostringstream text;
        text << "type 0x" << std::hex << std::uppercase << std::setw(2) << std::setfill('0')
             << static_cast<unsigned>(typeByte);
        name = text.str();
    }
    if (numericTypeByte != 0) {
        name += ":";
        name += NumericTypeText(static_cast<NumericType_t>(numericTypeByte));
    }
    return name;
}

}  // namespace OruTool
