#include "infoform.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <legacy/oru/catalogue.h>
#include <legacy/oru/files/check.h>
#include <legacy/oru/oru.h>

#include "checkrules.h"
#include "families.h"
#include "valueform.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {
namespace DescriptionForm {

namespace {

template <class T>
char const* ElementName() {
    return NumericTypeText(T::k_numericType);
}

// A text of the values' form, in the tree the description is written from.
Json FormJson(std::string const& text) {
    return Json::parse(text);
}

template <class E>
Json NumberJson(E value) {
    return FormJson(ValueForm::NumberText(value));
}

Json ColourJson(Vintor::Colour_t const& colour) {
    std::string text;
    ValueForm::AppendColour(text, colour);
    return FormJson(text);
}

// The default of info in the form of its family's values.
Json DefaultJson(InfoBase const& info) {
    ItemPtr const item(info.CreateItem());
    std::string text;
    if (!item || !ValueForm::AppendValue(text, *item, &info)) {
        return Json();
    }
    return FormJson(text);
}

// The default of members as a value of info's family, read by the same
// functions as the values of settings; null when absent or refused.
template <class ItemT>
boost::intrusive_ptr<ItemT> ReadDefault(Members& members, InfoBase const& info,
                                        JsonValue const* value) {
    if (!value) {
        return nullptr;
    }
    std::string const pointer = members.PointerOf("default");
    ValueForm::Sink sink(members.Check().All());
    ItemPtr const item = ValueForm::ReadItem(*value, info, sink, pointer);
    sink.EndValue(pointer);
    return boost::intrusive_ptr<ItemT>(Catalogue::As<ItemT>(item.get()));
}

bool ReadColour(JsonValue const& value, std::string const& pointer, Reader& reader,
                Vintor::Colour_t& out) {
    ValueForm::Sink sink(reader.All());
    bool const read = ValueForm::ReadColour(value, out, sink, pointer);
    sink.EndValue(pointer);
    return read;
}

// ---- Each family: its keys written, and read into a fresh Info ----

// min, max and default of a scalar, read together so that they are checked
// against each other and the Info never clamps one of them.
template <class T>
void ReadScalar(Members& members, NumericInfo<T>& info) {
    using E = typename T::Element;
    Reader& reader = members.Check();
    E min = info.GetMin();
    E max = info.GetMax();
    E value = info.GetDefault();
    JsonValue const* const minJson = members.Get("min");
    JsonValue const* const maxJson = members.Get("max");
    JsonValue const* const defaultJson = members.Get("default");
    bool ok = true;
    ok = (!minJson || reader.Number(*minJson, members.PointerOf("min"), min, ElementName<T>())) &&
         ok;
    ok = (!maxJson || reader.Number(*maxJson, members.PointerOf("max"), max, ElementName<T>())) &&
         ok;
    ok = (!defaultJson ||
          reader.Number(*defaultJson, members.PointerOf("default"), value, ElementName<T>())) &&
         ok;
    if (!ok) {
        return;
    }
    if (max < min) {
        reader.Add(members.PointerOf(maxJson ? "max" : "min"), "max is below min");
        return;
    }
    if (defaultJson && (value < min || value > max)) {
        reader.Add(members.PointerOf("default"),
                   value < min ? "default is below min" : "default is above max");
        return;
    }
    // Only what changes is set: the setters move the default, and a fresh
    // Info's default may lie outside its own bounds.
    if (min != info.GetMin()) {
        info.SetMin(min);
    }
    if (max != info.GetMax()) {
        info.SetMax(max);
    }
    if (defaultJson) {
        info.SetDefault(value);
    }
}

template <class T>
void WriteScalar(NumericInfo<T> const& info, Json& out) {
    out["min"] = NumberJson(info.GetMin());
    out["max"] = NumberJson(info.GetMax());
    // A default outside the bounds is a fresh Info's own, which no setter
    // can give: left out, it stays so when read.
    if (!(info.GetDefault() < info.GetMin()) && !(info.GetDefault() > info.GetMax())) {
        out["default"] = NumberJson(info.GetDefault());
    }
}

// An optional object under key: its members are read by read(inner), and
// any other member is refused.
template <class Read>
void ReadNested(Members& members, char const* key, Read read) {
    JsonValue const* const value = members.Get(key);
    if (!value) {
        return;
    }
    std::string const pointer = members.PointerOf(key);
    if (!members.Check().Object(*value, pointer)) {
        return;
    }
    Members inner(*value, pointer, members.Check());
    read(inner);
    inner.RefuseUnknown();
}

// A nested scalar: "x": {"min": 0, "max": 100, "default": 5}.
template <class T>
void ReadPart(Members& members, char const* key, NumericInfo<T>& part) {
    ReadNested(members, key, [&part](Members& inner) { ReadScalar(inner, part); });
}

template <class T>
Json ScalarJson(NumericInfo<T> const& info) {
    Json out = Json::object();
    WriteScalar(info, out);
    return out;
}

template <class T>
Json CoordinateJson(CoordinateInfo<T> const& info) {
    Json out = Json::object();
    out["x"] = ScalarJson(*info.X());
    out["y"] = ScalarJson(*info.Y());
    return out;
}

template <class T>
void ReadCorner(Members& members, char const* key, CoordinateInfo<T>& corner) {
    ReadNested(members, key, [&corner](Members& inner) {
        ReadPart(inner, "x", *corner.X());
        ReadPart(inner, "y", *corner.Y());
    });
}

// minSize and maxSize, checked against each other; the Info takes them only
// when both fit.
template <class InfoT>
bool ReadSizes(Members& members, InfoT& info, unsigned long long& min, unsigned long long& max) {
    Reader& reader = members.Check();
    min = info.GetMinSize();
    max = info.GetMaxSize();
    JsonValue const* const minJson = members.Get("minSize");
    JsonValue const* const maxJson = members.Get("maxSize");
    bool ok = true;
    ok = (!minJson || reader.Size(*minJson, members.PointerOf("minSize"), min)) && ok;
    ok = (!maxJson || reader.Size(*maxJson, members.PointerOf("maxSize"), max)) && ok;
    if (!ok) {
        return false;
    }
    if (max < min) {
        reader.Add(members.PointerOf(maxJson ? "maxSize" : "minSize"), "maxSize is below minSize");
        return false;
    }
    return true;
}

template <class InfoT>
void SetSizes(InfoT& info, unsigned long long min, unsigned long long max) {
    // The maximum first: raising the minimum above the old maximum would move it.
    info.SetMaxSize(static_cast<decltype(info.GetMaxSize())>(max));
    info.SetMinSize(static_cast<decltype(info.GetMinSize())>(min));
}

bool DefaultCountFits(Members& members, std::size_t count, unsigned long long min,
                      unsigned long long max) {
    if (count < min || count > max) {
        members.Check().Add(members.PointerOf("default"),
                            "default has " + std::to_string(count) + " elements; it must have " +
                                std::to_string(min) + " to " + std::to_string(max));
        return false;
    }
    return true;
}

// The elements of an array member, each read by read(value, pointer, out).
template <class E, class ReadOne>
bool ReadArray(Members& members, char const* key, std::vector<E>& out, ReadOne readOne) {
    JsonValue const* const value = members.Get(key);
    if (!value) {
        return false;
    }
    std::string const pointer = members.PointerOf(key);
    if (!members.Check().Array(*value, pointer)) {
        return false;
    }
    bool ok = true;
    out.clear();
    out.reserve(value->items.size());
    for (std::size_t i = 0; i < value->items.size(); ++i) {
        E element{};
        ok = readOne(value->items[i], pointer + "/" + std::to_string(i), element) && ok;
        out.push_back(element);
    }
    return ok;
}

struct Writer {
    Json& out;

