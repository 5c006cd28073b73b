#include <legacy/oru/coordinate.h>

#include <istream>
#include <memory>
#include <ostream>
#include <type_traits>

#include <legacy/oru/resultelem.h>

#include "codes.h"
#include "dump.h"
#include "family.h"
#include "geometry.h"
#include "serialcodec.h"
#include "textio.h"
#include "texts.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

namespace {

// Plain differences wrap in the integer members (without undefined behaviour
// in S32); float adds its 1.0f the same way.
template <class E>
E SpanOf(E low, E high) {
    if constexpr (std::is_integral<E>::value) {
        using U = typename std::make_unsigned<E>::type;
        return static_cast<E>(static_cast<U>(static_cast<U>(high) - static_cast<U>(low) + U(1)));
    } else {
        return high - low + E(1);
    }
}

}  // namespace

// ---- CoordinateInfo ----

template <class T>
CoordinateInfo<T>::CoordinateInfo(unsigned int const& id, std::string const& name,
                                  Permission_t const& permission)
    : InfoBase(id, name, permission),
      x_(new NumericInfo<T>(0, std::string(), permission)),
      y_(new NumericInfo<T>(0, std::string(), permission)) {}

template <class T>
CoordinateInfo<T>::CoordinateInfo(CoordinateInfo const& other) = default;

template <class T>
CoordinateInfo<T>& CoordinateInfo<T>::operator=(CoordinateInfo const& other) = default;

template <class T>
CoordinateInfo<T>::~CoordinateInfo() = default;

template <class T>
CoordinateInfo<T>* CoordinateInfo<T>::DeepCopy(unsigned int id, std::string const& name,
                                               Permission_t const& permission) const {
    std::unique_ptr<CoordinateInfo> copy(new CoordinateInfo(id, name, permission));
    copy->x_.reset(x_->DeepCopy());
    copy->y_.reset(y_->DeepCopy());
    return copy.release();
}

template <class T>
CoordinateInfo<T>* CoordinateInfo<T>::DeepCopy() const {
    return DeepCopy(GetId(), GetName(), GetPermission());
}

template <class T>
CoordinateInfo<T>* CoordinateInfo<T>::DeepCopy(unsigned int id) const {
    return DeepCopy(id, GetName(), GetPermission());
}

template <class T>
ItemBase* CoordinateInfo<T>::CreateItem() const {
    std::unique_ptr<CoordinateItem<T>> item(new CoordinateItem<T>(GetId()));
    item->SetValX(x_->GetDefault());
    item->SetValY(y_->GetDefault());
    return item.release();
}

template <class T>
OruType_t CoordinateInfo<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t CoordinateInfo<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool CoordinateInfo<T>::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<CoordinateInfo>(*this, other);
    return that && x_->IsEqualBounds(that->x_) && y_->IsEqualBounds(that->y_);
}

template <class T>
int CoordinateInfo<T>::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<CoordinateInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    return MergePartBounds(x_, y_, that->x_, that->y_);
}

template <class T>
int CoordinateInfo<T>::AssignValue(boost::intrusive_ptr<InfoBase const> const& source,
                                   bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() != GetTypeStatic()) {
        return Codes::k_unsupported;
    }
    // The element type may differ: the scalars convert.
    boost::intrusive_ptr<InfoBase const> sourceX, sourceY;
    if (!VisitGeometry<CoordinateInfo>(*source, [&](auto const& from) {
            sourceX = from.X();
            sourceY = from.Y();
        })) {
        return Codes::k_unsupported;
    }
    return AssignInfoParts(x_, y_, sourceX, sourceY, changed);
}

template <class T>
void CoordinateInfo<T>::DumpVal(std::ostream& out) const {
    Dump::NumericInfoHead(out, *this);
    out << "X ";
    x_->operator<<(out) << std::endl;
    out << "Y ";
    y_->operator<<(out) << std::endl;
}

template <class T>
std::ostream& CoordinateInfo<T>::operator<<(std::ostream& out) const {
    out << "x(";
    x_->operator<<(out) << ") y(";
    return y_->operator<<(out) << ")";
}

// ---- RectInfo ----

template <class T>
RectInfo<T>::RectInfo(unsigned int const& id, std::string const& name,
                      Permission_t const& permission)
    : InfoBase(id, name, permission),
      topLeft_(new CoordinateInfo<T>(0, std::string(), permission)),
      bottomRight_(new CoordinateInfo<T>(0, std::string(), permission)) {}

