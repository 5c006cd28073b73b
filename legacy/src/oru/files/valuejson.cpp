#include "valuejson.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include <legacy/oru/files/problem.h>

namespace Legacy {
namespace Oru {
namespace Files {

namespace {

using Json = nlohmann::json;

// Past this many keys given twice a hostile file is refused without more.
constexpr std::size_t k_maxRepeatedKeys = 20;

// Builds JsonValue trees from the parser's events. Nesting is bounded here,
// and the parser itself keeps no stack of its own beyond one flag per level,
// so a hostile file costs at most k_maxJsonDepth levels of anything.
class TreeBuilder {
public:
    using OnMember = std::function<bool(std::string const&, JsonValue&, std::string&)>;

    // With onMember: the file must be an object, whose members are handed
    // over one by one. Without: the one value lands in single.
    TreeBuilder(OnMember const* onMember, JsonValue* single)
        : onMember_(onMember), single_(single) {}

    bool null() {
        Scalar().kind = JsonValue::Kind::Null;
        return Complete();
    }
    bool boolean(bool value) {
        JsonValue& placed = Scalar();
        placed.kind = JsonValue::Kind::Boolean;
        placed.boolean = value;
        return Complete();
    }
    bool number_integer(std::int64_t value) {
        JsonValue& placed = Scalar();
        if (value < 0) {
            placed.kind = JsonValue::Kind::Integer;
            placed.integer = value;
        } else {
            placed.kind = JsonValue::Kind::Unsigned;
            placed.natural = static_cast<std::uint64_t>(value);
        }
        return Complete();
    }
    bool number_unsigned(std::uint64_t value) {
        JsonValue& placed = Scalar();
        placed.kind = JsonValue::Kind::Unsigned;
        placed.natural = value;
        return Complete();
    }
    bool number_float(double, std::string const& text) {
        JsonValue& placed = Scalar();
        placed.kind = JsonValue::Kind::Float;
        placed.text = text;
        return Complete();
    }
    bool string(std::string& value) {
        JsonValue& placed = Scalar();
        placed.kind = JsonValue::Kind::String;
        // Short texts are copied so that the parser keeps its buffer; long
        // ones are taken whole rather than copied.
        if (value.size() < 4096) {
            placed.text.assign(value);
        } else {
            placed.text = std::move(value);
        }
        return Complete();
    }
    bool binary(Json::binary_t&) { return false; }

    bool start_object(std::size_t) { return Open(JsonValue::Kind::Object); }
    bool start_array(std::size_t) { return Open(JsonValue::Kind::Array); }

    bool key(std::string& name) {
        if (IsTopLevel()) {
            // Copied, not moved, so that the parser keeps its buffer.
            key_.assign(name);
            return true;
        }
        open_.back()->keys.push_back(std::move(name));
        return true;
    }

    bool end_object() {
        if (open_.empty()) {
            topClosed_ = true;
            return true;
        }
        if (JsonValue::Kind::Object == open_.back()->kind && !CheckUniqueKeys(*open_.back())) {
            return false;
        }
        open_.pop_back();
        return Complete();
    }
    bool end_array() {
        open_.pop_back();
        return Complete();
    }

    bool parse_error(std::size_t position, std::string const&,
                     nlohmann::detail::exception const& ex) {
        // The parser's own words, without its id and line prefix: the byte
        // position says where.
        // A hostile token of a megabyte is named by its start.
        std::string what = ex.what();
        auto const column = what.find("column ");
        if (column != std::string::npos) {
            auto const colon = what.find(": ", column);
            if (colon != std::string::npos) {
                what.erase(0, colon + 2);
            }
        } else if (what.compare(0, 1, "[") == 0 && what.find("] ") != std::string::npos) {
            what.erase(0, what.find("] ") + 2);
        }
        return Fail("", "malformed JSON at byte " + std::to_string(position) + ": " +
                            Shown(what, what.size() > 160 ? 120 : 160));
    }

    bool Failed() const { return failed_; }
    std::string const& ErrorPointer() const { return errorPointer_; }
    std::string const& Error() const { return error_; }
    Problems const& Repeated() const { return repeated_; }

private:
    bool IsTopLevel() const { return onMember_ && open_.empty(); }

    // Where the next value goes: a new element of the open container, the
    // value of the present member, or the single value.
    JsonValue& Place() {
        if (!open_.empty()) {
            JsonValue& parent = *open_.back();
            parent.items.emplace_back();
            return parent.items.back();
        }
        if (onMember_) {
            member_ = JsonValue();
            return member_;
        }
        return *single_;
    }

    JsonValue& Scalar() {
        if (onMember_ && !topOpened_) {
            topOpened_ = true;
            notObject_ = true;
        }
        return Place();
    }

    bool Open(JsonValue::Kind kind) {
        if (onMember_ && !topOpened_) {
            topOpened_ = true;
            if (JsonValue::Kind::Object != kind) {
                return Fail("", "the file is no JSON object of setting paths and values");
            }
            return true;
        }
        std::size_t const depth = open_.size() + (onMember_ ? 2 : 1);
        if (depth > k_maxJsonDepth) {
            return Fail(PointerHere(),
                        "nested deeper than " + std::to_string(k_maxJsonDepth) + " levels");
        }
        JsonValue& placed = Place();
        placed.kind = kind;
        open_.push_back(&placed);
        return true;
    }

