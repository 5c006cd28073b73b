// oru decode: reads serial records laid flat (ten header bytes, then the
// payload) and says what each one holds.
#include <cstdint>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/check.h>
#include <legacy/oru/oru.h>
#include <legacy/oru/recordlayout.h>

#include "codes.h"

#include "commands.h"
#include "described.h"
#include "families.h"
#include "util.h"

namespace OruTool {

namespace {

using Legacy::Oru::InfoItemSectionId;
using Legacy::Oru::ItemBase;
using Bytes = std::vector<unsigned char>;

namespace Layout = Legacy::Oru::RecordLayout;
// Composite children nest as records of their own; deeper than this the
// display stops descending (the library reads them all the same).
int const k_maxShownDepth = 32;

struct Options {
    bool hex = false;
    bool json = false;
    std::size_t offset = 0;
    std::string file = "-";
    std::string names;  // a description: records are named by path and checked
};

// One JSON object per line. Text the library wrote is bytes: valid UTF-8
// passes as it is, any other byte becomes U+FFFD.
std::string Dump(nlohmann::ordered_json const& json) {
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

// "code -41 (malformed or unknown record, or invalid argument)".
std::string CodeText(int code) {
    return "code " + std::to_string(code) + " (" + Legacy::Oru::Codes::Meaning(code) + ")";
}

// "section 2/3, info 5", "section 1 (section id)", or the class of an odd id.
std::string IdText(std::uint32_t raw) {
    InfoItemSectionId const id(raw);
    std::size_t const depth = id.Depth();
    std::string path;
    for (std::size_t level = 1; level <= depth; ++level) {
        path += (level > 1 ? "/" : "") + std::to_string((raw >> (30 - 6 * level)) & 0x3Fu);
    }
    if (id.IsValidInfoItemId()) {
        return "section " + path + ", info " + std::to_string(RawInfoField(raw, depth));
    }
    if (id.IsValidSectionId()) {
        return "section " + path + ", section id";
    }
    if (id.IsValidWildcardSectionId()) {
        return "section " + path + ", wildcard";
    }
    return "invalid id";
}

void AddIdJson(std::uint32_t raw, nlohmann::ordered_json& json) {
    InfoItemSectionId const id(raw);
    std::size_t const depth = id.Depth();
    json["depth"] = depth;
    nlohmann::ordered_json subsections = nlohmann::ordered_json::array();
    for (std::size_t level = 1; level <= depth; ++level) {
        subsections.push_back((raw >> (30 - 6 * level)) & 0x3Fu);
    }
    json["subsections"] = subsections;
    json["info"] = id.IsValidInfoItemId() ? nlohmann::ordered_json(RawInfoField(raw, depth))
                                          : nlohmann::ordered_json();
    json["class"] = id.IsValidInfoItemId()          ? "info-item"
                    : id.IsValidSectionId()         ? "section"
                    : id.IsValidWildcardSectionId() ? "wildcard"
                                                    : "invalid";
}

class Decoder {
public:
    // With a directory, top-level records are named by their setting's path
    // and checked against its Info.
    Decoder(Options const& options, std::ostream& out,
            Legacy::Oru::InfoItemDirectory const* described)
        : options_(options), out_(out), described_(described) {}

    // Decodes the records laid one after another in bytes from the chosen
    // offset on; answers whether every one of them read.
    bool Run(Bytes const& bytes) {
        std::size_t offset = options_.offset;
        std::size_t count = 0;
        while (offset < bytes.size()) {
            std::size_t const remaining = bytes.size() - offset;
            Layout::Flat record;
            switch (Layout::ParseRecord(bytes.data(), bytes.size(), offset, record)) {
                case Layout::Fault::TruncatedHeader:
                    Problem(offset, "truncated header: " + std::to_string(remaining) +
                                        " bytes left, a header has " +
                                        std::to_string(Layout::k_headerSize));
                    return false;
                case Layout::Fault::TruncatedPayload:
                    Problem(offset, "the record claims " + std::to_string(record.header.dataSize) +
                                        " payload bytes, " +
                                        std::to_string(remaining - Layout::k_headerSize) +
                                        " remain");
                    return false;
                case Layout::Fault::None:
                    break;
            }
            ++count;
            ok_ = Record(record, 0, 0) && ok_;
            offset += Layout::FlatSize(record.header.dataSize);
        }
        if (count == 0 && !options_.json && ok_) {
            out_ << "no records\n";
        }
        return ok_;
    }

private:
    // One record whose payload lies wholly in the input; its offset is
    // counted from base.
    bool Record(Layout::Flat const& flat, std::size_t base, int depth) {
        std::size_t const offset = base + flat.offset;
        std::uint32_t const id = flat.header.id;
        std::uint32_t const size = flat.header.dataSize;
        std::uint8_t const type = flat.header.type;
        std::uint8_t const numericType = flat.header.numericType;
        // The payload in a buffer of exactly its size, so that a reader that
        // strays past it is caught by the sanitizers.
        Bytes const payload(flat.payload, flat.payload + size);
        ItemBase::ConstSerialStruct_t record;
        record.SetHeader(id, size, type, numericType);
        record.data = payload.empty() ? nullptr : payload.data();
        boost::intrusive_ptr<ItemBase> item;
        int const code = ItemBase::Deserialize(&record, item);
        std::string const family = FamilyName(type, numericType);
        std::string const value = code == 0 ? item->GetValAsString() : std::string();
        Named const named = Name(id, depth, code == 0 ? item.get() : nullptr);

        if (options_.json) {
            nlohmann::ordered_json json;
            json["offset"] = offset;
            json["nesting"] = depth;
            json["id"] = HexId(id);
            AddIdJson(id, json);
            if (described_ && depth == 0) {
                json["path"] = named.path.empty() ? nlohmann::ordered_json()
                                                  : nlohmann::ordered_json(named.path);
            }
            json["type"] = family;
            json["typeByte"] = type;
            json["numericTypeByte"] = numericType;
            json["size"] = size;
            json["code"] = code;
            if (code == 0) {
                json["value"] = value;
            } else {
                json["meaning"] = Legacy::Oru::Codes::Meaning(code);
            }
            if (named.checked) {
                json["passes"] = named.reason.empty();
                if (!named.reason.empty()) {
                    json["reason"] = named.reason;
                }
            }
            out_ << Dump(json) << "\n";
        } else {
            std::string const indent(2 * static_cast<std::size_t>(depth), ' ');
            std::string const where = !described_ || depth > 0 ? IdText(id)
                                      : named.path.empty() ? IdText(id) + ", not in the description"
                                                           : named.path;
            out_ << indent << "@" << offset << " " << HexId(id) << " (" << where << ") " << family
                 << " size " << size;
            if (code == 0) {
                out_ << ": " << value << "\n";
            } else {
                out_ << ": does not read, " << CodeText(code) << "\n";
            }
            if (named.checked) {
                out_ << indent << "  check: "
                     << (named.reason.empty() ? "passes" : "refused: " + named.reason) << "\n";
            }
        }
        if (code == 0 && type == static_cast<std::uint8_t>(Legacy::Oru::OruType_t::Composite) &&
            depth < k_maxShownDepth) {
            Children(offset + Layout::k_headerSize, payload, depth + 1);
        }
        return code == 0;
    }

    // A top-level record's setting in the description, and what its check says.
    struct Named {
        std::string path;
        bool checked = false;
        std::string reason;
    };
    Named Name(std::uint32_t id, int depth, ItemBase const* item) const {
        Named named;
        if (!described_ || depth > 0) {
            return named;
        }
        named.path = SettingPath(*described_, id);
        auto const info = described_->FindInfo(id);
        if (named.path.empty() || !info || !item) {
            return named;
        }
        named.checked = true;
        for (auto const& problem : Legacy::Oru::Files::Check(*item, info->GetInfo())) {
            named.reason += (named.reason.empty() ? "" : "; ") + problem.pointer +
                            (problem.pointer.empty() ? "" : ": ") + problem.message;
        }
        return named;
    }

    // The children of a composite. The library has read it already, so the
    // walk only shows what is there.
    void Children(std::size_t base, Bytes const& payload, int depth) {
        Layout::ChildWalk walk(payload.data(), payload.size());
        for (Layout::Flat child; walk.Next(child);) {
            Record(child, base, depth);
        }
    }

    void Problem(std::size_t offset, std::string const& what) {
        if (options_.json) {
            out_ << Dump(nlohmann::ordered_json{{"offset", offset}, {"error", what}}) << "\n";
        } else {
            out_ << "@" << offset << " " << what << "; decoding stops here\n";
        }
        ok_ = false;
    }

    Options const& options_;
    std::ostream& out_;
    Legacy::Oru::InfoItemDirectory const* described_;
    bool ok_ = true;
};

// One line of `xxd` output ("00000010: 4000 0005 ...  @.....") without its
// offset column and its text column; any other line as it is.
std::string WithoutXxdColumns(std::string const& line) {
    std::size_t const colon = line.find(": ");
    if (colon == std::string::npos || colon == 0 || colon > 16) {
        return line;
    }
    for (std::size_t i = 0; i < colon; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(line[i]))) {
            return line;
        }
    }
    std::string const rest = line.substr(colon + 2);
    return rest.substr(0, rest.find("  "));
}

// Hex text to bytes, white space ignored, an optional 0x before any pair;
// lines of `xxd` output are read without their offset and text columns.
bool ParseHex(std::string const& text, Bytes& bytes, std::string& problem) {
    int high = -1;
    std::istringstream lines(text);
    std::size_t lineNumber = 0;
    for (std::string line; std::getline(lines, line);) {
        ++lineNumber;
        std::string const digits = WithoutXxdColumns(line);
        for (std::size_t i = 0; i < digits.size(); ++i) {
            char const c = digits[i];
            if (std::isspace(static_cast<unsigned char>(c))) {
                continue;
            }
            if (c == '0' && high < 0 && i + 1 < digits.size() &&
                (digits[i + 1] == 'x' || digits[i + 1] == 'X')) {
                ++i;
                continue;
            }
            if (!std::isxdigit(static_cast<unsigned char>(c))) {
                problem = "not a hex digit: " + Quote(std::string(1, c)) + " on line " +
                          std::to_string(lineNumber);
                return false;
            }
            int const value = std::isdigit(static_cast<unsigned char>(c))
                                  ? c - '0'
                                  : std::tolower(static_cast<unsigned char>(c)) - 'a' + 10;
            if (high < 0) {
                high = value;
            } else {
                bytes.push_back(static_cast<unsigned char>(high * 16 + value));
                high = -1;
            }
        }
    }
    if (high >= 0) {
        problem = "an odd number of hex digits";
        return false;
    }
    return true;
}

// Binary input that is nothing but hex digits and blanks was most likely
// meant for --hex.
bool LooksLikeHexText(std::string const& input) {
    std::size_t digits = 0;
    for (char c : input) {
        unsigned char const u = static_cast<unsigned char>(c);
        if (std::isxdigit(u)) {
            ++digits;
        } else if (!std::isspace(u) && c != ':' && c != 'x' && c != 'X') {
            return false;
        }
    }
    return digits >= 2;
}

char const* const k_footer =
    "Reads serial records laid flat, one after another: ten header bytes (id and\n"
    "payload size big-endian, type byte, numeric-type byte), then the payload.\n"
    "Reads FILE, or standard input without one or with '-'. --hex reads\n"
    "hexadecimal text instead of binary: white space ignored, 0x allowed before\n"
    "a byte, and `xxd` output read without its offset and text columns.\n"
    "--offset N skips the first N bytes of the capture (after --hex decoding);\n"
    "offsets are shown from the capture's start.\n"
    "\n"
    "For each record it prints the offset, the id with its sections and info\n"
    "number, the family, the payload size and the value as the library writes\n"
    "it; the children of a composite follow, indented. A record that does not\n"
    "read shows the library's answer code and its meaning, and decoding goes on\n"
    "with the next record while the header's size allows. --json prints one\n"
    "JSON object per record (children too, with their nesting level); text is\n"
    "passed through as UTF-8, bytes that are not UTF-8 become U+FFFD.\n"
    "\n"
    "--names DESCRIPTION reads a description file (see 'oru describe'): each\n"
    "record is named by its setting's path, and a line under it says whether\n"
    "its value passes the setting's check (the one 'oru check' applies), and\n"
    "why not (JSON: \"path\", \"passes\", \"reason\"). A refused value still\n"
    "counts as read.\n"
    "\n"
    "Exit status: 0 when every record read, 1 when one did not or the input\n"
    "cannot be read, 2 for usage.\n"
    "\n"
    "examples:\n"
    "  $ oru encode Numeric:U32 0x420C0005 72 | oru decode --hex\n"
    "  @0 0x420C0005 (section 2/3, info 5) Numeric:U32 size 4: 72\n"
    "  $ xxd capture.bin | oru decode --hex --offset 16\n"
    "  $ oru describe > device.json\n"
    "  $ oru encode --unchecked --names device.json Video/Brightness 130 |\n"
    "      oru decode --hex --names device.json\n"
    "  @0 0x01000002 (Video/Brightness) Numeric:U8 size 1: 130\n"
    "    check: refused: 130 is above the maximum 100\n";

int Run(Options const& options) {
    std::string input;
    std::string problem;
    if (!ReadInput(options.file, input, problem)) {
        std::cerr << "oru decode: " << problem << "\n";
        return 1;
    }
    Bytes bytes;
    if (options.hex) {
        if (!ParseHex(input, bytes, problem)) {
            std::cerr << "oru decode: bad hex input: " << problem << "\n";
            return 1;
        }
    } else {
        bytes.assign(input.begin(), input.end());
    }
    if (options.offset > bytes.size()) {
        std::cerr << "oru decode: --offset " << options.offset << " lies past the input's "
                  << bytes.size() << " bytes\n";
        return 1;
    }
    Legacy::Oru::InfoItemDirectory directory;
    if (!options.names.empty() && !LoadDescription("decode", options.names, directory, std::cerr)) {
        return 1;
    }
    Decoder decoder(options, std::cout, options.names.empty() ? nullptr : &directory);
    bool const read = decoder.Run(bytes);
    if (!read && !options.hex && LooksLikeHexText(input)) {
        std::cerr << "oru decode: the input looks like hexadecimal text: did you mean --hex?\n";
    }
    return read ? 0 : 1;
}

}  // namespace

void AddDecode(CLI::App& program, int& status) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = program.add_subcommand("decode", "Explain serial records laid flat");
    command->add_option("FILE", options->file, "Records to read; '-' or none: standard input");
    command->add_flag("--hex", options->hex, "Read hexadecimal text (xxd output too)");
    command->add_flag("--json", options->json, "One JSON object per record");
    command->add_option("--offset", options->offset, "Skip the first N bytes of the capture")
        ->type_name("N");
    command
        ->add_option("--names", options->names,
                     "Name records by the paths of this description, and check them")
        ->type_name("DESCRIPTION");
    command->footer(k_footer);
    command->callback([options, &status] { status = Run(*options); });
}

}  // namespace OruTool
