#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

#include <legacy/oru/oru.h>

#include "alloc_count.h"
#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase>;

// An Item that cannot be written, standing in for the families without a
// serial form.
class Unwritable : public ItemBase {
public:
    Unwritable() : ItemBase(9) {}
    ItemBase* DeepCopy(unsigned int) const override { return new Unwritable; }
    OruType_t GetType() const override { return OruType_t::Collection; }
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const&) const override { return false; }
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const&, unsigned int,
                         bool*) override {
        return -26;
    }
    unsigned int GetSerialDataSize() const override { return 0; }
    int Serialize(SerialStruct_t*) const override { return -26; }
    int Deserialize(ConstSerialStruct_t const*) override { return -26; }
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const&) const override {
        return nullptr;
    }
    bool SetValFromStream(std::istream&, std::ostream&,
                          boost::intrusive_ptr<InfoBase const> const&) override {
        return false;
    }
    void DumpVal(std::ostream&) const override {}
    std::ostream& operator<<(std::ostream& out) const override { return out; }
};

// numeric U16 0x1234, string "ab", bool true, enum -2, composite { U8 7 }.
boost::intrusive_ptr<CompositeItem> MakeNested() {
    boost::intrusive_ptr<CompositeItem> inner(new CompositeItem(5));
    inner->AddItem(ItemPtr(NumericItem<U8Traits>::Create(6, 7)));
    boost::intrusive_ptr<CompositeItem> outer(new CompositeItem(0x42000001));
    outer->AddItem(ItemPtr(NumericItem<U16Traits>::Create(1, 0x1234)));
    outer->AddItem(ItemPtr(StringItem::Create(2, "ab")));
    outer->AddItem(ItemPtr(BoolItem::Create(3, true)));
    outer->AddItem(ItemPtr(EnumItem::Create(4, -2)));
    outer->AddItem(inner);
    return outer;
}

// A composite record holding one composite record, depth levels in all.
Bytes NestedPayload(unsigned int depth) {
    Bytes payload = {0x00, 0x00};
    for (unsigned int level = 1; level < depth; ++level) {
        Bytes outer = {0x00, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0xFD, 0x00};
        auto const size = static_cast<std::uint32_t>(payload.size());
        outer[6] = static_cast<unsigned char>(size >> 24);
        outer[7] = static_cast<unsigned char>(size >> 16);
        outer[8] = static_cast<unsigned char>(size >> 8);
        outer[9] = static_cast<unsigned char>(size);
        outer.insert(outer.end(), payload.begin(), payload.end());
        payload.swap(outer);
    }
    return payload;
}

TEST(CompositeItemTest, NestedChildrenWriteTheDocumentedBytesAndReadBackEqual) {
    auto const item = MakeNested();
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    EXPECT_EQ(record.GetId(), 0x42000001u);
    EXPECT_EQ(record.type, 0xFD);
    EXPECT_EQ(record.numericType, 0);
    EXPECT_EQ(record.GetDataSize(), 75u);
    EXPECT_EQ(item->GetSerialDataSize(), 75u);
    EXPECT_EQ(Hex(PayloadOf(record)),
              "00 05 "
              "00 00 00 01 00 00 00 02 02 03 12 34 "
              "00 00 00 02 00 00 00 03 06 00 61 62 00 "
              "00 00 00 03 00 00 00 01 01 00 01 "
              "00 00 00 04 00 00 00 04 05 00 FF FF FF FE "
              "00 00 00 05 00 00 00 0D FD 00 00 01 00 00 00 06 00 00 00 01 02 01 07");

    ItemBase::ConstSerialStruct_t const view(record);
    ItemPtr back;
    ASSERT_EQ(ItemBase::Deserialize(&view, back), 0);
    EXPECT_TRUE(back->IsEqualValue(item));
    EXPECT_EQ(back->GetValAsString(), "(4660, ab, True, -2, (7))");
    auto const* const composite = dynamic_cast<CompositeItem const*>(back.get());
    ASSERT_NE(composite, nullptr);
    EXPECT_EQ(composite->GetItem(4)->GetId(), 5u);

    // One byte changed deep inside is a different value.
    Bytes changed = PayloadOf(record);
    changed.back() = 8;
    auto const other = MakeRecord(0x42000001, 0xFD, 0, changed);
    ASSERT_EQ(ItemBase::Deserialize(&other, back), 0);
    EXPECT_FALSE(back->IsEqualValue(item));

    // An empty composite is the count alone.
    CompositeItem empty(3);
    ItemBase::SerialStruct_t emptyRecord;
    ASSERT_EQ(empty.Serialize(&emptyRecord), 0);
    EXPECT_EQ(Hex(PayloadOf(emptyRecord)), "00 00");
    ItemBase::ConstSerialStruct_t const emptyView(emptyRecord);
    EXPECT_EQ(empty.Deserialize(&emptyView), 0);
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_EQ(empty.Serialize(nullptr), -41);
}

