#include <legacy/oru/infoitemdirectory.h>

#include <cstdlib>
#include <list>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <legacy/oru/infoitemdirectorydelta.h>
#include <legacy/oru/resultelem.h>

#include "alloc_count.h"
#include "directory_test_util.h"
#include "recording_directory.h"

namespace {

using namespace OruTest;

using Log = std::vector<std::string>;

// A directory with "Audio/Input" (Gain and Level, Gain with an Item),
// "Audio/Output" (Volume) and "Video" (Gain again).
struct Sample {
    RecordingDirectory dir;
    SectionId input;
    SectionId output;
    SectionId video;
    unsigned int gain = 0;
    unsigned int level = 0;
    unsigned int volume = 0;
    unsigned int videoGain = 0;

    Sample() {
        EXPECT_EQ(dir.AddSection("Audio/Input", input), 0);
        EXPECT_EQ(dir.AddSection("Audio/Output", output), 0);
        EXPECT_EQ(dir.AddSection("Video", video), 0);
        gain = input.GetInfoItemSectionId().CreateInfoItemId(5);
        level = input.GetInfoItemSectionId().CreateInfoItemId(2);
        volume = output.GetInfoItemSectionId().CreateInfoItemId(1);
        videoGain = video.GetInfoItemSectionId().CreateInfoItemId(1);
        EXPECT_EQ(dir.AddInfo(U32InfoHolder(gain, "Gain")), 0);
        EXPECT_EQ(dir.AddInfo(U32InfoHolder(level, "Level")), 0);
        EXPECT_EQ(dir.AddInfo(U32InfoHolder(volume, "Volume")), 0);
        EXPECT_EQ(dir.AddInfo(U32InfoHolder(videoGain, "Gain")), 0);
        EXPECT_EQ(dir.SetItem(U32ItemHolder(gain, 7)), 0);
        dir.log.clear();
        dir.oldInfos.clear();
        dir.oldItems.clear();
    }

    std::vector<unsigned int> IdsOf(std::vector<InfoHolderPtr> const& infos) const {
        std::vector<unsigned int> ids;
        for (auto const& info : infos) {
            ids.push_back(info->GetInfo()->GetId());
        }
        return ids;
    }
};

using Ids = std::vector<unsigned int>;

TEST(InfoItemDirectoryTest, RoadOfOneSetting) {
    RecordingDirectory dir;
    EXPECT_TRUE(dir.Empty());
    SectionId section;
    ASSERT_EQ(dir.AddSection("Audio/Input", section), 0);
    EXPECT_TRUE(dir.Empty());  // sections do not count
    EXPECT_EQ(section.GetSectionName(), "Audio/Input");
    EXPECT_EQ(section.GetSectionDepth(), 2u);
    EXPECT_TRUE(section.GetInfoItemSectionId().IsValidSectionId());

    unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(5);
    boost::intrusive_ptr<NumericInfo<U32Traits>> info(
        new NumericInfo<U32Traits>(id, "Gain", Permission_t(3)));
    info->SetMin(0);
    info->SetMax(100);
    info->SetDefault(50);
    ASSERT_EQ(dir.AddInfo(HoldInfo(info)), 0);
    EXPECT_FALSE(dir.Empty());
    EXPECT_EQ(dir.log, (Log{"info 40000005 old=null now=Gain"}));

    boost::intrusive_ptr<NumericItem<U32Traits>> item(
        static_cast<NumericItem<U32Traits>*>(info->CreateItem()));
    item->SetVal(72);
    EXPECT_FALSE(item->Validate(info));
    ASSERT_EQ(dir.SetItem(HoldItem(item)), 0);
    EXPECT_EQ(dir.log.back(), "item 40000005 old=null now=72 info=Gain");

    auto const found = dir.FindItem("Audio/Input/Gain");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->GetItem(), item);
    EXPECT_EQ(dir.FindItem(id), found);
    std::vector<ItemHolderPtr> items;
    ASSERT_EQ(dir.FindItems(section.GetInfoItemSectionId(), items), 0);
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0], found);

    ItemBase::SerialStruct_t record;
    ASSERT_EQ(found->GetItem()->Serialize(&record), 0);
    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> back;
    ASSERT_EQ(ItemBase::Deserialize(&view, back), 0);
    EXPECT_EQ(back->GetId(), id);
    EXPECT_TRUE(back->IsEqualValue(item));

    auto const delta = std::make_shared<InfoItemDirectoryDelta>();
    ASSERT_EQ(delta->AddItem(U32ItemHolder(id, 64)), 0);
    ASSERT_EQ(dir.UpdateFromDelta(delta, true, true), 0);
    EXPECT_EQ(dir.log.back(), "item 40000005 old=72 now=64 info=Gain");
    EXPECT_EQ(U32Value(*dir.FindItem("Audio/Input/Gain")), 64u);
}

