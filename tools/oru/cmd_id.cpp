// oru id: explains one packed 32-bit section or setting id.
#include <cstdint>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>

#include <legacy/oru/sectionid.h>

#include "commands.h"
#include "util.h"

namespace OruTool {

namespace {

using Legacy::Oru::InfoItemSectionId;

unsigned int const kCleared = 0xFFFFFFFFu;

std::string Hex(unsigned int value) {
    return HexId(value);
}

// The raw 6-bit field of `level`, also where the library answers 255 because
// the id is invalid.
unsigned int RawField(unsigned int raw, std::size_t level) {
    return (raw >> (30 - 6 * level)) & 0x3Fu;
}

void Line(std::ostream& out, std::string const& label, std::string const& value) {
    out << std::left << std::setw(24) << label << value << '\n';
}

void Explain(unsigned int raw, std::ostream& out) {
    InfoItemSectionId const id(raw);
    std::size_t const depth = id.Depth();
    bool const info = id.IsValidInfoItemId();
    bool const wildcard = id.IsValidWildcardSectionId();

    Line(out, "id", Hex(raw) + " (" + std::to_string(raw) + ")");
    if (id.IsValidSectionId()) {
        Line(out, "class", "section id");
    } else if (info) {
        Line(out, "class", "info-item id");
    } else if (wildcard) {
        Line(out, "class",
             raw == kCleared ? "wildcard section id (also the cleared id)" : "wildcard section id");
    } else {
        Line(out, "class",
             "invalid (level " + std::to_string(depth) +
                 " field is 63 but the info field is not all ones)");
    }
    Line(out, "depth", std::to_string(depth));

    if (!id.IsValid()) {
        for (std::size_t level = 1; level <= depth; ++level) {
            Line(out, "level " + std::to_string(level) + " field",
                 std::to_string(RawField(raw, level)));
        }
        Line(out, "info field", std::to_string(RawInfoField(raw, depth)));
        Line(out, "max infos in section", std::to_string(id.MaxNumInfoItemsInSection()));
        return;
    }

    for (std::size_t level = 1; level <= depth; ++level) {
        unsigned int const number = id.GetSubsectionId(level);
        bool const marksWildcard = wildcard && level == depth;
        Line(out, "level " + std::to_string(level) + " subsection",
             std::to_string(number) + (marksWildcard ? " (wildcard: any subsection)" : ""));
    }
    if (info) {
        unsigned int const number = RawInfoField(raw, depth);
        unsigned int const narrowed = id.GetInfoItemSubsectionId();
        std::string const note = number != narrowed ? " (GetInfoItemSubsectionId answers " +
                                                          std::to_string(narrowed) + ")"
                                                    : "";
        Line(out, "info number", std::to_string(number) + note);
    } else {
        Line(out, "info number", "none (info field all ones)");
    }
    // An info's parents end with its own section; a section's stop above it.
    std::size_t const parents = info ? depth : depth - 1;
    if (parents == 0) {
        Line(out, "parent sections", "none (top level)");
    }
    for (std::size_t level = 1; level <= parents; ++level) {
        Line(out, "parent, level " + std::to_string(level),
             Hex(id.GetSectionId(level)) + (info && level == depth ? " (its section)" : ""));
    }
    Line(out, "max infos in section", std::to_string(id.MaxNumInfoItemsInSection()));
}

void PrintHelp(std::ostream& out) {
    out << "usage: oru id ID\n"
           "\n"
           "Explains a packed 32-bit section or setting id. ID is decimal or 0x-hex.\n"
           "\n"
           "The top two bits hold the depth minus 1; then come 6-bit subsection\n"
           "numbers, one per level down to the depth; every bit below them is the\n"
           "info field. An info field of all ones makes a section id, any other\n"
           "value an info-item id with that info number. A subsection number of 63\n"
           "at the deepest level makes a wildcard section id if the info field is\n"
           "all ones, and an invalid id if not. The parents are the section ids\n"
           "above the id; for an info-item id they end with its own section.\n"
           "\n"
           "example:\n"
           "  $ oru id 0x420C0005\n";
    std::ostringstream example;
    Explain(0x420C0005u, example);
    std::istringstream lines(example.str());
    for (std::string line; std::getline(lines, line);) {
        out << "  " << line << '\n';
    }
}

}  // namespace

int RunId(Args const& args, std::ostream& out, std::ostream& err) {
    if (args.size() == 1 && (args[0] == "--help" || args[0] == "-h")) {
        PrintHelp(out);
        return 0;
    }
    if (args.size() != 1) {
        err << "oru id: expected one ID, got " << args.size()
            << " arguments (try 'oru id --help')\n";
        return 2;
    }
    std::uint32_t raw = 0;
    std::string problem;
    if (!ParseId(args[0], raw, problem)) {
        err << "oru id: " << Quote(args[0]) << ' ' << problem << '\n';
        return 2;
    }
    Explain(raw, out);
    return 0;
}

}  // namespace OruTool
