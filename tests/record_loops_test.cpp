// The loops of the serial form that run without a check per element: numeric
// arrays of every integer width at every length around the vector widths
// (against a byte-at-a-time reference), hostile sizes refused before any
// element is read, and a composite whose child throws while it writes in the
// composite's payload.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;

using ItemPtr = boost::intrusive_ptr<ItemBase>;

// Most significant byte first, one byte at a time.
template <class E>
Bytes Reference(std::vector<E> const& values) {
    using U = typename std::make_unsigned<E>::type;
    Bytes bytes;
    for (E const value : values) {
        U const bits = static_cast<U>(value);
        for (std::size_t i = sizeof(U); i-- > 0;) {
            bytes.push_back(static_cast<unsigned char>(bits >> (8 * i)));
        }
    }
    return bytes;
}

// Values that use every byte, the sign bit included.
template <class E>
std::vector<E> Pattern(std::size_t count) {
    using U = typename std::make_unsigned<E>::type;
    std::vector<E> values;
    for (std::size_t i = 0; i < count; ++i) {
        U bits = 0;
        for (std::size_t b = 0; b < sizeof(U); ++b) {
            bits = static_cast<U>(bits << 8 | ((i * 37 + b * 101 + 0x5A) & 0xFF));
        }
        values.push_back(static_cast<E>(bits));
    }
    return values;
}

template <class T>
void ExpectEveryLength() {
    using E = typename T::Element;
    std::vector<std::size_t> lengths;
    for (std::size_t n = 0; n <= 40; ++n) {
        lengths.push_back(n);
    }
    lengths.push_back(1000);
    lengths.push_back(1023);
    for (std::size_t const n : lengths) {
        SCOPED_TRACE(n);
        std::vector<E> const values = Pattern<E>(n);
        NumericArrayItem<T> item(0x1234);
        item.SetVal(values);
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(item.Serialize(&record), 0);
        ASSERT_EQ(record.GetDataSize(), n * sizeof(E));
        EXPECT_EQ(PayloadOf(record), Reference(values));

        ItemBase::ConstSerialStruct_t const view(record);
        ItemPtr back;
        ASSERT_EQ(ItemBase::Deserialize(&view, back), 0);
        EXPECT_EQ(static_cast<NumericArrayItem<T> const&>(*back).GetVal(), values);

        // Read from an odd address: the loop must not assume alignment.
        Bytes shifted(1, 0xEE);
        Bytes const wire = Reference(values);
        shifted.insert(shifted.end(), wire.begin(), wire.end());
        ItemBase::ConstSerialStruct_t odd = view;
        odd.data = n ? shifted.data() + 1 : nullptr;
        NumericArrayItem<T> target(0x1234);
        ASSERT_EQ(target.Deserialize(&odd), 0);
        EXPECT_EQ(target.GetVal(), values);
    }
}

TEST(RecordLoopsTest, IntegerArraysWriteAndReadBigEndianAtEveryLength) {
    ExpectEveryLength<U8Traits>();
    ExpectEveryLength<S8Traits>();
    ExpectEveryLength<U16Traits>();
    ExpectEveryLength<S16Traits>();
    ExpectEveryLength<U32Traits>();
    ExpectEveryLength<S32Traits>();
    ExpectEveryLength<U64Traits>();
    ExpectEveryLength<S64Traits>();
}

TEST(RecordLoopsTest, FloatArraysKeepSmallWholeNumbersAtEveryLength) {
    for (std::size_t n : {0u, 1u, 7u, 9u, 33u}) {
        SCOPED_TRACE(n);
        std::vector<float> floats;
        std::vector<double> doubles;
        for (std::size_t i = 0; i < n; ++i) {
            // Small whole numbers: the wire's mapping gives them back exactly.
            floats.push_back(static_cast<float>(i * 5 % 256));
            doubles.push_back(static_cast<double>(i * 7 % 256));
        }
        NumericArrayItem<FloatTraits> f(1);
        f.SetVal(floats);
        NumericArrayItem<DoubleTraits> d(2);
        d.SetVal(doubles);
        ItemBase::SerialStruct_t fr;
        ItemBase::SerialStruct_t dr;
        ASSERT_EQ(f.Serialize(&fr), 0);
        ASSERT_EQ(d.Serialize(&dr), 0);
        EXPECT_EQ(fr.GetDataSize(), 4 * n);
        EXPECT_EQ(dr.GetDataSize(), 8 * n);
        ItemBase::ConstSerialStruct_t const fv(fr);
        ItemBase::ConstSerialStruct_t const dv(dr);
        NumericArrayItem<FloatTraits> fb(1);
        NumericArrayItem<DoubleTraits> db(2);
        ASSERT_EQ(fb.Deserialize(&fv), 0);
        ASSERT_EQ(db.Deserialize(&dv), 0);
        EXPECT_EQ(fb.GetVal(), floats);
        EXPECT_EQ(db.GetVal(), doubles);
    }
}

