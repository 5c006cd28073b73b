#include <legacy/oru/stringarray.h>

#include <algorithm>
#include <cstring>
#include <istream>
#include <iterator>
#include <limits>
#include <memory>
#include <ostream>

#include <legacy/oru/bool.h>
#include <legacy/oru/resultelem.h>
#include <legacy/oru/stringvalue.h>

#include "arraysize.h"
#include "codes.h"
#include "dump.h"
#include "family.h"
#include "serialcodec.h"
#include "textio.h"
#include "texts.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

namespace {

// Makes target equal to source string by string; answers whether anything
// differed. Strings already equal are not copied.
bool AssignStrings(std::vector<std::string>& target, std::vector<std::string> const& source) {
    bool differs = false;
    if (target.size() != source.size()) {
        target.resize(source.size());
        differs = true;
    }
    for (std::size_t i = 0; i < source.size(); ++i) {
        if (target[i] != source[i]) {
            target[i] = source[i];
            differs = true;
        }
    }
    return differs;
}

// The text of a single Bool ("True"/"False") or String source; false for
// an object that is not of the class its type claims.
bool SingleText(ItemBase const& source, std::string& text) {
    if (source.GetType() == OruType_t::Bool) {
        auto const* const flag = dynamic_cast<BoolItem const*>(&source);
        if (flag) {
            text = Texts::Bool(flag->GetVal());
        }
        return flag != nullptr;
    }
    auto const* const from = dynamic_cast<StringItem const*>(&source);
    if (from) {
        text = from->Val();
    }
    return from != nullptr;
}

// The payload bytes of a list: each string and its terminator.
std::uint64_t ListPayloadSize(std::vector<std::string> const& strings) {
    std::uint64_t size = 0;
    for (std::string const& text : strings) {
        size += std::uint64_t(text.size()) + 1;
    }
    return size;
}

// The fixed block of a string table's record.
constexpr std::uint32_t k_sparseBlockSize = 9;
// What a string table's Item claims to write; peers size buffers by it.
constexpr unsigned int k_sparseClaimedSize = 32;

}  // namespace

// ---- StringArrayInfo ----

StringArrayInfo::StringArrayInfo(unsigned int const& id, std::string const& name,
                                 Permission_t const& permission)
    : InfoBase(id, name, permission), minSize_(0), maxSize_(0) {}

StringArrayInfo::StringArrayInfo(StringArrayInfo const& other) = default;

StringArrayInfo& StringArrayInfo::operator=(StringArrayInfo const& other) = default;

StringArrayInfo::~StringArrayInfo() = default;

InfoBase* StringArrayInfo::DeepCopy(unsigned int id, std::string const& name,
                                    Permission_t const& permission) const {
    std::unique_ptr<StringArrayInfo> copy(new StringArrayInfo(id, name, permission));
    copy->minSize_ = minSize_;
    copy->maxSize_ = maxSize_;
    copy->default_ = default_;
    return copy.release();
}

StringArrayInfo* StringArrayInfo::DeepCopy() const {
    return static_cast<StringArrayInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

StringArrayInfo* StringArrayInfo::DeepCopy(unsigned int id) const {
    return static_cast<StringArrayInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* StringArrayInfo::CreateItem() const {
    return StringArrayItem::Create(GetId(), default_);
}

OruType_t StringArrayInfo::GetType() const {
    return GetTypeStatic();
}

bool StringArrayInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<StringArrayInfo>(*this, other);
    return that && that->minSize_ == minSize_ && that->maxSize_ == maxSize_;
}

int StringArrayInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<StringArrayInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    return ArraySize::Merge(minSize_, maxSize_, that->minSize_, that->maxSize_);
}

int StringArrayInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                 bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<StringArrayInfo>(source, OruType_t::StringArray);
    if (!that) {
        return Codes::k_unsupported;
    }
    bool differs = AssignStrings(default_, that->default_);
    differs = ArraySize::Assign(minSize_, maxSize_, that->minSize_, that->maxSize_) || differs;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void StringArrayInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    ArraySize::DumpLines(out, minSize_, maxSize_, default_.size());
}

std::ostream& StringArrayInfo::operator<<(std::ostream& out) const {
    return ArraySize::Print(out, minSize_, maxSize_, default_.size());
}

int StringArrayInfo::SetMinSize(unsigned long long size) {
    ArraySize::SetMin(minSize_, maxSize_, default_, size);
    return 0;
}

int StringArrayInfo::SetMaxSize(unsigned long long size) {
    ArraySize::SetMax(minSize_, maxSize_, default_, size);
    return 0;
}

int StringArrayInfo::SetDefault(std::vector<std::string> const& value) {
    // Only the number of strings is bounded, never their lengths.
    int const code = ArraySize::CheckDefault(value.size(), minSize_, maxSize_);
    if (code == 0) {
        default_ = value;
    }
    return code;
}

// ---- StringArrayItem ----

StringArrayItem::StringArrayItem(unsigned int id) : ItemBase(id) {}