    // An array default whose count lies outside the sizes is an empty one
    // the Info kept; no setter takes it, and left out it stays so when read.
    template <class InfoT>
    void ArrayDefault(InfoT const& info) {
        std::size_t const count = info.GetDefault().size();
        if (count >= info.GetMinSize() && count <= info.GetMaxSize()) {
            out["default"] = DefaultJson(info);
        }
    }

    // The sizes and default of an array family whose elements have no bounds.
    template <class InfoT>
    void SizedArray(InfoT const& info) {
        out["minSize"] = info.GetMinSize();
        out["maxSize"] = info.GetMaxSize();
        ArrayDefault(info);
    }

    template <class T>
    void operator()(NumericInfo<T> const& info) {
        WriteScalar(info, out);
    }

    template <class T>
    void operator()(NumericArrayInfo<T> const& info) {
        out["minSize"] = info.GetMinSize();
        out["maxSize"] = info.GetMaxSize();
        out["min"] = NumberJson(info.GetMin());
        out["max"] = NumberJson(info.GetMax());
        ArrayDefault(info);
    }

    template <class T>
    void operator()(NumericSparseInfo<T> const& info) {
        Json table = Json::array();
        for (auto const element : info.GetTable()) {
            table.push_back(NumberJson(element));
        }
        out["table"] = std::move(table);
        // With no table the default is the Info's own and no setter takes it.
        if (!info.GetTable().empty()) {
            out["default"] = DefaultJson(info);
        }
    }

