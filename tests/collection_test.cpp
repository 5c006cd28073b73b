#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase>;

boost::intrusive_ptr<CollectionItem> MakeCollection(unsigned int id, unsigned char a,
                                                    unsigned char b) {
    boost::intrusive_ptr<CollectionItem> item(new CollectionItem(id));
    item->AddItem(ItemPtr(NumericItem<U8Traits>::Create(1, a)));
    item->AddItem(ItemPtr(NumericItem<U8Traits>::Create(2, b)));
    return item;
}

TEST(CollectionItemTest, HasNoSerialFormAndLeavesTenZeroBytesInAComposite) {
    auto const collection = MakeCollection(0x42000040, 7, 9);
    EXPECT_EQ(collection->GetSerialDataSize(), 0u);
    EXPECT_EQ(collection->Serialize(nullptr), -26);
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(collection->Serialize(&record), -26);
    EXPECT_EQ(record.GetData(), nullptr);
    EXPECT_EQ(record.type, 0);

    Bytes const payload(4, 0);
    auto const own = MakeRecord(0x42000040, 0xFE, 0, payload);

    // The dispatch makes an empty collection with the record's id and passes
    // the refusal on.
    ItemPtr made;
    EXPECT_EQ(ItemBase::Deserialize(&own, made), -26);
    auto const* const empty = dynamic_cast<CollectionItem const*>(made.get());
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->GetId(), 0x42000040u);
    EXPECT_TRUE(empty->IsEmpty());

    // Between two numbers, so that the records around it stay where they belong.
    CompositeItem composite(0x42000041);
    composite.AddItem(ItemPtr(NumericItem<U8Traits>::Create(1, 7)));
    composite.AddItem(collection);
    composite.AddItem(ItemPtr(NumericItem<U8Traits>::Create(3, 9)));
    ItemBase::SerialStruct_t outer;
    ASSERT_EQ(composite.Serialize(&outer), 0);
    EXPECT_EQ(Hex(PayloadOf(outer)),
              "00 03 "
              "00 00 00 01 00 00 00 01 02 01 07 "
              "00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 03 00 00 00 01 02 01 09");
    ItemBase::ConstSerialStruct_t const view(outer);
    ItemPtr back;
    EXPECT_EQ(ItemBase::Deserialize(&view, back), -1);
}

