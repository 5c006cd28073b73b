// ExtendedInfo and ExtendedItem: a free pair of strings that the model carries
// without interpreting it. The family lives in memory only: it has no text
// form, no text input and no serial form, and no record of its type is read
// by ItemBase::Deserialize. Any pair is a valid value; the Info holds a
// default pair and no bounds.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_EXTENDED_H
#define LEGACY_ORU_EXTENDED_H

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ORU_API ExtendedInfo : public InfoBase {
public:
    using Pair = std::pair<std::string, std::string>;

    // An empty default pair.
    ExtendedInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    ExtendedInfo(ExtendedInfo const& other);
    // Copies the default; the identity stays.
    ExtendedInfo& operator=(ExtendedInfo const& other);

    ~ExtendedInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // An ExtendedItem holding a copy of the default.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Always false, even against itself: the family has no bounds to compare.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Always -26: there are no bounds to merge.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes over another ExtendedInfo's default; *changed says whether it
    // differed.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The identity lines only.
    void DumpVal(std::ostream& out) const override;
    // Prints nothing: the family has no text form.
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    ExtendedInfo* DeepCopy() const;
    ExtendedInfo* DeepCopy(unsigned int id) const;

    // Stores the pair; answers 0.
    int SetDefault(Pair const& value);
    Pair const& GetDefault() const noexcept { return default_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Extended; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    Pair default_;
};

class ORU_API ExtendedItem : public ItemBase {
public:
    using Pair = std::pair<std::string, std::string>;

    // An empty pair.
    explicit ExtendedItem(unsigned int id = 0);
    ExtendedItem(ExtendedItem const& other);
    // Copies the pair; the id stays.
    ExtendedItem& operator=(ExtendedItem const& other);

    // A new Item with that pair; count 0.
    static ExtendedItem* Create(unsigned int id, Pair const& value);

    ~ExtendedItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // True when the first string is empty; the second does not count.
    bool IsEmpty() const override;
    // Same type and both strings equal byte for byte.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes another ExtendedItem's pair; index is ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // 0: the family has no serial form.
    unsigned int GetSerialDataSize() const override;
    // Always -1; the record is left untouched.
    int Serialize(SerialStruct_t* record) const override;
    // Always -1; the item is left untouched.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Passes for an ExtendedInfo or a class derived from it; any pair is valid.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Always false; reads and writes nothing.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    // The "id: " and "type: " lines only; the value does not appear.
    void DumpVal(std::ostream& out) const override;
    // Prints nothing: the family has no text form.
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    ExtendedItem* DeepCopy() const;

    void SetVal(Pair const& value) { value_ = value; }
    // Stores the pair; the Info is not looked at, as no pair is refused.
    void SetVal(Pair const& value, ExtendedInfo const& info);
    Pair GetVal() const { return value_; }
    Pair& Val() noexcept { return value_; }
    Pair const& Val() const noexcept { return value_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Extended; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    Pair value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
