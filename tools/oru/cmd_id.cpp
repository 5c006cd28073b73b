// oru id: explains one packed 32-bit section or setting id.
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <legacy/oru/sectionid.h>

#include "commands.h"
#include "util.h"

namespace OruTool {

namespace {

using Legacy::Oru::InfoItemSectionId;

unsigned int const k_cleared = 0xFFFFFFFFu;

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
        Line(
            out, "class",
            raw == k_cleared ? "wildcard section id (also the cleared id)" : "wildcard section id");
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

// The id as one JSON object, for machines.
nlohmann::ordered_json Json(unsigned int raw) {
    InfoItemSectionId const id(raw);
    std::size_t const depth = id.Depth();
    bool const info = id.IsValidInfoItemId();
    nlohmann::ordered_json json;
    json["id"] = Hex(raw);
    json["decimal"] = raw;
    json["class"] = id.IsValidSectionId()           ? "section"
                    : info                          ? "info-item"
                    : id.IsValidWildcardSectionId() ? "wildcard"
                                                    : "invalid";
    json["depth"] = depth;
    nlohmann::ordered_json subsections = nlohmann::ordered_json::array();
    for (std::size_t level = 1; level <= depth; ++level) {
        subsections.push_back(RawField(raw, level));
    }
    json["subsections"] = subsections;
    json["info"] =
        info ? nlohmann::ordered_json(RawInfoField(raw, depth)) : nlohmann::ordered_json();
    nlohmann::ordered_json parents = nlohmann::ordered_json::array();
    if (id.IsValid()) {
        std::size_t const count = info ? depth : depth - 1;
        for (std::size_t level = 1; level <= count; ++level) {
            parents.push_back(Hex(id.GetSectionId(level)));
        }
    }
    json["parents"] = parents;
    json["maxInfosInSection"] = id.MaxNumInfoItemsInSection();
    return json;
}

std::string Footer() {
    std::ostringstream out;
    out << "Explains a packed 32-bit section or setting id. ID is decimal or 0x-hex.\n"
           "\n"
           "The top two bits hold the depth minus 1; then come 6-bit subsection\n"
           "numbers, one per level down to the depth; every bit below them is the\n"
           "info field. An info field of all ones makes a section id, any other\n"
           "value an info-item id with that info number. A subsection number of 63\n"
           "at the deepest level makes a wildcard section id if the info field is\n"
           "all ones, and an invalid id if not. The parents are the section ids\n"
           "above the id; for an info-item id they end with its own section.\n"
           "--json prints the same as one JSON object.\n"
           "\n"
           "example:\n"
           "  $ oru id 0x420C0005\n";
    std::ostringstream example;
    Explain(0x420C0005u, example);
    std::istringstream lines(example.str());
    for (std::string line; std::getline(lines, line);) {
        out << "  " << line << '\n';
    }
    return out.str();
}

}  // namespace

void AddId(CLI::App& program, int& status) {
    struct Options {
        std::string id;
        bool json = false;
    };
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        program.add_subcommand("id", "Explain a packed 32-bit section or setting id");
    command->add_option("ID", options->id, "The id, decimal or 0x-hex")->required();
    command->add_flag("--json", options->json, "Print one JSON object");
    command->footer(Footer());
    command->callback([options, &status] {
        std::uint32_t raw = 0;
        std::string problem;
        if (!ParseId(options->id, raw, problem)) {
            std::cerr << "oru id: " << Quote(options->id) << ' ' << problem << '\n';
            status = 2;
            return;
        }
        if (options->json) {
            std::cout << Json(raw).dump() << '\n';
        } else {
            Explain(raw, std::cout);
        }
        status = std::cout ? 0 : 1;
    });
}

}  // namespace OruTool
