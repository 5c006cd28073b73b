// oru decode: reads serial records laid flat (ten header bytes, then the
// payload) and says what each one holds.
#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "commands.h"
#include "families.h"
#include "util.h"

namespace OruTool {

namespace {

using Legacy::Oru::InfoItemSectionId;
using Legacy::Oru::ItemBase;
using Bytes = std::vector<unsigned char>;

std::uint32_t const kHeaderSize = 10;
std::uint8_t const kCompositeType = 253;
// Composite children nest as records of their own; deeper than this the
// display stops descending (the library reads them all the same).
int const kMaxShownDepth = 32;

struct Options {
    bool hex = false;
    bool json = false;
    std::string file;
};

std::uint32_t BigEndian32(unsigned char const* p) {
    return (std::uint32_t(p[0]) << 24) | (std::uint32_t(p[1]) << 16) | (std::uint32_t(p[2]) << 8) |
           std::uint32_t(p[3]);
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

std::string IdJson(std::uint32_t raw) {
    InfoItemSectionId const id(raw);
    std::size_t const depth = id.Depth();
    std::string json = "\"depth\":" + std::to_string(depth) + ",\"subsections\":[";
    for (std::size_t level = 1; level <= depth; ++level) {
        json += (level > 1 ? "," : "") + std::to_string((raw >> (30 - 6 * level)) & 0x3Fu);
    }
    json += "],\"info\":";
    json += id.IsValidInfoItemId() ? std::to_string(RawInfoField(raw, depth)) : "null";
    json += ",\"class\":";
    json += id.IsValidInfoItemId()          ? "\"info-item\""
            : id.IsValidSectionId()         ? "\"section\""
            : id.IsValidWildcardSectionId() ? "\"wildcard\""
                                            : "\"invalid\"";
    return json;
}

class Decoder {
public:
    Decoder(Options const& options, std::ostream& out) : options_(options), out_(out) {}

    // Decodes the records laid one after another in bytes; answers whether
    // every one of them read.
    bool Run(Bytes const& bytes) {
        std::size_t offset = 0;
        std::size_t count = 0;
        while (offset < bytes.size()) {
            std::size_t const remaining = bytes.size() - offset;
            if (remaining < kHeaderSize) {
                Problem(offset, "truncated header: " + std::to_string(remaining) +
                                    " bytes left, a header has 10");
                return false;
            }
            unsigned char const* const header = bytes.data() + offset;
            std::uint32_t const size = BigEndian32(header + 4);
            if (size > remaining - kHeaderSize) {
                Problem(offset, "the record claims " + std::to_string(size) + " payload bytes, " +
                                    std::to_string(remaining - kHeaderSize) + " remain");
                return false;
            }
            ++count;
            ok_ = Record(offset, header, 0) && ok_;
            offset += kHeaderSize + size;
        }
        if (count == 0 && !options_.json) {
            out_ << "no records\n";
        }
        return ok_;
    }

private:
    // One record whose payload lies wholly in the input.
    bool Record(std::size_t offset, unsigned char const* header, int depth) {
        std::uint32_t const id = BigEndian32(header);
        std::uint32_t const size = BigEndian32(header + 4);
        std::uint8_t const type = header[8];
        std::uint8_t const numericType = header[9];
        // The payload in a buffer of exactly its size, so that a reader that
        // strays past it is caught by the sanitizers.
        Bytes const payload(header + kHeaderSize, header + kHeaderSize + size);
        ItemBase::ConstSerialStruct_t record;
        record.SetHeader(id, size, type, numericType);
        record.data = payload.empty() ? nullptr : payload.data();
        boost::intrusive_ptr<ItemBase> item;
        int const code = ItemBase::Deserialize(&record, item);
        std::string const family = FamilyName(type, numericType);
        std::string const value = code == 0 ? item->GetValAsString() : std::string();

        if (options_.json) {
            out_ << "{\"offset\":" << offset << ",\"nesting\":" << depth << ",\"id\":\""
                 << HexId(id) << "\"," << IdJson(id) << ",\"type\":" << JsonString(family)
                 << ",\"typeByte\":" << unsigned(type)
                 << ",\"numericTypeByte\":" << unsigned(numericType) << ",\"size\":" << size
                 << ",\"code\":" << code;
            if (code == 0) {
                out_ << ",\"value\":" << JsonString(value);
            }
            out_ << "}\n";
        } else {
            std::string const indent(2 * static_cast<std::size_t>(depth), ' ');
            out_ << indent << "@" << offset << " " << HexId(id) << " (" << IdText(id) << ") "
                 << family << " size " << size;
            if (code == 0) {
                out_ << ": " << value << "\n";
            } else {
                out_ << ": does not read, code " << code << "\n";
            }
        }
        if (code == 0 && type == kCompositeType && depth < kMaxShownDepth) {
            Children(offset + kHeaderSize, payload, depth + 1);
        }
        return code == 0;
    }

    // The children of a composite: a two-byte count, then records. The
    // library has read it already, so the walk only shows what is there.
    void Children(std::size_t offset, Bytes const& payload, int depth) {
        if (payload.size() < 2) {
            return;
        }
        std::size_t const count = (std::size_t(payload[0]) << 8) | payload[1];
        std::size_t at = 2;
        for (std::size_t i = 0; i < count && payload.size() - at >= kHeaderSize; ++i) {
            std::uint32_t const size = BigEndian32(payload.data() + at + 4);
            if (size > payload.size() - at - kHeaderSize) {
                return;
            }
            Record(offset + at, payload.data() + at, depth);
            at += kHeaderSize + size;
        }
    }

    void Problem(std::size_t offset, std::string const& what) {
        if (options_.json) {
            out_ << "{\"offset\":" << offset << ",\"error\":" << JsonString(what) << "}\n";
        } else {
            out_ << "@" << offset << " " << what << "; decoding stops here\n";
        }
        ok_ = false;
    }

    Options const& options_;
    std::ostream& out_;
    bool ok_ = true;
};

// Hex text to bytes, white space ignored, an optional 0x before any pair.
bool ParseHex(std::string const& text, Bytes& bytes, std::string& problem) {
    int high = -1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v') {
            continue;
        }
        if (c == '0' && high < 0 && i + 1 < text.size() &&
            (text[i + 1] == 'x' || text[i + 1] == 'X')) {
            ++i;
            continue;
        }
        int value;
        if (c >= '0' && c <= '9') {
            value = c - '0';
        } else if (c >= 'a' && c <= 'f') {
            value = c - 'a' + 10;
        } else if (c >= 'A' && c <= 'F') {
            value = c - 'A' + 10;
        } else {
            problem = "not a hex digit at character " + std::to_string(i + 1);
            return false;
        }
        if (high < 0) {
            high = value;
        } else {
            bytes.push_back(static_cast<unsigned char>(high * 16 + value));
            high = -1;
        }
    }
    if (high >= 0) {
        problem = "an odd number of hex digits";
        return false;
    }
    return true;
}

void PrintHelp(std::ostream& out) {
    out << "usage: oru decode [--hex] [--json] [FILE]\n"
           "\n"
           "Reads serial records laid flat, one after another: ten header bytes (id and\n"
           "payload size big-endian, type byte, numeric-type byte), then the payload.\n"
           "Reads FILE, or standard input without one or with '-'. --hex reads\n"
           "hexadecimal text (white space ignored) instead of binary.\n"
           "\n"
           "For each record it prints the offset, the id with its sections and info\n"
           "number, the family, the payload size and the value as the library writes\n"
           "it; the children of a composite follow, indented. A record that does not\n"
           "read shows the library's answer code, and decoding goes on with the next\n"
           "record while the header's size allows. --json prints one JSON object per\n"
           "record (children too, with their nesting level).\n"
           "\n"
           "Exit status: 0 when every record read, 1 when one did not, 2 for usage.\n"
           "\n"
           "example:\n"
           "  $ oru encode Numeric:U32 0x420C0005 72 | oru decode --hex\n"
           "  @0 0x420C0005 (section 2/3, info 5) Numeric:U32 size 4: 72\n";
}

}  // namespace

