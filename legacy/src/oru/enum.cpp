#include <legacy/oru/enum.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>

#include <legacy/oru/resultelem.h>
#include <legacy/oru/traits.h>

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

bool SameEntry(ElemType<int> const& a, ElemType<int> const& b) {
    return a.name == b.name && a.value == b.value && a.disabled == b.disabled;
}

}  // namespace

// ---- EnumInfo ----

EnumInfo::EnumInfo(unsigned int const& id, std::string const& name, Permission_t const& permission,
                   bool localized)
    : InfoBase(id, name, permission), default_(0), localized_(localized) {}

EnumInfo::EnumInfo(EnumInfo const& other) = default;

EnumInfo& EnumInfo::operator=(EnumInfo const& other) = default;

EnumInfo::~EnumInfo() = default;

InfoBase* EnumInfo::DeepCopy(unsigned int id, std::string const& name,
                             Permission_t const& permission) const {
    std::unique_ptr<EnumInfo> copy(new EnumInfo(id, name, permission, localized_));
    copy->table_ = table_;
    copy->default_ = default_;
    return copy.release();
}

EnumInfo* EnumInfo::DeepCopy() const {
    return static_cast<EnumInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

EnumInfo* EnumInfo::DeepCopy(unsigned int id) const {
    return static_cast<EnumInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* EnumInfo::CreateItem() const {
    return EnumItem::Create(GetId(), default_);
}

OruType_t EnumInfo::GetType() const {
    return GetTypeStatic();
}

bool EnumInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    // The type test is made, yet two tables never count as equal bounds:
    // callers rely on an enumeration always looking changed here.
    static_cast<void>(IsEqualType(other));
    return false;
}

int EnumInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    // Nothing to merge in a table of names.
    return IsEqualType(other) ? Codes::k_unsupported : Codes::k_typeMismatch;
}

int EnumInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<EnumInfo>(source, OruType_t::Enum);
    if (!that) {
        return Codes::k_unsupported;
    }
    bool differs = false;
    if (that != this) {
        if (table_.size() != that->table_.size()) {
            table_.resize(that->table_.size());
            differs = true;
        }
        for (std::size_t i = 0; i < table_.size(); ++i) {
            if (!SameEntry(table_[i], that->table_[i])) {
                table_[i] = that->table_[i];
                differs = true;
            }
        }
        // The change rule of numbers: a wrapping distance in 32 bits.
        if (!S32Traits::IsEqual(default_, that->default_)) {
            differs = true;
        }
        default_ = that->default_;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void EnumInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
}

std::ostream& EnumInfo::operator<<(std::ostream& out) const {
    TextIO::WriteJoined(out, table_, [](std::ostream& o, auto const& entry) {
        o << entry.name;
        if (entry.disabled) {
            o << "*";
        }
        o << "=" << entry.value;
    });
    return out << "; default=" << default_;
}

int EnumInfo::SetTable(Table const& table) {
    table_ = table;
    // An empty table keeps the default, unlike the sparse families.
    if (table_.empty() || IsPresent(default_)) {
        return 0;
    }
    default_ = table_.front().value;
    return 0;
}

int EnumInfo::SetDefault(int value) {
    // With no table there is nothing to compare with.
    if (!table_.empty() && !IsPresent(value)) {
        return Codes::k_notInValueSet;
    }
    default_ = value;
    return 0;
}

bool EnumInfo::IsPresent(int value) const {
    Table::const_iterator it;
    return Find(value, it);
}

bool EnumInfo::IsEnabled(int value) const {
    Table::const_iterator it;
    return Find(value, it) && !it->disabled;
}

int EnumInfo::GetElem(int value, ElemType<int>& element) const {
    Table::const_iterator it;
    if (!Find(value, it)) {
        return Codes::k_notFound;
    }
    element = *it;
    return 0;
}

int EnumInfo::GetElemName(int value, std::string& name) const {
    Table::const_iterator it;
    if (!Find(value, it)) {
        return Codes::k_notFound;
    }
    name = it->name;
    return 0;
}

int EnumInfo::GetElemVal(std::string const& name, int& value) const {
    Table::const_iterator it;
    if (!Find(name, it)) {
        return Codes::k_notFound;
    }
    value = it->value;
    return 0;
}

