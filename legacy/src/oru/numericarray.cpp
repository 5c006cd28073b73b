#include <legacy/oru/numericarray.h>

#include <algorithm>
#include <istream>
#include <limits>
#include <memory>
#include <ostream>

#include <legacy/oru/rectarray.h>
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

// A rectangle array description flattened: four numbers a rectangle, the
// corner defaults as the default, and the widest corner range as the element
// bounds. Answers -26 for a source that is no RectArrayInfo<U16Traits>.
template <class E>
int AssignFromRectArrayInfo(boost::intrusive_ptr<InfoBase const> const& source,
                            unsigned long long& minSize, unsigned long long& maxSize, E& min,
                            E& max, std::vector<E>& defaults, bool* changed) {
    auto const* const from = source->GetNumericType() == NumericType_t::U16
                                 ? dynamic_cast<RectArrayInfo<U16Traits> const*>(source.get())
                                 : nullptr;
    if (!from) {
        return Codes::k_unsupported;
    }
    bool differs =
        ArraySize::Assign(minSize, maxSize, 4 * from->GetMinSize(), 4 * from->GetMaxSize());
    if (defaults.size() != 4) {
        defaults.resize(4);
        differs = true;
    }
    auto const topLeft = from->TopLeft();
    auto const bottomRight = from->BottomRight();
    NumericInfo<U16Traits> const* const scalars[] = {
        topLeft->X().get(), topLeft->Y().get(), bottomRight->X().get(), bottomRight->Y().get()};
    unsigned short lowest = scalars[0]->GetMin();
    unsigned short highest = scalars[0]->GetMax();
    for (std::size_t i = 0; i < 4; ++i) {
        // Plain equality, as rectangle conversions have always compared.
        E const next = ConvertNumber<E>(scalars[i]->GetDefault());
        differs = differs || defaults[i] != next;
        defaults[i] = next;
        lowest = std::min(lowest, scalars[i]->GetMin());
        highest = std::max(highest, scalars[i]->GetMax());
    }
    E const newMin = ConvertNumber<E>(lowest);
    E const newMax = ConvertNumber<E>(highest);
    differs = differs || min != newMin || max != newMax;
    min = newMin;
    max = newMax;
    if (changed) {
        *changed = differs;
    }
    return 0;
}

}  // namespace

// ---- NumericArrayInfo ----

template <class T>
NumericArrayInfo<T>::NumericArrayInfo(unsigned int const& id, std::string const& name,
                                      Permission_t const& permission)
    : InfoBase(id, name, permission),
      minSize_(1),
      maxSize_(0x7FFFFFFF),
      max_(T::Highest()),
      min_(T::Lowest()),
      default_() {}

template <class T>
NumericArrayInfo<T>::NumericArrayInfo(NumericArrayInfo const& other) = default;

template <class T>
NumericArrayInfo<T>& NumericArrayInfo<T>::operator=(NumericArrayInfo const& other) = default;

template <class T>
NumericArrayInfo<T>::~NumericArrayInfo() = default;

template <class T>
NumericArrayInfo<T>* NumericArrayInfo<T>::DeepCopy(unsigned int id, std::string const& name,
                                                   Permission_t const& permission) const {
    // The element bounds stay those of a new Info: callers rely on DeepCopy
    // and the copy constructor differing here.
    std::unique_ptr<NumericArrayInfo> copy(new NumericArrayInfo(id, name, permission));
    copy->minSize_ = minSize_;
    copy->maxSize_ = maxSize_;
    copy->default_ = default_;
    return copy.release();
}

template <class T>
NumericArrayInfo<T>* NumericArrayInfo<T>::DeepCopy() const {
    return DeepCopy(GetId(), GetName(), GetPermission());
}

template <class T>
NumericArrayInfo<T>* NumericArrayInfo<T>::DeepCopy(unsigned int id) const {
    return DeepCopy(id, GetName(), GetPermission());
}

