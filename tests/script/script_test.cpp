// Scripts that play the user, on texts that are their numbers: the words of the language, wrong lines,
// the parts of the scene, and whole roads through the wizard's pages.
#include <gtest/gtest.h>
#include <plovix/host/services.h>
#include <plovix/standalone/script/script_runner.h>
#include <plovix/standalone/script/words.h>
#include <plovix/standalone/tasks/users_and_tags.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

namespace plovix {
namespace {

using Json = nlohmann::json;

struct Ran {
  int status;
  std::vector<Json> printed;
  std::string messages;
};

Ran Play(const std::string& script, TaskStorage& storage, bool interactive = false,
         UsersAndTags* tables = nullptr, const std::optional<std::string>& user = {}) {
  std::istringstream in(script);
  std::ostringstream out, err;
  const ScriptOptions options{.storage = &storage,
                              .texts = TextTable::Ids(),
                              .tables = tables,
                              .user = user,
                              .interactive = interactive,
                              .source_name = "test.txt"};
  Ran ran{RunScript(in, out, err, options), {}, {}};
  std::istringstream lines(out.str());
  for (std::string line; std::getline(lines, line);) ran.printed.push_back(Json::parse(line));
  ran.messages = err.str();
  return ran;
}

// Whether `given` is `wanted`; of an object only the wanted members count.
bool Matches(const Json& wanted, const Json& given) {
  if (wanted.is_array() && given.is_array()) return std::ranges::equal(wanted, given, Matches);
  if (!wanted.is_object() || !given.is_object()) return wanted == given;
  return std::ranges::all_of(wanted.items(), [&](const auto& item) {
    return given.contains(item.key()) && Matches(item.value(), given[item.key()]);
  });
}

struct Case {
  const char* name;
  std::string script;
  std::vector<std::string> wanted;  // for each printed line, what must be in it
};

void ExpectPrinted(const Ran& ran, const std::vector<std::string>& wanted) {
  ASSERT_EQ(ran.printed.size(), wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    EXPECT_TRUE(Matches(Json::parse(wanted[i]), ran.printed[i]))
        << "wanted " << wanted[i] << "\ngiven  " << ran.printed[i].dump();
  }
}

void Check(const std::vector<Case>& cases) {
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    MemoryStorage storage;
    const Ran ran = Play(each.script, storage);
    EXPECT_EQ(ran.status, 0) << ran.messages;
    ExpectPrinted(ran, each.wanted);
  }
}

TEST(ScriptLanguage, SplitsLinesIntoWords) {
  const std::vector<std::pair<std::string, script::Words>> cases = {
      {" \t \r", {}},          {"# next", {}},
      {"a  b#c", {"a", "b"}},  {R"(a "" "x # y" "\"\\\n\t" # z)", {"a", "", "x # y", "\"\\\n\t"}},
      {"\"é\" à", {"é", "à"}},
  };
  for (const auto& [line, words] : cases) EXPECT_EQ(script::SplitLine(line), words) << line;
}

TEST(ScriptLanguage, StopsAtAWrongLineAndNamesItsPlace) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a \"b\\", "a double quote is not closed"},
      {"a \"\\x\"", "unknown escape \\x"},
      {"a \"b\"c", "double quotes must hold a whole word"},
      {"task fly", "unknown command \"task fly\""},
      {"type txtName", "wanted: type CONTROL TEXT"},
      {"task set Nam x", "a task has no member \"Nam\""},
      {"task set BaseDate 2026-02-29T10:00:00", "\"2026-02-29T10:00:00\" is not a date and time such as "},
      {"task set Name a b", "Name takes one value"},
      {"task set Recurrence on", "Recurrence takes nothing; name a member"},
      {"task set Recurrence.Fly 1", "a recurrence has no member \"Fly\""},
      {"task set Recurrence.Interval 2147483648", "the number 2147483648 is out of range"},
      {"task set Recurrence.Pattern Hourly", "a pattern is nothing, or a DailyPattern"},
      {"task set Recurrence.Pattern.Fly 1", "no pattern has a member \"Fly\""},
      {"task set Recurrence.Pattern.Day on", "the days of a week are Day.1, Sunday, to Day.7"},
      {"task set Recurrence.Pattern.Day.7 yes", "\"yes\" is neither on nor off"},
      {"task set Recurrence.Pattern.Month.1 1", "only Recurrence.Pattern.Day takes an index"},
      {"task set ScheduleStart 2026-02-28T00:00:01", "\"2026-02-28T00:00:01\" is not a date"},
      {"host now 2026-10-25T02:10:00+1",
       "\"2026-10-25T02:10:00+1\" does not end in an offset such as +01:00"},
      {"runs 10001", "the number of runs is from 1 to 10000"},
      {"task load 7", "no task is stored under the id 7"},
      {"task action A 16 8 write-log text=x", "the setting file of write-log is missing or unfit"},
      {"fail AutoTask.Fly", "the host has no member \"AutoTask.Fly\""},
      {"fail AutoTask.Name 0", "calls are counted from 1"},
      {"open Plovix.Fly", "there is no page \"Plovix.Fly\""},
      {"click lblTitle", "no page is open"},
      {"open Plovix.Details\ntype txtNam x", "the page Plovix.Details has no control txtNam"},
      {"open Plovix.Details\ntype cboDataObject x", "no type on cboDataObject, a ComboBox"},
  };
  MemoryStorage storage;
  for (const auto& [lines, problem] : cases) {
    const Ran ran = Play("show\n\n" + lines + "\nshow\n", storage);
    EXPECT_EQ(ran.status, 2) << lines;
    EXPECT_EQ(ran.printed.size(), 1U) << lines;
    const std::string place = lines.find('\n') == std::string::npos ? "3" : "4";
    EXPECT_TRUE(ran.messages.starts_with("test.txt:" + place + ": " + problem)) << ran.messages;
  }
  const Ran ran = Play("fly\nshow\nhelp\n", storage, true);
  EXPECT_EQ(ran.status, 0);
  EXPECT_EQ(ran.printed.size(), 1U);
  EXPECT_TRUE(
      ran.messages.starts_with("plovix> test.txt:1: unknown command \"fly\"\nplovix> plovix> task new"));
}

