#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <sstream>
#include <string>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemCPtr = boost::intrusive_ptr<ItemBase const>;
using InfoCPtr = boost::intrusive_ptr<InfoBase const>;

template <class T>
boost::intrusive_ptr<RectItem<T>> NewRect(int a, int b, int c, int d, unsigned int id = 9) {
    using E = typename T::Element;
    boost::intrusive_ptr<RectItem<T>> rect(new RectItem<T>(id));
    rect->TopLeft()->SetValX(E(a));
    rect->TopLeft()->SetValY(E(b));
    rect->BottomRight()->SetValX(E(c));
    rect->BottomRight()->SetValY(E(d));
    return rect;
}

template <class T>
class GeometryTest : public ::testing::Test {};

using GeometryTraits = ::testing::Types<U16Traits, S32Traits, FloatTraits>;
TYPED_TEST_SUITE(GeometryTest, GeometryTraits);

TYPED_TEST(GeometryTest, CopiesSharePartsAndDeepCopiesDoNot) {
    using E = typename TypeParam::Element;
    boost::intrusive_ptr<CoordinateItem<TypeParam>> source(new CoordinateItem<TypeParam>(3));
    boost::intrusive_ptr<CoordinateItem<TypeParam>> copy(new CoordinateItem<TypeParam>(*source));
    copy->SetValX(E(5));
    EXPECT_EQ(source->X()->GetVal(), E(5));
    boost::intrusive_ptr<CoordinateItem<TypeParam>> deep(source->DeepCopy());
    EXPECT_EQ(deep->GetId(), 3u);
    EXPECT_EQ(deep->X()->GetVal(), E(5));
    deep->SetValX(E(7));
    EXPECT_EQ(source->X()->GetVal(), E(5));

    // Assignment shares too, and keeps the target's id.
    auto rect = NewRect<TypeParam>(1, 2, 3, 4, 1);
    RectItem<TypeParam> assigned(2);
    assigned = *rect;
    EXPECT_EQ(assigned.GetId(), 2u);
    boost::intrusive_ptr<CoordinateInfo<TypeParam>> corner(
        new CoordinateInfo<TypeParam>(0, "c", Permission_t()));
    corner->X()->SetMax(E(40));
    corner->X()->SetDefault(E(30));
    corner->Y()->SetMax(E(40));
    corner->Y()->SetDefault(E(31));
    assigned.SetValTopLeft(corner);
    EXPECT_EQ(rect->TopLeft()->X()->GetVal(), E(30));
    EXPECT_EQ(rect->TopLeft()->Y()->GetVal(), E(31));
    boost::intrusive_ptr<RectItem<TypeParam>> deepRect(rect->DeepCopy(8));
    EXPECT_TRUE(deepRect->IsEqualValue(ItemCPtr(rect)));
    deepRect->SetValBottomRight(corner);
    EXPECT_EQ(rect->BottomRight()->X()->GetVal(), E(3));

    // Infos: the copy shares the scalars, DeepCopy copies them with identity.
    RectInfo<TypeParam> info(4, "r", Permission_t(6));
    RectInfo<TypeParam> infoCopy(info);
    infoCopy.TopLeft()->X()->SetMax(E(50));
    EXPECT_EQ(info.TopLeft()->X()->GetMax(), E(50));
    boost::intrusive_ptr<RectInfo<TypeParam>> infoDeep(info.DeepCopy(11));
    EXPECT_EQ(infoDeep->GetId(), 11u);
    EXPECT_EQ(infoDeep->GetName(), "r");
    EXPECT_EQ(infoDeep->GetPermission().Value(), 6);
    infoDeep->TopLeft()->X()->SetMax(E(20));
    EXPECT_EQ(info.TopLeft()->X()->GetMax(), E(50));
    EXPECT_TRUE(infoDeep->BottomRight()->IsEqualBounds(InfoCPtr(info.BottomRight())));
}

