// The member definitions of GenericContainerImpl and GenericContainer. Only
// the sources that instantiate the templates include this file.
#ifndef LEGACY_ORU_GENERICCONTAINER_IMPL_H
#define LEGACY_ORU_GENERICCONTAINER_IMPL_H

#include <legacy/oru/genericcontainer.h>
#include <vector>

#include "codes.h"

namespace Legacy {
namespace Oru {

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainerImpl<T, Ptr, ConstPtr, Id>::GenericContainerImpl() = default;

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainerImpl<T, Ptr, ConstPtr, Id>::GenericContainerImpl(GenericContainerImpl const& other)
    : elements_(other.elements_) {}

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainerImpl<T, Ptr, ConstPtr, Id>& GenericContainerImpl<T, Ptr, ConstPtr, Id>::operator=(
    GenericContainerImpl const& other) {
    // Copy first, then swap: a failing copy leaves this one as it was.
    Elements copy(other.elements_);
    elements_.swap(copy);
    return *this;
}

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainerImpl<T, Ptr, ConstPtr, Id>::~GenericContainerImpl() = default;

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainerImpl<T, Ptr, ConstPtr, Id>* GenericContainerImpl<T, Ptr, ConstPtr, Id>::DeepCopy()
    const {
    std::unique_ptr<GenericContainerImpl> copy(new GenericContainerImpl());
    auto& byId = copy->elements_.template get<0>();
    for (auto const& element : elements_.template get<0>()) {
        Ptr const elementCopy(GenericContainerKeys<T>::Copy(*element));
        // Walking in id order lets each insert land at the end of index 0.
        byId.insert(byId.end(), elementCopy);
    }
    return copy.release();
}

template <class T, class Ptr, class ConstPtr, class Id>
int GenericContainerImpl<T, Ptr, ConstPtr, Id>::Add(Ptr const& element) {
    // A null element is no error here, unlike in the directory.
    if (!element) {
        return Codes::k_ok;
    }
    if (!elements_.template get<1>().insert(element).second) {
        return Codes::k_idTaken;
    }
    return Codes::k_ok;
}

template <class T, class Ptr, class ConstPtr, class Id>
int GenericContainerImpl<T, Ptr, ConstPtr, Id>::Add(std::vector<Ptr> const& elements) {
    auto const& byId = elements_.template get<1>();
    for (auto const& element : elements) {
        if (element && byId.find(GenericContainerKeys<T>::GetId(*element)) != byId.end()) {
            return Codes::k_idTaken;
        }
    }
    // Ids are checked only against what was here before, so a repeated id in
    // `elements` is a replacement, as callers expect. Every id inserted here
    // is new, so an allocation failure half way is undone by erasing them.
    std::vector<Id> inserted;
    inserted.reserve(elements.size());
    auto& byIdMutable = elements_.template get<1>();
    try {
        for (auto const& element : elements) {
            if (element) {
                inserted.push_back(GenericContainerKeys<T>::GetId(*element));
                Set(element);
            }
        }
    } catch (...) {
        for (Id const& id : inserted) {
            byIdMutable.erase(id);
        }
        throw;
    }
    return Codes::k_ok;
}

template <class T, class Ptr, class ConstPtr, class Id>
void GenericContainerImpl<T, Ptr, ConstPtr, Id>::Set(Ptr const& element) {
    if (!element) {
        return;
    }
    auto& byId = elements_.template get<1>();
    auto const found = byId.find(GenericContainerKeys<T>::GetId(*element));
    if (found == byId.end()) {
        byId.insert(element);
    } else {
        byId.replace(found, element);
    }
}

template <class T, class Ptr, class ConstPtr, class Id>
void GenericContainerImpl<T, Ptr, ConstPtr, Id>::Set(std::vector<Ptr> const& elements) {
    for (auto const& element : elements) {
        Set(element);
    }
}

template <class T, class Ptr, class ConstPtr, class Id>
int GenericContainerImpl<T, Ptr, ConstPtr, Id>::Remove(Id id) {
    auto& byId = elements_.template get<1>();
    auto const found = byId.find(id);
    if (found == byId.end()) {
        return Codes::k_notFound;
    }
    byId.erase(found);
    return Codes::k_ok;
}

template <class T, class Ptr, class ConstPtr, class Id>
int GenericContainerImpl<T, Ptr, ConstPtr, Id>::Remove(std::vector<Id> const& ids) {
    auto& byId = elements_.template get<1>();
    for (auto const& id : ids) {
        if (byId.find(id) == byId.end()) {
            return Codes::k_notFound;
        }
    }
    for (auto const& id : ids) {
        byId.erase(id);
    }
    return Codes::k_ok;
}

template <class T, class Ptr, class ConstPtr, class Id>
Ptr GenericContainerImpl<T, Ptr, ConstPtr, Id>::Get(Id const& id) const {
    auto const& byId = elements_.template get<1>();
    auto const found = byId.find(id);
    return found == byId.end() ? Ptr() : *found;
}

template <class T, class Ptr, class ConstPtr, class Id>
int GenericContainerImpl<T, Ptr, ConstPtr, Id>::Get(Id const& id, Ptr& out) const {
    out = Get(id);
    return out ? Codes::k_ok : Codes::k_notFound;
}

template <class T, class Ptr, class ConstPtr, class Id>
int GenericContainerImpl<T, Ptr, ConstPtr, Id>::Get(std::vector<Id> const& ids,
                                                    std::vector<Ptr>& out) const {
    // At most every element can be appended, whatever `ids` repeats.
    out.reserve(out.size() + elements_.size());
    auto const& byId = elements_.template get<1>();
    for (auto const& id : ids) {
        auto const found = byId.find(id);
        if (found == byId.end()) {
            return Codes::k_notFound;
        }
        out.push_back(*found);
    }
    return Codes::k_ok;
}

template <class T, class Ptr, class ConstPtr, class Id>
void GenericContainerImpl<T, Ptr, ConstPtr, Id>::Get(std::vector<Ptr>& out) const {
    out.reserve(out.size() + elements_.size());
    for (auto const& element : elements_.template get<0>()) {
        out.push_back(element);
    }
}

template <class T, class Ptr, class ConstPtr, class Id>
void GenericContainerImpl<T, Ptr, ConstPtr, Id>::Get(std::vector<ConstPtr>& out) const {
    out.reserve(out.size() + elements_.size());
    for (auto const& element : elements_.template get<0>()) {
        out.push_back(element);
    }
}

template <class T, class Ptr, class ConstPtr, class Id>
Ptr GenericContainerImpl<T, Ptr, ConstPtr, Id>::Find(std::string const& name) const {
    auto const& byName = elements_.template get<2>();
    auto const found = byName.find(name);
    return found == byName.end() ? Ptr() : *found;
}

template <class T, class Ptr, class ConstPtr, class Id>
bool GenericContainerImpl<T, Ptr, ConstPtr, Id>::FindId(std::string const& name, Id& id) const {
    auto const& byName = elements_.template get<2>();
    auto const found = byName.find(name);
    if (found == byName.end()) {
        return false;
    }
    id = GenericContainerKeys<T>::GetId(**found);
    return true;
}

template <class T, class Ptr, class ConstPtr, class Id>
bool GenericContainerImpl<T, Ptr, ConstPtr, Id>::IsPresent(Id const& id) const {
    auto const& byId = elements_.template get<1>();
    return byId.find(id) != byId.end();
}

template <class T, class Ptr, class ConstPtr, class Id>
std::uint64_t GenericContainerImpl<T, Ptr, ConstPtr, Id>::Size() const {
    return elements_.size();
}

template <class T, class Ptr, class ConstPtr, class Id>
bool GenericContainerImpl<T, Ptr, ConstPtr, Id>::Empty() const {
    return elements_.empty();
}

template <class T, class Ptr, class ConstPtr, class Id>
void GenericContainerImpl<T, Ptr, ConstPtr, Id>::Clear() {
    elements_.clear();
}

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainer<T, Ptr, ConstPtr, Id>::GenericContainer() : impl_(new Impl()) {}

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainer<T, Ptr, ConstPtr, Id>::GenericContainer(GenericContainer const& other)
    : impl_(other.impl_->DeepCopy()) {}

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainer<T, Ptr, ConstPtr, Id> const& GenericContainer<T, Ptr, ConstPtr, Id>::operator=(
    GenericContainer const& other) {
    if (this != &other) {
        // The copy is made before the old impl goes, so a failing copy
        // leaves this container as it was.
        std::unique_ptr<Impl> copy(other.impl_->DeepCopy());
        impl_.swap(copy);
    }
    return *this;
}

template <class T, class Ptr, class ConstPtr, class Id>
GenericContainer<T, Ptr, ConstPtr, Id>::~GenericContainer() = default;

}  // namespace Oru
}  // namespace Legacy

#endif