template <class T>
RectInfo<T>::RectInfo(RectInfo const& other) = default;

template <class T>
RectInfo<T>& RectInfo<T>::operator=(RectInfo const& other) = default;

template <class T>
RectInfo<T>::~RectInfo() = default;

template <class T>
RectInfo<T>* RectInfo<T>::DeepCopy(unsigned int id, std::string const& name,
                                   Permission_t const& permission) const {
    std::unique_ptr<RectInfo> copy(new RectInfo(id, name, permission));
    copy->topLeft_.reset(topLeft_->DeepCopy());
    copy->bottomRight_.reset(bottomRight_->DeepCopy());
    return copy.release();
}

template <class T>
RectInfo<T>* RectInfo<T>::DeepCopy() const {
    return DeepCopy(GetId(), GetName(), GetPermission());
}

template <class T>
RectInfo<T>* RectInfo<T>::DeepCopy(unsigned int id) const {
    return DeepCopy(id, GetName(), GetPermission());
}

template <class T>
ItemBase* RectInfo<T>::CreateItem() const {
    std::unique_ptr<RectItem<T>> item(new RectItem<T>(GetId()));
    item->TopLeft()->SetValX(topLeft_->GetDefaultX());
    item->TopLeft()->SetValY(topLeft_->GetDefaultY());
    item->BottomRight()->SetValX(bottomRight_->GetDefaultX());
    item->BottomRight()->SetValY(bottomRight_->GetDefaultY());
    return item.release();
}

template <class T>
OruType_t RectInfo<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t RectInfo<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool RectInfo<T>::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<RectInfo>(*this, other);
    return that && topLeft_->IsEqualBounds(that->topLeft_) &&
           bottomRight_->IsEqualBounds(that->bottomRight_);
}

template <class T>
int RectInfo<T>::MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) {
    auto const* const that = SameFamily<RectInfo>(*this, other);
    if (!that) {
        return Codes::k_typeMismatch;
    }
    return MergePartBounds(topLeft_, bottomRight_, that->topLeft_, that->bottomRight_);
}

template <class T>
int RectInfo<T>::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() != GetTypeStatic()) {
        return Codes::k_unsupported;
    }
    boost::intrusive_ptr<InfoBase const> sourceTopLeft, sourceBottomRight;
    if (!VisitGeometry<RectInfo>(*source, [&](auto const& from) {
            sourceTopLeft = from.TopLeft();
            sourceBottomRight = from.BottomRight();
        })) {
        return Codes::k_unsupported;
    }
    return AssignInfoParts(topLeft_, bottomRight_, sourceTopLeft, sourceBottomRight, changed);
}

template <class T>
void RectInfo<T>::DumpVal(std::ostream& out) const {
    Dump::NumericInfoHead(out, *this);
    DumpCorners(out, *topLeft_, *bottomRight_);
}

template <class T>
std::ostream& RectInfo<T>::operator<<(std::ostream& out) const {
    out << "TLC[";
    topLeft_->operator<<(out) << "] BRC[";
    return bottomRight_->operator<<(out) << "]";
}

// ---- CoordinateItem ----

template <class T>
CoordinateItem<T>::CoordinateItem(unsigned int id)
    : ItemBase(id), x_(new NumericItem<T>(0)), y_(new NumericItem<T>(0)) {}

template <class T>
CoordinateItem<T>::CoordinateItem(CoordinateItem const& other) = default;

template <class T>
CoordinateItem<T>& CoordinateItem<T>::operator=(CoordinateItem const& other) = default;

template <class T>
CoordinateItem<T>::~CoordinateItem() = default;

template <class T>
CoordinateItem<T>* CoordinateItem<T>::DeepCopy(unsigned int id) const {
    std::unique_ptr<CoordinateItem> copy(new CoordinateItem(id));
    copy->x_->AssignArrayValue(x_, 0, nullptr);
    copy->y_->AssignArrayValue(y_, 0, nullptr);
    return copy.release();
}

template <class T>
CoordinateItem<T>* CoordinateItem<T>::DeepCopy() const {
    return DeepCopy(GetId());
}

template <class T>
OruType_t CoordinateItem<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t CoordinateItem<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool CoordinateItem<T>::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<CoordinateItem>(*this, other);
    return that && x_->IsEqualValue(that->x_) && y_->IsEqualValue(that->y_);
}

