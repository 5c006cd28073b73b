#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <vector>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

template <class T>
using InfoPtr = boost::intrusive_ptr<NumericSparseInfo<T>>;
template <class T>
using ItemPtr = boost::intrusive_ptr<NumericSparseItem<T>>;

template <class T>
InfoPtr<T> NewInfo(std::vector<typename T::Element> table = {}) {
    InfoPtr<T> info(new NumericSparseInfo<T>(7, "sparse", Permission_t(2)));
    info->SetTable(table);
    return info;
}

template <class T>
class NumericSparseTypedTest : public ::testing::Test {};

TYPED_TEST_SUITE(NumericSparseTypedTest, AllTraits);

TYPED_TEST(NumericSparseTypedTest, TableAndDefaultRules) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>();
    EXPECT_EQ(info->SetDefault(E(0)), -23);  // an empty table holds nothing

    std::vector<E> table{E(3), E(5), E(7)};
    EXPECT_EQ(info->SetTable(table), 0);
    EXPECT_EQ(table.size(), 3u);
    EXPECT_EQ(info->GetDefault(), E(3));  // zero is no entry: the first one
    EXPECT_EQ(info->SetDefault(E(7)), 0);
    EXPECT_EQ(info->SetDefault(E(4)), -23);
    EXPECT_EQ(info->GetDefault(), E(7));
    std::vector<E> next{E(7), E(9)};
    info->SetTable(next);
    EXPECT_EQ(info->GetDefault(), E(7));  // still an entry: kept
    info->SetDefault(E(9));
    std::vector<E> other{E(11), E(9)};
    info->SetTable(other);
    EXPECT_EQ(info->GetDefault(), E(9));
    info->SetTable(table);
    EXPECT_EQ(info->GetDefault(), E(3));

    // Changes through the reference are unchecked.
    info->GetTable().clear();
    EXPECT_EQ(info->GetDefault(), E(3));
    std::vector<E> empty;
    info->SetTable(empty);
    EXPECT_EQ(info->GetDefault(), E(0));
    EXPECT_EQ(info->SetDefault(E(0)), -23);
}

TEST(NumericSparseInfoTest, PresenceFollowsTheElementEquality) {
    auto floats = NewInfo<FloatTraits>({1.0f});
    EXPECT_FALSE(floats->IsPresent(1.5f));
    EXPECT_FALSE(NewInfo<FloatTraits>({std::nanf("")})->IsPresent(std::nanf("")));
    auto bytes = NewInfo<S8Traits>({100});
    EXPECT_TRUE(bytes->IsPresent(-100));  // 200 wraps negative in 8 bits
    EXPECT_FALSE(bytes->IsPresent(99));
    auto doubles = NewInfo<DoubleTraits>({2.0});
    EXPECT_TRUE(doubles->IsPresent(2.0 + 1e-11));
    EXPECT_FALSE(doubles->IsPresent(2.0 + 1e-9));
}

TYPED_TEST(NumericSparseTypedTest, SetValWithTheInfoReplacesUnknownValues) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>({E(3), E(5), E(7)});
    ASSERT_EQ(info->SetDefault(E(5)), 0);
    ItemPtr<TypeParam> item(static_cast<NumericSparseItem<TypeParam>*>(info->CreateItem()));
    EXPECT_EQ(item->GetId(), 7u);
    EXPECT_EQ(item->GetVal(), E(5));
    item->SetVal(E(7), *info);
    EXPECT_EQ(item->GetVal(), E(7));
    item->SetVal(E(4), *info);
    EXPECT_EQ(item->GetVal(), E(5));
    item->SetVal(E(4));
    EXPECT_EQ(item->GetVal(), E(4));
}

