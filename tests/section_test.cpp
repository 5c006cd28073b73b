#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/functional/hash.hpp>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using OruTest::TextOf;

// A section as a caller derives it: flags of its own, a deep Clone.
class AreaSection : public Section {
public:
    static unsigned int const k_visible = 1;
    static unsigned int const k_locked = 4;

    AreaSection(SectionId_t const& id, std::string const& name, unsigned int flags)
        : Section(id, name, flags) {}
    Section* Clone() const override { return new AreaSection(*this); }
};

// A set as a caller derives it.
class TagSet : public Set {
public:
    TagSet(unsigned int id, std::string name) : Set(id, std::move(name)) {}
    Set* Clone() const override { return new TagSet(*this); }
    std::string ToString() const override { return GetName() + "#" + std::to_string(GetId()); }
};

using SectionPtr = boost::intrusive_ptr<Section>;
using Sections =
    GenericContainerImpl<Section, SectionPtr, boost::intrusive_ptr<Section const>, SectionId_t>;

std::uint64_t StringHash(std::string const& text) {
    return boost::hash<std::string>()(text);
}

TEST(SectionTest, SectionIdOrdersHashesAndCachesByValue) {
    SectionId_t const none;
    EXPECT_EQ(none.PrimaryId(), 0u);
    EXPECT_EQ(none.SecondaryId(), "");
    EXPECT_EQ(none.hash_value(), 0u);

    // A plain sum that wraps in 64 bits, not a combine.
    SectionId_t const id(0xFFFFFFFFu, "audio");
    EXPECT_EQ(hash_value(id), StringHash("audio") + 0xFFFFFFFFull);
    EXPECT_EQ(boost::hash<SectionId_t>()(id), static_cast<std::size_t>(id.hash_value()));

    // The cache travels with copies and takes no part in equality.
    SectionId_t const cached(7, "b");
    cached.hash_value();
    SectionId_t copy(cached);
    SectionId_t const fresh(7, "b");
    EXPECT_TRUE(copy == fresh);
    EXPECT_FALSE(copy != fresh);
    EXPECT_EQ(copy.hash_value(), fresh.hash_value());
    SectionId_t moved(std::move(copy));
    EXPECT_EQ(moved, fresh);
    EXPECT_EQ(copy.SecondaryId(), "");
    SectionId_t assigned;
    assigned = std::move(moved);
    EXPECT_EQ(moved.SecondaryId(), "");
    EXPECT_EQ(assigned.hash_value(), fresh.hash_value());

    struct Row {
        SectionId_t a, b;
        bool less;
    };
    Row const rows[] = {{{1, "b"}, {1, "c"}, true},
                        {{1, "c"}, {1, "b"}, false},
                        {{1, "z"}, {2, "a"}, true},
                        {{2, "a"}, {1, "z"}, false},
                        {{1, "a"}, {1, "a"}, false}};
    for (Row const& row : rows) {
        SCOPED_TRACE(row.a.SecondaryId() + " " + row.b.SecondaryId());
        EXPECT_EQ(row.a < row.b, row.less);
    }
}

TEST(SectionTest, FlagsAndComparisons) {
    AreaSection section(SectionId_t(3, "left"), "Left", AreaSection::k_visible);
    EXPECT_FALSE(section.CheckFlags(0));
    EXPECT_TRUE(section.CheckFlags(AreaSection::k_visible | AreaSection::k_locked));
    EXPECT_FALSE(section.CheckFlags(AreaSection::k_locked));
    EXPECT_EQ(section.SetFlags(AreaSection::k_locked), 5u);
    EXPECT_EQ(section.ClearFlags(2), 5u);
    EXPECT_EQ(section.ClearFlags(AreaSection::k_visible), 4u);
    EXPECT_EQ(section.GetFlags(), 4u);
    EXPECT_TRUE(section == SectionId_t(3, "left"));
    EXPECT_FALSE(section == SectionId_t(3, "right"));
    EXPECT_TRUE(section == std::string("Left"));
    EXPECT_FALSE(section == std::string("left"));
    EXPECT_EQ(section.GetPrimaryId(), 3u);
    EXPECT_EQ(section.GetSecondaryId(), "left");
}

