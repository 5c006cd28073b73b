// IParser and StringParser: small readers that take a field off the front of a
// text view. A parser writes into the target it was built with, so one object
// serves one caller at a time.
#ifndef LANPATH_PARSER_H
#define LANPATH_PARSER_H

#include <string>

#include <vintor/strptrlen.h>

#include <lanpath/export.h>

namespace Net {

// A reader of one field from the front of a text view.
class LANPATH_API IParser {
public:
    virtual ~IParser();

    // Reads one field from the front of text and moves text past what it read.
    // Returns true on success. On failure text is left where it was and, if error
    // is not null, a reason is written to it. Never throws for any input.
    virtual bool Parse(Vintor::StrPtrLen& text, std::string* error) = 0;

protected:
    IParser() = default;
    IParser(IParser const&) = default;
    IParser& operator=(IParser const&) = default;
};

// Reads the text before the first delimiter into a string.
class LANPATH_API StringParser : public IParser {
public:
    // A parser that writes into target (which must outlive it) the text before
    // the first delimiter. With skipDelimiter the view also moves past the
    // delimiter, otherwise it stops at it.
    StringParser(std::string& target, char delimiter, bool skipDelimiter);
    ~StringParser() override;

    // Whether Parse moves past the delimiter too.
    void SetSkipDelimiter(bool skip);
    bool GetSkipDelimiter() const;

    // On success target holds the text before the first delimiter (possibly
    // empty), and text stands at the delimiter or behind it. Without a delimiter
    // in text: answers false, target becomes empty, text stays where it was.
    bool Parse(Vintor::StrPtrLen& text, std::string* error) override;

private:
    std::string& target_;
    char delimiter_;
    bool skipDelimiter_;
};

}  // namespace Net

#endif
