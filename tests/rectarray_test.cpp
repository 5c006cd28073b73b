#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemCPtr = boost::intrusive_ptr<ItemBase const>;
using InfoCPtr = boost::intrusive_ptr<InfoBase const>;
using Rect = RectItem<U16Traits>;
using RectArray = RectArrayItem<U16Traits>;
using RectArrayInfoU16 = RectArrayInfo<U16Traits>;

Rect MakeRect(unsigned short a, unsigned short b, unsigned short c, unsigned short d) {
    Rect rect;
    rect.TopLeft()->SetValX(a);
    rect.TopLeft()->SetValY(b);
    rect.BottomRight()->SetValX(c);
    rect.BottomRight()->SetValY(d);
    return rect;
}

boost::intrusive_ptr<RectArray> MakeArray(std::vector<Rect> const& rects, unsigned int id = 4) {
    boost::intrusive_ptr<RectArray> item(new RectArray(id));
    item->SetVal(rects);
    return item;
}

TEST(RectArrayTest, TypesSizesAndAFixedRefusal) {
    boost::intrusive_ptr<RectArrayInfoU16> info(new RectArrayInfoU16(4, "zones", Permission_t()));
    EXPECT_EQ(static_cast<int>(RectArrayInfoU16::GetTypeStatic()), 130);
    EXPECT_EQ(static_cast<int>(info->GetType()), 141);
    EXPECT_EQ(static_cast<int>(RectArray::GetTypeStatic()), 141);
    EXPECT_EQ(info->GetMinSize(), 0u);
    EXPECT_EQ(info->GetMaxSize(), 0x7FFFFFFFu);

    // CreateItem ignores the corner defaults.
    info->TopLeft()->X()->SetDefault(9);
    boost::intrusive_ptr<ItemBase> item(info->CreateItem());
    EXPECT_TRUE(item->IsEmpty());
    EXPECT_EQ(item->GetId(), 4u);
    EXPECT_TRUE(info->IsEqualType(ItemCPtr(item)));
    auto& array = static_cast<RectArray&>(*item);
    EXPECT_EQ(array.SetVal({}, *info), 0);
    EXPECT_TRUE(item->Validate(info));

    info->SetMinSize(2);
    info->SetMaxSize(1);
    EXPECT_EQ(info->GetMinSize(), 1u);
    array.Val().push_back(MakeRect(1, 1, 1, 1));
    EXPECT_EQ(array.SetVal({MakeRect(2, 2, 2, 2), MakeRect(3, 3, 3, 3)}, *info), -37);
    EXPECT_EQ(TextOf(array), "((TLC(1,  1),  BRC(1,  1)))");
    EXPECT_EQ(array.SetVal(array.Val(), *info), 0);
    EXPECT_EQ(array.GetSize(), 1u);

    std::ostringstream dump;
    info->DumpVal(dump);
    std::string const full = "x(0 <= 0 <= 65535) y(0 <= 0 <= 65535)";
    std::string const left = "x(0 <= 9 <= 65535) y(0 <= 0 <= 65535)";
    EXPECT_EQ(dump.str(),
              "id: 4\npermission: 0\nname: zones\ntype: Invalid\nnumericType: U16\n"
              "minSize: 1\nmaxSize: 1\ntopLeft: " +
                  left + "\ntopRight: " + full + "\n");
    EXPECT_EQ(TextOf(*info), "size(1, 1) " + left + ",  " + full);
}