TYPED_TEST(NumericSparseTypedTest, ChecksNeverPassAndBoundsNeverMatch) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>({E(3)});
    ItemPtr<TypeParam> item(NumericSparseItem<TypeParam>::Create(7, E(3)));
    ASSERT_TRUE(info->IsPresent(item->GetVal()));
    for (boost::intrusive_ptr<InfoBase const> const& against :
         {boost::intrusive_ptr<InfoBase const>(info), boost::intrusive_ptr<InfoBase const>()}) {
        auto const result = item->Validate(against);
        ASSERT_TRUE(result);
        EXPECT_EQ(static_cast<int>(result->GetSeverityLevel()), 4);
        EXPECT_FALSE(result->GetInfo());
        EXPECT_TRUE(result->GetItem()->IsEqualValue(item));
        EXPECT_EQ(result->GetAsString(), "");
    }
    EXPECT_TRUE(item->ValidateMin(info));
    EXPECT_EQ(info->GetRefCount(), 1);

    EXPECT_FALSE(info->IsEqualBounds(info));
    EXPECT_FALSE(info->IsEqualBounds(nullptr));
    EXPECT_EQ(info->MergeBounds(info), -26);
    EXPECT_EQ(info->MergeBounds(NewInfo<TypeParam>({E(4)})), -26);
    EXPECT_EQ(info->MergeBounds(nullptr), -36);
    boost::intrusive_ptr<InfoBase const> scalar(new NumericInfo<TypeParam>(7, "n", Permission_t()));
    EXPECT_EQ(info->MergeBounds(scalar), -36);
    EXPECT_EQ(info->GetTable(), std::vector<E>{E(3)});
}

TEST(NumericSparseInfoTest, AssignValueConvertsTableAndDefault) {
    auto source = NewInfo<DoubleTraits>({1.9, 2.9});
    ASSERT_EQ(source->SetDefault(2.9), 0);
    auto target = NewInfo<U16Traits>({8, 9, 10});
    bool changed = false;
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetTable(), (std::vector<unsigned short>{1, 2}));
    EXPECT_EQ(target->GetDefault(), 2);
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);

    // Only the default differs.
    ASSERT_EQ(source->SetDefault(1.9), 0);
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetDefault(), 1);

    changed = true;
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
    boost::intrusive_ptr<InfoBase const> array(
        new NumericArrayInfo<U16Traits>(7, "a", Permission_t()));
    EXPECT_EQ(target->AssignValue(array, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetTable(), (std::vector<unsigned short>{1, 2}));
}

TEST(NumericSparseItemTest, AssignArrayValueTakesSparseSourcesOnly) {
    ItemPtr<S32Traits> item(NumericSparseItem<S32Traits>::Create(7, 5));
    bool changed = false;
    ASSERT_EQ(item->AssignArrayValue(NumericSparseItem<S32Traits>::Create(1, -9), 3, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->GetVal(), -9);
    ASSERT_EQ(item->AssignValue(NumericSparseItem<S32Traits>::Create(1, -9), &changed), 0);
    EXPECT_FALSE(changed);

    changed = true;
    EXPECT_EQ(item->AssignArrayValue(nullptr, 0, &changed), -31);
    boost::intrusive_ptr<ItemBase const> scalar(NumericItem<S32Traits>::Create(1, 4));
    EXPECT_EQ(item->AssignArrayValue(scalar, 0, &changed), -26);
    boost::intrusive_ptr<ItemBase const> array(new NumericArrayItem<S32Traits>(1));
    EXPECT_EQ(item->AssignArrayValue(array, 0, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->GetVal(), -9);

    // The scalar family refuses a sparse source.
    boost::intrusive_ptr<NumericItem<S32Traits>> number(NumericItem<S32Traits>::Create(1, 4));
    EXPECT_EQ(number->AssignArrayValue(item, 0, &changed), -26);
    EXPECT_EQ(number->GetVal(), 4);
}

TYPED_TEST(NumericSparseTypedTest, SerialRecordsHoldOneElement) {
    using E = typename TypeParam::Element;
    ItemPtr<TypeParam> item(NumericSparseItem<TypeParam>::Create(0x420C0009, E(100)));
    EXPECT_EQ(item->GetSerialDataSize(), sizeof(E));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    EXPECT_EQ(record.GetDataSize(), sizeof(E));
    EXPECT_EQ(record.type, 4);
    EXPECT_EQ(record.numericType, static_cast<unsigned>(TypeParam::k_numericType));
    EXPECT_EQ(item->Serialize(nullptr), -41);

    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> read;
    ASSERT_EQ(ItemBase::Deserialize(&view, read), 0);
    ASSERT_NE(dynamic_cast<NumericSparseItem<TypeParam>*>(read.get()), nullptr);
    EXPECT_TRUE(read->IsEqualValue(item));

    auto const id = 0x420C0009u;
    auto const numeric = static_cast<std::uint8_t>(TypeParam::k_numericType);
    Bytes const payload = PayloadOf(record);
    Bytes const longer(payload.size() + 1, 0);
    Bytes const shorter(payload.size() - 1, 0);
    ItemBase::ConstSerialStruct_t const bad[] = {
        MakeRecord(id, 4, numeric, longer),
        MakeRecord(id, 4, numeric, shorter),
    };
    ItemPtr<TypeParam> target(NumericSparseItem<TypeParam>::Create(id, E(9)));
    for (auto const& row : bad) {
        SCOPED_TRACE(row.GetDataSize());
        EXPECT_EQ(target->Deserialize(&row), -41);
        EXPECT_EQ(target->GetVal(), E(9));
    }
}

TEST(NumericSparseItemTest, WireBytes) {
    ItemPtr<U32Traits> u32(NumericSparseItem<U32Traits>::Create(1, 0x01020304));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(u32->Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)), "01 02 03 04");
    ItemPtr<FloatTraits> f(NumericSparseItem<FloatTraits>::Create(1, 300.0f));
    ItemBase::SerialStruct_t floatRecord;
    ASSERT_EQ(f->Serialize(&floatRecord), 0);
    EXPECT_EQ(Hex(PayloadOf(floatRecord)), "00 04 30 4E");
}

