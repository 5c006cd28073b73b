#include <legacy/oru/files/check.h>

#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

#include "problem_print.h"

namespace {

using namespace Legacy::Oru;
using Files::Problem;
using Files::Problems;
using InfoPtr = boost::intrusive_ptr<InfoBase const>;
using ItemPtr = boost::intrusive_ptr<ItemBase>;

// ---- the invariant over every family ----------------------------------------

// The traits class of a numeric template's member, void for other classes.
template <class X>
struct TraitsOf {
    using Type = void;
};
template <template <class> class C, class T>
struct TraitsOf<C<T>> {
    using Type = T;
};

template <class E>
std::vector<E> Edges(std::mt19937_64& random) {
    std::vector<E> values = {std::numeric_limits<E>::lowest(), std::numeric_limits<E>::max(), E(0),
                             E(1)};
    if constexpr (std::is_signed<E>::value) {
        values.push_back(E(-1));
    }
    for (int i = 0; i < 24; ++i) {
        if constexpr (std::is_floating_point<E>::value) {
            // Whole numbers, fractions and huge ones: most fail the record.
            std::uniform_real_distribution<double> any(-1e6, 1e6);
            double const value = any(random);
            values.push_back(static_cast<E>(i % 2 ? value : static_cast<double>(random() % 4096)));
        } else {
            values.push_back(static_cast<E>(random()));
        }
    }
    return values;
}

template <class E>
std::string Json(E value) {
    if constexpr (std::is_floating_point<E>::value) {
        if (value != value) {
            return "\"NaN\"";
        }
        std::ostringstream out;
        out.precision(std::numeric_limits<E>::max_digits10);
        out << value;
        return out.str();
    } else {
        return std::to_string(value);
    }
}

// An Info of every kind with room for the candidates, and the candidates as
// values-file texts: the edges of its element type, its table, random ones.
struct Case {
    InfoPtr info;
    std::vector<std::string> values;
};

template <class T>
Case Make(std::mt19937_64& random) {
    using InfoT = typename T::Info;
    boost::intrusive_ptr<InfoBase> made(
        Catalogue::FindFamily(T::type, T::numericType)->makeInfo(7, "Setting", Permission_t()));
    auto& info = static_cast<InfoT&>(*made);
    Case out;
    auto strings = [&random](std::size_t count) {
        std::vector<std::string> texts = {"\"\"", "\"cam-1\"", "\"say \\\"hi\\\"\""};
        for (std::size_t i = 0; i < count; ++i) {
            texts.push_back("\"" + std::string(random() % 12, static_cast<char>('a' + i % 26)) +
                            "\"");
        }
        return texts;
    };
    if constexpr (std::is_same<InfoT, NumericInfo<typename TraitsOf<InfoT>::Type>>::value) {
        using E = typename TraitsOf<InfoT>::Type::Element;
        info.SetMin(std::numeric_limits<E>::lowest());
        info.SetMax(std::numeric_limits<E>::max() / 2);
        for (E const value : Edges<E>(random)) {
            out.values.push_back(Json(value));
        }
    }
    if constexpr (std::is_same<InfoT, NumericArrayInfo<typename TraitsOf<InfoT>::Type>>::value) {
        using E = typename TraitsOf<InfoT>::Type::Element;
        info.SetMinSize(1);
        info.SetMaxSize(3);
        std::vector<E> const edges = Edges<E>(random);
        for (std::size_t i = 0; i + 4 <= edges.size(); i += 2) {
            out.values.push_back("[" + Json(edges[i]) + "," + Json(edges[i + 1]) + "]");
        }
        out.values.push_back("[" + Json(edges[0]) + "]");
        out.values.push_back("[]");
        out.values.push_back("[1,2,3,4]");
    }
    if constexpr (std::is_same<InfoT, NumericSparseInfo<typename TraitsOf<InfoT>::Type>>::value) {
        using E = typename TraitsOf<InfoT>::Type::Element;
        std::vector<E> const edges = Edges<E>(random);
        // Not the lowest: signed elements compare by a wrapping distance.
        std::vector<E> table = {E(0), E(1)};
        info.SetTable(table);
        for (E const value : edges) {
            out.values.push_back(Json(value));
        }
    }
    if constexpr (std::is_same<InfoT, EnumInfo>::value) {
        info.SetTable({{"auto", 0, false}, {"manual", 1, false}, {"off", 2, true}});
        out.values = {"\"auto\"", "\"manual\"", "\"off\"", "0", "1", "2", "3", "-1"};
    }
    if constexpr (std::is_same<InfoT, StringInfo>::value) {
        info.SetMaxLength(8);
        out.values = strings(12);
    }
    if constexpr (std::is_same<InfoT, StringArrayInfo>::value) {
        info.SetMaxSize(2);
        out.values = {"[]", "[\"a\"]", "[\"a b\",\"c\"]", "[\"\",\"\",\"\"]"};
    }
    if constexpr (std::is_same<InfoT, BoolArrayInfo>::value) {
        info.SetMaxSize(2);
        out.values = {"[]", "[true]", "[true,false]", "[true,true,true]"};
    }
    if constexpr (std::is_same<InfoT, StringSparseInfo>::value) {
        std::vector<std::string> table = {"low", "high", "123456789"};
        info.SetTable(table);
        out.values = {"\"low\"", "\"high\"", "\"123456789\"", "\"middle\""};
    }
    if constexpr (std::is_same<InfoT, BoolInfo>::value) {
        info.SetFixed(true);
        out.values = {"true", "false"};
    }
    if constexpr (std::is_same<InfoT, ColourInfo>::value) {
        out.values = {"[0,0,0,0]", "[255,1,2,3]", "[1,0.5,0.25,0]", "[1,-1,2,3]"};
    }
    if constexpr (std::is_same<InfoT, CoordinateInfo<typename TraitsOf<InfoT>::Type>>::value) {
        using E = typename TraitsOf<InfoT>::Type::Element;
        info.X()->SetMin(std::numeric_limits<E>::lowest());
        info.Y()->SetMax(std::numeric_limits<E>::max() / 2);
        for (E const value : Edges<E>(random)) {
            out.values.push_back("[" + Json(value) + "," + Json(value) + "]");
        }
    }
    if constexpr (std::is_same<InfoT, RectInfo<typename TraitsOf<InfoT>::Type>>::value ||
                  std::is_same<InfoT, RectArrayInfo<typename TraitsOf<InfoT>::Type>>::value) {
        using E = typename TraitsOf<InfoT>::Type::Element;
        info.BottomRight()->X()->SetMax(std::numeric_limits<E>::max() / 2);
        std::vector<E> edges = Edges<E>(random);
        edges.insert(edges.begin(), {E(1), E(1), E(2), E(2)});
        for (std::size_t i = 0; i + 4 <= edges.size(); i += 4) {
            std::string const rect = "[" + Json(edges[i]) + "," + Json(edges[i + 1]) + "," +
                                     Json(edges[i + 2]) + "," + Json(edges[i + 3]) + "]";
            bool const array =
                std::is_same<InfoT, RectArrayInfo<typename TraitsOf<InfoT>::Type>>::value;
            out.values.push_back(array ? "[" + rect + "," + rect + "]" : rect);
        }
    }
    if constexpr (std::is_same<InfoT, AddrInfo>::value) {
        out.values = {"\"10.0.0.1\"", "\"10.0.0.400\"", "\"cam.local\"", "\"::1\"", "\"a/b\""};
    }
    if constexpr (std::is_same<InfoT, EndpointInfo>::value) {
        out.values = {"\"10.0.0.1:80\"", "\"10.0.0.1\"", "\"[::1]:554\"", "\"10.0.0.1:99999\""};
    }
    if constexpr (std::is_same<InfoT, AppEndpointInfo>::value) {
        out.values = {"\"http://10.0.0.1:80\"", "\"rtsp://cam:554/live\"", "\"htp://h:1\"",
                      "\"https://[::1]:443\""};
    }
    if constexpr (std::is_same<InfoT, AppEndpointArrayInfo>::value) {
        info.SetMaxSize(2);
        out.values = {"[]", "[\"http://10.0.0.1:80\"]",
                      "[\"rtsp://a:1\",\"rtsp://b:2\",\"rtsp://c:3\"]"};
    }
    if constexpr (std::is_same<InfoT, CompositeInfo>::value) {
        info.AddInfo(CompositeInfo::InfoPtr(new NumericInfo<U16Traits>(0, "n", Permission_t())));
        info.AddInfo(CompositeInfo::InfoPtr(new StringInfo(0, "s", Permission_t())));
        out.values = {"[1,\"a\"]", "[65535,\"\"]", "[1]"};
    }
    out.info = made;
    return out;
}

TEST(FilesCheck, EveryValueThatPassesComesBackFromItsTextAndRecord) {
    std::mt19937_64 random(25);
    std::size_t families = 0;
    Catalogue::ForEachFamily([&](auto tag) {
        using T = decltype(tag);
        if constexpr (T::hasInfo && T::record == Catalogue::Record::Read) {
            Case const made = Make<T>(random);
            SCOPED_TRACE(Catalogue::FamilyName(T::type, T::numericType));
            std::size_t passed = 0;
            std::size_t refused = 0;
            for (std::string const& json : made.values) {
                SCOPED_TRACE(json);
                Problems problems;
                ItemPtr const item = Files::ReadValue(json, *made.info, problems);
                if (!item) {
                    ++refused;
                    continue;
                }
                if (!Files::Check(*item, made.info).empty()) {
                    ++refused;
                    continue;
                }
                ++passed;
                std::string const text = Files::WriteValue(*item);
                Problems again;
                ItemPtr const back = Files::ReadValue(text, *made.info, again);
                ASSERT_NE(back, nullptr) << text;
                EXPECT_TRUE(item->IsEqualValue(back)) << text;
                EXPECT_EQ(Files::WriteValue(*back), text);
                ItemBase::SerialStruct_t record;
                ASSERT_EQ(item->Serialize(&record), 0);
                ItemBase::ConstSerialStruct_t const view(record);
                ItemPtr read;
                ASSERT_EQ(ItemBase::Deserialize(&view, read), 0);
                EXPECT_TRUE(item->IsEqualValue(read)) << text;
                EXPECT_EQ(Files::WriteValue(*read), text);
                // The setting's own form (an entry's name) comes back too.
                std::string const named = Files::WriteValue(*item, *made.info);
                ItemPtr const byName = Files::ReadValue(named, *made.info, again);
                ASSERT_NE(byName, nullptr) << named;
                EXPECT_TRUE(item->IsEqualValue(byName)) << named;
                EXPECT_EQ(Files::WriteValue(*read, *made.info), named);
            }
            // Each family's candidates include values it holds and values it refuses.
            EXPECT_GT(passed, 0u);
            EXPECT_GT(refused, 0u);
            ++families;
        }
    });
    EXPECT_EQ(families, 49u);
}

// ---- what was seen, refused with its reason at every entry point -------------

class Camera : public InfoItemDirectory {};

char const k_description[] = R"({"settings": [
  {"path": "Imaging/Mode", "type": "Enum", "default": "auto",
   "table": [{"name": "auto", "value": 0}, {"name": "manual", "value": 1},
             {"name": "shutter-priority", "value": 2}, {"name": "night", "value": 3,
              "disabled": true}]},
  {"path": "Imaging/Sharpness", "type": "Numeric:U8", "min": 0, "max": 100, "default": 50},
  {"path": "Overlay/PrivacyMasks", "type": "RectArray:U16", "minSize": 0, "maxSize": 8,
   "bottomRight": {"x": {"min": 0, "max": 3840}, "y": {"min": 0, "max": 2160}}},
  {"path": "Overlay/Servers", "type": "AppEndpointArray", "maxSize": 1},
  {"path": "Overlay/Tint", "type": "Colour", "min": [0, 0, 0, 0], "max": [1, 1, 1, 1]},
  {"path": "Video/Rate", "type": "Numeric:Float", "min": 0, "max": 100, "default": 25},
  {"path": "Video/Preset", "type": "StringSparse", "table": ["12345678"], "default": "12345678"},
  {"path": "Net/Snapshot", "type": "AppEndpoint"},
  {"path": "Net/Peer", "type": "Endpoint"},
  {"path": "Net/Host", "type": "Addr"},
  {"path": "Video/Pair", "type": "Composite", "children": [{"type": "Bool"}, {"type": "Bool"}]}
]})";

