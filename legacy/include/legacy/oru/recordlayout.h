// RecordLayout: how serial records lie flat in bytes, for code that reads or
// writes captures, payloads and composites without the model's classes.
//
// A record laid flat is a ten-byte header (the id and the payload size as
// big-endian 32-bit numbers, then the type byte and the element byte),
// followed by its payload. A composite's payload is a big-endian 16-bit count
// of children, then each child as a record laid flat. ItemBase::Serialize and
// Deserialize read and write exactly this; the functions here are the parse
// and append pieces beside it. Every parse is bounds-checked against the size
// given and never reads past it.
//
// Header only and inline: plain functions over bytes, any thread.
#ifndef LEGACY_ORU_RECORDLAYOUT_H
#define LEGACY_ORU_RECORDLAYOUT_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {
namespace RecordLayout {

// The bytes of a header laid flat.
constexpr std::size_t k_headerSize = 10;
// The bytes of a composite's child count.
constexpr std::size_t k_childCountSize = 2;
// The most children a composite's record can count.
constexpr std::size_t k_maxChildren = 0xFFFF;

// A header in host order.
struct Header {
    std::uint32_t id = 0;
    std::uint32_t dataSize = 0;
    std::uint8_t type = 0;
    std::uint8_t numericType = 0;
};

// One record laid flat inside a larger buffer: its header, where the header
// starts, and its payload, which lies wholly inside the buffer.
struct Flat {
    Header header;
    std::size_t offset = 0;
    unsigned char const* payload = nullptr;
};

// Why the bytes at an offset hold no whole record.
enum class Fault {
    None,
    // Fewer than k_headerSize bytes are left.
    TruncatedHeader,
    // The header claims more payload bytes than are left.
    TruncatedPayload,
};

namespace Detail {

inline std::uint32_t Get32(unsigned char const* in) noexcept {
    return static_cast<std::uint32_t>(in[0]) << 24 | static_cast<std::uint32_t>(in[1]) << 16 |
           static_cast<std::uint32_t>(in[2]) << 8 | static_cast<std::uint32_t>(in[3]);
}

inline void Append32(std::vector<unsigned char>& out, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        out.push_back(static_cast<unsigned char>(value >> shift));
    }
}

}  // namespace Detail

// Reads the header at the start of bytes; false when fewer than k_headerSize
// of the size bytes are there.
inline bool ParseHeader(unsigned char const* bytes, std::size_t size, Header& header) noexcept {
    if (size < k_headerSize) {
        return false;
    }
    header.id = Detail::Get32(bytes);
    header.dataSize = Detail::Get32(bytes + 4);
    header.type = bytes[8];
    header.numericType = bytes[9];
    return true;
}

// Appends the header laid flat.
inline void AppendHeader(std::vector<unsigned char>& out, Header const& header) {
    Detail::Append32(out, header.id);
    Detail::Append32(out, header.dataSize);
    out.push_back(header.type);
    out.push_back(header.numericType);
}

// Reads the record whose header starts at offset in bytes[0, size): its
// header and payload must lie wholly inside. Fault::None on success.
inline Fault ParseRecord(unsigned char const* bytes, std::size_t size, std::size_t offset,
                         Flat& record) noexcept {
    if (offset > size || !ParseHeader(bytes + offset, size - offset, record.header)) {
        return Fault::TruncatedHeader;
    }
    if (record.header.dataSize > size - offset - k_headerSize) {
        return Fault::TruncatedPayload;
    }
    record.offset = offset;
    record.payload = bytes + offset + k_headerSize;
    return Fault::None;
}

// The bytes a record of that payload size takes laid flat.
constexpr std::uint64_t FlatSize(std::uint64_t payloadSize) noexcept {
    return k_headerSize + payloadSize;
}

// Appends a composite's child count; the children follow it as records.
inline void AppendChildCount(std::vector<unsigned char>& out, std::uint16_t count) {
    out.push_back(static_cast<unsigned char>(count >> 8));
    out.push_back(static_cast<unsigned char>(count));
}

// The children of a composite's payload, one record at a time:
//
//   ChildWalk walk(payload, size);
//   for (Flat child; walk.Next(child);) { ... }
//   if (!walk.Complete()) { ... }  // a child missing, cut short, or bytes left
//
// Offsets are from the payload's start.
class ChildWalk {
public:
    ChildWalk(unsigned char const* payload, std::size_t size) noexcept
        : payload_(payload), size_(size) {
        if (size_ >= k_childCountSize) {
            count_ = static_cast<std::size_t>(payload_[0]) << 8 | payload_[1];
            at_ = k_childCountSize;
        } else {
            fault_ = Fault::TruncatedHeader;
        }
    }

    // The number of children the payload counts; 0 when it has no count.
    std::size_t Count() const noexcept { return count_; }

    // The next child; false when all counted children were given or the next
    // one does not lie whole inside the payload (Fault says which).
    bool Next(Flat& child) noexcept {
        if (fault_ != Fault::None || read_ == count_) {
            return false;
        }
        fault_ = ParseRecord(payload_, size_, at_, child);
        if (fault_ != Fault::None) {
            return false;
        }
        at_ += k_headerSize + child.header.dataSize;
        ++read_;
        return true;
    }

    // Why the walk stopped before the counted children were all given.
    Fault GetFault() const noexcept { return fault_; }

    // How many children were given so far.
    std::size_t Read() const noexcept { return read_; }

    // Where the next child would start.
    std::size_t Offset() const noexcept { return at_; }

    // Whether every counted child was given and they fill the payload exactly.
    bool Complete() const noexcept {
        return fault_ == Fault::None && read_ == count_ && at_ == size_;
    }

private:
    unsigned char const* payload_;
    std::size_t size_;
    std::size_t count_ = 0;
    std::size_t read_ = 0;
    std::size_t at_ = 0;
    Fault fault_ = Fault::None;
};

}  // namespace RecordLayout
}  // namespace Oru
}  // namespace Legacy

#endif