StringArrayItem::StringArrayItem(StringArrayItem const& other) = default;

StringArrayItem& StringArrayItem::operator=(StringArrayItem const& other) = default;

StringArrayItem* StringArrayItem::Create(unsigned int id, std::vector<std::string> const& value) {
    std::unique_ptr<StringArrayItem> item(new StringArrayItem(id));
    item->value_ = value;
    return item.release();
}

StringArrayItem::~StringArrayItem() = default;

ItemBase* StringArrayItem::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

StringArrayItem* StringArrayItem::DeepCopy() const {
    return Create(GetId(), value_);
}

OruType_t StringArrayItem::GetType() const {
    return GetTypeStatic();
}

bool StringArrayItem::IsEmpty() const {
    return value_.empty();
}

bool StringArrayItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<StringArrayItem>(*this, other);
    return that && that->value_ == value_;
}

int StringArrayItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                      unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    bool differs = false;
    switch (source->GetType()) {
        case OruType_t::Bool:
        case OruType_t::String: {
            std::string text;
            if (!SingleText(*source, text)) {
                return Codes::k_unsupported;
            }
            // Grows to reach index, so a caller may fill the list in any order.
            if (index >= value_.size()) {
                value_.resize(static_cast<std::size_t>(index) + 1);
                differs = true;
            }
            if (value_[index] != text) {
                value_[index].swap(text);
                differs = true;
            }
            break;
        }
        case OruType_t::StringArray: {
            auto const* const from = dynamic_cast<StringArrayItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            differs = AssignStrings(value_, from->value_);
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

unsigned int StringArrayItem::GetSerialDataSize() const {
    return static_cast<unsigned int>(ListPayloadSize(value_));
}

int StringArrayItem::Serialize(SerialStruct_t* record) const {
    std::uint64_t const size = ListPayloadSize(value_);
    if (!record || !Serial::FitsSizeField(size)) {
        return Codes::k_invalid;
    }
    unsigned char* const payload =
        Serial::WriteEnvelope(record, *this, static_cast<std::uint32_t>(size));
    Serial::Writer writer(payload);
    // No count: the terminators separate the strings, the size field ends the list.
    for (std::string const& text : value_) {
        writer.CString(text);
    }
    return 0;
}

int StringArrayItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    Serial::Reader reader(*record);
    if (reader.Remaining() == 0) {
        return 0;  // the empty list
    }
    // Every string must be closed inside the payload, the last one too.
    if (record->data[reader.Remaining() - 1] != 0) {
        return Codes::k_invalid;
    }
    // At most one string per payload byte, so the list is bounded by the bytes present.
    std::vector<std::string> read;
    while (reader.Remaining() != 0) {
        char const* text = nullptr;
        std::uint32_t length = 0;
        reader.CString(text, length);  // found: the payload ends in 0
        read.emplace_back(text, length);
    }
    // Appended to what the Item holds, not replacing it: a second read
    // doubles the list, as callers of this format expect.
    value_.insert(value_.end(), std::make_move_iterator(read.begin()),
                  std::make_move_iterator(read.end()));
    return 0;
}

std::shared_ptr<ResultElem const> StringArrayItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const arrayInfo = Validation::CastInfo<StringArrayInfo>(info);
    if (!arrayInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    if (value_.size() < arrayInfo->GetMinSize()) {
        return Validation::Fail(*this, "TypesSystemStringArrayValidationMinSize",
                                {arrayInfo->GetName(), Validation::Text(arrayInfo->GetMinSize())});
    }
    if (value_.size() > arrayInfo->GetMaxSize()) {
        return Validation::Fail(*this, "TypesSystemStringArrayValidationMaxSize",
                                {arrayInfo->GetName(), Validation::Text(arrayInfo->GetMaxSize())});
    }
    return nullptr;
}

bool StringArrayItem::SetValFromStream(std::istream& in, std::ostream& errors,
                                       boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::ReadCountedList(in, errors, 1u << 12, value_);
}

void StringArrayItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: ";
    operator<<(out);
    out << std::endl;
}

std::ostream& StringArrayItem::operator<<(std::ostream& out) const {
    return TextIO::WriteList(out, value_);
}

int StringArrayItem::SetVal(std::vector<std::string> const& value, StringArrayInfo const& info) {
    if (value.size() < info.GetMinSize() || value.size() > info.GetMaxSize()) {
        return Codes::k_sizeOutOfRange;
    }
    value_ = value;
    return 0;
}

// ---- StringSparseInfo ----

StringSparseInfo::StringSparseInfo(unsigned int const& id, std::string const& name,
                                   Permission_t const& permission)
    : InfoBase(id, name, permission) {}

StringSparseInfo::StringSparseInfo(StringSparseInfo const& other) = default;

StringSparseInfo& StringSparseInfo::operator=(StringSparseInfo const& other) = default;

StringSparseInfo::~StringSparseInfo() = default;

