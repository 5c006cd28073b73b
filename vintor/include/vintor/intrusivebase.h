// IntrusiveBaseMT: base of heap objects that carry their own thread-safe
// reference count for boost::intrusive_ptr. The count starts at 0; the last
// release destroys the object through its virtual destructor.
#ifndef VINTOR_INTRUSIVEBASE_H
#define VINTOR_INTRUSIVEBASE_H

#include <vintor/atomic32.h>
#include <vintor/export.h>

namespace Vintor {

class VINTOR_API IntrusiveBaseMT {
public:
    int GetRefCount() const noexcept { return count_.Load(); }

protected:
    IntrusiveBaseMT() = default;
    // Copies start with a count of their own.
    IntrusiveBaseMT(IntrusiveBaseMT const&) noexcept {}
    IntrusiveBaseMT& operator=(IntrusiveBaseMT const&) noexcept { return *this; }
    virtual ~IntrusiveBaseMT();

private:
    friend void intrusive_ptr_add_ref(IntrusiveBaseMT const* object) noexcept;
    friend VINTOR_API void intrusive_ptr_release(IntrusiveBaseMT const* object) noexcept;

    mutable Atomic32 count_;
};

inline void intrusive_ptr_add_ref(IntrusiveBaseMT const* object) noexcept {
    object->count_.FetchAdd(1);
}

VINTOR_API void intrusive_ptr_release(IntrusiveBaseMT const* object) noexcept;

}  // namespace Vintor

#endif
