#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include <legacy/oru/oru.h>

#include "serialcodec.h"
#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

template <class T>
Bytes Written(typename T::Element value) {
    boost::intrusive_ptr<NumericItem<T>> item(NumericItem<T>::Create(1, value));
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(item->Serialize(&record), 0);
    return PayloadOf(record);
}

template <class T>
typename T::Element RoundTrip(typename T::Element value) {
    Bytes const payload = Written<T>(value);
    auto const record = MakeRecord(1, 2, static_cast<std::uint8_t>(T::k_numericType), payload);
    NumericItem<T> item(1);
    EXPECT_EQ(item.Deserialize(&record), 0);
    return item.GetVal();
}

TEST(SerialFormatTest, IntegersAreBigEndian) {
    EXPECT_EQ(Hex(Written<U8Traits>(0xAB)), "AB");
    EXPECT_EQ(Hex(Written<S8Traits>(-2)), "FE");
    EXPECT_EQ(Hex(Written<U16Traits>(0x1234)), "12 34");
    EXPECT_EQ(Hex(Written<S16Traits>(-2)), "FF FE");
    EXPECT_EQ(Hex(Written<U32Traits>(0x01020304)), "01 02 03 04");
    EXPECT_EQ(Hex(Written<S32Traits>(-1)), "FF FF FF FF");
    EXPECT_EQ(Hex(Written<U64Traits>(0x0102030405060708ull)), "01 02 03 04 05 06 07 08");
    EXPECT_EQ(Hex(Written<S64Traits>(-2)), "FF FF FF FF FF FF FF FE");
    EXPECT_EQ(RoundTrip<S64Traits>(std::numeric_limits<long long>::min()),
              std::numeric_limits<long long>::min());
    EXPECT_EQ(RoundTrip<U64Traits>(~0ull), ~0ull);
}

TEST(SerialFormatTest, FloatingMappingsKeepTheirExactBytes) {
    EXPECT_EQ(Hex(Written<FloatTraits>(1.0f)), "00 00 80 4B");
    EXPECT_EQ(Hex(Written<FloatTraits>(300.0f)), "00 04 30 4E");
    EXPECT_EQ(Hex(Written<DoubleTraits>(1.0)), "00 00 00 00 00 00 70 43");

    struct Row {
        float written;
        float read;
    } const floats[] = {{1.5f, 1.0f}, {0.75f, 0.0f},    {-1.0f, 0.0f},       {-2.0f, 255.0f},
                        {0.0f, 0.0f}, {255.0f, 255.0f}, {65536.0f, 65536.0f}};
    for (auto const& row : floats) {
        SCOPED_TRACE(row.written);
        EXPECT_EQ(RoundTrip<FloatTraits>(row.written), row.read);
    }
    EXPECT_EQ(RoundTrip<DoubleTraits>(-1.0), 128.0);
    EXPECT_EQ(RoundTrip<DoubleTraits>(123456.0), 123456.0);
    EXPECT_EQ(RoundTrip<DoubleTraits>(0.5), 0.0);
    // NaN and values beyond 64 bits take the processor's out-of-range
    // integer and never trap.
    EXPECT_EQ(RoundTrip<FloatTraits>(NAN), 0.0f);
    EXPECT_EQ(RoundTrip<DoubleTraits>(1e300), 9223372036854775808.0);
    EXPECT_EQ(RoundTrip<DoubleTraits>(-INFINITY), 9223372036854775808.0);
    // The two mappings are lossy once, then stable.
    float const once = RoundTrip<FloatTraits>(123.75f);
    EXPECT_EQ(RoundTrip<FloatTraits>(once), once);
}

TEST(SerialFormatTest, NullRecordsDifferForWritingAndReading) {
    NumericItem<U32Traits> item(1);
    EXPECT_EQ(item.Serialize(nullptr), -41);
    boost::intrusive_ptr<ItemBase> out(new StringItem(9));
    ItemBase* const before = out.get();
    EXPECT_EQ(ItemBase::Deserialize(nullptr, out), -32);
    EXPECT_EQ(out.get(), before);
    StringItem text(1);
    EXPECT_EQ(text.Serialize(nullptr), -41);
}

TEST(SerialFormatTest, APayloadOfAnotherWidthIsRefusedAndKeepsTheValue) {
    boost::intrusive_ptr<NumericItem<U32Traits>> item(NumericItem<U32Traits>::Create(7, 99));
    Bytes const four = {0, 0, 0, 1};
    Bytes const two = {0, 1};
    struct Row {
        char const* what;
        ItemBase::ConstSerialStruct_t record;
        int code;
    } const rows[] = {
        {"short payload", MakeRecord(7, 2, 5, two), -41},
        {"empty payload", MakeRecord(7, 2, 5, Bytes()), -41},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(item->Deserialize(&row.record), row.code);
        EXPECT_EQ(item->GetVal(), 99u);
    }
    auto const good = MakeRecord(7, 2, 5, four);
    EXPECT_EQ(item->Deserialize(&good), 0);
    EXPECT_EQ(item->GetVal(), 1u);
}

