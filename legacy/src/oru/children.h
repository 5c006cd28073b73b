// Shared by the families that hold positional children (composites,
// collections): their one-line text form.
#ifndef LEGACY_ORU_SRC_CHILDREN_H
#define LEGACY_ORU_SRC_CHILDREN_H

#include <ostream>
#include <vector>

#include "texts.h"

namespace Legacy {
namespace Oru {

// "(a, b, c)": the separator goes before every child but the first, a null
// one included, which prints nothing.
template <class Ptr>
std::ostream& WriteChildren(std::ostream& out, std::vector<Ptr> const& children) {
    out << "(";
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (i != 0) {
            out << Texts::Separator();
        }
        if (children[i]) {
            children[i]->operator<<(out);
        }
    }
    return out << ")";
}

}  // namespace Oru
}  // namespace Legacy

#endif
