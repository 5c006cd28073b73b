#include <legacy/oru/composite.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>

#include <legacy/oru/resultelem.h>

#include "children.h"
#include "codes.h"
#include "dump.h"
#include "family.h"
#include "serialcodec.h"
#include "texts.h"
#include "validation.h"

namespace Legacy {
namespace Oru {

namespace {

constexpr std::uint32_t k_countSize = 2;

// How many composite records the present thread is decoding, one inside the
// other. Children are decoded through the dispatch of ItemBase::Deserialize,
// which carries no depth, so the count lives here.
thread_local unsigned int t_depth __attribute__((tls_model("initial-exec"))) = 0;

class DepthGuard {
public:
    DepthGuard() noexcept { ++t_depth; }
    ~DepthGuard() { --t_depth; }
    DepthGuard(DepthGuard const&) = delete;
    DepthGuard& operator=(DepthGuard const&) = delete;

    bool TooDeep() const noexcept { return t_depth > CompositeItem::k_maxDepth; }
};

// The record the children of a composite write in turn, and the place in
// the composite's payload lent to the current one: a payload that is that
// place is never freed, one of the child's own is, also when a child throws.
class BorrowedPayload {
public:
    explicit BorrowedPayload(ItemBase::SerialStruct_t& record) noexcept : record_(record) {}
    ~BorrowedPayload() { Return(); }
    BorrowedPayload(BorrowedPayload const&) = delete;
    BorrowedPayload& operator=(BorrowedPayload const&) = delete;

    void Lend(unsigned char const* place) noexcept { place_ = place; }
    bool Used() const noexcept { return record_.data != nullptr && record_.data == place_; }
    // Empties the record: the lent place kept, a payload of its own freed.
    void Return() noexcept {
        if (!Used()) {
            delete[] record_.data;
        }
        record_.data = nullptr;
    }

private:
    ItemBase::SerialStruct_t& record_;
    unsigned char const* place_ = nullptr;
};

}  // namespace

// ---- CompositeInfo ----

CompositeInfo::CompositeInfo(unsigned int const& id, std::string const& name,
                             Permission_t const& permission)
    : InfoBase(id, name, permission) {}

CompositeInfo::CompositeInfo(CompositeInfo const& other) = default;

CompositeInfo& CompositeInfo::operator=(CompositeInfo const& other) = default;

CompositeInfo::~CompositeInfo() {
    Cleanup_();
}

InfoBase* CompositeInfo::DeepCopy(unsigned int id, std::string const& name,
                                  Permission_t const& permission) const {
    std::unique_ptr<CompositeInfo> copy(new CompositeInfo(id, name, permission));
    copy->infos_ = Children::DeepCopies(infos_);
    return copy.release();
}

CompositeInfo* CompositeInfo::DeepCopy() const {
    return static_cast<CompositeInfo*>(DeepCopy(GetId(), GetName(), GetPermission()));
}

CompositeInfo* CompositeInfo::DeepCopy(unsigned int id) const {
    return static_cast<CompositeInfo*>(DeepCopy(id, GetName(), GetPermission()));
}

ItemBase* CompositeInfo::CreateItem() const {
    std::unique_ptr<CompositeItem> item(new CompositeItem(GetId()));
    for (InfoPtr const& child : infos_) {
        if (child) {
            CompositeItem::ItemPtr const created(child->CreateItem());
            if (created) {
                item->AddItem(created);
            }
        }
    }
    return item.release();
}

OruType_t CompositeInfo::GetType() const {
    return GetTypeStatic();
}

bool CompositeInfo::IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const {
    auto const* const that = SameFamily<CompositeInfo>(*this, other);
    return that &&
           Children::AllPairs(infos_, that->infos_, [](InfoPtr const& own, InfoPtr const& theirs) {
               return own->IsEqualBounds(theirs);
           });
}

int CompositeInfo::MergeBounds(boost::intrusive_ptr<InfoBase const> const& /*other*/) {
    // Composite bounds are never merged, and callers rely on -26 even for a
    // null argument.
    return Codes::k_unsupported;
}

int CompositeInfo::AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    auto const* const that = OfType<CompositeInfo>(source, OruType_t::Composite);
    if (!that) {
        return Codes::k_unsupported;
    }
    if (that != this) {
        infos_ = that->infos_;
    }
    // Reported as changed on every success: callers treat a composite
    // assignment as a change without comparing the children.
    if (changed) {
        *changed = true;
    }
    return 0;
}

void CompositeInfo::DumpVal(std::ostream& out) const {
    Dump::InfoHead(out, *this);
}

std::ostream& CompositeInfo::operator<<(std::ostream& out) const {
    return Children::Write(out, infos_);
}

bool CompositeInfo::AddInfo(InfoPtr const& info) {
    std::size_t index = 0;
    return Children::Append(infos_, info, index);
}

bool CompositeInfo::AddInfo(InfoPtr const& info, std::size_t& index) {
    return Children::Append(infos_, info, index);
}

bool CompositeInfo::SetInfo(std::size_t index, InfoPtr const& info) {
    return Children::Replace(infos_, index, info);
}

void CompositeInfo::SetInfos(std::vector<InfoPtr> const& infos) {
    Children::ReplaceAll(infos_, infos);
}

void CompositeInfo::GetInfos(std::vector<InfoPtr>& out) {
    if (&out != &infos_) {
        out = infos_;
    }
}

void CompositeInfo::GetInfos(std::vector<ConstInfoPtr>& out) const {
    Children::AppendTo(out, infos_);
}

CompositeInfo::InfoPtr CompositeInfo::GetInfo(std::size_t index) {
    return Children::At(infos_, index);
}

CompositeInfo::ConstInfoPtr CompositeInfo::GetInfo(std::size_t index) const {
    return Children::At(infos_, index);
}

void CompositeInfo::Cleanup_() {
    infos_.clear();
}

// ---- CompositeItem ----

CompositeItem::CompositeItem(unsigned int id) : ItemBase(id) {}

CompositeItem::CompositeItem(CompositeItem const& other) = default;

CompositeItem& CompositeItem::operator=(CompositeItem const& other) = default;

CompositeItem::~CompositeItem() {
    Cleanup_();
}

ItemBase* CompositeItem::DeepCopy(unsigned int id) const {
    std::unique_ptr<CompositeItem> copy(new CompositeItem(id));
    copy->items_ = Children::DeepCopies(items_);
    return copy.release();
}

CompositeItem* CompositeItem::DeepCopy() const {
    return static_cast<CompositeItem*>(DeepCopy(GetId()));
}

OruType_t CompositeItem::GetType() const {
    return GetTypeStatic();
}

bool CompositeItem::IsEmpty() const {
    return items_.empty();
}

bool CompositeItem::IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const {
    auto const* const that = SameFamily<CompositeItem>(*this, other);
    return that &&
           Children::AllPairs(items_, that->items_, [](ItemPtr const& own, ItemPtr const& theirs) {
               return own->IsEqualValue(theirs);
           });
}

int CompositeItem::AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source,
                                    unsigned int /*index*/, bool* changed) {
    if (!source) {
        return Codes::k_nullSource;
    }
    if (changed) {
        *changed = false;
    }
    // Held here so that clearing the own children cannot end the source.
    ConstItemPtr const keep(source);
    auto const* const from = OfType<CompositeItem>(keep, OruType_t::Composite);
    if (!from) {
        return Codes::k_unsupported;
    }
    // The own children go before the source is read: assigning a composite
    // to itself empties it and still succeeds, as callers of this family know.
    Cleanup_();
    std::vector<ItemPtr> copies;
    copies.reserve(from->items_.size());
    for (ItemPtr const& child : from->items_) {
        if (child) {
            copies.push_back(ItemPtr(child->DeepCopy()));
        }
    }
    items_.swap(copies);
    if (changed) {
        *changed = true;
    }
    return 0;
}