TEST(CompositeItemTest, HostileRecordsAreRefusedInsideThePayload) {
    struct Row {
        char const* name;
        Bytes payload;
        int code;
        std::size_t kept;  // children held afterwards
    };
    Row const rows[] = {
        {"payload under two bytes", {0x00}, -41, 1},
        {"count without records", {0x00, 0x01}, -1, 1},
        {"header cut short", {0x00, 0x01, 0x00, 0x00, 0x00, 0x07, 0x00}, -1, 1},
        {"child claims more than remains",
         {0x00, 0x01, 0, 0, 0, 1, 0x00, 0x00, 0x00, 0x64, 0x01, 0x00, 0x01},
         -1,
         1},
        {"count above the records present",
         {0xFF, 0xFF, 0, 0, 0, 1, 0, 0, 0, 1, 0x01, 0x00, 0x01},
         -1,
         2},
        {"child of no family", {0x00, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0x00, 0x00}, -1, 1},
        {"child without a dispatch row",
         {0x00, 0x01, 0, 0, 0, 1, 0, 0, 0, 1, 0x87, 0x00, 0x41},
         -1,
         1},
        {"child refuses its own payload",
         {0x00, 0x01, 0, 0, 0, 1, 0, 0, 0, 2, 0x01, 0x00, 0x01, 0x01},
         -1,
         1},
        {"inner composite under two bytes",
         {0x00, 0x01, 0, 0, 0, 1, 0, 0, 0, 1, 0xFD, 0x00, 0x00},
         -1,
         1},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        boost::intrusive_ptr<CompositeItem> item(new CompositeItem(1));
        item->AddItem(ItemPtr(BoolItem::Create(8, true)));
        auto const record = MakeRecord(1, 0xFD, 0, row.payload);
        EXPECT_EQ(item->Deserialize(&record), row.code);
        // The children held before stay, and so do those read before the
        // failure: nothing is rolled back.
        EXPECT_EQ(item->GetSize(), row.kept);
    }

    // A well-formed record appends to the children already held.
    boost::intrusive_ptr<CompositeItem> item(new CompositeItem(1));
    item->AddItem(ItemPtr(BoolItem::Create(8, true)));
    Bytes const one = {0x00, 0x01, 0, 0, 0, 2, 0, 0, 0, 1, 0x01, 0x00, 0x00};
    auto const record = MakeRecord(1, 0xFD, 0, one);
    EXPECT_EQ(item->Deserialize(&record), 0);
    EXPECT_EQ(item->GetValAsString(), "(True, False)");
}

