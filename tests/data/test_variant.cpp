#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "data/variant.h"

namespace rm {
namespace {

// Text to number: the whole text must be a number in the C locale; blanks around are allowed.
TEST(VariantTextToNumber, ParsesWholeTextWithSurroundingBlanks) {
    EXPECT_EQ(Variant(" 42 ").As<int32_t>(), 42);
    EXPECT_EQ(Variant("\t-17\n").As<int16_t>(), -17);
    EXPECT_EQ(Variant("+7").As<int32_t>(), 7);
    EXPECT_EQ(Variant("1e3").As<int32_t>(), 1000);
    EXPECT_DOUBLE_EQ(Variant(".5").As<double>(), 0.5);
    EXPECT_DOUBLE_EQ(Variant("-2.25E-2").As<double>(), -0.0225);
    EXPECT_EQ(Variant("255").As<uint8_t>(), 255);
}

TEST(VariantTextToNumber, RejectsAnythingThatIsNotAWholeNumber) {
    for (const char* bad : {"", "   ", "abc", "12abc", "1 2", "0x10", "1,5", "--1", "1e", "1..2", "."}) {
        EXPECT_THROW(Variant(bad).As<double>(), VariantConversionError) << '"' << bad << '"';
        EXPECT_THROW(Variant(bad).As<int32_t>(), VariantConversionError) << '"' << bad << '"';
    }
}

TEST(VariantTextToNumber, OverflowThrowsAndUnderflowIsZero) {
    EXPECT_THROW(Variant("1e400").As<double>(), VariantConversionError);
    EXPECT_THROW(Variant("-1e400").As<double>(), VariantConversionError);
    EXPECT_EQ(Variant("1e-400").As<double>(), 0.0);
    EXPECT_THROW(Variant("32768").As<int16_t>(), VariantConversionError);
    EXPECT_EQ(Variant("-32768").As<int16_t>(), -32768);
    EXPECT_THROW(Variant("2147483648").As<int32_t>(), VariantConversionError);
    EXPECT_EQ(Variant("-2147483648").As<int32_t>(), std::numeric_limits<int32_t>::min());
    EXPECT_THROW(Variant("256").As<uint8_t>(), VariantConversionError);
    EXPECT_THROW(Variant("-1").As<uint8_t>(), VariantConversionError);
}

// Numbers narrowed to integers round half to even, then must fit.
TEST(VariantNumberToInteger, RoundsHalfToEvenWithRangeCheck) {
    EXPECT_EQ(Variant(0.5).As<int32_t>(), 0);
    EXPECT_EQ(Variant(1.5).As<int32_t>(), 2);
    EXPECT_EQ(Variant(2.5).As<int32_t>(), 2);
    EXPECT_EQ(Variant(-0.5).As<int32_t>(), 0);
    EXPECT_EQ(Variant(-1.5).As<int32_t>(), -2);
    EXPECT_EQ(Variant(2.5000001).As<int32_t>(), 3);
    EXPECT_EQ(Variant("3.5").As<int16_t>(), 4);
    EXPECT_EQ(Variant(32767.4).As<int16_t>(), 32767);
    EXPECT_THROW(Variant(32767.5).As<int16_t>(), VariantConversionError);
    EXPECT_EQ(Variant(254.5).As<uint8_t>(), 254);
    EXPECT_THROW(Variant(255.5).As<uint8_t>(), VariantConversionError);
    EXPECT_THROW(Variant(std::nan("")).As<int32_t>(), VariantConversionError);
    EXPECT_THROW(Variant(int32_t{70000}).As<int16_t>(), VariantConversionError);
    EXPECT_EQ(Variant(int16_t{-5}).As<int32_t>(), -5);
    EXPECT_THROW(Variant(int16_t{-5}).As<uint8_t>(), VariantConversionError);
}

TEST(VariantEmptyAndNull, EmptyIsZeroOrNothingNullConvertsToNothing) {
    EXPECT_EQ(Variant().As<int32_t>(), 0);
    EXPECT_EQ(Variant().As<double>(), 0.0);
    EXPECT_EQ(Variant().As<std::string>(), "");
    EXPECT_EQ(Variant().ChangeType(VarType::Null).type(), VarType::Null);
    const Variant null = Variant::MakeNull();
    EXPECT_TRUE(null.IsEmptyOrNull());
    EXPECT_THROW(null.As<int32_t>(), VariantConversionError);
    EXPECT_THROW(null.As<std::string>(), VariantConversionError);
    EXPECT_EQ(null.ChangeType(VarType::Empty).type(), VarType::Empty);
    EXPECT_EQ(null.ChangeType(VarType::Null).type(), VarType::Null);
    EXPECT_THROW(Variant(3).ChangeType(VarType::Null), VariantConversionError);
}

// Integers and text as they are; doubles with 15 significant digits when they read back
// exactly, else 17.
TEST(VariantToText, IntegersAndTextAsTheyAreDoublesInFifteenDigitsUnlessThatLosesTheValue) {
    EXPECT_EQ(Variant(int16_t{-32768}).ToText(), "-32768");
    EXPECT_EQ(Variant(int32_t{123456789}).ToText(), "123456789");
    EXPECT_EQ(Variant(uint8_t{1}).ToText(), "1");
    EXPECT_EQ(Variant("C:\\QorData\\").ToText(), "C:\\QorData\\");
    EXPECT_EQ(Variant(0.1).ToText(), "0.1");
    EXPECT_EQ(Variant(10.0).ToText(), "10");
    EXPECT_EQ(Variant(-2.5).ToText(), "-2.5");
    EXPECT_EQ(Variant(1e20).ToText(), "1e+20");
    // 1/3 is 0.333333333333333314829...: 15 digits read back as another double.
    EXPECT_EQ(Variant(1.0 / 3.0).ToText(), "0.33333333333333331");
    // 0.1 + 0.2 is 0.300000000000000044408...
    EXPECT_EQ(Variant(0.1 + 0.2).ToText(), "0.30000000000000004");
}

TEST(VariantToText, EveryDoubleSurvivesTextAndBack) {
    std::mt19937_64 random(12345);
    for (int i = 0; i < 20000; ++i) {
        uint64_t bits = random();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        if (!std::isfinite(v)) continue;
        const std::string text = Variant(v).ToText();
        EXPECT_EQ(Variant::FromText(VarType::Double, text).As<double>(), v) << text;
    }
    EXPECT_TRUE(std::isinf(Variant::FromText(VarType::Double, Variant(-HUGE_VAL).ToText()).As<double>()));
    EXPECT_TRUE(std::isnan(Variant::FromText(VarType::Double, Variant(std::nan("")).ToText()).As<double>()));
}

TEST(VariantFromText, BuildsTheStoredType) {
    Variant v = Variant::FromText(VarType::I16, "12");
    EXPECT_EQ(v.type(), VarType::I16);
    EXPECT_EQ(v, Variant(int16_t{12}));
    EXPECT_NE(v, Variant(int32_t{12}));  // same number, another tag
    EXPECT_EQ(Variant::FromText(VarType::Text, " x ").As<std::string>(), " x ");
    EXPECT_THROW(Variant::FromText(VarType::U8, "yes"), VariantConversionError);
}

// The user's locale must not leak into the stored text: a comma-decimal locale changes nothing.
TEST(VariantLocale, CommaDecimalLocaleDoesNotChangeTheText) {
    const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
    const char* found = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "fr_FR.utf8"}) {
        if (std::setlocale(LC_NUMERIC, name) != nullptr) {
            found = name;
            break;
        }
    }
    if (found == nullptr) GTEST_SKIP() << "no comma-decimal locale is installed (tried de_DE and fr_FR)";
    char probe[16];
    std::snprintf(probe, sizeof probe, "%.1f", 1.5);
    const bool commaLocale = std::string(probe) == "1,5";
    EXPECT_EQ(Variant(1.5).ToText(), "1.5");
    EXPECT_EQ(Variant(1.0 / 3.0).ToText(), "0.33333333333333331");
    EXPECT_EQ(Variant("1.5").As<double>(), 1.5);
    EXPECT_THROW(Variant("1,5").As<double>(), VariantConversionError);
    std::setlocale(LC_NUMERIC, saved.c_str());
    EXPECT_TRUE(commaLocale) << found << " did not switch the decimal separator";
}

}  // namespace
}  // namespace rm
