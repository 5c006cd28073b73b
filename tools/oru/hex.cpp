#include "hex.h"

#include <algorithm>

#include <legacy/oru/recordlayout.h>

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
    namespace Layout = Legacy::Oru::RecordLayout;
    Layout::Header header;
    header.id = record.GetId();
    header.dataSize = record.GetDataSize();
    header.type = record.type;
    header.numericType = record.numericType;
    unsigned char const* const payload = record.GetData();
    std::vector<unsigned char> flat;
    flat.reserve(Layout::FlatSize(payload ? header.dataSize : 0));
    Layout::AppendHeader(flat, header);
    if (payload) {
        flat.insert(flat.end(), payload, payload + header.dataSize);
    }
    return flat;
}

std::string FlatRecordHex(std::vector<unsigned char> const& flat) {
    std::size_t const header =
        std::min<std::size_t>(Legacy::Oru::RecordLayout::k_headerSize, flat.size());
    return HexBytes(flat.data(), header) + " | " +
           HexBytes(flat.data() + header, flat.size() - header);
}

}  // namespace OruTool
