// What each page does of its own: the task type's choice, the records settings, the query and its builder,
// and the context that the actions page hands to the action list.
#include <plovix/framework/page_identifiers.h>

#include "tests/support/faults.h"

namespace plovix {
namespace {

using namespace testing_support;

// Keeps the context that the page gives out: an action list that asks on demand.
class AskingList final : public ActionListControl {
 public:
  void Load(const Ref<ActionList>& actions) override { loaded = actions; }
  Ref<ActionList> Actions() override { return std::make_shared<ActionListObject>(); }
  void OnContextRequest(ContextRequest handler) override { request = std::move(handler); }
  std::shared_ptr<StoreObject> Ask() {
    Ref<ValueStore> context;
    request(context);
    return As<StoreObject>(context).Shared();
  }
  Ref<ActionList> loaded;
  ContextRequest request;
};

class PagesTest : public testing::Test {
 protected:
  void Open(const std::string& identifier, const TaskRecord& record, const Entries& entries = {}) {
    bench = std::make_unique<Bench>(scene, identifier, record, entries);
    if (identifier == page_identifier::kActions) bench->Get<HostSlot>("VeloActionList").Embed(list);
    bench->Initialize();
  }
  // The selected option when it has the focus, too; nullptr when there is neither.
  [[nodiscard]] const Control* Chosen() const {
    for (const OptionButton* option : bench->Controls().OptionButtons())
      EXPECT_EQ(option->Selected(), option->HasFocus()) << option->Name();
    return bench->Controls().Focused();
  }
  Scene scene;
  std::unique_ptr<Bench> bench;
  std::shared_ptr<AskingList> list = std::make_shared<AskingList>();
};

constexpr std::array kOptions = {"optNoData", "optSingleRecord", "optQueryResults"};

TEST_F(PagesTest, LabelsChooseAndDoubleClicksMoveOn) {
  const std::pair<std::string, std::vector<std::string>> rows[] = {
      {page_identifier::kAutoTaskType, {"NoData", "SingleRecord", "QueryResults"}},
      {page_identifier::kRecurrencePattern, {"Daily", "Weekly", "Monthly", "Yearly"}},
  };
  for (const auto& [page, choices] : rows) {
    for (const std::string& choice : choices) {
      Open(page, CompleteTask(3));
      Control &option = (*bench)["opt" + choice], &label = (*bench)["lbl" + choice];
      bench->user.Click(label);
      EXPECT_EQ(Chosen(), &option);
      bench->user.Choose((*bench)["opt" + choices[choice == choices[0] ? 1 : 0]]);
      bench->user.DoubleClick(label);
      EXPECT_EQ(Chosen(), &option);
      bench->user.DoubleClick(option);
      EXPECT_EQ(bench->host->moves, 2);
      bench->page->IWizardPage_Terminate();
      bench->user.DoubleClick(label);
      EXPECT_EQ(bench->host->moves, 2) << "without a wizard nothing moves";
    }
  }
}

TEST_F(PagesTest, SavingTheChoice) {
  struct Row {
    std::int16_t stored;
    std::size_t actions;
    int chosen, reply;  // the chosen mode (-1: as loaded), the answer to the question (0: none)
    bool left;
    std::int16_t mode;  // afterwards, as the actions
    std::size_t actions_after;
  };
  const Row rows[] = {
      {0, 0, -1, 0, true, 0, 0}, {0, 0, 1, 0, true, 1, 0},  {1, 2, -1, 0, true, 1, 2},
      {2, 2, -1, 0, true, 2, 2}, {2, 2, 0, 1, true, 0, 0},  {2, 2, 0, 2, false, 2, 2},
      {0, 1, 1, 1, true, 1, 0},  {3, 0, -1, 0, true, 0, 0},  // nothing selected counts as no data
  };
  for (const auto& [stored, actions, chosen, reply, left, mode, actions_after] : rows) {
    TaskRecord expected = CompleteTask(stored);
    expected.allow_automation_manager = true;
    expected.actions.assign(actions, LogAction("line"));
    Open(page_identifier::kAutoTaskType, expected);
    const bool known = stored < 3;
    EXPECT_EQ(Chosen(), known ? &(*bench)[kOptions[static_cast<std::size_t>(stored)]] : nullptr);
    EXPECT_EQ(bench->host->pushes, std::vector<bool>{true});
    expected.record_mode = mode;
    expected.actions.resize(actions_after);
    // Without data there is no data object; a single record is never automatic.
    if (mode == 0) expected.data_object_name = expected.data_object_caption = "";
    expected.allow_automation_manager = mode != 1;
    if (chosen >= 0) bench->user.Choose((*bench)[kOptions[static_cast<std::size_t>(chosen)]]);
    scene.dialogs.boxes.clear();
    if (reply != 0) scene.dialogs.answers = {reply};
    EXPECT_EQ(bench->Leave(ChangeDirection::kNext), left);
    EXPECT_EQ(scene.dialogs.boxes, std::vector<std::string>(reply == 0 ? 0 : 1, "[117]/33"));
    EXPECT_EQ(bench->task->Record(), expected);
  }
}

TEST_F(PagesTest, QueryTakesAnyTextAndTheBuildersAnswer) {
  Furnish(scene);
  TaskRecord task = CompleteTask(2);
  task.query = "stored";
  Open(page_identifier::kQuery, task);
  EXPECT_EQ(bench->host->pushes, std::vector<bool>{true});
  EXPECT_EQ(bench->Text("txtQuery"), "stored");
  bench->user.Type((*bench)["txtQuery"], " typed\n");
  for (const auto& answer : {std::optional<std::string>(), {"built"}}) {
    scene.dialogs.chosen_query = answer;
    bench->user.Press((*bench)["cmdBuild"]);
    EXPECT_EQ(bench->Text("txtQuery"), answer.value_or(" typed\n"));
    EXPECT_EQ(scene.dialogs.built_queries.back(), "Customer: typed\n");
    EXPECT_EQ(bench->task->Record().query, "stored");
  }
  bench->user.Type((*bench)["txtQuery"], "");
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->task->Record().query, "");
  // Without a data object there is nothing to build on.
  task.data_object_name = "";
  Open(page_identifier::kQuery, task);
  bench->user.Press((*bench)["cmdBuild"]);
  EXPECT_EQ(bench->Text("txtQuery"), "stored");
  EXPECT_EQ(scene.dialogs.reports.size(), 1U);
  EXPECT_EQ(scene.dialogs.built_queries.size(), 2U);
}

TEST_F(PagesTest, ActionsGetAContextByRecordMode) {
  const std::map<std::int16_t, Value> rows = {{0, 16}, {1, 1}, {2, 8}, {3, {}}};
  for (const auto& [mode, type] : rows) {
    Open(page_identifier::kActions, CompleteTask(mode));
    EXPECT_EQ(list->loaded, bench->task->Actions());
    auto values = list->Ask()->values;
    EXPECT_EQ(values.at("DataObjectKey"), Value(std::string()));
    EXPECT_EQ(values.at("DataObject"), Value(ObjectRef()));
    EXPECT_EQ(values.size(), mode == 3 ? 4U : 5U);
    EXPECT_EQ(values["DesignerObjectType"], type);
    EXPECT_NE(list->Ask(), list->Ask()) << "each context is a fresh one";
    bench->page->IWizardPage_Terminate();
    EXPECT_FALSE(list->request) << "the list may outlive the page";
    EXPECT_EQ(bench->host.use_count() + bench->store.use_count(), 2) << "the page holds neither";
    Bench bare(scene, page_identifier::kActions);
    bare.Get<HostSlot>("VeloActionList").Embed(nullptr);
    bare.Initialize().page->IWizardPage_Terminate();
    EXPECT_EQ(std::exchange(scene.dialogs.reports, {}).size(), 1U)
        << "loading misses the list, ending does not";
  }
}

// What the store holds is used and never replaced; what it lacks is loaded once and kept when the page is
// left.
TEST_F(PagesTest, TheCollectionsOfTheActions) {
  const Injector calls;
  Open(page_identifier::kActions, CompleteTask());
  const auto first = list->Ask()->values;
  EXPECT_EQ(list->Ask()->values, first);
  EXPECT_FALSE(bench->store->values.contains("DataObjects"));
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  Entries kept = bench->store->values;
  for (const char* key : {"DataObjects", "DesignerObjects"}) {
    EXPECT_TRUE(ObjectFrom<ObjectCollection>(kept.at(key)));
    EXPECT_EQ(kept.at(key), first.at(key));
  }
  kept["DataObject"] = ObjectRef(scene.state.MakeDataObject({"C", "Cs", "CId"}));
  Open(page_identifier::kActions, CompleteTask(2), kept);
  auto values = list->Ask()->values;
  EXPECT_EQ(values.at("DataObjectKey"), Value(std::string("CId")));
  for (const char* key : {"DataObject", "DataObjects", "DesignerObjects"})
    EXPECT_EQ(values.at(key), kept.at(key)) << key;
  // An entry that somebody put there in the meantime stays, too.
  const Value later = ObjectRef(std::make_shared<DataObjectsObject>());
  bench->store->values["DataObjects"] = later;
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->store->values["DataObjects"], later);
  const auto loads = [](const std::string& call) { return call.starts_with("ObjectLoader."); };
  EXPECT_EQ(std::ranges::count_if(calls.calls, loads), 2);
}

