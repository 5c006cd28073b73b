#include <legacy/oru/bool.h>

#include <algorithm>
#include <cstdint>
#include <istream>
#include <limits>
#include <memory>
#include <ostream>

#include <legacy/oru/resultelem.h>

#include "arraysize.h"
#include "codes.h"
#include "dump.h"
#include "family.h"
#include "numericconv.h"
#include "serialcodec.h"
#include "textio.h"
#include "texts.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

namespace {

// The payload bytes of n packed flags: a leading byte, then one byte per
// started eight. Computed in 64 bits so that Serialize can refuse a length
// the 32-bit size field cannot describe.
std::uint64_t PackedSize(std::uint64_t n) noexcept {
    return n == 0 ? 1 : ((n - 1) >> 3) + 2;
}

// The byte of element i. The byte number is held in eight bits, so from
// element 2048 on the bits fold onto the first 256 data bytes: that is the
// wire format and peers depend on it.
std::size_t PackedByte(std::uint64_t i) noexcept {
    return 1 + static_cast<std::size_t>((i >> 3) & 255);
}

unsigned char PackedMask(std::uint64_t i) noexcept {
    return static_cast<unsigned char>(0x80u >> (i & 7));
}

// A number offered by a Numeric or NumericArray Item, judged as a flag:
// integers by being non-zero, floating values by lying at least 1e-10f away
// from zero (so a NaN is false).
int ReadNumberAsFlag(ItemBase const& source, unsigned int index, bool& out) {
    SourceNumber number;
    int const code = ReadSourceNumber(source, index, number);
    if (code != 0) {
        return code;
    }
    constexpr float k_tolerance = 1e-10f;
    switch (source.GetNumericType()) {
        case NumericType_t::Float: {
            float const value = number.As<float>();
            out = value >= k_tolerance || value <= -k_tolerance;
            return 0;
        }
        case NumericType_t::Double: {
            double const value = number.As<double>();
            // The float constant widened, not the double nearest to 1e-10.
            double const tolerance = static_cast<double>(k_tolerance);
            out = value >= tolerance || value <= -tolerance;
            return 0;
        }
        default:
            out = number.As<unsigned long long>() != 0;
            return 0;
    }
}

}  // namespace

// ---- BoolInfo ----

BoolInfo::BoolInfo(unsigned int const& id, std::string const& name, Permission_t const& permission)
    : InfoBase(id, name, permission), fixed_(false), default_(false) {}

BoolInfo::BoolInfo(BoolInfo const& other) = default;

BoolInfo& BoolInfo::operator=(BoolInfo const& other) = default;

BoolInfo::~BoolInfo() = default;

InfoBase* BoolInfo::DeepCopy(unsigned int id, std::string const& name,
                             Permission_t const& permission) const {
    std::unique_ptr<BoolInfo> copy(new BoolInfo(id, name, permission));
    copy->fixed_ = fixed_;
    copy->default_ = default_;
    return copy.release();
}

BoolInfo* BoolInfo::DeepCopy() const {
    return static_cast<BoolInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

BoolInfo* BoolInfo::DeepCopy(unsigned int id) const {
    return static_cast<BoolInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* BoolInfo::CreateItem() const {
    return BoolItem::Create(GetId(), default_);
}

OruType_t BoolInfo::GetType() const {
    return GetTypeStatic();
}

bool BoolInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<BoolInfo>(*this, other);
    return that && that->fixed_ == fixed_;
}

int BoolInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<BoolInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    // The narrower of the two is the fixed one; a fixed flag is never cleared.
    fixed_ = fixed_ || that->fixed_;
    return 0;
}

int BoolInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<BoolInfo>(source, OruType_t::Bool);
    if (!that) {
        return Codes::k_unsupported;
    }
    bool const differs = fixed_ != that->fixed_ || default_ != that->default_;
    fixed_ = that->fixed_;
    default_ = that->default_;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void BoolInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    Dump::Line(out, "fixed: ", fixed_);
    Dump::Line(out, "default: ", default_);
}

std::ostream& BoolInfo::operator<<(std::ostream& out) const {
    out << "default=" << Texts::Bool(default_);
    if (fixed_) {
        out << " (fixed)";
    }
    return out;
}

// ---- BoolItem ----

BoolItem::BoolItem(unsigned int id) : ItemBase(id), value_(false) {}

BoolItem::BoolItem(BoolItem const& other) = default;

BoolItem& BoolItem::operator=(BoolItem const& other) = default;

BoolItem* BoolItem::Create(unsigned int id, bool const& value) {
    std::unique_ptr<BoolItem> item(new BoolItem(id));
    item->value_ = value;
    return item.release();
}

BoolItem::~BoolItem() = default;

ItemBase* BoolItem::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

BoolItem* BoolItem::DeepCopy() const {
    return Create(GetId(), value_);
}

OruType_t BoolItem::GetType() const {
    return GetTypeStatic();
}

bool BoolItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<BoolItem>(*this, other);
    return that && that->value_ == value_;
}

int BoolItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                               unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    bool newValue = false;
    switch (source->GetType()) {
        case OruType_t::Bool: {
            auto const* const from = dynamic_cast<BoolItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            newValue = from->value_;
            break;
        }
        case OruType_t::Numeric:
        case OruType_t::NumericArray: {
            int const code = ReadNumberAsFlag(*source, index, newValue);
            if (code != 0) {
                return code;
            }
            break;
        }
        case OruType_t::BoolArray: {
            auto const* const from = dynamic_cast<BoolArrayItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            if (index >= from->GetSize()) {
                return Codes::k_invalid;
            }
            newValue = from->Val()[index];
            break;
        }
        default:
            return Codes::k_unsupported;
    }
    bool const differs = newValue != value_;
    value_ = newValue;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

unsigned int BoolItem::GetSerialDataSize() const {
    return 1;
}

int BoolItem::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, 1);
    if (!payload) {
        return Codes::k_invalid;
    }
    payload[0] = value_ ? 1 : 0;
    return 0;
}

int BoolItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this, 1);
    if (code != 0) {
        return code;
    }
    value_ = record->data[0] != 0;
    return 0;
}

std::shared_ptr<ResultElem const> BoolItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const boolInfo = Validation::CastInfo<BoolInfo>(info);
    if (!boolInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    if (WithinBounds(*boolInfo)) {
        return nullptr;
    }
    return Validation::Fail(*this, "TypesSystemBoolValidationFixedVal",
                            {boolInfo->GetName(), Validation::Text(boolInfo->GetDefault())});
}

bool BoolItem::SetValFromStream(std::istream& in, std::ostream& errors,
                                boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::ReadField(in, errors, "boolItem", value_);
}

void BoolItem::DumpVal(std::ostream& out) const {
    // The dump says 1 or 0 where operator<< says True or False.
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", value_);
}

std::ostream& BoolItem::operator<<(std::ostream& out) const {
    return out << Texts::Bool(value_);
}

void BoolItem::BoundVal(BoolInfo const& info) noexcept {
    if (info.GetFixed()) {
        value_ = info.GetDefault();
    }
}

bool BoolItem::WithinBounds(BoolInfo const& info) const noexcept {
    return !info.GetFixed() || value_ == info.GetDefault();
}

// ---- BoolArrayInfo ----

BoolArrayInfo::BoolArrayInfo(unsigned int const& id, std::string const& name,
                             Permission_t const& permission)
    : InfoBase(id, name, permission), minSize_(0), maxSize_(0) {}

BoolArrayInfo::BoolArrayInfo(BoolArrayInfo const& other) = default;

BoolArrayInfo& BoolArrayInfo::operator=(BoolArrayInfo const& other) = default;

BoolArrayInfo::~BoolArrayInfo() = default;

InfoBase* BoolArrayInfo::DeepCopy(unsigned int id, std::string const& name,
                                  Permission_t const& permission) const {
    std::unique_ptr<BoolArrayInfo> copy(new BoolArrayInfo(id, name, permission));
    copy->minSize_ = minSize_;
    copy->maxSize_ = maxSize_;
    copy->default_ = default_;
    return copy.release();
}

BoolArrayInfo* BoolArrayInfo::DeepCopy() const {
    return static_cast<BoolArrayInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

BoolArrayInfo* BoolArrayInfo::DeepCopy(unsigned int id) const {
    return static_cast<BoolArrayInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* BoolArrayInfo::CreateItem() const {
    return BoolArrayItem::Create(GetId(), default_);
}

OruType_t BoolArrayInfo::GetType() const {
    return GetTypeStatic();
}

bool BoolArrayInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<BoolArrayInfo>(*this, other);
    return that && that->minSize_ == minSize_ && that->maxSize_ == maxSize_;
}

int BoolArrayInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<BoolArrayInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    return ArraySize::Merge(minSize_, maxSize_, that->minSize_, that->maxSize_);
}

int BoolArrayInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<BoolArrayInfo>(source, OruType_t::BoolArray);
    if (!that) {
        return Codes::k_unsupported;
    }
    bool differs = default_ != that->default_;
    if (that != this) {
        default_ = that->default_;
    }
    differs = ArraySize::Assign(minSize_, maxSize_, that->minSize_, that->maxSize_) || differs;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void BoolArrayInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    ArraySize::DumpLines(out, minSize_, maxSize_, default_.size());
}

std::ostream& BoolArrayInfo::operator<<(std::ostream& out) const {
    return ArraySize::Print(out, minSize_, maxSize_, default_.size());
}

int BoolArrayInfo::SetMinSize(unsigned long long size) {
    ArraySize::SetMin(minSize_, maxSize_, default_, size);
    return 0;
}

int BoolArrayInfo::SetMaxSize(unsigned long long size) {
    ArraySize::SetMax(minSize_, maxSize_, default_, size);
    return 0;
}

int BoolArrayInfo::SetDefault(std::vector<bool> const& value) {
    int const code = ArraySize::CheckDefault(value.size(), minSize_, maxSize_);
    if (code == 0) {
        default_ = value;
    }
    return code;
}