int EnumInfo::AddElem(ElemType<int> const& element) {
    Table::const_iterator it;
    if (Find(element.value, it) || Find(element.name, it)) {
        return Codes::k_present;
    }
    table_.push_back(element);
    return 0;
}

int EnumInfo::RemoveElem(int value) {
    Table::iterator it;
    if (!Find(value, it)) {
        return Codes::k_notFound;
    }
    table_.erase(it);
    return 0;
}

int EnumInfo::EnableElem(int value) {
    Table::iterator it;
    if (!Find(value, it)) {
        return Codes::k_notFound;
    }
    it->disabled = false;
    return 0;
}

int EnumInfo::DisableElem(int value) {
    Table::iterator it;
    if (!Find(value, it)) {
        return Codes::k_notFound;
    }
    // A disabled default stays the default.
    it->disabled = true;
    return 0;
}

bool EnumInfo::Find(int value, Table::iterator& it) {
    for (it = table_.begin(); it != table_.end(); ++it) {
        if (it->value == value) {
            return true;
        }
    }
    return false;
}

bool EnumInfo::Find(int value, Table::const_iterator& it) const {
    for (it = table_.begin(); it != table_.end(); ++it) {
        if (it->value == value) {
            return true;
        }
    }
    return false;
}

bool EnumInfo::Find(std::string const& name, Table::iterator& it) {
    for (it = table_.begin(); it != table_.end(); ++it) {
        if (it->name == name) {
            return true;
        }
    }
    return false;
}

bool EnumInfo::Find(std::string const& name, Table::const_iterator& it) const {
    for (it = table_.begin(); it != table_.end(); ++it) {
        if (it->name == name) {
            return true;
        }
    }
    return false;
}

// ---- EnumItem ----

EnumItem::EnumItem(unsigned int id) : ItemBase(id), value_(0) {}

EnumItem::EnumItem(EnumItem const& other) = default;

EnumItem& EnumItem::operator=(EnumItem const& other) = default;

EnumItem* EnumItem::Create(unsigned int id, int const& value) {
    std::unique_ptr<EnumItem> item(new EnumItem(id));
    item->value_ = value;
    return item.release();
}

EnumItem::~EnumItem() = default;

ItemBase* EnumItem::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

EnumItem* EnumItem::DeepCopy() const {
    return Create(GetId(), value_);
}

OruType_t EnumItem::GetType() const {
    return GetTypeStatic();
}

bool EnumItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<EnumItem>(*this, other);
    return that && that->value_ == value_;
}

int EnumItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                               unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    // Bool, Enum, Numeric and NumericArray offer a number; names are never
    // looked up, so a String is refused like any other family.
    SourceNumber number;
    int const code = ReadSourceNumber(*source, index, number);
    if (code != 0) {
        return code;
    }
    int const newValue = number.As<int>();
    bool const differs = newValue != value_;
    value_ = newValue;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

unsigned int EnumItem::GetSerialDataSize() const {
    return 4;
}

int EnumItem::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, 4);
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::PutBigEndian(payload, static_cast<std::uint32_t>(value_));
    return 0;
}

int EnumItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this, 4);
    if (code != 0) {
        return code;
    }
    value_ = static_cast<int>(Serial::GetBigEndian<std::uint32_t>(record->data));
    return 0;
}

std::shared_ptr<ResultElem const> EnumItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const enumInfo = Validation::CastInfo<EnumInfo>(info);
    if (!enumInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    // A disabled entry passes here although SetVal with the Info would
    // replace it: the check asks only whether the value is known.
    if (enumInfo->IsPresent(value_)) {
        return nullptr;
    }
    return Validation::Fail(*this, "TypesSystemEnumValidationValue",
                            {enumInfo->GetName(), Validation::Text(value_)});
}

bool EnumItem::SetValFromStream(std::istream& in, std::ostream& errors,
                                boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    // Read unsigned, so that 4294967295 stores -1; names are not understood.
    unsigned int read = 0;
    if (!TextIO::ReadField(in, errors, "enumItem", read)) {
        return false;
    }
    value_ = static_cast<int>(read);
    return true;
}

void EnumItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", value_);
}

std::ostream& EnumItem::operator<<(std::ostream& out) const {
    return out << value_;
}

void EnumItem::SetVal(int value, EnumInfo const& info) {
    value_ = info.IsEnabled(value) ? value : info.GetDefault();
}

}  // namespace Oru
}  // namespace Legacy
