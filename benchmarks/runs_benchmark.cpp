// How fast and how fairly runs of a task file are taken: one worker's claims, and a manager's records,
// against what the disk syncs at the same time; sixteen processes that claim and end runs of the same file;
// the start and the questions of an idle manager with few tasks and with many; and how long old runs take to
// delete. "--tasks N" sets how many (default: 100,000). Exit status 1: a measure is beyond its limit.
#include <fcntl.h>
#include <plovix/host/auto_task.h>
#include <plovix/standalone/runs/manager.h>
#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>

namespace plovix {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPeriod{3000};
constexpr double kLeastClaims = 0.3, kLeastRecords = 0.2;  // of the syncs; usual is more than twice that
constexpr double kMostUnfair = 4, kMostPerQuestion = 1000, kMostPerBatch = 50'000;  // the last two in us
constexpr double kLongestStart = 2;                                                 // in s
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
      "INSERT INTO VeloAutoTaskStates SELECT Id, 'hash', 1000 + Id, 0, 0, 0, 0, 0, 'once', 1, 'skip', 0, 'repeat', "
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

// How often `act` is done for each sync of a file. They take turns, because the disk's speed changes from
// second to second.
double PerSync(const std::string& folder, const char* what, const std::function<void()>& act) {
  constexpr int kTurns = 20;
  Syncs syncs(folder + "/syncs");
  double acts = 0, synced = 0;
  for (int turn = 0; turn < kTurns; ++turn) {
    synced += RateOf([&] { syncs.Add(); }, kPeriod / kTurns) / kTurns;
    acts += RateOf(act, kPeriod / kTurns) / kTurns;
  }
  std::printf("%.0f syncs a second, %.0f %s\n", synced, acts, what);
  return acts / synced;
}

// Each turn ends a run and takes the next one.
bool MeasureOneWorker(const std::string& folder, const std::string& path) {
  SqliteRunStore store(path);
  store.Request(ManualRunOf(1));
  store.Request(ManualRunOf(2));
  std::vector<RunEnd> ends;
  const double claims = PerSync(folder, "claims", [&] {
    const Turn turn = store.EndAndClaim(ends, 1, kThen, 1);
    ends.clear();
    for (const auto& claimed : turn.claimed) {
      ends.push_back(EndOfRun(claimed.run));
      ends.back().state = RunState::kWaiting;  // so that it is taken again
    }
  });
  (void)store.EndAndClaim({EndOfRun(store.UnderWay().front())}, 0, kThen, 1);
  return Report("claims of one worker, of the syncs", claims, kLeastClaims, true);
}

// Records without end, and actions that are over as soon as they begin.
class EndlessRecords final : public RecordSource, public Launcher {
 public:
  class Pass final : public RecordPass {
   public:
    std::optional<SourceRecord> Next() override {
      return SourceRecord{"i:" + std::to_string(++last_), {}, "same", std::nullopt};
    }
    bool TellsChange() const override { return true; }

   private:
    int last_ = 0;
  };
  std::unique_ptr<RecordPass> Open(const TaskRecord& /*task*/,
                                   const std::vector<std::string>& /*keys*/) override {
    return std::make_unique<Pass>();
  }
  void Begin(const ActionOrder& order) override { ended_.push_back({order.run, order.epoch, ""}); }
  std::vector<ActionEnd> Ended(Instant /*now*/) override { return std::exchange(ended_, {}); }
  void Stop(std::int64_t /*run*/) override { ended_.clear(); }

 private:
  std::vector<ActionEnd> ended_;
};

// A run on records with a log action each: a step of the manager for each record.
bool MeasureRecords(const std::string& folder) {
  const std::string path = folder + "/records.sqlite";
  SqliteStorage tasks(path);
  SqliteRunStore runs(path);
  TaskRecord task;
  task.record_mode = record_mode::kQueryResults;
  task.processing_mode = processing_mode::kEveryTime;
  task.actions = {NewAction(*FindActionKind("write-log"))};
  task.actions.front().settings = {{"text", "x"}, {"file", "/f"}};
  runs.Request(ManualRunOf(tasks.Save(task, DateTime()).id));
  EndlessRecords records;
  const ManagerPorts ports{.tasks = tasks, .runs = runs, .launcher = records, .records = records};
  Manager manager(ports, Zone::Local(), {});
  const double rate = PerSync(folder, "records", [&] { (void)manager.Step(kThen); });
  manager.Stop(kThen);
  return Report("records of one run, of the syncs", rate, kLeastRecords, true);
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

// From opening the file to a manager that waits for what comes, and what that takes of a core from then on.
bool MeasureStart(const std::string& path) {
  constexpr int kGlances = 1000, kGlancesPerSecond = 5;
  const auto opened = Clock::now();
  SqliteStorage tasks(path);
  SqliteRunStore runs(path);
  EndlessRecords none;
  const ManagerPorts ports{.tasks = tasks, .runs = runs, .launcher = none, .records = none};
  Manager manager(ports, Zone::Local(), {});
  (void)manager.Step(kThen);
  const bool met = Report("s: the start of a manager", Seconds(Clock::now() - opened), kLongestStart, false);
  const std::clock_t before = std::clock();
  for (int i = 0; i < kGlances; ++i) (void)manager.Step(kThen);
  const double busy =
      static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / kGlances * kGlancesPerSecond;
  return Report("%: of a core while idle", 100 * busy, 1, false) && met;
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
  bool met = MeasureStart(path);
  const struct {
    const char* name;
    std::function<void()> ask;
  } questions[] = {{"us: what is due", [&] { (void)store.Due(Instant(std::chrono::seconds(1005))); }},
                   {"us: what is next", [&] { (void)store.NextWake(); }},
                   {"us: what was saved", [&] { (void)store.Unplanned(); }},
                   {"us: what can begin", [&] { (void)store.Claim(kThen, 1); }},
                   {"us: what is too old", [&] { (void)store.Trim(kMostRunsOfTask, kTrimmedAtOnce); }},
                   {"us: what is under way", [&] { (void)store.UnderWay(); }}};
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
  const bool alone = plovix::MeasureOneWorker(folder, path) && plovix::MeasureRecords(folder);
  const bool together = plovix::MeasureManyWorkers(path);
  const bool questions = plovix::MeasureQuestions(folder, has_tasks ? std::stoll(argv[2]) : 100'000);
  const bool trim = plovix::MeasureTrim(folder);
  fs::remove_all(folder);
  return alone && together && questions && trim ? 0 : 1;
}
