#include "values.h"

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <sstream>

#include <legacy/oru/files/values.h>
#include <legacy/oru/oru.h>

#include "codes.h"
#include "util.h"

namespace OruTool {

namespace {

using Legacy::Oru::CompositeItem;
using Legacy::Oru::InfoBase;
using Legacy::Oru::ItemBase;

// How a family's words are put into the form its text reader takes.
enum class Shape {
    Plain,     // the words as they are
    Bool,      // 1 or 0; True and False as decode prints them
    Counted,   // a count, then the elements; "(a, b, c)" as decode prints it
    Geometry,  // numbers; "(TLC(1,  2),  BRC(3,  4))" as decode prints it
    Colour,    // "(a r g b)" as decode prints it; the four numbers alone too
    Endpoint,  // address:port; decode adds the protocol in brackets
};

std::string Prefix(std::string const& name) {
    return name.substr(0, name.find(':'));
}

Shape ShapeOf(Family const& family) {
    std::string const prefix = Prefix(family.name);
    if (prefix == "Bool") {
        return Shape::Bool;
    }
    if (prefix == "BoolArray" || prefix == "NumericArray" || prefix == "StringArray" ||
        prefix == "RectArray") {
        return Shape::Counted;
    }
    if (prefix == "Coordinate" || prefix == "Rectangle") {
        return Shape::Geometry;
    }
    if (prefix == "Colour") {
        return Shape::Colour;
    }
    if (prefix == "AppEndpoint") {
        return Shape::Endpoint;
    }
    return Shape::Plain;
}

// Elements of a counted family are this many words each.
std::size_t WordsPerElement(Family const& family) {
    return Prefix(family.name) == "RectArray" ? 4 : 1;
}

std::vector<std::string> Split(std::string const& text) {
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string Join(std::vector<std::string> const& words, std::size_t from = 0) {
    std::string text;
    for (std::size_t i = from; i < words.size(); ++i) {
        text += (i > from ? " " : "") + words[i];
    }
    return text;
}

// The words of a value as decode prints it: brackets, commas and the corner
// names of rectangles are layout.
std::vector<std::string> PrintedWords(std::string text) {
    for (char const* corner : {"TLC", "BRC"}) {
        for (std::size_t at; (at = text.find(corner)) != std::string::npos;) {
            text.replace(at, 3, " ");
        }
    }
    for (char& c : text) {
        if (c == '(' || c == ')' || c == ',') {
            c = ' ';
        }
    }
    return Split(text);
}

std::string BoolWord(std::string const& word) {
    std::string lower;
    for (char c : word) {
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return lower == "true" ? "1" : lower == "false" ? "0" : word;
}

template <class E>
std::string Limits() {
    std::ostringstream text;
    if (std::is_floating_point<E>::value) {
        text << -std::numeric_limits<E>::max() << " to " << std::numeric_limits<E>::max();
    } else {
        // Through the widest types, so that 8-bit elements print as numbers.
        if (std::is_signed<E>::value) {
            text << static_cast<long long>(std::numeric_limits<E>::min()) << " to "
                 << static_cast<long long>(std::numeric_limits<E>::max());
        } else {
            text << 0 << " to " << static_cast<unsigned long long>(std::numeric_limits<E>::max());
        }
    }
    return text.str();
}

// A number's exact value: digits without leading or trailing zeros, times ten
// to the exponent. Zero has no digits.
struct Decimal {
    bool negative = false;
    std::string digits;
    long exponent = 0;

    bool operator==(Decimal const& other) const {
        return negative == other.negative && digits == other.digits && exponent == other.exponent;
    }
};

// The exact value of plain decimal text ("-1.50e3"); false for anything else
// (inf, nan, hex) or an exponent no element type reaches.
bool ParseDecimal(std::string const& text, Decimal& value) {
    std::size_t i = 0;
    value = Decimal();
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        value.negative = text[i++] == '-';
    }
    bool point = false;
    bool anyDigit = false;
    for (; i < text.size(); ++i) {
        char const c = text[i];
        if (c == '.' && !point) {
            point = true;
        } else if (c >= '0' && c <= '9') {
            anyDigit = true;
            value.digits += c;
            value.exponent -= point ? 1 : 0;
        } else {
            break;
        }
    }
    if (!anyDigit) {
        return false;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        char* end = nullptr;
        long const exponent = std::strtol(text.c_str() + i + 1, &end, 10);
        if (end == text.c_str() + i + 1 || exponent > 100000 || exponent < -100000) {
            return false;
        }
        value.exponent += exponent;
        i = static_cast<std::size_t>(end - text.c_str());
    }
    if (i != text.size()) {
        return false;
    }
    std::size_t const first = value.digits.find_first_not_of('0');
    if (first == std::string::npos) {
        value = Decimal();  // zero, "-0" too
        return true;
    }
    value.digits.erase(0, first);
    std::size_t const last = value.digits.find_last_not_of('0');
    value.exponent += static_cast<long>(value.digits.size() - last - 1);
    value.digits.erase(last + 1);
    return true;
}

// The exact value of a double: glibc prints every digit that is asked for,
// and no double has more than 1074 after the point.
Decimal ExactValue(double number) {
    std::vector<char> text(1500);
    std::snprintf(text.data(), text.size(), "%.1080f", number);
    Decimal value;
    ParseDecimal(text.data(), value);
    return value;
}

// Why the word is no value of element type E (out of range, or a number that
// E holds only rounded: 16777217 as a float is 16777216); empty if it is one.
template <class E>
std::string Refuse(std::string const& word, std::string const& family) {
    std::string const outside = word + " does not fit " + family + " (" + Limits<E>() + ")";
    char const* const begin = word.c_str();
    char* end = nullptr;
    errno = 0;
    if (std::is_floating_point<E>::value) {
        double const value = std::strtod(begin, &end);
        if (errno == ERANGE) {
            return outside;  // too large or too small for a double
        }
        if (!std::isfinite(value)) {
            return std::string();  // left to the family's reader
        }
        if (std::is_same<E, float>::value) {
            if (std::fabs(value) > FLT_MAX) {
                return outside;
            }
            if (value != 0.0 && static_cast<float>(std::strtof(begin, nullptr)) == 0.0f) {
                return outside;  // too small to be held at all
            }
        }
        // The element's nearest value must be the number typed, exactly.
        E const held = std::is_same<E, float>::value ? static_cast<E>(std::strtof(begin, nullptr))
                                                     : static_cast<E>(value);
        Decimal typed;
        if (ParseDecimal(word, typed) && !(typed == ExactValue(static_cast<double>(held)))) {
            char nearest[64];
            std::snprintf(nearest, sizeof nearest, "%.*g", std::numeric_limits<E>::max_digits10,
                          static_cast<double>(held));
            return word + " is no " + family + " value: the nearest one is " + nearest;
        }
        return std::string();
    }
    bool const negative = word.find('-') != std::string::npos;
    if (word.find_first_of(".eE") != std::string::npos) {
        return outside;  // no fractions in a whole-number element
    }
    if (std::is_signed<E>::value) {
        long long const value = std::strtoll(begin, &end, 10);
        bool const fits = errno != ERANGE &&
                          value >= static_cast<long long>(std::numeric_limits<E>::min()) &&
                          value <= static_cast<long long>(std::numeric_limits<E>::max());
        return fits ? std::string() : outside;
    }
    unsigned long long const value = std::strtoull(begin, &end, 10);
    bool const fits = errno != ERANGE && (!negative || value == 0) &&
                      value <= static_cast<unsigned long long>(std::numeric_limits<E>::max());
    return fits ? std::string() : outside;
}

struct ElementRange {
    std::string (*refuse)(std::string const& word, std::string const& family);
    std::string (*limits)();
};

// The element type of a family's numbers: its numeric type, or the int of an
// enumeration's entry numbers.
ElementRange const* RangeOf(Family const& family) {
    static ElementRange const ranges[] = {
        {&Refuse<std::uint8_t>, &Limits<std::uint8_t>},
        {&Refuse<std::int8_t>, &Limits<std::int8_t>},
        {&Refuse<std::uint16_t>, &Limits<std::uint16_t>},
        {&Refuse<std::int16_t>, &Limits<std::int16_t>},
        {&Refuse<std::uint32_t>, &Limits<std::uint32_t>},
        {&Refuse<std::int32_t>, &Limits<std::int32_t>},
        {&Refuse<std::uint64_t>, &Limits<std::uint64_t>},
        {&Refuse<std::int64_t>, &Limits<std::int64_t>},
        {&Refuse<float>, &Limits<float>},
        {&Refuse<double>, &Limits<double>},
    };
    static ElementRange const entryNumber = {&Refuse<int>, &Limits<int>};
    unsigned const numericTypeByte = family.numericTypeByte;
    if (numericTypeByte >= 1 && numericTypeByte <= 10) {
        return &ranges[numericTypeByte - 1];
    }
    return Prefix(family.name) == "Enum" ? &entryNumber : nullptr;
}

// A word that reads as a number at all; anything else is left to the
// family's reader and its own complaint.
bool LooksNumeric(std::string const& word) {
    if (word.find_first_of("xX") != std::string::npos) {
        return false;
    }
    char const* const begin = word.c_str();
    char* end = nullptr;
    std::strtod(begin, &end);
    return end != begin && *end == '\0';
}

bool CheckNumbers(Family const& family, std::vector<std::string> const& words, std::size_t from,
                  std::string& problem) {
    ElementRange const* const range = RangeOf(family);
    if (!range) {
        return true;
    }
    for (std::size_t i = from; i < words.size(); ++i) {
        if (LooksNumeric(words[i])) {
            problem = range->refuse(words[i], family.name);
            if (!problem.empty()) {
                return false;
            }
        }
    }
    return true;
}

// The text the family's reader takes, from the words as the user gave them.
bool Normalise(Family const& family, std::vector<std::string> const& given, std::string& text,
               std::string& problem) {
    std::string const joined = Join(given);
    bool const printed = !joined.empty() && joined[0] == '(';
    std::vector<std::string> words = Split(joined);
    switch (ShapeOf(family)) {
        case Shape::Bool:
            for (std::string& word : words) {
                word = BoolWord(word);
            }
            break;
        case Shape::Counted: {
            std::size_t const group = WordsPerElement(family);
            if (printed) {
                words = PrintedWords(joined);
                if (words.empty() && Prefix(family.name) == "RectArray") {
                    // Its reader takes no count of 0, but reads the printed
                    // empty list as empty.
                    text = joined;
                    return true;
                }
                if (words.size() % group != 0) {
                    problem =
                        family.name + " takes " + std::to_string(group) + " numbers per element";
                    return false;
                }
                words.insert(words.begin(), std::to_string(words.size() / group));
            }
            if (Prefix(family.name) == "BoolArray") {
                for (std::size_t i = 1; i < words.size(); ++i) {
                    words[i] = BoolWord(words[i]);
                }
            }
            if (!CheckNumbers(family, words, 1, problem)) {
                return false;
            }
            break;
        }
        case Shape::Geometry:
            if (printed) {
                words = PrintedWords(joined);
            }
            break;
        case Shape::Colour:
            // The reader skips the opening bracket and stops after the
            // fourth number, so the closing one is left off.
            text = "(" + Join(PrintedWords(joined));
            return true;
        case Shape::Endpoint:
            // "10.0.0.1:80 (Unknown)": text gives no protocol, so only the
            // printed absence of one can be accepted.
            if (words.size() == 2 && words[1] == "(Unknown)") {
                words.pop_back();
                text = words.front();
                return true;
            }
            break;
        case Shape::Plain:
            break;
    }
    if (ShapeOf(family) != Shape::Counted && !CheckNumbers(family, words, 0, problem)) {
        return false;
    }
    // Plain text keeps the user's spacing: a string value is read as typed.
    text = ShapeOf(family) == Shape::Plain ? joined : Join(words);
    return true;
}

std::string FirstLine(std::string text) {
    text = text.substr(0, text.find('\n'));
    while (!text.empty() && text.back() == '\r') {
        text.pop_back();
    }
    return text;
}

}  // namespace

std::string RangeText(Family const& family) {
    ElementRange const* const range = RangeOf(family);
    return range ? range->limits() : std::string();
}

bool ReadValue(Family const& family, unsigned int id, std::vector<std::string> const& words,
               boost::intrusive_ptr<ItemBase>& item, std::string& problem) {
    boost::intrusive_ptr<ItemBase> made(family.makeItem(id));
    boost::intrusive_ptr<InfoBase const> info(family.makeInfo ? family.makeInfo(id) : nullptr);
    std::ostringstream errors;
    if (family.readArgs) {
        if (!family.readArgs(*made, words, errors)) {
            problem = FirstLine(errors.str());
            if (problem.empty()) {
                problem = "the value does not read as " + family.name;
            }
            return false;
        }
    } else {
        std::string text;
        if (!Normalise(family, words, text, problem)) {
            return false;
        }
        std::istringstream in(text);
        if (!made->SetValFromStream(in, errors, info)) {
            problem = FirstLine(errors.str());
            if (problem.empty()) {
                problem = Quote(Join(words)) + " does not read as " + family.name;
            }
            return false;
        }
        std::string rest;
        std::getline(in >> std::ws, rest, '\0');
        if (!rest.empty()) {
            problem = Quote(rest) + " is left over after the " + family.name + " value " +
                      Quote(made->GetValAsString());
            return false;
        }
    }
    item = made;
    return true;
}

bool FitsRecord(ItemBase const& item, std::string& problem) {
    problem = Legacy::Oru::Files::RecordLimit(item);
    return problem.empty();
}

bool SurvivesRecord(ItemBase const& item, std::string const& typed, std::string& problem) {
    std::string const family = FamilyName(static_cast<std::uint8_t>(item.GetType()),
                                          static_cast<std::uint8_t>(item.GetNumericType()));
    ItemBase::SerialStruct_t record;
    int code = item.Serialize(&record);
    if (code != 0) {
        problem = family + " has no serial form (code " + std::to_string(code) + ", " +
                  Legacy::Oru::Codes::Meaning(code) + ")";
        return false;
    }
    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> back;
    code = ItemBase::Deserialize(&view, back);
    if (code != 0 || !back) {
        problem = "the record of " + Quote(typed) + " does not read back (code " +
                  std::to_string(code) + ", " + Legacy::Oru::Codes::Meaning(code) + ")";
        return false;
    }
    boost::intrusive_ptr<ItemBase const> const readBack(back);
    if (!item.IsEqualValue(readBack) || item.GetValAsString() != back->GetValAsString()) {
        std::string const shown = back->GetValAsString();
        problem = Quote(typed) + " cannot be written exactly as " + family +
                  ": its record reads back as " +
                  (shown == item.GetValAsString() ? "another value" : Quote(shown));
        return false;
    }
    return true;
}

}  // namespace OruTool
