#include "serialcodec.h"

namespace Legacy {
namespace Oru {
namespace Serial {

namespace {

// Initial-exec: every Serialize reads the slot, and the general model would
// make each read a call into the dynamic loader.
thread_local PlacedEnvelope::Slot t_placed
    __attribute__((tls_model("initial-exec"))) = {nullptr, nullptr, 0, nullptr};

}  // namespace

PlacedEnvelope::PlacedEnvelope(Record* record, ItemBase const* item, std::uint32_t capacity,
                               unsigned char* at) noexcept
    : record_(record), at_(at), saved_(t_placed) {
    t_placed = at ? Slot{record, item, capacity, at} : Slot{nullptr, nullptr, 0, nullptr};
}

PlacedEnvelope::~PlacedEnvelope() {
    if (Used()) {
        record_->Clear();
    }
    t_placed = saved_;
}

unsigned char* WriteEnvelope(Record* record, ItemBase const& item, std::uint32_t size) {
    if (!record) {
        return nullptr;
    }
    unsigned char* payload = nullptr;
    if (t_placed.at && t_placed.record == record && t_placed.item == &item &&
        size <= t_placed.capacity) {
        // Once only: a second envelope for the same record allocates.
        payload = t_placed.at;
        t_placed = PlacedEnvelope::Slot{nullptr, nullptr, 0, nullptr};
    } else {
        // Allocate first so that a failing allocation leaves the record as it was.
        payload = new unsigned char[size == 0 ? 1 : size];
    }
    record->id = HostToNet32(item.GetId());
    record->dataSize = HostToNet32(size);
    record->type = static_cast<std::uint8_t>(item.GetType());
    record->numericType = static_cast<std::uint8_t>(item.GetNumericType());
    record->data = payload;
    return payload;
}

}  // namespace Serial
}  // namespace Oru
}  // namespace Legacy
