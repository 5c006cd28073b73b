// The checks every Deserialize makes before it looks at a payload, for every
// row of the registry: a record meant for another item is refused with -41
// and leaves the value as it was, whatever family reads it.
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

#include <legacy/oru/oru.h>

#include "registry.h"
#include "row_values.h"
#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using ItemPtr = boost::intrusive_ptr<ItemBase>;
using Record = ItemBase::ConstSerialStruct_t;

// Its bytes differ, so an id compared without the byte swap shows.
constexpr unsigned int k_id = 0x420C0005;

// The record of view under another header; the payload stays where it is.
Record Reheaded(Record const& view, std::uint32_t id, std::uint8_t type, std::uint8_t element) {
    Record record = view;
    record.SetHeader(id, view.GetDataSize(), type, element);
    return record;
}

// Whether target still holds what expected holds, by value and by text.
::testing::AssertionResult Holds(ItemBase const& target, ItemPtr const& expected) {
    if (target.IsEqualValue(expected) && target.GetValAsString() == expected->GetValAsString()) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "holds " << target.GetValAsString() << ", not " << expected->GetValAsString();
}

TEST(RegistryTest, EveryReadingRowRefusesARecordMeantForAnotherItem) {
    int rows = 0;
    for (Registry::Row const& row : Registry::All()) {
        if (row.record != Registry::Record::Read) {
            continue;
        }
        ++rows;
        SCOPED_TRACE(Registry::Name(row));
        auto const type = static_cast<std::uint8_t>(row.type);
        auto const element = static_cast<std::uint8_t>(row.numericType);

        // The record carries a value the default does not hold.
        ItemPtr const other(row.makeItem(k_id));
        OruTest::SetOtherValue(row, *other);
        ASSERT_FALSE(::testing::Test::HasFatalFailure());
        ItemBase::SerialStruct_t written;
        ASSERT_EQ(other->Serialize(&written), 0);
        Record const good(written);
        ASSERT_GT(good.GetDataSize(), 0u);

        ItemPtr const defaults(row.makeItem(k_id));
        ItemBase::SerialStruct_t writtenDefault;
        ASSERT_EQ(defaults->Serialize(&writtenDefault), 0);
        Record const plain(writtenDefault);

        // The good record reads, so each refusal below is the header's doing.
        {
            ItemPtr const reader(row.makeItem(k_id));
            ASSERT_FALSE(Holds(*reader, other));
            ASSERT_EQ(reader->Deserialize(&good), 0);
            EXPECT_TRUE(Holds(*reader, other));
        }

        // Wire compatibility: this family drops its elements before it looks
        // at the header, so a refused record leaves it empty.
        bool const emptiesFirst = row.type == OruType_t::AppEndpointArray;

        // Two ways round: from the default, a record of the other value shows
        // a header that went unchecked; from the other value, a record of the
        // default shows a value dropped before the check.
        for (bool const fromOther : {false, true}) {
            SCOPED_TRACE(fromOther ? "from the other value" : "from the default");
            ItemPtr const& old = fromOther ? other : defaults;
            Record const& sent = fromOther ? plain : good;
            auto const fresh = [&] {
                ItemPtr item(row.makeItem(k_id));
                if (fromOther) {
                    OruTest::SetOtherValue(row, *item);
                }
                return item;
            };

            // A null record is refused before anything is touched, by every row.
            ItemPtr const untouched = fresh();
            EXPECT_EQ(untouched->Deserialize(nullptr), -32);
            EXPECT_TRUE(Holds(*untouched, old));

            auto const expectRefused = [&](Record const& record, std::string const& what) {
                ItemPtr const reader = fresh();
                EXPECT_EQ(reader->Deserialize(&record), -41) << what;
                EXPECT_TRUE(Holds(*reader, emptiesFirst ? defaults : old)) << what;
            };
            for (std::uint32_t id : {k_id + 1, k_id - 1, 0u, k_id | 0x80000000u, 0x05000C42u}) {
                expectRefused(Reheaded(sent, id, type, element), "id " + std::to_string(id));
            }
            for (int byte = 0; byte < 256; ++byte) {
                if (byte != type) {
                    expectRefused(Reheaded(sent, k_id, static_cast<std::uint8_t>(byte), element),
                                  "type byte " + std::to_string(byte));
                }
                if (byte != element) {
                    expectRefused(Reheaded(sent, k_id, type, static_cast<std::uint8_t>(byte)),
                                  "element byte " + std::to_string(byte));
                }
            }
            if (sent.GetDataSize() > 0) {
                Record missing = sent;
                missing.data = nullptr;
                expectRefused(missing, "no payload for a non-empty size");
            }
        }

        // Through the dispatch: an element byte that no row of this type
        // admits makes nothing; a family without element types is made, at
        // its default, and then refuses the byte itself.
        std::set<int> admitted;
        for (Registry::Row const& same : Registry::All()) {
            if (same.type == row.type) {
                admitted.insert(static_cast<int>(same.numericType));
            }
        }
        ItemPtr const kept(StringItem::Create(3, "kept"));
        for (int byte = 0; byte < 256; ++byte) {
            if (admitted.count(byte)) {
                continue;
            }
            Record const record = Reheaded(good, k_id, type, static_cast<std::uint8_t>(byte));
            ItemPtr made = kept;
            EXPECT_EQ(ItemBase::Deserialize(&record, made), -41) << byte;
            if (row.numericType != NumericType_t::Undefined) {
                EXPECT_EQ(made, kept) << byte;
            } else {
                ASSERT_NE(made, kept) << byte;
                EXPECT_EQ(made->GetType(), row.type);
                EXPECT_TRUE(Holds(*made, defaults)) << byte;
            }
        }
    }
    EXPECT_GT(rows, 0);
}

