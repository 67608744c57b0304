// The language tables against what the pages and the program ask for.
#include <gmock/gmock.h>
#include <plovix/component/entry_points.h>
#include <plovix/controls/failure.h>
#include <plovix/standalone/language/language_file.h>
#include <plovix/standalone/language/languages.h>
#include <plovix/standalone/model/host_state.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace plovix {
namespace {

using testing::HasSubstr;

// The first group of every match in the sources below the directories.
std::set<std::string> FoundInSources(const std::vector<std::string>& directories, const std::regex& pattern) {
  std::set<std::string> found;
  for (const std::string& directory : directories) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
      if (!entry.is_regular_file()) continue;
      std::ostringstream text;
      text << std::ifstream(entry.path()).rdbuf();
      const std::string source = text.str();
      found.insert(std::sregex_token_iterator(source.begin(), source.end(), pattern, 1), {});
    }
  }
  return found;
}

std::set<int> NumbersUsed() {
  const std::vector<std::string> rooms = {PLOVIX_SOURCE_DIR "/pages", PLOVIX_SOURCE_DIR "/framework"};
  std::set<int> numbers;
  for (const auto& number : FoundInSources(rooms, std::regex(R"(k\w+Text = (\d+);)")))
    numbers.insert(std::stoi(number));
  // From kFirstDayText to kLastDayText: a list of texts in a row.
  for (const auto& list : FoundInSources(rooms, std::regex(R"(kFirst(\w+Text) = \d+;)"))) {
    const auto end = [&](const std::string& name) {
      const auto found = FoundInSources(rooms, std::regex(name + list + R"( = (\d+);)"));
      return found.empty() ? 0 : std::stoi(*found.begin());
    };
    for (int number = end("kFirst"), last = end("kLast"); number < last; ++number) numbers.insert(number);
  }
  PageRegistry registry;
  RegisterPages(registry);
  for (const auto& identifier : registry.Identifiers()) {
    const auto page = registry.Create(identifier);
    for (const ControlInfo& row : page->Controls().Design().rows) {
      if (const auto number = TextNumber(row.tag)) numbers.insert(*number);
    }
  }
  return numbers;
}

std::multiset<std::string> Placeholders(const std::string& text) {
  static const std::regex kPlaceholder(R"(\{\d+\})");
  return {std::sregex_token_iterator(text.begin(), text.end(), kPlaceholder), {}};
}

TEST(Languages, HoldEveryTextInUseAndNoOtherWithTheSameParameters) {
  const std::set<int> numbers = NumbersUsed();
  ASSERT_TRUE(numbers.contains(4) && numbers.contains(116) && numbers.contains(118) && numbers.contains(29));
  const auto keys = FoundInSources(
      {PLOVIX_SOURCE_DIR "/standalone"},
      std::regex(
          R"re("((?:action|button|category|data|entry|error|exchange|list|permission|program|query|rights|schedule|summary|surface|tag|user|wizard)\.(?!h")[a-z][A-Za-z.]*)")re"));
  const TextTable english = LoadLanguage("en");
  for (const auto& [code, json] : EmbeddedLanguages()) {
    const TextTable table = LoadLanguage(code);
    EXPECT_EQ(table.code, code);
    std::set<int> present;
    for (const auto& [number, text] : table.page_texts) {
      present.insert(number);
      EXPECT_NE(text, "") << code << " " << number;
      EXPECT_EQ(Placeholders(text), Placeholders(english.Find(number).value_or(""))) << code << " " << number;
    }
    std::set<std::string> host;
    for (const auto& [key, text] : table.host_texts) {
      host.insert(key);
      EXPECT_EQ(Placeholders(text), Placeholders(english.Host(key))) << code << " " << key;
    }
    EXPECT_EQ(present, numbers) << code;
    EXPECT_EQ(host, keys) << code;
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
    try {
      (void)ParseLanguage(json, "mine.json");
      ADD_FAILURE() << json;
    } catch (const Failure& failure) {
      EXPECT_THAT(failure.Description(), testing::AllOf(HasSubstr("mine.json"), HasSubstr(problem)));
    }
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

TEST(Tags, AreReadWithoutRegardToCaseOrSemicolon) {
  const std::vector<std::pair<std::string, std::optional<int>>> cases = {
      {"Lng=6;", 6}, {"lng=118", 118}, {"Lng=;", {}}, {"Lng=6x;", {}}, {"Tag=6;", {}}};
  for (const auto& [tag, number] : cases) EXPECT_EQ(TextNumber(tag), number) << tag;
}

}  // namespace
}  // namespace plovix
