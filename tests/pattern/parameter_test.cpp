// Conversions to typed values, held against those of the C library in the "C" locale.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "Common/Pattern/pattern_exact_float.h"
#include "engine_support.h"

using namespace NPattern;

namespace {

Parameter OfType(ParameterType type)
{
    Parameter parameter;
    parameter.mType = type;
    return parameter;
}

double FloatOf(const std::string& text)
{
    Parameter parameter = OfType(kTypeFloat);
    const HeapMessage message(text);
    parameter.SetTextValue(message.Data(), message.Length(), false);
    return parameter.mFloatValue;
}

int IntegerOf(const std::string& text, bool hex)
{
    Parameter parameter = OfType(kTypeBInteger);
    const HeapMessage message(text);
    parameter.SetTextValue(message.Data(), message.Length(), hex);
    return parameter.mIntValue;
}

void ExpectSameDouble(const std::string& text)
{
    const double expected = std::strtod(text.c_str(), nullptr);
    const double found = FloatOf(text);
    if (std::isnan(expected)) {
        EXPECT_TRUE(std::isnan(found)) << text;
    } else {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(found), std::bit_cast<std::uint64_t>(expected))
            << text;
    }
}

// Separated by a space.
constexpr const char* kFloats =
    ". - 1e 1e+ 1e400 -0x. 0xfp+-1 0x1p+-5000 1e-400 -1e-400 4.9e-324 2.4e-324 "
    "2.2250738585072011e-308 1e99999999999999999999 1e-99999999999999999999 0e99999 0x 0xf -0x.g "
    "0x.f 0x1.8p3 -0X1p-1074 0x1p-1076 0x1p5000 0x1.fffffffffffff8p0 -0xg1 -INFINITY nan -nan "
    "nan(12) 1,5";
constexpr const char* kExactFloats =
    ". e5 1x5 1e+x 1.e5 .5 000.000e99999 1e400 1e-99999999999999999999 Infinity 4.9e-324 "
    "2.4703282292062327e-324 2.4703282292062328e-324 1.7976931348623157e308 "
    "1.7976931348623158e308 1.7976931348623159e308 179769313486231581e291 9007199254740993 "
    "9007199254740993.0000000000000000000000000001 0.1e-22";

std::vector<std::string> Words(const char* text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST(Parameter, FloatsAreThoseOfTheCLibrary)
{
    ExpectSameDouble(" \t\n\v\f\r+1.5x");
    for (const std::string& text : Words(kFloats)) ExpectSameDouble(text);
    // Some C libraries return -0.0 here.
    for (const char* text : {"--1", "+-1"}) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(FloatOf(text)), 0U) << text;
    }
    // The exponent and the number of digits pull in opposite directions.
    const std::string zeros(2000, '0');
    ExpectSameDouble(std::string(400, '9'));
    for (std::string text : Words("0._1e1900 0._1e2000 0._1e2350 _1e350 _1e-350 1_e-1690 1_e-2500 "
                                  "1_x-5000 1._e-350 1._e350 0x._1p6910 0x._1p9050")) {
        ExpectSameDouble(text.replace(text.find('_'), 1, zeros));
    }

    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        char text[64];
        const auto bits = std::bit_cast<double>(random());
        std::snprintf(text, sizeof text, i % 2 == 0 ? "%.*g" : "%.*a", i % 20, bits);
        ExpectSameDouble(text);
    }
}

// For the standard libraries that need it; here it is held against the C library everywhere.
TEST(Parameter, ExactFloatsAreThoseOfTheCLibrary)
{
    const auto expectSame = [](const std::string& text, unsigned radix) {
        const std::string prefix = radix == 16 ? "0x" : "";
        const double expected = std::strtod((prefix + text).c_str(), nullptr);
        const HeapMessage message(text);
        const auto* const chars = reinterpret_cast<const char*>(message.Data());
        const double found = ExactFloatOf({chars, message.Length()}, radix).value_or(0.0);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(found), std::bit_cast<std::uint64_t>(expected))
            << text;
    };
    for (const std::string& text : Words(kExactFloats)) {
        expectSame(text, 10);
    }
    EXPECT_TRUE(std::isnan(*ExactFloatOf("NaN(1)", 10)));
    EXPECT_FALSE(ExactFloatOf("x", 10).has_value());
    expectSame("0." + std::string(500, '0') + "1e500", 10);
    expectSame(std::string(2000, '9') + "e-1700", 10);
    expectSame(std::string(1000, 'f') + "p-4000", 16);
    expectSame("18446744073709551615", 10);
    for (const char* text : {"1", "1a", "1.2.3", "1e", "1e320", "1e99999"}) expectSame(text, 10);
    for (const char* text :
         {"12345678901234567890p-1140", "1p1050", "1p9000", "1p-9000", "1p+4", "1e5", "1g"}) {
        expectSame(text, 16);
    }

    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::bit_cast<double>(random() >> (1 + random() % 8));
        const double next = std::nextafter(value, 0.0);
        if (!std::isfinite(value)) continue;
        char text[1200];
        std::snprintf(text, sizeof text, "%.*e", i % 25, value);
        expectSame(text, 10);
        std::snprintf(text, sizeof text, "%.*a", i % 25, value);
        expectSame(text + 2, 16);
        // Halfway between two doubles, and just above.
        const auto halfway = (static_cast<long double>(value) + next) / 2;
        if (i % 100 != 0 || next == 0.0) continue;
        std::snprintf(text, sizeof text, "%.1100Le", halfway);
        expectSame(text, 10);
        std::string above = text;
        expectSame(above.insert(above.find('e'), "10"), 10);
    }
}

