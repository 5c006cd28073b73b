#include <vintor/severity.h>

namespace Vintor {

LogLevel_t GetLogLevelFromSeverity(SeverityLevel_t severity) noexcept {
    switch (severity) {
        case Severity_Debug:
            return LogLevel_t::Debug;
        case Severity_Info:
        case Severity_Notice:
            return LogLevel_t::Info;
        case Severity_Warning:
            return LogLevel_t::Warning;
        case Severity_Error:
            return LogLevel_t::Error;
        default:
            return severity < Severity_Debug ? LogLevel_t::Trace : LogLevel_t::Fatal;
    }
}

char const* LogLevelText(LogLevel_t level) noexcept {
    switch (level) {
        case LogLevel_t::Trace:
            return "trace";
        case LogLevel_t::Debug:
            return "debug";
        case LogLevel_t::Info:
            return "info";
        case LogLevel_t::Warning:
            return "warning";
        case LogLevel_t::Error:
            return "error";
        case LogLevel_t::Fatal:
            return "fatal";
        case LogLevel_t::Off:
            return "off";
    }
    return "unknown";
}

std::ostream& operator<<(std::ostream& out, LogLevel_t level) {
    return out << LogLevelText(level);
}

}  // namespace Vintor