// ---- BoolArrayItem ----

BoolArrayItem::BoolArrayItem(unsigned int id) : ItemBase(id) {}

BoolArrayItem::BoolArrayItem(BoolArrayItem const& other) = default;

BoolArrayItem& BoolArrayItem::operator=(BoolArrayItem const& other) = default;

BoolArrayItem* BoolArrayItem::Create(unsigned int id, std::vector<bool> const& value) {
    std::unique_ptr<BoolArrayItem> item(new BoolArrayItem(id));
    item->value_ = value;
    return item.release();
}

BoolArrayItem::~BoolArrayItem() = default;

ItemBase* BoolArrayItem::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

BoolArrayItem* BoolArrayItem::DeepCopy() const {
    return Create(GetId(), value_);
}

OruType_t BoolArrayItem::GetType() const {
    return GetTypeStatic();
}

bool BoolArrayItem::IsEmpty() const {
    return value_.empty();
}

bool BoolArrayItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<BoolArrayItem>(*this, other);
    return that && that->value_ == value_;
}

int BoolArrayItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                    unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    bool differs = false;
    switch (source->GetType()) {
        case OruType_t::Bool: {
            auto const* const from = dynamic_cast<BoolItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            // Grows to reach index, so a caller may fill an array in any order.
            if (index >= value_.size()) {
                value_.resize(static_cast<std::size_t>(index) + 1, false);
                differs = true;
            }
            if (value_[index] != from->GetVal()) {
                value_[index] = from->GetVal();
                differs = true;
            }
            break;
        }
        case OruType_t::BoolArray: {
            auto const* const from = dynamic_cast<BoolArrayItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            differs = value_ != from->value_;
            if (from != this) {
                value_ = from->value_;
            }
            break;
        }
        default:
            return Codes::k_unsupported;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

unsigned int BoolArrayItem::GetSerialDataSize() const {
    return static_cast<unsigned int>(PackedSize(value_.size()));
}

int BoolArrayItem::Serialize(SerialStruct_t* record) const {
    std::uint64_t const size = PackedSize(value_.size());
    if (!record || !Serial::FitsSizeField(size)) {
        return Codes::k_invalid;
    }
    unsigned char* const payload =
        Serial::WriteEnvelope(record, *this, static_cast<std::uint32_t>(size));
    // Bits are only ever set, and later elements fold onto earlier bytes.
    std::fill(payload, payload + size, static_cast<unsigned char>(0));
    std::uint64_t const n = value_.size();
    payload[0] = static_cast<unsigned char>(n & 7);
    for (std::uint64_t i = 0; i < n; ++i) {
        if (value_[static_cast<std::size_t>(i)]) {
            payload[PackedByte(i)] |= PackedMask(i);
        }
    }
    return 0;
}

int BoolArrayItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    std::uint32_t const size = record->GetDataSize();
    if (size == 0 || record->data[0] >= 8) {
        return Codes::k_invalid;
    }
    unsigned char const* const payload = record->data;
    std::uint64_t n = 0;
    if (size > 1) {
        n = (std::uint64_t(size) - 2) * 8 + (payload[0] != 0 ? payload[0] : 8);
    }
    // Appended to what the Item holds: a second read doubles the length, as
    // callers of this format expect. n is bounded by the bytes present.
    value_.reserve(static_cast<std::size_t>(value_.size() + n));
    for (std::uint64_t i = 0; i < n; ++i) {
        value_.push_back((payload[PackedByte(i)] & PackedMask(i)) != 0);
    }
    return 0;
}

std::shared_ptr<ResultElem const> BoolArrayItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const arrayInfo = Validation::CastInfo<BoolArrayInfo>(info);
    if (!arrayInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    // One key for both bounds, MinSize in its name: callers match on it.
    if (value_.size() < arrayInfo->GetMinSize()) {
        return Validation::Fail(*this, "BoolArrayValidationMinSize",
                                {arrayInfo->GetName(), Validation::Text(arrayInfo->GetMinSize())});
    }
    if (value_.size() > arrayInfo->GetMaxSize()) {
        return Validation::Fail(*this, "BoolArrayValidationMinSize",
                                {arrayInfo->GetName(), Validation::Text(arrayInfo->GetMaxSize())});
    }
    return nullptr;
}

bool BoolArrayItem::SetValFromStream(std::istream& in, std::ostream& errors,
                                     boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::ReadCountedList(in, errors, 1u << 16, value_);
}

void BoolArrayItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: ";
    operator<<(out);
    out << std::endl;
}

std::ostream& BoolArrayItem::operator<<(std::ostream& out) const {
    return TextIO::WriteList(out, value_,
                             [](std::ostream& o, bool element) { o << Texts::Bool(element); });
}

int BoolArrayItem::SetVal(std::vector<bool> const& value, BoolArrayInfo const& info) {
    if (value.size() < info.GetMinSize() || value.size() > info.GetMaxSize()) {
        return Codes::k_sizeOutOfRange;
    }
    value_ = value;
    return 0;
}

}  // namespace Oru
}  // namespace Legacy
