// The directory's bulk walks on a plain InfoItemDirectory (no change hooks):
// FindItems and its siblings step through the id map section by section,
// UpdateFromDelta walks the id map in step with the change set, and a
// refused AddInfo takes its name entry out from the back. Each must answer
// exactly what a lookup per id answers, in the documented order, and stop
// with the codes of SetItem; a directory with hooks must agree.
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <legacy/oru/holdercontainers.h>
#include <legacy/oru/infoitemdirectory.h>
#include <legacy/oru/infoitemdirectorydelta.h>

#include "directory_test_util.h"
#include "recording_directory.h"

namespace {

using namespace OruTest;

using Ids = std::vector<unsigned int>;

// "Top" with settings of its own and three subsections made in the order
// Zeta, Alpha, Mid (so their numbers and names sort differently), "Deep"
// under Alpha, and "Other" beside Top. Every setting has an Item except
// Zeta's number 2.
template <class Directory>
struct Tree {
    Directory dir;
    SectionId top, zeta, alpha, deep, mid, other;

    Tree() {
        EXPECT_EQ(dir.AddSection("Top/Zeta", zeta), 0);
        EXPECT_EQ(dir.AddSection("Top/Alpha/Deep", deep), 0);
        EXPECT_EQ(dir.AddSection("Top/Mid", mid), 0);
        EXPECT_EQ(dir.AddSection("Other", other), 0);
        top = dir.FindSection("Top");
        alpha = dir.FindSection("Top/Alpha");
        for (unsigned int n : {3u, 1u}) {
            Add(top, n);
        }
        for (unsigned int n : {4u, 0u, 2u}) {
            Add(zeta, n, n != 2);
        }
        Add(alpha, 7);
        for (unsigned int n : {2u, 1u}) {
            Add(deep, n);
        }
        for (unsigned int n : {0u, 1u, 2u}) {
            Add(other, n);
        }
    }

    void Add(SectionId const& section, unsigned int number, bool withItem = true) {
        unsigned int const id = Id(section, number);
        EXPECT_EQ(dir.AddInfo(U32InfoHolder(id, "S" + std::to_string(number))), 0);
        if (withItem) {
            EXPECT_EQ(dir.SetItem(U32ItemHolder(id, id % 97)), 0);
        }
    }

    static unsigned int Id(SectionId const& section, unsigned int number) {
        return section.GetInfoItemSectionId().CreateInfoItemId(number);
    }