    template <class T>
    void operator()(CoordinateInfo<T> const& info) {
        out["x"] = ScalarJson(*info.X());
        out["y"] = ScalarJson(*info.Y());
    }

    template <class T>
    void operator()(RectInfo<T> const& info) {
        out["topLeft"] = CoordinateJson(*info.TopLeft());
        out["bottomRight"] = CoordinateJson(*info.BottomRight());
    }

    template <class T>
    void operator()(RectArrayInfo<T> const& info) {
        out["minSize"] = info.GetMinSize();
        out["maxSize"] = info.GetMaxSize();
        out["topLeft"] = CoordinateJson(*info.TopLeft());
        out["bottomRight"] = CoordinateJson(*info.BottomRight());
    }

    void operator()(BoolInfo const& info) {
        out["fixed"] = info.GetFixed();
        out["default"] = DefaultJson(info);
    }

    void operator()(BoolArrayInfo const& info) { SizedArray(info); }

    void operator()(EnumInfo const& info) {
        Json table = Json::array();
        for (auto const& entry : info.GetTable()) {
            Json element = Json::object();
            element["name"] = entry.name;
            element["value"] = entry.value;
            element["disabled"] = entry.disabled;
            table.push_back(std::move(element));
        }
        out["table"] = std::move(table);
        out["default"] = DefaultJson(info);
        out["localized"] = info.IsLocalized();
    }

    void operator()(StringInfo const& info) {
        out["maxLength"] = info.GetMaxLength();
        out["default"] = DefaultJson(info);
    }

    void operator()(StringArrayInfo const& info) { SizedArray(info); }

    void operator()(StringSparseInfo const& info) {
        out["table"] = info.GetTable();
        if (!info.GetTable().empty()) {
            out["default"] = DefaultJson(info);
        }
    }

    void operator()(ColourInfo const& info) {
        out["min"] = ColourJson(info.GetMin());
        out["max"] = ColourJson(info.GetMax());
        out["default"] = DefaultJson(info);
    }

    void operator()(AppEndpointArrayInfo const& info) {
        out["minSize"] = static_cast<std::uint64_t>(info.GetMinSize());
        out["maxSize"] = static_cast<std::uint64_t>(info.GetMaxSize());
        out["default"] = DefaultJson(info);
    }

    // The families whose only key is their default.
    void operator()(AddrInfo const& info) { out["default"] = DefaultJson(info); }
    void operator()(EndpointInfo const& info) { out["default"] = DefaultJson(info); }
    void operator()(AppEndpointInfo const& info) { out["default"] = DefaultJson(info); }
    void operator()(ExtendedInfo const& info) { out["default"] = DefaultJson(info); }
    void operator()(LocalizedStringInfo const& info) { out["default"] = DefaultJson(info); }

