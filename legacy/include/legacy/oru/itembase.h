// ItemBase: the abstract base of every Item, the half of a setting that holds
// one value under the Info's id. Items know nothing of their Info but the id.
// Like Infos they live under boost::intrusive_ptr with the count inside.
//
// An Item travels between processes as a serial record: ten header bytes (id
// and payload size big-endian, type byte, numeric-type byte) and a payload of
// the family's own layout. SerialStruct_t is the writer's record and owns the
// payload; ConstSerialStruct_t is the reader's and borrows it.
//
// Threads: the reference count is atomic and may be touched from any thread;
// everything else may be read by several threads while nobody writes it. A
// writer must have the object alone. Every family follows this rule.
#ifndef LEGACY_ORU_ITEMBASE_H
#define LEGACY_ORU_ITEMBASE_H

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

#include <vintor/atomic32.h>
#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {

class ResultElem;

ORU_API void intrusive_ptr_add_ref(ItemBase const* item) noexcept;
// Destroys the Item when the count before the release is below 2.
ORU_API void intrusive_ptr_release(ItemBase const* item) noexcept;

class ORU_API ItemBase {
public:
#pragma pack(push, 1)
    // The writer's record. id and dataSize hold network byte order; data is
    // the payload, released by the destructor.
    struct ORU_API SerialStruct_t {
        std::uint32_t id;
        std::uint32_t dataSize;
        std::uint8_t type;
        std::uint8_t numericType;
        unsigned char* data;

        SerialStruct_t() noexcept;
        ~SerialStruct_t();
        // Copies all eighteen bytes: both records then share one payload, and
        // one of them must be cleared before both are destroyed.
        SerialStruct_t& operator=(SerialStruct_t const& other) noexcept;
        SerialStruct_t(SerialStruct_t const&) = delete;
        // Zeroes all eighteen bytes without releasing the payload: the caller
        // owns the buffer afterwards.
        void Clear() noexcept;

        // The id and size in host order.
        std::uint32_t GetId() const noexcept;
        std::uint32_t GetDataSize() const noexcept;
        // The payload pointer by value: the packed field cannot bind a reference.
        unsigned char* GetData() const noexcept { return data; }
    };

    // The reader's record: it borrows the payload of whoever supplied it.
    struct ORU_API ConstSerialStruct_t {
        std::uint32_t id;
        std::uint32_t dataSize;
        std::uint8_t type;
        std::uint8_t numericType;
        unsigned char const* data;

        ConstSerialStruct_t() noexcept;
        // A view of a written record; the record keeps the payload.
        explicit ConstSerialStruct_t(SerialStruct_t const& record) noexcept;
        ConstSerialStruct_t(ConstSerialStruct_t const&) noexcept = default;
        ConstSerialStruct_t& operator=(ConstSerialStruct_t const&) noexcept = default;
        void Clear() noexcept;

        std::uint32_t GetId() const noexcept;
        std::uint32_t GetDataSize() const noexcept;
        unsigned char const* GetData() const noexcept { return data; }
        // Sets the header from host-order values.
        void SetHeader(std::uint32_t hostId, std::uint32_t hostDataSize, std::uint8_t typeByte,
                       std::uint8_t numericTypeByte) noexcept;
    };
#pragma pack(pop)

    explicit ItemBase(unsigned int id);
    // Does nothing: the id stays.
    ItemBase const& operator=(ItemBase const&) {
        return *this;
    }

