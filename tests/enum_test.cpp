#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase>;

boost::intrusive_ptr<EnumInfo> MakeModes() {
    boost::intrusive_ptr<EnumInfo> info(new EnumInfo(1, "Mode", Permission_t(2), true));
    EXPECT_EQ(info->AddElem({"auto", 0}), 0);
    EXPECT_EQ(info->AddElem({"day", 1}), 0);
    EXPECT_EQ(info->AddElem({"night", 2, true}), 0);
    return info;
}

TEST(EnumInfoTest, DefaultFollowsTheTableOnlyWhereTold) {
    EnumInfo info(1, "e", Permission_t(), false);
    // No table: nothing to compare with.
    EXPECT_EQ(info.SetDefault(7), 0);
    EXPECT_EQ(info.GetDefault(), 7);
    EXPECT_EQ(info.SetTable({}), 0);
    EXPECT_EQ(info.GetDefault(), 7);
    EXPECT_EQ(info.SetTable({{"a", 1}, {"b", 2}}), 0);
    EXPECT_EQ(info.GetDefault(), 1);
    EXPECT_EQ(info.SetDefault(7), -23);
    EXPECT_EQ(info.GetDefault(), 1);
    EXPECT_EQ(info.SetDefault(2), 0);
    EXPECT_EQ(info.SetTable({{"x", 5}, {"b", 2}}), 0);
    EXPECT_EQ(info.GetDefault(), 2);

    // A disabled entry is still present and may be the default.
    EXPECT_EQ(info.DisableElem(2), 0);
    EXPECT_EQ(info.SetDefault(2), 0);
    EXPECT_TRUE(info.IsPresent(2));
    EXPECT_FALSE(info.IsEnabled(2));
    EXPECT_FALSE(info.IsEnabled(9));
    // Removing the default's entry leaves the default behind.
    EXPECT_EQ(info.RemoveElem(2), 0);
    EXPECT_EQ(info.GetDefault(), 2);
    EXPECT_EQ(info.RemoveElem(2), -25);
    EXPECT_EQ(info.GetSize(), 1u);
}

TEST(EnumInfoTest, ElementsByValueAndName) {
    auto const info = MakeModes();
    EXPECT_EQ(info->AddElem({"day", 9}), -47);
    EXPECT_EQ(info->AddElem({"dusk", 1}), -47);
    EXPECT_EQ(info->AddElem({"Day", 9}), 0);  // names compare byte by byte
    EXPECT_EQ(info->GetSize(), 4u);

    ElemType<int> element;
    EXPECT_EQ(info->GetElem(2, element), 0);
    EXPECT_EQ(element.name, "night");
    EXPECT_TRUE(element.disabled);
    EXPECT_EQ(info->GetElem(3, element), -25);
    std::string name = "kept";
    EXPECT_EQ(info->GetElemName(7, name), -25);
    EXPECT_EQ(name, "kept");
    EXPECT_EQ(info->GetElemName(1, name), 0);
    EXPECT_EQ(name, "day");
    int value = -1;
    EXPECT_EQ(info->GetElemVal("night", value), 0);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(info->GetElemVal("nigh", value), -25);
    EXPECT_EQ(info->EnableElem(2), 0);
    EXPECT_TRUE(info->IsEnabled(2));
    EXPECT_EQ(info->EnableElem(5), -25);
    EXPECT_EQ(info->DisableElem(5), -25);

    // A table set whole may hold duplicates; searches find the first.
    info->SetTable({{"a", 1}, {"b", 1}});
    EXPECT_EQ(info->GetElemName(1, name), 0);
    EXPECT_EQ(name, "a");
}

