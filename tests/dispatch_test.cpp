// Every row of the dispatch table: a record written by Serialize reads back
// through ItemBase::Deserialize into the same class with an equal value.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <typeinfo>
#include <vector>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using ItemPtr = boost::intrusive_ptr<ItemBase>;

// An Item of the family with a value that is not its default, read from text.
template <class I>
ItemPtr FromText(char const* text) {
    ItemPtr item(new I(0x420C0005));
    std::istringstream in(text);
    std::ostringstream errors;
    EXPECT_TRUE(item->SetValFromStream(in, errors, nullptr))
        << typeid(I).name() << ": " << errors.str();
    return item;
}

template <class T>
void AddNumericRows(std::vector<ItemPtr>& rows) {
    rows.push_back(ItemPtr(NumericItem<T>::Create(0x420C0005, 7)));
    rows.push_back(FromText<NumericArrayItem<T>>("3 1 2 100"));
    rows.push_back(FromText<NumericSparseItem<T>>("5"));
}

template <class T>
void AddGeometryRows(std::vector<ItemPtr>& rows) {
    rows.push_back(FromText<CoordinateItem<T>>("3 4"));
    rows.push_back(FromText<RectItem<T>>("1 2 30 40"));
}

std::vector<ItemPtr> Rows() {
    std::vector<ItemPtr> rows;
    rows.push_back(FromText<BoolItem>("1"));
#define ORU_TEST_NUMERIC_ROWS(T) AddNumericRows<T>(rows);
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_TEST_NUMERIC_ROWS)
#undef ORU_TEST_NUMERIC_ROWS
    rows.push_back(FromText<EnumItem>("3"));
    rows.push_back(FromText<StringItem>("text"));
    rows.push_back(FromText<StringArrayItem>("2 ab cd"));
    rows.push_back(FromText<BoolArrayItem>("3 1 0 1"));
    rows.push_back(FromText<StringSparseItem>("short"));
    rows.push_back(FromText<ColourItem>("(0 1 1 0)"));
    AddGeometryRows<U16Traits>(rows);
    AddGeometryRows<S32Traits>(rows);
    AddGeometryRows<FloatTraits>(rows);
    auto* orientation = new OrientationItem(0x420C0005);
    orientation->Set(Orientation_t{90.0f, 10.0f, 0.0f});
    rows.push_back(ItemPtr(orientation));
    rows.push_back(FromText<AddrItem>("10.0.0.1"));
    rows.push_back(FromText<EndpointItem>("[::1]:80"));
    auto* app = new AppEndpointItem(0x420C0005);
    app->SetVal(AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri("rtsp://10.0.0.2:554"));
    rows.push_back(ItemPtr(app));
    auto* apps = new AppEndpointArrayItem(0x420C0005);
    apps->SetVal({AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri("http://10.0.0.3:80")});
    rows.push_back(ItemPtr(apps));
    rows.push_back(FromText<RectArrayItem<U16Traits>>("1 1 2 3 4"));
    auto* composite = new CompositeItem(0x420C0005);
    composite->AddItem(FromText<StringItem>("child"));
    composite->AddItem(ItemPtr(NumericItem<S8Traits>::Create(0, -3)));
    rows.push_back(ItemPtr(composite));
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
