// What the list of tasks says of runs, and what a person asks of them there.
#include <plovix/host/auto_task.h>
#include <plovix/standalone/editors/action_dialog.h>
#include <plovix/standalone/query_builder/record_chooser_dialog.h>

#include "tests/app/program_support.h"

namespace plovix::app {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RunsTest : public ProgramTest {
 protected:
  RunsTest() {
    QLocale::setDefault(QLocale(QLocale::English));
    runs_.SetZone("UTC");
    zone_ = runs_.ScheduleZone();
    state_.clock = [this] { return DateTime{now_.time_since_epoch()}; };
    Open();
  }
  ~RunsTest() override { QLocale::setDefault(QLocale::C); }

  // Anew, with the data file.
  void Open() {
    AppParts parts = Parts();
    parts.data_file = data_file_;
    list_ = std::make_unique<TaskListWindow>(parts);
    list_->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(list_.get()));
  }
  [[nodiscard]] QTableView* Table() const { return list_->findChild<QTableView*>("tasks"); }
  [[nodiscard]] QModelIndex Cell(const std::string& task, TaskTableModel::Column column) const {
    return Table()->model()->index(static_cast<int>(Names().indexOf(ToQt(task))), column);
  }
  [[nodiscard]] std::string Says(const std::string& task, TaskTableModel::Column column) const {
    return FromQt(Cell(task, column).data().toString());
  }
  // Without anybody asking for it.
  [[nodiscard]] bool Comes(const std::string& task, TaskTableModel::Column column,
                           const std::string& text) const {
    return QTest::qWaitFor([&] { return Says(task, column) == text; }, 5000);
  }
  void Select(const std::string& task) const { Table()->selectRow(Cell(task, TaskTableModel::kName).row()); }
  TaskRecord PutScheduled(const std::string& name, const PatternRecord& pattern = DailyRecord{}) {
    TaskRecord task;
    task.name = name;
    task.allow_automation_manager = true;
    task.recurrence = RecurrenceRecord{};
    task.recurrence->recurrence_type = static_cast<std::int32_t>(pattern.index()) - 1;
    task.recurrence->pattern = pattern;
    return storage_->Save(task, state_.Now());
  }
  // As a manager writes it.
  RunRecord Begin(std::int64_t task) {
    RunRecord run;
    run.task = task;
    run.origin = RunOrigin::kManual;
    run.not_before = now_;
    others_->Request(run);
    return others_->Claim(now_, 7).value();
  }
  void End(const RunRecord& run, RunState state, const std::string& reason = "") {
    RunEnd end;
    end.run = run.id;
    end.epoch = run.epoch;
    end.state = state;
    end.at = end.not_before = now_;
    end.failures = state == RunState::kSucceeded ? 0 : 1;
    end.reason = reason;
    ASSERT_TRUE(others_->Finish(end));
  }

  Instant now_ = std::chrono::sys_days{std::chrono::year{2026} / 2 / 10} + 10h;
  std::string data_file_ = FromQt(folder_.filePath("data.sqlite"));
  std::unique_ptr<SqliteRunStore> others_ = std::make_unique<SqliteRunStore>(FromQt(Path()));
};

