// The exceptions of the base services: Exception carries a return-code
// number, a message and the place it was raised; LogicError marks a fault in
// the caller's own code path.
#ifndef VINTOR_EXCEPTION_H
#define VINTOR_EXCEPTION_H

#include <exception>
#include <string>

#include <vintor/codelocation.h>
#include <vintor/export.h>

namespace Vintor {

class VINTOR_API Exception : public std::exception {
public:
    Exception(int code, std::string const& message, CodeLocation const& location);
    Exception(Exception const&) = default;
    Exception& operator=(Exception const&) = default;
    ~Exception() override;

    // The message text.
    char const* what() const noexcept override;

    int GetCode() const noexcept { return code_; }
    std::string const& GetMessage() const noexcept { return message_; }
    CodeLocation const& GetLocation() const noexcept { return location_; }

private:
    int code_;
    std::string message_;
    CodeLocation location_;
};

class VINTOR_API LogicError : public Exception {
public:
    LogicError(int code, std::string const& message, CodeLocation const& location);
    LogicError(LogicError const&) = default;
    LogicError& operator=(LogicError const&) = default;
    ~LogicError() override;
};

// Raised by Localization::GetString for a key without a text.
class VINTOR_API LocalizationError : public Exception {
public:
    LocalizationError(std::string const& message, CodeLocation const& location);
    LocalizationError(LocalizationError const&) = default;
    LocalizationError& operator=(LocalizationError const&) = default;
    ~LocalizationError() override;
};

}  // namespace Vintor

#endif
