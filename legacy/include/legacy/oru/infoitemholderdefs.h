// The holders through which Infos and Items are handed around and stored in a
// directory. An InfoHolder or ItemHolder wraps one Info or Item and is, once
// given to a directory, a stable snapshot: to change a setting a caller makes
// a new holder. An InfoItemHolder is the slot of one setting and always shows
// its present state.
//
// Holders carry their own atomic reference count, so they may be shared
// between threads; the two pointers of an InfoItemHolder are plain fields,
// and a writer needs the slot alone.
#ifndef LEGACY_ORU_INFOITEMHOLDERDEFS_H
#define LEGACY_ORU_INFOITEMHOLDERDEFS_H

#include <iosfwd>

#include <vintor/intrusivebase.h>
#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ItemHolder;

// Holds one Info. Derive from it to carry more beside the Info; a derived
// class overrides Clone so that containers copy it whole.
class ORU_API InfoHolder : public Vintor::IntrusiveBaseMT {
public:
    // Holds `info`; a null Info throws Vintor::LogicError (-32), since every
    // user of a holder reads its Info unchecked. The count starts at 0.
    explicit InfoHolder(boost::intrusive_ptr<InfoBase> const& info);
    // Shares the Info of `other`; the count starts at 0.
    InfoHolder(InfoHolder const& other) = default;
    InfoHolder& operator=(InfoHolder const&) = delete;

    ~InfoHolder() override;
    // The Info's labelled fields, one per line.
    virtual void DumpVal(std::ostream& out) const;
    // The Info's compact text form.
    virtual std::ostream& operator<<(std::ostream& out) const;
    // A new ItemHolder with a new Item of the Info's family and default; count 0.
    virtual ItemHolder* CreateItemHolder() const;
    // A new holder of a deep copy of the Info (same id and name); count 0.
    virtual InfoHolder* Clone() const;

    // The held Info, never null.
    boost::intrusive_ptr<InfoBase> const& GetInfo() const noexcept { return info_; }

private:
    boost::intrusive_ptr<InfoBase> info_;
};

// Holds one Item. Derive from it to carry more beside the Item.
class ORU_API ItemHolder : public Vintor::IntrusiveBaseMT {
public:
    // Holds `item`; a null Item throws Vintor::LogicError (-32). Count 0.
    explicit ItemHolder(boost::intrusive_ptr<ItemBase> const& item);
    // Shares the Item of `other`; the count starts at 0.
    ItemHolder(ItemHolder const& other) = default;
    ItemHolder& operator=(ItemHolder const&) = delete;

    ~ItemHolder() override;
    // The Item's labelled fields, one per line.
    virtual void DumpVal(std::ostream& out) const;
    // A new holder of a deep copy of the Item (same id and value); count 0.
    virtual ItemHolder* Clone() const;

    // The held Item, never null.
    boost::intrusive_ptr<ItemBase> const& GetItem() const noexcept { return item_; }

private:
    boost::intrusive_ptr<ItemBase> item_;
};

// The slot of one setting: its info holder, never null, and its item holder,
// null until the directory sets the first Item. Only the directory writes it.
class ORU_API InfoItemHolder : public Vintor::IntrusiveBaseMT {
public:
    // A slot with `info` and no item; a null `info` throws Vintor::LogicError
    // with code -32, "Null InfoHolder Pointer".
    explicit InfoItemHolder(boost::intrusive_ptr<InfoHolder const> const& info);
    InfoItemHolder(InfoItemHolder const&) = delete;
    InfoItemHolder& operator=(InfoItemHolder const&) = delete;
    // Releases the item holder first, then the info holder (reverse field order).
    ~InfoItemHolder() override;

    // The present info holder, never null.
    boost::intrusive_ptr<InfoHolder const> const& GetInfoHolder() const noexcept {
        return infoHolder_;
    }
    // The present item holder, null before the first Item.
    boost::intrusive_ptr<ItemHolder const> const& GetItemHolder() const noexcept {
        return itemHolder_;
    }
    // Replace the halves; the directory keeps id and types in step.
    void SetInfoHolder(boost::intrusive_ptr<InfoHolder const> const& info) { infoHolder_ = info; }
    void SetItemHolder(boost::intrusive_ptr<ItemHolder const> const& item) { itemHolder_ = item; }

private:
    boost::intrusive_ptr<InfoHolder const> infoHolder_;
    boost::intrusive_ptr<ItemHolder const> itemHolder_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