    // The subtree of Top in the documented order: its own settings by
    // number, then the subsections by name, each before its own subsections.
    Ids TopOrder() const {
        return {Id(top, 1),  Id(top, 3),  Id(alpha, 7), Id(deep, 1),
                Id(deep, 2), Id(zeta, 0), Id(zeta, 2),  Id(zeta, 4)};
    }
};

template <class Directory>
void ExpectWalksOfTop(Tree<Directory>& t) {
    InfoItemSectionId const top = t.top.GetInfoItemSectionId();
    Ids const order = t.TopOrder();

    std::vector<InfoHolderPtr> infos;
    ASSERT_EQ(t.dir.FindInfos(top, infos), 0);
    Ids infoIds;
    for (auto const& info : infos) {
        infoIds.push_back(info->GetInfo()->GetId());
    }
    EXPECT_EQ(infoIds, order);

    // The Items in the same order, the one without an Item left out, each
    // the very holder a lookup by id answers.
    std::vector<ItemHolderPtr> items;
    ASSERT_EQ(t.dir.FindItems(top, items), 0);
    std::vector<ItemHolderPtr> expected;
    for (unsigned int id : order) {
        if (id != Tree<Directory>::Id(t.zeta, 2)) {
            expected.push_back(t.dir.FindItem(id));
        }
    }
    ASSERT_EQ(items.size(), 7u);
    EXPECT_EQ(items, expected);

    std::vector<SlotPtr> slots;
    ASSERT_EQ(t.dir.FindInfoItems(top, slots), 0);
    ASSERT_EQ(slots.size(), order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(slots[i], t.dir.FindInfoItem(order[i])) << i;
    }

    // One section alone, and a walk that appends after what the vector held.
    ASSERT_EQ(t.dir.FindItems(t.deep.GetInfoItemSectionId(), items), 0);
    ASSERT_EQ(items.size(), 9u);
    EXPECT_EQ(items[7], t.dir.FindItem(Tree<Directory>::Id(t.deep, 1)));
    EXPECT_EQ(items[8], t.dir.FindItem(Tree<Directory>::Id(t.deep, 2)));
    // Mid holds no setting; Other's walk does not run into Top's ids.
    items.clear();
    ASSERT_EQ(t.dir.FindItems(t.mid.GetInfoItemSectionId(), items), 0);
    EXPECT_TRUE(items.empty());
    ASSERT_EQ(t.dir.FindItems(t.other.GetInfoItemSectionId(), items), 0);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(U32Value(*items[0]), Tree<Directory>::Id(t.other, 0) % 97);
    EXPECT_EQ(U32Value(*items[2]), Tree<Directory>::Id(t.other, 2) % 97);
}

TEST(DirectoryWalkTest, SubtreeWalksAnswerWhatLookupsByIdAnswerInTheDocumentedOrder) {
    Tree<InfoItemDirectory> plain;
    ExpectWalksOfTop(plain);
    Tree<RecordingDirectory> hooked;
    ExpectWalksOfTop(hooked);
}

void ForgetSeen(InfoItemDirectory&) {}
void ForgetSeen(RecordingDirectory& dir) {
    dir.oldItems.clear();
}

// A change set over Top's settings, one id absent between them: the Items
// before it are replaced, the code is SetItem's, the rest stay.
template <class Directory>
void ExpectUpdateStopsAtTheFirstRefusal(Tree<Directory>& t) {
    unsigned int const first = Tree<Directory>::Id(t.top, 1);
    unsigned int const second = Tree<Directory>::Id(t.top, 3);
    unsigned int const absent = Tree<Directory>::Id(t.top, 5);
    unsigned int const after = Tree<Directory>::Id(t.deep, 1);
    ItemHolderPtr const oldFirst = t.dir.FindItem(first);
    ItemHolderPtr const oldAfter = t.dir.FindItem(after);

    auto delta = std::make_shared<InfoItemDirectoryDelta>();
    ASSERT_EQ(delta->AddItem(U32ItemHolder(after, 30)), 0);
    ASSERT_EQ(delta->AddItem(U32ItemHolder(absent, 20)), 0);
    ASSERT_EQ(delta->AddItem(U32ItemHolder(second, 12)), 0);
    ASSERT_EQ(delta->AddItem(U32ItemHolder(first, 11)), 0);
    EXPECT_EQ(t.dir.UpdateFromDelta(delta, true, true), -25);
    EXPECT_EQ(U32Value(*t.dir.FindItem(first)), 11u);
    EXPECT_EQ(U32Value(*t.dir.FindItem(second)), 12u);
    EXPECT_FALSE(t.dir.FindInfo(absent));
    EXPECT_EQ(t.dir.FindItem(after), oldAfter);
    // The directory let go of the Item it replaced: the test holds the last
    // reference (the recording hooks keep what they saw until told).
    ForgetSeen(t.dir);
    EXPECT_EQ(oldFirst->GetRefCount(), 1);

    // A type that is not the Info's: -41, the Items before it replaced.
    auto mismatch = std::make_shared<InfoItemDirectoryDelta>();
    ASSERT_EQ(mismatch->AddItem(U32ItemHolder(first, 21)), 0);
    ASSERT_EQ(mismatch->AddItem(HoldItem(
                  boost::intrusive_ptr<ItemBase>(NumericItem<S32Traits>::Create(second, -5)))),
              0);
    ASSERT_EQ(mismatch->AddItem(U32ItemHolder(after, 31)), 0);
    EXPECT_EQ(t.dir.UpdateFromDelta(mismatch, true, true), -41);
    EXPECT_EQ(U32Value(*t.dir.FindItem(first)), 21u);
    EXPECT_EQ(U32Value(*t.dir.FindItem(second)), 12u);
    EXPECT_EQ(t.dir.FindItem(after), oldAfter);

    // Items only when asked for; then every one of them, across sections.
    auto whole = std::make_shared<InfoItemDirectoryDelta>();
    for (unsigned int id : t.TopOrder()) {
        ASSERT_EQ(whole->AddItem(U32ItemHolder(id, id % 89)), 0);
    }
    EXPECT_EQ(t.dir.UpdateFromDelta(whole, true, false), 0);
    EXPECT_EQ(U32Value(*t.dir.FindItem(first)), 21u);
    EXPECT_EQ(t.dir.UpdateFromDelta(whole, false, true), 0);
    for (unsigned int id : t.TopOrder()) {
        ASSERT_TRUE(t.dir.FindItem(id)) << id;
        EXPECT_EQ(U32Value(*t.dir.FindItem(id)), id % 89) << id;
    }
    ForgetSeen(t.dir);
    EXPECT_EQ(oldAfter->GetRefCount(), 1);
    EXPECT_EQ(U32Value(*t.dir.FindItem(Tree<Directory>::Id(t.other, 1))),
              Tree<Directory>::Id(t.other, 1) % 97);
}

TEST(DirectoryWalkTest, UpdateFromDeltaStopsAtTheFirstRefusalWithTheCodesOfSetItem) {
    Tree<InfoItemDirectory> plain;
    ExpectUpdateStopsAtTheFirstRefusal(plain);
    Tree<RecordingDirectory> hooked;
    hooked.dir.log.clear();
    ExpectUpdateStopsAtTheFirstRefusal(hooked);
    // The hooks saw each replaced Item, in id order: two before the absent
    // id, one before the mismatch, then all eight.
    ASSERT_EQ(hooked.dir.log.size(), 2u + 1u + 8u);
    std::ostringstream first;
    first << "item " << std::hex << Tree<RecordingDirectory>::Id(hooked.top, 1) << std::dec
          << " old=" << Tree<RecordingDirectory>::Id(hooked.top, 1) % 97 << " now=11 info=S1";
    EXPECT_EQ(hooked.dir.log[0], first.str());
    EXPECT_EQ(hooked.dir.log[2].find(" now=21 info=S1"), hooked.dir.log[2].size() - 15);
}

// Empties the directory from its first Item notification on.
class ClearingDirectory : public InfoItemDirectory {
public:
    int notified = 0;

protected:
    void ItemChanged_(ItemHolderPtr const&, SlotPtr const&) override {
        ++notified;
        Clear();
    }
};

TEST(DirectoryWalkTest, AHookThatEmptiesTheDirectoryEndsTheChangeSetWithAbsent) {
    ClearingDirectory dir;
    SectionId section;
    ASSERT_EQ(dir.AddSection("A", section), 0);
    unsigned int const a = section.GetInfoItemSectionId().CreateInfoItemId(0);
    unsigned int const b = section.GetInfoItemSectionId().CreateInfoItemId(1);
    ASSERT_EQ(dir.AddInfo(U32InfoHolder(a, "A")), 0);
    ASSERT_EQ(dir.AddInfo(U32InfoHolder(b, "B")), 0);
    auto delta = std::make_shared<InfoItemDirectoryDelta>();
    ASSERT_EQ(delta->AddItem(U32ItemHolder(a, 1)), 0);
    ASSERT_EQ(delta->AddItem(U32ItemHolder(b, 2)), 0);
    EXPECT_EQ(dir.UpdateFromDelta(delta, true, true), -25);
    EXPECT_EQ(dir.notified, 1);
    EXPECT_TRUE(dir.Empty());
    EXPECT_FALSE(dir.FindItem(b));
}

TEST(DirectoryWalkTest, ARefusedAddInfoTakesOutOnlyItsOwnNameEntry) {
    InfoItemDirectory dir;
    std::vector<unsigned int> gains;
    for (int i = 0; i < 40; ++i) {
        SectionId section;
        ASSERT_EQ(dir.AddSection("S" + std::to_string(i), section), 0);
        gains.push_back(section.GetInfoItemSectionId().CreateInfoItemId(0));
        ASSERT_EQ(dir.AddInfo(U32InfoHolder(gains.back(), "Gain")), 0);
    }
    // A second "Gain" in S7 under a new id: the section refuses the name.
    unsigned int const extra = dir.FindSection("S7").GetInfoItemSectionId().CreateInfoItemId(9);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(dir.AddInfo(U32InfoHolder(extra, "Gain")), -47);
    }
    EXPECT_FALSE(dir.FindInfo(extra));
    std::vector<SlotPtr> all;
    dir.GetAllInfoItems(all);
    EXPECT_EQ(all.size(), 40u);
    for (int i = 0; i < 40; ++i) {
        ASSERT_TRUE(dir.FindInfo(gains[i])) << i;
        EXPECT_EQ(dir.FindInfo("S" + std::to_string(i), "Gain"), dir.FindInfo(gains[i])) << i;
    }
    // The id is free again and takes another name.
    EXPECT_EQ(dir.AddInfo(U32InfoHolder(extra, "Level")), 0);
    EXPECT_TRUE(dir.FindInfo("S7", "Level"));

