#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <legacy/oru/files/description.h>
#include <legacy/oru/files/values.h>
#include <legacy/oru/oru.h>

#include "problem_print.h"
#include "recording_directory.h"

namespace {

using namespace Legacy::Oru;
using Files::Apply;
using Files::Problem;
using Files::Problems;
using Files::ReadValue;
using Files::ReadValues;
using Files::ValuesReport;
using Files::WriteValue;
using Files::WriteValues;
using OruTest::HoldInfo;
using OruTest::HoldItem;
using OruTest::ItemHolderPtr;
using OruTest::RecordingDirectory;

using InfoPtr = boost::intrusive_ptr<InfoBase>;
using ItemPtr = boost::intrusive_ptr<ItemBase>;
using StrEndpoint = Net::Endpoint<Net::AddrStr>;
using StrAppEndpoint = AppEndpoint<StrEndpoint>;

// The model has no Info class for orientations; a caller that keeps one in a
// directory brings its own.
class OrientationInfo : public InfoBase {
public:
    using InfoBase::DeepCopy;
    using InfoBase::InfoBase;
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override {
        return new OrientationInfo(id, name, permission);
    }
    ItemBase* CreateItem() const override { return new OrientationItem(GetId()); }
    OruType_t GetType() const override { return OruType_t::Orientation; }
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const&) const override { return true; }
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const&) override { return 0; }
    int AssignValue(boost::intrusive_ptr<InfoBase const> const&, bool*) override { return 0; }
    void DumpVal(std::ostream&) const override {}
    std::ostream& operator<<(std::ostream& out) const override { return out; }
};

// One setting of the round trip: how to make its Info under an id, and the
// value it carries there.
struct Setting {
    std::string name;
    std::function<InfoPtr(unsigned int)> info;
    std::function<ItemPtr(unsigned int)> item;
};

template <class I, class... Extra>
boost::intrusive_ptr<I> NewInfo(unsigned int id, std::string const& name, Extra... extra) {
    return boost::intrusive_ptr<I>(new I(id, name, Permission_t(3), extra...));
}

// Values at the edges of each element type.
template <class T>
std::vector<typename T::Element> Edges() {
    using E = typename T::Element;
    if constexpr (std::is_floating_point<E>::value) {
        // The wire's float mappings carry whole numbers whose bytes reversed
        // are exact too; fractions and negatives read back as other numbers.
        return {E(65536), E(0), E(1)};
    } else if constexpr (std::is_signed<E>::value) {
        return {std::numeric_limits<E>::lowest(), std::numeric_limits<E>::max(), E(-1)};
    } else {
        return {std::numeric_limits<E>::max(), E(0), E(1)};
    }
}

template <class T>
void AddNumericSettings(std::vector<Setting>& settings) {
    using E = typename T::Element;
    char const* const names[] = {"",    "U8",  "S8",  "U16",   "S16",   "U32",
                                 "S32", "U64", "S64", "Float", "Double"};
    std::string const suffix = std::string(":") + names[static_cast<int>(T::k_numericType)];
    settings.push_back(Setting{
        "Numeric" + suffix,
        [suffix](unsigned int id) -> InfoPtr {
            auto info = NewInfo<NumericInfo<T>>(id, "Numeric" + suffix);
            info->SetMin(std::numeric_limits<E>::lowest());
            info->SetMax(std::numeric_limits<E>::max());
            return info;
        },
        [](unsigned int id) -> ItemPtr { return NumericItem<T>::Create(id, Edges<T>()[0]); }});
    settings.push_back(Setting{"NumericArray" + suffix,
                               [suffix](unsigned int id) -> InfoPtr {
                                   return NewInfo<NumericArrayInfo<T>>(id, "NumericArray" + suffix);
                               },
                               [](unsigned int id) -> ItemPtr {
                                   boost::intrusive_ptr<NumericArrayItem<T>> item(
                                       new NumericArrayItem<T>(id));
                                   item->SetVal(Edges<T>());
                                   return item;
                               }});
    settings.push_back(Setting{"NumericSparse" + suffix,
                               [suffix](unsigned int id) -> InfoPtr {
                                   auto info =
                                       NewInfo<NumericSparseInfo<T>>(id, "NumericSparse" + suffix);
                                   std::vector<E> table = Edges<T>();
                                   info->SetTable(table);
                                   return info;
                               },
                               [](unsigned int id) -> ItemPtr {
                                   return NumericSparseItem<T>::Create(id, Edges<T>()[1]);
                               }});
}

template <class T>
void AddGeometrySettings(std::vector<Setting>& settings, std::string const& suffix) {
    using E = typename T::Element;
    E const low = std::is_floating_point<E>::value ? E(0) : std::numeric_limits<E>::lowest();
    E const high = std::is_floating_point<E>::value ? E(16777216) : std::numeric_limits<E>::max();
    auto const widen = [low, high](NumericInfo<T>& part) {
        part.SetMin(low);
        part.SetMax(high);
    };
    settings.push_back(
        Setting{"Coordinate" + suffix,
                [suffix, widen](unsigned int id) -> InfoPtr {
                    auto info = NewInfo<CoordinateInfo<T>>(id, "Coordinate" + suffix);
                    widen(*info->X());
                    widen(*info->Y());
                    return info;
                },
                [low](unsigned int id) -> ItemPtr {
                    boost::intrusive_ptr<CoordinateItem<T>> item(new CoordinateItem<T>(id));
                    item->SetValX(low);
                    item->SetValY(Edges<T>()[0]);
                    return item;
                }});
    settings.push_back(
        Setting{"Rectangle" + suffix,
                [suffix, widen](unsigned int id) -> InfoPtr {
                    auto info = NewInfo<RectInfo<T>>(id, "Rectangle" + suffix);
                    for (auto const& corner : {info->TopLeft(), info->BottomRight()}) {
                        widen(*corner->X());
                        widen(*corner->Y());
                    }
                    return info;
                },
                [high](unsigned int id) -> ItemPtr {
                    boost::intrusive_ptr<RectItem<T>> item(new RectItem<T>(id));
                    item->TopLeft()->SetValX(E(1));
                    item->TopLeft()->SetValY(Edges<T>()[0]);
                    item->BottomRight()->SetValX(high);
                    item->BottomRight()->SetValY(E(4));
                    return item;
                }});
}

StrAppEndpoint Versioned() {
    return StrAppEndpoint(AppProtocolInfo_t(AppProtocolType_t::Soap, 3, 2),
                          StrEndpoint(Net::AddrStr("10.0.0.2"), 8080), 7);
}

