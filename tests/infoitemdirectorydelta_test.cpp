#include <legacy/oru/infoitemdirectorydelta.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <legacy/oru/infoitemdirectory.h>

#include "directory_test_util.h"
#include "recording_directory.h"

namespace {

using namespace OruTest;

using Log = std::vector<std::string>;
using DeltaPtr = std::shared_ptr<InfoItemDirectoryDelta>;

// "Audio" (number 0) and "Audio/Input" (number 0 below it), as a change set
// from elsewhere would carry them.
SectionId const k_audio("Audio", InfoItemSectionId::CreateLevel1SectionId(0));
SectionId const k_input("Audio/Input",
                        InfoItemSectionId::CreateLevel1SectionId(0).CreateSectionId(0));

unsigned int InputInfo(std::size_t number) {
    return k_input.GetInfoItemSectionId().CreateInfoItemId(number);
}

// Sections, three Infos and their Items, in the opposite order to the one
// in which they must be applied.
DeltaPtr WholeSettings() {
    auto delta = std::make_shared<InfoItemDirectoryDelta>();
    for (std::size_t number : {3, 2, 1}) {
        EXPECT_EQ(delta->AddItem(U32ItemHolder(InputInfo(number), 10 * number)), 0);
        EXPECT_EQ(delta->AddInfo(U32InfoHolder(InputInfo(number), "S" + std::to_string(number))),
                  0);
    }
    EXPECT_EQ(delta->AddSection(k_input), 0);
    EXPECT_EQ(delta->AddSection(k_audio), 0);
    return delta;
}

TEST(InfoItemDirectoryDeltaTest, FirstAdditionWins) {
    InfoItemDirectoryDelta delta;
    EXPECT_TRUE(delta.Empty());
    auto const first = U32InfoHolder(InputInfo(1), "First");
    EXPECT_EQ(delta.AddInfo(InfoHolderPtr()), -32);
    EXPECT_EQ(delta.AddItem(ItemHolderPtr()), -32);
    EXPECT_EQ(delta.AddInfo(first), 0);
    EXPECT_EQ(delta.AddInfo(U32InfoHolder(InputInfo(1), "Second")), -47);
    EXPECT_EQ(delta.GetInfoHolderPtrMap_addMod().at(InputInfo(1)), first);
    EXPECT_EQ(delta.AddSection(k_input), 0);
    EXPECT_EQ(delta.AddSection(SectionId("Audio/Other", k_input.GetInfoItemSectionId())), -47);
    EXPECT_EQ(delta.GetSectionIdMap_addMod().at(k_input.GetInfoItemSectionId()), k_input);
    // An invalid section is kept, under the cleared id.
    EXPECT_EQ(delta.AddSection(SectionId()), 0);
    EXPECT_EQ(delta.GetSectionIdMap_addMod().count(InfoItemSectionId(0xFFFFFFFF)), 1u);

    InfoItemDirectoryDelta itemsOnly;
    ASSERT_EQ(itemsOnly.AddItem(U32ItemHolder(InputInfo(1), 5)), 0);
    EXPECT_EQ(itemsOnly.AddItem(U32ItemHolder(InputInfo(1), 6)), -47);
    EXPECT_FALSE(itemsOnly.Empty());

    InfoItemDirectoryDelta copy(delta);
    EXPECT_EQ(copy.GetInfoHolderPtrMap_addMod().at(InputInfo(1)), first);  // shared
    copy = itemsOnly;
    EXPECT_TRUE(copy.GetInfoHolderPtrMap_addMod().empty());
    EXPECT_EQ(copy.GetItemHolderPtrMap_addMod().size(), 1u);
    EXPECT_EQ(delta.GetInfoHolderPtrMap_addMod().size(), 1u);
}

TEST(InfoItemDirectoryDeltaTest, AppliesSectionsInfosItemsInIdOrder) {
    RecordingDirectory dir;
    EXPECT_EQ(dir.UpdateFromDelta(DeltaPtr(), true, true), -32);
    for (int flags = 0; flags < 4; ++flags) {
        EXPECT_EQ(
            dir.UpdateFromDelta(std::make_shared<InfoItemDirectoryDelta>(), flags & 1, flags & 2),
            0);
    }
    EXPECT_TRUE(dir.log.empty());

    auto const delta = WholeSettings();
    ASSERT_EQ(dir.UpdateFromDelta(delta, true, true), 0);
    EXPECT_EQ(
        dir.log,
        (Log{"info 40000001 old=null now=S1", "info 40000002 old=null now=S2",
             "info 40000003 old=null now=S3", "item 40000001 old=null now=10 info=S1",
             "item 40000002 old=null now=20 info=S2", "item 40000003 old=null now=30 info=S3"}));
    EXPECT_EQ(U32Value(*dir.FindItem("Audio/Input/S2")), 20u);
    EXPECT_FALSE(delta->Empty());

    // A second application takes the replacing road, with the old holders shown.
    dir.log.clear();
    ASSERT_EQ(dir.UpdateFromDelta(delta, true, false), 0);
    EXPECT_EQ(dir.log, (Log{"info 40000001 old=S1 now=S1", "info 40000002 old=S2 now=S2",
                            "info 40000003 old=S3 now=S3"}));
    EXPECT_EQ(dir.oldInfos.back(), delta->GetInfoHolderPtrMap_addMod().at(InputInfo(3)));
}

TEST(InfoItemDirectoryDeltaTest, FlagsChooseWhatBesidesSectionsIsApplied) {
    auto const delta = WholeSettings();
    RecordingDirectory structure;
    ASSERT_EQ(structure.UpdateFromDelta(delta, false, false), 0);
    EXPECT_EQ(structure.FindSection("Audio/Input"), k_input);
    EXPECT_TRUE(structure.Empty());
    EXPECT_TRUE(structure.log.empty());

    // Items alone: a setting the directory has takes its Item; a new one stops the walk.
    RecordingDirectory itemsOnly;
    ASSERT_EQ(itemsOnly.AddSection(k_input), 0);
    ASSERT_EQ(itemsOnly.AddInfo(U32InfoHolder(InputInfo(1), "S1")), 0);
    itemsOnly.log.clear();
    EXPECT_EQ(itemsOnly.UpdateFromDelta(delta, false, true), -25);
    EXPECT_EQ(itemsOnly.log, (Log{"item 40000001 old=null now=10 info=S1"}));
    EXPECT_FALSE(itemsOnly.FindInfo(InputInfo(2)));
}

TEST(InfoItemDirectoryDeltaTest, StopsAtTheFirstFailureAndCanBeAppliedAgain) {
    RecordingDirectory dir;
    ASSERT_EQ(dir.AddSection(k_input), 0);
    ASSERT_EQ(dir.AddInfo(U32InfoHolder(InputInfo(9), "S2")), 0);  // takes the name of info 2
    dir.log.clear();
    auto const delta = WholeSettings();
    EXPECT_EQ(dir.UpdateFromDelta(delta, true, true), -47);
    EXPECT_EQ(dir.log, (Log{"info 40000001 old=null now=S1"}));
    EXPECT_TRUE(dir.FindInfo(InputInfo(1)));
    EXPECT_FALSE(dir.FindInfo(InputInfo(2)));
    EXPECT_FALSE(dir.FindInfo(InputInfo(3)));
    EXPECT_FALSE(dir.FindItem(InputInfo(1)));  // items come after every info

    // The cause removed, the same delta goes through; info 1 now is replaced.
    dir.Clear();
    dir.log.clear();
    ASSERT_EQ(dir.AddSection(k_input), 0);
    ASSERT_EQ(dir.AddInfo(U32InfoHolder(InputInfo(1), "S1")), 0);
    ASSERT_EQ(dir.UpdateFromDelta(delta, true, true), 0);
    EXPECT_EQ(dir.log[1], "info 40000001 old=S1 now=S1");
    EXPECT_EQ(dir.log.size(), 7u);

    struct Row {
        char const* what;
        std::function<void(InfoItemDirectoryDelta&)> fill;
        int code;
    };
    Row const rows[] = {
        {"invalid section", [](InfoItemDirectoryDelta& d) { d.AddSection(SectionId()); }, -41},
        {"section number taken by another name",
         [](InfoItemDirectoryDelta& d) {
             d.AddSection(SectionId("Video", InfoItemSectionId::CreateLevel1SectionId(0)));
         },
         -47},
        {"info of an absent section",
         [](InfoItemDirectoryDelta& d) {
             d.AddInfo(U32InfoHolder(
                 InfoItemSectionId::CreateLevel1SectionId(5).CreateInfoItemId(1), "X"));
         },
         -25},
        {"present info renamed",
         [](InfoItemDirectoryDelta& d) { d.AddInfo(U32InfoHolder(InputInfo(1), "Renamed")); }, -41},
        {"item without info",
         [](InfoItemDirectoryDelta& d) { d.AddItem(U32ItemHolder(InputInfo(7), 1)); }, -25},
        {"item of another element type",
         [](InfoItemDirectoryDelta& d) {
             d.AddItem(HoldItem(
                 boost::intrusive_ptr<ItemBase>(NumericItem<S32Traits>::Create(InputInfo(1), 1))));
         },
         -41},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.what);
        auto const bad = std::make_shared<InfoItemDirectoryDelta>();
        row.fill(*bad);
        dir.log.clear();
        EXPECT_EQ(dir.UpdateFromDelta(bad, true, true), row.code);
        EXPECT_TRUE(dir.log.empty());
    }
    EXPECT_EQ(U32Value(*dir.FindItem(InputInfo(1))), 10u);
}

}  // namespace