// The plain fields are in the table that the task file has, too: here is one of each type.
TEST(ScriptLanguage, SetsAndPrintsMembers) {
  const std::string set =
      "task set Name N\ntask set MayRun off\ntask set RecordMode -2\n"
      "task set BaseDate 2026-01-05T08:00:00\ntask set NameTag T\ntask set LocalizedName \"text of T\"\n"
      "task set Recurrence nothing\ntask category T\ntask category two private\n"
      "task action First 17 8\ntask action Second 16 8 write-log text=a=b file=f\n";
  const std::string full = R"({"Name": "N", "MayRun": false, "MayEdit": true, "RecordMode": -2,
      "BaseDate": "2026-01-05T08:00:00", "LocalizedName": "text of T", "Recurrence": null, "IsExisting": false,
      "Actions": [{"Name": "First", "Kind": "", "RecordModes": 17, "Capabilities": 8, "Settings": {}},
                  {"Name": "Second", "Kind": "write-log", "RecordModes": 16, "Capabilities": 8,
                   "Settings": {"text": "a=b", "file": "f"}}],
      "Categories": [{"Tag": "T", "Text": "text of T", "Public": true},
                     {"Tag": "two", "Text": "two", "Public": false}]})";
  const std::string empty =
      R"({"Name": "", "Actions": [], "Categories": [], "BaseDate": "1899-12-30T00:00:00"})";
  Check({
      {"before open", set + "task\ntask new\ntask", {full, empty}},
      {"after open", "open\n" + set + "task\ntask new\ntask", {full, empty}},
      {"the store",
       "store set Importing on\nstore set N -5\nstore set T \"a b\"\nstore set O nothing\nstore\nopen\nstore",
       {R"({"Importing": true, "N": -5, "T": "a b", "O": null})",
        R"({"AutoTask": {"kind": "AutoTask", "number": 1}})"}},
      {"permissions",
       "task set Permissions anna\ntask\nopen\ntask set MayRun off\ntask\ntask set Permissions nothing\ntask",
       {R"({"Permissions": "anna", "MayRun": true})", R"({"Permissions": "anna", "MayRun": false})",
        R"({"Permissions": null})"}},
      {"no text", "task set Name \"\xFF\"\ntask", {"{\"Name\": \"\xEF\xBF\xBD\"}"}},
  });
}

// Sets members of the recurrence, each "MEMBER=VALUE", and prints the task.
std::string Recurs(std::initializer_list<std::string> settings) {
  std::string script;
  for (std::string setting : settings) {
    setting[setting.find('=')] = ' ';
    script.append("task set Recurrence.").append(setting).append("\n");
  }
  return script + "task\n";
}

std::string HasPattern(const std::string& json) {
  return R"({"Recurrence": {"Pattern": )" + json + "}}";
}

