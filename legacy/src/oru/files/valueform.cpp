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

bool AppendNumericFamily(std::string& out, ItemBase const& item) {
    bool written = false;
    VisitElement(item.GetNumericType(), [&](auto traits) {
        using T = decltype(traits);
        switch (item.GetType()) {
            case OruType_t::Numeric:
                if (auto const* numeric = As<NumericItem<T>>(item)) {
                    AppendNumber(out, numeric->GetVal());
                    written = true;
                }
                break;
            case OruType_t::NumericSparse:
                if (auto const* sparse = As<NumericSparseItem<T>>(item)) {
                    AppendNumber(out, sparse->GetVal());
                    written = true;
                }
                break;
            case OruType_t::NumericArray:
                if (auto const* array = As<NumericArrayItem<T>>(item)) {
                    AppendArray(out, array->Val(), [&](auto number) { AppendNumber(out, number); });
                    written = true;
                }
                break;
            default:
                break;
        }
    });
    return written;
}

bool AppendGeometryFamily(std::string& out, ItemBase const& item) {
    bool written = false;
    VisitGeometry(item.GetNumericType(), [&](auto traits) {
        using T = decltype(traits);
        if (auto const* coordinate = As<CoordinateItem<T>>(item)) {
            AppendTuple<T>(out, k_coordinateNames,
                           {coordinate->X()->GetVal(), coordinate->Y()->GetVal()});
            written = true;
        } else if (auto const* rect = As<RectItem<T>>(item)) {
            AppendTuple<T>(out, k_rectangleNames, RectangleNumbers(*rect));
            written = true;
        }
        if constexpr (std::is_same<T, U16Traits>::value) {
            if (auto const* rects = As<RectArrayItem<T>>(item)) {
                AppendArray(out, rects->Val(), [&](RectItem<T> const& one) {
                    AppendTuple<T>(out, k_rectangleNames, RectangleNumbers(one));
                });
                written = true;
            }
        }
    });
    return written;
}

