#include <legacy/oru/rectarray.h>

#include <algorithm>
#include <istream>
#include <limits>
#include <memory>
#include <ostream>

#include <legacy/oru/numericarray.h>
#include <legacy/oru/resultelem.h>

#include "arraysize.h"
#include "codes.h"
#include "dump.h"
#include "family.h"
#include "geometry.h"
#include "numericconv.h"
#include "serialcodec.h"
#include "textio.h"
#include "texts.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

namespace {

// Bytes of one rectangle on the wire: four 16-bit numbers.
constexpr std::uint32_t k_rectBytes = 8;

}  // namespace

// ---- RectArrayInfo ----

template <class T>
RectArrayInfo<T>::RectArrayInfo(unsigned int const& id, std::string const& name,
                                Permission_t const& permission)
    : InfoBase(id, name, permission),
      minSize_(0),
      maxSize_(0x7FFFFFFF),
      topLeft_(new CoordinateInfo<T>(0, std::string(), permission)),
      bottomRight_(new CoordinateInfo<T>(0, std::string(), permission)) {}

template <class T>
RectArrayInfo<T>::RectArrayInfo(RectArrayInfo const& other) = default;

template <class T>
RectArrayInfo<T>& RectArrayInfo<T>::operator=(RectArrayInfo const& other) = default;

template <class T>
RectArrayInfo<T>::~RectArrayInfo() = default;

template <class T>
RectArrayInfo<T>* RectArrayInfo<T>::DeepCopy(unsigned int id, std::string const& name,
                                             Permission_t const& permission) const {
    std::unique_ptr<RectArrayInfo> copy(new RectArrayInfo(id, name, permission));
    copy->minSize_ = minSize_;
    copy->maxSize_ = maxSize_;
    copy->topLeft_.reset(topLeft_->DeepCopy());
    copy->bottomRight_.reset(bottomRight_->DeepCopy());
    return copy.release();
}

template <class T>
RectArrayInfo<T>* RectArrayInfo<T>::DeepCopy() const {
    return DeepCopy(GetId(), GetName(), GetPermission());
}

template <class T>
RectArrayInfo<T>* RectArrayInfo<T>::DeepCopy(unsigned int id) const {
    return DeepCopy(id, GetName(), GetPermission());
}

template <class T>
ItemBase* RectArrayInfo<T>::CreateItem() const {
    return new RectArrayItem<T>(GetId());
}

template <class T>
OruType_t RectArrayInfo<T>::GetType() const {
    // Not GetTypeStatic(): the two answer differently for this class.
    return OruType_t::RectArray;
}

template <class T>
NumericType_t RectArrayInfo<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool RectArrayInfo<T>::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<RectArrayInfo>(*this, other);
    return that && topLeft_->IsEqualBounds(that->topLeft_) &&
           bottomRight_->IsEqualBounds(that->bottomRight_);
}

template <class T>
int RectArrayInfo<T>::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<RectArrayInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    return MergePartBounds(topLeft_, bottomRight_, that->topLeft_, that->bottomRight_);
}

