// Text input and the list form of the families: reading one field of text,
// the complaint "Error parsing " a failed read writes, the counted lists of
// the array families, and "(a, b, c)". Every SetValFromStream and every
// operator<< of a list goes through here, so that the texts callers match on
// are written in one place.
#ifndef LEGACY_ORU_SRC_TEXTIO_H
#define LEGACY_ORU_SRC_TEXTIO_H

#include <algorithm>
#include <cstddef>
#include <istream>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "texts.h"

namespace Legacy {
namespace Oru {
namespace TextIO {

// The answer of a family without text input; callers look for this exact
// text, with no line end.
inline constexpr char k_notImplemented[] = "Impl. me";

// The fields the array families complain about.
inline constexpr char k_arraySize[] = "arraySize";
inline constexpr char k_arrayItem[] = "arrayItem";

// True when the end of the text was reached by an earlier read.
inline bool AtEnd(std::istream const& in) {
    return in.eof();
}

// True when the last read failed; the end of the text alone is no failure.
inline bool Failed(std::istream const& in) {
    return in.fail() || in.bad();
}

// Writes "Error parsing ", what and a line end; answers false, the answer of
// the reader that failed.
inline bool Complain(std::ostream& errors, char const* what) {
    errors << "Error parsing " << what << "\n";
    return false;
}

// Writes the fixed text of a family without text input and answers false.
inline bool NotImplemented(std::ostream& errors) {
    errors << k_notImplemented;
    return false;
}

// Reads one value: false if the text is at its end before the read or the
// read fails. A failed read may still have written to out.
template <class V>
bool ReadText(std::istream& in, V& out) {
    if (AtEnd(in)) {
        return false;
    }
    in >> out;
    return !Failed(in);
}

// Reads one number of T's element through T's stream type; the 8-bit members
// keep the low byte of what they read, with no range check. out changes only
// when the read succeeds.
template <class T>
bool ReadTextNumber(std::istream& in, typename T::Element& out) {
    typename T::StreamInType read{};
    if (!ReadText(in, read)) {
        return false;
    }
    out = static_cast<typename T::Element>(read);
    return true;
}

// Reads one blank-separated word; false only at the end of the text. A read
// that fails there leaves the word empty, and the text families take that.
inline bool ReadWord(std::istream& in, std::string& word) {
    if (AtEnd(in)) {
        return false;
    }
    in >> word;
    return true;
}

// The signature of ReadText<V>, the element reader when none is given.
template <class V>
using TextReader = bool (*)(std::istream&, V&);

// Reads one value by read(in, value) into a temporary and stores it in out;
// on failure writes the complaint about what and leaves out as it was (a
// failed extraction would have stored 0).
template <class V, class Read = TextReader<V>>
bool ReadField(std::istream& in, std::ostream& errors, char const* what, V& out,
               Read read = &ReadText<V>) {
    V value{};
    if (!read(in, value)) {
        return Complain(errors, what);
    }
    out = std::move(value);
    return true;
}

// Reads count elements, each by read(element), and replaces out by them only
// when all read. The count is only a claim of the text: no more than
// reserveAhead elements are reserved ahead of those that arrive.
template <class V, class Read>
bool ReadElements(unsigned int count, std::size_t reserveAhead, std::vector<V>& out, Read read) {
    std::vector<V> values;
    values.reserve(std::min<std::size_t>(count, reserveAhead));
    for (unsigned int i = 0; i < count; ++i) {
        V value{};
        if (!read(value)) {
            return false;
        }
        values.push_back(std::move(value));
    }
    out.swap(values);
    return true;
}

// The counted list of the array families: an unsigned count, then that many
// elements, each by read(in, element); all or nothing, with the "arraySize"
// or "arrayItem" complaint.
template <class V, class Read = TextReader<V>>
bool ReadCountedList(std::istream& in, std::ostream& errors, std::size_t reserveAhead,
                     std::vector<V>& out, Read read = &ReadText<V>) {
    unsigned int count = 0;
    if (!ReadField(in, errors, k_arraySize, count)) {
        return false;
    }
    return ReadElements(count, reserveAhead, out, [&in, &errors, &read](V& value) {
        return read(in, value) || Complain(errors, k_arrayItem);
    });
}

// The element writer when none is given: the element's own operator<<.
struct StreamOut {
    template <class E>
    void operator()(std::ostream& out, E const& element) const {
        out << element;
    }
};

// Writes the elements with ", " between them, each by write(out, element);
// the separator goes before every element but the first, whatever the
// element writes.
template <class Range, class Write = StreamOut>
std::ostream& WriteJoined(std::ostream& out, Range const& elements, Write write = Write()) {
    bool first = true;
    for (auto const& element : elements) {
        if (!first) {
            out << Texts::Separator();
        }
        first = false;
        write(out, element);
    }
    return out;
}

// "(a, b, c)": the list form of the array families and the child lists.
template <class Range, class Write = StreamOut>
std::ostream& WriteList(std::ostream& out, Range const& elements, Write write = Write()) {
    out << "(";
    WriteJoined(out, elements, write);
    return out << ")";
}

}  // namespace TextIO
}  // namespace Oru
}  // namespace Legacy

#endif
