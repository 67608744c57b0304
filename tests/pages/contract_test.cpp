// What every registered page answers alike, the directions each may be left in, and the flow from page
// to page. A page that is registered later is held to the same table.
#include <plovix/framework/page_identifiers.h>

#include "tests/support/snapshot.h"

namespace plovix {
namespace {

using namespace testing_support;

std::vector<std::string> Registered() {
  PageRegistry registry;
  RegisterPages(registry);
  return registry.Identifiers();
}

TaskRecord CompleteTask(std::int16_t mode) {
  TaskRecord task;
  task.record_mode = mode;
  task.name = "Name";
  task.description = "Description";
  task.data_object_name = "Customer";
  task.data_object_caption = "Customers";
  task.actions = {LogAction("one")};
  return task;
}

// Changes whatever a user can change on the page.
void EnterSomething(Bench& bench) {
  for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
    Control& control = bench.Controls().At(i);
    bench.user.Type(control, "3");
    bench.user.Toggle(control);
    bench.user.Choose(control);
    bench.user.Pick(control, 0);
    bench.user.Set(control, DateTime{std::chrono::seconds{3600}});
    auto* slot = dynamic_cast<HostSlot*>(&control);
    auto* list = slot == nullptr ? nullptr : dynamic_cast<VeloActionList*>(slot->Embedded().get());
    if (list != nullptr) list->Append(LogAction("entered"));
  }
}

class EveryPage : public testing::TestWithParam<std::string> {
 protected:
  Scene scene;
};
INSTANTIATE_TEST_SUITE_P(Pages, EveryPage, testing::ValuesIn(Registered()),
                         [](const auto& row) { return row.param.substr(row.param.find('.') + 1); });

TEST_P(EveryPage, AnswersWhatIsTheSameEverywhere) {
  Bench bench(scene, GetParam(), CompleteTask(0));
  for (const char* moment : {"before", "after Initialize"}) {
    EXPECT_EQ(bench.page->IWizardPage_Title(), "[4]") << moment;
    EXPECT_EQ(bench.page->IWizardPage_Description(), "[5]");
    EXPECT_FALSE(bench.page->IWizardPage_BackEnabled() || bench.page->IWizardPage_CancelEnabled() ||
                 bench.page->IWizardPage_FinishEnabled() || bench.page->IWizardPage_NextEnabled());
    int width = -7, height = 8;
    bench.page->IWizardPage_GetMinimumSize(width, height);
    EXPECT_EQ(std::pair(width, height), std::pair(-7, 8));
    bench.Initialize();
  }
  EXPECT_EQ("Plovix." + std::string(bench.page->PageName()), GetParam());
  EXPECT_FALSE(bench.host->pushes.empty());
  EXPECT_FALSE(bench.Controls().Touched()) << "loading is not the user's doing";
  EXPECT_TRUE(scene.dialogs.reports.empty() && scene.dialogs.boxes.empty());
}

TEST_P(EveryPage, TranslatesEveryTaggedCaption) {
  Bench bench(scene, GetParam());
  bench.Initialize();
  for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
    const Control& control = bench.Controls().At(i);
    if (control.Tag().empty()) continue;
    const auto number = TextNumber(control.Tag());
    ASSERT_TRUE(number) << control.Name();
    EXPECT_EQ(control.Caption(), "[" + std::to_string(*number) + "]") << control.Name();
    scene.state.texts.Remove(*number);
  }
  Bench untranslated(scene, GetParam());
  untranslated.Initialize();
  for (std::size_t i = 0; i < untranslated.Controls().Count(); ++i) {
    const Control& control = untranslated.Controls().At(i);
    if (!control.Tag().empty()) {
      EXPECT_EQ(control.Caption(), control.Info().caption);
    }
  }
}

TEST_P(EveryPage, CancelNeverWrites) {
  for (const std::int16_t mode : {std::int16_t{0}, std::int16_t{1}, std::int16_t{2}, std::int16_t{3}}) {
    Bench bench(scene, GetParam(), CompleteTask(mode));
    bench.Initialize();
    EnterSomething(bench);
    const Snapshot before = TaskAndStore(*bench.task, *bench.store);
    EXPECT_TRUE(bench.Leave(ChangeDirection::kCancel));
    EXPECT_EQ(TaskAndStore(*bench.task, *bench.store), before);
  }
  EXPECT_TRUE(scene.dialogs.boxes.empty());
}

TEST_P(EveryPage, RefreshNeedsAHostAndTerminateDropsTheReferences) {
  Bench bench(scene, GetParam());
  auto* common = dynamic_cast<CommonPage*>(bench.page.get());
  const CallLog log;
  if (common != nullptr) {
    EXPECT_EQ(common->RefreshWizard(), Outcome::kCompleted);
  }
  EXPECT_TRUE(log.members.empty());
  bench.Initialize();
  const std::weak_ptr<RecordingHost> host = bench.host;
  const std::weak_ptr<StoreObject> store = bench.store;
  bench.host.reset();
  bench.store.reset();
  EXPECT_FALSE(host.expired() || store.expired());
  const std::size_t calls = log.members.size();
  bench.page->IWizardPage_Terminate();
  EXPECT_TRUE(host.expired() && store.expired());
  if (common != nullptr) {
    EXPECT_EQ(common->RefreshWizard(), Outcome::kCompleted);
  }
  EXPECT_EQ(log.members.size(), calls);
}

