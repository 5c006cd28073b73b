#include <legacy/oru/itembase.h>

#include <iomanip>
#include <ostream>
#include <sstream>

#include <legacy/oru/addr.h>
#include <legacy/oru/bool.h>
#include <legacy/oru/collection.h>
#include <legacy/oru/colour.h>
#include <legacy/oru/composite.h>
#include <legacy/oru/coordinate.h>
#include <legacy/oru/enum.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/numericarray.h>
#include <legacy/oru/numericsparse.h>
#include <legacy/oru/rectarray.h>
#include <legacy/oru/resultelem.h>
#include <legacy/oru/stringarray.h>
#include <legacy/oru/stringvalue.h>

#include "codes.h"
#include "serialcodec.h"
#include "texts.h"
#include "typetext.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

void intrusive_ptr_add_ref(ItemBase const* item) noexcept {
    item->count_.FetchAdd(1);
}

void intrusive_ptr_release(ItemBase const* item) noexcept {
    // Below 2, not equal to 1: a release at a count of 0 destroys as well.
    if (item->count_.FetchAdd(-1) < 2) {
        delete item;
    }
}

// ---- serial records ----

ItemBase::SerialStruct_t::SerialStruct_t() noexcept
    : id(0), dataSize(0), type(0), numericType(0), data(nullptr) {}

ItemBase::SerialStruct_t::~SerialStruct_t() {
    delete[] data;
}

ItemBase::SerialStruct_t& ItemBase::SerialStruct_t::operator=(
    SerialStruct_t const& other) noexcept {
    id = other.id;
    dataSize = other.dataSize;
    type = other.type;
    numericType = other.numericType;
    data = other.data;
    return *this;
}

void ItemBase::SerialStruct_t::Clear() noexcept {
    id = 0;
    dataSize = 0;
    type = 0;
    numericType = 0;
    data = nullptr;
}

std::uint32_t ItemBase::SerialStruct_t::GetId() const noexcept {
    return Serial::HostToNet32(id);
}

std::uint32_t ItemBase::SerialStruct_t::GetDataSize() const noexcept {
    return Serial::HostToNet32(dataSize);
}

ItemBase::ConstSerialStruct_t::ConstSerialStruct_t() noexcept {
    Clear();
}

ItemBase::ConstSerialStruct_t::ConstSerialStruct_t(SerialStruct_t const& record) noexcept
    : id(record.id),
      dataSize(record.dataSize),
      type(record.type),
      numericType(record.numericType),
      data(record.data) {}

void ItemBase::ConstSerialStruct_t::Clear() noexcept {
    id = 0;
    dataSize = 0;
    type = 0;
    numericType = 0;
    data = nullptr;
}

std::uint32_t ItemBase::ConstSerialStruct_t::GetId() const noexcept {
    return Serial::HostToNet32(id);
}

std::uint32_t ItemBase::ConstSerialStruct_t::GetDataSize() const noexcept {
    return Serial::HostToNet32(dataSize);
}

void ItemBase::ConstSerialStruct_t::SetHeader(std::uint32_t hostId, std::uint32_t hostDataSize,
                                              std::uint8_t typeByte,
                                              std::uint8_t numericTypeByte) noexcept {
    id = Serial::HostToNet32(hostId);
    dataSize = Serial::HostToNet32(hostDataSize);
    type = typeByte;
    numericType = numericTypeByte;
}

// ---- the base ----

ItemBase::ItemBase(unsigned int id) : id_(id) {}

ItemBase::ItemBase(ItemBase const& other) : id_(other.id_) {}

ItemBase::~ItemBase() = default;

NumericType_t ItemBase::GetNumericType() const {
    return NumericType_t::Undefined;
}

bool ItemBase::IsEmpty() const {
    return false;
}

bool ItemBase::IsEqualType(boost::intrusive_ptr<ItemBase const> const& item) const {
    return item && item->GetType() == GetType() && item->GetNumericType() == GetNumericType();
}

std::shared_ptr<ResultElem const> ItemBase::ValidateMin(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    return Validation::Illegal(*this, info.get());
}

std::shared_ptr<ResultElem const> ItemBase::ValidateMax(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    return Validation::Illegal(*this, info.get());
}

std::string const& ItemBase::GetName() const noexcept {
    return Texts::Empty();
}

std::string ItemBase::GetValAsString() const {
    std::ostringstream out;
    operator<<(out);
    return out.str();
}

int ItemBase::GetRefCount() const noexcept {
    return count_.FetchAdd(0);
}

std::ostream& operator<<(std::ostream& out, ItemBase const& item) {
    return item.operator<<(out);
}

// ---- the dispatch of type bytes to classes ----

