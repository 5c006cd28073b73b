// The address families: serial payloads and hostile records, assignment
// rules, the staged array-info assignment, text input and output.
#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using namespace OruTest;
using EndpointStr = Net::Endpoint<Net::AddrStr>;
using AppStr = AppEndpoint<EndpointStr>;

AppStr Make(std::uint32_t type, char const* endpoint, unsigned short version = 0,
            unsigned short compat = 0, unsigned char prefix = 0) {
    return AppStr(AppProtocolInfo_t(static_cast<AppProtocolType_t>(type), version, compat),
                  EndpointStr::FromString(endpoint), prefix);
}

// Writes item, checks the payload bytes, and reads the record back through
// the dispatch of ItemBase::Deserialize.
boost::intrusive_ptr<ItemBase> RoundTrip(ItemBase const& item, std::string const& hex) {
    ItemBase::SerialStruct_t record;
    EXPECT_EQ(item.Serialize(&record), 0);
    EXPECT_EQ(record.GetDataSize(), item.GetSerialDataSize());
    EXPECT_EQ(record.type, static_cast<std::uint8_t>(item.GetType()));
    EXPECT_EQ(Hex(PayloadOf(record)), hex);
    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> back;
    EXPECT_EQ(ItemBase::Deserialize(&view, back), 0);
    return back;
}

TEST(AddrItemTest, PayloadsAreTextsWithTheirTerminator) {
    auto const empty = RoundTrip(AddrItem(1), "00");
    ASSERT_TRUE(empty);
    EXPECT_EQ(dynamic_cast<AddrItem const&>(*empty).GetVal(), Net::AddrStr());

    boost::intrusive_ptr<AddrItem> addr(AddrItem::Create(2, Net::AddrStr("cam")));
    auto const addrBack = RoundTrip(*addr, "63 61 6D 00");
    EXPECT_TRUE(addrBack->IsEqualValue(addr));

    boost::intrusive_ptr<EndpointItem> endpoint(
        EndpointItem::Create(3, EndpointStr(Net::AddrStr("::1"), 80)));
    auto const endpointBack = RoundTrip(*endpoint, "5B 3A 3A 31 5D 3A 38 30 00");  // [::1]:80
    EXPECT_TRUE(endpointBack->IsEqualValue(endpoint));

    // Type, prefix, version, compat version, then the endpoint text, not the URI.
    boost::intrusive_ptr<AppEndpointItem> app(
        AppEndpointItem::Create(4, Make(66, "cam:554", 0x0102, 0x0304, 7)));
    auto const appBack = RoundTrip(*app, "42 07 01 02 03 04 63 61 6D 3A 35 35 34 00");
    EXPECT_TRUE(appBack->IsEqualValue(app));
    EXPECT_EQ(dynamic_cast<AppEndpointItem const&>(*appBack).GetVal().GetAddrGroupPrefix(), 7);

    // Every type of the table fits the byte.
    for (std::uint32_t type : {0u, 1u, 2u, 5u, 7u, 8u, 9u, 10u, 32u, 66u}) {
        SCOPED_TRACE(type);
        boost::intrusive_ptr<AppEndpointItem> item(AppEndpointItem::Create(5, Make(type, "h:1")));
        ItemBase::SerialStruct_t record;
        ASSERT_EQ(item->Serialize(&record), 0);
        ItemBase::ConstSerialStruct_t const view(record);
        AppEndpointItem back(5);
        ASSERT_EQ(back.Deserialize(&view), 0);
        EXPECT_EQ(back.GetVal(), item->GetVal());
    }

    // Text behind the first 0 is ignored while the payload ends in 0.
    Bytes const tail = {'a', 0, 'b', 0};
    auto const record = MakeRecord(2, 134, 0, tail);
    AddrItem reader(2);
    EXPECT_EQ(reader.Deserialize(&record), 0);
    EXPECT_EQ(reader.GetVal().ToString(), "a");
    EXPECT_EQ(AddrItem(1).Serialize(nullptr), -41);
    EXPECT_EQ(AppEndpointItem(1).Serialize(nullptr), -41);
}

