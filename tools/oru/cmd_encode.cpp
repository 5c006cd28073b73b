// oru encode: makes an Item of a named family from the user's words and
// writes its serial record laid flat, but only when the record holds
// exactly the value typed.
#include <cstdint>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/check.h>
#include <legacy/oru/files/values.h>
#include <legacy/oru/oru.h>

#include "commands.h"
#include "described.h"
#include "families.h"
#include "hex.h"
#include "util.h"
#include "values.h"

namespace OruTool {

namespace {

using Legacy::Oru::ItemBase;

struct Options {
    bool binary = false;
    bool families = false;
    bool unchecked = false;
    std::string names;  // a description: TYPE is then a setting's path
    std::string type;
    std::string id;
    Args values;
    std::string neverFilled;
};

std::string Footer() {
    std::ostringstream out;
    out << "Makes an Item of family TYPE under ID (decimal or 0x-hex) holding the value\n"
           "of the VALUE words, and writes its serial record laid flat: ten header\n"
           "bytes, then the payload, as hexadecimal text or, with --binary, as raw\n"
           "bytes. Options may stand anywhere; '--' ends them, for a value that\n"
           "begins with '-' and is no number.\n"
           "\n"
           "Nothing is written unless the record holds exactly the value typed: a\n"
           "number outside the element's range or one that the element holds only\n"
           "rounded (16777217 as a Numeric:Float), words left over, or a value that\n"
           "the record cannot carry (the float and double mappings keep whole numbers;\n"
           "a composite holds at most 65535 children) is refused with exit status 1.\n"
           "What decode prints is accepted as a value too, and reads back to the same\n"
           "record: a list of texts that decode could not show apart (an element\n"
           "holding ', ') is refused.\n"
           "\n"
           "With --names DESCRIPTION the words are PATH VALUE instead: the setting's\n"
           "path in that description file (see 'oru describe'), and its value in the\n"
           "form of a values file (JSON: 72, [1, 2], {\"x\": 1, \"y\": 2}; words that are\n"
           "no JSON are one string). The id and family come from the description. The\n"
           "value is checked as 'oru check' checks it, and each problem is printed as\n"
           "check prints it; a value that fails is not written unless --unchecked.\n"
           "\n"
           "VALUE by family (--families lists the names alone):\n";
    std::string shown;
    for (Family const& family : Families()) {
        std::string const prefix = family.row->familyWord;
        std::string const range = RangeText(family);
        if (prefix == shown && range.empty()) {
            continue;
        }
        shown = prefix;
        out << "  " << family.name << ": " << family.valueHelp;
        if (!range.empty()) {
            out << " (" << range << ")";
        }
        out << "\n      e.g. oru encode " << family.name << " 1 " << family.example << "\n";
    }
    out << "\n"
           "examples:\n"
           "  $ oru encode Numeric:U32 0x420C0005 72\n"
           "  42 0C 00 05 00 00 00 04 02 05 00 00 00 48\n"
           "  $ oru encode String 7 hello | oru decode --hex\n"
           "  $ oru encode Composite 0x42000001 'Numeric:U16 65' 'String pcm'\n"
           "  $ oru encode --names device.json Audio/Input/Gain 72\n";
    return out.str();
}

// The shared layout, with the usage line showing where '--' may stand in
// place of the hidden positional that lets it.
class UsageFormatter : public CLI::Formatter {
public:
    explicit UsageFormatter(CLI::FormatterBase const& shared) : CLI::Formatter() {
        for (char const* label : {"Usage", "SUBCOMMAND", "SUBCOMMANDS", "Subcommands"}) {
            this->label(label, shared.get_label(label));
        }
    }
    std::string make_option_usage(CLI::Option const* option) const override {
        return option->get_group().empty() ? "[-- VALUE...]"
                                           : CLI::Formatter::make_option_usage(option);
    }
};

// The record of item on standard output, as hex text or raw bytes.
int Write(Options const& options, ItemBase const& item) {
    ItemBase::SerialStruct_t record;
    item.Serialize(&record);
    auto const flat = FlatRecord(record);
    if (options.binary) {
        std::cout.write(reinterpret_cast<char const*>(flat.data()),
                        static_cast<std::streamsize>(flat.size()));
    } else {
        std::cout << HexBytes(flat.data(), flat.size()) << "\n";
    }
    std::cout.flush();
    return std::cout ? 0 : 1;
}

// encode --names: the value is read for the Info at the path, in the form a
// values file gives it, and must pass the Info's check unless --unchecked.
int RunNamed(Options const& options) {
    if (options.type.empty() || options.id.empty()) {
        std::cerr << "oru encode: expected --names DESCRIPTION PATH VALUE (try 'oru encode "
                     "--help')\n";
        return 2;
    }
    Legacy::Oru::InfoItemDirectory directory;
    if (!LoadDescription("encode", options.names, directory, std::cerr)) {
        return 1;
    }
    auto const slot = directory.FindInfoItem(options.type);
    if (!slot) {
        std::cerr << "oru encode: " << options.names << " describes no setting "
                  << Quote(options.type) << "\n";
        return 1;
    }
    auto const& info = slot->GetInfoHolder()->GetInfo();
    // The value's words are JSON ('72', '[1, 2]', '"text"'); words that are no
    // JSON are taken as one string, so that text needs no quotes.
    std::string typed = options.id;
    for (std::string const& word : options.values) {
        typed += " " + word;
    }
    std::string json = typed;
    if (!nlohmann::json::accept(typed)) {
        json = nlohmann::json(typed).dump();
    }
    Legacy::Oru::Files::Problems problems;
    boost::intrusive_ptr<ItemBase> const item =
        Legacy::Oru::Files::ReadValue(json, *info, problems);
    std::string problem;
    if (!item) {
        for (auto const& each : problems) {
            std::cerr << "oru encode: " << options.type << ": " << each.message << "\n";
        }
        return 1;
    }
    if (!options.unchecked) {
        // The one check, with the problems named as oru check names them.
        std::string const pointer = "/" + Legacy::Oru::Files::PointerToken(options.type);
        problems = Legacy::Oru::Files::Check(*item, info, pointer);
        for (auto& each : problems) {
            each.path = options.type;
            std::cerr << "oru encode: " << Legacy::Oru::Files::ToString(each) << "\n";
        }
        if (!problems.empty()) {
            std::cerr << "oru encode: nothing written (--unchecked writes it all the same)\n";
            return 1;
        }
    } else if (!FitsRecord(*item, problem)) {
        std::cerr << "oru encode: " << problem << "\n";
        return 1;
    }
    return Write(options, *item);
}

int Run(Options const& options) {
    if (!options.names.empty()) {
        return RunNamed(options);
    }
    if (options.families) {
        for (Family const& family : Families()) {
            std::cout << family.name << "\n";
        }
        return 0;
    }
    if (options.type.empty() || options.id.empty()) {
        std::cerr << "oru encode: expected TYPE ID VALUE... (try 'oru encode --help')\n";
        return 2;
    }
    Family const* const family = FindFamily(options.type);
    if (!family) {
        std::cerr << "oru encode: unknown family " << Quote(options.type)
                  << " (the list is in 'oru encode --help')\n";
        return 2;
    }
    std::uint32_t id = 0;
    std::string problem;
    if (!ParseId(options.id, id, problem)) {
        std::cerr << "oru encode: ID " << Quote(options.id) << ' ' << problem << "\n";
        return 2;
    }
    std::string typed;
    for (std::string const& word : options.values) {
        typed += (typed.empty() ? "" : " ") + word;
    }
    boost::intrusive_ptr<ItemBase> item;
    if (!ReadValue(*family, id, options.values, item, problem) || !FitsRecord(*item, problem) ||
        !SurvivesRecord(*family, *item, typed, problem)) {
        std::cerr << "oru encode: " << problem << "\n";
        return 1;
    }
    return Write(options, *item);
}

}  // namespace

void AddEncode(CLI::App& program, int& status) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command =
        program.add_subcommand("encode", "Write the serial record of a value");
    command->add_option("TYPE", options->type, "The family, e.g. Numeric:U32 (case ignored)");
    command->add_option("ID", options->id, "The setting's id, decimal or 0x-hex");
    command->add_option("VALUE", options->values, "The value's words, as the family reads them");
    // CLI11 hands a '--' back to the program once VALUE holds a word, and the
    // words after it are then refused; a positional that is never filled keeps
    // '--' here, so that what follows it goes on into VALUE.
    command->add_option("AFTER", options->neverFilled)->group("");
    command->formatter(std::make_shared<UsageFormatter>(*program.get_formatter()));
    command->add_flag("--binary", options->binary, "Write raw bytes instead of hexadecimal text");
    command->add_flag("--families", options->families, "List the family names and exit");
    command
        ->add_option("--names", options->names,
                     "Encode by path: TYPE is a setting of this description, ID its value")
        ->type_name("DESCRIPTION");
    command->add_flag("--unchecked", options->unchecked,
                      "With --names: write a value that its setting refuses");
    command->footer(Footer());
    command->callback([options, &status] { status = Run(*options); });
}

}  // namespace OruTool
