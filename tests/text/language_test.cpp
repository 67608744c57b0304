// The language tables against each other, and files that are none.
#include <gmock/gmock.h>
#include <plovix/standalone/text/language_file.h>
#include <plovix/standalone/text/languages.h>

#include <map>
#include <regex>
#include <set>

#include "tests/support/failure_of.h"

namespace plovix {
namespace {

using testing::HasSubstr;

std::multiset<std::string> Placeholders(const std::string& text) {
  static const std::regex kPlaceholder(R"(\{\d+\})");
  return {std::sregex_token_iterator(text.begin(), text.end(), kPlaceholder), {}};
}

TEST(Languages, HoldTheSameTextsWithTheSameParameters) {
  const auto parameters_of = [](const auto& texts) {
    std::map<std::string, std::multiset<std::string>> parameters;
    for (const auto& [id, text] : texts) {
      EXPECT_NE(text, "") << id;
      parameters[testing::PrintToString(id)] = Placeholders(text);
    }
    return parameters;
  };
  const TextTable english = LoadLanguage("en");
  for (const auto& [code, json] : EmbeddedLanguages()) {
    const TextTable table = LoadLanguage(code);
    EXPECT_EQ(table.code, code);
    EXPECT_EQ(parameters_of(table.page_texts), parameters_of(english.page_texts)) << code;
    EXPECT_EQ(parameters_of(table.host_texts), parameters_of(english.host_texts)) << code;
  }
}

TEST(Languages, AreChosenByTheUsersPreference) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"fr-CA", "en"}, "fr"}, {{"xx", "fr_FR"}, "fr"}, {{"C"}, "en"}, {{}, "en"}, {{"en-GB", "fr"}, "en"}};
  for (const auto& [preferred, expected] : cases) EXPECT_EQ(LoadPreferredLanguage(preferred).code, expected);
  EXPECT_THROW((void)LoadLanguage("xx"), Failure);
}

TEST(Languages, SayWhatIsWrongWithAFile) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"{", "parse error"},
      {R"({"a]]\"":)" + std::string(1'000'000, '['), "nested deeper than 16 levels"},
      {R"({"language":"x"})", "name"},
      {R"({"language":"x","name":"X","direction":"up","pages":{},"host":{}})", "direction"},
      {R"({"language":"x","name":"X","direction":"rtl","pages":{"a4":"t"},"host":{}})", "a4"},
      {R"({"language":"x","name":"X","direction":"rtl","pages":{"4":4},"host":{}})", "\"4\" must be a text"},
      {R"({"language":"x","name":"X","direction":"rtl","pages":{},"host":"t"})",
       "\"host\" must be an object"},
      {"7", "\"language\" is missing"}};
  for (const auto& [json, problem] : cases) {
    EXPECT_THAT(test::FailureOf([&] { (void)ParseLanguage(json, "mine.json"); }).Description(),
                testing::AllOf(HasSubstr("mine.json"), HasSubstr(problem)));
  }
}

TEST(Texts, FillParametersOnce) {
  TextTable table;
  table.page_texts = {{1, "{1} of {2}, {3} {x} {"}};
  EXPECT_EQ(table.Find(1, {"{2}", "b"}), "{2} of b, {3} {x} {");
  EXPECT_EQ(TextTable::Ids().Find(56, {"31"}), "[56:31]");
  EXPECT_EQ(table.Find(2), std::nullopt);
  EXPECT_EQ(table.Host("list.new"), "[list.new]");
  table.Remove(1);
  EXPECT_EQ(table.Find(1), std::nullopt);
}

}  // namespace
}  // namespace plovix
