#include <legacy/oru/result.h>

#include <boost/log/attributes/constant.hpp>
#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/core/record.hpp>
#include <boost/log/sources/record_ostream.hpp>

#include <vintor/codelocation.h>

namespace Legacy {
namespace Oru {

namespace {

// The library's own logger handle, held for its lifetime; nothing logs
// through it, but applications configure the channel by its presence.
struct LibraryLogger {
    LibraryLogger()
        : facade(Vintor::LogManager::Instance().GetLogger("Vintor.ConfigItem", nullptr, {})) {}
    std::shared_ptr<Vintor::LoggerFacade> facade;
};

LibraryLogger const g_libraryLogger;

}  // namespace

Result::Result(unsigned int id) : id_(id) {}

Result::Result(Result const& other) : id_(other.id_) {
    results_.reserve(other.results_.size());
    results_ = other.results_;
}

std::shared_ptr<Result> Result::Clone() const {
    return std::make_shared<Result>(*this);
}

Result::~Result() = default;

void Result::AddResultElem(std::shared_ptr<ResultElem const> element) {
    if (element) {
        results_.push_back(std::move(element));
    }
}

void Result::AddResults(Elements const& elements, Vintor::SeverityLevel_t minimum) {
    if (&elements == &results_) {
        return;
    }
    // Room for all of them first, refused ones included.
    std::size_t const wanted = results_.size() + elements.size();
    if (results_.capacity() < wanted) {
        results_.reserve(wanted);
    }
    for (auto const& element : elements) {
        if (element && static_cast<std::int32_t>(element->GetSeverityLevel()) >=
                           static_cast<std::int32_t>(minimum)) {
            results_.push_back(element);
        }
    }
}

void Result::AddResults(std::shared_ptr<Result const> const& other,
                        Vintor::SeverityLevel_t minimum) {
    if (!other || other.get() == this) {
        return;
    }
    AddResults(other->results_, minimum);
}

bool Result::ContainsResultOfSeverity(Vintor::SeverityLevel_t level) const noexcept {
    for (auto const& element : results_) {
        if (static_cast<std::int32_t>(element->GetSeverityLevel()) >=
            static_cast<std::int32_t>(level)) {
            return true;
        }
    }
    return false;
}

void Result::LogResults(std::shared_ptr<Vintor::LoggerFacade> logger,
                        std::string const& prefix) const {
    if (!logger) {
        return;
    }
    for (auto const& element : results_) {
        Vintor::LogLevel_t const level =
            Vintor::GetLogLevelFromSeverity(element->GetSeverityLevel());
        auto const& source = logger->get();
        if (!source || !logger->IsEnabled(level)) {
            continue;
        }
        if (!boost::log::core::get()->get_logging_enabled()) {
            continue;
        }
        // open_record sets the severity and opens the record under the
        // logger's own mutex, and releases it before the message is made.
        boost::log::record record = source->open_record(boost::log::keywords::severity = level);
        if (!record) {
            continue;
        }
        std::string const text = element->GetAsString();
        Vintor::LogExec exec("%s%s");
        Vintor::CodeLocation const location("legacy/src/oru/result",
                                            "Legacy::Oru::Result::LogResults", 161);
        record.attribute_values().insert("Location",
                                         boost::log::attributes::make_attribute_value(location));
        exec() % prefix % text;
        {
            // The pump pushes the record at the end of the scope unless an
            // exception began in between.
            auto pump = boost::log::aux::make_record_pump(*source, record);
            pump.stream() << exec.GetOutput();
        }
    }
}

}  // namespace Oru
}  // namespace Legacy
