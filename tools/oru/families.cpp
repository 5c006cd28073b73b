#include "families.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "registry.h"
#include "typetext.h"
#include "values.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

template <class I>
InfoBase* MakeInfo(unsigned int id) {
    return new I(id, "", Permission_t());
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

// The registry's families with a serial form, with what the program adds: the
// Info that app-endpoint text is read against, and argument readers for the
// families that read no text of their own.
std::vector<Family> MakeFamilies() {
    std::vector<Family> families;
    for (Registry::Row const& row : Registry::All()) {
        if (row.record != Registry::Record::Read) {
            continue;
        }
        Family family{Registry::Name(row), static_cast<std::uint8_t>(row.type),
                      static_cast<std::uint8_t>(row.numericType), row.makeItem, nullptr};
        switch (row.type) {
            case OruType_t::AppEndpoint:
                family.makeInfo = &MakeInfo<AppEndpointInfo>;
                break;
            case OruType_t::Orientation:
                family.readArgs = &ReadOrientation;
                break;
            case OruType_t::AppEndpointArray:
                family.readArgs = &ReadAppEndpoints;
                break;
            case OruType_t::Composite:
                family.readArgs = &ReadChildren;
                break;
            default:
                break;
        }
        families.push_back(family);
    }
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
