#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using OruTest::AllTraits;
using OruTest::DumpOf;
using OruTest::TextOf;

template <class T>
class NumericTypedTest : public ::testing::Test {};

TYPED_TEST_SUITE(NumericTypedTest, AllTraits);

TYPED_TEST(NumericTypedTest, NewInfoAndItemAndTheirTypes) {
    using E = typename TypeParam::Element;
    NumericInfo<TypeParam> info(11, "n", Permission_t(1));
    EXPECT_EQ(info.GetDefault(), E(0));
    EXPECT_EQ(info.GetMax(), std::numeric_limits<E>::max());
    if (std::is_floating_point<E>::value) {
        EXPECT_EQ(info.GetMin(), std::numeric_limits<E>::min());
    } else {
        EXPECT_EQ(info.GetMin(), std::numeric_limits<E>::lowest());
    }
    EXPECT_EQ(info.GetType(), OruType_t::Numeric);
    EXPECT_EQ(info.GetNumericType(), TypeParam::k_numericType);
    EXPECT_EQ(NumericItem<TypeParam>::GetNumericTypeStatic(), TypeParam::k_numericType);

    boost::intrusive_ptr<ItemBase> item(info.CreateItem());
    EXPECT_EQ(item->GetId(), 11u);
    EXPECT_EQ(item->GetType(), OruType_t::Numeric);
    EXPECT_EQ(item->GetNumericType(), TypeParam::k_numericType);
    EXPECT_EQ(item->GetSerialDataSize(), sizeof(E));
    EXPECT_TRUE(info.IsEqualType(boost::intrusive_ptr<ItemBase const>(item)));
}

TYPED_TEST(NumericTypedTest, SettersKeepTheOrder) {
    using E = typename TypeParam::Element;
    NumericInfo<TypeParam> info(1, "n", Permission_t());
    info.SetMin(E(0));
    info.SetMax(E(10));
    info.SetDefault(E(5));
    info.SetMin(E(50));
    EXPECT_EQ(info.GetMin(), E(50));
    EXPECT_EQ(info.GetMax(), E(50));
    EXPECT_EQ(info.GetDefault(), E(50));
    info.SetMax(E(20));
    EXPECT_EQ(info.GetMin(), E(20));
    EXPECT_EQ(info.GetDefault(), E(20));
    info.SetMax(E(40));
    info.SetDefault(E(100));
    EXPECT_EQ(info.GetDefault(), E(40));
    info.SetDefault(E(1));
    EXPECT_EQ(info.GetDefault(), E(20));
}

TYPED_TEST(NumericTypedTest, SetValBoundValAndWithinBounds) {
    using E = typename TypeParam::Element;
    NumericInfo<TypeParam> info(1, "n", Permission_t());
    info.SetMin(E(0));
    info.SetMax(E(100));
    info.SetDefault(E(7));
    NumericItem<TypeParam> item(1);
    item.SetVal(E(120), info);
    EXPECT_EQ(item.GetVal(), E(7));  // the default, not the bound
    item.SetVal(E(100), info);
    EXPECT_EQ(item.GetVal(), E(100));
    item.SetVal(E(120));
    EXPECT_FALSE(item.WithinBounds(info));
    item.BoundVal(info);
    EXPECT_EQ(item.GetVal(), E(100));
    EXPECT_TRUE(item.WithinBounds(info));
    info.SetMin(E(10));
    item.SetVal(E(3));
    item.BoundVal(info);
    EXPECT_EQ(item.GetVal(), E(10));
}

TYPED_TEST(NumericTypedTest, MergeBoundsIntersects) {
    using E = typename TypeParam::Element;
    auto make = [](E low, E high) {
        auto* info = new NumericInfo<TypeParam>(1, "n", Permission_t());
        info->SetMin(low);
        info->SetMax(high);
        return boost::intrusive_ptr<NumericInfo<TypeParam>>(info);
    };
    auto info = make(E(0), E(10));
    info->SetDefault(E(2));
    EXPECT_EQ(info->MergeBounds(make(E(5), E(20))), 0);
    EXPECT_EQ(info->GetMin(), E(5));
    EXPECT_EQ(info->GetMax(), E(10));
    EXPECT_EQ(info->GetDefault(), E(2));  // left alone outside the range

    auto apart = make(E(0), E(10));
    EXPECT_EQ(apart->MergeBounds(make(E(11), E(20))), -55);
    EXPECT_EQ(apart->GetMin(), E(0));
    EXPECT_EQ(apart->GetMax(), E(10));
    EXPECT_EQ(make(E(11), E(20))->MergeBounds(apart), -55);

    auto touching = make(E(0), E(10));
    EXPECT_EQ(touching->MergeBounds(make(E(10), E(20))), 0);
    EXPECT_EQ(touching->GetMin(), E(10));
    EXPECT_EQ(touching->GetMax(), E(10));

    boost::intrusive_ptr<InfoBase const> text(new StringInfo(1, "s", Permission_t()));
    EXPECT_EQ(touching->MergeBounds(text), -36);
    EXPECT_EQ(touching->MergeBounds(nullptr), -36);
    EXPECT_FALSE(touching->IsEqualBounds(text));
    EXPECT_TRUE(touching->IsEqualBounds(make(E(10), E(10))));
}