// Every family with a serial form, and the pair of strings.
std::vector<Setting> AllFamilies() {
    std::vector<Setting> settings;
    settings.push_back(
        Setting{"Bool", [](unsigned int id) -> InfoPtr { return NewInfo<BoolInfo>(id, "Bool"); },
                [](unsigned int id) -> ItemPtr { return BoolItem::Create(id, true); }});
#define ADD_NUMERIC(T) AddNumericSettings<T>(settings);
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ADD_NUMERIC)
#undef ADD_NUMERIC
    auto const enumInfo = [](unsigned int id, std::string const& name) -> InfoPtr {
        auto info = NewInfo<EnumInfo>(id, name, false);
        // "twin" twice: the name leads back to 4 only, so 5 is written as a number.
        info->SetTable({{"low", 1, false},
                        {"high", 2, false},
                        {"", 3, false},
                        {"twin", 4, false},
                        {"twin", 5, false}});
        return info;
    };
    settings.push_back(Setting{"Enum", [enumInfo](unsigned int id) { return enumInfo(id, "Enum"); },
                               [](unsigned int id) -> ItemPtr { return EnumItem::Create(id, 2); }});
    for (int const value : {3, 5}) {
        std::string const name = "EnumNumber" + std::to_string(value);
        settings.push_back(
            Setting{name, [enumInfo, name](unsigned int id) { return enumInfo(id, name); },
                    [value](unsigned int id) -> ItemPtr { return EnumItem::Create(id, value); }});
    }
    settings.push_back(Setting{
        "String", [](unsigned int id) -> InfoPtr { return NewInfo<StringInfo>(id, "String"); },
        [](unsigned int id) -> ItemPtr {
            return StringItem::Create(id, "say \"hi\"\\\n\t\x01 \xC3\xBC/~");
        }});
    settings.push_back(Setting{"StringArray",
                               [](unsigned int id) -> InfoPtr {
                                   auto info = NewInfo<StringArrayInfo>(id, "StringArray");
                                   info->SetMaxSize(5);
                                   return info;
                               },
                               [](unsigned int id) -> ItemPtr {
                                   return StringArrayItem::Create(id, {"", "a, b", "\xE2\x82\xAC"});
                               }});
    settings.push_back(Setting{"BoolArray",
                               [](unsigned int id) -> InfoPtr {
                                   auto info = NewInfo<BoolArrayInfo>(id, "BoolArray");
                                   info->SetMaxSize(9);
                                   return info;
                               },
                               [](unsigned int id) -> ItemPtr {
                                   return BoolArrayItem::Create(id, {true, false, false, true, true,
                                                                     false, true, true, false});
                               }});
    settings.push_back(
        Setting{"StringSparse",
                [](unsigned int id) -> InfoPtr {
                    auto info = NewInfo<StringSparseInfo>(id, "StringSparse");
                    std::vector<std::string> table = {"eco", "max"};
                    info->SetTable(table);
                    return info;
                },
                [](unsigned int id) -> ItemPtr { return StringSparseItem::Create(id, "max"); }});
    settings.push_back(Setting{
        "Colour", [](unsigned int id) -> InfoPtr { return NewInfo<ColourInfo>(id, "Colour"); },
        [](unsigned int id) -> ItemPtr {
            boost::intrusive_ptr<ColourItem> item(new ColourItem(id));
            // Whole components: the record carries no fractions.
            item->Set(1.0f, 0.0f, 255.0f, 16.0f);
            return item;
        }});
    AddGeometrySettings<U16Traits>(settings, ":U16");
    AddGeometrySettings<S32Traits>(settings, ":S32");
    AddGeometrySettings<FloatTraits>(settings, ":Float");
    settings.push_back(Setting{
        "Orientation",
        [](unsigned int id) -> InfoPtr { return NewInfo<OrientationInfo>(id, "Orientation"); },
        [](unsigned int id) -> ItemPtr {
            boost::intrusive_ptr<OrientationItem> item(new OrientationItem(id));
            item->Set(Orientation_t{90.0f, 1.0f, 0.0f});
            return item;
        }});
    settings.push_back(
        Setting{"Addr", [](unsigned int id) -> InfoPtr { return NewInfo<AddrInfo>(id, "Addr"); },
                [](unsigned int id) -> ItemPtr {
                    return AddrItem::Create(id, Net::AddrStr("camera.local"));
                }});
    settings.push_back(
        Setting{"Endpoint",
                [](unsigned int id) -> InfoPtr { return NewInfo<EndpointInfo>(id, "Endpoint"); },
                [](unsigned int id) -> ItemPtr {
                    return EndpointItem::Create(id, StrEndpoint(Net::AddrStr("::1"), 80));
                }});
    settings.push_back(Setting{
        "AppEndpoint",
        [](unsigned int id) -> InfoPtr { return NewInfo<AppEndpointInfo>(id, "AppEndpoint"); },
        [](unsigned int id) -> ItemPtr {
            return AppEndpointItem::Create(id, StrAppEndpoint::FromUri("http://10.0.0.1:80"));
        }});
    settings.push_back(Setting{
        "AppEndpointVersioned",
        [](unsigned int id) -> InfoPtr {
            return NewInfo<AppEndpointInfo>(id, "AppEndpointVersioned");
        },
        [](unsigned int id) -> ItemPtr { return AppEndpointItem::Create(id, Versioned()); }});
    settings.push_back(
        Setting{"AppEndpointArray",
                [](unsigned int id) -> InfoPtr {
                    return NewInfo<AppEndpointArrayInfo>(id, "AppEndpointArray");
                },
                [](unsigned int id) -> ItemPtr {
                    boost::intrusive_ptr<AppEndpointArrayItem> item(new AppEndpointArrayItem(id));
                    item->SetVal({StrAppEndpoint::FromUri("rtsp://cam:554"), Versioned(),
                                  StrAppEndpoint::FromUri("x-zyl-modbus://[::1]:502")});
                    return item;
                }});
    settings.push_back(Setting{"RectArray:U16",
                               [](unsigned int id) -> InfoPtr {
                                   return NewInfo<RectArrayInfo<U16Traits>>(id, "RectArray:U16");
                               },
                               [](unsigned int id) -> ItemPtr {
                                   boost::intrusive_ptr<RectArrayItem<U16Traits>> item(
                                       new RectArrayItem<U16Traits>(id));
                                   RectArrayItem<U16Traits>::Rects rects(2, RectItem<U16Traits>(0));
                                   rects[0] = RectItem<U16Traits>(0);
                                   rects[1] = RectItem<U16Traits>(0);
                                   rects[0].BottomRight()->SetValX(65535);
                                   rects[1].TopLeft()->SetValY(9);
                                   item->SetVal(rects);
                                   return item;
                               }});
    auto const compositeInfo = [enumInfo](unsigned int id) -> InfoPtr {
        auto inner = NewInfo<CompositeInfo>(0, "inner");
        inner->AddInfo(NewInfo<BoolInfo>(0, "on"));
        inner->AddInfo(enumInfo(0, "mode"));
        auto info = NewInfo<CompositeInfo>(id, "Composite");
        info->AddInfo(NewInfo<NumericInfo<U16Traits>>(0, "rate"));
        info->AddInfo(NewInfo<StringInfo>(0, "codec"));
        info->AddInfo(inner);
        return info;
    };
    settings.push_back(Setting{"Composite", compositeInfo, [](unsigned int id) -> ItemPtr {
                                   boost::intrusive_ptr<CompositeItem> inner(new CompositeItem(0));
                                   inner->AddItem(BoolItem::Create(0, true));
                                   inner->AddItem(EnumItem::Create(0, 1));
                                   boost::intrusive_ptr<CompositeItem> item(new CompositeItem(id));
                                   item->AddItem(NumericItem<U16Traits>::Create(0, 65));
                                   item->AddItem(StringItem::Create(0, "pcm"));
                                   item->AddItem(inner);
                                   return item;
                               }});
    settings.push_back(
        Setting{"Extended",
                [](unsigned int id) -> InfoPtr { return NewInfo<ExtendedInfo>(id, "Extended"); },
                [](unsigned int id) -> ItemPtr {
                    return ExtendedItem::Create(id, {"key", "va\"lue"});
                }});
    return settings;
}

