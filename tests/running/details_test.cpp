// The details of a run: what programs wrote, records, and what a person may do.
#include <plovix/standalone/runner/output_folder.h>
#include <plovix/standalone/running/output_text.h>
#include <plovix/standalone/running/planned_text.h>
#include <plovix/standalone/running/run_details_window.h>

#include <fstream>

#include "tests/running/running_support.h"

namespace plovix::app {
namespace {

class DetailsTest : public RunningTest {
 protected:
  [[nodiscard]] std::string LogOf(std::int64_t run) const {
    return runner::OutputPath(FromQt(folder.path()), run);
  }
  static std::string TextIn(const QWidget& window, const char* name) {
    return FromQt(window.findChild<QPlainTextEdit*>(name)->toPlainText());
  }
  static LedgerRow Row(const std::string& key, LedgerState state, std::int64_t run) {
    return {key, state, "f", run, state == LedgerState::kFailed ? "why" : ""};
  }
};

TEST_F(DetailsTest, OutputOfOthersIsNothingButText) {
  const struct Row {
    std::string bytes, shown;
  } rows[] = {
      {"a\tb\n<b>c</b>\n", "a\tb\n<b>c</b>\n"},
      {"1\r\n2\r3", "1\n2\n3"},
      {std::string("\x1B[31mred\0end", 11), "^[[31mred^@en"},
      {"caf\xC3\xA9 \xFF\xC3", "caf\u00e9 \uFFFD\uFFFD"},
      {"to\xE2\x80\xAE"
       "exe\x7F",
       "to\uFFFDexe^?"},
      {std::string(1001, 'x'), std::string(1000, 'x') + "\nx"},
  };
  for (const auto& [bytes, shown] : rows) EXPECT_EQ(FromQt(VisibleText(bytes)), shown);
  std::string accents = "a";
  for (int i = 0; i < 10'000; ++i) accents += "\xCC\x81";
  EXPECT_LT(VisibleText(accents).size(), 20);
  const struct Cut {
    OutputPart part;
    std::string_view from;
  } cuts[] = {{{"ab\ncd", 0, 5}, "ab\ncd"}, {{"ab\ncd", 7, 12}, "cd"}, {{"\x82\xACx", 7, 12}, "x"}};
  for (const auto& [part, from] : cuts) EXPECT_EQ(FromWholeLine(part), from);
  EXPECT_EQ(WholeCharacters("ab\xE2\x82"), 2U);
  EXPECT_EQ(WholeCharacters("ab\xE2\x82\xAC"), 5U);
}

TEST_F(DetailsTest, TheEndOfALongFileIsFollowedAndTheBeginningReadOn) {
  const RunRecord run = Running(1);
  RunDetailsWindow window(Parts(), run, nullptr);
  Show(window);
  window.findChild<QTabWidget*>()->setCurrentIndex(1);
  EXPECT_THAT(Told(window), HasSubstr("No program has been started yet."));
  std::ofstream log(LogOf(run.id));
  for (int line = 0; line < 30'000; ++line) log << "line " << line << '\n';
  log.flush();
  window.Refresh();
  EXPECT_THAT(TextIn(window, "output"), testing::EndsWith("\nline 29999\n"));
  EXPECT_LE(TextIn(window, "output").size(), kMostRead);
  EXPECT_TRUE(TextIn(window, "output").starts_with("line "));
  EXPECT_THAT(Told(window), HasSubstr("earlier lines are not shown"));
  log << "more\n" << std::flush;
  window.Refresh();
  EXPECT_THAT(TextIn(window, "output"), testing::EndsWith("\nline 29999\nmore\n"));
  auto* text = window.findChild<QPlainTextEdit*>("output");
  text->verticalScrollBar()->setValue(10);
  log << "later\n" << std::flush;
  window.Refresh();
  EXPECT_THAT(TextIn(window, "output"), Not(HasSubstr("later"))) << "somebody reads further up";
  Button(window, "turn")->click();
  EXPECT_TRUE(TextIn(window, "output").starts_with("line 0\nline 1\n"));
  EXPECT_EQ(TextIn(window, "output").size(), kMostRead);
  while (TextIn(window, "output").find("later") == std::string::npos) {
    const std::size_t before = TextIn(window, "output").size();
    text->verticalScrollBar()->setValue(0);
    text->verticalScrollBar()->setValue(text->verticalScrollBar()->maximum());
    ASSERT_GT(TextIn(window, "output").size(), before);
  }
  EXPECT_EQ(TextIn(window, "output").find("line 12345\nline 12346\n"),
            TextIn(window, "output").rfind("line 12345\nline 12346\n"));
}

TEST_F(DetailsTest, WhatIsNoOrdinaryFileIsRefusedInWords) {
  const RunRecord run = Over(1, 1, kFailed, "<img src=x>&amp;\x1B \xE2\x80\xAEmoc");
  const std::string path = LogOf(run.id);
  ASSERT_EQ(symlink("/etc/passwd", path.c_str()), 0);
  RunDetailsWindow window(Parts(), run, nullptr);
  Show(window);
  window.findChild<QTabWidget*>()->setCurrentIndex(1);
  EXPECT_THAT(Told(window), HasSubstr("The output cannot be read: it is a link"));
  EXPECT_EQ(TextIn(window, "output"), "");
  EXPECT_EQ(TextIn(window, "reason"), "<img src=x>&amp;^[ \uFFFDmoc");
  ASSERT_EQ(unlink(path.c_str()), 0);
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  window.Refresh();
  EXPECT_THAT(Told(window), HasSubstr("it is no ordinary file"));
}

TEST_F(DetailsTest, DecisionsAndNewRunsReachTheStore) {
  const RunRecord run = Running(1);
  Finish(run, kPartly, "2 of 4 records failed",
         {Row("i:1", LedgerState::kDone, run.id), Row("i:2", LedgerState::kFailed, run.id),
          Row("i:3", LedgerState::kFailed, run.id), Row("i:4", LedgerState::kInDoubt, run.id)});
  RunDetailsWindow window(Parts(), *runs.Run(run.id), nullptr);
  Show(window);
  auto* table = window.findChild<QTableView*>("records");
  table->selectRow(0);
  EXPECT_FALSE(CanPress(window, "done")) << "done already";
  table->selectAll();
  EXPECT_TRUE(CanPress(window, "done"));
  table->selectRow(1);
  Button(window, "done")->click();
  table->selectRow(3);
  Button(window, "again")->click();
  EXPECT_EQ(runs.LedgerOf(1, "i:2")->state, LedgerState::kDone);
  EXPECT_EQ(runs.LedgerOf(1, "i:4"), std::nullopt);
  EXPECT_EQ(table->model()->rowCount(), 3);
  EXPECT_FALSE(CanPress(window, "runMissed") || CanPress(window, "cancelRun") ||
               CanPress(window, "closeByForce"));
  Button(window, "onlyFailed")->click();
  const auto waiting = Waiting();
  ASSERT_EQ(waiting.size(), 1U);
  EXPECT_THAT(waiting[0].keys, ElementsAre("i:3"));
  EXPECT_THAT(Told(window), HasSubstr("Run " + std::to_string(waiting[0].id) + " was asked for."));
  Button(window, "runAgain")->click();
  EXPECT_EQ(Waiting().front().origin, RunOrigin::kManual);
}

TEST_F(DetailsTest, CancellingSaysWhatItWaitsForAndForceAsks) {
  const RunRecord run = Running(1);
  RunDetailsWindow window(Parts(), run, nullptr);
  Show(window);
  EXPECT_FALSE(CanPress(window, "runAgain") || CanPress(window, "closeByForce"));
  Button(window, "cancelRun")->click();
  EXPECT_TRUE(runs.Run(run.id)->cancel);
  EXPECT_THAT(Told(window), HasSubstr("waits for the manager to end what runs"));
  EXPECT_FALSE(CanPress(window, "cancelRun"));
  for (const bool sure : {false, true}) {
    QTimer::singleShot(0, &window, [sure] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->defaultButton(), box->escapeButton());
      for (QAbstractButton* button : box->buttons())
        if ((button != box->escapeButton()) == sure) return button->click();
    });
    Button(window, "closeByForce")->click();
    EXPECT_EQ(runs.Run(run.id)->state, sure ? kCancelled : kRunning);
  }
  EXPECT_TRUE(CanPress(window, "runAgain"));
}

TEST_F(DetailsTest, WhoMayOnlyViewPressesNothingAndRefusalsAreTold) {
  RunRecord missed = Over(1, 5, kMissed, "late");
  missed.id = 0;
  missed.missed = {At(1), At(5), 3};
  const RunRecord row = runs.Request(missed);
  RunDetailsWindow window(Parts(), row, nullptr);
  Show(window);
  EXPECT_TRUE(CanPress(window, "runMissed"));
  EXPECT_FALSE(Button(window, "runAgain")->isVisible());
  TaskRecord task = *tasks.Load(1);
  task.permissions = PermissionSet{{.subject = "anna", .view = true}};
  tasks.Save(task, {});
  user.administrator = false;
  QTimer::singleShot(0, &window, [] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_THAT(FromQt(box->text()), HasSubstr("You do not have the right"));
    box->close();
  });
  Button(window, "runMissed")->click();
  EXPECT_EQ(runs.Recent({}).size(), 2U);
  EXPECT_FALSE(Button(window, "runMissed")->isEnabled()) << "known by now";
}

TEST_F(DetailsTest, ManyRecordsAreReadBetweenEventsAndAPlanInLines) {
  const RunRecord run = Running(1);
  std::vector<LedgerRow> rows;
  rows.reserve(5000);
  for (int i = 0; i < 5000; ++i) rows.push_back(Row("i:" + std::to_string(i), LedgerState::kDone, run.id));
  rows.back().state = LedgerState::kFailed;
  Finish(run, kPartly, "", rows);
  RunDetailsWindow window(Parts(), *runs.Run(run.id), nullptr);
  Show(window);
  auto* table = window.findChild<QTableView*>("records");
  EXPECT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 5000; }));
  window.findChild<QCheckBox*>()->click();
  EXPECT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 1; }));
  EXPECT_EQ(FromQt(table->model()->index(0, 0).data().toString()), "4999");
  const std::string plan =
      R"([{"record":"i:1","kind":"run-program","arguments":["/bin/x","a b","]\"}",""]},)"
      R"({"record":"i:1","kind":"run-sql","statement":"DELETE FROM t WHERE a = ?","parameters":[1,null]},)"
      R"({"record":"t:z","kind":"write-log","text":"<b>","file":"/x"}])";
  EXPECT_EQ(FromQt(PlannedText(plan, texts)),
            "Record 1\n  Program: /bin/x \"a b\" \"]\\\"}\" \"\"\n"
            "  SQL: DELETE FROM t WHERE a = ?\n    with [1,null]\nRecord z\n  Line to /x: <b>\n");
  EXPECT_EQ(FromQt(PlannedText("[]", texts)), "Nothing would have been done.");
  EXPECT_EQ(FromQt(PlannedText("x{", texts)), "x{") << "as it stands";
}

}  // namespace
}  // namespace plovix::app