TYPED_TEST(NumericTypedTest, SerialRoundTripOfWholeNumbers) {
    using E = typename TypeParam::Element;
    for (E value : {E(0), E(1), E(100), E(127)}) {
        SCOPED_TRACE(static_cast<double>(value));
        boost::intrusive_ptr<NumericItem<TypeParam>> item(
            NumericItem<TypeParam>::Create(0x420C0005, value));
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(item->Serialize(&record), 0);
        EXPECT_EQ(record.GetId(), 0x420C0005u);
        EXPECT_EQ(record.GetDataSize(), sizeof(E));
        EXPECT_EQ(record.type, 2);
        EXPECT_EQ(record.numericType, static_cast<unsigned>(TypeParam::k_numericType));
        ItemBase::ConstSerialStruct_t const view(record);
        boost::intrusive_ptr<ItemBase> read;
        ASSERT_EQ(ItemBase::Deserialize(&view, read), 0);
        EXPECT_TRUE(read->IsEqualValue(item));
    }
}

TEST(NumericEqualityTest, DistanceWrapsInTheElementWidth) {
    // 128 wraps to -128, which is below 1: equal.
    EXPECT_TRUE(S8Traits::IsEqual(-128, 0));
    EXPECT_TRUE(S8Traits::IsEqual(127, -1));
    EXPECT_FALSE(S8Traits::IsEqual(1, 0));
    EXPECT_TRUE(S32Traits::IsEqual(std::numeric_limits<int>::min(), 0));
    EXPECT_FALSE(S32Traits::IsEqual(std::numeric_limits<int>::max(), 0));
    EXPECT_FALSE(U8Traits::IsEqual(255, 0));
    EXPECT_TRUE(FloatTraits::IsEqual(1.0f, 1.0f));
    EXPECT_FALSE(FloatTraits::IsEqual(1.0f, std::nextafter(1.0f, 2.0f)));
    EXPECT_FALSE(FloatTraits::IsEqual(NAN, NAN));
    EXPECT_TRUE(DoubleTraits::IsEqual(1.0, 1.0 + 1e-11));
    EXPECT_FALSE(DoubleTraits::IsEqual(1.0, 1.0 + 1e-9));
    EXPECT_EQ(DoubleTraits::Tolerance(), static_cast<double>(1e-10f));

    boost::intrusive_ptr<ItemBase const> u(NumericItem<U32Traits>::Create(1, 5));
    boost::intrusive_ptr<ItemBase const> s(NumericItem<S32Traits>::Create(1, 5));
    EXPECT_FALSE(u->IsEqualValue(s));
    EXPECT_FALSE(u->IsEqualValue(nullptr));
    boost::intrusive_ptr<ItemBase const> a(NumericItem<S8Traits>::Create(1, -128));
    boost::intrusive_ptr<ItemBase const> b(NumericItem<S8Traits>::Create(2, 0));
    EXPECT_TRUE(a->IsEqualValue(b));
}

TEST(NumericFloatBoundsTest, DefaultRangeExcludesZeroAndNegatives) {
    NumericInfo<FloatTraits> info(1, "f", Permission_t());
    boost::intrusive_ptr<NumericItem<FloatTraits>> item(
        static_cast<NumericItem<FloatTraits>*>(info.CreateItem()));
    EXPECT_EQ(item->GetVal(), 0.0f);
    EXPECT_FALSE(item->WithinBounds(info));
    item->SetVal(-1.0f);
    EXPECT_FALSE(item->WithinBounds(info));
    item->SetVal(0.0f, info);
    EXPECT_EQ(item->GetVal(), 0.0f);  // through the default
    item->BoundVal(info);
    EXPECT_EQ(item->GetVal(), std::numeric_limits<float>::min());
    item->SetVal(NAN);
    EXPECT_TRUE(item->WithinBounds(info));
}

