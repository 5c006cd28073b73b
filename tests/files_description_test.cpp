#include <algorithm>
#include <cstring>
#include <fstream>
#include <limits>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <legacy/oru/files/description.h>
#include <legacy/oru/oru.h>

#include "problem_print.h"

namespace {

using namespace Legacy::Oru;
using Files::Problem;
using Files::Problems;
using Files::ReadDescription;
using Files::WriteDescription;

using Holders = std::vector<boost::intrusive_ptr<InfoItemHolder const>>;

std::string Settings(std::string const& body) {
    return "{\"settings\": [" + body + "]}";
}

boost::intrusive_ptr<InfoBase const> InfoAt(InfoItemDirectory const& directory,
                                            std::string const& path) {
    auto const slot = directory.FindInfoItem(path);
    return slot ? boost::intrusive_ptr<InfoBase const>(slot->GetInfoHolder()->GetInfo()) : nullptr;
}

// A setting of every family with bounds and defaults away from the defaults
// a fresh Info has.
std::string EveryFamily() {
    std::string body;
    auto add = [&body](std::string const& setting) {
        body += (body.empty() ? "" : ",\n") + setting;
    };
    char const* const elements[] = {"U8",  "S8",  "U16", "S16",   "U32",
                                    "S32", "U64", "S64", "Float", "Double"};
    for (char const* element : elements) {
        std::string const e = element;
        bool const isSigned = e[0] == 'S' || e == "Float" || e == "Double";
        bool const isFloat = e == "Float" || e == "Double";
        // Floating records carry whole numbers whose bytes reversed are exact.
        std::string const min = isFloat ? "0" : isSigned ? "-5" : "1";
        std::string const max = isFloat ? "4096" : "90";
        std::string const value = isFloat ? "256" : "7";
        add("{\"path\": \"Numbers/Scalar/" + e + "\", \"type\": \"Numeric:" + e + "\", \"min\": " +
            min + ", \"max\": " + max + ", \"default\": " + value + ", \"permission\": 3}");
        add("{\"path\": \"Numbers/Array/" + e + "\", \"type\": \"NumericArray:" + e +
            "\", \"minSize\": 1, \"maxSize\": 4, \"min\": " + min + ", \"max\": " + max +
            ", \"default\": [" + value + ", " + min + "]}");
        add("{\"path\": \"Numbers/Sparse/" + e + "\", \"type\": \"NumericSparse:" + e +
            "\", \"table\": [" + min + ", " + value + ", " + max + "], \"default\": " + value +
            "}");
    }
    add(R"({"path": "Flags/On", "type": "Bool", "fixed": true, "default": true,
            "permission": 65535})");
    add(R"({"path": "Flags/Many", "type": "BoolArray", "minSize": 2, "maxSize": 5,
            "default": [true, false, true]})");
    add(R"({"path": "Texts/Mode", "type": "Enum", "localized": true, "default": -1,
            "table": [{"name": "off", "value": -1, "disabled": false},
                      {"name": "auto", "value": 4, "disabled": true}]})");
    add(R"({"path": "Texts/Name", "type": "String", "maxLength": 12, "default": "cam-1"})");
    add(R"({"path": "Texts/List", "type": "StringArray", "minSize": 0, "maxSize": 3,
            "default": ["a", "b"]})");
    add(R"({"path": "Texts/Choice", "type": "StringSparse", "table": ["x", "y"],
            "default": "y"})");
    add(R"({"path": "Look/Tint", "type": "Colour", "min": {"a": 0, "r": 0, "g": 0, "b": 0},
            "max": {"a": 255, "r": 255, "g": 128, "b": 255},
            "default": {"a": 1, "r": 2, "g": 64, "b": 255}})");
    for (char const* element : {"U16", "S32", "Float"}) {
        std::string const e = element;
        add("{\"path\": \"Look/Point" + e + "\", \"type\": \"Coordinate:" + e +
            "\", \"x\": {\"min\": 2, \"max\": 640, \"default\": 3}, \"y\": {\"min\": 1, "
            "\"max\": 480, \"default\": 4}}");
        add("{\"path\": \"Look/Box" + e + "\", \"type\": \"Rectangle:" + e +
            "\", \"topLeft\": {\"x\": {\"min\": 2, \"max\": 9, \"default\": 3}}, "
            "\"bottomRight\": {\"y\": {\"min\": 10, \"max\": 20, \"default\": 15}}}");
    }
    add(R"({"path": "Look/Boxes", "type": "RectArray:U16", "minSize": 1, "maxSize": 8,
            "topLeft": {"x": {"min": 0, "max": 100, "default": 1}}})");
    add(R"({"path": "Net/Host", "type": "Addr", "default": "camera.local"})");
    add(R"({"path": "Net/Server", "type": "Endpoint", "default": "[::1]:80"})");
    add(R"({"path": "Net/Stream", "type": "AppEndpoint", "default": "rtsp://10.0.0.1:554"})");
    add(R"({"path": "Net/Streams", "type": "AppEndpointArray", "minSize": 1, "maxSize": 2,
            "default": ["http://10.0.0.2:80", "rtsp://10.0.0.3:554"]})");
    add(R"({"path": "Shapes/Stream", "type": "Composite", "permission": 1, "children": [
            {"type": "Numeric:U16", "name": "Port", "min": 1, "max": 65535, "default": 80},
            {"type": "String", "name": "Codec", "maxLength": 8, "default": "pcm"},
            {"type": "Composite", "children": [{"type": "Bool", "default": true}]}]})");
    add(R"({"path": "Shapes/Group", "type": "Collection", "children": [
            {"type": "Numeric:S8", "id": 9, "permission": 2, "min": -3, "max": 3}]})");
    add(R"({"path": "Shapes/Extra", "type": "Extended", "default": {"first": "k", "second": "v"}})");
    add(R"({"path": "Shapes/Label", "type": "LocalizedString",
            "default": {"key": "Greeting", "arguments": ["Ann", "3"]}})");
    return Settings(body);
}