TEST(InfoItemDirectoryTest, SectionsAreTheTreesAndDoNotCountAsSettings) {
    InfoItemDirectory dir;
    SectionId out;
    ASSERT_EQ(dir.AddSection("Audio/Input", out), 0);
    SectionId again;
    EXPECT_EQ(dir.AddSection("Audio/Input", again), -47);
    EXPECT_EQ(again, out);
    EXPECT_EQ(dir.AddSection(out), 0);
    EXPECT_TRUE(dir.Empty());

    EXPECT_EQ(dir.FindSection("Audio/Input"), out);
    EXPECT_EQ(dir.FindSection("/Audio/Input"), out);
    EXPECT_EQ(dir.FindSection(out.GetInfoItemSectionId().CreateInfoItemId(3)), out);
    EXPECT_FALSE(dir.FindSection("Audio/Missing").IsValid());
    EXPECT_FALSE(dir.FindSection(InfoItemSectionId(0x7F000000)).IsValid());

    SectionId video;
    ASSERT_EQ(dir.AddSection("Video", video), 0);
    std::vector<SectionId> top{video, video, video};
    dir.GetTopLevelSections(top);
    ASSERT_EQ(top.size(), 2u);
    EXPECT_EQ(top[0].GetSectionName(), "Audio");
    std::vector<SectionId> subsections{video};
    EXPECT_EQ(dir.GetSubsections(top[0].GetInfoItemSectionId(), subsections), 0);
    EXPECT_EQ(subsections, (std::vector<SectionId>{out}));
    std::list<SectionId> leaves{video};
    dir.GetLeafSections(leaves);
    EXPECT_EQ(leaves.size(), 3u);  // appended to what was there
}

TEST(InfoItemDirectoryTest, AddInfoRefusesWithoutLeavingHalfASetting) {
    Sample s;
    unsigned int const fresh = s.input.GetInfoItemSectionId().CreateInfoItemId(9);
    EXPECT_EQ(s.dir.AddInfo(InfoHolderPtr()), -32);
    EXPECT_EQ(s.dir.AddInfo(U32InfoHolder(s.gain, "Other")), -47);
    // The name is taken in the section: the slot entered first goes again.
    EXPECT_EQ(s.dir.AddInfo(U32InfoHolder(fresh, "Level")), -47);
    EXPECT_FALSE(s.dir.FindInfo(fresh));
    EXPECT_FALSE(s.dir.FindInfoItem(fresh));
    // A section the tree lacks, and the cleared id.
    SectionId const absent("Audio/Input",
                           InfoItemSectionId::CreateLevel1SectionId(9).CreateSectionId(0));
    ASSERT_TRUE(absent.IsValid());
    unsigned int const nowhere = absent.GetInfoItemSectionId().CreateInfoItemId(1);
    EXPECT_EQ(s.dir.AddInfo(U32InfoHolder(nowhere, "Gain")), -25);
    EXPECT_FALSE(s.dir.FindInfo(nowhere));
    EXPECT_EQ(s.dir.AddInfo(U32InfoHolder(0xFFFFFFFF, "Gain")), -41);
    EXPECT_FALSE(s.dir.FindInfo(0xFFFFFFFF));

    std::vector<SlotPtr> all;
    s.dir.GetAllInfoItems(all);
    EXPECT_EQ(all.size(), 4u);
    EXPECT_TRUE(s.dir.log.empty());
    // The name is free for the holder map again: the same id now succeeds.
    EXPECT_EQ(s.dir.AddInfo(U32InfoHolder(fresh, "Fresh")), 0);
    EXPECT_EQ(s.dir.log, (Log{"info 40000009 old=null now=Fresh"}));
}