TEST_F(RunsTest, TheNextAndTheLastRunAreSaidInWordsAndSortedByTime) {
  const struct {
    const char* name;
    std::chrono::seconds ago, lasted;
    RunState state;
    std::string last;
    bool red;
  } rows[] = {{"old", 72h, 65s, RunState::kFailed, "Failed, 2 d ago, 1 min 5 s", true},
              {"young", 5min, 3s, RunState::kSucceeded, "Succeeded, 4 min ago, 3 s", false},
              {"half", 3h, 1min, RunState::kPartly, "Partly failed, 2 h ago, 1 min", true},
              {"again", 30s, 1s, RunState::kWaiting, "Waiting for the next attempt", true},
              {"goes on", 2h, 0s, RunState::kRunning, "Running, 2 h", false}};
  const Instant now = now_;
  PutScheduled("never");
  for (const auto& row : rows) {
    now_ = now - row.ago;
    const RunRecord run = Begin(PutScheduled(row.name).id);
    now_ += row.lasted;
    if (row.state != RunState::kRunning) End(run, row.state, "the disk is full");
  }
  now_ = now;
  list_->Reload();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Says(row.name, TaskTableModel::kLast), row.last);
    const QModelIndex cell = Cell(row.name, TaskTableModel::kLast);
    EXPECT_EQ(cell.data(Qt::ForegroundRole).isValid(), row.red) << "in addition to the word";
    if (row.state == RunState::kRunning) continue;
    EXPECT_THAT(FromQt(cell.data(Qt::ToolTipRole).toString()), HasSubstr("the disk is full"));
  }
  EXPECT_EQ(Says("never", TaskTableModel::kLast), "Not run yet");
  EXPECT_EQ(Says("never", TaskTableModel::kNext), "in 22 h");
  EXPECT_THAT(FromQt(Cell("never", TaskTableModel::kNext).data(Qt::ToolTipRole).toString()),
              HasSubstr("February 11, 2026, 8:00"));
  EXPECT_THAT(Says("goes on", TaskTableModel::kNext), HasSubstr("Running since 8:00"));
  Table()->sortByColumn(TaskTableModel::kLast, Qt::AscendingOrder);
  EXPECT_THAT(Names(), ElementsAre("never", "old", "half", "young", "again", "goes on"));
}

TEST_F(RunsTest, WhatOthersWriteIsShownWhileTheSelectionTheFocusAndThePlaceStay) {
  std::int64_t last = 0;
  for (int number = 10; number < 60; ++number) last = PutScheduled("task " + std::to_string(number)).id;
  list_->Reload();
  Select("task 40");
  auto* filter = list_->findChild<QLineEdit*>("filter");
  filter->setFocus();
  const int place = Table()->verticalScrollBar()->value();
  EXPECT_GT(place, 0);
  QSignalSpy resets(Table()->model(), &QAbstractItemModel::modelReset);
  QSignalSpy changes(Table()->model(), &QAbstractItemModel::dataChanged);
  QTest::qWait(1500);
  EXPECT_EQ(changes.size(), 0) << "nobody has written";
  Begin(last);
  EXPECT_TRUE(Comes("task 59", TaskTableModel::kLast, "Running, 0 s"));
  EXPECT_EQ(changes.size(), 1);
  now_ += 24h;
  EXPECT_TRUE(Comes("task 59", TaskTableModel::kLast, "Running, 1 d"));
  EXPECT_EQ(resets.size(), 0);
  EXPECT_EQ(FromQt(Table()->selectionModel()->selectedRows().constFirst().data().toString()), "task 40");
  EXPECT_EQ(Table()->verticalScrollBar()->value(), place);
  EXPECT_EQ(QApplication::focusWidget(), filter);
}

TEST_F(RunsTest, TheStoredPolicyForShortMonthsIsThatOfEveryPreview) {
  const TaskRecord task = PutScheduled("month", MonthlyRecord{1, {.day_of_month = 31}});
  const auto panel = [&] {
    WizardWindow window(Parts(), task);
    EXPECT_TRUE(window.Start("Plovix.Details"));
    const QString shown = window.findChild<QTextBrowser*>("summary")->toPlainText();
    window.Wizard().Cancel();
    return FromQt(shown);
  };
  list_->Reload();
  EXPECT_EQ(Says("month", TaskTableModel::kNext), "in 17 d");
  EXPECT_THAT(panel(), HasSubstr("February 28, 2026"));
  const std::string sentence = Says("month", TaskTableModel::kSchedule);
  TaskPolicies policies;
  policies.short_month = ShortMonth::kSkip;
  others_->SetPolicies(task.id, policies, {});
  EXPECT_TRUE(Comes("month", TaskTableModel::kNext, "in 48 d"));
  EXPECT_NE(Says("month", TaskTableModel::kSchedule), sentence);
  EXPECT_THAT(panel(), testing::Not(HasSubstr("February 28, 2026")));
}

// Chooses in the dialog once it shows the records.
std::function<void(QWidget*)> Choose(const std::function<void(QWidget& dialog, QTableView& table)>& act,
                                     Qt::Key key = Qt::Key_Return) {
  return [=](QWidget* dialog) {
    auto* table = dialog->findChild<QTableView*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() > 0; }, 10000));
    act(*dialog, *table);
    QTest::keyClick(dialog, key);
  };
}

