// NumericInfo<T> and NumericItem<T>: one number of the element type of the
// traits class T. The Info holds a default and a range; the Item one value,
// which nothing keeps in range except the operations that take the Info.
// Instantiated for the ten traits classes.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_NUMERIC_H
#define LEGACY_ORU_NUMERIC_H

#include <iosfwd>
#include <memory>
#include <string>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/traits.h>

namespace Legacy {
namespace Oru {

template <class T>
class ORU_API NumericInfo : public InfoBase {
public:
    using Element = typename T::Element;

    // Default 0, bounds those of T.
    NumericInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    NumericInfo(NumericInfo const& other);
    // Copies the three numbers; the identity stays.
    NumericInfo& operator=(NumericInfo const& other);

    ~NumericInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type and equal minimum and maximum; the default takes no part.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Intersects the ranges: -36 for another type, -55 if they do not overlap.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes default and bounds from a numeric Info of any element type.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "min <= default <= max".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    NumericInfo* DeepCopy() const;
    NumericInfo* DeepCopy(unsigned int id) const;

    Element GetDefault() const noexcept { return default_; }
    Element GetMax() const noexcept { return max_; }
    Element GetMin() const noexcept { return min_; }
    // Clamped into the range.
    void SetDefault(Element value);
    // Moves maximum and default up to value where they are below it.
    void SetMin(Element value);
    // Moves minimum and default down to value where they are above it.
    void SetMax(Element value);

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Numeric; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    Element default_;
    Element max_;
    Element min_;
};

template <class T>
class ORU_API NumericItem : public ItemBase {
public:
    using Element = typename T::Element;

    explicit NumericItem(unsigned int id = 0);
    NumericItem(NumericItem const& other);
    // Copies the value; the id stays.
    NumericItem& operator=(NumericItem const& other);

    // A new Item with that value; count 0.
    static NumericItem* Create(unsigned int id, Element const& value);

    ~NumericItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // From a Bool, Numeric, NumericArray (element at index) or Enum Item.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    int Deserialize(ConstSerialStruct_t const* record) override;
    // ValidateMin, then ValidateMax.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    std::shared_ptr<ResultElem const> ValidateMin(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    std::shared_ptr<ResultElem const> ValidateMax(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads one number; no bounds are applied.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    NumericItem* DeepCopy() const;

    Element GetVal() const noexcept { return value_; }
    Element& Val() noexcept { return value_; }
    Element const& Val() const noexcept { return value_; }
    // Stores the value unchecked.
    void SetVal(Element value) noexcept { value_ = value; }
    // Stores the value if it lies in the Info's range, else the Info's
    // default (not a clamp).
    void SetVal(Element value, NumericInfo<T> const& info);
    // Clamps the value into the Info's range.
    void BoundVal(NumericInfo<T> const& info);
    // True if minimum <= value <= maximum; a NaN counts as within.
    bool WithinBounds(NumericInfo<T> const& info) const;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Numeric; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    Element value_;
};

#define LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(X) \
    X(U8Traits)                               \
    X(S8Traits)                               \
    X(U16Traits)                              \
    X(S16Traits)                              \
    X(U32Traits)                              \
    X(S32Traits)                              \
    X(U64Traits)                              \
    X(S64Traits)                              \
    X(FloatTraits)                            \
    X(DoubleTraits)

#define LEGACY_ORU_DECLARE_NUMERIC(T)     \
    extern template class NumericInfo<T>; \
    extern template class NumericItem<T>;
LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(LEGACY_ORU_DECLARE_NUMERIC)
#undef LEGACY_ORU_DECLARE_NUMERIC

}  // namespace Oru
}  // namespace Legacy

#endif