InfoBase* StringSparseInfo::DeepCopy(unsigned int id, std::string const& name,
                                     Permission_t const& permission) const {
    std::unique_ptr<StringSparseInfo> copy(new StringSparseInfo(id, name, permission));
    copy->table_ = table_;
    copy->default_ = default_;
    return copy.release();
}

StringSparseInfo* StringSparseInfo::DeepCopy() const {
    return static_cast<StringSparseInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

StringSparseInfo* StringSparseInfo::DeepCopy(unsigned int id) const {
    return static_cast<StringSparseInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* StringSparseInfo::CreateItem() const {
    return StringSparseItem::Create(GetId(), default_);
}

OruType_t StringSparseInfo::GetType() const {
    return GetTypeStatic();
}

bool StringSparseInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    // Two tables are never reported equal, not even an Info and itself:
    // callers that act on this always see a difference, and rely on it.
    (void)IsEqualType(other);
    return false;
}

int StringSparseInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    // Tables do not merge; a fitting Info hears that the operation is missing.
    return IsEqualType(other) ? Codes::k_unsupported : Codes::k_typeMismatch;
}

int StringSparseInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                  bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<StringSparseInfo>(source, OruType_t::StringSparse);
    if (!that) {
        return Codes::k_unsupported;
    }
    bool differs = AssignStrings(table_, that->table_);
    if (default_ != that->default_) {
        default_ = that->default_;
        differs = true;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void StringSparseInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    Dump::Line(out, "default: ", default_);
}

std::ostream& StringSparseInfo::operator<<(std::ostream& out) const {
    TextIO::WriteJoined(out, table_);
    return out << "; default=" << default_;
}

int StringSparseInfo::SetTable(std::vector<std::string>& table) {
    table_ = table;
    if (table_.empty()) {
        default_.clear();
    } else if (!IsPresent(default_)) {
        default_ = table_.front();
    }
    return 0;
}

bool StringSparseInfo::IsPresent(std::string value) const {
    return std::find(table_.begin(), table_.end(), value) != table_.end();
}

int StringSparseInfo::SetDefault(std::string value) {
    if (!IsPresent(value)) {
        return Codes::k_notInValueSet;
    }
    default_ = std::move(value);
    return 0;
}

// ---- StringSparseItem ----

StringSparseItem::StringSparseItem(unsigned int id) : ItemBase(id) {}

StringSparseItem::StringSparseItem(StringSparseItem const& other) = default;

StringSparseItem& StringSparseItem::operator=(StringSparseItem const& other) = default;

StringSparseItem* StringSparseItem::Create(unsigned int id, std::string const& value) {
    std::unique_ptr<StringSparseItem> item(new StringSparseItem(id));
    item->value_ = value;
    return item.release();
}

StringSparseItem::~StringSparseItem() = default;

ItemBase* StringSparseItem::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

StringSparseItem* StringSparseItem::DeepCopy() const {
    return Create(GetId(), value_);
}

OruType_t StringSparseItem::GetType() const {
    return GetTypeStatic();
}

bool StringSparseItem::IsEqualVal_(std::string value) const {
    return value_ == value;
}

bool StringSparseItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<StringSparseItem>(*this, other);
    return that && IsEqualVal_(that->value_);
}

int StringSparseItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                       unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const from = OfType<StringSparseItem>(source, OruType_t::StringSparse);
    if (!from) {
        return Codes::k_unsupported;
    }
    // The table is not consulted: the source is trusted to hold a fitting value.
    return TakeValue(value_, from->value_, changed);
}

unsigned int StringSparseItem::GetSerialDataSize() const {
    // Disagrees with the size field of 9 on purpose: callers size buffers by
    // this figure and peers read the 9, so both stay as they are.
    return k_sparseClaimedSize;
}

int StringSparseItem::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, k_sparseBlockSize);
    if (!payload) {
        return Codes::k_invalid;
    }
    // The block keeps its nine bytes for wire compatibility: a longer string
    // is cut to eight bytes, and the zeros behind the terminator keep the
    // record readable.
    std::memset(payload, 0, k_sparseBlockSize);
    std::memcpy(payload, value_.data(),
                std::min<std::size_t>(value_.size(), k_sparseBlockSize - 1));
    return 0;
}

int StringSparseItem::Deserialize(ConstSerialStruct_t const* record) {
    return Serial::ReadTextPayload(record, *this, value_);
}

std::shared_ptr<ResultElem const> StringSparseItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& /*info*/) const {
    // Passes whatever the value, unlike the sparse numbers, which never pass:
    // callers of both rely on the difference.
    return nullptr;
}

bool StringSparseItem::SetValFromStream(std::istream& in, std::ostream& errors,
                                        boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::ReadField(in, errors, "stringSparseItem", value_);
}

void StringSparseItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", value_);
}

std::ostream& StringSparseItem::operator<<(std::ostream& out) const {
    return out << value_;
}

void StringSparseItem::SetVal(std::string value, StringSparseInfo const& info) {
    value_ = info.IsPresent(value) ? std::move(value) : info.GetDefault();
}

}  // namespace Oru
}  // namespace Legacy
