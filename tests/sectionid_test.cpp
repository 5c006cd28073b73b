#include <legacy/oru/sectionid.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using Legacy::Oru::InfoItemSectionId;
using Legacy::Oru::SectionId;

namespace {

unsigned int const k_cleared = 0xFFFFFFFFu;

std::string Hex(unsigned int value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return text;
}

// Depth and class flags as one short string, to compare rows at a glance.
std::string Describe(InfoItemSectionId const& id) {
    return "d" + std::to_string(id.Depth()) + (id.IsValid() ? " valid" : "") +
           (id.IsValidSectionId() ? " section" : "") + (id.IsValidInfoItemId() ? " info" : "") +
           (id.IsValidWildcardSectionId() ? " wildcard" : "") + " max" +
           std::to_string(id.MaxNumInfoItemsInSection());
}

}  // namespace

TEST(InfoItemSectionIdTest, AudioInputWorkedExample) {
    InfoItemSectionId const level1 = InfoItemSectionId::CreateLevel1SectionId(2);
    EXPECT_EQ(Hex(level1), "0x02FFFFFF");
    InfoItemSectionId const section = level1.CreateSectionId(3);
    EXPECT_EQ(Hex(section), "0x420FFFFF");
    InfoItemSectionId const info = section.CreateInfoItemId(5);
    EXPECT_EQ(Hex(info), "0x420C0005");
    EXPECT_EQ(Hex(info.GetSectionId(1)), "0x02FFFFFF");
    EXPECT_EQ(Hex(info.GetSectionId(2)), "0x420FFFFF");
    EXPECT_EQ(Hex(info.GetSectionId(3)), "0xFFFFFFFF");
    EXPECT_EQ(info.GetSubsectionId(1), 2);
    EXPECT_EQ(info.GetSubsectionId(2), 3);
    EXPECT_EQ(info.GetSubsectionId(3), 255);
    EXPECT_EQ(info.GetInfoItemSubsectionId(), 5);

    // Depth 4 with the numbers 2, 3, 7, 9.
    InfoItemSectionId const deep = section.CreateSectionId(7).CreateSectionId(9);
    EXPECT_EQ(Hex(deep), "0xC20C727F");
    EXPECT_EQ(Hex(deep.CreateInfoItemId(4)), "0xC20C7244");
    EXPECT_EQ(Hex(deep.CreateInfoItemId(64 + 4)), "0xC20C7244");  // only 6 bits fit
    EXPECT_EQ(Hex(deep.GetSectionId(3)), "0x820C7FFF");
    EXPECT_EQ(Hex(deep.CreateInfoItemId(4).GetSectionId(4)), "0xC20C727F");
    EXPECT_EQ(deep.GetSubsectionId(4), 9);
    EXPECT_EQ(Hex(level1.CreateSectionId(63)), "0x42FFFFFF");
}