    template <class Parent>
    void Children(Parent const& info) {
        Json children = Json::array();
        for (std::size_t i = 0; i < info.GetSize(); ++i) {
            Json child = Json::object();
            if (auto const childInfo = info.GetInfo(i)) {
                Describe(*childInfo, child);
            }
            children.push_back(std::move(child));
        }
        out["children"] = std::move(children);
    }

    void operator()(CompositeInfo const& info) { Children(info); }
    void operator()(CollectionInfo const& info) { Children(info); }
};

// Reads the family's own keys into info, a fresh Info of the family.
struct Filler {
    Members& members;

    Reader& reader() { return members.Check(); }

    template <class T>
    void operator()(NumericInfo<T>& info) {
        ReadScalar(members, info);
    }

    template <class T>
    void operator()(NumericArrayInfo<T>& info) {
        using E = typename T::Element;
        unsigned long long minSize = 0;
        unsigned long long maxSize = 0;
        bool const sizes = ReadSizes(members, info, minSize, maxSize);
        E min = info.GetMin();
        E max = info.GetMax();
        JsonValue const* const minJson = members.Get("min");
        JsonValue const* const maxJson = members.Get("max");
        bool ok = true;
        ok = (!minJson ||
              reader().Number(*minJson, members.PointerOf("min"), min, ElementName<T>())) &&
             ok;
        ok = (!maxJson ||
              reader().Number(*maxJson, members.PointerOf("max"), max, ElementName<T>())) &&
             ok;
        if (ok && max < min) {
            reader().Add(members.PointerOf(maxJson ? "max" : "min"), "max is below min");
            ok = false;
        }
        JsonValue const* const defaultJson = members.Get("default");
        auto const values = ReadDefault<NumericArrayItem<T>>(members, info, defaultJson);
        if (!sizes || !ok || (defaultJson && !values)) {
            return;
        }
        if (values && !DefaultCountFits(members, values->Val().size(), minSize, maxSize)) {
            return;
        }
        SetSizes(info, minSize, maxSize);
        info.SetMax(max);
        info.SetMin(min);
        if (values) {
            info.SetDefault(values->Val());
        }
    }

    template <class T>
    void operator()(NumericSparseInfo<T>& info) {
        using E = typename T::Element;
        std::vector<E> table;
        bool const hasTable = members.Get("table") != nullptr;
        bool const tableOk =
            ReadArray(members, "table", table,
                      [this](JsonValue const& value, std::string const& pointer, E& out) {
                          return reader().Number(value, pointer, out, ElementName<T>());
                      });
        JsonValue const* const defaultJson = members.Get("default");
        auto const value = ReadDefault<NumericSparseItem<T>>(members, info, defaultJson);
        if ((hasTable && !tableOk) || (defaultJson && !value)) {
            return;
        }
        if (hasTable) {
            info.SetTable(table);
        }
        if (value && info.SetDefault(value->GetVal()) != 0) {
            reader().Add(members.PointerOf("default"), "default is not in the table");
        }
    }

    template <class T>
    void operator()(CoordinateInfo<T>& info) {
        ReadPart(members, "x", *info.X());
        ReadPart(members, "y", *info.Y());
    }

    template <class T>
    void operator()(RectInfo<T>& info) {
        ReadCorner(members, "topLeft", *info.TopLeft());
        ReadCorner(members, "bottomRight", *info.BottomRight());
    }

    template <class T>
    void operator()(RectArrayInfo<T>& info) {
        unsigned long long minSize = 0;
        unsigned long long maxSize = 0;
        if (ReadSizes(members, info, minSize, maxSize)) {
            SetSizes(info, minSize, maxSize);
        }
        ReadCorner(members, "topLeft", *info.TopLeft());
        ReadCorner(members, "bottomRight", *info.BottomRight());
    }

