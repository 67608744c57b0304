// The language of scripts: words, wrong lines, commands that do not fit, and the parts of the scene.
#include <plovix/standalone/script/words.h>

#include "tests/script/script_support.h"

namespace plovix {
namespace {

using namespace script_test;

TEST(ScriptLanguage, SplitsLinesIntoWords) {
  const std::vector<std::pair<std::string, script::Words>> cases = {
      {"", {}},
      {" \t \r", {}},
      {"# next", {}},
      {"type txtName A\r", {"type", "txtName", "A"}},
      {"a  b#c", {"a", "b"}},
      {R"(a "" "x # y" "\"\\\n\t" # z)", {"a", "", "x # y", "\"\\\n\t"}},
      {"\"é\" à", {"é", "à"}},
  };
  for (const auto& [line, words] : cases) EXPECT_EQ(script::SplitLine(line), words) << line;
}

TEST(ScriptLanguage, StopsAtAWrongLineAndNamesItsPlace) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a \"b", "a double quote is not closed"},
      {"a \"b\\", "a double quote is not closed"},
      {"a \"\\x\"", "unknown escape \\x"},
      {"a b\"c\"", "double quotes must hold a whole word"},
      {"a \"b\"c", "double quotes must hold a whole word"},
      {"fly", "unknown command \"fly\""},
      {"task fly", "unknown command \"task fly\""},
      {"host", "unknown command \"host\""},
      {"next now", "wanted: next "},
      {"type txtName", "wanted: type CONTROL TEXT"},
      {"task set Nam x", "a task has no member \"Nam\""},
      {"task set Actions x", "Actions cannot be set"},
      {"task set RecordMode 32768", "the number 32768 is out of range"},
      {"task set RecordMode two", "\"two\" is not a whole number"},
      {"task set UsesLanguageTags yes", "\"yes\" is neither on nor off"},
      {"task set BaseDate 2026-02-29T10:00:00", "\"2026-02-29T10:00:00\" is not a date and time such as "},
      {"host now 2026-02-27T24:00:00", "\"2026-02-27T24:00:00\" is not a date and time such as "},
      {"host now 2026-2-27T10:00:00", "\"2026-2-27T10:00:00\" is not a date and time such as "},
      {"task set Recurrence daily", "Recurrence can only be set to nothing"},
      {"task load 7", "no task is stored under the id 7"},
      {"task category A secret", "\"secret\" is not \"private\""},
      {"task action A 16 8 fly", "there is no kind of action \"fly\""},
      {"task action A 16 8 write-log text=x", "the setting file of write-log is missing or unfit"},
      {"task action A 16 8 write-log colour=x", "\"colour=x\" is no setting KEY=VALUE of write-log"},
      {"store set AutoTask nothing", "the wizard itself puts AutoTask into the store"},
      {"fail AutoTask.Fly", "the host has no member \"AutoTask.Fly\""},
      {"fail AutoTask.Name 0", "calls are counted from 1"},
      {"answer maybe", "\"maybe\" is no answer: ok, cancel, yes or no"},
      {"report maybe", "\"maybe\" is no answer: retry, continue, leave or a number"},
      {"open Plovix.Fly", "there is no page \"Plovix.Fly\""},
      {"click lblTitle", "no page is open"},
      {"leave-page 0", "no page is open"},
      {"runs 3", "tasks have no schedule yet"},
  };
  for (const auto& [line, problem] : cases) {
    const Ran ran = Play("show\n\n" + line + "\nshow\n");
    EXPECT_EQ(ran.status, 2) << line;
    EXPECT_EQ(ran.printed.size(), 1U) << line;
    EXPECT_TRUE(ran.messages.starts_with("test.txt:3: " + problem)) << ran.messages;
  }
  const std::vector<std::pair<std::string, std::string>> on_a_page = {
      {"open", "the wizard is open already"},
      {"type txtNam x", "the page Plovix.Details has no control txtNam"},
      {"toggle txtName", "no toggle on txtName, a TextBox"},
      {"type cboDataObject x", "no type on cboDataObject, a ComboBox"},
      {"leave lblName", "no leave on lblName, a Label"},
  };
  for (const auto& [line, problem] : on_a_page) {
    EXPECT_EQ(Play("open Plovix.Details\n" + line).messages, "test.txt:2: " + problem + "\n");
  }
}

