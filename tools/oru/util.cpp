#include "util.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <sstream>

#include <sys/stat.h>

namespace OruTool {

namespace {

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

int HexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c - 'A' + 10;
}

}  // namespace

std::string HexId(std::uint32_t value) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << std::setw(8) << std::setfill('0') << value;
    return text.str();
}

bool ParseId(std::string const& text, std::uint32_t& value, std::string& problem) {
    bool const hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    std::string const digits = hex ? text.substr(2) : text;
    bool wellFormed = !digits.empty();
    for (char c : digits) {
        wellFormed = wellFormed && (hex ? IsHexDigit(c) : (c >= '0' && c <= '9'));
    }
    if (!wellFormed) {
        problem = "is not a number (give decimal or 0x-hex)";
        return false;
    }
    std::uint64_t accumulated = 0;
    for (char c : digits) {
        accumulated = accumulated * (hex ? 16 : 10) + static_cast<std::uint64_t>(HexValue(c));
        if (accumulated > 0xFFFFFFFFu) {
            problem = "does not fit in 32 bits";
            return false;
        }
    }
    value = static_cast<std::uint32_t>(accumulated);
    return true;
}

std::string Quote(std::string const& text) {
    std::size_t const limit = 40;
    std::string shown;
    for (char c : text.substr(0, limit)) {
        unsigned char const u = static_cast<unsigned char>(c);
        shown += u < 0x20 || u == 0x7F ? '?' : c;
    }
    return "'" + shown + (text.size() > limit ? "...'" : "'");
}

bool ReadInput(std::string const& file, std::string& input, std::string& problem) {
    if (file == "-") {
        input.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        if (std::cin.bad()) {
            problem = "cannot read standard input";
            return false;
        }
        return true;
    }
    struct stat status;
    if (::stat(file.c_str(), &status) != 0) {
        problem = "cannot open " + Quote(file) + ": " + std::strerror(errno);
        return false;
    }
    if (S_ISDIR(status.st_mode)) {
        problem = Quote(file) + " is a directory";
        return false;
    }
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        problem = "cannot open " + Quote(file) + ": " + std::strerror(errno);
        return false;
    }
    input.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        problem = "cannot read " + Quote(file);
        return false;
    }
    return true;
}

std::string WithNewline(std::string text) {
    if (text.empty() || text.back() != '\n') {
        text += '\n';
    }
    return text;
}

}  // namespace OruTool