std::string Masks(int count, int right) {
    std::string masks = "[";
    for (int i = 0; i < count; ++i) {
        masks += std::string(i ? "," : "") +
                 "{\"left\":0,\"top\":0,\"right\":" + std::to_string(i == 3 ? right : 10) +
                 ",\"bottom\":10}";
    }
    return masks + "]";
}

TEST(FilesCheck, WhatWasSeenIsRefusedWithItsReasonByEveryEntryPoint) {
    Camera camera;
    ASSERT_EQ(Files::ReadDescription(k_description, camera), Problems());
    struct Row {
        char const* path;
        std::string value;
        char const* pointer;
        std::string message;
    };
    std::vector<Row> const rows = {
        {"Imaging/Mode", "3", "/Imaging~1Mode",
         "\"night\" is disabled; allowed: auto, manual, shutter-priority"},
        {"Imaging/Mode", "7", "/Imaging~1Mode",
         "7 is no entry; allowed: auto, manual, shutter-priority"},
        {"Imaging/Sharpness", "100", "", ""},
        {"Overlay/PrivacyMasks", Masks(9, 10), "/Overlay~1PrivacyMasks",
         "9 rectangles, above the maximum 8"},
        {"Overlay/PrivacyMasks", Masks(4, 4000), "/Overlay~1PrivacyMasks/3/right",
         "4000 is above the maximum 3840"},
        {"Overlay/Servers", "[\"http://10.0.0.1:80\",\"http://10.0.0.2:80\"]", "/Overlay~1Servers",
         "2 endpoints, above the maximum 1"},
        {"Overlay/Tint", "{\"a\":1,\"r\":2,\"g\":0,\"b\":0}", "/Overlay~1Tint/r",
         "2 is above the maximum 1"},
        {"Video/Rate", "6.5", "/Video~1Rate",
         "6.5 does not survive its record: it reads back as 6"},
        {"Video/Rate", "6", "", ""},
        {"Overlay/Tint", "{\"a\":1,\"r\":0.9,\"g\":0,\"b\":0}", "/Overlay~1Tint",
         "{\"a\":1,\"r\":0.9,\"g\":0,\"b\":0} does not survive its record: it reads back as "
         "{\"a\":1,\"r\":0,\"g\":0,\"b\":0}"},
        {"Net/Snapshot", "\"http://10.0.0.5/snapshot.jpg\"", "/Net~1Snapshot",
         "the path /snapshot.jpg cannot be held: the family holds a host and a port, not a path"},
        {"Net/Snapshot", "\"rtsp://10.0.0.20:8554/live/main\"", "/Net~1Snapshot",
         "the path /live/main cannot be held: the family holds a host and a port, not a path"},
        {"Net/Snapshot", "\"http://10.0.0.5:99999\"", "/Net~1Snapshot",
         "port 99999 is above the maximum 65535"},
        {"Net/Snapshot", "\"rtsp://10.0.0.20:8554\"", "", ""},
        {"Net/Peer", "\"10.0.0.5:99999\"", "/Net~1Peer", "port 99999 is above the maximum 65535"},
        {"Net/Peer", "\"10.0.0.5:099999\"", "/Net~1Peer", "port 099999 is above the maximum 65535"},
        // A port in range behind a second colon is no port.
        {"Net/Peer", "\"a:1:2\"", "/Net~1Peer", "a:1 is no host name or address"},
        {"Net/Snapshot", "\"http://h:65535:2\"", "/Net~1Snapshot",
         "h:65535 is no host name or address"},
        {"Net/Host", "\"10.0.0.400\"", "/Net~1Host",
         "10.0.0.400 is no IPv4 address: 400 is above 255"},
        {"Net/Host", "\"fffff::1\"", "/Net~1Host", "fffff::1 is no host name or address"},
        {"Net/Host", "\":::::\"", "/Net~1Host", "::::: is no host name or address"},
        {"Net/Host", "\"::ffff:10.0.0.1\"", "", ""},
        {"Net/Peer", "\"[1::2::3]:80\"", "/Net~1Peer", "1::2::3 is no host name or address"},
        {"Net/Peer", "\"[fe80::1]:80\"", "", ""},
        // Dotted digits are an IPv4 address or none; names keep to their labels.
        {"Net/Host", "\"1.2.3\"", "/Net~1Host",
         "1.2.3 is no IPv4 address: it needs four numbers of 0 to 255"},
        {"Net/Peer", "\"1.2.3.4.5:1\"", "/Net~1Peer",
         "1.2.3.4.5 is no IPv4 address: it needs four numbers of 0 to 255"},
        {"Net/Peer", "\"-h:1\"", "/Net~1Peer", "-h is no host name or address"},
        {"Net/Host", "\"cam..local\"", "/Net~1Host", "cam..local is no host name or address"},
        {"Net/Host", "\"cam-1.local.\"", "", ""},
        {"Net/Host", "\"_sip.cam-1\"", "", ""},
    };
    for (Row const& row : rows) {
        std::string const json = "{\"" + std::string(row.path) + "\": " + row.value + "}";
        SCOPED_TRACE(json);
        Files::ValuesReport const dry = Files::ReadValues(json, camera, Files::Apply::Nothing);
        EXPECT_EQ(dry.applied, 0u);
        Files::ValuesReport const report = Files::ReadValues(json, camera);
        if (row.message.empty()) {
            EXPECT_EQ(report.problems, Problems());
            EXPECT_EQ(dry.problems, Problems());
            EXPECT_EQ(report.applied, 1u);
            continue;
        }
        EXPECT_EQ(report.problems, (Problems{{row.pointer, row.message, row.path}}));
        EXPECT_EQ(dry.problems, report.problems);
        EXPECT_EQ(report.applied, 0u);
        // The same value, read alone and checked, and explained.
        auto const slot = camera.FindInfoItem(row.path);
        ASSERT_NE(slot, nullptr);
        InfoPtr const info = slot->GetInfoHolder()->GetInfo();
        Problems unread;
        ItemPtr const item = Files::ReadValue(row.value, *info, unread, row.pointer);
        ASSERT_NE(item, nullptr);
        Problems const checked = Files::Check(*item, info, "/" + Files::PointerToken(row.path));
        ASSERT_EQ(checked.size(), 1u);
        EXPECT_EQ(checked[0].pointer, row.pointer);
        EXPECT_EQ(checked[0].message, row.message);
        // Explain gives the model's words where its check refuses, the
        // files rule's otherwise.
        auto const why = Files::Explain(*item, info);
        ASSERT_TRUE(why.has_value());
        EXPECT_EQ(why->text.rfind("Setting '" + info->GetName() + "': ", 0), 0u) << why->text;
        if (item->Validate(info) == nullptr) {
            EXPECT_NE(why->text.find(row.message), std::string::npos) << why->text;
        }
    }
}

