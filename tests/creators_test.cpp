#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;

TEST(CreatorsTest, TableOfItemCreatorsMakesEachClassWithCountZero) {
    std::vector<std::pair<std::shared_ptr<ItemCreatorBase>, OruType_t>> const table = {
        {std::make_shared<ItemCreator<NumericItem<S8Traits>>>(), OruType_t::Numeric},
        {std::make_shared<ItemCreator<NumericArrayItem<FloatTraits>>>(), OruType_t::NumericArray},
        {std::make_shared<ItemCreator<RectItem<U16Traits>>>(), OruType_t::Rectangle},
        {std::make_shared<ItemCreator<RectArrayItem<U16Traits>>>(), OruType_t::RectArray},
        {std::make_shared<ItemCreator<BoolItem>>(), OruType_t::Bool},
        {std::make_shared<ItemCreator<BoolArrayItem>>(), OruType_t::BoolArray},
        {std::make_shared<ItemCreator<ColourItem>>(), OruType_t::Colour},
        {std::make_shared<ItemCreator<CompositeItem>>(), OruType_t::Composite},
        {std::make_shared<ItemCreator<EndpointItem>>(), OruType_t::Endpoint},
        {std::make_shared<ItemCreator<AppEndpointItem>>(), OruType_t::AppEndpoint},
        {std::make_shared<ItemCreator<StringItem>>(), OruType_t::String},
        {std::make_shared<ItemCreator<StringArrayItem>>(), OruType_t::StringArray},
    };
    for (auto const& [creator, type] : table) {
        SCOPED_TRACE(static_cast<unsigned>(type));
        ItemBase* const first = creator->CreateItem(0x420C0005);
        ItemBase* const second = creator->CreateItem(0x420C0005);
        EXPECT_NE(first, second);
        EXPECT_EQ(first->GetRefCount(), 0);
        EXPECT_EQ(first->GetId(), 0x420C0005u);
        EXPECT_EQ(first->GetType(), type);
        EXPECT_TRUE(first->IsEqualValue(boost::intrusive_ptr<ItemBase const>(second)));
        delete first;
    }
}

TEST(CreatorsTest, TypedCreationAndAssignmentChangeNothing) {
    InfoCreator<NumericArrayInfo<U64Traits>> infos;
    boost::intrusive_ptr<NumericArrayInfo<U64Traits>> info(
        infos.CreateDerivedInfo(7, "sizes", Permission_t(9)));
    EXPECT_EQ(info->GetRefCount(), 1);
    EXPECT_EQ(info->GetName(), "sizes");
    EXPECT_EQ(info->GetPermission(), Permission_t(9));
    InfoCreatorBase const& base = infos;
    boost::intrusive_ptr<InfoBase> made(base.CreateInfo(8, "other", Permission_t()));
    EXPECT_EQ(made->GetType(), OruType_t::NumericArray);
    EXPECT_EQ(made->GetNumericType(), NumericType_t::U64);

    // An item made here has the class's value, not an Info's default.
    ItemCreator<NumericItem<U32Traits>> items;
    boost::intrusive_ptr<NumericItem<U32Traits>> item(items.CreateDerivedItem(3));
    EXPECT_EQ(item->GetVal(), 0u);
    ItemCreator<NumericItem<U32Traits>> other;
    other = items;
    boost::intrusive_ptr<ItemBase> again(other.CreateItem(4));
    EXPECT_EQ(again->GetId(), 4u);
}

}  // namespace
