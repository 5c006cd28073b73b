#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <legacy/oru/oru.h>

namespace {

// The version reaches the header, the library and the build from the one
// project() call; a stale generated header or library shows here.
TEST(Version, OneVersionEverywhere) {
    EXPECT_STREQ(Legacy::Oru::Version(), ORU_VERSION_STRING);
    EXPECT_STREQ(ORU_VERSION_STRING, ORU_PROJECT_VERSION);
    std::string const parts = std::to_string(ORU_VERSION_MAJOR) + "." +
                              std::to_string(ORU_VERSION_MINOR) + "." +
                              std::to_string(ORU_VERSION_PATCH);
    EXPECT_EQ(parts, ORU_VERSION_STRING);
}

}  // namespace
