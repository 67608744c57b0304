#include "manager_program.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/data/file_records.h>
#include <plovix/standalone/data/sample_database.h>
#include <plovix/standalone/runner/holder.h>
#include <plovix/standalone/runner/output_folder.h>
#include <plovix/standalone/runner/secrets_file.h>
#include <plovix/standalone/runs/claim_refusal.h>
#include <plovix/standalone/runs/manager.h>
#include <plovix/standalone/storage/manager_lock.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/storage/sqlite_users_and_tags.h>
#include <plovix/standalone/storage/task_file.h>
#include <plovix/standalone/text/iso_time.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <set>
#include <thread>

#include "action_launcher.h"
#include "data_guard.h"
#include "event_lines.h"
#include "manager_options.h"
#include "service_socket.h"
#include "service_unit.h"
#include "wake_up.h"

namespace plovix::manager {
namespace {

namespace fs = std::filesystem;

constexpr int kFailed = 1;
constexpr int kWrongInput = 2;
constexpr int kRefused = 3;  // it would be refused again
// How often it looks whether somebody else has written; asking costs microseconds.
constexpr std::chrono::milliseconds kGlance{200};
// Between two looks at the size of the folder of outputs.
constexpr std::chrono::minutes kTrimPause{1};
// After a failure, and before the log of what was written is emptied.
constexpr std::chrono::milliseconds kPause{1000};

[[noreturn]] void RefuseStart(const std::string& why) {
  throw Failure(failure_number::kPermissionDenied, why);
}

// Whoever may write one of these decides what this user's programs do.
void CheckOwned(const fs::path& path) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) return;
  if ((found.st_mode & (S_IWGRP | S_IWOTH)) != 0 && (found.st_mode & S_ISVTX) == 0) {
    RefuseStart(
        path.string() +
        ": others may write it, so they could run programs as this user; take the right away with chmod go-w");
  }
  if (found.st_uid != geteuid() && found.st_uid != 0)
    RefuseStart(path.string() + ": it belongs to another user, who could run programs as this one");
}

void CheckPlace(const std::string& file) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(file, error);
  CheckOwned(real);
  CheckOwned(real.parent_path());
}

std::string MakeOutputFolder(const std::string& database) {
  std::error_code error;
  const fs::path folder = runner::OutputFolder(database);
  fs::create_directories(folder, error);
  fs::permissions(folder, fs::perms::owner_all, error);
  if (error)
    RefuseStart(folder.string() + ": the folder for what programs write cannot be made: " + error.message());
  CheckOwned(folder);
  return folder.string();
}

Secrets SecretsFor(const ManagerOptions& options) {
  const char* credentials = std::getenv("CREDENTIALS_DIRECTORY");
  Secrets secrets = credentials != nullptr ? runner::ReadCredentials(credentials) : Secrets();
  if (options.secrets) secrets.merge(runner::ReadSecrets(*options.secrets));
  return secrets;
}

class Program {
 public:
  Program(const ManagerOptions& options, const std::string& database, const std::string& data)
      : options_(options),
        tasks_(database),
        runs_(database),
        users_(database),
        lock_(runs_, KindOf(options)),
        data_guard_(runs_, data, options.accept_data),
        output_folder_(MakeOutputFolder(database)),
        zone_(runs_.ScheduleZone()),
        records_(data),
        secrets_(SecretsFor(options)),
        launcher_({.holder = {fs::read_symlink("/proc/self/exe").string(), runner::kHoldWord},
                   .data_path = data,
                   .output_folder = output_folder_,
                   .lock_path = lock_.Path(),
                   .zone = zone_.Name(),
                   .secrets = secrets_}),
        ports_{.tasks = tasks_,
               .runs = runs_,
               .launcher = launcher_,
               .records = records_,
               .secrets = secrets_,
               .refusal = [this](const TaskRecord& task, const RunRecord& run) { return Refusal(task, run); },
               .told = [this](const RunRecord& run, const RunEnd* end) { Print(run, end); }},
        manager_(ports_, zone_,
                 {.number = lock_.Number(),
                  .alive = [this](std::int64_t number) { return lock_.IsAlive(number); },
                  .held = [this](std::int64_t run) { return lock_.IsHeld(run); }}),
        wake_up_(launcher_.Descriptor(), options.while_open) {}

