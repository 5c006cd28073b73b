// The packed 32-bit address of a section or a setting, and the named section
// built on it. Both are plain values: they hold no references and take no
// locks; const operations may run in several threads at once.
//
// Layout of an InfoItemSectionId (fixed: it is the id of every Info and Item):
//   bits 31-30  depth code (depth - 1)
//   bits 29-24  level-1 subsection number
//   bits 23-18  level-2 subsection number, at depth 2 or more
//   bits 17-12  level-3 subsection number, at depth 3 or more
//   bits 11-6   level-4 subsection number, at depth 4
// Every bit below the field of the deepest level is the info-item field. An
// own-level field of 63 marks a wildcard; an info-item field of all ones marks
// a section rather than an info.
#ifndef LEGACY_ORU_SECTIONID_H
#define LEGACY_ORU_SECTIONID_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {

// A packed section, info-item or wildcard id. 0xFFFFFFFF is the cleared id,
// which every failing operation answers.
class ORU_API InfoItemSectionId {
public:
    // Stores the raw value, unchecked.
    InfoItemSectionId(unsigned int const& id = 0xFFFFFFFF);
    InfoItemSectionId(InfoItemSectionId const& other) = default;
    InfoItemSectionId& operator=(InfoItemSectionId const& other) = default;

    // The depth-1 section id with the low 6 bits of `subsectionId` as its number.
    static InfoItemSectionId CreateLevel1SectionId(unsigned char const& subsectionId);

    // The id of subsection `subsectionId` (low 6 bits) one level below this
    // one; 0xFFFFFFFF at depth 4. 63 makes the wildcard of that level.
    InfoItemSectionId CreateSectionId(unsigned char const& subsectionId) const;

    // The id of info `infoItemId` (its low bits, as many as the field holds) in
    // this section; 0xFFFFFFFF if this id is not valid.
    InfoItemSectionId CreateInfoItemId(std::size_t const& infoItemId) const;

    // The section id of the ancestor at `level` (1 to Depth()), else 0xFFFFFFFF.
    InfoItemSectionId GetSectionId(std::size_t level) const;

    // The subsection number at `level` (1 to Depth()), else 255.
    unsigned char GetSubsectionId(std::size_t level) const;

    // The info number, cut to its low byte at depths 1 to 3; 255 if this is no
    // info-item id.
    unsigned char GetInfoItemSubsectionId() const;

    // Stores the cleared id 0xFFFFFFFF.
    void Clear();

    // The raw value.
    operator unsigned int() const;

    // Comparisons by raw value; there are deliberately no > and >=.
    bool operator==(InfoItemSectionId const& other) const;
    bool operator!=(InfoItemSectionId const& other) const;
    bool operator<(InfoItemSectionId const& other) const;
    bool operator<=(InfoItemSectionId const& other) const;

    // Comparisons with a raw number, so that `id == 0xFFFFFFFF` is not
    // ambiguous between these operators and the built-in ones.
    template <typename T, typename = std::enable_if_t<std::is_integral<T>::value>>
    bool operator==(T raw) const {
        return id_ == static_cast<unsigned int>(raw);
    }
    template <typename T, typename = std::enable_if_t<std::is_integral<T>::value>>
    bool operator!=(T raw) const {
        return id_ != static_cast<unsigned int>(raw);
    }
    template <typename T, typename = std::enable_if_t<std::is_integral<T>::value>>
    bool operator<(T raw) const {
        return id_ < static_cast<unsigned int>(raw);
    }
    template <typename T, typename = std::enable_if_t<std::is_integral<T>::value>>
    bool operator<=(T raw) const {
        return id_ <= static_cast<unsigned int>(raw);
    }

    // 1 to 4, read from the top two bits (so 4 for the cleared id).
    std::size_t Depth() const;

    // 4: the deepest level a section can lie at.
    static std::size_t MaxDepth();

    // 62: the highest subsection number; 63 is the wildcard value.
    static std::size_t MaxSubsectionPerSubsection();

    // The largest info number this id's depth has room for; 0 if not valid.
    std::size_t MaxNumInfoItemsInSection() const;

    // True unless the own-level field is 63 and the info-item field is not
    // all ones.
    bool IsValid() const;
    // Own-level field below 63, info-item field all ones.
    bool IsValidSectionId() const;
    // Own-level field below 63, info-item field not all ones.
    bool IsValidInfoItemId() const;
    // Own-level field 63, info-item field all ones (0xFFFFFFFF is one).
    bool IsValidWildcardSectionId() const;

private:
    static std::size_t const k_maxDepth = 4;

    unsigned int id_;
};

// A section's path name, its levels divided by "/", together with its packed
// id. Either valid, with as many name levels as the id has depth and a section
// id, or cleared: empty name, no levels, id 0xFFFFFFFF.
class ORU_API SectionId {
public:
    static constexpr char k_sectionDelim = '/';

    // The cleared, invalid section.
    SectionId();
    SectionId(SectionId const& other) = default;
    SectionId& operator=(SectionId const& other) = default;

    // Parses `sectionName` and keeps it with `id` if both agree; otherwise the
    // result is the cleared section. A leading "/" is optional, a trailing one
    // makes an empty last level, and past 4 levels the rest of the name is the
    // fourth level.
    SectionId(std::string const& sectionName, InfoItemSectionId const& id);

    // The subsection `subsectionName` with number `subsectionId` one level
    // below this one; cleared if it would be deeper than 4 levels or does not
    // validate. Not const, as callers link against it in that form.
    SectionId CreateSectionId(std::string const& subsectionName, unsigned char const& subsectionId);

    // Makes this the cleared, invalid section.
    void Clear();

    // Same id and same name.
    bool operator==(SectionId const& other) const;
    bool operator!=(SectionId const& other) const;
    // Ordered by id, then by name.
    bool operator<(SectionId const& other) const;
    bool operator<=(SectionId const& other) const;

    // The whole path name.
    std::string const& GetSectionName() const;
    // The path down to `level` (1 to the depth), leading "/" included; else "".
    std::string GetSectionName(std::size_t level) const;
    // The one name component of `level` (1 to the depth); else "".
    std::string GetSubsectionName(std::size_t level) const;

    // The packed id.
    InfoItemSectionId const& GetInfoItemSectionId() const;
    // The packed id of the ancestor at `level`.
    InfoItemSectionId GetInfoItemSectionId(std::size_t level) const;
    // The subsection number at `level`, 255 if there is none.
    unsigned char GetSubsectionId(std::size_t level) const;

    // The number of name levels: 0 if cleared, else 1 to 4.
    std::size_t GetSectionDepth() const;
    // The info room of this section's depth; 0 if cleared.
    std::size_t GetMaxNumInfoItemsInSection() const;

    bool IsValid() const;
    // True at depth 4, below which no section can exist.
    bool IsLastSectionLevel() const;

private:
    void ParseSectionName_();
    bool Validate_() const;

    static std::uint64_t const k_maxSectionLevels = 4;

    std::string sectionName_;
    InfoItemSectionId id_;
    std::vector<std::size_t> levelStarts_;
    bool valid_;
};

}  // namespace Oru
}  // namespace Legacy

#endif
