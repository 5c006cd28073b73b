#include "hex.h"

namespace OruTool {

std::string HexBytes(unsigned char const* bytes, std::size_t count) {
    static char const digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(count * 3);
    for (std::size_t i = 0; i < count; ++i) {
        if (i) {
            text += ' ';
        }
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

std::vector<unsigned char> FlatRecord(Legacy::Oru::ItemBase::SerialStruct_t const& record) {
    std::uint32_t const id = record.GetId();
    std::uint32_t const size = record.GetDataSize();
    std::vector<unsigned char> flat;
    flat.reserve(10 + size);
    for (int shift = 24; shift >= 0; shift -= 8) {
        flat.push_back(static_cast<unsigned char>(id >> shift));
    }
    for (int shift = 24; shift >= 0; shift -= 8) {
        flat.push_back(static_cast<unsigned char>(size >> shift));
    }
    flat.push_back(record.type);
    flat.push_back(record.numericType);
    if (record.data) {
        flat.insert(flat.end(), record.data, record.data + size);
    }
    return flat;
}

}  // namespace OruTool
