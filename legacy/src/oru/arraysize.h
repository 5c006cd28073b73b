// The element-count range [min, max] of the array families' Infos, and the
// default array that follows it. The families keep the two numbers as their
// own fields; these functions are the one place their rules are written.
#ifndef LEGACY_ORU_SRC_ARRAYSIZE_H
#define LEGACY_ORU_SRC_ARRAYSIZE_H

#include <algorithm>
#include <cstddef>
#include <ostream>

#include "codes.h"
#include "dump.h"

namespace Legacy {
namespace Oru {
namespace ArraySize {

using Count = unsigned long long;

// Sets the minimum and raises the maximum to it.
inline void SetMin(Count& min, Count& max, Count size) {
    min = size;
    max = std::max(max, size);
}

// The same, and a non-empty default grows to the minimum; an empty default
// stays empty.
template <class Vector>
void SetMin(Count& min, Count& max, Vector& defaultValue, Count size) {
    SetMin(min, max, size);
    if (!defaultValue.empty() && defaultValue.size() < size) {
        defaultValue.resize(static_cast<std::size_t>(size));
    }
}

// Sets the maximum and lowers the minimum to it.
inline void SetMax(Count& min, Count& max, Count size) {
    max = size;
    min = std::min(min, size);
}

// The same, and the default is cut to the maximum.
template <class Vector>
void SetMax(Count& min, Count& max, Vector& defaultValue, Count size) {
    SetMax(min, max, size);
    if (defaultValue.size() > size) {
        defaultValue.resize(static_cast<std::size_t>(size));
    }
}

// Narrows [min, max] to its overlap with [otherMin, otherMax]; -55 when the two
// ranges do not meet. The default is left alone, even outside the new range.
inline int Merge(Count& min, Count& max, Count otherMin, Count otherMax) {
    if (otherMin > max || otherMax < min) {
        return Codes::k_disjoint;
    }
    min = std::max(min, otherMin);
    max = std::min(max, otherMax);
    return 0;
}

// Takes [otherMin, otherMax]; true if that changed anything.
inline bool Assign(Count& min, Count& max, Count otherMin, Count otherMax) {
    bool const differs = min != otherMin || max != otherMax;
    min = otherMin;
    max = otherMax;
    return differs;
}

// -37 for a default whose element count is outside [min, max].
inline int CheckDefault(std::size_t count, Count min, Count max) {
    return count < min || count > max ? Codes::k_sizeOutOfRange : Codes::k_ok;
}

// The size lines of an array Info's dump.
inline void DumpLines(std::ostream& out, Count min, Count max, std::size_t defaultSize) {
    Dump::Line(out, "minSize: ", min);
    Dump::Line(out, "maxSize: ", max);
    Dump::Line(out, "defaultSize: ", defaultSize);
}

// The one-line form of an array Info: "array size: MIN <= DEFAULT <= MAX".
inline std::ostream& Print(std::ostream& out, Count min, Count max, std::size_t defaultSize) {
    return out << "array size: " << min << " <= " << defaultSize << " <= " << max;
}

}  // namespace ArraySize
}  // namespace Oru
}  // namespace Legacy

#endif
