// The members of the serial-record structs, beside the codec that fills them.
#include <legacy/oru/itembase.h>

#include "serialcodec.h"

namespace Legacy {
namespace Oru {

ItemBase::SerialStruct_t::SerialStruct_t() noexcept
    : id(0), dataSize(0), type(0), numericType(0), data(nullptr) {}

ItemBase::SerialStruct_t::~SerialStruct_t() {
    delete[] data;
}

ItemBase::SerialStruct_t& ItemBase::SerialStruct_t::operator=(
    SerialStruct_t const& other) noexcept {
    id = other.id;
    dataSize = other.dataSize;
    type = other.type;
    numericType = other.numericType;
    data = other.data;
    return *this;
}

void ItemBase::SerialStruct_t::Clear() noexcept {
    id = 0;
    dataSize = 0;
    type = 0;
    numericType = 0;
    data = nullptr;
}

std::uint32_t ItemBase::SerialStruct_t::GetId() const noexcept {
    return Serial::NetToHost32(id);
}

std::uint32_t ItemBase::SerialStruct_t::GetDataSize() const noexcept {
    return Serial::NetToHost32(dataSize);
}

ItemBase::ConstSerialStruct_t::ConstSerialStruct_t() noexcept {
    Clear();
}

ItemBase::ConstSerialStruct_t::ConstSerialStruct_t(SerialStruct_t const& record) noexcept
    : id(record.id),
      dataSize(record.dataSize),
      type(record.type),
      numericType(record.numericType),
      data(record.data) {}

void ItemBase::ConstSerialStruct_t::Clear() noexcept {
    id = 0;
    dataSize = 0;
    type = 0;
    numericType = 0;
    data = nullptr;
}

std::uint32_t ItemBase::ConstSerialStruct_t::GetId() const noexcept {
    return Serial::NetToHost32(id);
}

std::uint32_t ItemBase::ConstSerialStruct_t::GetDataSize() const noexcept {
    return Serial::NetToHost32(dataSize);
}

void ItemBase::ConstSerialStruct_t::SetHeader(std::uint32_t hostId, std::uint32_t hostDataSize,
                                              std::uint8_t typeByte,
                                              std::uint8_t numericTypeByte) noexcept {
    id = Serial::HostToNet32(hostId);
    dataSize = Serial::HostToNet32(hostDataSize);
    type = typeByte;
    numericType = numericTypeByte;
}

}  // namespace Oru
}  // namespace Legacy
