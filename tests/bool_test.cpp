#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase>;

TEST(BoolInfoTest, FixedFlagMergesOneWayAndAssigns) {
    boost::intrusive_ptr<BoolInfo> fixed(new BoolInfo(1, "f", Permission_t()));
    boost::intrusive_ptr<BoolInfo> free(new BoolInfo(2, "g", Permission_t()));
    fixed->SetFixed(true);
    free->SetDefault(true);
    EXPECT_FALSE(free->IsEqualBounds(fixed));

    EXPECT_EQ(fixed->MergeBounds(free), 0);
    EXPECT_TRUE(fixed->GetFixed());
    EXPECT_EQ(free->MergeBounds(fixed), 0);
    EXPECT_TRUE(free->GetFixed());
    // The default takes no part in bounds, and is not merged.
    EXPECT_TRUE(free->IsEqualBounds(fixed));
    EXPECT_TRUE(free->GetDefault());
    InfoPtr const number(new NumericInfo<U8Traits>(3, "n", Permission_t()));
    EXPECT_EQ(free->MergeBounds(number), -36);
    EXPECT_EQ(free->MergeBounds(nullptr), -36);

    bool changed = false;
    BoolInfo target(9, "t", Permission_t(4));
    EXPECT_EQ(target.AssignValue(free, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(target.GetFixed() && target.GetDefault());
    EXPECT_EQ(target.AssignValue(free, &changed), 0);
    EXPECT_FALSE(changed);
    changed = true;
    EXPECT_EQ(target.AssignValue(number, &changed), -26);
    EXPECT_EQ(target.AssignValue(nullptr, &changed), -31);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.GetName(), "t");

    EXPECT_EQ(TextOf(target), "default=True (fixed)");
    EXPECT_EQ(DumpOf(target), "id: 9\npermission: 4\nname: t\ntype: Bool\nfixed: 1\ndefault: 1\n");
    boost::intrusive_ptr<BoolInfo> copy(target.DeepCopy(5));
    EXPECT_EQ(copy->GetId(), 5u);
    EXPECT_TRUE(copy->GetFixed() && copy->GetDefault());
}

TEST(BoolItemTest, AFixedInfoActsOnlyThroughBoundValAndChecks) {
    boost::intrusive_ptr<BoolInfo> info(new BoolInfo(1, "Mute", Permission_t()));
    boost::intrusive_ptr<BoolItem> item(BoolItem::Create(1, true));
    EXPECT_TRUE(item->WithinBounds(*info));
    EXPECT_EQ(item->Validate(info), nullptr);

    info->SetFixed(true);
    EXPECT_FALSE(item->WithinBounds(*info));
    auto const failed = item->Validate(info);
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(static_cast<int>(failed->GetSeverityLevel()), 4);
    EXPECT_TRUE(failed->GetItem()->IsEqualValue(item));
    EXPECT_TRUE(item->GetVal());
    item->BoundVal(*info);
    EXPECT_FALSE(item->GetVal());
    EXPECT_EQ(item->Validate(info), nullptr);

    EXPECT_NE(item->Validate(nullptr), nullptr);
    EXPECT_NE(item->Validate(InfoPtr(new BoolArrayInfo(1, "a", Permission_t()))), nullptr);
}

TEST(BoolItemTest, AssignmentJudgesNumbersAsFlags) {
    struct Row {
        char const* name;
        ItemPtr source;
        unsigned int index;
        int code;
        bool value;
    };
    Row const rows[] = {
        {"float below the tolerance", ItemPtr(NumericItem<FloatTraits>::Create(1, 1e-11f)), 0, 0,
         false},
        {"float one half", ItemPtr(NumericItem<FloatTraits>::Create(1, 0.5f)), 0, 0, true},
        {"negative float", ItemPtr(NumericItem<FloatTraits>::Create(1, -0.5f)), 0, 0, true},
        {"double NaN",
         ItemPtr(NumericItem<DoubleTraits>::Create(1, std::numeric_limits<double>::quiet_NaN())), 0,
         0, false},
        {"double 1e-10 is the widened float constant, just below it",
         ItemPtr(NumericItem<DoubleTraits>::Create(1, 1e-10)), 0, 0, false},
        {"U8 zero", ItemPtr(NumericItem<U8Traits>::Create(1, 0)), 0, 0, false},
        {"S64 minus one", ItemPtr(NumericItem<S64Traits>::Create(1, -1)), 0, 0, true},
        {"U64 high bit only", ItemPtr(NumericItem<U64Traits>::Create(1, 1ull << 63)), 0, 0, true},
        {"flag", ItemPtr(BoolItem::Create(1, true)), 7, 0, true},
        {"flag array element", ItemPtr(BoolArrayItem::Create(1, {false, true})), 1, 0, true},
        {"flag array index at the end", ItemPtr(BoolArrayItem::Create(1, {true, true})), 2, -41,
         false},
        {"enum", ItemPtr(EnumItem::Create(1, 1)), 0, -26, false},
        {"string", ItemPtr(StringItem::Create(1, "True")), 0, -26, false},
        {"null", nullptr, 0, -31, false},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        BoolItem item(1);
        bool changed = true;
        EXPECT_EQ(item.AssignArrayValue(row.source, row.index, &changed), row.code);
        EXPECT_EQ(item.GetVal(), row.value);
        // The flag is written on success only.
        EXPECT_EQ(changed, row.code == 0 ? row.value : true);
    }
}

TEST(BoolItemTest, SerialFormTextAndReading) {
    boost::intrusive_ptr<BoolItem> item(BoolItem::Create(7, true));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)), "01");
    EXPECT_EQ(record.type, 1);

    Bytes const nonZero = {0x80};
    auto const anyByte = MakeRecord(7, 1, 0, nonZero);
    BoolItem reader(7);
    EXPECT_EQ(reader.Deserialize(&anyByte), 0);
    EXPECT_TRUE(reader.GetVal());
    Bytes const two = {0x00, 0x00};
    auto const tooLong = MakeRecord(7, 1, 0, two);
    EXPECT_EQ(reader.Deserialize(&tooLong), -41);
    EXPECT_TRUE(reader.GetVal());
    EXPECT_EQ(reader.Serialize(nullptr), -41);

    // The text says True where the dump says 1.
    EXPECT_EQ(item->GetValAsString(), "True");
    EXPECT_EQ(DumpOf(*item), "id: 7\ntype: Bool\nvalue: 1\n");

    std::istringstream digits("0");
    std::ostringstream errors;
    EXPECT_TRUE(item->SetValFromStream(digits, errors, nullptr));
    EXPECT_FALSE(item->GetVal());
    std::istringstream word("true");
    EXPECT_FALSE(item->SetValFromStream(word, errors, nullptr));
    std::istringstream ended("");
    ended.get();
    EXPECT_FALSE(item->SetValFromStream(ended, errors, nullptr));
    EXPECT_EQ(errors.str(), "Error parsing boolItem\nError parsing boolItem\n");
    EXPECT_FALSE(item->GetVal());
}