TEST(InfoItemSectionIdTest, ClassOfEveryKindOfValue) {
    struct Row {
        unsigned int raw;
        char const* expected;
    };
    Row const rows[] = {
        {0x02FFFFFF, "d1 valid section max16777215"},
        {0x420C0005, "d2 valid info max262143"},
        {0x80000FFF, "d3 valid section max4095"},
        {0xC20C727F, "d4 valid section max63"},
        {0xC20C7244, "d4 valid info max63"},
        {0x3FFFFFFF, "d1 valid wildcard max16777215"},
        {0x42FFFFFF, "d2 valid wildcard max262143"},
        // The cleared id passes IsValid: it is the depth-4 wildcard.
        {k_cleared, "d4 valid wildcard max63"},
        {0x3F000000, "d1 max0"},
        {0xC0000FC0, "d4 max0"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(Hex(row.raw));
        EXPECT_EQ(Describe(InfoItemSectionId(row.raw)), row.expected);
    }
    EXPECT_EQ(InfoItemSectionId::MaxDepth(), 4u);
    EXPECT_EQ(InfoItemSectionId::MaxSubsectionPerSubsection(), 62u);
    EXPECT_EQ(InfoItemSectionId(), k_cleared);
}

TEST(InfoItemSectionIdTest, DerivationsGuardOnlyWhatTheyMust) {
    // A subsection of an info id keeps the numbers above and resets the rest.
    EXPECT_EQ(Hex(InfoItemSectionId(0x420C0005).CreateSectionId(7)), "0x820C7FFF");
    // 64 loses its high bit; depth 4 has no room for anything.
    EXPECT_EQ(Hex(InfoItemSectionId(0x02FFFFFF).CreateSectionId(64)), "0x4203FFFF");
    for (unsigned char n : {0, 9, 63}) {
        SCOPED_TRACE(static_cast<int>(n));
        EXPECT_EQ(Hex(InfoItemSectionId(0xC20C727F).CreateSectionId(n)), "0xFFFFFFFF");
    }
    // Only IsValid guards CreateInfoItemId.
    EXPECT_EQ(Hex(InfoItemSectionId(0x3F000000).CreateInfoItemId(1)), "0xFFFFFFFF");
    EXPECT_EQ(Hex(InfoItemSectionId(0x3FFFFFFF).CreateInfoItemId(1)), "0x3F000001");
    EXPECT_EQ(Hex(InfoItemSectionId(0x02FFFFFF).CreateInfoItemId(0xFFFFFF)), "0x02FFFFFF");

    for (unsigned int raw : {0x02FFFFFFu, 0x420C0005u, 0x3F000000u, k_cleared}) {
        SCOPED_TRACE(Hex(raw));
        InfoItemSectionId const id(raw);
        EXPECT_EQ(id.GetSubsectionId(0), 255);
        EXPECT_EQ(id.GetSectionId(0), k_cleared);
        EXPECT_EQ(id.GetSubsectionId(5), 255);
        EXPECT_EQ(id.GetSectionId(5), k_cleared);
    }
    EXPECT_EQ(InfoItemSectionId(0x3F000000).GetSubsectionId(1), 255);

    // The info number is narrowed to a byte at depths 1 to 3.
    EXPECT_EQ(InfoItemSectionId(0x02FFFFFF).GetInfoItemSubsectionId(), 255);
    EXPECT_EQ(InfoItemSectionId(0x3FFFFFFF).GetInfoItemSubsectionId(), 255);
    EXPECT_EQ(InfoItemSectionId(0x02000100).GetInfoItemSubsectionId(), 0);
    EXPECT_EQ(InfoItemSectionId(0x020000FF).GetInfoItemSubsectionId(), 255);
    EXPECT_EQ(InfoItemSectionId(0x80000ABC).GetInfoItemSubsectionId(), 0xBC);
    // At depth 4 the info number is the 6-bit field itself, not a byte.
    InfoItemSectionId const deep(0xC20C727F);
    EXPECT_EQ(deep.CreateInfoItemId(4), 0xC20C7244u);
    EXPECT_EQ(deep.CreateInfoItemId(4).GetInfoItemSubsectionId(), 4);
    EXPECT_EQ(deep.CreateInfoItemId(62).GetInfoItemSubsectionId(), 62);
    // All six bits set make the section's own id, which is no info.
    EXPECT_EQ(deep.CreateInfoItemId(63).GetInfoItemSubsectionId(), 255);
    EXPECT_EQ(InfoItemSectionId(0xC20C72C4).GetInfoItemSubsectionId(), 4);

    InfoItemSectionId id(0x02FFFFFF);
    id.Clear();
    EXPECT_EQ(id, k_cleared);
}

TEST(InfoItemSectionIdTest, OrderIsByRawValue) {
    InfoItemSectionId const section(0x02FFFFFF);
    InfoItemSectionId const info(0x02000005);
    InfoItemSectionId const deeper(0x400FFFFF);
    EXPECT_TRUE(info < section);    // a section sorts after its infos
    EXPECT_TRUE(section < deeper);  // all of depth 1 before depth 2
    EXPECT_TRUE(section <= section);
    EXPECT_FALSE(section < section);
    EXPECT_TRUE(section != info);
    EXPECT_TRUE(section == InfoItemSectionId(0x02FFFFFF));
}

TEST(SectionIdTest, ParsesAndValidatesAgainstTheDepth) {
    struct Row {
        char const* name;
        unsigned int raw;
        char const* levels;  // "whole|path1|...|sub1|..." or "" when invalid
    };
    Row const rows[] = {
        {"Audio/Input", 0x420FFFFF, "Audio/Input|Audio|Audio/Input|Audio|Input"},
        {"Audio", 0x420FFFFF, ""},
        {"", 0x02FFFFFF, ""},
        {"/a", 0x00FFFFFF, "/a|/a|a"},
        {"a/", 0x400FFFFF, "a/|a|a/|a|"},
        {"a//b", 0x80000FFF, "a//b|a|a/|a//b|a||b"},
        {"a/b/c/d/e", 0xC20C727F, "a/b/c/d/e|a|a/b|a/b/c|a/b/c/d/e|a|b|c|d/e"},
        {"a/b", 0x420C0005, ""},  // an info id names no section
        {"a", 0x3FFFFFFF, ""},    // nor does a wildcard
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        SectionId const section(row.name, row.raw);
        std::string levels;
        if (section.IsValid()) {
            levels = section.GetSectionName();
            for (std::size_t level = 1; level <= section.GetSectionDepth(); ++level) {
                levels += "|" + section.GetSectionName(level);
            }
            for (std::size_t level = 1; level <= section.GetSectionDepth(); ++level) {
                levels += "|" + section.GetSubsectionName(level);
            }
            EXPECT_EQ(section.GetSectionDepth(), section.GetInfoItemSectionId().Depth());
            EXPECT_EQ(section.GetInfoItemSectionId(), row.raw);
            EXPECT_EQ(section.GetSectionName(0), "");
            EXPECT_EQ(section.GetSubsectionName(section.GetSectionDepth() + 1), "");
        } else {
            // A refused section is the cleared one, never half of it.
            EXPECT_EQ(section.GetSectionName(), "");
            EXPECT_EQ(section.GetInfoItemSectionId(), k_cleared);
            EXPECT_EQ(section.GetSectionDepth(), 0u);
            EXPECT_EQ(section.GetSectionName(1), "");
            EXPECT_EQ(section.GetMaxNumInfoItemsInSection(), 63u);
            EXPECT_TRUE(section == SectionId());
        }
        EXPECT_EQ(levels, row.levels);
    }
    EXPECT_TRUE(SectionId("a/b/c/d/e", 0xC20C727F).IsLastSectionLevel());
    EXPECT_FALSE(SectionId("a/b/c", 0x80000FFF).IsLastSectionLevel());
    EXPECT_EQ(SectionId("Audio/Input", 0x420FFFFF).GetSubsectionId(2), 3);
    EXPECT_EQ(SectionId("Audio/Input", 0x420FFFFF).GetInfoItemSectionId(1), 0x02FFFFFFu);
}

TEST(SectionIdTest, CreatesSubsectionsAndCompares) {
    SectionId audio("Audio", 0x02FFFFFF);
    SectionId const input = audio.CreateSectionId("Input", 3);
    EXPECT_TRUE(input.IsValid());
    EXPECT_EQ(input.GetSectionName(), "Audio/Input");
    EXPECT_EQ(input.GetInfoItemSectionId(), 0x420FFFFFu);
    EXPECT_FALSE(audio.CreateSectionId("x/y", 3).IsValid());

    SectionId deep("a/b/c/d", 0xC20C727F);
    SectionId const none = deep.CreateSectionId("e", 0);
    EXPECT_FALSE(none.IsValid());
    EXPECT_EQ(none.GetSectionName(), "");

    SectionId const x("x", 0x02FFFFFF);
    SectionId const y("y", 0x02FFFFFF);
    SectionId const first("z", 0x00FFFFFF);
    EXPECT_TRUE(x != y);
    EXPECT_TRUE(x < y);
    EXPECT_FALSE(y < x);
    EXPECT_TRUE(first < x);  // the number decides before the name
    EXPECT_TRUE(x <= x);
    EXPECT_FALSE(y <= x);

    SectionId cleared = input;
    cleared.Clear();
    EXPECT_FALSE(cleared.IsValid());
    EXPECT_TRUE(cleared == SectionId());
    EXPECT_EQ(cleared.GetSubsectionName(1), "");
}
