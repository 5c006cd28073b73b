// CoordinateInfo<T>, CoordinateItem<T>, RectInfo<T> and RectItem<T>: a pair
// X, Y of numbers, and a rectangle made of two such pairs, its top left and
// its bottom right corner. Each class is built of two parts of the level
// below (NumericInfo<T>/NumericItem<T> for a coordinate, coordinates for a
// rectangle) held under shared pointers: copies and assignments share the
// parts, DeepCopy makes them independent. Bounds live in the scalar Infos at
// the bottom; WithinBounds asks about them, BoundVal forces a value inside,
// and Validate refuses every value of these families.
//
// Instantiated for U16Traits, S32Traits and FloatTraits. Objects that share
// parts are one object for the purpose of changing them: a writer needs all
// of them alone.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_COORDINATE_H
#define LEGACY_ORU_COORDINATE_H

#include <iosfwd>
#include <memory>
#include <string>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/traits.h>

namespace Legacy {
namespace Oru {

template <class T>
class ORU_API CoordinateInfo : public InfoBase {
public:
    using Traits = T;
    using Element = typename T::Element;

    // Both parts new NumericInfo<T> with id 0, an empty name and `permission`.
    CoordinateInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    // Shares the two parts of `other`.
    CoordinateInfo(CoordinateInfo const& other);
    // Shares the two parts of `other`; the identity stays.
    CoordinateInfo& operator=(CoordinateInfo const& other);

    ~CoordinateInfo() override;
    // A new Info with that identity and deep copies of both parts.
    CoordinateInfo* DeepCopy(unsigned int id, std::string const& name,
                             Permission_t const& permission) const override;
    // A new Item with this id and the defaults of x and y; count 0.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type, then equal bounds of x and, only then, of y.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Merges x, then y: -36 for another type, a part's code (earlier merges stay).
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes both parts from a coordinate Info of any of the three element
    // types; both parts are always assigned.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "x(min <= default <= max) y(...)".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    CoordinateInfo* DeepCopy() const;
    CoordinateInfo* DeepCopy(unsigned int id) const;

    Element GetDefaultX() const { return x_->GetDefault(); }
    Element GetDefaultY() const { return y_->GetDefault(); }
    // The scalar Infos of x and y, to set their bounds and defaults.
    boost::intrusive_ptr<NumericInfo<T>> const& X() noexcept { return x_; }
    boost::intrusive_ptr<NumericInfo<T>> const& Y() noexcept { return y_; }
    boost::intrusive_ptr<NumericInfo<T> const> X() const { return x_; }
    boost::intrusive_ptr<NumericInfo<T> const> Y() const { return y_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Coordinate; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    boost::intrusive_ptr<NumericInfo<T>> x_;
    boost::intrusive_ptr<NumericInfo<T>> y_;
};

template <class T>
class ORU_API RectInfo : public InfoBase {
public:
    using Traits = T;
    using Element = typename T::Element;

    // Both corners new CoordinateInfo<T> with id 0, an empty name and `permission`.
    RectInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    // Shares the two corners of `other`.
    RectInfo(RectInfo const& other);
    // Shares the two corners of `other`; the identity stays.
    RectInfo& operator=(RectInfo const& other);

    ~RectInfo() override;
    // A new Info with that identity and deep copies of both corners.
    RectInfo* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A new Item with this id and the defaults of the four scalars; count 0.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type, then equal bounds of the top left and, only then, of the
    // bottom right.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Merges the top left, then the bottom right: -36 for another type, a
    // corner's code (earlier merges stay).
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes both corners from a rectangle Info of any of the three element
    // types; both corners are always assigned.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "TLC[x(...) y(...)] BRC[x(...) y(...)]".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    RectInfo* DeepCopy() const;
    RectInfo* DeepCopy(unsigned int id) const;

    boost::intrusive_ptr<CoordinateInfo<T>> const& TopLeft() noexcept { return topLeft_; }
    boost::intrusive_ptr<CoordinateInfo<T>> const& BottomRight() noexcept { return bottomRight_; }
    boost::intrusive_ptr<CoordinateInfo<T> const> TopLeft() const { return topLeft_; }
    boost::intrusive_ptr<CoordinateInfo<T> const> BottomRight() const { return bottomRight_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Rectangle; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    boost::intrusive_ptr<CoordinateInfo<T>> topLeft_;
    boost::intrusive_ptr<CoordinateInfo<T>> bottomRight_;
};

template <class T>
class ORU_API CoordinateItem : public ItemBase {
public:
    using Traits = T;
    using Element = typename T::Element;

    // X and Y new zero-valued NumericItem<T> with id 0.
    explicit CoordinateItem(unsigned int id = 0);
    // Shares x and y of `other`: a later change through one shows in both.
    CoordinateItem(CoordinateItem const& other);
    // Shares x and y of `other`; the id stays.
    CoordinateItem& operator=(CoordinateItem const& other);

