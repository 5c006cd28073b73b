#include <legacy/oru/files/description.h>

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

#include <legacy/oru/files/check.h>
#include <legacy/oru/oru.h>

#include "checkrules.h"
#include "families.h"
#include "valueform.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {

namespace {

using Json = nlohmann::ordered_json;
using ValueForm::Kind;

// A setting's path is at most this long.
constexpr std::size_t k_maxPathLength = 1024;

// An id as every output prints it: "0x" and eight upper-case hex digits.
std::string HexId(unsigned int id) {
    static char const digits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += digits[(id >> shift) & 15u];
    }
    return text;
}

// ---- Values of members ----

// A member's JSON pointer, spelled out only when a problem names it.
class MemberPointer {
public:
    MemberPointer(std::string const& object, std::string key)
        : object_(object), key_(std::move(key)) {}
    operator std::string() const { return object_ + "/" + PointerToken(key_); }

private:
    std::string const& object_;
    std::string key_;
};

std::string const& PointerText(std::string const& pointer) {
    return pointer;
}
std::string PointerText(MemberPointer const& pointer) {
    return pointer;
}

class Reader {
public:
    explicit Reader(Problems& problems) : problems_(problems) {}

    void Add(std::string const& pointer, std::string const& message) {
        problems_.push_back(Problem(pointer, message, path_));
    }

    // The path of the setting being read, which its problems name.
    void SetPath(std::string path) { path_ = std::move(path); }

    std::size_t Count() const { return problems_.size(); }
    Problems& All() { return problems_; }

    template <class P>
    bool Bool(JsonValue const& value, P const& pointer, bool& out) {
        if (Kind::Boolean != value.kind) {
            Add(PointerText(pointer), ValueForm::Expected("true or false", value));
            return false;
        }
        out = value.boolean;
        return true;
    }

    template <class P>
    bool String(JsonValue const& value, P const& pointer, std::string& out) {
        if (Kind::String != value.kind) {
            Add(PointerText(pointer), ValueForm::Expected("a string", value));
            return false;
        }
        out = value.text;
        return true;
    }

    // A number of E, by the same rule as the values of settings.
    template <class P, class E>
    bool Number(JsonValue const& value, P const& pointer, E& out, char const* typeName) {
        std::string why;
        if (!ValueForm::ReadElement(value, out, why, typeName)) {
            Add(PointerText(pointer), why);
            return false;
        }
        return true;
    }

    // An id as written out, a hex string such as "0x40000001", or as a number.
    template <class P>
    bool Id(JsonValue const& value, P const& pointer, unsigned int& out) {
        static char const* const k_expected = "an id (a number or a string such as \"0x40000001\")";
        switch (value.kind) {
            case Kind::Unsigned:
            case Kind::Integer:
            case Kind::Float:
                return Number(value, pointer, out, "an id");
            case Kind::String:
                break;
            default:
                Add(PointerText(pointer), ValueForm::Expected(k_expected, value));
                return false;
        }
        std::string const& text = value.text;
        bool const prefixed = text.size() > 2 && text.size() <= 10 && text[0] == '0' &&
                              (text[1] == 'x' || text[1] == 'X');
        unsigned int id = 0;
        for (std::size_t i = 2; prefixed && i < text.size(); ++i) {
            char const c = text[i];
            unsigned int const digit =
                c >= '0' && c <= '9'   ? static_cast<unsigned int>(c - '0')
                : c >= 'a' && c <= 'f' ? static_cast<unsigned int>(c - 'a' + 10)
                : c >= 'A' && c <= 'F' ? static_cast<unsigned int>(c - 'A' + 10)
                                       : 16u;
            if (digit > 15u) {
                break;
            }
            id = id << 4 | digit;
            if (i + 1 == text.size()) {
                out = id;
                return true;
            }
        }
        Add(PointerText(pointer),
            std::string("expected ") + k_expected + ", not \"" + Shown(text, 32) + "\"");
        return false;
    }

