#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <vector>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

template <class T>
using InfoPtr = boost::intrusive_ptr<NumericArrayInfo<T>>;
template <class T>
using ItemPtr = boost::intrusive_ptr<NumericArrayItem<T>>;
using ItemCPtr = boost::intrusive_ptr<ItemBase const>;
using InfoCPtr = boost::intrusive_ptr<InfoBase const>;

template <class T>
InfoPtr<T> NewInfo() {
    return InfoPtr<T>(new NumericArrayInfo<T>(7, "arr", Permission_t(5)));
}

template <class T>
ItemPtr<T> NewItem(std::vector<typename T::Element> const& value, unsigned int id = 7) {
    ItemPtr<T> item(new NumericArrayItem<T>(id));
    item->SetVal(value);
    return item;
}

template <class T>
class NumericArrayTypedTest : public ::testing::Test {};

TYPED_TEST_SUITE(NumericArrayTypedTest, AllTraits);

TYPED_TEST(NumericArrayTypedTest, SizeBoundsShapeTheDefault) {
    using E = typename TypeParam::Element;
    using V = std::vector<E>;
    auto info = NewInfo<TypeParam>();
    EXPECT_EQ(info->GetMax(), std::numeric_limits<E>::max());
    EXPECT_EQ(info->GetMin(), TypeParam::Lowest());
    EXPECT_EQ(TextOf(*info), "array size: 1 <= 0 <= 2147483647");
    EXPECT_EQ(info->SetDefault({}), -37);
    info->SetMinSize(0);
    EXPECT_EQ(info->SetDefault({}), 0);

    info->SetMinSize(5);
    EXPECT_TRUE(info->GetDefault().empty());  // an empty default stays empty
    info->SetMinSize(0);
    ASSERT_EQ(info->SetDefault({E(1), E(2), E(3)}), 0);
    info->SetMinSize(5);
    EXPECT_EQ(info->GetDefault(), (V{E(1), E(2), E(3), E(0), E(0)}));
    info->SetMaxSize(3);
    EXPECT_EQ(info->GetDefault(), (V{E(1), E(2), E(3)}));
    EXPECT_EQ(info->GetMinSize(), 3u);
    info->SetMinSize(4);
    EXPECT_EQ(info->GetMaxSize(), 4u);
    EXPECT_EQ(info->SetDefault(V(3, E(9))), -37);
    EXPECT_EQ(info->SetDefault(V(5, E(9))), -37);
    EXPECT_EQ(info->GetDefault(), (V{E(1), E(2), E(3), E(0)}));
    info->SetMaxSize(0);
    EXPECT_TRUE(info->GetDefault().empty());
    EXPECT_EQ(info->GetMinSize(), 0u);

    // Element bounds move each other and never touch the default.
    info->SetMaxSize(10);
    ASSERT_EQ(info->SetDefault({E(3)}), 0);
    info->SetMax(E(5));
    info->SetMin(E(10));
    EXPECT_EQ(info->GetMax(), E(10));
    info->SetMax(E(4));
    EXPECT_EQ(info->GetMin(), E(4));
    EXPECT_EQ(info->GetDefault(), V{E(3)});
}

TYPED_TEST(NumericArrayTypedTest, DeepCopyDropsElementBoundsTheCopyKeeps) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>();
    info->SetMin(E(10));
    info->SetMax(E(20));
    info->SetMaxSize(4);
    ASSERT_EQ(info->SetDefault({E(1), E(2)}), 0);

    InfoPtr<TypeParam> deep(info->DeepCopy(9));
    EXPECT_EQ(deep->GetId(), 9u);
    EXPECT_EQ(deep->GetMaxSize(), 4u);
    EXPECT_EQ(deep->GetDefault(), info->GetDefault());
    EXPECT_EQ(deep->GetMax(), std::numeric_limits<E>::max());
    EXPECT_EQ(deep->GetMin(), TypeParam::Lowest());

    NumericArrayInfo<TypeParam> copy(*info);
    EXPECT_EQ(copy.GetMin(), E(10));
    EXPECT_EQ(copy.GetMax(), E(20));

    ItemPtr<TypeParam> item(static_cast<NumericArrayItem<TypeParam>*>(info->CreateItem()));
    EXPECT_EQ(item->Val(), info->GetDefault());
}

