#include <legacy/oru/holdercontainers.h>

#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "directory_test_util.h"

namespace {

using namespace OruTest;

using Slot = boost::intrusive_ptr<InfoItemHolder>;

Slot MakeSlot(unsigned int id, std::string const& name) {
    return Slot(new InfoItemHolder(U32InfoHolder(id, name)));
}

// The ids of the entries of `name`, in the map's order.
std::vector<unsigned int> IdsNamed(InfoItemHolderMap& map, std::string const& name) {
    std::vector<unsigned int> ids;
    auto const range = map.Find(name);
    for (auto entry = range.first; entry != range.second; ++entry) {
        ids.push_back(entry->second->GetInfoHolder()->GetInfo()->GetId());
    }
    return ids;
}

using Ids = std::vector<unsigned int>;

static_assert(
    std::is_same<decltype(std::declval<InfoContainer&>() = InfoContainer()), InfoContainer&>::value,
    "named containers assign to a mutable reference");
static_assert(!std::is_copy_constructible<InfoItemHolderMap>::value, "the map is not copyable");

TEST(HolderContainersTest, MapKeepsOneEntryPerIdAndManyPerName) {
    InfoItemHolderMap map;
    EXPECT_TRUE(map.Empty());
    EXPECT_EQ(map.Insert(Slot()), -32);
    auto const a = MakeSlot(0x40000001, "Gain");
    auto const b = MakeSlot(0x41000001, "Gain");
    EXPECT_EQ(map.Insert(b), 0);
    EXPECT_EQ(map.Insert(a), 0);
    EXPECT_EQ(IdsNamed(map, "Gain").size(), 2u);

    // A taken id changes neither map.
    EXPECT_EQ(map.Insert(MakeSlot(0x40000001, "Other")), -47);
    EXPECT_TRUE(IdsNamed(map, "Other").empty());
    EXPECT_EQ(map.Size(), 2u);

    auto found = map.Find(0x41000001u);
    ASSERT_TRUE(found.first);
    EXPECT_EQ(found.second->second, b);
    found = map.Find(0x42000001u);
    EXPECT_FALSE(found.first);
    EXPECT_TRUE(found.second == map.IterEnd().position_);

    // The walk is ascending by id, whatever the order of insertion.
    std::vector<unsigned int> walked;
    for (auto entry = map.IterBegin(); entry != map.IterEnd(); ++entry) {
        walked.push_back(entry->first);
    }
    EXPECT_EQ(walked, (Ids{0x40000001, 0x41000001}));

    EXPECT_EQ(map.Erase(0x40000001), 0);
    EXPECT_EQ(IdsNamed(map, "Gain"), (Ids{0x41000001}));
    EXPECT_EQ(map.Erase(0x40000001), -25);
    EXPECT_EQ(a->GetRefCount(), 1);
    EXPECT_FALSE(map.Empty());
    EXPECT_EQ(map.Erase(0x41000001), 0);
    EXPECT_TRUE(map.Empty());
    EXPECT_TRUE(IdsNamed(map, "Gain").empty());

    EXPECT_EQ(map.Insert(a), 0);
    map.Clear();
    EXPECT_TRUE(map.Empty());
    EXPECT_TRUE(IdsNamed(map, "Gain").empty());
    EXPECT_EQ(a->GetRefCount(), 1);
}

TEST(HolderContainersTest, PairsCopyBothSidesDeeplyAndFindNamesOnTheInfoSide) {
    InfoItemHolderContainer holders;
    unsigned int id = 5;
    holders.Items().Set(U32ItemHolder(0x40000001, 3));
    EXPECT_FALSE(holders.FindInfoItemId("", id));
    EXPECT_EQ(id, 5u);
    holders.Infos().Set(U32InfoHolder(0x40000002, "Gain"));
    EXPECT_TRUE(holders.FindInfoItemId("Gain", id));
    EXPECT_EQ(id, 0x40000002u);

    InfoItemHolderContainer copy(holders);
    ASSERT_TRUE(copy.Items().Get(0x40000001));
    EXPECT_NE(copy.Items().Get(0x40000001)->GetItem(), holders.Items().Get(0x40000001)->GetItem());
    EXPECT_NE(copy.Infos().Get(0x40000002), holders.Infos().Get(0x40000002));
    copy.Items().Clear();
    copy.Infos().Set(U32InfoHolder(0x40000003, "Level"));
    EXPECT_EQ(holders.Items().Size(), 1u);
    EXPECT_FALSE(holders.Infos().IsPresent(0x40000003));

    InfoItemHolderContainer assigned;
    assigned = holders;
    EXPECT_EQ(assigned.Infos().Size(), 1u);
    EXPECT_EQ(assigned.Items().Size(), 1u);
    auto const& self = assigned;
    assigned = self;
    EXPECT_EQ(assigned.Items().Size(), 1u);

    InfoItemContainer plain;
    plain.Infos().Set(U32Info(0x40000002, "Gain"));
    plain.Items().Set(U32Item(0x40000002, 9));
    InfoItemContainer plainCopy;
    plainCopy = plain;
    EXPECT_TRUE(plainCopy.FindInfoItemId("Gain", id));
    EXPECT_NE(plainCopy.Infos().Get(0x40000002), plain.Infos().Get(0x40000002));
    EXPECT_NE(plainCopy.Items().Get(0x40000002), plain.Items().Get(0x40000002));
}

}  // namespace
