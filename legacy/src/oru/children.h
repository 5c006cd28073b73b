// The child lists of the families that hold positional children (composites,
// collections), for their Infos and Items alike: generic over the pointer type.
#ifndef LEGACY_ORU_SRC_CHILDREN_H
#define LEGACY_ORU_SRC_CHILDREN_H

#include <cstddef>
#include <ostream>
#include <vector>

#include "textio.h"

namespace Legacy {
namespace Oru {
namespace Children {

template <class Ptr>
bool Append(std::vector<Ptr>& children, Ptr const& child, std::size_t& index) {
    if (!child) {
        return false;
    }
    children.push_back(child);
    index = children.size() - 1;
    return true;
}

template <class Ptr>
bool Replace(std::vector<Ptr>& children, std::size_t index, Ptr const& child) {
    if (!child || index >= children.size()) {
        return false;
    }
    // The old child goes first, then the new one is stored; held meanwhile in
    // case the two are one object.
    Ptr const replacement(child);
    children[index].reset();
    children[index] = replacement;
    return true;
}

// A null entry is dropped without leaving a gap.
template <class Ptr>
void ReplaceAll(std::vector<Ptr>& children, std::vector<Ptr> const& given) {
    std::vector<Ptr> kept;
    kept.reserve(given.size());
    for (Ptr const& child : given) {
        if (child) {
            kept.push_back(child);
        }
    }
    children.swap(kept);
}

// Appends, unlike the non-constant getter; the capacity asked for is this
// list's size alone.
template <class Ptr, class ConstPtr>
void AppendTo(std::vector<ConstPtr>& out, std::vector<Ptr> const& children) {
    out.reserve(children.size());
    for (Ptr const& child : children) {
        if (child) {
            out.push_back(child);
        }
    }
}

template <class Ptr>
Ptr At(std::vector<Ptr> const& children, std::size_t index) {
    return index < children.size() ? children[index] : Ptr();
}

// Each non-null child copied by its own DeepCopy under its own id.
template <class Ptr>
std::vector<Ptr> DeepCopies(std::vector<Ptr> const& children) {
    std::vector<Ptr> copies;
    copies.reserve(children.size());
    for (Ptr const& child : children) {
        if (child) {
            copies.push_back(Ptr(child->DeepCopy()));
        }
    }
    return copies;
}

// Same size, and the test holds for each pair; a null child fails it.
template <class Ptr, class Test>
bool AllPairs(std::vector<Ptr> const& own, std::vector<Ptr> const& other, Test test) {
    if (own.size() != other.size()) {
        return false;
    }
    for (std::size_t i = 0; i < own.size(); ++i) {
        if (!own[i] || !other[i] || !test(own[i], other[i])) {
            return false;
        }
    }
    return true;
}

// "(a, b, c)": a null child prints nothing but keeps its separator.
template <class Ptr>
std::ostream& Write(std::ostream& out, std::vector<Ptr> const& children) {
    return TextIO::WriteList(out, children, [](std::ostream& o, Ptr const& child) {
        if (child) {
            child->operator<<(o);
        }
    });
}

}  // namespace Children
}  // namespace Oru
}  // namespace Legacy

#endif
