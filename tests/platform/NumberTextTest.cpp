#include "platform/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

TEST(NumberText, IntegersTakeTheLeadingDigitsOnly)
{
    EXPECT_EQ(NumberText::ToInt("42"), 42);
    EXPECT_EQ(NumberText::ToInt("  -7 apples"), -7);
    EXPECT_EQ(NumberText::ToInt("+3"), 3);
    EXPECT_EQ(NumberText::ToInt("3.9"), 3);
    EXPECT_EQ(NumberText::ToInt("x1"), 0);
    EXPECT_EQ(NumberText::ToInt(""), 0);
    EXPECT_EQ(NumberText::ToInt("99999999999999999999"), INT_MAX);
    EXPECT_EQ(NumberText::ToInt("-99999999999999999999"), INT_MIN);
}

TEST(NumberText, DecimalsTakeTheLeadingNumberWhateverTheLocale)
{
    // A locale with a decimal comma must not change how files are read.
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    EXPECT_DOUBLE_EQ(NumberText::ToDouble("4.65"), 4.65);
    EXPECT_DOUBLE_EQ(NumberText::ToDouble(" -1.5e2mm"), -150.0);
    EXPECT_DOUBLE_EQ(NumberText::ToDouble("+.5"), 0.5);
    EXPECT_DOUBLE_EQ(NumberText::ToDouble("4,65"), 4.0);
    EXPECT_DOUBLE_EQ(NumberText::ToDouble("abc"), 0.0);
    EXPECT_DOUBLE_EQ(NumberText::ToDouble(""), 0.0);
    EXPECT_TRUE(std::isinf(NumberText::ToDouble("1e999")));
    EXPECT_LT(NumberText::ToDouble("-1e999"), 0.0);
    EXPECT_DOUBLE_EQ(NumberText::ToDouble("1e-999"), 0.0);
    std::setlocale(LC_NUMERIC, "C");
}
