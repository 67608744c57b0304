// Scripts that play the user through the wizard's pages.
#include <plovix/host/services.h>

#include "tests/script/script_support.h"

namespace plovix {
namespace {

using namespace script_test;

// A task that has a name, as far as Details.
const std::string kNamed = "task set Name N\ntask set Description D\n";
const std::string kOnDetails = kNamed + "open Plovix.Details\n";

TEST(ScriptWizard, CreatesATask) {
  MemoryStorage storage;
  const Ran ran = Play(
      "host now 2026-02-27T10:15:00\nopen\nshow\nchoose optNoData\nnext\ntype txtName Nightly\nleave "
      "txtName\n"
      "type txtShortDescription S\nshow\nnext\nshow\nfinish\nmessages\nreports\nshow\nsaved\ntask\n"
      "task new\nshow\nopen Plovix.Details\ntype txtName Two\nleave txtName\nnext\nfinish\ntask load "
      "1\nopen\ncancel\n"
      "show\nsaved\n",
      storage);
  const std::vector<std::string> wanted = {
      R"({"page": "Plovix.AutoTaskType", "title": "[4]", "description": "[5]", "canContinue": true,
          "refreshes": 1,
          "next": "Plovix.Details", "buttons": {"back": false, "next": true, "finish": false, "cancel": true},
          "focus": "optNoData", "pointer": 0, "controls": {
          "lblSingleRecord": {"kind": "Label", "caption": "[116]", "enabled": true, "visible": true,
                              "link": false},
          "optNoData": {"kind": "OptionButton", "selected": true}, "optSingleRecord": {"selected": false}}})",
      R"({"page": "Plovix.Details", "next": "Plovix.Actions", "focus": "txtShortDescription", "controls": {
          "cmdNameLangTag": {"visible": false}, "fraSettings": {"kind": "Frame", "caption": "[118]"},
          "chkAutoMan": {"kind": "CheckBox", "value": 0}, "txtName": {"text": "Nightly", "selection": [0, 0]},
          "txtDescription": {"text": "Nightly"}, "lblCategory": {"link": true},
          "cboDataObject": {"text": "", "index": -1, "items": [], "itemData": []}}})",
      R"({"page": "Plovix.Actions", "next": "",
          "buttons": {"back": true, "next": false, "finish": true, "cancel": true},
          "controls": {"VeloActionList": {"kind": "HostSlot", "items": []}}})",
      R"({"messages": []})",
      R"({"reports": []})",
      R"({"page": null, "outcome": "finished"})",
      R"({"saved": [1]})",
      R"({"IsExisting": true, "Name": "Nightly", "ShortDescription": "S", "Description": "Nightly"})",
      R"({"page": null})",
      R"({"page": null, "outcome": "cancelled"})",
      R"({"saved": [1, 2]})",
  };
  ASSERT_EQ(ran.printed.size(), wanted.size()) << ran.messages;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    EXPECT_TRUE(Matches(Json::parse(wanted[i]), ran.printed[i])) << ran.printed[i].dump();
  }
  EXPECT_EQ(storage.Load(1)->modified, std::chrono::local_days{std::chrono::year{2026} / 2 / 27} +
                                           std::chrono::hours{10} + std::chrono::minutes{15});
}

TEST(ScriptWizard, EndsWithTheScript) {
  MemoryStorage storage;
  EXPECT_EQ(Play(kOnDetails + "next\n", storage).status, 0);
  EXPECT_TRUE(storage.List().empty());
  // Nothing of the run stays installed.
  EXPECT_THROW(static_cast<void>(Services()), Failure);
}

