#include "families.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
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

std::vector<Family> MakeFamilies() {
    std::vector<Family> families;
    families.push_back(Family{"Bool", 1, 0, &MakeItem<BoolItem>, nullptr});
    AddNumericFamilies<NumericItem>(families, "Numeric", OruType_t::Numeric);
    families.push_back(Family{"Enum", 5, 0, &MakeItem<EnumItem>, nullptr});
    families.push_back(Family{"String", 6, 0, &MakeItem<StringItem>, nullptr});
    families.push_back(Family{"BoolArray", 8, 0, &MakeItem<BoolArrayItem>, nullptr});
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
