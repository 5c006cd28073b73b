#include <legacy/oru/itembase.h>

#include <iomanip>
#include <ostream>
#include <sstream>

#include <legacy/oru/resultelem.h>

#include "codes.h"
#include "registry.h"
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

int ItemBase::Deserialize(ConstSerialStruct_t const* record, boost::intrusive_ptr<ItemBase>& item) {
    if (!record) {
        return Codes::k_nullPointer;
    }
    Registry::Row const* const row = Registry::Find(record->type, record->numericType);
    if (!row || !row->makeItem) {
        return Codes::k_invalid;
    }
    item.reset(row->makeItem(Serial::NetToHost32(record->id)));
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