    template <class P>
    bool Size(JsonValue const& value, P const& pointer, unsigned long long& out) {
        return Number(value, pointer, out, "a size");
    }

    bool Array(JsonValue const& value, std::string const& pointer) {
        if (Kind::Array != value.kind) {
            Add(pointer, ValueForm::Expected("an array", value));
            return false;
        }
        return true;
    }

    bool Object(JsonValue const& value, std::string const& pointer) {
        if (Kind::Object != value.kind) {
            Add(pointer, ValueForm::Expected("an object", value));
            return false;
        }
        return true;
    }

private:
    Problems& problems_;
    std::string path_;
};

// The member of an object, or null when absent.
JsonValue const* Member(JsonValue const& object, char const* key) {
    for (std::size_t i = 0; i < object.keys.size(); ++i) {
        if (object.keys[i] == key) {
            return &object.items[i];
        }
    }
    return nullptr;
}

// The members of one object that a family reads, each with its pointer.
class Members {
public:
    Members(JsonValue const& object, std::string pointer, Reader& reader)
        : object_(object), pointer_(std::move(pointer)), reader_(reader) {}

    // The member, or null when absent; marks the key as known.
    JsonValue const* Get(char const* key) {
        if (!Known(key)) {
            if (count_ < k_inline) {
                inline_[count_++] = key;
            } else {
                more_.push_back(key);
            }
        }
        return Member(object_, key);
    }

    MemberPointer PointerOf(std::string key) const {
        return MemberPointer(pointer_, std::move(key));
    }
    std::string const& Pointer() const { return pointer_; }
    Reader& Check() { return reader_; }

    // Every member no one asked for.
    void RefuseUnknown() {
        for (std::string const& key : object_.keys) {
            if (!Known(key.c_str())) {
                std::set<std::string> sorted(inline_, inline_ + count_);
                sorted.insert(more_.begin(), more_.end());
                std::vector<std::string> const keys(sorted.begin(), sorted.end());
                reader_.Add(PointerOf(key),
                            "unknown key " + Shown(key) + CheckRules::DidYouMean(key, keys));
            }
        }
    }

private:
    // A handful of keys per family: a scan costs less than a tree, and they
    // fit in place.
    bool Known(char const* key) const {
        for (std::size_t i = 0; i < count_; ++i) {
            if (std::strcmp(inline_[i], key) == 0) {
                return true;
            }
        }
        for (char const* const known : more_) {
            if (std::strcmp(known, key) == 0) {
                return true;
            }
        }
        return false;
    }

    static constexpr std::size_t k_inline = 16;

    JsonValue const& object_;
    std::string pointer_;
    Reader& reader_;
    char const* inline_[k_inline] = {};
    std::size_t count_ = 0;
    std::vector<char const*> more_;
};

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
    return boost::dynamic_pointer_cast<ItemT>(item);
}

bool ReadColour(JsonValue const& value, std::string const& pointer, Reader& reader,
                Vintor::Colour_t& out) {
    ValueForm::Sink sink(reader.All());
    bool const read = ValueForm::ReadColour(value, out, sink, pointer);
    sink.EndValue(pointer);
    return read;
}

// ---- Each family: its keys written, and read into a fresh Info ----

void Describe(InfoBase const& info, Json& out);
boost::intrusive_ptr<InfoBase> ReadInfo(JsonValue const& object, std::string const& pointer,
                                        Reader& reader, bool child, Family const*& family,
                                        Permission_t* permissionOut = nullptr);

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

// One Info from its object: the top-level settings carry "path" and "id"
// (read by the caller), children "name" and "id". Null when it cannot be made.
// With permissionOut the Info is left unnamed and its permission is handed
// out, for the caller to make the one copy under its final identity.
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

// ---- Sections and ids ----

// The width of the info number field of a section at depth 1 to 4.
unsigned int InfoFieldMask(std::size_t depth) {
    return (1u << (30 - 6 * depth)) - 1u;
}

