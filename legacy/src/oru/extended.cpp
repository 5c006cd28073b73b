#include <legacy/oru/extended.h>

#include <memory>
#include <ostream>

#include <legacy/oru/resultelem.h>

#include "codes.h"
#include "dump.h"
#include "family.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

// ---- ExtendedInfo ----

ExtendedInfo::ExtendedInfo(unsigned int const& id, std::string const& name,
                           Permission_t const& permission)
    : InfoBase(id, name, permission) {}

ExtendedInfo::ExtendedInfo(ExtendedInfo const& other) = default;

ExtendedInfo& ExtendedInfo::operator=(ExtendedInfo const& other) = default;

ExtendedInfo::~ExtendedInfo() = default;

InfoBase* ExtendedInfo::DeepCopy(unsigned int id, std::string const& name,
                                 Permission_t const& permission) const {
    std::unique_ptr<ExtendedInfo> copy(new ExtendedInfo(id, name, permission));
    copy->default_ = default_;
    return copy.release();
}

ExtendedInfo* ExtendedInfo::DeepCopy() const {
    return static_cast<ExtendedInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

ExtendedInfo* ExtendedInfo::DeepCopy(unsigned int id) const {
    return static_cast<ExtendedInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* ExtendedInfo::CreateItem() const {
    return ExtendedItem::Create(GetId(), default_);
}

OruType_t ExtendedInfo::GetType() const {
    return GetTypeStatic();
}

bool ExtendedInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& /*other*/) const {
    // False even against itself, so a composite holding one never has equal
    // bounds either; callers rely on that.
    return false;
}

int ExtendedInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& /*other*/) {
    return Codes::k_unsupported;
}

int ExtendedInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<ExtendedInfo>(source, OruType_t::Extended);
    if (!that) {
        return Codes::k_unsupported;
    }
    bool const differs = default_ != that->default_;
    if (differs) {
        default_ = that->default_;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void ExtendedInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
}

std::ostream& ExtendedInfo::operator<<(std::ostream& out) const {
    return out;
}

int ExtendedInfo::SetDefault(Pair const& value) {
    default_ = value;
    return 0;
}

// ---- ExtendedItem ----

ExtendedItem::ExtendedItem(unsigned int id) : ItemBase(id) {}

ExtendedItem::ExtendedItem(ExtendedItem const& other) = default;

ExtendedItem& ExtendedItem::operator=(ExtendedItem const& other) = default;

ExtendedItem* ExtendedItem::Create(unsigned int id, Pair const& value) {
    std::unique_ptr<ExtendedItem> item(new ExtendedItem(id));
    item->value_ = value;
    return item.release();
}

ExtendedItem::~ExtendedItem() = default;

ItemBase* ExtendedItem::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

ExtendedItem* ExtendedItem::DeepCopy() const {
    return Create(GetId(), value_);
}

OruType_t ExtendedItem::GetType() const {
    return GetTypeStatic();
}

bool ExtendedItem::IsEmpty() const {
    // The first string alone decides, as callers of this family expect.
    return value_.first.empty();
}

bool ExtendedItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<ExtendedItem>(*this, other);
    return that && that->value_ == value_;
}

int ExtendedItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                   unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const from = OfType<ExtendedItem>(source, OruType_t::Extended);
    if (!from) {
        return Codes::k_unsupported;
    }
    return TakeValue(value_, from->value_, changed);
}

unsigned int ExtendedItem::GetSerialDataSize() const {
    return 0;
}

int ExtendedItem::Serialize(SerialStruct_t* /*record*/) const {
    // The family has no serial form; a composite holding one writes ten zero
    // bytes in its place.
    return Codes::k_noSerialForm;
}

int ExtendedItem::Deserialize(ConstSerialStruct_t const* /*record*/) {
    return Codes::k_noSerialForm;
}

std::shared_ptr<ResultElem const> ExtendedItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    if (!Validation::CastInfo<ExtendedInfo>(info)) {
        return Validation::TypeMismatch(*this, info.get());
    }
    return nullptr;
}

bool ExtendedItem::SetValFromStream(std::istream& /*in*/, std::ostream& /*errors*/,
                                    boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    // No text input and, deliberately, no complaint either.
    return false;
}

void ExtendedItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
}

std::ostream& ExtendedItem::operator<<(std::ostream& out) const {
    return out;
}

void ExtendedItem::SetVal(Pair const& value, ExtendedInfo const& /*info*/) {
    value_ = value;
}

}  // namespace Oru
}  // namespace Legacy
