#include <gtest/gtest.h>

#include <cmath>

#include <legacy/oru/oru.h>

#include "alloc_count.h"

namespace {

using namespace Legacy::Oru;

TEST(ValidationTest, PassingChecksAllocateNothing) {
    boost::intrusive_ptr<NumericInfo<U32Traits>> info(
        new NumericInfo<U32Traits>(1, "gain", Permission_t()));
    info->SetMax(100);
    boost::intrusive_ptr<NumericItem<U32Traits>> item(NumericItem<U32Traits>::Create(1, 50));
    boost::intrusive_ptr<InfoBase const> const asBase(info);
    boost::intrusive_ptr<StringInfo> textInfo(new StringInfo(2, "name", Permission_t()));
    boost::intrusive_ptr<StringItem> text(StringItem::Create(2, "short"));
    boost::intrusive_ptr<InfoBase const> const textBase(textInfo);

    OruTest::AllocationScope const allocations;
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(item->Validate(asBase), nullptr);
        EXPECT_EQ(text->Validate(textBase), nullptr);
    }
    EXPECT_EQ(allocations.Count(), 0);
    EXPECT_EQ(info->GetRefCount(), 2);  // the check's hold came back
}

TEST(ValidationTest, FailuresCarrySeverityFourAndACopyOfTheItem) {
    boost::intrusive_ptr<NumericInfo<S16Traits>> info(
        new NumericInfo<S16Traits>(1, "level", Permission_t()));
    info->SetMin(-10);
    info->SetMax(10);
    boost::intrusive_ptr<NumericItem<S16Traits>> item(NumericItem<S16Traits>::Create(1, 11));

    for (auto const& failed : {item->Validate(info), item->ValidateMax(info)}) {
        ASSERT_NE(failed, nullptr);
        EXPECT_EQ(static_cast<int>(failed->GetSeverityLevel()), 4);
        EXPECT_EQ(failed->GetInfo(), nullptr);
        EXPECT_EQ(failed->GetAsString(), "");
        ASSERT_NE(failed->GetItem(), nullptr);
        EXPECT_NE(failed->GetItem().get(), item.get());
        EXPECT_EQ(failed->GetItem()->GetId(), 1u);
        EXPECT_TRUE(failed->GetItem()->IsEqualValue(item));
    }
    EXPECT_EQ(item->ValidateMin(info), nullptr);
    EXPECT_EQ(item->GetRefCount(), 1);
    EXPECT_EQ(info->GetRefCount(), 1);

    item->SetVal(-11);
    EXPECT_NE(item->ValidateMin(info), nullptr);
    EXPECT_EQ(item->ValidateMax(info), nullptr);
    EXPECT_NE(item->Validate(info), nullptr);
    item->SetVal(-10);
    EXPECT_EQ(item->Validate(info), nullptr);
}

TEST(ValidationTest, WrongOrMissingInfoIsATypeMismatch) {
    boost::intrusive_ptr<NumericItem<U32Traits>> item(NumericItem<U32Traits>::Create(1, 5));
    boost::intrusive_ptr<InfoBase const> const signedInfo(
        new NumericInfo<S32Traits>(1, "n", Permission_t()));
    boost::intrusive_ptr<InfoBase const> const textInfo(new StringInfo(1, "s", Permission_t()));
    for (auto const& info : {boost::intrusive_ptr<InfoBase const>(), signedInfo, textInfo}) {
        EXPECT_NE(item->Validate(info), nullptr);
        EXPECT_NE(item->ValidateMin(info), nullptr);
        EXPECT_NE(item->ValidateMax(info), nullptr);
    }
    boost::intrusive_ptr<StringItem> text(StringItem::Create(1, "x"));
    auto const failed = text->Validate(signedInfo);
    ASSERT_NE(failed, nullptr);
    EXPECT_EQ(failed->GetItem()->GetValAsString(), "x");
}

TEST(ValidationTest, FloatingDefaultsFailTheMinimumAndNaNPasses) {
    boost::intrusive_ptr<NumericInfo<FloatTraits>> info(
        new NumericInfo<FloatTraits>(1, "f", Permission_t()));
    boost::intrusive_ptr<ItemBase> item(info->CreateItem());
    EXPECT_NE(item->ValidateMin(info), nullptr);
    auto* real = static_cast<NumericItem<FloatTraits>*>(item.get());
    real->SetVal(NAN);
    EXPECT_EQ(item->Validate(info), nullptr);
    real->SetVal(INFINITY);
    EXPECT_NE(item->ValidateMax(info), nullptr);
}

}  // namespace