// The sections and info numbers of the directory, with what this file adds
// to them, so that every id is known before anything is applied.
class Plan {
public:
    explicit Plan(InfoItemDirectory const& directory) : directory_(directory) {}

    // The section of path, existing or planned; a problem when it cannot be made.
    template <class P>
    bool Section(std::string const& path, P const& pointer, Reader& reader, SectionId& out) {
        std::vector<std::string> levels;
        std::size_t start = 0;
        while (true) {
            std::size_t const slash = path.find('/', start);
            levels.push_back(path.substr(start, slash - start));
            if (slash == std::string::npos) {
                break;
            }
            start = slash + 1;
        }
        if (levels.size() > InfoItemSectionId::MaxDepth()) {
            reader.Add(PointerText(pointer),
                       "the section path " + Shown(path) + " is deeper than " +
                           std::to_string(InfoItemSectionId::MaxDepth()) + " levels");
            return false;
        }
        std::string name;
        InfoItemSectionId parent;
        for (std::size_t level = 0; level < levels.size(); ++level) {
            if (levels[level].empty()) {
                reader.Add(PointerText(pointer),
                           "the section path " + Shown(path) + " has an empty level");
                return false;
            }
            name += (level ? "/" : "") + levels[level];
            SectionId found = Find(name);
            if (!found.IsValid()) {
                std::set<unsigned> const used = Used(parent, level == 0);
                unsigned number = 0;
                if (!used.empty()) {
                    number = *used.rbegin() + 1;
                    if (number > InfoItemSectionId::MaxSubsectionPerSubsection()) {
                        number = 0;
                        while (used.count(number)) {
                            ++number;
                        }
                    }
                }
                if (number > InfoItemSectionId::MaxSubsectionPerSubsection()) {
                    // Once per section, however many settings it would hold.
                    if (full_.insert(name).second) {
                        reader.Add(PointerText(pointer),
                                   "no section number is left for " + Shown(name) +
                                       ": a level holds at most " +
                                       std::to_string(
                                           InfoItemSectionId::MaxSubsectionPerSubsection() + 1) +
                                       " sections");
                    }
                    return false;
                }
                InfoItemSectionId const id =
                    level == 0 ? InfoItemSectionId::CreateLevel1SectionId(
                                     static_cast<unsigned char>(number))
                               : parent.CreateSectionId(static_cast<unsigned char>(number));
                found = SectionId(name, id);
                if (!found.IsValid() || found.GetSectionName() != name) {
                    reader.Add(PointerText(pointer),
                               "the section path " + Shown(path) + " is not valid");
                    return false;
                }
                planned_.push_back(found);
            }
            parent = found.GetInfoItemSectionId();
            out = found;
        }
        return true;
    }