unsigned int CompositeItem::GetSerialDataSize() const {
    // 32-bit unsigned arithmetic, as the size field holds.
    std::uint32_t size = k_countSize;
    for (ItemPtr const& child : items_) {
        size += Serial::k_headerSize + (child ? child->GetSerialDataSize() : 0u);
    }
    return size;
}

int CompositeItem::Serialize(SerialStruct_t* record) const {
    if (!record) {
        return Codes::k_invalid;
    }
    std::uint32_t const size = GetSerialDataSize();
    unsigned char* const payload = Serial::WriteEnvelope(record, *this, size);
    // memset, not a byte loop: the whole payload is zeroed on every write.
    std::memset(payload, 0, size);
    if (size < k_countSize) {
        return 0;
    }
    // The low 16 bits of the child count: nothing guards against more.
    Serial::PutBigEndian(payload, static_cast<std::uint16_t>(items_.size()));
    std::uint32_t at = k_countSize;
    Serial::PlacedScope const scope;
    // One record for every child, emptied between them.
    SerialStruct_t local;
    BorrowedPayload borrowed(local);
    for (ItemPtr const& child : items_) {
        if (size - at < Serial::k_headerSize) {
            break;
        }
        // A child that refuses leaves its record zeroed: ten zero bytes stand
        // in its place, and the outer record is still written.
        local.id = 0;
        local.dataSize = 0;
        local.type = 0;
        local.numericType = 0;
        // The child's payload goes straight to its place in ours when it fits
        // the space left: the same bytes the copy below would put there.
        unsigned char* const place = payload + at + Serial::k_headerSize;
        borrowed.Lend(place);
        if (child) {
            Serial::t_placed = {&local, child.get(), size - at - Serial::k_headerSize, place};
            static_cast<void>(child->Serialize(&local));
        }
        Serial::PutHeader(payload + at, local);
        at += Serial::k_headerSize;
        // Bounded by the space left, should a child write more than it said.
        std::uint32_t const copied = std::min(Serial::NetToHost32(local.dataSize), size - at);
        if (copied != 0 && local.GetData() && !borrowed.Used()) {
            std::memcpy(payload + at, local.GetData(), copied);
        }
        borrowed.Return();
        at += copied;
    }
    return 0;
}

