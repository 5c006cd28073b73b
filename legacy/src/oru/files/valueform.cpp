#include "valueform.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "checkrules.h"
#include "families.h"

namespace Legacy {
namespace Oru {
namespace Files {
namespace ValueForm {

std::string Expected(char const* what, JsonValue const& value) {
    return std::string("expected ") + what + ", not " + KindName(value.kind);
}

std::string Child(std::string const& pointer, std::size_t index) {
    return pointer + "/" + std::to_string(index);
}

std::string Child(std::string const& pointer, std::string const& key) {
    return pointer + "/" + PointerToken(key);
}

std::string Quoted(std::string const& name) {
    return "Setting '" + name + "': ";
}

std::string NumberText(JsonValue const& value) {
    if (Kind::Unsigned == value.kind) {
        return std::to_string(value.natural);
    }
    if (Kind::Integer == value.kind) {
        return std::to_string(value.integer);
    }
    return Shown(value.text, 32);
}

// ---- shared forms --------------------------------------------------------

// The members of an object by the names allowed, null where absent; unknown
// and missing-but-required members are problems.
bool ReadMembers(JsonValue const& value, std::vector<char const*> const& names, bool allRequired,
                 std::vector<JsonValue const*>& out, Sink& sink, std::string const& pointer) {
    out.assign(names.size(), nullptr);
    bool ok = true;
    for (std::size_t i = 0; i < value.keys.size(); ++i) {
        std::size_t found = names.size();
        for (std::size_t n = 0; n < names.size(); ++n) {
            if (value.keys[i] == names[n]) {
                found = n;
            }
        }
        if (found == names.size()) {
            std::string list;
            for (char const* name : names) {
                list += list.empty() ? "" : ", ";
                list += name;
            }
            sink.Add(Child(pointer, value.keys[i]), "unknown member; expected " + list);
            ok = false;
        } else {
            out[found] = &value.items[i];
        }
    }
    if (allRequired) {
        for (std::size_t n = 0; n < names.size(); ++n) {
            if (!out[n]) {
                sink.Add(pointer, std::string("missing member \"") + names[n] + "\"");
                ok = false;
            }
        }
    }
    return ok;
}

// A fixed group of numbers: an object with exactly these members, or an

namespace {

// array of them in this order.
template <class T>
bool ReadTuple(JsonValue const& value, std::vector<char const*> const& names,
               typename T::Element* out, Sink& sink, std::string const& pointer) {
    std::vector<JsonValue const*> parts;
    if (Kind::Object == value.kind) {
        if (!ReadMembers(value, names, true, parts, sink, pointer)) {
            return false;
        }
    } else if (Kind::Array == value.kind && value.items.size() == names.size()) {
        for (JsonValue const& item : value.items) {
            parts.push_back(&item);
        }
    } else {
        std::string what = "an object {";
        for (std::size_t n = 0; n < names.size(); ++n) {
            what += n ? ", \"" : "\"";
            what += names[n];
            what += "\"";
        }
        what += "} or an array of " + std::to_string(names.size()) + " numbers";
        sink.Add(pointer, Kind::Array == value.kind
                              ? "expected " + what + ", not " + std::to_string(value.items.size()) +
                                    " elements"
                              : Expected(what.c_str(), value));
        return false;
    }
    bool ok = true;
    for (std::size_t n = 0; n < names.size(); ++n) {
        std::string why;
        if (!ReadElement<T>(*parts[n], out[n], why)) {
            sink.Add(Kind::Object == value.kind ? Child(pointer, names[n]) : Child(pointer, n),
                     why);
            ok = false;
        }
    }
    return ok;
}

template <class T>
void AppendTuple(std::string& out, std::vector<char const*> const& names,
                 std::vector<typename T::Element> const& numbers) {
    out += "{";
    for (std::size_t n = 0; n < names.size(); ++n) {
        out += n ? ",\"" : "\"";
        out += names[n];
        out += "\":";
        AppendNumber(out, numbers[n]);
    }
    out += "}";
}

std::vector<char const*> const k_coordinateNames = {"x", "y"};
std::vector<char const*> const k_rectangleNames = {"left", "top", "right", "bottom"};
std::vector<char const*> const k_colourNames = {"a", "r", "g", "b"};
std::vector<char const*> const k_orientationNames = {"bearing", "inclination", "roll"};
std::vector<char const*> const k_endpointNames = {"address", "port"};
std::vector<char const*> const k_appEndpointNames = {"protocol", "version", "compatVersion",
                                                     "endpoint", "addrGroupPrefix"};
std::vector<char const*> const k_pairNames = {"first", "second"};
std::vector<char const*> const k_messageNames = {"key", "arguments"};

template <class T>
std::vector<typename T::Element> RectangleNumbers(RectItem<T> const& rect) {
    return {rect.TopLeft()->X()->GetVal(), rect.TopLeft()->Y()->GetVal(),
            rect.BottomRight()->X()->GetVal(), rect.BottomRight()->Y()->GetVal()};
}

template <class T>
bool ReadRectangle(JsonValue const& value, RectItem<T>& rect, Sink& sink,
                   std::string const& pointer) {
    typename T::Element numbers[4];
    if (!ReadTuple<T>(value, k_rectangleNames, numbers, sink, pointer)) {
        return false;
    }
    rect.TopLeft()->SetValX(numbers[0]);
    rect.TopLeft()->SetValY(numbers[1]);
    rect.BottomRight()->SetValX(numbers[2]);
    rect.BottomRight()->SetValY(numbers[3]);
    return true;
}

}  // namespace

bool ReadColour(JsonValue const& value, Vintor::Colour_t& out, Sink& sink,
                std::string const& pointer) {
    float parts[4];
    if (!ReadTuple<FloatTraits>(value, k_colourNames, parts, sink, pointer)) {
        return false;
    }
    out = Vintor::Colour_t(parts[0], parts[1], parts[2], parts[3]);
    return true;
}

void AppendColour(std::string& out, Vintor::Colour_t const& colour) {
    AppendTuple<FloatTraits>(out, k_colourNames, {colour.a, colour.r, colour.g, colour.b});
}

bool ReadString(JsonValue const& value, std::string& out, Sink& sink, std::string const& pointer) {
    if (Kind::String != value.kind) {
        sink.Add(pointer, Expected("a string", value));
        return false;
    }
    out = value.text;
    return true;
}

namespace {

// A text that names no port reads as port 0 and is written back with ":0":
// the port must be written, even when it is 0.
bool PortGiven(std::string const& text, StrEndpoint const& endpoint, Sink& sink,
               std::string const& pointer) {
    if (endpoint.GetPort() != 0 || endpoint.GetAddr().ToString().empty() ||
        (text.size() >= 2 && text.compare(text.size() - 2, 2, ":0") == 0)) {
        return true;
    }
    if (!CheckRules::EndpointProblem(endpoint).empty()) {
        // The check names what is wrong with the address itself.
        return true;
    }
    sink.Add(pointer, Shown(text, 64) + " has no port; write it as " + Shown(text, 64) + ":PORT");
    return false;
}

void AppendEndpoint(std::string& out, StrEndpoint const& endpoint) {
    std::string const text = endpoint.ToString();
    if (StrEndpoint::FromString(text) == endpoint) {
        AppendJsonString(out, text);
        return;
    }
    // An address whose text would be split elsewhere keeps its parts apart.
    out += "{\"address\":";
    AppendJsonString(out, endpoint.GetAddr().ToString());
    out += ",\"port\":";
    AppendNumber(out, endpoint.GetPort());
    out += "}";
}

bool ReadEndpoint(JsonValue const& value, StrEndpoint& out, Sink& sink,
                  std::string const& pointer) {
    if (Kind::String == value.kind) {
        out = StrEndpoint::FromString(value.text);
        return PortGiven(value.text, out, sink, pointer);
    }
    if (Kind::Object != value.kind) {
        sink.Add(pointer, Expected("a string \"address:port\" or an object", value));
        return false;
    }
    std::vector<JsonValue const*> parts;
    if (!ReadMembers(value, k_endpointNames, false, parts, sink, pointer)) {
        return false;
    }
    std::string address;
    unsigned short port = 0;
    std::string why;
    if (parts[0] && !ReadString(*parts[0], address, sink, Child(pointer, "address"))) {
        return false;
    }
    if (parts[1] && !ReadElement<U16Traits>(*parts[1], port, why)) {
        sink.Add(Child(pointer, "port"), why);
        return false;
    }
    out = StrEndpoint(Net::AddrStr(address), port);
    return true;
}

void AppendAppEndpoint(std::string& out, StrAppEndpoint const& endpoint) {
    std::string const uri = endpoint.ToUri();
    if (StrAppEndpoint::FromUri(uri) == endpoint) {
        AppendJsonString(out, uri);
        return;
    }
    // Versions, prefix or an endpoint the URI does not carry back: every field.
    out += "{\"protocol\":";
    AppendNumber(out, static_cast<std::uint32_t>(endpoint.GetAppProtocolType()));
    out += ",\"version\":";
    AppendNumber(out, endpoint.GetAppProtocolVersion());
    out += ",\"compatVersion\":";
    AppendNumber(out, endpoint.GetAppProtocolCompatVersion());
    out += ",\"endpoint\":";
    AppendEndpoint(out, endpoint.GetEndpoint());
    out += ",\"addrGroupPrefix\":";
    AppendNumber(out, endpoint.GetAddrGroupPrefix());
    out += "}";
}

bool ReadAppEndpoint(JsonValue const& value, StrAppEndpoint& out, Sink& sink,
                     std::string const& pointer) {
    if (Kind::String == value.kind) {
        if (value.text.find("://") == std::string::npos) {
            sink.Add(pointer, "expected a URI such as \"http://10.0.0.1:80\", not \"" +
                                  Shown(value.text, 32) + "\"");
            return false;
        }
        std::string const scheme = value.text.substr(0, value.text.find("://"));
        if (AppProtocolInfoFromScheme(scheme).type == AppProtocolType_t::Unknown &&
            scheme != AppProtocolScheme(AppProtocolType_t::Unknown)) {
            std::vector<std::string> const schemes = CheckRules::Schemes();
            std::string allowed;
            for (std::string const& known : schemes) {
                allowed += (allowed.empty() ? "" : ", ") + known;
            }
            std::string const hint = CheckRules::DidYouMean(scheme, schemes);
            sink.Add(pointer, "unknown scheme " + Shown(scheme, 32) +
                                  (hint.empty() ? "; allowed: " + allowed : hint));
            return false;
        }
        // Without a host the port would be read as the host ("http://:80" as
        // host 80), and written back as another URI.
        std::size_t const host = scheme.size() + 3;
        if (host == value.text.size() || value.text[host] == ':' || value.text[host] == '/') {
            sink.Add(pointer, Shown(value.text, 64) + " names no host; write it as " +
                                  Shown(scheme, 32) + "://HOST:PORT");
            return false;
        }
        out = StrAppEndpoint::FromUri(value.text);
        return PortGiven(value.text, out.GetEndpoint(), sink, pointer);
    }
    if (Kind::Object != value.kind) {
        sink.Add(pointer, Expected("a URI or an object", value));
        return false;
    }
    std::vector<JsonValue const*> parts;
    if (!ReadMembers(value, k_appEndpointNames, false, parts, sink, pointer)) {
        return false;
    }
    std::uint32_t type = 0;
    unsigned short version = 0;
    unsigned short compatVersion = 0;
    unsigned char prefix = 0;
    StrEndpoint endpoint;
    std::string why;
    bool ok = true;
    auto number = [&](std::size_t index, auto& field, char const* name) {
        if (parts[index] && !ReadElement(*parts[index], field, why, name)) {
            sink.Add(Child(pointer, k_appEndpointNames[index]), why);
            ok = false;
        }
    };
    number(0, type, "U32");
    number(1, version, "U16");
    number(2, compatVersion, "U16");
    if (parts[3] && !ReadEndpoint(*parts[3], endpoint, sink, Child(pointer, "endpoint"))) {
        ok = false;
    }
    number(4, prefix, "U8");
    if (ok) {
        out = StrAppEndpoint(
            AppProtocolInfo_t(static_cast<AppProtocolType_t>(type), version, compatVersion),
            endpoint, prefix);
    }
    return ok;
}

// ---- writing -------------------------------------------------------------

template <class Container, class AppendOne>
void AppendArray(std::string& out, Container const& values, AppendOne appendOne) {
    out += "[";
    bool first = true;
    for (auto const& value : values) {
        if (!first) {
            out += ",";
        }
        first = false;
        appendOne(value);
    }
    out += "]";
}

// The enumeration entry's name when it leads back to the same number.
void AppendEnum(std::string& out, int value, InfoBase const* info) {
    if (auto const* enumInfo = Catalogue::As<EnumInfo>(info)) {
        std::string name;
        int back = 0;
        if (enumInfo->GetElemName(value, name) == 0 && !name.empty() &&
            enumInfo->GetElemVal(name, back) == 0 && back == value) {
            AppendJsonString(out, name);
            return;
        }
    }
    AppendNumber(out, value);
}

bool AppendComposite(std::string& out, CompositeItem const& composite, InfoBase const* info) {
    auto const* compositeInfo = Catalogue::As<CompositeInfo>(info);
    std::vector<CompositeItem::ConstItemPtr> children;
    composite.GetItems(children);
    out += "[";
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (i) {
            out += ",";
        }
        InfoPtr childInfo;
        if (compositeInfo) {
            childInfo = compositeInfo->GetInfo(i);
        }
        if (!AppendValue(out, *children[i], childInfo.get())) {
            out += "null";
        }
    }
    out += "]";
    return true;
}

// The form of each Item class, one overload per class; false for a class
// without one.
bool AppendOf(std::string&, ItemBase const&, InfoBase const*) {
    return false;
}

bool AppendOf(std::string& out, BoolItem const& item, InfoBase const*) {
    out += item.GetVal() ? "true" : "false";
    return true;
}

template <class T>
bool AppendOf(std::string& out, NumericItem<T> const& item, InfoBase const*) {
    AppendNumber(out, item.GetVal());
    return true;
}

template <class T>
bool AppendOf(std::string& out, NumericSparseItem<T> const& item, InfoBase const*) {
    AppendNumber(out, item.GetVal());
    return true;
}

template <class T>
bool AppendOf(std::string& out, NumericArrayItem<T> const& item, InfoBase const*) {
    AppendArray(out, item.Val(), [&](auto number) { AppendNumber(out, number); });
    return true;
}

bool AppendOf(std::string& out, EnumItem const& item, InfoBase const* info) {
    AppendEnum(out, item.GetVal(), info);
    return true;
}

bool AppendOf(std::string& out, StringItem const& item, InfoBase const*) {
    AppendJsonString(out, item.Val());
    return true;
}

bool AppendOf(std::string& out, StringArrayItem const& item, InfoBase const*) {
    AppendArray(out, item.Val(), [&](std::string const& one) { AppendJsonString(out, one); });
    return true;
}

bool AppendOf(std::string& out, BoolArrayItem const& item, InfoBase const*) {
    AppendArray(out, item.Val(), [&](bool one) { out += one ? "true" : "false"; });
    return true;
}

bool AppendOf(std::string& out, StringSparseItem const& item, InfoBase const*) {
    AppendJsonString(out, item.Val());
    return true;
}

bool AppendOf(std::string& out, ColourItem const& item, InfoBase const*) {
    AppendColour(out, Vintor::Colour_t(item.GetA(), item.GetR(), item.GetG(), item.GetB()));
    return true;
}

template <class T>
bool AppendOf(std::string& out, CoordinateItem<T> const& item, InfoBase const*) {
    AppendTuple<T>(out, k_coordinateNames, {item.X()->GetVal(), item.Y()->GetVal()});
    return true;
}

template <class T>
bool AppendOf(std::string& out, RectItem<T> const& item, InfoBase const*) {
    AppendTuple<T>(out, k_rectangleNames, RectangleNumbers(item));
    return true;
}

template <class T>
bool AppendOf(std::string& out, RectArrayItem<T> const& item, InfoBase const*) {
    AppendArray(out, item.Val(), [&](RectItem<T> const& one) {
        AppendTuple<T>(out, k_rectangleNames, RectangleNumbers(one));
    });
    return true;
}

bool AppendOf(std::string& out, OrientationItem const& item, InfoBase const*) {
    AppendTuple<FloatTraits>(out, k_orientationNames,
                             {item.GetBearing(), item.GetInclination(), item.GetRoll()});
    return true;
}

bool AppendOf(std::string& out, AddrItem const& item, InfoBase const*) {
    AppendJsonString(out, item.Val().ToString());
    return true;
}

bool AppendOf(std::string& out, EndpointItem const& item, InfoBase const*) {
    AppendEndpoint(out, item.Val());
    return true;
}

bool AppendOf(std::string& out, AppEndpointItem const& item, InfoBase const*) {
    AppendAppEndpoint(out, item.Val());
    return true;
}

bool AppendOf(std::string& out, AppEndpointArrayItem const& item, InfoBase const*) {
    AppendArray(out, item.Val(), [&](StrAppEndpoint const& one) { AppendAppEndpoint(out, one); });
    return true;
}

bool AppendOf(std::string& out, ExtendedItem const& item, InfoBase const*) {
    out += "{\"first\":";
    AppendJsonString(out, item.Val().first);
    out += ",\"second\":";
    AppendJsonString(out, item.Val().second);
    out += "}";
    return true;
}

bool AppendOf(std::string& out, LocalizedStringItem const& item, InfoBase const*) {
    out += "{\"key\":";
    AppendJsonString(out, item.GetVal().GetKey());
    out += ",\"arguments\":";
    // Arguments of any family travel as their text.
    AppendArray(out, item.GetVal().GetArguments(),
                [&](boost::intrusive_ptr<ItemBase const> const& argument) {
                    AppendJsonString(out, argument ? argument->GetValAsString() : "");
                });
    out += "}";
    return true;
}

bool AppendOf(std::string& out, CompositeItem const& item, InfoBase const* info) {
    return AppendComposite(out, item, info);
}

}  // namespace

bool AppendValue(std::string& out, ItemBase const& item, InfoBase const* info) {
    bool written = false;
    Catalogue::VisitItem(item,
                         [&](auto const& concrete) { written = AppendOf(out, concrete, info); });
    return written;
}

namespace {

// ---- reading -------------------------------------------------------------

// "settings of the Collection family have no value form", for an Info or Item.
template <class I>
boost::intrusive_ptr<I> MakeItem(InfoBase const& info, Sink& sink, std::string const& pointer) {
    ItemPtr made(info.CreateItem());
    boost::intrusive_ptr<I> typed(Catalogue::As<I>(made.get()));
    if (!typed) {
        sink.Add(pointer, "the setting's definition makes no Item of its own family");
    }
    return typed;
}

template <class Each>
bool ReadArray(JsonValue const& value, char const* what, Sink& sink, std::string const& pointer,
               Each each) {
    if (Kind::Array != value.kind) {
        sink.Add(pointer, Expected(what, value));
        return false;
    }
    bool ok = true;
    for (std::size_t i = 0; i < value.items.size(); ++i) {
        ok = each(value.items[i], Child(pointer, i)) && ok;
    }
    return ok;
}

// Two strings: an object with exactly these members, or an array of two.
bool ReadStrings(JsonValue const& value, std::vector<char const*> const& names, std::string* first,
                 std::string* second, Sink& sink, std::string const& pointer) {
    std::vector<JsonValue const*> parts;
    if (Kind::Array == value.kind && value.items.size() == 2) {
        parts = {&value.items[0], &value.items[1]};
    } else if (Kind::Object != value.kind) {
        sink.Add(pointer, Expected("an object {\"first\", \"second\"} of two strings", value));
        return false;
    } else if (!ReadMembers(value, names, true, parts, sink, pointer)) {
        return false;
    }
    bool const object = Kind::Object == value.kind;
    bool const one =
        ReadString(*parts[0], *first, sink, object ? Child(pointer, names[0]) : Child(pointer, 0));
    bool const two =
        ReadString(*parts[1], *second, sink, object ? Child(pointer, names[1]) : Child(pointer, 1));
    return one && two;
}

// A message key and its arguments, each read as a string Item.
bool ReadMessage(JsonValue const& value, LocalizedStringItem& item, Sink& sink,
                 std::string const& pointer) {
    std::vector<JsonValue const*> parts;
    if (Kind::Object != value.kind) {
        sink.Add(pointer, Expected("an object {\"key\", \"arguments\"}", value));
        return false;
    }
    if (!ReadMembers(value, k_messageNames, false, parts, sink, pointer)) {
        return false;
    }
    LocalizedString message;
    std::string text;
    if (parts[0]) {
        if (!ReadString(*parts[0], text, sink, Child(pointer, "key"))) {
            return false;
        }
        message.SetKey(text);
    }
    bool ok = true;
    if (parts[1]) {
        ok = ReadArray(*parts[1], "an array of strings", sink, Child(pointer, "arguments"),
                       [&](JsonValue const& element, std::string const& at) {
                           if (!ReadString(element, text, sink, at)) {
                               return false;
                           }
                           message.AddArgument(
                               boost::intrusive_ptr<ItemBase const>(StringItem::Create(0, text)));
                           return true;
                       });
    }
    if (ok) {
        item.SetVal(message);
    }
    return ok;
}

// "; did you mean manual?" when a name is near, else the names allowed.
std::string EntryHint(EnumInfo const* info, std::string const& name) {
    if (!info) {
        return std::string();
    }
    std::vector<std::string> names;
    for (auto const& entry : info->GetTable()) {
        if (!entry.disabled) {
            names.push_back(entry.name);
        }
    }
    std::string const hint = CheckRules::DidYouMean(name, names);
    if (!hint.empty()) {
        return hint;
    }
    std::string text = "; allowed: ";
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : ", ") + Shown(names[i], 32);
    }
    return names.empty() ? std::string("; no entry is allowed") : text;
}

ItemPtr ReadComposite(JsonValue const& value, InfoBase const& info, Sink& sink,
                      std::string const& pointer) {
    auto const* compositeInfo = Catalogue::As<CompositeInfo>(&info);
    if (!compositeInfo) {
        sink.Add(pointer, "the setting's definition is no composite");
        return nullptr;
    }
    if (Kind::Array != value.kind) {
        sink.Add(pointer, Expected("an array with one value per part", value));
        return nullptr;
    }
    if (value.items.size() != compositeInfo->GetSize()) {
        sink.Add(pointer, "expected " + std::to_string(compositeInfo->GetSize()) +
                              " values, one per part, not " + std::to_string(value.items.size()));
        return nullptr;
    }
    std::vector<CompositeItem::ItemPtr> children;
    bool ok = true;
    for (std::size_t i = 0; i < value.items.size(); ++i) {
        InfoPtr const childInfo = compositeInfo->GetInfo(i);
        ItemPtr child =
            childInfo ? ReadItem(value.items[i], *childInfo, sink, Child(pointer, i)) : nullptr;
        ok = ok && child;
        children.push_back(child);
    }
    if (!ok) {
        return nullptr;
    }
    boost::intrusive_ptr<CompositeItem> composite(new CompositeItem(info.GetId()));
    composite->SetItems(children);
    return composite;
}

// Reads value into item, a new Item of info's family, one overload per
// Item class; a class without one has no value form.
bool ReadInto(JsonValue const& value, BoolItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    if (Kind::Boolean == value.kind) {
        item.SetVal(value.boolean);
        return true;
    }
    sink.Add(pointer, Expected("true or false", value));
    return false;
}

template <class T, class E>
bool ReadNumber(JsonValue const& value, E& out, Sink& sink, std::string const& pointer) {
    std::string why;
    if (ReadElement<T>(value, out, why)) {
        return true;
    }
    sink.Add(pointer, why);
    return false;
}

template <class T>
bool ReadInto(JsonValue const& value, NumericItem<T>& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadNumber<T>(value, item.Val(), sink, pointer);
}

template <class T>
bool ReadInto(JsonValue const& value, NumericSparseItem<T>& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadNumber<T>(value, item.Val(), sink, pointer);
}

template <class T>
bool ReadInto(JsonValue const& value, NumericArrayItem<T>& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    using E = typename T::Element;
    std::vector<E> numbers;
    numbers.reserve(Kind::Array == value.kind ? value.items.size() : 0);
    bool const ok = ReadArray(value, "an array of numbers", sink, pointer,
                              [&](JsonValue const& element, std::string const& at) {
                                  E number{};
                                  std::string why;
                                  if (!ReadElement<T>(element, number, why)) {
                                      sink.Add(at, why);
                                      return false;
                                  }
                                  numbers.push_back(number);
                                  return true;
                              });
    if (ok) {
        item.Val().swap(numbers);
    }
    return ok;
}

bool ReadInto(JsonValue const& value, EnumItem& item, InfoBase const& info, Sink& sink,
              std::string const& pointer) {
    if (Kind::String == value.kind) {
        auto const* enumInfo = Catalogue::As<EnumInfo>(&info);
        if (!enumInfo || enumInfo->GetElemVal(value.text, item.Val()) != 0) {
            sink.Add(pointer, "no entry is named \"" + Shown(value.text, 32) + "\"" +
                                  EntryHint(enumInfo, value.text));
            return false;
        }
        return true;
    }
    std::string why;
    if (ReadElement(value, item.Val(), why, "Enum")) {
        return true;
    }
    bool const number =
        Kind::Unsigned == value.kind || Kind::Integer == value.kind || Kind::Float == value.kind;
    sink.Add(pointer, number ? why : Expected("an entry's name or number", value));
    return false;
}

bool ReadInto(JsonValue const& value, StringItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadString(value, item.Val(), sink, pointer);
}

bool ReadInto(JsonValue const& value, StringArrayItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    std::vector<std::string> texts;
    texts.reserve(Kind::Array == value.kind ? value.items.size() : 0);
    if (!ReadArray(value, "an array of strings", sink, pointer,
                   [&](JsonValue const& element, std::string const& at) {
                       texts.emplace_back();
                       return ReadString(element, texts.back(), sink, at);
                   })) {
        return false;
    }
    item.Val().swap(texts);
    return true;
}

bool ReadInto(JsonValue const& value, BoolArrayItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    std::vector<bool> flags;
    flags.reserve(Kind::Array == value.kind ? value.items.size() : 0);
    if (!ReadArray(value, "an array of true and false", sink, pointer,
                   [&](JsonValue const& element, std::string const& at) {
                       if (Kind::Boolean != element.kind) {
                           sink.Add(at, Expected("true or false", element));
                           return false;
                       }
                       flags.push_back(element.boolean);
                       return true;
                   })) {
        return false;
    }
    item.Val().swap(flags);
    return true;
}

bool ReadInto(JsonValue const& value, StringSparseItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadString(value, item.Val(), sink, pointer);
}

bool ReadInto(JsonValue const& value, ColourItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    Vintor::Colour_t colour;
    if (!ReadColour(value, colour, sink, pointer)) {
        return false;
    }
    item.Set(colour);
    return true;
}

template <class T>
bool ReadInto(JsonValue const& value, CoordinateItem<T>& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    typename T::Element numbers[2];
    if (!ReadTuple<T>(value, k_coordinateNames, numbers, sink, pointer)) {
        return false;
    }
    item.SetValX(numbers[0]);
    item.SetValY(numbers[1]);
    return true;
}

template <class T>
bool ReadInto(JsonValue const& value, RectItem<T>& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadRectangle(value, item, sink, pointer);
}

template <class T>
bool ReadInto(JsonValue const& value, RectArrayItem<T>& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    typename RectArrayItem<T>::Rects rects;
    rects.reserve(Kind::Array == value.kind ? value.items.size() : 0);
    if (!ReadArray(value, "an array of rectangles", sink, pointer,
                   [&](JsonValue const& element, std::string const& at) {
                       rects.emplace_back(0);
                       return ReadRectangle(element, rects.back(), sink, at);
                   })) {
        return false;
    }
    item.SetVal(rects);
    return true;
}

bool ReadInto(JsonValue const& value, OrientationItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    float parts[3];
    if (!ReadTuple<FloatTraits>(value, k_orientationNames, parts, sink, pointer)) {
        return false;
    }
    item.Set(Orientation_t{parts[0], parts[1], parts[2]});
    return true;
}

bool ReadInto(JsonValue const& value, AddrItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    std::string text;
    if (!ReadString(value, text, sink, pointer)) {
        return false;
    }
    item.SetVal(Net::AddrStr(text));
    return true;
}

bool ReadInto(JsonValue const& value, EndpointItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadEndpoint(value, item.Val(), sink, pointer);
}

bool ReadInto(JsonValue const& value, AppEndpointItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadAppEndpoint(value, item.Val(), sink, pointer);
}

bool ReadInto(JsonValue const& value, AppEndpointArrayItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    AppEndpointArrayItem::Value_t endpoints;
    endpoints.reserve(Kind::Array == value.kind ? value.items.size() : 0);
    if (!ReadArray(value, "an array of URIs", sink, pointer,
                   [&](JsonValue const& element, std::string const& at) {
                       endpoints.emplace_back();
                       return ReadAppEndpoint(element, endpoints.back(), sink, at);
                   })) {
        return false;
    }
    item.Val().swap(endpoints);
    return true;
}

bool ReadInto(JsonValue const& value, ExtendedItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadStrings(value, k_pairNames, &item.Val().first, &item.Val().second, sink, pointer);
}

bool ReadInto(JsonValue const& value, LocalizedStringItem& item, InfoBase const&, Sink& sink,
              std::string const& pointer) {
    return ReadMessage(value, item, sink, pointer);
}

template <class I, class = void>
struct HasForm : std::false_type {};
template <class I>
struct HasForm<I, decltype(void(ReadInto(std::declval<JsonValue const&>(), std::declval<I&>(),
                                         std::declval<InfoBase const&>(), std::declval<Sink&>(),
                                         std::declval<std::string const&>())))> : std::true_type {};

// A value of the family of tag T.
template <class T>
ItemPtr ReadFamily(JsonValue const& value, InfoBase const& info, Sink& sink,
                   std::string const& pointer) {
    using I = typename T::Item;
    if constexpr (std::is_same<I, CompositeItem>::value) {
        return ReadComposite(value, info, sink, pointer);
    } else if constexpr (HasForm<I>::value) {
        auto item = MakeItem<I>(info, sink, pointer);
        if (item && ReadInto(value, *item, info, sink, pointer)) {
            return item;
        }
        return nullptr;
    } else {
        (void)value;
        sink.Add(pointer, NoValueForm(info));
        return nullptr;
    }
}

// Why no family has info's type bytes.
std::string NoFamily(InfoBase const& info) {
    OruType_t const type = info.GetType();
    if (type == OruType_t::Numeric || type == OruType_t::NumericArray ||
        type == OruType_t::NumericSparse) {
        return "the setting's definition has no element type";
    }
    bool const geometry = VisitGeometry(info.GetNumericType(), [](auto) {});
    if (type == OruType_t::RectArray && geometry) {
        return "rectangle arrays hold U16 numbers only";
    }
    if (type == OruType_t::Coordinate || type == OruType_t::Rectangle ||
        type == OruType_t::RectArray) {
        return "the setting's definition has no element type of its family";
    }
    return NoValueForm(info);
}

}  // namespace

ItemPtr ReadItem(JsonValue const& value, InfoBase const& info, Sink& sink,
                 std::string const& pointer) {
    ItemPtr result;
    bool const known = Catalogue::VisitFamily(info.GetType(), info.GetNumericType(), [&](auto tag) {
        result = ReadFamily<decltype(tag)>(value, info, sink, pointer);
    });
    if (!known) {
        sink.Add(pointer, NoFamily(info));
    }
    return result;
}

}  // namespace ValueForm
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