namespace {

using Factory = ItemBase* (*)(unsigned int id);

template <class I>
ItemBase* Make(unsigned int id) {
    return new I(id);
}

// Rows indexed by the numeric-type byte 1 to 10, for the families that are
// templates over the ten traits classes.
template <template <class> class I>
Factory ByNumericType(std::uint8_t numericType) {
    static Factory const rows[] = {
        nullptr,
        &Make<I<U8Traits>>,
        &Make<I<S8Traits>>,
        &Make<I<U16Traits>>,
        &Make<I<S16Traits>>,
        &Make<I<U32Traits>>,
        &Make<I<S32Traits>>,
        &Make<I<U64Traits>>,
        &Make<I<S64Traits>>,
        &Make<I<FloatTraits>>,
        &Make<I<DoubleTraits>>,
    };
    return numericType < sizeof(rows) / sizeof(rows[0]) ? rows[numericType] : nullptr;
}

// Rows for the coordinate and rectangle families, made for U16, S32 and
// Float only.
template <template <class> class I>
Factory ByGeometryType(std::uint8_t numericType) {
    switch (numericType) {
        case 3:
            return &Make<I<U16Traits>>;
        case 6:
            return &Make<I<S32Traits>>;
        case 9:
            return &Make<I<FloatTraits>>;
        default:
            return nullptr;
    }
}

// The class of a record by its two type bytes, or null for a record that no
// class reads. Families without a numeric row ignore the numeric-type byte
// here; their own prologue refuses a wrong one.
Factory FindFactory(std::uint8_t type, std::uint8_t numericType) {
    switch (type) {
        case 1:
            return &Make<BoolItem>;
        case 2:
            return ByNumericType<NumericItem>(numericType);
        case 3:
            return ByNumericType<NumericArrayItem>(numericType);
        case 4:
            return ByNumericType<NumericSparseItem>(numericType);
        case 5:
            return &Make<EnumItem>;
        case 6:
            return &Make<StringItem>;
        case 7:
            return &Make<StringArrayItem>;
        case 8:
            return &Make<BoolArrayItem>;
        case 9:
            return &Make<StringSparseItem>;
        case 128:
            return &Make<ColourItem>;
        case 129:
            return ByGeometryType<CoordinateItem>(numericType);
        case 130:
            return ByGeometryType<RectItem>(numericType);
        case 131:
            return &Make<OrientationItem>;
        case 134:
            return &Make<AddrItem>;
        case 136:
            return &Make<EndpointItem>;
        case 137:
            return &Make<AppEndpointItem>;
        case 140:
            return &Make<AppEndpointArrayItem>;
        case 141:
            return numericType == 3 ? &Make<RectArrayItem<U16Traits>> : nullptr;
        case 253:
            return &Make<CompositeItem>;
        case 254:
            return &Make<CollectionItem>;
        default:
            return nullptr;
    }
}

}  // namespace

int ItemBase::Deserialize(ConstSerialStruct_t const* record, boost::intrusive_ptr<ItemBase>& item) {
    if (!record) {
        return Codes::k_nullPointer;
    }
    Factory const factory = FindFactory(record->type, record->numericType);
    if (!factory) {
        return Codes::k_invalid;
    }
    item.reset(factory(Serial::HostToNet32(record->id)));
    return item->Deserialize(record);
}

// ---- one line for a setting ----

void FormattedInfoItemDump(std::ostream& out, boost::intrusive_ptr<InfoBase const> const& info,
                           boost::intrusive_ptr<ItemBase const> const& item) {
    if (!info && !item) {
        return;
    }
    bool const both = info && item;
    if (both) {
        if (info->GetId() != item->GetId()) {
            out << "InfoItemId mismatch!";
            return;
        }
        if (info->GetType() != item->GetType() ||
            info->GetNumericType() != item->GetNumericType()) {
            out << "Type mismatch!";
            return;
        }
    }
    OruType_t const type = info ? info->GetType() : item->GetType();
    NumericType_t const numericType = info ? info->GetNumericType() : item->GetNumericType();

    char const oldFill = out.fill(' ');
    std::ios_base::fmtflags const oldFlags = out.flags();
    if (info) {
        out << std::setw(32) << std::left << info->GetName() << " ";
    }
    out << std::setw(18) << std::left << TypeText(type, numericType) << " ";
    out.fill(oldFill);
    out.flags(oldFlags);
    if (both) {
        out << "{";
    }
    if (item) {
        item->operator<<(out);
    }
    if (info) {
        if (both) {
            out << "} {";
        }
        info->operator<<(out);
        if (both) {
            out << "}";
        }
    }
}

}  // namespace Oru
}  // namespace Legacy