// A task that is not in the store fails at its first use.
TEST_P(EveryPage, MissingTask) {
  Bench bench(scene, GetParam());
  bench.store->values.clear();
  int number = 0;
  try {
    bench.Initialize();
    ASSERT_FALSE(scene.dialogs.reports.empty());
    number = scene.dialogs.reports[0].number;
  } catch (const Failure& failure) {
    number = failure.Number();
  }
  EXPECT_EQ(number, failure_number::kObjectNotSet);
}

TEST(LeavingAPage, Table) {
  struct Row {
    std::string page;
    const char* incomplete;  // answers for directions 0 to 3 on a new task
    const char* complete;    // and on a complete one
    const char* writes;      // in which directions the complete task is written after the user's entries
  };
  const std::vector<Row> rows = {
      {page_identifier::kAutoTaskType, "1101", "1101", "1000"},
      {page_identifier::kDetails, "0101", "1111", "1010"},
      {page_identifier::kActions, "1111", "1111", "1110"},
  };
  for (const Row& row : rows) {
    std::string incomplete, complete, writes;
    for (std::int32_t code = 0; code < 4; ++code) {
      Scene scene;
      const auto direction = static_cast<ChangeDirection>(code);
      incomplete += Bench(scene, row.page).Initialize().Leave(direction) ? '1' : '0';
      complete += Bench(scene, row.page, CompleteTask(2)).Initialize().Leave(direction) ? '1' : '0';
      Bench bench(scene, row.page, CompleteTask(0));
      bench.Initialize();
      EnterSomething(bench);
      const Snapshot before = TaskAndStore(*bench.task, *bench.store);
      (void)bench.Leave(direction);
      writes += TaskAndStore(*bench.task, *bench.store) != before ? '1' : '0';
      EXPECT_TRUE(scene.dialogs.reports.empty());
    }
    EXPECT_EQ(incomplete, row.incomplete) << row.page;
    EXPECT_EQ(complete, row.complete) << row.page;
    EXPECT_EQ(writes, row.writes) << row.page;
  }
}

TEST(Flow, Table) {
  using namespace page_identifier;
  struct Row {
    std::string page;
    std::int16_t mode;
    bool automation;
    Value importing;
    std::string next;
  };
  const std::vector<Row> rows = {
      {kAutoTaskType, 0, false, {}, "Plovix.Details"},
      {kAutoTaskType, 2, true, true, "Plovix.Details"},
      {kDetails, 0, false, {}, "Plovix.Actions"},
      {kDetails, 1, false, {}, "Plovix.Actions"},
      {kDetails, 2, false, {}, "Plovix.Query"},
      {kDetails, 3, false, false, "Plovix.Actions"},
      {kDetails, 0, true, {}, "Plovix.RecurrenceTime"},
      {kDetails, 1, true, {}, "Plovix.Records"},
      {kDetails, 2, true, false, "Plovix.Records"},
      {kDetails, 3, true, {}, "Plovix.Records"},
      {kDetails, 0, false, true, ""},
      {kDetails, 2, true, true, ""},
      {kDetails, 1, true, std::int32_t{-1}, ""},
      {kActions, 0, false, {}, ""},
      {kActions, 2, true, true, ""},
  };
  for (const Row& row : rows) {
    Scene scene;
    TaskRecord task = CompleteTask(row.mode);
    task.allow_automation_manager = row.automation;
    Entries entries;
    if (!std::holds_alternative<std::monostate>(row.importing))
      entries[store_key::kImporting] = row.importing;
    EXPECT_EQ(Bench(scene, row.page, task, entries).Initialize().Next(), row.next)
        << row.page << " in mode " << row.mode;
  }
}

TEST(Tags, AreReadWithoutRegardToCaseAndSemicolon) {
  const std::vector<std::pair<const char*, std::optional<int>>> rows = {
      {"Lng=4;", 4}, {"Lng=116", 116}, {"lng=118;", 118}, {"LNG=7", 7},    {"", {}},       {"Lng=", {}},
      {"Lng=;", {}}, {"Lng=x;", {}},   {"Lng=4;;", {}},   {"Lng=4 ;", {}}, {"Tag=4;", {}}, {"Lng 4;", {}},
  };
  for (const auto& [tag, number] : rows) EXPECT_EQ(TextNumber(tag), number) << tag;
  Scene scene;
  Bench type(scene, page_identifier::kAutoTaskType);
  EXPECT_EQ(type["lblSingleRecord"].Tag(), "Lng=116");
  EXPECT_EQ(type.Initialize()["lblSingleRecord"].Caption(), "[116]");
  Bench details(scene, page_identifier::kDetails);
  EXPECT_EQ(details["fraSettings"].Tag(), "lng=118;");
  EXPECT_EQ(details.Initialize()["fraSettings"].Caption(), "[118]");
}

}  // namespace
}  // namespace plovix