TEST(ScriptLanguage, SetsAndPrintsTheRecurrence) {
  const std::string own =
      Recurs({"RecurrenceType=-1", "TimeKind=9", "Interval=7", "ExecutionTime=2026-01-05T08:00:01"});
  const std::string has_own = R"({"Recurrence": {"RecurrenceType": -1, "TimeKind": 9, "Interval": 7,
                                  "ExecutionTime": "2026-01-05T08:00:01", "Pattern": null}})";
  Check({
      {"its own members", own + "task set Recurrence nothing\ntask", {has_own, R"({"Recurrence": null})"}},
      {"the start",
       "task set ScheduleStart 2026-01-05\ntask\ntask set ScheduleStart 2026-02-01T00:00:00\ntask\n"
       "task set ScheduleStart nothing\ntask",
       {R"({"ScheduleStart": "2026-01-05"})", R"({"ScheduleStart": "2026-02-01"})",
        R"({"ScheduleStart": null})"}},
      {"a member makes the class that has it",
       Recurs({"Pattern.EveryNDays=3", "Pattern.WeekdaysOnly=on"}) +
           Recurs({"Pattern.EveryNWeeks=2", "Pattern.Day.1=on", "Pattern.Day=7 on", "Pattern.Day(3)=on"}) +
           Recurs({"Pattern.EveryNMonths=-2147483648", "Pattern.UseRelativeDay=on"}) +
           Recurs({"Pattern.Month=2147483647"}),
       {HasPattern(R"({"kind": "DailyPattern", "EveryNDays": 3, "WeekdaysOnly": true})"),
        HasPattern(R"({"kind": "WeeklyPattern", "EveryNWeeks": 2,
                       "Day": [true, false, true, false, false, false, true]})"),
        HasPattern(R"({"kind": "MonthlyPattern", "EveryNMonths": -2147483648, "UseRelativeDay": true})"),
        HasPattern(R"({"kind": "YearlyPattern", "Month": 2147483647})")}},
      {"the type decides, a pattern that fits stays",
       Recurs({"RecurrenceType=0", "Pattern.DayOfMonth=9", "RecurrenceType=3", "Pattern.RelativeWeek=8"}) +
           Recurs({"Pattern=DailyPattern", "Pattern.RelativeWeek=4"}),
       {HasPattern(R"({"kind": "MonthlyPattern", "DayOfMonth": 9, "RelativeWeek": 8})"),
        HasPattern(R"({"kind": "YearlyPattern", "DayOfMonth": 0, "RelativeWeek": 4})")}},
      {"the same class stays, another one is fresh",
       Recurs({"Pattern.EveryNDays=3", "Pattern=DailyPattern"}) +
           Recurs({"Pattern=nothing", "Pattern=DailyPattern"}),
       {HasPattern(R"({"EveryNDays": 3})"), HasPattern(R"({"EveryNDays": 0})")}},
  });
}

TEST(ScriptLanguage, PrintsTheNextRuns) {
  const std::string daily = "task set Recurrence.Pattern.EveryNDays 1\nruns 1";
  setenv("TZ", "Europe/Paris", 1);
  Check({
      {"from the start on, with its notes",
       "host now 2026-03-27T02:30:00\ntask set Recurrence.ExecutionTime 2026-01-01T02:30:00\n"
       "task set ScheduleStart 2026-03-25\ntask set Recurrence.Pattern.EveryNDays 2\nruns 2",
       {R"({"runs": [{"at": "2026-03-29T03:30:00+02:00", "note": "[schedule.note.time:02:30,03:30]"},
            {"at": "2026-03-31T02:30:00+02:00", "note": null}]})"}},
      {"before there were zones",
       "host now 1900-01-01T00:00:00\n" + daily,
       {R"({"runs": [{"at": "1900-01-01T08:00:00+00:09:21"}]})"}},
      {"in the second pass of a repeated hour",
       "host now 2026-10-25T02:10:00+01:00\ntask set Recurrence.TimeKind 1\n"
       "task set Recurrence.Interval 30\n" +
           daily,
       {R"({"sentence": "[schedule.daily.day.minutes:30]",
            "runs": [{"at": "2026-10-25T02:30:00+01:00"}]})"}},
  });
  setenv("TZ", "America/St_Johns", 1);
  Check({{"west of Greenwich",
          "host now 2026-01-05T10:00:00\n" + daily,
          {R"({"runs": [{"at": "2026-01-06T08:00:00-03:30", "note": null}]})"}}});
  unsetenv("TZ");
}

// A task that has a name, as far as Details.
const std::string kNamed = "task set Name N\ntask set Description D\n";
const std::string kOnDetails = kNamed + "open Plovix.Details\n";

