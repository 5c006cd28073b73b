#include <legacy/oru/numericsparse.h>

#include <istream>
#include <memory>
#include <ostream>

#include <legacy/oru/resultelem.h>

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

// ---- NumericSparseInfo ----

template <class T>
NumericSparseInfo<T>::NumericSparseInfo(unsigned int const& id, std::string const& name,
                                        Permission_t const& permission)
    : InfoBase(id, name, permission), table_(), default_(0) {}

template <class T>
NumericSparseInfo<T>::NumericSparseInfo(NumericSparseInfo const& other) = default;

template <class T>
NumericSparseInfo<T>& NumericSparseInfo<T>::operator=(NumericSparseInfo const& other) = default;

template <class T>
NumericSparseInfo<T>::~NumericSparseInfo() = default;

template <class T>
NumericSparseInfo<T>* NumericSparseInfo<T>::DeepCopy(unsigned int id, std::string const& name,
                                                     Permission_t const& permission) const {
    std::unique_ptr<NumericSparseInfo> copy(new NumericSparseInfo(id, name, permission));
    copy->table_ = table_;
    copy->default_ = default_;
    return copy.release();
}

template <class T>
NumericSparseInfo<T>* NumericSparseInfo<T>::DeepCopy() const {
    return DeepCopy(GetId(), GetName(), GetPermission());
}

template <class T>
NumericSparseInfo<T>* NumericSparseInfo<T>::DeepCopy(unsigned int id) const {
    return DeepCopy(id, GetName(), GetPermission());
}

template <class T>
ItemBase* NumericSparseInfo<T>::CreateItem() const {
    return NumericSparseItem<T>::Create(GetId(), default_);
}

template <class T>
OruType_t NumericSparseInfo<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t NumericSparseInfo<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool NumericSparseInfo<T>::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    // Two tables are never reported equal, not even an Info and itself:
    // callers that act on this always see a difference, and rely on it.
    (void)IsEqualType(other);
    return false;
}

template <class T>
int NumericSparseInfo<T>::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    // Tables do not merge; a fitting Info hears that the operation is missing.
    return IsEqualType(other) ? Codes::k_unsupported : Codes::k_typeMismatch;
}

template <class T>
int NumericSparseInfo<T>::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                      bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() != OruType_t::NumericSparse) {
        return Codes::k_unsupported;
    }
    bool read = false;
    bool differs = false;
    VisitNumericType(source->GetNumericType(), [&](auto tag) {
        using S = typename decltype(tag)::Traits;
        auto const* const from = dynamic_cast<NumericSparseInfo<S> const*>(source.get());
        if (!from) {
            return;
        }
        read = true;
        auto const& entries = from->GetTable();
        if (table_.size() != entries.size()) {
            table_.resize(entries.size());
            differs = true;
        }
        for (std::size_t i = 0; i < entries.size(); ++i) {
            Element const next = ConvertNumber<Element>(entries[i]);
            differs = T::IsChanged(table_[i], next) || differs;
            table_[i] = next;
        }
        Element const next = ConvertNumber<Element>(from->GetDefault());
        differs = T::IsChanged(default_, next) || differs;
        default_ = next;
    });
    if (!read) {
        return Codes::k_unsupported;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

template <class T>
void NumericSparseInfo<T>::DumpVal(std::ostream& out) const {
    Dump::NumericInfoHead(out, *this);
    Dump::Line(out, "default: ", static_cast<typename T::StreamOutType>(default_));
}

template <class T>
std::ostream& NumericSparseInfo<T>::operator<<(std::ostream& out) const {
    using S = typename T::StreamOutType;
    TextIO::WriteJoined(out, table_,
                        [](std::ostream& o, Element entry) { o << static_cast<S>(entry); });
    return out << "; default=" << static_cast<S>(default_);
}

template <class T>
int NumericSparseInfo<T>::SetTable(std::vector<Element>& table) {
    table_ = table;
    if (table_.empty()) {
        default_ = Element(0);
    } else if (!IsPresent(default_)) {
        default_ = table_.front();
    }
    return 0;
}

template <class T>
bool NumericSparseInfo<T>::IsPresent(Element value) const {
    for (Element const entry : table_) {
        if (T::IsEqual(entry, value)) {
            return true;
        }
    }
    return false;
}

template <class T>
int NumericSparseInfo<T>::SetDefault(Element value) {
    if (!IsPresent(value)) {
        return Codes::k_notInValueSet;
    }
    default_ = value;
    return 0;
}

// ---- NumericSparseItem ----

template <class T>
NumericSparseItem<T>::NumericSparseItem(unsigned int id) : ItemBase(id), value_(0) {}

template <class T>
NumericSparseItem<T>::NumericSparseItem(NumericSparseItem const& other) = default;

template <class T>
NumericSparseItem<T>& NumericSparseItem<T>::operator=(NumericSparseItem const& other) = default;

template <class T>
NumericSparseItem<T>* NumericSparseItem<T>::Create(unsigned int id, Element const& value) {
    std::unique_ptr<NumericSparseItem> item(new NumericSparseItem(id));
    item->value_ = value;
    return item.release();
}

template <class T>
NumericSparseItem<T>::~NumericSparseItem() = default;

template <class T>
NumericSparseItem<T>* NumericSparseItem<T>::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

template <class T>
NumericSparseItem<T>* NumericSparseItem<T>::DeepCopy() const {
    return Create(GetId(), value_);
}

template <class T>
OruType_t NumericSparseItem<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t NumericSparseItem<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool NumericSparseItem<T>::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<NumericSparseItem>(*this, other);
    return that && T::IsEqual(value_, that->value_);
}

