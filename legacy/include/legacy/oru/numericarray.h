// NumericArrayInfo<T> and NumericArrayItem<T>: an ordered array of numbers of
// the element type of the traits class T. The Info bounds the element count
// and holds a default array; it also stores element bounds, which are carried
// along by copies and assignments but enforced nowhere. The Item holds the
// array and meets its Info only when a caller passes it. Instantiated for the
// ten traits classes. An object may be read by several threads while nobody
// writes it; a writer must have it alone.
#ifndef LEGACY_ORU_NUMERICARRAY_H
#define LEGACY_ORU_NUMERICARRAY_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/traits.h>

namespace Legacy {
namespace Oru {

template <class T>
class ORU_API NumericArrayInfo : public InfoBase {
public:
    using Element = typename T::Element;

    // Sizes 1 to 0x7FFFFFFF, element bounds those of T, an empty default.
    NumericArrayInfo(unsigned int const& id, std::string const& name,
                     Permission_t const& permission);
    // Copies all five fields, the element bounds included (DeepCopy does not).
    NumericArrayInfo(NumericArrayInfo const& other);
    // Copies the five fields; the identity stays.
    NumericArrayInfo& operator=(NumericArrayInfo const& other);

    ~NumericArrayInfo() override;
    // A new Info with the size bounds and the default of this one; the element
    // bounds are those of a new Info.
    NumericArrayInfo* DeepCopy(unsigned int id, std::string const& name,
                               Permission_t const& permission) const override;
    // A new Item holding a copy of the default; count 0.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type and equal size bounds; element bounds and default take no part.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Intersects the size ranges: -36 for another type, -55 if they do not meet.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes sizes, element bounds and default from an array Info of any
    // element type, converting the numbers to T.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "array size: min <= default count <= max".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    NumericArrayInfo* DeepCopy() const;
    NumericArrayInfo* DeepCopy(unsigned int id) const;

    unsigned long long GetMinSize() const noexcept { return minSize_; }
    unsigned long long GetMaxSize() const noexcept { return maxSize_; }
    // The element bounds: stored, never enforced.
    Element GetMin() const noexcept { return min_; }
    Element GetMax() const noexcept { return max_; }
    std::vector<Element> const& GetDefault() const noexcept { return default_; }
    unsigned long long GetDefaultSize() const noexcept { return default_.size(); }

    // Raises the maximum size to it if needed and lengthens a non-empty
    // default to it with zeros. Answers 0.
    int SetMinSize(unsigned long long size);
    // Lowers the minimum size to it if needed and cuts a longer default to
    // it. Answers 0.
    int SetMaxSize(unsigned long long size);
    // Raises the element maximum to it if needed.
    void SetMin(Element value);
    // Lowers the element minimum to it if needed.
    void SetMax(Element value);
    // Copies the vector if its count lies within the size bounds, else -37.
    int SetDefault(std::vector<Element> const& value);

    static OruType_t GetTypeStatic() noexcept { return OruType_t::NumericArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    unsigned long long minSize_;
    unsigned long long maxSize_;
    Element max_;
    Element min_;
    std::vector<Element> default_;
};

template <class T>
class ORU_API NumericArrayItem : public ItemBase {
public:
    using Element = typename T::Element;

    // An empty array.
    explicit NumericArrayItem(unsigned int id = 0);
    NumericArrayItem(NumericArrayItem const& other);
    // Copies the value; the id stays.
    NumericArrayItem& operator=(NumericArrayItem const& other);

    ~NumericArrayItem() override;
    // A new Item with the given id and a copy of the value; count 0.
    NumericArrayItem* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // True when there are no elements.
    bool IsEmpty() const override;
    // Same type, same count, and every pair equal by T's rule.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // A single number (Bool, Numeric, Enum) lands at index, growing the array
    // with zeros; a whole array replaces the content; index is ignored then.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Element count times element width.
    unsigned int GetSerialDataSize() const override;
    // The elements back to back; -41 for a null record or an array too large
    // for the size field.
    int Serialize(SerialStruct_t* record) const override;
    // Takes as many elements as the payload holds; -41 for a size that is no
    // whole number of elements.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // The Info's class, then its size bounds; elements are not checked.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads a count and that many elements, all or nothing.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(a, b, c)".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    NumericArrayItem* DeepCopy() const;

    // Copies the value if its count lies within the Info's size bounds, else
    // -37 with the value kept.
    int SetVal(std::vector<Element> const& value, NumericArrayInfo<T> const& info);
    // Copies the value unchecked.
    void SetVal(std::vector<Element> const& value) { value_ = value; }
    std::vector<Element> GetVal() const { return value_; }
    std::vector<Element>& Val() noexcept { return value_; }
    std::vector<Element> const& Val() const noexcept { return value_; }
    unsigned long long GetSize() const noexcept { return value_.size(); }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::NumericArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    // Whether the element at index (which must exist) equals value by T's rule.
    bool IsEqualVal_(unsigned int index, Element value) const;
    // Stores four numbers from index on (the positions must exist) and answers
    // whether any old one differed by plain !=, without tolerance.
    bool AssignValueFromRectangle_(unsigned long long index, Element a, Element b, Element c,
                                   Element d);

    std::vector<Element> value_;
};

#define LEGACY_ORU_DECLARE_NUMERIC_ARRAY(T)    \
    extern template class NumericArrayInfo<T>; \
    extern template class NumericArrayItem<T>;
LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(LEGACY_ORU_DECLARE_NUMERIC_ARRAY)
#undef LEGACY_ORU_DECLARE_NUMERIC_ARRAY

}  // namespace Oru
}  // namespace Legacy

#endif
