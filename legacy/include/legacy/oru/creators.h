// Creators: small factory objects that hand out new Infos or Items of one
// fixed class through a base-class pointer, so that a caller can keep a table
// of them and make objects without naming classes. They hold no state, so any
// thread may use one. What they make has a count of 0 and belongs to the
// caller. Exactly the instantiations declared below exist.
#ifndef LEGACY_ORU_CREATORS_H
#define LEGACY_ORU_CREATORS_H

#include <string>

#include <legacy/oru/addr.h>
#include <legacy/oru/bool.h>
#include <legacy/oru/colour.h>
#include <legacy/oru/composite.h>
#include <legacy/oru/coordinate.h>
#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/numericarray.h>
#include <legacy/oru/rectarray.h>
#include <legacy/oru/stringarray.h>
#include <legacy/oru/stringvalue.h>

namespace Legacy {
namespace Oru {

class ORU_API InfoCreatorBase {
public:
    InfoCreatorBase();
    InfoCreatorBase(InfoCreatorBase const& other);
    // Does nothing: a creator has no state.
    InfoCreatorBase& operator=(InfoCreatorBase const&) { return *this; }

    virtual ~InfoCreatorBase();
    // A new Info of the creator's class; count 0.
    virtual InfoBase* CreateInfo(unsigned int const& id, std::string const& name,
                                 Permission_t const& permission) const = 0;
};

class ORU_API ItemCreatorBase {
public:
    ItemCreatorBase();
    ItemCreatorBase(ItemCreatorBase const& other);
    // Does nothing: a creator has no state.
    ItemCreatorBase& operator=(ItemCreatorBase const&) { return *this; }

    virtual ~ItemCreatorBase();
    // A new Item of the creator's class with that id and the class's own
    // default value (not any Info's); count 0.
    virtual ItemBase* CreateItem(unsigned int const& id) const = 0;
};

template <class T>
class ORU_API InfoCreator : public InfoCreatorBase {
public:
    InfoCreator();
    InfoCreator(InfoCreator const& other);
    InfoCreator& operator=(InfoCreator const&) { return *this; }
    ~InfoCreator() override;

    InfoBase* CreateInfo(unsigned int const& id, std::string const& name,
                         Permission_t const& permission) const override;
    // The same, typed.
    T* CreateDerivedInfo(unsigned int const& id, std::string const& name,
                         Permission_t const& permission) const;
};

template <class T>
class ORU_API ItemCreator : public ItemCreatorBase {
public:
    ItemCreator();
    ItemCreator(ItemCreator const& other);
    ItemCreator& operator=(ItemCreator const&) { return *this; }
    ~ItemCreator() override;

    ItemBase* CreateItem(unsigned int const& id) const override;
    // The same, typed.
    T* CreateDerivedItem(unsigned int const& id) const;
};

// The list is uneven and callers link against exactly it: no creator for
// NumericItem<DoubleTraits>, the sparse, enum and address families, or
// coordinates.
extern template class ORU_API InfoCreator<NumericArrayInfo<U64Traits>>;

#define LEGACY_ORU_DECLARE_NUMERIC_CREATORS(T)                 \
    extern template class ORU_API ItemCreator<NumericItem<T>>; \
    extern template class ORU_API ItemCreator<NumericArrayItem<T>>;
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(U8Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(S8Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(U16Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(S16Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(U32Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(S32Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(U64Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(S64Traits)
LEGACY_ORU_DECLARE_NUMERIC_CREATORS(FloatTraits)
#undef LEGACY_ORU_DECLARE_NUMERIC_CREATORS

extern template class ORU_API ItemCreator<RectItem<U16Traits>>;
extern template class ORU_API ItemCreator<RectArrayItem<U16Traits>>;
extern template class ORU_API ItemCreator<BoolItem>;
extern template class ORU_API ItemCreator<BoolArrayItem>;
extern template class ORU_API ItemCreator<ColourItem>;
extern template class ORU_API ItemCreator<CompositeItem>;
extern template class ORU_API ItemCreator<EndpointItem>;
extern template class ORU_API ItemCreator<AppEndpointItem>;
extern template class ORU_API ItemCreator<StringItem>;
extern template class ORU_API ItemCreator<StringArrayItem>;

}  // namespace Oru
}  // namespace Legacy

#endif