    // Called after each value: a finished top-level member is handed over.
    bool Complete() {
        if (notObject_) {
            return Fail("", "the file is no JSON object of setting paths and values");
        }
        if (open_.empty() && onMember_) {
            std::string refusal;
            if (!(*onMember_)(key_, member_, refusal)) {
                return Fail("/" + PointerToken(key_), std::move(refusal));
            }
            member_ = JsonValue();
        }
        return true;
    }

    // Every key given twice is noted and the reading goes on, so that a file
    // is refused with all of them. Sorting keeps an object with many members
    // from costing its square.
    bool CheckUniqueKeys(JsonValue const& object) {
        std::vector<std::string_view> names(object.keys.begin(), object.keys.end());
        std::sort(names.begin(), names.end());
        for (auto twice = std::adjacent_find(names.begin(), names.end());
             twice != names.end() && repeated_.size() < k_maxRepeatedKeys;
             twice =
                 std::adjacent_find(std::upper_bound(twice, names.end(), *twice), names.end())) {
            repeated_.push_back(Problem{PointerHere() + "/" + PointerToken(std::string(*twice)),
                                        "the key appears twice"});
        }
        return true;
    }

    // The pointer of the innermost open container.
    std::string PointerHere() const {
        std::string pointer;
        if (onMember_) {
            pointer = "/" + PointerToken(key_);
        }
        for (std::size_t level = 1; level < open_.size(); ++level) {
            JsonValue const& parent = *open_[level - 1];
            pointer += "/";
            pointer += JsonValue::Kind::Object == parent.kind
                           ? PointerToken(parent.keys.back())
                           : std::to_string(parent.items.size() - 1);
        }
        return pointer;
    }

    bool Fail(std::string pointer, std::string message) {
        failed_ = true;
        errorPointer_ = std::move(pointer);
        error_ = std::move(message);
        return false;
    }

    OnMember const* onMember_;
    JsonValue* single_;
    std::vector<JsonValue*> open_;
    std::string key_;
    JsonValue member_;
    bool topOpened_ = false;
    bool topClosed_ = false;
    bool notObject_ = false;
    bool failed_ = false;
    std::string errorPointer_;
    std::string error_;
    Problems repeated_;
};

// "malformed JSON at line 3, column 7 (byte 41): ...", from the parser's
// byte count: people find a line, programs an offset.
std::string WithLine(std::string const& json, std::string const& message) {
    static std::string const prefix = "malformed JSON at byte ";
    if (message.compare(0, prefix.size(), prefix) != 0) {
        return message;
    }
    std::size_t const end = message.find(':', prefix.size());
    std::string const digits = message.substr(prefix.size(), end - prefix.size());
    if (end == std::string::npos || digits.empty() ||
        digits.find_first_not_of("0123456789") != std::string::npos || digits.size() > 18) {
        return message;
    }
    std::size_t const byte = std::stoull(digits);
    std::size_t const upTo = std::min(byte > 0 ? byte - 1 : 0, json.size());
    std::size_t line = 1;
    std::size_t lineStart = 0;
    for (std::size_t i = 0; i < upTo; ++i) {
        if (json[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    return "malformed JSON at line " + std::to_string(line) + ", column " +
           std::to_string(upTo - lineStart + 1) + " (byte " + digits + ")" + message.substr(end);
}

bool Run(std::string const& json, TreeBuilder& builder, Problems& problems) {
    bool const parsed = Json::sax_parse(json, &builder);
    if (parsed && !builder.Failed()) {
        problems = builder.Repeated();
        return problems.empty();
    }
    problems.assign(1,
                    Problem{builder.Failed() ? builder.ErrorPointer() : "",
                            builder.Failed() ? WithLine(json, builder.Error()) : "malformed JSON"});
    return false;
}

}  // namespace

char const* KindName(JsonValue::Kind kind) {
    switch (kind) {
        case JsonValue::Kind::Null:
            return "null";
        case JsonValue::Kind::Boolean:
            return "a boolean";
        case JsonValue::Kind::Integer:
        case JsonValue::Kind::Unsigned:
        case JsonValue::Kind::Float:
            return "a number";
        case JsonValue::Kind::String:
            return "a string";
        case JsonValue::Kind::Array:
            return "an array";
        case JsonValue::Kind::Object:
            return "an object";
    }
    return "a value";
}

bool ReadJsonMembers(std::string const& json,
                     std::function<bool(std::string const& key, JsonValue& value,
                                        std::string& refusal)> const& onMember,
                     Problems& problems) {
    TreeBuilder builder(&onMember, nullptr);
    return Run(json, builder, problems);
}

bool ReadJsonValue(std::string const& json, JsonValue& out, Problems& problems) {
    out = JsonValue();
    TreeBuilder builder(nullptr, &out);
    return Run(json, builder, problems);
}

std::string Shown(std::string const& text, std::size_t limit) {
    if (text.size() <= limit) {
        return text;
    }
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0u) == 0x80u) {
        --limit;
    }
    return text.substr(0, limit) + "...";
}

void AppendJsonString(std::string& out, std::string const& text) {
    out += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

namespace {

template <class F>
void AppendFloating(std::string& out, F value) {
    if (std::isnan(value)) {
        out += "\"NaN\"";
    } else if (std::isinf(value)) {
        out += value < 0 ? "\"-Infinity\"" : "\"Infinity\"";
    } else {
        char text[64];
        auto const written = std::to_chars(text, text + sizeof text, value);
        out.append(text, written.ptr);
    }
}

}  // namespace

void AppendJsonFloat(std::string& out, float value) {
    AppendFloating(out, value);
}

void AppendJsonDouble(std::string& out, double value) {
    AppendFloating(out, value);
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
