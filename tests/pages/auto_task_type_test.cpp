// The task type page: the choice and its shortcuts, and what saving it does to the task.
#include <plovix/framework/page_identifiers.h>

#include "tests/support/snapshot.h"

namespace plovix {
namespace {

using namespace testing_support;

constexpr std::array kOptions = {"optNoData", "optSingleRecord", "optQueryResults"};
constexpr std::array kHelps = {"lblNoData", "lblSingleRecord", "lblQueryResults"};

class AutoTaskTypeTest : public testing::Test {
 protected:
  std::unique_ptr<Bench> Open(std::int16_t mode, int actions = 0) {
    TaskRecord task;
    task.record_mode = mode;
    task.data_object_name = "Customer";
    task.data_object_caption = "Customers";
    task.allow_automation_manager = true;
    for (int i = 0; i < actions; ++i) task.actions.push_back(LogAction("line"));
    auto bench = std::make_unique<Bench>(scene, page_identifier::kAutoTaskType, task);
    bench->Initialize();
    return bench;
  }
  static int Selected(const Bench& bench) {
    for (std::size_t i = 0; i < kOptions.size(); ++i) {
      if (bench.Get<OptionButton>(kOptions[i]).Selected()) return static_cast<int>(i);
    }
    return -1;
  }
  Scene scene;
};

TEST_F(AutoTaskTypeTest, ShowsTheModeAndGivesItTheFocus) {
  const std::vector<std::pair<std::int16_t, int>> rows = {{0, 0}, {1, 1}, {2, 2}, {3, -1}, {-1, -1}};
  for (const auto& [mode, option] : rows) {
    const auto bench = Open(mode);
    EXPECT_EQ(Selected(*bench), option);
    const Control* focused = option < 0 ? nullptr : &(*bench)[kOptions[static_cast<std::size_t>(option)]];
    EXPECT_EQ(bench->Controls().Focused(), focused);
    EXPECT_EQ(bench->host->pushes, std::vector<bool>{true});
  }
}

TEST_F(AutoTaskTypeTest, HelpTextsAndDoubleClicks) {
  for (std::size_t i = 0; i < kOptions.size(); ++i) {
    const auto bench = Open(3);
    Control& option = (*bench)[kOptions[i]];
    bench->user.Click((*bench)[kHelps[i]]);
    EXPECT_EQ(Selected(*bench), static_cast<int>(i));
    EXPECT_TRUE(option.HasFocus());
    EXPECT_EQ(bench->host->moves, 0);
    bench->user.Choose((*bench)[kOptions[(i + 1) % 3]]);
    bench->user.DoubleClick((*bench)[kHelps[i]]);
    EXPECT_EQ(Selected(*bench), static_cast<int>(i));
    EXPECT_EQ(bench->host->moves, 1);
    bench->user.DoubleClick(option);
    EXPECT_EQ(bench->host->moves, 2);
    EXPECT_TRUE(bench->escaped.empty());
  }
}

TEST_F(AutoTaskTypeTest, SavingTheChoice) {
  struct Row {
    std::int16_t stored;
    int actions;
    int chosen;  // -1: as loaded
    int reply;   // to the question; 0: no question
    bool left;
    std::int16_t mode;
    int actions_after;
    bool data_object, automation;
  };
  const std::vector<Row> rows = {
      {0, 0, -1, 0, true, 0, 0, false, true},  // no data: no data object
      {0, 0, 1, 0, true, 1, 0, true, false},   // single record: never automatic
      {0, 0, 2, 0, true, 2, 0, true, true},
      {1, 2, -1, 0, true, 1, 2, true, false},  // also when the mode stays
      {2, 2, -1, 0, true, 2, 2, true, true},
      {2, 2, 0, 1, true, 0, 0, false, true},
      {2, 2, 0, 2, false, 2, 2, true, true},
      {0, 1, 1, 1, true, 1, 0, true, false},
      {0, 1, 1, 2, false, 0, 1, true, true},
      {3, 0, -1, 0, true, 0, 0, false, true},  // nothing selected counts as no data
      {3, 1, -1, 1, true, 0, 0, false, true},
  };
  for (const Row& row : rows) {
    const auto bench = Open(row.stored, row.actions);
    if (row.chosen >= 0) bench->user.Choose((*bench)[kOptions[static_cast<std::size_t>(row.chosen)]]);
    scene.dialogs.boxes.clear();
    if (row.reply != 0) scene.dialogs.answers = {row.reply};
    EXPECT_EQ(bench->Leave(ChangeDirection::kNext), row.left);
    using Boxes = std::vector<std::string>;
    EXPECT_EQ(scene.dialogs.boxes, row.reply == 0 ? Boxes{} : Boxes{"[117]/33"});
    const TaskRecord task = bench->task->Record();
    EXPECT_EQ(task.record_mode, row.mode);
    EXPECT_EQ(task.actions.size(), static_cast<std::size_t>(row.actions_after));
    EXPECT_EQ(task.data_object_name, row.data_object ? "Customer" : "");
    EXPECT_EQ(task.data_object_caption, row.data_object ? "Customers" : "");
    EXPECT_EQ(task.allow_automation_manager, row.automation);
  }
}

}  // namespace
}  // namespace plovix
