// GenericContainer: the keyed container of shared elements that each know
// their own id and name. It answers which element has an id, which has a name
// (names need not be unique) and what all elements are in id order.
//
// GenericContainerImpl owns the storage and copies shallowly: a copy is a
// second view of the same element objects. GenericContainer is the handle
// that callers use; it copies deeply, so a copied handle is independent.
//
// Keys are read from the elements: changing an element's id or name while it
// sits in a container leaves the indexes stale. No locks: const operations may
// run together while no writer runs; element counts are atomic.
//
// Return codes: 0 done; -25 an id is absent; -51 an id is present already.
//
// Threads: no locks; const operations may run on several threads at once
// while nobody writes the container.
#ifndef LEGACY_ORU_GENERICCONTAINER_H
#define LEGACY_ORU_GENERICCONTAINER_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <boost/functional/hash.hpp>
#include <boost/intrusive_ptr.hpp>
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/ordered_index.hpp>
#include <boost/multi_index_container.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/infoitemholderdefs.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

// How the container reads an element's id and name and copies it. The
// primary form fits elements with GetId, GetName and a Clone copy operation.
template <class T>
struct GenericContainerKeys {
    static auto GetId(T const& element) { return element.GetId(); }
    static std::string const& GetName(T const& element) { return element.GetName(); }
    static T* Copy(T const& element) { return element.Clone(); }
};

template <>
struct GenericContainerKeys<InfoBase> {
    static unsigned int GetId(InfoBase const& info) { return info.GetId(); }
    static std::string const& GetName(InfoBase const& info) { return info.GetName(); }
    static InfoBase* Copy(InfoBase const& info) { return info.DeepCopy(); }
};

template <>
struct GenericContainerKeys<ItemBase> {
    static unsigned int GetId(ItemBase const& item) { return item.GetId(); }
    static std::string const& GetName(ItemBase const& item) { return item.GetName(); }
    static ItemBase* Copy(ItemBase const& item) { return item.DeepCopy(); }
};

template <>
struct GenericContainerKeys<InfoHolder> {
    static unsigned int GetId(InfoHolder const& holder) { return holder.GetInfo()->GetId(); }
    static std::string const& GetName(InfoHolder const& holder) {
        return holder.GetInfo()->GetName();
    }
    static InfoHolder* Copy(InfoHolder const& holder) { return holder.Clone(); }
};

template <>
struct GenericContainerKeys<ItemHolder> {
    static unsigned int GetId(ItemHolder const& holder) { return holder.GetItem()->GetId(); }
    static std::string const& GetName(ItemHolder const& holder) {
        return holder.GetItem()->GetName();
    }
    static ItemHolder* Copy(ItemHolder const& holder) { return holder.Clone(); }
};

// The storage of a GenericContainer. Copies share the elements; DeepCopy
// copies them.
template <class T, class Ptr, class ConstPtr, class Id>
class ORU_API GenericContainerImpl {
public:
    // The id key, copied out of the element.
    struct IdKey {
        using result_type = Id;
        Id operator()(Ptr const& element) const { return GenericContainerKeys<T>::GetId(*element); }
    };
    // The name key, read in place.
    struct NameKey {
        using result_type = std::string;
        std::string const& operator()(Ptr const& element) const {
            return GenericContainerKeys<T>::GetName(*element);
        }
    };
    // Index 0 orders walks by id, index 1 finds by id, index 2 by name.
    using Elements = boost::multi_index_container<
        Ptr, boost::multi_index::indexed_by<
                 boost::multi_index::ordered_unique<IdKey>,
                 boost::multi_index::hashed_unique<IdKey, boost::hash<Id>>,
                 boost::multi_index::hashed_non_unique<NameKey, boost::hash<std::string>>>>;

    // An empty container.
    GenericContainerImpl();
    // Shares the elements of `other`; their counts rise.
    GenericContainerImpl(GenericContainerImpl const& other);
    // Shares the elements of `other`, releasing the old ones.
    GenericContainerImpl& operator=(GenericContainerImpl const& other);
    virtual ~GenericContainerImpl();

    // A new impl, owned by the caller, holding a copy of each element.
    GenericContainerImpl* DeepCopy() const;

    // Inserts `element`; -51 if its id is present. Null is ignored with 0.
    int Add(Ptr const& element);
    // Inserts all or none: -51 if any id is present already. Nulls are skipped.
    int Add(std::vector<Ptr> const& elements);
    // Inserts, or replaces the element of the same id. Null is ignored.
    void Set(Ptr const& element);
    // Set of each element in order.
    void Set(std::vector<Ptr> const& elements);
    // Removes the element of `id`; -25 if absent.
    int Remove(Id id);
    // Removes all or none: -25 if any id is absent.
    int Remove(std::vector<Id> const& ids);

