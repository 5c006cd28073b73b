#include <legacy/oru/sectionmap.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <list>
#include <string>
#include <type_traits>
#include <vector>

using Legacy::Oru::InfoItemSectionId;
using Legacy::Oru::SectionId;
using Legacy::Oru::SectionMap;
using Legacy::Oru::SectionMapElement;

namespace {

std::string Hex(unsigned int value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return text;
}

std::string Show(SectionId const& section) {
    return section.GetSectionName() + "=" + Hex(section.GetInfoItemSectionId());
}

template <typename Container>
std::string ShowAll(Container const& sections) {
    std::string text;
    for (SectionId const& section : sections) {
        text += (text.empty() ? "" : " ") + Show(section);
    }
    return text;
}

std::string ShowIds(std::vector<unsigned int> const& ids) {
    std::string text;
    for (unsigned int id : ids) {
        text += (text.empty() ? "" : " ") + Hex(id);
    }
    return text;
}

// The map is shared, never copied; elements are held through base pointers.
static_assert(!std::is_copy_constructible<SectionMap>::value, "SectionMap is not copyable");
static_assert(!std::is_copy_assignable<SectionMap>::value, "SectionMap is not assignable");
static_assert(std::has_virtual_destructor<SectionMapElement>::value, "virtual destructor");

// Opens the tree operations of an element, to test copies of one.
class Element : public SectionMapElement {
public:
    Element() = default;
    using SectionMapElement::AddInfo_;
    using SectionMapElement::AddSection_;
    using SectionMapElement::FindInfo_;
    using SectionMapElement::FindSection_;
};

}  // namespace

TEST(SectionMapTest, WorkedExample) {
    SectionMap map;
    SectionId out;
    ASSERT_EQ(map.AddSection("a", out), 0);
    EXPECT_EQ(Show(out), "a=0x00FFFFFF");
    ASSERT_EQ(map.AddSection("b", out), 0);
    EXPECT_EQ(Show(out), "b=0x01FFFFFF");
    ASSERT_EQ(map.AddSection("a/x/y", out), 0);
    EXPECT_EQ(Show(out), "a/x/y=0x80000FFF");
    ASSERT_EQ(map.FindSection("a/x", out), 0);
    EXPECT_EQ(Show(out), "a/x=0x4003FFFF");

    InfoItemSectionId id;
    EXPECT_EQ(map.AddInfo("a", "n", id), 0);
    EXPECT_EQ(id, 0u);
    id = 0x12345678;
    EXPECT_EQ(map.AddInfo("a", "n", id), -47);
    EXPECT_EQ(id, 0u);
    out = SectionId();
    EXPECT_EQ(map.AddSection("a", out), -47);
    EXPECT_EQ(Show(out), "a=0x00FFFFFF");
}

TEST(SectionMapTest, PathsAreParsedLevelByLevel) {
    SectionMap map;
    SectionId out;
    EXPECT_EQ(map.AddSection("", out), -41);
    EXPECT_EQ(map.FindSection("", out), -25);
    EXPECT_EQ(map.AddSection("/", out), -41);
    EXPECT_EQ(map.AddSection("//a", out), -41);

    ASSERT_EQ(map.AddSection("/a/x/", out), 0);  // trailing "/" ends the path
    EXPECT_EQ(Show(out), "a/x=0x4003FFFF");
    struct Row {
        char const* path;
        int result;
        char const* found;
    };
    Row const rows[] = {
        {"a/x", 0, "a/x=0x4003FFFF"},
        {"/a", 0, "a=0x00FFFFFF"},
        {"a//x", 0, "a/x=0x4003FFFF"},
        {"a/y", -25, ""},
        {"a/x//", -41, ""},
        {"b", -25, ""},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.path);
        SectionId found;
        EXPECT_EQ(map.FindSection(row.path, found), row.result);
        EXPECT_EQ(row.result == 0 ? Show(found) : "", row.found);
    }

    // The levels made before a failing one stay.
    EXPECT_EQ(map.AddSection("p/q/r/s/t", out), -41);
    ASSERT_EQ(map.FindSection("p/q/r/s", out), 0);
    EXPECT_EQ(Show(out), "p/q/r/s=0xC100003F");
    EXPECT_TRUE(out.IsLastSectionLevel());
}