TEST(InfoItemDirectoryTest, SetInfoKeepsIdentityAndTypes) {
    Sample s;
    InfoHolderPtr const before = s.dir.FindInfo(s.gain);
    SlotPtr const slot = s.dir.FindInfoItem(s.gain);
    EXPECT_EQ(s.dir.SetInfo(InfoHolderPtr()), -32);
    EXPECT_EQ(s.dir.SetInfo(U32InfoHolder(s.gain + 100, "Gain")), -25);
    EXPECT_EQ(s.dir.SetInfo(U32InfoHolder(s.gain, "Other")), -41);
    boost::intrusive_ptr<InfoBase> const otherFamily(
        new StringInfo(s.gain, "Gain", Permission_t(3)));
    EXPECT_EQ(s.dir.SetInfo(HoldInfo(otherFamily)), -41);
    boost::intrusive_ptr<InfoBase> const otherElement(
        new NumericInfo<S32Traits>(s.gain, "Gain", Permission_t(3)));
    EXPECT_EQ(s.dir.SetInfo(HoldInfo(otherElement)), -41);
    EXPECT_TRUE(s.dir.log.empty());
    EXPECT_EQ(slot->GetInfoHolder(), before);

    // The same object passes and is reported as the old info.
    EXPECT_EQ(s.dir.SetInfo(before), 0);
    ASSERT_EQ(s.dir.oldInfos.size(), 1u);
    EXPECT_EQ(s.dir.oldInfos[0], before);

    auto const wider = U32InfoHolder(s.gain, "Gain", 1000);
    ASSERT_EQ(s.dir.SetInfo(wider), 0);
    EXPECT_EQ(slot->GetInfoHolder(), wider);
    EXPECT_EQ(s.dir.FindInfo("Audio/Input", "Gain"), wider);
    EXPECT_EQ(static_cast<NumericInfo<U32Traits> const&>(*before->GetInfo()).GetMax(), 100u);
    EXPECT_EQ(s.dir.oldInfos.back(), before);
    EXPECT_EQ(U32Value(*slot->GetItemHolder()), 7u);  // the Item stays
}

TEST(InfoItemDirectoryTest, SetItemChecksIdAndTypesOnly) {
    Sample s;
    EXPECT_EQ(s.dir.SetItem(ItemHolderPtr()), -32);
    EXPECT_EQ(s.dir.SetItem(U32ItemHolder(s.gain + 100, 1)), -25);
    boost::intrusive_ptr<ItemBase> const otherFamily(new StringItem(s.level));
    EXPECT_EQ(s.dir.SetItem(HoldItem(otherFamily)), -41);
    boost::intrusive_ptr<ItemBase> const otherElement(NumericItem<U16Traits>::Create(s.level, 1));
    EXPECT_EQ(s.dir.SetItem(HoldItem(otherElement)), -41);
    EXPECT_TRUE(s.dir.log.empty());

    EXPECT_FALSE(s.dir.FindItem(s.level));
    ASSERT_TRUE(s.dir.FindInfoItem(s.level));
    // A value out of the Info's range is taken: checks are the caller's part.
    ASSERT_EQ(s.dir.SetItem(U32ItemHolder(s.level, 5000)), 0);
    ASSERT_EQ(s.dir.SetItem(U32ItemHolder(s.level, 6)), 0);
    EXPECT_EQ(s.dir.log, (Log{"item 40000002 old=null now=5000 info=Level",
                              "item 40000002 old=5000 now=6 info=Level"}));
    EXPECT_FALSE(s.dir.oldItems[0]);
    EXPECT_EQ(U32Value(*s.dir.FindItem(s.level)), 6u);
}