TYPED_TEST(GeometryTest, SerialFormsAndHostileRecords) {
    using E = typename TypeParam::Element;
    unsigned int const w = TypeParam::k_serialWidth;
    auto const rect = NewRect<TypeParam>(1, 2, 300, 4000, 9);
    ItemBase::SerialStruct_t written;
    ASSERT_EQ(rect->Serialize(&written), 0);
    EXPECT_EQ(written.GetDataSize(), 4 * w);
    EXPECT_EQ(rect->Serialize(nullptr), -41);

    Bytes const payload = PayloadOf(written);
    auto const record =
        MakeRecord(9, 130, static_cast<std::uint8_t>(TypeParam::k_numericType), payload);
    boost::intrusive_ptr<ItemBase> made;
    ASSERT_EQ(ItemBase::Deserialize(&record, made), 0);
    ASSERT_TRUE(dynamic_cast<RectItem<TypeParam>*>(made.get()));
    EXPECT_TRUE(made->IsEqualValue(ItemCPtr(rect)));

    // A longer rectangle payload is read up to its fourth element.
    Bytes longer = payload;
    longer.push_back(0xEE);
    auto const longRecord =
        MakeRecord(9, 130, static_cast<std::uint8_t>(TypeParam::k_numericType), longer);
    auto fresh = NewRect<TypeParam>(0, 0, 0, 0, 9);
    EXPECT_EQ(fresh->Deserialize(&longRecord), 0);
    EXPECT_TRUE(fresh->IsEqualValue(ItemCPtr(rect)));

    // Short: -41 and the value kept.
    auto const kept = NewRect<TypeParam>(7, 7, 7, 7, 9);
    Bytes const shortPayload(payload.begin(), payload.end() - 1);
    std::uint8_t const nt = static_cast<std::uint8_t>(TypeParam::k_numericType);
    auto const shortRecord = MakeRecord(9, 130, nt, shortPayload);
    EXPECT_EQ(kept->Deserialize(&shortRecord), -41);
    EXPECT_EQ(kept->TopLeft()->X()->GetVal(), E(7));
    EXPECT_EQ(kept->BottomRight()->Y()->GetVal(), E(7));

    // A coordinate takes exactly two elements: neither more nor fewer.
    boost::intrusive_ptr<CoordinateItem<TypeParam>> point(new CoordinateItem<TypeParam>(9));
    point->SetValX(E(3));
    Bytes const pointLong(payload.begin(), payload.begin() + 2 * w + 1);
    Bytes const pointShort(payload.begin(), payload.begin() + 2 * w - 1);
    for (Bytes const& bytes : {pointLong, pointShort, Bytes()}) {
        auto const pointRecord = MakeRecord(9, 129, nt, bytes);
        EXPECT_EQ(point->Deserialize(&pointRecord), -41);
        EXPECT_EQ(point->X()->GetVal(), E(3));
    }
    Bytes const pointBytes(payload.begin(), payload.begin() + 2 * w);
    auto const pointRecord = MakeRecord(9, 129, nt, pointBytes);
    ASSERT_EQ(ItemBase::Deserialize(&pointRecord, made), 0);
    ASSERT_TRUE(dynamic_cast<CoordinateItem<TypeParam>*>(made.get()));
    EXPECT_TRUE(made->IsEqualValue(ItemCPtr(rect->TopLeft())));
}

TYPED_TEST(GeometryTest, ValidateRefusesWhatWithinBoundsAccepts) {
    using E = typename TypeParam::Element;
    boost::intrusive_ptr<RectInfo<TypeParam>> info(new RectInfo<TypeParam>(9, "r", Permission_t()));
    for (auto const& corner : {info->TopLeft(), info->BottomRight()}) {
        corner->X()->SetMin(E(1));
        corner->Y()->SetMin(E(1));
        corner->X()->SetMax(E(100));
        corner->Y()->SetMax(E(100));
    }
    auto const rect = NewRect<TypeParam>(1, 2, 3, 4);
    EXPECT_TRUE(rect->WithinBounds(*info));
    auto const refusal = rect->Validate(info);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(static_cast<int>(refusal->GetSeverityLevel()), 4);
    EXPECT_FALSE(refusal->GetInfo());
    EXPECT_TRUE(refusal->GetItem()->IsEqualValue(ItemCPtr(rect)));
    EXPECT_TRUE(rect->Validate(nullptr));
    EXPECT_TRUE(rect->TopLeft()->Validate(InfoCPtr(info->TopLeft())));

    // The corners are not compared with each other.
    auto const reversed = NewRect<TypeParam>(50, 50, 2, 2);
    EXPECT_TRUE(reversed->WithinBounds(*info));
    reversed->BottomRight()->SetValY(E(101));
    EXPECT_FALSE(reversed->WithinBounds(*info));
    reversed->BoundVal(*info);
    EXPECT_EQ(reversed->BottomRight()->Y()->GetVal(), E(100));
    EXPECT_TRUE(reversed->WithinBounds(*info));
}