TEST(AddrItemTest, HostileRecordsAnswerMinus41AndKeepTheValue) {
    struct Row {
        char const* name;
        Bytes payload;
    };
    std::vector<Row> const rows = {
        {"empty payload", {}},
        {"no terminator", {'h', 'o', 's', 't'}},
    };
    boost::intrusive_ptr<ItemBase> const items[] = {
        AddrItem::Create(9, Net::AddrStr("old")),
        EndpointItem::Create(9, EndpointStr::FromString("old:1")),
        AppEndpointItem::Create(9, Make(5, "old:1", 1, 1, 3)),
    };
    for (auto const& item : items) {
        boost::intrusive_ptr<ItemBase const> const before(item->DeepCopy());
        for (auto const& row : rows) {
            SCOPED_TRACE(std::string(row.name) + " on " + item->GetValAsString());
            auto const record =
                MakeRecord(9, static_cast<std::uint8_t>(item->GetType()), 0, row.payload);
            EXPECT_EQ(item->Deserialize(&record), -41);
            EXPECT_TRUE(item->IsEqualValue(before));
        }
    }
    // An application endpoint needs its six head bytes before the text.
    AppEndpointItem app(9);
    app.SetVal(Make(5, "old:1"));
    for (Bytes const& shortPayload : {Bytes{0}, Bytes{5, 0, 0, 0, 0, 0}, Bytes{5, 0, 0, 0, 0}}) {
        SCOPED_TRACE(Hex(shortPayload));
        auto const record = MakeRecord(9, 137, 0, shortPayload);
        EXPECT_EQ(app.Deserialize(&record), -41);
        EXPECT_EQ(app.GetVal(), Make(5, "old:1"));
    }
}

TEST(AppEndpointArrayItemTest, PayloadWalksElementsAndClearsOnRefusal) {
    AppEndpointArrayItem item(7);
    item.SetVal({Make(5, "a:80"), Make(66, "b:554", 1, 1, 2)});
    auto const back =
        RoundTrip(item, "05 00 00 00 00 00 61 3A 38 30 00 42 02 00 01 00 01 62 3A 35 35 34 00");
    EXPECT_TRUE(back->IsEqualValue(boost::intrusive_ptr<ItemBase const>(item.DeepCopy())));

    AppEndpointArrayItem empty(7);
    auto const emptyBack = RoundTrip(empty, "");
    EXPECT_TRUE(emptyBack->IsEmpty());

    // A refused record leaves what was read before the bad element.
    struct Row {
        char const* name;
        Bytes payload;
        std::size_t kept;
    };
    std::vector<Row> const rows = {
        {"head cut", {5, 0, 0, 0, 0, 0, 'a', 0, 5, 0, 0}, 1},
        {"text unterminated", {5, 0, 0, 0, 0, 0, 'a', 0, 5, 0, 0, 0, 0, 0, 'b'}, 1},
        {"head without text", {5, 0, 0, 0, 0, 0}, 0},
        {"one stray byte", {0}, 0},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        AppEndpointArrayItem reader(7);
        reader.SetVal({Make(1, "x:1"), Make(1, "y:1"), Make(1, "z:1")});
        auto const record = MakeRecord(7, 140, 0, row.payload);
        EXPECT_EQ(reader.Deserialize(&record), -41);
        EXPECT_EQ(reader.Val().size(), row.kept);
    }
}

