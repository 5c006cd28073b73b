// Reading a description's members: each value with its JSON pointer, every
// problem under the setting's path, and the keys no family asked for.
#ifndef LEGACY_ORU_FILES_DESCRIPTIONREADER_H
#define LEGACY_ORU_FILES_DESCRIPTIONREADER_H

#include <cstring>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <legacy/oru/files/problem.h>

#include "checkrules.h"
#include "valueform.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {
namespace DescriptionForm {

using Json = nlohmann::ordered_json;
using ValueForm::Kind;

// A setting's path is at most this long.
constexpr std::size_t k_maxPathLength = 1024;

// An id as every output prints it: "0x" and eight upper-case hex digits.
inline std::string HexId(unsigned int id) {
    static char const digits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += digits[(id >> shift) & 15u];
    }
    return text;
}

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

inline std::string const& PointerText(std::string const& pointer) {
    return pointer;
}
inline std::string PointerText(MemberPointer const& pointer) {
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
inline JsonValue const* Member(JsonValue const& object, char const* key) {
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

}  // namespace DescriptionForm
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
