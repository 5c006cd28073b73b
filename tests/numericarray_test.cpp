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
using OruTest::Bytes;
using OruTest::Hex;
using OruTest::MakeRecord;
using OruTest::PayloadOf;

template <class T>
using InfoPtr = boost::intrusive_ptr<NumericArrayInfo<T>>;
template <class T>
using ItemPtr = boost::intrusive_ptr<NumericArrayItem<T>>;

template <class T>
InfoPtr<T> NewInfo(unsigned int id = 7) {
    return InfoPtr<T>(new NumericArrayInfo<T>(id, "arr", Permission_t(5)));
}

template <class T>
ItemPtr<T> NewItem(std::vector<typename T::Element> const& value, unsigned int id = 7) {
    ItemPtr<T> item(new NumericArrayItem<T>(id));
    item->SetVal(value);
    return item;
}

template <class T>
std::string TextOf(T const& object) {
    std::ostringstream out;
    object.operator<<(out);
    return out.str();
}

template <class T>
class NumericArrayTypedTest : public ::testing::Test {};

using AllTraits = ::testing::Types<U8Traits, S8Traits, U16Traits, S16Traits, U32Traits, S32Traits,
                                   U64Traits, S64Traits, FloatTraits, DoubleTraits>;
TYPED_TEST_SUITE(NumericArrayTypedTest, AllTraits);

TYPED_TEST(NumericArrayTypedTest, NewInfoAndSizeBoundsShapeTheDefault) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>();
    EXPECT_EQ(info->GetType(), OruType_t::NumericArray);
    EXPECT_EQ(info->GetNumericType(), TypeParam::k_numericType);
    EXPECT_EQ(info->GetMinSize(), 1u);
    EXPECT_EQ(info->GetMaxSize(), 0x7FFFFFFFu);
    EXPECT_EQ(info->GetMax(), std::numeric_limits<E>::max());
    EXPECT_EQ(info->GetMin(), TypeParam::Lowest());
    EXPECT_TRUE(info->GetDefault().empty());
    EXPECT_EQ(TextOf(*info), "array size: 1 <= 0 <= 2147483647");

    EXPECT_EQ(info->SetDefault({}), -37);
    EXPECT_EQ(info->SetMinSize(0), 0);
    EXPECT_EQ(info->SetDefault({}), 0);

    EXPECT_EQ(info->SetMinSize(5), 0);
    EXPECT_TRUE(info->GetDefault().empty());  // an empty default stays empty
    EXPECT_EQ(info->SetMinSize(0), 0);
    ASSERT_EQ(info->SetDefault({E(1), E(2), E(3)}), 0);
    EXPECT_EQ(info->SetMinSize(5), 0);
    EXPECT_EQ(info->GetDefault(), (std::vector<E>{E(1), E(2), E(3), E(0), E(0)}));
    EXPECT_EQ(info->SetMaxSize(3), 0);  // cuts the default, lowers the minimum
    EXPECT_EQ(info->GetDefault(), (std::vector<E>{E(1), E(2), E(3)}));
    EXPECT_EQ(info->GetMinSize(), 3u);
    EXPECT_EQ(info->SetMinSize(4), 0);  // raises the maximum
    EXPECT_EQ(info->GetMaxSize(), 4u);
    EXPECT_EQ(info->GetDefault(), (std::vector<E>{E(1), E(2), E(3), E(0)}));
    EXPECT_EQ(info->SetDefault({E(9), E(9), E(9)}), -37);
    EXPECT_EQ(info->SetDefault({E(9), E(9), E(9), E(9), E(9)}), -37);
    EXPECT_EQ(info->GetDefaultSize(), 4u);
    EXPECT_EQ(info->SetMaxSize(0), 0);
    EXPECT_TRUE(info->GetDefault().empty());
    EXPECT_EQ(info->GetMinSize(), 0u);

    // Element bounds move each other and never touch the default.
    info->SetMaxSize(10);
    ASSERT_EQ(info->SetDefault({E(3)}), 0);
    info->SetMax(E(5));
    info->SetMin(E(10));
    EXPECT_EQ(info->GetMin(), E(10));
    EXPECT_EQ(info->GetMax(), E(10));
    info->SetMax(E(4));
    EXPECT_EQ(info->GetMin(), E(4));
    EXPECT_EQ(info->GetDefault(), std::vector<E>{E(3)});
}

