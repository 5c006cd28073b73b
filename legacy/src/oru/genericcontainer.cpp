#include "genericcontainer_impl.h"

namespace Legacy {
namespace Oru {

#define LEGACY_ORU_INSTANTIATE_GENERIC_CONTAINER(T, Ptr, ConstPtr, Id) \
    template class GenericContainerImpl<T, Ptr, ConstPtr, Id>;         \
    template class GenericContainer<T, Ptr, ConstPtr, Id>;
LEGACY_ORU_FOR_EACH_GENERIC_CONTAINER(LEGACY_ORU_INSTANTIATE_GENERIC_CONTAINER)
#undef LEGACY_ORU_INSTANTIATE_GENERIC_CONTAINER

}  // namespace Oru
}  // namespace Legacy
