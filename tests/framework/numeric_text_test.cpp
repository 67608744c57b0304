// The rule of the numeric fields, as a table: what is numeric, what it is worth, what integer it becomes.
#include <gtest/gtest.h>
#include <plovix/base/failure.h>
#include <plovix/framework/numeric_text.h>

#include <limits>
#include <sstream>
#include <vector>

namespace plovix {
namespace {

// "not numeric", "overflow", or the integer.
std::string Read(std::string_view text, std::string_view separator = ".") {
  const auto number = NumericText::Parse(text, separator);
  if (!number) return "not numeric";
  try {
    return std::to_string(number->ToInt32());
  } catch (const Failure& failure) {
    return failure.Number() == failure_number::kOverflow ? "overflow" : "failure";
  }
}

TEST(NumericText, Table) {
  // What is read, and texts that read so, a bar between them.
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"0", "0|.5|0.5|-0.5|0.05|5e-1|1e-400|-1e-2000000000|0e2000000000|0e-99999999999999999999"},
      {"1", "1|0.50000000000000001|0.95|.001e3|51e-2"},
      {"2", "1.5|2.5|2.4999999999999999999999|25e-1|25E-1"},
      {"3", "\r\n3|3.4999999999999999999|2.50000000000000000001"},
      {"4", "35e-1|004|  4\t"},
      {"5", "+5|5."},
      {"-2", "-1.5|-2.5|-2"},
      {"-3", "-2.50000000000000000001"},
      {"1000", "1e3|1e+3|1e0000000000000000000003"},
      {"2147483646", "2147483646.5"},
      {"2147483647", "2147483647|2147483647.4"},
      {"-2147483648", "-2147483648|-2147483648.5"},
      {"overflow", "2147483647.5|2147483648|-2147483648.50001|-2147483649|1e10|1.7976931348623157e308"},
      {"not numeric", "1.7976931348623159e308|1e309|-1e309|1e2000000000|1e99999999999999999999"},
      {"not numeric", "|   |.|-|+.|1ex|e5|.e5|1e|1e+|1e1.5|--1|+-1|- 1|1-|1..2|1.000.000|1,000|1 000"},
      {"not numeric", "(5)|$5|5%|0x10|&H10|1d3|1f|inf|nan|infinity|one|\u0661|1\u00a0000|\u00a01"},
  };
  for (const auto& [read, texts] : rows) {
    std::stringstream each(texts + "|");
    for (std::string text; std::getline(each, text, '|');) EXPECT_EQ(Read(text), read) << '"' << text << '"';
  }
  EXPECT_EQ(Read(std::string_view("1\0", 2)), "not numeric");
  // The host's separator is the only one.
  EXPECT_EQ(Read("1,5", ","), "2");
  EXPECT_EQ(Read("1.5", ","), "not numeric");  // never 15
  EXPECT_EQ(Read("1\u066b5", "\u066b"), "2");  // a separator of two bytes
  EXPECT_EQ(Read("1.5", ""), "not numeric");
}

TEST(NumericText, Value) {
  EXPECT_EQ(NumericText::Parse("-2.5e-3")->Value(), -0.0025);
  EXPECT_EQ(NumericText::Parse("5e-324")->Value(), 5e-324);
  EXPECT_EQ(NumericText::Parse("1.7976931348623157e308")->Value(), 1.7976931348623157e308);
  EXPECT_EQ(NumericText::Parse("2e-324")->Value(), 0.0);
  for (const char* text : {"0.3", "5e-324"}) EXPECT_TRUE(NumericText::Parse(text)->IsGreaterThan(0)) << text;
  for (const char* text : {"0", "-1", "-0.3", "0e9", "1e-400"})
    EXPECT_FALSE(NumericText::Parse(text)->IsGreaterThan(0)) << text;
}

// A million characters cost a moment and no memory to speak of.
TEST(NumericText, LongTexts) {
  const std::string zeros(1'000'000, '0');
  EXPECT_EQ(Read(zeros + "12"), "12");
  EXPECT_EQ(Read("2.5" + zeros + "1"), "3");
  EXPECT_EQ(Read("0." + zeros + "25e1000001"), "2");
  EXPECT_EQ(Read("25" + zeros + "e-1000001"), "2");
  EXPECT_EQ(Read("1" + zeros), "not numeric");
  EXPECT_EQ(Read("2.5" + zeros + "101e-1"), "0");
  // Halfway between 1 and the next double: one digit far behind decides.
  const std::string half = "1.00000000000000011102230246251565404236316680908203125";
  EXPECT_EQ(NumericText::Parse(half + zeros)->Value(), 1.0);
  EXPECT_EQ(NumericText::Parse(half + zeros + "1")->Value(), 1.0 + std::numeric_limits<double>::epsilon());
}

}  // namespace
}  // namespace plovix
