#include "hex.h"

#include <cstring>

#include "serialcodec.h"

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
    namespace Serial = Legacy::Oru::Serial;
    std::uint32_t const size = record.GetDataSize();
    std::vector<unsigned char> flat(Serial::k_headerSize + (record.data ? size : 0));
    Serial::PutHeader(flat.data(), record);
    if (record.data && size != 0) {
        std::memcpy(flat.data() + Serial::k_headerSize, record.data, size);
    }
    return flat;
}

}  // namespace OruTool