    void operator()(BoolInfo& info) {
        bool flag = false;
        if (JsonValue const* const fixed = members.Get("fixed")) {
            if (reader().Bool(*fixed, members.PointerOf("fixed"), flag)) {
                info.SetFixed(flag);
            }
        }
        if (auto const value = ReadDefault<BoolItem>(members, info, members.Get("default"))) {
            info.SetDefault(value->GetVal());
        }
    }

    // minSize, maxSize and a default whose count lies within them.
    template <class ItemT, class InfoT>
    void ReadSizedArray(InfoT& info) {
        unsigned long long minSize = 0;
        unsigned long long maxSize = 0;
        bool const sizes = ReadSizes(members, info, minSize, maxSize);
        JsonValue const* const defaultJson = members.Get("default");
        auto const values = ReadDefault<ItemT>(members, info, defaultJson);
        if (!sizes || (defaultJson && !values)) {
            return;
        }
        if (values && !DefaultCountFits(members, values->Val().size(), minSize, maxSize)) {
            return;
        }
        SetSizes(info, minSize, maxSize);
        if (values) {
            info.SetDefault(values->Val());
        }
    }

    void operator()(BoolArrayInfo& info) { ReadSizedArray<BoolArrayItem>(info); }
    void operator()(StringArrayInfo& info) { ReadSizedArray<StringArrayItem>(info); }

    void operator()(EnumInfo& info) {
        EnumInfo::Table table;
        bool const hasTable = members.Get("table") != nullptr;
        bool const tableOk = ReadArray(
            members, "table", table,
            [this](JsonValue const& value, std::string const& pointer, ElemType<int>& out) {
                if (!reader().Object(value, pointer)) {
                    return false;
                }
                std::size_t const before = reader().Count();
                Members entry(value, pointer, reader());
                JsonValue const* const name = entry.Get("name");
                JsonValue const* const number = entry.Get("value");
                JsonValue const* const disabled = entry.Get("disabled");
                if (name) {
                    reader().String(*name, entry.PointerOf("name"), out.name);
                }
                if (!number) {
                    reader().Add(pointer, "value is missing");
                } else {
                    reader().Number(*number, entry.PointerOf("value"), out.value, "Enum");
                }
                if (disabled) {
                    reader().Bool(*disabled, entry.PointerOf("disabled"), out.disabled);
                }
                entry.RefuseUnknown();
                return reader().Count() == before;
            });
        bool localized = false;
        JsonValue const* const localizedJson = members.Get("localized");
        bool const localizedOk =
            !localizedJson ||
            reader().Bool(*localizedJson, members.PointerOf("localized"), localized);
        JsonValue const* const defaultJson = members.Get("default");
        if ((hasTable && !tableOk) || !localizedOk) {
            return;
        }
        // The table first: a default may name one of its entries.
        if (hasTable) {
            info.SetTable(table);
        }
        auto const value = ReadDefault<EnumItem>(members, info, defaultJson);
        if (value && info.SetDefault(value->GetVal()) != 0) {
            reader().Add(members.PointerOf("default"), "default is not in the table");
        }
    }

    void operator()(StringInfo& info) {
        unsigned long long length = info.GetMaxLength();
        JsonValue const* const lengthJson = members.Get("maxLength");
        bool const lengthOk =
            !lengthJson || reader().Size(*lengthJson, members.PointerOf("maxLength"), length);
        JsonValue const* const defaultJson = members.Get("default");
        auto const text = ReadDefault<StringItem>(members, info, defaultJson);
        if (!lengthOk || (defaultJson && !text)) {
            return;
        }
        // A maximum of 0 puts no limit on the default.
        if (text && length != 0 && text->Val().size() > length) {
            reader().Add(members.PointerOf("default"),
                         "default is longer than maxLength " + std::to_string(length));
            return;
        }
        info.SetMaxLength(length);
        if (text) {
            info.SetDefault(text->Val());
        }
    }

