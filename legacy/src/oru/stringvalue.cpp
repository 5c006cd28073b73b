#include <legacy/oru/stringvalue.h>

#include <algorithm>
#include <cstring>
#include <istream>
#include <memory>
#include <ostream>

#include <legacy/oru/bool.h>
#include <legacy/oru/resultelem.h>
#include <legacy/oru/stringarray.h>

#include "codes.h"
#include "dump.h"
#include "family.h"
#include "serialcodec.h"
#include "textio.h"
#include "texts.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

// ---- StringInfo ----

StringInfo::StringInfo(unsigned int const& id, std::string const& name,
                       Permission_t const& permission)
    : InfoBase(id, name, permission), maxLength_(256) {}

StringInfo::StringInfo(StringInfo const& other) = default;

StringInfo& StringInfo::operator=(StringInfo const& other) = default;

StringInfo::~StringInfo() = default;

InfoBase* StringInfo::DeepCopy(unsigned int id, std::string const& name,
                               Permission_t const& permission) const {
    std::unique_ptr<StringInfo> copy(new StringInfo(id, name, permission));
    copy->default_ = default_;
    copy->maxLength_ = maxLength_;
    return copy.release();
}

StringInfo* StringInfo::DeepCopy() const {
    return static_cast<StringInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

StringInfo* StringInfo::DeepCopy(unsigned int id) const {
    return static_cast<StringInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* StringInfo::CreateItem() const {
    return StringItem::Create(GetId(), default_);
}

OruType_t StringInfo::GetType() const {
    return GetTypeStatic();
}

bool StringInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<StringInfo>(*this, other);
    return that && that->maxLength_ == maxLength_;
}

int StringInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<StringInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    if (that->maxLength_ < maxLength_) {
        maxLength_ = that->maxLength_;
    }
    // Answers -26 although the merge is done: callers rely on that code.
    return Codes::k_unsupported;
}

int StringInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<StringInfo>(source, OruType_t::String);
    if (!that) {
        return Codes::k_unsupported;
    }
    bool const differs = default_ != that->default_ || maxLength_ != that->maxLength_;
    default_ = that->default_;
    maxLength_ = that->maxLength_;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void StringInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    Dump::Line(out, "maxLength: ", maxLength_);
    Dump::Line(out, "default: ", default_);
}

std::ostream& StringInfo::operator<<(std::ostream& out) const {
    return out << '"' << default_ << "\"; max length=" << maxLength_;
}

int StringInfo::SetMaxLength(unsigned long long length) {
    maxLength_ = length;
    if (default_.size() > length) {
        default_.resize(static_cast<std::size_t>(length));
    }
    return 0;
}

int StringInfo::SetDefault(std::string const& text) {
    default_ = text;
    // A maximum of 0 means no limit here, unlike StringItem::SetVal.
    if (maxLength_ != 0 && default_.size() > maxLength_) {
        default_.resize(static_cast<std::size_t>(maxLength_));
    }
    return 0;
}

// ---- StringItem ----

StringItem::StringItem(unsigned int id) : ItemBase(id) {}

StringItem::StringItem(StringItem const& other) = default;

StringItem& StringItem::operator=(StringItem const& other) = default;

StringItem* StringItem::Create(unsigned int id, std::string const& value) {
    std::unique_ptr<StringItem> item(new StringItem(id));
    item->value_ = value;
    return item.release();
}

StringItem::~StringItem() = default;

ItemBase* StringItem::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

StringItem* StringItem::DeepCopy() const {
    return Create(GetId(), value_);
}

OruType_t StringItem::GetType() const {
    return GetTypeStatic();
}

bool StringItem::IsEmpty() const {
    return value_.empty();
}

bool StringItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<StringItem>(*this, other);
    return that && that->value_ == value_;
}

int StringItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                 unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    std::string newValue;
    switch (source->GetType()) {
        case OruType_t::Bool: {
            auto const* const from = dynamic_cast<BoolItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            newValue = Texts::Bool(from->GetVal());
            break;
        }
        case OruType_t::String: {
            auto const* const from = dynamic_cast<StringItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            newValue = from->value_;
            break;
        }
        case OruType_t::StringArray: {
            auto const* const from = dynamic_cast<StringArrayItem const*>(source.get());
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
    value_.swap(newValue);
    if (changed) {
        *changed = differs;
    }
    return 0;
}

unsigned int StringItem::GetSerialDataSize() const {
    return static_cast<unsigned int>(value_.size() + 1);
}

int StringItem::Serialize(SerialStruct_t* record) const {
    return Serial::WriteTextPayload(record, *this, value_);
}

int StringItem::Deserialize(ConstSerialStruct_t const* record) {
    return Serial::ReadTextPayload(record, *this, value_);
}

std::shared_ptr<ResultElem const> StringItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const* const stringInfo = Validation::InfoAs<StringInfo>(info);
    if (!stringInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    // A maximum of 0 is no exception here: any text fails.
    if (value_.size() <= stringInfo->GetMaxLength()) {
        return nullptr;
    }
    return Validation::Fail(*this, "TypesSystemStringValidationLength",
                            {stringInfo->GetName(), Validation::Text(stringInfo->GetMaxLength())});
}

bool StringItem::SetValFromStream(std::istream& in, std::ostream& /*errors*/,
                                  boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    // No parse error: a failed read leaves the word empty, and the value with
    // it; at the end of the text the value stays.
    std::string word;
    if (TextIO::ReadWord(in, word)) {
        value_.swap(word);
    }
    return true;
}

void StringItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", value_);
}

std::ostream& StringItem::operator<<(std::ostream& out) const {
    return out << value_;
}

void StringItem::SetVal(std::string const& value, StringInfo const& info) {
    value_ = value.substr(0, static_cast<std::size_t>(
                                 std::min<unsigned long long>(value.size(), info.GetMaxLength())));
}

}  // namespace Oru
}  // namespace Legacy