TEST_F(PagesTest, RecordsHaveModesAndHistories) {
  const auto option = [this](const char* name) { return bench->Get<OptionButton>(name).Selected(); };
  TaskRecord task = CompleteTask(2);
  for (std::int32_t mode = -1; mode < 4; ++mode) {
    for (const bool all : {false, true}) {
      task.processing_mode = mode;
      task.process_all_records = all;
      task.process_failed_records = true;
      Open(page_identifier::kRecords, task);
      EXPECT_EQ((std::array{option("optOnce"), option("optModified"), option("optEveryTime")}),
                (std::array{mode == 0, mode == 1, mode == 2}));
      EXPECT_EQ((*bench)["chkFailedRecords"].Enabled(), !all);
      EXPECT_EQ(bench->Get<CheckBox>("chkFailedRecords").Checked(), !all);
      EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
      TaskRecord expected = task;
      expected.process_failed_records = !all;  // all records include the failed ones
      EXPECT_EQ(bench->task->Record(), expected);
      bench->user.Toggle((*bench)["chkProcessAll"]);
      EXPECT_EQ((*bench)["chkFailedRecords"].Enabled(), all);
      EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
      EXPECT_FALSE(bench->task->Record().process_failed_records) << "checked and moot is not checked";
    }
  }
}