// Enters every setting's Info under section "All", with its value if asked.
std::vector<unsigned int> Enter(InfoItemDirectory& directory, std::vector<Setting> const& settings,
                                bool withValues) {
    SectionId section;
    EXPECT_EQ(directory.AddSection("All", section), 0);
    std::vector<unsigned int> ids;
    for (std::size_t i = 0; i < settings.size(); ++i) {
        unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(i + 1);
        EXPECT_EQ(directory.AddInfo(HoldInfo(settings[i].info(id))), 0) << settings[i].name;
        if (withValues) {
            EXPECT_EQ(directory.SetItem(HoldItem(settings[i].item(id))), 0) << settings[i].name;
        }
        ids.push_back(id);
    }
    return ids;
}

std::string Describe(Problems const& problems) {
    std::string text;
    for (Problem const& problem : problems) {
        text += Files::ToString(problem) + "\n";
    }
    return text;
}

TEST(FilesValues, EveryFamilyReadsBackEqualThroughItsJsonForm) {
    std::vector<Setting> const settings = AllFamilies();
    InfoItemDirectory source;
    std::vector<unsigned int> const ids = Enter(source, settings, true);
    // Each value passes its own check, so that reading it back applies it.
    std::string const json = WriteValues(source);

    RecordingDirectory target;
    Enter(target, settings, false);
    target.log.clear();
    ValuesReport const report = ReadValues(json, target, Apply::AllOrNothing);
    EXPECT_EQ(Describe(report.problems), "") << json;
    EXPECT_EQ(report.applied, settings.size());
    EXPECT_EQ(target.log.size(), settings.size());
    for (std::size_t i = 0; i < settings.size(); ++i) {
        SCOPED_TRACE(settings[i].name);
        auto const wrote = source.FindItem(ids[i]);
        auto const read = target.FindItem(ids[i]);
        ASSERT_TRUE(read);
        EXPECT_TRUE(read->GetItem()->IsEqualValue(wrote->GetItem()));
        EXPECT_TRUE(wrote->GetItem()->IsEqualValue(read->GetItem()));
        // Each value alone, as the program encodes one by path.
        Problems problems;
        ItemPtr const alone =
            ReadValue(WriteValue(*wrote->GetItem()), *source.FindInfo(ids[i])->GetInfo(), problems);
        EXPECT_EQ(Describe(problems), "");
        ASSERT_TRUE(alone);
        EXPECT_TRUE(alone->IsEqualValue(wrote->GetItem()));
        EXPECT_EQ(alone->GetId(), ids[i]);
        // With its Info, one value is written as the file writes its member.
        std::string const member =
            "\n  \"All/" + settings[i].name +
            "\": " + WriteValue(*wrote->GetItem(), *source.FindInfo(ids[i])->GetInfo());
        EXPECT_TRUE(json.find(member + ",\n") != std::string::npos ||
                    json.find(member + "\n}") != std::string::npos)
            << member;
    }
    // The forms that are this format's own choices, byte for byte.
    for (char const* line : {
             "\n  \"All/Numeric:U64\": 18446744073709551615,",
             "\n  \"All/Numeric:S64\": -9223372036854775808,",
             "\n  \"All/Numeric:Float\": 65536,",
             "\n  \"All/NumericArray:Float\": [65536,0,1],",
             "\n  \"All/NumericArray:U8\": [255,0,1],",
             "\n  \"All/NumericSparse:S8\": 127,",
             "\n  \"All/Enum\": \"high\",",
             "\n  \"All/EnumNumber3\": 3,",
             "\n  \"All/EnumNumber5\": 5,",
             "\n  \"All/String\": \"say \\\"hi\\\"\\\\\\n\\t\\u0001 \xC3\xBC/~\",",
             "\n  \"All/BoolArray\": [true,false,false,true,true,false,true,true,false],",
             "\n  \"All/Colour\": {\"a\":1,\"r\":0,\"g\":255,\"b\":16},",
             "\n  \"All/Coordinate:S32\": {\"x\":-2147483648,\"y\":-2147483648},",
             "\n  \"All/Rectangle:U16\": {\"left\":1,\"top\":65535,\"right\":65535,\"bottom\":4},",
             "\n  \"All/Orientation\": {\"bearing\":90,\"inclination\":1,\"roll\":0},",
             "\n  \"All/Addr\": \"camera.local\",",
             "\n  \"All/Endpoint\": \"[::1]:80\",",
             "\n  \"All/AppEndpoint\": \"http://10.0.0.1:80\",",
             "\n  \"All/AppEndpointVersioned\": {\"protocol\":1,\"version\":3,\"compatVersion\":2,"
             "\"endpoint\":\"10.0.0.2:8080\",\"addrGroupPrefix\":7},",
             "\n  \"All/RectArray:U16\": [{\"left\":0,\"top\":0,\"right\":65535,\"bottom\":0},"
             "{\"left\":0,\"top\":9,\"right\":0,\"bottom\":0}],",
             "\n  \"All/Composite\": [65,\"pcm\",[true,\"low\"]],",
             "\n  \"All/Extended\": {\"first\":\"key\",\"second\":\"va\\\"lue\"}\n}\n",
         }) {
        EXPECT_NE(json.find(line), std::string::npos) << line << "\nin\n" << json;
    }
    // Numbers no record carries still have the shortest text that reads back.
    boost::intrusive_ptr<NumericArrayItem<FloatTraits>> floats(
        new NumericArrayItem<FloatTraits>(1));
    floats->SetVal(
        {0.1f, -std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min()});
    EXPECT_EQ(WriteValue(*floats), "[0.1,-3.4028235e+38,1e-45]");
    boost::intrusive_ptr<NumericArrayItem<DoubleTraits>> doubles(
        new NumericArrayItem<DoubleTraits>(1));
    doubles->SetVal(
        {0.1, -std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()});
    EXPECT_EQ(WriteValue(*doubles), "[0.1,-1.7976931348623157e+308,5e-324]");
}

TEST(FilesValues, ValuesReadBackIntoTheSettingsADescriptionFileMakes) {
    // An orientation's Info is the caller's own class, which no file describes.
    std::vector<Setting> settings = AllFamilies();
    settings.erase(std::remove_if(settings.begin(), settings.end(),
                                  [](Setting const& one) { return one.name == "Orientation"; }),
                   settings.end());
    InfoItemDirectory source;
    std::vector<unsigned int> const ids = Enter(source, settings, true);
    InfoItemDirectory target;
    ASSERT_EQ(Describe(Files::ReadDescription(Files::WriteDescription(source), target)), "");
    ValuesReport const report = ReadValues(WriteValues(source), target, Apply::AllOrNothing);
    EXPECT_EQ(Describe(report.problems), "");
    EXPECT_EQ(report.applied, settings.size());
    EXPECT_EQ(WriteValues(target), WriteValues(source));
    for (std::size_t i = 0; i < settings.size(); ++i) {
        SCOPED_TRACE(settings[i].name);
        auto const read = target.FindItem(ids[i]);
        ASSERT_TRUE(read);
        EXPECT_TRUE(read->GetItem()->IsEqualValue(source.FindItem(ids[i])->GetItem()));
    }
}