TEST(InfoItemDirectoryTest, PathsSplitAtTheLastSlash) {
    Sample s;
    auto const gainItem = s.dir.FindItem(s.gain);
    ASSERT_TRUE(gainItem);
    struct Row {
        char const* path;
        bool found;
    };
    Row const rows[] = {
        {"Audio/Input/Gain", true},
        {"/Audio/Input/Gain", true},
        {"Audio/Input/Level", false},
        {"Audio/Input/Missing", false},
        {"Audio/Gain", false},
        {"Gain", false},
        {"", false},
        {"/Gain", false},
        {"Audio/Input/", false},
        {"Audio//Gain", false},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.path);
        auto const item = s.dir.FindItem(row.path);
        EXPECT_EQ(static_cast<bool>(item), row.found);
        if (row.found) {
            EXPECT_EQ(item, gainItem);
        }
    }
    // Level has no Item, but it has a slot.
    auto const slot = s.dir.FindInfoItem("Audio/Input/Level");
    ASSERT_TRUE(slot);
    EXPECT_EQ(slot->GetInfoHolder()->GetInfo()->GetId(), s.level);
    EXPECT_EQ(s.dir.FindInfoItem("/Video/Gain"), s.dir.FindInfoItem(s.videoGain));
    EXPECT_EQ(s.dir.FindInfoItem("Video", "Gain"), s.dir.FindInfoItem(s.videoGain));
    EXPECT_FALSE(s.dir.FindInfoItem("", "Gain"));
    EXPECT_FALSE(s.dir.FindInfoItem("Video", ""));
    EXPECT_EQ(s.dir.FindItem("Audio/Input", "Gain"), gainItem);
    EXPECT_EQ(s.dir.FindInfo("/Video", "Gain")->GetInfo()->GetId(), s.videoGain);
    EXPECT_FALSE(s.dir.FindInfo("Video", "Level"));
}

TEST(InfoItemDirectoryTest, SubtreeLookupsAppendWhileGetAllReplaces) {
    Sample s;
    SectionId audio = s.dir.FindSection("Audio");
    ASSERT_TRUE(audio.IsValid());
    std::vector<InfoHolderPtr> infos;
    ASSERT_EQ(s.dir.FindInfos(audio.GetInfoItemSectionId(), infos), 0);
    // Input before Output by name; in Input, Level (2) before Gain (5).
    EXPECT_EQ(s.IdsOf(infos), (Ids{s.level, s.gain, s.volume}));
    ASSERT_EQ(s.dir.FindInfos(audio.GetInfoItemSectionId(), infos), 0);
    EXPECT_EQ(infos.size(), 6u);

    std::vector<ItemHolderPtr> items;
    ASSERT_EQ(s.dir.FindItems(audio.GetInfoItemSectionId(), items), 0);
    ASSERT_EQ(items.size(), 1u);  // only Gain has an Item
    std::vector<SlotPtr> slots;
    ASSERT_EQ(s.dir.FindInfoItems(s.video.GetInfoItemSectionId(), slots), 0);
    ASSERT_EQ(slots.size(), 1u);
    EXPECT_EQ(slots[0], s.dir.FindInfoItem(s.videoGain));

    // No such section, an info id, a wildcard: -25, nothing appended.
    InfoItemSectionId const absent = InfoItemSectionId::CreateLevel1SectionId(40);
    for (InfoItemSectionId const id :
         {absent, InfoItemSectionId(s.gain), audio.GetInfoItemSectionId().CreateSectionId(63)}) {
        SCOPED_TRACE(static_cast<unsigned int>(id));
        EXPECT_EQ(s.dir.FindInfos(id, infos), -25);
        EXPECT_EQ(s.dir.FindItems(id, items), -25);
        EXPECT_EQ(s.dir.FindInfoItems(id, slots), -25);
    }
    EXPECT_EQ(infos.size(), 6u);
    EXPECT_EQ(items.size(), 1u);
    EXPECT_EQ(slots.size(), 1u);

    std::vector<SlotPtr> all;
    s.dir.GetAllInfoItems(all);
    s.dir.GetAllInfoItems(all);
    ASSERT_EQ(all.size(), 4u);
    for (std::size_t i = 1; i < all.size(); ++i) {
        EXPECT_LT(all[i - 1]->GetInfoHolder()->GetInfo()->GetId(),
                  all[i]->GetInfoHolder()->GetInfo()->GetId());
    }
}

