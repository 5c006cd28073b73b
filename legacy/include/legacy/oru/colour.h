// ColourInfo and ColourItem: a colour of four float components a, r, g, b,
// nominally fractions of 1. OrientationItem: bearing, inclination and roll as
// floats; that family has no Info class. Both share one serial coding of
// their floats, in which only the integer part of a component survives, and
// one comparison tolerance. Colour bounds are stored and printed, never
// enforced: Validate passes whatever the Info says.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_COLOUR_H
#define LEGACY_ORU_COLOUR_H

#include <iosfwd>
#include <memory>
#include <string>

#include <vintor/colour.h>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

// An orientation in space; what the three angles measure is the callers'
// business.
struct Orientation_t {
    float bearing = 0.0f;
    float inclination = 0.0f;
    float roll = 0.0f;
};

class ORU_API ColourInfo : public InfoBase {
public:
    // Min, max and default all default colours.
    ColourInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    ColourInfo(ColourInfo const& other);
    // Copies min, max and default; the identity stays.
    ColourInfo& operator=(ColourInfo const& other);

    ~ColourInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A ColourItem holding the default.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Always true, whatever other is, null included: colour bounds are not
    // compared.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Merges nothing: 0 for an Info of the same type, -36 otherwise.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes over min, max and default from another ColourInfo; *changed says
    // whether any of them differed.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The identity lines, then "default: " and the operator<< text.
    void DumpVal(std::ostream& out) const override;
    // "min < default < max", each as "a, r, g, b".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    ColourInfo* DeepCopy() const;
    ColourInfo* DeepCopy(unsigned int id) const;

    void SetMin(Vintor::Colour_t const& colour) { min_ = colour; }
    void SetMax(Vintor::Colour_t const& colour) { max_ = colour; }
    void SetDefault(Vintor::Colour_t const& colour) { default_ = colour; }
    Vintor::Colour_t const& GetMin() const noexcept { return min_; }
    Vintor::Colour_t const& GetMax() const noexcept { return max_; }
    Vintor::Colour_t const& GetDefault() const noexcept { return default_; }
    // The colours packed as 0xAARRGGBB, each component times 255 cut to its low
    // eight bits; unlike ColourItem::GetARGB a negative component wraps.
    unsigned int GetMinARGB() const noexcept;
    unsigned int GetMaxARGB() const noexcept;
    unsigned int GetDefaultARGB() const noexcept;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Colour; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    Vintor::Colour_t min_;
    Vintor::Colour_t max_;
    Vintor::Colour_t default_;
};

class ORU_API ColourItem : public ItemBase {
public:
    // A default colour.
    explicit ColourItem(unsigned int id = 0);
    ColourItem(ColourItem const& other);
    // Copies the colour; the id stays.
    ColourItem& operator=(ColourItem const& other);

    ~ColourItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // Same type and every component within 1e-10 of the other's.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes another ColourItem's colour unless it is equal within the
    // tolerance; index is ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // 16: four coded floats.
    unsigned int GetSerialDataSize() const override;
    // Writes a, r, g, b through the colour coding: fractions are lost.
    int Serialize(SerialStruct_t* record) const override;
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Always passes, whatever the Info, null included.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads "(a r g b" as operator<< writes it. The first character is
    // skipped, meant for the opening parenthesis (a blank will do instead);
    // a closing parenthesis stays in the stream.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    // "value: a<a>, r<r>, g<g>, b <b>".
    void DumpVal(std::ostream& out) const override;
    // "(a r g b)".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    ColourItem* DeepCopy() const;

    void Set(Vintor::Colour_t const& colour) noexcept { value_ = colour; }
    void SetVal(Vintor::Colour_t const& colour) noexcept { value_ = colour; }
    void Set(float a, float r, float g, float b) noexcept { value_ = Vintor::Colour_t(a, r, g, b); }
    // Sets a to 0, not to 1: an opaque colour needs the four-argument form.
    void Set(float r, float g, float b) noexcept { value_ = Vintor::Colour_t(0.0f, r, g, b); }
    float GetA() const noexcept { return value_.a; }
    float GetR() const noexcept { return value_.r; }
    float GetG() const noexcept { return value_.g; }
    float GetB() const noexcept { return value_.b; }
    // The colour packed as 0xAARRGGBB: a component not above 0 gives 0, any
    // other is times 255 cut to its low eight bits (so 2.0 gives 254).
    unsigned int GetARGB() const noexcept;
    Vintor::Colour_t& Val() noexcept { return value_; }
    Vintor::Colour_t const& Val() const noexcept { return value_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Colour; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    bool IsEqualVal_(Vintor::Colour_t const& other) const noexcept;

    Vintor::Colour_t value_;
};

class ORU_API OrientationItem : public ItemBase {
public:
    // All three angles 0.
    explicit OrientationItem(unsigned int id = 0);
    OrientationItem(OrientationItem const& other);
    // Copies the orientation; the id stays.
    OrientationItem& operator=(OrientationItem const& other);

    ~OrientationItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // Same type and every field within 1e-10 of the other's.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes another OrientationItem's value unless it is equal within the
    // tolerance; index is ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // 12: three coded floats.
    unsigned int GetSerialDataSize() const override;
    // Writes bearing, inclination, roll through the colour coding.
    int Serialize(SerialStruct_t* record) const override;
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Always passes, whatever the Info, null included.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // No text input: writes "Impl. me" and answers false.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    // "bearing: ", "inclination: ", "roll: " lines.
    void DumpVal(std::ostream& out) const override;
    // The fixed text "OrientationItem".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    OrientationItem* DeepCopy() const;

    void Set(Orientation_t const& value) noexcept { value_ = value; }
    float GetBearing() const noexcept { return value_.bearing; }
    float GetInclination() const noexcept { return value_.inclination; }
    float GetRoll() const noexcept { return value_.roll; }
    Orientation_t& Val() noexcept { return value_; }
    Orientation_t const& Val() const noexcept { return value_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Orientation; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    bool IsEqualVal_(Orientation_t const& other) const noexcept;

    Orientation_t value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
