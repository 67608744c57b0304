// Placeholders in the texts of actions: how texts are divided, filled, and refused at their place.
#include <gmock/gmock.h>
#include <plovix/base/failure.h>
#include <plovix/standalone/query/sql_template.h>

#include <limits>
#include <sstream>

namespace plovix {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

const RecordValues kRecord = {{"Id", std::int64_t{42}},
                              {"Name", std::string("O'Hara \"{x}\" ; rm -rf\r\n--all")},
                              {"Note", std::monostate()},
                              {"Total", 1.5},
                              {"Photo", Blob{std::string("\0\xff", 2)}},
                              {"Order Date", std::string("2026-01-05")}};
const Secrets kSecrets = {{"mail", "p\"w {Id}"}};
const std::vector<FieldRecord> kOrderFields = {{"Id", FieldType::kInteger}, {"Order Date", FieldType::kDate}};

// What a person sees marked, with the text that is told.
std::string Place(std::string_view text, const std::optional<TextProblem>& problem) {
  if (!problem) return {};
  return std::string(problem->text.substr(std::string_view("action.problem.").size())) + ":" +
         std::string(text.substr(problem->offset, problem->length));
}

TEST(ActionTexts, HaveKeysAndTextsForValuesOfEveryType) {
  const struct {
    FieldValue value;
    const char *text, *key;
  } cases[] = {{std::int64_t{42}, "42", "i:42"},
               {std::string("42"), "42", "t:42"},
               {42.0, "42.0", "r:42.0"},
               {Blob{"42"}, "3432", "b:3432"},
               {std::monostate(), "", "n:"},
               {0.1, "0.1", "r:0.1"},
               {-1e300, "-1e+300", "r:-1e+300"},
               {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808", "i:-9223372036854775808"}};
  for (const auto& row : cases) {
    EXPECT_EQ(TextOf(row.value), row.text);
    EXPECT_EQ(KeyOf(row.value), row.key);
  }
}

TEST(ActionTexts, AreDividedIntoArgumentsBeforeValuesAreFilledIn) {
  const std::string name = std::get<std::string>(kRecord[1].value);
  const struct {
    std::string text;
    std::vector<std::string> arguments;
  } cases[] = {{"", {}},
               {" a\tb  c ", {"a", "b", "c"}},
               {R"("a b" c"d e"f "")", {"a b", "cd ef", ""}},
               {R"("a\"b\\c\d" e\f)", {R"(a"b\c\d)", R"(e\f)"}},
               {"{Name} -{id}-", {name, "-42-"}},
               {"{Note} {Note}x \"{Note}\"", {"", "x", ""}},
               {"{{Id}} }}{Id}{{", {"{Id}", "}42{"}},
               {"{Order Date}/{total}", {"2026-01-05/1.5"}},
               {R"("\{Id}\\")", {R"(\42\)"}}};
  for (const auto& row : cases) {
    const auto parsed = ParseArguments(row.text);
    EXPECT_FALSE(parsed.problem) << row.text;
    std::vector<std::string> arguments;
    arguments.reserve(row.arguments.size());
    for (const TextTemplate& argument : parsed.value) arguments.push_back(FillForProgram(argument, kRecord));
    EXPECT_THAT(arguments, ElementsAreArray(row.arguments)) << row.text;
  }
}

TEST(ActionTexts, BecomeLinesVariablesAndTextsWithoutAnyReadingOfTheValues) {
  EXPECT_EQ(FillLine(ParseText("{Id}: {Name}\n{{").value, kRecord), "42: O'Hara \"{x}\" ; rm -rf --all {");
  const auto variables = ParseVariables("A= {Id} \r\n\n _b2 ={secret:mail}=\nC=").value;
  ASSERT_EQ(variables.size(), 3U);
  EXPECT_EQ(variables[0].name + Fill(variables[0].value, kRecord), "A 42 ");
  EXPECT_EQ(variables[1].name + Fill(variables[1].value, kRecord, kSecrets), "_b2p\"w {Id}=");
  EXPECT_EQ(variables[2].name + Fill(variables[2].value, kRecord), "C");
  const std::string braces = R"({"a":{}})";
  EXPECT_EQ(Fill(ParseText(WithDoubledBraces(braces)).value, {}), braces);
  const auto refusal = [](std::string_view text, const RecordValues& record) {
    return FailureOf([&] { (void)FillForProgram(ParseText(text).value, record); })->Description();
  };
  EXPECT_EQ(refusal("{Nmae}", kRecord), "The record has no field \"Nmae\"");
  EXPECT_EQ(refusal("{secret:x}", kRecord), "There is no secret \"x\"");
  EXPECT_THAT(refusal("{z}", {{"z", std::string("a\0b", 3)}}), testing::HasSubstr("zero byte"));
}

TEST(ActionTexts, BecomeStatementsWithParameters) {
  const auto parsed =
      ParseStatement("UPDATE o SET a={Name}, b='{{}}', c={secret:mail} -- it's\n WHERE id={id}1;");
  EXPECT_FALSE(parsed.problem);
  EXPECT_EQ(parsed.value.sql, "UPDATE o SET a=?, b='{}', c=? -- it's\n WHERE id=? 1;");
  EXPECT_THAT(ParametersOf(parsed.value, kRecord, kSecrets),
              ElementsAre(kRecord[1].value, FieldValue(kSecrets.at("mail")), kRecord[0].value));
}

struct Refused {
  std::string text;
  std::string place;  // of Place
};

TEST(ActionTexts, AreRefusedAtTheirPlace) {
  const Refused texts[] = {{"a{b", "brace:{"},   {"{}", "brace:{}"},
                           {"a}", "brace:}"},    {"{secret:}", "brace:{secret:}"},
                           {"{a{b}", "brace:{"}, {"{{a}", "brace:}"},
                           {"{{{Id}}}", ""},     {"{nr} x", "field:{nr}"},
                           {"{ID}", ""},         {"{secret:x}", "secret:{secret:x}"}};
  for (const auto& [text, place] : texts) {
    const auto parsed = ParseText(text);
    const KnownNames known{&kOrderFields, false};
    EXPECT_EQ(Place(text, parsed.problem ? parsed.problem : CheckNames(parsed.value, known)), place);
  }
  const Refused arguments[] = {{"a \"b {Id}", "quote:\""}, {"a {Id", "brace:{"}, {"\"a\" \"", "quote:\""}};
  for (const auto& [text, place] : arguments) EXPECT_EQ(Place(text, ParseArguments(text).problem), place);
  const Refused variables[] = {{"A=1\nB", "variable:B"},
                               {"A=1\nA=2", "variable:A=2"},
                               {"=x", "variable:=x"},
                               {"9A=x", "variable:9A=x"},
                               {"A=1\r\nB={", "brace:{"}};
  for (const auto& [text, place] : variables) EXPECT_EQ(Place(text, ParseVariables(text).problem), place);
  const Refused statements[] = {{"DELETE FROM a WHERE b = '{Id}'", "sqlPlace:{Id}"},
                                {"DELETE FROM \"{Id}\"", "sqlPlace:{Id}"},
                                {"DELETE FROM a -- {Id}", "sqlPlace:{Id}"},
                                {"DELETE /* {{ {Id} */ FROM a", "sqlPlace:{Id}"},
                                {"SELECT {Id}, x'{Id}'", "sqlUnreadable:x'{Id}'"},
                                {"DELETE FROM a WHERE b = 'x", "sqlUnreadable:'x"},
                                {"DELETE FROM a WHERE b = ? AND c = {Id}", "sqlParameter:?"},
                                {"DELETE FROM a WHERE c = {Id} AND {Id} AND b = :b", "sqlParameter::"},
                                {"DELETE FROM a; DELETE FROM b", "sqlCount:DELETE"},
                                {";-- nothing", "sqlCount:"},
                                {"/**/ pragma x", "sqlForbidden:pragma"},
                                {"DETACH x", "sqlForbidden:DETACH"},
                                {"VACUUM INTO 'x'", "sqlForbidden:VACUUM"},
                                {"SELECT {Id}, \"load_extension\" ('x')", "sqlForbidden:\"load_extension\""},
                                {"DELETE FROM a WHERE b IN ({Id},{Id});", ""},
                                {"UPDATE a SET attach = 1", ""}};
  for (const auto& [text, place] : statements)
    EXPECT_EQ(Place(text, ParseStatement(text).problem), place) << text;
}

TEST(ActionTexts, AreCheckedInTheFieldsThatTakeThem) {
  const struct {
    const char *kind, *field, *value, *problem;
  } cases[] = {{"run-program", "arguments", "{Nr}", "arguments field Nr 0+4"},
               {"run-program", "arguments", "-p {secret:x}", "arguments secret  3+10"},
               {"run-program", "variables", "A={secret:x}\nB={Nr}", "variables field Nr 15+4"},
               {"run-program", "folder", "/{Nr}", ""},
               {"run-sql", "statement", "DELETE FROM a WHERE b = {Nr}", "statement field Nr 24+4"},
               {"run-sql", "statement", "DELETE FROM a WHERE b = {secret:x} + {id}", ""},
               {"run-sql", "statement", "ATTACH {Id} AS b", "statement sqlForbidden ATTACH 0+6"},
               {"write-log", "text", "{secret:x}", "text secret  0+10"},
               {"write-log", "file", "{", ""}};
  for (const auto& row : cases) {
    ActionRecord action = NewAction(*FindActionKind(row.kind));
    for (const char* needed : {"path", "statement", "text", "file"}) {
      if (action.settings.contains(needed)) action.settings[needed] = "SELECT 1";
    }
    action.settings[row.field] = row.value;
    const auto problem = CheckStatementToo(action, &kOrderFields);
    std::ostringstream told;
    if (problem)
      told << problem->field << ' ' << problem->text.substr(15) << ' ' << problem->parameter << ' ';
    if (problem) told << problem->offset << '+' << problem->length;
    EXPECT_EQ(told.str(), row.problem) << row.value;
    DoubleBraces(action);
    const bool takes = std::string_view(row.field) != "folder" && std::string_view(row.field) != "file";
    EXPECT_EQ(action.settings[row.field], takes ? WithDoubledBraces(row.value) : row.value);
  }
}

}  // namespace
}  // namespace plovix