TEST(FilesValues, WritesOneMemberPerSettingWithAnItemInIdOrder) {
    InfoItemDirectory directory;
    SectionId audio;
    SectionId device;
    ASSERT_EQ(directory.AddSection("Audio/Input", audio), 0);
    ASSERT_EQ(directory.AddSection("Device", device), 0);
    unsigned int const gain = audio.GetInfoItemSectionId().CreateInfoItemId(1);
    unsigned int const name = device.GetInfoItemSectionId().CreateInfoItemId(2);
    unsigned int const unset = device.GetInfoItemSectionId().CreateInfoItemId(3);
    unsigned int const bag = device.GetInfoItemSectionId().CreateInfoItemId(4);
    ASSERT_EQ(directory.AddInfo(HoldInfo(NewInfo<NumericInfo<U32Traits>>(gain, "Gain"))), 0);
    ASSERT_EQ(directory.AddInfo(HoldInfo(NewInfo<StringInfo>(name, "Name"))), 0);
    ASSERT_EQ(directory.AddInfo(HoldInfo(NewInfo<StringInfo>(unset, "Unset"))), 0);
    ASSERT_EQ(directory.AddInfo(HoldInfo(NewInfo<CollectionInfo>(bag, "Bag"))), 0);
    EXPECT_EQ(WriteValues(directory), "{}\n");
    ASSERT_EQ(directory.SetItem(HoldItem(NumericItem<U32Traits>::Create(gain, 72))), 0);
    ASSERT_EQ(directory.SetItem(HoldItem(StringItem::Create(name, "cam-1"))), 0);
    ASSERT_EQ(directory.SetItem(HoldItem(ItemPtr(new CollectionItem(bag)))), 0);
    // Depth-1 sections have the lower ids; a collection has no value form.
    EXPECT_EQ(WriteValues(directory),
              "{\n  \"Device/Name\": \"cam-1\",\n  \"Audio/Input/Gain\": 72\n}\n");
    EXPECT_EQ(WriteValue(CollectionItem(bag)), "null");
    Problems left;
    WriteValues(directory, left);
    EXPECT_EQ(left,
              (Problems{{"/Device~1Bag", "settings of the Collection family have no value form",
                         "Device/Bag"}}));
    Problems problems;
    EXPECT_FALSE(ReadValue("[]", *NewInfo<CollectionInfo>(bag, "Bag"), problems, "/Device~1Bag"));
    EXPECT_EQ(problems,
              (Problems{{"/Device~1Bag", "settings of the Collection family have no value form"}}));
}

// A composite's record counts its children in 16 bits: the model writes a
// 65,537-child composite as one of 1 child, so files neither keep nor take it.
TEST(ValuesFileTest, ValuesTheirRecordCannotHoldAreRefusedBothWays) {
    RecordingDirectory directory;
    SectionId section;
    ASSERT_EQ(directory.AddSection("Video/Masks", section), 0);
    unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(1);
    boost::intrusive_ptr<CompositeInfo> info(new CompositeInfo(id, "Levels", Permission_t()));
    boost::intrusive_ptr<CompositeItem> item(new CompositeItem(id));
    std::string json = "{\"Video/Masks/Levels\": [";
    for (std::size_t i = 0; i < 65537; ++i) {
        info->AddInfo(InfoPtr(new NumericInfo<U8Traits>(0, "Level", Permission_t())));
        item->AddItem(ItemPtr(NumericItem<U8Traits>::Create(0, 1)));
        json += i ? ",1" : "1";
    }
    json += "]}";
    ASSERT_EQ(directory.AddInfo(HoldInfo(info)), 0);
    directory.log.clear();
    EXPECT_EQ(Files::RecordLimit(*item),
              "a composite record holds at most 65535 children, this one has 65537");

    ValuesReport const refused = ReadValues(json, directory);
    EXPECT_EQ(refused.applied, 0u);
    EXPECT_EQ(refused.problems,
              (Problems{{"/Video~1Masks~1Levels",
                         "a composite record holds at most 65535 children, this one has 65537",
                         "Video/Masks/Levels"}}));
    EXPECT_TRUE(directory.log.empty());

    ASSERT_EQ(directory.SetItem(HoldItem(item)), 0);
    Problems left;
    EXPECT_EQ(WriteValues(directory, left), "{}\n");
    EXPECT_EQ(left, refused.problems);

    // At the limit the record holds it.
    std::vector<ItemPtr> children;
    item->GetItems(children);
    children.resize(65535);
    item->SetItems(children);
    EXPECT_EQ(Files::RecordLimit(*item), "");
}

// A small device: every kind of mistake has a setting to be made on.
class Device : public RecordingDirectory {
public:
    Device() {
        SectionId input;
        SectionId device;
        EXPECT_EQ(AddSection("Audio/Input", input), 0);
        EXPECT_EQ(AddSection("Device", device), 0);
        auto gain = NewInfo<NumericInfo<U32Traits>>(Id(input, 1), "Gain");
        gain->SetMax(100);
        auto mode = NewInfo<NumericSparseInfo<U8Traits>>(Id(input, 2), "Mode");
        std::vector<unsigned char> table = {1, 2};
        mode->SetTable(table);
        auto position = NewInfo<CoordinateInfo<U16Traits>>(Id(device, 3), "Pos");
        position->Y()->SetMax(200);
        auto name = NewInfo<StringInfo>(Id(device, 4), "Name");
        name->SetMaxLength(8);
        auto choice = NewInfo<EnumInfo>(Id(device, 5), "Choice", false);
        choice->SetTable({{"quiet", 1, false}, {"loud", 2, false}});
        auto inner = NewInfo<CompositeInfo>(Id(device, 12), "Pair");
        auto part = NewInfo<NumericInfo<S8Traits>>(0, "part");
        part->SetMax(10);
        inner->AddInfo(part);
        inner->AddInfo(NewInfo<BoolInfo>(0, "flag"));
        for (InfoPtr const& info :
             std::vector<InfoPtr>{gain, mode, position, name, choice,
                                  NewInfo<NumericInfo<U8Traits>>(Id(input, 6), "Level"),
                                  NewInfo<NumericArrayInfo<U16Traits>>(Id(input, 7), "Levels"),
                                  NewInfo<NumericInfo<FloatTraits>>(Id(input, 8), "Ratio"),
                                  NewInfo<NumericInfo<U64Traits>>(Id(device, 9), "Count"),
                                  NewInfo<NumericInfo<U16Traits>>(Id(device, 10), "Step"),
                                  NewInfo<ColourInfo>(Id(device, 11), "Colour"), inner,
                                  NewInfo<AppEndpointInfo>(Id(device, 13), "Server")}) {
            EXPECT_EQ(AddInfo(HoldInfo(info)), 0) << info->GetName();
            EXPECT_EQ(SetItem(HoldItem(ItemPtr(info->CreateItem()))), 0) << info->GetName();
        }
        log.clear();
    }

    // The held Item of every setting, to see that nothing moved.
    std::map<unsigned int, ItemHolderPtr> Snapshot() const {
        std::vector<boost::intrusive_ptr<InfoItemHolder const>> slots;
        GetAllInfoItems(slots);
        std::map<unsigned int, ItemHolderPtr> items;
        for (auto const& slot : slots) {
            items[slot->GetInfoHolder()->GetInfo()->GetId()] = slot->GetItemHolder();
        }
        return items;
    }

    std::string Value(std::string const& path) const {
        auto const item = FindItem(path);
        return item ? WriteValue(*item->GetItem()) : "absent";
    }

private:
    static unsigned int Id(SectionId const& section, std::size_t number) {
        return section.GetInfoItemSectionId().CreateInfoItemId(number);
    }
};

std::string const k_mistakes = R"({
  "Audio/Input/Gain": 150,
  "Audio/Input/Nope": 1,
  "Audio/Input/Level": 300,
  "Audio/Input/Levels": [1, -1, 2, 70000, "x"],
  "Audio/Input/Ratio": 1e300,
  "Audio/Input/Mode": 3,
  "Device/Count": 18446744073709551616,
  "Device/Step": 0.5,
  "Device/Name": true,
  "Device/Pos": {"x": 5, "y": 300},
  "Device/Choice": "shouting",
  "Device/Colour": {"a": 1, "r": 1, "g": 1, "q": 1},
  "Device/Pair": [11, true],
  "Device/Server": "10.0.0.1:80",
  "Audio/Input/Gain ": 1,
  "Device/Name~": "x",
  "Audio/Input/Level": 7
})";