    // The section that an explicit id names for path: the existing one, which
    // must be the path's, or the numbers of the id for levels still missing.
    template <class P>
    bool SectionOf(unsigned int id, std::string const& path, P const& pointer, Reader& reader,
                   SectionId& out) {
        InfoItemSectionId const infoId(id);
        if (!infoId.IsValidInfoItemId()) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " is no info id");
            return false;
        }
        // A path and section number that passed once pass again: the levels
        // they planned stay planned and the directory does not change.
        auto const passed = passed_.find(path);
        if (passed != passed_.end() &&
            passed->second.GetInfoItemSectionId() == infoId.GetSectionId(infoId.Depth())) {
            out = passed->second;
            return true;
        }
        std::size_t const depth = infoId.Depth();
        std::size_t levels =
            1 + static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
        if (levels != depth) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " lies at depth " +
                                                 std::to_string(depth) + ", the section " +
                                                 Shown(path) + " has " + std::to_string(levels) +
                                                 " levels");
            return false;
        }
        SectionId const wanted(path, infoId.GetSectionId(depth));
        if (!wanted.IsValid() || wanted.GetSectionName() != path) {
            reader.Add(PointerText(pointer), "the section path " + Shown(path) + " is not valid");
            return false;
        }
        for (std::size_t level = 1; level <= depth; ++level) {
            std::string const name = wanted.GetSectionName(level).substr(
                wanted.GetSectionName(level).front() == '/' ? 1 : 0);
            InfoItemSectionId const number = wanted.GetInfoItemSectionId(level);
            SectionId const byName = Find(name);
            SectionId const byNumber = Find(number);
            if (byName.IsValid() && byName.GetInfoItemSectionId() != number) {
                reader.Add(PointerText(pointer),
                           "id " + Hex(id) + " does not lie in section " + Shown(name));
                return false;
            }
            if (!byName.IsValid() && byNumber.IsValid()) {
                reader.Add(PointerText(pointer), "id " + Hex(id) + " lies in section " +
                                                     Shown(byNumber.GetSectionName()) +
                                                     ", not in " + Shown(name));
                return false;
            }
            if (!byName.IsValid()) {
                planned_.push_back(SectionId(name, number));
            }
        }
        out = wanted;
        passed_[path] = wanted;
        return true;
    }

    // The next free info number of section: past the highest in use, or the
    // lowest hole once the field is full. The all-ones number of the field is
    // the section's own id, so the last info number is one below it at every
    // depth (the section map's own allocation hands it out; this file does not).
    template <class P>
    bool NextId(SectionId const& section, P const& pointer, Reader& reader, unsigned int& out) {
        InfoItemSectionId const sectionId = section.GetInfoItemSectionId();
        std::set<unsigned int> const& used = UsedNumbers(sectionId);
        std::size_t const last = InfoFieldMask(sectionId.Depth()) - 1u;
        std::size_t number = used.empty() ? 0 : static_cast<std::size_t>(*used.rbegin()) + 1;
        if (number > last) {
            number = 0;
            while (used.count(static_cast<unsigned int>(number))) {
                ++number;
            }
        }
        if (number > last) {
            if (full_.insert(section.GetSectionName()).second) {
                reader.Add(PointerText(pointer),
                           "no info number is left in section " + Shown(section.GetSectionName()) +
                               ": it holds at most " + std::to_string(last + 1) + " settings");
            }
            return false;
        }
        out = sectionId.CreateInfoItemId(number);
        return true;
    }

    // A problem when id or the name in section is taken, in the directory or
    // earlier in this file. path stays alive as long as the plan: it is kept
    // by reference, to name the setting that took an id.
    template <class P>
    bool Claim(unsigned int id, std::string const& path, P const& pointer, Reader& reader) {
        // The directory takes a section id as a setting's id; a file never may.
        if (!InfoItemSectionId(id).IsValidInfoItemId()) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " is no info id");
            return false;
        }
        if (directory_.FindInfo(id)) {
            reader.Add(PointerText(pointer), "id " + Hex(id) + " is taken by " + Shown(PathOf(id)));
            return false;
        }
        auto const earlier = ids_.find(id);
        if (earlier != ids_.end()) {
            reader.Add(PointerText(pointer),
                       "id " + Hex(id) + " is taken by " + Shown(*earlier->second));
            return false;
        }
        ids_.emplace(id, &path);
        InfoItemSectionId const infoId(id);
        unsigned int const mask = InfoFieldMask(infoId.Depth());
        UsedNumbers(InfoItemSectionId(id | mask)).insert(id & mask);
        return true;
    }

    std::vector<SectionId> const& PlannedSections() const { return planned_; }

    static std::string Hex(unsigned int id) { return HexId(id); }