TEST(CompositeItemTest, RecordsAreWalkedByTheChildsOwnSize) {
    // The string's size field says 13 and its payload ends in 0, but the
    // string read is "a" (two bytes with its terminator), so the next record
    // begins inside those 13 bytes; by the size field there would be none.
    Bytes const payload = {0x00, 0x02,                                             // two records
                           0,    0,    0, 1, 0, 0, 0, 13, 0x06, 0x00, 0x61, 0x00,  // "a" ...
                           0,    0,    0, 2, 0, 0, 0, 1,  0x01, 0x00, 0x00};       // a flag
    CompositeItem item(1);
    auto const record = MakeRecord(1, 0xFD, 0, payload);
    ASSERT_EQ(item.Deserialize(&record), 0);
    EXPECT_EQ(item.GetValAsString(), "(a, False)");

    // A string table writes 9 payload bytes but says 32 of itself: the writer
    // packs the next child behind the 9, the reader looks for it behind the
    // 32 and finds the zeros that pad the record, so such a record does not
    // read back. Last in line, the table reads back.
    CompositeItem tableFirst(7);
    tableFirst.AddItem(ItemPtr(StringSparseItem::Create(2, "on")));
    tableFirst.AddItem(ItemPtr(BoolItem::Create(3, true)));
    ItemBase::SerialStruct_t written;
    ASSERT_EQ(tableFirst.Serialize(&written), 0);
    ASSERT_EQ(written.GetDataSize(), 2u + 10 + 32 + 10 + 1);
    Bytes const bytes(written.GetData(), written.GetData() + written.GetDataSize());
    EXPECT_EQ(bytes[2 + 10 + 9 + 8], 0x01);  // the flag's type byte, behind the 9
    EXPECT_EQ(Bytes(bytes.begin() + 32, bytes.end()), Bytes(23, 0));
    ItemBase::ConstSerialStruct_t const view(written);
    CompositeItem readBack(7);
    EXPECT_EQ(readBack.Deserialize(&view), -1);

    CompositeItem tableLast(7);
    tableLast.AddItem(ItemPtr(BoolItem::Create(3, true)));
    tableLast.AddItem(ItemPtr(StringSparseItem::Create(2, "on")));
    ItemBase::SerialStruct_t last;
    ASSERT_EQ(tableLast.Serialize(&last), 0);
    ItemBase::ConstSerialStruct_t const lastView(last);
    CompositeItem lastBack(7);
    ASSERT_EQ(lastBack.Deserialize(&lastView), 0);
    EXPECT_TRUE(lastBack.IsEqualValue(ItemPtr(tableLast.DeepCopy())));
}

TEST(CompositeItemTest, NestingIsBoundedByDepth) {
    for (unsigned int depth : {1u, 2u, CompositeItem::k_maxDepth}) {
        SCOPED_TRACE(depth);
        Bytes const payload = NestedPayload(depth);
        auto const record = MakeRecord(0, 0xFD, 0, payload);
        ItemPtr item;
        ASSERT_EQ(ItemBase::Deserialize(&record, item), 0);
        ItemBase::SerialStruct_t again;
        ASSERT_EQ(item->Serialize(&again), 0);
        EXPECT_EQ(PayloadOf(again), payload);
    }
    Bytes const tooDeep = NestedPayload(CompositeItem::k_maxDepth + 1);
    auto const record = MakeRecord(0, 0xFD, 0, tooDeep);
    ItemPtr item;
    EXPECT_EQ(ItemBase::Deserialize(&record, item), -1);
    // The limit is per call: a later shallow record still reads.
    Bytes const shallow = NestedPayload(3);
    auto const next = MakeRecord(0, 0xFD, 0, shallow);
    EXPECT_EQ(ItemBase::Deserialize(&next, item), 0);
}

TEST(CompositeItemTest, ArbitraryBytesNeverReadOutside) {
    // Mutations of a real record: under the sanitizers any read past the
    // payload fails this test.
    auto const item = MakeNested();
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    Bytes const original = PayloadOf(record);
    std::mt19937 random(20261122);
    for (int round = 0; round < 3000; ++round) {
        Bytes bytes = original;
        bytes.resize(random() % (original.size() + 1));
        for (int flips = random() % 4; flips >= 0 && !bytes.empty(); --flips) {
            bytes[random() % bytes.size()] = static_cast<unsigned char>(random());
        }
        // Exactly sized copy so that the sanitizer sees the end.
        std::unique_ptr<unsigned char[]> exact(new unsigned char[bytes.size() + 1]);
        std::copy(bytes.begin(), bytes.end(), exact.get());
        ItemBase::ConstSerialStruct_t view;
        view.SetHeader(0x42000001, static_cast<std::uint32_t>(bytes.size()), 0xFD, 0);
        view.data = exact.get();
        ItemPtr back;
        int const code = ItemBase::Deserialize(&view, back);
        EXPECT_TRUE(code == 0 || code == -1 || code == -41) << code;
    }
}

TEST(CompositeItemTest, AChildWithoutASerialFormLeavesTenZeroBytes) {
    CompositeItem item(1);
    item.AddItem(ItemPtr(new Unwritable));
    item.AddItem(ItemPtr(BoolItem::Create(2, true)));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item.Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)),
              "00 02 00 00 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 01 01 00 01");
    ItemBase::ConstSerialStruct_t const view(record);
    ItemPtr back;
    EXPECT_EQ(ItemBase::Deserialize(&view, back), -1);
}

