#include "platform/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>

TEST(NumberText, NumbersTakeTheLeadingDigitsOnlyWhateverTheLocale)
{
    const std::pair<const char*, int> ints[] = {{"42", 42},  {"  -7 apples", -7}, {"+3", 3},
                                                {"3.9", 3},  {"x1", 0},           {"", 0},
                                                {"99999999999999999999", INT_MAX}, {"-99999999999999999999", INT_MIN}};
    for (const auto& [text, value] : ints)
        EXPECT_EQ(NumberText::ToInt(text), value) << text;

    // A locale with a decimal comma must not change how files are read.
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    const std::pair<const char*, double> doubles[] = {{"4.65", 4.65}, {" -1.5e2mm", -150.0}, {"+.5", 0.5},
                                                      {"4,65", 4.0},  {"abc", 0.0},          {"", 0.0},
                                                      {"1e-999", 0.0}};
    for (const auto& [text, value] : doubles)
        EXPECT_DOUBLE_EQ(NumberText::ToDouble(text), value) << text;
    EXPECT_TRUE(std::isinf(NumberText::ToDouble("1e999")));
    EXPECT_LT(NumberText::ToDouble("-1e999"), 0.0);
    std::setlocale(LC_NUMERIC, "C");
}
