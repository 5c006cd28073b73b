#include <legacy/oru/localizedstringvalue.h>

#include <memory>
#include <ostream>

#include <legacy/oru/resultelem.h>

#include "codes.h"
#include "dump.h"
#include "family.h"
#include "textio.h"

namespace Legacy {
namespace Oru {

namespace {

// The text forms show the message as the catalogue renders it for no
// particular selector.
std::string TextOf(LocalizedString const& value) {
    return value.GetString(std::string());
}

}  // namespace

// ---- LocalizedStringInfo ----

LocalizedStringInfo::LocalizedStringInfo(unsigned int const& id, std::string const& name,
                                         Permission_t const& permission)
    : InfoBase(id, name, permission) {}

LocalizedStringInfo::LocalizedStringInfo(LocalizedStringInfo const& other) = default;

LocalizedStringInfo& LocalizedStringInfo::operator=(LocalizedStringInfo const& other) = default;

LocalizedStringInfo::~LocalizedStringInfo() = default;

InfoBase* LocalizedStringInfo::DeepCopy(unsigned int id, std::string const& name,
                                        Permission_t const& permission) const {
    std::unique_ptr<LocalizedStringInfo> copy(new LocalizedStringInfo(id, name, permission));
    copy->default_ = default_;
    return copy.release();
}

LocalizedStringInfo* LocalizedStringInfo::DeepCopy() const {
    return static_cast<LocalizedStringInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

LocalizedStringInfo* LocalizedStringInfo::DeepCopy(unsigned int id) const {
    return static_cast<LocalizedStringInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* LocalizedStringInfo::CreateItem() const {
    std::unique_ptr<LocalizedStringItem> item(new LocalizedStringItem(GetId()));
    item->SetVal(default_);
    return item.release();
}

OruType_t LocalizedStringInfo::GetType() const {
    return GetTypeStatic();
}

bool LocalizedStringInfo::IsEqualBounds(
    boost::intrusive_ptr<InfoBase const> const& /*other*/) const {
    // Without bounds nothing is equal in bounds; composites holding this
    // family therefore always report a difference, as their callers expect.
    return false;
}

int LocalizedStringInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& /*other*/) {
    return Codes::k_unsupported;
}

int LocalizedStringInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                     bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<LocalizedStringInfo>(source, OruType_t::LocalizedString);
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

void LocalizedStringInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    Dump::Line(out, "default: ", TextOf(default_));
}

std::ostream& LocalizedStringInfo::operator<<(std::ostream& out) const {
    // One opening quote and no closing one: readers of this text expect it so.
    return out << '"' << TextOf(default_);
}

// ---- LocalizedStringItem ----

LocalizedStringItem::LocalizedStringItem(unsigned int id) : ItemBase(id) {}

LocalizedStringItem::LocalizedStringItem(LocalizedStringItem const& other) = default;

LocalizedStringItem& LocalizedStringItem::operator=(LocalizedStringItem const& other) = default;

LocalizedStringItem::~LocalizedStringItem() = default;

ItemBase* LocalizedStringItem::DeepCopy(unsigned int id) const {
    std::unique_ptr<LocalizedStringItem> copy(new LocalizedStringItem(id));
    copy->value_ = value_;
    return copy.release();
}

LocalizedStringItem* LocalizedStringItem::DeepCopy() const {
    return static_cast<LocalizedStringItem*>(DeepCopy(GetId()));
}

OruType_t LocalizedStringItem::GetType() const {
    return OruType_t::LocalizedString;
}

bool LocalizedStringItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<LocalizedStringItem>(*this, other);
    return that && that->value_ == value_;
}

int LocalizedStringItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                          unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const from = OfType<LocalizedStringItem>(source, OruType_t::LocalizedString);
    if (!from) {
        return Codes::k_unsupported;
    }
    return TakeValue(value_, from->value_, changed);
}

unsigned int LocalizedStringItem::GetSerialDataSize() const {
    return 0;
}

int LocalizedStringItem::Serialize(SerialStruct_t* /*record*/) const {
    // No serial form: -26 even for a null record, where other families say
    // -41; callers tell "cannot" from "bad argument" by it.
    return Codes::k_unsupported;
}

int LocalizedStringItem::Deserialize(ConstSerialStruct_t const* /*record*/) {
    // No serial form, also for a null record (-26, not -32).
    return Codes::k_unsupported;
}

std::shared_ptr<ResultElem const> LocalizedStringItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& /*info*/) const {
    return nullptr;
}

bool LocalizedStringItem::SetValFromStream(std::istream& /*in*/, std::ostream& errors,
                                           boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::NotImplemented(errors);
}

void LocalizedStringItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", TextOf(value_));
}

std::ostream& LocalizedStringItem::operator<<(std::ostream& out) const {
    return out << TextOf(value_);
}

}  // namespace Oru
}  // namespace Legacy