  int Run() {
    runs_.OnWritten([this] { written_ = std::chrono::steady_clock::now(); });
    if (runs_.PauseIfRestored(lock_.SawRestored(), Now())) {
      std::cerr << "plovix-manager: " << runs_.Path()
                << " was copied or restored since its tasks were last run, so everything in it is paused; "
                   "resume everything in the window, or by a script, if this is the file to run"
                << std::endl;
    }
    if (!options_.json) std::cout << "plovix-manager runs the tasks of " << runs_.Path() << std::endl;
    while (wake_up_.Wish() == EndWish::kNone) {
      if (!lock_.StillMine()) {
        throw Failure(
            failure_number::kFileAccess,
            "the file beside the task file that shows who runs its tasks was replaced; start again");
      }
      const std::optional<Instant> wake = Step();
      if (options_.once && manager_.Running() == 0) return EXIT_SUCCESS;
      if (problem_.empty()) service_.TellAlive(StatusUntil(wake));
      EmptyLogWhenIdle();
      wake_up_.Wait(wake, problem_.empty() ? kGlance : kPause);
    }
    End();
    return EXIT_SUCCESS;
  }

 private:
  static ManagerKind KindOf(const ManagerOptions& options) {
    if (options.while_open) return ManagerKind::kWindow;
    return IsService() ? ManagerKind::kService : ManagerKind::kTerminal;
  }

  [[nodiscard]] std::string StatusUntil(const std::optional<Instant>& wake) const {
    const std::string next = wake ? IsoDateTime(DateTime{wake->time_since_epoch()}) + "Z" : "when asked";
    return "running " + std::to_string(manager_.Running()) + ", next " + next;
  }

  // Keeps a copy of only the task file, as people and backups make it, complete.
  void EmptyLogWhenIdle() {
    const bool is_idle = written_ && std::chrono::steady_clock::now() - *written_ >= kPause;
    if (is_idle && tasks_.EmptyLog()) written_.reset();
  }

  // Whether what runs may go on.
  [[nodiscard]] bool MayDrain(std::chrono::steady_clock::time_point since) const {
    const EndWish wish = wake_up_.Wish();
    const bool in_time = std::chrono::steady_clock::now() - since < options_.drain;
    return manager_.Running() > 0 && (wish == EndWish::kDrainLong || (wish == EndWish::kDrain && in_time));
  }

  // What has not come to its end is asked to end, and ended where that does not help; then it waits for the
  // next manager. A run is given back only when nothing of it lives.
  void End() {
    service_.TellEnding();
    manager_.Drain();
    (void)FailureOf([this] { lock_.Leave(); });
    const auto since = std::chrono::steady_clock::now();
    if (MayDrain(since))
      std::cerr << "plovix-manager: ends when what runs has ended: " << manager_.Running() << std::endl;
    for (; MayDrain(since); Step()) wake_up_.Wait({}, kGlance);
    launcher_.End();
    for (; !launcher_.IsIdle() && wake_up_.Wish() != EndWish::kKill; Step()) wake_up_.Wait({}, kGlance);
    launcher_.Kill();
    manager_.Stop(Now());
  }

  // A full disk or a file that is not there passes: what runs goes on, and the rest is tried again. Told
  // once.
  std::optional<Instant> Step() {
    try {
      const auto wake = manager_.Step(Now());
      TrimOutputs();
      problem_.clear();
      return wake;
    } catch (const Failure& failure) {
      if (options_.once) throw;
      if (problem_ != failure.Description())
        std::cerr << "plovix-manager: " << failure.Description() << std::endl;
      problem_ = failure.Description();
      return std::nullopt;
    }
  }