// Families whose IsEqualBounds never holds, not even against the Info itself.
bool BoundsCanHold(InfoBase const& info) {
    switch (info.GetType()) {
        case OruType_t::Enum:
        case OruType_t::NumericSparse:
        case OruType_t::StringSparse:
        case OruType_t::Extended:
        case OruType_t::LocalizedString:
            return false;
        default:
            return true;
    }
}

TEST(FilesDescription, EveryFamilyRoundTrips) {
    InfoItemDirectory first;
    ASSERT_EQ(ReadDescription(EveryFamily(), first), Problems());
    Holders holders;
    first.GetAllInfoItems(holders);
    // One setting per family name.
    EXPECT_EQ(holders.size(), Files::DescribedFamilies().size());
    EXPECT_EQ(Files::DescribedFamilies().size(), 52u);

    std::string const text = WriteDescription(first);
    InfoItemDirectory second;
    ASSERT_EQ(ReadDescription(text, second), Problems());
    EXPECT_EQ(WriteDescription(second), text);
    for (auto const& holder : holders) {
        InfoBase const& info = *holder->GetInfoHolder()->GetInfo();
        auto const again = second.FindInfo(info.GetId());
        ASSERT_NE(again, nullptr) << info.GetName();
        InfoBase const& read = *again->GetInfo();
        EXPECT_EQ(read.GetName(), info.GetName());
        EXPECT_EQ(read.GetPermission(), info.GetPermission());
        EXPECT_TRUE(read.IsEqualType(boost::intrusive_ptr<InfoBase const>(&info)))
            << info.GetName();
        if (BoundsCanHold(info)) {
            EXPECT_TRUE(read.IsEqualBounds(boost::intrusive_ptr<InfoBase const>(&info)))
                << info.GetName() << " of type " << static_cast<int>(info.GetType());
        }
    }

    // Values as given, read exactly.
    auto const gain = boost::dynamic_pointer_cast<NumericInfo<S8Traits> const>(
        InfoAt(second, "Numbers/Scalar/S8"));
    ASSERT_NE(gain, nullptr);
    EXPECT_EQ(gain->GetMin(), -5);
    EXPECT_EQ(gain->GetMax(), 90);
    EXPECT_EQ(gain->GetDefault(), 7);
    EXPECT_EQ(gain->GetPermission().Value(), 3);
    auto const tenth = boost::dynamic_pointer_cast<NumericInfo<FloatTraits> const>(
        InfoAt(second, "Numbers/Scalar/Float"));
    ASSERT_NE(tenth, nullptr);
    EXPECT_EQ(tenth->GetDefault(), 256.0f);
    auto const mode = boost::dynamic_pointer_cast<EnumInfo const>(InfoAt(second, "Texts/Mode"));
    ASSERT_NE(mode, nullptr);
    EXPECT_TRUE(mode->IsLocalized());
    EXPECT_EQ(mode->GetDefault(), -1);
    ASSERT_EQ(mode->GetTable().size(), 2u);
    EXPECT_EQ(mode->GetTable()[0].name, "off");
    EXPECT_EQ(mode->GetTable()[0].value, -1);
    EXPECT_TRUE(mode->GetTable()[1].disabled);
    auto const stream =
        boost::dynamic_pointer_cast<CompositeInfo const>(InfoAt(second, "Shapes/Stream"));
    ASSERT_NE(stream, nullptr);
    ASSERT_EQ(stream->GetSize(), 3u);
    EXPECT_EQ(stream->GetInfo(0)->GetName(), "Port");
    EXPECT_EQ(stream->GetInfo(2)->GetType(), OruType_t::Composite);
    auto const group =
        boost::dynamic_pointer_cast<CollectionInfo const>(InfoAt(second, "Shapes/Group"));
    ASSERT_NE(group, nullptr);
    ASSERT_EQ(group->GetSize(), 1u);
    EXPECT_EQ(group->GetInfo(0)->GetId(), 9u);
    EXPECT_EQ(group->GetInfo(0)->GetPermission().Value(), 2);
    auto const label =
        boost::dynamic_pointer_cast<LocalizedStringInfo const>(InfoAt(second, "Shapes/Label"));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->GetDefault().GetKey(), "Greeting");
    ASSERT_EQ(label->GetDefault().GetArguments().size(), 2u);
    EXPECT_EQ(label->GetDefault().GetArguments()[1]->GetValAsString(), "3");
    auto const stream2 =
        boost::dynamic_pointer_cast<AppEndpointInfo const>(InfoAt(second, "Net/Stream"));
    ASSERT_NE(stream2, nullptr);
    EXPECT_EQ(stream2->GetDefault().GetAppProtocolType(), AppProtocolType_t::Rtsp);
    EXPECT_EQ(stream2->GetDefault().GetPort(), 554);
    auto const server =
        boost::dynamic_pointer_cast<EndpointInfo const>(InfoAt(second, "Net/Server"));
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(server->GetDefault().ToString(), "[::1]:80");
}