TEST(ScriptWizard, SpeaksOfTheTaskTypePage) {
  const std::string with_action = "task action A 25 8\nopen\nchoose optQueryResults\n";
  const std::string question =
      R"({"messages": [{"text": "[117]", "buttons": 33, "title": "Plovix", "answer": )";
  Check({
      {"a label chooses",
       "open\nclick lblQueryResults\nshow",
       {R"({"focus": "optQueryResults", "controls": {"optQueryResults": {"selected": true}}})"}},
      {"a double click moves on",
       "open\ndblclick lblSingleRecord\nshow\ntask\nback\ndblclick optNoData\nshow\ntask",
       {R"({"page": "Plovix.Details"})", R"({"RecordMode": 1})", R"({"page": "Plovix.Details"})",
        R"({"RecordMode": 0})"}},
      {"OK empties the actions",
       with_action + "next\nmessages\ntask\nshow",
       {question + "1}]}", R"({"RecordMode": 2, "Actions": []})", R"({"page": "Plovix.Details"})"}},
      {"Cancel keeps them",
       with_action + "answer cancel\nnext\nmessages\ntask\nshow",
       {question + "2}]}", R"({"RecordMode": 0, "Actions": [{"Name": "A"}]})",
        R"({"page": "Plovix.AutoTaskType"})"}},
      {"no counts as cancel",
       with_action + "answer no\nleave-page 0\nmessages",
       {R"({"direction": 0, "answer": false})", question + "2}]}"}},
      {"the same mode asks nothing",
       "task action A 25 8\nopen\nnext\nmessages\ntask",
       {R"({"messages": []})", R"({"Actions": [{"Name": "A"}]})"}},
      {"an unknown mode",
       "task set RecordMode 3\nopen\nshow\nnext\ntask",
       {R"({"focus": null, "controls": {"optNoData": {"selected": false}}})", R"({"RecordMode": 0})"}},
      {"what a mode clears",
       "task set DataObjectName A\ntask set DataObjectCaption B\ntask set AllowAutomationManager on\nopen\n"
       "choose optSingleRecord\nnext\ntask\nback\nchoose optNoData\nnext\ntask",
       {R"({"DataObjectName": "A", "AllowAutomationManager": false})",
        R"({"DataObjectName": "", "DataObjectCaption": ""})"}},
      {"every way to leave it",
       "open\nleave-page 0\nleave-page 1\nleave-page 2\nleave-page 3\nleave-page 4\nback\nfinish",
       {R"({"direction": 0, "answer": true})", R"({"answer": true})", R"({"direction": 2, "answer": false})",
        R"({"answer": true})", R"({"direction": 4, "answer": false})", R"({"refused": "back"})",
        R"({"refused": "finish"})"}},
  });
}

TEST(ScriptWizard, SpeaksOfTheDetailsPage) {
  const auto says = [](const std::string& text, int buttons) {
    return R"({"messages": [{"text": ")" + text + R"(", "buttons": )" + std::to_string(buttons) +
           R"(, "answer": 1}]})";
  };
  const std::string tags =
      "task set UsesLanguageTags on\ntask set NameTag tag1\ntask set LocalizedName One\ntask set "
      "DescriptionTag d\n";
  const std::string plain =
      R"({"controls": {"cmdNameLangTag": {"visible": false}, "txtName": {"enabled": true}}})";
  const std::string tagged =
      R"({"controls": {"cmdNameLangTag": {"visible": true}, "txtName": {"enabled": false}}})";
  Check({
      {"name missing",
       "open Plovix.Details\ntype txtName \" \"\nnext\nmessages\nshow\nmessages",
       {says("[27]", 64), R"({"page": "Plovix.Details"})", R"({"messages": []})"}},
      {"description missing",
       kOnDetails + "type txtDescription \"\"\nanswer cancel\nnext\nmessages",
       {says("[28]", 64)}},
      {"data object missing", "task set RecordMode 1\n" + kOnDetails + "next\nmessages", {says("[29]", 48)}},
      {"data object there",
       "task set RecordMode 1\ntask set DataObjectName O\n" + kOnDetails + "next\nmessages\nshow",
       {R"({"messages": []})", R"({"page": "Plovix.Actions"})"}},
      {"back asks and saves nothing",
       kNamed + "open\nnext\ntype txtName \"\"\nback\nmessages\ntask",
       {R"({"messages": []})", R"({"Name": "N"})"}},
      {"a typed description stays",
       "open Plovix.Details\ntype txtDescription \" \"\ntype txtName A\nleave txtName\nshow",
       {R"({"controls": {"txtDescription": {"text": " "}}})"}},
      {"untrimmed", kOnDetails + "type txtName \" A \"\nnext\ntask", {R"({"Name": " A "})"}},
      {"next follows the scene",
       kOnDetails + "toggle chkAutoMan\nshow\ntask set RecordMode 2\nshow\ntoggle chkAutoMan\nshow",
       {R"({"next": "Plovix.RecurrenceTime"})", R"({"next": "Plovix.Records"})",
        R"({"next": "Plovix.Query"})"}},
      {"importing ends here",
       "store set Importing on\ntask set AllowAutomationManager on\n" + kOnDetails +
           "show\nnext\nfinish\nshow\nsaved",
       {R"({"next": "", "buttons": {"next": false, "finish": true}})", R"({"refused": "next"})",
        R"({"outcome": "finished"})", R"({"saved": [1]})"}},
      {"tag mode", "host tagmode on\nopen Plovix.Details\nshow", {tagged}},
      {"marker file", "host tagmode on\nhost marker on\nopen Plovix.Details\nshow", {plain}},
      {"tags in use beat it", "host marker on\n" + tags + "open Plovix.Details\nshow", {tagged}},
      {"the tag editor",
       tags + "task set Name old\nopen Plovix.Details\ntype txtName x\ndialog edittag tag2\npress "
              "cmdNameLangTag\nshow\n"
              "press cmdNameLangTag\nnext\ntask",
       {R"({"refused": "type txtName"})", R"({"controls": {"txtName": {"text": "tag2"}}})",
        R"({"NameTag": "tag2", "LocalizedName": "tag2", "Name": "old"})"}},
      {"a tag without text",
       tags + "task set LocalizedName \"\"\nopen Plovix.Details\nnext\nmessages",
       {says("[27]", 64)}},
      {"a missing text and right",
       "host missing 20\nhost right 112 off\nopen Plovix.Details\nshow",
       {R"({"controls": {"lblName": {"caption": "Name"}, "lblCategory": {"link": false}}})"}},
      {"hidden and disabled",
       kOnDetails + "press cmdNameLangTag\ntoggle chkPersonalTask\npick cboDataObject 0",
       {R"({"refused": "press cmdNameLangTag"})", R"({"refused": "toggle chkPersonalTask"})",
        R"({"refused": "pick cboDataObject"})"}},
      {"no wizard",
       "next\nback\nfinish\ncancel",
       {R"({"refused": "next"})", R"({"refused": "back"})", R"({"refused": "finish"})",
        R"({"refused": "cancel"})"}},
  });
}