TEST(SectionTest, TextFormListsInfosAndItemsById) {
    SectionPtr section(new AreaSection(SectionId_t(3, "left"), "Left", 6));
    EXPECT_EQ(TextOf(*section),
              "Name: Left\nPrimaryId: 3\nSecondaryId: left\nFlags: 6\n"
              "===Infos For This Section=================\n"
              "===Items For This Section=================\n");

    for (unsigned int const id : {9u, 2u}) {
        boost::intrusive_ptr<NumericInfo<U32Traits>> info(
            new NumericInfo<U32Traits>(id, "n", Permission_t()));
        info->SetDefault(id);
        section->Infos().Add(boost::intrusive_ptr<InfoHolder>(new InfoHolder(info)));
        section->Items().Add(boost::intrusive_ptr<ItemHolder>(
            new ItemHolder(boost::intrusive_ptr<ItemBase>(info->CreateItem()))));
    }
    EXPECT_EQ(TextOf(*section),
              "Name: Left\nPrimaryId: 3\nSecondaryId: left\nFlags: 6\n"
              "===Infos For This Section=================\n"
              "0 <= 2 <= 4294967295\n0 <= 9 <= 4294967295\n"
              "===Items For This Section=================\n2\n9\n");
}

TEST(SectionTest, ContainerKeysSectionsByIdAndCopiesThroughClone) {
    Sections sections;
    SectionPtr const left(new AreaSection(SectionId_t(1, "left"), "Side", 0));
    SectionPtr const right(new AreaSection(SectionId_t(1, "right"), "Side", 0));
    SectionPtr const top(new AreaSection(SectionId_t(0, "zz"), "Top", 0));
    EXPECT_EQ(sections.Add(right), 0);
    EXPECT_EQ(sections.Add(left), 0);
    EXPECT_EQ(sections.Add(top), 0);
    EXPECT_EQ(sections.Add(SectionPtr(new AreaSection(SectionId_t(1, "left"), "Dup", 0))), -51);
    EXPECT_EQ(sections.Get(SectionId_t(1, "right")), right);
    EXPECT_FALSE(sections.Get(SectionId_t(2, "right")));
    EXPECT_EQ(sections.Remove(SectionId_t(2, "left")), -25);
    SectionId_t found;
    ASSERT_TRUE(sections.FindId("Top", found));
    EXPECT_EQ(found, SectionId_t(0, "zz"));

    std::vector<SectionPtr> ordered;
    sections.Get(ordered);
    ASSERT_EQ(ordered.size(), 3u);
    EXPECT_EQ(ordered[0], top);
    EXPECT_EQ(ordered[1], left);
    EXPECT_EQ(ordered[2], right);

    left->Infos().Add(boost::intrusive_ptr<InfoHolder>(new InfoHolder(
        boost::intrusive_ptr<InfoBase>(new NumericInfo<U8Traits>(5, "g", Permission_t())))));
    std::unique_ptr<Sections> copy(sections.DeepCopy());
    SectionPtr const copied = copy->Get(SectionId_t(1, "left"));
    ASSERT_TRUE(copied);
    EXPECT_NE(copied, left);
    EXPECT_TRUE(dynamic_cast<AreaSection*>(copied.get()));
    EXPECT_EQ(copied->GetRefCount(), 2);
    EXPECT_EQ(copied->Infos().Size(), 1u);
    copied->SetFlags(8);
    EXPECT_EQ(left->GetFlags(), 0u);
    copied->Infos().Clear();
    EXPECT_EQ(left->Infos().Size(), 1u);
}

TEST(SectionTest, SetsCopyIdAndName) {
    TagSet tag(3, "red");
    TagSet copy(tag);
    EXPECT_EQ(copy.GetId(), 3u);
    EXPECT_EQ(copy.GetName(), "red");
    copy.SetId(4);
    copy.SetName("blue");
    EXPECT_EQ(tag.ToString(), "red#3");
    TagSet const& same = tag;
    tag = same;
    EXPECT_EQ(tag.ToString(), "red#3");
    tag = copy;
    EXPECT_EQ(tag.ToString(), "blue#4");
    std::unique_ptr<Set> clone(tag.Clone());
    EXPECT_EQ(clone->ToString(), "blue#4");
}

}  // namespace
