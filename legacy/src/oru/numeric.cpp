#include <legacy/oru/numeric.h>

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
#include "validation.h"

namespace Legacy {
namespace Oru {

// ---- NumericInfo ----

template <class T>
NumericInfo<T>::NumericInfo(unsigned int const& id, std::string const& name,
                            Permission_t const& permission)
    : InfoBase(id, name, permission), default_(0), max_(T::Highest()), min_(T::Lowest()) {}

template <class T>
NumericInfo<T>::NumericInfo(NumericInfo const& other) = default;

template <class T>
NumericInfo<T>& NumericInfo<T>::operator=(NumericInfo const& other) = default;

template <class T>
NumericInfo<T>::~NumericInfo() = default;

template <class T>
InfoBase* NumericInfo<T>::DeepCopy(unsigned int id, std::string const& name,
                                   Permission_t const& permission) const {
    std::unique_ptr<NumericInfo> copy(new NumericInfo(id, name, permission));
    copy->default_ = default_;
    copy->max_ = max_;
    copy->min_ = min_;
    return copy.release();
}

template <class T>
NumericInfo<T>* NumericInfo<T>::DeepCopy() const {
    return static_cast<NumericInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

template <class T>
NumericInfo<T>* NumericInfo<T>::DeepCopy(unsigned int id) const {
    return static_cast<NumericInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

template <class T>
ItemBase* NumericInfo<T>::CreateItem() const {
    // The default as it stands, not clamped.
    return NumericItem<T>::Create(GetId(), default_);
}

template <class T>
OruType_t NumericInfo<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t NumericInfo<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool NumericInfo<T>::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    if (!IsEqualType(other)) {
        return false;
    }
    auto const& that = static_cast<NumericInfo const&>(*other);
    return T::IsEqual(min_, that.min_) && T::IsEqual(max_, that.max_);
}

template <class T>
int NumericInfo<T>::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<NumericInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    if (that->min_ > max_ || min_ > that->max_) {
        return Codes::k_disjoint;
    }
    // The default is left alone, even outside the new range.
    min_ = min_ < that->min_ ? that->min_ : min_;
    max_ = that->max_ < max_ ? that->max_ : max_;
    return 0;
}

template <class T>
int NumericInfo<T>::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() != OruType_t::Numeric) {
        return Codes::k_unsupported;
    }
    Element newDefault{}, newMax{}, newMin{};
    bool read = false;
    VisitNumericType(source->GetNumericType(), [&](auto tag) {
        using S = typename decltype(tag)::Traits;
        if (auto const* const from = dynamic_cast<NumericInfo<S> const*>(source.get())) {
            newDefault = ConvertNumber<Element>(from->GetDefault());
            newMax = ConvertNumber<Element>(from->GetMax());
            newMin = ConvertNumber<Element>(from->GetMin());
            read = true;
        }
    });
    if (!read) {
        return Codes::k_unsupported;
    }
    bool const differs =
        !T::IsEqual(default_, newDefault) || !T::IsEqual(max_, newMax) || !T::IsEqual(min_, newMin);
    default_ = newDefault;
    max_ = newMax;
    min_ = newMin;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

template <class T>
void NumericInfo<T>::DumpVal(std::ostream& out) const {
    using D = typename T::DumpType;
    Dump::NumericInfoHead(out, *this);
    Dump::Line(out, "min: ", static_cast<D>(min_));
    Dump::Line(out, "max: ", static_cast<D>(max_));
    Dump::Line(out, "default: ", static_cast<D>(default_));
}

template <class T>
std::ostream& NumericInfo<T>::operator<<(std::ostream& out) const {
    using S = typename T::StreamOutType;
    return out << static_cast<S>(min_) << " <= " << static_cast<S>(default_)
               << " <= " << static_cast<S>(max_);
}

template <class T>
void NumericInfo<T>::SetDefault(Element value) {
    if (value < min_) {
        default_ = min_;
    } else {
        default_ = max_ < value ? max_ : value;
    }
}

template <class T>
void NumericInfo<T>::SetMin(Element value) {
    if (max_ < value) {
        max_ = value;
    }
    min_ = value;
    if (default_ < value) {
        default_ = value;
    }
}

template <class T>
void NumericInfo<T>::SetMax(Element value) {
    if (min_ > value) {
        min_ = value;
    }
    max_ = value;
    if (default_ > value) {
        default_ = value;
    }
}

// ---- NumericItem ----

template <class T>
NumericItem<T>::NumericItem(unsigned int id) : ItemBase(id), value_(0) {}

template <class T>
NumericItem<T>::NumericItem(NumericItem const& other) = default;

template <class T>
NumericItem<T>& NumericItem<T>::operator=(NumericItem const& other) = default;

template <class T>
NumericItem<T>* NumericItem<T>::Create(unsigned int id, Element const& value) {
    std::unique_ptr<NumericItem> item(new NumericItem(id));
    item->value_ = value;
    return item.release();
}

template <class T>
NumericItem<T>::~NumericItem() = default;

template <class T>
ItemBase* NumericItem<T>::DeepCopy(unsigned int id) const {
    return Create(id, value_);
}

template <class T>
NumericItem<T>* NumericItem<T>::DeepCopy() const {
    return Create(GetId(), value_);
}

template <class T>
OruType_t NumericItem<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t NumericItem<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool NumericItem<T>::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    if (!IsEqualType(other)) {
        return false;
    }
    auto const* const that = dynamic_cast<NumericItem const*>(other.get());
    return that && T::IsEqual(value_, that->value_);
}

