#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <vector>

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>
#include <boost/log/expressions/message.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/make_shared.hpp>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;
using Vintor::SeverityLevel_t;

std::shared_ptr<ResultElem const> Element(int severity, unsigned int id = 1) {
    boost::intrusive_ptr<ItemBase const> item(NumericItem<U8Traits>::Create(id, 1));
    return std::make_shared<ResultElem const>(static_cast<SeverityLevel_t>(severity), item,
                                              nullptr);
}

TEST(ResultTest, AddsNonNullElementsAtOrAboveTheMinimum) {
    auto result = std::make_shared<Result>(42);
    EXPECT_EQ(result->GetId(), 42u);
    result->AddResultElem(nullptr);
    EXPECT_EQ(result->GetNumResults(), 0u);
    EXPECT_FALSE(result->ContainsResultOfSeverity(static_cast<SeverityLevel_t>(0)));

    result->AddResults({Element(2), nullptr, Element(4), Element(6)},
                       static_cast<SeverityLevel_t>(4));
    ASSERT_EQ(result->GetNumResults(), 2u);
    EXPECT_EQ(result->GetResultArray()[0]->GetSeverityLevel(), 4);
    EXPECT_EQ(result->GetResultArray()[1]->GetSeverityLevel(), 6);
    // Severities compare as signed numbers.
    result->AddResults({Element(-1)}, static_cast<SeverityLevel_t>(-2));
    EXPECT_EQ(result->GetNumResults(), 3u);

    result->AddResults(std::shared_ptr<Result const>(result), static_cast<SeverityLevel_t>(0));
    EXPECT_EQ(result->GetNumResults(), 3u);
    result->AddResults(std::shared_ptr<Result const>(), static_cast<SeverityLevel_t>(0));
    EXPECT_EQ(result->GetNumResults(), 3u);

    auto other = std::make_shared<Result>(7);
    other->AddResults(std::shared_ptr<Result const>(result), static_cast<SeverityLevel_t>(99));
    EXPECT_EQ(other->GetNumResults(), 0u);
    other->AddResults(std::shared_ptr<Result const>(result), static_cast<SeverityLevel_t>(5));
    EXPECT_EQ(other->GetNumResults(), 1u);

    EXPECT_TRUE(result->ContainsResultOfSeverity(static_cast<SeverityLevel_t>(6)));
    EXPECT_FALSE(result->ContainsResultOfSeverity(static_cast<SeverityLevel_t>(7)));
    EXPECT_FALSE(result->ContainsPromptableResultElem());
    result->RemovePromptableResultElems();
    EXPECT_EQ(result->GetNumResults(), 3u);
}

TEST(ResultTest, ClonesShareElementsNotTheList) {
    Result source(3);
    source.AddResultElem(Element(4));
    std::shared_ptr<Result> clone = source.Clone();
    EXPECT_EQ(clone->GetId(), 3u);
    ASSERT_EQ(clone->GetNumResults(), 1u);
    EXPECT_EQ(clone->GetResultArray()[0], source.GetResultArray()[0]);
    clone->AddResultElem(Element(4));
    EXPECT_EQ(source.GetNumResults(), 1u);
    EXPECT_EQ(clone->GetNumResults(), 2u);
}

struct Captured {
    std::string message;
    Vintor::LogLevel_t level;
    std::string channel;
    std::string file;
    std::string function;
    int line;
};

class Collector
    : public boost::log::sinks::basic_sink_backend<boost::log::sinks::synchronized_feeding> {
public:
    void consume(boost::log::record_view const& record) {
        Captured captured{};
        if (auto message = record[boost::log::expressions::smessage]) {
            captured.message = message.get();
        }
        if (auto level = boost::log::extract<Vintor::LogLevel_t>("Severity", record)) {
            captured.level = level.get();
        }
        if (auto channel = boost::log::extract<std::string>("Channel", record)) {
            captured.channel = channel.get();
        }
        if (auto location = boost::log::extract<Vintor::CodeLocation>("Location", record)) {
            captured.file = location.get().GetFile();
            captured.function = location.get().GetFunction();
            captured.line = location.get().GetLine();
        }
        std::lock_guard<std::mutex> lock(mutex);
        records.push_back(captured);
    }
    std::mutex mutex;
    std::vector<Captured> records;
};

TEST(ResultTest, LogsOneRecordPerEnabledElement) {
    auto backend = boost::make_shared<Collector>();
    auto sink = boost::make_shared<boost::log::sinks::synchronous_sink<Collector>>(backend);
    boost::log::core::get()->add_sink(sink);

    auto logger = Vintor::LogManager::Instance().GetLogger("Test.Results", nullptr, {});
    logger->SetThreshold(Vintor::LogLevel_t::Warning);
    Result result(1);
    result.AddResultElem(Element(4));
    result.AddResultElem(Element(1));  // Info: below the threshold
    result.AddResultElem(Element(6));
    result.LogResults(logger, "check failed");
    result.LogResults(nullptr, "not logged");
    logger->SetThreshold(Vintor::LogLevel_t::Off);
    result.LogResults(logger, "off");

    boost::log::core::get()->remove_sink(sink);
    ASSERT_EQ(backend->records.size(), 2u);
    EXPECT_EQ(backend->records[0].message, "check failed");
    EXPECT_EQ(backend->records[0].level, Vintor::LogLevel_t::Error);
    EXPECT_EQ(backend->records[0].channel, "Test.Results");
    EXPECT_EQ(backend->records[0].file, "legacy/src/oru/result");
    EXPECT_EQ(backend->records[0].function, "Legacy::Oru::Result::LogResults");
    EXPECT_EQ(backend->records[0].line, 161);
    EXPECT_EQ(backend->records[1].level, Vintor::LogLevel_t::Fatal);
    EXPECT_EQ(result.GetNumResults(), 3u);
}

}  // namespace
