// Who runs the tasks while windows are open, with the real manager.
#include <plovix/standalone/app/runner_bar.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <unistd.h>

#include <QSettings>

#include "program_support.h"

namespace plovix::app {
namespace {

using Who = WhoRuns::Who;

class RunnerTest : public ProgramTest {
 protected:
  [[nodiscard]] WindowManager::Settings Settings() const {
    return {.program = PLOVIX_MANAGER, .database = FromQt(Path()), .data = {}, .as_root = geteuid() == 0};
  }
  [[nodiscard]] std::unique_ptr<WindowManager> Open() const {
    return std::make_unique<WindowManager>(Settings(), [] {});
  }
  [[nodiscard]] static bool Becomes(const WindowManager& window, Who who) {
    return QTest::qWaitFor([&] { return window.Who().who == who; }, 10'000);
  }
  [[nodiscard]] bool AreLiving(std::size_t count) {
    return QTest::qWaitFor([&] { return LivingManagers(runs_).size() == count; }, 10'000);
  }
  // A run of a program that takes so long.
  void Run(const std::string& seconds) {
    TaskRecord task;
    task.name = "Sleeps";
    task.actions = {NewAction(*FindActionKind("run-program"))};
    task.actions.front().settings["path"] = "/bin/sleep";
    task.actions.front().settings["arguments"] = seconds;
    control_.Start(storage_->Save(task, state_.Now()).id, RunOrigin::kManual);
  }
  [[nodiscard]] bool Becomes(RunState state) {
    return QTest::qWaitFor([&] { return runs_.History({}).back().state == state; }, 10'000);
  }
};

TEST_F(RunnerTest, OnePlaceRunsTheTasks) {
  auto first = Open(), second = Open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return first->Who().who >= Who::kThisWindow; }, 10'000));
  ASSERT_TRUE(QTest::qWaitFor([&] { return second->Who().who >= Who::kThisWindow; }, 10'000));
  ASSERT_TRUE(AreLiving(1));
  first.reset();
  EXPECT_TRUE(Becomes(*second, Who::kThisWindow));
  QProcess terminal;
  terminal.start(PLOVIX_MANAGER, {"--database", Path(), "--as-root"});
  EXPECT_TRUE(Becomes(*second, Who::kOther));
  EXPECT_TRUE(AreLiving(1));
  EXPECT_EQ(second->Who().other.process, terminal.processId());
  terminal.kill();
  QElapsedTimer waited;
  waited.start();
  EXPECT_TRUE(Becomes(*second, Who::kThisWindow));
  std::cout << "the window runs the tasks after " << waited.elapsed() << " ms" << std::endl;
  EXPECT_LT(waited.elapsed(), 2'000);
  terminal.waitForFinished();
  second.reset();
  EXPECT_TRUE(AreLiving(0));
}

TEST_F(RunnerTest, SaysWhyNobodyRunsThem) {
  QFile(folder_.path()).setPermissions(QFile::Permissions(0x7777));
  const auto window = Open();
  ASSERT_TRUE(Becomes(*window, Who::kNobody));
  EXPECT_THAT(window->Who().problem, testing::HasSubstr("others may write it"));
  QFile(folder_.path()).setPermissions(QFile::Permissions(0x7700));
  window->Start(geteuid() == 0);
  EXPECT_TRUE(Becomes(*window, Who::kThisWindow));
  WindowManager::Settings settings = Settings();
  settings.program = "/no/such/program";
  settings.database = FromQt(folder_.filePath("other.sqlite"));
  const WindowManager other(settings, [] {});
  ASSERT_TRUE(Becomes(other, Who::kNobody));
  EXPECT_THAT(other.Who().problem, testing::HasSubstr("/no/such/program"));
}

TEST_F(RunnerTest, AsksBeforeTheWindowClosesWhileRunsAreUnderWay) {
  struct Case {
    Qt::Key key;
    bool closes;
    RunState state;
  };
  const std::vector<Case> cases{{Qt::Key_Escape, false, RunState::kRunning},
                                {Qt::Key_L, true, RunState::kSucceeded},
                                {Qt::Key_E, true, RunState::kWaiting}};
  Run("4");
  for (const Case& each : cases) {
    QWidget window;
    new QVBoxLayout(&window);
    window.layout()->addWidget(new RunnerBar(state_.texts, Settings()));
    window.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return Told(window).starts_with("This window runs"); }, 10'000));
    const std::int64_t manager = LivingManagers(runs_).at(0).number;
    const auto is_its_own = [&] { return runs_.History({}).back().manager == manager; };
    ASSERT_TRUE(QTest::qWaitFor(is_its_own, 10'000) && Becomes(RunState::kRunning));
    const Answers answers(
        {Reads("runs are under way: 1", each.key, each.closes ? Qt::AltModifier : Qt::NoModifier)});
    EXPECT_EQ(window.close(), each.closes);
    EXPECT_TRUE(Becomes(each.state));
    if (each.state == RunState::kSucceeded) Run("60");
  }
  EXPECT_TRUE(AreLiving(0));
}

TEST_F(RunnerTest, AsksOnceBeforeTasksRunAsRoot) {
  if (geteuid() != 0) GTEST_SKIP() << "this is not root";
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder_.path());
  WindowManager::Settings settings = Settings();
  settings.as_root = false;
  for (const bool asks : {true, false}) {
    QWidget window;
    new QVBoxLayout(&window);
    window.layout()->addWidget(new RunnerBar(state_.texts, settings));
    std::vector<std::function<void(QWidget*)>> steps;
    if (asks) steps.push_back(Reads("Run them as root?", Qt::Key_Escape));
    const Answers answers(steps);
    window.show();
    QTest::qWait(700);
    EXPECT_THAT(Told(window), testing::HasSubstr("Nobody runs the tasks: this program runs as root"));
    if (asks) continue;
    const Answers yes({Reads("Run them as root?", Qt::Key_R, Qt::AltModifier)});
    window.findChild<QPushButton*>("startRunning")->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return Told(window).starts_with("This window runs"); }, 10'000));
  }
  EXPECT_TRUE(AreLiving(0));
}

}  // namespace
}  // namespace plovix::app
