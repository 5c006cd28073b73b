#include <legacy/oru/infoitemholderdefs.h>

#include <ostream>

#include <vintor/codelocation.h>
#include <vintor/exception.h>

#include "codes.h"

namespace Legacy {
namespace Oru {

InfoHolder::InfoHolder(boost::intrusive_ptr<InfoBase> const& info) : info_(info) {
    if (!info_) {
        throw Vintor::LogicError(Codes::k_nullPointer, "Null Info Pointer",
                                 Vintor::CodeLocation(__FILE__, __func__, __LINE__));
    }
}

InfoHolder::~InfoHolder() = default;

void InfoHolder::DumpVal(std::ostream& out) const {
    info_->DumpVal(out);
}

std::ostream& InfoHolder::operator<<(std::ostream& out) const {
    return info_->operator<<(out);
}

ItemHolder* InfoHolder::CreateItemHolder() const {
    return new ItemHolder(boost::intrusive_ptr<ItemBase>(info_->CreateItem()));
}

InfoHolder* InfoHolder::Clone() const {
    return new InfoHolder(boost::intrusive_ptr<InfoBase>(info_->DeepCopy()));
}

ItemHolder::ItemHolder(boost::intrusive_ptr<ItemBase> const& item) : item_(item) {
    if (!item_) {
        throw Vintor::LogicError(Codes::k_nullPointer, "Null Item Pointer",
                                 Vintor::CodeLocation(__FILE__, __func__, __LINE__));
    }
}

ItemHolder::~ItemHolder() = default;

void ItemHolder::DumpVal(std::ostream& out) const {
    item_->DumpVal(out);
}

ItemHolder* ItemHolder::Clone() const {
    return new ItemHolder(boost::intrusive_ptr<ItemBase>(item_->DeepCopy()));
}

InfoItemHolder::InfoItemHolder(boost::intrusive_ptr<InfoHolder const> const& info)
    : infoHolder_(info) {
    if (!infoHolder_) {
        // File, function and line are those callers have always matched on.
        throw Vintor::LogicError(
            Codes::k_nullPointer, "Null InfoHolder Pointer",
            Vintor::CodeLocation("legacy/include/legacy/oru/infoitemholderdefs",
                                 "Legacy::Oru::InfoItemHolder::InfoItemHolder", 273));
    }
}

InfoItemHolder::~InfoItemHolder() = default;

}  // namespace Oru
}  // namespace Legacy