TEST(FilesCheck, ReadingRefusesWhatTheFormWouldWriteBackOtherwise) {
    Camera camera;
    ASSERT_EQ(Files::ReadDescription(k_description, camera), Problems());
    struct Row {
        char const* path;
        char const* value;
        char const* message;
    };
    Row const rows[] = {
        {"Net/Snapshot", "\"htp://10.0.0.5:80\"", "unknown scheme htp; did you mean http?"},
        {"Net/Peer", "\"10.0.0.5\"", "10.0.0.5 has no port; write it as 10.0.0.5:PORT"},
        {"Net/Snapshot", "\"http://:80\"",
         "http://:80 names no host; write it as http://HOST:PORT"},
        {"Net/Snapshot", "\"rtsp://:0\"", "rtsp://:0 names no host; write it as rtsp://HOST:PORT"},
        {"Net/Snapshot", "\"http://\"", "http:// names no host; write it as http://HOST:PORT"},
        {"Imaging/Mode", "\"manul\"", "no entry is named \"manul\"; did you mean manual?"},
        {"Video/Rate", "16777217", "16777217 is not exact in Float: it would be held as 16777216"},
        {"Video/Pair", "[true]", "expected 2 values, one per part, not 1"},
        {"Imaging/Sharpnes", "5", "no setting has this path; did you mean Imaging/Sharpness?"},
    };
    for (Row const& row : rows) {
        std::string const json = "{\"" + std::string(row.path) + "\": " + row.value + "}";
        SCOPED_TRACE(json);
        Files::ValuesReport const report = Files::ReadValues(json, camera);
        ASSERT_EQ(report.problems.size(), 1u);
        EXPECT_EQ(report.problems[0].message, row.message);
        EXPECT_EQ(report.problems[0].path, row.path);
        EXPECT_EQ(Files::ToString(report.problems[0]),
                  "/" + Files::PointerToken(row.path) + ": " + row.message);
    }
    // The same unknown path twice is a repeated key, as a known one is.
    Files::ValuesReport const twice =
        Files::ReadValues("{\"Imaging/Sharpnes\": 5, \"Imaging/Sharpnes\": 6}", camera);
    EXPECT_EQ(Unpathed(twice.problems),
              (Problems{{"/Imaging~1Sharpnes", "the key appears twice"}}));
}