template <class T>
int RectArrayInfo<T>::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                  bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() == OruType_t::RectArray) {
        auto const* const from = dynamic_cast<RectArrayInfo const*>(source.get());
        if (!from) {
            return Codes::k_unsupported;
        }
        bool cornersChanged = false;
        int const code = AssignInfoParts(topLeft_, bottomRight_, from->topLeft_, from->bottomRight_,
                                         &cornersChanged);
        // The sizes are copied even when a corner failed: no rollback.
        bool const sizesChanged =
            ArraySize::Assign(minSize_, maxSize_, from->minSize_, from->maxSize_);
        if (code < 0) {
            return code;
        }
        if (changed) {
            *changed = cornersChanged || sizesChanged;
        }
        return 0;
    }
    if (source->GetType() != OruType_t::NumericArray) {
        return Codes::k_unsupported;
    }
    int code = Codes::k_unsupported;
    VisitNumericType(source->GetNumericType(), [&](auto tag) {
        using S = typename decltype(tag)::Traits;
        using SourceElement = typename S::Element;
        auto const* const from = dynamic_cast<NumericArrayInfo<S> const*>(source.get());
        if (!from) {
            return;
        }
        auto const& defaults = from->GetDefault();
        // Only whole rectangles fold back; nothing changes otherwise.
        if (from->GetMinSize() % 4 != 0 || from->GetMaxSize() % 4 != 0 ||
            (defaults.size() != 0 && defaults.size() != 4)) {
            code = Codes::k_invalid;
            return;
        }
        code = 0;
        bool differs =
            ArraySize::Assign(minSize_, maxSize_, from->GetMinSize() / 4, from->GetMaxSize() / 4);
        if (defaults.empty()) {
            if (changed) {
                *changed = differs;
            }
            return;
        }
        NumericInfo<T>* const scalars[] = {topLeft_->X().get(), topLeft_->Y().get(),
                                           bottomRight_->X().get(), bottomRight_->Y().get()};
        for (std::size_t i = 0; i < 4; ++i) {
            differs =
                differs || ConvertNumber<SourceElement>(scalars[i]->GetDefault()) != defaults[i];
        }
        // Both bounds take the source's element minimum, so each scalar ends
        // with minimum, maximum and default equal: peers expect exactly this.
        Element const bound = ConvertNumber<Element>(from->GetMin());
        for (std::size_t i = 0; i < 4; ++i) {
            scalars[i]->SetDefault(ConvertNumber<Element>(defaults[i]));
            scalars[i]->SetMin(bound);
            scalars[i]->SetMax(bound);
        }
        if (changed) {
            *changed = differs;
        }
    });
    return code;
}

template <class T>
void RectArrayInfo<T>::DumpVal(std::ostream& out) const {
    Dump::NumericInfoHead(out, *this);
    Dump::Line(out, "minSize: ", minSize_);
    Dump::Line(out, "maxSize: ", maxSize_);
    DumpCorners(out, *topLeft_, *bottomRight_);
}

template <class T>
std::ostream& RectArrayInfo<T>::operator<<(std::ostream& out) const {
    out << "size(" << minSize_ << Texts::Separator() << maxSize_ << ") ";
    topLeft_->operator<<(out) << Texts::Separator() << " ";
    return bottomRight_->operator<<(out);
}

template <class T>
int RectArrayInfo<T>::SetMinSize(unsigned long long size) {
    ArraySize::SetMin(minSize_, maxSize_, size);
    return 0;
}

template <class T>
int RectArrayInfo<T>::SetMaxSize(unsigned long long size) {
    ArraySize::SetMax(minSize_, maxSize_, size);
    return 0;
}

// ---- RectArrayItem ----

template <class T>
RectArrayItem<T>::RectArrayItem(unsigned int id) : ItemBase(id), value_() {}

template <class T>
RectArrayItem<T>::RectArrayItem(RectArrayItem const& other) = default;

template <class T>
RectArrayItem<T>& RectArrayItem<T>::operator=(RectArrayItem const& other) = default;

template <class T>
RectArrayItem<T>::~RectArrayItem() = default;

template <class T>
RectArrayItem<T>* RectArrayItem<T>::DeepCopy(unsigned int id) const {
    // The list is copied, the corners stay shared: callers rely on a change
    // through the copy showing in the source.
    std::unique_ptr<RectArrayItem> copy(new RectArrayItem(id));
    copy->value_ = value_;
    return copy.release();
}

template <class T>
RectArrayItem<T>* RectArrayItem<T>::DeepCopy() const {
    return DeepCopy(GetId());
}

template <class T>
OruType_t RectArrayItem<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t RectArrayItem<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool RectArrayItem<T>::IsEmpty() const {
    return value_.empty();
}

template <class T>
bool RectArrayItem<T>::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<RectArrayItem>(*this, other);
    if (!that || that->value_.size() != value_.size()) {
        return false;
    }
    for (std::size_t i = 0; i < value_.size(); ++i) {
        if (!IsEqualVal_(static_cast<unsigned int>(i), that->value_[i])) {
            return false;
        }
    }
    return true;
}

