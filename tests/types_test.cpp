#include <gtest/gtest.h>

#include <sstream>

#include <legacy/oru/types.h>

#include "test_util.h"
#include "typetext.h"

namespace {

using namespace Legacy::Oru;
using OruTest::TextOf;

TEST(TypeTextTest, FamiliesWithoutTextPrintInvalid) {
    struct Row {
        unsigned value;
        char const* text;
    } const rows[] = {
        {0, "Undefined"},         {1, "Bool"},          {2, "Numeric"},
        {8, "BoolArray"},         {9, "Invalid"},       {10, "Invalid"},
        {128, "Colour"},          {131, "Orientation"}, {132, "Invalid"},
        {135, "LocalizedString"}, {138, "Connection"},  {139, "Invalid"},
        {140, "Invalid"},         {141, "Invalid"},     {252, "Invalid"},
        {253, "Composite"},       {254, "Collection"},  {255, "Invalid"},
        {0x10002, "Invalid"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(TextOf(static_cast<OruType_t>(row.value)), row.text);
    }
    std::ostringstream out;
    out << NumericType_t::Double << ' ' << static_cast<NumericType_t>(11);
    EXPECT_EQ(out.str(), "Double Invalid");
}

TEST(TypeTextTest, OneRunAndBracketedForms) {
    EXPECT_EQ(TypeText(OruType_t::Numeric, NumericType_t::U32), "NumericU32");
    EXPECT_EQ(TypeText(OruType_t::Bool, NumericType_t::Undefined), "Bool");
    EXPECT_EQ(TypeText(OruType_t::Numeric, static_cast<NumericType_t>(11)), "NumericInvalid");
    EXPECT_EQ(BracketedTypeText(OruType_t::Numeric, NumericType_t::U32), "Numeric(U32)");
    EXPECT_EQ(BracketedTypeText(OruType_t::Bool, NumericType_t::Undefined), "Bool(Undefined)");
    EXPECT_EQ(BracketedTypeText(OruType_t::StringSparse, NumericType_t::Undefined),
              "Invalid(Undefined)");
}

TEST(PermissionTest, HoldsSixteenBits) {
    EXPECT_EQ(Permission_t().Value(), 0);
    EXPECT_EQ(Permission_t(0xFFFF).Value(), 0xFFFF);
    EXPECT_EQ(Permission_t(3), Permission_t(3));
    EXPECT_NE(Permission_t(3), Permission_t(4));
}

}  // namespace
