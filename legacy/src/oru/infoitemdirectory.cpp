#include <legacy/oru/infoitemdirectory.h>

#include <legacy/oru/holdercontainers.h>
#include <legacy/oru/infoitemdirectorydelta.h>
#include <legacy/oru/sectionmap.h>

#include <cstring>
#include <typeinfo>

#include "codes.h"

namespace Legacy {
namespace Oru {

namespace {

// The two halves of a path being looked up, one pair per thread and reused,
// so that a lookup by path allocates nothing once they hold the longest
// section path seen. Nothing a lookup calls can start another lookup while
// they are in use.
// Initial-exec: the general model makes each access a call into the dynamic
// loader, on the hottest path of the directory.
std::string& SectionScratch() {
    thread_local std::string scratch __attribute__((tls_model("initial-exec")));
    return scratch;
}

std::string& InfoScratch() {
    thread_local std::string scratch __attribute__((tls_model("initial-exec")));
    return scratch;
}

using IdPosition = InfoItemHolderMap::IdMap::const_iterator;
using InfoHolderPtr = boost::intrusive_ptr<InfoHolder const>;
using ItemHolderPtr = boost::intrusive_ptr<ItemHolder const>;

// The entry of `id` in the id map, found by stepping once from `at` when the
// ids come in the map's order (a section's ids are adjacent), else by a full
// lookup; `end` when absent. `at` is `end` before the first call.
IdPosition NextOrFind(InfoItemHolderMap& map, IdPosition at, IdPosition end, unsigned int id) {
    if (at != end) {
        ++at;
        if (at != end && at->first == id) {
            return at;
        }
    }
    auto const found = map.Find(id);
    return found.first ? found.second : end;
}

// True when the change hooks are this class's own, which do nothing: no
// hook can then change the directory while a bulk operation walks it.
bool PlainHooks(InfoItemDirectory const& directory) {
    return typeid(directory) == typeid(InfoItemDirectory);
}

}  // namespace

InfoItemDirectory::InfoItemDirectory()
    : sectionMap_(std::make_shared<SectionMap>()),
      holderMap_(std::make_shared<InfoItemHolderMap>()) {}

InfoItemDirectory::InfoItemDirectory(InfoItemDirectory const& other) = default;

InfoItemDirectory& InfoItemDirectory::operator=(InfoItemDirectory const& other) = default;

InfoItemDirectory::~InfoItemDirectory() = default;

int InfoItemDirectory::AddSection(std::string const& name, SectionId& out) {
    return sectionMap_->AddSection(name, out);
}

int InfoItemDirectory::AddSection(SectionId const& sectionId) {
    return sectionMap_->AddSection(sectionId);
}

SectionId InfoItemDirectory::FindSection(std::string const& name) const {
    SectionId found;
    return sectionMap_->FindSection(name, found) < 0 ? SectionId() : found;
}

SectionId InfoItemDirectory::FindSection(InfoItemSectionId const& id) const {
    SectionId found;
    return sectionMap_->FindSection(id, found) < 0 ? SectionId() : found;
}

void InfoItemDirectory::GetTopLevelSections(std::vector<SectionId>& out) const {
    out.clear();
    sectionMap_->GetTopLevelSections(out);
}

int InfoItemDirectory::GetSubsections(InfoItemSectionId const& id,
                                      std::vector<SectionId>& out) const {
    out.clear();
    return sectionMap_->GetSubsections(id, out);
}

void InfoItemDirectory::GetLeafSections(std::list<SectionId>& out) const {
    sectionMap_->GetLeafSections(out);
}

int InfoItemDirectory::AddInfo(boost::intrusive_ptr<InfoHolder const> const& info) {
    if (!info) {
        return Codes::k_nullPointer;
    }
    boost::intrusive_ptr<InfoItemHolder> const holder(new InfoItemHolder(info));
    int result = holderMap_->Insert(holder);
    if (result < 0) {
        return result;
    }
    InfoBase const& added = *info->GetInfo();
    try {
        result = sectionMap_->AddInfo(InfoItemSectionId(added.GetId()), added.GetName());
    } catch (...) {
        holderMap_->Erase(added.GetId());
        throw;
    }
    if (result < 0) {
        // The tree refused: take the slot out again so both halves agree.
        holderMap_->Erase(added.GetId());
        return result;
    }
    InfoChanged_(boost::intrusive_ptr<InfoHolder const>(), holder);
    return Codes::k_ok;
}

int InfoItemDirectory::SetInfo(boost::intrusive_ptr<InfoHolder const> const& info) {
    if (!info) {
        return Codes::k_nullPointer;
    }
    InfoBase const& replacement = *info->GetInfo();
    auto const* slot = FindSlot_(replacement.GetId());
    if (!slot) {
        return Codes::k_notFound;
    }
    boost::intrusive_ptr<InfoItemHolder> const holder = *slot;
    boost::intrusive_ptr<InfoHolder const> const oldInfo = holder->GetInfoHolder();
    InfoBase const& present = *oldInfo->GetInfo();
    if (replacement.GetId() != present.GetId() || replacement.GetName() != present.GetName() ||
        replacement.GetType() != present.GetType() ||
        replacement.GetNumericType() != present.GetNumericType()) {
        return Codes::k_invalid;
    }
    holder->SetInfoHolder(info);
    InfoChanged_(oldInfo, holder);
    return Codes::k_ok;
}

int InfoItemDirectory::SetItem(boost::intrusive_ptr<ItemHolder const> const& item) {
    // A null item is refused rather than read: no caller can mean it.
    if (!item) {
        return Codes::k_nullPointer;
    }
    ItemBase const& replacement = *item->GetItem();
    auto const* slot = FindSlot_(replacement.GetId());
    if (!slot) {
        return Codes::k_notFound;
    }
    InfoBase const& present = *(*slot)->GetInfoHolder()->GetInfo();
    if (replacement.GetId() != present.GetId() || replacement.GetType() != present.GetType() ||
        replacement.GetNumericType() != present.GetNumericType()) {
        return Codes::k_invalid;
    }
    if (PlainHooks(*this)) {
        (*slot)->SetItemHolder(item);
        return Codes::k_ok;
    }
    // A hook gets the old Item and the slot, kept alive whatever it does.
    boost::intrusive_ptr<InfoItemHolder> const holder = *slot;
    boost::intrusive_ptr<ItemHolder const> const oldItem = holder->GetItemHolder();
    holder->SetItemHolder(item);
    ItemChanged_(oldItem, holder);
    return Codes::k_ok;
}

boost::intrusive_ptr<InfoHolder const> InfoItemDirectory::FindInfo(unsigned int const& id) const {
    auto const* slot = FindSlot_(id);
    return slot ? (*slot)->GetInfoHolder() : boost::intrusive_ptr<InfoHolder const>();
}

boost::intrusive_ptr<InfoHolder const> InfoItemDirectory::FindInfo(
    std::string const& sectionName, std::string const& infoName) const {
    auto const slot = FindSlot_(sectionName, infoName);
    return slot ? slot->GetInfoHolder() : boost::intrusive_ptr<InfoHolder const>();
}

boost::intrusive_ptr<ItemHolder const> InfoItemDirectory::FindItem(unsigned int const& id) const {
    auto const* slot = FindSlot_(id);
    return slot ? (*slot)->GetItemHolder() : boost::intrusive_ptr<ItemHolder const>();
}

boost::intrusive_ptr<ItemHolder const> InfoItemDirectory::FindItem(std::string const& path) const {
    std::string& sectionName = SectionScratch();
    std::string& infoName = InfoScratch();
    if (!ParseInfoPath_(path, sectionName, infoName)) {
        return boost::intrusive_ptr<ItemHolder const>();
    }
    return FindItem(sectionName, infoName);
}

boost::intrusive_ptr<ItemHolder const> InfoItemDirectory::FindItem(
    std::string const& sectionName, std::string const& infoName) const {
    InfoItemSectionId id;
    if (sectionName.empty() || infoName.empty() ||
        sectionMap_->FindInfo(sectionName, infoName, id) < 0) {
        return boost::intrusive_ptr<ItemHolder const>();
    }
    auto const* slot = FindSlot_(static_cast<unsigned int>(id));
    return slot ? (*slot)->GetItemHolder() : boost::intrusive_ptr<ItemHolder const>();
}

boost::intrusive_ptr<InfoItemHolder const> InfoItemDirectory::FindInfoItem(
    unsigned int const& id) const {
    auto const* slot = FindSlot_(id);
    return slot ? *slot : boost::intrusive_ptr<InfoItemHolder const>();
}

boost::intrusive_ptr<InfoItemHolder const> InfoItemDirectory::FindInfoItem(
    std::string const& path) const {
    std::string& sectionName = SectionScratch();
    std::string& infoName = InfoScratch();
    if (!ParseInfoPath_(path, sectionName, infoName)) {
        return boost::intrusive_ptr<InfoItemHolder const>();
    }
    return FindInfoItem(sectionName, infoName);
}

boost::intrusive_ptr<InfoItemHolder const> InfoItemDirectory::FindInfoItem(
    std::string const& sectionName, std::string const& infoName) const {
    return FindSlot_(sectionName, infoName);
}

template <class Holder, class Pick>
int InfoItemDirectory::CollectIn_(InfoItemSectionId const& id, std::vector<Holder>& out,
                                  Pick pick) const {
    // The ids of one walk, in a per-thread vector that keeps its capacity:
    // nothing that a walk calls starts another.
    thread_local std::vector<unsigned int> ids __attribute__((tls_model("initial-exec")));
    ids.clear();
    int const result = sectionMap_->GetInfos(id, ids);
    if (result < 0) {
        return result;
    }
    out.reserve(out.size() + ids.size());
    // The ids of one section are adjacent in the id map: one lookup per
    // section, then a step per setting.
    IdPosition const end = holderMap_->IterEnd().position_;
    IdPosition at = end;
    for (unsigned int const infoId : ids) {
        at = NextOrFind(*holderMap_, at, end, infoId);
        if (at != end) {
            // A reference where the slot holds the handle: no copy to test.
            decltype(auto) picked = pick(*at->second);
            if (picked) {
                out.push_back(picked);
            }
        }
    }
    return Codes::k_ok;
}

int InfoItemDirectory::FindInfos(InfoItemSectionId const& id,
                                 std::vector<boost::intrusive_ptr<InfoHolder const>>& out) const {
    return CollectIn_(id, out, [](InfoItemHolder const& slot) -> InfoHolderPtr const& {
        return slot.GetInfoHolder();
    });
}

int InfoItemDirectory::FindItems(InfoItemSectionId const& id,
                                 std::vector<boost::intrusive_ptr<ItemHolder const>>& out) const {
    return CollectIn_(id, out, [](InfoItemHolder const& slot) -> ItemHolderPtr const& {
        return slot.GetItemHolder();
    });
}

int InfoItemDirectory::FindInfoItems(
    InfoItemSectionId const& id,
    std::vector<boost::intrusive_ptr<InfoItemHolder const>>& out) const {
    return CollectIn_(id, out, [](InfoItemHolder const& slot) {
        return boost::intrusive_ptr<InfoItemHolder const>(&slot);
    });
}

void InfoItemDirectory::GetAllInfoItems(
    std::vector<boost::intrusive_ptr<InfoItemHolder const>>& out) const {
    out.clear();
    out.reserve(holderMap_->Size());
    for (auto entry = holderMap_->IterBegin(); entry != holderMap_->IterEnd(); ++entry) {
        out.push_back(entry->second);
    }
}

int InfoItemDirectory::UpdateFromDelta(std::shared_ptr<InfoItemDirectoryDelta> const& delta,
                                       bool updateInfos, bool updateItems) {
    if (!delta) {
        return Codes::k_nullPointer;
    }
    // Sections first, by packed id, so that parents come before children; then
    // Infos, then Items, so that one delta can carry a whole new setting.
    for (auto const& entry : delta->GetSectionIdMap_addMod()) {
        int const result = sectionMap_->AddSection(entry.second);
        if (result < 0) {
            return result;
        }
    }
    if (updateInfos) {
        for (auto const& entry : delta->GetInfoHolderPtrMap_addMod()) {
            auto const* slot = FindSlot_(entry.first);
            bool const present = slot && (*slot)->GetInfoHolder();
            int const result = present ? SetInfo(entry.second) : AddInfo(entry.second);
            if (result < 0) {
                return result;
            }
        }
    }
    if (!updateItems) {
        return Codes::k_ok;
    }
    auto const& items = delta->GetItemHolderPtrMap_addMod();
    if (!PlainHooks(*this)) {
        // A hook may change the directory between two Items: each is looked
        // up afresh.
        for (auto const& entry : items) {
            int const result = SetItem(entry.second);
            if (result < 0) {
                return result;
            }
        }
        return Codes::k_ok;
    }
    // The change set is sorted by id, as the id map is: walk both in step,
    // with the checks and codes of SetItem.
    IdPosition const end = holderMap_->IterEnd().position_;
    IdPosition at = end;
    for (auto entry = items.begin(); entry != items.end(); ++entry) {
        if (!entry->second) {
            return Codes::k_nullPointer;
        }
        ItemBase const& replacement = *entry->second->GetItem();
        at = NextOrFind(*holderMap_, at, end, replacement.GetId());
        if (at == end) {
            return Codes::k_notFound;
        }
        // The walk waits on memory, not on instructions: ask for the next
        // Item and the next slot while this one is checked.
        auto const nextEntry = std::next(entry);
        if (nextEntry != items.end() && nextEntry->second) {
            __builtin_prefetch(nextEntry->second->GetItem().get());
        }
        IdPosition const nextSlot = std::next(at);
        if (nextSlot != end) {
            __builtin_prefetch(nextSlot->second.get());
        }
        InfoItemHolder& slot = *at->second;
        InfoBase const& present = *slot.GetInfoHolder()->GetInfo();
        if (replacement.GetId() != present.GetId() || replacement.GetType() != present.GetType() ||
            replacement.GetNumericType() != present.GetNumericType()) {
            return Codes::k_invalid;
        }
        slot.SetItemHolder(entry->second);
    }
    return Codes::k_ok;
}

bool InfoItemDirectory::Empty() const {
    return holderMap_->Empty();
}

void InfoItemDirectory::Clear() {
    sectionMap_->Clear();
    holderMap_->Clear();
}

void InfoItemDirectory::InfoChanged_(boost::intrusive_ptr<InfoHolder const> const&,
                                     boost::intrusive_ptr<InfoItemHolder const> const&) {}

void InfoItemDirectory::ItemChanged_(boost::intrusive_ptr<ItemHolder const> const&,
                                     boost::intrusive_ptr<InfoItemHolder const> const&) {}

bool InfoItemDirectory::ParseInfoPath_(std::string const& path, std::string& sectionName,
                                       std::string& infoName) const {
    // memrchr scans a word at a time where rfind goes byte by byte.
    void const* const found =
        path.empty() ? nullptr : memrchr(path.data(), SectionId::k_sectionDelim, path.size());
    if (!found) {
        return false;
    }
    std::size_t const delim =
        static_cast<std::size_t>(static_cast<char const*>(found) - path.data());
    // clear and append, not a substring or assign: the scratch strings keep
    // their buffers, and append skips the overlap handling of assign.
    sectionName.clear();
    sectionName.append(path.data(), delim);
    infoName.clear();
    infoName.append(path.data() + delim + 1, path.size() - delim - 1);
    return true;
}

boost::intrusive_ptr<InfoItemHolder> InfoItemDirectory::FindSlot_(
    std::string const& sectionName, std::string const& infoName) const {
    if (sectionName.empty() || infoName.empty()) {
        return boost::intrusive_ptr<InfoItemHolder>();
    }
    InfoItemSectionId id;
    if (sectionMap_->FindInfo(sectionName, infoName, id) < 0) {
        return boost::intrusive_ptr<InfoItemHolder>();
    }
    auto const* slot = FindSlot_(static_cast<unsigned int>(id));
    return slot ? *slot : boost::intrusive_ptr<InfoItemHolder>();
}

boost::intrusive_ptr<InfoItemHolder> const* InfoItemDirectory::FindSlot_(unsigned int id) const {
    auto const found = holderMap_->Find(id);
    return found.first ? &found.second->second : nullptr;
}

}  // namespace Oru
}  // namespace Legacy
