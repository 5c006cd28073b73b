// Severities of messages and the levels of the logger, and the one mapping
// between them.
#ifndef VINTOR_SEVERITY_H
#define VINTOR_SEVERITY_H

#include <cstdint>
#include <ostream>

#include <vintor/export.h>

namespace Vintor {

// How grave a message is; a larger number is more severe. The settings model
// reports every failed check as Error (4).
enum SeverityLevel_t : std::int32_t {
    Severity_Debug = 0,
    Severity_Info = 1,
    Severity_Notice = 2,
    Severity_Warning = 3,
    Severity_Error = 4,
    Severity_Critical = 5,
    Severity_Fatal = 6,
};

// The severity type of the loggers; Off is above every level and enables none.
enum class LogLevel_t : std::int32_t {
    Trace = 0,
    Debug = 1,
    Info = 2,
    Warning = 3,
    Error = 4,
    Fatal = 5,
    Off = 6,
};

// The log level for a severity: Notice logs as Info, Critical and above as
// Fatal; values below Debug log as Trace.
VINTOR_API LogLevel_t GetLogLevelFromSeverity(SeverityLevel_t severity) noexcept;

// "trace", "debug", "info", "warning", "error", "fatal", "off".
VINTOR_API char const* LogLevelText(LogLevel_t level) noexcept;
VINTOR_API std::ostream& operator<<(std::ostream& out, LogLevel_t level);

}  // namespace Vintor

#endif
