#include <legacy/oru/sectionmap.h>

#include <string_view>

#include "codes.h"

namespace Legacy {
namespace Oru {

namespace {

unsigned int const k_cleared = 0xFFFFFFFFu;

// The subsection under key in one of the two maps of an element.
template <class Map, class Key>
int FoundChild(Map const& map, Key const& key, std::shared_ptr<SectionMapElement>& next) {
    auto const found = map.find(key);
    if (found == map.end()) {
        return Codes::k_notFound;
    }
    if (!found->second) {
        return Codes::k_nullPointer;
    }
    next = found->second;
    return Codes::k_ok;
}
unsigned char const k_noSubsection = 255;

bool IsCleared(InfoItemSectionId const& id) {
    return static_cast<unsigned int>(id) == k_cleared;
}

// One path step: the first component of `name` after one optional leading
// "/", and what follows the "/" that ends it. Views, so that a lookup copies
// no part of the path.
void SplitStep(std::string_view name, std::string_view& head, std::string_view& rest) {
    std::size_t const start = !name.empty() && name[0] == SectionId::k_sectionDelim ? 1 : 0;
    std::size_t const delim =
        start < name.size() ? name.find(SectionId::k_sectionDelim, start) : std::string_view::npos;
    if (delim == std::string_view::npos) {
        head = start < name.size() ? name.substr(start) : std::string_view();
        rest = std::string_view();
    } else {
        head = name.substr(start, delim - start);
        rest = name.substr(delim + 1);
    }
}

// Walks `path` down from `node` one component at a time, with the results of
// FindNextSectionMapElement_ at each level (-41 empty component, -25 absent,
// -32 null), but without copying the path or the child pointers: lookups by
// path are the hot operation of a directory. `children` is the by-name map
// member, handed over by the caller that may name it. The component is
// copied into one string per thread, reused, so that a walk allocates nothing
// once it has seen its longest name; nothing a walk calls starts another.
template <class Children>
int WalkPath(SectionMapElement const*& node, std::string_view path, Children children) {
    thread_local std::string head __attribute__((tls_model("initial-exec")));
    while (!path.empty()) {
        std::string_view component;
        SplitStep(path, component, path);
        if (component.empty()) {
            return Codes::k_invalid;
        }
        // clear and append: cheaper than assign, which allows for overlap.
        head.clear();
        head.append(component.data(), component.size());
        auto const& byName = (*node).*children;
        auto const found = byName.find(head);
        if (found == byName.end()) {
            return Codes::k_notFound;
        }
        if (!found->second) {
            return Codes::k_nullPointer;
        }
        node = found->second.get();
    }
    return Codes::k_ok;
}

}  // namespace

SectionMapElement::SectionMapElement(SectionId const& sectionId)
    : sectionId_(sectionId), isRoot_(false) {}

SectionMapElement::SectionMapElement() : isRoot_(true) {}

SectionMapElement::SectionMapElement(SectionMapElement const& other)
    : sectionId_(other.sectionId_),
      subsectionsByName_(other.subsectionsByName_),
      subsectionsByNumber_(other.subsectionsByNumber_),
      infosByName_(other.infosByName_),
      infosById_(other.infosById_),
      isRoot_(other.isRoot_) {
    // Each map gets a deep copy of its own, so a copy's two maps hold
    // different objects: that is how copies have always behaved, and callers
    // rely on it.
    for (auto& entry : subsectionsByName_) {
        if (entry.second) {
            entry.second = std::make_shared<SectionMapElement>(*entry.second);
        }
    }
    for (auto& entry : subsectionsByNumber_) {
        if (entry.second) {
            entry.second = std::make_shared<SectionMapElement>(*entry.second);
        }
    }
}

SectionMapElement::~SectionMapElement() = default;

SectionId const& SectionMapElement::GetSectionId() const {
    return sectionId_;
}

std::size_t SectionMapElement::Depth_() const {
    return isRoot_ ? 0 : sectionId_.GetSectionDepth();
}

void SectionMapElement::ParseSectionName_(std::string const& name, std::string& head,
                                          std::string& rest) {
    std::size_t const start = !name.empty() && name[0] == SectionId::k_sectionDelim ? 1 : 0;
    std::size_t const delim =
        start < name.size() ? name.find(SectionId::k_sectionDelim, start) : std::string::npos;
    if (delim == std::string::npos) {
        head = start < name.size() ? name.substr(start) : std::string();
        rest.clear();
    } else {
        head = name.substr(start, delim - start);
        rest = name.substr(delim + 1);
    }
}

int SectionMapElement::FindNextSectionMapElement_(std::string name, std::string& rest,
                                                  std::shared_ptr<SectionMapElement>& next) const {
    std::string head;
    ParseSectionName_(name, head, rest);
    if (head.empty()) {
        return Codes::k_invalid;
    }
    return FoundChild(subsectionsByName_, head, next);
}

int SectionMapElement::FindNextSectionMapElement_(InfoItemSectionId const& id,
                                                  std::shared_ptr<SectionMapElement>& next) const {
    unsigned char const number = id.GetSubsectionId(Depth_() + 1);
    if (number == k_noSubsection) {
        return Codes::k_invalid;
    }
    return FoundChild(subsectionsByNumber_, number, next);
}

int SectionMapElement::AddNewSectionMapElement_(SectionId const& sectionId,
                                                std::shared_ptr<SectionMapElement>& out) {
    std::size_t const depth = sectionId.GetSectionDepth();
    std::string const name = sectionId.GetSubsectionName(depth);
    if (name.empty()) {
        return Codes::k_invalid;
    }
    unsigned char const number = sectionId.GetSubsectionId(depth);
    if (number == k_noSubsection) {
        return Codes::k_invalid;
    }
    auto const byName = subsectionsByName_.find(name);
    auto const byId = subsectionsByNumber_.find(number);
    bool const nameNew = byName == subsectionsByName_.end();
    bool const idNew = byId == subsectionsByNumber_.end();
    if (nameNew && idNew) {
        // Built before either map is touched, so that a failed allocation
        // leaves no half-entered child.
        auto child = std::make_shared<SectionMapElement>(sectionId);
        auto const inserted = subsectionsByName_.emplace(name, child).first;
        try {
            subsectionsByNumber_.emplace(number, child);
        } catch (...) {
            subsectionsByName_.erase(inserted);
            throw;
        }
        out = child;
        return Codes::k_ok;
    }
    if (!nameNew && !idNew && byName->second == byId->second) {
        out = byName->second;
        return Codes::k_ok;
    }
    return Codes::k_present;
}

int SectionMapElement::AddSection_(std::string const& name, SectionId& out) {
    if (name.empty()) {
        if (isRoot_) {
            return Codes::k_invalid;
        }
        out = sectionId_;
        return Codes::k_ok;
    }
    std::string head;
    std::string rest;
    ParseSectionName_(name, head, rest);
    if (head.empty()) {
        return Codes::k_invalid;
    }
    std::shared_ptr<SectionMapElement> child;
    auto const found = subsectionsByName_.find(head);
    if (found != subsectionsByName_.end()) {
        child = found->second;
        if (!child) {
            return Codes::k_nullPointer;
        }
        if (rest.empty()) {
            // The caller learns the section was there, and gets it.
            out = child->sectionId_;
            return Codes::k_present;
        }
    } else {
        // Numbers rise from 0; the holes left by explicitly numbered
        // sections are searched only once 62 has been handed out.
        std::size_t const maxNumber = InfoItemSectionId::MaxSubsectionPerSubsection();
        std::size_t number = 0;
        if (!subsectionsByNumber_.empty()) {
            number = static_cast<std::size_t>(subsectionsByNumber_.rbegin()->first) + 1;
            if (number > maxNumber) {
                number = 0;
                for (auto const& entry : subsectionsByNumber_) {
                    if (entry.first != number) {
                        break;
                    }
                    ++number;
                }
                if (number > maxNumber) {
                    return Codes::k_exhausted;
                }
            }
        }
        unsigned char const subsectionId = static_cast<unsigned char>(number);
        SectionId const childId =
            isRoot_ ? SectionId(head, InfoItemSectionId::CreateLevel1SectionId(subsectionId))
                    : sectionId_.CreateSectionId(head, subsectionId);
        int const result = AddNewSectionMapElement_(childId, child);
        if (result < 0) {
            return result;
        }
        if (!child) {
            return Codes::k_nullPointer;
        }
    }
    return child->AddSection_(rest, out);
}

int SectionMapElement::AddSection_(SectionId const& sectionId) {
    if (sectionId == SectionId()) {
        return Codes::k_invalid;
    }
    // An existing section is a success: change sets add sections that may
    // already be there.
    if (sectionId == sectionId_) {
        return Codes::k_ok;
    }
    std::size_t const depth = Depth_();
    if (sectionId.GetSectionDepth() <= depth) {
        return Codes::k_invalid;
    }
    if (!isRoot_ && (sectionId.GetSectionName(depth) != sectionId_.GetSectionName() ||
                     sectionId.GetInfoItemSectionId(depth) != sectionId_.GetInfoItemSectionId())) {
        return Codes::k_invalid;
    }
    SectionId const next(sectionId.GetSectionName(depth + 1),
                         sectionId.GetInfoItemSectionId(depth + 1));
    std::shared_ptr<SectionMapElement> child;
    int const result = AddNewSectionMapElement_(next, child);
    if (result < 0) {
        return result;
    }
    if (!child) {
        return Codes::k_nullPointer;
    }
    return child->AddSection_(sectionId);
}

int SectionMapElement::FindSection_(std::string const& name, SectionId& out) const {
    SectionMapElement const* node = this;
    int const result = WalkPath(node, name, &SectionMapElement::subsectionsByName_);
    if (result < 0) {
        return result;
    }
    if (node->isRoot_) {
        return Codes::k_notFound;
    }
    out = node->sectionId_;
    return Codes::k_ok;
}

int SectionMapElement::FindSection_(InfoItemSectionId const& id, SectionId& out) const {
    std::size_t const depth = Depth_();
    if (IsCleared(id) || id.Depth() < depth) {
        return Codes::k_invalid;
    }
    if (!isRoot_ && id.GetSectionId(depth) != sectionId_.GetInfoItemSectionId()) {
        return Codes::k_notFound;
    }
    if (id.Depth() == depth) {
        out = sectionId_;
        return Codes::k_ok;
    }
    std::shared_ptr<SectionMapElement> next;
    int const result = FindNextSectionMapElement_(id, next);
    if (result < 0) {
        return result;
    }
    return next->FindSection_(id, out);
}

void SectionMapElement::GetTopLevelSections_(std::vector<SectionId>& out) const {
    for (auto const& entry : subsectionsByNumber_) {
        if (entry.second) {
            out.push_back(entry.second->sectionId_);
        }
    }
}

int SectionMapElement::GetSubsections_(InfoItemSectionId const& id,
                                       std::vector<SectionId>& out) const {
    std::size_t const depth = Depth_();
    if (IsCleared(id) || id.Depth() < depth) {
        return Codes::k_invalid;
    }
    if (!isRoot_ && id.GetSectionId(depth) != sectionId_.GetInfoItemSectionId()) {
        return Codes::k_notFound;
    }
    if (id.Depth() == depth) {
        GetTopLevelSections_(out);
        return Codes::k_ok;
    }
    std::shared_ptr<SectionMapElement> next;
    int const result = FindNextSectionMapElement_(id, next);
    if (result < 0) {
        return result;
    }
    return next->GetSubsections_(id, out);
}

void SectionMapElement::GetLeafSections_(std::list<SectionId>& out) const {
    if (!isRoot_ && subsectionsByName_.empty()) {
        if (sectionId_.IsValid()) {
            out.push_back(sectionId_);
        }
        return;
    }
    for (auto const& entry : subsectionsByName_) {
        if (entry.second) {
            entry.second->GetLeafSections_(out);
        }
    }
}

int SectionMapElement::AddNewInfo_(InfoItemSectionId const& id, std::string const& name,
                                   InfoItemSectionId& out) {
    // `out` may be `id` itself, so the id is read before anything is written.
    InfoItemSectionId const newId = id;
    auto const byName = infosByName_.find(name);
    if (byName != infosByName_.end()) {
        // Whatever the id, the name is taken; the caller gets the id it has.
        out = byName->second;
        return Codes::k_present;
    }
    if (infosById_.find(newId) != infosById_.end()) {
        return Codes::k_present;
    }
    auto const inserted = infosById_.emplace(newId, name).first;
    try {
        infosByName_.emplace(name, newId);
    } catch (...) {
        infosById_.erase(inserted);
        throw;
    }
    out = newId;
    return Codes::k_ok;
}

int SectionMapElement::AddInfo_(InfoItemSectionId const& id, std::string const& name) {
    std::size_t const depth = Depth_();
    if (IsCleared(id) || id.Depth() < depth) {
        return Codes::k_invalid;
    }
    // -41 here where FindSection_ says -25: callers rely on this code.
    if (!isRoot_ && id.GetSectionId(depth) != sectionId_.GetInfoItemSectionId()) {
        return Codes::k_invalid;
    }
    if (id.Depth() == depth) {
        InfoItemSectionId scratch;
        return AddNewInfo_(id, name, scratch);
    }
    std::shared_ptr<SectionMapElement> next;
    int const result = FindNextSectionMapElement_(id, next);
    if (result < 0) {
        return result;
    }
    return next->AddInfo_(id, name);
}

int SectionMapElement::AddInfo_(std::string const& sectionName, std::string const& infoName,
                                InfoItemSectionId& id) {
    if (!sectionName.empty()) {
        std::string rest;
        std::shared_ptr<SectionMapElement> next;
        int const result = FindNextSectionMapElement_(sectionName, rest, next);
        if (result < 0) {
            return result;
        }
        return next->AddInfo_(rest, infoName, id);
    }
    if (isRoot_) {
        return Codes::k_notFound;
    }
    std::size_t const maxNumber = sectionId_.GetMaxNumInfoItemsInSection();
    std::size_t number = 0;
    if (!infosById_.empty()) {
        // The highest number is read back as one byte, so a section takes at
        // most 257 allocated infos; existing ids rely on this numbering.
        number = static_cast<std::size_t>(infosById_.rbegin()->first.GetInfoItemSubsectionId()) + 1;
        if (number > maxNumber) {
            number = 0;
            for (auto const& entry : infosById_) {
                if (entry.first.GetInfoItemSubsectionId() != number) {
                    break;
                }
                ++number;
            }
            if (number > maxNumber) {
                return Codes::k_exhausted;
            }
        }
    }
    id = sectionId_.GetInfoItemSectionId().CreateInfoItemId(number);
    return AddNewInfo_(id, infoName, id);
}

int SectionMapElement::FindInfo_(std::string const& sectionName, std::string const& infoName,
                                 InfoItemSectionId& id) const {
    SectionMapElement const* node = this;
    int const result = WalkPath(node, sectionName, &SectionMapElement::subsectionsByName_);
    if (result < 0) {
        return result;
    }
    if (node->isRoot_) {
        return Codes::k_notFound;
    }
    auto const found = node->infosByName_.find(infoName);
    if (found == node->infosByName_.end()) {
        return Codes::k_notFound;
    }
    id = found->second;
    return Codes::k_ok;
}

int SectionMapElement::FindInfo_(InfoItemSectionId const& id, std::string& sectionName,
                                 std::string& infoName) const {
    if (IsCleared(id)) {
        return Codes::k_invalid;
    }
    if (id.Depth() > Depth_()) {
        std::shared_ptr<SectionMapElement> next;
        int const result = FindNextSectionMapElement_(id, next);
        if (result < 0) {
            return result;
        }
        return next->FindInfo_(id, sectionName, infoName);
    }
    if (id.GetSectionId(id.Depth()) != sectionId_.GetInfoItemSectionId(id.Depth())) {
        return Codes::k_notFound;
    }
    if (!id.IsValidInfoItemId()) {
        return Codes::k_invalid;
    }
    auto const found = infosById_.find(id);
    if (found == infosById_.end()) {
        return Codes::k_notFound;
    }
    sectionName = sectionId_.GetSectionName();
    infoName = found->second;
    return Codes::k_ok;
}

int SectionMapElement::GetInfos_(InfoItemSectionId const& id,
                                 std::vector<unsigned int>& out) const {
    if (IsCleared(id)) {
        return Codes::k_invalid;
    }
    std::size_t const depth = Depth_();
    if (id.Depth() > depth) {
        std::shared_ptr<SectionMapElement> next;
        int const result = FindNextSectionMapElement_(id, next);
        if (result < 0) {
            return result;
        }
        return next->GetInfos_(id, out);
    }
    bool const wildcard = id.IsValidWildcardSectionId();
    // An info id fails this test against its own section and answers -25;
    // kept as it is because callers rely on that code.
    if (!wildcard && id != sectionId_.GetInfoItemSectionId(id.Depth())) {
        return Codes::k_notFound;
    }
    if (id.IsValidInfoItemId()) {
        if (infosById_.find(id) != infosById_.end()) {
            out.push_back(id);
        }
        return Codes::k_ok;
    }
    if (!(wildcard && id.Depth() == depth)) {
        for (auto const& entry : infosById_) {
            out.push_back(entry.first);
        }
    }
    for (auto const& entry : subsectionsByName_) {
        if (!entry.second) {
            return Codes::k_nullPointer;
        }
        int const result = entry.second->GetInfos_(id, out);
        if (result < 0) {
            return result;
        }
    }
    return Codes::k_ok;
}

SectionMap::SectionMap() : root_(new SectionMapElement()) {}

int SectionMap::AddSection(std::string const& name, SectionId& out) {
    return root_->AddSection_(name, out);
}

int SectionMap::AddSection(SectionId const& sectionId) {
    return root_->AddSection_(sectionId);
}

int SectionMap::FindSection(std::string const& name, SectionId& out) const {
    return root_->FindSection_(name, out);
}

int SectionMap::FindSection(InfoItemSectionId const& id, SectionId& out) const {
    return root_->FindSection_(id, out);
}

void SectionMap::GetTopLevelSections(std::vector<SectionId>& out) const {
    root_->GetTopLevelSections_(out);
}

int SectionMap::GetSubsections(InfoItemSectionId const& id, std::vector<SectionId>& out) const {
    return root_->GetSubsections_(id, out);
}

void SectionMap::GetLeafSections(std::list<SectionId>& out) const {
    root_->GetLeafSections_(out);
}

int SectionMap::AddInfo(InfoItemSectionId const& id, std::string const& name) {
    return root_->AddInfo_(id, name);
}

int SectionMap::AddInfo(std::string const& sectionName, std::string const& infoName,
                        InfoItemSectionId& id) {
    return root_->AddInfo_(sectionName, infoName, id);
}

int SectionMap::FindInfo(std::string const& sectionName, std::string const& infoName,
                         InfoItemSectionId& id) const {
    return root_->FindInfo_(sectionName, infoName, id);
}

int SectionMap::FindInfo(InfoItemSectionId const& id, std::string& sectionName,
                         std::string& infoName) const {
    return root_->FindInfo_(id, sectionName, infoName);
}

int SectionMap::GetInfos(InfoItemSectionId const& id, std::vector<unsigned int>& out) const {
    return root_->GetInfos_(id, out);
}

void SectionMap::Clear() {
    root_.reset(new SectionMapElement());
}

}  // namespace Oru
}  // namespace Legacy
