#include <legacy/oru/section.h>

#include <ostream>
#include <utility>
#include <vector>

#include <boost/functional/hash.hpp>

#include "genericcontainer_impl.h"

namespace Legacy {
namespace Oru {

// ---- SectionId_t ----

SectionId_t::SectionId_t(unsigned int const& primaryId, std::string const& secondaryId)
    : primaryId_(primaryId), secondaryId_(secondaryId), hash_(0), hashed_(false) {}

SectionId_t::SectionId_t(SectionId_t const& other) = default;

SectionId_t::SectionId_t(SectionId_t&& other) noexcept
    : primaryId_(other.primaryId_),
      secondaryId_(std::move(other.secondaryId_)),
      hash_(other.hash_),
      hashed_(other.hashed_) {
    other.secondaryId_.clear();
}

SectionId_t& SectionId_t::operator=(SectionId_t const& other) = default;

SectionId_t& SectionId_t::operator=(SectionId_t&& other) noexcept {
    if (this != &other) {
        primaryId_ = other.primaryId_;
        secondaryId_ = std::move(other.secondaryId_);
        other.secondaryId_.clear();
        hash_ = other.hash_;
        hashed_ = other.hashed_;
    }
    return *this;
}

SectionId_t::~SectionId_t() = default;

bool SectionId_t::operator<(SectionId_t const& other) const noexcept {
    if (primaryId_ != other.primaryId_) {
        return primaryId_ < other.primaryId_;
    }
    return secondaryId_ < other.secondaryId_;
}

bool SectionId_t::operator==(SectionId_t const& other) const noexcept {
    return primaryId_ == other.primaryId_ && secondaryId_ == other.secondaryId_;
}

std::uint64_t SectionId_t::hash_value() const noexcept {
    if (!hashed_) {
        // A plain sum, not a combine: keys hashed elsewhere depend on it.
        hash_ = static_cast<std::uint64_t>(boost::hash<std::string>()(secondaryId_)) +
                static_cast<std::uint64_t>(primaryId_);
        hashed_ = true;
    }
    return hash_;
}

std::uint64_t hash_value(SectionId_t const& id) noexcept {
    return id.hash_value();
}

// ---- Section ----

Section::Section(SectionId_t const& id, std::string const& name, unsigned int flags)
    : id_(id), name_(name), flags_(flags) {}

Section::~Section() = default;

std::ostream& operator<<(std::ostream& out, Section const& section) {
    out << "Name: " << section.GetName() << std::endl;
    out << "PrimaryId: " << section.GetPrimaryId() << std::endl;
    out << "SecondaryId: " << section.GetSecondaryId() << std::endl;
    out << "Flags: " << section.GetFlags() << std::endl;
    out << "===Infos For This Section=================" << std::endl;
    std::vector<boost::intrusive_ptr<InfoHolder const>> infos;
    section.Infos().Get(infos);
    for (auto const& info : infos) {
        info->operator<<(out) << std::endl;
    }
    out << "===Items For This Section=================" << std::endl;
    std::vector<boost::intrusive_ptr<ItemHolder const>> items;
    section.Items().Get(items);
    for (auto const& item : items) {
        out << *item->GetItem() << std::endl;
    }
    return out;
}

// ---- Set ----

Set::Set() : id_(0), name_() {}

Set::Set(unsigned int id, std::string name) : id_(id), name_(std::move(name)) {}

Set::~Set() = default;

template class GenericContainerImpl<Section, boost::intrusive_ptr<Section>,
                                    boost::intrusive_ptr<Section const>, SectionId_t>;

}  // namespace Oru
}  // namespace Legacy