TEST(InfoItemDirectoryTest, CopiesShareStateAndNotifyOnlyThemselves) {
    Sample s;
    RecordingDirectory copy(s.dir);
    unsigned int const fresh = s.output.GetInfoItemSectionId().CreateInfoItemId(2);
    ASSERT_EQ(copy.AddInfo(U32InfoHolder(fresh, "Mute")), 0);
    EXPECT_TRUE(s.dir.FindInfo(fresh));
    EXPECT_TRUE(s.dir.log.empty());
    EXPECT_EQ(copy.log.size(), 1u);
    ASSERT_EQ(s.dir.SetItem(U32ItemHolder(fresh, 1)), 0);
    EXPECT_TRUE(copy.FindItem("Audio/Output/Mute"));
    EXPECT_EQ(copy.log.size(), 1u);

    InfoItemDirectory other;
    SectionId own;
    ASSERT_EQ(other.AddSection("Own", own), 0);
    other = copy;
    EXPECT_FALSE(other.FindSection("Own").IsValid());
    EXPECT_TRUE(other.FindInfo(fresh));

    auto const kept = s.dir.FindItem(s.gain);
    other.Clear();
    EXPECT_TRUE(s.dir.Empty());
    EXPECT_TRUE(copy.Empty());
    EXPECT_FALSE(copy.FindSection("Audio").IsValid());
    EXPECT_FALSE(s.dir.FindItem("Audio/Input/Gain"));
    EXPECT_EQ(U32Value(*kept), 7u);  // holders given out outlive Clear
    EXPECT_EQ(s.dir.log.size(), 1u);
    EXPECT_EQ(copy.log.size(), 1u);
}

TEST(InfoItemDirectoryTest, ChangesStayWhenTheObserverThrows) {
    Sample s;
    s.dir.throwNext = true;
    EXPECT_THROW(s.dir.SetItem(U32ItemHolder(s.level, 3)), std::runtime_error);
    ASSERT_TRUE(s.dir.FindItem(s.level));
    EXPECT_EQ(U32Value(*s.dir.FindItem(s.level)), 3u);
    unsigned int const fresh = s.video.GetInfoItemSectionId().CreateInfoItemId(4);
    s.dir.throwNext = true;
    EXPECT_THROW(s.dir.AddInfo(U32InfoHolder(fresh, "Hue")), std::runtime_error);
    EXPECT_TRUE(s.dir.FindInfo("Video", "Hue"));
    EXPECT_EQ(s.dir.log.size(), 2u);
}

TEST(InfoItemDirectoryTest, LookupsByIdAllocateNothing) {
    Sample s;
    OruTest::AllocationScope const allocations;
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(s.dir.FindItem(s.gain));
        EXPECT_FALSE(s.dir.FindItem(s.level));
        EXPECT_TRUE(s.dir.FindInfo(s.volume));
        EXPECT_TRUE(s.dir.FindInfoItem(s.videoGain));
        EXPECT_FALSE(s.dir.FindInfoItem(s.gain + 100));
    }
    EXPECT_EQ(allocations.Count(), 0);
}

// Paths are split and walked without copies once a thread has looked up its
// longest path; names longer than a string's inline buffer included.
TEST(InfoItemDirectoryTest, LookupsByPathAllocateNothingOnceWarm) {
    Sample s;
    SectionId deep;
    ASSERT_EQ(s.dir.AddSection("Audio/Input/AVeryLongSubsectionName", deep), 0);
    unsigned int const deepId = deep.GetInfoItemSectionId().CreateInfoItemId(3);
    ASSERT_EQ(s.dir.AddInfo(U32InfoHolder(deepId, "AnEvenLongerSettingName")), 0);
    ASSERT_EQ(s.dir.SetItem(U32ItemHolder(deepId, 9)), 0);
    // Every text is made before counting: only the lookups are measured.
    std::string const deepPath = "Audio/Input/AVeryLongSubsectionName/AnEvenLongerSettingName";
    std::string const gainPath = "Audio/Input/Gain";
    std::string const levelPath = "Audio/Input/Level";
    std::string const nowherePath = "Audio/Nowhere/Gain";
    std::string const videoPath = "Video/Gain";
    std::string const output = "Audio/Output";
    std::string const volume = "Volume";
    auto const lookups = [&] {
        EXPECT_EQ(U32Value(*s.dir.FindItem(deepPath)), 9u);
        EXPECT_EQ(U32Value(*s.dir.FindItem(gainPath)), 7u);
        EXPECT_FALSE(s.dir.FindItem(levelPath));
        EXPECT_FALSE(s.dir.FindItem(nowherePath));
        EXPECT_TRUE(s.dir.FindInfoItem(videoPath));
        EXPECT_TRUE(s.dir.FindInfo(output, volume));
    };
    lookups();
    OruTest::AllocationScope const allocations;
    for (int i = 0; i < 100; ++i) {
        lookups();
    }
    EXPECT_EQ(allocations.Count(), 0);
}

}  // namespace