TEST(AddrInfoTest, AssignmentsBoundsAndCopies) {
    boost::intrusive_ptr<AddrInfo> info(new AddrInfo(1, "Host", Permission_t(3)));
    boost::intrusive_ptr<AddrInfo> other(new AddrInfo(2, "Other", Permission_t(5)));
    other->SetDefault(Net::AddrStr("cam"));
    // The default is no bound.
    EXPECT_TRUE(info->IsEqualBounds(other));
    EXPECT_EQ(info->MergeBounds(other), 0);
    boost::intrusive_ptr<InfoBase const> const endpointInfo(
        new EndpointInfo(3, "E", Permission_t()));
    EXPECT_FALSE(info->IsEqualBounds(endpointInfo));
    EXPECT_EQ(info->MergeBounds(endpointInfo), -36);

    bool changed = false;
    EXPECT_EQ(info->AssignValue(nullptr, &changed), -31);
    EXPECT_EQ(info->AssignValue(endpointInfo, &changed), -26);
    EXPECT_FALSE(changed);
    EXPECT_EQ(info->AssignValue(other, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info->GetDefault(), Net::AddrStr("cam"));
    EXPECT_EQ(info->GetName(), "Host");
    EXPECT_EQ(info->AssignValue(other, &changed), 0);
    EXPECT_FALSE(changed);

    // The strict equality decides a change of an application endpoint.
    boost::intrusive_ptr<AppEndpointInfo> app(new AppEndpointInfo(4, "App", Permission_t()));
    boost::intrusive_ptr<AppEndpointInfo> appOther(new AppEndpointInfo(5, "B", Permission_t()));
    app->SetDefault(Make(5, "h:1", 1, 1));
    appOther->SetDefault(Make(5, "h:1", 2, 1));
    EXPECT_EQ(app->AssignValue(appOther, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(app->GetDefault().GetAppProtocolVersion(), 2);

    boost::intrusive_ptr<ItemBase> item(app->CreateItem());
    EXPECT_EQ(item->GetId(), 4u);
    EXPECT_EQ(dynamic_cast<AppEndpointItem&>(*item).GetVal(), app->GetDefault());
    boost::intrusive_ptr<AppEndpointInfo> copy(app->DeepCopy(9));
    EXPECT_EQ(copy->GetId(), 9u);
    EXPECT_EQ(copy->GetName(), "App");
    EXPECT_EQ(copy->GetDefault(), app->GetDefault());

    boost::intrusive_ptr<EndpointItem> target(new EndpointItem(1));
    boost::intrusive_ptr<ItemBase const> source(
        EndpointItem::Create(2, EndpointStr::FromString("h:2")));
    EXPECT_EQ(target->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->GetVal(), EndpointStr::FromString("h:2"));
    changed = true;
    EXPECT_EQ(target->AssignArrayValue(item, 5, &changed), -26);
    EXPECT_TRUE(changed);
    EXPECT_EQ(target->AssignValue(nullptr, &changed), -31);
}

TEST(AppEndpointArrayInfoTest, AssignmentTakesOneStagePerCall) {
    boost::intrusive_ptr<AppEndpointArrayInfo> info(
        new AppEndpointArrayInfo(1, "List", Permission_t()));
    EXPECT_EQ(info->GetMaxSize(), 0x7FFFFFFFu);
    boost::intrusive_ptr<AppEndpointArrayInfo> source(
        new AppEndpointArrayInfo(2, "Src", Permission_t()));
    source->SetDefault({Make(5, "a:1")});
    source->SetMinSize(2);
    source->SetMaxSize(4);

    bool changed = false;
    EXPECT_EQ(info->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info->GetDefault().size(), 1u);
    EXPECT_EQ(info->GetMinSize(), 0u);
    EXPECT_EQ(info->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info->GetMinSize(), 2u);
    EXPECT_EQ(info->GetMaxSize(), 0x7FFFFFFFu);
    EXPECT_EQ(info->AssignValue(source, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_EQ(info->GetMaxSize(), 4u);
    EXPECT_EQ(info->AssignValue(source, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(info->AssignValue(new AddrInfo(3, "A", Permission_t()), &changed), -26);

    // Copies take the default only; the sizes are neither compared nor enforced.
    boost::intrusive_ptr<AppEndpointArrayInfo> copy(info->DeepCopy());
    EXPECT_EQ(copy->GetMinSize(), 0u);
    EXPECT_EQ(copy->GetMaxSize(), 0x7FFFFFFFu);
    EXPECT_EQ(copy->GetDefault(), info->GetDefault());
    EXPECT_TRUE(copy->IsEqualBounds(info));
    AppEndpointArrayItem five(1);
    five.SetVal(AppEndpointArrayItem::Value_t(5));
    EXPECT_FALSE(five.Validate(info));
    EXPECT_FALSE(five.Validate(nullptr));
}

TEST(AppEndpointArrayItemTest, AssignmentFromAnElementOrAWholeArray) {
    AppEndpointArrayItem array(1);
    boost::intrusive_ptr<ItemBase const> const element(AppEndpointItem::Create(2, Make(5, "h:80")));
    bool changed = false;
    EXPECT_EQ(array.AssignArrayValue(element, 3, &changed), 0);
    EXPECT_TRUE(changed);
    ASSERT_EQ(array.Val().size(), 4u);
    EXPECT_EQ(array.Val()[0], AppStr());
    EXPECT_EQ(array.Val()[3], Make(5, "h:80"));
    EXPECT_EQ(array.AssignArrayValue(element, 3, &changed), 0);
    EXPECT_FALSE(changed);
    EXPECT_EQ(array.AssignArrayValue(element, 0, &changed), 0);
    EXPECT_TRUE(changed);

    boost::intrusive_ptr<AppEndpointArrayItem> whole(new AppEndpointArrayItem(3));
    whole->SetVal({Make(7, "s:443")});
    EXPECT_EQ(array.AssignArrayValue(whole, 99, &changed), 0);
    EXPECT_TRUE(changed);
    EXPECT_TRUE(array.IsEqualValue(whole));
    EXPECT_EQ(array.AssignArrayValue(whole, 0, &changed), 0);
    EXPECT_FALSE(changed);

    EXPECT_EQ(array.AssignArrayValue(nullptr, 0, &changed), -31);
    EXPECT_EQ(array.AssignArrayValue(new AddrItem(4), 0, &changed), -26);
    EXPECT_EQ(array.Val().size(), 1u);
}

TEST(AddrItemTest, TextInputAndOutput) {
    std::ostringstream errors;
    AddrItem addr(1);
    std::istringstream words("cam.local rest");
    EXPECT_TRUE(addr.SetValFromStream(words, errors, nullptr));
    EXPECT_EQ(addr.GetValAsString(), "cam.local");

    // An endpoint needs no Info; an application endpoint takes its protocol
    // from the Info's default and so cannot do without one.
    EndpointItem endpoint(1);
    std::istringstream endpointText("10.0.0.1:502");
    EXPECT_TRUE(endpoint.SetValFromStream(endpointText, errors, nullptr));
    EXPECT_EQ(endpoint.GetVal(), EndpointStr(Net::AddrStr("10.0.0.1"), 502));
    std::istringstream atEnd("");
    atEnd.get();
    EXPECT_TRUE(endpoint.SetValFromStream(atEnd, errors, nullptr));
    EXPECT_EQ(endpoint.GetVal().GetPort(), 502);

    AppEndpointItem app(1);
    app.SetVal(Make(8, "old:1", 0, 0, 5));
    std::istringstream appText("cam:554");
    EXPECT_FALSE(app.SetValFromStream(appText, errors, nullptr));
    EXPECT_FALSE(app.SetValFromStream(appText, errors, new EndpointInfo(1, "E", Permission_t())));
    EXPECT_EQ(app.GetVal(), Make(8, "old:1", 0, 0, 5));
    boost::intrusive_ptr<AppEndpointInfo> appInfo(new AppEndpointInfo(1, "A", Permission_t()));
    appInfo->SetDefault(Make(66, "x:1", 1, 1, 9));
    EXPECT_TRUE(app.SetValFromStream(appText, errors, appInfo));
    EXPECT_EQ(app.GetVal(), Make(66, "cam:554", 1, 1, 0));
    EXPECT_EQ(errors.str(), "");

    AppEndpointArrayItem array(1);
    std::istringstream arrayText("a:1");
    EXPECT_FALSE(array.SetValFromStream(arrayText, errors, nullptr));
    EXPECT_EQ(errors.str(), "Impl. me");

    array.SetVal({Make(5, "a:80"), Make(8, "b:23")});
    EXPECT_EQ(array.GetValAsString(), "(http://a:80, b:23 (TcpRaw))");
    EXPECT_EQ(DumpOf(array), "id: 1\ntype: Invalid\nvalue: (http://a:80, b:23 (TcpRaw))\n");

    AppEndpointArrayInfo arrayInfo(2, "List", Permission_t(6));
    arrayInfo.SetDefault({Make(5, "a:80")});
    EXPECT_EQ(DumpOf(arrayInfo),
              "id: 2\npermission: 6\nname: List\ntype: Invalid\ndefault: [empty array]\n");

    EXPECT_EQ(DumpOf(*appInfo),
              "id: 1\npermission: 0\nname: A\ntype: AppEndpoint\ndefault: rtsp://x:1\n");
    std::ostringstream line;
    FormattedInfoItemDump(line, appInfo,
                          boost::intrusive_ptr<ItemBase const>(appInfo->CreateItem()));
    EXPECT_EQ(line.str(), std::string("A") + std::string(31, ' ') + " AppEndpoint" +
                              std::string(7, ' ') + " {rtsp://x:1} {AppEndpointInfo}");
}

}  // namespace