template <class T>
ItemBase* NumericArrayInfo<T>::CreateItem() const {
    std::unique_ptr<NumericArrayItem<T>> item(new NumericArrayItem<T>(GetId()));
    item->SetVal(default_);
    return item.release();
}

template <class T>
OruType_t NumericArrayInfo<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t NumericArrayInfo<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool NumericArrayInfo<T>::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<NumericArrayInfo>(*this, other);
    return that && minSize_ == that->minSize_ && maxSize_ == that->maxSize_;
}

template <class T>
int NumericArrayInfo<T>::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<NumericArrayInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    return ArraySize::Merge(minSize_, maxSize_, that->minSize_, that->maxSize_);
}

template <class T>
int NumericArrayInfo<T>::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                     bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() == OruType_t::RectArray) {
        return AssignFromRectArrayInfo(source, minSize_, maxSize_, min_, max_, default_, changed);
    }
    if (source->GetType() != OruType_t::NumericArray) {
        return Codes::k_unsupported;
    }
    bool read = false;
    bool differs = false;
    VisitNumericType(source->GetNumericType(), [&](auto tag) {
        using S = typename decltype(tag)::Traits;
        auto const* const from = dynamic_cast<NumericArrayInfo<S> const*>(source.get());
        if (!from) {
            return;
        }
        read = true;
        auto const& values = from->GetDefault();
        if (default_.size() != values.size()) {
            default_.resize(values.size());
            differs = true;
        }
        for (std::size_t i = 0; i < values.size(); ++i) {
            Element const next = ConvertNumber<Element>(values[i]);
            differs = T::IsChanged(default_[i], next) || differs;
            default_[i] = next;
        }
        differs = ArraySize::Assign(minSize_, maxSize_, from->GetMinSize(), from->GetMaxSize()) ||
                  differs;
        Element const max = ConvertNumber<Element>(from->GetMax());
        Element const min = ConvertNumber<Element>(from->GetMin());
        differs = T::IsChanged(max_, max) || T::IsChanged(min_, min) || differs;
        max_ = max;
        min_ = min;
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
void NumericArrayInfo<T>::DumpVal(std::ostream& out) const {
    Dump::NumericInfoHead(out, *this);
    ArraySize::DumpLines(out, minSize_, maxSize_, default_.size());
}

template <class T>
std::ostream& NumericArrayInfo<T>::operator<<(std::ostream& out) const {
    return ArraySize::Print(out, minSize_, maxSize_, default_.size());
}

template <class T>
int NumericArrayInfo<T>::SetMinSize(unsigned long long size) {
    ArraySize::SetMin(minSize_, maxSize_, default_, size);
    return 0;
}

template <class T>
int NumericArrayInfo<T>::SetMaxSize(unsigned long long size) {
    ArraySize::SetMax(minSize_, maxSize_, default_, size);
    return 0;
}

template <class T>
void NumericArrayInfo<T>::SetMin(Element value) {
    min_ = value;
    if (max_ < value) {
        max_ = value;
    }
}

template <class T>
void NumericArrayInfo<T>::SetMax(Element value) {
    max_ = value;
    if (min_ > value) {
        min_ = value;
    }
}

template <class T>
int NumericArrayInfo<T>::SetDefault(std::vector<Element> const& value) {
    int const code = ArraySize::CheckDefault(value.size(), minSize_, maxSize_);
    if (code == 0) {
        default_ = value;
    }
    return code;
}

// ---- NumericArrayItem ----

template <class T>
NumericArrayItem<T>::NumericArrayItem(unsigned int id) : ItemBase(id), value_() {}

template <class T>
NumericArrayItem<T>::NumericArrayItem(NumericArrayItem const& other) = default;

template <class T>
NumericArrayItem<T>& NumericArrayItem<T>::operator=(NumericArrayItem const& other) = default;

template <class T>
NumericArrayItem<T>::~NumericArrayItem() = default;

template <class T>
NumericArrayItem<T>* NumericArrayItem<T>::DeepCopy(unsigned int id) const {
    std::unique_ptr<NumericArrayItem> copy(new NumericArrayItem(id));
    copy->value_ = value_;
    return copy.release();
}

template <class T>
NumericArrayItem<T>* NumericArrayItem<T>::DeepCopy() const {
    return DeepCopy(GetId());
}

template <class T>
OruType_t NumericArrayItem<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t NumericArrayItem<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool NumericArrayItem<T>::IsEmpty() const {
    return value_.empty();
}

template <class T>
bool NumericArrayItem<T>::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<NumericArrayItem>(*this, other);
    if (!that || that->value_.size() != value_.size()) {
        return false;
    }
    // A NaN is unequal even to itself, so an array holding one is unequal to all.
    for (std::size_t i = 0; i < value_.size(); ++i) {
        if (!T::IsEqual(value_[i], that->value_[i])) {
            return false;
        }
    }
    return true;
}

template <class T>
int NumericArrayItem<T>::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                          unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    bool differs = false;
    if (source->GetType() == OruType_t::NumericArray) {
        // A whole array replaces the content; index is not used.
        bool read = false;
        VisitNumericType(source->GetNumericType(), [&](auto tag) {
            using S = typename decltype(tag)::Traits;
            auto const* const from = dynamic_cast<NumericArrayItem<S> const*>(source.get());
            if (!from) {
                return;
            }
            read = true;
            auto const& values = from->Val();
            if (value_.size() != values.size()) {
                value_.resize(values.size());
                differs = true;
            }
            for (std::size_t i = 0; i < values.size(); ++i) {
                Element const next = ConvertNumber<Element>(values[i]);
                if (!T::IsEqual(value_[i], next)) {
                    value_[i] = next;
                    differs = true;
                }
            }
        });
        if (!read) {
            return Codes::k_unsupported;
        }
    } else if (source->GetType() == OruType_t::Rectangle) {
        // Four numbers from index on, growing the array with zeros.
        SourceNumber corners[4];
        int const code = ReadSourceRectangle(*source, corners);
        if (code != 0) {
            return code;
        }
        std::size_t const end = static_cast<std::size_t>(index) + 4;
        if (value_.size() < end) {
            value_.resize(end);
            differs = true;
        }
        differs =
            AssignValueFromRectangle_(index, corners[0].As<Element>(), corners[1].As<Element>(),
                                      corners[2].As<Element>(), corners[3].As<Element>()) ||
            differs;
    } else if (source->GetType() == OruType_t::RectArray) {
        // The whole array, four numbers a rectangle; index is not used.
        auto const* const from = source->GetNumericType() == NumericType_t::U16
                                     ? dynamic_cast<RectArrayItem<U16Traits> const*>(source.get())
                                     : nullptr;
        if (!from) {
            return Codes::k_unsupported;
        }
        std::size_t const count = 4 * from->Val().size();
        if (value_.size() != count) {
            value_.resize(count);
            differs = true;
        }
        for (std::size_t i = 0; i < from->Val().size(); ++i) {
            SourceNumber corners[4];
            ReadSourceRectangle(from->Val()[i], corners);
            differs =
                AssignValueFromRectangle_(4 * i, corners[0].As<Element>(), corners[1].As<Element>(),
                                          corners[2].As<Element>(), corners[3].As<Element>()) ||
                differs;
        }
    } else {
        // One number at index.
        SourceNumber number;
        int const code = ReadSourceNumber(*source, index, number);
        if (code != 0) {
            return code;
        }
        // The array grows with zeros, so a caller may fill it in any order.
        if (index >= value_.size()) {
            value_.resize(static_cast<std::size_t>(index) + 1);
            differs = true;
        }
        Element const next = number.As<Element>();
        // A value within the tolerance of the old one is not stored at all.
        if (!IsEqualVal_(index, next)) {
            value_[index] = next;
            differs = true;
        }
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

template <class T>
unsigned int NumericArrayItem<T>::GetSerialDataSize() const {
    return static_cast<unsigned int>(value_.size() * T::k_serialWidth);
}

template <class T>
int NumericArrayItem<T>::Serialize(SerialStruct_t* record) const {
    // A larger array has no serial form.
    if (!Serial::FitsSizeField(value_.size(), T::k_serialWidth)) {
        return Codes::k_invalid;
    }
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, GetSerialDataSize());
    if (!payload) {
        return Codes::k_invalid;
    }
    // Indexed, without a moving cursor: the loop vectorises for the integers.
    std::size_t const count = value_.size();
    Element const* const values = value_.data();
    for (std::size_t i = 0; i < count; ++i) {
        Serial::PutElement<T>(payload + i * T::k_serialWidth, values[i]);
    }
    return 0;
}

template <class T>
int NumericArrayItem<T>::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    std::uint32_t const size = record->GetDataSize();
    if (size % T::k_serialWidth != 0) {
        return Codes::k_invalid;
    }
    // The count comes from the payload's own size, so the allocation is bounded
    // by the bytes the record holds; the old value stays until all are read.
    // The prologue checked that a non-empty payload has its bytes, and the
    // loop reads exactly size of them: no check per element, so it vectorises.
    std::size_t const count = size / T::k_serialWidth;
    std::vector<Element> decoded(count);
    unsigned char const* const in = record->data;
    Element* const out = decoded.data();
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = Serial::GetElement<T>(in + i * T::k_serialWidth);
    }
    value_.swap(decoded);
    return 0;
}