// Children write straight into the composite's payload: one allocation for
// the whole record, and the bytes each child writes on its own, in order.
TEST(CompositeItemTest, SerializeAllocatesOncePerRecord) {
    boost::intrusive_ptr<CompositeItem> const outer = MakeNested();
    ItemPtr const shared(NumericItem<DoubleTraits>::Create(8, 1000.0));
    outer->AddItem(ItemPtr(new Unwritable));
    outer->AddItem(shared);
    outer->AddItem(shared);
    outer->AddItem(ItemPtr(StringItem::Create(10, "a text longer than sixteen bytes")));

    std::vector<CompositeItem::ConstItemPtr> children;
    outer->GetItems(children);
    std::vector<unsigned char> expected = {0x00, static_cast<unsigned char>(children.size())};
    for (CompositeItem::ConstItemPtr const& child : children) {
        ItemBase::SerialStruct_t own;
        static_cast<void>(child->Serialize(&own));
        unsigned char header[10] = {};
        std::uint32_t const id = own.id;
        std::uint32_t const size = own.dataSize;
        std::memcpy(header, &id, 4);
        std::memcpy(header + 4, &size, 4);
        header[8] = own.type;
        header[9] = own.numericType;
        expected.insert(expected.end(), header, header + 10);
        unsigned char const* const data = own.GetData();
        if (data) {
            expected.insert(expected.end(), data, data + own.GetDataSize());
        }
    }

    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        ItemBase::SerialStruct_t record;
        OruTest::AllocationScope const allocations;
        ASSERT_EQ(outer->Serialize(&record), 0);
        EXPECT_EQ(allocations.Count(), 1);
        ASSERT_EQ(record.GetDataSize(), expected.size());
        EXPECT_EQ(Hex(PayloadOf(record)), Hex(expected));
    }

    // A child written on its own afterwards allocates its own payload again.
    ItemBase::SerialStruct_t alone;
    OruTest::AllocationScope const allocations;
    ASSERT_EQ(shared->Serialize(&alone), 0);
    EXPECT_EQ(allocations.Count(), 1);
}

