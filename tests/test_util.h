// Small helpers shared by the tests: records from bytes, records to bytes,
// objects to the texts they write, and the list of the ten traits classes.
#ifndef ORU_TESTS_TEST_UTIL_H
#define ORU_TESTS_TEST_UTIL_H

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/traits.h>

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

// The ten element types, for a TYPED_TEST_SUITE whose members share behaviour.
using AllTraits =
    ::testing::Types<Legacy::Oru::U8Traits, Legacy::Oru::S8Traits, Legacy::Oru::U16Traits,
                     Legacy::Oru::S16Traits, Legacy::Oru::U32Traits, Legacy::Oru::S32Traits,
                     Legacy::Oru::U64Traits, Legacy::Oru::S64Traits, Legacy::Oru::FloatTraits,
                     Legacy::Oru::DoubleTraits>;

// What operator<< writes for object: the one-line text of an Info or Item,
// the name of a type enumerator.
template <class T>
std::string TextOf(T const& object) {
    std::ostringstream out;
    out << object;
    return out.str();
}

// The lines DumpVal writes for object.
template <class T>
std::string DumpOf(T const& object) {
    std::ostringstream out;
    object.DumpVal(out);
    return out.str();
}

}  // namespace OruTest

#endif
