#include "run_samples.h"

#include <plovix/standalone/runner/output_file.h>
#include <plovix/standalone/runner/output_folder.h>
#include <plovix/standalone/running/history_window.h>
#include <plovix/standalone/running/policies_dialog.h>
#include <plovix/standalone/running/run_details_window.h>
#include <plovix/standalone/runs/memory_run_store.h>
#include <plovix/standalone/tasks/task_storage.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QTabWidget>
#include <QTemporaryDir>
#include <array>

namespace plovix::app {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr Instant kSampleNow = std::chrono::sys_days{std::chrono::year{2026} / 2 / 27} + hours{9};

// Two tasks with runs in most states, and what the last program of one of them wrote.
class RunSamples {
 public:
  explicit RunSamples(const TextTable& texts) : texts_(texts) {
    for (const char* name : {"Month-end reports", "Nightly clean-up"}) {
      TaskRecord task;
      task.name = name;
      names_.emplace_back(name);
      tasks_.Save(task, {});
    }
    AddOver();
    AddPartly();
    AddOpen();
  }

  [[nodiscard]] RunParts Parts() {
    const auto may = [](std::int64_t, TaskRight) { return true; };
    const auto name = [this](std::int64_t task) -> std::optional<std::string> {
      return names_.at(static_cast<std::size_t>(task) - 1);
    };
    return {texts_,
            runs_,
            control_,
            zone_,
            [] { return kSampleNow; },
            name,
            may,
            FromQt(folder_.path()),
            [](const std::string&) {}};
  }
  std::int64_t partly = 0, missed = 0, dry = 0, running = 0;

 private:
  RunRecord Over(std::int64_t task, hours ago, RunState state, seconds took, const char* reason = "") {
    RunRecord run;
    run.task = task;
    run.due = kSampleNow - ago;
    run.state = state;
    run.reason = reason;
    if (took > seconds{0}) {
      run.attempt = 1;
      run.started = *run.due + seconds{1};
      run.ended = *run.started + took;
    }
    return run;
  }

  void AddOver() {
    using enum RunState;
    runs_.Request(Over(2, hours{79}, kSucceeded, seconds{42}));
    RunRecord nobody = Over(2, hours{31}, kMissed, seconds{0}, "late");
    nobody.missed = {*nobody.due - hours{24}, *nobody.due, 2};
    nobody.due.reset();
    missed = runs_.Request(nobody).id;
    RunRecord late = Over(2, hours{7}, kSucceeded, minutes{3});
    late.origin = RunOrigin::kCatchUp;
    late.started = *late.due + minutes{26};
    late.ended = *late.started + seconds{50};
    runs_.Request(late);
    RunRecord failed =
        Over(1, hours{6}, kFailed, minutes{2}, "the program took longer than its time limit and was ended");
    failed.attempt = failed.failures = 3;
    runs_.Request(failed);
    RunRecord trial = Over(1, hours{5}, kSucceeded, seconds{1});
    trial.due.reset();
    trial.origin = RunOrigin::kDryRun;
    trial.person = "anna";
    trial.planned =
        R"([{"record":"i:41","kind":"run-program","arguments":["/usr/local/bin/month-end","--closed","February 2026"]},)"
        R"({"record":"i:41","kind":"run-sql","statement":"UPDATE invoices SET closed = ? WHERE id = ?","parameters":[true,41]},)"
        R"({"record":"i:42","kind":"write-log","text":"Invoice 42 closed","file":"/var/log/month-end"}])";
    dry = runs_.Request(trial).id;
    runs_.Request(Over(2, hours{4}, kSkipped, seconds{0}, "running"));
  }

  void AddPartly() {
    RunRecord run;
    run.task = 1;
    run.due = run.not_before = kSampleNow - hours{2};
    partly = runs_.Request(run).id;
    const auto begun = runs_.Claim(kSampleNow - hours{2} + seconds{2}, 1);
    std::vector<LedgerRow> rows;
    for (int record = 1; record <= 40; ++record) {
      const bool fails = record % 13 == 0;
      rows.push_back({"i:" + std::to_string(100 + record), fails ? LedgerState::kFailed : LedgerState::kDone,
                      "", partly, fails ? "the program returned 3" : ""});
    }
    rows[7].state = LedgerState::kInDoubt;
    RunEnd end;
    end.run = partly;
    end.epoch = begun ? begun->epoch : 0;
    end.state = RunState::kPartly;
    end.at = kSampleNow - hours{2} + minutes{4};
    end.reason = "3 of 40 records failed; the first: the program returned 3";
    end.failures = 1;
    end.records = {.found = 43, .done = 36, .failed = 3, .skipped = 3};
    end.rows = rows;
    runs_.Finish(end);
    runner::OutputFile output(runner::OutputPath(FromQt(folder_.path()), partly));
    for (int line = 1; line <= 60; ++line)
      output.Add("09:0" + std::to_string(line / 10) + " invoice " + std::to_string(100 + line) +
                 ": printed\n");
    output.Add("09:07 \x1B[31minvoice 139: the printer does not answer\x1B[0m\n");
  }

  void AddOpen() {
    for (const char* person : {"ben", "anna"}) {
      RunRecord run;
      run.task = 2;
      run.origin = RunOrigin::kManual;
      run.person = person;
      run.not_before = kSampleNow - minutes{2};
      const std::int64_t id = runs_.Request(run).id;
      if (running == 0) running = id;
    }
    (void)runs_.Claim(kSampleNow - minutes{1} - seconds{35}, 1);
    runs_.Cancel(running, "cancelled", {"admin", kSampleNow});
  }

  const TextTable& texts_;
  QTemporaryDir folder_;
  std::vector<std::string> names_;
  MemoryStorage tasks_;
  MemoryRunStore runs_{tasks_};
  Zone zone_ = Zone::Named("Europe/Paris").value_or(Zone::Local());
  TaskControl control_{
      {.tasks = tasks_, .runs = runs_, .zone = zone_, .now = [] { return kSampleNow; }, .person = "anna"}};
};

}  // namespace

void PictureRuns(const TextTable& texts,
                 const std::function<void(QWidget& window, const std::string& name)>& save) {
  RunSamples samples(texts);
  RunParts parts = samples.Parts();
  HistoryWindow everything(parts, std::nullopt, nullptr);
  save(everything, "History");
  HistoryWindow one(parts, 1, nullptr);
  save(one, "HistoryOfTask");

  const std::array<std::pair<const char*, std::int64_t>, 4> runs{{{"RunDetails", samples.partly},
                                                                  {"RunDetailsMissed", samples.missed},
                                                                  {"RunDetailsDry", samples.dry},
                                                                  {"RunDetailsCancelled", samples.running}}};
  for (const auto& [name, run] : runs) {
    RunDetailsWindow details(parts, parts.runs.Run(run).value(), nullptr);
    save(details, name);
    if (run != samples.partly) continue;
    details.findChild<QTabWidget*>()->setCurrentIndex(1);
    save(details, "RunDetailsOutput");
  }
  PoliciesDialog policies(parts, 1, nullptr);
  save(policies, "Running");
  parts.may = [](std::int64_t, TaskRight right) { return right == TaskRight::kView; };
  parts.set_zone = {};
  PoliciesDialog read_only(parts, 1, nullptr);
  save(read_only, "RunningReadOnly");
}

}  // namespace plovix::app
