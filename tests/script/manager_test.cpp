// Tasks that run in scripts: what the policies promise, what a person asks for, records and their ledger,
// crashes, and clocks that are set. Each scene is a script; each line of `runs` is one run of its history.
#include <gtest/gtest.h>
#include <plovix/host/auto_task.h>
#include <plovix/standalone/runs/memory_run_store.h>
#include <plovix/standalone/script/script_runner.h>
#include <plovix/standalone/tasks/action_kinds.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

namespace plovix {
namespace {

using Json = nlohmann::json;
using std::chrono::hours;
using std::chrono::year;

// Task 1 runs daily at eight, task 2 every ten minutes, task 3 on the orders above 5; all were saved at
// seven.
TaskRecord Daily() {
  TaskRecord task;
  task.name = "Daily";
  task.allow_automation_manager = true;
  task.recurrence.emplace().pattern = DailyRecord{1, false};
  task.schedule_start = std::chrono::local_days{year{2026} / 3 / 1};
  ActionRecord log = NewAction(*FindActionKind("write-log"));
  log.settings = {{"text", "hello"}, {"file", "/tmp/log"}};
  task.actions = {log};
  return task;
}

TaskRecord Often() {
  TaskRecord task = Daily();
  task.recurrence->time_kind = time_kind::kEveryNMinutes;
  task.recurrence->interval = 10;
  return task;
}

TaskRecord OnOrders() {
  TaskRecord task = Daily();
  task.recurrence.reset();
  task.schedule_start.reset();
  task.record_mode = record_mode::kQueryResults;
  task.data_object_name = "orders";
  task.query = "SELECT * FROM orders WHERE amount > 5";
  task.actions.front().settings["text"] = "{id}: {name}";
  return task;
}

std::string Time(const Json& at) {
  return at.is_null() ? "-" : at.get<std::string>().substr(5, 11);
}

// "1 schedule succeeded due 03-01T08:00 began 03-01T08:00 1 0/0/0/0 reason"
std::string Line(const Json& run) {
  const Json& records = run["records"];
  std::ostringstream line;
  line << run["task"] << " " << run["origin"].get<std::string>() << " " << run["state"].get<std::string>();
  if (!run["due"].is_null()) line << " due " << Time(run["due"]);
  if (run.contains("count")) line << " to " << Time(run["to"]) << " count " << run["count"];
  if (!run["started"].is_null()) line << " began " << Time(run["started"]);
  if (run["attempt"] > 1) line << " attempt " << run["attempt"];
  if (run["state"] == "missed" || run["state"] == "skipped") line << " " << run["reason"].get<std::string>();
  if (records["found"] > 0)
    line << " " << records["found"] << "/" << records["done"] << "/" << records["failed"] << "/"
         << records["skipped"];
  return line.str();
}

struct Scene {
  const char* name;
  std::string script;
  std::vector<std::string> runs;
  std::vector<std::string> ledger = {};    // of task 3: "i:2 done"
  std::vector<std::string> executed = {};  // the texts
};

const std::string kOrders =
    "host dataobject orders Orders id\n"
    "data orders 1 amount=5 name=Ann\ndata orders 2 amount=7 name=Bob\ndata orders 10 amount=9 name=Cy\n";

void Check(const Scene& scene, const std::function<void(TaskRecord&)>& change = {}) {
  SCOPED_TRACE(scene.name);
  MemoryStorage storage;
  const DateTime seven = std::chrono::local_days{year{2026} / 3 / 1} + hours{7};
  for (TaskRecord task : {Daily(), Often(), OnOrders()}) {
    if (change) change(task);
    storage.Save(task, seven);
  }
  std::istringstream in("host now 2026-03-01T07:00:00\n" + scene.script + "\nhistory\nledger 3\nexecuted\n");
  std::ostringstream out, err;
  EXPECT_EQ(RunScript(in, out, err, {.storage = &storage, .texts = TextTable::Ids()}), 0) << err.str();
  std::istringstream lines(out.str());
  std::vector<std::string> runs, ledger, executed;
  for (std::string line; std::getline(lines, line);) {
    const Json json = Json::parse(line);
    for (const Json& run : json.value("history", Json::array())) runs.push_back(Line(run));
    for (const Json& row : json.value("ledger", Json::array()))
      ledger.push_back(row["record"].get<std::string>() + " " + row["state"].get<std::string>());
    for (const Json& action : json.value("executed", Json::array())) executed.push_back(action["text"]);
  }
  EXPECT_EQ(runs, scene.runs);
  EXPECT_EQ(ledger, scene.ledger);
  EXPECT_TRUE(scene.executed.empty() || executed == scene.executed) << testing::PrintToString(executed);
}

class ScriptManager : public testing::Test {
 protected:
  ScriptManager() { ::setenv("TZ", "UTC", 1); }
  ~ScriptManager() override { ::unsetenv("TZ"); }
};

// Only the daily task is scheduled.
void WithoutOften(TaskRecord& task) {
  if (task.recurrence && task.recurrence->time_kind == time_kind::kEveryNMinutes)
    task.allow_automation_manager = false;
}
// Only the one of every ten minutes is.
void WithoutDaily(TaskRecord& task) {
  if (task.recurrence && task.recurrence->time_kind != time_kind::kEveryNMinutes)
    task.allow_automation_manager = false;
}

TEST_F(ScriptManager, RunsWhatIsDueAndDecidesWhatWasMissed) {
  const std::vector<Scene> scenes = {
      {"not before its time", "manager advance 2026-03-01T07:59:59", {}},
      {"at its time",
       "manager advance 2026-03-01T08:00:00",
       {"1 schedule succeeded due 03-01T08:00 began 03-01T08:00"}},
      {"late is not missed",
       "host now 2026-03-01T08:01:00\nmanager advance 2026-03-01T08:01:00",
       {"1 schedule succeeded due 03-01T08:00 began 03-01T08:01"}},
      {"missed, within a day",
       "manager down 2026-03-03T08:30:00\nmanager advance 2026-03-03T08:30:00",
       {"1 schedule missed due 03-01T08:00 to 03-02T08:00 count 2 late",
        "1 catch-up succeeded due 03-03T08:00 began 03-03T08:30"}},
      {"a day and a second late is too late",
       "policy 2 missed none\nmanager down 2026-03-01T09:00:00\ntask load 1\ntask set Recurrence nothing\nopen Plovix.Actions\nfinish\n"
       "manager advance 2026-03-02T08:00:01",
       {}},
      {"none",
       "policy 1 missed none\nmanager down 2026-03-02T09:00:00\nmanager advance 2026-03-02T09:00:00",
       {"1 schedule missed due 03-01T08:00 to 03-02T08:00 count 2 late"}},
      {"the latest two, one after another",
       "action takes 60\npolicy 1 missed all 2\nmanager down 2026-03-04T07:00:00\nmanager advance 2026-03-04T07:02:00",
       {"1 schedule missed due 03-01T08:00 to 03-01T08:00 count 1 late",
        "1 catch-up succeeded due 03-02T08:00 began 03-04T07:00",
        "1 catch-up succeeded due 03-03T08:00 began 03-04T07:01"}},
      {"the clock is set back: nothing runs twice",
       "manager advance 2026-03-02T08:00:00\nhost now 2026-03-01T07:00:00\nmanager advance 2026-03-03T08:00:00",
       {"1 schedule succeeded due 03-01T08:00 began 03-01T08:00",
        "1 schedule succeeded due 03-02T08:00 began 03-02T08:00",
        "1 schedule succeeded due 03-03T08:00 began 03-03T08:00"}},
      {"the clock is set back a day: what waits does not wait for that day",
       "policy 1 retries 1\naction fails 1\nmanager advance 2026-03-02T08:00:00\nstart 1\n"
       "host now 2026-03-01T08:30:00\nmanager advance 2026-03-01T08:30:01",
       {"1 schedule succeeded due 03-01T08:00 began 03-01T08:01 attempt 2",
        "1 schedule succeeded due 03-02T08:00 began 03-02T08:00", "1 manual succeeded began 03-01T08:30"}},
      {"asleep for two days while it runs",
       "action takes 600\nmanager advance 2026-03-01T08:00:00\nhost now 2026-03-03T07:00:00\n"
       "manager advance 2026-03-03T07:10:00",
       {"1 schedule succeeded due 03-01T08:00 began 03-01T08:00",
        "1 catch-up succeeded due 03-02T08:00 began 03-03T07:00"}},
      {"paused, then not caught up with",
       "manager advance 2026-03-01T07:30:00\npause all\nmanager advance 2026-03-02T09:00:00\nmanager down 2026-03-03T09:00:00\n"
       "resume all\nmanager advance 2026-03-04T08:00:00",
       {"1 schedule missed due 03-01T08:00 to 03-03T08:00 count 3 paused",
        "1 schedule succeeded due 03-04T08:00 began 03-04T08:00"}},
  };
  for (const Scene& scene : scenes) Check(scene, WithoutOften);
}

TEST_F(ScriptManager, RunsNothingOfAHeldTask) {
  Check({"held",
         "manager advance 2026-03-02T09:00:00\ndryrun 1\nmanager advance 2026-03-02T09:00:01",
         {"1 schedule missed due 03-01T08:00 to 03-02T08:00 count 2 paused",
          "1 dry-run succeeded began 03-02T09:00"}},
        [](TaskRecord& task) {
          WithoutOften(task);
          task.held = true;
        });
}

// Ann saved the task; a run that was asked for waits.
TEST_F(ScriptManager, EndsInWordsWhatCannotRun) {
  const UserRecord admin = FirstAdministrator();
  const UserRecord ann{.id = "ann", .name = "", .groups = {}, .create_shared = true, .run_programs = true};
  const struct {
    std::string words;
    std::vector<UserRecord> users;
    const char* kind = "write-log";
    bool is_deleted = false;
  } cases[] = {{"", {admin, ann}},
               {"\"ann\" saved the task, and is no longer a user", {admin}},
               {"\"fly\"", {admin, ann}, "fly"},
               {"the task was deleted", {admin, ann}, "write-log", true}};
  for (const auto& each : cases) {
    MemoryUsersAndTags tables;
    tables.SaveUsers(each.users, tables.Users());
    MemoryStorage storage;
    MemoryRunStore runs(storage);
    storage.SetPerson("ann");
    TaskRecord task = Daily();
    task.actions.front().kind = each.kind;
    task = storage.Save(task, std::chrono::local_days{year{2026} / 3 / 1} + hours{7});
    RunRecord run;
    run.task = task.id;
    run.origin = RunOrigin::kManual;
    runs.Request(run);
    if (each.is_deleted) storage.Delete(task.id, task.version);
    std::istringstream in("host now 2026-03-01T07:00:00\nmanager advance 2026-03-01T07:00:01\nhistory\n");
    std::ostringstream out, err;
    const ScriptOptions options{
        .storage = &storage, .texts = TextTable::Ids(), .runs = &runs, .tables = &tables, .user = "admin"};
    EXPECT_EQ(RunScript(in, out, err, options), 0) << err.str();
    const Json over = Json::parse(out.str())["history"][0];
    EXPECT_EQ(over["state"], each.words.empty() ? "succeeded" : "failed");
    EXPECT_NE(over["reason"].get<std::string>().find(each.words), std::string::npos) << over;
  }
}

TEST_F(ScriptManager, LetsOneRunOfATaskWaitForAnother) {
  const std::string two = "manager advance 2026-03-01T07:30:00";
  const std::vector<Scene> scenes = {
      {"skipped",
       "action takes 900\n" + two,
       {"2 schedule succeeded due 03-01T07:10 began 03-01T07:10",
        "2 schedule skipped due 03-01T07:20 running",
        "2 schedule running due 03-01T07:30 began 03-01T07:30"}},
      {"an end at the instant of the next one",
       "action takes 600\n" + two,
       {"2 schedule succeeded due 03-01T07:10 began 03-01T07:10",
        "2 schedule succeeded due 03-01T07:20 began 03-01T07:20",
        "2 schedule running due 03-01T07:30 began 03-01T07:30"}},
      {"one is queued",
       "policy 2 overlap queue\naction takes 1500\n" + two,
       {"2 schedule running due 03-01T07:10 began 03-01T07:10", "2 schedule waiting due 03-01T07:20",
        "2 schedule skipped due 03-01T07:30 queued"}},
      {"what a person asks for waits its turn, a dry run does not",
       "action takes 60\nmanager advance 2026-03-01T07:10:00\nstart 2\ndryrun 2\nmanager advance 2026-03-01T07:11:00",
       {"2 schedule succeeded due 03-01T07:10 began 03-01T07:10", "2 manual running began 03-01T07:11",
        "2 dry-run succeeded began 03-01T07:10"}},
      {"retried after one and two minutes, then failed",
       "policy 2 retries 2\naction fails 3\nmanager advance 2026-03-01T07:15:00",
       {"2 schedule failed due 03-01T07:10 began 03-01T07:13 attempt 3"}},
      {"its limit",
       "policy 2 limit 30\naction takes 60\nmanager advance 2026-03-01T07:11:00",
       {"2 schedule failed due 03-01T07:10 began 03-01T07:10"}},
      {"stopped while it waits and while it runs",
       "action takes 600\nstart 2\nstart 2\nmanager advance 2026-03-01T07:00:10\nstop 2\nstop 1\nmanager advance 2026-03-01T07:01:00",
       {"2 manual cancelled began 03-01T07:00", "2 manual cancelled"}},
      {"a crash: repeated",
       "manager crash\nmanager advance 2026-03-01T07:12:00\nmanager advance 2026-03-01T07:13:00",
       {"2 schedule succeeded due 03-01T07:10 began 03-01T07:12 attempt 2"}},
      {"a crash: left",
       "policy 2 interrupted leave\nmanager crash\nmanager advance 2026-03-01T07:12:00\nmanager advance 2026-03-01T07:13:00",
       {"2 schedule interrupted due 03-01T07:10 began 03-01T07:10"}},
      {"stopped with its manager: repeated",
       "action takes 60\nmanager advance 2026-03-01T07:10:30\nmanager down 2026-03-01T07:12:00\nmanager advance 2026-03-01T07:14:00",
       {"2 schedule succeeded due 03-01T07:10 began 03-01T07:12 attempt 2"}},
  };
  for (const Scene& scene : scenes) Check(scene, WithoutDaily);
}

TEST_F(ScriptManager, TakesTheRecordsThatLedgerAndModeLeave) {
  const std::string run = "start 3\nmanager advance 2026-03-01T07:00:05\n";
  const auto mode = [](std::int32_t processing_mode) {
    return [=](TaskRecord& task) {
      task.processing_mode = processing_mode;
      task.allow_automation_manager = false;
    };
  };
  const std::string again = "host now 2026-03-01T07:01:00\ndata orders 10 name=Di\n" + run.substr(0, 8) +
                            "manager advance 2026-03-01T07:01:05\n";
  const std::vector<std::string> both = {"i:2 done", "i:10 done"};
  Check({"once",
         kOrders + run + again,
         {"3 manual succeeded began 03-01T07:00 2/2/0/0", "3 manual succeeded began 03-01T07:01 2/0/0/2"},
         both,
         {"2: Bob", "10: Cy"}},
        mode(0));
  Check({"modified",
         kOrders + run + again,
         {"3 manual succeeded began 03-01T07:00 2/2/0/0", "3 manual succeeded began 03-01T07:01 2/1/0/1"},
         both,
         {"2: Bob", "10: Cy", "10: Di"}},
        mode(1));
  Check({"every time",
         kOrders + run + again,
         {"3 manual succeeded began 03-01T07:00 2/2/0/0", "3 manual succeeded began 03-01T07:01 2/2/0/0"},
         both,
         {"2: Bob", "10: Cy", "2: Bob", "10: Di"}},
        mode(2));
  Check({"a failed record is left alone until somebody asks",
         kOrders + ("action fails 1\n" + run) + run + "start 3 2\n" + run,
         {"3 manual partly began 03-01T07:00 2/1/1/0", "3 manual succeeded began 03-01T07:00 2/0/0/2",
          "3 manual succeeded began 03-01T07:00 1/1/0/0", "3 manual succeeded began 03-01T07:00 2/0/0/2"},
         both},
        mode(0));
  Check({"a retry takes the failed records",
         kOrders + ("policy 3 retries 1\naction fails 1\n" + run) + "manager advance 2026-03-01T07:02:00",
         {"3 manual succeeded began 03-01T07:01 attempt 2 2/2/0/0"},
         both,
         {"2: Bob", "10: Cy", "2: Bob"}},
        mode(0));
  Check({"a crash leaves a record in doubt",
         kOrders + ("policy 3 interrupted leave\nmanager crash\n" + run) +
             "manager advance 2026-03-01T07:00:05\n" + run,
         {"3 manual interrupted began 03-01T07:00", "3 manual succeeded began 03-01T07:00 2/1/0/1"},
         {"i:2 in-doubt", "i:10 done"}},
        mode(0));
  Check(
      {"after a crash no record is left out and none is done twice",
       kOrders +
           ("action takes 1\nstart 3\nmanager advance 2026-03-01T07:00:00\nmanager crash\nmanager advance 2026-03-01T07:00:01\n") +
           "manager advance 2026-03-01T07:00:10",
       {"3 manual succeeded began 03-01T07:00 attempt 2 2/2/0/0"},
       both,
       {"2: Bob", "10: Cy", "10: Cy"}},
      mode(0));
  Check({"a query that cannot be run", kOrders + run, {"3 manual failed began 03-01T07:00"}},
        [&](TaskRecord& task) {
          task.query = "SELECT * FROM nothing";
          task.allow_automation_manager = false;
        });
  Check({"no field tells the time of change", kOrders + run, {"3 manual failed began 03-01T07:00"}},
        [&](TaskRecord& task) {
          task.base_date = kZeroDate + hours{24};
          task.allow_automation_manager = false;
        });
  Check(
      {"changed on the day and before",
       kOrders +
           ("data orders 2 changed=2026-02-01T00:00:00\ndata orders 10 changed=2026-01-31T23:59:59\n" + run),
       {"3 manual succeeded began 03-01T07:00 2/1/0/1"},
       {"i:2 done"}},
      [&](TaskRecord& task) {
        task.base_date = std::chrono::local_days{year{2026} / 2 / 1};
        task.allow_automation_manager = false;
      });
  Check({"the ledger is cleared once",
         kOrders + run + run,
         {"3 manual succeeded began 03-01T07:00 2/2/0/0", "3 manual succeeded began 03-01T07:00 2/0/0/2"},
         both},
        [&](TaskRecord& task) {
          task.process_all_records = true;
          task.allow_automation_manager = false;
        });
}

TEST_F(ScriptManager, ThePreviewFollowsTheStoredPolicyAndZone) {
  MemoryStorage storage;
  TaskRecord task = Daily();
  task.recurrence->recurrence_type = 2;
  task.recurrence->pattern = MonthlyRecord{1, {.day_of_month = 31}};
  storage.Save(task, {});
  std::istringstream in(
      "host now 2026-04-02T10:00:00\ntask load 1\nruns 1\npolicy 1 short-month skip\nruns 1\n");
  std::ostringstream out, err;
  EXPECT_EQ(RunScript(in, out, err,
                      {.storage = &storage, .texts = TextTable::Ids(), .zone = Zone::Named("Asia/Tokyo")}),
            0)
      << err.str();
  EXPECT_NE(out.str().find("\"2026-04-30T08:00:00+09:00\""), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("\"2026-05-31T08:00:00+09:00\""), std::string::npos) << out.str();
}

}  // namespace
}  // namespace plovix
