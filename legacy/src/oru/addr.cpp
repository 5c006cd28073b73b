#include <legacy/oru/addr.h>

#include <cstring>
#include <istream>
#include <memory>
#include <ostream>
#include <utility>

#include <legacy/oru/resultelem.h>

#include "codes.h"
#include "dump.h"
#include "family.h"
#include "serialcodec.h"
#include "textio.h"
#include "texts.h"

namespace Legacy {
namespace Oru {

namespace {

using EndpointStr = Net::Endpoint<Net::AddrStr>;
using AppEndpointStr = AppEndpoint<EndpointStr>;

// Protocol type, prefix, version, compat version: the fixed head of an
// application endpoint on the wire.
constexpr std::uint32_t k_appHeadSize = 6;

std::uint64_t AppElementSize(std::string const& endpointText) {
    return k_appHeadSize + endpointText.size() + 1;
}

// One application endpoint as laid out on the wire; endpointText is the
// endpoint's ToString, built once by the caller.
void WriteAppElement(Serial::Writer& writer, AppEndpointStr const& value,
                     std::string const& endpointText) {
    // The type field has eight bits; every type of the table fits.
    writer.Byte(static_cast<std::uint8_t>(static_cast<std::uint32_t>(value.GetAppProtocolType())));
    writer.Byte(value.GetAddrGroupPrefix());
    writer.BigEndian<std::uint16_t>(value.GetAppProtocolVersion());
    writer.BigEndian<std::uint16_t>(value.GetAppProtocolCompatVersion());
    writer.CString(endpointText);
}

// Reads one element; false when the head or the terminated text does not fit
// into what remains.
bool ReadAppElement(Serial::Reader& reader, AppEndpointStr& out) {
    std::uint8_t const type = reader.Byte();
    std::uint8_t const prefix = reader.Byte();
    std::uint16_t const version = reader.BigEndian<std::uint16_t>();
    std::uint16_t const compatVersion = reader.BigEndian<std::uint16_t>();
    if (reader.Failed()) {
        return false;
    }
    char const* text = nullptr;
    std::uint32_t length = 0;
    if (!reader.CString(text, length)) {
        return false;
    }
    out = AppEndpointStr(
        AppProtocolInfo_t(static_cast<AppProtocolType_t>(type), version, compatVersion),
        EndpointStr::FromString(std::string(text, length)), prefix);
    return true;
}

// Reads a record whose payload is the value's text; parse makes the value.
template <class ItemT, class Parse>
int DeserializeFromText(ItemT& item, ItemBase::ConstSerialStruct_t const* record, Parse parse) {
    std::string text;
    int const code = Serial::ReadTextPayload(record, item, text);
    if (code == 0) {
        item.SetVal(parse(text));
    }
    return code;
}

// Takes one word of the stream as the value; an exhausted stream leaves the
// value alone and still answers true, as these families always have.
template <class ItemT, class Parse>
bool SetFromWord(ItemT& item, std::istream& in, Parse parse) {
    std::string word;
    if (TextIO::ReadWord(in, word)) {
        item.SetVal(parse(word));
    }
    return true;
}

}  // namespace

// ---- AddrValueInfo ----

template <class Derived, class ItemT, class V>
AddrValueInfo<Derived, ItemT, V>::AddrValueInfo(unsigned int const& id, std::string const& name,
                                                Permission_t const& permission)
    : InfoBase(id, name, permission), default_() {}

template <class Derived, class ItemT, class V>
AddrValueInfo<Derived, ItemT, V>::AddrValueInfo(AddrValueInfo const& other)
    : InfoBase(other), default_(other.default_) {}

template <class Derived, class ItemT, class V>
AddrValueInfo<Derived, ItemT, V>& AddrValueInfo<Derived, ItemT, V>::operator=(
    AddrValueInfo const& other) {
    InfoBase::operator=(other);
    default_ = other.default_;
    return *this;
}

template <class Derived, class ItemT, class V>
AddrValueInfo<Derived, ItemT, V>::~AddrValueInfo() = default;

template <class Derived, class ItemT, class V>
InfoBase* AddrValueInfo<Derived, ItemT, V>::DeepCopy(unsigned int id, std::string const& name,
                                                     Permission_t const& permission) const {
    std::unique_ptr<Derived> copy(new Derived(id, name, permission));
    copy->SetDefault(default_);
    return copy.release();
}

template <class Derived, class ItemT, class V>
Derived* AddrValueInfo<Derived, ItemT, V>::DeepCopy() const {
    return static_cast<Derived*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

template <class Derived, class ItemT, class V>
Derived* AddrValueInfo<Derived, ItemT, V>::DeepCopy(unsigned int id) const {
    return static_cast<Derived*>(DeepCopy(id, GetName(), GetPermission()));
}

template <class Derived, class ItemT, class V>
ItemBase* AddrValueInfo<Derived, ItemT, V>::CreateItem() const {
    return ItemT::Create(GetId(), default_);
}

template <class Derived, class ItemT, class V>
OruType_t AddrValueInfo<Derived, ItemT, V>::GetType() const {
    return Derived::GetTypeStatic();
}

template <class Derived, class ItemT, class V>
bool AddrValueInfo<Derived, ItemT, V>::IsEqualBounds(
    boost::intrusive_ptr<InfoBase const> const& other) const {
    return IsEqualType(other);
}

template <class Derived, class ItemT, class V>
int AddrValueInfo<Derived, ItemT, V>::MergeBounds(
    boost::intrusive_ptr<InfoBase const> const& other) {
    return IsEqualType(other) ? Codes::k_ok : Codes::k_typeMismatch;
}

template <class Derived, class ItemT, class V>
int AddrValueInfo<Derived, ItemT, V>::AssignValue(
    boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<AddrValueInfo>(source, Derived::GetTypeStatic());
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

template <class Derived, class ItemT, class V>
void AddrValueInfo<Derived, ItemT, V>::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    Dump::Line(out, "default: ", default_.ToString());
}

template <class Derived, class ItemT, class V>
int AddrValueInfo<Derived, ItemT, V>::SetDefault(V const& value) {
    default_ = value;
    return 0;
}

// ---- AddrValueItem ----

template <class Derived, class InfoT, class V>
AddrValueItem<Derived, InfoT, V>::AddrValueItem(unsigned int id) : ItemBase(id), value_() {}

template <class Derived, class InfoT, class V>
AddrValueItem<Derived, InfoT, V>::AddrValueItem(AddrValueItem const& other)
    : ItemBase(other), value_(other.value_) {}

template <class Derived, class InfoT, class V>
AddrValueItem<Derived, InfoT, V>& AddrValueItem<Derived, InfoT, V>::operator=(
    AddrValueItem const& other) {
    ItemBase::operator=(other);
    value_ = other.value_;
    return *this;
}

template <class Derived, class InfoT, class V>
AddrValueItem<Derived, InfoT, V>::~AddrValueItem() = default;

template <class Derived, class InfoT, class V>
Derived* AddrValueItem<Derived, InfoT, V>::Create(unsigned int id, V const& value) {
    std::unique_ptr<Derived> item(new Derived(id));
    item->SetVal(value);
    return item.release();
}

template <class Derived, class InfoT, class V>
ItemBase* AddrValueItem<Derived, InfoT, V>::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

template <class Derived, class InfoT, class V>
Derived* AddrValueItem<Derived, InfoT, V>::DeepCopy() const {
    return Create(GetId(), value_);
}

template <class Derived, class InfoT, class V>
OruType_t AddrValueItem<Derived, InfoT, V>::GetType() const {
    return Derived::GetTypeStatic();
}

template <class Derived, class InfoT, class V>
bool AddrValueItem<Derived, InfoT, V>::IsEqualValue(
    boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<AddrValueItem>(*this, other);
    return that && that->value_ == value_;
}

template <class Derived, class InfoT, class V>
int AddrValueItem<Derived, InfoT, V>::AssignArrayValue(
    boost::intrusive_ptr<ItemBase const> const& source, unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<AddrValueItem>(source, Derived::GetTypeStatic());
    if (!that) {
        return Codes::k_unsupported;
    }
    bool const differs = value_ != that->value_;
    if (differs) {
        value_ = that->value_;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

template <class Derived, class InfoT, class V>
std::shared_ptr<ResultElem const> AddrValueItem<Derived, InfoT, V>::Validate(
    boost::intrusive_ptr<InfoBase const> const& /*info*/) const {
    return nullptr;
}

template <class Derived, class InfoT, class V>
void AddrValueItem<Derived, InfoT, V>::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", GetValAsString());
}

template <class Derived, class InfoT, class V>
std::ostream& AddrValueItem<Derived, InfoT, V>::operator<<(std::ostream& out) const {
    return out << value_.ToString();
}

template <class Derived, class InfoT, class V>
void AddrValueItem<Derived, InfoT, V>::SetVal(V const& value, InfoT const& /*info*/) {
    value_ = value;
}

template class AddrValueInfo<AddrInfo, AddrItem, Net::AddrStr>;
template class AddrValueInfo<EndpointInfo, EndpointItem, EndpointStr>;
template class AddrValueInfo<AppEndpointInfo, AppEndpointItem, AppEndpointStr>;
template class AddrValueItem<AddrItem, AddrInfo, Net::AddrStr>;
template class AddrValueItem<EndpointItem, EndpointInfo, EndpointStr>;
template class AddrValueItem<AppEndpointItem, AppEndpointInfo, AppEndpointStr>;

// ---- AddrInfo, AddrItem ----

AddrInfo::AddrInfo(unsigned int const& id, std::string const& name, Permission_t const& permission)
    : AddrValueInfo(id, name, permission) {}
AddrInfo::AddrInfo(AddrInfo const& other) = default;
AddrInfo& AddrInfo::operator=(AddrInfo const& other) = default;
AddrInfo::~AddrInfo() = default;

std::ostream& AddrInfo::operator<<(std::ostream& out) const {
    return out << "AddrInfo";
}

AddrItem::AddrItem(unsigned int id) : AddrValueItem(id) {}
AddrItem::AddrItem(AddrItem const& other) = default;
AddrItem& AddrItem::operator=(AddrItem const& other) = default;
AddrItem::~AddrItem() = default;

unsigned int AddrItem::GetSerialDataSize() const {
    return static_cast<unsigned int>(GetValAsString().size() + 1);
}

int AddrItem::Serialize(SerialStruct_t* record) const {
    return Serial::WriteTextPayload(record, *this, GetValAsString());
}

int AddrItem::Deserialize(ConstSerialStruct_t const* record) {
    return DeserializeFromText(*this, record,
                               [](std::string const& text) { return Net::AddrStr(text); });
}

bool AddrItem::SetValFromStream(std::istream& in, std::ostream& /*errors*/,
                                boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return SetFromWord(*this, in, [](std::string const& word) { return Net::AddrStr(word); });
}

// ---- EndpointInfo, EndpointItem ----

EndpointInfo::EndpointInfo(unsigned int const& id, std::string const& name,
                           Permission_t const& permission)
    : AddrValueInfo(id, name, permission) {}
EndpointInfo::EndpointInfo(EndpointInfo const& other) = default;
EndpointInfo& EndpointInfo::operator=(EndpointInfo const& other) = default;
EndpointInfo::~EndpointInfo() = default;

std::ostream& EndpointInfo::operator<<(std::ostream& out) const {
    return out << "EndpointInfo";
}

EndpointItem::EndpointItem(unsigned int id) : AddrValueItem(id) {}
EndpointItem::EndpointItem(EndpointItem const& other) = default;
EndpointItem& EndpointItem::operator=(EndpointItem const& other) = default;
EndpointItem::~EndpointItem() = default;

unsigned int EndpointItem::GetSerialDataSize() const {
    return static_cast<unsigned int>(GetValAsString().size() + 1);
}

int EndpointItem::Serialize(SerialStruct_t* record) const {
    return Serial::WriteTextPayload(record, *this, GetValAsString());
}

int EndpointItem::Deserialize(ConstSerialStruct_t const* record) {
    return DeserializeFromText(
        *this, record, [](std::string const& text) { return EndpointStr::FromString(text); });
}

bool EndpointItem::SetValFromStream(std::istream& in, std::ostream& /*errors*/,
                                    boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return SetFromWord(*this, in,
                       [](std::string const& word) { return EndpointStr::FromString(word); });
}

// ---- AppEndpointInfo, AppEndpointItem ----

AppEndpointInfo::AppEndpointInfo(unsigned int const& id, std::string const& name,
                                 Permission_t const& permission)
    : AddrValueInfo(id, name, permission) {}
AppEndpointInfo::AppEndpointInfo(AppEndpointInfo const& other) = default;
AppEndpointInfo& AppEndpointInfo::operator=(AppEndpointInfo const& other) = default;
AppEndpointInfo::~AppEndpointInfo() = default;

std::ostream& AppEndpointInfo::operator<<(std::ostream& out) const {
    return out << "AppEndpointInfo";
}

AppEndpointItem::AppEndpointItem(unsigned int id) : AddrValueItem(id) {}
AppEndpointItem::AppEndpointItem(AppEndpointItem const& other) = default;
AppEndpointItem& AppEndpointItem::operator=(AppEndpointItem const& other) = default;
AppEndpointItem::~AppEndpointItem() = default;

unsigned int AppEndpointItem::GetSerialDataSize() const {
    return static_cast<unsigned int>(AppElementSize(Val().GetEndpoint().ToString()));
}

int AppEndpointItem::Serialize(SerialStruct_t* record) const {
    // The endpoint text, not the URI: the protocol travels in the head.
    std::string const text = Val().GetEndpoint().ToString();
    std::uint64_t const size = AppElementSize(text);
    if (!Serial::FitsSizeField(size)) {
        return Codes::k_invalid;
    }
    unsigned char* const payload =
        Serial::WriteEnvelope(record, *this, static_cast<std::uint32_t>(size));
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::Writer writer(payload);
    WriteAppElement(writer, Val(), text);
    return 0;
}

int AppEndpointItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    std::uint32_t const size = record->GetDataSize();
    if (size == 0 || record->data[size - 1] != 0) {
        return Codes::k_invalid;
    }
    Serial::Reader reader(*record);
    AppEndpointStr value;
    // Bytes after the text's first 0 are ignored, as in the text families.
    if (!ReadAppElement(reader, value)) {
        return Codes::k_invalid;
    }
    SetVal(value);
    return 0;
}

bool AppEndpointItem::SetValFromStream(std::istream& in, std::ostream& /*errors*/,
                                       boost::intrusive_ptr<InfoBase const> const& info) {
    // The text carries no protocol; it comes from the Info's default, so
    // without an AppEndpointInfo there is nothing to build.
    auto const* const appInfo = dynamic_cast<AppEndpointInfo const*>(info.get());
    if (!appInfo) {
        return false;
    }
    return SetFromWord(*this, in, [appInfo](std::string const& word) {
        return AppEndpointStr(appInfo->GetDefault().GetAppProtocolInfo(),
                              EndpointStr::FromString(word), 0);
    });
}

// ---- AppEndpointArrayInfo ----

namespace {
constexpr std::size_t k_initialMaxSize = 0x7FFFFFFF;
}  // namespace

AppEndpointArrayInfo::AppEndpointArrayInfo(unsigned int const& id, std::string const& name,
                                           Permission_t const& permission)
    : InfoBase(id, name, permission), minSize_(0), maxSize_(k_initialMaxSize), default_() {}

AppEndpointArrayInfo::AppEndpointArrayInfo(AppEndpointArrayInfo const& other) = default;

AppEndpointArrayInfo& AppEndpointArrayInfo::operator=(AppEndpointArrayInfo const& other) = default;

AppEndpointArrayInfo::~AppEndpointArrayInfo() = default;

InfoBase* AppEndpointArrayInfo::DeepCopy(unsigned int id, std::string const& name,
                                         Permission_t const& permission) const {
    std::unique_ptr<AppEndpointArrayInfo> copy(new AppEndpointArrayInfo(id, name, permission));
    // The sizes stay at their initial values: callers rely on copies that
    // take only the default.
    copy->default_ = default_;
    return copy.release();
}

AppEndpointArrayInfo* AppEndpointArrayInfo::DeepCopy() const {
    return static_cast<AppEndpointArrayInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

AppEndpointArrayInfo* AppEndpointArrayInfo::DeepCopy(unsigned int id) const {
    return static_cast<AppEndpointArrayInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* AppEndpointArrayInfo::CreateItem() const {
    std::unique_ptr<AppEndpointArrayItem> item(new AppEndpointArrayItem(GetId()));
    item->SetVal(default_);
    return item.release();
}

OruType_t AppEndpointArrayInfo::GetType() const {
    return GetTypeStatic();
}

bool AppEndpointArrayInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    return IsEqualType(other);
}

int AppEndpointArrayInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    return IsEqualType(other) ? Codes::k_ok : Codes::k_typeMismatch;
}

int AppEndpointArrayInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                      bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<AppEndpointArrayInfo>(source, GetTypeStatic());
    if (!that) {
        return Codes::k_unsupported;
    }
    // One stage per call, the first that differs: callers rely on a source
    // differing in several parts taking several assignments.
    if (default_ != that->default_) {
        if (that != this) {
            default_ = that->default_;
        }
        if (changed) {
            *changed = true;
        }
        return 0;
    }
    if (minSize_ != that->minSize_) {
        minSize_ = that->minSize_;
        if (changed) {
            *changed = true;
        }
        return 0;
    }
    bool const differs = maxSize_ != that->maxSize_;
    maxSize_ = that->maxSize_;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

void AppEndpointArrayInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
    // The default is not listed, whatever it holds: readers of the dump
    // expect this fixed line.
    Dump::Line(out, "default: ", "[empty array]");
}

std::ostream& AppEndpointArrayInfo::operator<<(std::ostream& out) const {
    return out << "AppEndpointArrayInfo";
}

int AppEndpointArrayInfo::SetDefault(Value_t const& value) {
    default_ = value;
    return 0;
}

int AppEndpointArrayInfo::SetMinSize(std::size_t size) {
    minSize_ = size;
    return 0;
}

int AppEndpointArrayInfo::SetMaxSize(std::size_t size) {
    maxSize_ = size;
    return 0;
}

// ---- AppEndpointArrayItem ----

AppEndpointArrayItem::AppEndpointArrayItem(unsigned int id) : ItemBase(id), value_() {}

AppEndpointArrayItem::AppEndpointArrayItem(AppEndpointArrayItem const& other) = default;

AppEndpointArrayItem& AppEndpointArrayItem::operator=(AppEndpointArrayItem const& other) = default;

AppEndpointArrayItem::~AppEndpointArrayItem() = default;

ItemBase* AppEndpointArrayItem::DeepCopy(unsigned int id) const {
    std::unique_ptr<AppEndpointArrayItem> item(new AppEndpointArrayItem(id));
    item->value_ = value_;
    return item.release();
}

AppEndpointArrayItem* AppEndpointArrayItem::DeepCopy() const {
    return static_cast<AppEndpointArrayItem*>(DeepCopy(GetId()));
}

OruType_t AppEndpointArrayItem::GetType() const {
    return GetTypeStatic();
}

bool AppEndpointArrayItem::IsEmpty() const {
    return value_.empty();
}

bool AppEndpointArrayItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<AppEndpointArrayItem>(*this, other);
    return that && that->value_ == value_;
}

int AppEndpointArrayItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                           unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    bool differs = false;
    if (source->GetType() == AppEndpointItem::GetTypeStatic()) {
        auto const* const from = dynamic_cast<AppEndpointItem const*>(source.get());
        if (!from) {
            return Codes::k_unsupported;
        }
        // An index past the end grows the array with default elements.
        if (index >= value_.size()) {
            value_.resize(static_cast<std::size_t>(index) + 1);
            differs = true;
        }
        if (value_[index] != from->Val()) {
            value_[index] = from->Val();
            differs = true;
        }
    } else if (source->GetType() == GetTypeStatic()) {
        auto const* const from = dynamic_cast<AppEndpointArrayItem const*>(source.get());
        if (!from) {
            return Codes::k_unsupported;
        }
        if (from != this) {
            if (value_.size() != from->value_.size()) {
                value_.resize(from->value_.size());
                differs = true;
            }
            for (std::size_t i = 0; i < value_.size(); ++i) {
                if (value_[i] != from->value_[i]) {
                    value_[i] = from->value_[i];
                    differs = true;
                }
            }
        }
    } else {
        return Codes::k_unsupported;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

unsigned int AppEndpointArrayItem::GetSerialDataSize() const {
    std::uint64_t size = 0;
    for (auto const& element : value_) {
        size += AppElementSize(element.GetEndpoint().ToString());
    }
    return static_cast<unsigned int>(size);
}

int AppEndpointArrayItem::Serialize(SerialStruct_t* record) const {
    if (!record) {
        return Codes::k_invalid;
    }
    std::vector<std::string> texts;
    texts.reserve(value_.size());
    std::uint64_t size = 0;
    for (auto const& element : value_) {
        texts.push_back(element.GetEndpoint().ToString());
        size += AppElementSize(texts.back());
    }
    if (!Serial::FitsSizeField(size)) {
        return Codes::k_invalid;
    }
    unsigned char* const payload =
        Serial::WriteEnvelope(record, *this, static_cast<std::uint32_t>(size));
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::Writer writer(payload);
    for (std::size_t i = 0; i < value_.size(); ++i) {
        WriteAppElement(writer, value_[i], texts[i]);
    }
    return 0;
}

int AppEndpointArrayItem::Deserialize(ConstSerialStruct_t const* record) {
    if (!record) {
        return Codes::k_nullPointer;
    }
    // Cleared before any test, and what was read before a bad element stays:
    // callers rely on a refused record leaving the array empty or partial.
    value_.clear();
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    Serial::Reader reader(*record);
    while (reader.Remaining() != 0) {
        AppEndpointStr element;
        if (!ReadAppElement(reader, element)) {
            return Codes::k_invalid;
        }
        value_.push_back(std::move(element));
    }
    return 0;
}

std::shared_ptr<ResultElem const> AppEndpointArrayItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& /*info*/) const {
    return nullptr;
}

bool AppEndpointArrayItem::SetValFromStream(std::istream& /*in*/, std::ostream& errors,
                                            boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::NotImplemented(errors);
}

void AppEndpointArrayItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", GetValAsString());
}

std::ostream& AppEndpointArrayItem::operator<<(std::ostream& out) const {
    return TextIO::WriteList(out, value_,
                             [](std::ostream& o, auto const& element) { o << element.ToString(); });
}

}  // namespace Oru
}  // namespace Legacy
