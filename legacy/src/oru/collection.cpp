#include <legacy/oru/collection.h>

#include <ostream>

#include <legacy/oru/resultelem.h>

#include "children.h"
#include "codes.h"
#include "dump.h"
#include "family.h"
#include "textio.h"
#include "texts.h"

namespace Legacy {
namespace Oru {

// ---- CollectionInfo ----

CollectionInfo::CollectionInfo(unsigned int const& id, std::string const& name,
                               Permission_t const& permission)
    : InfoBase(id, name, permission) {}

CollectionInfo::CollectionInfo(CollectionInfo const& other) = default;

CollectionInfo& CollectionInfo::operator=(CollectionInfo const& other) = default;

CollectionInfo::~CollectionInfo() {
    Cleanup_();
}

InfoBase* CollectionInfo::DeepCopy(unsigned int id, std::string const& name,
                                   Permission_t const& permission) const {
    std::unique_ptr<CollectionInfo> copy(new CollectionInfo(id, name, permission));
    copy->infos_ = Children::DeepCopies(infos_);
    return copy.release();
}

CollectionInfo* CollectionInfo::DeepCopy() const {
    return static_cast<CollectionInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

CollectionInfo* CollectionInfo::DeepCopy(unsigned int id) const {
    return static_cast<CollectionInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* CollectionInfo::CreateItem() const {
    // An Item of a collection is filled by hand: the child infos stay unread.
    return new CollectionItem(GetId());
}

OruType_t CollectionInfo::GetType() const {
    return GetTypeStatic();
}

bool CollectionInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<CollectionInfo>(*this, other);
    return that &&
           Children::AllPairs(infos_, that->infos_, [](InfoPtr const& own, InfoPtr const& theirs) {
               return own->IsEqualBounds(theirs);
           });
}

int CollectionInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& /*other*/) {
    // Collection bounds are never merged, and callers rely on -26 even for a
    // null argument.
    return Codes::k_unsupported;
}

int CollectionInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<CollectionInfo>(source, OruType_t::Collection);
    if (!that) {
        return Codes::k_unsupported;
    }
    if (that != this) {
        infos_ = that->infos_;
    }
    // Reported as changed on every success, as for composites: the children
    // are not compared.
    if (changed) {
        *changed = true;
    }
    return 0;
}

void CollectionInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
}

std::ostream& CollectionInfo::operator<<(std::ostream& out) const {
    return Children::Write(out, infos_);
}

bool CollectionInfo::AddInfo(InfoPtr const& info) {
    std::size_t index = 0;
    return Children::Append(infos_, info, index);
}

bool CollectionInfo::AddInfo(InfoPtr const& info, std::size_t& index) {
    return Children::Append(infos_, info, index);
}

bool CollectionInfo::SetInfo(std::size_t index, InfoPtr const& info) {
    return Children::Replace(infos_, index, info);
}

void CollectionInfo::SetInfos(std::vector<InfoPtr> const& infos) {
    Children::ReplaceAll(infos_, infos);
}

void CollectionInfo::GetInfos(std::vector<InfoPtr>& out) {
    if (&out != &infos_) {
        out = infos_;
    }
}

void CollectionInfo::GetInfos(std::vector<ConstInfoPtr>& out) const {
    Children::AppendTo(out, infos_);
}

CollectionInfo::InfoPtr CollectionInfo::GetInfo(std::size_t index) {
    return Children::At(infos_, index);
}

CollectionInfo::ConstInfoPtr CollectionInfo::GetInfo(std::size_t index) const {
    return Children::At(infos_, index);
}

void CollectionInfo::Cleanup_() {
    infos_.clear();
}

// ---- CollectionItem ----

CollectionItem::CollectionItem(unsigned int id) : ItemBase(id) {}

CollectionItem::CollectionItem(CollectionItem const& other) = default;

CollectionItem& CollectionItem::operator=(CollectionItem const& other) = default;

CollectionItem::~CollectionItem() {
    Cleanup_();
}

ItemBase* CollectionItem::DeepCopy(unsigned int id) const {
    std::unique_ptr<CollectionItem> copy(new CollectionItem(id));
    copy->items_ = Children::DeepCopies(items_);
    return copy.release();
}

CollectionItem* CollectionItem::DeepCopy() const {
    return static_cast<CollectionItem*>(DeepCopy(GetId()));
}

OruType_t CollectionItem::GetType() const {
    return GetTypeStatic();
}

bool CollectionItem::IsEmpty() const {
    return items_.empty();
}

bool CollectionItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<CollectionItem>(*this, other);
    return that &&
           Children::AllPairs(items_, that->items_, [](ItemPtr const& own, ItemPtr const& theirs) {
               return own->IsEqualValue(theirs);
           });
}

int CollectionItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                     unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const from = OfType<CollectionItem>(source, OruType_t::Collection);
    if (!from) {
        return Codes::k_unsupported;
    }
    // Shared, not copied: a change through one collection shows through the
    // other, as callers of this family expect.
    if (from != this) {
        items_ = from->items_;
    }
    if (changed) {
        *changed = true;
    }
    return 0;
}

unsigned int CollectionItem::GetSerialDataSize() const {
    return 0;
}

int CollectionItem::Serialize(SerialStruct_t* /*record*/) const {
    // No serial form, and -26 even for a null record: a composite holding a
    // collection writes ten zero bytes in its place.
    return Codes::k_unsupported;
}

int CollectionItem::Deserialize(ConstSerialStruct_t const* /*record*/) {
    return Codes::k_unsupported;
}

std::shared_ptr<ResultElem const> CollectionItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& /*info*/) const {
    // Nothing of a collection is checked.
    return nullptr;
}

bool CollectionItem::SetValFromStream(std::istream& /*in*/, std::ostream& errors,
                                      boost::intrusive_ptr<InfoBase const> const& /*info*/) {
    return TextIO::NotImplemented(errors);
}

void CollectionItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: (" << items_.size() << " items)";
}

std::ostream& CollectionItem::operator<<(std::ostream& out) const {
    return Children::Write(out, items_);
}

bool CollectionItem::AddItem(ItemPtr const& item) {
    std::size_t index = 0;
    return Children::Append(items_, item, index);
}

bool CollectionItem::AddItem(ItemPtr const& item, std::size_t& index) {
    return Children::Append(items_, item, index);
}

bool CollectionItem::SetItem(std::size_t index, ItemPtr const& item) {
    return Children::Replace(items_, index, item);
}

void CollectionItem::SetItems(std::vector<ItemPtr> const& items) {
    Children::ReplaceAll(items_, items);
}

void CollectionItem::GetItems(std::vector<ItemPtr>& out) {
    if (&out != &items_) {
        out = items_;
    }
}

void CollectionItem::GetItems(std::vector<ConstItemPtr>& out) const {
    Children::AppendTo(out, items_);
}

CollectionItem::ItemPtr CollectionItem::GetItem(std::size_t index) {
    return Children::At(items_, index);
}

CollectionItem::ConstItemPtr CollectionItem::GetItem(std::size_t index) const {
    return Children::At(items_, index);
}

void CollectionItem::Cleanup_() {
    items_.clear();
}

}  // namespace Oru
}  // namespace Legacy
