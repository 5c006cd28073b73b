#include <legacy/oru/catalogue.h>

namespace Legacy {
namespace Oru {
namespace Catalogue {

namespace {

template <class T>
InfoBase* MakeInfo(unsigned int id, std::string const& name, Permission_t const& permission) {
    if constexpr (std::is_same<typename T::Info, EnumInfo>::value) {
        return new EnumInfo(id, name, permission, false);
    } else {
        return new typename T::Info(id, name, permission);
    }
}

template <class T>
ItemBase* MakeItem(unsigned int id) {
    return new typename T::Item(id);
}

std::vector<Family> MakeFamilies() {
    std::vector<Family> families;
    families.reserve(All::size);
    ForEachFamily([&families](auto tag) {
        using T = decltype(tag);
        InfoBase* (*makeInfo)(unsigned int, std::string const&, Permission_t const&) = nullptr;
        if constexpr (T::hasInfo) {
            makeInfo = &MakeInfo<T>;
        }
        families.push_back(Family{T::type, T::numericType, T::record,
                                  FamilyName(T::type, T::numericType), T::familyWord, makeInfo,
                                  &MakeItem<T>});
    });
    return families;
}

}  // namespace

std::vector<Family> const& Families() {
    static std::vector<Family> const families = MakeFamilies();
    return families;
}

Family const* FindFamily(std::string const& name) {
    for (Family const& family : Families()) {
        if (family.name == name) {
            return &family;
        }
    }
    return nullptr;
}

Family const* FindFamily(OruType_t type, NumericType_t numericType) {
    for (Family const& family : Families()) {
        if (family.type == type &&
            (family.numericType == NumericType_t::Undefined || family.numericType == numericType)) {
            return &family;
        }
    }
    return nullptr;
}

std::string FamilyName(OruType_t type, NumericType_t numericType) {
    std::string name = FamilyWord(type);
    if (numericType != NumericType_t::Undefined) {
        name += ':';
        name += ElementWord(numericType);
    }
    return name;
}

}  // namespace Catalogue
}  // namespace Oru
}  // namespace Legacy