TEST_F(PagesTest, RecordsHaveABaseDate) {
  const DateTime eight = kSomeDay + std::chrono::hours{8};
  TaskRecord task = CompleteTask(2);
  Open(page_identifier::kRecords, task);
  for (const bool uses : {false, true, false, true}) {
    if (uses != bench->Get<CheckBox>("chkUseBaseDate").Checked())
      bench->user.Toggle((*bench)["chkUseBaseDate"]);
    for (const char* picker : {"dtpDate", "dtpTime"}) {
      EXPECT_EQ((*bench)[picker].Enabled(), uses);
      EXPECT_EQ(bench->Get<DateTimePicker>(picker).Value(), scene.state.Now());
    }
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    EXPECT_EQ(bench->task->Record().base_date, uses ? scene.state.Now() : kZeroDate);
  }
  // Only the date of the one counts, only the time of the other.
  bench->user.Set((*bench)["dtpDate"], kSomeDay + std::chrono::hours{23});
  bench->user.Set((*bench)["dtpTime"], eight + std::chrono::days{40});
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->task->Record().base_date, eight);
  // Stored back as it was when nothing is edited: before 1970, at both ends of a day, at midnight.
  const std::chrono::seconds second{1};
  const DateTime last = std::chrono::local_days{std::chrono::year{9999} / 12 / 31};
  for (const DateTime date : {kZeroDate + second, kZeroDate - second, DateTime{kSomeDay}, last}) {
    task.base_date = date;
    Open(page_identifier::kRecords, task);
    EXPECT_TRUE(bench->Leave(ChangeDirection::kFinish));
    EXPECT_EQ(bench->task->Record().base_date, date);
  }
}

}  // namespace
}  // namespace plovix
