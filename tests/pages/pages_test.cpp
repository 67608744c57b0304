// What each page does of its own: the task type's choice, the query and its builder, and the context that the
// actions page hands to the action list.
#include <plovix/framework/page_identifiers.h>

#include "tests/support/faults.h"

namespace plovix {
namespace {

using namespace testing_support;

// Keeps the context that the page gives out: an action list that asks on demand.
class AskingList final : public ActionListControl {
 public:
  void Load(const std::shared_ptr<ActionList>& actions) override { loaded = actions; }
  std::shared_ptr<ActionList> Actions() override { return std::make_shared<ActionListObject>(); }
  void OnContextRequest(ContextRequest handler) override { request = std::move(handler); }
  std::shared_ptr<StoreObject> Ask() {
    std::shared_ptr<ValueStore> context;
    request(context);
    return std::dynamic_pointer_cast<StoreObject>(context);
  }
  std::shared_ptr<ActionList> loaded;
  ContextRequest request;
};

class PagesTest : public testing::Test {
 protected:
  void Open(const std::string& identifier, const TaskRecord& record, const Entries& entries = {}) {
    bench = std::make_unique<Bench>(scene, identifier, record, entries);
    if (identifier == page_identifier::kActions) bench->Get<HostSlot>("VeloActionList").Embed(list);
    bench->Initialize();
  }
  Scene scene;
  std::unique_ptr<Bench> bench;
  std::shared_ptr<AskingList> list = std::make_shared<AskingList>();
};

class ActionsTest : public PagesTest {};

constexpr std::array kOptions = {"optNoData", "optSingleRecord", "optQueryResults"};
constexpr std::array kHelps = {"lblNoData", "lblSingleRecord", "lblQueryResults"};

class AutoTaskTypeTest : public PagesTest {
 protected:
  void Open(std::int16_t mode, std::size_t actions = 0) {
    TaskRecord task = CompleteTask(mode);
    task.allow_automation_manager = true;
    task.actions.assign(actions, LogAction("line"));
    PagesTest::Open(page_identifier::kAutoTaskType, task);
  }
  // The selected option when it has the focus, too; nullptr when there is neither.
  static const Control* Chosen(const Bench& bench) {
    for (const OptionButton* option : bench.Controls().OptionButtons()) {
      EXPECT_EQ(option->Selected(), option->HasFocus()) << option->Name();
    }
    return bench.Controls().Focused();
  }
};

TEST_F(AutoTaskTypeTest, ShowsTheModeAndPushesOnce) {
  const std::vector<std::pair<std::int16_t, const char*>> rows = {
      {0, kOptions[0]}, {1, kOptions[1]}, {2, kOptions[2]}, {3, nullptr}, {-1, nullptr}};
  for (const auto& [mode, option] : rows) {
    Open(mode);
    EXPECT_EQ(Chosen(*bench), option == nullptr ? nullptr : &(*bench)[option]);
    EXPECT_EQ(bench->host->pushes, std::vector<bool>{true});
  }
}

TEST_F(AutoTaskTypeTest, HelpTextsAndDoubleClicks) {
  for (std::size_t i = 0; i < kOptions.size(); ++i) {
    Open(3);
    Control& option = (*bench)[kOptions[i]];
    bench->user.Click((*bench)[kHelps[i]]);
    EXPECT_EQ(Chosen(*bench), &option);
    bench->user.Choose((*bench)[kOptions[(i + 1) % 3]]);
    bench->user.DoubleClick((*bench)[kHelps[i]]);
    EXPECT_EQ(Chosen(*bench), &option);
    EXPECT_EQ(bench->host->moves, 1);
    bench->user.DoubleClick(option);
    EXPECT_EQ(bench->host->moves, 2);
  }
}

TEST_F(AutoTaskTypeTest, SavingTheChoice) {
  struct Row {
    std::int16_t stored;
    std::size_t actions;
    int chosen;  // -1: as loaded
    int reply;   // to the question; 0: no question
    bool left;
    std::int16_t mode;
    std::size_t actions_after;
    bool data_object, automation;
  };
  const std::vector<Row> rows = {
      {0, 0, -1, 0, true, 0, 0, false, true},  // no data: no data object
      {0, 0, 1, 0, true, 1, 0, true, false},   // single record: never automatic
      {1, 2, -1, 0, true, 1, 2, true, false},  // also when the mode stays
      {2, 2, -1, 0, true, 2, 2, true, true},
      {2, 2, 0, 1, true, 0, 0, false, true},
      {2, 2, 0, 2, false, 2, 2, true, true},
      {0, 1, 1, 1, true, 1, 0, true, false},
      {0, 1, 1, 2, false, 0, 1, true, true},
      {3, 0, -1, 0, true, 0, 0, false, true},  // nothing selected counts as no data
  };
  for (const Row& row : rows) {
    Open(row.stored, row.actions);
    TaskRecord expected = bench->task->Record();
    expected.record_mode = row.mode;
    expected.actions.resize(row.actions_after);
    if (!row.data_object) expected.data_object_name = expected.data_object_caption = "";
    expected.allow_automation_manager = row.automation;
    if (row.chosen >= 0) bench->user.Choose((*bench)[kOptions[static_cast<std::size_t>(row.chosen)]]);
    scene.dialogs.boxes.clear();
    if (row.reply != 0) scene.dialogs.answers = {row.reply};
    EXPECT_EQ(bench->Leave(ChangeDirection::kNext), row.left);
    EXPECT_EQ(scene.dialogs.boxes, std::vector<std::string>(row.reply == 0 ? 0 : 1, "[117]/33"));
    EXPECT_EQ(bench->task->Record(), expected);
  }
}

class QueryTest : public PagesTest {};

TEST_F(QueryTest, TakesAnyTextAndTheBuildersAnswer) {
  Furnish(scene);
  TaskRecord task = CompleteTask(2);
  task.query = "stored";
  Open(page_identifier::kQuery, task);
  EXPECT_EQ(bench->host->pushes, std::vector<bool>{true});
  EXPECT_EQ(bench->Text("txtQuery"), "stored");
  bench->user.Type((*bench)["txtQuery"], " typed\n");
  for (const std::optional<std::string>& answer :
       {std::optional<std::string>(), std::optional<std::string>("built")}) {
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

auto Loads(const Injector& injector) {
  return std::ranges::count_if(injector.calls,
                               [](const auto& call) { return call.starts_with("ObjectLoader."); });
}

TEST_F(ActionsTest, ContextByRecordMode) {
  const std::vector<std::pair<std::int16_t, std::optional<std::int32_t>>> rows = {
      {0, 16}, {1, 1}, {2, 8}, {3, {}}};
  for (const auto& [mode, type] : rows) {
    Open(page_identifier::kActions, CompleteTask(mode));
    EXPECT_EQ(list->loaded, bench->task->Actions());
    auto values = list->Ask()->values;
    EXPECT_EQ(values.at("DataObjectKey"), Value(std::string()));
    EXPECT_EQ(values.at("DataObject"), Value(ObjectRef()));
    EXPECT_TRUE(ObjectFrom<ObjectCollection>(values.at("DataObjects")));
    EXPECT_TRUE(ObjectFrom<ObjectCollection>(values.at("DesignerObjects")));
    EXPECT_EQ(values.size(), type ? 5U : 4U);
    EXPECT_EQ(values["DesignerObjectType"], type ? Value(*type) : Value());
    EXPECT_NE(list->Ask(), list->Ask()) << "each context is a fresh one";
  }
}

TEST_F(ActionsTest, TheStoresObjectsAreUsedAndNeverReplaced) {
  Entries entries = {{"DataObject", ObjectRef(scene.state.MakeDataObject({"C", "Cs", "CId"}))},
                     {"DataObjects", ObjectRef(std::make_shared<DataObjectsObject>())},
                     {"DesignerObjects", ObjectRef(std::make_shared<DesignerObjectsObject>())}};
  const Injector calls;
  Open(page_identifier::kActions, CompleteTask(2), entries);
  auto values = list->Ask()->values;
  EXPECT_EQ(values.at("DataObjectKey"), Value(std::string("CId")));
  for (const auto& [key, object] : entries) EXPECT_EQ(values.at(key), object) << key;
  // An entry that somebody put there in the meantime stays, too.
  const Value later = ObjectRef(std::make_shared<DataObjectsObject>());
  bench->store->values["DataObjects"] = later;
  EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->store->values["DataObjects"], later);
  EXPECT_EQ(Loads(calls), 0);
}

TEST_F(ActionsTest, CollectionsAreLoadedOnceAndKeptWhenThePageIsLeft) {
  const Injector calls;
  Open(page_identifier::kActions, CompleteTask());
  const auto first = list->Ask()->values;
  EXPECT_EQ(list->Ask()->values.at("DataObjects"), first.at("DataObjects"));
  EXPECT_FALSE(bench->store->values.contains("DataObjects"));
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  for (const char* key : {"DataObjects", "DesignerObjects"}) {
    EXPECT_EQ(bench->store->values.at(key), first.at(key));
  }
  Open(page_identifier::kActions, CompleteTask(), Entries(bench->store->values));
  EXPECT_EQ(list->Ask()->values.at("DataObjects"), first.at("DataObjects"));
  EXPECT_EQ(Loads(calls), 2);
}

}  // namespace
}  // namespace plovix