private:
    SectionId Find(std::string const& name) const {
        SectionId const found = directory_.FindSection(name);
        if (found.IsValid()) {
            return found;
        }
        for (SectionId const& section : planned_) {
            if (section.GetSectionName() == name) {
                return section;
            }
        }
        return SectionId();
    }

    SectionId Find(InfoItemSectionId const& id) const {
        SectionId const found = directory_.FindSection(id);
        if (found.IsValid() && found.GetInfoItemSectionId() == id) {
            return found;
        }
        for (SectionId const& section : planned_) {
            if (section.GetInfoItemSectionId() == id) {
                return section;
            }
        }
        return SectionId();
    }

    // The subsection numbers in use below parent (the root when top).
    std::set<unsigned> Used(InfoItemSectionId const& parent, bool top) const {
        std::vector<SectionId> existing;
        if (top) {
            directory_.GetTopLevelSections(existing);
        } else {
            directory_.GetSubsections(parent, existing);
        }
        std::size_t const depth = top ? 1 : parent.Depth() + 1;
        std::set<unsigned> used;
        for (SectionId const& section : existing) {
            used.insert(section.GetSubsectionId(depth));
        }
        for (SectionId const& section : planned_) {
            if (section.GetSectionDepth() == depth &&
                (top || section.GetInfoItemSectionId(depth - 1) == parent)) {
                used.insert(section.GetSubsectionId(depth));
            }
        }
        return used;
    }

    // The info numbers in use in a section, from the directory once, then kept
    // up to date as this file claims ids.
    std::set<unsigned int>& UsedNumbers(InfoItemSectionId const& sectionId) {
        auto const known = used_.find(static_cast<unsigned int>(sectionId));
        if (known != used_.end()) {
            return known->second;
        }
        std::set<unsigned int>& used = used_[static_cast<unsigned int>(sectionId)];
        unsigned int const mask = InfoFieldMask(sectionId.Depth());
        std::vector<boost::intrusive_ptr<InfoHolder const>> infos;
        if (directory_.FindInfos(sectionId, infos) == 0) {
            for (auto const& holder : infos) {
                unsigned int const id = holder->GetInfo()->GetId();
                if ((id | mask) == static_cast<unsigned int>(sectionId)) {
                    used.insert(id & mask);
                }
            }
        }
        return used;
    }

    std::string PathOf(unsigned int id) const {
        SectionId const section = directory_.FindSection(InfoItemSectionId(id));
        auto const holder = directory_.FindInfo(id);
        std::string name = holder ? holder->GetInfo()->GetName() : std::string();
        return section.IsValid() ? section.GetSectionName() + "/" + name : name;
    }

    InfoItemDirectory const& directory_;
    std::vector<SectionId> planned_;
    std::map<unsigned int, std::string const*> ids_;
    std::map<unsigned int, std::set<unsigned int>> used_;
    // The sections already reported as full.
    std::set<std::string> full_;
    // The section of each path that SectionOf passed.
    std::unordered_map<std::string, SectionId> passed_;
};

struct Planned {
    SectionId section;
    boost::intrusive_ptr<InfoBase> info;
};

}  // namespace