TEST(SectionMapTest, NumbersRiseAndHolesWaitUntil62) {
    SectionMap map;
    SectionId out;
    // An explicit number leaves a hole below it that allocation skips.
    ASSERT_EQ(map.AddSection(SectionId("c", InfoItemSectionId::CreateLevel1SectionId(2))), 0);
    ASSERT_EQ(map.AddSection("d", out), 0);
    EXPECT_EQ(out.GetSubsectionId(1), 3);
    for (int n = 4; n <= 62; ++n) {
        ASSERT_EQ(map.AddSection("s" + std::to_string(n), out), 0);
        ASSERT_EQ(out.GetSubsectionId(1), n);
    }
    // Now the holes are filled lowest first, then the level is full.
    ASSERT_EQ(map.AddSection("h0", out), 0);
    EXPECT_EQ(out.GetSubsectionId(1), 0);
    ASSERT_EQ(map.AddSection("h1", out), 0);
    EXPECT_EQ(out.GetSubsectionId(1), 1);
    EXPECT_EQ(map.AddSection("full", out), -22);
    EXPECT_EQ(map.FindSection("full", out), -25);

    std::vector<SectionId> top;
    map.GetTopLevelSections(top);
    ASSERT_EQ(top.size(), 63u);
    EXPECT_EQ(Show(top[0]), "h0=0x00FFFFFF");
    EXPECT_EQ(Show(top[2]), "c=0x02FFFFFF");
    EXPECT_EQ(Show(top[62]), "s62=0x3EFFFFFF");

    map.Clear();
    ASSERT_EQ(map.AddSection("z", out), 0);
    EXPECT_EQ(Show(out), "z=0x00FFFFFF");
}

TEST(SectionMapTest, AddingByIdAcceptsWhatExists) {
    SectionMap map;
    SectionId out;
    ASSERT_EQ(map.AddSection("a/x", out), 0);
    ASSERT_EQ(map.AddSection("b", out), 0);

    SectionId const ax("a/x", 0x4003FFFF);
    EXPECT_EQ(map.AddSection(ax), 0);  // a path would be -47 here
    EXPECT_EQ(map.AddSection("a/x", out), -47);
    EXPECT_EQ(map.AddSection(SectionId()), -41);

    // "a" with the number of "b", and "a/x"'s number under a new name.
    EXPECT_EQ(map.AddSection(SectionId("a/w", 0x4103FFFF)), -47);
    EXPECT_EQ(map.AddSection(SectionId("a/y", 0x4003FFFF)), -47);
    EXPECT_EQ(map.FindSection("a/y", out), -25);

    // Explicit numbers on new levels are kept, with every level above made.
    ASSERT_EQ(map.AddSection(SectionId("c/d/e", 0x85207FFF)), 0);
    ASSERT_EQ(map.FindSection(InfoItemSectionId(0x45203FFF), out), 0);
    EXPECT_EQ(Show(out), "c/d=0x4523FFFF");
}

TEST(SectionMapTest, FindsAndListsByIdAndName) {
    SectionMap map;
    SectionId out;
    ASSERT_EQ(map.AddSection("a/z", out), 0);  // number 0
    ASSERT_EQ(map.AddSection("a/b", out), 0);  // number 1
    ASSERT_EQ(map.AddSection("c", out), 0);

    InfoItemSectionId id;
    ASSERT_EQ(map.AddInfo("a/b", "gain", id), 0);
    EXPECT_EQ(Hex(id), "0x40040000");
    ASSERT_EQ(map.FindSection(id, out), 0);  // an info finds its section
    EXPECT_EQ(Show(out), "a/b=0x4007FFFF");
    EXPECT_EQ(map.FindSection(InfoItemSectionId(0x4008FFFF), out), -25);
    EXPECT_EQ(map.FindSection(InfoItemSectionId(), out), -41);

    std::vector<SectionId> subsections(1, SectionId("keep", 0x3EFFFFFF));
    ASSERT_EQ(map.GetSubsections(0x00FFFFFF, subsections), 0);
    EXPECT_EQ(ShowAll(subsections), "keep=0x3EFFFFFF a/z=0x4003FFFF a/b=0x4007FFFF");
    EXPECT_EQ(map.GetSubsections(0x05FFFFFF, subsections), -25);
    EXPECT_EQ(map.GetSubsections(InfoItemSectionId(), subsections), -41);

    std::list<SectionId> leaves;
    map.GetLeafSections(leaves);
    EXPECT_EQ(ShowAll(leaves), "a/b=0x4007FFFF a/z=0x4003FFFF c=0x01FFFFFF");
    SectionMap empty;
    leaves.clear();
    empty.GetLeafSections(leaves);
    EXPECT_TRUE(leaves.empty());
}