TEST(BoolArrayItemTest, PackedSerialForm) {
    struct Row {
        char const* name;
        std::vector<bool> value;
        char const* hex;
    };
    Row const rows[] = {
        {"empty", {}, "00"},
        {"nine", {true, false, false, false, false, false, false, false, true}, "01 80 80"},
        {"eight all true", std::vector<bool>(8, true), "00 FF"},
        {"three", {false, true, true}, "03 60"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        boost::intrusive_ptr<BoolArrayItem> item(BoolArrayItem::Create(3, row.value));
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(item->Serialize(&record), 0);
        EXPECT_EQ(Hex(PayloadOf(record)), row.hex);
        EXPECT_EQ(item->GetSerialDataSize(), record.GetDataSize());
        ItemBase::ConstSerialStruct_t const view(record);
        ItemPtr back;
        ASSERT_EQ(ItemBase::Deserialize(&view, back), 0);
        EXPECT_TRUE(back->IsEqualValue(item));
    }

    // From element 2048 on, bits fold onto the first data bytes.
    std::vector<bool> long_(2049, false);
    long_[2048] = true;
    boost::intrusive_ptr<BoolArrayItem> item(BoolArrayItem::Create(3, long_));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    Bytes const payload = PayloadOf(record);
    ASSERT_EQ(payload.size(), 258u);
    EXPECT_EQ(payload[0], 1);
    EXPECT_EQ(payload[1], 0x80);
    EXPECT_EQ(payload[257], 0);
    BoolArrayItem back(3);
    ItemBase::ConstSerialStruct_t const view(record);
    ASSERT_EQ(back.Deserialize(&view), 0);
    ASSERT_EQ(back.GetSize(), 2049u);
    EXPECT_TRUE(back.Val()[0]);
    EXPECT_TRUE(back.Val()[2048]);
}

TEST(BoolArrayItemTest, ReadsCheckFirstThenAppend) {
    BoolArrayItem item(3);
    item.SetVal({true, true, true, true, true});
    Bytes const zeroSize;
    Bytes const eight = {0x08, 0xFF};
    Bytes const three = {0x03, 0xBF};
    auto const empty = MakeRecord(3, 8, 0, zeroSize);
    auto const badRemainder = MakeRecord(3, 8, 0, eight);
    EXPECT_EQ(item.Deserialize(&empty), -41);
    EXPECT_EQ(item.Deserialize(&badRemainder), -41);
    EXPECT_EQ(item.GetSize(), 5u);
    // Three elements, the rest of the byte unread, appended to the five.
    auto const good = MakeRecord(3, 8, 0, three);
    ASSERT_EQ(item.Deserialize(&good), 0);
    EXPECT_EQ(item.GetValAsString(), "(True, True, True, True, True, True, False, True)");
    Bytes const none = {0x05};
    auto const size1 = MakeRecord(3, 8, 0, none);
    EXPECT_EQ(item.Deserialize(&size1), 0);
    EXPECT_EQ(item.GetSize(), 8u);
}

TEST(BoolArrayItemTest, AssignmentChecksAndText) {
    BoolArrayItem item(3);
    bool changed = false;
    ItemPtr const on(BoolItem::Create(1, true));
    ItemPtr const off(BoolItem::Create(1, false));
    EXPECT_EQ(item.AssignArrayValue(off, 4, &changed), 0);
    EXPECT_TRUE(changed);  // from the growth alone
    EXPECT_EQ(item.GetSize(), 5u);
    EXPECT_EQ(item.AssignArrayValue(off, 4, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(item.AssignArrayValue(on, 1, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item.GetValAsString(), "(False, True, False, False, False)");

    ItemPtr const whole(BoolArrayItem::Create(1, {true}));
    EXPECT_EQ(item.AssignArrayValue(whole, 9, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item.GetValAsString(), "(True)");
    EXPECT_EQ(item.AssignArrayValue(whole, 0, &changed), 0);
    EXPECT_FALSE(changed);
    changed = true;
    EXPECT_EQ(item.AssignArrayValue(ItemPtr(NumericItem<U8Traits>::Create(1, 1)), 0, &changed),
              -26);
    EXPECT_EQ(item.AssignArrayValue(nullptr, 0, &changed), -31);
    EXPECT_TRUE(changed);

    boost::intrusive_ptr<BoolArrayInfo> info(new BoolArrayInfo(3, "Zones", Permission_t()));
    info->SetMinSize(2);
    info->SetMaxSize(3);
    boost::intrusive_ptr<BoolArrayItem> checked(BoolArrayItem::Create(3, {true}));
    EXPECT_NE(checked->Validate(info), nullptr);
    EXPECT_EQ(checked->SetVal({true, false, true, false}, *info), -37);
    EXPECT_EQ(checked->GetSize(), 1u);
    checked->SetVal({true, false, true, false});
    EXPECT_NE(checked->Validate(info), nullptr);
    EXPECT_EQ(checked->SetVal({true, false}, *info), 0);
    EXPECT_EQ(checked->Validate(info), nullptr);
    EXPECT_NE(checked->Validate(InfoPtr(new BoolInfo(3, "b", Permission_t()))), nullptr);
    EXPECT_EQ(DumpOf(*checked), "id: 3\ntype: BoolArray\nvalue: (True, False)\n");

    std::ostringstream errors;
    std::istringstream good("3 1 0 1 ");
    ASSERT_TRUE(checked->SetValFromStream(good, errors, nullptr));
    EXPECT_EQ(checked->GetValAsString(), "(True, False, True)");
    std::istringstream shortOne("3 1 0");
    std::istringstream letter("x");
    EXPECT_FALSE(checked->SetValFromStream(shortOne, errors, nullptr));
    EXPECT_FALSE(checked->SetValFromStream(letter, errors, nullptr));
    EXPECT_EQ(errors.str(), "Error parsing arrayItem\nError parsing arraySize\n");
    EXPECT_EQ(checked->GetSize(), 3u);
}

TEST(BoolArrayInfoTest, SizeBoundsPullTheDefault) {
    boost::intrusive_ptr<BoolArrayInfo> info(new BoolArrayInfo(4, "Zones", Permission_t(1)));
    info->SetMaxSize(10);
    EXPECT_EQ(info->SetDefault({true, true, true}), 0);
    info->SetMinSize(5);
    EXPECT_EQ(info->GetDefault(), std::vector<bool>({true, true, true, false, false}));
    info->SetMaxSize(2);
    EXPECT_EQ(info->GetMinSize(), 2u);
    EXPECT_EQ(info->GetDefault(), std::vector<bool>({true, true}));
    info->SetMinSize(12);
    EXPECT_EQ(info->GetMaxSize(), 12u);
    EXPECT_EQ(info->SetDefault({true}), -37);
    EXPECT_EQ(info->GetDefaultSize(), 12u);

    BoolArrayInfo emptyDefault(5, "e", Permission_t());
    emptyDefault.SetMinSize(4);
    EXPECT_EQ(emptyDefault.GetDefaultSize(), 0u);

    boost::intrusive_ptr<BoolArrayInfo> other(new BoolArrayInfo(6, "o", Permission_t()));
    other->SetMaxSize(9);
    other->SetMinSize(1);
    boost::intrusive_ptr<BoolArrayInfo> wide(new BoolArrayInfo(7, "w", Permission_t()));
    wide->SetMaxSize(20);
    wide->SetMinSize(5);
    EXPECT_EQ(other->MergeBounds(wide), 0);
    EXPECT_EQ(other->GetMinSize(), 5u);
    EXPECT_EQ(other->GetMaxSize(), 9u);
    boost::intrusive_ptr<BoolArrayInfo> disjoint(new BoolArrayInfo(7, "d", Permission_t()));
    disjoint->SetMaxSize(4);
    EXPECT_EQ(other->MergeBounds(disjoint), -55);
    EXPECT_EQ(other->GetMinSize(), 5u);
    EXPECT_EQ(other->MergeBounds(InfoPtr(new BoolInfo(8, "b", Permission_t()))), -36);

    bool changed = false;
    BoolArrayInfo target(9, "t", Permission_t());
    EXPECT_EQ(target.AssignValue(other, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(target.IsEqualBounds(other));
    EXPECT_EQ(target.AssignValue(other, &changed), 0);
    EXPECT_FALSE(changed);

    EXPECT_EQ(TextOf(*info), "array size: 12 <= 12 <= 12");
    EXPECT_EQ(DumpOf(*info),
              "id: 4\npermission: 1\nname: Zones\ntype: BoolArray\nminSize: 12\nmaxSize: "
              "12\ndefaultSize: 12\n");
    ItemPtr const created(info->CreateItem());
    EXPECT_EQ(created->GetId(), 4u);
    EXPECT_EQ(static_cast<BoolArrayItem&>(*created).GetSize(), 12u);
}

TEST(BoolSourcesTest, OtherFamiliesReadAFlag) {
    ItemPtr const on(BoolItem::Create(1, true));
    NumericItem<S16Traits> number(1);
    bool changed = false;
    EXPECT_EQ(number.AssignArrayValue(on, 5, &changed), 0);
    EXPECT_EQ(number.GetVal(), 1);
    EXPECT_TRUE(changed);
    StringItem text(1);
    EXPECT_EQ(text.AssignValue(on, &changed), 0);
    EXPECT_EQ(text.GetVal(), "True");
    EXPECT_EQ(text.AssignValue(ItemPtr(BoolItem::Create(1, false)), &changed), 0);
    EXPECT_EQ(text.GetVal(), "False");
    EXPECT_TRUE(changed);
}

}  // namespace