TYPED_TEST(GeometryTest, InfosAssignAcrossElementTypesAndMergeWithoutRollback) {
    using E = typename TypeParam::Element;
    CoordinateInfo<TypeParam> target(1, "t", Permission_t());
    boost::intrusive_ptr<CoordinateInfo<U16Traits>> source(
        new CoordinateInfo<U16Traits>(2, "s", Permission_t()));
    source->X()->SetMin(10);
    source->X()->SetMax(20);
    source->Y()->SetDefault(15);
    bool changed = false;
    ASSERT_EQ(target.AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.X()->GetMin(), E(10));
    EXPECT_EQ(target.GetDefaultX(), E(10));
    EXPECT_EQ(target.GetDefaultY(), E(15));
    EXPECT_EQ(target.GetId(), 1u);
    ASSERT_EQ(target.AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);

    changed = true;
    EXPECT_EQ(target.AssignValue(nullptr, &changed), -31);
    boost::intrusive_ptr<RectInfo<TypeParam>> rect(new RectInfo<TypeParam>(2, "r", Permission_t()));
    EXPECT_EQ(target.AssignValue(rect, &changed), -26);
    EXPECT_EQ(rect->AssignValue(InfoCPtr(source), &changed), -26);
    EXPECT_TRUE(changed);

    // x merges, y fails, and x stays merged.
    CoordinateInfo<TypeParam> narrow(3, "n", Permission_t());
    boost::intrusive_ptr<CoordinateInfo<TypeParam>> other(
        new CoordinateInfo<TypeParam>(4, "o", Permission_t()));
    narrow.X()->SetMax(E(50));
    narrow.Y()->SetMax(E(5));
    other->X()->SetMin(E(20));
    other->Y()->SetMin(E(10));
    EXPECT_EQ(narrow.MergeBounds(other), -55);
    EXPECT_EQ(narrow.X()->GetMin(), E(20));
    EXPECT_EQ(narrow.MergeBounds(rect), -36);
    EXPECT_EQ(narrow.MergeBounds(nullptr), -36);
    EXPECT_FALSE(narrow.IsEqualBounds(other));
    other->Y()->SetMin(narrow.Y()->GetMin());
    other->Y()->SetMax(narrow.Y()->GetMax());
    other->X()->SetMax(E(50));
    EXPECT_TRUE(narrow.IsEqualBounds(other));
}

