// oru encode: makes an Item of a named family from text and writes its
// serial record laid flat.
#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>

#include <legacy/oru/oru.h>

#include "commands.h"
#include "families.h"
#include "hex.h"
#include "util.h"

namespace OruTool {

namespace {

using Legacy::Oru::InfoBase;
using Legacy::Oru::ItemBase;

void PrintHelp(std::ostream& out) {
    out << "usage: oru encode [--binary] TYPE ID VALUE...\n"
           "       oru encode --families\n"
           "\n"
           "Makes an Item of family TYPE under ID (decimal or 0x-hex), reads its value\n"
           "from the VALUE words (joined by blanks) as that family reads text, and\n"
           "writes the serial record laid flat: ten header bytes, then the payload.\n"
           "The record is written as hexadecimal text, or as raw bytes with --binary.\n"
           "A value that does not read gets the family's own message and exit status 1.\n"
           "--families lists the family names, one per line.\n"
           "\n"
           "families:\n";
    std::string line = " ";
    for (Family const& family : Families()) {
        if (line.size() + family.name.size() + 1 > 76) {
            out << line << "\n";
            line = " ";
        }
        line += " " + family.name;
    }
    out << line
        << "\n"
           "\n"
           "examples:\n"
           "  $ oru encode Numeric:U32 0x420C0005 72\n"
           "  42 0C 00 05 00 00 00 04 02 05 00 00 00 48\n"
           "  $ oru encode String 7 hello | oru decode --hex\n"
           "  $ oru encode Composite 0x42000001 'Numeric:U16 65' 'String pcm'\n";
}

}  // namespace

int RunEncode(Args const& args, std::ostream& out, std::ostream& err) {
    bool binary = false;
    Args positional;
    for (std::string const& arg : args) {
        if (positional.empty() && (arg == "--help" || arg == "-h")) {
            PrintHelp(out);
            return 0;
        }
        if (positional.empty() && arg == "--families") {
            for (Family const& family : Families()) {
                out << family.name << "\n";
            }
            return 0;
        }
        if (positional.empty() && arg == "--binary") {
            binary = true;
        } else {
            positional.push_back(arg);
        }
    }
    if (positional.size() < 2) {
        err << "oru encode: expected TYPE ID VALUE... (try 'oru encode --help')\n";
        return 2;
    }
    Family const* const family = FindFamily(positional[0]);
    if (!family) {
        err << "oru encode: unknown family " << Quote(positional[0])
            << " (the list is in 'oru encode --help')\n";
        return 2;
    }
    std::uint32_t id = 0;
    std::string problem;
    if (!ParseId(positional[1], id, problem)) {
        err << "oru encode: ID " << Quote(positional[1]) << ' ' << problem << "\n";
        return 2;
    }
    std::string text;
    for (std::size_t i = 2; i < positional.size(); ++i) {
        text += (i > 2 ? " " : "") + positional[i];
    }

    boost::intrusive_ptr<ItemBase> item(family->makeItem(id));
    boost::intrusive_ptr<InfoBase const> info(family->makeInfo ? family->makeInfo(id) : nullptr);
    std::istringstream in(text);
    std::ostringstream errors;
    bool const read =
        family->readArgs
            ? family->readArgs(*item, Args(positional.begin() + 2, positional.end()), errors)
            : item->SetValFromStream(in, errors, info);
    if (!read) {
        std::string message = errors.str();
        while (!message.empty() && (message.back() == '\n' || message.back() == '\r')) {
            message.pop_back();
        }
        err << "oru encode: " << (message.empty() ? "the value does not read" : message) << "\n";
        return 1;
    }
    ItemBase::SerialStruct_t record;
    int const code = item->Serialize(&record);
    if (code != 0) {
        err << "oru encode: " << family->name << " has no serial form (code " << code << ")\n";
        return 1;
    }
    auto const flat = FlatRecord(record);
    if (binary) {
        out.write(reinterpret_cast<char const*>(flat.data()),
                  static_cast<std::streamsize>(flat.size()));
    } else {
        out << HexBytes(flat.data(), flat.size()) << "\n";
    }
    return out ? 0 : 1;
}

}  // namespace OruTool