TEST(FilesDescription, FreshInfosOfEveryFamilyRoundTrip) {
    // Only path and type: every bound and default is the fresh Info's own,
    // some of which no setter could give again.
    std::string body;
    for (std::string const& name : Files::DescribedFamilies()) {
        std::string path = "Fresh/" + name;
        std::replace(path.begin(), path.end(), ':', '-');
        body += (body.empty() ? "" : ",") +
                ("{\"path\": \"" + path + "\", \"type\": \"" + name + "\"}");
    }
    InfoItemDirectory first;
    ASSERT_EQ(ReadDescription(Settings(body), first), Problems());
    std::string const text = WriteDescription(first);
    InfoItemDirectory second;
    ASSERT_EQ(ReadDescription(text, second), Problems());
    EXPECT_EQ(WriteDescription(second), text);
    // A fresh floating scalar keeps its default of 0 below its minimum.
    auto const fresh = boost::dynamic_pointer_cast<NumericInfo<FloatTraits> const>(
        InfoAt(second, "Fresh/Numeric-Float"));
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->GetDefault(), 0.0f);
    EXPECT_EQ(fresh->GetMin(), std::numeric_limits<float>::min());
}

TEST(FilesDescription, NamesThatAreNoUtf8AreWrittenReplaced) {
    InfoItemDirectory directory;
    SectionId section;
    ASSERT_EQ(directory.AddSection("Odd", section), 0);
    boost::intrusive_ptr<InfoBase> info(
        new BoolInfo(section.GetInfoItemSectionId().CreateInfoItemId(0), "a\xff", Permission_t()));
    ASSERT_EQ(directory.AddInfo(new InfoHolder(info)), 0);
    std::string const text = WriteDescription(directory);
    EXPECT_NE(text.find("\"Odd/a\xef\xbf\xbd\""), std::string::npos) << text;
    InfoItemDirectory copy;
    EXPECT_EQ(ReadDescription(text, copy), Problems());
    EXPECT_NE(copy.FindInfo("Odd", "a\xef\xbf\xbd"), nullptr);
}

TEST(FilesDescription, ApplicationEndpointsKeepEveryField) {
    // Versions and prefix have no place in a URI: such a default is written
    // as an object.
    InfoItemDirectory directory;
    SectionId net;
    ASSERT_EQ(directory.AddSection("Net", net), 0);
    boost::intrusive_ptr<AppEndpointInfo> info(new AppEndpointInfo(
        net.GetInfoItemSectionId().CreateInfoItemId(0), "Api", Permission_t(7)));
    AppEndpoint<Net::Endpoint<Net::AddrStr>> const value(
        AppProtocolInfo_t(AppProtocolType_t::Https, 3, 2),
        Net::Endpoint<Net::AddrStr>::FromString("[fe80::1]:8443"), 64);
    info->SetDefault(value);
    ASSERT_EQ(directory.AddInfo(new InfoHolder(info)), 0);
    std::string const text = WriteDescription(directory);
    EXPECT_NE(text.find("\"endpoint\": \"[fe80::1]:8443\""), std::string::npos) << text;
    InfoItemDirectory copy;
    ASSERT_EQ(ReadDescription(text, copy), Problems());
    auto const read = boost::dynamic_pointer_cast<AppEndpointInfo const>(InfoAt(copy, "Net/Api"));
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(read->GetDefault() == value);
    EXPECT_EQ(read->GetPermission().Value(), 7);

    EXPECT_EQ(ReadDescription(Settings(R"({"path": "Net/B", "type": "AppEndpoint",
                                           "default": {"protocol": 5, "version": 70000,
                                                       "port": 1}},
                                          {"path": "Net/C", "type": "AppEndpointArray",
                                           "default": ["http://a:1", 7]})"),
                              copy),
              (Problems{{"/settings/0/default/port",
                         "unknown member; expected protocol, version, compatVersion, endpoint, "
                         "addrGroupPrefix"},
                        {"/settings/1/default/1", "expected a URI or an object, not a number"}}));
}

