// NumericSparseInfo<T> and NumericSparseItem<T>: one number of the element
// type of the traits class T that may take only the values of a table. The
// table is enforced in one place only, SetVal with the Info, which replaces a
// value outside it by the default; checks never pass, and callers ask
// IsPresent instead. Instantiated for the ten traits classes. An object may be
// read by several threads while nobody writes it; a writer must have it alone.
#ifndef LEGACY_ORU_NUMERICSPARSE_H
#define LEGACY_ORU_NUMERICSPARSE_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/traits.h>

namespace Legacy {
namespace Oru {

template <class T>
class ORU_API NumericSparseInfo : public InfoBase {
public:
    using Element = typename T::Element;

    // An empty table and the default zero.
    NumericSparseInfo(unsigned int const& id, std::string const& name,
                      Permission_t const& permission);
    NumericSparseInfo(NumericSparseInfo const& other);
    // Copies table and default; the identity stays.
    NumericSparseInfo& operator=(NumericSparseInfo const& other);

    ~NumericSparseInfo() override;
    // A new Info with copies of table and default; count 0.
    NumericSparseInfo* DeepCopy(unsigned int id, std::string const& name,
                                Permission_t const& permission) const override;
    // A new Item holding the default; count 0.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // False always, even for the Info itself.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Merges nothing: -26 for a sparse Info of this type, -36 otherwise.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes table and default from a sparse Info of any element type,
    // converting the numbers to T.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The head lines and the default; the table is not shown.
    void DumpVal(std::ostream& out) const override;
    // "a, b, c; default=d".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    NumericSparseInfo* DeepCopy() const;
    NumericSparseInfo* DeepCopy(unsigned int id) const;

    // Copies the table (the argument is left as it is) and keeps the default
    // if it is an entry, else takes the first entry, or zero for an empty
    // table. Answers 0.
    int SetTable(std::vector<Element>& table);
    // Direct access; changes through it are unchecked and leave the default.
    std::vector<Element>& GetTable() noexcept { return table_; }
    std::vector<Element> const& GetTable() const noexcept { return table_; }
    unsigned long long GetSize() const noexcept { return table_.size(); }
    // Whether some entry equals value by T's rule; a linear search.
    bool IsPresent(Element value) const;
    // Stores value if it is an entry, else -23 with the default kept.
    int SetDefault(Element value);
    Element GetDefault() const noexcept { return default_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::NumericSparse; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    std::vector<Element> table_;
    Element default_;
};

template <class T>
class ORU_API NumericSparseItem : public ItemBase {
public:
    using Element = typename T::Element;

    // The value zero.
    explicit NumericSparseItem(unsigned int id = 0);
    NumericSparseItem(NumericSparseItem const& other);
    // Copies the value; the id stays.
    NumericSparseItem& operator=(NumericSparseItem const& other);

    // A new Item with that value, unchecked; count 0.
    static NumericSparseItem* Create(unsigned int id, Element const& value);

    ~NumericSparseItem() override;
    // A new Item with the given id and this value; count 0.
    NumericSparseItem* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    NumericType_t GetNumericType() const override;
    // Same type and equal values by T's rule.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes the value of another sparse Item; index is not used.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // The element width.
    unsigned int GetSerialDataSize() const override;
    int Serialize(SerialStruct_t* record) const override;
    // -41 unless the payload is exactly one element.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Fails always: a sparse value is checked with IsPresent on the Info.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads one number; the table is not consulted.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    NumericSparseItem* DeepCopy() const;

    // Stores the value unchecked.
    void SetVal(Element value) noexcept { value_ = value; }
    // Stores the value if it is an entry of the Info's table, else the
    // Info's default.
    void SetVal(Element value, NumericSparseInfo<T> const& info);
    Element GetVal() const noexcept { return value_; }
    Element& Val() noexcept { return value_; }
    Element const& Val() const noexcept { return value_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::NumericSparse; }
    static NumericType_t GetNumericTypeStatic() noexcept { return T::k_numericType; }

private:
    Element value_;
};

#define LEGACY_ORU_DECLARE_NUMERIC_SPARSE(T)    \
    extern template class NumericSparseInfo<T>; \
    extern template class NumericSparseItem<T>;
LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(LEGACY_ORU_DECLARE_NUMERIC_SPARSE)
#undef LEGACY_ORU_DECLARE_NUMERIC_SPARSE

}  // namespace Oru
}  // namespace Legacy

#endif
