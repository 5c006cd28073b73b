#include <legacy/oru/recordlayout.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;
using Bytes = std::vector<unsigned char>;
namespace Layout = RecordLayout;

Bytes Flat(ItemBase const& item) {
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(item.Serialize(&record), 0);
    Layout::Header header;
    header.id = record.GetId();
    header.dataSize = record.GetDataSize();
    header.type = record.type;
    header.numericType = record.numericType;
    Bytes flat;
    Layout::AppendHeader(flat, header);
    flat.insert(flat.end(), record.GetData(), record.GetData() + header.dataSize);
    return flat;
}

// The layout the model writes is the one parsed here: a composite's record,
// walked child by child, reads back through the model.
TEST(RecordLayoutTest, WalksTheChildrenTheModelWrites) {
    boost::intrusive_ptr<CompositeItem> const composite(new CompositeItem(0x42000001));
    boost::intrusive_ptr<StringItem> const text(new StringItem(7));
    text->SetVal("pcm");
    composite->AddItem(boost::intrusive_ptr<ItemBase>(new NumericItem<U16Traits>(5)));
    composite->AddItem(text);
    Bytes const flat = Flat(*composite);

    Layout::Flat record;
    ASSERT_EQ(Layout::ParseRecord(flat.data(), flat.size(), 0, record), Layout::Fault::None);
    EXPECT_EQ(record.header.id, 0x42000001u);
    EXPECT_EQ(record.header.type, static_cast<std::uint8_t>(OruType_t::Composite));
    EXPECT_EQ(Layout::FlatSize(record.header.dataSize), flat.size());

    Layout::ChildWalk walk(record.payload, record.header.dataSize);
    EXPECT_EQ(walk.Count(), 2u);
    std::vector<std::string> seen;
    for (Layout::Flat child; walk.Next(child);) {
        ItemBase::ConstSerialStruct_t view;
        view.SetHeader(child.header.id, child.header.dataSize, child.header.type,
                       child.header.numericType);
        view.data = child.payload;
        boost::intrusive_ptr<ItemBase> item;
        ASSERT_EQ(ItemBase::Deserialize(&view, item), 0);
        seen.push_back(std::to_string(child.offset) + " " + item->GetValAsString());
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"2 0", "14 pcm"}));
    EXPECT_TRUE(walk.Complete());
}

// Cut or padded payloads stop the walk at the child at fault and never read
// past the size given.
TEST(RecordLayoutTest, RefusesWhatDoesNotLieWhole) {
    // Count 2; one U8 child of one payload byte.
    Bytes const one = {0, 2, 0, 0, 0, 1, 0, 0, 0, 1, 2, 1, 7};
    struct Row {
        char const* name;
        Bytes payload;
        std::size_t given;
        Layout::Fault fault;
        bool complete;
    };
    Bytes padded = one;
    padded[1] = 1;
    padded.push_back(0);
    Bytes claims = one;
    claims[1] = 1;
    claims[9] = 2;  // the child claims two bytes, one is there
    Row const rows[] = {
        {"no count", {0}, 0, Layout::Fault::TruncatedHeader, false},
        {"second child missing", one, 1, Layout::Fault::TruncatedHeader, false},
        {"bytes after the last child", padded, 1, Layout::Fault::None, false},
        {"child cut short", claims, 0, Layout::Fault::TruncatedPayload, false},
        {"empty composite", {0, 0}, 0, Layout::Fault::None, true},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        // An exact-size copy, so that the sanitizers see a stray read.
        Bytes const payload(row.payload);
        Layout::ChildWalk walk(payload.data(), payload.size());
        std::size_t given = 0;
        for (Layout::Flat child; walk.Next(child);) {
            ++given;
        }
        EXPECT_EQ(given, row.given);
        EXPECT_EQ(walk.Read(), row.given);
        EXPECT_EQ(walk.GetFault(), row.fault);
        EXPECT_EQ(walk.Complete(), row.complete);
    }

    Bytes const header = {0x42, 0x0C, 0, 5, 0, 0, 0, 4, 2, 5, 0, 0, 0};
    Layout::Flat record;
    EXPECT_EQ(Layout::ParseRecord(header.data(), 9, 0, record), Layout::Fault::TruncatedHeader);
    EXPECT_EQ(Layout::ParseRecord(header.data(), header.size(), 0, record),
              Layout::Fault::TruncatedPayload);
    EXPECT_EQ(Layout::ParseRecord(header.data(), header.size(), 14, record),
              Layout::Fault::TruncatedHeader);
    Layout::Header parsed;
    ASSERT_TRUE(Layout::ParseHeader(header.data(), header.size(), parsed));
    EXPECT_EQ(parsed.id, 0x420C0005u);
    EXPECT_EQ(parsed.dataSize, 4u);
    Bytes written;
    Layout::AppendHeader(written, parsed);
    EXPECT_EQ(written, Bytes(header.begin(), header.begin() + 10));
    Layout::AppendChildCount(written, 0x1234);
    EXPECT_EQ(written.back(), 0x34);
    EXPECT_EQ(written[written.size() - 2], 0x12);
}

}  // namespace
