// The address families: settings that hold network addresses in text form, so
// that a setting can name a host before it is resolved.
//
//   AddrInfo, AddrItem                          134  Net::AddrStr
//   EndpointInfo, EndpointItem                  136  Net::Endpoint<Net::AddrStr>
//   AppEndpointInfo, AppEndpointItem            137  AppEndpoint<Net::Endpoint<Net::AddrStr>>
//   AppEndpointArrayInfo, AppEndpointArrayItem  140  a vector of those
//
// None has bounds and none validates: the value's shape is the contract. The
// three scalar families share their code through AddrValueInfo and
// AddrValueItem and differ in their serial payload and text input.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_ADDR_H
#define LEGACY_ORU_ADDR_H

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <lanpath/addr.h>
#include <lanpath/endpoint.h>

#include <legacy/oru/appendpoint.h>
#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

// Declared with their visibility, which the instantiations of the bases below
// (their type info included) take from their arguments.
class ORU_API AddrInfo;
class ORU_API AddrItem;
class ORU_API EndpointInfo;
class ORU_API EndpointItem;
class ORU_API AppEndpointInfo;
class ORU_API AppEndpointItem;

// The Info of a scalar address family: a default of the value type V.
// Derived is the family's Info class, ItemT its Item class.
template <class Derived, class ItemT, class V>
class ORU_API AddrValueInfo : public InfoBase {
public:
    using Value_t = V;

    ~AddrValueInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A new Item with this id and a copy of the default.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // True for the same family: the default is no bound.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Nothing to merge: 0 for the same family, -36 otherwise.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes the default of an Info of the same family.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The common lines, then "default: " and the default's text.
    void DumpVal(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    Derived* DeepCopy() const;
    Derived* DeepCopy(unsigned int id) const;

    // Stores the default; always 0.
    int SetDefault(V const& value);
    V const& GetDefault() const noexcept { return default_; }

protected:
    AddrValueInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    AddrValueInfo(AddrValueInfo const& other);
    AddrValueInfo& operator=(AddrValueInfo const& other);

private:
    V default_;
};

// The Item of a scalar address family: one value of type V. Derived is the
// family's Item class, InfoT its Info class.
template <class Derived, class InfoT, class V>
class ORU_API AddrValueItem : public ItemBase {
public:
    using Value_t = V;

    // A new Item with that value; count 0.
    static Derived* Create(unsigned int id, V const& value);

    ~AddrValueItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // Same family and equal values (the strict equality of AppEndpoint).
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes the value of an Item of the same family; index is ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Passes always, whatever the Info.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // The common lines, then "value: " and the value's text.
    void DumpVal(std::ostream& out) const override;
    // The value's ToString.
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::DeepCopy;
    using ItemBase::Deserialize;
    Derived* DeepCopy() const;

    V GetVal() const { return value_; }
    V& Val() noexcept { return value_; }
    V const& Val() const noexcept { return value_; }
    void SetVal(V const& value) { value_ = value; }
    // Stores the value; the Info has no bounds to apply.
    void SetVal(V const& value, InfoT const& info);

protected:
    explicit AddrValueItem(unsigned int id);
    AddrValueItem(AddrValueItem const& other);
    AddrValueItem& operator=(AddrValueItem const& other);

private:
    V value_;
};

extern template class AddrValueInfo<AddrInfo, AddrItem, Net::AddrStr>;
extern template class AddrValueInfo<EndpointInfo, EndpointItem, Net::Endpoint<Net::AddrStr>>;
extern template class AddrValueInfo<AppEndpointInfo, AppEndpointItem,
                                    AppEndpoint<Net::Endpoint<Net::AddrStr>>>;
extern template class AddrValueItem<AddrItem, AddrInfo, Net::AddrStr>;
extern template class AddrValueItem<EndpointItem, EndpointInfo, Net::Endpoint<Net::AddrStr>>;
extern template class AddrValueItem<AppEndpointItem, AppEndpointInfo,
                                    AppEndpoint<Net::Endpoint<Net::AddrStr>>>;

// ---- 134: an address ----

class ORU_API AddrInfo : public AddrValueInfo<AddrInfo, AddrItem, Net::AddrStr> {
public:
    // The empty address as default.
    AddrInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    AddrInfo(AddrInfo const& other);
    AddrInfo& operator=(AddrInfo const& other);
    ~AddrInfo() override;
    // "AddrInfo".
    std::ostream& operator<<(std::ostream& out) const override;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Addr; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }
};

class ORU_API AddrItem : public AddrValueItem<AddrItem, AddrInfo, Net::AddrStr> {
public:
    explicit AddrItem(unsigned int id = 0);
    AddrItem(AddrItem const& other);
    AddrItem& operator=(AddrItem const& other);
    ~AddrItem() override;
    // The address text and a terminating 0.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // The text up to the first 0; the payload must end in 0.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Takes one blank-separated word as the address; always true.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Addr; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }
};

// ---- 136: an address with a port ----