TEST(SectionMapTest, InfosByExplicitAndAllocatedIds) {
    SectionMap map;
    SectionId a;
    SectionId b;
    ASSERT_EQ(map.AddSection("a", a), 0);
    ASSERT_EQ(map.AddSection("b", b), 0);
    InfoItemSectionId const aId = a.GetInfoItemSectionId();

    EXPECT_EQ(map.AddInfo(aId.CreateInfoItemId(10), "ten"), 0);
    InfoItemSectionId id;
    ASSERT_EQ(map.AddInfo("a", "next", id), 0);
    EXPECT_EQ(Hex(id), "0x0000000B");  // after the highest, not the lowest free
    EXPECT_EQ(map.AddInfo(aId.CreateInfoItemId(11), "again"), -47);
    EXPECT_EQ(map.AddInfo(aId.CreateInfoItemId(12), "ten"), -47);
    EXPECT_EQ(map.AddInfo(0x05000001, "nowhere"), -25);
    EXPECT_EQ(map.AddInfo(InfoItemSectionId(), "cleared"), -41);
    ASSERT_EQ(map.AddInfo("b", "ten", id), 0);  // names are unique per section only
    EXPECT_EQ(map.AddInfo("c", "x", id), -25);
    EXPECT_EQ(map.AddInfo("", "x", id), -25);

    std::string section;
    std::string name;
    ASSERT_EQ(map.FindInfo("a", "ten", id), 0);
    EXPECT_EQ(Hex(id), "0x0000000A");
    EXPECT_EQ(map.FindInfo("a", "twelve", id), -25);
    ASSERT_EQ(map.FindInfo(0x0000000B, section, name), 0);
    EXPECT_EQ(section + "/" + name, "a/next");
    EXPECT_EQ(map.FindInfo(aId, section, name), -41);
    EXPECT_EQ(map.FindInfo(0x0000000C, section, name), -25);
    EXPECT_EQ(map.FindInfo(0x05000001, section, name), -25);
    EXPECT_EQ(map.FindInfo(InfoItemSectionId(), section, name), -41);
}

// Lookups of an info by section path walk the path as adding does: one
// optional leading "/", an empty component is -41, and the id found is kept
// only on success.
TEST(SectionMapTest, InfoLookupsWalkThePathLevelByLevel) {
    SectionMap map;
    SectionId out;
    ASSERT_EQ(map.AddSection("a/x", out), 0);
    ASSERT_EQ(map.AddSection("a/AVeryLongSubsectionName", out), 0);
    InfoItemSectionId id;
    ASSERT_EQ(map.AddInfo("a/x", "gain", id), 0);
    ASSERT_EQ(map.AddInfo("a", "level", id), 0);
    ASSERT_EQ(map.AddInfo("a/AVeryLongSubsectionName", "AnEvenLongerInfoName", id), 0);
    struct Row {
        char const* section;
        char const* info;
        int result;
        char const* found;
    };
    Row const rows[] = {
        {"a/x", "gain", 0, "0x40000000"},
        {"/a/x", "gain", 0, "0x40000000"},
        {"a//x", "gain", 0, "0x40000000"},
        {"a/x/", "gain", 0, "0x40000000"},
        {"a", "level", 0, "0x00000000"},
        {"a/AVeryLongSubsectionName", "AnEvenLongerInfoName", 0, "0x40040000"},
        {"a/x", "level", -25, ""},
        {"a", "gain", -25, ""},
        {"", "gain", -25, ""},
        {"b/x", "gain", -25, ""},
        {"a/y", "gain", -25, ""},
        {"/", "gain", -41, ""},
        {"a/x//", "gain", -41, ""},
        {"//a", "gain", -41, ""},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(std::string(row.section) + " " + row.info);
        InfoItemSectionId found(0x12345678);
        EXPECT_EQ(map.FindInfo(row.section, row.info, found), row.result);
        EXPECT_EQ(Hex(found), row.result == 0 ? std::string(row.found) : "0x12345678");
    }
}

