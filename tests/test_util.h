// Small helpers shared by the tests: records from bytes, records to bytes.
#ifndef ORU_TESTS_TEST_UTIL_H
#define ORU_TESTS_TEST_UTIL_H

#include <cstdint>
#include <string>
#include <vector>

#include <legacy/oru/itembase.h>

namespace OruTest {

using Bytes = std::vector<unsigned char>;

// A reader's record over payload, with a header from host-order values.
inline Legacy::Oru::ItemBase::ConstSerialStruct_t MakeRecord(std::uint32_t id, std::uint8_t type,
                                                             std::uint8_t numericType,
                                                             Bytes const& payload) {
    Legacy::Oru::ItemBase::ConstSerialStruct_t record;
    record.SetHeader(id, static_cast<std::uint32_t>(payload.size()), type, numericType);
    record.data = payload.empty() ? nullptr : payload.data();
    return record;
}

// The payload of a written record.
inline Bytes PayloadOf(Legacy::Oru::ItemBase::SerialStruct_t const& record) {
    return Bytes(record.data, record.data + record.GetDataSize());
}

inline std::string Hex(Bytes const& bytes) {
    static char const digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i) {
            text += ' ';
        }
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

}  // namespace OruTest

#endif