TEST(RectArrayTest, SerialFormAndHostileRecords) {
    auto const item = MakeArray({MakeRect(1, 2, 3, 4), MakeRect(0x100, 0, 0xFFFF, 5)});
    ItemBase::SerialStruct_t written;
    ASSERT_EQ(item->Serialize(&written), 0);
    Bytes const payload = PayloadOf(written);
    EXPECT_EQ(Hex(payload), "00 01 00 02 00 03 00 04 01 00 00 00 FF FF 00 05");

    auto const record = MakeRecord(4, 141, 3, payload);
    boost::intrusive_ptr<ItemBase> made;
    ASSERT_EQ(ItemBase::Deserialize(&record, made), 0);
    auto const* const decoded = dynamic_cast<RectArray*>(made.get());
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->IsEqualValue(ItemCPtr(item)));
    EXPECT_EQ(decoded->Val()[1].GetId(), 0u);

    // An empty list still has a record, with no payload.
    ItemBase::SerialStruct_t empty;
    ASSERT_EQ(MakeArray({})->Serialize(&empty), 0);
    EXPECT_EQ(empty.GetDataSize(), 0u);
    EXPECT_EQ(MakeArray({})->Serialize(nullptr), -41);

    Bytes const twelve(payload.begin(), payload.begin() + 12);
    Bytes const seven(payload.begin(), payload.begin() + 7);
    ItemBase::ConstSerialStruct_t const bad[] = {MakeRecord(4, 141, 3, twelve),
                                                 MakeRecord(4, 141, 3, seven)};
    auto const kept = MakeArray({MakeRect(9, 9, 9, 9)});
    for (auto const& badRecord : bad) {
        EXPECT_EQ(kept->Deserialize(&badRecord), -41);
        EXPECT_EQ(TextOf(*kept), "((TLC(9,  9),  BRC(9,  9)))");
    }
}

TEST(RectArrayTest, BoundsUseTheTopLeftRangesForBothCorners) {
    RectArrayInfoU16 info(1, "b", Permission_t());
    info.TopLeft()->X()->SetMax(10);
    info.TopLeft()->Y()->SetMax(10);
    info.BottomRight()->X()->SetMin(100);
    info.BottomRight()->X()->SetMax(200);
    info.BottomRight()->Y()->SetMin(100);
    info.BottomRight()->Y()->SetMax(200);
    auto const item = MakeArray({MakeRect(5, 5, 150, 150), MakeRect(20, 0, 100, 200)});
    EXPECT_FALSE(item->WithinBounds(info));
    item->Val().pop_back();
    EXPECT_TRUE(item->WithinBounds(info));
    item->BoundVal(info);
    EXPECT_EQ(TextOf(*item), "((TLC(5,  5),  BRC(10,  10)))");
    EXPECT_FALSE(item->WithinBounds(info));
    EXPECT_TRUE(MakeArray({})->WithinBounds(info));
}