template <class T>
int CoordinateItem<T>::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                        unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() != GetTypeStatic()) {
        return Codes::k_unsupported;
    }
    boost::intrusive_ptr<ItemBase const> sourceX, sourceY;
    if (!VisitGeometry<CoordinateItem>(*source, [&](auto const& from) {
            sourceX = from.X();
            sourceY = from.Y();
        })) {
        return Codes::k_unsupported;
    }
    return AssignItemParts(x_, y_, sourceX, sourceY, changed);
}

template <class T>
unsigned int CoordinateItem<T>::GetSerialDataSize() const {
    return 2 * T::k_serialWidth;
}

template <class T>
int CoordinateItem<T>::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, GetSerialDataSize());
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::Writer writer(payload);
    writer.Element<T>(x_->GetVal());
    writer.Element<T>(y_->GetVal());
    return 0;
}

template <class T>
int CoordinateItem<T>::Deserialize(ConstSerialStruct_t const* record) {
    // Exactly two elements: unlike a rectangle, a coordinate takes no more.
    int const code = Serial::CheckPrologue(record, *this, GetSerialDataSize());
    if (code != 0) {
        return code;
    }
    Serial::Reader reader(*record);
    Element const x = reader.Element<T>();
    Element const y = reader.Element<T>();
    if (reader.Failed()) {
        return Codes::k_invalid;
    }
    x_->SetVal(x);
    y_->SetVal(y);
    return 0;
}

template <class T>
std::shared_ptr<ResultElem const> CoordinateItem<T>::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    // Never passes, whatever the value: callers check with WithinBounds.
    return Validation::Illegal(*this, info.get());
}

template <class T>
bool CoordinateItem<T>::SetValFromStream(std::istream& in, std::ostream& errors,
                                         boost::intrusive_ptr<InfoBase const> const& info) {
    // The scalar's own complaint comes first, then the field's.
    if (!x_->SetValFromStream(in, errors, info)) {
        return TextIO::Complain(errors, "X");
    }
    // x keeps what was read when y fails: there is no rollback.
    if (!y_->SetValFromStream(in, errors, info)) {
        return TextIO::Complain(errors, "Y");
    }
    return true;
}

template <class T>
void CoordinateItem<T>::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: ";
    operator<<(out) << std::endl;
}

template <class T>
std::ostream& CoordinateItem<T>::operator<<(std::ostream& out) const {
    // The separator and one more blank: readers of the text expect two.
    out << "(";
    x_->operator<<(out) << Texts::Separator() << " ";
    return y_->operator<<(out) << ")";
}

template <class T>
void CoordinateItem<T>::BoundVal(CoordinateInfo<T> const& info) {
    x_->BoundVal(*info.X());
    y_->BoundVal(*info.Y());
}

template <class T>
bool CoordinateItem<T>::WithinBounds(CoordinateInfo<T> const& info) const {
    return x_->WithinBounds(*info.X()) && y_->WithinBounds(*info.Y());
}

// ---- RectItem ----

template <class T>
RectItem<T>::RectItem(unsigned int id)
    : ItemBase(id), topLeft_(new CoordinateItem<T>(0)), bottomRight_(new CoordinateItem<T>(0)) {}

template <class T>
RectItem<T>::RectItem(RectItem const& other) = default;

template <class T>
RectItem<T>& RectItem<T>::operator=(RectItem const& other) = default;

template <class T>
RectItem<T>::~RectItem() = default;

template <class T>
RectItem<T>* RectItem<T>::DeepCopy(unsigned int id) const {
    std::unique_ptr<RectItem> copy(new RectItem(id));
    copy->topLeft_->AssignArrayValue(topLeft_, 0, nullptr);
    copy->bottomRight_->AssignArrayValue(bottomRight_, 0, nullptr);
    return copy.release();
}

template <class T>
RectItem<T>* RectItem<T>::DeepCopy() const {
    return DeepCopy(GetId());
}

template <class T>
OruType_t RectItem<T>::GetType() const {
    return GetTypeStatic();
}

template <class T>
NumericType_t RectItem<T>::GetNumericType() const {
    return GetNumericTypeStatic();
}

template <class T>
bool RectItem<T>::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<RectItem>(*this, other);
    return that && topLeft_->IsEqualValue(that->topLeft_) &&
           bottomRight_->IsEqualValue(that->bottomRight_);
}

