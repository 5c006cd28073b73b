// BoolInfo and BoolItem: one flag, which the Info can pin to its default.
// BoolArrayInfo and BoolArrayItem: an array of flags bounded in length, sent
// bit-packed. Like every family, Items hold no reference to their Info: a
// fixed flag or a size bound acts only where a caller hands the Info over.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_BOOL_H
#define LEGACY_ORU_BOOL_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ORU_API BoolInfo : public InfoBase {
public:
    // Not fixed, default false.
    BoolInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    BoolInfo(BoolInfo const& other);
    // Copies fixed flag and default; the identity stays.
    BoolInfo& operator=(BoolInfo const& other);

    ~BoolInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A BoolItem holding the default.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Same type and the same fixed flag; the default takes no part.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Becomes fixed if other is; never clears the flag. -36 for another type.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Copies fixed flag and default from another BoolInfo.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "default=True" or "default=False", then " (fixed)" if fixed.
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    BoolInfo* DeepCopy() const;
    BoolInfo* DeepCopy(unsigned int id) const;

    bool GetFixed() const noexcept { return fixed_; }
    // When fixed, the setting may only hold its default.
    void SetFixed(bool fixed) noexcept { fixed_ = fixed; }
    bool GetDefault() const noexcept { return default_; }
    void SetDefault(bool value) noexcept { default_ = value; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Bool; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    bool fixed_;
    bool default_;
};

class ORU_API BoolItem : public ItemBase {
public:
    explicit BoolItem(unsigned int id = 0);
    BoolItem(BoolItem const& other);
    // Copies the value; the id stays.
    BoolItem& operator=(BoolItem const& other);

    // A new Item with that value; count 0.
    static BoolItem* Create(unsigned int id, bool const& value);

    ~BoolItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // From a Bool, Numeric (non-zero), NumericArray or BoolArray (element at
    // index) Item.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // One byte.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // Any non-zero byte is true.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Fails when the Info is fixed and the value is not its default.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads a bool in the stream's present format (0 or 1 by default).
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "True" or "False".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    BoolItem* DeepCopy() const;

    bool GetVal() const noexcept { return value_; }
    bool& Val() noexcept { return value_; }
    bool const& Val() const noexcept { return value_; }
    // Stores the value unchecked: a fixed Info does not hold it.
    void SetVal(bool value) noexcept { value_ = value; }
    // Pulls the value to the default of a fixed Info.
    void BoundVal(BoolInfo const& info) noexcept;
    // False only when the Info is fixed and the value is not its default.
    bool WithinBounds(BoolInfo const& info) const noexcept;

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Bool; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    bool value_;
};

class ORU_API BoolArrayInfo : public InfoBase {
public:
    // Size bounds 0 until set, empty default.
    BoolArrayInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    BoolArrayInfo(BoolArrayInfo const& other);
    // Copies sizes and default; the identity stays.
    BoolArrayInfo& operator=(BoolArrayInfo const& other);

    ~BoolArrayInfo() override;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A BoolArrayItem holding a copy of the default.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Same type and the same two sizes; the default takes no part.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Intersects the size ranges: -36 for another type, -55 if they do not meet.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Copies sizes and default from another BoolArrayInfo.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "array size: min <= default length <= max".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    BoolArrayInfo* DeepCopy() const;
    BoolArrayInfo* DeepCopy(unsigned int id) const;

    unsigned long long GetMinSize() const noexcept { return minSize_; }
    unsigned long long GetMaxSize() const noexcept { return maxSize_; }
    std::vector<bool> const& GetDefault() const noexcept { return default_; }
    unsigned long long GetDefaultSize() const noexcept { return default_.size(); }
    // Raises the maximum to it if needed and lengthens a non-empty default
    // with false elements. Answers 0.
    int SetMinSize(unsigned long long size);
    // Lowers the minimum to it if needed and cuts a longer default. Answers 0.
    int SetMaxSize(unsigned long long size);
    // -37 unless the length lies within the size bounds.
    int SetDefault(std::vector<bool> const& value);

    static OruType_t GetTypeStatic() noexcept { return OruType_t::BoolArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    unsigned long long minSize_;
    unsigned long long maxSize_;
    std::vector<bool> default_;
};

class ORU_API BoolArrayItem : public ItemBase {
public:
    explicit BoolArrayItem(unsigned int id = 0);
    BoolArrayItem(BoolArrayItem const& other);
    // Copies the value; the id stays.
    BoolArrayItem& operator=(BoolArrayItem const& other);

    // A new Item with that value; count 0.
    static BoolArrayItem* Create(unsigned int id, std::vector<bool> const& value);

    ~BoolArrayItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // True when there are no elements.
    bool IsEmpty() const override;
    // Same type, length and bits.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // A Bool lands at index (growing the array); a BoolArray replaces the
    // whole value. Numbers are not taken.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // 1 for no elements, else one byte per eight elements and a leading byte.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // Appends the record's elements to the present value.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Fails when the length lies outside the Info's size bounds.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // A count, then that many bools; the value is replaced only when all read.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(True, False, ...)".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    BoolArrayItem* DeepCopy() const;

    // -37 unless the length lies within the Info's size bounds.
    int SetVal(std::vector<bool> const& value, BoolArrayInfo const& info);
    void SetVal(std::vector<bool> const& value) { value_ = value; }
    std::vector<bool> GetVal() const { return value_; }
    std::vector<bool>& Val() noexcept { return value_; }
    std::vector<bool> const& Val() const noexcept { return value_; }
    unsigned long long GetSize() const noexcept { return value_.size(); }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::BoolArray; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    std::vector<bool> value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
