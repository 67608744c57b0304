#include "list_samples.h"

#include <plovix/host/auto_task.h>
#include <plovix/standalone/data/sample_database.h>
#include <plovix/standalone/query_builder/record_chooser_dialog.h>
#include <plovix/standalone/runs/action_order.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <nlohmann/json.hpp>

#include "dry_run_dialog.h"
#include "pause_dialog.h"
#include "task_list_window.h"

namespace plovix::app {
namespace {

constexpr int kRunsWide = 150;  // characters
constexpr int kRecordsMilliseconds = 800;

struct SampleRun {
  const char* task;
  RunState state;
  std::chrono::seconds before, lasts;  // it began so long ago
  const char* reason = "";
};
constexpr SampleRun kSampleRuns[] = {
    {"Archive old orders", RunState::kSucceeded, std::chrono::minutes{5}, std::chrono::seconds{3}},
    {"Export the prices", RunState::kFailed, std::chrono::hours{2}, std::chrono::seconds{65},
     "the program \"/usr/local/bin/prices\" ended with status 1"},
    {"Remind of open invoices", RunState::kPartly, std::chrono::days{1}, std::chrono::minutes{12}},
    {"Copy the data", RunState::kRunning, std::chrono::minutes{95}, std::chrono::seconds{0}},
    {"Check the stock", RunState::kWaiting, std::chrono::seconds{2}, std::chrono::seconds{0}},
};

std::int64_t StoreTask(const AppParts& parts, const std::string& name) {
  TaskRecord task;
  task.name = name;
  task.allow_automation_manager = true;
  task.recurrence = RecurrenceRecord{};
  task.recurrence->pattern = DailyRecord{};
  return parts.storage.Save(task, parts.state.Now()).id;
}

void StoreRun(const AppParts& parts, const SampleRun& sample) {
  RunRecord run;
  run.task = StoreTask(parts, sample.task);
  run.origin = RunOrigin::kManual;
  run.person = parts.user.id;
  run.not_before = parts.control.Now() - sample.before;
  run = parts.runs.Request(run);
  if (sample.state == RunState::kWaiting) return;
  run = parts.runs.Claim(run.not_before, 1).value_or(run);
  if (sample.state == RunState::kRunning) return;
  RunEnd end;
  end.run = run.id;
  end.epoch = run.epoch;
  end.state = sample.state;
  end.at = run.not_before + sample.lasts;
  end.reason = sample.reason;
  parts.runs.Finish(end);
}

std::int64_t StoreDryRun(const AppParts& parts) {
  ActionOrder first;
  first.record = "i:4711";
  first.kind = "run-program";
  first.arguments = {"/usr/local/bin/remind", "--to", "Anna Berg", "4711"};
  ActionOrder second;
  second.record = first.record;
  second.kind = "run-sql";
  second.statement = "UPDATE invoices SET reminded = ? WHERE id = ?";
  second.parameters = {std::string("2026-02-27"), std::int64_t{4711}};
  const std::int64_t id = parts.control.Start(StoreTask(parts, "Remind"), RunOrigin::kDryRun).id;
  for (auto run = parts.runs.Claim(parts.control.Now(), 1); run;
       run = parts.runs.Claim(parts.control.Now(), 1)) {
    RunEnd end;
    end.run = run->id;
    end.epoch = run->epoch;
    end.state = RunState::kSucceeded;
    end.at = parts.control.Now();
    end.planned = "[" + OrderJson(first).dump() + "," + OrderJson(second).dump() + "]";
    parts.runs.Finish(end);
  }
  return id;
}

}  // namespace

void PictureList(const AppParts& parts,
                 const std::function<void(QWidget& window, const std::string& name)>& save) {
  for (const SampleRun& sample : kSampleRuns) StoreRun(parts, sample);
  parts.control.Pause(StoreTask(parts, "Weekly statistics"), "The new figures are not ready");
  TaskListWindow list(parts);
  list.resize(list.fontMetrics().averageCharWidth() * kRunsWide, list.height());
  save(list, "TaskListRuns");
  parts.control.Pause(std::nullopt, "The database is being moved");
  TaskListWindow paused(parts);
  paused.resize(list.size());
  save(paused, "TaskListPaused");
  parts.control.Resume(std::nullopt);

  PauseDialog pause(parts.state.texts, "Remind of open invoices", true, nullptr);
  save(pause, "Pause");
  DryRunDialog dry_run(parts, "Remind of open invoices", StoreDryRun(parts), nullptr);
  save(dry_run, "DryRun");

  const QTemporaryDir folder;
  const std::string path = FromQt(folder.filePath("sample.sqlite"));
  CreateSampleDatabase(path, std::chrono::floor<std::chrono::days>(parts.state.Now()));
  TaskRecord task;
  task.data_object_name = "orders";
  for (const std::int16_t mode : {record_mode::kQueryResults, record_mode::kSingleRecord}) {
    const bool single = mode == record_mode::kSingleRecord;
    task.record_mode = mode;
    RecordChooserDialog chooser(parts.state.texts, parts.Text("choose.title", {"Remind of open invoices"}),
                                path, task, nullptr);
    QElapsedTimer waited;
    for (waited.start(); waited.elapsed() < kRecordsMilliseconds;) QCoreApplication::processEvents();
    save(chooser, single ? "ChooseRecord" : "ChooseRecords");
  }
}

}  // namespace plovix::app