template <class T>
std::shared_ptr<ResultElem const> NumericArrayItem<T>::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const arrayInfo = Validation::CastInfo<NumericArrayInfo<T>>(info);
    if (!arrayInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    // The element bounds are not enforced: only the count is checked.
    if (value_.size() < arrayInfo->GetMinSize()) {
        return Validation::Fail(*this, "TypesSystemNumericArrayValidationMinSize",
                                {arrayInfo->GetName(), Validation::Text(arrayInfo->GetMinSize())});
    }
    if (value_.size() > arrayInfo->GetMaxSize()) {
        return Validation::Fail(*this, "TypesSystemNumericArrayValidationMaxSize",
                                {arrayInfo->GetName(), Validation::Text(arrayInfo->GetMaxSize())});
    }
    return nullptr;
}

template <class T>
bool NumericArrayItem<T>::SetValFromStream(std::istream& in, std::ostream& errors,
                                           boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::ReadCountedList(in, errors, 4096, value_, &TextIO::ReadTextNumber<T>);
}

template <class T>
void NumericArrayItem<T>::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: ";
    operator<<(out);
    out << std::endl;
}

template <class T>
std::ostream& NumericArrayItem<T>::operator<<(std::ostream& out) const {
    return TextIO::WriteList(out, value_, [](std::ostream& o, Element element) {
        o << static_cast<typename T::StreamOutType>(element);
    });
}

