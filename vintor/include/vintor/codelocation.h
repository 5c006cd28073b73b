// CodeLocation: a place in the source (file, function, line), kept as
// literals. Copyable, so that it can travel as a log attribute value.
#ifndef VINTOR_CODELOCATION_H
#define VINTOR_CODELOCATION_H

#include <ostream>

#include <vintor/export.h>

namespace Vintor {

class VINTOR_API CodeLocation {
public:
    // The strings must be literals or otherwise outlive every copy.
    CodeLocation(char const* file, char const* function, int line) noexcept
        : file_(file ? file : ""), function_(function ? function : ""), line_(line) {}
    CodeLocation(CodeLocation const&) = default;
    CodeLocation& operator=(CodeLocation const&) = default;
    ~CodeLocation() = default;

    char const* GetFile() const noexcept { return file_; }
    char const* GetFunction() const noexcept { return function_; }
    int GetLine() const noexcept { return line_; }

    bool operator==(CodeLocation const& other) const noexcept;
    bool operator!=(CodeLocation const& other) const noexcept { return !(*this == other); }

private:
    char const* file_;
    char const* function_;
    int line_;
};

// "file:line (function)", the form a log formatter writes.
VINTOR_API std::ostream& operator<<(std::ostream& out, CodeLocation const& location);

}  // namespace Vintor

#endif
