// Every row of the dispatch table: a record written by Serialize reads back
// through ItemBase::Deserialize into the same class with an equal value.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <typeinfo>
#include <vector>

#include <legacy/oru/catalogue.h>
#include <legacy/oru/oru.h>

#include "registry.h"
#include "row_values.h"
#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using ItemPtr = boost::intrusive_ptr<ItemBase>;

// An Item of every row whose class reads its records, each with a value.
std::vector<ItemPtr> Rows() {
    std::vector<ItemPtr> rows;
    for (Registry::Row const& row : Registry::All()) {
        if (row.record != Registry::Record::Read) {
            continue;
        }
        SCOPED_TRACE(Registry::Name(row));
        ItemPtr item(row.makeItem(0x420C0005));
        // The row's bytes are the class's own.
        EXPECT_EQ(item->GetType(), row.type);
        EXPECT_EQ(item->GetNumericType(), row.numericType);
        OruTest::SetOtherValue(row, *item);
        rows.push_back(item);
    }
    return rows;
}

TEST(DispatchTest, EveryRowReadsBackIntoItsClass) {
    std::vector<ItemPtr> const rows = Rows();
    EXPECT_EQ(rows.size(), 1u + 30u + 6u + 6u + 7u);  // every row, ten element types apiece
    for (ItemPtr const& made : rows) {
        SCOPED_TRACE(typeid(*made).name());
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(made->Serialize(&record), 0);
        ItemBase::ConstSerialStruct_t const view(record);
        ItemPtr read;
        ASSERT_EQ(ItemBase::Deserialize(&view, read), 0);
        EXPECT_TRUE(typeid(*read) == typeid(*made));
        EXPECT_EQ(read->GetId(), 0x420C0005u);
        EXPECT_TRUE(read->IsEqualValue(made))
            << made->GetValAsString() << " / " << read->GetValAsString();
    }
}

// The catalogue's cast by type bytes agrees with the classes themselves:
// exactly one family's class fits each Item and Info, its own.
TEST(DispatchTest, TheCatalogueCastFindsExactlyTheObjectsOwnClass) {
    for (Catalogue::Family const& family : Catalogue::Families()) {
        if (!family.makeItem) {
            continue;
        }
        SCOPED_TRACE(family.name);
        ItemPtr const made(family.makeItem(0x420C0005));
        boost::intrusive_ptr<InfoBase> const info(
            family.makeInfo ? family.makeInfo(0x420C0005, "", Permission_t()) : nullptr);
        ItemBase const* const item = made.get();
        std::size_t items = 0;
        std::size_t infos = 0;
        Catalogue::ForEachFamily([&](auto tag) {
            using Tag = decltype(tag);
            using Item = typename Tag::Item;
            bool const cast = Catalogue::As<Item>(item) != nullptr;
            EXPECT_EQ(cast, dynamic_cast<Item const*>(item) != nullptr) << typeid(Item).name();
            items += cast;
            if constexpr (Tag::hasInfo) {
                using Info = typename Tag::Info;
                bool const infoCast = Catalogue::As<Info>(info.get()) != nullptr;
                EXPECT_EQ(infoCast, dynamic_cast<Info*>(info.get()) != nullptr)
                    << typeid(Info).name();
                infos += infoCast;
            }
        });
        EXPECT_EQ(items, 1u);
        EXPECT_EQ(infos, info ? 1u : 0u);
    }
    EXPECT_EQ(Catalogue::As<BoolItem>(static_cast<ItemBase const*>(nullptr)), nullptr);
}

TEST(DispatchTest, RowsWithoutARecordOfTheirOwn) {
    // A collection has a row, yet reads nothing: the object is made, then fails.
    ItemPtr item;
    auto const record = OruTest::MakeRecord(5, 254, 0, OruTest::Bytes{0, 0});
    EXPECT_EQ(ItemBase::Deserialize(&record, item), -26);
    EXPECT_NE(dynamic_cast<CollectionItem*>(item.get()), nullptr);
    ItemBase::SerialStruct_t out;
    EXPECT_EQ(CollectionItem(5).Serialize(&out), -26);
    // Localized strings and extended values have classes but no row.
    ItemPtr kept(new StringItem(1));
    for (std::uint8_t type : {135, 252}) {
        auto const none = OruTest::MakeRecord(5, type, 0, OruTest::Bytes{0});
        EXPECT_EQ(ItemBase::Deserialize(&none, kept), -41);
        EXPECT_NE(dynamic_cast<StringItem*>(kept.get()), nullptr);
    }
    // A rectangle array exists for 16-bit corners only.
    auto const wide = OruTest::MakeRecord(5, 141, 6, OruTest::Bytes{});
    EXPECT_EQ(ItemBase::Deserialize(&wide, kept), -41);
}

}  // namespace
