#include "hex.h"

#include <algorithm>
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

std::string FlatRecordHex(std::vector<unsigned char> const& flat) {
    std::size_t const header =
        std::min<std::size_t>(Legacy::Oru::Serial::k_headerSize, flat.size());
    return HexBytes(flat.data(), header) + " | " +
           HexBytes(flat.data() + header, flat.size() - header);
}

}  // namespace OruTool
