#include "serialcodec.h"

namespace Legacy {
namespace Oru {
namespace Serial {

unsigned char* WriteEnvelope(Record* record, ItemBase const& item, std::uint32_t size) {
    if (!record) {
        return nullptr;
    }
    // Allocate first so that a failing allocation leaves the record as it was.
    auto* const payload = new unsigned char[size == 0 ? 1 : size];
    record->id = HostToNet32(item.GetId());
    record->dataSize = HostToNet32(size);
    record->type = static_cast<std::uint8_t>(item.GetType());
    record->numericType = static_cast<std::uint8_t>(item.GetNumericType());
    record->data = payload;
    return payload;
}

int CheckPrologue(ConstRecord const* record, ItemBase const& item) noexcept {
    if (!record) {
        return -32;
    }
    if (record->GetId() != item.GetId()) {
        return -41;
    }
    if (record->type != static_cast<std::uint8_t>(item.GetType())) {
        return -41;
    }
    if (record->numericType != static_cast<std::uint8_t>(item.GetNumericType())) {
        return -41;
    }
    if (record->data == nullptr && record->GetDataSize() != 0) {
        return -41;
    }
    return 0;
}

int CheckPrologue(ConstRecord const* record, ItemBase const& item, std::uint32_t size) noexcept {
    int const code = CheckPrologue(record, item);
    if (code != 0) {
        return code;
    }
    return record->GetDataSize() == size ? 0 : -41;
}

}  // namespace Serial
}  // namespace Oru
}  // namespace Legacy