template <class T>
int NumericItem<T>::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                     unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    SourceNumber number;
    int const code = ReadSourceNumber(*source, index, number);
    if (code != 0) {
        return code;
    }
    Element const newValue = number.As<Element>();
    bool const differs = !T::IsEqual(value_, newValue);
    value_ = newValue;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

template <class T>
unsigned int NumericItem<T>::GetSerialDataSize() const {
    return T::k_serialWidth;
}

template <class T>
int NumericItem<T>::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, T::k_serialWidth);
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::PutElement<T>(payload, value_);
    return 0;
}

template <class T>
int NumericItem<T>::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this, T::k_serialWidth);
    if (code != 0) {
        return code;
    }
    value_ = Serial::GetElement<T>(record->data);
    return 0;
}

template <class T>
std::shared_ptr<ResultElem const> NumericItem<T>::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    std::shared_ptr<ResultElem const> result = ValidateMin(info);
    if (result) {
        return result;
    }
    return ValidateMax(info);
}

template <class T>
std::shared_ptr<ResultElem const> NumericItem<T>::ValidateMin(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const* const numericInfo = Validation::InfoAs<NumericInfo<T>>(info);
    if (!numericInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    // Only strictly below fails, so a NaN passes.
    if (!(value_ < numericInfo->GetMin())) {
        return nullptr;
    }
    return Validation::Fail(
        *this, "TypesSystemNumericValidationMin",
        {numericInfo->GetName(),
         Validation::Text(static_cast<typename T::DumpType>(numericInfo->GetMin()))});
}

template <class T>
std::shared_ptr<ResultElem const> NumericItem<T>::ValidateMax(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const* const numericInfo = Validation::InfoAs<NumericInfo<T>>(info);
    if (!numericInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    if (!(value_ > numericInfo->GetMax())) {
        return nullptr;
    }
    return Validation::Fail(
        *this, "TypesSystemNumericValidationMax",
        {numericInfo->GetName(),
         Validation::Text(static_cast<typename T::DumpType>(numericInfo->GetMax()))});
}

template <class T>
bool NumericItem<T>::SetValFromStream(std::istream& in, std::ostream& errors,
                                      boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    // No bounds here; the value stays as it was unless a whole number reads.
    return TextIO::ReadField(in, errors, "numericItem", value_, &TextIO::ReadTextNumber<T>);
}

template <class T>
void NumericItem<T>::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    Dump::Line(out, "value: ", static_cast<typename T::DumpType>(value_));
}

template <class T>
std::ostream& NumericItem<T>::operator<<(std::ostream& out) const {
    return out << static_cast<typename T::StreamOutType>(value_);
}

template <class T>
void NumericItem<T>::SetVal(Element value, NumericInfo<T> const& info) {
    // Out of range takes the default, not the nearer bound.
    value_ = (value < info.GetMin() || value > info.GetMax()) ? info.GetDefault() : value;
}

template <class T>
void NumericItem<T>::BoundVal(NumericInfo<T> const& info) {
    if (value_ < info.GetMin()) {
        value_ = info.GetMin();
    } else if (value_ > info.GetMax()) {
        value_ = info.GetMax();
    }
}

template <class T>
bool NumericItem<T>::WithinBounds(NumericInfo<T> const& info) const {
    return !(value_ < info.GetMin()) && !(value_ > info.GetMax());
}

#define LEGACY_ORU_INSTANTIATE_NUMERIC(T) \
    template class NumericInfo<T>;        \
    template class NumericItem<T>;
LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(LEGACY_ORU_INSTANTIATE_NUMERIC)

}  // namespace Oru
}  // namespace Legacy