TYPED_TEST(NumericArrayTypedTest, CopiesKeepOrDropElementBounds) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>(3);
    info->SetMin(E(10));
    info->SetMax(E(20));
    info->SetMinSize(2);
    info->SetMaxSize(4);
    ASSERT_EQ(info->SetDefault({E(1), E(2)}), 0);

    InfoPtr<TypeParam> deep(info->DeepCopy(9));
    EXPECT_EQ(deep->GetId(), 9u);
    EXPECT_EQ(deep->GetName(), "arr");
    EXPECT_EQ(deep->GetPermission(), Permission_t(5));
    EXPECT_EQ(deep->GetMinSize(), 2u);
    EXPECT_EQ(deep->GetMaxSize(), 4u);
    EXPECT_EQ(deep->GetDefault(), info->GetDefault());
    EXPECT_EQ(deep->GetMax(), std::numeric_limits<E>::max());
    EXPECT_EQ(deep->GetMin(), TypeParam::Lowest());

    NumericArrayInfo<TypeParam> copy(*info);
    EXPECT_EQ(copy.GetMin(), E(10));
    EXPECT_EQ(copy.GetMax(), E(20));

    NumericArrayInfo<TypeParam> target(44, "other", Permission_t(1));
    target = *info;
    EXPECT_EQ(target.GetId(), 44u);
    EXPECT_EQ(target.GetName(), "other");
    EXPECT_EQ(target.GetMin(), E(10));
    EXPECT_EQ(target.GetDefault(), info->GetDefault());

    ItemPtr<TypeParam> item(static_cast<NumericArrayItem<TypeParam>*>(info->CreateItem()));
    EXPECT_EQ(item->GetId(), 3u);
    EXPECT_EQ(item->GetRefCount(), 1);
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
    EXPECT_FALSE(a->IsEqualBounds(nullptr));

    ASSERT_EQ(a->SetDefault({E(1)}), 0);
    EXPECT_EQ(a->MergeBounds(make(5, 9)), 0);
    EXPECT_EQ(a->GetMinSize(), 5u);
    EXPECT_EQ(a->GetMaxSize(), 5u);
    EXPECT_EQ(a->GetDefaultSize(), 1u);  // left outside the narrowed range

    auto c = make(1, 4);
    EXPECT_EQ(c->MergeBounds(make(5, 9)), -55);
    EXPECT_EQ(make(5, 9)->MergeBounds(c), -55);
    EXPECT_EQ(c->GetMinSize(), 1u);
    EXPECT_EQ(c->GetMaxSize(), 4u);
    EXPECT_EQ(c->MergeBounds(nullptr), -36);
    boost::intrusive_ptr<InfoBase const> scalar(new NumericInfo<TypeParam>(7, "n", Permission_t()));
    EXPECT_EQ(c->MergeBounds(scalar), -36);
}

TEST(NumericArrayInfoTest, BoundsOfAnotherElementTypeDoNotFit) {
    auto u16 = NewInfo<U16Traits>();
    auto s16 = NewInfo<S16Traits>();
    EXPECT_FALSE(u16->IsEqualBounds(s16));
    EXPECT_EQ(u16->MergeBounds(s16), -36);
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
    EXPECT_EQ(target->GetMinSize(), 2u);
    EXPECT_EQ(target->GetMaxSize(), 6u);
    EXPECT_EQ(target->GetMin(), -3);
    EXPECT_EQ(target->GetMax(), 300);
    EXPECT_EQ(target->GetId(), 7u);

    changed = true;
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(target->AssignValue(source, nullptr), 0);

    // Only the maximum size moves: still a change.
    source->SetMaxSize(7);
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);

    // Failures leave everything, the flag included.
    changed = true;
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
    boost::intrusive_ptr<InfoBase const> scalar(new NumericInfo<S32Traits>(7, "n", Permission_t()));
    EXPECT_EQ(target->AssignValue(scalar, &changed), -26);
    boost::intrusive_ptr<InfoBase const> sparse(
        new NumericSparseInfo<S32Traits>(7, "s", Permission_t()));
    EXPECT_EQ(target->AssignValue(sparse, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetDefault(), (std::vector<int>{1, -1}));
    EXPECT_EQ(target->GetMaxSize(), 7u);
}