TYPED_TEST(NumericArrayTypedTest, BoundsCompareAndMergeBySizeOnly) {
    using E = typename TypeParam::Element;
    auto make = [](unsigned long long low, unsigned long long high) {
        auto info = NewInfo<TypeParam>();
        info->SetMaxSize(high);
        info->SetMinSize(low);
        return info;
    };
    auto a = make(1, 5);
    auto b = make(1, 5);
    b->SetMin(E(7));
    EXPECT_TRUE(a->IsEqualBounds(b));
    EXPECT_FALSE(a->IsEqualBounds(make(1, 6)));

    ASSERT_EQ(a->SetDefault({E(1)}), 0);
    EXPECT_EQ(a->MergeBounds(make(5, 9)), 0);
    EXPECT_EQ(TextOf(*a), "array size: 5 <= 1 <= 5");  // the default is left outside

    auto c = make(1, 4);
    EXPECT_EQ(c->MergeBounds(make(5, 9)), -55);
    EXPECT_EQ(make(5, 9)->MergeBounds(c), -55);
    EXPECT_EQ(TextOf(*c), "array size: 1 <= 0 <= 4");
    EXPECT_EQ(c->MergeBounds(nullptr), -36);
    EXPECT_EQ(c->MergeBounds(new NumericInfo<TypeParam>(7, "n", Permission_t())), -36);
}

TEST(NumericArrayTest, AnotherElementTypeNeverFits) {
    EXPECT_FALSE(NewInfo<U16Traits>()->IsEqualBounds(NewInfo<S16Traits>()));
    EXPECT_EQ(NewInfo<U16Traits>()->MergeBounds(NewInfo<S16Traits>()), -36);
    EXPECT_TRUE(NewItem<U16Traits>({1})->Validate(NewInfo<S16Traits>()));
    EXPECT_FALSE(NewItem<U16Traits>({1})->IsEqualValue(NewItem<S16Traits>({1})));
}

TEST(NumericArrayInfoTest, AssignValueConvertsAndReportsChanges) {
    auto source = NewInfo<DoubleTraits>();
    source->SetMinSize(2);
    source->SetMaxSize(6);
    source->SetMin(-3.5);
    source->SetMax(300.7);
    ASSERT_EQ(source->SetDefault({1.9, -1.9}), 0);

    auto target = NewInfo<S32Traits>();
    bool changed = false;
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetDefault(), (std::vector<int>{1, -1}));
    EXPECT_EQ(TextOf(*target), "array size: 2 <= 2 <= 6");
    EXPECT_EQ(target->GetMin(), -3);
    EXPECT_EQ(target->GetMax(), 300);
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);
    source->SetMaxSize(7);  // only a size bound moves
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);

    // Failures leave everything, the flag included.
    changed = true;
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(target->AssignValue(new NumericInfo<S32Traits>(7, "n", Permission_t()), &changed),
              -26);
    EXPECT_EQ(
        target->AssignValue(new NumericSparseInfo<S32Traits>(7, "s", Permission_t()), &changed),
        -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(TextOf(*target), "array size: 2 <= 2 <= 7");
}