// Duplicate "Audio/Input/Level" aside (refused whole), in file order.
Problems const k_mistakeProblems = {
    {"/Audio~1Input~1Gain", "150 is above the maximum 100", "Audio/Input/Gain"},
    {"/Audio~1Input~1Nope", "no setting has this path", "Audio/Input/Nope"},
    {"/Audio~1Input~1Level", "300 does not fit U8 (0 to 255)", "Audio/Input/Level"},
    {"/Audio~1Input~1Levels/1", "-1 does not fit U16 (0 to 65535)", "Audio/Input/Levels"},
    {"/Audio~1Input~1Levels/3", "70000 does not fit U16 (0 to 65535)", "Audio/Input/Levels"},
    {"/Audio~1Input~1Levels/4", "expected a number, not a string", "Audio/Input/Levels"},
    {"/Audio~1Input~1Ratio", "1e300 does not fit Float", "Audio/Input/Ratio"},
    {"/Audio~1Input~1Mode", "3 is not in the table; allowed: 1, 2", "Audio/Input/Mode"},
    {"/Device~1Count", "18446744073709551616 does not fit U64 (0 to 18446744073709551615)",
     "Device/Count"},
    {"/Device~1Step", "expected a whole number for U16, not 0.5", "Device/Step"},
    {"/Device~1Name", "expected a string, not a boolean", "Device/Name"},
    {"/Device~1Pos/y", "300 is above the maximum 200", "Device/Pos"},
    {"/Device~1Choice", "no entry is named \"shouting\"; allowed: quiet, loud", "Device/Choice"},
    {"/Device~1Colour/q", "unknown member; expected a, r, g, b", "Device/Colour"},
    {"/Device~1Colour", "missing member \"b\"", "Device/Colour"},
    {"/Device~1Pair/0", "11 is above the maximum 10", "Device/Pair"},
    {"/Device~1Server", "expected a URI such as \"http://10.0.0.1:80\", not \"10.0.0.1:80\"",
     "Device/Server"},
    {"/Audio~1Input~1Gain ", "no setting has this path; did you mean Audio/Input/Gain?",
     "Audio/Input/Gain "},
    {"/Device~1Name~0", "no setting has this path; did you mean Device/Name?", "Device/Name~"},
};

TEST(FilesValues, EveryMistakeIsReportedAtItsPointerAndTheRestIsApplied) {
    std::string mistakes = k_mistakes;
    // Without the repeated key the file is read; with it, refused whole.
    mistakes.replace(mistakes.rfind(",\n  \"Audio/Input/Level\": 7"),
                     std::string(",\n  \"Audio/Input/Level\": 7").size(), "");
    std::string const passing = mistakes.substr(0, mistakes.size() - 2) +
                                ",\n  \"Device/Pair\": [10, true], \"Audio/Input/Gain\": 99}";
    {
        Device device;
        ValuesReport const report = ReadValues(mistakes, device);
        EXPECT_EQ(Describe(report.problems), Describe(k_mistakeProblems));
        EXPECT_EQ(report.problems, k_mistakeProblems);
        EXPECT_EQ(report.applied, 0u);
        EXPECT_TRUE(device.log.empty());
    }
    {
        // A key given twice is not read twice: the whole file is refused.
        Device device;
        auto const before = device.Snapshot();
        ValuesReport const report = ReadValues(k_mistakes, device);
        EXPECT_EQ(report.problems, (Problems{{"/Audio~1Input~1Level", "the key appears twice"}}));
        EXPECT_EQ(report.applied, 0u);
        EXPECT_EQ(device.Snapshot(), before);
    }
    {
        Device device;
        auto const before = device.Snapshot();
        ValuesReport const report = ReadValues(passing, device, Apply::AllOrNothing);
        // "Device/Pair" and "Audio/Input/Gain" are both repeated keys here.
        EXPECT_EQ(report.problems, (Problems{{"/Device~1Pair", "the key appears twice"}}));
        EXPECT_EQ(device.Snapshot(), before);
    }
}

TEST(FilesValues, ASettingUnderTwoSpellingsOfItsPathIsTakenOnce) {
    Device device;
    ValuesReport const report =
        ReadValues(R"({"Device/Name": "first", "/Device/Name": "second"})", device);
    EXPECT_EQ(report.problems,
              (Problems{{"/~1Device~1Name", "the setting is given twice, under another path",
                         "/Device/Name"}}));
    EXPECT_EQ(report.applied, 1u);
    EXPECT_EQ(device.Value("Device/Name"), "\"first\"");
}

TEST(FilesValues, AllOrNothingLeavesTheDirectoryAsItWasAndPassingAppliesOneChangeSet) {
    std::string const json = R"({"Audio/Input/Gain": 99, "Device/Name": "cam-1",
        "Device/Choice": "loud", "Audio/Input/Level": 256, "Device/Pair": [-3, true]})";
    {
        Device device;
        auto const before = device.Snapshot();
        ValuesReport const report = ReadValues(json, device, Apply::AllOrNothing);
        EXPECT_EQ(report.problems,
                  (Problems{{"/Audio~1Input~1Level", "256 does not fit U8 (0 to 255)",
                             "Audio/Input/Level"}}));
        EXPECT_EQ(report.applied, 0u);
        EXPECT_EQ(device.Snapshot(), before);
        EXPECT_TRUE(device.log.empty());
    }
    {
        Device device;
        auto const before = device.Snapshot();
        ValuesReport const report = ReadValues(json, device, Apply::Passing);
        EXPECT_EQ(report.problems,
                  (Problems{{"/Audio~1Input~1Level", "256 does not fit U8 (0 to 255)",
                             "Audio/Input/Level"}}));
        EXPECT_EQ(report.applied, 4u);
        // One notification per value, in id order: depth-1 "Device" first.
        ASSERT_EQ(device.log.size(), 4u);
        EXPECT_NE(device.log[0].find(" now=cam-1 info=Name"), std::string::npos) << device.log[0];
        EXPECT_NE(device.log[1].find(" now=2 info=Choice"), std::string::npos) << device.log[1];
        EXPECT_NE(device.log[2].find(" info=Pair"), std::string::npos) << device.log[2];
        EXPECT_NE(device.log[3].find(" old=0 now=99 info=Gain"), std::string::npos)
            << device.log[3];
        EXPECT_EQ(device.Value("Audio/Input/Gain"), "99");
        EXPECT_EQ(device.Value("Device/Name"), "\"cam-1\"");
        EXPECT_EQ(device.Value("Device/Choice"), "2");
        EXPECT_EQ(device.Value("Device/Pair"), "[-3,true]");
        EXPECT_EQ(device.Value("Audio/Input/Level"), "0");
        auto const after = device.Snapshot();
        EXPECT_EQ(
            after.at(device.FindInfoItem("Audio/Input/Level")->GetInfoHolder()->GetInfo()->GetId()),
            before.at(
                device.FindInfoItem("Audio/Input/Level")->GetInfoHolder()->GetInfo()->GetId()));
    }
}

