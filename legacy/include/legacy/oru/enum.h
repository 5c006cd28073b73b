// EnumInfo and EnumItem: one int out of a table of named values. The Info
// owns the table, in insertion order, and a default; an entry can be disabled
// without being removed. The Item holds the number alone: names never travel
// and the Item does not follow later changes of the table.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_ENUM_H
#define LEGACY_ORU_ENUM_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

// One entry of an enumeration table.
template <class T>
struct ElemType {
    std::string name;
    T value{};
    // False means that the entry may be chosen.
    bool disabled = false;
};

class ORU_API EnumInfo : public InfoBase {
public:
    using Table = std::vector<ElemType<int>>;

    // An empty table, default 0. The localized flag is kept for callers and
    // acted on by nothing here.
    EnumInfo(unsigned int const& id, std::string const& name, Permission_t const& permission,
             bool localized);
    EnumInfo(EnumInfo const& other);
    // Copies table, default and localized flag; the identity stays.
    EnumInfo& operator=(EnumInfo const& other);

    ~EnumInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // An EnumItem holding the default.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Always false: tables are not compared as bounds.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Merges nothing: -26 for another EnumInfo, -36 for anything else.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Copies table and default from another EnumInfo; the localized flag stays.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The identity lines only: neither table nor default.
    void DumpVal(std::ostream& out) const override;
    // "a=1, b*=2; default=1", a star marking a disabled entry.
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    EnumInfo* DeepCopy() const;
    EnumInfo* DeepCopy(unsigned int id) const;

    // Direct access; nothing checks what is done through it.
    Table& GetTable() noexcept { return table_; }
    Table const& GetTable() const noexcept { return table_; }
    unsigned long long GetSize() const noexcept { return table_.size(); }
    // Takes the table as it is, duplicates included; a default that names no
    // entry becomes the first entry's value. Answers 0.
    int SetTable(Table const& table);
    int GetDefault() const noexcept { return default_; }
    // -23 when the table is not empty and no entry has the value.
    int SetDefault(int value);
    // Whether some entry has the value, disabled or not.
    bool IsPresent(int value) const;
    // Whether some entry has the value and is not disabled.
    bool IsEnabled(int value) const;
    // The first entry with the value; -25 if there is none.
    int GetElem(int value, ElemType<int>& element) const;
    int GetElemName(int value, std::string& name) const;
    // The value of the first entry with that exact name; -25 if there is none.
    int GetElemVal(std::string const& name, int& value) const;
    // Appends the entry; -47 if its value or its name is taken.
    int AddElem(ElemType<int> const& element);
    // Removes the first entry with the value; the default is not looked at.
    int RemoveElem(int value);
    // Clear or set the disabled flag of the first entry with the value.
    int EnableElem(int value);
    int DisableElem(int value);
    bool IsLocalized() const noexcept { return localized_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Enum; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    // The first entry by value or by name; it is set to the end when none.
    bool Find(int value, Table::iterator& it);
    bool Find(int value, Table::const_iterator& it) const;
    bool Find(std::string const& name, Table::iterator& it);
    bool Find(std::string const& name, Table::const_iterator& it) const;

    Table table_;
    int default_;
    bool localized_;
};

class ORU_API EnumItem : public ItemBase {
public:
    explicit EnumItem(unsigned int id = 0);
    EnumItem(EnumItem const& other);
    // Copies the value; the id stays.
    EnumItem& operator=(EnumItem const& other);

    // A new Item with that value, unchecked; count 0.
    static EnumItem* Create(unsigned int id, int const& value);

    ~EnumItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // From a Bool, Enum, Numeric or NumericArray (element at index) Item, with
    // no look at any table.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Four bytes.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Fails when no entry has the value; a disabled entry passes.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads a number; entry names are not understood.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // The number, never the name.
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    EnumItem* DeepCopy() const;

    int GetVal() const noexcept { return value_; }
    int& Val() noexcept { return value_; }
    int const& Val() const noexcept { return value_; }
    // Stores the value unchecked.
    void SetVal(int value) noexcept { value_ = value; }
    // Stores the value if an enabled entry has it, else the Info's default.
    void SetVal(int value, EnumInfo const& info);

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Enum; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    int value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