TEST(NumericArrayInfoTest, ChangeRuleWrapsAndIgnoresNaN) {
    // 100 replaced by -100 in 8 bits: the distance wraps, no change is
    // reported, and the element is overwritten all the same.
    auto from = NewInfo<S8Traits>();
    ASSERT_EQ(from->SetDefault({-100}), 0);
    auto to = NewInfo<S8Traits>();
    ASSERT_EQ(to->SetDefault({100}), 0);
    bool changed = true;
    ASSERT_EQ(to->AssignValue(from, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(to->GetDefault(), std::vector<signed char>{-100});

    auto nan = NewInfo<FloatTraits>();
    ASSERT_EQ(nan->SetDefault({std::nanf("")}), 0);
    auto floats = NewInfo<FloatTraits>();
    ASSERT_EQ(floats->SetDefault({1.0f}), 0);
    ASSERT_EQ(floats->AssignValue(nan, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_TRUE(std::isnan(floats->GetDefault()[0]));
}

TYPED_TEST(NumericArrayTypedTest, SingleNumbersLandAtTheirIndex) {
    using E = typename TypeParam::Element;
    auto item = NewItem<TypeParam>({});
    ItemCPtr seven(NumericItem<U32Traits>::Create(1, 7));
    bool changed = false;
    ASSERT_EQ(item->AssignArrayValue(seven, 4, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->Val(), (std::vector<E>{0, 0, 0, 0, 7}));
    ASSERT_EQ(item->AssignArrayValue(seven, 4, &changed), 0);
    EXPECT_FALSE(changed);
    ASSERT_EQ(item->AssignValue(seven, &changed), 0);  // index 0
    EXPECT_EQ(item->Val(), (std::vector<E>{7, 0, 0, 0, 7}));

    auto empty = NewItem<TypeParam>({});
    ASSERT_EQ(empty->AssignArrayValue(NumericItem<S8Traits>::Create(1, 0), 4, &changed), 0);
    EXPECT_TRUE(changed);  // from the resize alone

    // Refused sources change neither the value nor the flag.
    changed = true;
    EXPECT_EQ(item->AssignArrayValue(nullptr, 0, &changed), -31);
    EXPECT_EQ(item->AssignArrayValue(NumericSparseItem<TypeParam>::Create(1, E(3)), 0, &changed),
              -26);
    EXPECT_EQ(item->AssignArrayValue(StringItem::Create(1, "3"), 9, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->Val(), (std::vector<E>{7, 0, 0, 0, 7}));
}

TEST(NumericArrayItemTest, ConversionsAndTheEqualityRuleOfElements) {
    auto u16 = NewItem<U16Traits>({5});
    ASSERT_EQ(u16->AssignArrayValue(NumericItem<FloatTraits>::Create(1, 2.9f), 0, nullptr), 0);
    EXPECT_EQ(u16->Val()[0], 2);
    ASSERT_EQ(u16->AssignArrayValue(NumericItem<S8Traits>::Create(1, -1), 0, nullptr), 0);
    EXPECT_EQ(u16->Val()[0], 65535);  // sign-extended, then the low bits

    // Within the tolerance, or equal by the wrapping distance: not stored.
    bool changed = true;
    auto floats = NewItem<FloatTraits>({1.0f});
    ASSERT_EQ(
        floats->AssignArrayValue(NumericItem<DoubleTraits>::Create(1, 1.00000000001), 0, &changed),
        0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(floats->Val()[0], 1.0f);
    auto bytes = NewItem<S8Traits>({100});
    ASSERT_EQ(bytes->AssignArrayValue(NumericItem<S8Traits>::Create(1, -100), 0, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(bytes->Val()[0], 100);
    EXPECT_TRUE(bytes->IsEqualValue(NewItem<S8Traits>({-100})));
    auto nan = NewItem<FloatTraits>({std::nanf("")});
    EXPECT_FALSE(nan->IsEqualValue(nan));

    // A whole array of any element type replaces the content; index is ignored.
    auto ints = NewItem<S32Traits>({1, 2, 3, 4});
    auto doubles = NewItem<DoubleTraits>({1.9, -1.9, 2.0});
    ASSERT_EQ(ints->AssignArrayValue(doubles, 99, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(ints->Val(), (std::vector<int>{1, -1, 2}));
    ASSERT_EQ(ints->AssignArrayValue(doubles, 0, &changed), 0);
    EXPECT_FALSE(changed);
    ASSERT_EQ(ints->AssignArrayValue(NewItem<U64Traits>({0x1FFFFFFFFULL}), 0, &changed), 0);
    EXPECT_EQ(ints->Val(), std::vector<int>{-1});
    ASSERT_EQ(ints->AssignArrayValue(NewItem<U8Traits>({}), 0, &changed), 0);
    EXPECT_TRUE(ints->IsEmpty());
}

TEST(NumericArrayItemTest, ScalarsReadOneElementOfAnArray) {
    auto source = NewItem<U8Traits>({1, 2, 3});
    boost::intrusive_ptr<NumericItem<DoubleTraits>> scalar(new NumericItem<DoubleTraits>(1));
    bool changed = false;
    ASSERT_EQ(scalar->AssignArrayValue(source, 2, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(scalar->GetVal(), 3.0);
    EXPECT_EQ(scalar->AssignArrayValue(source, 3, &changed), -41);
    EXPECT_EQ(scalar->AssignArrayValue(NewItem<U32Traits>({}), 0, &changed), -41);
    EXPECT_EQ(scalar->GetVal(), 3.0);
}

TYPED_TEST(NumericArrayTypedTest, SerialRecordsRoundTripAndRefuseBadOnes) {
    using E = typename TypeParam::Element;
    unsigned int const width = sizeof(E);
    {
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(NewItem<TypeParam>({})->Serialize(&record), 0);
        EXPECT_EQ(record.GetDataSize(), 0u);
        EXPECT_NE(record.GetData(), nullptr);
    }
    auto const id = 0x420C0005u;
    auto item = NewItem<TypeParam>({E(1), E(100), E(0), E(127)}, id);
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    EXPECT_EQ(record.GetDataSize(), 4 * width);
    EXPECT_EQ(record.type, 3);
    EXPECT_EQ(item->Serialize(nullptr), -41);
    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> read;
    ASSERT_EQ(ItemBase::Deserialize(&view, read), 0);
    EXPECT_TRUE(read->IsEqualValue(item));

    auto target = NewItem<TypeParam>({E(9)}, id);
    auto const numeric = static_cast<std::uint8_t>(TypeParam::k_numericType);
    Bytes const ragged(width == 1 ? 0 : width + 1, 0);
    if (!ragged.empty()) {
        // No whole number of elements.
        auto const raggedRecord = MakeRecord(id, 3, numeric, ragged);
        EXPECT_EQ(target->Deserialize(&raggedRecord), -41);
        EXPECT_EQ(target->Val(), std::vector<E>{E(9)});
    }
    auto const zero = MakeRecord(id, 3, numeric, {});
    EXPECT_EQ(target->Deserialize(&zero), 0);
    EXPECT_TRUE(target->IsEmpty());
}

TEST(NumericArrayItemTest, WireForms) {
    auto u32 = NewItem<U32Traits>({0x01020304});
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(u32->Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)), "01 02 03 04");

    // Fractions and negatives do not survive the float mapping.
    struct Row {
        float value, payload, back;
    };
    Row const rows[] = {
        {1.0f, 16777216.0f, 1.0f},
        {2.5f, 33554432.0f, 2.0f},
        {0.5f, 0.0f, 0.0f},
        {-1.0f, 4294967296.0f, 0.0f},
        {258.0f, 33619968.0f, 258.0f},
        {16909060.0f, 67305984.0f, 131844.0f},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.value);
        auto item = NewItem<FloatTraits>({row.value});
        ItemBase::SerialStruct_t floatRecord;
        ASSERT_EQ(item->Serialize(&floatRecord), 0);
        float written;
        std::memcpy(&written, floatRecord.GetData(), sizeof written);
        EXPECT_EQ(written, row.payload);
        ItemBase::ConstSerialStruct_t const view(floatRecord);
        ASSERT_EQ(item->Deserialize(&view), 0);
        EXPECT_EQ(item->Val()[0], row.back);
    }
    auto doubles = NewItem<DoubleTraits>({1.0, -1.0});
    ItemBase::SerialStruct_t doubleRecord;
    ASSERT_EQ(doubles->Serialize(&doubleRecord), 0);
    EXPECT_EQ(Hex(PayloadOf(doubleRecord)).substr(0, 23), "00 00 00 00 00 00 70 43");
    ItemBase::ConstSerialStruct_t const view(doubleRecord);
    ASSERT_EQ(doubles->Deserialize(&view), 0);
    EXPECT_EQ(doubles->Val(), (std::vector<double>{1.0, 128.0}));
}

TEST(NumericArrayItemTest, DispatchByTypeAndElement) {
    Bytes const payload(8, 0);
    for (std::uint8_t type : {3, 4}) {
        for (std::uint8_t numeric : {0, 11, 255}) {
            SCOPED_TRACE(type * 1000 + numeric);
            auto const record = MakeRecord(1, type, numeric, payload);
            boost::intrusive_ptr<ItemBase> item;
            EXPECT_EQ(ItemBase::Deserialize(&record, item), -41);
            EXPECT_FALSE(item);
        }
    }
    auto const bytes = MakeRecord(1, 3, 1, payload);
    boost::intrusive_ptr<ItemBase> item;
    ASSERT_EQ(ItemBase::Deserialize(&bytes, item), 0);
    EXPECT_EQ(dynamic_cast<NumericArrayItem<U8Traits>&>(*item).GetSize(), 8u);
    auto const sparse = MakeRecord(1, 4, 10, payload);
    ASSERT_EQ(ItemBase::Deserialize(&sparse, item), 0);
    EXPECT_NE(dynamic_cast<NumericSparseItem<DoubleTraits>*>(item.get()), nullptr);
}

TYPED_TEST(NumericArrayTypedTest, ValidateChecksClassAndCountOnly) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>();
    ItemPtr<TypeParam> fresh(static_cast<NumericArrayItem<TypeParam>*>(info->CreateItem()));
    auto const tooShort = fresh->Validate(info);
    ASSERT_TRUE(tooShort);
    EXPECT_EQ(static_cast<int>(tooShort->GetSeverityLevel()), 4);
    EXPECT_FALSE(tooShort->GetInfo());
    EXPECT_TRUE(tooShort->GetItem()->IsEqualValue(fresh));

    // Elements far outside the element bounds pass.
    info->SetMin(E(0));
    info->SetMax(E(1));
    info->SetMaxSize(3);
    auto item = NewItem<TypeParam>({E(5), E(6), E(7)});
    EXPECT_FALSE(item->Validate(info));
    EXPECT_EQ(item->SetVal(std::vector<E>(4, E(1)), *info), -37);
    EXPECT_EQ(item->GetSize(), 3u);
    item->Val().push_back(E(8));
    EXPECT_TRUE(item->Validate(info));
    EXPECT_TRUE(item->Validate(nullptr));
    EXPECT_TRUE(item->Validate(new NumericInfo<TypeParam>(7, "n", Permission_t())));
    EXPECT_EQ(info->GetRefCount(), 1);
}

TYPED_TEST(NumericArrayTypedTest, TextInputIsAllOrNothing) {
    using E = typename TypeParam::Element;
    struct Row {
        char const* text;
        char const* errors;
        std::vector<E> value;
    };
    std::vector<E> const old{E(9)};
    Row const rows[] = {
        {"2 10 20 ", "", {E(10), E(20)}},
        {"2 10 20", "", {E(10), E(20)}},
        {"0", "", {}},
        {"2 10 x", "Error parsing arrayItem\n", old},
        {"3 1 2", "Error parsing arrayItem\n", old},
        {"4294967295 1", "Error parsing arrayItem\n", old},
        {"x", "Error parsing arraySize\n", old},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        auto item = NewItem<TypeParam>(old);
        std::istringstream in(row.text);
        std::ostringstream errors;
        EXPECT_EQ(item->SetValFromStream(in, errors, nullptr), *row.errors == '\0');
        EXPECT_EQ(errors.str(), row.errors);
        EXPECT_EQ(item->Val(), row.value);
    }
}

TEST(NumericArrayItemTest, TextFormsWriteEightBitElementsAsNumbers) {
    auto bytes = NewItem<U8Traits>({}, 12);
    std::istringstream in("3 300 65 0");
    std::ostringstream errors;
    ASSERT_TRUE(bytes->SetValFromStream(in, errors, nullptr));
    EXPECT_EQ(TextOf(*bytes), "(44, 65, 0)");
    EXPECT_EQ(TextOf(*NewItem<S8Traits>({-5})), "(-5)");
    EXPECT_EQ(TextOf(*NewItem<FloatTraits>({1.5f, -2.0f})), "(1.5, -2)");
    EXPECT_EQ(DumpOf(*bytes), "id: 12\ntype: NumericArray\nvalue: (44, 65, 0)\n");

    auto info = NewInfo<U16Traits>();
    info->SetMinSize(0);
    ASSERT_EQ(info->SetDefault({1, 2}), 0);
    EXPECT_EQ(DumpOf(*info),
              "id: 7\npermission: 5\nname: arr\ntype: NumericArray\nnumericType: U16\n"
              "minSize: 0\nmaxSize: 2147483647\ndefaultSize: 2\n");
}

}  // namespace