// Drops every setting when told of the first change and, if told to, enters
// back the section and setting of that change, so the next Item has no setting.
class ForgettingDevice : public Device {
public:
    explicit ForgettingDevice(bool reenter) : reenter_(reenter) {}

protected:
    void ItemChanged_(ItemHolderPtr const& oldItem,
                      boost::intrusive_ptr<InfoItemHolder const> const& holder) override {
        Device::ItemChanged_(oldItem, holder);
        if (forgot_) {
            return;
        }
        forgot_ = true;
        auto const info = holder->GetInfoHolder();
        auto const item = holder->GetItemHolder();
        SectionId const section = FindSection(InfoItemSectionId(info->GetInfo()->GetId()));
        Clear();
        if (reenter_) {
            EXPECT_EQ(AddSection(section), 0);
            EXPECT_EQ(AddInfo(info), 0);
            EXPECT_EQ(SetItem(item), 0);
        }
    }

private:
    bool const reenter_;
    bool forgot_ = false;
};

TEST(FilesValues, AChangeSetTheDirectoryRefusesIsReportedWithItsCode) {
    // What the directory applied counts, whether or not it is still there.
    for (bool const reenter : {true, false}) {
        SCOPED_TRACE(reenter ? "the applied setting is entered back" : "every setting is gone");
        ForgettingDevice device(reenter);
        ValuesReport const report = ReadValues(
            R"({"Audio/Input/Gain": 7, "Device/Name": "cam-2", "Device/Choice": 1})", device);
        EXPECT_EQ(report.problems,
                  (Problems{{"/Device~1Choice",
                             "the directory refused the value with code -25; 1 of 3 values "
                             "were applied",
                             "Device/Choice"}}));
        EXPECT_EQ(report.applied, 1u);
        // The notification of the applied value comes first; entering it back adds its own.
        ASSERT_EQ(device.log.size(), reenter ? 3u : 1u);
        EXPECT_NE(device.log[0].find(" now=cam-2 info=Name"), std::string::npos) << device.log[0];
    }
}

TEST(FilesValues, HostileFilesAreRefusedWholeWithOneProblem) {
    std::string deep = "{\"Device/Name\": ";
    std::string deepPointer = "/Device~1Name";
    for (int level = 0; level < 200; ++level) {
        deep += "[";
    }
    for (int level = 0; level < 62; ++level) {
        deepPointer += "/0";
    }
    deep += std::string(200, ']') + "}";
    struct Row {
        std::string json;
        Problem problem;
    };
    std::vector<Row> const rows = {
        {"{\"Device/Name\": \"a\",}",
         {"",
          "malformed JSON at line 1, column 21 (byte 21): syntax error while parsing object key - "
          "unexpected '}'; "
          "expected string literal"}},
        {"{\"Device/Name\": \"a\"} x",
         {"",
          "malformed JSON at line 1, column 22 (byte 22): syntax error while parsing value - "
          "invalid literal; "
          "last read: '\"a\"} x'; expected end of input"}},
        {"",
         {"",
          "malformed JSON at line 1, column 1 (byte 1): syntax error while parsing value - "
          "unexpected end of "
          "input; expected '[', '{', or a literal"}},
        {"{\"Device/Name\": \"\xC3\"}",
         {"",
          "malformed JSON at line 1, column 19 (byte 19): syntax error while parsing value - "
          "invalid string: "
          "ill-formed UTF-8 byte; last read: '\"\xC3\"'"}},
        {"[\"Device/Name\", 1]", {"", "the file is no JSON object of setting paths and values"}},
        {"7", {"", "the file is no JSON object of setting paths and values"}},
        {"{\"Device/Name\": \"a\", \"Device/Name\": \"b\"}",
         {"/Device~1Name", "the key appears twice"}},
        {"{\"Device/Colour\": {\"a\": 1, \"r\": 1, \"a\": 2, \"g\": 1, \"b\": 1}}",
         {"/Device~1Colour/a", "the key appears twice"}},
        {deep, {deepPointer, "nested deeper than 64 levels"}},
        {"{\"Device/Count\": " + std::string(100000, '9') + "}",
         {"", "malformed JSON at line 1, column 100017 (byte 100017): number overflow parsing '" +
                  std::string(95, '9') + "..."}},
        {"{\"Device/Count\": 1e999}",
         {"", "malformed JSON at line 1, column 22 (byte 22): number overflow parsing '1e999'"}},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.json.substr(0, 60));
        Device device;
        auto const before = device.Snapshot();
        ValuesReport const report = ReadValues(row.json, device);
        EXPECT_EQ(report.problems, Problems{row.problem});
        EXPECT_EQ(report.applied, 0u);
        EXPECT_EQ(device.Snapshot(), before);
    }
    // Every key given twice inside the values is named, and still nothing is applied.
    Device device;
    auto const before = device.Snapshot();
    ValuesReport const report = ReadValues(
        "{\"Device/Name\": \"a\", \"Device/Colour\": {\"b\": 1, \"r\": 1, \"a\": 2, \"g\": 1, "
        "\"a\": 1, \"b\": 0}}",
        device);
    EXPECT_EQ(report.problems, (Problems{{"/Device~1Colour/a", "the key appears twice"},
                                         {"/Device~1Colour/b", "the key appears twice"}}));
    EXPECT_EQ(report.applied, 0u);
    EXPECT_EQ(device.Snapshot(), before);
}

TEST(FilesValues, HugeNumbersAndStringsAreRefusedByRangeOrCheckNotWrapped) {
    Device device;
    std::string const text(10 * 1024 * 1024, 'x');
    ValuesReport const report = ReadValues(
        "{\"Device/Count\": 99999999999999999999, \"Audio/Input/Gain\": -99999999999999999999"
        ", \"Audio/Input/Ratio\": 3.5e38, \"Device/Step\": 1e-999, \"Device/Name\": \"" +
            text + "\", \"Device/Choice\": \"" + text + "\", \"Audio/Input/Levels\": [" +
            std::string(30, '[') + std::string(30, ']') + "]}",
        device);
    EXPECT_EQ(
        report.problems,
        (Problems{
            {"/Device~1Count", "99999999999999999999 does not fit U64 (0 to 18446744073709551615)",
             "Device/Count"},
            {"/Audio~1Input~1Gain", "-99999999999999999999 does not fit U32 (0 to 4294967295)",
             "Audio/Input/Gain"},
            {"/Audio~1Input~1Ratio", "3.5e38 does not fit Float", "Audio/Input/Ratio"},
            {"/Device~1Step", "expected a whole number for U16, not 1e-999", "Device/Step"},
            // Bytes are counted, and said so.
            {"/Device~1Name", "the text is 10485760 bytes, above the maximum length 8 bytes",
             "Device/Name"},
            {"/Device~1Choice",
             "no entry is named \"" + std::string(32, 'x') + "...\"; allowed: quiet, loud",
             "Device/Choice"},
            {"/Audio~1Input~1Levels/0", "expected a number, not an array", "Audio/Input/Levels"}}));
    EXPECT_EQ(report.applied, 0u);

    // A million wrong elements make twenty problems and a count.
    std::string many = "{\"Audio/Input/Levels\": [";
    for (int i = 0; i < 1000000; ++i) {
        many += i ? ",-1" : "-1";
    }
    many += "]}";
    ValuesReport const capped = ReadValues(many, device);
    ASSERT_EQ(capped.problems.size(), 21u);
    EXPECT_EQ(capped.problems[19],
              (Problem{"/Audio~1Input~1Levels/19", "-1 does not fit U16 (0 to 65535)",
                       "Audio/Input/Levels"}));
    EXPECT_EQ(capped.problems[20],
              (Problem{"/Audio~1Input~1Levels", "999980 more problems in this value",
                       "Audio/Input/Levels"}));
}