TEST_F(RunsTest, ChosenRecordsReachTheStore) {
  {
    const Connection data(data_file_, 1s, Access::kReadWrite);
    data.Run("CREATE TABLE orders (id TEXT PRIMARY KEY, town TEXT)");
    data.Run("INSERT INTO orders VALUES ('1', 'Lyon'), ('2', 'Rome'), ('x y', NULL), ('4', 'Rome')");
  }
  const auto due = [](QWidget&, QTableView& table) {
    EXPECT_EQ(table.selectionModel()->selectedRows().size(), 3) << "all that the query finds";
  };
  const auto all = [](QWidget&, QTableView& table) {
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_A, Qt::ControlModifier);
  };
  const auto clear = [](QWidget&, QTableView& table) { table.clearSelection(); };
  const auto second = [](QWidget&, QTableView& table) {
    const QPoint row = table.visualRect(table.model()->index(1, 0)).center();
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, row);
  };
  const auto rome = [](QWidget& dialog, QTableView&) {
    QTest::keyClicks(dialog.findChild<QLineEdit*>(), "rome");
  };
  using Keys = std::optional<std::vector<std::string>>;
  const struct {
    std::int16_t mode;
    bool skips;
    std::vector<std::function<void(QWidget*)>> answers;
    Keys keys;  // nothing: no run
  } cases[] = {
      {record_mode::kQueryResults, false, {Choose(due)}, Keys(std::vector<std::string>())},
      {record_mode::kQueryResults, false, {Choose(second)}, Keys({"t:2"})},
      {record_mode::kQueryResults, false, {Choose(rome)}, Keys({"t:2", "t:4"})},
      {record_mode::kQueryResults, false, {Choose(second, Qt::Key_Escape)}, std::nullopt},
      {record_mode::kQueryResults, true, {}, Keys(std::vector<std::string>())},
      {record_mode::kSingleRecord, false, {Choose(second)}, Keys({"t:2"})},
      {record_mode::kNoData, false, {}, Keys(std::vector<std::string>())},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(&each - cases);
    TaskRecord task;
    task.name = "task";
    task.record_mode = each.mode;
    task.data_object_name = "orders";
    if (each.mode == record_mode::kQueryResults) task.query = "SELECT * FROM orders WHERE id <> 'x y'";
    task.skip_row_selection = each.skips;
    task = storage_->Save(task, state_.Now());
    list_->Reload(task.id);
    {
      ASSERT_TRUE(QTest::qWaitForWindowActive(list_.get()));
      const Answers answers(each.answers);
      QTest::keyClick(list_.get(), Qt::Key_R, Qt::ControlModifier);
    }
    const auto history = runs_.History(task.id);
    ASSERT_EQ(history.size(), each.keys ? 1U : 0U);
    if (each.keys) {
      EXPECT_EQ(history.front().keys, *each.keys);
      EXPECT_EQ(Says("task", TaskTableModel::kLast), "Waiting");
    }
    storage_->Delete(task.id, task.version);
  }
  TaskRecord single;
  single.record_mode = record_mode::kSingleRecord;
  single.data_object_name = "orders";
  RecordChooserDialog dialog(state_.texts, "Run", data_file_, single, nullptr);
  dialog.show();
  Choose(clear)(&dialog);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_THAT(Told(dialog), HasSubstr("Please choose a record"));
  single.record_mode = record_mode::kQueryResults;
  RecordChooserDialog query(state_.texts, "Run", data_file_, single, nullptr);
  query.show();
  Choose(all)(&query);
  EXPECT_THAT(query.Keys(), ElementsAre("t:1", "t:2", "t:4", "t:x y")) << "chosen, and not merely due";
  single.data_object_name = "nothing";
  RecordChooserDialog lost(state_.texts, "Run", data_file_, single, nullptr);
  lost.show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Told(lost).find("is not there") != std::string::npos; }, 10000));
}

