#include "values.h"

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <sstream>

#include <legacy/oru/catalogue.h>
#include <legacy/oru/files/values.h>
#include <legacy/oru/oru.h>

#include "codes.h"
#include "util.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

// How a family's words are put into the form its text reader takes: an
// overload per Item class of the catalogue, the first for plain text.
enum class Shape {
    Plain,     // the words as they are
    Bool,      // 1 or 0; True and False as decode prints them
    Counted,   // a count, then the elements; "(a, b, c)" as decode prints it
    Geometry,  // numbers; "(TLC(1,  2),  BRC(3,  4))" as decode prints it
    Colour,    // "(a r g b)" as decode prints it; the four numbers alone too
    Endpoint,  // address:port; decode adds the protocol in brackets
};

Shape ShapeOf(ItemBase const*) {
    return Shape::Plain;
}
Shape ShapeOf(BoolItem const*) {
    return Shape::Bool;
}
template <class T>
Shape ShapeOf(NumericArrayItem<T> const*) {
    return Shape::Counted;
}
Shape ShapeOf(BoolArrayItem const*) {
    return Shape::Counted;
}
template <class T>
Shape ShapeOf(RectArrayItem<T> const*) {
    return Shape::Counted;
}
template <class T>
Shape ShapeOf(CoordinateItem<T> const*) {
    return Shape::Geometry;
}
template <class T>
Shape ShapeOf(RectItem<T> const*) {
    return Shape::Geometry;
}
Shape ShapeOf(ColourItem const*) {
    return Shape::Colour;
}
Shape ShapeOf(AppEndpointItem const*) {
    return Shape::Endpoint;
}

// Elements of a counted family are this many words each.
std::size_t WordsPerElement(ItemBase const*) {
    return 1;
}
template <class T>
std::size_t WordsPerElement(RectArrayItem<T> const*) {
    return 4;
}

// What a printed empty list is read as: most readers take a count of 0, a
// rectangle array's takes none but reads "()" itself.
bool ReadsPrintedEmptyList(ItemBase const*) {
    return false;
}
template <class T>
bool ReadsPrintedEmptyList(RectArrayItem<T> const*) {
    return true;
}

