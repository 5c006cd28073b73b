#include <legacy/oru/infoitemholderdefs.h>

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vintor/exception.h>

#include "directory_test_util.h"

namespace {

using namespace OruTest;

TEST(InfoItemHolderTest, NullPointersThrowLogicErrorWithTheirPlace) {
    try {
        InfoItemHolder slot{InfoHolderPtr()};
        FAIL() << "no exception";
    } catch (Vintor::LogicError const& error) {
        EXPECT_EQ(error.GetCode(), -32);
        EXPECT_STREQ(error.what(), "Null InfoHolder Pointer");
        EXPECT_STREQ(error.GetLocation().GetFile(), "legacy/include/legacy/oru/infoitemholderdefs");
        EXPECT_STREQ(error.GetLocation().GetFunction(),
                     "Legacy::Oru::InfoItemHolder::InfoItemHolder");
        EXPECT_EQ(error.GetLocation().GetLine(), 273);
    }
    // Holders of nothing would crash every reader of their key.
    EXPECT_THROW(InfoHolder{boost::intrusive_ptr<InfoBase>()}, Vintor::LogicError);
    EXPECT_THROW(ItemHolder{boost::intrusive_ptr<ItemBase>()}, Vintor::LogicError);
}

TEST(InfoItemHolderTest, CloneCopiesTheHeldObjectAndLeavesTheSourceCount) {
    auto const info = U32InfoHolder(0x40000003, "Gain", 80);
    boost::intrusive_ptr<InfoHolder const> const infoCopy(info->Clone());
    EXPECT_EQ(info->GetRefCount(), 1);
    EXPECT_EQ(infoCopy->GetRefCount(), 1);  // ours only: Clone answers count 0
    EXPECT_EQ(info->GetInfo()->GetRefCount(), 1);
    ASSERT_NE(infoCopy->GetInfo(), info->GetInfo());
    EXPECT_EQ(infoCopy->GetInfo()->GetId(), 0x40000003u);
    EXPECT_EQ(infoCopy->GetInfo()->GetName(), "Gain");
    EXPECT_TRUE(infoCopy->GetInfo()->IsEqualBounds(info->GetInfo()));
    static_cast<NumericInfo<U32Traits>&>(*infoCopy->GetInfo()).SetMax(10);
    EXPECT_EQ(static_cast<NumericInfo<U32Traits>&>(*info->GetInfo()).GetMax(), 80u);

    auto const item = U32ItemHolder(0x40000003, 42);
    boost::intrusive_ptr<ItemHolder const> const itemCopy(item->Clone());
    EXPECT_EQ(item->GetRefCount(), 1);
    EXPECT_EQ(itemCopy->GetRefCount(), 1);
    ASSERT_NE(itemCopy->GetItem(), item->GetItem());
    EXPECT_EQ(itemCopy->GetItem()->GetId(), 0x40000003u);
    EXPECT_EQ(U32Value(*itemCopy), 42u);

    boost::intrusive_ptr<ItemHolder const> const fresh(info->CreateItemHolder());
    EXPECT_EQ(fresh->GetItem()->GetId(), 0x40000003u);
    EXPECT_EQ(fresh->GetItem()->GetType(), OruType_t::Numeric);
    EXPECT_EQ(fresh->GetItem()->GetNumericType(), NumericType_t::U32);
}

// Holders that note when they go.
struct NotingInfoHolder : InfoHolder {
    NotingInfoHolder(std::vector<std::string>& log) : InfoHolder(U32Info(1, "a")), log_(log) {}
    ~NotingInfoHolder() override { log_.push_back("info"); }
    std::vector<std::string>& log_;
};
struct NotingItemHolder : ItemHolder {
    NotingItemHolder(std::vector<std::string>& log) : ItemHolder(U32Item(1, 0)), log_(log) {}
    ~NotingItemHolder() override { log_.push_back("item"); }
    std::vector<std::string>& log_;
};

TEST(InfoItemHolderTest, SlotStartsWithoutItemAndReleasesItemFirst) {
    std::vector<std::string> log;
    {
        boost::intrusive_ptr<InfoItemHolder> const slot(
            new InfoItemHolder(InfoHolderPtr(new NotingInfoHolder(log))));
        EXPECT_FALSE(slot->GetItemHolder());
        ASSERT_TRUE(slot->GetInfoHolder());
        slot->SetItemHolder(ItemHolderPtr(new NotingItemHolder(log)));
        EXPECT_EQ(slot->GetInfoHolder()->GetRefCount(), 1);
        EXPECT_EQ(slot->GetItemHolder()->GetRefCount(), 1);
    }
    EXPECT_EQ(log, (std::vector<std::string>{"item", "info"}));
}

}  // namespace