TEST(ScriptLanguage, GoesOnAfterAWrongLineWhenInteractive) {
  MemoryStorage storage;
  const Ran ran = Play("fly\nshow\nhelp\n", storage, true);
  EXPECT_EQ(ran.status, 0);
  EXPECT_EQ(ran.printed.size(), 1U);
  EXPECT_TRUE(
      ran.messages.starts_with("plovix> test.txt:1: unknown command \"fly\"\nplovix> plovix> task new"));
}

TEST(ScriptLanguage, SetsAndPrintsEveryMember) {
  const std::string texts =
      "task set Name n\ntask set ShortDescription s\ntask set Description \"d\\nd\"\n"
      "task set NameTag nt\ntask set ShortDescriptionTag st\ntask set DescriptionTag dt\n"
      "task set LocalizedName ln\ntask set LocalizedShortDescription ls\ntask set LocalizedDescription ld\n"
      "task set DataObjectName do\ntask set DataObjectCaption dc\ntask set Query q\ntask set Owner o\n";
  const std::string values =
      "task set RecordMode -2\ntask set UsesLanguageTags on\ntask set AllowAutomationManager on\n"
      "task set SkipRowSelection on\ntask set ProcessingMode 3\ntask set ProcessAllRecords on\n"
      "task set ProcessFailedRecords on\ntask set BaseDate 2026-01-05T08:00:00\ntask set Recurrence nothing\n"
      "task action First 17 8\ntask action Second 16 8 write-log text=a=b file=f\n"
      "task category nt\ntask category two private\n";
  const std::string wanted =
      R"({"RecordMode": -2, "UsesLanguageTags": true, "Name": "n", "ShortDescription": "s",
      "Description": "d\nd", "NameTag": "nt", "ShortDescriptionTag": "st", "DescriptionTag": "dt",
      "LocalizedName": "ln", "LocalizedShortDescription": "ls", "LocalizedDescription": "ld",
      "DataObjectName": "do", "DataObjectCaption": "dc", "AllowAutomationManager": true,
      "SkipRowSelection": true,
      "ProcessingMode": 3, "ProcessAllRecords": true, "ProcessFailedRecords": true,
      "BaseDate": "2026-01-05T08:00:00", "Query": "q", "Owner": "o", "Recurrence": null, "IsExisting": false,
      "Actions": [{"Name": "First", "Kind": "", "RecordModes": 17, "Capabilities": 8, "Settings": {}},
                  {"Name": "Second", "Kind": "write-log", "RecordModes": 16, "Capabilities": 8,
                   "Settings": {"text": "a=b", "file": "f"}}],
      "Categories": [{"Tag": "nt", "Text": "ln", "Public": true},
                     {"Tag": "two", "Text": "two", "Public": false}]})";
  const std::string empty =
      R"({"Name": "", "Actions": [], "Categories": [], "BaseDate": "1899-12-30T00:00:00"})";
  Check({
      {"before open", texts + values + "task\ntask new\ntask", {wanted, empty}},
      {"after open", "open\n" + texts + values + "task\ntask new\ntask", {wanted, empty}},
  });
}

TEST(ScriptLanguage, PrintsTheStore) {
  Check({
      {"entries",
       "store set Importing on\nstore set N -5\nstore set T \"a b\"\nstore set O nothing\nstore",
       {R"({"Importing": true, "N": -5, "T": "a b", "O": null})"}},
      {"objects by kind and number",
       "open Plovix.Actions\nstore\ndrop VeloActionList\nback\nleave-page 1\nstore",
       {R"({"AutoTask": {"kind": "AutoTask", "number": 1}})", R"({"refused": "back"})",
        R"({"direction": 1, "answer": true})",
        R"({"AutoTask": {"kind": "AutoTask", "number": 1},
            "DataObjects": {"kind": "DataObjects", "number": 2},
            "DesignerObjects": {"kind": "DesignerObjects", "number": 3}})"}},
  });
}

}  // namespace
}  // namespace plovix