// Sizes that are no whole number of elements, or bytes that are missing,
// are refused with -41 before anything is read; the old value stays.
TEST(RecordLoopsTest, HostileSizesAreRefusedAndKeepTheOldValue) {
    std::vector<std::uint32_t> const old = {1, 2, 3};
    NumericArrayItem<U32Traits> item(0x77);
    item.SetVal(old);
    auto const type = static_cast<std::uint8_t>(OruType_t::NumericArray);
    auto const u32 = static_cast<std::uint8_t>(NumericType_t::U32);

    for (std::size_t size : {1u, 2u, 3u, 5u, 6u, 7u, 4095u}) {
        SCOPED_TRACE(size);
        Bytes const payload(size, 0xAB);
        ItemBase::ConstSerialStruct_t const record = MakeRecord(0x77, type, u32, payload);
        EXPECT_EQ(item.Deserialize(&record), -41);
        EXPECT_EQ(item.GetVal(), old);
    }
    // A size with no bytes behind it.
    ItemBase::ConstSerialStruct_t missing = MakeRecord(0x77, type, u32, Bytes());
    missing.SetHeader(0x77, 4000, type, u32);
    EXPECT_EQ(item.Deserialize(&missing), -41);
    EXPECT_EQ(item.GetVal(), old);
    // The size field bounds the read, not the buffer: 8 of 12 bytes.
    Bytes const longer = {0, 0, 0, 9, 0, 0, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF};
    ItemBase::ConstSerialStruct_t shorter = MakeRecord(0x77, type, u32, longer);
    shorter.SetHeader(0x77, 8, type, u32);
    ASSERT_EQ(item.Deserialize(&shorter), 0);
    EXPECT_EQ(item.GetVal(), (std::vector<std::uint32_t>{9, 256}));
    // An empty payload empties the array.
    ItemBase::ConstSerialStruct_t const empty = MakeRecord(0x77, type, u32, Bytes());
    ASSERT_EQ(item.Deserialize(&empty), 0);
    EXPECT_TRUE(item.GetVal().empty());
}

// Throws from Serialize after its envelope is written, as a family whose
// allocation fails half-way would.
class Throwing : public NumericItem<U32Traits> {
public:
    explicit Throwing(unsigned int id) : NumericItem<U32Traits>(id) {}
    int Serialize(SerialStruct_t* record) const override {
        NumericItem<U32Traits>::Serialize(record);
        throw std::runtime_error("no room");
    }
};

TEST(RecordLoopsTest, AChildThatThrowsLeavesNoPlaceLentToTheNextRecord) {
    CompositeItem composite(1);
    ItemPtr const first(NumericItem<U32Traits>::Create(2, 0x01020304));
    ItemPtr const bad(new Throwing(3));
    composite.AddItem(first);
    composite.AddItem(bad);
    {
        ItemBase::SerialStruct_t record;
        EXPECT_THROW(composite.Serialize(&record), std::runtime_error);
        // The payload is the record's own and freed with it (the sanitizers
        // see a double or foreign free).
    }
    // Written on its own, the child that came first gets a payload of its
    // own: nothing lent inside the abandoned composite is used again.
    for (int round = 0; round < 2; ++round) {
        ItemBase::SerialStruct_t alone;
        ASSERT_EQ(first->Serialize(&alone), 0);
        EXPECT_EQ(Hex(PayloadOf(alone)), "01 02 03 04");
    }
    // A composite in a composite: the inner one lends places of its own and
    // the outer walk carries on where it was.
    boost::intrusive_ptr<CompositeItem> const inner(new CompositeItem(4));
    inner->AddItem(ItemPtr(BoolItem::Create(5, true)));
    inner->AddItem(ItemPtr(NumericItem<U16Traits>::Create(6, 0xBEEF)));
    CompositeItem outer(7);
    outer.AddItem(inner);
    outer.AddItem(first);
    ItemBase::SerialStruct_t record;
    ASSERT_EQ(outer.Serialize(&record), 0);
    EXPECT_EQ(Hex(PayloadOf(record)),
              "00 02 "
              "00 00 00 04 00 00 00 19 FD 00 "
              "00 02 00 00 00 05 00 00 00 01 01 00 01 00 00 00 06 00 00 00 02 02 03 BE EF "
              "00 00 00 02 00 00 00 04 02 05 01 02 03 04");
}

}  // namespace