TEST(ScriptWizard, ReportsPlannedFailures) {
  const std::string fails = kOnDetails + "type txtName A\nfail AutoTask.SetName\n";
  const auto reported = [](const std::string& procedure, int answer) {
    return R"({"reports": [{"number": 5, "description": "Planned failure of AutoTask.SetName",
               "module": "Plovix",
               "page": "Details", "procedure": ")" +
           procedure + R"(", "answer": )" + std::to_string(answer) + "}]}";
  };
  Check({
      {"retry",
       fails + "report retry\nnext\nreports\nreports\ntask\nshow",
       {reported("SaveValues", 0), R"({"reports": []})", R"({"Name": "A"})",
        R"({"page": "Plovix.Actions"})"}},
      {"continue",
       fails + "report continue\nnext\nreports\ntask\nshow",
       {reported("SaveValues", 1), R"({"Name": "N", "Description": "D"})", R"({"page": "Plovix.Actions"})"}},
      {"leave when nothing is said",
       fails + "next\nreports\nshow",
       {reported("SaveValues", 2), R"({"page": "Plovix.Details"})"}},
      {"any other number leaves",
       fails + "report 7\nleave-page 0\nreports",
       {R"({"answer": false})", reported("SaveValues", 7)}},
      {"the n-th call, once",
       "fail AutoTask.SetName 2\n" + kOnDetails + "leave-page 0\nleave-page 0\nleave-page 0\nreports",
       {R"({"answer": true})", R"({"answer": false})", R"({"answer": true})", reported("SaveValues", 2)}},
      {"an event without a handler",
       "open\nfail WizardHost.MoveNext\ndblclick lblNoData\nreports\nshow",
       {R"({"reports": [{"procedure": "lblNoData_DblClick", "line": 0}]})",
        R"({"page": "Plovix.AutoTaskType"})"}},
      {"looking does not count",
       kNamed + "fail AutoTask.RecordMode\ntask\nshow\nopen\nreports\nshow",
       {R"({"Name": "N"})", R"({"page": null})",
        R"({"reports": [{"page": "AutoTaskType", "procedure": "IWizardPage_Initialize",
                         "line": 0, "answer": 2}]})",
        R"({"page": null})"}},
  });
}

TEST(ScriptWizard, PrintsBytesThatAreNoText) {
  const Ran ran = Play("task set Name \"\xFF\"\ntask\n");
  EXPECT_EQ(ran.printed.at(0).at("Name"), "\xEF\xBF\xBD");
}

}  // namespace
}  // namespace plovix