    void operator()(StringSparseInfo& info) {
        std::vector<std::string> table;
        bool const hasTable = members.Get("table") != nullptr;
        bool const tableOk =
            ReadArray(members, "table", table,
                      [this](JsonValue const& value, std::string const& pointer, std::string& out) {
                          return reader().String(value, pointer, out);
                      });
        JsonValue const* const defaultJson = members.Get("default");
        auto const text = ReadDefault<StringSparseItem>(members, info, defaultJson);
        if ((hasTable && !tableOk) || (defaultJson && !text)) {
            return;
        }
        if (hasTable) {
            info.SetTable(table);
        }
        if (text && info.SetDefault(text->Val()) != 0) {
            reader().Add(members.PointerOf("default"), "default is not in the table");
        }
    }

    void operator()(ColourInfo& info) {
        Vintor::Colour_t colour;
        if (JsonValue const* const min = members.Get("min")) {
            if (ReadColour(*min, members.PointerOf("min"), reader(), colour)) {
                info.SetMin(colour);
            }
        }
        if (JsonValue const* const max = members.Get("max")) {
            if (ReadColour(*max, members.PointerOf("max"), reader(), colour)) {
                info.SetMax(colour);
            }
        }
        TakeDefault<ColourItem>(info);
    }

    // The families whose default is their only key.
    template <class ItemT, class InfoT>
    void TakeDefault(InfoT& info) {
        if (auto const value = ReadDefault<ItemT>(members, info, members.Get("default"))) {
            info.SetDefault(value->Val());
        }
    }

    void operator()(AddrInfo& info) { TakeDefault<AddrItem>(info); }
    void operator()(EndpointInfo& info) { TakeDefault<EndpointItem>(info); }
    void operator()(AppEndpointInfo& info) { TakeDefault<AppEndpointItem>(info); }
    void operator()(ExtendedInfo& info) { TakeDefault<ExtendedItem>(info); }
    void operator()(LocalizedStringInfo& info) {
        auto const value = ReadDefault<LocalizedStringItem>(members, info, members.Get("default"));
        if (value) {
            info.SetDefault(value->GetVal());
        }
    }

    void operator()(AppEndpointArrayInfo& info) {
        unsigned long long minSize = 0;
        unsigned long long maxSize = 0;
        if (ReadSizes(members, info, minSize, maxSize)) {
            if (maxSize > std::numeric_limits<std::size_t>::max()) {
                reader().Add(members.PointerOf("maxSize"), "maxSize is too large");
            } else {
                SetSizes(info, minSize, maxSize);
            }
        }
        TakeDefault<AppEndpointArrayItem>(info);
    }

    template <class Parent>
    void Children(Parent& info) {
        JsonValue const* const children = members.Get("children");
        if (!children) {
            return;
        }
        std::string const pointer = members.PointerOf("children");
        if (!reader().Array(*children, pointer)) {
            return;
        }
        std::vector<typename Parent::InfoPtr> infos;
        for (std::size_t i = 0; i < children->items.size(); ++i) {
            Family const* family = nullptr;
            boost::intrusive_ptr<InfoBase> child = ReadInfo(
                children->items[i], pointer + "/" + std::to_string(i), reader(), true, family);
            if (child) {
                infos.push_back(child);
            }
        }
        info.SetInfos(infos);
    }

