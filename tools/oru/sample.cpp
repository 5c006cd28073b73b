// The sample device: one setting of every family with a serial form.
#include "sample.h"

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

#include <legacy/oru/oru.h>

namespace OruTool {

using namespace Legacy::Oru;

namespace {

// A setting of a family's default Info, with its value read from text as the
// family reads it.
template <class InfoT>
Setting FromText(unsigned int id, char const* name, char const* text,
                 std::function<void(InfoT&)> const& configure = nullptr) {
    boost::intrusive_ptr<InfoT> info(new InfoT(id, name, Permission_t(0x0003)));
    if (configure) {
        configure(*info);
    }
    boost::intrusive_ptr<ItemBase> item(info->CreateItem());
    std::istringstream in(text);
    std::ostringstream errors;
    item->SetValFromStream(in, errors, info);
    return Setting{info, item, std::string()};
}

template <class T>
Setting MakeNumeric(unsigned int id, char const* name, typename T::Element low,
                    typename T::Element high, typename T::Element def, typename T::Element value) {
    boost::intrusive_ptr<NumericInfo<T>> info(new NumericInfo<T>(id, name, Permission_t(0x0003)));
    info->SetMin(low);
    info->SetMax(high);
    info->SetDefault(def);
    boost::intrusive_ptr<NumericItem<T>> item(static_cast<NumericItem<T>*>(info->CreateItem()));
    item->SetVal(value);
    return Setting{info, item, std::string()};
}

template <class T>
Setting MakeNumericArray(unsigned int id, char const* name, unsigned long long maxSize,
                         std::vector<typename T::Element> const& def,
                         std::vector<typename T::Element> const& value) {
    boost::intrusive_ptr<NumericArrayInfo<T>> info(
        new NumericArrayInfo<T>(id, name, Permission_t(0x0003)));
    info->SetMaxSize(maxSize);
    info->SetDefault(def);
    boost::intrusive_ptr<NumericArrayItem<T>> item(
        static_cast<NumericArrayItem<T>*>(info->CreateItem()));
    item->SetVal(value);
    return Setting{info, item, std::string()};
}

Setting MakeString(unsigned int id, char const* name, unsigned long long maxLength, char const* def,
                   char const* value) {
    boost::intrusive_ptr<StringInfo> info(new StringInfo(id, name, Permission_t(0x0001)));
    info->SetMaxLength(maxLength);
    info->SetDefault(def);
    boost::intrusive_ptr<StringItem> item(static_cast<StringItem*>(info->CreateItem()));
    item->SetVal(value);
    return Setting{info, item, std::string()};
}

Setting MakeStringArray(unsigned int id, char const* name, unsigned long long maxSize,
                        std::vector<std::string> const& value) {
    boost::intrusive_ptr<StringArrayInfo> info(new StringArrayInfo(id, name, Permission_t(0x0003)));
    info->SetMaxSize(maxSize);
    boost::intrusive_ptr<StringArrayItem> item(static_cast<StringArrayItem*>(info->CreateItem()));
    item->SetVal(value);
    return Setting{info, item, std::string()};
}

Setting MakeEnum(unsigned int id, char const* name, std::vector<ElemType<int>> const& table,
                 int def, int value) {
    boost::intrusive_ptr<EnumInfo> info(new EnumInfo(id, name, Permission_t(0x0003), false));
    info->SetTable(table);
    info->SetDefault(def);
    boost::intrusive_ptr<EnumItem> item(static_cast<EnumItem*>(info->CreateItem()));
    item->SetVal(value, *info);
    return Setting{info, item, std::string()};
}

// A composite of the children's Infos, and an Item of their values.
Setting MakeComposite(unsigned int id, char const* name, std::vector<Setting> const& children) {
    boost::intrusive_ptr<CompositeInfo> info(new CompositeInfo(id, name, Permission_t(0x0003)));
    boost::intrusive_ptr<CompositeItem> item(new CompositeItem(id));
    for (auto const& child : children) {
        info->AddInfo(child.info);
        item->AddItem(child.item);
    }
    return Setting{info, item, std::string()};
}

// A colour setting; whole components, since the wire keeps only those.
Setting MakeColour(unsigned int id, char const* name, Vintor::Colour_t const& def,
                   Vintor::Colour_t const& value) {
    boost::intrusive_ptr<ColourInfo> info(new ColourInfo(id, name, Permission_t(0x0003)));
    info->SetMax(Vintor::Colour_t(1.0f, 1.0f, 1.0f, 1.0f));
    info->SetDefault(def);
    boost::intrusive_ptr<ColourItem> item(new ColourItem(id));
    item->SetVal(value);
    return Setting{info, item, std::string()};
}

// An orientation: the family has no Info class.
Setting MakeOrientation(unsigned int id, char const* name, Orientation_t const& value) {
    boost::intrusive_ptr<OrientationItem> item(new OrientationItem(id));
    item->Set(value);
    return Setting{nullptr, item, name};
}

// A list of application endpoints given as URIs (the family reads no text).
Setting MakeAppEndpoints(unsigned int id, char const* name, std::vector<char const*> const& uris) {
    boost::intrusive_ptr<AppEndpointArrayInfo> info(
        new AppEndpointArrayInfo(id, name, Permission_t(0x0003)));
    boost::intrusive_ptr<AppEndpointArrayItem> item(
        static_cast<AppEndpointArrayItem*>(info->CreateItem()));
    AppEndpointArrayItem::Value_t value;
    for (char const* uri : uris) {
        value.push_back(AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri(uri));
    }
    item->SetVal(value);
    return Setting{info, item, std::string()};
}

// An application endpoint setting whose default and value are given as URIs.
Setting MakeAppEndpoint(unsigned int id, char const* name, char const* defaultUri,
                        char const* valueUri) {
    using App = AppEndpoint<Net::Endpoint<Net::AddrStr>>;
    boost::intrusive_ptr<AppEndpointInfo> info(new AppEndpointInfo(id, name, Permission_t(0x0003)));
    info->SetDefault(App::FromUri(defaultUri));
    boost::intrusive_ptr<AppEndpointItem> item(static_cast<AppEndpointItem*>(info->CreateItem()));
    item->SetVal(App::FromUri(valueUri));
    return Setting{info, item, std::string()};
}

}  // namespace

std::string NameOf(Setting const& setting) {
    return setting.info ? setting.info->GetName() : setting.name;
}

std::vector<Setting> SampleSettings() {
    // Ids of the sample device: section numbers packed into the top bits,
    // the setting's number in the low ones.
    return {
        MakeNumeric<U32Traits>(0x420C0005, "Audio/Input/Gain", 0, 100, 50, 72),
        MakeNumeric<S16Traits>(0x420C0006, "Audio/Input/Balance", -50, 50, 0, -12),
        MakeNumeric<FloatTraits>(0x41000001, "Video/FrameRate", 1.0f, 60.0f, 25.0f, 30.0f),
        MakeNumeric<U8Traits>(0x41000002, "Video/Brightness", 0, 100, 50, 130),
        MakeNumericArray<S8Traits>(0x420C0007, "Audio/Input/Equalizer", 8, {0, 0, 0, 0, 0},
                                   {3, 1, 0, -2, -4}),
        MakeString(0x40000001, "Device/Name", 16, "camera", "lobby-east"),
        MakeStringArray(0x40000002, "Device/Tags", 4, {"lobby", "east", "outdoor"}),
        MakeEnum(0x41000003, "Video/Mode", {{"auto", 0}, {"day", 1}, {"night", 2}}, 0, 2),
        MakeComposite(0x42000001, "Audio/Output",
                      {MakeNumeric<U16Traits>(1, "Volume", 0, 100, 40, 65),
                       MakeEnum(2, "Codec", {{"pcm", 0}, {"aac", 1}}, 0, 1)}),
        MakeColour(0x41000004, "Video/OverlayColour", Vintor::Colour_t(1.0f, 1.0f, 1.0f, 1.0f),
                   Vintor::Colour_t(1.0f, 1.0f, 0.0f, 0.0f)),
        MakeAppEndpoint(0x43000001, "Network/ConfigService", "x-zyl-devsoap://0.0.0.0:80",
                        "http://192.168.0.20:8080"),
        FromText<BoolInfo>(0x41000005, "Video/Mirror", "1"),
        FromText<BoolArrayInfo>(0x420C0008, "Audio/Input/Mute", "2 0 1",
                                [](BoolArrayInfo& info) { info.SetMaxSize(4); }),
        FromText<NumericSparseInfo<U16Traits>>(
            0x41000006, "Video/Height", "720",
            [](NumericSparseInfo<U16Traits>& info) {
                std::vector<unsigned short> table = {480, 720, 1080};
                info.SetTable(table);
            }),
        FromText<StringSparseInfo>(0x40000003, "Device/Language", "en",
                                   [](StringSparseInfo& info) {
                                       std::vector<std::string> table = {"en", "de", "fr"};
                                       info.SetTable(table);
                                   }),
        FromText<CoordinateInfo<S32Traits>>(0x41000007, "Video/Origin", "10 -20"),
        FromText<RectInfo<U16Traits>>(0x41000008, "Video/Crop", "0 0 640 480"),
        FromText<RectArrayInfo<U16Traits>>(
            0x41000009, "Video/PrivacyMasks", "1 10 10 50 50",
            [](RectArrayInfo<U16Traits>& info) { info.SetMaxSize(4); }),
        MakeOrientation(0x4100000A, "Video/Mounting", Orientation_t{180.0f, 30.0f, 0.0f}),
        FromText<AddrInfo>(0x43000002, "Network/Gateway", "192.168.0.1"),
        FromText<EndpointInfo>(0x43000003, "Network/Syslog", "192.168.0.9:514"),
        MakeAppEndpoints(0x43000004, "Network/Streams",
                         {"rtsp://192.168.0.20:554", "http://192.168.0.20:8080"}),
    };
}

void SampleDirectory(InfoItemDirectory& directory) {
    // The settings of each section are numbered from 1 in the sample's order.
    std::map<unsigned int, std::size_t> numbers;
    for (Setting const& setting : SampleSettings()) {
        if (!setting.info) {
            continue;  // a family without an Info cannot stand in a directory
        }
        std::string const& path = setting.info->GetName();
        std::size_t const slash = path.rfind('/');
        SectionId section = directory.FindSection(path.substr(0, slash));
        if (!section.GetInfoItemSectionId().IsValidSectionId() &&
            directory.AddSection(path.substr(0, slash), section) != 0) {
            throw std::logic_error("the sample device's section " + path.substr(0, slash) +
                                   " cannot be added");
        }
        unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(
            ++numbers[section.GetInfoItemSectionId()]);
        boost::intrusive_ptr<InfoBase> const info(
            setting.info->DeepCopy(id, path.substr(slash + 1)));
        boost::intrusive_ptr<ItemBase> const item(setting.item->DeepCopy(id));
        if (directory.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info))) != 0 ||
            directory.SetItem(boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item))) != 0) {
            throw std::logic_error("the sample device's setting " + path + " cannot be added");
        }
    }
}

}  // namespace OruTool