template <class T>
int RectItem<T>::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                  unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (source->GetType() != GetTypeStatic()) {
        return Codes::k_unsupported;
    }
    boost::intrusive_ptr<ItemBase const> sourceTopLeft, sourceBottomRight;
    if (!VisitGeometry<RectItem>(*source, [&](auto const& from) {
            sourceTopLeft = from.TopLeft();
            sourceBottomRight = from.BottomRight();
        })) {
        return Codes::k_unsupported;
    }
    return AssignItemParts(topLeft_, bottomRight_, sourceTopLeft, sourceBottomRight, changed);
}

template <class T>
unsigned int RectItem<T>::GetSerialDataSize() const {
    return 4 * T::k_serialWidth;
}

template <class T>
int RectItem<T>::Serialize(SerialStruct_t* record) const {
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, GetSerialDataSize());
    if (!payload) {
        return Codes::k_invalid;
    }
    Serial::Writer writer(payload);
    writer.Element<T>(topLeft_->X()->GetVal());
    writer.Element<T>(topLeft_->Y()->GetVal());
    writer.Element<T>(bottomRight_->X()->GetVal());
    writer.Element<T>(bottomRight_->Y()->GetVal());
    return 0;
}

template <class T>
int RectItem<T>::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    // A longer payload is accepted and its rest ignored, as peers send it;
    // coordinates deliberately stay strict.
    if (record->GetDataSize() < GetSerialDataSize()) {
        return Codes::k_invalid;
    }
    Serial::Reader reader(*record);
    Element const left = reader.Element<T>();
    Element const top = reader.Element<T>();
    Element const right = reader.Element<T>();
    Element const bottom = reader.Element<T>();
    if (reader.Failed()) {
        return Codes::k_invalid;
    }
    topLeft_->SetValX(left);
    topLeft_->SetValY(top);
    bottomRight_->SetValX(right);
    bottomRight_->SetValY(bottom);
    return 0;
}

template <class T>
std::shared_ptr<ResultElem const> RectItem<T>::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    // Never passes, whatever the value: callers check with WithinBounds.
    return Validation::Illegal(*this, info.get());
}

template <class T>
bool RectItem<T>::SetValFromStream(std::istream& in, std::ostream& errors,
                                   boost::intrusive_ptr<InfoBase const> const& info) {
    if (!topLeft_->SetValFromStream(in, errors, info)) {
        return TextIO::Complain(errors, "TopLeft");
    }
    if (!bottomRight_->SetValFromStream(in, errors, info)) {
        return TextIO::Complain(errors, "BottomRight");
    }
    return true;
}

template <class T>
void RectItem<T>::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: ";
    operator<<(out) << std::endl;
}

template <class T>
std::ostream& RectItem<T>::operator<<(std::ostream& out) const {
    out << "(TLC";
    topLeft_->operator<<(out) << Texts::Separator() << " BRC";
    return bottomRight_->operator<<(out) << ")";
}

template <class T>
typename RectItem<T>::Element RectItem<T>::GetWidth() const {
    return SpanOf(topLeft_->X()->GetVal(), bottomRight_->X()->GetVal());
}

template <class T>
typename RectItem<T>::Element RectItem<T>::GetHeight() const {
    return SpanOf(topLeft_->Y()->GetVal(), bottomRight_->Y()->GetVal());
}

template <class T>
void RectItem<T>::SetValTopLeft(boost::intrusive_ptr<CoordinateInfo<T>> const& info) {
    topLeft_->SetValX(info->GetDefaultX());
    topLeft_->SetValY(info->GetDefaultY());
}

template <class T>
void RectItem<T>::SetValBottomRight(boost::intrusive_ptr<CoordinateInfo<T>> const& info) {
    bottomRight_->SetValX(info->GetDefaultX());
    bottomRight_->SetValY(info->GetDefaultY());
}

template <class T>
void RectItem<T>::BoundVal(RectInfo<T> const& info) {
    topLeft_->BoundVal(*info.TopLeft());
    bottomRight_->BoundVal(*info.BottomRight());
}

template <class T>
bool RectItem<T>::WithinBounds(RectInfo<T> const& info) const {
    return topLeft_->WithinBounds(*info.TopLeft()) &&
           bottomRight_->WithinBounds(*info.BottomRight());
}

#define LEGACY_ORU_INSTANTIATE_GEOMETRY(T) \
    template class CoordinateInfo<T>;      \
    template class RectInfo<T>;            \
    template class CoordinateItem<T>;      \
    template class RectItem<T>;
LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(LEGACY_ORU_INSTANTIATE_GEOMETRY)

}  // namespace Oru
}  // namespace Legacy