TEST_F(RunsTest, ARunIsCancelledAndAtLastClosedByForce) {
  const TaskRecord task = Put("task");
  const auto cancel = [&](const char* question, Qt::Key answer) {
    const Answers answers({Reads(question, answer, Qt::AltModifier)});
    ListButton("cancelRun")->click();
  };
  EXPECT_FALSE(ListButton("cancelRun")->isEnabled());
  ListButton("runNow")->click();
  cancel("Cancel the run", Qt::Key_C);
  EXPECT_EQ(Says("task", TaskTableModel::kLast).substr(0, 9), "Cancelled");
  const RunRecord run = Begin(task.id);
  list_->Reload();
  cancel("Cancel the run", Qt::Key_L);
  EXPECT_FALSE(runs_.Run(run.id)->cancel);
  cancel("Cancel the run", Qt::Key_C);
  EXPECT_THAT(Says("task", TaskTableModel::kLast), HasSubstr("Being cancelled"));
  EXPECT_THAT(FromQt(Cell("task", TaskTableModel::kLast).data(Qt::ToolTipRole).toString()),
              HasSubstr("The action is being ended."));
  EXPECT_TRUE(runs_.Run(run.id)->cancel);
  cancel("Close the run by force?", Qt::Key_C);
  EXPECT_EQ(runs_.Run(run.id)->state, RunState::kCancelled);
  EXPECT_FALSE(ListButton("cancelRun")->isEnabled());
}

TEST_F(RunsTest, ATaskAndEverythingArePausedWithAReasonAndResumed) {
  const TaskRecord task = PutScheduled("task");
  list_->Reload();
  const auto pause = [](bool everything) {
    return [everything](QWidget* dialog) {
      auto* all = dialog->findChildren<QRadioButton*>().last();
      if (everything) QTest::keyClick(dialog, Qt::Key_E, Qt::AltModifier);
      EXPECT_TRUE(QTest::qWaitFor([&] { return all->isChecked() == everything; }));
      QTest::keyClicks(dialog->findChild<QLineEdit*>(), "the disk is full");
      QTest::keyClick(dialog, Qt::Key_Return);
    };
  };
  const auto* banner = list_->findChild<QFrame*>("pauseBanner");
  {
    const Answers answers({pause(false)});
    QTest::keyClick(list_.get(), Qt::Key_P, Qt::ControlModifier);
  }
  EXPECT_EQ(runs_.State(task.id)->paused, (Pause{"admin", "the disk is full", now_}));
  EXPECT_EQ(Says("task", TaskTableModel::kNext), "Paused");
  EXPECT_FALSE(banner->isVisible());
  EXPECT_EQ(FromQt(ListButton("pause")->text()), "Resu&me");
  ListButton("pause")->click();
  EXPECT_EQ(runs_.State(task.id)->paused, std::nullopt);
  EXPECT_EQ(Says("task", TaskTableModel::kNext), "in 22 h");
  {
    const Answers answers({pause(true)});
    ListButton("pause")->click();
  }
  EXPECT_EQ(runs_.State(task.id)->paused, std::nullopt);
  ASSERT_TRUE(banner->isVisible());
  EXPECT_THAT(Told(*banner),
              HasSubstr("February 10, 2026, 10:00 AM (UTC) (admin). Reason: the disk is full"));
  ListButton("resumeAll")->click();
  EXPECT_FALSE(banner->isVisible());
  EXPECT_EQ(runs_.PauseOfAll(), std::nullopt);
}

// The buttons were right when the list was read.
TEST_F(RunsTest, RightsAreAskedWhenSomethingIsAskedOfARun) {
  for (const char* button : {"runNow", "dryRun", "pause"}) {
    SCOPED_TRACE(button);
    tables_.SaveUsers(
        {FirstAdministrator(), {.id = "clerk", .name = "", .groups = {}, .create_shared = true}},
        tables_.Users());
    const TaskRecord task = Put("task");
    user_ = FindUser(tables_, "clerk", state_.texts);
    list_->Reload(task.id);
    ASSERT_TRUE(ListButton(button)->isEnabled());
    TaskRecord locked = task;
    locked.permissions = PermissionSet{{.subject = "clerk", .view = true}};
    SqliteStorage(FromQt(Path())).Save(locked, state_.Now());
    {
      const Answers answers({Reads("You may not", Qt::Key_Escape)});
      ListButton(button)->click();
    }
    EXPECT_FALSE(ListButton(button)->isEnabled());
    EXPECT_THAT(runs_.History(task.id), IsEmpty());
    EXPECT_EQ(runs_.State(task.id)->paused, std::nullopt);
    user_ = FirstAdministrator();
    list_->Reload(task.id);
    SqliteStorage(FromQt(Path())).Delete(task.id, storage_->Load(task.id)->version);
  }
}

