// How fast and how fairly runs are claimed in a task file: one worker's commits against what the disk syncs
// at the same time, sixteen processes that claim and end runs of the same file, and the questions of an idle
// manager with few tasks and with many, and how long old runs take to delete. "--tasks N" sets how many
// (default: 100,000). Exit status 1: a measure is beyond its limit.
#include <fcntl.h>
#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

namespace plovix {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPeriod{3000};
constexpr double kLeastOfSyncs = 0.2, kMostUnfair = 4, kMostPerQuestion = 1000,  // the last ones in us
    kMostPerBatch = 50'000;
constexpr int kWorkers = 16, kTasksOfWorkers = 64;
constexpr Instant kThen{};

double Seconds(Clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

// How often per second `act` can be done.
double RateOf(const std::function<void()>& act, Clock::duration period = kPeriod) {
  const auto start = Clock::now();
  int acts = 0;
  for (; Clock::now() - start < period; ++acts) act();
  return acts / Seconds(Clock::now() - start);
}

// A file that grows as the log of a database does: by a page, and a sync.
class Syncs {
 public:
  explicit Syncs(const std::string& path)
      : file_(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)) {}
  ~Syncs() { close(file_); }
  Syncs(const Syncs&) = delete;
  Syncs& operator=(const Syncs&) = delete;
  void Add() {
    const auto size = static_cast<off_t>(frame_.size());
    if (pwrite(file_, frame_.data(), frame_.size(), at_) < 0 || fdatasync(file_) != 0) std::abort();
    at_ = (at_ + size) % (1000 * size);
  }

 private:
  int file_;
  off_t at_ = 0;
  std::string frame_ = std::string(4096 + 24, 'x');
};

RunRecord ManualRunOf(std::int64_t task) {
  RunRecord run;
  run.task = task;
  run.origin = RunOrigin::kManual;
  return run;
}

RunEnd EndOfRun(const RunRecord& run) {
  return {run.id, run.epoch, RunState::kSucceeded, kThen, kThen, "", 0, 0, {}, {}, ""};
}

// Tasks with a cursor each; the numbers of the tasks are 1 to `count`.
void MakeTasks(const std::string& path, std::int64_t count) {
  SqliteStorage storage(path);
  const Connection file(path, kTaskFilePatience, Access::kReadWrite);
  storage.Save({}, DateTime());
  std::string columns;
  file.Prepare(
          "SELECT name FROM pragma_table_info('VeloAutoTasks') WHERE name NOT IN ('Id', 'PlannedVersion')")
      .ForEachRow([&](const Statement& row) { columns.append(", ").append(row.Text(0)); });
  file.Run("BEGIN");
  file.Run("WITH RECURSIVE n (i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < " +
           std::to_string(count) + ") INSERT INTO VeloAutoTasks (Id, PlannedVersion" + columns +
           ") SELECT i, Version" + columns + " FROM n, VeloAutoTasks WHERE Id = 1");
  file.Run(
      "INSERT INTO VeloAutoTaskStates SELECT Id, 'hash', 1000 + Id, Id, 0, 0, 0, 0, 'once', 1, 'skip', 0, 'repeat', "
      "'last', 0, NULL, NULL, NULL, 0 FROM VeloAutoTasks");
  file.Run("COMMIT");
}

// Runs whatever waits, and asks for its task's next run, until the time is over.
struct Work {
  double runs = 0, longest_wait = 0;
};
Work WorkOn(const std::string& path) {
  SqliteRunStore store(path, std::chrono::seconds(60));
  Work work;
  const auto timed = [&](const std::function<void()>& act) {
    const auto start = Clock::now();
    act();
    work.longest_wait = std::max(work.longest_wait, Seconds(Clock::now() - start));
  };
  for (const auto start = Clock::now(); Clock::now() - start < kPeriod;) {
    std::optional<RunRecord> run;
    timed([&] { run = store.Claim(kThen, 1); });
    if (!run) continue;
    timed([&] { (void)store.Finish(EndOfRun(*run)); });
    timed([&] { store.Request(ManualRunOf(run->task)); });
    ++work.runs;
  }
  return work;
}

std::array<Work, kWorkers> WorkTogether(const std::string& path) {
  std::array<std::array<int, 2>, kWorkers> pipes{};
  for (auto& ends : pipes) {
    if (pipe(ends.data()) != 0) std::abort();
    if (fork() != 0) continue;
    const Work work = WorkOn(path);
    _exit(write(ends[1], &work, sizeof work) == sizeof work ? 0 : 1);
  }
  std::array<Work, kWorkers> works{};
  for (std::size_t i = 0; i < works.size(); ++i) {
    if (read(pipes[i][0], &works[i], sizeof(Work)) != sizeof(Work)) std::abort();
    wait(nullptr);
  }
  return works;
}

bool Report(const char* what, double measured, double limit, bool at_least) {
  const bool met = at_least ? measured >= limit : measured <= limit;
  std::printf("%-52s %12.2f  (%s %.1f)%s\n", what, measured, at_least ? "at least" : "at most", limit,
              met ? "" : "  BEYOND ITS LIMIT");
  return met;
}

// One worker's commits against syncs. They take turns, because the disk's speed changes from second to
// second.
bool MeasureOneWorker(const std::string& folder, const std::string& path) {
  constexpr int kTurns = 20;
  constexpr double kCommits = 3;
  SqliteRunStore store(path);
  Syncs syncs(folder + "/syncs");
  double commits_per_second = 0, syncs_per_second = 0;
  for (int turn = 0; turn < kTurns; ++turn) {
    syncs_per_second += RateOf([&] { syncs.Add(); }, kPeriod / kTurns) / kTurns;
    const auto run_one = [&] {
      store.Request(ManualRunOf(1));
      (void)store.Finish(EndOfRun(store.Claim(kThen, 1).value()));
    };
    commits_per_second += kCommits * RateOf(run_one, kPeriod / kTurns) / kTurns;
  }
  std::printf("%.0f syncs a second, %.0f commits\n", syncs_per_second, commits_per_second);
  return Report("commits of one worker, of the syncs", commits_per_second / syncs_per_second, kLeastOfSyncs,
                true);
}

bool MeasureManyWorkers(const std::string& path) {
  {
    SqliteRunStore store(path);
    for (int task = 1; task <= kTasksOfWorkers; ++task) store.Request(ManualRunOf(task));
  }
  const auto works = WorkTogether(path);
  const auto [least, most] = std::ranges::minmax_element(works, {}, &Work::runs);
  double all = 0, longest = 0;
  for (const Work& work : works) {
    all += work.runs;
    longest = std::max(longest, work.longest_wait);
  }
  std::printf("%.0f runs a second by %d processes, the longest wait %.2f s\n", all / Seconds(kPeriod),
              kWorkers, longest);
  return Report("runs of the busiest process, of the least busy", most->runs / std::max(least->runs, 1.0),
                kMostUnfair, false);
}

bool MeasureQuestions(const std::string& folder, std::int64_t tasks) {
  const std::string path = folder + "/questions.sqlite";
  MakeTasks(path, tasks);
  const auto opened = Clock::now();
  SqliteRunStore store(path);
  const auto start = Clock::now();
  const std::size_t states = store.States().size();
  std::printf("%zu tasks: opened in %.3f s, all states read in %.3f s\n", states, Seconds(start - opened),
              Seconds(Clock::now() - start));
  const struct {
    const char* name;
    std::function<void()> ask;
  } questions[] = {{"us: what is due", [&] { (void)store.Due(Instant(std::chrono::seconds(1005))); }},
                   {"us: what is next", [&] { (void)store.NextWake(); }},
                   {"us: what was saved", [&] { (void)store.Unplanned(); }},
                   {"us: what can begin", [&] { (void)store.Claim(kThen, 1); }},
                   {"us: what is too old", [&] { (void)store.Trim(kMostRunsOfTask, kTrimmedAtOnce); }},
                   {"us: what was abandoned", [&] { (void)store.Orphans([](auto) { return false; }); }}};
  bool met = true;
  for (const auto& [name, ask] : questions)
    met = Report(name, 1e6 / RateOf(ask), kMostPerQuestion, false) && met;
  return met;
}

// How long a batch of old runs takes, and the question for them beside a hundred thousand runs.
bool MeasureTrim(const std::string& folder) {
  constexpr std::int64_t kRuns = 100'000;
  const std::string path = folder + "/old.sqlite";
  MakeTasks(path, 1);
  SqliteRunStore store(path);
  store.Request(ManualRunOf(1));
  (void)store.Finish(EndOfRun(store.Claim(kThen, 1).value()));
  {
    const Connection file(path, kTaskFilePatience, Access::kReadWrite);
    std::string columns;
    file.Prepare("SELECT name FROM pragma_table_info('VeloRuns') WHERE name <> 'Id'")
        .ForEachRow([&](const Statement& row) { columns.append(", ").append(row.Text(0)); });
    const std::string count = std::to_string(kRuns);
    file.Run("BEGIN");
    file.Run("WITH RECURSIVE n (i) AS (SELECT 2 UNION ALL SELECT i + 1 FROM n WHERE i < " + count +
             ") INSERT INTO VeloRuns (Id" + columns + ") SELECT i" + columns +
             " FROM n, VeloRuns WHERE Id = 1");
    file.Run("UPDATE VeloAutoTaskStates SET Runs = " + count);
    file.Run("COMMIT");
  }
  const auto start = Clock::now();
  int batches = 0;
  while (store.Trim(kMostRunsOfTask, kTrimmedAtOnce)) ++batches;
  const double batch = 1e6 * Seconds(Clock::now() - start) / batches;
  std::printf("%d batches of old runs, %zu runs left\n", batches, store.History(1).size());
  return Report("us: a batch of old runs deleted", batch, kMostPerBatch, false);
}

}  // namespace
}  // namespace plovix

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  const bool has_tasks = argc == 3 && std::string(argv[1]) == "--tasks";
  std::string folder = (fs::current_path() / "runs-benchmark-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 2;
  const std::string path = folder + "/claims.sqlite";
  plovix::MakeTasks(path, plovix::kTasksOfWorkers);
  const bool alone = plovix::MeasureOneWorker(folder, path);
  const bool together = plovix::MeasureManyWorkers(path);
  const bool questions = plovix::MeasureQuestions(folder, has_tasks ? std::stoll(argv[2]) : 100'000);
  const bool trim = plovix::MeasureTrim(folder);
  fs::remove_all(folder);
  return alone && together && questions && trim ? 0 : 1;
}
