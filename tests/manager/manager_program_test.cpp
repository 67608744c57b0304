// plovix-manager as a process, on a task file and a data file of its own: it really runs programs, statements
// and log lines, and when it is killed another one goes on.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <plovix/host/auto_task.h>
#include <plovix/standalone/sqlite/connection.h>
#include <plovix/standalone/storage/manager_lock.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
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

  // `input`: its standard input.
  [[nodiscard]] pid_t Start(std::vector<std::string> more = {"--once"}, int input = STDIN_FILENO,
                            const char* data_name = "data.sqlite") const {
    const std::string tasks = File("tasks.sqlite"), data = File(data_name);
    const pid_t id = fork();
    if (id == 0) {
      dup2(input, STDIN_FILENO);
      more.insert(more.begin(), {"plovix-manager", "--as-root", "--database", tasks, "--data", data});
      std::vector<char*> words;
      for (std::string& word : more) words.push_back(word.data());
      words.push_back(nullptr);
      execv(PLOVIX_MANAGER, words.data());
      _exit(127);
    }
    return id;
  }
  static ActionRecord Script(const std::string& text) {
    return Action("run-program", {{"path", "/bin/sh"}, {"arguments", "-c \"" + text + "\" sh {id}"}});
  }
  // Until the programs have written that many lines, or as good as for ever.
  void WaitForBegun(std::size_t lines) const {
    const auto count = [this] {
      return static_cast<std::size_t>(std::ranges::count(Content("begun"), '\n'));
    };
    for (int tries = 0; tries < 3000 && count() < lines; ++tries)
      std::this_thread::sleep_for(milliseconds{10});
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
    EXPECT_EQ(StatusOf(Start({"--once", word}, STDIN_FILENO, data)), 0);
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
  Ask({Script("echo $1 >>" + File("begun") + "; [ -e " + File("second") + " ] || sleep 600")});
  const pid_t first = Start();
  WaitForBegun(1);
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

// What watches over the program of a killed manager cannot end it for a while. Nothing begins until it has.
TEST_F(ManagerProgram, TakesOverAtOnceButNotBeforeTheFormerProgramIsGone) {
  Ask({Script("echo $$ $PPID >>" + File("begun") + "; [ -e " + File("second") + " ] || sleep 600")});
  const pid_t first = Start();
  WaitForBegun(1);
  const pid_t other = Start({});
  pid_t program = 0, holder = 0;
  std::istringstream(Content("begun")) >> program >> holder;
  while (LivingManagers(*runs_).size() < 2) std::this_thread::sleep_for(milliseconds{10});
  std::ofstream(File("second")) << "x";
  kill(holder, SIGSTOP);
  kill(first, SIGKILL);
  (void)StatusOf(first);
  std::this_thread::sleep_for(milliseconds{1000});
  EXPECT_EQ(kill(program, 0), 0);
  EXPECT_EQ(std::ranges::count(Content("begun"), '\n'), 1);
  const auto freed = std::chrono::steady_clock::now();
  kill(holder, SIGCONT);
  WaitForBegun(2);
  const auto took = std::chrono::steady_clock::now() - freed;
  std::cout << "taken over after " << took / milliseconds{1} << " ms" << std::endl;
  EXPECT_LT(took, milliseconds{1000});
  EXPECT_NE(kill(program, 0), 0);
  kill(other, SIGTERM);
  EXPECT_EQ(StatusOf(other), 0);
}

// The program is told to end after the drain time, and is killed when it is deaf and somebody insists.
TEST_F(ManagerProgram, EndsAsItIsAskedTo) {
  struct Case {
    const char* name;
    const char* drain;
    std::string script;
    std::vector<int> signals;  // a second apart
    std::string said;          // before the input is closed
    RunState state;
  };
  const std::string deaf = "trap '' TERM; sleep 600", brief = "sleep 2", endless = "sleep 600";
  const std::vector<Case> cases{{"in time", "90", brief, {SIGTERM}, "", RunState::kSucceeded},
                                {"too long", "0", endless, {SIGTERM}, "", RunState::kWaiting},
                                {"insists", "90", deaf, {SIGTERM, SIGINT}, "", RunState::kWaiting},
                                {"input closed", "90", endless, {}, "", RunState::kWaiting},
                                {"input drains", "0", brief, {}, "drain\n", RunState::kSucceeded}};
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    fs::remove(File("begun"));
    Ask({Script("echo $$ >>" + File("begun") + "; " + each.script)});
    std::array<int, 2> input{};
    ASSERT_EQ(pipe2(input.data(), O_CLOEXEC), 0);
    const pid_t manager = Start({"--while-open", "--drain", each.drain}, input[0]);
    WaitForBegun(1);
    const auto asked = std::chrono::steady_clock::now();
    for (const int signal : each.signals) {
      kill(manager, signal);
      std::this_thread::sleep_for(milliseconds{1000});
    }
    (void)!write(input[1], each.said.data(), each.said.size());
    if (each.signals.empty()) close(input[1]);
    EXPECT_EQ(StatusOf(manager), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - asked, milliseconds{8000});
    EXPECT_EQ(runs_->History({}).back().state, each.state);
    EXPECT_NE(kill(std::stoi(Content("begun")), 0), 0) << "the program lives";
    EXPECT_TRUE(runs_->Managers().empty());
    runs_->Cancel(runs_->History({}).back().id, {}, {});
    close(input[0]);
    if (!each.signals.empty()) close(input[1]);
  }
}

TEST_F(ManagerProgram, TellsTheSystemThatItLives) {
  for (const bool is_file : {true, false}) {
    const std::string name = is_file ? File("notify") : "@plovix-manager-test-" + std::to_string(getpid());
    sockaddr_un address{AF_UNIX, {}};
    name.copy(address.sun_path, sizeof address.sun_path - 1);
    if (!is_file) address.sun_path[0] = '\0';
    const int told = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    ASSERT_EQ(bind(told, reinterpret_cast<const sockaddr*>(&address), length), 0);
    setenv("NOTIFY_SOCKET", name.c_str(), 1);
    setenv("WATCHDOG_USEC", "600000", 1);
    const pid_t manager = Start({});
    unsetenv("NOTIFY_SOCKET");
    unsetenv("WATCHDOG_USEC");
    const auto next = [told] {
      std::array<char, 512> text{};
      return std::string(text.data(), static_cast<std::size_t>(recv(told, text.data(), text.size(), 0)));
    };
    EXPECT_EQ(next(), "READY=1\nSTATUS=running 0, next when asked\nWATCHDOG=1\n");
    EXPECT_EQ(LivingManagers(*runs_).at(0).kind, ManagerKind::kService);
    EXPECT_EQ(next(), "WATCHDOG=1\n");
    kill(manager, SIGSTOP);  // hangs
    std::this_thread::sleep_for(milliseconds{700});
    std::array<char, 512> text{};
    EXPECT_LT(recv(told, text.data(), text.size(), MSG_DONTWAIT), 0);
    kill(manager, SIGCONT);
    kill(manager, SIGTERM);
    std::string last;
    for (int tries = 0; tries < 3 && last != "STOPPING=1\n"; ++tries) last = next();
    EXPECT_EQ(last, "STOPPING=1\n");
    EXPECT_EQ(StatusOf(manager), 0);
    close(told);
  }
}

}  // namespace
}  // namespace plovix