    // The element of `id`, or null.
    Ptr Get(Id const& id) const;
    // The element of `id` into `out`; -25 with `out` null if absent.
    int Get(Id const& id, Ptr& out) const;
    // Appends the elements of `ids` in order; -25 at the first absent one,
    // keeping what was appended.
    int Get(std::vector<Id> const& ids, std::vector<Ptr>& out) const;
    // Append all elements, ascending by id.
    void Get(std::vector<Ptr>& out) const;
    void Get(std::vector<ConstPtr>& out) const;

    // An element named `name`, or null; any one of several.
    Ptr Find(std::string const& name) const;
    // The id of an element named `name`; false, `id` untouched, if none.
    bool FindId(std::string const& name, Id& id) const;
    bool IsPresent(Id const& id) const;
    std::uint64_t Size() const;
    bool Empty() const;
    // Releases all elements.
    void Clear();

private:
    Elements elements_;
};

// The handle: forwards to its impl and copies deeply.
template <class T, class Ptr, class ConstPtr, class Id>
class ORU_API GenericContainer {
public:
    using Impl = GenericContainerImpl<T, Ptr, ConstPtr, Id>;

    // An empty container.
    GenericContainer();
    // A deep copy: independent of `other`, with copies of its elements.
    GenericContainer(GenericContainer const& other);
    // A deep copy; answers a const reference, as callers link against it so.
    GenericContainer const& operator=(GenericContainer const& other);
    virtual ~GenericContainer();

    int Add(Ptr const& element) { return impl_->Add(element); }
    int Add(std::vector<Ptr> const& elements) { return impl_->Add(elements); }
    void Set(Ptr const& element) { impl_->Set(element); }
    void Set(std::vector<Ptr> const& elements) { impl_->Set(elements); }
    int Remove(Id id) { return impl_->Remove(id); }
    int Remove(std::vector<Id> const& ids) { return impl_->Remove(ids); }
    Ptr Get(Id const& id) const { return impl_->Get(id); }
    int Get(Id const& id, Ptr& out) const { return impl_->Get(id, out); }
    int Get(std::vector<Id> const& ids, std::vector<Ptr>& out) const {
        return impl_->Get(ids, out);
    }
    void Get(std::vector<Ptr>& out) const { impl_->Get(out); }
    void Get(std::vector<ConstPtr>& out) const { impl_->Get(out); }
    Ptr Find(std::string const& name) const { return impl_->Find(name); }
    bool FindId(std::string const& name, Id& id) const { return impl_->FindId(name, id); }
    bool IsPresent(Id const& id) const { return impl_->IsPresent(id); }
    std::uint64_t Size() const { return impl_->Size(); }
    bool Empty() const { return impl_->Empty(); }
    void Clear() { impl_->Clear(); }

private:
    std::unique_ptr<Impl> impl_;
};

#define LEGACY_ORU_FOR_EACH_GENERIC_CONTAINER(X)                                            \
    X(InfoBase, boost::intrusive_ptr<InfoBase>, boost::intrusive_ptr<InfoBase const>,       \
      unsigned int)                                                                         \
    X(ItemBase, boost::intrusive_ptr<ItemBase>, boost::intrusive_ptr<ItemBase const>,       \
      unsigned int)                                                                         \
    X(InfoHolder, boost::intrusive_ptr<InfoHolder>, boost::intrusive_ptr<InfoHolder const>, \
      unsigned int)                                                                         \
    X(ItemHolder, boost::intrusive_ptr<ItemHolder>, boost::intrusive_ptr<ItemHolder const>, \
      unsigned int)

// The mark is repeated here: Boost's pointer types are hidden, and would
// otherwise hide the instantiations made over them.
#define LEGACY_ORU_DECLARE_GENERIC_CONTAINER(T, Ptr, ConstPtr, Id)            \
    extern template class ORU_API GenericContainerImpl<T, Ptr, ConstPtr, Id>; \
    extern template class ORU_API GenericContainer<T, Ptr, ConstPtr, Id>;
LEGACY_ORU_FOR_EACH_GENERIC_CONTAINER(LEGACY_ORU_DECLARE_GENERIC_CONTAINER)
#undef LEGACY_ORU_DECLARE_GENERIC_CONTAINER

}  // namespace Oru
}  // namespace Legacy

#endif