TEST(FilesDescription, ExtremeNumbersAndIdsSurviveTheRoundTrip) {
    InfoItemDirectory directory;
    SectionId section;
    ASSERT_EQ(directory.AddSection("Limits/Deep/Er/Est", section), 0);
    boost::intrusive_ptr<NumericInfo<U64Traits>> big(new NumericInfo<U64Traits>(
        section.GetInfoItemSectionId().CreateInfoItemId(17), "Big", Permission_t(0xBEEF)));
    big->SetMax(std::numeric_limits<unsigned long long>::max());
    big->SetMin(std::numeric_limits<unsigned long long>::max() - 1);
    ASSERT_EQ(directory.AddInfo(new InfoHolder(big)), 0);
    SectionId top;
    ASSERT_EQ(directory.AddSection("Top", top), 0);
    boost::intrusive_ptr<NumericInfo<S64Traits>> low(new NumericInfo<S64Traits>(
        top.GetInfoItemSectionId().CreateInfoItemId(3), "Low", Permission_t()));
    low->SetMin(std::numeric_limits<long long>::lowest());
    low->SetMax(std::numeric_limits<long long>::lowest() + 1);
    ASSERT_EQ(directory.AddInfo(new InfoHolder(low)), 0);
    boost::intrusive_ptr<NumericInfo<DoubleTraits>> tiny(new NumericInfo<DoubleTraits>(
        top.GetInfoItemSectionId().CreateInfoItemId(4), "Tiny", Permission_t()));
    tiny->SetMax(std::numeric_limits<double>::max());
    tiny->SetMin(std::numeric_limits<double>::denorm_min());
    tiny->SetDefault(1);
    ASSERT_EQ(directory.AddInfo(new InfoHolder(tiny)), 0);

    std::string const text = WriteDescription(directory);
    EXPECT_NE(text.find("18446744073709551615"), std::string::npos) << text;
    EXPECT_NE(text.find("-9223372036854775808"), std::string::npos) << text;
    // Id order: the top-level section's settings come first.
    EXPECT_LT(text.find("Top/Low"), text.find("Top/Tiny"));
    EXPECT_LT(text.find("Top/Tiny"), text.find("Limits/Deep/Er/Est/Big"));

    InfoItemDirectory copy;
    ASSERT_EQ(ReadDescription(text, copy), Problems());
    auto const bigAgain = boost::dynamic_pointer_cast<NumericInfo<U64Traits> const>(
        InfoAt(copy, "Limits/Deep/Er/Est/Big"));
    ASSERT_NE(bigAgain, nullptr);
    EXPECT_EQ(bigAgain->GetId(), big->GetId());
    EXPECT_EQ(bigAgain->GetMax(), std::numeric_limits<unsigned long long>::max());
    EXPECT_EQ(bigAgain->GetMin(), std::numeric_limits<unsigned long long>::max() - 1);
    EXPECT_EQ(bigAgain->GetPermission().Value(), 0xBEEF);
    auto const lowAgain =
        boost::dynamic_pointer_cast<NumericInfo<S64Traits> const>(InfoAt(copy, "Top/Low"));
    ASSERT_NE(lowAgain, nullptr);
    EXPECT_EQ(lowAgain->GetMin(), std::numeric_limits<long long>::lowest());
    auto const tinyAgain =
        boost::dynamic_pointer_cast<NumericInfo<DoubleTraits> const>(InfoAt(copy, "Top/Tiny"));
    ASSERT_NE(tinyAgain, nullptr);
    EXPECT_EQ(tinyAgain->GetMin(), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(tinyAgain->GetMax(), std::numeric_limits<double>::max());
    // The sections keep their numbers.
    EXPECT_EQ(copy.FindSection("Limits/Deep/Er/Est"), section);
    EXPECT_EQ(copy.FindSection("Top"), top);
}

TEST(FilesDescription, IdsAreTakenFromTheSectionOrCheckedAgainstIt) {
    InfoItemDirectory directory;
    SectionId input;
    ASSERT_EQ(directory.AddSection("Audio/Input", input), 0);
    InfoItemSectionId const base = input.GetInfoItemSectionId();
    for (std::size_t number : {0u, 5u}) {
        boost::intrusive_ptr<InfoBase> info(new BoolInfo(
            base.CreateInfoItemId(number), "B" + std::to_string(number), Permission_t()));
        ASSERT_EQ(directory.AddInfo(new InfoHolder(info)), 0);
    }
    // Past the highest number in use, in the order of the file.
    ASSERT_EQ(ReadDescription(Settings(R"({"path": "Audio/Input/Gain", "type": "Bool"},
                                           {"path": "Audio/Input/Level", "type": "Bool"},
                                           {"path": "Video/Size", "type": "Bool"})"),
                              directory),
              Problems());
    EXPECT_EQ(InfoAt(directory, "Audio/Input/Gain")->GetId(),
              static_cast<unsigned int>(base.CreateInfoItemId(6)));
    EXPECT_EQ(InfoAt(directory, "Audio/Input/Level")->GetId(),
              static_cast<unsigned int>(base.CreateInfoItemId(7)));
    // A new top-level section takes the next number after Audio's.
    SectionId const video = directory.FindSection("Video");
    ASSERT_TRUE(video.IsValid());
    EXPECT_EQ(video.GetSubsectionId(1), 1);
    EXPECT_EQ(InfoAt(directory, "Video/Size")->GetId(),
              static_cast<unsigned int>(video.GetInfoItemSectionId().CreateInfoItemId(0)));

    unsigned int const taken = base.CreateInfoItemId(5);
    unsigned int const elsewhere = video.GetInfoItemSectionId().CreateInfoItemId(3);
    std::string const file = Settings(
        "{\"path\": \"Audio/Input/Mute\", \"type\": \"Bool\", \"id\": " + std::to_string(taken) +
        "},\n{\"path\": \"Audio/Input/Echo\", \"type\": \"Bool\", \"id\": " +
        std::to_string(elsewhere) +
        "},\n{\"path\": \"Audio/Input/Tone\", \"type\": \"Bool\", \"id\": 4294967295}"
        ",\n{\"path\": \"Audio/Input/Gain\", \"type\": \"Bool\"}"
        ",\n{\"path\": \"Audio/Output/A\", \"type\": \"Bool\", \"id\": " +
        std::to_string(base.CreateInfoItemId(9)) + "}");
    std::string const before = WriteDescription(directory);
    EXPECT_EQ(Unpathed(ReadDescription(file, directory)),
              (Problems{{"/settings/0/id", "id 0x40000005 is taken by Audio/Input/B5"},
                        {"/settings/1/id",
                         "id 0x01000003 lies at depth 1, the section "
                         "Audio/Input has 2 levels"},
                        {"/settings/2/id", "id 0xFFFFFFFF is no info id"},
                        {"/settings/3/path", "Audio/Input/Gain exists already"},
                        {"/settings/4/id",
                         "id 0x40000009 lies in section Audio/Input, not in "
                         "Audio/Output"}}));
    EXPECT_EQ(WriteDescription(directory), before);
}

TEST(FilesDescription, IdsAreWrittenInHexAndReadInHexOrAsNumbers) {
    InfoItemDirectory written;
    ASSERT_EQ(ReadDescription(Settings(R"({"path": "Audio/Input/Gain", "type": "Bool"},
            {"path": "Audio/Stream", "type": "Composite",
             "children": [{"type": "Bool", "id": 10}]})"),
                              written),
              Problems());
    std::string const text = WriteDescription(written);
    EXPECT_NE(text.find(R"("id": "0x40000000")"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("id": "0x00000000")"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("id": "0x0000000A")"), std::string::npos) << text;
    EXPECT_EQ(text.find(R"("id": 1)"), std::string::npos) << text;

    struct Row {
        std::string id;
        unsigned int read;  // 0: refused with problem
        std::string problem;
    };
    std::string const wrong = "expected an id (a number or a string such as \"0x40000001\"), not ";
    Row const rows[] = {
        {R"("0x40000007")", 0x40000007, ""},
        {R"("0X4000000a")", 0x4000000A, ""},
        {"1073741831", 0x40000007, ""},
        {R"("0x400000071")", 0, wrong + "\"0x400000071\""},
        {R"("0x")", 0, wrong + "\"0x\""},
        {R"("1073741831")", 0, wrong + "\"1073741831\""},
        {R"("0x4000000g")", 0, wrong + "\"0x4000000g\""},
        {R"(" 0x40000007")", 0, wrong + "\" 0x40000007\""},
        {"true", 0, wrong + "a boolean"},
        {"-1", 0, "-1 does not fit an id (0 to 4294967295)"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.id);
        InfoItemDirectory directory;
        SectionId section;
        ASSERT_EQ(directory.AddSection("Audio/Input", section), 0);
        Problems const problems = ReadDescription(
            Settings(R"({"path": "Audio/Input/Gain", "type": "Bool", "id": )" + row.id +
                     R"(}, {"path": "Audio/Mix", "type": "Collection",
                        "children": [{"type": "Bool", "id": )" +
                     row.id + "}]}"),
            directory);
        if (row.read == 0) {
            EXPECT_EQ(problems,
                      (Problems{{"/settings/0/id", row.problem, "Audio/Input/Gain"},
                                {"/settings/1/children/0/id", row.problem, "Audio/Mix"}}));
            continue;
        }
        ASSERT_EQ(problems, Problems());
        EXPECT_EQ(InfoAt(directory, "Audio/Input/Gain")->GetId(), row.read);
        auto const mix =
            boost::static_pointer_cast<CollectionInfo const>(InfoAt(directory, "Audio/Mix"));
        ASSERT_EQ(mix->GetSize(), 1u);
        EXPECT_EQ(mix->GetInfo(0)->GetId(), row.read);
    }
}

TEST(FilesDescription, NumbersRunOut) {
    // 63 top-level sections use every number; a 64th has none.
    InfoItemDirectory directory;
    for (int i = 0; i < 63; ++i) {
        SectionId section;
        ASSERT_EQ(directory.AddSection("S" + std::to_string(i), section), 0);
    }
    EXPECT_EQ(ReadDescription(Settings(R"({"path": "S5/A", "type": "Bool"},
                                           {"path": "New/A", "type": "Bool"},
                                           {"path": "New/B", "type": "Bool"})"),
                              directory),
              (Problems{{"/settings/1/path",
                         "no section number is left for New: a level holds at most 63 sections",
                         "New/A"}}));
    EXPECT_EQ(directory.FindInfo("S5", "A"), nullptr);

    // A section at depth 4 has room for 63 settings: the all-ones number 63
    // is the section's own id, never a setting's.
    InfoItemDirectory deep;
    SectionId section;
    ASSERT_EQ(deep.AddSection("a/b/c/d", section), 0);
    std::string body;
    for (std::size_t i = 0; i < 64; ++i) {
        body += (i ? "," : "") +
                ("{\"path\": \"a/b/c/d/n" + std::to_string(i) + "\", \"type\": \"Bool\"}");
    }
    // Reported once, with the limit, however many settings do not fit.
    body += ",{\"path\": \"a/b/c/d/late\", \"type\": \"Bool\"}";
    EXPECT_EQ(ReadDescription(Settings(body), deep),
              (Problems{{"/settings/63/path",
                         "no info number is left in section a/b/c/d: it holds at most 63 settings",
                         "a/b/c/d/n63"}}));
    EXPECT_TRUE(deep.Empty());
    body = body.substr(0, body.rfind(",{"));
    body = body.substr(0, body.rfind(",{"));
    ASSERT_EQ(ReadDescription(Settings(body), deep), Problems());
    EXPECT_EQ(InfoAt(deep, "a/b/c/d/n62")->GetId(), 0xC000003Eu);
    EXPECT_EQ(ReadDescription(Settings(R"({"path": "a/b/c/d/more", "type": "Bool"})"), deep),
              (Problems{{"/settings/0/path",
                         "no info number is left in section a/b/c/d: it holds at most 63 settings",
                         "a/b/c/d/more"}}));
}

TEST(FilesDescription, TheLastInfoNumberOfEveryDepthIsOneBelowTheSection) {
    // With the last number taken, the next setting goes to the lowest free
    // number rather than to the all-ones number that is the section itself.
    struct Row {
        char const* section;
        unsigned int last;
        unsigned int next;
    };
    Row const rows[] = {{"a", 0x00FFFFFE, 0x00000001},
                        {"a/b", 0x4003FFFE, 0x40000001},
                        {"a/b/c", 0x80000FFE, 0x80000001},
                        {"a/b/c/d", 0xC000003E, 0xC0000001}};
    for (Row const& row : rows) {
        SCOPED_TRACE(row.section);
        InfoItemDirectory directory;
        SectionId section;
        ASSERT_EQ(directory.AddSection(row.section, section), 0);
        for (unsigned int id : {row.last, row.next - 1}) {
            ASSERT_EQ(directory.AddInfo(new InfoHolder(
                          new BoolInfo(id, "at" + std::to_string(id & 0xFFFFFF), Permission_t()))),
                      0);
        }
        std::string const path = std::string(row.section) + "/new";
        ASSERT_EQ(ReadDescription(Settings("{\"path\": \"" + path + "\", \"type\": \"Bool\"}"),
                                  directory),
                  Problems());
        EXPECT_EQ(InfoAt(directory, path)->GetId(), row.next);
    }
}

TEST(FilesDescription, EveryProblemIsReportedWithItsPointer) {
    std::string const file = Settings(R"(
        {"path": "Audio/Input/Gain", "type": "Numeric:U32", "min": 10, "max": 5},
        {"path": "Audio/Input/Odd", "type": "Numeric:U31"},
        {"path": "Audio/Input/Gain", "type": "Bool"},
        {"path": "Audio/Input/Level", "type": "Numeric:U8", "max": 300},
        {"path": "Audio/Input/Neg", "type": "Numeric:U16", "min": -1},
        {"path": "A/B", "type": "Numeric:S8", "default": 2.5},
        {"path": "A/C", "type": "Numeric:U64", "max": 18446744073709551616},
        {"path": "A/D", "type": "Numeric:Float", "max": 1e300},
        {"path": "A/E", "type": "String", "colour": 1},
        {"path": "A/F", "type": "Bool", "default": "yes"},
        {"path": "NoSection", "type": "Bool"},
        {"type": "Bool"},
        {"path": "A/G", "type": "StringArray", "minSize": 1, "maxSize": 2,
         "default": ["a", "b", "c"]},
        {"path": "A/H", "type": "Enum", "table": [{"name": "x", "value": 1}], "default": 2},
        {"path": "A/I", "type": "Numeric:S16", "min": 1, "default": 0},
        {"path": "A/J", "type": "BoolArray", "minSize": 3, "maxSize": 1},
        {"path": "A/K", "type": "Composite", "children": [{"type": "Bool", "path": "x"},
                                                          {"type": "Numeric:S8", "max": 128}]},
        {"path": "A/L", "type": "Numeric:S64", "min": -9223372036854775809},
        {"path": "A/M", "type": "NumericArray:U8", "default": [1, 256, -1]},
        {"path": "a/b/c/d/e/f", "type": "Bool"},
        {"path": "A/N", "type": 7, "permission": 65536},
        "text"
    )");
    InfoItemDirectory directory;
    Problems const problems = Unpathed(ReadDescription(file, directory));
    EXPECT_EQ(problems,
              (Problems{
                  {"/settings/0/max", "max is below min"},
                  {"/settings/1/type", "unknown type Numeric:U31; did you mean Numeric:U32?"},
                  {"/settings/2/path", "Audio/Input/Gain is described twice"},
                  {"/settings/3/max", "300 does not fit U8 (0 to 255)"},
                  {"/settings/4/min", "-1 does not fit U16 (0 to 65535)"},
                  {"/settings/5/default", "expected a whole number for S8, not 2.5"},
                  {"/settings/6/max",
                   "18446744073709551616 does not fit U64 (0 to 18446744073709551615)"},
                  {"/settings/7/max", "1e300 does not fit Float"},
                  {"/settings/8/colour", "unknown key colour"},
                  {"/settings/9/default", "expected true or false, not a string"},
                  {"/settings/10/path", "path NoSection needs a section and a name"},
                  {"/settings/11", "path is missing"},
                  {"/settings/12/default", "default has 3 elements; it must have 1 to 2"},
                  {"/settings/13/default", "default is not in the table"},
                  {"/settings/14/default", "default is below min"},
                  {"/settings/15/maxSize", "maxSize is below minSize"},
                  {"/settings/16/children/0/path", "unknown key path"},
                  {"/settings/16/children/1/max", "128 does not fit S8 (-128 to 127)"},
                  {"/settings/17/min",
                   "-9223372036854775809 does not fit S64 "
                   "(-9223372036854775808 to 9223372036854775807)"},
                  {"/settings/18/default/1", "256 does not fit U8 (0 to 255)"},
                  {"/settings/18/default/2", "-1 does not fit U8 (0 to 255)"},
                  {"/settings/19/path", "the section path a/b/c/d/e is deeper than 4 levels"},
                  {"/settings/20/permission", "65536 does not fit a permission (0 to 65535)"},
                  {"/settings/20/type", "expected a string, not a number"},
                  {"/settings/21", "expected an object, not a string"},
              }));
    EXPECT_TRUE(directory.Empty());
    std::vector<SectionId> sections;
    directory.GetTopLevelSections(sections);
    EXPECT_TRUE(sections.empty());
}

TEST(FilesDescription, ARefusedFileChangesNothing) {
    InfoItemDirectory directory;
    ASSERT_EQ(ReadDescription(Settings(R"({"path": "Audio/Input/Gain", "type": "Numeric:U32",
                                           "min": 0, "max": 100, "default": 50})"),
                              directory),
              Problems());
    std::string const before = WriteDescription(directory);
    // Good settings in new and old sections, then one bad one at the end.
    Problems const problems =
        ReadDescription(Settings(R"({"path": "Audio/Input/Level", "type": "Bool"},
                    {"path": "Video/Encoder/Rate", "type": "Numeric:U16", "max": 30},
                    {"path": "Video/Encoder/Bad", "type": "Numeric:U16", "max": 70000})"),
                        directory);
    EXPECT_EQ(problems, (Problems{{"/settings/2/max", "70000 does not fit U16 (0 to 65535)",
                                   "Video/Encoder/Bad"}}));
    EXPECT_EQ(WriteDescription(directory), before);
    EXPECT_FALSE(directory.FindSection("Video").IsValid());
    EXPECT_FALSE(directory.FindSection("Video/Encoder").IsValid());
    EXPECT_EQ(directory.FindInfo("Audio/Input", "Level"), nullptr);
    // The same file without the bad setting is taken whole.
    EXPECT_EQ(ReadDescription(Settings(R"({"path": "Audio/Input/Level", "type": "Bool"},
                    {"path": "Video/Encoder/Rate", "type": "Numeric:U16", "max": 30})"),
                              directory),
              Problems());
    EXPECT_NE(directory.FindInfo("Audio/Input", "Level"), nullptr);
    EXPECT_NE(directory.FindInfo("Video/Encoder", "Rate"), nullptr);
}

TEST(FilesDescription, HostileInputIsRefusedWithOneClearProblem) {
    InfoItemDirectory directory;
    auto read = [&directory](std::string const& text) {
        return Unpathed(ReadDescription(text, directory));
    };

    EXPECT_EQ(
        read("{\"settings\": [tru]}"),
        (Problems{
            {"",
             "malformed JSON at line 1, column 18 (byte 18): syntax error while parsing value - "
             "invalid literal; last read: '\"settings\": [tru]'"}}));
    EXPECT_EQ(read(""),
              (Problems{{"",
                         "malformed JSON at line 1, column 1 (byte 1): syntax error while parsing "
                         "value - unexpected end of input; expected '[', '{', or "
                         "a literal"}}));
    EXPECT_EQ(
        read("{\"settings\": [1e999]}"),
        (Problems{
            {"",
             "malformed JSON at line 1, column 19 (byte 19): number overflow parsing '1e999'"}}));
    EXPECT_EQ(read("[]"), (Problems{{"", "expected an object, not an array"}}));
    EXPECT_EQ(read("{}"), (Problems{{"", "settings is missing"}}));
    EXPECT_EQ(read("{\"settings\": {}, \"more\": 1}"),
              (Problems{{"/more", "unknown key more"},
                        {"/settings", "expected an array, not an object"}}));

    // Keys given twice, anywhere, each reported.
    EXPECT_EQ(read(Settings(R"({"path": "A/B", "type": "Bool", "type": "String"},
                               {"path": "A/C", "type": "Colour",
                                "min": {"a": 1, "a": 2}, "path": "A/D"})")),
              (Problems{{"/settings/0/type", "the key appears twice"},
                        {"/settings/1/min/a", "the key appears twice"},
                        {"/settings/1/path", "the key appears twice"}}));

    // Nesting far beyond any description, without a stack to match it.
    std::string const deep = std::string(200000, '[') + std::string(200000, ']');
    std::string deepest;
    for (int i = 0; i < 63; ++i) {
        deepest += "/0";
    }
    EXPECT_EQ(read(deep), (Problems{{deepest, "nested deeper than 64 levels"}}));

    // Huge texts are refused or taken, and messages stay short.
    std::string const huge(10 * 1024 * 1024, 'x');
    EXPECT_EQ(read(Settings("{\"path\": \"A/" + huge + "\", \"type\": \"Bool\"}")),
              (Problems{{"/settings/0/path", "path is longer than 1024 bytes"}}));
    // A cut never splits a character: 63 bytes, then a two-byte one.
    EXPECT_EQ(read(Settings("{\"path\": \"A/B\", \"type\": \"" + std::string(63, 'y') +
                            "\u00e9\u00e9\"}")),
              (Problems{{"/settings/0/type", "unknown type " + std::string(63, 'y') + "..."}}));
    EXPECT_EQ(read(Settings("{\"path\": \"A/B\", \"type\": \"" + huge + "\"}")),
              (Problems{{"/settings/0/type", "unknown type " + std::string(64, 'x') + "..."}}));
    EXPECT_EQ(
        read(Settings("{\"path\": \"A/B\", \"type\": \"String\", \"default\": \"" + huge + "\"}")),
        (Problems{{"/settings/0/default", "default is longer than maxLength 256"}}));
    EXPECT_TRUE(directory.Empty());
    // A maximum length of 0 keeps the whole default, which the setting's own
    // check then refuses: it admits the empty text only.
    EXPECT_EQ(read(Settings("{\"path\": \"A/B\", \"type\": \"String\", \"maxLength\": 0, "
                            "\"default\": \"" +
                            huge + "\"}")),
              (Problems{{"/settings/0/default",
                         "the text is 10485760 bytes, above the maximum length 0 bytes"}}));
    EXPECT_TRUE(directory.Empty());
}

TEST(FilesDescription, FamilyNamesAreThoseOfTheProgram) {
    std::vector<std::string> const names = Files::DescribedFamilies();
    auto has = [&names](std::string const& name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    for (char const* name : {"Bool",
                             "Numeric:U8",
                             "Numeric:Double",
                             "NumericArray:S16",
                             "NumericSparse:U64",
                             "Enum",
                             "String",
                             "StringArray",
                             "BoolArray",
                             "StringSparse",
                             "Colour",
                             "Coordinate:Float",
                             "Rectangle:S32",
                             "Addr",
                             "Endpoint",
                             "AppEndpoint",
                             "AppEndpointArray",
                             "RectArray:U16",
                             "Composite",
                             "Collection",
                             "Extended",
                             "LocalizedString"}) {
        EXPECT_TRUE(has(name)) << name;
    }
    EXPECT_FALSE(has("Orientation"));
    EXPECT_FALSE(has("Coordinate:U8"));
    EXPECT_EQ(names.front(), "Bool");
    EXPECT_EQ(names[1], "Numeric:U8");
}

TEST(FilesDescription, DefaultsTakeTheFormsOfValuesFiles) {
    InfoItemDirectory directory;
    ASSERT_EQ(ReadDescription(Settings(R"({"path": "V/Mode", "type": "Enum",
                                     "table": [{"name": "low", "value": 1},
                                               {"name": "high", "value": 2}],
                                     "default": "high"},
                                    {"path": "V/Tint", "type": "Colour", "min": [0, 0, 0, 0],
                                     "default": [1, 128, 64, 0]},
                                    {"path": "V/Peer", "type": "Endpoint",
                                     "default": {"address": "10.0.0.1", "port": 80}},
                                    {"path": "V/Ratio", "type": "Numeric:Float", "min": 0,
                                     "max": 1, "default": 1})"),
                              directory),
              Problems());
    auto const mode = boost::dynamic_pointer_cast<EnumInfo const>(InfoAt(directory, "V/Mode"));
    ASSERT_NE(mode, nullptr);
    EXPECT_EQ(mode->GetDefault(), 2);
    auto const tint = boost::dynamic_pointer_cast<ColourInfo const>(InfoAt(directory, "V/Tint"));
    ASSERT_NE(tint, nullptr);
    EXPECT_EQ(tint->GetDefault().a, 1.0f);
    EXPECT_EQ(tint->GetDefault().g, 64.0f);
    EXPECT_EQ(tint->GetDefault().b, 0.0f);
    auto const peer = boost::dynamic_pointer_cast<EndpointInfo const>(InfoAt(directory, "V/Peer"));
    ASSERT_NE(peer, nullptr);
    EXPECT_EQ(peer->GetDefault().ToString(), "10.0.0.1:80");

    // Written as values are: the entry by name, a float by its shortest digits.
    std::string const text = WriteDescription(directory);
    EXPECT_NE(text.find("\"default\": \"high\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"default\": 1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\"default\": \"10.0.0.1:80\""), std::string::npos) << text;
    InfoItemDirectory copy;
    ASSERT_EQ(ReadDescription(text, copy), Problems());
    EXPECT_EQ(WriteDescription(copy), text);

    // The values' words for a default that is no value of its family; nothing is added.
    InfoItemDirectory other;
    EXPECT_EQ(ReadDescription(Settings(R"({"path": "V/Mode", "type": "Enum",
                                           "table": [{"name": "low", "value": 1}],
                                           "default": "middle"},
                                          {"path": "V/Tint", "type": "Colour",
                                           "default": [1, 0.5, 0.25]},
                                          {"path": "V/Ratio", "type": "NumericArray:U8",
                                           "default": [1, "2"]})"),
                              other),
              (Problems{{"/settings/0/default", "no entry is named \"middle\"; allowed: low"},
                        {"/settings/1/default",
                         "expected an object {\"a\", \"r\", \"g\", \"b\"} or an array of 4 "
                         "numbers, not 3 elements"},
                        {"/settings/2/default/1", "expected a number, not a string"}}));
    EXPECT_TRUE(other.Empty());
}

TEST(FilesDescription, TheDocumentedExamplesAreRead) {
    // A relative source path is relative to the build directory of the tests,
    // where this program lies.
    std::string source = __FILE__;
    if (source.front() != '/') {
        char buffer[4096] = {};
        ssize_t const length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
        ASSERT_GT(length, 0);
        std::string const self(buffer, static_cast<std::size_t>(length));
        source = self.substr(0, self.rfind('/') + 1) + source;
    }
    std::ifstream in(source.substr(0, source.rfind("/tests/")) + "/docs/description-files.md");
    ASSERT_TRUE(in.good());
    std::stringstream text;
    text << in.rdbuf();
    std::string const doc = text.str();
    std::size_t examples = 0;
    for (std::size_t at = doc.find("```json\n"); at != std::string::npos;
         at = doc.find("```json\n", at)) {
        at += 8;
        std::string block = doc.substr(at, doc.find("```", at) - at);
        // A block lists settings one after another, or is a whole file.
        if (block.compare(0, 12, "{\"settings\":") != 0) {
            for (std::size_t next = block.find("}\n{"); next != std::string::npos;
                 next = block.find("}\n{", next)) {
                block.insert(next + 1, ",");
                next += 3;
            }
            block = Settings(block);
        }
        InfoItemDirectory directory;
        EXPECT_EQ(ReadDescription(block, directory), Problems()) << block;
        EXPECT_FALSE(directory.Empty()) << block;
        ++examples;
    }
    EXPECT_EQ(examples, 18u);
}

TEST(FilesDescription, ManySettingsTakeConsecutiveNumbers) {
    constexpr int k_settings = 20000;
    std::string body;
    body.reserve(k_settings * 80);
    for (int i = 0; i < k_settings; ++i) {
        body += (i ? ",\n" : "") + std::string("{\"path\": \"Sec") + std::to_string(i % 50) +
                "/Sub/N" + std::to_string(i) + "\", \"type\": \"Numeric:U32\", \"max\": 100}";
    }
    InfoItemDirectory directory;
    ASSERT_EQ(ReadDescription(Settings(body), directory), Problems());
    Holders holders;
    directory.GetAllInfoItems(holders);
    ASSERT_EQ(holders.size(), static_cast<std::size_t>(k_settings));
    // The 50 sections in order, each with numbers 0, 1, 2, ... in file order.
    SectionId const last = directory.FindSection("Sec49/Sub");
    EXPECT_EQ(last.GetSubsectionId(1), 49);
    EXPECT_EQ(InfoAt(directory, "Sec49/Sub/N" + std::to_string(k_settings - 1))->GetId(),
              static_cast<unsigned int>(
                  last.GetInfoItemSectionId().CreateInfoItemId(k_settings / 50 - 1)));
    std::string const text = WriteDescription(directory);
    InfoItemDirectory copy;
    ASSERT_EQ(ReadDescription(text, copy), Problems());
    EXPECT_EQ(WriteDescription(copy), text);
}

}  // namespace
