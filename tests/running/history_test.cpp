// The history: reading on, following what happens, and who sees what.
#include <plovix/standalone/running/history_window.h>
#include <plovix/standalone/running/run_details_window.h>
#include <plovix/standalone/running/run_table_model.h>

#include "tests/running/running_support.h"

namespace plovix::app {
namespace {

class HistoryTest : public RunningTest {
 protected:
  static std::vector<std::int64_t> Ids(const RunTableModel& model) {
    std::vector<std::int64_t> ids;
    for (int row = 0; row < model.rowCount(); ++row) ids.push_back(model.At(row).run.id);
    return ids;
  }
  static std::string Cell(const RunTableModel& model, int row, int column) {
    return FromQt(model.index(row, column).data().toString());
  }
};

TEST_F(HistoryTest, ReadsOnAndFollowsWhileSelectionAndViewStay) {
  for (int i = 0; i < 1000; ++i) Over(1, i);
  const RunRecord running = Running(1);
  HistoryWindow window(Parts(), 1, nullptr);
  Show(window);
  auto* table = window.findChild<QTableView*>("runs");
  auto* model = static_cast<RunTableModel*>(table->model());
  EXPECT_EQ(model->rowCount(), 200);
  for (int last = 0; last != model->rowCount();) {
    last = model->rowCount();
    table->scrollToBottom();
    QTest::qWait(20);
  }
  EXPECT_EQ(model->rowCount(), 1001) << "none twice, none left out";
  EXPECT_TRUE(std::ranges::is_sorted(Ids(*model), std::ranges::greater()));
  table->selectRow(model->RowOf(500));
  table->scrollTo(model->index(model->RowOf(500), 0), QAbstractItemView::PositionAtTop);
  Finish(running, kFailed, "the program returned 3");
  const RunRecord newest = Over(1, 5000);
  window.Refresh();
  EXPECT_EQ(model->rowCount(), 1002);
  EXPECT_EQ(model->At(0).run, newest);
  EXPECT_EQ(Cell(*model, 1, RunTableModel::kState), "Failed");
  EXPECT_EQ(model->At(table->selectionModel()->selectedRows().constFirst().row()).run.id, 500);
  EXPECT_EQ(model->At(table->rowAt(0)).run.id, 500) << "the view stays, too";
  for (int i = 0; i < 300; ++i) Over(1, 6000 + i);
  window.Refresh();
  EXPECT_EQ(model->At(0).run.id, newest.id + 300) << "more than a page at once";
}

TEST_F(HistoryTest, AnOlderRunThatEndsLeavesTheOpenOnes) {
  const RunRecord running = Running(1);
  for (int i = 0; i < 250; ++i) {
    RunRecord waiting;
    waiting.task = 2;
    waiting.origin = RunOrigin::kManual;
    waiting.not_before = At(200'000);
    runs.Request(waiting);
  }
  RunTableModel model(Parts(), std::nullopt, nullptr);
  model.Look({kWaiting, kRunning}, {});
  model.ReadOn();
  EXPECT_EQ(model.rowCount(), 251);
  Finish(running, kSucceeded, {});
  model.Refresh();
  EXPECT_EQ(model.rowCount(), 250);
  EXPECT_EQ(model.RowOf(running.id), -1);
}

TEST_F(HistoryTest, SearchStatesAndRightsSayWhatIsThere) {
  Over(1, 1, kFailed, "the program returned 3");
  Over(2, 2, kMissed, "late");
  Over(3, 3, kSucceeded);  // of a task that is gone
  const UserRecord ben = User("ben");
  TaskRecord personal = *tasks.Load(2);
  personal.owner = "carla";
  tasks.Save(personal, {});
  const struct Row {
    UserRecord who;
    std::vector<RunState> states;
    const char* text;
    std::vector<std::int64_t> found;
  } rows[] = {
      {user, {}, "", {3, 2, 1}},       {user, {kFailed, kMissed}, "", {2, 1}},
      {user, {}, "RETURNED 3", {1}},   {user, {}, "nobody was", {2}},
      {user, {}, "beta", {2}},         {user, {}, "deleted", {3}},
      {user, {}, "nothing of it", {}}, {ben, {}, "", {1}},
      {ben, {}, "deleted", {}},
  };
  for (const auto& [who, states, text, found] : rows) {
    user = who;
    RunTableModel model(Parts(), std::nullopt, nullptr);
    model.Look(states, text);
    EXPECT_EQ(Ids(model), found) << who.id << text;
  }
}

TEST_F(HistoryTest, SaysWhyItIsEmptyAndOpensWhatIsSelected) {
  HistoryWindow window(Parts(), 1, nullptr);
  Show(window);
  EXPECT_THAT(Told(window), HasSubstr("This task has not run yet."));
  EXPECT_EQ(window.OpenDetails(), nullptr);
  const RunRecord run = Over(1, 60);
  window.Refresh();
  EXPECT_THAT(Told(window), Not(HasSubstr("not run yet")));
  auto* table = window.findChild<QTableView*>("runs");
  table->setFocus();
  QTest::keyClick(table, Qt::Key_Return);
  auto* details = window.findChild<RunDetailsWindow*>();
  ASSERT_NE(details, nullptr);
  EXPECT_EQ(window.OpenDetails(), details) << "one window for a run";
  ASSERT_TRUE(QTest::qWaitForWindowActive(details));
  QTest::keyClick(details, Qt::Key_Escape);
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  EXPECT_EQ(window.focusWidget(), table);
  auto* search = window.findChild<QLineEdit*>("search");
  search->setText("x");
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return Told(window).find("No run has this text") != std::string::npos; }));
  search->setFocus();
  QTest::keyClick(search, Qt::Key_Escape);
  EXPECT_TRUE(window.isVisible()) << "Esc only empties the search";
  EXPECT_TRUE(QTest::qWaitFor([&] { return table->isVisible(); }));
}

}  // namespace
}  // namespace plovix::app