TEST(RectArrayTest, ItemConversions) {
    bool changed = false;
    // A rectangle of another element type at index 2 grows the list.
    auto const item = MakeArray({});
    boost::intrusive_ptr<RectItem<FloatTraits>> real(new RectItem<FloatTraits>(1));
    real->TopLeft()->SetValX(1.9f);
    real->BottomRight()->SetValY(4.0f);
    ASSERT_EQ(item->AssignArrayValue(real, 2, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(TextOf(*item),
              "((TLC(0,  0),  BRC(0,  0)), (TLC(0,  0),  BRC(0,  0)), "
              "(TLC(1,  0),  BRC(0,  4)))");
    ASSERT_EQ(item->AssignArrayValue(real, 2, &changed), 0);
    EXPECT_FALSE(changed);

    // Numeric arrays fold in fours, of any element type.
    boost::intrusive_ptr<NumericArrayItem<S8Traits>> five(new NumericArrayItem<S8Traits>(1));
    five->SetVal({1, 2, 3, 4, 5});
    changed = true;
    EXPECT_EQ(item->AssignArrayValue(five, 0, &changed), -41);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item->GetSize(), 3u);
    five->SetVal({1, 2, 3, 4, 5, 6, 7, -1});
    ASSERT_EQ(item->AssignArrayValue(five, 9, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(TextOf(*item), "((TLC(1,  2),  BRC(3,  4)), (TLC(5,  6),  BRC(7,  65535)))");

    // A whole rectangle array replaces the list by value.
    auto const other = MakeArray({MakeRect(8, 8, 8, 8)});
    ASSERT_EQ(item->AssignArrayValue(other, 5, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(item->IsEqualValue(ItemCPtr(other)));

    changed = true;
    EXPECT_EQ(item->AssignArrayValue(nullptr, 0, &changed), -31);
    boost::intrusive_ptr<NumericItem<U16Traits>> number(NumericItem<U16Traits>::Create(1, 3));
    EXPECT_EQ(item->AssignArrayValue(number, 0, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(item->IsEqualValue(ItemCPtr(other)));
    EXPECT_FALSE(item->IsEqualValue(ItemCPtr(MakeArray({MakeRect(8, 8, 8, 9)}))));
    EXPECT_FALSE(item->IsEqualValue(ItemCPtr(MakeArray({}))));
}

TEST(RectArrayTest, CopiesShareCornersExceptNewRectangles) {
    auto const source = MakeArray({MakeRect(1, 1, 1, 1)});
    boost::intrusive_ptr<RectArray> copy(source->DeepCopy(6));
    EXPECT_EQ(copy->GetId(), 6u);
    auto const rect = boost::intrusive_ptr<Rect>(new Rect(MakeRect(5, 6, 7, 8)));
    ASSERT_EQ(copy->AssignArrayValue(rect, 0, nullptr), 0);
    EXPECT_EQ(TextOf(*source), "((TLC(5,  6),  BRC(7,  8)))");

    // A numeric array writes the shared corners in place as well.
    boost::intrusive_ptr<NumericArrayItem<U16Traits>> flat(new NumericArrayItem<U16Traits>(1));
    flat->SetVal({4, 3, 2, 1});
    ASSERT_EQ(copy->AssignArrayValue(flat, 0, nullptr), 0);
    EXPECT_EQ(TextOf(*source), "((TLC(4,  3),  BRC(2,  1)))");

    // A decoded value has corners of its own.
    ItemBase::SerialStruct_t written;
    ASSERT_EQ(source->Serialize(&written), 0);
    Bytes const payload = PayloadOf(written);
    auto const record = MakeRecord(6, 141, 3, payload);
    ASSERT_EQ(copy->Deserialize(&record), 0);
    copy->Val()[0].TopLeft()->SetValX(60);
    EXPECT_EQ(TextOf(*source), "((TLC(4,  3),  BRC(2,  1)))");
}

TEST(RectArrayTest, InfoConversions) {
    RectArrayInfoU16 info(1, "z", Permission_t());
    boost::intrusive_ptr<NumericArrayInfo<U16Traits>> flat(
        new NumericArrayInfo<U16Traits>(2, "f", Permission_t()));
    flat->SetMaxSize(40);
    flat->SetMinSize(4);
    ASSERT_EQ(flat->SetDefault({1, 2, 3, 4}), 0);
    flat->SetMax(100);
    bool changed = false;
    ASSERT_EQ(info.AssignValue(flat, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info.GetMinSize(), 1u);
    EXPECT_EQ(info.GetMaxSize(), 10u);
    // Both bounds take the element minimum, and the default follows.
    std::string const zero = "x(0 <= 0 <= 0) y(0 <= 0 <= 0)";
    EXPECT_EQ(TextOf(info), "size(1, 10) " + zero + ",  " + zero);

    // A new U8 array has minimum size 1: no whole rectangles.
    boost::intrusive_ptr<NumericArrayInfo<U8Traits>> bytes(
        new NumericArrayInfo<U8Traits>(3, "b", Permission_t()));
    changed = true;
    EXPECT_EQ(info.AssignValue(bytes, &changed), -41);
    bytes->SetMinSize(0);
    ASSERT_EQ(bytes->SetDefault({1, 2, 3}), 0);
    bytes->SetMaxSize(8);
    EXPECT_EQ(info.AssignValue(bytes, &changed), -41);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info.GetMaxSize(), 10u);

    // From another rectangle array Info: sizes and corners.
    boost::intrusive_ptr<RectArrayInfoU16> other(new RectArrayInfoU16(4, "o", Permission_t()));
    other->BottomRight()->Y()->SetMax(7);
    ASSERT_EQ(info.AssignValue(other, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info.GetMaxSize(), 0x7FFFFFFFu);
    EXPECT_TRUE(info.IsEqualBounds(other));
    ASSERT_EQ(info.AssignValue(other, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(info.AssignValue(boost::intrusive_ptr<RectInfo<U16Traits>>(
                                   new RectInfo<U16Traits>(5, "r", Permission_t())),
                               &changed),
              -26);
    EXPECT_EQ(info.AssignValue(nullptr, &changed), -31);

    // MergeBounds narrows the corners and leaves the sizes.
    other->TopLeft()->X()->SetMin(3);
    other->SetMaxSize(2);
    ASSERT_EQ(info.MergeBounds(other), 0);
    EXPECT_EQ(info.TopLeft()->X()->GetMin(), 3);
    EXPECT_EQ(info.GetMaxSize(), 0x7FFFFFFFu);
    EXPECT_EQ(info.MergeBounds(flat), -36);
}

TEST(RectArrayTest, NumericArraysFlattenRectangles) {
    // Item: a rectangle lands at index as four numbers, growing with zeros.
    boost::intrusive_ptr<NumericArrayItem<S32Traits>> flat(new NumericArrayItem<S32Traits>(1));
    boost::intrusive_ptr<Rect> rect(new Rect(MakeRect(1, 2, 3, 65535)));
    bool changed = false;
    ASSERT_EQ(flat->AssignArrayValue(rect, 2, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(flat->Val(), (std::vector<int>{0, 0, 1, 2, 3, 65535}));
    ASSERT_EQ(flat->AssignArrayValue(rect, 2, &changed), 0);
    EXPECT_FALSE(changed);
    ASSERT_EQ(flat->AssignArrayValue(MakeArray({MakeRect(9, 8, 7, 6)}), 0, &changed), 0);
    EXPECT_EQ(flat->Val(), (std::vector<int>{9, 8, 7, 6}));
    ASSERT_EQ(flat->AssignArrayValue(MakeArray({}), 0, &changed), 0);
    EXPECT_TRUE(flat->Val().empty());

    // A single number cannot come from a rectangle.
    boost::intrusive_ptr<NumericItem<U16Traits>> scalar(new NumericItem<U16Traits>(1));
    EXPECT_EQ(scalar->AssignArrayValue(rect, 0, &changed), -26);

    // Info: sizes times four, corner defaults, the widest corner range.
    boost::intrusive_ptr<RectArrayInfoU16> info(new RectArrayInfoU16(1, "z", Permission_t()));
    info->SetMaxSize(3);
    info->TopLeft()->X()->SetMin(5);
    info->BottomRight()->Y()->SetMax(900);
    info->BottomRight()->Y()->SetDefault(800);
    NumericArrayInfo<FloatTraits> flatInfo(2, "f", Permission_t());
    ASSERT_EQ(flatInfo.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(flatInfo.GetMinSize(), 0u);
    EXPECT_EQ(flatInfo.GetMaxSize(), 12u);
    EXPECT_EQ(flatInfo.GetDefault(), (std::vector<float>{5, 0, 0, 800}));
    EXPECT_EQ(flatInfo.GetMin(), 0.0f);
    EXPECT_EQ(flatInfo.GetMax(), 65535.0f);
    ASSERT_EQ(flatInfo.AssignValue(info, &changed), 0);
    EXPECT_FALSE(changed);
}

TEST(RectArrayTest, TextInput) {
    struct Row {
        char const* text;
        bool ok;
        char const* value;
        char const* errors;
    };
    Row const rows[] = {
        {"0", false, "((TLC(9,  9),  BRC(9,  9)))", "Error parsing arraySize\n"},
        {"", false, "((TLC(9,  9),  BRC(9,  9)))", "Error parsing arraySize\n"},
        {"0 ", true, "()", ""},
        {"x ", true, "()", ""},
        {"1 1 2 3 4", true, "((TLC(1,  2),  BRC(3,  4)))", ""},
        {"2 1 2 3 4 5 6 7", false, "((TLC(9,  9),  BRC(9,  9)))",
         "Error parsing numericItem\nError parsing Y\nError parsing BottomRight\n"},
        {"4000000000 1", false, "((TLC(9,  9),  BRC(9,  9)))",
         "Error parsing numericItem\nError parsing Y\nError parsing TopLeft\n"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        auto const item = MakeArray({MakeRect(9, 9, 9, 9)});
        std::istringstream in(row.text);
        std::ostringstream errors;
        EXPECT_EQ(item->SetValFromStream(in, errors, nullptr), row.ok);
        EXPECT_EQ(TextOf(*item), row.value);
        EXPECT_EQ(errors.str(), row.errors);
    }
}

}  // namespace
