#include "values.h"

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdint>
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

template <class E>
bool Fits(std::string const& word) {
    char const* const begin = word.c_str();
    char* end = nullptr;
    errno = 0;
    if (std::is_floating_point<E>::value) {
        double const value = std::strtod(begin, &end);
        if (errno == ERANGE) {
            return false;  // too large or too small for a double
        }
        if (std::is_same<E, float>::value && std::isfinite(value)) {
            if (std::fabs(value) > FLT_MAX) {
                return false;
            }
            float const narrowed = static_cast<float>(value);
            if (value != 0.0 && narrowed == 0.0f) {
                return false;  // too small to be held at all
            }
        }
        return true;
    }
    bool const negative = word.find('-') != std::string::npos;
    if (word.find_first_of(".eE") != std::string::npos) {
        return false;  // no fractions in a whole-number element
    }
    if (std::is_signed<E>::value) {
        long long const value = std::strtoll(begin, &end, 10);
        return errno != ERANGE && value >= static_cast<long long>(std::numeric_limits<E>::min()) &&
               value <= static_cast<long long>(std::numeric_limits<E>::max());
    }
    unsigned long long const value = std::strtoull(begin, &end, 10);
    return errno != ERANGE && (!negative || value == 0) &&
           value <= static_cast<unsigned long long>(std::numeric_limits<E>::max());
}

struct ElementRange {
    bool (*fits)(std::string const& word);
    std::string (*limits)();
};

ElementRange const* RangeOf(unsigned numericTypeByte) {
    static ElementRange const ranges[] = {
        {&Fits<std::uint8_t>, &Limits<std::uint8_t>},
        {&Fits<std::int8_t>, &Limits<std::int8_t>},
        {&Fits<std::uint16_t>, &Limits<std::uint16_t>},
        {&Fits<std::int16_t>, &Limits<std::int16_t>},
        {&Fits<std::uint32_t>, &Limits<std::uint32_t>},
        {&Fits<std::int32_t>, &Limits<std::int32_t>},
        {&Fits<std::uint64_t>, &Limits<std::uint64_t>},
        {&Fits<std::int64_t>, &Limits<std::int64_t>},
        {&Fits<float>, &Limits<float>},
        {&Fits<double>, &Limits<double>},
    };
    return numericTypeByte >= 1 && numericTypeByte <= 10 ? &ranges[numericTypeByte - 1] : nullptr;
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
    ElementRange const* const range = RangeOf(family.numericTypeByte);
    if (!range) {
        return true;
    }
    for (std::size_t i = from; i < words.size(); ++i) {
        if (LooksNumeric(words[i]) && !range->fits(words[i])) {
            problem = words[i] + " does not fit " + family.name + " (" + range->limits() + ")";
            return false;
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

std::string RangeText(unsigned numericTypeByte) {
    ElementRange const* const range = RangeOf(numericTypeByte);
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
