// The files of the editor's page, compiled in from web/.
#ifndef ORU_SERVICE_ASSETS_H
#define ORU_SERVICE_ASSETS_H

#include <cstddef>
#include <vector>

namespace Legacy {
namespace Oru {
namespace Service {

struct Asset {
    char const* name;
    char const* contentType;
    unsigned char const* data;
    std::size_t size;
};

std::vector<Asset> const& Assets();

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy

#endif