TYPED_TEST(GeometryTest, ItemsAssignAcrossElementTypes) {
    using E = typename TypeParam::Element;
    auto const source = NewRect<S32Traits>(1, 2, 3, 4);
    auto target = NewRect<TypeParam>(0, 0, 0, 0);
    bool changed = false;
    ASSERT_EQ(target->AssignArrayValue(source, 77, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->BottomRight()->Y()->GetVal(), E(4));
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);

    changed = true;
    boost::intrusive_ptr<NumericItem<TypeParam>> number(NumericItem<TypeParam>::Create(9, E(5)));
    EXPECT_EQ(target->AssignArrayValue(number, 0, &changed), -26);
    EXPECT_EQ(target->AssignArrayValue(nullptr, 0, &changed), -31);
    EXPECT_EQ(target->TopLeft()->AssignArrayValue(source, 0, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->TopLeft()->AssignArrayValue(ItemCPtr(source->TopLeft()), 0, nullptr), 0);
}

TEST(CoordinateTest, WidthAndHeightWrapInTheElementType) {
    RectItem<U16Traits> fresh;
    EXPECT_EQ(fresh.GetWidth(), 1);
    EXPECT_EQ(fresh.GetHeight(), 1);
    EXPECT_EQ(NewRect<U16Traits>(10, 10, 5, 5)->GetWidth(), 65532);
    EXPECT_EQ(NewRect<S32Traits>(10, 10, 5, 5)->GetHeight(), -4);
    auto const wide = NewRect<S32Traits>(0, 0, 0, 0);
    wide->TopLeft()->SetValX(INT_MIN);
    wide->BottomRight()->SetValX(INT_MAX);
    EXPECT_EQ(wide->GetWidth(), 0);
    auto const real = NewRect<FloatTraits>(0, 0, 0, 0);
    real->BottomRight()->SetValX(1.5f);
    real->BottomRight()->SetValY(1.5f);
    EXPECT_FLOAT_EQ(real->GetWidth(), 2.5f);
    EXPECT_FLOAT_EQ(real->GetHeight(), 2.5f);
}

TEST(CoordinateTest, BoundsClampEachPartByItsOwnRange) {
    CoordinateInfo<U16Traits> info(1, "c", Permission_t());
    info.X()->SetMin(10);
    info.X()->SetMax(20);
    info.Y()->SetMin(10);
    info.Y()->SetMax(20);
    struct Row {
        unsigned short before, after;
    };
    for (Row const row : {Row{5, 10}, Row{25, 20}, Row{15, 15}}) {
        SCOPED_TRACE(row.before);
        CoordinateItem<U16Traits> item;
        item.SetValX(row.before);
        item.SetValY(15);
        EXPECT_EQ(item.WithinBounds(info), row.before == row.after);
        item.BoundVal(info);
        EXPECT_EQ(item.X()->GetVal(), row.after);
        EXPECT_EQ(item.Y()->GetVal(), 15);
    }

    // A float coordinate excludes zero by default.
    CoordinateInfo<FloatTraits> real(2, "f", Permission_t());
    boost::intrusive_ptr<CoordinateItem<FloatTraits>> item(
        static_cast<CoordinateItem<FloatTraits>*>(real.CreateItem()));
    EXPECT_EQ(item->GetId(), 2u);
    EXPECT_FALSE(item->WithinBounds(real));
    item->BoundVal(real);
    EXPECT_EQ(item->X()->GetVal(), std::numeric_limits<float>::min());
    EXPECT_TRUE(item->WithinBounds(real));
}

TEST(CoordinateTest, PayloadBytes) {
    CoordinateItem<U16Traits> point(1);
    point.SetValX(1);
    point.SetValY(2);
    ItemBase::SerialStruct_t written;
    ASSERT_EQ(point.Serialize(&written), 0);
    EXPECT_EQ(Hex(PayloadOf(written)), "00 01 00 02");
    EXPECT_EQ(written.type, 129);
    EXPECT_EQ(written.numericType, 3);

    ItemBase::SerialStruct_t rect;
    ASSERT_EQ(NewRect<S32Traits>(-1, 2, 3, 4)->Serialize(&rect), 0);
    EXPECT_EQ(Hex(PayloadOf(rect)), "FF FF FF FF 00 00 00 02 00 00 00 03 00 00 00 04");
    ItemBase::SerialStruct_t real;
    ASSERT_EQ(NewRect<FloatTraits>(1, 0, 0, 300)->Serialize(&real), 0);
    EXPECT_EQ(Hex(PayloadOf(real)), "00 00 80 4B 00 00 00 00 00 00 00 00 00 04 30 4E");

    // Only U16, S32 and Float have rows.
    boost::intrusive_ptr<ItemBase> made;
    Bytes const sixteen(16);
    for (std::uint8_t const type : {129, 130}) {
        for (std::uint8_t const nt : {0, 1, 5, 10, 11}) {
            auto const record = MakeRecord(1, type, nt, sixteen);
            EXPECT_EQ(ItemBase::Deserialize(&record, made), -41);
            EXPECT_FALSE(made);
        }
    }
}

TEST(CoordinateTest, TextForms) {
    auto const rect = NewRect<U16Traits>(1, 2, 3, 4, 5);
    EXPECT_EQ(TextOf(*rect), "(TLC(1,  2),  BRC(3,  4))");
    EXPECT_EQ(DumpOf(*rect), "id: 5\ntype: Rectangle\nvalue: (TLC(1,  2),  BRC(3,  4))\n");
    EXPECT_EQ(DumpOf(*rect->TopLeft()), "id: 0\ntype: Coordinate\nvalue: (1,  2)\n");

    RectInfo<U16Traits> info(7, "area", Permission_t(3));
    info.TopLeft()->X()->SetMax(9);
    std::string const x = "x(0 <= 0 <= 9) y(0 <= 0 <= 65535)";
    std::string const full = "x(0 <= 0 <= 65535) y(0 <= 0 <= 65535)";
    EXPECT_EQ(TextOf(info), "TLC[" + x + "] BRC[" + full + "]");
    EXPECT_EQ(DumpOf(info),
              "id: 7\npermission: 3\nname: area\ntype: Rectangle\nnumericType: U16\ntopLeft: " + x +
                  "\ntopRight: " + full + "\n");
    EXPECT_EQ(DumpOf(*info.TopLeft()),
              "id: 0\npermission: 3\nname: \ntype: Coordinate\nnumericType: U16\nX 0 <= 0 <= "
              "9\nY 0 <= 0 <= 65535\n");
}

TEST(CoordinateTest, TextInputKeepsWhatWasReadBeforeAFailure) {
    CoordinateItem<U16Traits> point;
    std::istringstream one("12");
    std::ostringstream errors;
    EXPECT_FALSE(point.SetValFromStream(one, errors, nullptr));
    EXPECT_EQ(point.X()->GetVal(), 12);
    EXPECT_EQ(errors.str(), "Error parsing numericItem\nError parsing Y\n");

    auto const rect = NewRect<S32Traits>(0, 0, 0, 0);
    std::istringstream three("-1 2 3 x");
    std::ostringstream rectErrors;
    EXPECT_FALSE(rect->SetValFromStream(three, rectErrors, nullptr));
    EXPECT_EQ(TextOf(*rect), "(TLC(-1,  2),  BRC(3,  0))");
    EXPECT_EQ(rectErrors.str(),
              "Error parsing numericItem\nError parsing Y\nError parsing "
              "BottomRight\n");
    std::istringstream four("5 6 7 8");
    EXPECT_TRUE(rect->SetValFromStream(four, rectErrors, nullptr));
    EXPECT_EQ(TextOf(*rect), "(TLC(5,  6),  BRC(7,  8))");
}

}  // namespace
