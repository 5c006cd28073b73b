#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using Strings = std::vector<std::string>;
using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase>;

// Writes item and reads the record back through the type dispatch.
ItemPtr RoundTrip(ItemBase const& item, Bytes* payload = nullptr) {
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(item.Serialize(&record), 0);
    if (payload) {
        *payload = PayloadOf(record);
    }
    ItemBase::ConstSerialStruct_t const view(record);
    ItemPtr read;
    EXPECT_EQ(ItemBase::Deserialize(&view, read), 0);
    return read;
}

TEST(StringArrayInfoTest, SizeBoundsPullTheDefault) {
    StringArrayInfo info(1, "Names", Permission_t());
    // A new Info allows only the empty list.
    EXPECT_EQ(info.SetDefault({"a"}), -37);
    EXPECT_EQ(info.SetMaxSize(1), 0);
    EXPECT_EQ(info.SetDefault({"a"}), 0);
    EXPECT_EQ(info.SetDefault({"a", "b"}), -37);
    EXPECT_EQ(info.GetDefault(), Strings({"a"}));

    EXPECT_EQ(info.SetMinSize(3), 0);
    EXPECT_EQ(info.GetMaxSize(), 3u);
    EXPECT_EQ(info.GetDefault(), Strings({"a", "", ""}));
    EXPECT_EQ(info.SetMaxSize(2), 0);
    EXPECT_EQ(info.GetMinSize(), 2u);
    EXPECT_EQ(info.GetDefault(), Strings({"a", ""}));

    // An empty default stays empty when the minimum rises.
    StringArrayInfo empty(2, "e", Permission_t());
    empty.SetMinSize(4);
    EXPECT_EQ(empty.GetDefaultSize(), 0u);
    EXPECT_EQ(empty.GetMaxSize(), 4u);
}

TEST(StringArrayInfoTest, BoundsMergeAndAssignment) {
    boost::intrusive_ptr<StringArrayInfo> info(new StringArrayInfo(1, "a", Permission_t()));
    boost::intrusive_ptr<StringArrayInfo> other(new StringArrayInfo(2, "b", Permission_t()));
    info->SetMaxSize(5);
    info->SetMinSize(1);
    info->SetDefault({"x", "y", "z"});
    other->SetMaxSize(9);
    other->SetMinSize(6);
    EXPECT_FALSE(info->IsEqualBounds(other));
    EXPECT_EQ(info->MergeBounds(other), -55);
    EXPECT_EQ(info->GetMinSize(), 1u);
    EXPECT_EQ(info->GetMaxSize(), 5u);
    other->SetMinSize(5);
    EXPECT_EQ(info->MergeBounds(other), 0);
    EXPECT_EQ(info->GetMinSize(), 5u);
    EXPECT_EQ(info->GetMaxSize(), 5u);
    EXPECT_EQ(info->GetDefaultSize(), 3u);  // left outside the narrowed range
    InfoPtr const flags(new BoolArrayInfo(3, "f", Permission_t()));
    EXPECT_EQ(info->MergeBounds(flags), -36);
    EXPECT_EQ(info->MergeBounds(nullptr), -36);

    // Bounds ignore the default.
    other->SetMaxSize(5);
    other->SetDefault({"q", "q", "q", "q", "q"});
    EXPECT_TRUE(info->IsEqualBounds(other));

    StringArrayInfo target(9, "t", Permission_t(2));
    bool changed = false;
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.GetDefault(), Strings({"x", "y", "z"}));
    EXPECT_EQ(target.GetMinSize(), 5u);
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_FALSE(changed);
    // A change of the sizes alone is a change.
    info->SetMaxSize(7);
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    changed = true;
    EXPECT_EQ(target.AssignValue(flags, &changed), -26);
    EXPECT_EQ(target.AssignValue(nullptr, &changed), -31);
    EXPECT_TRUE(changed);  // not written on failure
    EXPECT_EQ(target.GetName(), "t");
    EXPECT_EQ(target.GetPermission(), Permission_t(2));

    EXPECT_EQ(TextOf(target), "array size: 5 <= 3 <= 7");
    EXPECT_EQ(DumpOf(target),
              "id: 9\npermission: 2\nname: t\ntype: StringArray\nminSize: 5\nmaxSize: 7\n"
              "defaultSize: 3\n");
    ItemPtr const created(target.CreateItem());
    EXPECT_EQ(created->GetId(), 9u);
    EXPECT_EQ(created->GetValAsString(), "(x, y, z)");
}