TEST_F(RunsTest, ADryRunShowsWhatWouldBeExecutedAndIsCancelledWithItsWindow) {
  const TaskRecord task = Put("task");
  const auto execute = [&](QWidget* dialog) {
    EXPECT_THAT(Told(*dialog), HasSubstr("waits until an automation manager"));
    RunEnd end;
    const RunRecord run = others_->Claim(now_, 7).value();
    end.run = run.id;
    end.epoch = run.epoch;
    end.state = RunState::kSucceeded;
    end.planned =
        R"([{"run":1,"record":"t:a:b","kind":"run-program","arguments":["/bin/x","a b",""]},)"
        R"({"run":1,"record":null,"kind":"run-sql","statement":"DELETE","parameters":[4,null,"x"]}])";
    others_->Finish(end);
    const auto* table = dialog->findChild<QTableWidget*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->rowCount() == 2; }, 5000));
    EXPECT_EQ(FromQt(table->item(0, 0)->text()), "a:b");
    EXPECT_EQ(FromQt(table->item(0, 2)->text()), R"(/bin/x "a b" "")");
    EXPECT_EQ(FromQt(table->item(1, 2)->text()), "DELETE (with 4, NULL, x)");
    QTest::keyClick(dialog, Qt::Key_Return);
  };
  {
    const Answers answers({execute, PressKey(Qt::Key_Escape)});
    QTest::keyClick(list_.get(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(runs_.History(task.id).back().state, RunState::kSucceeded);
    ListButton("dryRun")->click();
  }
  EXPECT_EQ(runs_.History(task.id).back().state, RunState::kCancelled);
  EXPECT_EQ(Says("task", TaskTableModel::kLast), "Not run yet") << "a dry run is none";
}

TEST_F(RunsTest, WhatCannotWorkWithTheDataObjectIsSaidInThePanelAndTheEditor) {
  data_->entries = {{{"orders", "Orders", "id"}, {{"id", FieldType::kInteger}, {"R&D", FieldType::kText}}}};
  TaskRecord task;
  task.name = "task";
  task.record_mode = record_mode::kQueryResults;
  task.data_object_name = "orders";
  task.data_object_caption = "Orders";
  task.base_date = state_.Now();
  task.actions = {{"write-log", "", 0, 0, {{"text", "{id} {town}"}, {"file", "/x"}}}};
  const auto panel = [&] {
    WizardWindow window(Parts(), task);
    EXPECT_TRUE(window.Start("Plovix.Details"));
    const std::string shown = FromQt(window.findChild<QTextBrowser*>("summary")->toPlainText());
    window.Wizard().Cancel();
    return shown;
  };
  EXPECT_THAT(panel(), testing::AllOf(HasSubstr("“Orders” has no field that tells when"),
                                      HasSubstr("names the field “town”, which “Orders” does not have")));
  ActionDialog dialog(state_.texts, "Edit", {}, task.actions.front(), nullptr, data_->entries.front().fields);
  dialog.show();
  dialog.accept();
  ASSERT_TRUE(dialog.isVisible());
  auto* text = qobject_cast<QLineEdit*>(dialog.focusWidget());
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->selectedText(), "{town}");
  dialog.findChild<QMenu*>()->actions().at(1)->trigger();
  EXPECT_EQ(FromQt(text->text()), "{id} {R&D}");
  dialog.accept();
  EXPECT_FALSE(dialog.isVisible());
  task.actions = {dialog.Action()};
  data_->entries.front().fields.push_back({"changed_at", FieldType::kDateTime});
  EXPECT_THAT(panel(), testing::Not(HasSubstr("will not work")));
  task.record_mode = record_mode::kNoData;
  EXPECT_THAT(panel(), HasSubstr("names the field “id”, but the task processes no records"));
}

}  // namespace
}  // namespace plovix::app