template <class T>
int RectArrayItem<T>::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                       unsigned int index, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    bool differs = false;
    switch (source->GetType()) {
        case OruType_t::Rectangle: {
            // Known element types only, so that nothing grows for a source
            // that cannot be read.
            if (!VisitGeometry<RectItem>(*source, [](auto const&) {})) {
                return Codes::k_unsupported;
            }
            if (value_.size() < static_cast<std::size_t>(index) + 1) {
                differs = ResizeArray_(static_cast<unsigned long long>(index) + 1);
            }
            // The corners of the source pair with the corners at index, as
            // RectItem assigns them: a failing corner answers -26.
            bool rectChanged = false;
            if (value_[index].AssignArrayValue(source, 0, &rectChanged) < 0) {
                return Codes::k_unsupported;
            }
            differs = differs || rectChanged;
            break;
        }
        case OruType_t::RectArray: {
            auto const* const from = dynamic_cast<RectArrayItem const*>(source.get());
            if (!from) {
                return Codes::k_unsupported;
            }
            differs = ResizeArray_(from->value_.size());
            for (std::size_t i = 0; i < value_.size(); ++i) {
                bool topLeftChanged = false;
                bool bottomRightChanged = false;
                RectItem<T>& rect = value_[i];
                RectItem<T> const& next = from->value_[i];
                if (rect.TopLeft()->AssignArrayValue(next.TopLeft(), 0, &topLeftChanged) < 0 ||
                    rect.BottomRight()->AssignArrayValue(next.BottomRight(), 0,
                                                         &bottomRightChanged) < 0) {
                    return Codes::k_unsupported;
                }
                differs = differs || topLeftChanged || bottomRightChanged;
            }
            break;
        }
        case OruType_t::NumericArray: {
            int code = Codes::k_unsupported;
            VisitNumericType(source->GetNumericType(), [&](auto tag) {
                using S = typename decltype(tag)::Traits;
                auto const* const from = dynamic_cast<NumericArrayItem<S> const*>(source.get());
                if (!from) {
                    return;
                }
                auto const& numbers = from->Val();
                if (numbers.size() % 4 != 0) {
                    code = Codes::k_invalid;
                    return;
                }
                code = 0;
                differs = ResizeArray_(numbers.size() / 4);
                for (std::size_t i = 0; i < value_.size(); ++i) {
                    differs = AssignRectValue_(i, ConvertNumber<Element>(numbers[4 * i]),
                                               ConvertNumber<Element>(numbers[4 * i + 1]),
                                               ConvertNumber<Element>(numbers[4 * i + 2]),
                                               ConvertNumber<Element>(numbers[4 * i + 3])) ||
                              differs;
                }
            });
            if (code != 0) {
                return code;
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

template <class T>
unsigned int RectArrayItem<T>::GetSerialDataSize() const {
    return static_cast<unsigned int>(value_.size() * k_rectBytes);
}

template <class T>
int RectArrayItem<T>::Serialize(SerialStruct_t* record) const {
    // A longer list has no serial form.
    if (!Serial::FitsSizeField(value_.size(), k_rectBytes)) {
        return Codes::k_invalid;
    }
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, GetSerialDataSize());
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::Writer writer(payload);
    for (RectItem<T> const& rect : value_) {
        writer.Element<T>(rect.TopLeft()->X()->GetVal());
        writer.Element<T>(rect.TopLeft()->Y()->GetVal());
        writer.Element<T>(rect.BottomRight()->X()->GetVal());
        writer.Element<T>(rect.BottomRight()->Y()->GetVal());
    }
    return 0;
}

template <class T>
int RectArrayItem<T>::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    std::uint32_t const size = record->GetDataSize();
    if (size % k_rectBytes != 0) {
        return Codes::k_invalid;
    }
    // The count comes from the bytes present; the old value stays until all
    // rectangles are read.
    Rects decoded;
    decoded.reserve(size / k_rectBytes);
    Serial::Reader reader(*record);
    for (std::uint32_t i = 0; i < size / k_rectBytes; ++i) {
        RectItem<T> rect(0);
        rect.TopLeft()->SetValX(reader.Element<T>());
        rect.TopLeft()->SetValY(reader.Element<T>());
        rect.BottomRight()->SetValX(reader.Element<T>());
        rect.BottomRight()->SetValY(reader.Element<T>());
        if (reader.Failed()) {
            return Codes::k_invalid;
        }
        decoded.push_back(rect);
    }
    value_.swap(decoded);
    return 0;
}

template <class T>
std::shared_ptr<ResultElem const> RectArrayItem<T>::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    // Never passes, whatever the value: callers check with WithinBounds.
    return Validation::Illegal(*this, info.get());
}