    void operator()(CompositeInfo& info) { Children(info); }
    void operator()(CollectionInfo& info) { Children(info); }
};

}  // namespace

void Describe(InfoBase const& info, Json& out) {
    Family const* const family = FamilyOf(info);
    out["type"] = family ? family->name : BracketedTypeText(info.GetType(), info.GetNumericType());
    if (!info.GetName().empty()) {
        out["name"] = info.GetName();
    }
    if (info.GetId() != 0) {
        out["id"] = HexId(info.GetId());
    }
    out["permission"] = info.GetPermission().Value();
    VisitInfo(info, Writer{out});
}

// A copy of info under another identity. An endpoint array's copy leaves
// its sizes behind, so they are set again.
boost::intrusive_ptr<InfoBase> Renamed(InfoBase const& info, unsigned int id,
                                       std::string const& name, Permission_t const& permission) {
    boost::intrusive_ptr<InfoBase> copy(info.DeepCopy(id, name, permission));
    Catalogue::VisitInfo(info, [&copy](auto const& original) {
        using InfoT = std::decay_t<decltype(original)>;
        if constexpr (std::is_same<InfoT, AppEndpointArrayInfo>::value) {
            auto& sized = static_cast<AppEndpointArrayInfo&>(*copy);
            sized.SetMaxSize(original.GetMaxSize());
            sized.SetMinSize(original.GetMinSize());
        }
    });
    return copy;
}

boost::intrusive_ptr<InfoBase> ReadInfo(JsonValue const& object, std::string const& pointer,
                                        Reader& reader, bool child, Family const*& family,
                                        Permission_t* permissionOut) {
    family = nullptr;
    if (!reader.Object(object, pointer)) {
        return nullptr;
    }
    Members members(object, pointer, reader);
    std::string name;
    unsigned int id = 0;
    unsigned short permission = 0;
    members.Get(child ? "name" : "path");
    JsonValue const* const idJson = members.Get("id");
    if (child) {
        if (JsonValue const* const nameJson = members.Get("name")) {
            reader.String(*nameJson, members.PointerOf("name"), name);
        }
        if (idJson) {
            reader.Id(*idJson, members.PointerOf("id"), id);
        }
    }
    if (JsonValue const* const permissionJson = members.Get("permission")) {
        reader.Number(*permissionJson, members.PointerOf("permission"), permission, "a permission");
    }
    JsonValue const* const typeJson = members.Get("type");
    std::string typeName;
    if (!typeJson) {
        reader.Add(pointer, "type is missing");
    } else if (reader.String(*typeJson, members.PointerOf("type"), typeName)) {
        family = FindFamily(typeName);
        if (!family) {
            std::vector<std::string> names;
            for (Family const& each : Families()) {
                names.push_back(each.name);
            }
            reader.Add(members.PointerOf("type"),
                       "unknown type " + Shown(typeName) + CheckRules::DidYouMean(typeName, names));
        }
    }
    if (!family) {
        // Without a family its keys cannot be told from unknown ones.
        return nullptr;
    }
    boost::intrusive_ptr<InfoBase> info(family->create());
    if (family->type == OruType_t::Enum) {
        // The localized flag is only taken at construction.
        JsonValue const* const localized = Member(object, "localized");
        if (localized && Kind::Boolean == localized->kind && localized->boolean) {
            info = new EnumInfo(0, std::string(), Permission_t(), true);
        }
    }
    std::size_t const before = reader.Count();
    VisitInfo(*info, Filler{members});
    members.RefuseUnknown();
    if (reader.Count() == before) {
        // Defaults and table entries pass the one check, as values do.
        Problems found = CheckRules::TableForms(*info, members.PointerOf("table"));
        bool const emptyTable = info->GetType() == OruType_t::Enum &&
                                static_cast<EnumInfo const&>(*info).GetTable().empty();
        if (Member(object, "default") && !emptyTable) {
            boost::intrusive_ptr<InfoBase const> const checked(info);
            boost::intrusive_ptr<ItemBase> const value(info->CreateItem());
            // Checked under its own pointer, so that a passing default spells none.
            Problems more = Files::Check(*value, checked, std::string());
            for (Problem& problem : more) {
                problem.pointer.insert(0, PointerText(members.PointerOf("default")));
                found.push_back(std::move(problem));
            }
        }
        for (Problem const& problem : found) {
            reader.Add(problem.pointer, problem.message);
        }
    }
    if (permissionOut) {
        *permissionOut = Permission_t(permission);
        return info;
    }
    return Renamed(*info, id, name, Permission_t(permission));
}

}  // namespace DescriptionForm
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