TEST(RegistryTest, RowsThatReadNoRecord) {
    int refused = 0;
    int none = 0;
    for (Registry::Row const& row : Registry::All()) {
        SCOPED_TRACE(Registry::Name(row));
        auto const type = static_cast<std::uint8_t>(row.type);
        if (row.record == Registry::Record::Refused) {
            // The object is made, then answers -26 to any record, a null one
            // included, and keeps its children.
            ++refused;
            ItemPtr const item(row.makeItem(k_id));
            ASSERT_NE(item, nullptr);
            auto* const collection = dynamic_cast<CollectionItem*>(item.get());
            ASSERT_NE(collection, nullptr);
            collection->AddItem(ItemPtr(NumericItem<U8Traits>::Create(1, 7)));
            std::string const text = item->GetValAsString();
            OruTest::Bytes const payload{0, 0};
            for (Record const& record : {OruTest::MakeRecord(k_id, type, 0, payload),
                                         OruTest::MakeRecord(k_id + 1, type, 0, payload),
                                         OruTest::MakeRecord(k_id, 1, 0, payload)}) {
                EXPECT_EQ(item->Deserialize(&record), -26);
            }
            EXPECT_EQ(item->Deserialize(nullptr), -26);
            EXPECT_EQ(item->GetValAsString(), text);
            EXPECT_EQ(collection->GetSize(), 1u);
        } else if (row.record == Registry::Record::None) {
            // No class reads the record: the dispatch refuses it with any
            // element byte and leaves the caller's item alone.
            ++none;
            EXPECT_EQ(row.makeItem, nullptr);
            ItemPtr const kept(StringItem::Create(3, "kept"));
            OruTest::Bytes const payload{0};
            for (int element = 0; element < 256; ++element) {
                ItemPtr item = kept;
                auto const record =
                    OruTest::MakeRecord(k_id, type, static_cast<std::uint8_t>(element), payload);
                EXPECT_EQ(ItemBase::Deserialize(&record, item), -41) << element;
                EXPECT_EQ(item, kept) << element;
                EXPECT_EQ(kept->GetValAsString(), "kept");
            }
        }
    }
    EXPECT_EQ(refused, 1);
    EXPECT_EQ(none, 2);
}

}  // namespace
