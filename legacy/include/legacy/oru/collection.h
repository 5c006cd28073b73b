// CollectionInfo and CollectionItem: an in-memory bag of ordered children of
// any family, filled by hand. Unlike a composite, the Info's children do not
// shape its Item, nothing is validated, and there is no serial form and no
// text input. Copies, operator= and the Item's AssignArrayValue share the
// children; DeepCopy makes new ones.
//
// Threads: as for every Item and Info (itembase.h): reads from several threads
// at once while nobody writes.
#ifndef LEGACY_ORU_COLLECTION_H
#define LEGACY_ORU_COLLECTION_H

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

class ORU_API CollectionInfo : public InfoBase {
public:
    using InfoPtr = boost::intrusive_ptr<InfoBase>;
    using ConstInfoPtr = boost::intrusive_ptr<InfoBase const>;

    // No children.
    CollectionInfo(unsigned int const& id, std::string const& name, Permission_t const& permission);
    // Shares the children.
    CollectionInfo(CollectionInfo const& other);
    // Shares the other's children; the identity stays.
    CollectionInfo& operator=(CollectionInfo const& other);

    ~CollectionInfo() override;
    // Copies every child by its own DeepCopy, child ids kept.
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A CollectionItem with this Info's id and no children: the child infos
    // do not shape it.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // Same type and size, and each child's IsEqualBounds holds.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // Always -26, whatever other is: collection bounds are never merged.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Shares the other collection's children; *changed is set to true on
    // every success.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The identity lines.
    void DumpVal(std::ostream& out) const override;
    // "(child, child, ...)".
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    CollectionInfo* DeepCopy() const;
    CollectionInfo* DeepCopy(unsigned int id) const;

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

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Collection; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    void Cleanup_();

    std::vector<InfoPtr> infos_;
};

class ORU_API CollectionItem : public ItemBase {
public:
    using ItemPtr = boost::intrusive_ptr<ItemBase>;
    using ConstItemPtr = boost::intrusive_ptr<ItemBase const>;

    // No children.
    explicit CollectionItem(unsigned int id = 0);
    // Shares the children.
    CollectionItem(CollectionItem const& other);
    // Shares the other's children; the id stays.
    CollectionItem& operator=(CollectionItem const& other);

    ~CollectionItem() override;
    // Copies every child by its own DeepCopy, child ids kept.
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // True when there are no children; empty children do not count.
    bool IsEmpty() const override;
    // Same type and size, and each child's IsEqualValue holds.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Shares the source collection's children (no copies); assigning a
    // collection to itself leaves it as it is. index is ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // Always 0, whatever the children: the family has no serial form.
    unsigned int GetSerialDataSize() const override;
    // Always -26; the record is left untouched, a null one included.
    int Serialize(SerialStruct_t* record) const override;
    // Always -26; the children are left untouched.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Always passes, whatever the Info, null included.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // No text input: writes "Impl. me" and answers false.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    // The identity lines, then "value: (<count> items)" without a line end.
    void DumpVal(std::ostream& out) const override;
    // "(child, child, ...)".
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    CollectionItem* DeepCopy() const;

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

    static OruType_t GetTypeStatic() noexcept { return OruType_t::Collection; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    void Cleanup_();

    std::vector<ItemPtr> items_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
