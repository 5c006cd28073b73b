#include <legacy/oru/holdercontainers.h>

#include "codes.h"

namespace Legacy {
namespace Oru {

InfoContainer& InfoContainer::operator=(InfoContainer const& other) {
    GenericContainer::operator=(other);
    return *this;
}

InfoContainer::~InfoContainer() = default;

ItemContainer& ItemContainer::operator=(ItemContainer const& other) {
    GenericContainer::operator=(other);
    return *this;
}

ItemContainer::~ItemContainer() = default;

InfoHolderContainer& InfoHolderContainer::operator=(InfoHolderContainer const& other) {
    GenericContainer::operator=(other);
    return *this;
}

InfoHolderContainer::~InfoHolderContainer() = default;

ItemHolderContainer& ItemHolderContainer::operator=(ItemHolderContainer const& other) {
    GenericContainer::operator=(other);
    return *this;
}

ItemHolderContainer::~ItemHolderContainer() = default;

InfoItemContainer::InfoItemContainer() = default;

InfoItemContainer::InfoItemContainer(InfoItemContainer const& other) {
    infos_ = other.infos_;
    items_ = other.items_;
}

InfoItemContainer& InfoItemContainer::operator=(InfoItemContainer const& other) {
    if (this != &other) {
        infos_ = other.infos_;
        items_ = other.items_;
    }
    return *this;
}

InfoItemContainer::~InfoItemContainer() = default;

bool InfoItemContainer::FindInfoItemId(std::string const& name, unsigned int& id) const {
    return infos_.FindId(name, id);
}

InfoItemHolderContainer::InfoItemHolderContainer() = default;

InfoItemHolderContainer::InfoItemHolderContainer(InfoItemHolderContainer const& other) {
    infos_ = other.infos_;
    items_ = other.items_;
}

InfoItemHolderContainer& InfoItemHolderContainer::operator=(InfoItemHolderContainer const& other) {
    if (this != &other) {
        infos_ = other.infos_;
        items_ = other.items_;
    }
    return *this;
}

InfoItemHolderContainer::~InfoItemHolderContainer() = default;

bool InfoItemHolderContainer::FindInfoItemId(std::string const& name, unsigned int& id) const {
    return infos_.FindId(name, id);
}

template class MapIterator<unsigned int, boost::intrusive_ptr<InfoItemHolder>>;

InfoItemHolderMap::InfoItemHolderMap() : MapIterator(byId_) {}

InfoItemHolderMap::~InfoItemHolderMap() = default;

int InfoItemHolderMap::Insert(boost::intrusive_ptr<InfoItemHolder> const& holder) {
    if (!holder) {
        return Codes::k_nullPointer;
    }
    InfoBase const& info = *holder->GetInfoHolder()->GetInfo();
    auto const inserted = byId_.emplace(info.GetId(), holder);
    if (!inserted.second) {
        return Codes::k_present;
    }
    try {
        byName_.emplace(info.GetName(), holder);
    } catch (...) {
        byId_.erase(inserted.first);
        throw;
    }
    return Codes::k_ok;
}

int InfoItemHolderMap::Erase(unsigned int const& id) {
    auto const found = Find_(id);
    if (!found.first) {
        return Codes::k_notFound;
    }
    // Copies, not references: the entry goes before the name map is walked.
    boost::intrusive_ptr<InfoItemHolder> const holder = found.second->second;
    std::string const name = holder->GetInfoHolder()->GetInfo()->GetName();
    byId_.erase(found.second);
    // From the back: equal names go in at the end of their range, and the
    // entry taken out most often is the one just added (a refused AddInfo).
    auto const range = Find_(name);
    for (auto entry = range.second; entry != range.first;) {
        --entry;
        if (entry->second && entry->second->GetInfoHolder()->GetInfo()->GetId() == id) {
            byName_.erase(entry);
            break;
        }
    }
    return Codes::k_ok;
}

std::pair<bool, InfoItemHolderMap::IdMap::const_iterator> InfoItemHolderMap::Find(
    unsigned int const& id) {
    auto const found = byId_.find(id);
    return {found != byId_.end(), found};
}

std::pair<InfoItemHolderMap::NameMap::const_iterator, InfoItemHolderMap::NameMap::const_iterator>
InfoItemHolderMap::Find(std::string const& name) {
    return byName_.equal_range(name);
}

bool InfoItemHolderMap::Empty() const {
    return byId_.empty();
}

void InfoItemHolderMap::Clear() {
    byName_.clear();
    byId_.clear();
}

std::pair<bool, InfoItemHolderMap::IdMap::iterator> InfoItemHolderMap::Find_(
    unsigned int const& id) {
    auto const found = byId_.find(id);
    return {found != byId_.end(), found};
}

std::pair<InfoItemHolderMap::NameMap::iterator, InfoItemHolderMap::NameMap::iterator>
InfoItemHolderMap::Find_(std::string const& name) {
    return byName_.equal_range(name);
}

}  // namespace Oru
}  // namespace Legacy