TYPED_TEST(NumericSparseTypedTest, TextInputIgnoresTheTable) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>({E(3), E(5)});
    ItemPtr<TypeParam> item(static_cast<NumericSparseItem<TypeParam>*>(info->CreateItem()));
    std::istringstream in("42");
    std::ostringstream errors;
    ASSERT_TRUE(item->SetValFromStream(in, errors, info));
    EXPECT_EQ(item->GetVal(), E(42));
    EXPECT_TRUE(item->Validate(info));  // still refused
    item->SetVal(item->GetVal(), *info);
    EXPECT_EQ(item->GetVal(), E(3));

    for (char const* text : {"x", ""}) {
        SCOPED_TRACE(text);
        std::istringstream bad(text);
        bad.peek();  // an empty text sets the end-of-file flag here
        std::ostringstream complaint;
        EXPECT_FALSE(item->SetValFromStream(bad, complaint, info));
        EXPECT_EQ(complaint.str(), "Error parsing numericSparseItem\n");
        EXPECT_EQ(item->GetVal(), E(3));
    }
}

TEST(NumericSparseItemTest, TextForms) {
    auto info = NewInfo<U8Traits>({65, 66});
    EXPECT_EQ(TextOf(*info), "65, 66; default=65");
    EXPECT_EQ(TextOf(*NewInfo<S16Traits>()), "; default=0");
    EXPECT_EQ(DumpOf(*info),
              "id: 7\npermission: 2\nname: sparse\ntype: NumericSparse\nnumericType: U8\n"
              "default: 65\n");

    ItemPtr<U8Traits> item(NumericSparseItem<U8Traits>::Create(3, 66));
    EXPECT_EQ(item->GetValAsString(), "66");
    std::istringstream in("300");
    std::ostringstream errors;
    ASSERT_TRUE(item->SetValFromStream(in, errors, nullptr));
    EXPECT_EQ(item->GetVal(), 44);
    EXPECT_EQ(DumpOf(*item), "id: 3\ntype: NumericSparse\nvalue: 44\n");
    NumericSparseInfo<U8Traits> target(40, "t", Permission_t(9));
    target = *info;
    EXPECT_EQ(target.GetId(), 40u);
    EXPECT_EQ(TextOf(target), TextOf(*info));
}

}  // namespace
