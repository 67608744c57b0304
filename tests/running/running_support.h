// Tasks and runs in memory, behind a person whose rights a test chooses.
#pragma once

#include <gmock/gmock.h>
#include <plovix/standalone/running/run_parts.h>
#include <plovix/standalone/runs/memory_run_store.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QtTest>
#include <QtWidgets>

namespace plovix::app {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using enum RunState;

constexpr Instant At(int second) {
  return Instant(std::chrono::seconds(1'770'000'000 + second));
}

class RunningTest : public testing::Test {
 protected:
  RunningTest() {
    for (const char* name : {"Alpha", "Beta"}) {
      TaskRecord task;
      task.name = name;
      tasks.Save(task, {});
    }
    (void)runs.States();
  }

  [[nodiscard]] RunParts Parts() {
    return {.texts = texts,
            .runs = runs,
            .control = control,
            .zone = Zone::Named("UTC").value(),
            .now = [this] { return now; },
            .name =
                [this](std::int64_t task) {
                  return NameFor(user, tasks.Load(task), texts,
                                 [](const TaskRecord& record) { return record.name; });
                },
            .may =
                [this](std::int64_t task, TaskRight right) {
                  const auto record = tasks.Load(task);
                  return record && May(user, *record, right);
                },
            .output_folder = FromQt(folder.path())};
  }
  static UserRecord User(const std::string& id, bool administrator = false) {
    UserRecord record;
    record.id = id;
    record.administrator = administrator;
    return record;
  }
  RunRecord Over(std::int64_t task, int at, RunState state = kSucceeded, const std::string& reason = {}) {
    RunRecord run;
    run.task = task;
    run.due = run.started = run.ended = At(at);
    run.state = state;
    run.attempt = 1;
    run.reason = reason;
    return runs.Request(run);
  }
  RunRecord Running(std::int64_t task) {
    RunRecord run;
    run.task = task;
    run.origin = RunOrigin::kManual;
    run.not_before = now;
    runs.Request(run);
    return runs.Claim(now, 1).value();
  }
  void Finish(const RunRecord& run, RunState state, const std::string& reason,
              std::vector<LedgerRow> rows = {}) {
    RunEnd end;
    end.run = run.id;
    end.epoch = run.epoch;
    end.state = state;
    end.at = now;
    end.reason = reason;
    for (const LedgerRow& row : rows)
      ++(row.state == LedgerState::kFailed ? end.records.failed : end.records.done);
    end.records.found = static_cast<std::int64_t>(rows.size());
    end.rows = std::move(rows);
    ASSERT_TRUE(runs.Finish(end));
  }
  [[nodiscard]] std::vector<RunRecord> Waiting() {
    RunFilter filter;
    filter.states = {kWaiting};
    return runs.Recent(filter);
  }
  static void Show(QWidget& window) {
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QCoreApplication::processEvents();
  }
  static QPushButton* Button(const QWidget& window, const char* name) {
    return window.findChild<QPushButton*>(name);
  }
  static bool CanPress(const QWidget& window, const char* name) {
    return Button(window, name)->isVisible() && Button(window, name)->isEnabled();
  }
  static std::string Told(const QWidget& window) {
    std::string told;
    for (const QLabel* label : window.findChildren<QLabel*>())
      if (label->isVisible()) told += FromQt(label->text()) + "\n";
    return told;
  }

  TextTable texts = LoadLanguage("en");
  QTemporaryDir folder;
  UserRecord user = User("anna", true);
  Instant now = At(100'000);
  MemoryStorage tasks;
  MemoryRunStore runs{tasks};
  TaskControl control{{.tasks = tasks,
                       .runs = runs,
                       .zone = Zone::Named("UTC").value(),
                       .now = [this] { return now; },
                       .person = "anna",
                       .user = [this] { return std::optional(user); }}};
};

}  // namespace plovix::app