TEST(EnumInfoTest, TextBoundsAssignmentAndCopies) {
    EnumInfo plain(3, "p", Permission_t(), false);
    plain.SetDefault(5);
    EXPECT_EQ(TextOf(plain), "; default=5");
    auto const info = MakeModes();
    info->SetDefault(1);
    EXPECT_EQ(TextOf(*info), "auto=0, day=1, night*=2; default=1");
    EXPECT_EQ(DumpOf(*info), "id: 1\npermission: 2\nname: Mode\ntype: Enum\n");

    boost::intrusive_ptr<EnumInfo> copy(info->DeepCopy(4));
    EXPECT_EQ(copy->GetId(), 4u);
    EXPECT_TRUE(copy->IsLocalized());
    EXPECT_EQ(TextOf(*copy), TextOf(*info));
    // Tables never count as equal bounds, and never merge.
    EXPECT_FALSE(copy->IsEqualBounds(info));
    EXPECT_EQ(copy->MergeBounds(info), -26);
    EXPECT_EQ(copy->MergeBounds(nullptr), -36);
    EXPECT_EQ(copy->MergeBounds(InfoPtr(new BoolInfo(1, "b", Permission_t()))), -36);

    bool changed = false;
    EnumInfo target(9, "t", Permission_t(), false);
    target.SetTable({{"x", 7}, {"auto", 0}, {"y", 8}, {"z", 9}});
    ASSERT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(TextOf(target), "auto=0, day=1, night*=2; default=1");
    EXPECT_FALSE(target.IsLocalized());  // not assigned
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_FALSE(changed);
    // Only the disabled flag differs: still a change.
    info->EnableElem(2);
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    changed = true;
    EXPECT_EQ(target.AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(target.AssignValue(InfoPtr(new BoolInfo(1, "b", Permission_t())), &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.GetName(), "t");
}

TEST(EnumItemTest, SetValWithTheInfoAndValidateDisagreeOnDisabled) {
    auto const info = MakeModes();
    info->SetDefault(1);
    boost::intrusive_ptr<EnumItem> item(static_cast<EnumItem*>(info->CreateItem()));
    EXPECT_EQ(item->GetVal(), 1);
    item->SetVal(2, *info);
    EXPECT_EQ(item->GetVal(), 1);
    item->SetVal(0, *info);
    EXPECT_EQ(item->GetVal(), 0);
    // Validate asks only whether the value is known.
    item->SetVal(2);
    EXPECT_EQ(item->Validate(info), nullptr);
    item->SetVal(3);
    auto const failed = item->Validate(info);
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(static_cast<int>(failed->GetSeverityLevel()), 4);
    EXPECT_EQ(failed->GetItem()->GetValAsString(), "3");
    EXPECT_NE(item->Validate(nullptr), nullptr);
    EXPECT_NE(item->Validate(InfoPtr(new NumericInfo<S32Traits>(1, "n", Permission_t()))), nullptr);

    EnumInfo empty(2, "e", Permission_t(), false);
    empty.SetDefault(4);
    item->SetVal(5, empty);
    EXPECT_EQ(item->GetVal(), 4);
}

TEST(EnumItemTest, AssignmentTakesNumbersWithoutLookingAtTables) {
    struct Row {
        char const* name;
        ItemPtr source;
        unsigned int index;
        int code;
        int value;
    };
    Row const rows[] = {
        {"double truncated", ItemPtr(NumericItem<DoubleTraits>::Create(1, 2.9)), 0, 0, 2},
        {"negative float truncated", ItemPtr(NumericItem<FloatTraits>::Create(1, -2.9f)), 0, 0, -2},
        {"U64 low 32 bits", ItemPtr(NumericItem<U64Traits>::Create(1, 4294967297ull)), 0, 0, 1},
        {"S8 sign-extended", ItemPtr(NumericItem<S8Traits>::Create(1, -1)), 0, 0, -1},
        {"U16 zero-extended", ItemPtr(NumericItem<U16Traits>::Create(1, 65535)), 0, 0, 65535},
        {"U32 wraps", ItemPtr(NumericItem<U32Traits>::Create(1, 4294967295u)), 0, 0, -1},
        {"flag", ItemPtr(BoolItem::Create(1, true)), 3, 0, 1},
        {"enum", ItemPtr(EnumItem::Create(1, -7)), 3, 0, -7},
        {"string is no name lookup", ItemPtr(StringItem::Create(1, "1")), 0, -26, 42},
        {"flag array", ItemPtr(BoolArrayItem::Create(1, {true})), 0, -26, 42},
        {"null", nullptr, 0, -31, 42},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        EnumItem item(1);
        item.SetVal(42);
        bool changed = false;
        EXPECT_EQ(item.AssignArrayValue(row.source, row.index, &changed), row.code);
        EXPECT_EQ(item.GetVal(), row.value);
        EXPECT_EQ(changed, row.code == 0);
    }
    // The number an enum offers to a numeric family.
    NumericItem<S8Traits> number(1);
    EXPECT_EQ(number.AssignValue(ItemPtr(EnumItem::Create(1, 300)), nullptr), 0);
    EXPECT_EQ(number.GetVal(), 44);
}

TEST(EnumItemTest, SerialFormAndText) {
    boost::intrusive_ptr<EnumItem> item(EnumItem::Create(0x41000003, -2));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)), "FF FF FF FE");
    EXPECT_EQ(record.type, 5);
    ItemBase::ConstSerialStruct_t const view(record);
    ItemPtr back;
    ASSERT_EQ(ItemBase::Deserialize(&view, back), 0);
    EXPECT_TRUE(back->IsEqualValue(item));

    EnumItem reader(0x41000003);
    reader.SetVal(9);
    Bytes const three = {0, 0, 1};
    auto const shortRecord = MakeRecord(0x41000003, 5, 0, three);
    EXPECT_EQ(reader.Deserialize(&shortRecord), -41);
    EXPECT_EQ(reader.Serialize(nullptr), -41);
    EXPECT_EQ(reader.GetVal(), 9);

    EXPECT_EQ(item->GetValAsString(), "-2");
    EXPECT_EQ(DumpOf(*item), "id: 1090519043\ntype: Enum\nvalue: -2\n");

    std::ostringstream errors;
    std::istringstream big("4294967295");
    ASSERT_TRUE(reader.SetValFromStream(big, errors, nullptr));
    EXPECT_EQ(reader.GetVal(), -1);
    std::istringstream name("night");
    EXPECT_FALSE(reader.SetValFromStream(name, errors, nullptr));
    EXPECT_FALSE(reader.SetValFromStream(big, errors, nullptr));  // at its end now
    EXPECT_EQ(errors.str(), "Error parsing enumItem\nError parsing enumItem\n");
    EXPECT_EQ(reader.GetVal(), -1);
}

}  // namespace
