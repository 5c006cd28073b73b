// Localization: the catalogue of message texts behind message keys. A text is
// a Boost.Format pattern with numbered placeholders (%1%, %2%, ...). The
// built-in catalogue holds an English text for every validation key of the
// settings model; SetString adds or replaces texts. All operations are
// thread-safe.
#ifndef VINTOR_LOCALIZATION_H
#define VINTOR_LOCALIZATION_H

#include <memory>
#include <string>

#include <vintor/export.h>

namespace Vintor {

// A pattern being filled: each operator% substitutes the next argument.
// Converting to std::string finishes it; too few or too many arguments throw
// an exception derived from std::exception.
class VINTOR_API LocalizationHelper {
public:
    explicit LocalizationHelper(std::string const& pattern);
    LocalizationHelper(LocalizationHelper&&) noexcept;
    LocalizationHelper& operator=(LocalizationHelper&&) noexcept;
    ~LocalizationHelper();

    LocalizationHelper& operator%(std::string const& argument);
    operator std::string() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

class VINTOR_API Localization {
public:
    // The helper over the pattern of key. When selector is not empty and a
    // text was registered under "key@selector", that text is used instead
    // (a language or product variant). Throws LocalizationError for a key
    // without a text.
    static LocalizationHelper GetString(std::string const& key, std::string const& selector);

    // Registers or replaces the text of a key (or of "key@selector").
    static void SetString(std::string const& key, std::string const& pattern);

    // True if the key has a text.
    static bool HasString(std::string const& key);
};

}  // namespace Vintor

#endif
