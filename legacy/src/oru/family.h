// How a family recognises another object of its own class, and takes over a
// value from one.
#ifndef LEGACY_ORU_SRC_FAMILY_H
#define LEGACY_ORU_SRC_FAMILY_H

#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {

// `other` as T when it has self's type and element type, else null. The
// type is asked first, so a foreign family costs no dynamic_cast.
template <class T, class Self, class Ptr>
T const* SameFamily(Self const& self, Ptr const& other) {
    return self.IsEqualType(other) ? dynamic_cast<T const*>(other.get()) : nullptr;
}

// `source` as T when it reports `type`, else null; source must not be null.
template <class T, class Ptr>
T const* OfType(Ptr const& source, OruType_t type) {
    return source->GetType() == type ? dynamic_cast<T const*>(source.get()) : nullptr;
}

// Takes `next` into `value`; *changed, if given, says whether it differed.
// Answers 0, the code of a successful assignment.
template <class V>
int TakeValue(V& value, V const& next, bool* changed) {
    bool const differs = value != next;
    if (differs) {
        value = next;
    }
    if (changed) {
        *changed = differs;
    }
    return 0;
}

}  // namespace Oru
}  // namespace Legacy

#endif
