// The logging front: one LoggerFacade per channel over a Boost.Log
// severity_channel_logger_mt, handed out by the process-wide LogManager, and
// the small printf-style formatter LogExec/PrintfState used to compose log
// messages. Facades may be used from any thread.
#ifndef VINTOR_LOGGING_H
#define VINTOR_LOGGING_H

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include <boost/log/sources/severity_channel_logger.hpp>

#include <vintor/export.h>
#include <vintor/noncopyable.h>
#include <vintor/severity.h>

namespace Vintor {

using SeverityChannelLogger =
    boost::log::sources::severity_channel_logger_mt<LogLevel_t, std::string>;

// The logger of one channel with a threshold of its own. A new facade is
// enabled at every level.
class VINTOR_API LoggerFacade {
public:
    LoggerFacade(std::string const& channel, std::shared_ptr<SeverityChannelLogger> logger);
    ~LoggerFacade();

    // The Boost.Log logger behind the facade; may be null.
    std::shared_ptr<SeverityChannelLogger> const& get() const noexcept { return logger_; }

    // True if records of that level would be written.
    bool IsEnabled(LogLevel_t const& level) const noexcept;

    // Records below level are dropped; LogLevel_t::Off drops all.
    void SetThreshold(LogLevel_t level) noexcept;
    LogLevel_t GetThreshold() const noexcept;

    std::string const& GetChannel() const noexcept { return channel_; }

private:
    std::string channel_;
    std::shared_ptr<SeverityChannelLogger> logger_;
    std::atomic<int> threshold_;
};

class VINTOR_API LogManager : NonCopyable {
public:
    // The one process-wide instance.
    static LogManager& Instance();

    // The facade of the channel, made at first request. created, if not null,
    // receives whether this call made it; a new facade takes the threshold of
    // parent when one is given.
    std::shared_ptr<LoggerFacade> GetLogger(std::string const& channel, bool* created,
                                            std::shared_ptr<LoggerFacade> parent);

private:
    LogManager();
    ~LogManager();

    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<LoggerFacade>> loggers_;
};

template <class Out>
class PrintfState;

// printf-style composition into a string: each operator% fills the next
// conversion ("%s", or any other conversion letter) with its text; "%%"
// writes one "%". Arguments beyond the conversions are appended.
template <>
class VINTOR_API PrintfState<std::string&> {
public:
    PrintfState(std::string& out, char const* format);

    PrintfState& operator%(std::string const& argument);

    // The text composed so far.
    std::string& Str() const noexcept { return out_; }

private:
    void CopyLiteral_();

    std::string& out_;  // first word: callers read the output through it
    char const* format_;
};

// Keeps a format and the output string that operator() binds a state to.
class VINTOR_API LogExec {
public:
    explicit LogExec(char const* format);
    ~LogExec();

    // A state bound to this object's output, which it clears first.
    PrintfState<std::string&> operator()();

    std::string const& GetOutput() const noexcept { return output_; }

private:
    char const* format_;
    std::string output_;
};

}  // namespace Vintor

#endif