// The enumeration entry's name when it leads back to the same number.
void AppendEnum(std::string& out, int value, InfoBase const* info) {
    if (auto const* enumInfo = dynamic_cast<EnumInfo const*>(info)) {
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
    auto const* compositeInfo = dynamic_cast<CompositeInfo const*>(info);
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

// False for a family without a value form.
}  // namespace

bool AppendValue(std::string& out, ItemBase const& item, InfoBase const* info) {
    switch (item.GetType()) {
        case OruType_t::Bool:
            if (auto const* flag = As<BoolItem>(item)) {
                out += flag->GetVal() ? "true" : "false";
                return true;
            }
            return false;
        case OruType_t::Numeric:
        case OruType_t::NumericArray:
        case OruType_t::NumericSparse:
            return AppendNumericFamily(out, item);
        case OruType_t::Enum:
            if (auto const* choice = As<EnumItem>(item)) {
                AppendEnum(out, choice->GetVal(), info);
                return true;
            }
            return false;
        case OruType_t::String:
            if (auto const* text = As<StringItem>(item)) {
                AppendJsonString(out, text->Val());
                return true;
            }
            return false;
        case OruType_t::StringArray:
            if (auto const* texts = As<StringArrayItem>(item)) {
                AppendArray(out, texts->Val(),
                            [&](std::string const& one) { AppendJsonString(out, one); });
                return true;
            }
            return false;
        case OruType_t::BoolArray:
            if (auto const* flags = As<BoolArrayItem>(item)) {
                AppendArray(out, flags->Val(), [&](bool one) { out += one ? "true" : "false"; });
                return true;
            }
            return false;
        case OruType_t::StringSparse:
            if (auto const* text = As<StringSparseItem>(item)) {
                AppendJsonString(out, text->Val());
                return true;
            }
            return false;
        case OruType_t::Colour:
            if (auto const* colour = As<ColourItem>(item)) {
                AppendColour(out, Vintor::Colour_t(colour->GetA(), colour->GetR(), colour->GetG(),
                                                   colour->GetB()));
                return true;
            }
            return false;
        case OruType_t::Coordinate:
        case OruType_t::Rectangle:
        case OruType_t::RectArray:
            return AppendGeometryFamily(out, item);
        case OruType_t::Orientation:
            if (auto const* orientation = As<OrientationItem>(item)) {
                AppendTuple<FloatTraits>(out, k_orientationNames,
                                         {orientation->GetBearing(), orientation->GetInclination(),
                                          orientation->GetRoll()});
                return true;
            }
            return false;
        case OruType_t::Addr:
            if (auto const* addr = As<AddrItem>(item)) {
                AppendJsonString(out, addr->Val().ToString());
                return true;
            }
            return false;
        case OruType_t::Endpoint:
            if (auto const* endpoint = As<EndpointItem>(item)) {
                AppendEndpoint(out, endpoint->Val());
                return true;
            }
            return false;
        case OruType_t::AppEndpoint:
            if (auto const* endpoint = As<AppEndpointItem>(item)) {
                AppendAppEndpoint(out, endpoint->Val());
                return true;
            }
            return false;
        case OruType_t::AppEndpointArray:
            if (auto const* endpoints = As<AppEndpointArrayItem>(item)) {
                AppendArray(out, endpoints->Val(),
                            [&](StrAppEndpoint const& one) { AppendAppEndpoint(out, one); });
                return true;
            }
            return false;
        case OruType_t::Extended:
            if (auto const* pair = As<ExtendedItem>(item)) {
                out += "{\"first\":";
                AppendJsonString(out, pair->Val().first);
                out += ",\"second\":";
                AppendJsonString(out, pair->Val().second);
                out += "}";
                return true;
            }
            return false;
        case OruType_t::LocalizedString:
            if (auto const* message = As<LocalizedStringItem>(item)) {
                out += "{\"key\":";
                AppendJsonString(out, message->GetVal().GetKey());
                out += ",\"arguments\":";
                // Arguments of any family travel as their text.
                AppendArray(out, message->GetVal().GetArguments(),
                            [&](boost::intrusive_ptr<ItemBase const> const& argument) {
                                AppendJsonString(out, argument ? argument->GetValAsString() : "");
                            });
                out += "}";
                return true;
            }
            return false;
        case OruType_t::Composite:
            if (auto const* composite = As<CompositeItem>(item)) {
                return AppendComposite(out, *composite, info);
            }
            return false;
        default:
            return false;
    }
}

namespace {

// ---- reading -------------------------------------------------------------

// "settings of the Collection family have no value form", for an Info or Item.
template <class I>
boost::intrusive_ptr<I> MakeItem(InfoBase const& info, Sink& sink, std::string const& pointer) {
    ItemPtr made(info.CreateItem());
    boost::intrusive_ptr<I> typed(dynamic_cast<I*>(made.get()));
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

ItemPtr ReadNumericFamily(JsonValue const& value, InfoBase const& info, Sink& sink,
                          std::string const& pointer) {
    ItemPtr result;
    bool const known = VisitElement(info.GetNumericType(), [&](auto traits) {
        using T = decltype(traits);
        using E = typename T::Element;
        std::string why;
        switch (info.GetType()) {
            case OruType_t::Numeric:
                if (auto item = MakeItem<NumericItem<T>>(info, sink, pointer)) {
                    if (ReadElement<T>(value, item->Val(), why)) {
                        result = item;
                    } else {
                        sink.Add(pointer, why);
                    }
                }
                break;
            case OruType_t::NumericSparse:
                if (auto item = MakeItem<NumericSparseItem<T>>(info, sink, pointer)) {
                    if (ReadElement<T>(value, item->Val(), why)) {
                        result = item;
                    } else {
                        sink.Add(pointer, why);
                    }
                }
                break;
            case OruType_t::NumericArray:
                if (auto item = MakeItem<NumericArrayItem<T>>(info, sink, pointer)) {
                    std::vector<E> numbers;
                    numbers.reserve(Kind::Array == value.kind ? value.items.size() : 0);
                    bool const ok =
                        ReadArray(value, "an array of numbers", sink, pointer,
                                  [&](JsonValue const& element, std::string const& at) {
                                      E number{};
                                      std::string elementWhy;
                                      if (!ReadElement<T>(element, number, elementWhy)) {
                                          sink.Add(at, elementWhy);
                                          return false;
                                      }
                                      numbers.push_back(number);
                                      return true;
                                  });
                    if (ok) {
                        item->Val().swap(numbers);
                        result = item;
                    }
                }
                break;
            default:
                break;
        }
    });
    if (!known) {
        sink.Add(pointer, "the setting's definition has no element type");
    }
    return result;
}

ItemPtr ReadGeometryFamily(JsonValue const& value, InfoBase const& info, Sink& sink,
                           std::string const& pointer) {
    ItemPtr result;
    bool const known = VisitGeometry(info.GetNumericType(), [&](auto traits) {
        using T = decltype(traits);
        switch (info.GetType()) {
            case OruType_t::Coordinate:
                if (auto item = MakeItem<CoordinateItem<T>>(info, sink, pointer)) {
                    typename T::Element numbers[2];
                    if (ReadTuple<T>(value, k_coordinateNames, numbers, sink, pointer)) {
                        item->SetValX(numbers[0]);
                        item->SetValY(numbers[1]);
                        result = item;
                    }
                }
                break;
            case OruType_t::Rectangle:
                if (auto item = MakeItem<RectItem<T>>(info, sink, pointer)) {
                    if (ReadRectangle(value, *item, sink, pointer)) {
                        result = item;
                    }
                }
                break;
            case OruType_t::RectArray:
                if constexpr (std::is_same<T, U16Traits>::value) {
                    if (auto item = MakeItem<RectArrayItem<T>>(info, sink, pointer)) {
                        typename RectArrayItem<T>::Rects rects;
                        rects.reserve(Kind::Array == value.kind ? value.items.size() : 0);
                        bool const ok =
                            ReadArray(value, "an array of rectangles", sink, pointer,
                                      [&](JsonValue const& element, std::string const& at) {
                                          rects.emplace_back(0);
                                          return ReadRectangle(element, rects.back(), sink, at);
                                      });
                        if (ok) {
                            item->SetVal(rects);
                            result = item;
                        }
                        break;
                    }
                }
                sink.Add(pointer, "rectangle arrays hold U16 numbers only");
                break;
            default:
                break;
        }
    });
    if (!known) {
        sink.Add(pointer, "the setting's definition has no element type of its family");
    }
    return result;
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
    auto const* compositeInfo = dynamic_cast<CompositeInfo const*>(&info);
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

}  // namespace

ItemPtr ReadItem(JsonValue const& value, InfoBase const& info, Sink& sink,
                 std::string const& pointer) {
    switch (info.GetType()) {
        case OruType_t::Bool:
            if (auto item = MakeItem<BoolItem>(info, sink, pointer)) {
                if (Kind::Boolean == value.kind) {
                    item->SetVal(value.boolean);
                    return item;
                }
                sink.Add(pointer, Expected("true or false", value));
            }
            return nullptr;
        case OruType_t::Numeric:
        case OruType_t::NumericArray:
        case OruType_t::NumericSparse:
            return ReadNumericFamily(value, info, sink, pointer);
        case OruType_t::Enum:
            if (auto item = MakeItem<EnumItem>(info, sink, pointer)) {
                if (Kind::String == value.kind) {
                    auto const* enumInfo = dynamic_cast<EnumInfo const*>(&info);
                    if (!enumInfo || enumInfo->GetElemVal(value.text, item->Val()) != 0) {
                        sink.Add(pointer, "no entry is named \"" + Shown(value.text, 32) + "\"" +
                                              EntryHint(enumInfo, value.text));
                        return nullptr;
                    }
                    return item;
                }
                std::string why;
                if (ReadElement(value, item->Val(), why, "Enum")) {
                    return item;
                }
                bool const number = Kind::Unsigned == value.kind || Kind::Integer == value.kind ||
                                    Kind::Float == value.kind;
                sink.Add(pointer, number ? why : Expected("an entry's name or number", value));
            }
            return nullptr;
        case OruType_t::String:
            if (auto item = MakeItem<StringItem>(info, sink, pointer)) {
                if (ReadString(value, item->Val(), sink, pointer)) {
                    return item;
                }
            }
            return nullptr;
        case OruType_t::StringArray:
            if (auto item = MakeItem<StringArrayItem>(info, sink, pointer)) {
                std::vector<std::string> texts;
                texts.reserve(Kind::Array == value.kind ? value.items.size() : 0);
                if (ReadArray(value, "an array of strings", sink, pointer,
                              [&](JsonValue const& element, std::string const& at) {
                                  texts.emplace_back();
                                  return ReadString(element, texts.back(), sink, at);
                              })) {
                    item->Val().swap(texts);
                    return item;
                }
            }
            return nullptr;
        case OruType_t::BoolArray:
            if (auto item = MakeItem<BoolArrayItem>(info, sink, pointer)) {
                std::vector<bool> flags;
                flags.reserve(Kind::Array == value.kind ? value.items.size() : 0);
                if (ReadArray(value, "an array of true and false", sink, pointer,
                              [&](JsonValue const& element, std::string const& at) {
                                  if (Kind::Boolean != element.kind) {
                                      sink.Add(at, Expected("true or false", element));
                                      return false;
                                  }
                                  flags.push_back(element.boolean);
                                  return true;
                              })) {
                    item->Val().swap(flags);
                    return item;
                }
            }
            return nullptr;
        case OruType_t::StringSparse:
            if (auto item = MakeItem<StringSparseItem>(info, sink, pointer)) {
                if (ReadString(value, item->Val(), sink, pointer)) {
                    return item;
                }
            }
            return nullptr;
        case OruType_t::Colour:
            if (auto item = MakeItem<ColourItem>(info, sink, pointer)) {
                Vintor::Colour_t colour;
                if (ReadColour(value, colour, sink, pointer)) {
                    item->Set(colour);
                    return item;
                }
            }
            return nullptr;
        case OruType_t::Coordinate:
        case OruType_t::Rectangle:
        case OruType_t::RectArray:
            return ReadGeometryFamily(value, info, sink, pointer);
        case OruType_t::Orientation:
            if (auto item = MakeItem<OrientationItem>(info, sink, pointer)) {
                float parts[3];
                if (ReadTuple<FloatTraits>(value, k_orientationNames, parts, sink, pointer)) {
                    item->Set(Orientation_t{parts[0], parts[1], parts[2]});
                    return item;
                }
            }
            return nullptr;
        case OruType_t::Addr:
            if (auto item = MakeItem<AddrItem>(info, sink, pointer)) {
                std::string text;
                if (ReadString(value, text, sink, pointer)) {
                    item->SetVal(Net::AddrStr(text));
                    return item;
                }
            }
            return nullptr;
        case OruType_t::Endpoint:
            if (auto item = MakeItem<EndpointItem>(info, sink, pointer)) {
                if (ReadEndpoint(value, item->Val(), sink, pointer)) {
                    return item;
                }
            }
            return nullptr;
        case OruType_t::AppEndpoint:
            if (auto item = MakeItem<AppEndpointItem>(info, sink, pointer)) {
                if (ReadAppEndpoint(value, item->Val(), sink, pointer)) {
                    return item;
                }
            }
            return nullptr;
        case OruType_t::AppEndpointArray:
            if (auto item = MakeItem<AppEndpointArrayItem>(info, sink, pointer)) {
                AppEndpointArrayItem::Value_t endpoints;
                endpoints.reserve(Kind::Array == value.kind ? value.items.size() : 0);
                if (ReadArray(value, "an array of URIs", sink, pointer,
                              [&](JsonValue const& element, std::string const& at) {
                                  endpoints.emplace_back();
                                  return ReadAppEndpoint(element, endpoints.back(), sink, at);
                              })) {
                    item->Val().swap(endpoints);
                    return item;
                }
            }
            return nullptr;
        case OruType_t::Extended:
            if (auto item = MakeItem<ExtendedItem>(info, sink, pointer)) {
                if (ReadStrings(value, k_pairNames, &item->Val().first, &item->Val().second, sink,
                                pointer)) {
                    return item;
                }
            }
            return nullptr;
        case OruType_t::LocalizedString:
            if (auto item = MakeItem<LocalizedStringItem>(info, sink, pointer)) {
                if (ReadMessage(value, *item, sink, pointer)) {
                    return item;
                }
            }
            return nullptr;
        case OruType_t::Composite:
            return ReadComposite(value, info, sink, pointer);
        default:
            sink.Add(pointer, NoValueForm(info));
            return nullptr;
    }
}

}  // namespace ValueForm
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