  [[nodiscard]] std::optional<std::string> Refusal(const TaskRecord& task, const RunRecord& run) {
    auto refusal = ClaimRefusal(task, run, users_.Users());
    return refusal ? refusal : data_guard_.Refusal(task);
  }

  // Once a minute, in a thread of its own, because there may be many files.
  void TrimOutputs() {
    const auto now = std::chrono::steady_clock::now();
    if (now < trim_at_ || trimming_) return;
    std::set<std::int64_t> running;
    for (const RunRecord& run : runs_.UnderWay()) running.insert(run.id);
    trim_at_ = now + kTrimPause;
    trimming_ = true;
    trimmer_ = std::jthread([this, running] {
      runner::TrimOutputs(output_folder_, runner::kMostOutput, running);
      trimming_ = false;
    });
  }

  static Instant Now() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

  void Print(const RunRecord& run, const RunEnd* end) {
    const auto task = tasks_.Load(run.task);
    const std::string name = task ? task->name : "";
    std::cout << (options_.json ? EventJson(run, end, name, Now()) : EventLine(run, end, name)) << std::endl;
  }

  ManagerOptions options_;
  SqliteStorage tasks_;
  SqliteRunStore runs_;
  SqliteUsersAndTags users_;
  ManagerLock lock_;
  DataGuard data_guard_;
  std::string output_folder_;
  Zone zone_;
  FileRecords records_;
  Secrets secrets_;
  ActionLauncher launcher_;
  ManagerPorts ports_;
  Manager manager_;
  WakeUp wake_up_;
  ServiceSocket service_;
  std::optional<std::chrono::steady_clock::time_point> written_ =
      std::chrono::steady_clock::now();  // last; nothing: the log is empty
  std::string problem_;                  // why the last step failed; empty if it did not
  std::chrono::steady_clock::time_point trim_at_{};
  std::atomic<bool> trimming_ = false;
  std::jthread trimmer_;  // last: it uses what is above
};

std::string OwnPath() {
  return fs::read_symlink("/proc/self/exe").string();
}

int Serve(const ManagerOptions& options) {
  if (geteuid() == 0) {
    RefuseStart(
        "tasks are not to run as root; for another user, and from the start of the machine on, there is the "
        "system's own unit: systemctl enable --now plovix-manager@USER");
  }
  return options.install_service ? InstallService(OwnPath(), options) : RemoveService();
}

int Start(const ManagerOptions& options) {
  if (options.install_service || options.remove_service) return Serve(options);
  if (geteuid() == 0 && !options.as_root) {
    RefuseStart(
        "as root, the tasks of this file could do everything on this machine; start it as another user, or with "
        "--as-root if that is meant");
  }
  BlockSignals();
  const std::string database = options.database.value_or(DefaultDatabasePath());
  CheckPlace(database);
  const std::string data = options.data.value_or(DefaultDataPath());
  if (fs::exists(data)) CheckPlace(data);
  return Program(options, database, data).Run();
}

}  // namespace

int RunManagerProgram(int argc, char** argv) {
  if (argc == 2 && std::string_view(argv[1]) == runner::kHoldWord) return runner::HoldProgram();
  ManagerOptions options;
  try {
    options = ParseManagerOptions({argv + 1, argv + argc});
  } catch (const Failure& failure) {
    std::cerr << "plovix-manager: " << failure.Description() << "\n" << ManagerUsage();
    return kWrongInput;
  }
  if (options.help || options.version) {
    std::cout << (options.help ? ManagerUsage() : "plovix-manager " PLOVIX_VERSION "\n");
    return EXIT_SUCCESS;
  }
  try {
    return Start(options);
  } catch (const std::exception&) {
    const Failure failure = CurrentFailure();
    std::cerr << "plovix-manager: " << failure.Description() << "\n";
    return failure.Number() == failure_number::kPermissionDenied ? kRefused : kFailed;
  }
}

}  // namespace plovix::manager
