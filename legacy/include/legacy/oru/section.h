// The object-shaped model of a section, for derivation by callers: a
// Section is a reference-counted object with its own info and item holders,
// a two-part SectionId_t, a name and a word of flags; a Set is a plain record
// of an id and a name. Both are abstract: the library defines their common
// behaviour and the containers that key sections by SectionId_t; the
// concrete classes and the meaning of the flags belong to the callers. The
// directory does not use them.
//
// No locks. The first hash_value of a SectionId_t fills its cache, so hash a
// shared id once before handing it to other threads. SetFlags and ClearFlags
// are plain read-modify-writes.
#ifndef LEGACY_ORU_SECTION_H
#define LEGACY_ORU_SECTION_H

#include <cstdint>
#include <iosfwd>
#include <string>

#include <vintor/intrusivebase.h>
#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/genericcontainer.h>
#include <legacy/oru/holdercontainers.h>

namespace Legacy {
namespace Oru {

// The key of a Section: a primary number and a secondary string, ordered by
// the number first, hashed by a sum that is cached on first use.
class ORU_API SectionId_t {
public:
    // Stores both parts; the cache starts empty.
    SectionId_t(unsigned int const& primaryId = 0, std::string const& secondaryId = std::string());
    // Copies both parts and the cache.
    SectionId_t(SectionId_t const& other);
    // Takes both parts and the cache; the source's secondary becomes empty.
    SectionId_t(SectionId_t&& other) noexcept;
    SectionId_t& operator=(SectionId_t const& other);
    SectionId_t& operator=(SectionId_t&& other) noexcept;
    ~SectionId_t();

    unsigned int const& PrimaryId() const noexcept { return primaryId_; }
    std::string const& SecondaryId() const noexcept { return secondaryId_; }

    // Primary less, or primary equal and secondary lexically less.
    bool operator<(SectionId_t const& other) const noexcept;
    // Both parts equal; the cache takes no part.
    bool operator==(SectionId_t const& other) const noexcept;
    bool operator!=(SectionId_t const& other) const noexcept { return !(*this == other); }

    // boost::hash of the secondary plus the primary, a plain 64-bit sum with
    // wrap (not a combine: stored hashes depend on it). Computed once, then
    // answered from the cache.
    std::uint64_t hash_value() const noexcept;

private:
    unsigned int primaryId_;
    std::string secondaryId_;
    mutable std::uint64_t hash_;
    mutable bool hashed_;
};

// The member hash, for boost::hash.
ORU_API std::uint64_t hash_value(SectionId_t const& id) noexcept;

// A section for callers to derive from: its own info and item holders (from
// InfoItemHolderContainer), an id, a name and flags whose bits the deriving
// class defines. Held under boost::intrusive_ptr, count 0 after construction.
class ORU_API Section : public Vintor::IntrusiveBaseMT, public InfoItemHolderContainer {
public:
    // Empty holder containers.
    Section(SectionId_t const& id, std::string const& name, unsigned int flags);
    ~Section() override;

    // A new section with a deep copy of this one, count 0; keyed containers
    // of sections copy through it.
    virtual Section* Clone() const = 0;

    SectionId_t const& GetId() const noexcept { return id_; }
    unsigned int const& GetPrimaryId() const noexcept { return id_.PrimaryId(); }
    std::string const& GetSecondaryId() const noexcept { return id_.SecondaryId(); }
    std::string const& GetName() const noexcept { return name_; }
    unsigned int GetFlags() const noexcept { return flags_; }
    // True if any bit of `mask` is set.
    bool CheckFlags(unsigned int mask) const noexcept { return (flags_ & mask) != 0; }
    // Sets the bits of `mask`; answers the new flags.
    unsigned int SetFlags(unsigned int mask) noexcept { return flags_ |= mask; }
    // Clears the bits of `mask`; answers the new flags.
    unsigned int ClearFlags(unsigned int mask) noexcept { return flags_ &= ~mask; }

    // The ids are equal.
    bool operator==(SectionId_t const& id) const noexcept { return id_ == id; }
    // The names are equal.
    bool operator==(std::string const& name) const noexcept { return name_ == name; }

protected:
    // For Clone of deriving classes: copies id, name and flags, and deep
    // copies of the holder containers; the count starts at 0.
    Section(Section const& other) = default;
    // Copies id, name, flags and the holder containers; the count stays.
    Section& operator=(Section const& other) = default;

private:
    SectionId_t id_;
    std::string name_;
    unsigned int flags_;
};

// The text form: name, ids and flags, then the infos and the items in
// ascending order of id, one a line.
ORU_API std::ostream& operator<<(std::ostream& out, Section const& section);

// A record of an id and a name for callers to derive from; the roles of its
// two pure operations are the deriving class's.
class ORU_API Set {
public:
    // Id 0 and an empty name.
    Set();
    Set(unsigned int id, std::string name);
    Set(Set const& other) = default;
    Set& operator=(Set const& other) = default;
    virtual ~Set();

    virtual Set* Clone() const = 0;
    virtual std::string ToString() const = 0;

    void SetId(unsigned int id) noexcept { id_ = id; }
    unsigned int GetId() const noexcept { return id_; }
    void SetName(std::string name) { name_ = std::move(name); }
    std::string const& GetName() const noexcept { return name_; }

private:
    unsigned int id_;
    std::string name_;
};

// Sections keyed by SectionId_t. Marked again: the hidden Boost pointer type
// would hide the instantiation otherwise.
extern template class ORU_API GenericContainerImpl<
    Section, boost::intrusive_ptr<Section>, boost::intrusive_ptr<Section const>, SectionId_t>;

}  // namespace Oru
}  // namespace Legacy

#endif
