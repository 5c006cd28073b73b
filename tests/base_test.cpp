#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;
using U32Info = NumericInfo<U32Traits>;
using U32Item = NumericItem<U32Traits>;

TEST(InfoBaseTest, AssignmentKeepsIdentityAndCopiesFamilyFields) {
    U32Info target(1, "target", Permission_t(7));
    U32Info source(2, "source", Permission_t(9));
    source.SetMax(100);
    source.SetDefault(42);
    target = source;
    EXPECT_EQ(target.GetId(), 1u);
    EXPECT_EQ(target.GetName(), "target");
    EXPECT_EQ(target.GetPermission(), Permission_t(7));
    EXPECT_EQ(target.GetDefault(), 42u);
    EXPECT_EQ(target.GetMax(), 100u);

    U32Item item(5);
    item.SetVal(3);
    U32Item other(6);
    other.SetVal(9);
    item = other;
    EXPECT_EQ(item.GetId(), 5u);
    EXPECT_EQ(item.GetVal(), 9u);
}

TEST(InfoBaseTest, DeepCopiesTakeGivenIdentityAndLeaveSourceCount) {
    boost::intrusive_ptr<U32Info> info(new U32Info(3, "gain", Permission_t(0x0102)));
    info->SetMax(10);
    boost::intrusive_ptr<InfoBase> copy(info->InfoBase::DeepCopy(7));
    EXPECT_EQ(info->GetRefCount(), 1);
    EXPECT_EQ(copy->GetRefCount(), 1);
    EXPECT_EQ(copy->GetId(), 7u);
    EXPECT_EQ(copy->GetName(), "gain");
    EXPECT_EQ(copy->GetPermission(), Permission_t(0x0102));
    EXPECT_TRUE(copy->IsEqualBounds(info));
    boost::intrusive_ptr<InfoBase> renamed(info->InfoBase::DeepCopy(8, "other"));
    EXPECT_EQ(renamed->GetName(), "other");
    EXPECT_EQ(renamed->GetPermission(), Permission_t(0x0102));
}

TEST(InfoBaseTest, ComparesIdsAsUnsignedAndNamesExactly) {
    U32Info low(1, "a", Permission_t());
    U32Info high(0x80000000u, "a\0b", Permission_t());
    EXPECT_TRUE(low < high);
    EXPECT_TRUE(high > low);
    EXPECT_TRUE(low <= low);
    EXPECT_TRUE(high == 0x80000000u);
    EXPECT_TRUE(low == std::string("a"));
    EXPECT_FALSE(low == std::string("a\0", 2));
}

TEST(ItemBaseTest, HasNoNameAndComparesById) {
    U32Item item(4);
    EXPECT_TRUE(item.GetName().empty());
    EXPECT_FALSE(item == std::string());
    EXPECT_FALSE(item == std::string("x"));
    EXPECT_TRUE(item == 4u);
    EXPECT_TRUE(U32Item(3) < item);
    EXPECT_FALSE(item.IsEmpty());
    EXPECT_EQ(ItemBase::GetTypeStatic(), OruType_t::Undefined);
    EXPECT_EQ(ItemBase::GetNumericTypeStatic(), NumericType_t::Undefined);
}

struct Tracked : U32Item {
    explicit Tracked(int* destroyed) : destroyed_(destroyed) {}
    ~Tracked() override { ++*destroyed_; }
    int* destroyed_;
};

TEST(ItemBaseTest, ReleaseBelowTwoDestroys) {
    int destroyed = 0;
    auto* item = new Tracked(&destroyed);
    intrusive_ptr_add_ref(item);
    intrusive_ptr_add_ref(item);
    intrusive_ptr_release(item);
    EXPECT_EQ(destroyed, 0);
    intrusive_ptr_release(item);
    EXPECT_EQ(destroyed, 1);
    // A release at a count of 0 destroys too.
    intrusive_ptr_release(new Tracked(&destroyed));
    EXPECT_EQ(destroyed, 2);
}

