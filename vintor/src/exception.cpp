#include <cstring>

#include <vintor/codelocation.h>
#include <vintor/exception.h>

namespace Vintor {

bool CodeLocation::operator==(CodeLocation const& other) const noexcept {
    return line_ == other.line_ && std::strcmp(file_, other.file_) == 0 &&
           std::strcmp(function_, other.function_) == 0;
}

std::ostream& operator<<(std::ostream& out, CodeLocation const& location) {
    return out << location.GetFile() << ':' << location.GetLine() << " (" << location.GetFunction()
               << ')';
}

Exception::Exception(int code, std::string const& message, CodeLocation const& location)
    : code_(code), message_(message), location_(location) {}

Exception::~Exception() = default;

char const* Exception::what() const noexcept {
    return message_.c_str();
}

LogicError::LogicError(int code, std::string const& message, CodeLocation const& location)
    : Exception(code, message, location) {}

LogicError::~LogicError() = default;

LocalizationError::LocalizationError(std::string const& message, CodeLocation const& location)
    : Exception(-25, message, location) {}

LocalizationError::~LocalizationError() = default;

}  // namespace Vintor
