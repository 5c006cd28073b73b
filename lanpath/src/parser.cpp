#include <lanpath/parser.h>

#include <algorithm>

namespace Net {

IParser::~IParser() = default;

StringParser::StringParser(std::string& target, char delimiter, bool skipDelimiter)
    : target_(target), delimiter_(delimiter), skipDelimiter_(skipDelimiter) {}

StringParser::~StringParser() = default;

void StringParser::SetSkipDelimiter(bool skip) {
    skipDelimiter_ = skip;
}

bool StringParser::GetSkipDelimiter() const {
    return skipDelimiter_;
}

bool StringParser::Parse(Vintor::StrPtrLen& text, std::string* error) {
    char const* begin = text.Begin();
    char const* end = text.End();
    char const* found = begin == nullptr ? end : std::find(begin, end, delimiter_);
    if (found == end) {
        target_.clear();
        if (error != nullptr) {
            *error = std::string("delimiter '") + delimiter_ + "' not found";
        }
        return false;
    }
    target_.assign(begin, found);
    std::size_t length = static_cast<std::size_t>(found - begin);
    text.Advance(skipDelimiter_ ? length + 1 : length);
    return true;
}

}  // namespace Net
