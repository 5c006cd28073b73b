#include "families.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "typetext.h"

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
    if (!orientation || !(in >> read.bearing >> read.inclination >> read.roll)) {
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

// Each argument one child: its family's name, a blank, the child's text.
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
        boost::intrusive_ptr<ItemBase> child(family->makeItem(0));
        boost::intrusive_ptr<InfoBase const> info(family->makeInfo ? family->makeInfo(0) : nullptr);
        std::istringstream in(value.size() > name.size() ? value.substr(name.size() + 1) : "");
        if (!child->SetValFromStream(in, errors, info)) {
            return false;
        }
        composite->AddItem(child);
    }
    return true;
}

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
