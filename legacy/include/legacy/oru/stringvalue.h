// StringInfo and StringItem: one byte string with a maximum length. The Item
// also carries the arguments of validation messages.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_STRINGVALUE_H
#define LEGACY_ORU_STRINGVALUE_H

#include <iosfwd>
#include <memory>
#include <string>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ORU_API StringInfo : public InfoBase {
public:
    // Empty default, maximum length 256.
    StringInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    StringInfo(StringInfo const& other);
    StringInfo& operator=(StringInfo const& other);

    ~StringInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Narrows the maximum length, yet answers -26 (or -36 for another type).
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // The default in double quotes, then "; max length=" and the maximum.
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    StringInfo* DeepCopy() const;
    StringInfo* DeepCopy(unsigned int id) const;

    std::string const& GetDefault() const noexcept { return default_; }
    unsigned long long GetMaxLength() const noexcept { return maxLength_; }
    // Cuts the default to the new length, also to 0. Answers 0.
    int SetMaxLength(unsigned long long length);
    // Cuts the text to the maximum length unless that is 0 (no limit here). Answers 0.
    int SetDefault(std::string const& text);

    static OruType_t GetTypeStatic() noexcept { return OruType_t::String; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    std::string default_;
    unsigned long long maxLength_;
};

class ORU_API StringItem : public ItemBase {
public:
    explicit StringItem(unsigned int id = 0);
    StringItem(StringItem const& other);
    StringItem& operator=(StringItem const& other);

    // A new Item with that value; count 0.
    static StringItem* Create(unsigned int id, std::string const& value);

    ~StringItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    bool IsEmpty() const override;
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // From a Bool ("True"/"False"), String or StringArray (string at index) Item.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // The bytes and a terminating 0.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // Takes the bytes up to the first 0; the payload must end in 0.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Fails when the value is longer than the Info's maximum length.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Takes one blank-separated word; always true.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    StringItem* DeepCopy() const;

    std::string GetVal() const { return value_; }
    std::string& Val() noexcept { return value_; }
    std::string const& Val() const noexcept { return value_; }
    void SetVal(std::string const& value) { value_ = value; }
    // Copies the value cut to the Info's maximum length; a maximum of 0 empties it.
    void SetVal(std::string const& value, StringInfo const& info);

    static OruType_t GetTypeStatic() noexcept { return OruType_t::String; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    std::string value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
