#include <legacy/oru/colour.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>

#include <legacy/oru/resultelem.h>
#include <legacy/oru/traits.h>

#include "codes.h"
#include "dump.h"
#include "family.h"
#include "serialcodec.h"
#include "textio.h"
#include "texts.h"

namespace Legacy {
namespace Oru {

namespace {

constexpr std::uint32_t k_colourSize = 16;
constexpr std::uint32_t k_orientationSize = 12;
constexpr float k_argbScale = 255.0f;

// Within the single-precision 1e-10 of each other, both ends inclusive; a NaN
// is equal to nothing.
bool IsNear(float own, float other) noexcept {
    return FloatTraits::IsEqual(own, other);
}

// A component times 255 in single precision, truncated, low eight bits.
unsigned int ScaledByte(float component) noexcept {
    return static_cast<unsigned int>(Serial::TruncateToInt64(component * k_argbScale)) & 0xFFu;
}

unsigned int PackARGB(unsigned int a, unsigned int r, unsigned int g, unsigned int b) noexcept {
    return (a << 24) | (r << 16) | (g << 8) | b;
}

// The Info's packing: a negative component wraps, as callers of the Info
// forms expect.
unsigned int InfoARGB(Vintor::Colour_t const& c) noexcept {
    return PackARGB(ScaledByte(c.a), ScaledByte(c.r), ScaledByte(c.g), ScaledByte(c.b));
}

// The Item's packing: a component not above 0 gives 0.
unsigned int ItemByte(float component) noexcept {
    return component > 0.0f ? ScaledByte(component) : 0u;
}

// "a, r, g, b".
void WriteComponents(std::ostream& out, Vintor::Colour_t const& c) {
    float const components[] = {c.a, c.r, c.g, c.b};
    TextIO::WriteJoined(out, components);
}

}  // namespace

// ---- ColourInfo ----

ColourInfo::ColourInfo(unsigned int const& id, std::string const& name,
                       Permission_t const& permission)
    : InfoBase(id, name, permission) {}

ColourInfo::ColourInfo(ColourInfo const& other) = default;

ColourInfo& ColourInfo::operator=(ColourInfo const& other) = default;

ColourInfo::~ColourInfo() = default;

InfoBase* ColourInfo::DeepCopy(unsigned int id, std::string const& name,
                               Permission_t const& permission) const {
    std::unique_ptr<ColourInfo> copy(new ColourInfo(id, name, permission));
    copy->min_ = min_;
    copy->max_ = max_;
    copy->default_ = default_;
    return copy.release();
}

ColourInfo* ColourInfo::DeepCopy() const {
    return static_cast<ColourInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

ColourInfo* ColourInfo::DeepCopy(unsigned int id) const {
    return static_cast<ColourInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* ColourInfo::CreateItem() const {
    std::unique_ptr<ColourItem> item(new ColourItem(GetId()));
    item->Set(default_);
    return item.release();
}

OruType_t ColourInfo::GetType() const {
    return GetTypeStatic();
}

bool ColourInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& /*other*/) const {
    // Colour bounds are never compared: callers treat any two as equal.
    return true;
}

int ColourInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    // Nothing to merge, since colour bounds are not enforced.
    return IsEqualType(other) ? Codes::k_ok : Codes::k_typeMismatch;
}

int ColourInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<ColourInfo>(source, OruType_t::Colour);
    if (!that) {
        return Codes::k_unsupported;
    }
    // Exact comparison here, not the Items' tolerance.
    bool const differs = min_ != that->min_ || max_ != that->max_ || default_ != that->default_;
    min_ = that->min_;
    max_ = that->max_;
    default_ = that->default_;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void ColourInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    out << "default: ";
    operator<<(out);
    out << std::endl;
}

std::ostream& ColourInfo::operator<<(std::ostream& out) const {
    WriteComponents(out, min_);
    out << " < ";
    WriteComponents(out, default_);
    out << " < ";
    WriteComponents(out, max_);
    return out;
}

unsigned int ColourInfo::GetMinARGB() const noexcept {
    return InfoARGB(min_);
}

unsigned int ColourInfo::GetMaxARGB() const noexcept {
    return InfoARGB(max_);
}

unsigned int ColourInfo::GetDefaultARGB() const noexcept {
    return InfoARGB(default_);
}

// ---- ColourItem ----

ColourItem::ColourItem(unsigned int id) : ItemBase(id) {}

ColourItem::ColourItem(ColourItem const& other) = default;

ColourItem& ColourItem::operator=(ColourItem const& other) = default;

ColourItem::~ColourItem() = default;

ItemBase* ColourItem::DeepCopy(unsigned int id) const {
    std::unique_ptr<ColourItem> copy(new ColourItem(id));
    copy->value_ = value_;
    return copy.release();
}

ColourItem* ColourItem::DeepCopy() const {
    return static_cast<ColourItem*>(DeepCopy(GetId()));
}

OruType_t ColourItem::GetType() const {
    return GetTypeStatic();
}

bool ColourItem::IsEqualVal_(Vintor::Colour_t const& other) const noexcept {
    return IsNear(value_.a, other.a) && IsNear(value_.r, other.r) && IsNear(value_.g, other.g) &&
           IsNear(value_.b, other.b);
}

bool ColourItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<ColourItem>(*this, other);
    return that && IsEqualVal_(that->value_);
}

int ColourItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                 unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const from = OfType<ColourItem>(source, OruType_t::Colour);
    if (!from) {
        return Codes::k_unsupported;
    }
    bool const taken = !IsEqualVal_(from->value_);
    if (taken) {
        value_ = from->value_;
    }
    if (changed) {
        *changed = taken;
    }
    return 0;
}

