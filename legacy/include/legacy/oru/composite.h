// CompositeInfo and CompositeItem: a record-shaped setting made of ordered
// children of any family, composites included. Child item i answers to child
// info i by position alone; ids of children are kept but never matched.
// A composite has no value of its own: copying, equality, text and the serial
// form are walks over the children. Copies and operator= share the children;
// DeepCopy (and the Item's AssignArrayValue) makes new ones.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_COMPOSITE_H
#define LEGACY_ORU_COMPOSITE_H

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ORU_API CompositeInfo : public InfoBase {
public:
    using InfoPtr = boost::intrusive_ptr<InfoBase>;
    using ConstInfoPtr = boost::intrusive_ptr<InfoBase const>;

    // No children.
    CompositeInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    // Shares the children.
    CompositeInfo(CompositeInfo const& other);
    // Shares the other's children; the identity stays.
    CompositeInfo& operator=(CompositeInfo const& other);

    ~CompositeInfo() override;
    // Copies every child by its own DeepCopy, child ids kept.
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A CompositeItem in this shape: each child info's CreateItem in order.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Same type and size, and each child's IsEqualBounds holds.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Always -26, whatever other is: composite bounds are never merged.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Shares the other composite's children; *changed is set to true on every
    // success.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    void DumpVal(std::ostream& out) const override;
    // "(child, child, ...)".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    CompositeInfo* DeepCopy() const;
    CompositeInfo* DeepCopy(unsigned int id) const;

    // Appends a child; false for a null pointer. index receives its position.
    bool AddInfo(InfoPtr const& info);
    bool AddInfo(InfoPtr const& info, std::size_t& index);
    // Replaces the child at index; false for a null pointer or a bad index.
    bool SetInfo(std::size_t index, InfoPtr const& info);
    // Replaces all children by the non-null entries, in order.
    void SetInfos(std::vector<InfoPtr> const& infos);
    // Replaces out by the children.
    void GetInfos(std::vector<InfoPtr>& out);
    // Appends the non-null children to out, keeping what it held.
    void GetInfos(std::vector<ConstInfoPtr>& out) const;
    // The child at index, or null.
    InfoPtr GetInfo(std::size_t index);
    ConstInfoPtr GetInfo(std::size_t index) const;
    std::size_t GetSize() const noexcept { return infos_.size(); }
    bool IsPresent(std::size_t index) const noexcept { return index < infos_.size(); }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Composite; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    void Cleanup_();

    std::vector<InfoPtr> infos_;
};

class ORU_API CompositeItem : public ItemBase {
public:
    using ItemPtr = boost::intrusive_ptr<ItemBase>;
    using ConstItemPtr = boost::intrusive_ptr<ItemBase const>;

    // Nesting of composite records that Deserialize follows; deeper records
    // are refused. Real settings nest a few levels.
    static constexpr unsigned int k_maxDepth = 64;

    // No children.
    explicit CompositeItem(unsigned int id = 0);
    // Shares the children.
    CompositeItem(CompositeItem const& other);
    // Shares the other's children; the id stays.
    CompositeItem& operator=(CompositeItem const& other);

    ~CompositeItem() override;
    // Copies every child by its own DeepCopy, child ids kept.
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // True when there are no children; empty children do not count.
    bool IsEmpty() const override;
    // Same type and size, and each child's IsEqualValue holds.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Replaces the children by deep copies of the source's; index is ignored.
    // The own children go first, so assigning a composite to itself empties it.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // 2, plus 10 and the child's own size for each child.
    unsigned int GetSerialDataSize() const override;
    // A two-byte count, then each child as ten header bytes and its payload.
    // A child that cannot serialise leaves ten zero bytes in its place.
    int Serialize(SerialStruct_t* record) const override;
    // Appends the children of the record, each made through the dispatch of
    // ItemBase::Deserialize; -1 when a child record cannot be read. Records
    // are walked by what each child says of its size after reading. Nothing
    // is read outside the record's payload, and on any failure the children
    // stay as they were.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Checks shape and child types against the Info, not the children's values.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Reads each child of the Info's shape in turn, with no Info for the child.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // "(child, child, ...)".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    CompositeItem* DeepCopy() const;

    // Appends a child; false for a null pointer. index receives its position.
    bool AddItem(ItemPtr const& item);
    bool AddItem(ItemPtr const& item, std::size_t& index);
    // Replaces the child at index; false for a null pointer or a bad index.
    bool SetItem(std::size_t index, ItemPtr const& item);
    // Replaces all children by the non-null entries, in order.
    void SetItems(std::vector<ItemPtr> const& items);
    // Replaces out by the children.
    void GetItems(std::vector<ItemPtr>& out);
    // Appends the non-null children to out, keeping what it held.
    void GetItems(std::vector<ConstItemPtr>& out) const;
    // The child at index, or null.
    ItemPtr GetItem(std::size_t index);
    ConstItemPtr GetItem(std::size_t index) const;
    std::size_t GetSize() const noexcept { return items_.size(); }
    bool IsPresent(std::size_t index) const noexcept { return index < items_.size(); }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Composite; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    void Cleanup_();

    std::vector<ItemPtr> items_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
