// The JSON form of one value of each family, read and written by one set of
// functions that values files and the defaults and bounds of description
// files share, with the reading of numbers into an element type and the
// shortening of texts for messages.
//
// Internal to Oru::files; plain values, any thread.
#ifndef LEGACY_ORU_FILES_VALUEFORM_H
#define LEGACY_ORU_FILES_VALUEFORM_H

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/catalogue.h>
#include <legacy/oru/files/problem.h>
#include <legacy/oru/oru.h>

#include "families.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {

using ItemPtr = boost::intrusive_ptr<ItemBase>;
using InfoPtr = boost::intrusive_ptr<InfoBase const>;
using StrEndpoint = Net::Endpoint<Net::AddrStr>;
using StrAppEndpoint = AppEndpoint<StrEndpoint>;

namespace ValueForm {

using Kind = JsonValue::Kind;

// A hostile array of a million wrong elements should not make a million
// problems: past this many in one value the rest are counted.
constexpr std::size_t k_maxProblemsPerValue = 20;

// Collects the problems of the values read, capped per value.
class Sink {
public:
    explicit Sink(Problems& problems) : problems_(problems) {}

    void BeginValue() {
        inValue_ = 0;
        dropped_ = 0;
    }
    // The setting the problems added next concern, for their path.
    void SetPath(std::string path) { path_ = std::move(path); }
    void Add(std::string pointer, std::string message) {
        Add(std::move(pointer), std::move(message), path_);
    }
    void Add(std::string pointer, std::string message, std::string const& path) {
        if (inValue_ >= k_maxProblemsPerValue) {
            ++dropped_;
            return;
        }
        ++inValue_;
        problems_.push_back(Problem(std::move(pointer), std::move(message), path));
    }
    void EndValue(std::string const& pointer) {
        if (dropped_ > 0) {
            problems_.push_back(
                Problem(pointer, std::to_string(dropped_) + " more problems in this value", path_));
        }
        BeginValue();
    }

private:
    Problems& problems_;
    std::string path_;
    std::size_t inValue_ = 0;
    std::size_t dropped_ = 0;
};

// "expected a string, not a number".
std::string Expected(char const* what, JsonValue const& value);

std::string Child(std::string const& pointer, std::size_t index);
std::string Child(std::string const& pointer, std::string const& key);

// "Setting 'Brightness': ", the start of a message about one setting.
std::string Quoted(std::string const& name);

// The number as the file spells it, shortened.
std::string NumberText(JsonValue const& value);

// ---- element types -------------------------------------------------------

// Calls visit with an object of the traits class of type; false for none.
template <class Visit>
bool VisitElement(NumericType_t type, Visit&& visit) {
    switch (type) {
        case NumericType_t::U8:
            visit(U8Traits{});
            return true;
        case NumericType_t::S8:
            visit(S8Traits{});
            return true;
        case NumericType_t::U16:
            visit(U16Traits{});
            return true;
        case NumericType_t::S16:
            visit(S16Traits{});
            return true;
        case NumericType_t::U32:
            visit(U32Traits{});
            return true;
        case NumericType_t::S32:
            visit(S32Traits{});
            return true;
        case NumericType_t::U64:
            visit(U64Traits{});
            return true;
        case NumericType_t::S64:
            visit(S64Traits{});
            return true;
        case NumericType_t::Float:
            visit(FloatTraits{});
            return true;
        case NumericType_t::Double:
            visit(DoubleTraits{});
            return true;
        case NumericType_t::Undefined:
            break;
    }
    return false;
}

// Coordinates and rectangles exist for three element types only.
template <class Visit>
bool VisitGeometry(NumericType_t type, Visit&& visit) {
    switch (type) {
        case NumericType_t::U16:
            visit(U16Traits{});
            return true;
        case NumericType_t::S32:
            visit(S32Traits{});
            return true;
        case NumericType_t::Float:
            visit(FloatTraits{});
            return true;
        default:
            return false;
    }
}

template <class E>
void AppendNumber(std::string& out, E value) {
    if constexpr (std::is_same<E, float>::value) {
        AppendJsonFloat(out, value);
    } else if constexpr (std::is_same<E, double>::value) {
        AppendJsonDouble(out, value);
    } else {
        // Wide types, so that the 8-bit elements are written as numbers.
        using Wide = typename std::conditional<std::is_signed<E>::value, long long,
                                               unsigned long long>::type;
        char text[24];
        auto const written = std::to_chars(text, text + sizeof text, static_cast<Wide>(value));
        out.append(text, written.ptr);
    }
}

template <class E>
std::string NumberText(E value) {
    std::string text;
    AppendNumber(text, value);
    return text;
}

template <class E>
std::string OutOfRange(JsonValue const& value, char const* name) {
    std::string message = NumberText(value) + " does not fit " + name;
    if constexpr (std::is_integral<E>::value) {
        message += " (" + NumberText(std::numeric_limits<E>::lowest()) + " to " +
                   NumberText(std::numeric_limits<E>::max()) + ")";
    }
    return message;
}

// "16777217 is not exact in Float: it would be held as 16777216".
template <class E>
std::string Inexact(JsonValue const& value, char const* name, E held) {
    return NumberText(value) + " is not exact in " + name + ": it would be held as " +
           NumberText(held);
}

// A number from the file's digits: exact for every integer type, never
// wrapped, truncated or rounded into range.
template <class E>
bool ReadElement(JsonValue const& value, E& out, std::string& why, char const* name) {
    if constexpr (std::is_floating_point<E>::value) {
        switch (value.kind) {
            case Kind::Unsigned:
                out = static_cast<E>(value.natural);
                if (static_cast<long double>(out) != static_cast<long double>(value.natural)) {
                    why = Inexact(value, name, out);
                    return false;
                }
                return true;
            case Kind::Integer:
                out = static_cast<E>(value.integer);
                if (static_cast<long double>(out) != static_cast<long double>(value.integer)) {
                    why = Inexact(value, name, out);
                    return false;
                }
                return true;
            case Kind::Float: {
                char const* const begin = value.text.data();
                char const* const end = begin + value.text.size();
                E parsed{};
                auto const result = std::from_chars(begin, end, parsed);
                if (result.ec == std::errc() && result.ptr == end) {
                    out = parsed;
                    return true;
                }
                // Too small to hold is rounding to zero, too large is an error.
                long double wide = 0;
                auto const again = std::from_chars(begin, end, wide);
                if (again.ec == std::errc() && again.ptr == end && std::fabs(wide) < 1) {
                    out = static_cast<E>(wide);
                    return true;
                }
                why = OutOfRange<E>(value, name);
                return false;
            }
            case Kind::String:
                if (value.text == "NaN") {
                    out = std::numeric_limits<E>::quiet_NaN();
                    return true;
                }
                if (value.text == "Infinity" || value.text == "-Infinity") {
                    out = value.text[0] == '-' ? -std::numeric_limits<E>::infinity()
                                               : std::numeric_limits<E>::infinity();
                    return true;
                }
                break;
            default:
                break;
        }
        why = Expected("a number", value);
        return false;
    } else {
        switch (value.kind) {
            case Kind::Unsigned:
                if (value.natural <= static_cast<std::uint64_t>(std::numeric_limits<E>::max())) {
                    out = static_cast<E>(value.natural);
                    return true;
                }
                why = OutOfRange<E>(value, name);
                return false;
            case Kind::Integer:
                if constexpr (std::is_signed<E>::value) {
                    if (value.integer >=
                        static_cast<std::int64_t>(std::numeric_limits<E>::lowest())) {
                        out = static_cast<E>(value.integer);
                        return true;
                    }
                }
                why = OutOfRange<E>(value, name);
                return false;
            case Kind::Float: {
                // Integer settings take plain digits only: "2.0" or "1e3" is
                // a float to a script or an editor, and would come back as 2.
                double parsed = 0;
                char const* const begin = value.text.data();
                char const* const end = begin + value.text.size();
                auto const result = std::from_chars(begin, end, parsed);
                bool const read = result.ec == std::errc() && result.ptr == end;
                long double tiny = 0;
                auto const again = std::from_chars(begin, end, tiny);
                bool const fraction = read ? parsed != std::trunc(parsed)
                                           : again.ec == std::errc() && std::fabs(tiny) < 1;
                if (fraction) {
                    why = std::string("expected a whole number for ") + name + ", not " +
                          NumberText(value);
                    return false;
                }
                // Plain digits arrive here only when they overflow 64 bits.
                // The maximum of a 64-bit type rounds up to a power of two as
                // a double, which is itself out of range.
                bool const digitsOnly = value.text.find_first_of(".eE") == std::string::npos;
                double const beyond = std::ldexp(1.0, std::numeric_limits<E>::digits);
                if (!read || digitsOnly ||
                    parsed < static_cast<double>(std::numeric_limits<E>::lowest()) ||
                    parsed >= beyond) {
                    why = OutOfRange<E>(value, name);
                    return false;
                }
                why = std::string("expected a whole number in plain digits for ") + name +
                      ", not " + NumberText(value);
                return false;
            }
            default:
                why = Expected("a number", value);
                return false;
        }
    }
}

template <class T>
bool ReadElement(JsonValue const& value, typename T::Element& out, std::string& why) {
    return ReadElement(value, out, why, NumericTypeText(T::k_numericType));
}

// The members of an object by the names allowed, null where absent; unknown
// and missing-but-required members are problems.
bool ReadMembers(JsonValue const& value, std::vector<char const*> const& names, bool allRequired,
                 std::vector<JsonValue const*>& out, Sink& sink, std::string const& pointer);

bool ReadString(JsonValue const& value, std::string& out, Sink& sink, std::string const& pointer);

// A colour as {"a", "r", "g", "b"} or an array of four numbers.
bool ReadColour(JsonValue const& value, Vintor::Colour_t& out, Sink& sink,
                std::string const& pointer);
void AppendColour(std::string& out, Vintor::Colour_t const& colour);

template <class I>
I const* As(ItemBase const& item) {
    return Catalogue::As<I>(&item);
}

// "settings of the Collection family have no value form", for an Info or Item.
template <class Object>
std::string NoValueForm(Object const& object) {
    return std::string("settings of the ") + OruTypeText(object.GetType()) +
           " family have no value form";
}

// The value of info's family that value holds, as a new Item made by info;
// null, with the problems in sink, when it holds none.
ItemPtr ReadItem(JsonValue const& value, InfoBase const& info, Sink& sink,
                 std::string const& pointer);

// The JSON form of item; info names the entries of an enumeration and the
// parts of a composite. False for a family without a value form.
bool AppendValue(std::string& out, ItemBase const& item, InfoBase const* info);

}  // namespace ValueForm
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