class ORU_API EndpointInfo
    : public AddrValueInfo<EndpointInfo, EndpointItem, Net::Endpoint<Net::AddrStr>> {
public:
    // The default endpoint as default.
    EndpointInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    EndpointInfo(EndpointInfo const& other);
    EndpointInfo& operator=(EndpointInfo const& other);
    ~EndpointInfo() override;
    // "EndpointInfo".
    std::ostream& operator<<(std::ostream& out) const override;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Endpoint; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }
};

class ORU_API EndpointItem
    : public AddrValueItem<EndpointItem, EndpointInfo, Net::Endpoint<Net::AddrStr>> {
public:
    explicit EndpointItem(unsigned int id = 0);
    EndpointItem(EndpointItem const& other);
    EndpointItem& operator=(EndpointItem const& other);
    ~EndpointItem() override;
    // The endpoint text and a terminating 0.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // The endpoint text up to the first 0; the payload must end in 0.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Takes one blank-separated word as endpoint text; always true.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Endpoint; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }
};

// ---- 137: an endpoint with its application protocol ----

class ORU_API AppEndpointInfo : public AddrValueInfo<AppEndpointInfo, AppEndpointItem,
                                                     AppEndpoint<Net::Endpoint<Net::AddrStr>>> {
public:
    // The default application endpoint (protocol type 0) as default.
    AppEndpointInfo(unsigned int const& id, std::string const& name,
                    Permission_t const& permission);
    AppEndpointInfo(AppEndpointInfo const& other);
    AppEndpointInfo& operator=(AppEndpointInfo const& other);
    ~AppEndpointInfo() override;
    // "AppEndpointInfo".
    std::ostream& operator<<(std::ostream& out) const override;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::AppEndpoint; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }
};

class ORU_API AppEndpointItem : public AddrValueItem<AppEndpointItem, AppEndpointInfo,
                                                     AppEndpoint<Net::Endpoint<Net::AddrStr>>> {
public:
    explicit AppEndpointItem(unsigned int id = 0);
    AppEndpointItem(AppEndpointItem const& other);
    AppEndpointItem& operator=(AppEndpointItem const& other);
    ~AppEndpointItem() override;
    // Six bytes of protocol and prefix, the endpoint text and a terminating 0.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Takes one word as endpoint text, with the protocol of the Info's default
    // and prefix 0; false without an AppEndpointInfo. A URI is not read here.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::AppEndpoint; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }
};

// ---- 140: a list of application endpoints ----

class ORU_API AppEndpointArrayInfo : public InfoBase {
public:
    using Value_t = std::vector<AppEndpoint<Net::Endpoint<Net::AddrStr>>>;

    // Sizes 0 to 0x7FFFFFFF, an empty default.
    AppEndpointArrayInfo(unsigned int const& id, std::string const& name,
                         Permission_t const& permission);
    AppEndpointArrayInfo(AppEndpointArrayInfo const& other);
    AppEndpointArrayInfo& operator=(AppEndpointArrayInfo const& other);

    ~AppEndpointArrayInfo() override;
    // Copies the default only: the copy has the initial sizes.
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // True for the same family; the sizes are not compared.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Nothing to merge: 0 for the same family, -36 otherwise.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes over the first that differs of default, min size, max size.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The common lines, then "default: [empty array]" whatever the default.
    void DumpVal(std::ostream& out) const override;
    // "AppEndpointArrayInfo".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    AppEndpointArrayInfo* DeepCopy() const;
    AppEndpointArrayInfo* DeepCopy(unsigned int id) const;

    // Stores the default; always 0.
    int SetDefault(Value_t const& value);
    Value_t const& GetDefault() const noexcept { return default_; }
    // The sizes are stored and reported, never enforced; always 0.
    int SetMinSize(std::size_t size);
    int SetMaxSize(std::size_t size);
    std::size_t GetMinSize() const noexcept { return minSize_; }
    std::size_t GetMaxSize() const noexcept { return maxSize_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::AppEndpointArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    std::size_t minSize_;
    std::size_t maxSize_;
    Value_t default_;
};

class ORU_API AppEndpointArrayItem : public ItemBase {
public:
    using Value_t = std::vector<AppEndpoint<Net::Endpoint<Net::AddrStr>>>;

    explicit AppEndpointArrayItem(unsigned int id = 0);
    AppEndpointArrayItem(AppEndpointArrayItem const& other);
    AppEndpointArrayItem& operator=(AppEndpointArrayItem const& other);

    ~AppEndpointArrayItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // No elements.
    bool IsEmpty() const override;
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // From an AppEndpointItem into the element at index (growing the array),
    // or from another AppEndpointArrayItem as a whole.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // The elements laid out as AppEndpointItem payloads, back to back.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // Empties the array first; elements read before a bad one stay.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Passes always: the sizes of the Info are not enforced.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // No text input: writes "Impl. me" and answers false.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(", the elements' ToString separated by ", ", ")".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::DeepCopy;
    using ItemBase::Deserialize;
    AppEndpointArrayItem* DeepCopy() const;

    Value_t GetVal() const { return value_; }
    Value_t& Val() noexcept { return value_; }
    Value_t const& Val() const noexcept { return value_; }
    void SetVal(Value_t const& value) { value_ = value; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::AppEndpointArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    Value_t value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