TEST(StringArrayItemTest, SerialFormRoundTripsAndAppends) {
    StringArrayItem const item(4);
    Bytes payload;
    boost::intrusive_ptr<StringArrayItem> const three(StringArrayItem::Create(4, {"a", "", "bc"}));
    EXPECT_EQ(three->GetSerialDataSize(), 6u);
    ItemPtr const read = RoundTrip(*three, &payload);
    EXPECT_EQ(Hex(payload), "61 00 00 62 63 00");
    ASSERT_TRUE(dynamic_cast<StringArrayItem*>(read.get()));
    EXPECT_TRUE(read->IsEqualValue(three));
    EXPECT_EQ(read->GetId(), 4u);

    // The empty list has no payload bytes; one empty string has one.
    EXPECT_TRUE(RoundTrip(item, &payload)->IsEqualValue(ItemPtr(item.DeepCopy())));
    EXPECT_EQ(payload.size(), 0u);
    boost::intrusive_ptr<StringArrayItem> const blank(StringArrayItem::Create(4, {""}));
    EXPECT_TRUE(RoundTrip(*blank, &payload)->IsEqualValue(blank));
    EXPECT_EQ(Hex(payload), "00");

    // Reading appends: twice doubles the list, and an empty record adds nothing.
    StringArrayItem target(4);
    Bytes const bytes = {'a', 0, 'b', 'c', 0};
    auto const record = MakeRecord(4, 7, 0, bytes);
    EXPECT_EQ(target.Deserialize(&record), 0);
    EXPECT_EQ(target.Deserialize(&record), 0);
    EXPECT_EQ(target.Val(), Strings({"a", "bc", "a", "bc"}));
    auto const none = MakeRecord(4, 7, 0, Bytes());
    EXPECT_EQ(target.Deserialize(&none), 0);
    EXPECT_EQ(target.GetSize(), 4u);

    EXPECT_EQ(three->Serialize(nullptr), -41);
}

TEST(StringArrayItemTest, HostileRecordsKeepTheValue) {
    struct Row {
        char const* name;
        Bytes payload;
    };
    Row const rows[] = {
        {"no terminator at all", {'a', 'b'}},
        {"last string open", {'a', 0, 'b'}},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        boost::intrusive_ptr<StringArrayItem> item(StringArrayItem::Create(4, {"old"}));
        auto const record = MakeRecord(4, 7, 0, row.payload);
        EXPECT_EQ(item->Deserialize(&record), -41);
        EXPECT_EQ(item->Val(), Strings({"old"}));
    }
}

