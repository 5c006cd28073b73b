#include <vintor/logging.h>

#include <boost/log/keywords/channel.hpp>

namespace Vintor {

LoggerFacade::LoggerFacade(std::string const& channel,
                           std::shared_ptr<SeverityChannelLogger> logger)
    : channel_(channel),
      logger_(std::move(logger)),
      threshold_(static_cast<int>(LogLevel_t::Trace)) {}

LoggerFacade::~LoggerFacade() = default;

bool LoggerFacade::IsEnabled(LogLevel_t const& level) const noexcept {
    int const threshold = threshold_.load(std::memory_order_relaxed);
    return threshold != static_cast<int>(LogLevel_t::Off) && static_cast<int>(level) >= threshold;
}

void LoggerFacade::SetThreshold(LogLevel_t level) noexcept {
    threshold_.store(static_cast<int>(level), std::memory_order_relaxed);
}

LogLevel_t LoggerFacade::GetThreshold() const noexcept {
    return static_cast<LogLevel_t>(threshold_.load(std::memory_order_relaxed));
}

LogManager& LogManager::Instance() {
    // Never destroyed: facades may still be released by static objects of
    // other libraries during exit.
    static LogManager* const instance = new LogManager();
    return *instance;
}

LogManager::LogManager() = default;
LogManager::~LogManager() = default;

std::shared_ptr<LoggerFacade> LogManager::GetLogger(std::string const& channel, bool* created,
                                                    std::shared_ptr<LoggerFacade> parent) {
    std::lock_guard<std::mutex> lock(mutex_);
    auto found = loggers_.find(channel);
    if (found != loggers_.end()) {
        if (created) {
            *created = false;
        }
        return found->second;
    }
    auto logger = std::make_shared<SeverityChannelLogger>(boost::log::keywords::channel = channel);
    auto facade = std::make_shared<LoggerFacade>(channel, std::move(logger));
    if (parent) {
        facade->SetThreshold(parent->GetThreshold());
    }
    loggers_.emplace(channel, facade);
    if (created) {
        *created = true;
    }
    return facade;
}

PrintfState<std::string&>::PrintfState(std::string& out, char const* format)
    : out_(out), format_(format ? format : "") {
    CopyLiteral_();
}

void PrintfState<std::string&>::CopyLiteral_() {
    while (*format_) {
        if (format_[0] == '%') {
            if (format_[1] == '%') {
                out_ += '%';
                format_ += 2;
                continue;
            }
            return;
        }
        out_ += *format_++;
    }
}

PrintfState<std::string&>& PrintfState<std::string&>::operator%(std::string const& argument) {
    out_ += argument;
    if (*format_ == '%') {
        // Skip flags, width and precision up to the conversion letter.
        ++format_;
        while (*format_ &&
               !((*format_ >= 'a' && *format_ <= 'z') || (*format_ >= 'A' && *format_ <= 'Z'))) {
            ++format_;
        }
        if (*format_) {
            ++format_;
        }
        CopyLiteral_();
    }
    return *this;
}

LogExec::LogExec(char const* format) : format_(format ? format : "") {}

LogExec::~LogExec() = default;

PrintfState<std::string&> LogExec::operator()() {
    output_.clear();
    return PrintfState<std::string&>(output_, format_);
}

}  // namespace Vintor