TEST(CompositeItemTest, CopiesShareChildrenAndAssignmentDeepCopies) {
    auto const source = MakeNested();
    CompositeItem shared(*source);
    EXPECT_EQ(shared.GetItem(0), source->GetItem(0));

    boost::intrusive_ptr<CompositeItem> deep(source->DeepCopy());
    EXPECT_NE(deep->GetItem(0), source->GetItem(0));
    EXPECT_TRUE(deep->IsEqualValue(source));
    boost::intrusive_ptr<CompositeItem const> renamed(
        static_cast<CompositeItem*>(static_cast<ItemBase const&>(*source).DeepCopy(77)));
    EXPECT_EQ(renamed->GetId(), 77u);
    EXPECT_EQ(renamed->GetItem(1)->GetId(), 2u);

    CompositeItem target(3);
    target = *source;
    EXPECT_EQ(target.GetId(), 3u);
    EXPECT_EQ(target.GetItem(4), source->GetItem(4));

    bool changed = false;
    boost::intrusive_ptr<CompositeItem> assigned(new CompositeItem(4));
    ASSERT_EQ(assigned->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_NE(assigned->GetItem(0), source->GetItem(0));
    EXPECT_TRUE(assigned->IsEqualValue(source));

    // A refused source still clears the flag; a null one leaves it alone.
    changed = true;
    EXPECT_EQ(assigned->AssignValue(ItemPtr(BoolItem::Create(1, true)), &changed), -26);
    EXPECT_FALSE(changed);
    EXPECT_EQ(assigned->GetSize(), 5u);
    changed = true;
    EXPECT_EQ(assigned->AssignValue(nullptr, &changed), -31);
    EXPECT_TRUE(changed);

    // Assigning a composite to itself empties it, and still succeeds.
    changed = false;
    EXPECT_EQ(assigned->AssignArrayValue(assigned, 3, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(assigned->IsEmpty());
}

TEST(CompositeItemTest, ChildListOperations) {
    CompositeItem item(1);
    std::size_t index = 99;
    EXPECT_FALSE(item.AddItem(nullptr, index));
    EXPECT_EQ(index, 99u);
    EXPECT_TRUE(item.AddItem(ItemPtr(BoolItem::Create(1, true)), index));
    EXPECT_EQ(index, 0u);
    EXPECT_FALSE(item.SetItem(1, ItemPtr(BoolItem::Create(2, true))));
    EXPECT_FALSE(item.SetItem(0, nullptr));
    EXPECT_FALSE(item.IsPresent(1));
    EXPECT_EQ(item.GetItem(1), nullptr);

    ItemPtr const a(EnumItem::Create(1, 1)), c(EnumItem::Create(3, 3));
    item.SetItems({a, nullptr, c});
    ASSERT_EQ(item.GetSize(), 2u);
    EXPECT_EQ(item.GetItem(1), c);

    std::vector<CompositeItem::ConstItemPtr> appended = {CompositeItem::ConstItemPtr(c)};
    static_cast<CompositeItem const&>(item).GetItems(appended);
    EXPECT_EQ(appended.size(), 3u);
    std::vector<ItemPtr> replaced = {c, c, c};
    item.GetItems(replaced);
    EXPECT_EQ(replaced.size(), 2u);
}

TEST(CompositeItemTest, ValidateLooksAtShapeAndTypesOnly) {
    boost::intrusive_ptr<CompositeInfo> info(new CompositeInfo(1, "Audio/Output", Permission_t()));
    boost::intrusive_ptr<CompositeItem> item(new CompositeItem(1));
    EXPECT_EQ(item->Validate(info), nullptr);
    item->AddItem(ItemPtr(NumericItem<U8Traits>::Create(2, 200)));
    auto const sizeFailure = item->Validate(info);
    ASSERT_NE(sizeFailure, nullptr);
    EXPECT_EQ(static_cast<int>(sizeFailure->GetSeverityLevel()), 4);
    EXPECT_NE(sizeFailure->GetItem(), nullptr);
    EXPECT_EQ(sizeFailure->GetInfo(), nullptr);

    // A value outside the child's bounds goes unnoticed.
    boost::intrusive_ptr<NumericInfo<U8Traits>> small(
        new NumericInfo<U8Traits>(2, "Level", Permission_t()));
    small->SetMax(10);
    info->AddInfo(small);
    EXPECT_EQ(item->Validate(info), nullptr);

    // Only position and type count: same types in swapped order pass.
    info->AddInfo(InfoPtr(new StringInfo(3, "a", Permission_t())));
    info->AddInfo(InfoPtr(new StringInfo(4, "b", Permission_t())));
    item->AddItem(ItemPtr(StringItem::Create(4, "b")));
    item->AddItem(ItemPtr(StringItem::Create(3, "a")));
    EXPECT_EQ(item->Validate(info), nullptr);
    info->SetInfo(2, InfoPtr(new NumericInfo<S8Traits>(4, "b", Permission_t())));
    EXPECT_NE(item->Validate(info), nullptr);

    EXPECT_NE(item->Validate(nullptr), nullptr);
    EXPECT_NE(item->Validate(small), nullptr);
    EXPECT_NE(item->ValidateMin(info), nullptr);

    // Fewer children than the Info describes fail as surely as more.
    info->SetInfo(2, InfoPtr(new StringInfo(4, "b", Permission_t())));
    EXPECT_EQ(item->Validate(info), nullptr);
    info->AddInfo(InfoPtr(new StringInfo(5, "c", Permission_t())));
    auto const tooFew = item->Validate(info);
    ASSERT_NE(tooFew, nullptr);
    EXPECT_EQ(tooFew->GetItem()->GetValAsString(), item->GetValAsString());
}

TEST(CompositeItemTest, TextFormsAndReadingFromText) {
    CompositeItem empty(1);
    EXPECT_EQ(empty.GetValAsString(), "()");
    auto const item = MakeNested();
    EXPECT_EQ(DumpOf(*item), "id: 1107296257\ntype: Composite\nvalue: (5 items)");

    boost::intrusive_ptr<CompositeInfo> info(new CompositeInfo(1, "c", Permission_t()));
    boost::intrusive_ptr<NumericInfo<U16Traits>> number(
        new NumericInfo<U16Traits>(2, "n", Permission_t()));
    number->SetDefault(9);
    info->AddInfo(number);
    boost::intrusive_ptr<EnumInfo> mode(new EnumInfo(3, "e", Permission_t(), false));
    info->AddInfo(mode);
    boost::intrusive_ptr<CompositeItem> target(new CompositeItem(1));

    std::istringstream good("12 3");
    std::ostringstream said;
    ASSERT_TRUE(target->SetValFromStream(good, said, info));
    EXPECT_EQ(said.str(), "CompositeItem with 2 items\n");
    EXPECT_EQ(target->GetValAsString(), "(12, 3)");
    EXPECT_EQ(target->GetItem(1)->GetId(), 3u);

    // A failing child ends the read; what was read so far stays.
    std::istringstream bad("12 x");
    said.str("");
    EXPECT_FALSE(target->SetValFromStream(bad, said, info));
    EXPECT_EQ(said.str(), "CompositeItem with 2 items\nError parsing enumItem\n");
    EXPECT_EQ(target->GetValAsString(), "(12)");

    said.str("");
    EXPECT_FALSE(target->SetValFromStream(good, said, number));
    EXPECT_EQ(said.str(), "Invalid use of CompositeItem::SetValFromStream\n");
    EXPECT_EQ(target->GetSize(), 1u);

    // A nested composite gets no Info and refuses.
    boost::intrusive_ptr<CompositeInfo> outer(new CompositeInfo(4, "o", Permission_t()));
    outer->AddInfo(info);
    std::istringstream nested("1 2");
    said.str("");
    EXPECT_FALSE(target->SetValFromStream(nested, said, outer));
    EXPECT_EQ(said.str(),
              "CompositeItem with 1 items\nInvalid use of CompositeItem::SetValFromStream\n");
}

TEST(CompositeInfoTest, ChildrenCopiesBoundsAndText) {
    boost::intrusive_ptr<CompositeInfo> info(new CompositeInfo(1, "c", Permission_t(5)));
    boost::intrusive_ptr<NumericInfo<U8Traits>> level(
        new NumericInfo<U8Traits>(7, "Level", Permission_t()));
    level->SetMax(10);
    level->SetDefault(4);
    InfoPtr const text(new StringInfo(8, "Text", Permission_t()));
    info->SetInfos({level, nullptr, text});
    ASSERT_EQ(info->GetSize(), 2u);
    EXPECT_EQ(info->GetInfo(1), text);
    EXPECT_EQ(info->GetInfo(2), nullptr);
    EXPECT_EQ(TextOf(*info), "(0 <= 4 <= 10, \"\"; max length=256)");

    // A new item has the info's shape, ids and defaults.
    ItemPtr const created(info->CreateItem());
    EXPECT_EQ(created->GetId(), 1u);
    EXPECT_EQ(created->GetValAsString(), "(4, )");
    EXPECT_EQ(static_cast<CompositeItem&>(*created).GetItem(0)->GetId(), 7u);
    EXPECT_EQ(created->Validate(info), nullptr);

    // Copies share, deep copies do not, and keep the children's identities.
    CompositeInfo shared(*info);
    EXPECT_EQ(shared.GetInfo(0), level);
    boost::intrusive_ptr<CompositeInfo> deep(info->DeepCopy(2));
    EXPECT_EQ(deep->GetId(), 2u);
    EXPECT_EQ(deep->GetName(), "c");
    EXPECT_NE(deep->GetInfo(0), level);
    EXPECT_EQ(deep->GetInfo(0)->GetId(), 7u);
    EXPECT_TRUE(deep->IsEqualBounds(info));
    level->SetMax(20);
    EXPECT_FALSE(deep->IsEqualBounds(info));
    EXPECT_FALSE(deep->IsEqualBounds(level));
    EXPECT_EQ(deep->MergeBounds(nullptr), -26);
    EXPECT_EQ(deep->MergeBounds(info), -26);

    // AssignValue shares the other's children and always reports a change.
    bool changed = false;
    boost::intrusive_ptr<CompositeInfo> target(new CompositeInfo(3, "t", Permission_t()));
    ASSERT_EQ(target->AssignValue(info, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetInfo(1), text);
    EXPECT_EQ(target->GetName(), "t");
    changed = false;
    EXPECT_EQ(target->AssignValue(target, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetSize(), 2u);
    changed = false;
    EXPECT_EQ(target->AssignValue(level, &changed), -26);
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
    EXPECT_FALSE(changed);

    std::vector<CompositeInfo::ConstInfoPtr> appended = {level};
    static_cast<CompositeInfo const&>(*info).GetInfos(appended);
    EXPECT_EQ(appended.size(), 3u);
    std::size_t index = 5;
    EXPECT_FALSE(info->AddInfo(nullptr, index));
    EXPECT_EQ(index, 5u);
    EXPECT_FALSE(info->SetInfo(2, text));

    EXPECT_EQ(DumpOf(*info), "id: 1\npermission: 5\nname: c\ntype: Composite\n");
}

}  // namespace
