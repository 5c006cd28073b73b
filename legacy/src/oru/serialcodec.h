// The serial codec shared by every family, header only: big-endian put and get,
// the floating-point mappings of the wire, the envelope of Serialize, the
// prologue of Deserialize, and a bounded reader that never reads past the
// size field of a record.
#ifndef LEGACY_ORU_SRC_SERIALCODEC_H
#define LEGACY_ORU_SRC_SERIALCODEC_H

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include <legacy/oru/itembase.h>
#include <legacy/oru/traits.h>

#include "codes.h"

namespace Legacy {
namespace Oru {
namespace Serial {

using Record = ItemBase::SerialStruct_t;
using ConstRecord = ItemBase::ConstSerialStruct_t;

inline std::uint16_t ByteSwap(std::uint16_t v) noexcept {
    return __builtin_bswap16(v);
}
inline std::uint32_t ByteSwap(std::uint32_t v) noexcept {
    return __builtin_bswap32(v);
}
inline std::uint64_t ByteSwap(std::uint64_t v) noexcept {
    return __builtin_bswap64(v);
}

// Any unsigned type of 1, 2, 4 or 8 bytes (unsigned long and unsigned long
// long alike).
template <class U>
inline U SwapBytes(U v) noexcept {
    static_assert(std::is_unsigned<U>::value, "unsigned only");
    if constexpr (sizeof(U) == 1) {
        return v;
    } else if constexpr (sizeof(U) == 2) {
        return static_cast<U>(__builtin_bswap16(static_cast<std::uint16_t>(v)));
    } else if constexpr (sizeof(U) == 4) {
        return static_cast<U>(__builtin_bswap32(static_cast<std::uint32_t>(v)));
    } else {
        static_assert(sizeof(U) == 8, "1, 2, 4 or 8 bytes");
        return static_cast<U>(__builtin_bswap64(static_cast<std::uint64_t>(v)));
    }
}

// Host order to network order, and network order to host order: the same
// swap, named by its direction at each use.
inline std::uint32_t HostToNet32(std::uint32_t v) noexcept {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    return ByteSwap(v);
#else
    return v;
#endif
}

inline std::uint32_t NetToHost32(std::uint32_t v) noexcept {
    return HostToNet32(v);
}

// The size field has 32 bits: whether count elements of width bytes, and
// extra bytes beside them, make a payload it can state. Computed without
// overflow for any count.
constexpr std::uint64_t k_maxPayload = 0xFFFFFFFFu;

constexpr bool FitsSizeField(std::uint64_t count, std::uint64_t width = 1,
                             std::uint64_t extra = 0) noexcept {
    return extra <= k_maxPayload && (width == 0 || count <= (k_maxPayload - extra) / width);
}

// Writes an unsigned integer of N bytes, most significant first. One swap
// and one store, so that loops over arrays of them vectorise.
template <class U>
inline void PutBigEndian(unsigned char* out, U value) noexcept {
    static_assert(std::is_unsigned<U>::value, "unsigned only");
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    value = SwapBytes(value);
#endif
    std::memcpy(out, &value, sizeof(U));
}

template <class U>
inline U GetBigEndian(unsigned char const* in) noexcept {
    static_assert(std::is_unsigned<U>::value, "unsigned only");
    U value;
    std::memcpy(&value, in, sizeof(U));
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    value = SwapBytes(value);
#endif
    return value;
}

// Truncation toward zero to 64 bits as the processor does it: NaN and values
// out of range give the lowest number instead of undefined behaviour.
template <class F>
inline std::int64_t TruncateToInt64(F value) noexcept {
    constexpr F limit = F(9223372036854775808.0);  // 2^63
    if (!(value >= -limit && value < limit)) {
        return std::numeric_limits<std::int64_t>::min();
    }
    return static_cast<std::int64_t>(value);
}

// The wire's float mapping: truncate to an integer, keep the low 32 bits,
// reverse their bytes, convert back to float. The same steps write and read,
// and they only cancel for whole numbers; peers depend on these exact bits.
inline float MapFloat(float value) noexcept {
    auto const low = static_cast<std::uint32_t>(static_cast<std::uint64_t>(TruncateToInt64(value)));
    return static_cast<float>(ByteSwap(low));
}

// The wire's double mapping: to an unsigned 64-bit integer (values from 2^63
// by subtracting 2^63 and setting the top bit, negatives through signed),
// bytes reversed, back to double.
inline double MapDouble(double value) noexcept {
    constexpr double two63 = 9223372036854775808.0;
    std::uint64_t bits;
    if (value >= two63) {
        bits =
            static_cast<std::uint64_t>(TruncateToInt64(value - two63)) | (std::uint64_t(1) << 63);
    } else {
        bits = static_cast<std::uint64_t>(TruncateToInt64(value));
    }
    return static_cast<double>(ByteSwap(bits));
}

// The float slots of colours and orientations: MapFloat's steps, the result
// stored as an IEEE single in little-endian byte order whatever the host,
// unlike every other number on the wire. Peers read and write these exact bytes.
inline void PutLittleEndianFloat(unsigned char* out, float value) noexcept {
    float const mapped = MapFloat(value);
    std::uint32_t bits;
    std::memcpy(&bits, &mapped, sizeof bits);
    for (std::size_t i = 0; i < sizeof bits; ++i) {
        out[i] = static_cast<unsigned char>(bits >> (8 * i));
    }
}

inline float GetLittleEndianFloat(unsigned char const* in) noexcept {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < sizeof bits; ++i) {
        bits |= static_cast<std::uint32_t>(in[i]) << (8 * i);
    }
    float raw;
    std::memcpy(&raw, &bits, sizeof raw);
    return MapFloat(raw);
}

// One element of a numeric family in its wire form.
template <class T>
inline void PutElement(unsigned char* out, typename T::Element value) noexcept {
    using E = typename T::Element;
    if constexpr (std::is_same<E, float>::value) {
        float const mapped = MapFloat(value);
        std::memcpy(out, &mapped, sizeof mapped);
    } else if constexpr (std::is_same<E, double>::value) {
        double const mapped = MapDouble(value);
        std::memcpy(out, &mapped, sizeof mapped);
    } else {
        PutBigEndian(out, static_cast<typename std::make_unsigned<E>::type>(value));
    }
}

template <class T>
inline typename T::Element GetElement(unsigned char const* in) noexcept {
    using E = typename T::Element;
    if constexpr (std::is_same<E, float>::value) {
        float raw;
        std::memcpy(&raw, in, sizeof raw);
        return MapFloat(raw);
    } else if constexpr (std::is_same<E, double>::value) {
        double raw;
        std::memcpy(&raw, in, sizeof raw);
        return MapDouble(raw);
    } else {
        return static_cast<E>(GetBigEndian<typename std::make_unsigned<E>::type>(in));
    }
}

// The header of a record laid flat: id and payload size, big-endian, then
// the type byte and the element byte. Composites lay their children so; the
// program reads captured records and the fuzzers make them the same way.
constexpr std::uint32_t k_headerSize = 10;

struct Header {
    std::uint32_t id;        // host order
    std::uint32_t dataSize;  // host order
    std::uint8_t type;
    std::uint8_t numericType;
};

inline Header GetHeader(unsigned char const* in) noexcept {
    return Header{GetBigEndian<std::uint32_t>(in), GetBigEndian<std::uint32_t>(in + 4), in[8],
                  in[9]};
}

// The record's fields are in network order already, so they are copied as
// they stand.
inline void PutHeader(unsigned char* out, Record const& record) noexcept {
    std::memcpy(out, &record.id, 4);
    std::memcpy(out + 4, &record.dataSize, 4);
    out[8] = record.type;
    out[9] = record.numericType;
}

// A reader's record for a header laid flat; its payload is the caller's.
inline void SetHeader(ConstRecord& record, Header const& header) noexcept {
    record.SetHeader(header.id, header.dataSize, header.type, header.numericType);
}

// Every per-thread variable of the library, and why a fixed signature leaves
// no other place for it (all initial-exec, since they sit on hot paths):
// - t_placed (here): the place a composite lends the envelope of its next
//   child, since Serialize takes no buffer.
// - t_depth (composite.cpp): how deep composite records nest while decoding,
//   since ItemBase::Deserialize carries no depth.
// - SectionScratch, InfoScratch (infoitemdirectory.cpp) and the path head
//   (sectionmap.cpp): the section path and name of a lookup by path, reused so
//   that a lookup allocates nothing once it has seen its longest path.
// - the id list of a section walk (InfoItemDirectory::CollectIn_), reused for
//   the same reason. No lookup or walk starts another while these are in use.
//
// Where the next WriteEnvelope for `record` and `item` writes its payload
// instead of allocating one, if it needs at most `capacity` bytes: a
// composite lends each child its place in its own payload, so that a
// Serialize allocates once however many children it holds. One slot per
// thread, consumed by the envelope that matches it; a null `at` places
// nothing. Inline and initial-exec: a composite sets it once per child.
struct PlacedSlot {
    Record const* record;
    ItemBase const* item;
    std::uint32_t capacity;
    unsigned char* at;
};

inline thread_local PlacedSlot t_placed
    __attribute__((tls_model("initial-exec"))) = {nullptr, nullptr, 0, nullptr};

// Fills the header from the item and allocates a payload of exactly size
// bytes, or writes to the place the slot lends for this record and Item;
// answers the payload, or null for a null record. A pointer already in the
// record is overwritten, not released. Inline: every Serialize runs it, once
// per child of a composite.
inline unsigned char* WriteEnvelope(Record* record, ItemBase const& item, std::uint32_t size) {
    if (!record) {
        return nullptr;
    }
    unsigned char* payload = nullptr;
    if (t_placed.at && t_placed.record == record && t_placed.item == &item &&
        size <= t_placed.capacity) {
        // Once only: a second envelope for the same record allocates.
        payload = t_placed.at;
        t_placed.at = nullptr;
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

// Keeps the slot as it was around a composite's walk over its children,
// should a child throw or a nested composite lend places of its own.
class PlacedScope {
public:
    PlacedScope() noexcept : saved_(t_placed) {}
    ~PlacedScope() { t_placed = saved_; }
    PlacedScope(PlacedScope const&) = delete;
    PlacedScope& operator=(PlacedScope const&) = delete;

private:
    PlacedSlot saved_;
};

// The checks every Deserialize begins with: null record -32; id, type or
// numeric type other than the item's -41; a payload pointer missing for a
// non-empty size -41. Inline, with the header fields read in place: it runs
// once per record read, a composite's children included.
inline int CheckPrologue(ConstRecord const* record, ItemBase const& item) noexcept {
    if (!record) {
        return Codes::k_nullPointer;
    }
    if (NetToHost32(record->id) != item.GetId()) {
        return Codes::k_invalid;
    }
    if (record->type != static_cast<std::uint8_t>(item.GetType())) {
        return Codes::k_invalid;
    }
    if (record->numericType != static_cast<std::uint8_t>(item.GetNumericType())) {
        return Codes::k_invalid;
    }
    if (record->data == nullptr && record->dataSize != 0) {
        return Codes::k_invalid;
    }
    return 0;
}

// The prologue and a payload of exactly size bytes.
inline int CheckPrologue(ConstRecord const* record, ItemBase const& item,
                         std::uint32_t size) noexcept {
    int const code = CheckPrologue(record, item);
    if (code != 0) {
        return code;
    }
    return NetToHost32(record->dataSize) == size ? Codes::k_ok : Codes::k_invalid;
}

// A payload that is one text and its terminator: the record must end in 0,
// which also keeps the search inside it, and the text runs to its first 0.
// An empty payload has no terminator. Prologue first.
inline int ReadTextPayload(ConstRecord const* record, ItemBase const& item, std::string& text) {
    int const code = CheckPrologue(record, item);
    if (code != Codes::k_ok) {
        return code;
    }
    std::uint32_t const size = record->GetDataSize();
    if (size == 0 || record->data[size - 1] != 0) {
        return Codes::k_invalid;
    }
    auto const* const begin = reinterpret_cast<char const*>(record->data);
    text.assign(begin, std::strlen(begin));
    return Codes::k_ok;
}

// Sequential reads over a payload that never pass its end: a read that would
// sets the failed flag and answers zeros, so a decoder checks Failed() once.
class Reader {
public:
    Reader(unsigned char const* data, std::uint32_t size) noexcept
        : data_(data), remaining_(data ? size : 0), failed_(false) {}
    explicit Reader(ConstRecord const& record) noexcept
        : Reader(record.data, record.GetDataSize()) {}

    bool Failed() const noexcept { return failed_; }
    std::uint32_t Remaining() const noexcept { return remaining_; }
    unsigned char const* Position() const noexcept { return data_; }

    // The next count bytes, or null (and failed) if fewer remain.
    unsigned char const* Take(std::uint32_t count) noexcept {
        if (failed_ || count > remaining_) {
            failed_ = true;
            return nullptr;
        }
        unsigned char const* const at = data_;
        data_ += count;
        remaining_ -= count;
        return at;
    }

    template <class U>
    U BigEndian() noexcept {
        unsigned char const* const at = Take(sizeof(U));
        return at ? GetBigEndian<U>(at) : U(0);
    }

    std::uint8_t Byte() noexcept { return BigEndian<std::uint8_t>(); }

    // The text up to the next 0, which is taken with it; false (and failed)
    // when no 0 remains, so the search never leaves the payload.
    bool CString(char const*& text, std::uint32_t& length) noexcept {
        auto const* const zero =
            failed_ ? nullptr
                    : static_cast<unsigned char const*>(std::memchr(data_, 0, remaining_));
        if (!zero) {
            failed_ = true;
            return false;
        }
        length = static_cast<std::uint32_t>(zero - data_);
        text = reinterpret_cast<char const*>(Take(length + 1));
        return true;
    }

    template <class T>
    typename T::Element Element() noexcept {
        unsigned char const* const at = Take(T::k_serialWidth);
        return at ? GetElement<T>(at) : typename T::Element(0);
    }

private:
    unsigned char const* data_;
    std::uint32_t remaining_;
    bool failed_;
};

// Sequential writes into a payload that WriteEnvelope sized; the size
// computation of the family is the bound.
class Writer {
public:
    explicit Writer(unsigned char* data) noexcept : data_(data) {}

    void Bytes(void const* bytes, std::size_t count) noexcept {
        if (count != 0) {
            std::memcpy(data_, bytes, count);
            data_ += count;
        }
    }
    template <class U>
    void BigEndian(U value) noexcept {
        PutBigEndian(data_, value);
        data_ += sizeof(U);
    }
    void Byte(std::uint8_t value) noexcept { *data_++ = value; }
    // The text and its terminating 0.
    void CString(std::string const& text) noexcept {
        Bytes(text.data(), text.size());
        Byte(0);
    }
    template <class T>
    void Element(typename T::Element value) noexcept {
        PutElement<T>(data_, value);
        data_ += T::k_serialWidth;
    }
    unsigned char* Position() const noexcept { return data_; }

private:
    unsigned char* data_;
};

// A payload of one text and its terminator; -41 for a text the size field
// cannot state, or a null record.
inline int WriteTextPayload(Record* record, ItemBase const& item, std::string const& text) {
    if (!FitsSizeField(text.size(), 1, 1)) {
        return Codes::k_invalid;
    }
    unsigned char* const payload =
        WriteEnvelope(record, item, static_cast<std::uint32_t>(text.size() + 1));
    if (!payload) {
        return Codes::k_invalid;
    }
    Writer(payload).CString(text);
    return Codes::k_ok;
}

}  // namespace Serial
}  // namespace Oru
}  // namespace Legacy

#endif