TEST(FilesValues, OneValueReadsAgainstItsInfoWithProblemsUnderThePointerGiven) {
    auto const bytes = NewInfo<NumericArrayInfo<U8Traits>>(9, "Bytes");
    Problems problems;
    ItemPtr item = ReadValue("[1, 2, 100, 255]", *bytes, problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(problems, Problems{});
    EXPECT_EQ(item->GetId(), 9u);
    EXPECT_EQ(WriteValue(*item), "[1,2,100,255]");

    // A whole number in a float's form is a float to whoever wrote it.
    EXPECT_FALSE(ReadValue("[2.0, 1e2, -0.0]", *bytes, problems, "/x"));
    EXPECT_EQ(problems,
              (Problems{{"/x/0", "expected a whole number in plain digits for U8, not 2.0"},
                        {"/x/1", "expected a whole number in plain digits for U8, not 1e2"},
                        {"/x/2", "expected a whole number in plain digits for U8, not -0.0"}}));
    problems.clear();

    EXPECT_FALSE(ReadValue("[1, 256, 0.25, null]", *bytes, problems, "/x"));
    EXPECT_EQ(problems, (Problems{{"/x/1", "256 does not fit U8 (0 to 255)"},
                                  {"/x/2", "expected a whole number for U8, not 0.25"},
                                  {"/x/3", "expected a number, not null"}}));
    problems.clear();
    EXPECT_FALSE(ReadValue("[1", *bytes, problems, "/x"));
    EXPECT_EQ(
        problems,
        (Problems{
            {"/x",
             "malformed JSON at line 1, column 3 (byte 3): syntax error while parsing array - "
             "unexpected end of input; expected ']'"}}));

    // Integers beyond a double's exact range stay exact.
    auto const wide = NewInfo<NumericInfo<S64Traits>>(3, "Wide");
    problems.clear();
    item = ReadValue("9007199254740993", *wide, problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(static_cast<NumericItem<S64Traits> const&>(*item).GetVal(), 9007199254740993LL);
    EXPECT_FALSE(ReadValue("1e17", *wide, problems, "/w"));
    EXPECT_FALSE(ReadValue("-9223372036854775809", *wide, problems, "/w"));
    EXPECT_EQ(problems,
              (Problems{{"/w", "expected a whole number in plain digits for S64, not 1e17"},
                        {"/w",
                         "-9223372036854775809 does not fit S64 "
                         "(-9223372036854775808 to 9223372036854775807)"}}));

    // Floats without a JSON number, and the array forms of the small objects.
    auto const ratio = NewInfo<NumericInfo<DoubleTraits>>(4, "Ratio");
    problems.clear();
    item = ReadValue("\"-Infinity\"", *ratio, problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(WriteValue(*item), "\"-Infinity\"");
    item = ReadValue("\"NaN\"", *ratio, problems);
    ASSERT_TRUE(item);
    EXPECT_TRUE(std::isnan(static_cast<NumericItem<DoubleTraits> const&>(*item).GetVal()));
    EXPECT_FALSE(ReadValue("\"1.5\"", *ratio, problems, "/r"));
    EXPECT_EQ(problems, (Problems{{"/r", "expected a number, not a string"}}));
    problems.clear();
    item = ReadValue("[1, 2, 3, 4]", *NewInfo<RectInfo<S32Traits>>(5, "Box"), problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(WriteValue(*item), "{\"left\":1,\"top\":2,\"right\":3,\"bottom\":4}");
    EXPECT_FALSE(ReadValue("[1, 2, 3]", *NewInfo<RectInfo<S32Traits>>(5, "Box"), problems, "/b"));
    EXPECT_EQ(problems,
              (Problems{{"/b",
                         "expected an object {\"left\", \"top\", \"right\", \"bottom\"} or an "
                         "array of 4 numbers, not 3 elements"}}));

    // An enumeration without its Info is written as its number; names read with the Info.
    auto const choice = NewInfo<EnumInfo>(6, "Choice", false);
    choice->SetTable({{"quiet", 1, false}, {"loud", 2, false}});
    problems.clear();
    item = ReadValue("\"loud\"", *choice, problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(WriteValue(*item), "2");
    EXPECT_FALSE(ReadValue("true", *choice, problems, "/c"));
    EXPECT_FALSE(ReadValue("2147483648", *choice, problems, "/c"));
    EXPECT_EQ(problems,
              (Problems{{"/c", "expected an entry's name or number, not a boolean"},
                        {"/c", "2147483648 does not fit Enum (-2147483648 to 2147483647)"}}));

    // A message travels as its key and its arguments' texts.
    LocalizedString greeting("Greeting");
    greeting.AddArgument(StringItem::Create(0, "Ann"));
    greeting.AddArgument(NumericItem<S16Traits>::Create(0, -7));
    LocalizedStringItem message(8);
    message.SetVal(greeting);
    EXPECT_EQ(WriteValue(message), "{\"key\":\"Greeting\",\"arguments\":[\"Ann\",\"-7\"]}");
    problems.clear();
    item = ReadValue(WriteValue(message), *NewInfo<LocalizedStringInfo>(8, "Hello"), problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(WriteValue(*item), "{\"key\":\"Greeting\",\"arguments\":[\"Ann\",\"-7\"]}");
    EXPECT_EQ(static_cast<LocalizedStringItem const&>(*item).GetVal().GetString(""),
              greeting.GetString(""));
    // A pair also reads from an array of two.
    item = ReadValue("[\"k\", \"v\"]", *NewInfo<ExtendedInfo>(9, "Pair"), problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(WriteValue(*item), "{\"first\":\"k\",\"second\":\"v\"}");
    EXPECT_FALSE(ReadValue("{\"first\": \"k\", \"second\": 2}", *NewInfo<ExtendedInfo>(9, "Pair"),
                           problems, "/e"));
    EXPECT_EQ(problems, (Problems{{"/e/second", "expected a string, not a number"}}));
    // An application endpoint's fields: left out, they are those of a new one.
    problems.clear();
    item = ReadValue("{\"protocol\": 66, \"endpoint\": {\"address\": \"rtsp://cam/a:b\"}}",
                     *NewInfo<AppEndpointInfo>(10, "Stream"), problems);
    ASSERT_TRUE(item);
    StrAppEndpoint const& stream = static_cast<AppEndpointItem const&>(*item).Val();
    EXPECT_EQ(stream, StrAppEndpoint(AppProtocolInfo_t(AppProtocolType_t::Rtsp, 0, 0),
                                     StrEndpoint(Net::AddrStr("rtsp://cam/a:b"), 0), 0));
    EXPECT_FALSE(ReadValue("{\"protocol\": -1, \"port\": 1, \"addrGroupPrefix\": 256}",
                           *NewInfo<AppEndpointInfo>(10, "Stream"), problems, "/a"));
    EXPECT_EQ(problems, (Problems{{"/a/port",
                                   "unknown member; expected protocol, version, compatVersion, "
                                   "endpoint, addrGroupPrefix"}}));
    problems.clear();
    EXPECT_FALSE(ReadValue("{\"protocol\": -1, \"addrGroupPrefix\": 256}",
                           *NewInfo<AppEndpointInfo>(10, "Stream"), problems, "/a"));
    EXPECT_EQ(problems, (Problems{{"/a/protocol", "-1 does not fit U32 (0 to 4294967295)"},
                                  {"/a/addrGroupPrefix", "256 does not fit U8 (0 to 255)"}}));

    // Endpoints also read from their parts, and URIs must be URIs.
    problems.clear();
    item = ReadValue("{\"address\": \"cam\", \"port\": 554}", *NewInfo<EndpointInfo>(7, "Peer"),
                     problems);
    ASSERT_TRUE(item);
    EXPECT_EQ(WriteValue(*item), "\"cam:554\"");
    EXPECT_FALSE(ReadValue("{\"address\": \"cam\", \"port\": 65536}",
                           *NewInfo<EndpointInfo>(7, "Peer"), problems, "/p"));
    EXPECT_EQ(problems, (Problems{{"/p/port", "65536 does not fit U16 (0 to 65535)"}}));
}

// The text of docs/settings-files.md, found from this source's place.
std::string ReadDoc() {
    std::string source = __FILE__;
    if (source.front() != '/') {
        char buffer[4096] = {};
        ssize_t const length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
        EXPECT_GT(length, 0);
        std::string const self(buffer, static_cast<std::size_t>(length > 0 ? length : 0));
        source = self.substr(0, self.rfind('/') + 1) + source;
    }
    std::ifstream in(source.substr(0, source.rfind("/tests/")) + "/docs/settings-files.md");
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The Info each row of the family table is read against.
InfoPtr DocInfo(std::string const& family) {
    auto const mode = [](unsigned int id, std::string const& name) {
        auto info = NewInfo<EnumInfo>(id, name, false);
        info->SetTable({{"night", 1, false}, {"day", 3, false}});
        return info;
    };
    std::map<std::string, std::function<InfoPtr()>> const infos = {
        {"Bool", [] { return NewInfo<BoolInfo>(1, "Flag"); }},
        {"Numeric:U8", [] { return NewInfo<NumericInfo<DoubleTraits>>(1, "Number"); }},
        {"NumericArray:*", [] { return NewInfo<NumericArrayInfo<U16Traits>>(1, "Numbers"); }},
        {"NumericSparse:*", [] { return NewInfo<NumericSparseInfo<U8Traits>>(1, "Sparse"); }},
        {"Enum", [mode] { return mode(1, "Mode"); }},
        {"String", [] { return NewInfo<StringInfo>(1, "Text"); }},
        {"StringArray", [] { return NewInfo<StringArrayInfo>(1, "Texts"); }},
        {"BoolArray", [] { return NewInfo<BoolArrayInfo>(1, "Flags"); }},
        {"StringSparse", [] { return NewInfo<StringSparseInfo>(1, "Word"); }},
        {"Colour", [] { return NewInfo<ColourInfo>(1, "Colour"); }},
        {"Coordinate:U16", [] { return NewInfo<CoordinateInfo<U16Traits>>(1, "Point"); }},
        {"Rectangle:U16", [] { return NewInfo<RectInfo<U16Traits>>(1, "Box"); }},
        {"Orientation", [] { return NewInfo<OrientationInfo>(1, "Pose"); }},
        {"Addr", [] { return NewInfo<AddrInfo>(1, "Host"); }},
        {"Endpoint", [] { return NewInfo<EndpointInfo>(1, "Peer"); }},
        {"AppEndpoint", [] { return NewInfo<AppEndpointInfo>(1, "Service"); }},
        {"AppEndpointArray", [] { return NewInfo<AppEndpointArrayInfo>(1, "Services"); }},
        {"RectArray:U16", [] { return NewInfo<RectArrayInfo<U16Traits>>(1, "Boxes"); }},
        {"Composite",
         [mode] {
             auto inner = NewInfo<CompositeInfo>(0, "inner");
             inner->AddInfo(NewInfo<BoolInfo>(0, "on"));
             inner->AddInfo(mode(0, "mode"));
             auto info = NewInfo<CompositeInfo>(1, "Stream");
             info->AddInfo(NewInfo<NumericInfo<U16Traits>>(0, "rate"));
             info->AddInfo(NewInfo<StringInfo>(0, "codec"));
             info->AddInfo(inner);
             return info;
         }},
        {"Extended", [] { return NewInfo<ExtendedInfo>(1, "Pair"); }},
        {"LocalizedString", [] { return NewInfo<LocalizedStringInfo>(1, "Message"); }},
    };
    auto const found = infos.find(family);
    return found == infos.end() ? nullptr : found->second();
}

TEST(FilesValues, TheDocumentedExamplesAreRead) {
    std::string const doc = ReadDoc();
    ASSERT_FALSE(doc.empty());
    std::size_t const from = doc.find("## Values by family");
    std::size_t const to = doc.find("### Numbers", from);
    ASSERT_NE(to, std::string::npos);
    std::istringstream table(doc.substr(from, to - from));
    std::size_t examples = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.compare(0, 3, "| `") != 0) {
            continue;
        }
        std::string const family = line.substr(3, line.find('`', 3) - 3);
        std::string const column = line.substr(line.rfind('|', line.size() - 2));
        SCOPED_TRACE(family);
        InfoPtr const info = DocInfo(family);
        for (std::size_t open = column.find('`'); open != std::string::npos;
             open = column.find('`', column.find('`', open + 1) + 1)) {
            std::string const example =
                column.substr(open + 1, column.find('`', open + 1) - open - 1);
            SCOPED_TRACE(example);
            ASSERT_TRUE(info);
            Problems problems;
            ItemPtr const item = ReadValue(example, *info, problems);
            EXPECT_EQ(problems, Problems{});
            ASSERT_TRUE(item);
            ItemPtr const again = ReadValue(WriteValue(*item), *info, problems);
            ASSERT_TRUE(again);
            EXPECT_EQ(WriteValue(*again), WriteValue(*item));
            ++examples;
        }
    }
    EXPECT_EQ(examples, 25u);

    // The file at the top, read into the settings it names.
    std::size_t const start = doc.find("```json\n") + 8;
    std::string const file = doc.substr(start, doc.find("```", start) - start);
    InfoItemDirectory directory;
    SectionId device;
    SectionId input;
    SectionId video;
    SectionId net;
    ASSERT_EQ(directory.AddSection("Device", device), 0);
    ASSERT_EQ(directory.AddSection("Audio/Input", input), 0);
    ASSERT_EQ(directory.AddSection("Video", video), 0);
    ASSERT_EQ(directory.AddSection("Net", net), 0);
    auto const enter = [&directory](SectionId const& section, std::string const& name,
                                    std::string const& family) {
        InfoPtr const info =
            DocInfo(family)->DeepCopy(section.GetInfoItemSectionId().CreateInfoItemId(1), name);
        EXPECT_EQ(directory.AddInfo(HoldInfo(info)), 0) << name;
    };
    enter(device, "Name", "String");
    auto const mode =
        DocInfo("Enum")->DeepCopy(device.GetInfoItemSectionId().CreateInfoItemId(2), "Mode");
    ASSERT_EQ(directory.AddInfo(HoldInfo(mode)), 0);
    auto gain =
        NewInfo<NumericInfo<U32Traits>>(input.GetInfoItemSectionId().CreateInfoItemId(1), "Gain");
    gain->SetMax(100);
    ASSERT_EQ(directory.AddInfo(HoldInfo(gain)), 0);
    auto const levels = DocInfo("NumericArray:*")
                            ->DeepCopy(input.GetInfoItemSectionId().CreateInfoItemId(2), "Levels");
    ASSERT_EQ(directory.AddInfo(HoldInfo(levels)), 0);
    enter(video, "Privacy", "Rectangle:U16");
    enter(net, "Stream", "AppEndpoint");
    ValuesReport const report = ReadValues(file, directory, Apply::AllOrNothing);
    EXPECT_EQ(report.problems, Problems{}) << file;
    EXPECT_EQ(report.applied, 6u);
}

}  // namespace
