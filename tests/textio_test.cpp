#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/oru.h>

#include "textio.h"

namespace {

using namespace Legacy::Oru;

// A failed extraction stores 0 (false for a bool) before the failure shows,
// so a reader that read into the value itself would lose it. The families'
// own tests start from values that hide this.
TEST(TextIOTest, FieldReaderKeepsTheValueWhenTheReadFails) {
    std::ostringstream errors;

    bool flag = true;
    std::istringstream word("x");
    EXPECT_FALSE(TextIO::ReadField(word, errors, "flag", flag));
    EXPECT_TRUE(flag);

    int number = 7;
    std::istringstream letters("x1");
    EXPECT_FALSE(TextIO::ReadField(letters, errors, "number", number));
    EXPECT_EQ(number, 7);
    std::istringstream digits("12 13");
    EXPECT_TRUE(TextIO::ReadField(digits, errors, "number", number));
    EXPECT_EQ(number, 12);

    unsigned char byte = 9;
    std::istringstream bytes("300 y");
    EXPECT_TRUE(TextIO::ReadField(bytes, errors, "byte", byte, &TextIO::ReadTextNumber<U8Traits>));
    EXPECT_EQ(byte, 44);
    EXPECT_FALSE(TextIO::ReadField(bytes, errors, "byte", byte, &TextIO::ReadTextNumber<U8Traits>));
    EXPECT_EQ(byte, 44);

    EXPECT_EQ(errors.str(), "Error parsing flag\nError parsing number\nError parsing byte\n");
}

}  // namespace
