// Turns fuzzer input into a reader's record the way a receiver would: ten
// header bytes, then a payload buffer of exactly the size the header claims,
// cut to what the input holds.
#ifndef ORU_FUZZ_RECORD_H
#define ORU_FUZZ_RECORD_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <legacy/oru/itembase.h>

#include "serialcodec.h"

namespace OruFuzz {

struct InputRecord {
    std::vector<unsigned char> payload;
    Legacy::Oru::ItemBase::ConstSerialStruct_t record;
};

inline bool MakeRecord(std::uint8_t const* data, std::size_t size, InputRecord& out) {
    namespace Serial = Legacy::Oru::Serial;
    if (size < Serial::k_headerSize) {
        return false;
    }
    Serial::Header header = Serial::GetHeader(data);
    std::size_t const held = size - Serial::k_headerSize;
    if (header.dataSize > held) {
        header.dataSize = static_cast<std::uint32_t>(held);
    }
    out.payload.assign(data + Serial::k_headerSize, data + Serial::k_headerSize + header.dataSize);
    Serial::SetHeader(out.record, header);
    out.record.data = header.dataSize ? out.payload.data() : nullptr;
    return true;
}

}  // namespace OruFuzz

#endif
