// RectArrayInfo<U16Traits> and RectArrayItem<U16Traits>: a list of
// rectangles with 16-bit unsigned corners. The Info bounds the number of
// rectangles and, through two CoordinateInfo, the corner values; the defaults
// of those coordinates are the whole default value. The Item holds the
// rectangles by value; since RectItem copies share their corners, so do all
// copies of the list. The family also folds flat numeric arrays into
// rectangles, four numbers to one: top left X, Y, bottom right X, Y.
//
// Instantiated for U16Traits only. Objects that share corners are one object
// for the purpose of changing them: a writer needs all of them alone.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_RECTARRAY_H
#define LEGACY_ORU_RECTARRAY_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/coordinate.h>
#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/traits.h>

namespace Legacy {
namespace Oru {

template <class T>
class ORU_API RectArrayInfo : public InfoBase {
public:
    using Element = typename T::Element;

    // Sizes 0 to 0x7FFFFFFF; both corners new CoordinateInfo with id 0, an
    // empty name and `permission`.
    RectArrayInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    // Copies the sizes and shares the two corner Infos.
    RectArrayInfo(RectArrayInfo const& other);
    // Copies the sizes and shares the two corner Infos; the identity stays.
    RectArrayInfo& operator=(RectArrayInfo const& other);

    ~RectArrayInfo() override;
    // A new Info with that identity, the sizes and deep copies of both corners.
    RectArrayInfo* DeepCopy(unsigned int id, std::string const& name,
                            Permission_t const& permission) const override;
    // A new empty Item with this id; the corner defaults play no part. Count 0.
    ItemBase* CreateItem() const override;
    // 141 (RectArray).
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type, then equal bounds of both corners; the sizes take no part.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Merges both corners: -36 for another type, a corner's code. The sizes
    // are not merged.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // From another rectangle array Info, or from a numeric array Info of any
    // element type that describes whole rectangles (-41 if it does not).
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "size(min, max) <top left>,  <bottom right>".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    RectArrayInfo* DeepCopy() const;
    RectArrayInfo* DeepCopy(unsigned int id) const;

    unsigned long long GetMinSize() const noexcept { return minSize_; }
    unsigned long long GetMaxSize() const noexcept { return maxSize_; }
    // Raises the maximum to it if needed. Answers 0.
    int SetMinSize(unsigned long long size);
    // Lowers the minimum to it if needed. Answers 0.
    int SetMaxSize(unsigned long long size);

    boost::intrusive_ptr<CoordinateInfo<T>> const& TopLeft() noexcept { return topLeft_; }
    boost::intrusive_ptr<CoordinateInfo<T>> const& BottomRight() noexcept { return bottomRight_; }
    boost::intrusive_ptr<CoordinateInfo<T> const> TopLeft() const { return topLeft_; }
    boost::intrusive_ptr<CoordinateInfo<T> const> BottomRight() const { return bottomRight_; }

    // 130 (Rectangle), not 141 like GetType: callers link against this value.
    static OruType_t GetTypeStatic() noexcept { return OruType_t::Rectangle; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    unsigned long long minSize_;
    unsigned long long maxSize_;
    boost::intrusive_ptr<CoordinateInfo<T>> topLeft_;
    boost::intrusive_ptr<CoordinateInfo<T>> bottomRight_;
};

template <class T>
class ORU_API RectArrayItem : public ItemBase {
public:
    using Element = typename T::Element;
    using Rects = std::vector<RectItem<T>>;

    // An empty array.
    explicit RectArrayItem(unsigned int id = 0);
    // Copies the list; the corners are shared.
    RectArrayItem(RectArrayItem const& other);
    // Copies the list, sharing the corners; the id stays.
    RectArrayItem& operator=(RectArrayItem const& other);

    ~RectArrayItem() override;
    // A new Item with that id and a copy of the list whose corners are still
    // shared with this one; count 0.
    RectArrayItem* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // True when there are no rectangles.
    bool IsEmpty() const override;
    // Same type, same count, and each rectangle's corners equal in order.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // A rectangle lands at index, growing the list; a rectangle array or a
    // numeric array (four numbers a rectangle) replaces it, index ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Eight bytes a rectangle.
    unsigned int GetSerialDataSize() const override;
    // The rectangles back to back, no count; -41 for a null record or a list
    // too long for the size field.
    int Serialize(SerialStruct_t* record) const override;
    // As many rectangles as the payload holds; -41 for a size that is no
    // multiple of eight, with the value kept.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Refuses every value, as rectangles do.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads a count and that many rectangles, all or nothing.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(<rect>, <rect>)".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    RectArrayItem* DeepCopy() const;

    // Takes the list if its count lies in the Info's size range, else -37
    // with the old value kept. Corners are not looked at.
    int SetVal(Rects const& value, RectArrayInfo<T> const& info);
    // Takes the list, unchecked.
    void SetVal(Rects const& value) { value_ = value; }
    Rects GetVal() const { return value_; }
    Rects& Val() noexcept { return value_; }
    Rects const& Val() const noexcept { return value_; }
    unsigned long long GetSize() const noexcept { return value_.size(); }

    // Bounds both corners of each rectangle by the Info's top left ranges.
    void BoundVal(RectArrayInfo<T> const& info);
    // True when every top left lies in the Info's top left ranges and every
    // bottom right in its bottom right ranges; true for an empty list.
    bool WithinBounds(RectArrayInfo<T> const& info) const;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::RectArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    // Whether the corners of the rectangle at index (which must exist) equal
    // those of `rect`.
    bool IsEqualVal_(unsigned int index, RectItem<T> const& rect) const;
    // Writes the four numbers into the corners at index (which must exist) in
    // place, and answers whether any old one differed by plain !=.
    bool AssignRectValue_(unsigned long long index, Element a, Element b, Element c, Element d);
    // Grows with new zero rectangles or cuts to count; false if already so.
    bool ResizeArray_(unsigned long long count);

    Rects value_;
};

extern template class RectArrayInfo<U16Traits>;
extern template class RectArrayItem<U16Traits>;

}  // namespace Oru
}  // namespace Legacy

#endif
