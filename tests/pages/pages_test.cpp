// What each page does of its own: the task type's choice, the details' texts and tags, and the context that
// the actions page hands to the action list.
#include <plovix/framework/page_identifiers.h>

#include <filesystem>
#include <fstream>

#include "tests/support/faults.h"

namespace plovix {
namespace {

using namespace testing_support;
using Texts = std::vector<std::string>;

// What the page shows three times: a text, its tag and the button that edits it.
struct TextRow {
  std::string field, literal, tag, tagged;
  std::string TaskRecord::*text;
  std::string TaskRecord::*text_tag;
};
const TextRow kShown[] = {
    {"Name", "Name", "tn", "Tagged name", &TaskRecord::name, &TaskRecord::name_tag},
    {"Description", "Long", "td", "Tagged long", &TaskRecord::description, &TaskRecord::description_tag},
    {"ShortDescription", "Short", "ts", "Tagged short", &TaskRecord::short_description,
     &TaskRecord::short_description_tag},
};

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

class DetailsTest : public PagesTest {
 protected:
  DetailsTest() {
    task.owner = "u1";
    task.recurrence.reset();
    task.processing_mode = processing_mode::kEveryTime;  // what a task without a schedule is given
    task.skip_row_selection = true;
    scene.state.tag_texts["tx"] = "Another";
    for (const TextRow& shown : kShown) {
      task.*shown.text = shown.literal;
      task.*shown.text_tag = shown.tag;
      scene.state.tag_texts[shown.tag] = shown.tagged;
    }
  }
  void Open() { PagesTest::Open(page_identifier::kDetails, task); }
  TaskRecord task = CompleteTask();
};

TEST_F(DetailsTest, ValidationAndSaving) {
  struct Row {
    const char *name, *description;
    std::int16_t mode;
    const char* data_object;
    Texts boxes;
  };
  const std::vector<Row> rows = {
      {"N", "D", 0, "", {}},          {" N ", "\tD\n", 0, "", {}},
      {"", "D", 0, "", {"[27]/64"}},  {" \t\r\n", "D", 0, "", {"[27]/64"}},
      {"", "", 2, "", {"[27]/64"}},  // the first that fails ends it
      {"N", "", 0, "", {"[28]/64"}},  {"N", "  ", 2, "", {"[28]/64"}},
      {"N", "D", 1, "", {"[29]/48"}}, {"N", "D", 2, "", {"[29]/48"}},
      {"N", "D", 3, "", {"[29]/48"}}, {"N", "D", 2, "Customer", {}},
  };
  for (const Row& row : rows) {
    task.record_mode = row.mode;
    task.data_object_name = row.data_object;
    for (const ChangeDirection direction : {ChangeDirection::kNext, ChangeDirection::kFinish}) {
      Open();
      bench->user.Type((*bench)["txtName"], row.name);
      bench->user.Type((*bench)["txtDescription"], row.description);
      scene.dialogs.boxes.clear();
      EXPECT_EQ(bench->Leave(direction), row.boxes.empty()) << row.name << "/" << row.description;
      EXPECT_EQ(scene.dialogs.boxes, row.boxes);
      TaskRecord expected = task;  // as typed, blanks and all; nothing on refusal
      if (row.boxes.empty()) {
        expected.name = row.name;
        expected.description = row.description;
      }
      EXPECT_EQ(bench->task->Record(), expected);
    }
  }
}

TEST_F(DetailsTest, WhenTextsAreTags) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "plovix-marker";
  scene.state.path = folder.string();
  scene.state.marker_file.reset();
  const std::vector<std::array<bool, 4>> rows = {{false, false, false, false}, {false, true, false, true},
                                                 {false, true, true, false},   {true, false, false, true},
                                                 {true, true, true, true},     {false, false, true, false}};
  for (const auto& [of_task, application, marker, tagged] : rows) {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    if (marker) std::ofstream(folder / "forceusertask.txt").flush();
    task.uses_language_tags = of_task;
    scene.state.language_tag_mode = application;
    Open();
    for (const TextRow& shown : kShown) {
      EXPECT_EQ((*bench)["txt" + shown.field].Enabled(), !tagged) << shown.field;
      EXPECT_EQ((*bench)["cmd" + shown.field + "LangTag"].Visible(), tagged);
      EXPECT_EQ(bench->Text("txt" + shown.field), tagged ? shown.tagged : shown.literal);
    }
    scene.state.language_tag_mode = !application;  // the decision stands for the life of the page
    EXPECT_EQ(bench->user.Press((*bench)["cmdNameLangTag"]), tagged);
  }
  std::filesystem::remove_all(folder);
}

TEST_F(DetailsTest, EditingTags) {
  task.uses_language_tags = true;
  for (const TextRow& shown : kShown) {
    Open();
    Control& button = (*bench)["cmd" + shown.field + "LangTag"];
    scene.dialogs.edited_tags.clear();
    scene.dialogs.chosen_tag = "tx";
    bench->user.Press(button);
    EXPECT_EQ(bench->Text("txt" + shown.field), "Another");
    EXPECT_EQ(bench->task->Record(), task) << "nothing is written before the page is left";
    scene.state.tag_texts["tx"] = "Refreshed";
    scene.dialogs.chosen_tag.reset();  // cancelled: the same tag, its text read again
    bench->user.Press(button);
    EXPECT_EQ(bench->Text("txt" + shown.field), "Refreshed");
    EXPECT_EQ(scene.dialogs.edited_tags, (Texts{shown.tag, "tx"}));
    scene.state.tag_texts["tx"] = "Another";
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    TaskRecord expected = task;
    expected.*shown.text_tag = "tx";
    EXPECT_EQ(bench->task->Record(), expected) << "the literal texts are not touched";
  }
}

TEST_F(DetailsTest, LeavingTheNameFillsAnEmptyDescription) {
  const std::map<std::string, std::string> rows = {{"", "New"}, {" ", " "}, {"Mine", "Mine"}};
  for (const auto& [description, after] : rows) {
    task.description = description;
    Open();
    bench->user.Type((*bench)["txtName"], "New");
    bench->user.Leave((*bench)["txtName"]);
    EXPECT_EQ(bench->Text("txtDescription"), after);
  }
}

TEST_F(DetailsTest, StoredCategoryDataObjectAndSettingsPassThrough) {
  using Categories = std::vector<CategoryRecord>;
  const std::vector<std::pair<Categories, const char*>> rows = {
      {{}, ""}, {{{"tx", true}}, "Another"}, {{{"tx", true}, {"b", false}}, "..."}};
  for (const auto& [categories, shown] : rows) {
    task.categories = categories;
    Open();
    EXPECT_EQ(bench->Get<ComboBox>("cboCategory").Text(), shown);
    scene.state.rights[112] = categories.empty();  // the label is a link for those who may edit
    bench->user.Show(bench->Controls());
    EXPECT_EQ(bench->Get<Label>("lblCategory").Link(), categories.empty());
    EXPECT_EQ(bench->Get<ComboBox>("cboDataObject").Text(), "Customers");
    EXPECT_TRUE(bench->Get<CheckBox>("chkPersonalTask").Checked());
    EXPECT_TRUE(bench->Get<CheckBox>("chkSkipRowSelection").Checked());
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    EXPECT_EQ(bench->task->Record(), task);
  }
}

TEST_F(DetailsTest, WhoMayBeGivenToTheAutomationManager) {
  struct Row {
    std::int16_t mode;
    Entries entries;
    bool enabled;
  };
  for (const Row& row : std::vector<Row>{{0, {}, true},
                                         {2, {{"AllowAutomationManager", true}}, true},
                                         {1, {}, false},
                                         {0, {{"Importing", true}}, false},
                                         {2, {{"AllowAutomationManager", false}}, false}}) {
    task.record_mode = row.mode;
    PagesTest::Open(page_identifier::kDetails, task, row.entries);
    EXPECT_EQ((*bench)["chkAutoMan"].Enabled(), row.enabled) << row.mode;
  }
}

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
  Entries entries = {
      {"DataObject", ObjectRef(std::make_shared<DataObjectObject>(DataObjectRecord{"C", "Cs", "CId"}))},
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
