#include <legacy/oru/creators.h>

namespace Legacy {
namespace Oru {

InfoCreatorBase::InfoCreatorBase() = default;
InfoCreatorBase::InfoCreatorBase(InfoCreatorBase const&) = default;
InfoCreatorBase::~InfoCreatorBase() = default;

ItemCreatorBase::ItemCreatorBase() = default;
ItemCreatorBase::ItemCreatorBase(ItemCreatorBase const&) = default;
ItemCreatorBase::~ItemCreatorBase() = default;

template <class T>
InfoCreator<T>::InfoCreator() = default;
template <class T>
InfoCreator<T>::InfoCreator(InfoCreator const& other) : InfoCreatorBase(other) {}
template <class T>
InfoCreator<T>::~InfoCreator() = default;

template <class T>
InfoBase* InfoCreator<T>::CreateInfo(unsigned int const& id, std::string const& name,
                                     Permission_t const& permission) const {
    return CreateDerivedInfo(id, name, permission);
}

template <class T>
T* InfoCreator<T>::CreateDerivedInfo(unsigned int const& id, std::string const& name,
                                     Permission_t const& permission) const {
    return new T(id, name, permission);
}

template <class T>
ItemCreator<T>::ItemCreator() = default;
template <class T>
ItemCreator<T>::ItemCreator(ItemCreator const& other) : ItemCreatorBase(other) {}
template <class T>
ItemCreator<T>::~ItemCreator() = default;

template <class T>
ItemBase* ItemCreator<T>::CreateItem(unsigned int const& id) const {
    return CreateDerivedItem(id);
}

template <class T>
T* ItemCreator<T>::CreateDerivedItem(unsigned int const& id) const {
    return new T(id);
}

template class InfoCreator<NumericArrayInfo<U64Traits>>;

#define LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(T) \
    template class ItemCreator<NumericItem<T>>;    \
    template class ItemCreator<NumericArrayItem<T>>;
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(U8Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(S8Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(U16Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(S16Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(U32Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(S32Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(U64Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(S64Traits)
LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS(FloatTraits)
#undef LEGACY_ORU_INSTANTIATE_NUMERIC_CREATORS

template class ItemCreator<RectItem<U16Traits>>;
template class ItemCreator<RectArrayItem<U16Traits>>;
template class ItemCreator<BoolItem>;
template class ItemCreator<BoolArrayItem>;
template class ItemCreator<ColourItem>;
template class ItemCreator<CompositeItem>;
template class ItemCreator<EndpointItem>;
template class ItemCreator<AppEndpointItem>;
template class ItemCreator<StringItem>;
template class ItemCreator<StringArrayItem>;

}  // namespace Oru
}  // namespace Legacy