    ~CoordinateItem() override;
    // A new Item with that id and parts of its own holding this value.
    CoordinateItem* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type, then x equal and, only then, y equal by T's rule.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes x and y from a coordinate Item of any of the three element types,
    // converting; index is ignored. -26 for another family or a failing part.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Two elements.
    unsigned int GetSerialDataSize() const override;
    // X, Y in the wire form of T.
    int Serialize(SerialStruct_t* record) const override;
    // Exactly two elements, else -41 with the value kept.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Refuses every value: coordinates are checked with WithinBounds.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads x, then y; what was read before a failure stays.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(x,  y)", with two blanks after the comma.
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    CoordinateItem* DeepCopy() const;

    // Sets the value of x or y, unchecked.
    void SetValX(Element const& value) { x_->SetVal(value); }
    void SetValY(Element const& value) { y_->SetVal(value); }
    // The scalar Items of x and y.
    boost::intrusive_ptr<NumericItem<T>> const& X() noexcept { return x_; }
    boost::intrusive_ptr<NumericItem<T>> const& Y() noexcept { return y_; }
    boost::intrusive_ptr<NumericItem<T> const> X() const { return x_; }
    boost::intrusive_ptr<NumericItem<T> const> Y() const { return y_; }

    // Clamps x and y into the ranges of the Info's x and y.
    void BoundVal(CoordinateInfo<T> const& info);
    // True when x and y lie in the closed ranges of the Info's x and y.
    bool WithinBounds(CoordinateInfo<T> const& info) const;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Coordinate; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    boost::intrusive_ptr<NumericItem<T>> x_;
    boost::intrusive_ptr<NumericItem<T>> y_;
};

template <class T>
class ORU_API RectItem : public ItemBase {
public:
    using Traits = T;
    using Element = typename T::Element;

    // Both corners new zero-valued CoordinateItem<T> with id 0.
    explicit RectItem(unsigned int id = 0);
    // Shares the corners of `other`: a later change through one shows in both.
    RectItem(RectItem const& other);
    // Shares the corners of `other`; the id stays.
    RectItem& operator=(RectItem const& other);

    ~RectItem() override;
    // A new Item with that id and corners of its own holding this value.
    RectItem* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type, then top left equal and, only then, bottom right equal.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes both corners from a rectangle Item of any of the three element
    // types, converting; index is ignored. -26 for another family or a
    // failing corner.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Four elements.
    unsigned int GetSerialDataSize() const override;
    // Top left X, Y, bottom right X, Y in the wire form of T.
    int Serialize(SerialStruct_t* record) const override;
    // At least four elements; bytes beyond them are ignored. -41 with the
    // value kept for fewer.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Refuses every value: rectangles are checked with WithinBounds.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads the top left, then the bottom right; no rollback.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(TLC(x,  y),  BRC(x,  y))".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    RectItem* DeepCopy() const;

    boost::intrusive_ptr<CoordinateItem<T>> const& TopLeft() noexcept { return topLeft_; }
    boost::intrusive_ptr<CoordinateItem<T>> const& BottomRight() noexcept { return bottomRight_; }
    boost::intrusive_ptr<CoordinateItem<T> const> TopLeft() const { return topLeft_; }
    boost::intrusive_ptr<CoordinateItem<T> const> BottomRight() const { return bottomRight_; }

    // Bottom right X minus top left X plus 1, in the element type: it wraps
    // in U16 and S32, and the 1 is added for float as well.
    Element GetWidth() const;
    // The same with Y.
    Element GetHeight() const;
    // The corner's X and Y become the defaults of `info`, which must not be
    // null; every copy sharing the corner changes too.
    void SetValTopLeft(boost::intrusive_ptr<CoordinateInfo<T>> const& info);
    void SetValBottomRight(boost::intrusive_ptr<CoordinateInfo<T>> const& info);
    // Clamps each corner into the ranges of the Info's same corner.
    void BoundVal(RectInfo<T> const& info);
    // True when both corners lie in the ranges of the Info's same corners;
    // the corners are not compared with each other.
    bool WithinBounds(RectInfo<T> const& info) const;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Rectangle; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    boost::intrusive_ptr<CoordinateItem<T>> topLeft_;
    boost::intrusive_ptr<CoordinateItem<T>> bottomRight_;
};

#define LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(X) \
    X(U16Traits)                               \
    X(S32Traits)                               \
    X(FloatTraits)

#define LEGACY_ORU_DECLARE_GEOMETRY(T)       \
    extern template class CoordinateInfo<T>; \
    extern template class RectInfo<T>;       \
    extern template class CoordinateItem<T>; \
    extern template class RectItem<T>;
LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(LEGACY_ORU_DECLARE_GEOMETRY)
#undef LEGACY_ORU_DECLARE_GEOMETRY

}  // namespace Oru
}  // namespace Legacy

#endif
