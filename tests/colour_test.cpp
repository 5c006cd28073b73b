#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;
using Vintor::Colour_t;

using ItemPtr = boost::intrusive_ptr<ItemBase>;

float FromBits(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

TEST(ColourItemTest, ComponentsWriteTheCodedLittleEndianBytesAndKeepOnlyTheIntegerPart) {
    struct Row {
        float value;
        char const* bytes;
        float readBack;
    };
    Row const rows[] = {
        {1.0f, "00 00 80 4B", 1.0f},           // 1 -> 0x01000000 = 16777216
        {0.5f, "00 00 00 00", 0.0f},           // the fraction is lost
        {-1.0f, "00 00 80 4F", 0.0f},          // 0xFFFFFFFF -> 4294967296 -> 2^32 -> 0
        {256.0f, "00 00 80 47", 256.0f},       // 0x00010000 = 65536
        {300.0f, "00 04 30 4E", 300.0f},       // 0x2C010000
        {-2.0f, "00 00 7F 4F", 255.0f},        // 0xFEFFFFFF rounds to 0xFF000000
        {1.0e20f, "00 00 00 00", 0.0f},        // beyond 64 bits: no crash, zero
        {std::nanf(""), "00 00 00 00", 0.0f},  // likewise for a NaN
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.value);
        ColourItem item(0x42000010);
        item.Set(7.0f, row.value, 0.0f, 1.0f);
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(item.Serialize(&record), 0);
        EXPECT_EQ(record.GetId(), 0x42000010u);
        EXPECT_EQ(record.type, 0x80);
        EXPECT_EQ(record.numericType, 0);
        EXPECT_EQ(Hex(PayloadOf(record)),
                  std::string("00 00 E0 4C ") + row.bytes + " 00 00 00 00 00 00 80 4B");

        ItemBase::ConstSerialStruct_t const view(record);
        ItemPtr back;
        ASSERT_EQ(ItemBase::Deserialize(&view, back), 0);
        auto const* const colour = dynamic_cast<ColourItem const*>(back.get());
        ASSERT_NE(colour, nullptr);
        EXPECT_EQ(colour->GetId(), 0x42000010u);
        EXPECT_EQ(colour->Val(), Colour_t(7.0f, row.readBack, 0.0f, 1.0f));
    }

    // Whole components survive the way there and back.
    ColourItem whole(3);
    whole.Set(1.0f, 0.0f, 1.0f, 0.5f);
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(whole.Serialize(&record), 0);
    ItemBase::ConstSerialStruct_t const view(record);
    ColourItem target(3);
    ASSERT_EQ(target.Deserialize(&view), 0);
    EXPECT_EQ(target.Val(), Colour_t(1.0f, 0.0f, 1.0f, 0.0f));
}

TEST(OrientationItemTest, SerialRecordReadsBackThroughTheDispatch) {
    OrientationItem item(0x41000020);
    item.Set(Orientation_t{90.0f, -1.0f, 256.0f});
    ASSERT_EQ(item.GetSerialDataSize(), 12u);
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item.Serialize(&record), 0);
    EXPECT_EQ(record.type, 0x83);
    EXPECT_EQ(Hex(PayloadOf(record)), "00 00 B4 4E 00 00 80 4F 00 00 80 47");

    ItemBase::ConstSerialStruct_t const view(record);
    ItemPtr back;
    ASSERT_EQ(ItemBase::Deserialize(&view, back), 0);
    auto const* const orientation = dynamic_cast<OrientationItem const*>(back.get());
    ASSERT_NE(orientation, nullptr);
    // The negative inclination comes back as 0, like a negative colour component.
    EXPECT_EQ(orientation->GetBearing(), 90.0f);
    EXPECT_EQ(orientation->GetInclination(), 0.0f);
    EXPECT_EQ(orientation->GetRoll(), 256.0f);

    item.Val().inclination = 3.0f;
    ItemBase::SerialStruct_t again;
    ASSERT_EQ(item.Serialize(&again), 0);
    ItemBase::ConstSerialStruct_t const view2(again);
    ASSERT_EQ(ItemBase::Deserialize(&view2, back), 0);
    EXPECT_TRUE(back->IsEqualValue(ItemPtr(item.DeepCopy())));
}