    // The holder map itself: each Erase takes out the entry of its id, from
    // the middle, the back and the front of the name's range.
    InfoItemHolderMap map;
    for (unsigned int id = 1; id <= 5; ++id) {
        ASSERT_EQ(map.Insert(boost::intrusive_ptr<InfoItemHolder>(
                      new InfoItemHolder(U32InfoHolder(id, "X")))),
                  0);
    }
    auto names = [&map]() {
        Ids ids;
        auto const range = map.Find(std::string("X"));
        for (auto entry = range.first; entry != range.second; ++entry) {
            ids.push_back(entry->second->GetInfoHolder()->GetInfo()->GetId());
        }
        return ids;
    };
    EXPECT_EQ(map.Erase(3), 0);
    EXPECT_EQ(names(), (Ids{1, 2, 4, 5}));
    EXPECT_EQ(map.Erase(5), 0);
    EXPECT_EQ(names(), (Ids{1, 2, 4}));
    EXPECT_EQ(map.Erase(1), 0);
    EXPECT_EQ(names(), (Ids{2, 4}));
    EXPECT_EQ(map.Erase(3), -25);
    EXPECT_EQ(names(), (Ids{2, 4}));
    EXPECT_FALSE(map.Find(1u).first);
    EXPECT_TRUE(map.Find(4u).first);
}

}  // namespace