// Flags are read as 1 and 0.
bool ReadsFlags(ItemBase const*) {
    return false;
}
bool ReadsFlags(BoolArrayItem const*) {
    return true;
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

// The elements of a list as decode prints it, "(a b, c)": the text between
// the brackets, cut at each ", ". False when the brackets are missing.
bool PrintedElements(std::string const& text, std::vector<std::string>& elements) {
    if (text.size() < 2 || text.front() != '(' || text.back() != ')') {
        return false;
    }
    elements.clear();
    std::string const inside = text.substr(1, text.size() - 2);
    if (inside.empty()) {
        return true;
    }
    std::size_t from = 0;
    for (std::size_t at; (at = inside.find(", ", from)) != std::string::npos; from = at + 2) {
        elements.push_back(inside.substr(from, at - from));
    }
    elements.push_back(inside.substr(from));
    return true;
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

// The value held, rounded to as many significant digits as were typed: what
// the typed number must be for the element to hold it as typed. So 0.1 is a
// float (the float nearest 0.1 reads 0.1 to one digit) and 16777217 is not.
Decimal HeldToDigits(double held, std::size_t digits) {
    std::vector<char> text(digits + 32);
    std::snprintf(text.data(), text.size(), "%.*e", static_cast<int>(digits - 1), held);
    Decimal value;
    ParseDecimal(text.data(), value);
    return value;
}

// The fewest digits that read back as the element's value.
template <class E>
std::string Shortest(E held) {
    char text[64];
    for (int digits = 1; digits < std::numeric_limits<E>::max_digits10; ++digits) {
        std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(held));
        E const back = std::is_same<E, float>::value ? static_cast<E>(std::strtof(text, nullptr))
                                                     : static_cast<E>(std::strtod(text, nullptr));
        if (back == held) {
            return text;
        }
    }
    std::snprintf(text, sizeof text, "%.*g", std::numeric_limits<E>::max_digits10,
                  static_cast<double>(held));
    return text;
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
        // The element's nearest value must read as the number typed, to the
        // digits typed.
        E const held = std::is_same<E, float>::value ? static_cast<E>(std::strtof(begin, nullptr))
                                                     : static_cast<E>(value);
        Decimal typed;
        if (ParseDecimal(word, typed) && !typed.digits.empty() &&
            !(typed == HeldToDigits(static_cast<double>(held), typed.digits.size()))) {
            return word + " is no " + family + " value: the nearest one is " + Shortest(held);
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

// The element type of a family's numbers, by its numeric-type byte.
ElementRange const* ElementRangeOf(unsigned numericTypeByte) {
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
    return numericTypeByte >= 1 && numericTypeByte <= 10 ? &ranges[numericTypeByte - 1] : nullptr;
}

// The range of a family's numbers: its element type's, and an int for the
// entry number of an enumeration.
ElementRange const* RangeOf(ItemBase const*, Family const& family) {
    return ElementRangeOf(family.numericTypeByte);
}
ElementRange const* RangeOf(EnumItem const*, Family const&) {
    static ElementRange const entryNumber = {&Refuse<int>, &Limits<int>};
    return &entryNumber;
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

bool CheckNumbers(ElementRange const* range, Family const& family,
                  std::vector<std::string> const& words, std::size_t from, std::string& problem) {
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
template <class I>
bool Normalise(I const* kind, Family const& family, std::vector<std::string> const& given,
               std::string& text, std::string& problem) {
    ElementRange const* const range = RangeOf(kind, family);
    std::string const joined = Join(given);
    bool const printed = !joined.empty() && joined[0] == '(';
    std::vector<std::string> words = Split(joined);
    Shape const shape = ShapeOf(kind);
    switch (shape) {
        case Shape::Bool:
            for (std::string& word : words) {
                word = BoolWord(word);
            }
            break;
        case Shape::Counted: {
            std::size_t const group = WordsPerElement(kind);
            if (printed) {
                words = PrintedWords(joined);
                if (words.empty() && ReadsPrintedEmptyList(kind)) {
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
            if (ReadsFlags(kind)) {
                for (std::size_t i = 1; i < words.size(); ++i) {
                    words[i] = BoolWord(words[i]);
                }
            }
            if (!CheckNumbers(range, family, words, 1, problem)) {
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
    if (shape != Shape::Counted && !CheckNumbers(range, family, words, 0, problem)) {
        return false;
    }
    // Plain text keeps the user's spacing: a string value is read as typed.
    text = shape == Shape::Plain ? joined : Join(words);
    return true;
}

std::string FirstLine(std::string text) {
    text = text.substr(0, text.find('\n'));
    while (!text.empty() && text.back() == '\r') {
        text.pop_back();
    }
    return text;
}

// What a family's reader needs beside the words: the Info it reads text
// against (an app endpoint's), or none.
boost::intrusive_ptr<InfoBase const> ReadingInfo(ItemBase const&, Family const&) {
    return nullptr;
}
boost::intrusive_ptr<InfoBase const> ReadingInfo(AppEndpointItem const& item,
                                                 Family const& family) {
    return boost::intrusive_ptr<InfoBase const>(
        family.row->makeInfo(item.GetId(), "", Legacy::Oru::Permission_t()));
}

// Reads the value of the words into item: an overload per Item class of the
// catalogue whose words are not read by its own text reader, the template for
// the others. False with a one-line reason.
template <class I>
bool ReadWords(I& item, Family const& family, std::vector<std::string> const& words,
               std::string& problem) {
    std::string text;
    if (!Normalise(static_cast<I const*>(&item), family, words, text, problem)) {
        return false;
    }
    std::istringstream in(text);
    std::ostringstream errors;
    if (!item.SetValFromStream(in, errors, ReadingInfo(item, family))) {
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
                  Quote(item.GetValAsString());
        return false;
    }
    return true;
}

// Text is the VALUE words joined by blanks, as typed.
bool ReadWords(StringItem& item, Family const&, std::vector<std::string> const& words,
               std::string&) {
    item.SetVal(Join(words));
    return true;
}

bool ReadWords(StringSparseItem& item, Family const&, std::vector<std::string> const& words,
               std::string&) {
    item.SetVal(Join(words));
    return true;
}

// The elements of a list: a count, then one VALUE each; or the list as
// decode prints it, as one VALUE.
bool ListElements(Family const& family, std::vector<std::string> given,
                  std::vector<std::string>& elements, std::string& problem) {
    if (given.size() == 1 && PrintedElements(given.front(), elements)) {
        return true;
    }
    // A count and its elements given as one VALUE: "3 a b c".
    std::vector<std::string> const words = given.size() == 1 ? Split(given.front()) : given;
    if (words.empty()) {
        problem = family.name + " takes a count, then one VALUE per element";
        return false;
    }
    std::uint32_t count = 0;
    std::string why;
    if (!ParseId(words.front(), count, why) ||
        words.front().find_first_of("xX") != std::string::npos) {
        problem = "the count " + Quote(words.front()) + " is no number (give a count, then one " +
                  "VALUE per element)";
        return false;
    }
    if (count != words.size() - 1) {
        problem = "the count " + words.front() + " differs from the " +
                  std::to_string(words.size() - 1) + " elements given";
        return false;
    }
    elements.assign(words.begin() + 1, words.end());
    return true;
}

bool ReadWords(StringArrayItem& item, Family const& family, std::vector<std::string> const& words,
               std::string& problem) {
    std::vector<std::string> elements;
    if (!ListElements(family, words, elements, problem)) {
        return false;
    }
    item.SetVal(elements);
    return true;
}

// Each VALUE one URI, or the list as decode prints it.
bool ReadWords(AppEndpointArrayItem& item, Family const&, std::vector<std::string> const& words,
               std::string& problem) {
    std::vector<std::string> uris = words;
    if (words.size() == 1) {
        PrintedElements(words.front(), uris);
    }
    AppEndpointArrayItem::Value_t read;
    for (std::string const& uri : uris) {
        if (uri.find("://") == std::string::npos) {
            problem = "Error parsing appEndpoint: " + Quote(uri) + " is no URI";
            return false;
        }
        read.push_back(AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri(uri));
    }
    item.SetVal(read);
    return true;
}

// Three numbers: bearing, inclination, roll (the family reads no text itself).
bool ReadWords(OrientationItem& item, Family const&, std::vector<std::string> const& words,
               std::string& problem) {
    std::istringstream in(Join(words));
    Orientation_t read;
    std::string rest;
    if (!(in >> read.bearing >> read.inclination >> read.roll) || (in >> rest)) {
        problem = "Error parsing orientation: give bearing, inclination and roll";
        return false;
    }
    item.Set(read);
    return true;
}

// Each VALUE one child: its family's name, a blank, the child's value, read
// as strictly as a value of its own.
bool ReadWords(CompositeItem& item, Family const&, std::vector<std::string> const& words,
               std::string& problem) {
    for (std::string const& value : words) {
        std::string const name = value.substr(0, value.find(' '));
        Family const* const family = FindFamily(name);
        boost::intrusive_ptr<ItemBase> child;
        std::string why;
        if (!family) {
            why = "unknown family " + Quote(name);
        } else if (!ReadValue(*family, 0,
                              Split(value.size() > name.size() ? value.substr(name.size() + 1)
                                                               : std::string()),
                              child, why)) {
            // why says it
        } else {
            item.AddItem(child);
            continue;
        }
        problem = "Error parsing child '" + value + "': " + why;
        return false;
    }
    return true;
}

// Lists whose elements are texts, printed "(a, b)" and read back from it.
bool ListOfTexts(ItemBase const*) {
    return false;
}
bool ListOfTexts(StringArrayItem const*) {
    return true;
}
bool ListOfTexts(AppEndpointArrayItem const*) {
    return true;
}

bool RecordReadsBack(ItemBase const& item, boost::intrusive_ptr<ItemBase>& back, int& code) {
    ItemBase::SerialStruct_t record;
    code = item.Serialize(&record);
    if (code != 0) {
        return false;
    }
    ItemBase::ConstSerialStruct_t const view(record);
    code = ItemBase::Deserialize(&view, back);
    return code == 0 && back;
}

}  // namespace

std::string RangeText(Family const& family) {
    std::string text;
    Catalogue::VisitFamily(family.row->type, family.row->numericType, [&](auto tag) {
        using Item = typename decltype(tag)::Item;
        ElementRange const* const range = RangeOf(static_cast<Item const*>(nullptr), family);
        text = range ? range->limits() : std::string();
    });
    return text;
}

bool ReadValue(Family const& family, unsigned int id, std::vector<std::string> const& words,
               boost::intrusive_ptr<ItemBase>& item, std::string& problem) {
    boost::intrusive_ptr<ItemBase> made(family.row->makeItem(id));
    bool read = false;
    Catalogue::VisitItem(
        *made, [&](auto& concrete) { read = ReadWords(concrete, family, words, problem); });
    if (!read) {
        if (problem.empty()) {
            problem = Quote(Join(words)) + " does not read as " + family.name;
        }
        return false;
    }
    item = made;
    return true;
}

bool FitsRecord(ItemBase const& item, std::string& problem) {
    problem = Legacy::Oru::Files::RecordLimit(item);
    return problem.empty();
}

bool SurvivesRecord(Family const& family, ItemBase const& item, std::string const& typed,
                    std::string& problem) {
    boost::intrusive_ptr<ItemBase> back;
    int code = 0;
    if (!RecordReadsBack(item, back, code)) {
        problem = "the record of " + Quote(typed) + " does not read back (code " +
                  std::to_string(code) + ", " + Legacy::Oru::Codes::Meaning(code) + ")";
        return false;
    }
    boost::intrusive_ptr<ItemBase const> const readBack(back);
    if (!item.IsEqualValue(readBack) || item.GetValAsString() != back->GetValAsString()) {
        std::string const shown = back->GetValAsString();
        problem = Quote(typed) + " cannot be written exactly as " + family.name +
                  ": its record reads back as " +
                  (shown == item.GetValAsString() ? "another value" : Quote(shown));
        return false;
    }
    // What decode prints of a list of texts is accepted as a value too, so it
    // must read back to this value: an element holding ", " cannot be told
    // apart from two.
    bool listOfTexts = false;
    Catalogue::VisitItem(item, [&](auto const& concrete) { listOfTexts = ListOfTexts(&concrete); });
    if (!listOfTexts) {
        return true;
    }
    std::string const printed = item.GetValAsString();
    boost::intrusive_ptr<ItemBase> again;
    std::string ignored;
    if (ReadValue(family, item.GetId(), {printed}, again, ignored)) {
        boost::intrusive_ptr<ItemBase const> const shownBack(again);
        if (!item.IsEqualValue(shownBack) || again->GetValAsString() != printed) {
            problem = Quote(typed) + " cannot be written as " + family.name + ": decode would " +
                      "show it as " + Quote(printed) + ", which reads as another value";
            return false;
        }
    }
    return true;
}

}  // namespace OruTool