template <class T>
int NumericArrayItem<T>::SetVal(std::vector<Element> const& value,
                                NumericArrayInfo<T> const& info) {
    if (value.size() < info.GetMinSize() || value.size() > info.GetMaxSize()) {
        return Codes::k_sizeOutOfRange;
    }
    value_ = value;
    return 0;
}

template <class T>
bool NumericArrayItem<T>::IsEqualVal_(unsigned int index, Element value) const {
    return T::IsEqual(value_[index], value);
}

template <class T>
bool NumericArrayItem<T>::AssignValueFromRectangle_(unsigned long long index, Element a, Element b,
                                                    Element c, Element d) {
    // Plain != without tolerance, as rectangle sources have always compared.
    Element const next[] = {a, b, c, d};
    bool differs = false;
    for (std::size_t i = 0; i < 4; ++i) {
        Element& slot = value_[static_cast<std::size_t>(index) + i];
        differs = differs || slot != next[i];
        slot = next[i];
    }
    return differs;
}

#define LEGACY_ORU_INSTANTIATE_NUMERIC_ARRAY(T) \
    template class NumericArrayInfo<T>;         \
    template class NumericArrayItem<T>;
LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(LEGACY_ORU_INSTANTIATE_NUMERIC_ARRAY)

}  // namespace Oru
}  // namespace Legacy