    virtual ~ItemBase();
    // A new Item of the same class and value under the given id; count 0.
    virtual ItemBase* DeepCopy(unsigned int id) const = 0;
    virtual OruType_t GetType() const = 0;
    // 0 for the non-numeric families.
    virtual NumericType_t GetNumericType() const;
    virtual bool IsEmpty() const;
    // True if the other Item has this Item's type and element type.
    virtual bool IsEqualType(boost::intrusive_ptr<ItemBase const> const& item) const;
    virtual bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& item) const = 0;
    // Takes the value of another Item, converting across families where the
    // family allows; index picks the element of an array source.
    virtual int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                 unsigned int index, bool* changed) = 0;
    // The payload size Serialize will write.
    virtual unsigned int GetSerialDataSize() const = 0;
    // Fills an empty record; allocates the payload once.
    virtual int Serialize(SerialStruct_t* record) const = 0;
    // Reads a record of this Item's id and type; the old value stays on failure.
    virtual int Deserialize(ConstSerialStruct_t const* record) = 0;
    // Null when the value passes the Info's checks.
    virtual std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const = 0;
    // Fails always here: the family does not support the question.
    virtual std::shared_ptr<ResultElem const> ValidateMin(
        boost::intrusive_ptr<InfoBase const> const& info) const;
    virtual std::shared_ptr<ResultElem const> ValidateMax(
        boost::intrusive_ptr<InfoBase const> const& info) const;
    // Reads the value from text; false and "Error parsing ..." on errors.
    virtual bool SetValFromStream(std::istream& in, std::ostream& errors,
                                  boost::intrusive_ptr<InfoBase const> const& info) = 0;
    virtual void DumpVal(std::ostream& out) const = 0;
    virtual std::ostream& operator<<(std::ostream& out) const = 0;

    ItemBase* DeepCopy() const {
        return DeepCopy(id_);
    }

    // Makes the Item of the record's type and id and lets it read the record.
    // On a failure of that read, item holds the new object with its default.
    //
    // Memory: a record's size field allows 4 GiB, and what the receiver holds
    // grows with the record. For a record of N bytes (header included) the
    // heap held while reading and after it is at most, by family:
    //   strings, numeric and bool arrays, other scalar values: N + 512 bytes;
    //   composites (per child, nested too): 16 N;
    //   application-endpoint arrays (7 bytes per empty endpoint): 32 N;
    //   rectangle arrays (8 bytes per rectangle): 48 N;
    //   string arrays (1 byte per empty string): 96 N, the worst.
    // A composite holds each child's own family's cost. Bound record sizes
    // at the transport accordingly; tests/recordcost_test.cpp measures these.
    static int Deserialize(ConstSerialStruct_t const* record, boost::intrusive_ptr<ItemBase>& item);

    unsigned int const& GetId() const noexcept {
        return id_;
    }
    // Items have no name: one static empty string.
    std::string const& GetName() const noexcept;
    // AssignArrayValue at index 0.
    int AssignValue(boost::intrusive_ptr<ItemBase const> const& source, bool* changed) {
        return AssignArrayValue(source, 0, changed);
    }
    // The compact text form in a fresh default-formatted stream.
    std::string GetValAsString() const;
    int GetRefCount() const noexcept;

    static OruType_t GetTypeStatic() noexcept {
        return OruType_t::Undefined;
    }
    static NumericType_t GetNumericTypeStatic() noexcept {
        return NumericType_t::Undefined;
    }

    bool operator==(unsigned int id) const noexcept {
        return id_ == id;
    }
    bool operator==(ItemBase const& other) const noexcept {
        return id_ == other.id_;
    }
    bool operator<(unsigned int id) const noexcept {
        return id_ < id;
    }
    bool operator<(ItemBase const& other) const noexcept {
        return id_ < other.id_;
    }
    bool operator<=(ItemBase const& other) const noexcept {
        return id_ <= other.id_;
    }
    bool operator>(ItemBase const& other) const noexcept {
        return id_ > other.id_;
    }
    bool operator>=(ItemBase const& other) const noexcept {
        return id_ >= other.id_;
    }
    // Always false, the empty string included: an Item has no name to compare.
    bool operator==(std::string const&) const noexcept {
        return false;
    }

protected:
    ItemBase(ItemBase const& other);

private:
    friend ORU_API void intrusive_ptr_add_ref(ItemBase const* item) noexcept;
    friend ORU_API void intrusive_ptr_release(ItemBase const* item) noexcept;

    unsigned int const id_;
    mutable Vintor::Atomic32 count_;
};

static_assert(sizeof(ItemBase::SerialStruct_t) == 18, "serial records are 18 packed bytes");
static_assert(sizeof(ItemBase::ConstSerialStruct_t) == 18, "serial records are 18 packed bytes");

// Writes the Item's compact text form.
ORU_API std::ostream& operator<<(std::ostream& out, ItemBase const& item);

// One aligned line for a setting: name padded to 32, type padded to 18, then
// "{item} {info}" (or the one that is there, without braces). No line end.
ORU_API void FormattedInfoItemDump(std::ostream& out,
                                   boost::intrusive_ptr<InfoBase const> const& info,
                                   boost::intrusive_ptr<ItemBase const> const& item);

}  // namespace Oru
}  // namespace Legacy

#endif
