// How much memory a record can make its receiver hold: for every family, a
// record that is as cheap on the wire as the family allows is decoded while
// a counting allocator tracks the peak of live heap bytes. The bounds are
// the ones documented with ItemBase::Deserialize, so that a caller can cap
// record sizes at its transport.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "alloc_count.h"

namespace {

using namespace Legacy::Oru;
using ItemPtr = boost::intrusive_ptr<ItemBase>;

// The peak of heap bytes held while the record of item is decoded, over
// the record's size (header and payload).
double PeakPerRecordByte(ItemBase const& item) {
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(item.Serialize(&record), 0);
    ItemBase::ConstSerialStruct_t const view(record);
    std::size_t const base = OruTest::LiveBytes();
    OruTest::ResetPeakBytes();
    ItemPtr read;
    EXPECT_EQ(ItemBase::Deserialize(&view, read), 0);
    std::size_t const peak = OruTest::PeakBytes() - base;
    EXPECT_TRUE(read && read->IsEqualValue(ItemPtr(const_cast<ItemBase*>(&item))));
    return static_cast<double>(peak) / (10.0 + record.GetDataSize());
}

struct Case {
    char const* family;
    double bound;                              // the documented most heap bytes per record byte
    std::function<ItemPtr(std::size_t)> make;  // a value of about n record bytes
};

TEST(RecordCostTest, HeapPerRecordByteStaysWithinTheDocumentedBound) {
    std::size_t const n = 1 << 20;
    Case const cases[] = {
        {"String", 1.1,
         [](std::size_t bytes) { return ItemPtr(StringItem::Create(1, std::string(bytes, 'x'))); }},
        {"NumericArray:U8", 1.1,
         [](std::size_t bytes) {
             boost::intrusive_ptr<NumericArrayItem<U8Traits>> item(
                 new NumericArrayItem<U8Traits>(1));
             item->SetVal(std::vector<unsigned char>(bytes, 7));
             return item;
         }},
        {"BoolArray", 1.1,
         [](std::size_t bytes) {
             boost::intrusive_ptr<BoolArrayItem> item(new BoolArrayItem(1));
             item->SetVal(std::vector<bool>(bytes * 8, true));
             return item;
         }},
        // One byte on the wire, a whole std::string in the Item; the list read
        // is built apart, then appended.
        {"StringArray of empty strings", 96,
         [](std::size_t bytes) {
             return ItemPtr(StringArrayItem::Create(1, std::vector<std::string>(bytes, "")));
         }},
        {"RectArray:U16", 48,
         [](std::size_t bytes) {
             boost::intrusive_ptr<RectArrayItem<U16Traits>> item(new RectArrayItem<U16Traits>(1));
             item->SetVal(RectArrayItem<U16Traits>::Rects(bytes / 8));
             return item;
         }},
        {"AppEndpointArray of empty endpoints", 32,
         [](std::size_t bytes) {
             boost::intrusive_ptr<AppEndpointArrayItem> item(new AppEndpointArrayItem(1));
             item->SetVal(AppEndpointArrayItem::Value_t(bytes / 7));
             return item;
         }},
        {"Composite of flags", 16,
         [](std::size_t bytes) {
             boost::intrusive_ptr<CompositeItem> item(new CompositeItem(1));
             for (std::size_t i = 0; i < std::min<std::size_t>(bytes / 11, 65535); ++i) {
                 item->AddItem(ItemPtr(BoolItem::Create(0, true)));
             }
             return item;
         }},
        {"Composite of empty composites", 16,
         [](std::size_t bytes) {
             boost::intrusive_ptr<CompositeItem> item(new CompositeItem(1));
             for (std::size_t i = 0; i < std::min<std::size_t>(bytes / 12, 65535); ++i) {
                 item->AddItem(ItemPtr(new CompositeItem(0)));
             }
             return item;
         }},
    };
    double worst = 0;
    for (Case const& row : cases) {
        SCOPED_TRACE(row.family);
        ItemPtr const item = row.make(n);
        double const ratio = PeakPerRecordByte(*item);
        EXPECT_LE(ratio, row.bound);
        worst = std::max(worst, ratio);
        std::printf("%-36s %6.1f heap bytes per record byte\n", row.family, ratio);
    }
    // The family that costs most is the one the documentation names.
    EXPECT_GT(worst, 48);
}

}  // namespace