int CompositeItem::Deserialize(ConstSerialStruct_t const* record) {
    int const code = Serial::CheckPrologue(record, *this);
    if (code != 0) {
        return code;
    }
    if (record->GetDataSize() < k_countSize) {
        return Codes::k_invalid;
    }
    DepthGuard const depth;
    if (depth.TooDeep()) {
        return Codes::k_invalid;
    }
    Serial::Reader reader(*record);
    unsigned int const count = reader.BigEndian<std::uint16_t>();
    // Each child is appended as it is read, after the children already held;
    // a failure keeps those appended so far, as callers of this family expect.
    items_.reserve(items_.size() +
                   std::min<std::size_t>(count, reader.Remaining() / Serial::k_headerSize));
    for (unsigned int i = 0; i < count; ++i) {
        unsigned char const* const header = reader.Take(Serial::k_headerSize);
        if (!header) {
            return Codes::k_noSerialForm;
        }
        ConstSerialStruct_t child;
        Serial::SetHeader(child, Serial::GetHeader(header));
        if (child.GetDataSize() > reader.Remaining()) {
            return Codes::k_noSerialForm;
        }
        child.data = reader.Position();
        ItemPtr item;
        if (ItemBase::Deserialize(&child, item) < 0 || !item) {
            return Codes::k_noSerialForm;
        }
        // The next record starts where the child says its payload ends, not
        // where the size field says: peers write records that are read this
        // way. The walk stays inside the payload; a record that would begin
        // beyond it cannot be read.
        reader.Take(std::min(item->GetSerialDataSize(), reader.Remaining()));
        items_.push_back(item);
    }
    return 0;
}

std::shared_ptr<ResultElem const> CompositeItem::Validate(
    boost::intrusive_ptr<InfoBase const> const& info) const {
    auto const* const compositeInfo =
        info ? OfType<CompositeInfo>(info, OruType_t::Composite) : nullptr;
    if (!compositeInfo) {
        return Validation::TypeMismatch(*this, info.get());
    }
    if (compositeInfo->GetSize() != items_.size()) {
        return Validation::Fail(*this, "TypesSystemCompositeValidationSize",
                                {compositeInfo->GetName(), Validation::Text(items_.size())});
    }
    // Shape and types only: the children's own checks are the caller's.
    for (std::size_t i = 0; i < items_.size(); ++i) {
        CompositeInfo::ConstInfoPtr const childInfo = compositeInfo->GetInfo(i);
        if (!childInfo || !childInfo->IsEqualType(ConstItemPtr(items_[i]))) {
            return Validation::Fail(*this, "TypesSystemCompositeTypeMismatch",
                                    {compositeInfo->GetName(), Validation::Text(i)});
        }
    }
    return nullptr;
}

bool CompositeItem::SetValFromStream(std::istream& in, std::ostream& errors,
                                     boost::intrusive_ptr<InfoBase const> const& info) {
    ItemPtr prototypeItem;
    if (info && info->GetType() == OruType_t::Composite) {
        prototypeItem.reset(info->CreateItem());
    }
    auto* const prototype = dynamic_cast<CompositeItem*>(prototypeItem.get());
    if (!prototype) {
        errors << "Invalid use of CompositeItem::SetValFromStream\n";
        return false;
    }
    Cleanup_();
    errors << "CompositeItem with " << prototype->GetSize() << " items\n";
    for (ItemPtr const& child : prototype->items_) {
        if (!child) {
            continue;
        }
        // No Info for the child: a family that needs one, a nested composite
        // among them, refuses. The children read so far stay.
        if (!child->SetValFromStream(in, errors, nullptr)) {
            return false;
        }
        items_.push_back(child);
    }
    return true;
}

void CompositeItem::DumpVal(std::ostream& out) const {
    Dump::ItemHead(out, *this);
    out << "value: (" << items_.size() << " items)";
}

std::ostream& CompositeItem::operator<<(std::ostream& out) const {
    return Children::Write(out, items_);
}

bool CompositeItem::AddItem(ItemPtr const& item) {
    std::size_t index = 0;
    return Children::Append(items_, item, index);
}

bool CompositeItem::AddItem(ItemPtr const& item, std::size_t& index) {
    return Children::Append(items_, item, index);
}

bool CompositeItem::SetItem(std::size_t index, ItemPtr const& item) {
    return Children::Replace(items_, index, item);
}

void CompositeItem::SetItems(std::vector<ItemPtr> const& items) {
    Children::ReplaceAll(items_, items);
}

void CompositeItem::GetItems(std::vector<ItemPtr>& out) {
    if (&out != &items_) {
        out = items_;
    }
}

void CompositeItem::GetItems(std::vector<ConstItemPtr>& out) const {
    Children::AppendTo(out, items_);
}

CompositeItem::ItemPtr CompositeItem::GetItem(std::size_t index) {
    return Children::At(items_, index);
}

CompositeItem::ConstItemPtr CompositeItem::GetItem(std::size_t index) const {
    return Children::At(items_, index);
}

void CompositeItem::Cleanup_() {
    items_.clear();
}

}  // namespace Oru
}  // namespace Legacy
