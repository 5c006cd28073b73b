#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

TEST(StringInfoTest, LengthLimitsCutTheDefaultDifferently) {
    StringInfo info(1, "name", Permission_t());
    EXPECT_EQ(info.GetMaxLength(), 256u);
    EXPECT_EQ(info.SetDefault("abcde"), 0);
    EXPECT_EQ(info.SetMaxLength(3), 0);
    EXPECT_EQ(info.GetDefault(), "abc");
    EXPECT_EQ(info.SetDefault("abcde"), 0);
    EXPECT_EQ(info.GetDefault(), "abc");
    // A maximum of 0 is no limit for the default ...
    info.SetMaxLength(0);
    EXPECT_EQ(info.GetDefault(), "");
    info.SetDefault("abcde");
    EXPECT_EQ(info.GetDefault(), "abcde");
    // ... but empties an item's value.
    StringItem item(1);
    item.SetVal("xyz", info);
    EXPECT_EQ(item.GetVal(), "");
    info.SetMaxLength(2);
    item.SetVal("xyz", info);
    EXPECT_EQ(item.GetVal(), "xy");
}

TEST(StringInfoTest, MergeAnswersMinus26AfterNarrowing) {
    boost::intrusive_ptr<StringInfo> info(new StringInfo(1, "a", Permission_t()));
    boost::intrusive_ptr<StringInfo> other(new StringInfo(2, "b", Permission_t()));
    info->SetMaxLength(100);
    other->SetMaxLength(50);
    EXPECT_FALSE(info->IsEqualBounds(other));
    EXPECT_EQ(info->MergeBounds(other), -26);
    EXPECT_EQ(info->GetMaxLength(), 50u);
    EXPECT_TRUE(info->IsEqualBounds(other));
    boost::intrusive_ptr<InfoBase const> numeric(new NumericInfo<U8Traits>(3, "n", Permission_t()));
    EXPECT_EQ(info->MergeBounds(numeric), -36);
    EXPECT_EQ(info->GetMaxLength(), 50u);

    bool changed = true;
    other->SetDefault("x");
    StringInfo target(9, "t", Permission_t());
    EXPECT_EQ(target.AssignValue(other, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.GetDefault(), "x");
    EXPECT_EQ(target.GetMaxLength(), 50u);
    EXPECT_EQ(target.AssignValue(other, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(target.AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(target.AssignValue(numeric, &changed), -26);
    EXPECT_EQ(target.GetName(), "t");
}

TEST(StringItemTest, SerialFormAndHostileRecords) {
    boost::intrusive_ptr<StringItem> item(StringItem::Create(5, "abc"));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    EXPECT_EQ(record.GetDataSize(), 4u);
    EXPECT_EQ(item->GetSerialDataSize(), 4u);
    EXPECT_EQ(Hex(PayloadOf(record)), "61 62 63 00");
    EXPECT_EQ(record.type, 6);
    EXPECT_EQ(record.numericType, 0);

    StringItem reader(5);
    Bytes const embedded = {'a', 0, 'b', 0};
    auto const cut = MakeRecord(5, 6, 0, embedded);
    EXPECT_EQ(reader.Deserialize(&cut), 0);
    EXPECT_EQ(reader.GetVal(), "a");

    // No terminator, or no payload at all: refused, value kept.
    Bytes const unterminated = {'a', 'b'};
    auto const openRecord = MakeRecord(5, 6, 0, unterminated);
    EXPECT_EQ(reader.Deserialize(&openRecord), -41);
    auto const empty = MakeRecord(5, 6, 0, Bytes());
    EXPECT_EQ(reader.Deserialize(&empty), -41);
    EXPECT_EQ(reader.GetVal(), "a");

    // An embedded zero is written out, and cuts the text when read back.
    boost::intrusive_ptr<StringItem> zero(StringItem::Create(5, std::string("x\0y", 3)));
    ItemBase::SerialStruct_t zeroRecord;
    ASSERT_EQ(zero->Serialize(&zeroRecord), 0);
    EXPECT_EQ(Hex(PayloadOf(zeroRecord)), "78 00 79 00");
    ItemBase::ConstSerialStruct_t const view(zeroRecord);
    EXPECT_EQ(reader.Deserialize(&view), 0);
    EXPECT_EQ(reader.GetVal(), "x");
}

TEST(StringItemTest, ValidateAgainstTheLength) {
    boost::intrusive_ptr<StringInfo> info(new StringInfo(1, "name", Permission_t()));
    info->SetMaxLength(3);
    boost::intrusive_ptr<StringItem> item(StringItem::Create(1, "abc"));
    EXPECT_EQ(item->Validate(info), nullptr);
    item->SetVal("abcd");
    auto const failed = item->Validate(info);
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(failed->GetSeverityLevel(), 4);
    EXPECT_EQ(failed->GetItem()->GetValAsString(), "abcd");
    info->SetMaxLength(0);
    item->SetVal("a");
    EXPECT_NE(item->Validate(info), nullptr);
    item->SetVal("");
    EXPECT_EQ(item->Validate(info), nullptr);
    boost::intrusive_ptr<InfoBase const> numeric(new NumericInfo<U8Traits>(1, "n", Permission_t()));
    EXPECT_NE(item->Validate(numeric), nullptr);
    // No minimum or maximum for strings: those checks always fail.
    EXPECT_NE(item->ValidateMin(info), nullptr);
    EXPECT_NE(item->ValidateMax(nullptr), nullptr);
}

TEST(StringItemTest, TextAndAssignment) {
    boost::intrusive_ptr<InfoBase const> none;
    StringItem item(2);
    std::istringstream in("  first second");
    std::ostringstream errors;
    EXPECT_TRUE(item.SetValFromStream(in, errors, none));
    EXPECT_EQ(item.GetVal(), "first");
    EXPECT_TRUE(item.SetValFromStream(in, errors, none));
    EXPECT_EQ(item.GetVal(), "second");
    EXPECT_TRUE(item.SetValFromStream(in, errors, none));  // at the end: unchanged
    EXPECT_EQ(item.GetVal(), "second");
    std::istringstream blanks("   ");
    EXPECT_TRUE(item.SetValFromStream(blanks, errors, none));  // failed read empties
    EXPECT_EQ(item.GetVal(), "");
    EXPECT_TRUE(item.IsEmpty());
    EXPECT_EQ(errors.str(), "");

    boost::intrusive_ptr<ItemBase const> source(StringItem::Create(3, "v"));
    bool changed = false;
    EXPECT_EQ(item.AssignArrayValue(source, 4, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item.GetVal(), "v");
    EXPECT_TRUE(item.IsEqualValue(source));
    EXPECT_EQ(item.AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);
    boost::intrusive_ptr<ItemBase const> number(NumericItem<U8Traits>::Create(3, 1));
    EXPECT_EQ(item.AssignValue(number, &changed), -26);
    EXPECT_EQ(item.AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(item.GetVal(), "v");
}

TEST(StringTextTest, CompactAndDumpForms) {
    StringInfo info(4, "label", Permission_t(6));
    info.SetDefault("hi there");
    info.SetMaxLength(12);
    EXPECT_EQ(TextOf(info), "\"hi there\"; max length=12");
    std::ostringstream dump;
    info.DumpVal(dump);
    EXPECT_EQ(
        dump.str(),
        "id: 4\npermission: 6\nname: label\ntype: String\nmaxLength: 12\ndefault: hi there\n");
    boost::intrusive_ptr<ItemBase> item(info.CreateItem());
    EXPECT_EQ(DumpOf(*item), "id: 4\ntype: String\nvalue: hi there\n");
    EXPECT_EQ(item->GetValAsString(), "hi there");
}

}  // namespace
