// NonCopyable: an empty base that takes copying away from the classes derived
// from it. Declared in a namespace of its own so that it is not an associated
// namespace of its users for argument-dependent lookup.
#ifndef VINTOR_NONCOPYABLE_H
#define VINTOR_NONCOPYABLE_H

#include <vintor/export.h>  // for its C++17 check

namespace Vintor {
namespace NonCopyable__ {

class NonCopyable {
protected:
    NonCopyable() = default;
    ~NonCopyable() = default;

public:
    NonCopyable(NonCopyable const&) = delete;
    NonCopyable& operator=(NonCopyable const&) = delete;
};

}  // namespace NonCopyable__

using NonCopyable = NonCopyable__::NonCopyable;

}  // namespace Vintor

#endif