TEST(FilesCheck, DescriptionsAreHeldToTheSameRule) {
    struct Row {
        char const* setting;
        Problems problems;
    };
    std::vector<Row> const rows = {
        // The bound of a text is inclusive.
        {R"({"path": "A/Name", "type": "String", "maxLength": 5, "default": "12345"})", {}},
        {R"({"path": "A/Name", "type": "String", "maxLength": 5, "default": "123456"})",
         {{"/settings/0/default", "default is longer than maxLength 5", "A/Name"}}},
        {R"({"path": "A/Mode", "type": "Enum", "default": "b",
             "table": [{"name": "a", "value": 1}, {"name": "b", "value": 2, "disabled": true}]})",
         {{"/settings/0/default", "\"b\" is disabled; allowed: a", "A/Mode"}}},
        {R"({"path": "A/Rate", "type": "NumericSparse:Float", "table": [12.5, 25]})",
         {{"/settings/0/table/0", "12.5 does not survive its record: it reads back as 12",
           "A/Rate"}}},
        {R"({"path": "A/Tint", "type": "Colour", "max": [1, 1, 1, 1], "default": [1, 2, 0, 0]})",
         {{"/settings/0/default/r", "2 is above the maximum 1", "A/Tint"}}},
        {R"({"path": "A/Api", "type": "AppEndpoint", "default": "http://10.0.0.5/a.jpg"})",
         {{"/settings/0/default",
           "the path /a.jpg cannot be held: the family holds a host and a port, not a path",
           "A/Api"}}},
        {R"({"path": "Video/Main/Gop", "type": "String", "maxlength": 4})",
         {{"/settings/0/maxlength", "unknown key maxlength; did you mean maxLength?",
           "Video/Main/Gop"}}},
        {R"({"path": "A/B", "type": "numeric:u8"})",
         {{"/settings/0/type", "unknown type numeric:u8; did you mean Numeric:U8?", "A/B"}}},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.setting);
        InfoItemDirectory directory;
        EXPECT_EQ(
            Files::ReadDescription(std::string("{\"settings\": [") + row.setting + "]}", directory),
            row.problems);
    }
    Problem const named{"/settings/34/maxlength", "unknown key maxlength; did you mean maxLength?",
                        "Video/Main/Gop"};
    EXPECT_EQ(Files::ToString(named),
              "/settings/34/maxlength (Video/Main/Gop): unknown key maxlength; did you mean "
              "maxLength?");
}