TEST(SerialDispatchTest, CreatesTheClassOfTheTypeBytes) {
    Bytes const four = {0, 0, 1, 0};
    boost::intrusive_ptr<ItemBase> item;
    auto const record = MakeRecord(0x420C0005, 2, 5, four);
    ASSERT_EQ(ItemBase::Deserialize(&record, item), 0);
    auto const* numeric = dynamic_cast<NumericItem<U32Traits>*>(item.get());
    ASSERT_NE(numeric, nullptr);
    EXPECT_EQ(numeric->GetId(), 0x420C0005u);
    EXPECT_EQ(numeric->GetVal(), 256u);

    Bytes const text = {'a', 'b', 0};
    auto const textRecord = MakeRecord(3, 6, 0, text);
    ASSERT_EQ(ItemBase::Deserialize(&textRecord, item), 0);
    ASSERT_NE(dynamic_cast<StringItem*>(item.get()), nullptr);
    EXPECT_EQ(item->GetValAsString(), "ab");

    // A family without a numeric row reads its numeric-type byte in its own
    // prologue: the object is made and then refuses the record.
    auto const oddText = MakeRecord(3, 6, 7, text);
    EXPECT_EQ(ItemBase::Deserialize(&oddText, item), -41);
    ASSERT_NE(dynamic_cast<StringItem*>(item.get()), nullptr);
    EXPECT_EQ(item->GetValAsString(), "");
}

TEST(SerialDispatchTest, UnknownTypeBytesCreateNothing) {
    boost::intrusive_ptr<ItemBase> item(StringItem::Create(1, "kept"));
    ItemBase* const before = item.get();
    Bytes const payload = {0, 0, 0, 0, 0, 0, 0, 0};
    std::uint8_t const numericRows[][2] = {{2, 0}, {2, 11}, {2, 255}};
    for (auto const& row : numericRows) {
        auto const record = MakeRecord(1, row[0], row[1], payload);
        EXPECT_EQ(ItemBase::Deserialize(&record, item), -41);
        EXPECT_EQ(item.get(), before);
    }
    // Types with no class, and those whose class nobody may read this way.
    for (unsigned type : {0u, 10u, 127u, 132u, 133u, 135u, 138u, 139u, 142u, 252u, 255u}) {
        SCOPED_TRACE(type);
        auto const record = MakeRecord(1, static_cast<std::uint8_t>(type), 0, payload);
        EXPECT_EQ(ItemBase::Deserialize(&record, item), -41);
        EXPECT_EQ(item.get(), before);
    }
    // A wrong size fails after creation: the new object stays with its default.
    auto const shortRecord = MakeRecord(4, 2, 5, Bytes{1, 2});
    EXPECT_EQ(ItemBase::Deserialize(&shortRecord, item), -41);
    ASSERT_NE(dynamic_cast<NumericItem<U32Traits>*>(item.get()), nullptr);
    EXPECT_EQ(item->GetId(), 4u);
}

TEST(SerialStructTest, ClearLeavesThePayloadToTheCaller) {
    boost::intrusive_ptr<NumericItem<U16Traits>> item(NumericItem<U16Traits>::Create(1, 5));
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(item->Serialize(&record), 0);
    unsigned char* const payload = record.GetData();
    ItemBase::SerialStruct_t other;
    other = record;  // both point at one payload now
    EXPECT_EQ(other.GetData(), payload);
    EXPECT_EQ(other.GetId(), 1u);
    record.Clear();
    EXPECT_EQ(record.GetData(), nullptr);
    EXPECT_EQ(record.GetDataSize(), 0u);
    EXPECT_EQ(record.type, 0);
    // other releases the payload; record owns nothing any more.

    ItemBase::SerialStruct_t empty;
    EXPECT_EQ(empty.GetId(), 0u);
    EXPECT_EQ(empty.GetData(), nullptr);
}

TEST(SerialCodecTest, ReaderNeverPassesTheEnd) {
    unsigned char const bytes[] = {1, 2, 3, 4, 5};
    Serial::Reader reader(bytes, 3);
    EXPECT_EQ(reader.BigEndian<std::uint16_t>(), 0x0102);
    EXPECT_EQ(reader.Remaining(), 1u);
    EXPECT_EQ(reader.BigEndian<std::uint16_t>(), 0);
    EXPECT_TRUE(reader.Failed());
    EXPECT_EQ(reader.Take(0), nullptr);  // stays failed
    Serial::Reader nothing(nullptr, 100);
    EXPECT_EQ(nothing.Remaining(), 0u);
    EXPECT_EQ(nothing.Byte(), 0);
    EXPECT_TRUE(nothing.Failed());
}

}  // namespace