Problems ReadDescription(std::string const& json, InfoItemDirectory& directory) {
    Problems problems;
    JsonValue document;
    if (!ReadJsonValue(json, document, problems)) {
        return problems;
    }
    Reader reader(problems);
    if (!reader.Object(document, "")) {
        return problems;
    }
    Members top(document, "", reader);
    JsonValue const* const settings = top.Get("settings");
    top.RefuseUnknown();
    if (!settings) {
        reader.Add("", "settings is missing");
        return problems;
    }
    if (!reader.Array(*settings, "/settings")) {
        return problems;
    }

    Plan plan(directory);
    std::vector<Planned> planned;
    std::map<std::string, std::size_t> paths;
    for (std::size_t i = 0; i < settings->items.size(); ++i) {
        JsonValue const& object = settings->items[i];
        std::string const pointer = "/settings/" + std::to_string(i);
        JsonValue const* const named =
            Kind::Object == object.kind ? Member(object, "path") : nullptr;
        bool const pathShown =
            named && Kind::String == named->kind && named->text.size() <= k_maxPathLength;
        reader.SetPath(pathShown ? named->text : std::string());
        Family const* family = nullptr;
        Permission_t permission;
        boost::intrusive_ptr<InfoBase> info =
            ReadInfo(object, pointer, reader, false, family, &permission);
        if (Kind::Object != object.kind) {
            continue;
        }
        JsonValue const* const pathJson = Member(object, "path");
        std::string path;
        if (!pathJson) {
            reader.Add(pointer, "path is missing");
            continue;
        }
        MemberPointer const pathPointer(pointer, "path");
        MemberPointer const idPointer(pointer, "id");
        if (!reader.String(*pathJson, pathPointer, path)) {
            continue;
        }
        if (path.size() > k_maxPathLength) {
            reader.Add(PointerText(pathPointer),
                       "path is longer than " + std::to_string(k_maxPathLength) + " bytes");
            continue;
        }
        std::size_t const slash = path.rfind('/');
        if (slash == std::string::npos || slash == 0 || slash + 1 == path.size()) {
            reader.Add(PointerText(pathPointer),
                       "path " + Shown(path) + " needs a section and a name");
            continue;
        }
        if (!paths.emplace(path, i).second) {
            reader.Add(PointerText(pathPointer), Shown(path) + " is described twice");
            continue;
        }
        std::string const sectionPath = path.substr(0, slash);
        std::string const name = path.substr(slash + 1);
        if (directory.FindInfo(sectionPath, name)) {
            reader.Add(PointerText(pathPointer), Shown(path) + " exists already");
            continue;
        }
        unsigned int id = 0;
        JsonValue const* const idJson = Member(object, "id");
        SectionId section;
        if (idJson) {
            if (!reader.Id(*idJson, idPointer, id) ||
                !plan.SectionOf(id, sectionPath, idPointer, reader, section)) {
                continue;
            }
        } else if (!plan.Section(sectionPath, pathPointer, reader, section) ||
                   !plan.NextId(section, pathPointer, reader, id)) {
            continue;
        }
        // The document's own text, which outlives the plan.
        if (!plan.Claim(id, pathJson->text, idJson ? idPointer : pathPointer, reader) || !info) {
            continue;
        }
        planned.push_back(Planned{section, Renamed(*info, id, name, permission)});
    }
    reader.SetPath(std::string());
    if (!problems.empty()) {
        return problems;
    }

    // Everything was checked against the directory: apply.
    for (SectionId const& section : plan.PlannedSections()) {
        int const code = directory.AddSection(section);
        if (code != 0) {
            problems.push_back({"", "adding section " + Shown(section.GetSectionName()) +
                                        " failed with " + std::to_string(code)});
            return problems;
        }
    }
    for (Planned const& entry : planned) {
        int const code =
            directory.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(entry.info)));
        if (code != 0) {
            problems.push_back({"", "adding " + Shown(entry.info->GetName()) + " failed with " +
                                        std::to_string(code)});
            return problems;
        }
    }
    return problems;
}

std::string WriteDescription(InfoItemDirectory const& directory) {
    std::vector<boost::intrusive_ptr<InfoItemHolder const>> holders;
    directory.GetAllInfoItems(holders);
    Json settings = Json::array();
    for (auto const& holder : holders) {
        if (!holder || !holder->GetInfoHolder() || !holder->GetInfoHolder()->GetInfo()) {
            continue;
        }
        InfoBase const& info = *holder->GetInfoHolder()->GetInfo();
        SectionId const section = directory.FindSection(InfoItemSectionId(info.GetId()));
        Json setting = Json::object();
        setting["path"] = section.GetSectionName() + "/" + info.GetName();
        setting["id"] = HexId(info.GetId());
        Json described = Json::object();
        Describe(info, described);
        // The top level names by path and always gives the id.
        for (auto& member : described.items()) {
            if (member.key() != "name" && member.key() != "id") {
                setting[member.key()] = std::move(member.value());
            }
        }
        settings.push_back(std::move(setting));
    }
    Json document = Json::object();
    document["settings"] = std::move(settings);
    // Names set in code may hold bytes that are no UTF-8: they are replaced
    // rather than refused, so that writing never fails.
    return document.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::vector<std::string> DescribedFamilies() {
    std::vector<std::string> names;
    for (Family const& family : Families()) {
        names.push_back(family.name);
    }
    return names;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