TEST(ColourItemTest, MalformedRecordsAreRefusedAndKeepTheValue) {
    ColourItem colour(9);
    colour.Set(1.0f, 2.0f, 3.0f, 4.0f);
    OrientationItem orientation(9);
    orientation.Set(Orientation_t{1.0f, 2.0f, 3.0f});
    Bytes const sixteen(16, 0), fifteen(15, 0), seventeen(17, 0), twelve(12, 0);
    struct Row {
        char const* name;
        ItemBase* item;
        ItemBase::ConstSerialStruct_t record;
    };
    Row const rows[] = {
        {"short colour", &colour, MakeRecord(9, 0x80, 0, fifteen)},
        {"long colour", &colour, MakeRecord(9, 0x80, 0, seventeen)},
        {"empty colour", &colour, MakeRecord(9, 0x80, 0, Bytes())},
        {"orientation size", &colour, MakeRecord(9, 0x80, 0, twelve)},
        {"colour size", &orientation, MakeRecord(9, 0x83, 0, sixteen)},
        {"short orientation", &orientation, MakeRecord(9, 0x83, 0, Bytes(11, 0))},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.item->Deserialize(&row.record), -41);
    }
    EXPECT_EQ(colour.Serialize(nullptr), -41);
    EXPECT_EQ(orientation.Serialize(nullptr), -41);
    EXPECT_EQ(colour.Val(), Colour_t(1.0f, 2.0f, 3.0f, 4.0f));
    EXPECT_EQ(orientation.GetRoll(), 3.0f);

    // The dispatch makes the object and passes the refusal on.
    auto const shortRecord = MakeRecord(5, 0x80, 0, fifteen);
    ItemPtr made;
    EXPECT_EQ(ItemBase::Deserialize(&shortRecord, made), -41);
    EXPECT_NE(dynamic_cast<ColourItem*>(made.get()), nullptr);
}

TEST(ColourTest, ARGBPackingWrapsDifferentlyOnItemAndInfo) {
    struct Row {
        Colour_t colour;
        unsigned int item;
        unsigned int info;
    };
    Row const rows[] = {
        {Colour_t(1.0f, 0.5f, 2.0f, 0.0f), 0xFF7FFE00u, 0xFF7FFE00u},
        {Colour_t(-0.5f, 1.0f, 1.0f, 1.0f), 0x00FFFFFFu, 0x81FFFFFFu},
        {Colour_t(0.0f, -1.0f, 0.2f, 1.5f), 0x0000337Eu, 0x0001337Eu},
        {Colour_t(std::nanf(""), 0.0f, 0.0f, 1e30f), 0x00000000u, 0x00000000u},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.colour.a << " " << row.colour.r << " "
                                          << row.colour.g << " " << row.colour.b);
        ColourItem item;
        item.SetVal(row.colour);
        EXPECT_EQ(item.GetARGB(), row.item);
        ColourInfo info(1, "c", Permission_t());
        info.SetMin(row.colour);
        info.SetMax(row.colour);
        info.SetDefault(row.colour);
        EXPECT_EQ(info.GetMinARGB(), row.info);
        EXPECT_EQ(info.GetMaxARGB(), row.info);
        EXPECT_EQ(info.GetDefaultARGB(), row.info);
    }
    // Three components leave a at 0, not 1.
    ColourItem rgb;
    rgb.Set(1.0f, 1.0f, 1.0f);
    EXPECT_EQ(rgb.GetA(), 0.0f);
    EXPECT_EQ(rgb.GetARGB(), 0x00FFFFFFu);
}

