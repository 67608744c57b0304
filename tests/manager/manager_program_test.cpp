// plovix-manager as a process, on a task file and a data file of its own: it really runs programs, statements
// and log lines, and when it is killed another one goes on.
#include <gtest/gtest.h>
#include <plovix/host/auto_task.h>
#include <plovix/standalone/sqlite/connection.h>
#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace plovix {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

class ManagerProgram : public testing::Test {
 protected:
  ManagerProgram() {
    std::string name = (fs::temp_directory_path() / "plovix-manager-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    tasks_ = std::make_unique<SqliteStorage>(File("tasks.sqlite"));
    runs_ = std::make_unique<SqliteRunStore>(File("tasks.sqlite"));
    Connection data(File("data.sqlite"), milliseconds{1000}, Access::kReadWrite);
    data.Run("CREATE TABLE orders (id INTEGER PRIMARY KEY, name TEXT, state TEXT)");
    data.Run("INSERT INTO orders VALUES (1, 'Ann', ''), (2, 'Bob O''Neil {x}', ''), (3, 'gone', 'x')");
  }
  ~ManagerProgram() override { fs::remove_all(folder_); }

  [[nodiscard]] std::string File(const char* name) const { return (folder_ / name).string(); }
  [[nodiscard]] std::string Content(const char* name) const {
    std::ostringstream content;
    content << std::ifstream(File(name)).rdbuf();
    return content.str();
  }

  static ActionRecord Action(const char* kind, std::map<std::string, std::string> settings) {
    ActionRecord action = NewAction(*FindActionKind(kind));
    settings.merge(action.settings);
    action.settings = std::move(settings);
    return action;
  }

  // Stores a task that works on the orders without a state, and asks for a run of it.
  void Ask(std::vector<ActionRecord> actions) {
    TaskRecord task;
    task.name = "Orders";
    task.record_mode = record_mode::kQueryResults;
    task.data_object_name = "orders";
    task.query = "SELECT * FROM orders WHERE state = ''";
    task.actions = std::move(actions);
    RunRecord run;
    run.task = tasks_->Save(task, kZeroDate).id;
    run.origin = RunOrigin::kManual;
    run.not_before = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    (void)runs_->Request(run);
  }

  [[nodiscard]] pid_t Start(const char* data_name = "data.sqlite", const char* word = "--json") const {
    const pid_t id = fork();
    if (id == 0) {
      const std::string tasks = File("tasks.sqlite"), data = File(data_name);
      execl(PLOVIX_MANAGER, "plovix-manager", "--once", "--as-root", "--database", tasks.c_str(), "--data",
            data.c_str(), word, nullptr);
      _exit(127);
    }
    return id;
  }
  static int StatusOf(pid_t id) {
    int status = 0;
    waitpid(id, &status, 0);
    return status;
  }

  fs::path folder_;
  std::unique_ptr<SqliteStorage> tasks_;
  std::unique_ptr<SqliteRunStore> runs_;
};

TEST_F(ManagerProgram, RunsEveryKindOfActionOnTheRecordsOfAQuery) {
  Ask({Action("run-program",
              {{"path", "/bin/sh"}, {"arguments", "-c \"printf '%s\\n' \\\"$1\\\"\" sh {name}"}}),
       Action("run-sql", {{"statement", "UPDATE orders SET state = 'done ' || {name} WHERE id = {id}"}}),
       Action("write-log", {{"text", "{id}: {name}"}, {"file", File("log")}})});
  EXPECT_EQ(StatusOf(Start()), 0);
  const std::vector<RunRecord> history = runs_->History({});
  ASSERT_EQ(history.size(), 1U);
  EXPECT_EQ(history[0].state, RunState::kSucceeded) << history[0].reason;
  EXPECT_EQ(history[0].records, (RecordCounts{2, 2, 0, 0}));
  EXPECT_EQ(Content("log"), "1: Ann\n2: Bob O'Neil {x}\n");
  EXPECT_EQ(Content("tasks.sqlite-logs/run-1.log"), "Bob O'Neil {x}\n");
  const Connection data(File("data.sqlite"), milliseconds{1000}, Access::kReadOnly);
  EXPECT_EQ(data.Text("SELECT group_concat(state, ',') FROM orders"), "done Ann,done Bob O'Neil {x},x");
}

// As a backup is put back, in place and as another file.
TEST_F(ManagerProgram, PausesAFileThatWasRestored) {
  const std::string file = File("tasks.sqlite"), backup = File("backup");
  for (const bool in_place : {true, false}) {
    EXPECT_EQ(StatusOf(Start()), 0);
    tasks_->EmptyLog();
    fs::copy_file(file, backup, fs::copy_options::overwrite_existing);
    EXPECT_EQ(StatusOf(Start()), 0);
    EXPECT_EQ(runs_->PauseOfAll(), std::nullopt);
    tasks_.reset();
    runs_.reset();
    if (in_place) {
      std::ofstream(file, std::ios::trunc) << std::ifstream(backup).rdbuf();
    } else {
      fs::rename(backup, file);
    }
    EXPECT_EQ(StatusOf(Start()), 0);
    tasks_ = std::make_unique<SqliteStorage>(file);
    runs_ = std::make_unique<SqliteRunStore>(file);
    ASSERT_TRUE(runs_->PauseOfAll());
    EXPECT_EQ(runs_->PauseOfAll()->reason, "restored");
    runs_->SetPauseOfAll({}, {"ann", {}});
  }
}

TEST_F(ManagerProgram, RunsTasksOnTheirOwnDataAlone) {
  const ActionRecord mark =
      Action("run-sql", {{"statement", "UPDATE orders SET state = 'x' WHERE id = {id}"}});
  const auto run = [&](const char* data, const char* word) {
    Ask({mark});
    EXPECT_EQ(StatusOf(Start(data, word)), 0);
    return runs_->History({}).back();
  };
  fs::copy_file(File("data.sqlite"), File("other.sqlite"));
  EXPECT_EQ(run("data.sqlite", "--json").state, RunState::kSucceeded);
  const RunRecord refused = run("other.sqlite", "--json");
  EXPECT_EQ(refused.state, RunState::kFailed);
  for (const std::string& word : {File("data.sqlite"), File("other.sqlite"), std::string("--accept-data")})
    EXPECT_NE(refused.reason.find(word), std::string::npos) << refused.reason;
  EXPECT_EQ(run("other.sqlite", "--accept-data").state, RunState::kSucceeded);
  EXPECT_EQ(run("data.sqlite", "--json").state, RunState::kFailed);
}

// The first record's program never ends, the first time.
TEST_F(ManagerProgram, GoesOnWhereAKilledOneStopped) {
  const std::string once =
      "-c \"echo $1 >>" + File("begun") + "; [ -e " + File("second") + " ] || sleep 600\" sh {id}";
  Ask({Action("run-program", {{"path", "/bin/sh"}, {"arguments", once}})});
  const pid_t first = Start();
  for (int tries = 0; tries < 3000 && Content("begun").empty(); ++tries)
    std::this_thread::sleep_for(milliseconds{10});
  kill(first, SIGKILL);
  EXPECT_TRUE(WIFSIGNALED(StatusOf(first)));
  std::ofstream(File("second")) << "x";
  EXPECT_EQ(StatusOf(Start()), 0);
  const std::vector<RunRecord> history = runs_->History({});
  ASSERT_EQ(history.size(), 1U);
  EXPECT_EQ(history[0].state, RunState::kSucceeded) << history[0].reason;
  EXPECT_EQ(history[0].attempt, 2);
  EXPECT_EQ(history[0].records, (RecordCounts{2, 2, 0, 0}));
  EXPECT_EQ(Content("begun"), "1\n1\n2\n");
}

}  // namespace
}  // namespace plovix