int RunDecode(Args const& args, std::ostream& out, std::ostream& err) {
    Options options;
    bool haveFile = false;
    for (std::string const& arg : args) {
        if (arg == "--help" || arg == "-h") {
            PrintHelp(out);
            return 0;
        } else if (arg == "--hex") {
            options.hex = true;
        } else if (arg == "--json") {
            options.json = true;
        } else if (arg.size() > 1 && arg[0] == '-') {
            err << "oru decode: unknown option " << Quote(arg) << " (try 'oru decode --help')\n";
            return 2;
        } else if (haveFile) {
            err << "oru decode: one FILE at most (try 'oru decode --help')\n";
            return 2;
        } else {
            options.file = arg;
            haveFile = true;
        }
    }

    std::string input;
    if (!haveFile || options.file == "-") {
        input.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    } else {
        std::ifstream file(options.file, std::ios::binary);
        if (!file) {
            err << "oru decode: cannot open " << Quote(options.file) << "\n";
            return 2;
        }
        input.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

    Bytes bytes;
    if (options.hex) {
        std::string problem;
        if (!ParseHex(input, bytes, problem)) {
            err << "oru decode: bad hex input: " << problem << "\n";
            return 1;
        }
    } else {
        bytes.assign(input.begin(), input.end());
    }
    Decoder decoder(options, out);
    return decoder.Run(bytes) ? 0 : 1;
}

}  // namespace OruTool