TEST(ItemBaseTest, IsEqualTypeNeedsTypeAndElement) {
    boost::intrusive_ptr<U32Info> info(new U32Info(1, "n", Permission_t()));
    boost::intrusive_ptr<ItemBase const> same(new U32Item(1));
    boost::intrusive_ptr<ItemBase const> signedItem(new NumericItem<S32Traits>(1));
    boost::intrusive_ptr<ItemBase const> text(new StringItem(1));
    EXPECT_TRUE(info->IsEqualType(same));
    EXPECT_FALSE(info->IsEqualType(signedItem));
    EXPECT_FALSE(info->IsEqualType(text));
    EXPECT_FALSE(info->IsEqualType(boost::intrusive_ptr<ItemBase const>()));
    EXPECT_FALSE(info->IsEqualType(boost::intrusive_ptr<InfoBase const>()));
    EXPECT_FALSE(same->IsEqualType(nullptr));
    EXPECT_FALSE(same->IsEqualType(signedItem));
}

TEST(ItemBaseTest, AssignValueGoesThroughIndexZero) {
    boost::intrusive_ptr<U32Item> target(new U32Item(1));
    boost::intrusive_ptr<ItemBase const> source(NumericItem<S8Traits>::Create(2, -1));
    bool changed = false;
    EXPECT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetVal(), 0xFFFFFFFFu);
    EXPECT_EQ(target->GetValAsString(), "4294967295");
}

TEST(FormattedInfoItemDumpTest, AlignsNameTypeAndBothTexts) {
    boost::intrusive_ptr<U32Info> info(new U32Info(1, "Gain", Permission_t()));
    info->SetMax(100);
    info->SetDefault(50);
    boost::intrusive_ptr<ItemBase> item(info->CreateItem());

    std::ostringstream both;
    FormattedInfoItemDump(both, info, item);
    EXPECT_EQ(both.str(), std::string("Gain") + std::string(28, ' ') + " NumericU32" +
                              std::string(9, ' ') + "{50} {0 <= 50 <= 100}");

    std::ostringstream itemOnly;
    FormattedInfoItemDump(itemOnly, nullptr, item);
    EXPECT_EQ(itemOnly.str(), "NumericU32         50");

    std::ostringstream infoOnly;
    infoOnly << std::right;
    FormattedInfoItemDump(infoOnly, info, nullptr);
    EXPECT_EQ(infoOnly.str(), "Gain" + std::string(28, ' ') + " NumericU32         0 <= 50 <= 100");
    // The caller's adjustment survives the padded fields.
    EXPECT_TRUE(infoOnly.flags() & std::ios_base::right);

    std::ostringstream none;
    none << "x";
    FormattedInfoItemDump(none, nullptr, nullptr);
    EXPECT_EQ(none.str(), "x");

    std::ostringstream mismatch;
    boost::intrusive_ptr<ItemBase> otherId(new U32Item(2));
    FormattedInfoItemDump(mismatch, info, otherId);
    EXPECT_EQ(mismatch.str(), "InfoItemId mismatch!");

    std::ostringstream typeMismatch;
    FormattedInfoItemDump(typeMismatch, info, new NumericItem<U16Traits>(1));
    EXPECT_EQ(typeMismatch.str(), "Type mismatch!");
}

TEST(ResultElemTest, CopiesItemOnConstructionAndSharesOnCopy) {
    boost::intrusive_ptr<U32Item> item(U32Item::Create(9, 3));
    boost::intrusive_ptr<U32Info> info(new U32Info(9, "n", Permission_t(5)));
    ResultElem element(static_cast<Vintor::SeverityLevel_t>(4), item, info);
    EXPECT_EQ(item->GetRefCount(), 1);
    ASSERT_TRUE(element.GetItem());
    EXPECT_NE(element.GetItem().get(), item.get());
    EXPECT_TRUE(element.GetItem()->IsEqualValue(item));
    ASSERT_TRUE(element.GetInfo());
    EXPECT_EQ(element.GetInfo()->GetPermission(), Permission_t(5));

    ResultElem copy(element);
    EXPECT_EQ(copy.GetItem(), element.GetItem());
    EXPECT_EQ(element.GetItem()->GetRefCount(), 2);
    EXPECT_EQ(element.GetInfo()->GetRefCount(), 2);

    ResultElem empty(static_cast<Vintor::SeverityLevel_t>(1), nullptr, nullptr);
    EXPECT_FALSE(empty.GetItem());
    EXPECT_FALSE(empty.GetInfo());
    EXPECT_EQ(empty.GetAsString(), "");
    EXPECT_EQ(element.GetAsString(), "");
}

}  // namespace