template <class T>
int NumericSparseItem<T>::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                           unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() != OruType_t::NumericSparse) {
        return Codes::k_unsupported;
    }
    // Only a source of this T has a defined outcome; one of another element
    // type is converted as the other numeric families convert, rather than
    // reading its bits as a T.
    bool read = false;
    Element next{};
    VisitNumericType(source->GetNumericType(), [&](auto tag) {
        using S = typename decltype(tag)::Traits;
        if (auto const* const from = dynamic_cast<NumericSparseItem<S> const*>(source.get())) {
            next = ConvertNumber<Element>(from->GetVal());
            read = true;
        }
    });
    if (!read) {
        return Codes::k_unsupported;
    }
    bool const differs = T::IsChanged(value_, next);
    value_ = next;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

template <class T>
unsigned int NumericSparseItem<T>::GetSerialDataSize() const {
    return T::k_serialWidth;
}

template <class T>
int NumericSparseItem<T>::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, T::k_serialWidth);
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::PutElement<T>(payload, value_);
    return 0;
}

template <class T>
int NumericSparseItem<T>::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this, T::k_serialWidth);
    if (code != 0) {
        return code;
    }
    // The table is not consulted: a received value is taken as it is.
    value_ = Serial::GetElement<T>(record->data);
    return 0;
}

template <class T>
std::shared_ptr<ResultElem const> NumericSparseItem<T>::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    // Never passes, whatever the value: callers that mean to check a sparse
    // value ask IsPresent on the Info, and rely on this answer otherwise.
    return Validation::Illegal(*this, info.get());
}

template <class T>
bool NumericSparseItem<T>::SetValFromStream(std::istream& in, std::ostream& errors,
                                            boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    // The table is not consulted: SetVal with the Info is where it applies.
    return TextIO::ReadField(in, errors, "numericSparseItem", value_, &TextIO::ReadTextNumber<T>);
}

template <class T>
void NumericSparseItem<T>::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", static_cast<typename T::StreamOutType>(value_));
}

template <class T>
std::ostream& NumericSparseItem<T>::operator<<(std::ostream& out) const {
    return out << static_cast<typename T::StreamOutType>(value_);
}

template <class T>
void NumericSparseItem<T>::SetVal(Element value, NumericSparseInfo<T> const& info) {
    value_ = info.IsPresent(value) ? value : info.GetDefault();
}

#define LEGACY_ORU_INSTANTIATE_NUMERIC_SPARSE(T) \
    template class NumericSparseInfo<T>;         \
    template class NumericSparseItem<T>;
LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(LEGACY_ORU_INSTANTIATE_NUMERIC_SPARSE)

}  // namespace Oru
}  // namespace Legacy
