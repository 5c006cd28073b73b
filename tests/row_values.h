// A value other than the default for the Item of any family, so that a
// test can tell a record that was read from one that was refused.
#ifndef ORU_TESTS_ROW_VALUES_H
#define ORU_TESTS_ROW_VALUES_H

#include <map>
#include <sstream>

#include <gtest/gtest.h>
#include <legacy/oru/catalogue.h>
#include <legacy/oru/oru.h>

#include "registry.h"

namespace OruTest {

namespace Detail {

using Endpoint = Legacy::Oru::AppEndpoint<Net::Endpoint<Net::AddrStr>>;

// Families that read text take it; the others are set directly below.
template <class I>
void SetOther(I& item) {
    using Legacy::Oru::OruType_t;
    static std::map<OruType_t, char const*> const texts = {
        {OruType_t::Bool, "1"},
        {OruType_t::Numeric, "9"},
        {OruType_t::NumericArray, "2 4 8"},
        {OruType_t::NumericSparse, "6"},
        {OruType_t::Enum, "2"},
        {OruType_t::String, "other"},
        {OruType_t::StringArray, "3 a bc d"},
        {OruType_t::BoolArray, "2 0 1"},
        {OruType_t::StringSparse, "entry"},
        {OruType_t::Colour, "(1 0 1 0)"},
        {OruType_t::Coordinate, "5 6"},
        {OruType_t::Rectangle, "2 3 40 50"},
        {OruType_t::Addr, "10.1.2.5"},
        {OruType_t::Endpoint, "10.1.2.6:81"},
        {OruType_t::RectArray, "2 1 2 3 4 5 6 7 8"},
    };
    auto const text = texts.find(item.GetType());
    ASSERT_NE(text, texts.end()) << "no value for type " << static_cast<int>(item.GetType());
    std::istringstream in(text->second);
    std::ostringstream errors;
    ASSERT_TRUE(item.SetValFromStream(in, errors, nullptr)) << errors.str();
}
inline void SetOther(Legacy::Oru::OrientationItem& item) {
    item.Set(Legacy::Oru::Orientation_t{45.0f, 5.0f, 2.0f});
}
inline void SetOther(Legacy::Oru::AppEndpointItem& item) {
    item.SetVal(Endpoint::FromUri("rtsp://10.1.2.3:8554"));
}
inline void SetOther(Legacy::Oru::AppEndpointArrayItem& item) {
    item.SetVal({Endpoint::FromUri("http://10.1.2.4:80"), Endpoint::FromUri("rtsp://h:554")});
}
inline void SetOther(Legacy::Oru::CompositeItem& composite) {
    using namespace Legacy::Oru;
    composite.AddItem(boost::intrusive_ptr<ItemBase>(NumericItem<U16Traits>::Create(0, 9)));
    composite.AddItem(boost::intrusive_ptr<ItemBase>(StringItem::Create(0, "inner")));
}

}  // namespace Detail

// Sets item, made by row.makeItem, to a value that differs from its default
// and has a non-empty record.
inline void SetOtherValue(Legacy::Oru::Registry::Row const& row, Legacy::Oru::ItemBase& item) {
    SCOPED_TRACE(Legacy::Oru::Registry::Name(row));
    bool const visited =
        Legacy::Oru::Catalogue::VisitItem(item, [](auto& concrete) { Detail::SetOther(concrete); });
    ASSERT_TRUE(visited) << "no family has the item's type bytes";
}

}  // namespace OruTest

#endif
