// The named containers of Infos, Items and their holders; the pairs of an
// info side and an item side; and InfoItemHolderMap, the map of setting slots
// by id and by name that a directory keeps.
//
// The named containers copy deeply, as GenericContainer does. In the pairs
// nothing keeps the two sides in step: only a directory ties the halves of a
// setting together. No locks: a writer needs the object alone.
//
// Threads: no locks; const operations may run on several threads at once
// while nobody writes the container.
#ifndef LEGACY_ORU_HOLDERCONTAINERS_H
#define LEGACY_ORU_HOLDERCONTAINERS_H

#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include <vintor/noncopyable.h>
#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/genericcontainer.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/infoitemholderdefs.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

// Infos by id and name.
class ORU_API InfoContainer
    : public GenericContainer<InfoBase, boost::intrusive_ptr<InfoBase>,
                              boost::intrusive_ptr<InfoBase const>, unsigned int> {
public:
    InfoContainer() = default;
    InfoContainer(InfoContainer const& other) = default;
    // A deep copy, as the base makes it.
    InfoContainer& operator=(InfoContainer const& other);
    ~InfoContainer() override;
};

// Items by id; every Item has the empty name.
class ORU_API ItemContainer
    : public GenericContainer<ItemBase, boost::intrusive_ptr<ItemBase>,
                              boost::intrusive_ptr<ItemBase const>, unsigned int> {
public:
    ItemContainer() = default;
    ItemContainer(ItemContainer const& other) = default;
    ItemContainer& operator=(ItemContainer const& other);
    ~ItemContainer() override;
};

// Info holders by the id and name of their Infos.
class ORU_API InfoHolderContainer
    : public GenericContainer<InfoHolder, boost::intrusive_ptr<InfoHolder>,
                              boost::intrusive_ptr<InfoHolder const>, unsigned int> {
public:
    InfoHolderContainer() = default;
    InfoHolderContainer(InfoHolderContainer const& other) = default;
    InfoHolderContainer& operator=(InfoHolderContainer const& other);
    ~InfoHolderContainer() override;
};

// Item holders by the id of their Items.
class ORU_API ItemHolderContainer
    : public GenericContainer<ItemHolder, boost::intrusive_ptr<ItemHolder>,
                              boost::intrusive_ptr<ItemHolder const>, unsigned int> {
public:
    ItemHolderContainer() = default;
    ItemHolderContainer(ItemHolderContainer const& other) = default;
    ItemHolderContainer& operator=(ItemHolderContainer const& other);
    ~ItemHolderContainer() override;
};

// A container of Infos beside a container of Items. Copies are deep.
class ORU_API InfoItemContainer {
public:
    InfoItemContainer();
    InfoItemContainer(InfoItemContainer const& other);
    InfoItemContainer& operator=(InfoItemContainer const& other);
    virtual ~InfoItemContainer();

    InfoContainer& Infos() noexcept { return infos_; }
    InfoContainer const& Infos() const noexcept { return infos_; }
    ItemContainer& Items() noexcept { return items_; }
    ItemContainer const& Items() const noexcept { return items_; }

    // The id of an Info named `name`; the item side is not asked, as Items
    // have no names.
    bool FindInfoItemId(std::string const& name, unsigned int& id) const;

private:
    InfoContainer infos_;
    ItemContainer items_;
};

// A container of info holders beside a container of item holders.
class ORU_API InfoItemHolderContainer {
public:
    InfoItemHolderContainer();
    InfoItemHolderContainer(InfoItemHolderContainer const& other);
    InfoItemHolderContainer& operator=(InfoItemHolderContainer const& other);
    virtual ~InfoItemHolderContainer();

    InfoHolderContainer& Infos() noexcept { return infos_; }
    InfoHolderContainer const& Infos() const noexcept { return infos_; }
    ItemHolderContainer& Items() noexcept { return items_; }
    ItemHolderContainer const& Items() const noexcept { return items_; }

    // The id of an info holder whose Info is named `name`.
    bool FindInfoItemId(std::string const& name, unsigned int& id) const;

private:
    InfoHolderContainer infos_;
    ItemHolderContainer items_;
};

// A read-only walk over a std::map that someone else owns.
template <class Key, class Value>
class ORU_API MapIterator : private Vintor::NonCopyable {
public:
    using Map = std::map<Key, Value>;

    // One position in the map.
    struct Iterator {
        using iterator_category = std::forward_iterator_tag;
        using value_type = typename Map::value_type;
        using difference_type = typename Map::difference_type;
        using pointer = value_type const*;
        using reference = value_type const&;

        explicit Iterator(typename Map::const_iterator position) : position_(position) {}

        reference operator*() const { return *position_; }
        pointer operator->() const { return &*position_; }
        Iterator& operator++() {
            ++position_;
            return *this;
        }
        Iterator operator++(int) {
            Iterator before(*this);
            ++position_;
            return before;
        }
        bool operator==(Iterator const& other) const { return position_ == other.position_; }
        bool operator!=(Iterator const& other) const { return position_ != other.position_; }

        typename Map::const_iterator position_;
    };

    // Walks `map`, which must outlive this object.
    explicit MapIterator(Map const& map) : map_(map) {}

    // The first entry, lowest key first.
    Iterator IterBegin() const { return Iterator(map_.begin()); }
    // Past the last entry.
    Iterator IterEnd() const { return Iterator(map_.end()); }
    std::uint64_t Size() const { return map_.size(); }

protected:
    ~MapIterator() = default;

private:
    Map const& map_;
};

// Marked again: the hidden Boost pointer type would hide it otherwise.
extern template class ORU_API MapIterator<unsigned int, boost::intrusive_ptr<InfoItemHolder>>;

// The setting slots of a directory, by id (one each) and by name (several
// may share one, in different sections). Not copyable.
//
// Return codes: 0 done; -25 absent id; -32 null slot; -47 id present.
class ORU_API InfoItemHolderMap
    : public MapIterator<unsigned int, boost::intrusive_ptr<InfoItemHolder>> {
public:
    using IdMap = std::map<unsigned int, boost::intrusive_ptr<InfoItemHolder>>;
    using NameMap = std::multimap<std::string, boost::intrusive_ptr<InfoItemHolder>>;

    // Two empty maps.
    InfoItemHolderMap();
    virtual ~InfoItemHolderMap();

    // Enters `holder` by its Info's id and name: -32 if null, -47 if the id
    // is present (then nothing changes).
    int Insert(boost::intrusive_ptr<InfoItemHolder> const& holder);
    // Takes the slot of `id` out of both maps; -25 if absent.
    int Erase(unsigned int const& id);
    // Whether `id` is present, and its entry (the end if not). Non-const with
    // const iterators, as callers link against it so.
    std::pair<bool, IdMap::const_iterator> Find(unsigned int const& id);
    // The entries named `name`; an empty range if none.
    std::pair<NameMap::const_iterator, NameMap::const_iterator> Find(std::string const& name);
    // True if no slot is entered.
    bool Empty() const;
    // Empties both maps.
    void Clear();

private:
    std::pair<bool, IdMap::iterator> Find_(unsigned int const& id);
    std::pair<NameMap::iterator, NameMap::iterator> Find_(std::string const& name);

    IdMap byId_;
    NameMap byName_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