TEST(SectionMapTest, AllocatedInfoNumbersStopAt257) {
    SectionMap map;
    SectionId out;
    ASSERT_EQ(map.AddSection("a", out), 0);
    InfoItemSectionId id;
    for (unsigned int n = 0; n <= 256; ++n) {
        ASSERT_EQ(map.AddInfo("a", "i" + std::to_string(n), id), 0);
        ASSERT_EQ(id, n);
    }
    // Number 256 reads back as byte 0, so 1 is tried again, and every add after.
    EXPECT_EQ(map.AddInfo("a", "more", id), -47);
    EXPECT_EQ(map.AddInfo("a", "still more", id), -47);
    EXPECT_EQ(map.FindInfo("a", "more", id), -25);
    EXPECT_EQ(map.AddInfo(0x00000300, "explicit"), 0);

    // At depth 4 the 64th info takes the section's own id; the 65th fails.
    ASSERT_EQ(map.AddSection("d/e/e/p", out), 0);
    for (unsigned int n = 0; n <= 62; ++n) {
        ASSERT_EQ(map.AddInfo("d/e/e/p", "i" + std::to_string(n), id), 0);
    }
    ASSERT_EQ(map.AddInfo("d/e/e/p", "own", id), 0);
    EXPECT_EQ(id, out.GetInfoItemSectionId());
    EXPECT_EQ(map.AddInfo("d/e/e/p", "over", id), -47);
}

TEST(SectionMapTest, GetInfosWalksSubtreesByName) {
    SectionMap map;
    SectionId a;
    SectionId out;
    ASSERT_EQ(map.AddSection("a", a), 0);
    ASSERT_EQ(map.AddSection("a/z", out), 0);
    ASSERT_EQ(map.AddSection("a/b", out), 0);
    ASSERT_EQ(map.AddSection("a/b/leaf", out), 0);
    InfoItemSectionId id;
    ASSERT_EQ(map.AddInfo("a/z", "z0", id), 0);
    ASSERT_EQ(map.AddInfo("a/b/leaf", "l0", id), 0);
    ASSERT_EQ(map.AddInfo("a/b", "b0", id), 0);
    ASSERT_EQ(map.AddInfo(a.GetInfoItemSectionId().CreateInfoItemId(9), "a9"), 0);
    ASSERT_EQ(map.AddInfo(a.GetInfoItemSectionId().CreateInfoItemId(3), "a3"), 0);

    std::vector<unsigned int> ids(1, 7u);
    ASSERT_EQ(map.GetInfos(a.GetInfoItemSectionId(), ids), 0);
    EXPECT_EQ(ShowIds(ids), "0x00000007 0x00000003 0x00000009 0x40040000 0x80040000 0x40000000");

    struct Row {
        unsigned int id;
        int result;
    };
    Row const rows[] = {
        {0x00000003, -25},  // an info id, at its own section
        {0x3FFFFFFF, -25},  // a wildcard, at its own level
        {0x40FFFFFF, -25},  // a wildcard among a's subsections
        {0x05FFFFFF, -25},  // no such section
        {0xFFFFFFFF, -41}, {0x3F000000, -41},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(Hex(row.id));
        ids.clear();
        EXPECT_EQ(map.GetInfos(row.id, ids), row.result);
        EXPECT_TRUE(ids.empty());
    }
    ASSERT_EQ(map.FindSection("a/z", out), 0);
    ASSERT_EQ(map.AddSection("a/z/empty", out), 0);
    ASSERT_EQ(map.GetInfos(out.GetInfoItemSectionId(), ids), 0);
    EXPECT_TRUE(ids.empty());
}

TEST(SectionMapTest, ElementCopiesEachSubtreeTwice) {
    Element root;
    SectionId out;
    ASSERT_EQ(root.AddSection_("a/x", out), 0);
    Element copy(root);

    // The copy reaches "a" through two different objects now.
    EXPECT_EQ(copy.AddSection_(SectionId("a", 0x00FFFFFF)), -47);
    EXPECT_EQ(root.AddSection_(SectionId("a", 0x00FFFFFF)), 0);

    // A section added through a path is not seen through its id.
    ASSERT_EQ(copy.AddSection_("a/y", out), 0);
    InfoItemSectionId const ay = out.GetInfoItemSectionId();
    EXPECT_EQ(copy.FindSection_("a/y", out), 0);
    EXPECT_EQ(copy.FindSection_(ay, out), -25);
    EXPECT_EQ(root.FindSection_("a/y", out), -25);
    ASSERT_EQ(copy.FindSection_(InfoItemSectionId(0x4003FFFF), out), 0);
    EXPECT_EQ(Show(out), "a/x=0x4003FFFF");

    // An info added through the id lands in the by-number copy only, and the
    // original sees neither.
    std::string section;
    std::string name;
    InfoItemSectionId id;
    ASSERT_EQ(copy.AddInfo_(0x00000001, "by-id"), 0);
    EXPECT_EQ(copy.FindInfo_(0x00000001, section, name), 0);
    EXPECT_EQ(copy.FindInfo_("a", "by-id", id), -25);
    EXPECT_EQ(root.FindInfo_(0x00000001, section, name), -25);
}