template <class T>
bool RectArrayItem<T>::SetValFromStream(std::istream& in, std::ostream& errors,
                                        boost::intrusive_ptr<InfoBase const> const& info) {
    if (TextIO::AtEnd(in)) {
        return TextIO::Complain(errors, TextIO::k_arraySize);
    }
    unsigned int count = 0;
    in >> count;
    // The end-of-file flag, not the fail flag: a count that ends the input is
    // refused, while text that is no number reads as 0, as callers expect.
    if (TextIO::AtEnd(in)) {
        return TextIO::Complain(errors, TextIO::k_arraySize);
    }
    // Each a new rectangle with the id 0, whose reader names the failed corner.
    return TextIO::ReadElements(count, 1024, value_, [&in, &errors, &info](RectItem<T>& rect) {
        return rect.SetValFromStream(in, errors, info);
    });
}

template <class T>
void RectArrayItem<T>::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: ";
    operator<<(out) << std::endl;
}

template <class T>
std::ostream& RectArrayItem<T>::operator<<(std::ostream& out) const {
    return TextIO::WriteList(out, value_,
                             [](std::ostream& o, RectItem<T> const& rect) { rect.operator<<(o); });
}

template <class T>
int RectArrayItem<T>::SetVal(Rects const& value, RectArrayInfo<T> const& info) {
    if (value.size() < info.GetMinSize() || value.size() > info.GetMaxSize()) {
        return Codes::k_sizeOutOfRange;
    }
    if (&value != &value_) {
        value_ = value;
    }
    return 0;
}

template <class T>
void RectArrayItem<T>::BoundVal(RectArrayInfo<T> const& info) {
    auto const limits = info.TopLeft();
    for (RectItem<T>& rect : value_) {
        rect.TopLeft()->BoundVal(*limits);
        // The bottom right takes the top left limits too, while WithinBounds
        // uses its own: callers rely on this asymmetry.
        rect.BottomRight()->BoundVal(*limits);
    }
}

template <class T>
bool RectArrayItem<T>::WithinBounds(RectArrayInfo<T> const& info) const {
    auto const topLeft = info.TopLeft();
    auto const bottomRight = info.BottomRight();
    for (RectItem<T> const& rect : value_) {
        if (!rect.TopLeft()->WithinBounds(*topLeft) ||
            !rect.BottomRight()->WithinBounds(*bottomRight)) {
            return false;
        }
    }
    return true;
}

template <class T>
bool RectArrayItem<T>::IsEqualVal_(unsigned int index, RectItem<T> const& rect) const {
    RectItem<T> const& own = value_[index];
    return own.TopLeft()->IsEqualValue(rect.TopLeft()) &&
           own.BottomRight()->IsEqualValue(rect.BottomRight());
}

template <class T>
bool RectArrayItem<T>::AssignRectValue_(unsigned long long index, Element a, Element b, Element c,
                                        Element d) {
    RectItem<T>& rect = value_[static_cast<std::size_t>(index)];
    // In place, so that copies sharing the corners change too; plain != as
    // rectangle conversions have always compared.
    auto const& topLeft = rect.TopLeft();
    auto const& bottomRight = rect.BottomRight();
    bool const differs = topLeft->X()->GetVal() != a || topLeft->Y()->GetVal() != b ||
                         bottomRight->X()->GetVal() != c || bottomRight->Y()->GetVal() != d;
    topLeft->SetValX(a);
    topLeft->SetValY(b);
    bottomRight->SetValX(c);
    bottomRight->SetValY(d);
    return differs;
}

template <class T>
bool RectArrayItem<T>::ResizeArray_(unsigned long long count) {
    if (value_.size() == count) {
        return false;
    }
    if (value_.size() > count) {
        value_.erase(value_.begin() + static_cast<std::ptrdiff_t>(count), value_.end());
        return true;
    }
    // Each new rectangle gets corners of its own, never shared.
    value_.reserve(static_cast<std::size_t>(count));
    while (value_.size() < count) {
        value_.emplace_back(0);
    }
    return true;
}

template class RectArrayInfo<U16Traits>;
template class RectArrayItem<U16Traits>;

}  // namespace Oru
}  // namespace Legacy