TEST(NumericAssignTest, ConvertsAcrossElementTypes) {
    boost::intrusive_ptr<NumericInfo<DoubleTraits>> wide(
        new NumericInfo<DoubleTraits>(1, "d", Permission_t()));
    wide->SetMax(1e300);
    wide->SetMin(-2.7);
    wide->SetDefault(3.9);
    NumericInfo<U32Traits> target(2, "u", Permission_t(4));
    bool changed = false;
    EXPECT_EQ(target.AssignValue(wide, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.GetDefault(), 3u);       // truncated toward zero
    EXPECT_EQ(target.GetMin(), 0xFFFFFFFEu);  // -2 keeps its low bits
    EXPECT_EQ(target.GetName(), "u");
    changed = true;
    EXPECT_EQ(target.AssignValue(wide, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(target.AssignValue(wide, nullptr), 0);

    NumericInfo<S8Traits> narrow(3, "s8", Permission_t());
    boost::intrusive_ptr<NumericInfo<U16Traits>> source(
        new NumericInfo<U16Traits>(4, "u16", Permission_t()));
    source->SetMax(300);
    EXPECT_EQ(narrow.AssignValue(source, &changed), 0);
    EXPECT_EQ(narrow.GetMax(), 44);  // 300 keeps its low 8 bits

    changed = true;
    EXPECT_EQ(narrow.AssignValue(nullptr, &changed), -31);
    EXPECT_TRUE(changed);  // untouched on failure
    boost::intrusive_ptr<InfoBase const> text(new StringInfo(5, "s", Permission_t()));
    EXPECT_EQ(narrow.AssignValue(text, &changed), -26);
    EXPECT_EQ(narrow.GetMax(), 44);
}

TEST(NumericAssignTest, ItemSourcesAndFailuresKeepTheValue) {
    boost::intrusive_ptr<NumericItem<U8Traits>> item(NumericItem<U8Traits>::Create(1, 9));
    bool changed = false;
    boost::intrusive_ptr<ItemBase const> big(NumericItem<S32Traits>::Create(2, 300));
    EXPECT_EQ(item->AssignArrayValue(big, 5, &changed), 0);
    EXPECT_EQ(item->GetVal(), 44);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->AssignArrayValue(big, 0, &changed), 0);
    EXPECT_FALSE(changed);

    boost::intrusive_ptr<ItemBase const> real(NumericItem<FloatTraits>::Create(2, -1.9f));
    EXPECT_EQ(item->AssignValue(real, nullptr), 0);
    EXPECT_EQ(item->GetVal(), 255);

    changed = true;
    EXPECT_EQ(item->AssignValue(nullptr, &changed), -31);
    boost::intrusive_ptr<ItemBase const> text(StringItem::Create(2, "7"));
    EXPECT_EQ(item->AssignValue(text, &changed), -26);
    EXPECT_EQ(item->GetVal(), 255);
    EXPECT_TRUE(changed);

    // An out-of-range floating source gives a defined value, not a crash.
    boost::intrusive_ptr<ItemBase const> huge(NumericItem<DoubleTraits>::Create(2, 1e300));
    boost::intrusive_ptr<NumericItem<S64Traits>> wide(new NumericItem<S64Traits>(1));
    EXPECT_EQ(wide->AssignValue(huge, nullptr), 0);
    EXPECT_EQ(wide->GetVal(), std::numeric_limits<long long>::min());
    boost::intrusive_ptr<ItemBase const> nan(NumericItem<FloatTraits>::Create(2, NAN));
    EXPECT_EQ(wide->AssignValue(nan, nullptr), 0);
}

TEST(NumericTextTest, ReadsAllOrNothing) {
    boost::intrusive_ptr<InfoBase const> none;
    NumericItem<U8Traits> byte(1);
    std::istringstream in("300 x");
    std::ostringstream errors;
    EXPECT_TRUE(byte.SetValFromStream(in, errors, none));
    EXPECT_EQ(byte.GetVal(), 44);
    EXPECT_FALSE(byte.SetValFromStream(in, errors, none));
    EXPECT_EQ(errors.str(), "Error parsing numericItem\n");
    EXPECT_EQ(byte.GetVal(), 44);

    NumericItem<S32Traits> number(1);
    std::istringstream atEnd("5");
    EXPECT_TRUE(number.SetValFromStream(atEnd, errors, none));
    EXPECT_EQ(number.GetVal(), 5);
    std::ostringstream again;
    EXPECT_FALSE(number.SetValFromStream(atEnd, again, none));
    EXPECT_EQ(again.str(), "Error parsing numericItem\n");
    EXPECT_EQ(number.GetVal(), 5);

    NumericItem<DoubleTraits> real(1);
    std::istringstream text("-1.5e3");
    EXPECT_TRUE(real.SetValFromStream(text, errors, none));
    EXPECT_EQ(real.GetVal(), -1500.0);
}

TEST(NumericTextTest, PrintsCompactAndDumpForms) {
    NumericInfo<U8Traits> info(3, "level", Permission_t(258));
    info.SetMax(90);
    info.SetDefault(65);
    EXPECT_EQ(TextOf(info), "0 <= 65 <= 90");

    EXPECT_EQ(DumpOf(info), std::string("id: 3\npermission: 258\nname: level\ntype: Numeric\n"
                                        "numericType: U8\nmin: ") +
                                std::string(1, '\0') + "\nmax: Z\ndefault: A\n");

    boost::intrusive_ptr<NumericItem<U8Traits>> item(NumericItem<U8Traits>::Create(3, 65));
    EXPECT_EQ(item->GetValAsString(), "65");
    EXPECT_EQ(DumpOf(*item), "id: 3\ntype: Numeric\nvalue: A\n");

    boost::intrusive_ptr<NumericItem<FloatTraits>> real(NumericItem<FloatTraits>::Create(1, -1.5f));
    EXPECT_EQ(real->GetValAsString(), "-1.5");
    boost::intrusive_ptr<NumericItem<S8Traits>> small(NumericItem<S8Traits>::Create(1, -3));
    EXPECT_EQ(small->GetValAsString(), "-3");
}

}  // namespace