TEST(ScriptWizard, CreatesATask) {
  Check({{"the whole road",
          "host now 2026-02-27T10:15:00\nopen\nshow\nchoose optNoData\nnext\ntype txtName Nightly\n"
          "leave txtName\nshow\nnext\nshow\nfinish\nmessages\nreports\nshow\ntask new\nshow\n"
          "task load 1\ntask\nopen\ncancel\nshow\nsaved\n",
          {R"({"page": "Plovix.AutoTaskType", "title": "[4]", "description": "[5]", "canContinue": true,
               "refreshes": 1, "next": "Plovix.Details", "focus": "optNoData", "pointer": 0,
               "buttons": {"back": false, "next": true, "finish": false, "cancel": true},
               "controls": {"lblSingleRecord": {"kind": "Label", "caption": "[116]", "link": false},
               "optNoData": {"kind": "OptionButton", "selected": true}}})",
           R"({"focus": null, "controls": {"chkAutoMan": {"kind": "CheckBox", "value": 0},
               "txtName": {"text": "Nightly", "selection": [0, 0]}, "txtDescription": {"text": "Nightly"},
               "cboDataObject": {"text": "", "index": -1, "items": [], "itemData": []}}})",
           R"({"next": "", "controls": {"VeloActionList": {"kind": "HostSlot", "items": []}}})",
           R"({"messages": []})", R"({"reports": []})", R"({"page": null, "outcome": "finished"})",
           R"({"page": null})", R"({"IsExisting": true, "Name": "Nightly", "Description": "Nightly"})",
           R"({"page": null, "outcome": "cancelled"})", R"({"saved": [1]})"}}});
  MemoryStorage storage;
  EXPECT_EQ(Play("host now 2026-02-27T10:15:00\n" + kOnDetails + "next\nfinish\n", storage).status, 0);
  EXPECT_EQ(storage.Load(1)->modified, DateTime{std::chrono::seconds{1'772'187'300}});
  // A script that ends early saves nothing; nothing of a run stays installed.
  EXPECT_EQ(Play(kOnDetails + "next\n", storage).status, 0);
  EXPECT_EQ(storage.List().size(), 1U);
  EXPECT_THROW(static_cast<void>(Services()), Failure);
}

// What the pages do is for their tests; here it shows that a command reaches what it names.
TEST(ScriptWizard, SpeaksOfThePages) {
  const std::string tags = "task set UsesLanguageTags on\ntask set NameTag tag1\nhost marker on\n";
  Check({
      {"an answer, and OK without one",
       "task action A 25 8\nopen\nchoose optQueryResults\nanswer cancel\nnext\nmessages\ntask\n"
       "next\nmessages\nmessages\ntask",
       {R"({"messages": [{"title": "Plovix", "text": "[117]", "buttons": 33, "answer": 2}]})",
        R"({"RecordMode": 0, "Actions": [{"Name": "A"}]})", R"({"messages": [{"answer": 1}]})",
        R"({"messages": []})", R"({"RecordMode": 2, "Actions": []})"}},
      {"every way to leave it",
       "open\nleave-page 0\nleave-page 1\nleave-page 2\nleave-page 3\nleave-page 4\nback\nfinish",
       {R"({"direction": 0, "answer": true})", R"({"answer": true})", R"({"direction": 2, "answer": false})",
        R"({"answer": true})", R"({"direction": 4, "answer": false})", R"({"refused": "back"})",
        R"({"refused": "finish"})"}},
      {"tag mode",
       "host tagmode on\nopen Plovix.Details\nshow",
       {R"({"controls": {"cmdNameLangTag": {"visible": true}}})"}},
      {"the tag editor",
       tags + "task set Name old\nopen Plovix.Details\ntype txtName x\ndialog edittag tag2\n"
              "press cmdNameLangTag\nshow\ntask set DescriptionTag d\ntask",
       {R"({"refused": "type txtName"})", R"({"controls": {"txtName": {"text": "tag2"}}})",
        R"({"NameTag": "tag1", "Name": "old"})"}},
      {"a missing text and right",
       "host missing 20\nhost right 112 off\nopen Plovix.Details\nshow",
       {R"({"controls": {"lblName": {"caption": "Name"}, "lblCategory": {"link": false}}})"}},
      {"hidden, disabled, no wizard",
       kOnDetails + "press cmdNameLangTag\ntoggle chkPersonalTask\ncancel\nnext",
       {R"({"refused": "press cmdNameLangTag"})", R"({"refused": "toggle chkPersonalTask"})",
        R"({"refused": "next"})"}},
      // What could not be loaded is not saved as if it were empty.
      {"actions that could not be loaded",
       "task action A 25 8\nopen Plovix.Actions\nfinish\ntask load 1\nfail VeloActionList.Load\n"
       "open Plovix.Actions\nfinish\nshow\ntask load 1\ntask\n",
       {R"({"page":null,"outcome":"finished"})", R"({"Actions":[{"Name":"A"}]})"}},
  });
}

// Task 1 is shared, task 2 anna's own, task 3 may be edited by ben.
TEST(ScriptWizard, WorksWithTheRightsOfItsUser) {
  MemoryUsersAndTags tables;
  tables.SaveUsers({FirstAdministrator(),
                    {.id = "anna", .name = "", .groups = {}, .create_personal = true},
                    {.id = "ben", .name = "", .groups = {}}},
                   tables.Users());
  const std::string save = "open Plovix.Actions\nfinish\nmessages\n";
  const std::string details = "open Plovix.Details\nnext\nfinish\ntask\n";
  const auto refused = [](const std::string& why) {
    return R"({"messages": [{"text": "[wizard.saveFailed:[rights.)" + why + R"(]]"}]})";
  };
  const struct {
    std::optional<std::string> user;
    std::string script;
    std::vector<std::string> printed;
    std::string problem = "";  // with which the run stops
  } cases[] = {
      {"carla", "saved", {}, "test.txt: [program.noSuchUser:carla,admin, anna, ben]\n"},
      {"anna",
       "saved\ntask load 3",
       {R"({"saved": [1, 2]})"},
       "test.txt:2: the user may not view the task 3\n"},
      {"ben", "saved\ntask load 1\n" + save, {R"({"saved": [1, 3]})", refused("mayNotEdit")}},
      {"ben",
       "dialog permissions ben\ntask load 3\nopen Plovix.Details\nclick lblPermissions\ntask",
       {R"({"Permissions": "ben: view, run, edit"})"}},
      {"admin",
       "task load 2\n" + details + "task new\nopen\nsaved\ntask",
       {R"({"Owner": "anna"})", R"({"saved": [1, 2, 3]})", R"({"Owner": ""})"}},
      {"anna", "host user otto\ntask load 2\n" + details, {R"({"Owner": "otto"})"}},
      {{}, "saved\ntask load 1\n" + save, {R"({"saved": [1, 2, 3]})", R"({"messages": []})"}},
  };
  for (const auto& [user, script, printed, problem] : cases) {
    SCOPED_TRACE(script);
    MemoryStorage storage;
    TaskRecord task;
    task.name = task.description = "N";
    for (const char* owner : {"", "anna", ""}) {
      task.owner = owner;
      if (storage.List().size() == 2)
        task.permissions = PermissionSet{{.subject = "ben", .view = true, .run = true, .edit = true}};
      storage.Save(task, {});
    }
    const Ran ran = Play(script, storage, false, &tables, user);
    EXPECT_EQ(ran.status, problem.empty() ? 0 : 2);
    EXPECT_EQ(ran.messages, problem);
    ExpectPrinted(ran, printed);
    EXPECT_NO_THROW(storage.Save({}, {})) << "nobody is asked any more";
  }
}

TEST(ScriptWizard, ReportsPlannedFailures) {
  const std::string fails = kOnDetails + "type txtName A\nfail AutoTask.SetName\n";
  const auto reported = [](int answer) {
    return R"({"reports": [{"number": 5, "description": "Planned failure of AutoTask.SetName",
               "module": "Plovix", "page": "Details", "procedure": "SaveValues", "answer": )" +
           std::to_string(answer) + "}]}";
  };
  Check({
      {"retry",
       fails + "report retry\nnext\nreports\nreports\ntask\nshow",
       {reported(0), R"({"reports": []})", R"({"Name": "A"})", R"({"page": "Plovix.Actions"})"}},
      {"the n-th call, once",
       "fail AutoTask.SetName 2\n" + kOnDetails + "leave-page 0\nleave-page 0\nleave-page 0\nreports",
       {R"({"answer": true})", R"({"answer": false})", R"({"answer": true})", reported(2)}},
      {"an event without a handler",
       "open\nfail WizardHost.MoveNext\ndblclick lblNoData\nreports\nshow",
       {R"({"reports": [{"procedure": "lblNoData_DblClick", "line": 0}]})",
        R"({"page": "Plovix.AutoTaskType"})"}},
      {"looking does not count",
       kNamed + "fail AutoTask.RecordMode\ntask\nshow\nopen\nreports",
       {R"({"Name": "N"})", R"({"page": null})",
        R"({"reports": [{"page": "AutoTaskType", "procedure": "IWizardPage_Initialize", "answer": 2}]})"}},
  });
}

}  // namespace
}  // namespace plovix
