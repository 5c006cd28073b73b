// Turns fuzzer input into a reader's record the way a receiver would: ten
// header bytes, then a payload buffer of exactly the size the header claims,
// cut to what the input holds.
#ifndef ORU_FUZZ_RECORD_H
#define ORU_FUZZ_RECORD_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <legacy/oru/itembase.h>

namespace OruFuzz {

struct InputRecord {
    std::vector<unsigned char> payload;
    Legacy::Oru::ItemBase::ConstSerialStruct_t record;
};

inline bool MakeRecord(std::uint8_t const* data, std::size_t size, InputRecord& out) {
    if (size < 10) {
        return false;
    }
    auto be32 = [](std::uint8_t const* p) {
        return (std::uint32_t(p[0]) << 24) | (std::uint32_t(p[1]) << 16) |
               (std::uint32_t(p[2]) << 8) | std::uint32_t(p[3]);
    };
    std::uint32_t const claimed = be32(data + 4);
    std::size_t const held = size - 10;
    std::uint32_t const length = claimed < held ? claimed : static_cast<std::uint32_t>(held);
    out.payload.assign(data + 10, data + 10 + length);
    out.record.SetHeader(be32(data), length, data[8], data[9]);
    out.record.data = length ? out.payload.data() : nullptr;
    return true;
}

}  // namespace OruFuzz

#endif