// Whole numbers and flags skip the round trip in Check: the extremes of each
// element type, where a narrowing or a sign would show, must still pass only
// when their record and text give them back.
TEST(FilesCheck, WholeNumbersComeBackAtTheirExtremes) {
    std::size_t families = 0;
    Catalogue::ForEachFamily([&](auto tag) {
        using T = decltype(tag);
        using InfoT = typename T::Info;
        if constexpr (!T::hasInfo) {
            return;
        }
        SCOPED_TRACE(Catalogue::FamilyName(T::type, T::numericType));
        std::vector<ItemPtr> items;
        boost::intrusive_ptr<InfoBase> info(
            Catalogue::FindFamily(T::type, T::numericType)->makeInfo(7, "Setting", Permission_t()));
        if constexpr (std::is_same<InfoT, BoolInfo>::value) {
            items = {BoolItem::Create(7, true), BoolItem::Create(7, false)};
        } else if constexpr (T::numericType != NumericType_t::Undefined &&
                             T::numericType != NumericType_t::Float &&
                             T::numericType != NumericType_t::Double) {
            using Traits = typename TraitsOf<InfoT>::Type;
            using E = typename Traits::Element;
            std::vector<E> const edges = {std::numeric_limits<E>::lowest(),
                                          std::numeric_limits<E>::max(), E(0)};
            if constexpr (std::is_same<InfoT, NumericInfo<Traits>>::value) {
                static_cast<InfoT&>(*info).SetMin(edges[0]);
                static_cast<InfoT&>(*info).SetMax(edges[1]);
                for (E const edge : edges) {
                    items.push_back(NumericItem<Traits>::Create(7, edge));
                }
            } else if constexpr (std::is_same<InfoT, NumericSparseInfo<Traits>>::value) {
                std::vector<E> table = edges;
                static_cast<InfoT&>(*info).SetTable(table);
                for (E const edge : edges) {
                    boost::intrusive_ptr<NumericSparseItem<Traits>> item(
                        new NumericSparseItem<Traits>(7));
                    item->SetVal(edge);
                    items.push_back(item);
                }
            } else if constexpr (std::is_same<InfoT, NumericArrayInfo<Traits>>::value) {
                boost::intrusive_ptr<NumericArrayItem<Traits>> item(
                    new NumericArrayItem<Traits>(7));
                item->Val() = edges;
                items.push_back(item);
            }
        }
        if (items.empty()) {
            return;
        }
        ++families;
        InfoPtr const checked(info);
        for (ItemPtr const& item : items) {
            std::string const text = Files::WriteValue(*item, *info);
            SCOPED_TRACE(text);
            EXPECT_EQ(Files::Check(*item, checked), Problems());
            Problems problems;
            ItemPtr const back = Files::ReadValue(text, *info, problems);
            ASSERT_NE(back, nullptr);
            EXPECT_TRUE(item->IsEqualValue(back));
            ItemBase::SerialStruct_t record;
            ASSERT_EQ(item->Serialize(&record), 0);
            ItemBase::ConstSerialStruct_t const view(record);
            ItemPtr read;
            ASSERT_EQ(ItemBase::Deserialize(&view, read), 0);
            EXPECT_TRUE(item->IsEqualValue(read));
            EXPECT_EQ(Files::WriteValue(*read, *info), text);
        }
    });
    // Bool and the eight whole element types of three families.
    EXPECT_EQ(families, 25u);
}

TEST(FilesCheck, ArraysTakeExactlyTheirMaximumSize) {
    NumericArrayInfo<U8Traits> info(1, "Levels", Permission_t());
    info.SetMaxSize(3);
    NumericArrayItem<U8Traits> item(1);
    EXPECT_EQ(item.SetVal({1, 2, 3}, info), 0);
    EXPECT_EQ(item.GetSize(), 3u);
    EXPECT_NE(item.SetVal({1, 2, 3, 4}, info), 0);
    EXPECT_EQ(item.GetSize(), 3u);
}

}  // namespace
