// Text beyond the single string. StringArrayInfo and StringArrayItem: an
// ordered list of byte strings whose number is bounded by the Info; only the
// number is checked, never the lengths, and a new Info allows only the empty
// list until SetMaxSize. StringSparseInfo and StringSparseItem: one byte string
// that may take only the values of a table, the text counterpart of the sparse
// numbers; the table is enforced by SetVal with the Info alone, and checks
// always pass. An object may be read by several threads while nobody writes
// it; a writer must have it alone.
#ifndef LEGACY_ORU_STRINGARRAY_H
#define LEGACY_ORU_STRINGARRAY_H

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ORU_API StringArrayInfo : public InfoBase {
public:
    // Both size bounds 0 and an empty default.
    StringArrayInfo(unsigned int const& id, std::string const& name,
                    Permission_t const& permission);
    StringArrayInfo(StringArrayInfo const& other);
    // Copies sizes and default; the identity stays.
    StringArrayInfo& operator=(StringArrayInfo const& other);

    ~StringArrayInfo() override;
    // A new Info with that identity and copies of sizes and default; count 0.
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A new StringArrayItem holding a copy of the default; count 0.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Same type and the same two sizes; the default takes no part.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Intersects the size ranges: -36 for another type, -55 if they do not meet.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes default and sizes from another StringArrayInfo.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The head lines, "minSize: ", "maxSize: " and "defaultSize: ".
    void DumpVal(std::ostream& out) const override;
    // "array size: min <= default size <= max".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    StringArrayInfo* DeepCopy() const;
    StringArrayInfo* DeepCopy(unsigned int id) const;

    unsigned long long GetMinSize() const noexcept { return minSize_; }
    unsigned long long GetMaxSize() const noexcept { return maxSize_; }
    std::vector<std::string> const& GetDefault() const noexcept { return default_; }
    // The number of strings of the default.
    unsigned long long GetDefaultSize() const noexcept { return default_.size(); }
    // Raises the maximum to it if needed and lengthens a non-empty default
    // with empty strings. Answers 0.
    int SetMinSize(unsigned long long size);
    // Lowers the minimum to it if needed and cuts a longer default. Answers 0.
    int SetMaxSize(unsigned long long size);
    // -37 unless the number of strings lies within the size bounds.
    int SetDefault(std::vector<std::string> const& value);

    static OruType_t GetTypeStatic() noexcept { return OruType_t::StringArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    unsigned long long minSize_;
    unsigned long long maxSize_;
    std::vector<std::string> default_;
};

class ORU_API StringArrayItem : public ItemBase {
public:
    explicit StringArrayItem(unsigned int id = 0);
    StringArrayItem(StringArrayItem const& other);
    // Copies the value; the id stays.
    StringArrayItem& operator=(StringArrayItem const& other);

    // A new Item with that value; count 0.
    static StringArrayItem* Create(unsigned int id, std::vector<std::string> const& value);

    ~StringArrayItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // True when there are no strings.
    bool IsEmpty() const override;
    // Same type, number of strings and bytes.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // A Bool ("True"/"False") or String lands at index, growing the list; a
    // StringArray replaces the whole value.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Each string's bytes and a terminating 0.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // Appends the record's strings to the present value; -41 for a payload
    // that does not end in a terminator.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Fails when the number of strings lies outside the Info's size bounds.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // A count, then that many words; the value is replaced only when all read.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(a, b, c)".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    StringArrayItem* DeepCopy() const;

    // -37 unless the number of strings lies within the Info's size bounds.
    int SetVal(std::vector<std::string> const& value, StringArrayInfo const& info);
    void SetVal(std::vector<std::string> const& value) { value_ = value; }
    std::vector<std::string> GetVal() const { return value_; }
    std::vector<std::string>& Val() noexcept { return value_; }
    std::vector<std::string> const& Val() const noexcept { return value_; }
    unsigned long long GetSize() const noexcept { return value_.size(); }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::StringArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    std::vector<std::string> value_;
};

class ORU_API StringSparseInfo : public InfoBase {
public:
    // An empty table and an empty default.
    StringSparseInfo(unsigned int const& id, std::string const& name,
                     Permission_t const& permission);
    StringSparseInfo(StringSparseInfo const& other);
    // Copies table and default; the identity stays.
    StringSparseInfo& operator=(StringSparseInfo const& other);

    ~StringSparseInfo() override;
    // A new Info with that identity and copies of table and default; count 0.
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A new StringSparseItem holding the default; count 0.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // False always, even for the Info itself.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Merges nothing: -26 for a StringSparseInfo, -36 otherwise.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes table and default from another StringSparseInfo.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The head lines and the default; the table is not shown.
    void DumpVal(std::ostream& out) const override;
    // "a, b, c; default=d".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    StringSparseInfo* DeepCopy() const;
    StringSparseInfo* DeepCopy(unsigned int id) const;

    // Copies the table (the argument is left as it is). An empty table
    // empties the default; otherwise a default missing from it becomes the
    // first entry. Answers 0.
    int SetTable(std::vector<std::string>& table);
    // Direct access: changes through it are not checked and leave the default.
    std::vector<std::string>& GetTable() noexcept { return table_; }
    std::vector<std::string> const& GetTable() const noexcept { return table_; }
    // The number of table entries.
    unsigned long long GetSize() const noexcept { return table_.size(); }
    // Whether some entry has the same bytes; a linear search.
    bool IsPresent(std::string value) const;
    // Stores a value of the table and answers 0; otherwise -23, default kept.
    int SetDefault(std::string value);
    std::string GetDefault() const { return default_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::StringSparse; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    std::vector<std::string> table_;
    std::string default_;
};

class ORU_API StringSparseItem : public ItemBase {
public:
    explicit StringSparseItem(unsigned int id = 0);
    StringSparseItem(StringSparseItem const& other);
    // Copies the value; the id stays.
    StringSparseItem& operator=(StringSparseItem const& other);

    // A new Item with that value, unchecked; count 0.
    static StringSparseItem* Create(unsigned int id, std::string const& value);

    ~StringSparseItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // Same type and the same bytes.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes the value of another StringSparseItem; the index is ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // 32, whatever the value, although the record's size field is 9.
    unsigned int GetSerialDataSize() const override;
    // A nine-byte block: the string (at most eight bytes of it), a
    // terminating 0 and zeros behind it.
    int Serialize(SerialStruct_t* record) const override;
    // Takes the bytes up to the first 0; the payload must end in 0.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Passes always, also for a value outside the table.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // One blank-separated word, not looked up in any table.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // The string, raw.
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    StringSparseItem* DeepCopy() const;

    // Stores, with no check.
    void SetVal(std::string value) { value_ = std::move(value); }
    // Stores the value if the table holds it, otherwise the Info's default.
    void SetVal(std::string value, StringSparseInfo const& info);
    std::string GetVal() const { return value_; }
    std::string& Val() noexcept { return value_; }
    std::string const& Val() const noexcept { return value_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::StringSparse; }

private:
    bool IsEqualVal_(std::string value) const;

    std::string value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
