// The settings-file commands of the oru program: describe, demo --values,
// check, and the --names forms of encode and decode.
#include <cstdlib>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tool_util.h"

namespace {

using nlohmann::json;
using OruTest::RunTool;

// A scratch folder holding the sample device's description and values.
class OruFilesCliTest : public ::testing::Test {
protected:
    void SetUp() override {
        char dir[] = "/tmp/oru-files-XXXXXX";
        ASSERT_NE(mkdtemp(dir), nullptr);
        dir_ = dir;
        auto const described = RunTool("describe");
        ASSERT_EQ(described.status, 0) << described.err;
        Write("device.json", described.out);
        auto const values = RunTool("demo --values");
        ASSERT_EQ(values.status, 0) << values.err;
        Write("values.json", values.out);
        values_ = json::parse(values.out);
    }
    void TearDown() override { std::system(("rm -rf '" + dir_ + "'").c_str()); }

    std::string Write(std::string const& name, std::string const& text) {
        std::ofstream(dir_ + "/" + name, std::ios::binary) << text;
        return Path(name);
    }
    std::string Path(std::string const& name) const { return "'" + dir_ + "/" + name + "'"; }

    std::string dir_;
    json values_;
};

TEST_F(OruFilesCliTest, DescribeAndValuesNameEverySampleSettingByPath) {
    json const description = json::parse(OruTest::ReadFile(dir_ + "/device.json"));
    ASSERT_TRUE(description.at("settings").is_array());
    // Every setting of the sample device that has an Info, the orientation
    // (a family without one) left out.
    EXPECT_EQ(description["settings"].size(), values_.size());
    bool gain = false;
    for (auto const& setting : description["settings"]) {
        EXPECT_TRUE(values_.contains(setting.at("path").get<std::string>())) << setting;
        if (setting["path"] == "Audio/Input/Gain") {
            gain = true;
            EXPECT_EQ(setting.at("type"), "Numeric:U32");
            EXPECT_EQ(setting.at("max"), 100);
            EXPECT_EQ(setting.at("default"), 50);
            EXPECT_EQ(setting.at("permission"), 3);
        }
    }
    EXPECT_TRUE(gain);
    EXPECT_EQ(values_.at("Audio/Input/Gain"), 72);
    EXPECT_EQ(values_.at("Device/Name"), "lobby-east");
    EXPECT_FALSE(values_.contains("Video/Mounting"));
}

TEST_F(OruFilesCliTest, CheckPrintsOneLinePerRefusedValueAndPassesOnceFixed) {
    // The sample's brightness, 130, lies above its maximum.
    auto const refused = RunTool("check " + Path("device.json") + " " + Path("values.json"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "/Video~1Brightness: 130 is above the maximum 100\n");
    EXPECT_EQ(refused.err, "");
    // The help shows the line as check prints it.
    EXPECT_NE(RunTool("help check").out.find("  " + refused.out), std::string::npos);

    values_["Video/Brightness"] = 80;
    auto const passed =
        RunTool("check " + Path("device.json") + " " + Write("fixed.json", values_.dump()));
    EXPECT_EQ(passed.status, 0) << passed.out << passed.err;
    EXPECT_EQ(passed.out, "all " + std::to_string(values_.size()) + " values pass\n");

    auto const machine = RunTool("check --json " + Path("device.json") + " " + Path("values.json"));
    EXPECT_EQ(machine.status, 1);
    json const out = json::parse(machine.out);
    EXPECT_EQ(out.at("passed"), false);
    EXPECT_EQ(out.at("applied"), values_.size() - 1);
    ASSERT_EQ(out.at("problems").size(), 1u);
    EXPECT_EQ(out["problems"][0].at("path"), "Video/Brightness");
    EXPECT_EQ(out["problems"][0].at("pointer"), "/Video~1Brightness");
}

TEST_F(OruFilesCliTest, CheckRefusesWhatTheSettingsCannotHold) {
    values_["Video/Brightness"] = 300;     // beyond a U8: never wrapped to 44
    values_["Audio/Input/Gain"] = "loud";  // not a number
    values_["Audio/Input/Nothing"] = 1;    // not described
    auto const run =
        RunTool("check " + Path("device.json") + " " + Write("bad.json", values_.dump()));
    EXPECT_EQ(run.status, 1);
    for (char const* path :
         {"/Video~1Brightness: ", "/Audio~1Input~1Gain: ", "/Audio~1Input~1Nothing: "}) {
        EXPECT_NE(("\n" + run.out).find(std::string("\n") + path), std::string::npos) << run.out;
    }
    EXPECT_NE(("\n" + run.out).find("\n/Video~1Brightness: 300 does not fit U8 (0 to 255)\n"),
              std::string::npos)
        << run.out;

    auto const broken =
        RunTool("check " + Write("broken.json", "{\"settings\": [") + " " + Path("values.json"));
    EXPECT_EQ(broken.status, 1);
    EXPECT_EQ(broken.err.rfind("oru check: " + dir_ + "/broken.json: ", 0), 0u) << broken.err;
    EXPECT_EQ(broken.out, "");

    auto const missing = RunTool("check " + Path("device.json") + " " + Path("none.json"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("cannot open"), std::string::npos) << missing.err;
    EXPECT_EQ(RunTool("check " + Path("device.json")).status, 2);
}

TEST_F(OruFilesCliTest, EncodeByPathChecksTheValueAndDecodeNamesIt) {
    std::string const names = " --names " + Path("device.json") + " ";
    auto const gain = RunTool("encode" + names + "Audio/Input/Gain 72");
    ASSERT_EQ(gain.status, 0) << gain.err;
    auto const decoded = RunTool("decode --hex" + names, gain.out);
    EXPECT_EQ(decoded.status, 0) << decoded.err;
    EXPECT_NE(decoded.out.find("(Audio/Input/Gain) Numeric:U32 size 4: 72\n  check: passes\n"),
              std::string::npos)
        << decoded.out;

    auto const refused = RunTool("encode" + names + "Audio/Input/Gain 101");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    // Named as oru check names it.
    EXPECT_EQ(refused.err,
              "oru encode: /Audio~1Input~1Gain: 101 is above the maximum 100\n"
              "oru encode: nothing written (--unchecked writes it all the same)\n");

    auto const unchecked = RunTool("encode --unchecked" + names + "Audio/Input/Gain 101");
    ASSERT_EQ(unchecked.status, 0) << unchecked.err;
    auto const shown = RunTool("decode --hex --json" + names, unchecked.out);
    json const record = json::parse(shown.out);
    EXPECT_EQ(record.at("path"), "Audio/Input/Gain");
    EXPECT_EQ(record.at("value"), "101");
    EXPECT_EQ(record.at("passes"), false);
    EXPECT_EQ(record.at("reason"), "101 is above the maximum 100");

    // Text needs no quotes; what a record cannot hold is refused even unchecked.
    auto const name = RunTool("encode" + names + "Device/Name lobby west");
    ASSERT_EQ(name.status, 0) << name.err;
    EXPECT_NE(RunTool("decode --hex" + names, name.out).out.find(": lobby west\n"),
              std::string::npos);
    EXPECT_EQ(RunTool("encode --unchecked" + names + "Video/Brightness 300").status, 1);
    auto const unknown = RunTool("encode" + names + "Audio/Input/Nothing 1");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.err.find("describes no setting 'Audio/Input/Nothing'"), std::string::npos);

    // A record whose id the description lacks keeps its numbers.
    auto const foreign = RunTool("encode Numeric:U32 0x7F000001 5");
    auto const odd = RunTool("decode --hex" + names, foreign.out);
    EXPECT_NE(odd.out.find(", not in the description)"), std::string::npos) << odd.out;
}

// encode --names, decode --names and check answer with the one check: a value
// passes all three or none, and is refused with the same line.
TEST_F(OruFilesCliTest, EveryCommandAnswersWithTheOneCheck) {
    std::string const device = dir_ + "/device.json";
    json cases = values_;
    cases["Video/FrameRate"] = 6.5;  // a float record keeps whole numbers
    for (auto const& [path, value] : cases.items()) {
        SCOPED_TRACE(path + " " + value.dump());
        auto const checked = RunTool("check " + Path("device.json") + " " +
                                     Write("one.json", json{{path, value}}.dump()));
        auto const encoded =
            OruTest::RunToolArgs({"encode", "--names", device, path, value.dump()});
        if (checked.status == 0) {
            EXPECT_EQ(checked.out, "all 1 values pass\n");
            EXPECT_EQ(encoded.status, 0) << encoded.err;
            auto const decoded =
                RunTool("decode --hex --names " + Path("device.json"), encoded.out);
            EXPECT_EQ(decoded.status, 0);
            EXPECT_NE(decoded.out.find("\n  check: passes\n"), std::string::npos) << decoded.out;
            continue;
        }
        EXPECT_EQ(checked.status, 1);
        EXPECT_EQ(encoded.status, 1);
        EXPECT_EQ(encoded.out, "");
        // Every line of check's, then why nothing was written.
        std::string expected;
        std::size_t start = 0;
        for (std::size_t end; (end = checked.out.find('\n', start)) != std::string::npos;
             start = end + 1) {
            expected += "oru encode: " + checked.out.substr(start, end - start + 1);
        }
        EXPECT_EQ(encoded.err,
                  expected + "oru encode: nothing written (--unchecked writes it all the same)\n");
        EXPECT_EQ(
            OruTest::RunToolArgs({"encode", "--unchecked", "--names", device, path, value.dump()})
                .status,
            0);
    }
    // A refused value written all the same is refused again when decoded.
    auto const unchecked = OruTest::RunToolArgs(
        {"encode", "--unchecked", "--names", device, "Video/Brightness", "130"});
    EXPECT_EQ(RunTool("decode --hex --names " + Path("device.json"), unchecked.out).out,
              "@0 0x01000002 (Video/Brightness) Numeric:U8 size 1: 130\n"
              "  check: refused: 130 is above the maximum 100\n");
}

// describe FILE writes back what the library read: the sample's own
// description unchanged, a short one with every key filled in.
TEST_F(OruFilesCliTest, DescribeFileWritesWhatWasUnderstood) {
    auto const same = RunTool("describe " + Path("device.json"));
    EXPECT_EQ(same.status, 0) << same.err;
    EXPECT_EQ(same.out, OruTest::ReadFile(dir_ + "/device.json"));

    std::string const terse =
        R"({"settings": [{"path": "Video/Gop", "type": "Numeric:U16", "max": 300}]})";
    auto const filled = RunTool("describe -", terse);
    ASSERT_EQ(filled.status, 0) << filled.err;
    json const setting = json::parse(filled.out).at("settings").at(0);
    EXPECT_EQ(setting.at("path"), "Video/Gop");
    EXPECT_EQ(setting.at("type"), "Numeric:U16");
    EXPECT_EQ(setting.at("min"), 0);
    EXPECT_EQ(setting.at("max"), 300);
    EXPECT_EQ(setting.at("default"), 0);
    EXPECT_EQ(setting.at("permission"), 0);
    EXPECT_TRUE(setting.contains("id")) << setting;
    // Read again, the written form is a fixed point.
    EXPECT_EQ(RunTool("describe -", filled.out).out, filled.out);

    struct Bad {
        char const* text;
        char const* err;
    };
    Bad const bad[] = {
        {R"({"settings": [{"path": "A/B", "type": "Numeric:U8", "max": 300}]})",
         "oru describe: standard input: /settings/0/max (A/B): 300 does not fit U8 (0 to 255)\n"},
        {"{\"settings\": [", nullptr},
    };
    for (Bad const& row : bad) {
        SCOPED_TRACE(row.text);
        auto const run = RunTool("describe -", row.text);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        if (row.err) {
            EXPECT_EQ(run.err, row.err);
        } else {
            EXPECT_EQ(run.err.rfind("oru describe: standard input: ", 0), 0u) << run.err;
        }
    }
    auto const missing = RunTool("describe " + Path("none.json"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("cannot open"), std::string::npos) << missing.err;
}

TEST(OruFilesCliDemoTest, DemoSaysWhyACheckFailed) {
    auto const run = RunTool("demo");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("Setting 'Video/Brightness': the value is above the maximum 100"),
              std::string::npos);
}

}  // namespace
