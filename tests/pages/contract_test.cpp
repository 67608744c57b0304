// What every registered page answers alike, the directions each may be left in, and the flow from page
// to page. A page that is registered later is held to the same table.
#include <plovix/framework/page_identifiers.h>

#include <regex>

#include "tests/support/faults.h"

namespace plovix {
namespace {

using namespace testing_support;

class EveryPage : public testing::TestWithParam<std::string> {
 protected:
  EveryPage() { Furnish(scene); }
  Scene scene;
};
INSTANTIATE_TEST_SUITE_P(Pages, EveryPage, testing::ValuesIn(Scene().registry.Identifiers()),
                         [](const auto& row) { return row.param.substr(row.param.find('.') + 1); });

TEST_P(EveryPage, AnswersWhatIsTheSameEverywhere) {
  Bench bench(scene, GetParam(), CompleteTask());
  WizardPage& page = *bench.page;
  for (const char* moment : {"before", "after Initialize"}) {
    EXPECT_EQ(page.IWizardPage_Title() + page.IWizardPage_Description(), "[4][5]") << moment;
    EXPECT_FALSE(page.IWizardPage_BackEnabled() || page.IWizardPage_CancelEnabled() ||
                 page.IWizardPage_FinishEnabled() || page.IWizardPage_NextEnabled());
    int width = -7, height = 8;
    page.IWizardPage_GetMinimumSize(width, height);
    EXPECT_EQ(std::pair(width, height), std::pair(-7, 8));
    bench.Initialize();
  }
  EXPECT_EQ("Plovix." + std::string(page.PageName()), GetParam());
  EXPECT_FALSE(bench.host->pushes.empty());
  EXPECT_FALSE(bench.Controls().Touched()) << "loading is not the user's doing";
  EXPECT_TRUE(scene.dialogs.reports.empty() && scene.dialogs.boxes.empty());
}

TEST_P(EveryPage, TranslatesEveryTaggedCaptionThatHasAText) {
  for (const bool translated : {true, false}) {
    Bench bench(scene, GetParam());
    bench.Initialize();
    for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
      const Control& control = bench.Controls().At(i);
      if (control.Tag().empty()) continue;
      const auto number = TextNumber(control.Tag());
      ASSERT_TRUE(number) << control.Name();
      EXPECT_EQ(control.Caption(),
                translated ? "[" + std::to_string(*number) + "]" : std::string(control.Info().caption));
      scene.state.texts.Remove(*number);
    }
  }
}

// But for the lists and boxes that loading only ever adds to.
TEST(Pages, InitializedAgainAreAsNew) {
  const auto look = [](Bench& bench) {
    if (Control* focused = bench.Controls().Focused()) bench.user.Leave(*focused);
    Snapshot all = Everything(bench);
    all.page.erase("moves");
    for (auto& [control, shown] : all.page) shown = std::regex_replace(shown, std::regex("/[0-9]+"), "");
    return std::pair(all.page, all.rows);
  };
  Scene scene;
  Furnish(scene);
  for (const std::string& name : scene.registry.Identifiers()) {
    if (std::regex_search(name, std::regex("Weekly|Monthly|Yearly"))) continue;
    for (const std::int16_t mode : {std::int16_t{0}, std::int16_t{2}, std::int16_t{7}}) {
      Bench again(scene, name, CompleteTask(2), {{"CreateGroup", true}, {"CreatePersonal", true}});
      EnterSomething(again.Initialize());
      for (const char* list : {"cboDataObject", "cboCategory"})
        if (Control* found = again.Controls().Find(list)) again.user.DropDown(*found);
      TaskRecord other = CompleteTask(mode);
      other.allow_automation_manager = other.process_all_records = mode != 2;
      other.processing_mode = other.recurrence->time_kind = other.recurrence->recurrence_type = mode;
      Bench fresh(scene, name, other, {{"CreateGroup", true}, {"PersonalTask", true}});
      again.store->values = fresh.store->values;
      again.host->pushes.clear();
      EXPECT_EQ(look(again.Initialize()), look(fresh.Initialize())) << name << mode;
      for (Bench* bench : {&again, &fresh})
        if (Control* list = bench->Controls().Find("cboDataObject")) bench->user.DropDown(*list);
      EXPECT_EQ(look(again), look(fresh)) << name << mode;
    }
  }
}

TEST(LeavingAPage, Table) {
  using namespace page_identifier;
  // For directions 0 to 3, and an unknown one: what a page answers on a new task and on a complete one, and
  // whether the complete task is written after the user's entries.
  const std::pair<std::string, std::vector<std::string>> rows[] = {
      {"11010 11010 10000", {kAutoTaskType}},
      {"01010 11111 10101", {kDetails}},
      {"11111 11111 11101", {kRecords, kRecurrenceTime, kRecurrencePattern, kQuery, kActions}},
      {"00010 11111 11101", {kDailyRecurrence, kWeeklyRecurrence, kMonthlyRecurrence, kYearlyRecurrence}},
  };
  for (const auto& [answers, pages] : rows) {
    for (const std::string& page : pages) {
      std::string on_new, on_complete, written;
      for (std::int32_t code = 0; code <= 4; ++code) {
        Scene scene;
        Furnish(scene);
        const auto direction = static_cast<ChangeDirection>(code);
        on_new += Bench(scene, page).Initialize().Leave(direction) ? '1' : '0';
        on_complete += Bench(scene, page, CompleteTask(2)).Initialize().Leave(direction) ? '1' : '0';
        Bench bench(scene, page, CompleteTask());
        EnterSomething(bench.Initialize());
        (void)bench.Leave(direction);
        written += bench.task->Record() != CompleteTask() ? '1' : '0';
      }
      EXPECT_EQ(on_new + " " + on_complete + " " + written, answers) << page;
    }
  }
}

// docs/page-flow.md has the flow; that it is asked for anew does not show there.
TEST(Flow, FollowsARightThatChangesMeanwhile) {
  Scene scene;
  TaskRecord task = CompleteTask();
  task.uses_language_tags = true;
  Bench pattern(scene, page_identifier::kDailyRecurrence, task);
  pattern.Initialize();
  for (const bool right : {true, false, true}) {
    scene.state.rights[kRightGoOnWithLanguageTags] = right;
    EXPECT_EQ(pattern.Next(), right ? "Plovix.Actions" : "");
  }
}

}  // namespace
}  // namespace plovix