unsigned int ColourItem::GetSerialDataSize() const {
    return k_colourSize;
}

int ColourItem::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, k_colourSize);
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::PutLittleEndianFloat(payload, value_.a);
    Serial::PutLittleEndianFloat(payload + 4, value_.r);
    Serial::PutLittleEndianFloat(payload + 8, value_.g);
    Serial::PutLittleEndianFloat(payload + 12, value_.b);
    return 0;
}

int ColourItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this, k_colourSize);
    if (code != 0) {
        return code;
    }
    unsigned char const* const in = record->GetData();
    value_ = Vintor::Colour_t(
        Serial::GetLittleEndianFloat(in), Serial::GetLittleEndianFloat(in + 4),
        Serial::GetLittleEndianFloat(in + 8), Serial::GetLittleEndianFloat(in + 12));
    return 0;
}

std::shared_ptr<ResultElem const> ColourItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& /*info*/) const {
    // Colour bounds are stored and printed, never enforced.
    return nullptr;
}

bool ColourItem::SetValFromStream(std::istream& in, std::ostream& errors,
                                  boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    if (TextIO::AtEnd(in)) {
        return TextIO::Complain(errors, "colourItem");
    }
    // One character at most, and only up to an opening parenthesis: the text
    // of operator<< reads back, and so does the same without it.
    in.ignore(1, '(');
    Vintor::Colour_t read;
    struct Field {
        float* target;
        char const* label;
    };
    Field const fields[] = {{&read.a, "colourItem.a"},
                            {&read.r, "colourItem.r"},
                            {&read.g, "colourItem.g"},
                            {&read.b, "colourItem.b"}};
    // The fail flag alone between the fields: a field missing at the end sets it too.
    for (Field const& field : fields) {
        in >> *field.target;
        if (TextIO::Failed(in)) {
            return TextIO::Complain(errors, field.label);
        }
    }
    value_ = read;
    return true;
}

void ColourItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    // The blank after the last label only is the established dump text.
    out << "value: "
        << "a" << value_.a << ", "
        << "r" << value_.r << ", "
        << "g" << value_.g << ", "
        << "b " << value_.b << std::endl;
}

std::ostream& ColourItem::operator<<(std::ostream& out) const {
    return out << "(" << value_.a << " " << value_.r << " " << value_.g << " " << value_.b << ")";
}

unsigned int ColourItem::GetARGB() const noexcept {
    return PackARGB(ItemByte(value_.a), ItemByte(value_.r), ItemByte(value_.g), ItemByte(value_.b));
}

// ---- OrientationItem ----

OrientationItem::OrientationItem(unsigned int id) : ItemBase(id) {}

OrientationItem::OrientationItem(OrientationItem const& other) = default;

OrientationItem& OrientationItem::operator=(OrientationItem const& other) = default;

OrientationItem::~OrientationItem() = default;

ItemBase* OrientationItem::DeepCopy(unsigned int id) const {
    std::unique_ptr<OrientationItem> copy(new OrientationItem(id));
    copy->value_ = value_;
    return copy.release();
}

OrientationItem* OrientationItem::DeepCopy() const {
    return static_cast<OrientationItem*>(DeepCopy(GetId()));
}

OruType_t OrientationItem::GetType() const {
    return GetTypeStatic();
}

bool OrientationItem::IsEqualVal_(Orientation_t const& other) const noexcept {
    return IsNear(value_.bearing, other.bearing) && IsNear(value_.inclination, other.inclination) &&
           IsNear(value_.roll, other.roll);
}

bool OrientationItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<OrientationItem>(*this, other);
    return that && IsEqualVal_(that->value_);
}

int OrientationItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                      unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const from = OfType<OrientationItem>(source, OruType_t::Orientation);
    if (!from) {
        return Codes::k_unsupported;
    }
    bool const taken = !IsEqualVal_(from->value_);
    if (taken) {
        value_ = from->value_;
    }
    if (changed) {
        *changed = taken;
    }
    return 0;
}

unsigned int OrientationItem::GetSerialDataSize() const {
    return k_orientationSize;
}

int OrientationItem::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, k_orientationSize);
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::PutLittleEndianFloat(payload, value_.bearing);
    Serial::PutLittleEndianFloat(payload + 4, value_.inclination);
    Serial::PutLittleEndianFloat(payload + 8, value_.roll);
    return 0;
}

int OrientationItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this, k_orientationSize);
    if (code != 0) {
        return code;
    }
    unsigned char const* const in = record->GetData();
    Orientation_t read;
    read.bearing = Serial::GetLittleEndianFloat(in);
    read.inclination = Serial::GetLittleEndianFloat(in + 4);
    read.roll = Serial::GetLittleEndianFloat(in + 8);
    value_ = read;
    return 0;
}

std::shared_ptr<ResultElem const> OrientationItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& /*info*/) const {
    // The family has no Info and nothing to check.
    return nullptr;
}

bool OrientationItem::SetValFromStream(std::istream& /*in*/, std::ostream& errors,
                                       boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::NotImplemented(errors);
}

void OrientationItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "bearing: ", value_.bearing);
    Dump::Line(out, "inclination: ", value_.inclination);
    Dump::Line(out, "roll: ", value_.roll);
}

std::ostream& OrientationItem::operator<<(std::ostream& out) const {
    // The fixed text: the value is printed by DumpVal only.
    return out << "OrientationItem";
}

}  // namespace Oru
}  // namespace Legacy