TEST(CollectionItemTest, AssignmentSharesTheChildrenAndSurvivesItself) {
    auto const source = MakeCollection(1, 7, 9);
    auto const target = MakeCollection(2, 1, 1);
    EXPECT_FALSE(target->IsEqualValue(source));

    bool changed = false;
    ASSERT_EQ(target->AssignArrayValue(source, 3, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetId(), 2u);
    ASSERT_EQ(target->GetSize(), 2u);
    EXPECT_EQ(target->GetItem(0).get(), source->GetItem(0).get());
    EXPECT_TRUE(target->IsEqualValue(source));
    static_cast<NumericItem<U8Traits>&>(*source->GetItem(1)).SetVal(42);
    EXPECT_EQ(target->GetItem(1)->GetValAsString(), "42");

    // Self-assignment keeps the children, unlike a composite's.
    changed = false;
    ASSERT_EQ(target->AssignValue(target, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetSize(), 2u);

    changed = false;
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(target->AssignValue(ItemPtr(new CompositeItem(2)), &changed), -26);
    EXPECT_FALSE(changed);
    EXPECT_EQ(target->GetSize(), 2u);

    // DeepCopy makes new children with their own ids; a plain copy shares.
    boost::intrusive_ptr<CollectionItem> deep(static_cast<CollectionItem*>(source->DeepCopy(8)));
    EXPECT_EQ(deep->GetId(), 8u);
    EXPECT_NE(deep->GetItem(0).get(), source->GetItem(0).get());
    EXPECT_EQ(deep->GetItem(1)->GetId(), 2u);
    EXPECT_TRUE(deep->IsEqualValue(source));
    CollectionItem const shallow(*source);
    EXPECT_EQ(shallow.GetItem(0).get(), source->GetItem(0).get());

    // Sizes and child values decide equality; a null other is never equal.
    auto const shorter = MakeCollection(1, 7, 42);
    shorter->SetItems({shorter->GetItem(0), ItemPtr()});
    EXPECT_EQ(shorter->GetSize(), 1u);
    EXPECT_FALSE(shorter->IsEqualValue(source));
    EXPECT_FALSE(source->IsEqualValue(nullptr));
}

TEST(CollectionItemTest, PassesEveryCheckAndHasNoTextInput) {
    auto const item = MakeCollection(5, 7, 9);
    boost::intrusive_ptr<CollectionInfo> info(new CollectionInfo(5, "Bag", Permission_t(2)));
    EXPECT_EQ(item->Validate(nullptr), nullptr);
    EXPECT_EQ(item->Validate(info), nullptr);
    EXPECT_EQ(item->Validate(new ColourInfo(5, "c", Permission_t())), nullptr);

    std::istringstream in("(1, 2)");
    std::ostringstream errors;
    EXPECT_FALSE(item->SetValFromStream(in, errors, info));
    EXPECT_EQ(errors.str(), "Impl. me");
    EXPECT_EQ(item->GetSize(), 2u);

    EXPECT_EQ(item->GetValAsString(), "(7, 9)");
    EXPECT_EQ(DumpOf(*item), "id: 5\ntype: Collection\nvalue: (2 items)");
    EXPECT_EQ(CollectionItem(1).GetValAsString(), "()");

    // The constant getter appends.
    std::vector<CollectionItem::ConstItemPtr> children{CollectionItem::ConstItemPtr()};
    static_cast<CollectionItem const&>(*item).GetItems(children);
    EXPECT_EQ(children.size(), 3u);
}

TEST(CollectionInfoTest, ChildrenShapeNothingButCountInBoundsAndText) {
    auto const numeric = [](unsigned int max) {
        auto* const info = new NumericInfo<U32Traits>(1, "n", Permission_t());
        info->SetMax(max);
        return InfoPtr(info);
    };
    boost::intrusive_ptr<CollectionInfo> info(new CollectionInfo(6, "Bag", Permission_t(2)));
    info->SetInfos({numeric(10), InfoPtr(), numeric(20), numeric(30)});
    ASSERT_EQ(info->GetSize(), 3u);

    ItemPtr const item(info->CreateItem());
    ASSERT_NE(dynamic_cast<CollectionItem*>(item.get()), nullptr);
    EXPECT_EQ(item->GetId(), 6u);
    EXPECT_TRUE(item->IsEmpty());

    boost::intrusive_ptr<CollectionInfo> other(info->DeepCopy(7));
    EXPECT_NE(other->GetInfo(0).get(), info->GetInfo(0).get());
    EXPECT_TRUE(info->IsEqualBounds(other));
    other->SetInfo(2, numeric(31));
    EXPECT_FALSE(info->IsEqualBounds(other));
    EXPECT_FALSE(info->IsEqualBounds(new CompositeInfo(6, "Bag", Permission_t(2))));
    EXPECT_EQ(info->MergeBounds(nullptr), -26);
    EXPECT_EQ(info->MergeBounds(other), -26);

    bool changed = false;
    ASSERT_EQ(other->AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(other->GetInfo(2).get(), info->GetInfo(2).get());
    changed = false;
    ASSERT_EQ(info->AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info->GetSize(), 3u);
    EXPECT_EQ(info->AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(info->AssignValue(new CompositeInfo(6, "c", Permission_t()), &changed), -26);

    std::ostringstream text, dump;
    text << *info;
    EXPECT_EQ(text.str(), "(0 <= 0 <= 10, 0 <= 0 <= 20, 0 <= 0 <= 30)");
    info->DumpVal(dump);
    EXPECT_EQ(dump.str(), "id: 6\npermission: 2\nname: Bag\ntype: Collection\n");
}

}  // namespace
