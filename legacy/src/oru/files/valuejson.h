// The JSON side of values files: a small tree of one value as the parser
// found it (numbers keep their text, so that a float is read from what was
// written and a big integer is never seen through a double), a streaming
// reader that hands over the members of the top-level object one by one,
// and the writers of the scalar texts.
//
// Internal to Oru::files; plain values, any thread.
#ifndef LEGACY_ORU_FILES_VALUEJSON_H
#define LEGACY_ORU_FILES_VALUEJSON_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <legacy/oru/files/problem.h>

namespace Legacy {
namespace Oru {
namespace Files {

struct JsonValue {
    enum class Kind : unsigned char {
        Null,
        Boolean,
        Integer,
        Unsigned,
        Float,
        String,
        Array,
        Object
    };

    Kind kind = Kind::Null;
    bool boolean = false;
    // Integer: a negative number; Unsigned: a number from 0 up.
    std::int64_t integer = 0;
    std::uint64_t natural = 0;
    // String: the text; Float: the number as the file spells it.
    std::string text;
    // Array: the elements; Object: the member values, beside their names.
    std::vector<JsonValue> items;
    std::vector<std::string> keys;
};

// "a number", "a string", ... for messages.
char const* KindName(JsonValue::Kind kind);

// The deepest nesting of arrays and objects a file may have, the top-level
// object included; deeper files are refused before their values are read.
constexpr std::size_t k_maxJsonDepth = 64;

// Reads a whole file that must be one object. Each member is handed to
// onMember as soon as its value is complete, in file order; onMember may
// refuse the whole file by answering false with a message in refusal (the
// caller knows its members and so finds repeated keys at less cost). False,
// with the problem in problems, when the file is no JSON, is not an object,
// nests too deep, or was refused; false with one problem for each key given
// twice inside a value; members already handed over are then to be forgotten.
bool ReadJsonMembers(std::string const& json,
                     std::function<bool(std::string const& key, JsonValue& value,
                                        std::string& refusal)> const& onMember,
                     Problems& problems);

// Reads a text that must be exactly one JSON value, with the same refusals.
bool ReadJsonValue(std::string const& json, JsonValue& out, Problems& problems);

// A text from a file cut to about limit bytes for messages, never inside a
// UTF-8 sequence, so that a huge input cannot make a huge report.
std::string Shown(std::string const& text, std::size_t limit = 64);

// The JSON string of text, quoted and escaped; bytes that are no UTF-8 become
// U+FFFD, since a JSON text cannot carry them.
void AppendJsonString(std::string& out, std::string const& text);

// The shortest text that reads back as the same float or double; "NaN",
// "Infinity" and "-Infinity" (as JSON strings) for what JSON has no number for.
void AppendJsonFloat(std::string& out, float value);
void AppendJsonDouble(std::string& out, double value);

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
