#include <legacy/oru/sectionid.h>

namespace Legacy {
namespace Oru {

namespace {

unsigned int const k_cleared = 0xFFFFFFFFu;
unsigned int const k_fieldMask = 0x3Fu;
unsigned int const k_wildcardField = 0x3Fu;
unsigned int const k_depthShift = 30;
unsigned int const k_levelBits = 0x3FFFFFFFu;  // everything below the depth code

// Position of the lowest bit of the 6-bit field of `level` (1 to 4).
unsigned int FieldShift(std::size_t level) {
    return 30u - 6u * static_cast<unsigned int>(level);
}

// The info-item field of an id of depth `depth` (1 to 4): the bits below the
// field of that level.
unsigned int InfoMask(std::size_t depth) {
    return (1u << FieldShift(depth)) - 1u;
}

unsigned int DepthOf(unsigned int raw) {
    return (raw >> k_depthShift) + 1u;
}

unsigned int OwnField(unsigned int raw) {
    return (raw >> FieldShift(DepthOf(raw))) & k_fieldMask;
}

bool InfoAllOnes(unsigned int raw) {
    unsigned int const mask = InfoMask(DepthOf(raw));
    return (raw & mask) == mask;
}

}  // namespace

InfoItemSectionId::InfoItemSectionId(unsigned int const& id) : id_(id) {}

InfoItemSectionId InfoItemSectionId::CreateLevel1SectionId(unsigned char const& subsectionId) {
    return InfoItemSectionId(((subsectionId & k_fieldMask) << FieldShift(1)) | InfoMask(1));
}

InfoItemSectionId InfoItemSectionId::CreateSectionId(unsigned char const& subsectionId) const {
    std::size_t const depth = Depth();
    if (depth == k_maxDepth) {
        return InfoItemSectionId(k_cleared);
    }
    std::size_t const level = depth + 1;
    unsigned int const shift = FieldShift(level);
    // Neither this id nor the number is checked: the section map validates
    // the result through SectionId, and 63 is how a wildcard is made.
    unsigned int value = id_ & k_levelBits & ~((k_fieldMask << shift) | InfoMask(level));
    value |= static_cast<unsigned int>(depth) << k_depthShift;
    value |= (subsectionId & k_fieldMask) << shift;
    value |= InfoMask(level);
    return InfoItemSectionId(value);
}

InfoItemSectionId InfoItemSectionId::CreateInfoItemId(std::size_t const& infoItemId) const {
    if (!IsValid()) {
        return InfoItemSectionId(k_cleared);
    }
    unsigned int const mask = InfoMask(Depth());
    return InfoItemSectionId((id_ & ~mask) | (static_cast<unsigned int>(infoItemId) & mask));
}

InfoItemSectionId InfoItemSectionId::GetSectionId(std::size_t level) const {
    if (!IsValid() || level == 0 || level > Depth()) {
        return InfoItemSectionId(k_cleared);
    }
    // Keep the fields of levels 1 to `level`, then stamp that depth and an
    // all-ones info-item field.
    unsigned int const keep = k_levelBits & ~InfoMask(level);
    unsigned int const depthCode = static_cast<unsigned int>(level - 1) << k_depthShift;
    return InfoItemSectionId((id_ & keep) | depthCode | InfoMask(level));
}

unsigned char InfoItemSectionId::GetSubsectionId(std::size_t level) const {
    if (!IsValid() || level == 0 || level > Depth()) {
        return 255;
    }
    return static_cast<unsigned char>((id_ >> FieldShift(level)) & k_fieldMask);
}

unsigned char InfoItemSectionId::GetInfoItemSubsectionId() const {
    if (!IsValidInfoItemId()) {
        return 255;
    }
    if (Depth() == k_maxDepth) {
        return static_cast<unsigned char>(id_ & k_fieldMask);
    }
    // Only the low byte of the wider fields: the info number allocation of the
    // section map depends on this narrowing.
    return static_cast<unsigned char>(id_ & 0xFFu);
}

void InfoItemSectionId::Clear() {
    id_ = k_cleared;
}

InfoItemSectionId::operator unsigned int() const {
    return id_;
}

bool InfoItemSectionId::operator==(InfoItemSectionId const& other) const {
    return id_ == other.id_;
}

bool InfoItemSectionId::operator!=(InfoItemSectionId const& other) const {
    return id_ != other.id_;
}

bool InfoItemSectionId::operator<(InfoItemSectionId const& other) const {
    return id_ < other.id_;
}

bool InfoItemSectionId::operator<=(InfoItemSectionId const& other) const {
    return id_ <= other.id_;
}

std::size_t InfoItemSectionId::Depth() const {
    return DepthOf(id_);
}

std::size_t InfoItemSectionId::MaxDepth() {
    return k_maxDepth;
}

std::size_t InfoItemSectionId::MaxSubsectionPerSubsection() {
    return k_wildcardField - 1;
}

std::size_t InfoItemSectionId::MaxNumInfoItemsInSection() const {
    return IsValid() ? InfoMask(Depth()) : 0;
}

bool InfoItemSectionId::IsValid() const {
    return OwnField(id_) != k_wildcardField || InfoAllOnes(id_);
}

bool InfoItemSectionId::IsValidSectionId() const {
    return OwnField(id_) != k_wildcardField && InfoAllOnes(id_);
}

bool InfoItemSectionId::IsValidInfoItemId() const {
    return OwnField(id_) != k_wildcardField && !InfoAllOnes(id_);
}

bool InfoItemSectionId::IsValidWildcardSectionId() const {
    return OwnField(id_) == k_wildcardField && InfoAllOnes(id_);
}

SectionId::SectionId() : id_(k_cleared), valid_(false) {}

SectionId::SectionId(std::string const& sectionName, InfoItemSectionId const& id)
    : sectionName_(sectionName), id_(id), valid_(false) {
    ParseSectionName_();
    valid_ = Validate_();
    if (!valid_) {
        Clear();
    }
}

SectionId SectionId::CreateSectionId(std::string const& subsectionName,
                                     unsigned char const& subsectionId) {
    std::string name;
    name.reserve(sectionName_.size() + 1 + subsectionName.size());
    name += sectionName_;
    name += k_sectionDelim;
    name += subsectionName;
    return SectionId(name, id_.CreateSectionId(subsectionId));
}

void SectionId::Clear() {
    sectionName_.clear();
    levelStarts_.clear();
    id_.Clear();
    valid_ = false;
}

bool SectionId::operator==(SectionId const& other) const {
    return id_ == other.id_ && sectionName_ == other.sectionName_;
}

bool SectionId::operator!=(SectionId const& other) const {
    return !(*this == other);
}

bool SectionId::operator<(SectionId const& other) const {
    if (id_ != other.id_) {
        return id_ < other.id_;
    }
    return sectionName_ < other.sectionName_;
}

bool SectionId::operator<=(SectionId const& other) const {
    return *this < other || *this == other;
}

std::string const& SectionId::GetSectionName() const {
    return sectionName_;
}

std::string SectionId::GetSectionName(std::size_t level) const {
    std::size_t const depth = levelStarts_.size();
    if (!valid_ || level == 0 || level > depth) {
        return std::string();
    }
    if (level == depth) {
        return sectionName_;
    }
    // Up to the delimiter in front of the next level.
    return sectionName_.substr(0, levelStarts_[level] - 1);
}

std::string SectionId::GetSubsectionName(std::size_t level) const {
    std::size_t const depth = levelStarts_.size();
    if (!valid_ || level == 0 || level > depth) {
        return std::string();
    }
    std::size_t const begin = levelStarts_[level - 1];
    std::size_t const end = level == depth ? sectionName_.size() : levelStarts_[level] - 1;
    return sectionName_.substr(begin, end - begin);
}

InfoItemSectionId const& SectionId::GetInfoItemSectionId() const {
    return id_;
}

InfoItemSectionId SectionId::GetInfoItemSectionId(std::size_t level) const {
    return id_.GetSectionId(level);
}

unsigned char SectionId::GetSubsectionId(std::size_t level) const {
    return id_.GetSubsectionId(level);
}

std::size_t SectionId::GetSectionDepth() const {
    return levelStarts_.size();
}

std::size_t SectionId::GetMaxNumInfoItemsInSection() const {
    return id_.MaxNumInfoItemsInSection();
}

bool SectionId::IsValid() const {
    return valid_;
}

bool SectionId::IsLastSectionLevel() const {
    return levelStarts_.size() == k_maxSectionLevels;
}

void SectionId::ParseSectionName_() {
    levelStarts_.clear();
    levelStarts_.reserve(k_maxSectionLevels);
    if (sectionName_.empty()) {
        return;
    }
    // A leading delimiter is optional: it only moves the first start to 1.
    if (sectionName_[0] != k_sectionDelim) {
        levelStarts_.push_back(0);
    }
    std::size_t const length = sectionName_.size();
    std::size_t pos = sectionName_.find(k_sectionDelim);
    // Past the last level the rest of the name, delimiters and all, is the
    // last component.
    while (pos != std::string::npos && levelStarts_.size() < k_maxSectionLevels) {
        levelStarts_.push_back(pos + 1);
        pos = pos + 1 < length ? sectionName_.find(k_sectionDelim, pos + 1) : std::string::npos;
    }
}

bool SectionId::Validate_() const {
    return levelStarts_.size() == id_.Depth() && id_.IsValidSectionId();
}

}  // namespace Oru
}  // namespace Legacy
