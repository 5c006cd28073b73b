#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase>;
using Pair = ExtendedItem::Pair;

// A caller's own Info derived from the family's: its items still pass.
class VendorInfo : public ExtendedInfo {
public:
    VendorInfo() : ExtendedInfo(1, "vendor", Permission_t()) {}
};

TEST(ExtendedItemTest, HasNoSerialOrTextFormAndTouchesNothingTrying) {
    boost::intrusive_ptr<ExtendedItem> item(ExtendedItem::Create(0x42000030, {"key", "value"}));
    EXPECT_EQ(item->GetSerialDataSize(), 0u);
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(item->Serialize(&record), -1);
    EXPECT_EQ(record.GetId(), 0u);
    EXPECT_EQ(record.type, 0);
    EXPECT_EQ(record.GetData(), nullptr);
    EXPECT_EQ(item->Serialize(nullptr), -1);

    // A record of the right header is refused as well, and the pair stays.
    Bytes const payload = {1, 2, 3};
    auto const own = MakeRecord(0x42000030, 0xFC, 0, payload);
    EXPECT_EQ(item->Deserialize(&own), -1);
    EXPECT_EQ(item->Deserialize(nullptr), -1);
    EXPECT_EQ(item->GetVal(), Pair("key", "value"));

    // The dispatch has no row for the type: nothing is made and item stays.
    ItemPtr held(item);
    EXPECT_EQ(ItemBase::Deserialize(&own, held), -41);
    EXPECT_EQ(held.get(), item.get());

    // In a composite it leaves ten zero bytes, and the composite's bounds
    // are never equal.
    CompositeItem composite(2);
    composite.AddItem(item);
    ItemBase::SerialStruct_t outer;
    ASSERT_EQ(composite.Serialize(&outer), 0);
    EXPECT_EQ(OruTest::Hex(OruTest::PayloadOf(outer)), "00 01 00 00 00 00 00 00 00 00 00 00");
    boost::intrusive_ptr<CompositeInfo> shape(new CompositeInfo(2, "c", Permission_t()));
    shape->AddInfo(InfoPtr(new ExtendedInfo(3, "e", Permission_t())));
    EXPECT_FALSE(shape->IsEqualBounds(shape));

    std::istringstream in("text");
    std::ostringstream errors, text;
    EXPECT_FALSE(item->SetValFromStream(in, errors, nullptr));
    EXPECT_EQ(in.tellg(), 0);
    EXPECT_EQ(errors.str(), "");
    item->operator<<(text);
    ExtendedInfo(1, "e", Permission_t()).operator<<(text);
    EXPECT_EQ(text.str(), "");
}

TEST(ExtendedItemTest, EmptinessEqualityAndAssignment) {
    struct Row {
        Pair value;
        bool empty;
    };
    Row const rows[] = {{{"", ""}, true}, {{"", "second"}, true}, {{"first", ""}, false}};
    for (Row const& row : rows) {
        SCOPED_TRACE(row.value.first + "/" + row.value.second);
        EXPECT_EQ(ItemPtr(ExtendedItem::Create(1, row.value))->IsEmpty(), row.empty);
    }

    boost::intrusive_ptr<ExtendedItem> item(ExtendedItem::Create(1, {"a", "b"}));
    boost::intrusive_ptr<ExtendedItem> same(ExtendedItem::Create(2, {"a", "b"}));
    boost::intrusive_ptr<ExtendedItem> other(ExtendedItem::Create(3, {"a", "c"}));
    EXPECT_TRUE(item->IsEqualValue(same));
    EXPECT_FALSE(item->IsEqualValue(other));
    EXPECT_FALSE(item->IsEqualValue(nullptr));

    bool changed = true;
    ASSERT_EQ(item->AssignValue(same, &changed), 0);
    EXPECT_FALSE(changed);
    ASSERT_EQ(item->AssignArrayValue(other, 7, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->Val(), Pair("a", "c"));
    EXPECT_EQ(item->GetId(), 1u);
    EXPECT_EQ(item->AssignValue(nullptr, &changed), -31);
    changed = false;
    EXPECT_EQ(item->AssignValue(ItemPtr(new ColourItem(1)), &changed), -26);
    EXPECT_FALSE(changed);

    // Copies are independent of the source.
    boost::intrusive_ptr<ExtendedItem> copy(item->DeepCopy());
    copy->Val().first = "changed";
    EXPECT_EQ(item->Val().first, "a");
}

TEST(ExtendedInfoTest, DefaultBoundsAndChecks) {
    boost::intrusive_ptr<ExtendedInfo> info(new ExtendedInfo(5, "Vendor", Permission_t(6)));
    EXPECT_EQ(info->SetDefault({"k", "v"}), 0);
    EXPECT_FALSE(info->IsEqualBounds(info));
    EXPECT_EQ(info->MergeBounds(info), -26);
    EXPECT_EQ(info->MergeBounds(nullptr), -26);

    ItemPtr const item(info->CreateItem());
    ASSERT_NE(dynamic_cast<ExtendedItem*>(item.get()), nullptr);
    EXPECT_EQ(item->GetId(), 5u);
    EXPECT_EQ(static_cast<ExtendedItem&>(*item).GetVal(), Pair("k", "v"));

    boost::intrusive_ptr<ExtendedInfo> target(new ExtendedInfo(9, "T", Permission_t()));
    bool changed = false;
    ASSERT_EQ(target->AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetDefault(), Pair("k", "v"));
    ASSERT_EQ(target->AssignValue(info, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(target->AssignValue(new ColourInfo(1, "c", Permission_t()), &changed), -26);
    EXPECT_EQ(target->GetName(), "T");

    // Only the class of the Info counts; any pair passes.
    EXPECT_EQ(item->Validate(info), nullptr);
    EXPECT_EQ(item->Validate(new VendorInfo), nullptr);
    for (InfoPtr const& wrong : {InfoPtr(), InfoPtr(new ColourInfo(5, "c", Permission_t()))}) {
        auto const failed = item->Validate(wrong);
        ASSERT_NE(failed, nullptr);
        EXPECT_EQ(static_cast<int>(failed->GetSeverityLevel()), 4);
        EXPECT_EQ(failed->GetInfo(), nullptr);
        ASSERT_NE(failed->GetItem(), nullptr);
        EXPECT_NE(failed->GetItem().get(), item.get());
        EXPECT_TRUE(failed->GetItem()->IsEqualValue(item));
    }

    std::ostringstream infoDump, itemDump;
    info->DumpVal(infoDump);
    EXPECT_EQ(infoDump.str(), "id: 5\npermission: 6\nname: Vendor\ntype: Invalid\n");
    item->DumpVal(itemDump);
    EXPECT_EQ(itemDump.str(), "id: 5\ntype: Invalid\n");
}

}  // namespace
