#include <gtest/gtest.h>
#include <plovix/standalone/storage/category_column.h>
#include <plovix/standalone/storage/json_text.h>
#include <plovix/standalone/storage/settings_column.h>

namespace plovix {
namespace {

using namespace std::string_literals;

TEST(JsonText, EscapesExactlyWhatIsNotUtf8) {
  const struct {
    std::string text, json_text;
  } cases[] = {
      {"", ""},
      {"plain \"quoted\" \\ \0 \x7F"s, "plain \"quoted\" \\ \0 \x7F"s},
      {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {"\xED\x9F\xBF\xEE\x80\x80", "\xED\x9F\xBF\xEE\x80\x80"},
      {"a\x80z",
       "a\xF4\x8F\xBF\xBF"
       "80z"},
      {"\xC3",
       "\xF4\x8F\xBF\xBF"
       "c3"},
      {"\xC0\xAF",
       "\xF4\x8F\xBF\xBF"
       "c0\xF4\x8F\xBF\xBF"
       "af"},
      {"\xE0\x9F\xBF",
       "\xF4\x8F\xBF\xBF"
       "e0\xF4\x8F\xBF\xBF"
       "9f\xF4\x8F\xBF\xBF"
       "bf"},
      {"\xED\xA0\x80",
       "\xF4\x8F\xBF\xBF"
       "ed\xF4\x8F\xBF\xBF"
       "a0\xF4\x8F\xBF\xBF"
       "80"},
      {"\xF4\x90",
       "\xF4\x8F\xBF\xBF"
       "f4\xF4\x8F\xBF\xBF"
       "90"},
      {"\xF4\x8F\xBF\xBF"
       "80",
       "\xF4\x8F\xBF\xBF\xF4\x8F\xBF\xBF"
       "80"},
  };
  for (const auto& test : cases) {
    EXPECT_EQ(ToJsonText(test.text), test.json_text);
    EXPECT_EQ(FromJsonText(test.json_text), test.text);
  }
}

TEST(CategoryColumn, ReadsItsArraysAndTakesAnyOtherTextForOneCategory) {
  const struct {
    std::string column;
    std::vector<CategoryRecord> categories;
  } cases[] = {
      {"", {}},
      {"[]", {}},
      {R"([{"tag":"A","public":true},{"tag":"","public":false}])", {{"A", true}, {"", false}}},
      {"Mail", {{"Mail", true}}},
      {"[1]", {{"[1]", true}}},
      {"42", {{"42", true}}},
      {R"({"tag":"A","public":true})", {{R"({"tag":"A","public":true})", true}}},
      {R"([{"tag":"A"}])", {{R"([{"tag":"A"}])", true}}},
      {R"([{"tag":7,"public":true}])", {{R"([{"tag":7,"public":true}])", true}}},
      {R"([{"tag":"A","public":1}])", {{R"([{"tag":"A","public":1}])", true}}},
      {R"([{"tag":"A","public":true})", {{R"([{"tag":"A","public":true})", true}}},
      {"\xFF\0["s, {{"\xFF\0["s, true}}},
  };
  for (const auto& test : cases) EXPECT_EQ(DecodeCategories(test.column), test.categories) << test.column;
  EXPECT_EQ(EncodeCategories(cases[2].categories), cases[2].column);
  EXPECT_EQ(EncodeCategories({}), "");
}

TEST(SettingsColumn, LosesNothing) {
  const std::map<std::string, std::string> settings{{"a", "1"}, {"b\xFF", "\0\"\xC3"s}};
  EXPECT_EQ(DecodeSettings(EncodeSettings(settings)), settings);
  const std::map<std::string, std::string> foreign{{"n", "1.5"}, {"o", "[true]"}, {"t", "x"}};
  EXPECT_EQ(DecodeSettings(R"({"n":1.5,"o":[true],"t":"x"})"), foreign);
  for (const std::string text : {"", "[]", "{\"a\":", "text"}) {
    const std::map<std::string, std::string> kept{{"", text}};
    EXPECT_EQ(DecodeSettings(text), kept);
  }
}

}  // namespace
}  // namespace plovix
