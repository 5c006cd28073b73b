#include <legacy/oru/version.h>

namespace Legacy {
namespace Oru {

char const* Version() {
    return ORU_VERSION_STRING;
}

}  // namespace Oru
}  // namespace Legacy