TEST(NumericArrayInfoTest, AssignValueChangeRuleWrapsAndIgnoresNaN) {
    // 100 replaced by -100 in 8 bits: the distance wraps, no change reported,
    // the element is overwritten all the same.
    auto from = NewInfo<S8Traits>();
    ASSERT_EQ(from->SetDefault({-100}), 0);
    auto to = NewInfo<S8Traits>();
    ASSERT_EQ(to->SetDefault({100}), 0);
    bool changed = true;
    ASSERT_EQ(to->AssignValue(from, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(to->GetDefault(), std::vector<signed char>{-100});

    auto nanSource = NewInfo<FloatTraits>();
    ASSERT_EQ(nanSource->SetDefault({std::nanf("")}), 0);
    auto floats = NewInfo<FloatTraits>();
    ASSERT_EQ(floats->SetDefault({1.0f}), 0);
    changed = true;
    ASSERT_EQ(floats->AssignValue(nanSource, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_TRUE(std::isnan(floats->GetDefault()[0]));

    auto near = NewInfo<DoubleTraits>();
    ASSERT_EQ(near->SetDefault({1.0 + 1e-11}), 0);
    auto doubles = NewInfo<DoubleTraits>();
    ASSERT_EQ(doubles->SetDefault({1.0}), 0);
    ASSERT_EQ(doubles->AssignValue(near, &changed), 0);
    EXPECT_FALSE(changed);
}

TYPED_TEST(NumericArrayTypedTest, SingleNumbersLandAtTheirIndex) {
    using E = typename TypeParam::Element;
    auto item = NewItem<TypeParam>({});
    boost::intrusive_ptr<ItemBase const> seven(NumericItem<U32Traits>::Create(1, 7));
    bool changed = false;
    ASSERT_EQ(item->AssignArrayValue(seven, 4, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->Val(), (std::vector<E>{0, 0, 0, 0, 7}));
    ASSERT_EQ(item->AssignArrayValue(seven, 4, &changed), 0);
    EXPECT_FALSE(changed);
    ASSERT_EQ(item->AssignValue(seven, &changed), 0);  // index 0, within the array
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->Val(), (std::vector<E>{7, 0, 0, 0, 7}));

    auto empty = NewItem<TypeParam>({});
    boost::intrusive_ptr<ItemBase const> zero(NumericItem<S8Traits>::Create(1, 0));
    ASSERT_EQ(empty->AssignArrayValue(zero, 4, &changed), 0);
    EXPECT_TRUE(changed);  // from the resize alone
    EXPECT_EQ(empty->GetSize(), 5u);

    // Refused sources change neither the value nor the flag.
    changed = true;
    EXPECT_EQ(item->AssignArrayValue(nullptr, 0, &changed), -31);
    boost::intrusive_ptr<ItemBase const> sparse(NumericSparseItem<TypeParam>::Create(1, E(3)));
    EXPECT_EQ(item->AssignArrayValue(sparse, 0, &changed), -26);
    boost::intrusive_ptr<ItemBase const> text(StringItem::Create(1, "3"));
    EXPECT_EQ(item->AssignArrayValue(text, 9, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->Val(), (std::vector<E>{7, 0, 0, 0, 7}));
}

TEST(NumericArrayItemTest, SingleNumbersConvertAndKeepEqualElements) {
    auto u16 = NewItem<U16Traits>({5});
    boost::intrusive_ptr<ItemBase const> f(NumericItem<FloatTraits>::Create(1, 2.9f));
    ASSERT_EQ(u16->AssignArrayValue(f, 0, nullptr), 0);
    EXPECT_EQ(u16->Val(), std::vector<unsigned short>{2});
    boost::intrusive_ptr<ItemBase const> negative(NumericItem<S8Traits>::Create(1, -1));
    ASSERT_EQ(u16->AssignArrayValue(negative, 0, nullptr), 0);
    EXPECT_EQ(u16->Val(), std::vector<unsigned short>{65535});  // sign-extended, low bits

    // Within the tolerance: the old element stays and no change is reported.
    auto floats = NewItem<FloatTraits>({1.0f});
    boost::intrusive_ptr<ItemBase const> close(NumericItem<DoubleTraits>::Create(1, 1.00000000001));
    bool changed = true;
    ASSERT_EQ(floats->AssignArrayValue(close, 0, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(floats->Val()[0], 1.0f);

    // Counted equal by the wrapping distance: not stored at all.
    auto bytes = NewItem<S8Traits>({100});
    boost::intrusive_ptr<ItemBase const> far(NumericItem<S8Traits>::Create(1, -100));
    ASSERT_EQ(bytes->AssignArrayValue(far, 0, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(bytes->Val()[0], 100);

    // The last index of the unsigned range grows the array without wrapping.
    auto source = NewItem<U8Traits>({1, 2, 3});
    auto scalar = boost::intrusive_ptr<NumericItem<U8Traits>>(new NumericItem<U8Traits>(1));
    ASSERT_EQ(scalar->AssignArrayValue(source, 2, &changed), 0);
    EXPECT_EQ(scalar->GetVal(), 3);
    EXPECT_EQ(scalar->AssignArrayValue(source, 3, &changed), -41);
    EXPECT_EQ(scalar->GetVal(), 3);
    auto empty = NewItem<U32Traits>({});
    boost::intrusive_ptr<NumericItem<U32Traits>> fromEmpty(new NumericItem<U32Traits>(1));
    EXPECT_EQ(fromEmpty->AssignArrayValue(empty, 0, &changed), -41);
}

TEST(NumericArrayItemTest, WholeArraysReplaceTheContent) {
    auto item = NewItem<S32Traits>({1, 2, 3, 4});
    auto doubles = NewItem<DoubleTraits>({1.9, -1.9, 2.0});
    bool changed = false;
    ASSERT_EQ(item->AssignArrayValue(doubles, 99, &changed), 0);  // index ignored
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->Val(), (std::vector<int>{1, -1, 2}));
    ASSERT_EQ(item->AssignArrayValue(doubles, 0, &changed), 0);
    EXPECT_FALSE(changed);
    ASSERT_EQ(item->AssignArrayValue(item, 0, &changed), 0);  // itself
    EXPECT_FALSE(changed);

    auto wide = NewItem<U64Traits>({0x1FFFFFFFFULL, 5});
    ASSERT_EQ(item->AssignArrayValue(wide, 0, &changed), 0);
    EXPECT_EQ(item->Val(), (std::vector<int>{-1, 5}));

    ASSERT_EQ(item->AssignArrayValue(NewItem<U8Traits>({}), 0, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(item->IsEmpty());
}

TYPED_TEST(NumericArrayTypedTest, EqualityOfValues) {
    using E = typename TypeParam::Element;
    auto a = NewItem<TypeParam>({E(1), E(2)});
    EXPECT_TRUE(a->IsEqualValue(NewItem<TypeParam>({E(1), E(2)}, 99)));
    EXPECT_FALSE(a->IsEqualValue(NewItem<TypeParam>({E(1), E(3)})));
    EXPECT_FALSE(a->IsEqualValue(NewItem<TypeParam>({E(1)})));
    EXPECT_FALSE(a->IsEqualValue(nullptr));
    EXPECT_TRUE(NewItem<TypeParam>({})->IsEqualValue(NewItem<TypeParam>({})));
    ItemPtr<TypeParam> copy(a->DeepCopy(12));
    EXPECT_EQ(copy->GetId(), 12u);
    EXPECT_TRUE(copy->IsEqualValue(a));
    copy->Val()[0] = E(9);
    EXPECT_EQ(a->Val()[0], E(1));
}

TEST(NumericArrayItemTest, EqualityFollowsTheElementRule) {
    EXPECT_TRUE(NewItem<S8Traits>({100})->IsEqualValue(NewItem<S8Traits>({-100})));
    EXPECT_FALSE(NewItem<U16Traits>({1})->IsEqualValue(NewItem<S16Traits>({1})));
    auto nan = NewItem<FloatTraits>({std::nanf("")});
    EXPECT_FALSE(nan->IsEqualValue(nan));
    EXPECT_TRUE(NewItem<FloatTraits>({1.0f})->IsEqualValue(NewItem<FloatTraits>({1.0f})));
}

TYPED_TEST(NumericArrayTypedTest, SerialRecordsRoundTripAndRefuseBadSizes) {
    using E = typename TypeParam::Element;
    unsigned int const width = sizeof(E);
    auto empty = NewItem<TypeParam>({}, 0x420C0005);
    EXPECT_EQ(empty->GetSerialDataSize(), 0u);
    {
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(empty->Serialize(&record), 0);
        EXPECT_EQ(record.GetDataSize(), 0u);
        EXPECT_NE(record.GetData(), nullptr);
    }

    auto item = NewItem<TypeParam>({E(1), E(100), E(0), E(127)}, 0x420C0005);
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    EXPECT_EQ(record.GetId(), 0x420C0005u);
    EXPECT_EQ(record.GetDataSize(), 4 * width);
    EXPECT_EQ(record.type, 3);
    EXPECT_EQ(record.numericType, static_cast<unsigned>(TypeParam::k_numericType));
    EXPECT_EQ(item->Serialize(nullptr), -41);

    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> read;
    ASSERT_EQ(ItemBase::Deserialize(&view, read), 0);
    EXPECT_TRUE(read->IsEqualValue(item));

    // Failures keep the old value.
    auto target = NewItem<TypeParam>({E(9)}, 0x420C0005);
    EXPECT_EQ(target->Deserialize(nullptr), -32);
    Bytes payload = PayloadOf(record);
    auto const id = 0x420C0005u;
    auto const numeric = static_cast<std::uint8_t>(TypeParam::k_numericType);
    struct Row {
        char const* name;
        ItemBase::ConstSerialStruct_t record;
    };
    Bytes const onePlus(width + 1, 0);
    Row const bad[] = {
        {"other id", MakeRecord(id + 1, 3, numeric, payload)},
        {"other type", MakeRecord(id, 2, numeric, payload)},
        {"other numeric type", MakeRecord(id, 3, numeric % 10 + 1, payload)},
        {"no whole element", MakeRecord(id, 3, numeric, onePlus)},
    };
    for (Row const& row : bad) {
        SCOPED_TRACE(row.name);
        if (width == 1 && std::strcmp(row.name, "no whole element") == 0) {
            continue;  // every size is whole for one-byte elements
        }
        EXPECT_EQ(target->Deserialize(&row.record), -41);
        EXPECT_EQ(target->Val(), std::vector<E>{E(9)});
    }
    ItemBase::ConstSerialStruct_t missing = MakeRecord(id, 3, numeric, payload);
    missing.data = nullptr;
    EXPECT_EQ(target->Deserialize(&missing), -41);

    auto const zero = MakeRecord(id, 3, numeric, {});
    EXPECT_EQ(target->Deserialize(&zero), 0);
    EXPECT_TRUE(target->IsEmpty());
}

TEST(NumericArrayItemTest, ElementBytesOnTheWire) {
    auto u32 = NewItem<U32Traits>({0x01020304});
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(u32->Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)), "01 02 03 04");

    auto s16 = NewItem<S16Traits>({-2, 0x0102});
    ItemBase::SerialStruct_t record16;
    ASSERT_EQ(s16->Serialize(&record16), 0);
    EXPECT_EQ(Hex(PayloadOf(record16)), "FF FE 01 02");

    Bytes const extremes{0x80, 0x00, 0x7F, 0xFF};
    auto const back = MakeRecord(7, 3, 4, extremes);
    ASSERT_EQ(s16->Deserialize(&back), 0);
    EXPECT_EQ(s16->Val(), (std::vector<short>{-32768, 32767}));

    // A U16 array refuses an odd size and keeps what it had.
    auto u16 = NewItem<U16Traits>({1, 2});
    Bytes const five(5, 0);
    auto const odd = MakeRecord(7, 3, 3, five);
    EXPECT_EQ(u16->Deserialize(&odd), -41);
    EXPECT_EQ(u16->Val(), (std::vector<unsigned short>{1, 2}));
}

TEST(NumericArrayItemTest, FloatMappingTable) {
    struct Row {
        float value;
        float payload;
        float back;
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
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(item->Serialize(&record), 0);
        ASSERT_EQ(record.GetDataSize(), 4u);
        float written;
        std::memcpy(&written, record.GetData(), sizeof written);
        EXPECT_EQ(written, row.payload);
        ItemBase::ConstSerialStruct_t const view(record);
        ASSERT_EQ(item->Deserialize(&view), 0);
        EXPECT_EQ(item->Val()[0], row.back);
    }

    // The double mapping: 1.0 travels as 00 00 00 00 00 00 70 43 and -1.0 comes back as 128.
    auto doubles = NewItem<DoubleTraits>({1.0, -1.0});
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(doubles->Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)).substr(0, 23), "00 00 00 00 00 00 70 43");
    ItemBase::ConstSerialStruct_t const view(record);
    ASSERT_EQ(doubles->Deserialize(&view), 0);
    EXPECT_EQ(doubles->Val(), (std::vector<double>{1.0, 128.0}));
}

TEST(NumericArrayItemTest, DispatchByTypeAndElement) {
    Bytes const payload{0, 0, 0, 0, 0, 0, 0, 0};
    for (unsigned type : {3u, 4u}) {
        for (unsigned numeric : {0u, 11u, 255u}) {
            SCOPED_TRACE(type * 1000 + numeric);
            auto const record = MakeRecord(1, static_cast<std::uint8_t>(type),
                                           static_cast<std::uint8_t>(numeric), payload);
            boost::intrusive_ptr<ItemBase> item;
            EXPECT_EQ(ItemBase::Deserialize(&record, item), -41);
            EXPECT_FALSE(item);
        }
    }
    auto const doubles = MakeRecord(1, 3, 10, payload);
    boost::intrusive_ptr<ItemBase> item;
    ASSERT_EQ(ItemBase::Deserialize(&doubles, item), 0);
    EXPECT_NE(dynamic_cast<NumericArrayItem<DoubleTraits>*>(item.get()), nullptr);
    auto const bytes = MakeRecord(1, 3, 1, payload);
    ASSERT_EQ(ItemBase::Deserialize(&bytes, item), 0);
    EXPECT_EQ(static_cast<NumericArrayItem<U8Traits>&>(*item).GetSize(), 8u);
}

TYPED_TEST(NumericArrayTypedTest, ValidateChecksClassAndSizeOnly) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>();
    ItemPtr<TypeParam> fresh(static_cast<NumericArrayItem<TypeParam>*>(info->CreateItem()));
    auto const tooShort = fresh->Validate(info);
    ASSERT_TRUE(tooShort);
    EXPECT_EQ(static_cast<int>(tooShort->GetSeverityLevel()), 4);
    EXPECT_FALSE(tooShort->GetInfo());
    ASSERT_TRUE(tooShort->GetItem());
    EXPECT_EQ(tooShort->GetItem()->GetId(), 7u);
    EXPECT_TRUE(tooShort->GetItem()->IsEqualValue(fresh));

    // Elements far outside the element bounds pass.
    info->SetMin(E(0));
    info->SetMax(E(1));
    info->SetMaxSize(3);
    auto item = NewItem<TypeParam>({E(5), E(6), E(7)});
    EXPECT_FALSE(item->Validate(info));
    item->Val().push_back(E(8));
    EXPECT_TRUE(item->Validate(info));

    EXPECT_TRUE(item->Validate(nullptr));
    boost::intrusive_ptr<InfoBase const> scalar(new NumericInfo<TypeParam>(7, "n", Permission_t()));
    EXPECT_TRUE(item->Validate(scalar));
    // ValidateMin and ValidateMax are not the family's question.
    EXPECT_TRUE(NewItem<TypeParam>({E(1)})->ValidateMin(info));
}

TEST(NumericArrayItemTest, ValidateRefusesAnotherElementType) {
    auto info = NewInfo<S16Traits>();
    EXPECT_TRUE(NewItem<U16Traits>({1})->Validate(info));
    EXPECT_FALSE(NewItem<S16Traits>({1})->Validate(info));
}

TYPED_TEST(NumericArrayTypedTest, SetValChecksTheCount) {
    using E = typename TypeParam::Element;
    auto info = NewInfo<TypeParam>();
    info->SetMaxSize(2);
    auto item = NewItem<TypeParam>({E(4)});
    EXPECT_EQ(item->SetVal({E(1), E(2), E(3)}, *info), -37);
    EXPECT_EQ(item->SetVal({}, *info), -37);
    EXPECT_EQ(item->GetVal(), std::vector<E>{E(4)});
    EXPECT_EQ(item->SetVal({E(1), E(2)}, *info), 0);
    EXPECT_EQ(item->GetSize(), 2u);
}

TYPED_TEST(NumericArrayTypedTest, TextInputIsAllOrNothing) {
    using E = typename TypeParam::Element;
    struct Row {
        char const* text;
        bool ok;
        char const* errors;
        std::vector<E> value;
    };
    std::vector<E> const old{E(9)};
    Row const rows[] = {
        {"2 10 20 ", true, "", {E(10), E(20)}},
        {"2 10 20", true, "", {E(10), E(20)}},
        {"0", true, "", {}},
        {"2 10 x", false, "Error parsing arrayItem\n", old},
        {"3 1 2", false, "Error parsing arrayItem\n", old},
        {"4294967295 1", false, "Error parsing arrayItem\n", old},
        {"x", false, "Error parsing arraySize\n", old},
        {"", false, "Error parsing arraySize\n", old},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        auto item = NewItem<TypeParam>(old);
        std::istringstream in(row.text);
        std::ostringstream errors;
        EXPECT_EQ(item->SetValFromStream(in, errors, nullptr), row.ok);
        EXPECT_EQ(errors.str(), row.errors);
        EXPECT_EQ(item->Val(), row.value);
    }
}

TEST(NumericArrayItemTest, TextOfEightBitElementsIsNumeric) {
    auto bytes = NewItem<U8Traits>({});
    std::istringstream in("3 300 65 0");
    std::ostringstream errors;
    ASSERT_TRUE(bytes->SetValFromStream(in, errors, nullptr));
    EXPECT_EQ(bytes->Val(), (std::vector<unsigned char>{44, 65, 0}));
    EXPECT_EQ(TextOf(*bytes), "(44, 65, 0)");
    EXPECT_EQ(TextOf(*NewItem<S8Traits>({-5})), "(-5)");
    EXPECT_EQ(TextOf(*NewItem<FloatTraits>({1.5f, -2.0f})), "(1.5, -2)");
    EXPECT_EQ(TextOf(*NewItem<S32Traits>({})), "()");

    std::ostringstream dump;
    NewItem<U8Traits>({65, 1}, 12)->DumpVal(dump);
    EXPECT_EQ(dump.str(), "id: 12\ntype: NumericArray\nvalue: (65, 1)\n");

    auto info = NewInfo<U16Traits>();
    info->SetMinSize(0);
    ASSERT_EQ(info->SetDefault({1, 2}), 0);
    std::ostringstream infoDump;
    info->DumpVal(infoDump);
    EXPECT_EQ(infoDump.str(),
              "id: 7\npermission: 5\nname: arr\ntype: NumericArray\nnumericType: U16\n"
              "minSize: 0\nmaxSize: 2147483647\ndefaultSize: 2\n");
    std::ostringstream line;
    FormattedInfoItemDump(line, info, NewItem<U16Traits>({3}));
    EXPECT_EQ(line.str(), "arr" + std::string(29, ' ') +
                              " NumericArrayU16    {(3)} {array size: 0 <= 2 <= 2147483647}");
}

}  // namespace