TEST(StringArrayItemTest, AssignmentFromSingleValuesAndLists) {
    StringArrayItem item(1);
    bool changed = false;
    ItemPtr const text(StringItem::Create(2, "v"));
    EXPECT_EQ(item.AssignArrayValue(text, 2, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item.Val(), Strings({"", "", "v"}));
    EXPECT_EQ(item.AssignArrayValue(text, 2, &changed), 0);
    EXPECT_FALSE(changed);
    // Growing is a change even when the new place gets an empty text.
    EXPECT_EQ(item.AssignArrayValue(ItemPtr(StringItem::Create(2, "")), 3, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item.AssignValue(ItemPtr(BoolItem::Create(2, true)), &changed), 0);
    EXPECT_EQ(item.Val(), Strings({"True", "", "v", ""}));

    // A list replaces the whole value, whatever the index.
    boost::intrusive_ptr<StringArrayItem> const list(StringArrayItem::Create(3, {"True", "w"}));
    EXPECT_EQ(item.AssignArrayValue(list, 7, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(item.IsEqualValue(list));
    EXPECT_EQ(item.AssignArrayValue(list, 0, &changed), 0);
    EXPECT_FALSE(changed);

    changed = true;
    EXPECT_EQ(item.AssignArrayValue(ItemPtr(NumericItem<U8Traits>::Create(2, 1)), 0, &changed),
              -26);
    EXPECT_EQ(item.AssignArrayValue(ItemPtr(StringSparseItem::Create(2, "s")), 0, &changed), -26);
    EXPECT_EQ(item.AssignArrayValue(nullptr, 0, &changed), -31);
    EXPECT_TRUE(changed);
    EXPECT_EQ(item.Val(), Strings({"True", "w"}));

    // A single string takes the list's string at index.
    StringItem single(5);
    single.SetVal("keep");
    EXPECT_EQ(single.AssignArrayValue(list, 1, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(single.GetVal(), "w");
    changed = true;
    EXPECT_EQ(single.AssignArrayValue(list, 2, &changed), -41);
    EXPECT_TRUE(changed);
    EXPECT_EQ(single.GetVal(), "w");
}

TEST(StringArrayItemTest, ValidateCountsStringsOnly) {
    boost::intrusive_ptr<StringArrayInfo> info(new StringArrayInfo(1, "n", Permission_t()));
    info->SetMaxSize(2);
    info->SetMinSize(1);
    boost::intrusive_ptr<StringArrayItem> item(StringArrayItem::Create(1, {std::string(500, 'x')}));
    EXPECT_EQ(item->Validate(info), nullptr);
    EXPECT_EQ(item->SetVal({}, *info), -37);
    EXPECT_EQ(item->SetVal({"a", "b", "c"}, *info), -37);
    EXPECT_EQ(item->GetSize(), 1u);
    // Counts exactly at the minimum and at the maximum are stored.
    EXPECT_EQ(item->SetVal({"m"}, *info), 0);
    EXPECT_EQ(item->GetVal(), Strings({"m"}));
    EXPECT_EQ(item->SetVal({"p", "q"}, *info), 0);
    EXPECT_EQ(item->GetVal(), Strings({"p", "q"}));
    item->SetVal({std::string(500, 'x')});
    for (Strings const& value : {Strings(), Strings({"a", "b", "c"})}) {
        item->SetVal(value);
        auto const failed = item->Validate(info);
        ASSERT_NE(failed, nullptr);
        EXPECT_EQ(failed->GetSeverityLevel(), 4);
        EXPECT_EQ(failed->GetItem()->GetValAsString(), item->GetValAsString());
    }
    EXPECT_NE(item->Validate(nullptr), nullptr);
    EXPECT_NE(item->Validate(InfoPtr(new StringInfo(1, "s", Permission_t()))), nullptr);
}

TEST(StringArrayItemTest, TextReadsAllOrNothing) {
    struct Row {
        char const* input;
        bool ok;
        Strings value;
        char const* error;
    };
    Row const rows[] = {
        {"2 ab cd ", true, {"ab", "cd"}, ""},
        {"0", true, {}, ""},
        {"3 a b", false, {"old"}, "Error parsing arrayItem\n"},
        {"x", false, {"old"}, "Error parsing arraySize\n"},
        {"", false, {"old"}, "Error parsing arraySize\n"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.input);
        StringArrayItem item(1);
        item.SetVal({"old"});
        std::istringstream in(row.input);
        std::ostringstream errors;
        EXPECT_EQ(item.SetValFromStream(in, errors, nullptr), row.ok);
        EXPECT_EQ(item.Val(), row.value);
        EXPECT_EQ(errors.str(), row.error);
    }
    boost::intrusive_ptr<StringArrayItem> item(StringArrayItem::Create(6, {"a", "", "bc"}));
    EXPECT_EQ(DumpOf(*item), "id: 6\ntype: StringArray\nvalue: (a, , bc)\n");
    EXPECT_EQ(StringArrayItem(6).GetValAsString(), "()");
}

TEST(StringSparseInfoTest, TableKeepsTheDefault) {
    StringSparseInfo info(1, "Mode", Permission_t());
    Strings table = {"day", "night"};
    EXPECT_EQ(info.SetTable(table), 0);
    EXPECT_EQ(info.GetDefault(), "day");  // "" is no entry
    EXPECT_EQ(info.SetDefault("night"), 0);
    EXPECT_EQ(info.SetDefault("Night"), -23);  // bytes, not letters
    EXPECT_EQ(info.GetDefault(), "night");
    Strings next = {"auto", "night"};
    info.SetTable(next);
    EXPECT_EQ(info.GetDefault(), "night");
    Strings other = {"auto", "day"};
    info.SetTable(other);
    EXPECT_EQ(info.GetDefault(), "auto");
    Strings none;
    info.SetTable(none);
    EXPECT_EQ(info.GetDefault(), "");
    EXPECT_EQ(info.SetDefault(""), -23);
    EXPECT_EQ(info.GetSize(), 0u);
}

TEST(StringSparseInfoTest, NoBoundsButAssignment) {
    boost::intrusive_ptr<StringSparseInfo> info(new StringSparseInfo(1, "m", Permission_t(1)));
    Strings table = {"a", "b"};
    info->SetTable(table);
    info->SetDefault("b");
    EXPECT_FALSE(info->IsEqualBounds(info));
    EXPECT_EQ(info->MergeBounds(info), -26);
    EXPECT_EQ(info->MergeBounds(InfoPtr(new StringArrayInfo(2, "x", Permission_t()))), -36);
    EXPECT_EQ(info->MergeBounds(nullptr), -36);

    StringSparseInfo target(5, "t", Permission_t());
    bool changed = false;
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target.GetTable(), table);
    EXPECT_EQ(target.GetDefault(), "b");
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_FALSE(changed);
    info->SetDefault("a");  // the default alone is a change
    EXPECT_EQ(target.AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    changed = true;
    EXPECT_EQ(target.AssignValue(InfoPtr(new StringInfo(2, "s", Permission_t())), &changed), -26);
    EXPECT_EQ(target.AssignValue(nullptr, &changed), -31);
    EXPECT_TRUE(changed);

    EXPECT_EQ(TextOf(target), "a, b; default=a");
    // The type has no text of its own, and the table is not shown.
    EXPECT_EQ(DumpOf(target), "id: 5\npermission: 0\nname: t\ntype: Invalid\ndefault: a\n");
    ItemPtr const created(target.CreateItem());
    EXPECT_EQ(created->GetValAsString(), "a");
    EXPECT_EQ(created->GetId(), 5u);
}

TEST(StringSparseItemTest, TableActsOnlyThroughSetVal) {
    StringSparseInfo info(1, "m", Permission_t());
    Strings table = {"a", "b"};
    info.SetTable(table);
    StringSparseItem item(1);
    EXPECT_FALSE(item.IsEmpty());  // even for the empty string
    item.SetVal("zz", info);
    EXPECT_EQ(item.GetVal(), "a");
    item.SetVal("b", info);
    EXPECT_EQ(item.GetVal(), "b");
    item.SetVal("zz");
    EXPECT_EQ(item.GetVal(), "zz");
    InfoPtr const held(info.DeepCopy());
    EXPECT_EQ(item.Validate(held), nullptr);
    EXPECT_EQ(item.Validate(nullptr), nullptr);

    bool changed = false;
    boost::intrusive_ptr<StringSparseItem> const source(StringSparseItem::Create(2, "b"));
    EXPECT_EQ(item.AssignArrayValue(source, 9, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(item.IsEqualValue(source));
    EXPECT_EQ(item.AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);
    changed = true;
    EXPECT_EQ(item.AssignValue(ItemPtr(StringItem::Create(2, "x")), &changed), -26);
    EXPECT_EQ(item.AssignValue(nullptr, &changed), -31);
    EXPECT_TRUE(changed);
    EXPECT_FALSE(item.IsEqualValue(ItemPtr(StringItem::Create(1, "b"))));
}

TEST(StringSparseItemTest, NineByteBlock) {
    struct Row {
        std::string value;
        char const* bytes;
        std::string readBack;
    };
    Row const rows[] = {
        {"abc", "61 62 63 00 00 00 00 00 00", "abc"},
        {"", "00 00 00 00 00 00 00 00 00", ""},
        {"abcdefgh", "61 62 63 64 65 66 67 68 00", "abcdefgh"},
        // A longer string cannot overrun the block, which stays readable.
        {"abcdefghijkl", "61 62 63 64 65 66 67 68 00", "abcdefgh"},
        {std::string("a\0b", 3), "61 00 62 00 00 00 00 00 00", "a"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.bytes);
        boost::intrusive_ptr<StringSparseItem> item(StringSparseItem::Create(3, row.value));
        EXPECT_EQ(item->GetSerialDataSize(), 32u);
        Bytes payload;
        ItemPtr const read = RoundTrip(*item, &payload);
        EXPECT_EQ(Hex(payload), row.bytes);
        ASSERT_TRUE(dynamic_cast<StringSparseItem*>(read.get()));
        EXPECT_EQ(read->GetValAsString(), row.readBack);
    }
    EXPECT_EQ(StringSparseItem(3).Serialize(nullptr), -41);
}

TEST(StringSparseItemTest, HostileRecordsKeepTheValue) {
    StringSparseItem item(3);
    item.SetVal("old");
    Bytes const open = {'a', 'b'};
    Bytes const inner = {'a', 0, 'b'};
    for (Bytes const& payload : {Bytes(), open, inner}) {
        SCOPED_TRACE(Hex(payload));
        auto const record = MakeRecord(3, 9, 0, payload);
        EXPECT_EQ(item.Deserialize(&record), -41);
        EXPECT_EQ(item.GetVal(), "old");
    }
    Bytes const word = {'x', 0};
    // Any size ending in a terminator reads, not only the block of nine.
    auto const shortRecord = MakeRecord(3, 9, 0, word);
    EXPECT_EQ(item.Deserialize(&shortRecord), 0);
    EXPECT_EQ(item.GetVal(), "x");
}

TEST(StringSparseItemTest, TextIsOneWord) {
    StringSparseItem item(7);
    std::ostringstream errors;
    std::istringstream in(" first second");
    EXPECT_TRUE(item.SetValFromStream(in, errors, nullptr));
    EXPECT_EQ(item.GetVal(), "first");
    std::istringstream blanks("   ");
    EXPECT_FALSE(item.SetValFromStream(blanks, errors, nullptr));
    EXPECT_EQ(errors.str(), "Error parsing stringSparseItem\n");
    EXPECT_FALSE(item.SetValFromStream(blanks, errors, nullptr));  // now at the end
    EXPECT_EQ(item.GetVal(), "first");
    EXPECT_EQ(DumpOf(item), "id: 7\ntype: Invalid\nvalue: first\n");
}

}  // namespace
