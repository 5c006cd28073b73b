#include <vintor/intrusivebase.h>

namespace Vintor {

IntrusiveBaseMT::~IntrusiveBaseMT() = default;

void intrusive_ptr_release(IntrusiveBaseMT const* object) noexcept {
    if (object->count_.FetchAdd(-1) == 1) {
        delete object;
    }
}

}  // namespace Vintor