TEST(ColourTest, ItemsCompareAndAssignWithinTheToleranceBothEndsInclusive) {
    float const tolerance = FromBits(0x2EDBE6FF);
    float const beyond = FromBits(0x2EDBE700);
    ColourItem base(1);
    base.Set(0.0f, 0.0f, 0.0f, 0.0f);
    struct Row {
        Colour_t other;
        bool equal;
    };
    Row const rows[] = {
        {Colour_t(tolerance, 0.0f, 0.0f, 0.0f), true},
        {Colour_t(0.0f, 0.0f, 0.0f, -tolerance), true},
        {Colour_t(0.0f, beyond, 0.0f, 0.0f), false},
        {Colour_t(0.0f, 0.0f, -beyond, 0.0f), false},
        {Colour_t(0.0f, 0.0f, 0.0f, std::nanf("")), false},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.other.a << " " << row.other.r << " " << row.other.g
                                          << " " << row.other.b);
        boost::intrusive_ptr<ColourItem> other(new ColourItem(2));
        other->SetVal(row.other);
        EXPECT_EQ(base.IsEqualValue(other), row.equal);
        ColourItem target(base);
        bool changed = row.equal;
        ASSERT_EQ(target.AssignArrayValue(other, 5, &changed), 0);
        EXPECT_EQ(changed, !row.equal);
        // An equal colour is not taken: the old components stay exactly.
        EXPECT_EQ(std::memcmp(&target.Val(), &row.other, sizeof row.other) == 0, !row.equal);
    }

    OrientationItem orientation(1);
    boost::intrusive_ptr<OrientationItem> near(new OrientationItem(2));
    near->Set(Orientation_t{0.0f, 0.0f, tolerance});
    EXPECT_TRUE(orientation.IsEqualValue(near));
    near->Val().inclination = -beyond;
    EXPECT_FALSE(orientation.IsEqualValue(near));
    bool changed = false;
    ASSERT_EQ(orientation.AssignValue(near, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(orientation.GetInclination(), -beyond);

    // Null and foreign sources; changed is left alone.
    changed = true;
    EXPECT_EQ(base.AssignArrayValue(nullptr, 0, &changed), -31);
    EXPECT_EQ(base.AssignArrayValue(near, 0, &changed), -26);
    EXPECT_EQ(orientation.AssignArrayValue(ItemPtr(new ColourItem(1)), 0, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_FALSE(base.IsEqualValue(near));
}

TEST(ColourInfoTest, BoundsAreNeitherComparedNorEnforcedAndAssignCopiesAllThree) {
    boost::intrusive_ptr<ColourInfo> info(new ColourInfo(4, "Led", Permission_t(3)));
    info->SetMin(Colour_t(0.0f, 0.0f, 0.0f, 0.0f));
    info->SetMax(Colour_t(0.5f, 0.5f, 0.5f, 0.5f));
    info->SetDefault(Colour_t(0.25f, 0.5f, 0.0f, 0.25f));

    EXPECT_TRUE(info->IsEqualBounds(nullptr));
    EXPECT_TRUE(info->IsEqualBounds(new ExtendedInfo(1, "x", Permission_t())));
    EXPECT_EQ(info->MergeBounds(new ColourInfo(2, "y", Permission_t())), 0);
    EXPECT_EQ(info->MergeBounds(new ExtendedInfo(1, "x", Permission_t())), -36);
    EXPECT_EQ(info->MergeBounds(nullptr), -36);

    ItemPtr const item(info->CreateItem());
    EXPECT_EQ(item->GetId(), 4u);
    EXPECT_EQ(static_cast<ColourItem&>(*item).Val(), info->GetDefault());
    static_cast<ColourItem&>(*item).Set(9.0f, 9.0f, 9.0f, 9.0f);
    EXPECT_EQ(item->Validate(info), nullptr);
    EXPECT_EQ(item->Validate(nullptr), nullptr);
    EXPECT_NE(item->ValidateMin(info), nullptr);

    // Assignment compares exactly, not within the Items' tolerance.
    boost::intrusive_ptr<ColourInfo> target(info->DeepCopy(5));
    EXPECT_EQ(target->GetName(), "Led");
    boost::intrusive_ptr<ColourInfo> source(new ColourInfo(6, "other", Permission_t()));
    source->SetMax(Colour_t(0.0f, 0.0f, 1e-12f, 0.0f));
    bool changed = false;
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetMax(), source->GetMax());
    EXPECT_EQ(target->GetDefault(), Colour_t());
    EXPECT_EQ(target->GetId(), 5u);
    ASSERT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(target->AssignValue(new ExtendedInfo(6, "x", Permission_t()), &changed), -26);
}

TEST(ColourTest, TextFormsKeepTheirLabels) {
    ColourInfo info(4, "Led", Permission_t(3));
    info.SetDefault(Colour_t(1.0f, 0.5f, 0.5f, 0.5f));
    info.SetMax(Colour_t(1.0f, 1.0f, 1.0f, 1.0f));
    std::ostringstream infoText, infoDump;
    info.operator<<(infoText);
    EXPECT_EQ(infoText.str(), "0, 0, 0, 0 < 1, 0.5, 0.5, 0.5 < 1, 1, 1, 1");
    info.DumpVal(infoDump);
    EXPECT_EQ(infoDump.str(),
              "id: 4\npermission: 3\nname: Led\ntype: Colour\n"
              "default: 0, 0, 0, 0 < 1, 0.5, 0.5, 0.5 < 1, 1, 1, 1\n");

    ColourItem item(7);
    item.Set(0.5f, 1.0f, 0.0f, 0.25f);
    EXPECT_EQ(item.GetValAsString(), "(0.5 1 0 0.25)");
    EXPECT_EQ(DumpOf(item), "id: 7\ntype: Colour\nvalue: a0.5, r1, g0, b 0.25\n");

    OrientationItem orientation(8);
    orientation.Set(Orientation_t{1.5f, -2.0f, 0.0f});
    EXPECT_EQ(orientation.GetValAsString(), "OrientationItem");
    EXPECT_EQ(DumpOf(orientation),
              "id: 8\ntype: Orientation\nbearing: 1.5\ninclination: -2\nroll: 0\n");
    std::istringstream in("1 2 3");
    std::ostringstream errors;
    EXPECT_FALSE(orientation.SetValFromStream(in, errors, nullptr));
    EXPECT_EQ(errors.str(), "Impl. me");
    EXPECT_EQ(orientation.GetBearing(), 1.5f);
}

TEST(ColourItemTest, SetValFromStreamReadsItsOwnTextAndNamesTheFailingField) {
    struct Row {
        char const* text;
        bool ok;
        char const* errors;
        char const* rest;
    };
    Row const rows[] = {
        {"(1 2 3 4)", true, "", ")"},
        {" 1 2 3 4", true, "", ""},
        {"(0.5 1 0 0.25)", true, "", ")"},
        {"(x 2 3 4)", false, "Error parsing colourItem.a\n", nullptr},
        {"(1 2 x 4)", false, "Error parsing colourItem.g\n", nullptr},
        {"(1 2 3", false, "Error parsing colourItem.b\n", nullptr},
        {"", false, "Error parsing colourItem.a\n", nullptr},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        ColourItem item;
        item.Set(9.0f, 9.0f, 9.0f, 9.0f);
        std::istringstream in(row.text);
        std::ostringstream errors;
        EXPECT_EQ(item.SetValFromStream(in, errors, nullptr), row.ok);
        EXPECT_EQ(errors.str(), row.errors);
        if (row.ok) {
            std::istringstream again(item.GetValAsString());
            ColourItem copy;
            std::ostringstream none;
            ASSERT_TRUE(copy.SetValFromStream(again, none, nullptr));
            EXPECT_TRUE(copy.IsEqualValue(ItemPtr(item.DeepCopy())));
            std::string rest;
            std::getline(in, rest);
            EXPECT_EQ(rest, row.rest);
        } else {
            EXPECT_EQ(item.Val(), Colour_t(9.0f, 9.0f, 9.0f, 9.0f));
        }
    }
    // Already at the end: the whole item is named.
    std::istringstream done("");
    done.get();
    std::ostringstream errors;
    ColourItem item;
    EXPECT_FALSE(item.SetValFromStream(done, errors, nullptr));
    EXPECT_EQ(errors.str(), "Error parsing colourItem\n");
}

}  // namespace
