#include "manager_program.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/data/file_records.h>
#include <plovix/standalone/data/sample_database.h>
#include <plovix/standalone/runner/holder.h>
#include <plovix/standalone/runner/output_file.h>
#include <plovix/standalone/runner/secrets_file.h>
#include <plovix/standalone/runs/manager.h>
#include <plovix/standalone/storage/manager_lock.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/storage/task_file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "action_launcher.h"
#include "event_lines.h"
#include "manager_options.h"
#include "wake_up.h"

namespace plovix::manager {
namespace {

namespace fs = std::filesystem;

constexpr int kFailed = 1;
constexpr int kWrongInput = 2;
// How often it looks whether somebody else has written; asking costs microseconds.
constexpr std::chrono::milliseconds kGlance{200};
// After a failure.
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
        lock_(runs_),
        zone_(runs_.ScheduleZone()),
        records_(data),
        secrets_(SecretsFor(options)),
        launcher_({.holder = {fs::read_symlink("/proc/self/exe").string(), runner::kHoldWord},
                   .data_path = data,
                   .output_folder = MakeOutputFolder(database),
                   .zone = zone_.Name(),
                   .secrets = secrets_}),
        ports_{.tasks = tasks_,
               .runs = runs_,
               .launcher = launcher_,
               .records = records_,
               .secrets = secrets_,
               .told = [this](const RunRecord& run, const RunEnd* end) { Print(run, end); }},
        manager_(ports_, zone_, {.number = lock_.Number(), .alive = [this](std::int64_t number) {
                                   return lock_.IsAlive(number);
                                 }}) {}

  int Run() {
    WakeUp wake_up(launcher_.Descriptor());
    if (!options_.json) std::cout << "plovix-manager runs the tasks of " << runs_.Path() << std::endl;
    while (true) {
      if (!lock_.StillMine()) {
        RefuseStart("the file beside the task file that shows who runs its tasks was replaced; start again");
      }
      const std::optional<Instant> wake = Step();
      if (options_.once && manager_.Running() == 0) return EXIT_SUCCESS;
      if (!wake_up.Wait(wake, problem_.empty() ? kGlance : kPause)) break;
    }
    manager_.Stop(Now());
    return EXIT_SUCCESS;
  }

 private:
  // A full disk or a file that is not there passes: what runs goes on, and the rest is tried again. Told
  // once.
  std::optional<Instant> Step() {
    try {
      const auto wake = manager_.Step(Now());
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

  static Instant Now() { return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()); }

  void Print(const RunRecord& run, const RunEnd* end) {
    const auto task = tasks_.Load(run.task);
    const std::string name = task ? task->name : "";
    std::cout << (options_.json ? EventJson(run, end, name, Now()) : EventLine(run, end, name)) << std::endl;
  }

  ManagerOptions options_;
  SqliteStorage tasks_;
  SqliteRunStore runs_;
  ManagerLock lock_;
  Zone zone_;
  FileRecords records_;
  Secrets secrets_;
  ActionLauncher launcher_;
  ManagerPorts ports_;
  Manager manager_;
  std::string problem_;  // why the last step failed; empty if it did not
};

int Start(const ManagerOptions& options) {
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
    std::cerr << "plovix-manager: " << CurrentFailure().Description() << "\n";
    return kFailed;
  }
}

}  // namespace plovix::manager
