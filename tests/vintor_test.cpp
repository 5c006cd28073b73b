#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

#include <vintor/vintor.h>
#include <boost/intrusive_ptr.hpp>

namespace {

using namespace Vintor;

TEST(LocalizationTest, DefaultCatalogueCoversEveryValidationKey) {
    char const* const keys[] = {
        "TypesSystemValidateTypeMismatch",
        "TypesSystemIllegalValidatationError",
        "TypesSystemNumericValidationMin",
        "TypesSystemNumericValidationMax",
        "TypesSystemNumericArrayValidationMinSize",
        "TypesSystemNumericArrayValidationMaxSize",
        "TypesSystemStringArrayValidationMinSize",
        "TypesSystemStringArrayValidationMaxSize",
        "BoolArrayValidationMinSize",
        "TypesSystemStringValidationLength",
        "TypesSystemBoolValidationFixedVal",
        "TypesSystemEnumValidationValue",
        "TypesSystemCompositeValidationSize",
        "TypesSystemCompositeTypeMismatch",
    };
    for (char const* key : keys) {
        SCOPED_TRACE(key);
        EXPECT_TRUE(Localization::HasString(key));
    }
    std::string const text =
        Localization::GetString("TypesSystemNumericValidationMin", "") % "Gain" % "7";
    EXPECT_EQ(text, "Setting 'Gain': the value is below the minimum 7");
}

TEST(LocalizationTest, UnknownKeysThrowAndSetStringRegisters) {
    EXPECT_THROW(Localization::GetString("NoSuchKey.Test", ""), std::exception);
    EXPECT_THROW(Localization::GetString("NoSuchKey.Test", ""), LocalizationError);

    Localization::SetString("Test.Greeting", "%2%, %1%!");
    EXPECT_EQ(
        static_cast<std::string>(Localization::GetString("Test.Greeting", "") % "world" % "Hello"),
        "Hello, world!");
    Localization::SetString("Test.Greeting", "Hi %1%");
    EXPECT_EQ(static_cast<std::string>(Localization::GetString("Test.Greeting", "") % "you"),
              "Hi you");

    // A selector picks a registered variant and falls back to the plain key.
    Localization::SetString("Test.Greeting@de", "Hallo %1%");
    EXPECT_EQ(static_cast<std::string>(Localization::GetString("Test.Greeting", "de") % "du"),
              "Hallo du");
    EXPECT_EQ(static_cast<std::string>(Localization::GetString("Test.Greeting", "fr") % "toi"),
              "Hi toi");
}

TEST(LocalizationTest, WrongArgumentCountsThrowStdExceptions) {
    Localization::SetString("Test.Two", "%1% and %2%");
    auto tooFew = Localization::GetString("Test.Two", "");
    tooFew % "one";
    EXPECT_THROW(static_cast<void>(static_cast<std::string>(tooFew)), std::exception);
    auto tooMany = Localization::GetString("Test.Two", "");
    tooMany % "a" % "b";
    EXPECT_THROW(tooMany % "c", std::exception);
}

TEST(PrintfStateTest, FillsConversionsInOrder) {
    LogExec exec("%s%s");
    exec() % std::string("prefix: ") % std::string("text");
    EXPECT_EQ(exec.GetOutput(), "prefix: text");

    LogExec mixed("[%s] 100%% %d done");
    auto state = mixed();
    state % std::string("a") % std::string("7");
    EXPECT_EQ(state.Str(), "[a] 100% 7 done");
    // Arguments beyond the conversions are appended rather than lost.
    state % std::string("+");
    EXPECT_EQ(mixed.GetOutput(), "[a] 100% 7 done+");
    // A new state starts from an empty output.
    mixed() % std::string("b") % std::string("8");
    EXPECT_EQ(mixed.GetOutput(), "[b] 100% 8 done");
}

TEST(LogManagerTest, OneFacadePerChannelEnabledAtEveryLevel) {
    bool created = false;
    auto first = LogManager::Instance().GetLogger("Test.Channel", &created, {});
    ASSERT_TRUE(first);
    EXPECT_TRUE(created);
    auto again = LogManager::Instance().GetLogger("Test.Channel", &created, {});
    EXPECT_FALSE(created);
    EXPECT_EQ(first, again);
    EXPECT_TRUE(first->get());
    for (int level = 0; level < static_cast<int>(LogLevel_t::Off); ++level) {
        EXPECT_TRUE(first->IsEnabled(static_cast<LogLevel_t>(level)));
    }
    first->SetThreshold(LogLevel_t::Warning);
    EXPECT_FALSE(first->IsEnabled(LogLevel_t::Info));
    EXPECT_TRUE(first->IsEnabled(LogLevel_t::Error));
    auto child = LogManager::Instance().GetLogger("Test.Channel.Child", nullptr, first);
    EXPECT_FALSE(child->IsEnabled(LogLevel_t::Info));
    first->SetThreshold(LogLevel_t::Off);
    EXPECT_FALSE(first->IsEnabled(LogLevel_t::Fatal));
}

TEST(SeverityTest, MapsToLevels) {
    EXPECT_EQ(GetLogLevelFromSeverity(static_cast<SeverityLevel_t>(4)), LogLevel_t::Error);
    EXPECT_EQ(GetLogLevelFromSeverity(Severity_Notice), LogLevel_t::Info);
    EXPECT_EQ(GetLogLevelFromSeverity(static_cast<SeverityLevel_t>(-3)), LogLevel_t::Trace);
    EXPECT_EQ(GetLogLevelFromSeverity(static_cast<SeverityLevel_t>(99)), LogLevel_t::Fatal);
    EXPECT_EQ(sizeof(SeverityLevel_t), 4u);
}

TEST(ExceptionTest, LogicErrorKeepsCodeMessageAndPlace) {
    try {
        throw LogicError(-32, "Null InfoHolder Pointer", CodeLocation("file", "fn", 273));
    } catch (std::exception const& error) {
        EXPECT_STREQ(error.what(), "Null InfoHolder Pointer");
        auto const* logic = dynamic_cast<LogicError const*>(&error);
        ASSERT_NE(logic, nullptr);
        EXPECT_EQ(logic->GetCode(), -32);
        EXPECT_EQ(logic->GetLocation(), CodeLocation("file", "fn", 273));
        EXPECT_STREQ(logic->GetLocation().GetFunction(), "fn");
    }
}

TEST(StrPtrLenTest, ViewsAndComparesWithoutOwning) {
    std::string const text = "RTSP";
    StrPtrLen view(text);
    EXPECT_EQ(view.Size(), 4u);
    EXPECT_EQ(view.ToStdString(), "RTSP");
    static char const lower[] = "rtsp";
    EXPECT_TRUE(view.EqualIgnoreCase(StrPtrLen(lower, 4)));
    EXPECT_FALSE(view.EqualIgnoreCase(StrPtrLen(lower, 3)));
    EXPECT_FALSE(view.Equal(StrPtrLen(lower, 4)));
    view.Advance(10);
    EXPECT_TRUE(view.Empty());
}

struct Counted : IntrusiveBaseMT {
    explicit Counted(int* destroyed) : destroyed_(destroyed) {}
    ~Counted() override { ++*destroyed_; }
    int* destroyed_;
};

TEST(IntrusiveBaseTest, LastReleaseDestroysAndCopiesStartAtZero) {
    int destroyed = 0;
    {
        boost::intrusive_ptr<Counted> first(new Counted(&destroyed));
        EXPECT_EQ(first->GetRefCount(), 1);
        boost::intrusive_ptr<Counted> second = first;
        EXPECT_EQ(first->GetRefCount(), 2);
        boost::intrusive_ptr<Counted> copy(new Counted(*first));
        EXPECT_EQ(copy->GetRefCount(), 1);
    }
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(sizeof(Atomic32), 4u);
    Colour_t const colour;
    EXPECT_EQ(colour, Colour_t(0, 0, 0, 0));
    EXPECT_NE(colour, Colour_t(0, 0, 0, 0.5f));
}

}  // namespace