// The conversion while a number is scanned produces the same bits as the exact one.
TEST(Parameter, NumbersConvertedWhileScannedAreTheSame)
{
    Pattern pattern;
    pattern.SetPatternString("f:float=.#");
    std::mt19937_64 random(2);
    std::vector<Parameter> parameters;
    for (int i = 0; i < 50000; ++i) {
        std::string text = std::to_string(random() >> random() % 64);
        const auto point = static_cast<std::ptrdiff_t>(random() % (text.size() + 1));
        text.insert(text.begin() + point, '.');
        if (i % 3 == 0) text.insert(text.begin(), '-');
        const HeapMessage message(text);
        ASSERT_NE(pattern.Match(message.Data(), message.Length()), nullptr);
        pattern.CollectParameters(parameters);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(parameters[0].mFloatValue),
                  std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)))
            << text;
    }
}

TEST(Parameter, IntegersAreClampedTo32Bits)
{
    for (const bool hex : {false, true}) {
        for (const char* text :
             {"12", " \r\n-7", "-", "0x1F", "0x", "0xG", "-0x80000001", "ff", "2147483648",
              "-2147483649", "99999999999999999999", "FFFFFFFF", "12abc", "-+1", ""}) {
            // strtol returns 64 bits here; the engine returns the nearest 32-bit value.
            const long value = std::strtol(text, nullptr, hex ? 16 : 10);
            const long expected = std::min(std::max(value, long{INT_MIN}), long{INT_MAX});
            EXPECT_EQ(IntegerOf(text + "\0 9"s, hex), expected) << text << (hex ? " hex" : "");
        }
    }
}

TEST(Parameter, TextEndsAtItsLengthOrItsNul)
{
    const HeapMessage message("12\0.5"s);
    Parameter parameter = OfType(kTypeString);
    parameter.SetTextValue(message.Data(), 4, false);
    EXPECT_EQ(parameter.mStringValue, "12\0."s);
    parameter.SetTextValue(message.Data(), 0, true);
    EXPECT_EQ(parameter.mStringValue, "12");
}

TEST(Parameter, EachTypeKeepsItsValueInItsOwnField)
{
    struct Row {
        ParameterType mType;
        const char* mText;  // of "12", then of the two bytes "12", then of 0x80000000
        const char* mBinary;
        const char* mInteger;
    };
    for (const Row& row : {Row{kTypeString, "7 8 12", "7 8 12", "7 8 -2147483648"},
                           Row{kTypeFloat, "7 12 9", "7 12849 9", "7 -2147483648 9"},
                           Row{kTypeLInteger, "12 8 9", "12849 8 9", "-2147483648 8 9"},
                           Row{kTypeBInteger, "12 8 9", "12594 8 9", "-2147483648 8 9"},
                           Row{kTypeNone, "7 8 9", "7 8 9", "7 8 9"}}) {
        const HeapMessage message("12");
        const auto fieldsAfter = [&row](auto set) {
            Parameter parameter{"", row.mType, 7, 8.0, "9"};
            set(parameter);
            std::ostringstream fields;
            fields.precision(10);
            fields << parameter.mIntValue << ' ' << parameter.mFloatValue << ' '
                   << parameter.mStringValue;
            return fields.str();
        };
        const auto* const data = message.Data();
        EXPECT_EQ(fieldsAfter([&](Parameter& p) { p.SetTextValue(data, 2, false); }), row.mText);
        EXPECT_EQ(fieldsAfter([&](Parameter& p) { p.SetBinaryValue(data, 2); }), row.mBinary);
        EXPECT_EQ(fieldsAfter([](Parameter& p) { p.SetIntegerValue(0x80000000); }), row.mInteger);
    }
}

// A host may set any locale: one with a decimal comma, one with other letters and another i.
class InLocale : public testing::TestWithParam<const char*> {};

TEST_P(InLocale, EveryResultIsTheSame)
{
    if (std::getenv("LOCPATH") == nullptr) GTEST_SKIP() << "the build made no locales";
    ASSERT_NE(std::setlocale(LC_ALL, GetParam()), nullptr);
    char formatted[16];
    std::snprintf(formatted, sizeof formatted, "%.1f", 1.5);
    EXPECT_STREQ(formatted, "1,5") << "the locale isn't in force";

    EXPECT_EQ(FloatOf("1.5"), 1.5);
    EXPECT_EQ(FloatOf("1,5"), 1.0);
    EXPECT_EQ(FloatOf("12345678901234567890.5e-3"), 12345678901234567.8905);
    Pattern pattern;
    pattern.SetPatternString("n:FLOAT=.DIGITS \"i\xFD\" s:STRING=LETTERS eol");
    EXPECT_EQ(MatchResult(pattern,
                          "2.5I\xFD"
                          "a\xFD\n"),
              "n=2.5 s=\"a\" | ");
    EXPECT_EQ(MatchResult(pattern,
                          "2.5\xDD\xFD"
                          "a\n"),
              "no match");
    EXPECT_EQ(MatchResult(pattern,
                          "2.5i\xDD"
                          "a\n"),
              "no match");
    EXPECT_THROW(pattern.SetPatternString("\xFD"), PatternSyntaxException);
    std::setlocale(LC_ALL, "C");
}

INSTANTIATE_TEST_SUITE_P(Parameter, InLocale, testing::Values("de_DE", "tr_TR"));

}  // namespace
