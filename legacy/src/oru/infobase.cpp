#include <legacy/oru/infobase.h>

#include <ostream>

#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

void intrusive_ptr_add_ref(InfoBase const* info) noexcept {
    info->count_.FetchAdd(1);
}

void intrusive_ptr_release(InfoBase const* info) noexcept {
    // Below 2, not equal to 1: a release at a count of 0 destroys as well.
    if (info->count_.FetchAdd(-1) < 2) {
        delete info;
    }
}

InfoBase::InfoBase(unsigned int const& id, std::string const& name, Permission_t const& permission)
    : id_(id), name_(name), permission_(permission) {}

InfoBase::InfoBase(InfoBase const& other)
    : id_(other.id_), name_(other.name_), permission_(other.permission_) {}

InfoBase::~InfoBase() = default;

NumericType_t InfoBase::GetNumericType() const {
    return NumericType_t::Undefined;
}

bool InfoBase::IsEqualType(boost::intrusive_ptr<ItemBase const> const& item) const {
    return item && item->GetType() == GetType() && item->GetNumericType() == GetNumericType();
}

bool InfoBase::IsEqualType(boost::intrusive_ptr<InfoBase const> const& info) const {
    return info && info->GetType() == GetType() && info->GetNumericType() == GetNumericType();
}

int InfoBase::GetRefCount() const noexcept {
    return count_.FetchAdd(0);
}

std::ostream& operator<<(std::ostream& out, InfoBase const& info) {
    return info.operator<<(out);
}

}  // namespace Oru
}  // namespace Legacy
