// The details page: texts and tags, categories, settings, data object, and the actions that depend on them.
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

const Entries kBothRights = {{"CreateGroup", true}, {"CreatePersonal", true}};

class DetailsTest : public testing::Test {
 protected:
  DetailsTest() {
    Furnish(scene);
    task.id = 7;
    task.recurrence.reset();
    task.processing_mode = processing_mode::kEveryTime;  // what a task without a schedule is given
    task.categories = {{"own", false}};
    scene.state.tag_texts["tx"] = "Another";
    for (const TextRow& shown : kShown) {
      task.*shown.text = shown.literal;
      task.*shown.text_tag = shown.tag;
      scene.state.tag_texts[shown.tag] = shown.tagged;
    }
  }
  void Open(const Entries& entries = {}) {
    bench = std::make_unique<Bench>(scene, page_identifier::kDetails, task, entries);
    bench->Initialize();
  }
  [[nodiscard]] ComboBox& Category() const { return bench->Get<ComboBox>("cboCategory"); }
  [[nodiscard]] ComboBox& Object() const { return bench->Get<ComboBox>("cboDataObject"); }
  [[nodiscard]] CheckBox& Check(std::string_view name) const { return bench->Get<CheckBox>(name); }
  [[nodiscard]] static Texts Items(const ComboBox& box) {
    Texts items;
    for (int i = 0; i < box.Count(); ++i) items.push_back(box.ItemText(i));
    return items;
  }
  // Leaves by Next; gives the task.
  [[nodiscard]] TaskRecord Left() const {
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    return bench->task->Record();
  }
  Scene scene;
  std::unique_ptr<Bench> bench;
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
    task.data_object_caption = task.data_object_name.empty() ? "" : "Customers";
    for (const ChangeDirection direction : {ChangeDirection::kNext, ChangeDirection::kFinish}) {
      Open(kBothRights);
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
    Control& button = (*bench)["cmdNameLangTag"];
    EXPECT_EQ(bench->user.Press(button), tagged);
    button.SetVisible(true);  // shown all the same it does nothing
    scene.dialogs.edited_tags.clear();
    bench->user.Press(button);
    EXPECT_EQ(scene.dialogs.edited_tags.size(), tagged ? 1U : 0U);
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
    TaskRecord expected = task;
    expected.*shown.text_tag = "tx";
    EXPECT_EQ(Left(), expected) << "the literal texts are not touched";
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
    Open(row.entries);
    EXPECT_EQ((*bench)["chkAutoMan"].Enabled(), row.enabled) << row.mode;
  }
}

TEST_F(DetailsTest, CategoriesOfTheStoredTasksAreListedOnce) {
  scene.stored_categories = {"",        R"([{"tag":"secret","public":false},{"tag":"tx","public":true}])",
                             "ANOTHER", "Straße",
                             "STRASSE", "plain"};
  struct Row {
    bool tagged, see_all;
    Texts items;
    std::vector<int> data;
    std::string known;
  };
  for (const Row& row :
       std::vector<Row>{{false, false, {"Another", "Straße", "plain"}, {0, 0, 0}, "|Another|Straße|plain"},
                        {false,
                         true,
                         {"secret", "Another", "Straße", "plain"},
                         {0, 0, 0, 0},
                         "|secret|Another|Straße|plain"},
                        {true, false, {"Another", "Straße", "plain"}, {1, 2, 3}, "|tx|Straße|plain"}}) {
    task.uses_language_tags = row.tagged;
    scene.state.rights[113] = row.see_all;
    Open();
    EXPECT_EQ(Items(Category()), row.items);
    for (int i = 0; i < Category().Count(); ++i)
      EXPECT_EQ(Category().ItemData(i), row.data[static_cast<std::size_t>(i)]);
    bench->user.DropDown(Category());
    EXPECT_EQ(Category().Count(), static_cast<int>(row.items.size())) << "read once";
    bench->user.Click((*bench)["lblCategory"]);
    EXPECT_EQ(scene.dialogs.edited_categories.back(),
              (row.tagged ? "tagged,own" : "literal,own") + row.known);
  }
  // Without a row the tag editor opens without choices, and the list is asked for again.
  scene.stored_categories = {};
  Open();
  bench->user.Press((*bench)["cmdCategoryLangTag"]);
  EXPECT_EQ(scene.dialogs.edited_tags, Texts{"own"});
  task.uses_language_tags = false;
  Open();
  scene.stored_categories = {"late"};
  bench->user.DropDown(Category());
  EXPECT_EQ(Items(Category()), Texts{"late"});
}

TEST_F(DetailsTest, OneCategoryIsEditedInPlaceSeveralInTheEditor) {
  using Categories = std::vector<CategoryRecord>;
  struct Row {
    Categories stored;
    const char *shown, *typed;
    Categories edited;  // by the editor; none: it is not opened
    Categories saved;
  };
  const Categories two = {{"a", true}, {"b", false}};
  for (const Row& row : std::vector<Row>{{{}, "", "", {}, {{"", true}}},
                                         {{}, "", "New", {}, {{"New", true}}},
                                         {{{"own", false}}, "own", "Another", {}, {{"tx", false}}},
                                         {{{"tx", true}}, "Another", "tx", {}, {{"tx (2)", true}}},
                                         {two, "...", "refused", {}, two},
                                         {{}, "", "typed", two, two},
                                         {two, "...", "", {{"b", true}}, {{"b", true}}}}) {
    task.categories = row.stored;
    Open();
    EXPECT_EQ(Category().Text(), row.shown);
    EXPECT_EQ(Category().Enabled(), row.stored.size() < 2);
    bench->user.Type(Category(), row.typed);
    scene.dialogs.chosen_categories = row.edited;
    if (!row.edited.empty()) bench->user.Click((*bench)["lblCategory"]);
    EXPECT_EQ(bench->task->Record().categories, row.stored) << "nothing is written before the page is left";
    EXPECT_EQ(Left().categories, row.saved);
  }
  EXPECT_EQ(scene.dialogs.edited_categories, (Texts{"literal,typed|hidden|one", "literal,a,b|hidden|one"}))
      << "what was typed is taken along";
  EXPECT_EQ(scene.state.TagText("tx (2)"), "tx");
  for (const bool right : {false, true}) {  // the label is a link for those who may edit, and dead for others
    scene.state.rights[112] = right;
    Open();
    bench->user.Show(bench->Controls());
    EXPECT_EQ(bench->Get<Label>("lblCategory").Link(), right);
    bench->user.Click((*bench)["lblCategory"]);
    EXPECT_EQ(scene.dialogs.edited_categories.size(), right ? 3U : 2U);
  }
}

TEST_F(DetailsTest, TheCategoryOfATaggedTask) {
  task.uses_language_tags = true;
  Open();
  EXPECT_FALSE(Category().Enabled());
  EXPECT_TRUE((*bench)["cmdCategoryLangTag"].Visible());
  scene.dialogs.chosen_tag = "tx";
  bench->user.Press((*bench)["cmdCategoryLangTag"]);
  EXPECT_EQ(scene.dialogs.edited_tags, Texts{"own,hidden,one"});
  EXPECT_EQ(Category().Text(), "Another");
  EXPECT_EQ(Left().categories, (std::vector<CategoryRecord>{{"tx", false}}));
  scene.dialogs.chosen_categories.emplace();  // the editor empties the list: the tag does not come back
  bench->user.Click((*bench)["lblCategory"]);
  EXPECT_EQ(Category().Text(), "");
  EXPECT_EQ(Left().categories, (std::vector<CategoryRecord>{{"", true}}));
}

TEST_F(DetailsTest, WhoOwnsTheTask) {
  struct Row {
    std::int64_t id;
    const char* owner;
    Entries entries;
    bool checked, switchable;
  };
  Entries kept = kBothRights, given_up = kBothRights;
  kept["PersonalTask"] = true;
  given_up["PersonalTask"] = false;
  for (const Row& row : std::vector<Row>{{7, "bob", {}, true, false},
                                         {7, "", {{"CreatePersonal", true}}, false, false},
                                         {0, "bob", {}, false, false},
                                         {0, "", kBothRights, false, true},
                                         {0, "", kept, true, true},
                                         {0, "", given_up, false, true},
                                         {0, "", {{"CreatePersonal", true}}, true, false},
                                         {0, "", {{"CreateGroup", true}}, false, false}}) {
    task.id = row.id;
    task.owner = row.owner;
    task.permissions = PermissionSet{{"eve"}};
    for (const bool unattended : {false, true}) {
      scene.state.session_id = unattended ? "ann" : "session";
      Open(row.entries);
      const bool personal = row.checked && !unattended;
      EXPECT_EQ(Check("chkPersonalTask").Checked(), personal);
      EXPECT_EQ(Check("chkPersonalTask").Enabled(), row.switchable && !unattended);
      EXPECT_EQ((*bench)["lblPermissions"].Enabled(), !personal);
      EXPECT_EQ(bench->Get<Label>("lblPermissions").Link(), !personal);
      const TaskRecord saved = Left();
      EXPECT_EQ(saved.owner, personal ? "ann" : "");
      EXPECT_EQ(saved.permissions.has_value(), !personal);
      EXPECT_EQ(bench->store->values.at("PersonalTask"), Value(personal));
    }
  }
  // Given to the automation manager the task is nobody's own, and the choice made before is kept.
  task.id = 0;
  scene.state.session_id = "session";
  Open(kept);
  bench->user.Toggle((*bench)["chkAutoMan"]);
  EXPECT_FALSE(Check("chkPersonalTask").Checked() || Check("chkPersonalTask").Enabled());
  EXPECT_EQ(Left().owner, "");
  EXPECT_EQ(bench->store->values.at("PersonalTask"), Value(true));
  bench->user.Toggle((*bench)["chkAutoMan"]);
  EXPECT_TRUE(Check("chkPersonalTask").Enabled());
}

TEST_F(DetailsTest, ActionsThatDoNotFit) {
  const auto action = [](std::int32_t modes, std::int32_t capabilities) {
    return ActionRecord{"kind", "", modes, capabilities, {}};
  };
  const ActionRecord fits = action(16, 8), other_mode = action(8, 8), by_hand = action(24, 4);
  struct Row {
    std::vector<ActionRecord> actions;
    bool automatic;
    int reply;  // 0: not asked
    std::vector<ActionRecord> left;
  };
  for (const Row& row : std::vector<Row>{{{}, false, 0, {}},
                                         {{fits, fits}, false, 0, {fits, fits}},
                                         {{by_hand, fits, other_mode}, false, 1, {fits}},
                                         {{by_hand, fits, other_mode}, false, 2, {by_hand, fits, other_mode}},
                                         {{by_hand}, true, 0, {by_hand}},
                                         {{other_mode, by_hand}, true, 1, {by_hand}},
                                         {{other_mode, by_hand}, true, 2, {other_mode, by_hand}}}) {
    task.actions = row.actions;
    task.allow_automation_manager = row.automatic;
    Open(kBothRights);
    const bool was_enabled = Check("chkPersonalTask").Enabled();
    EXPECT_EQ(scene.dialogs.boxes, Texts{}) << "opening asks nothing";
    if (row.reply != 0) scene.dialogs.answers = {row.reply};
    bench->user.Toggle((*bench)["chkAutoMan"]);
    EXPECT_EQ(std::exchange(scene.dialogs.boxes, {}), row.reply == 0 ? Texts{} : Texts{"[120]/33 untitled"});
    const bool undone = row.reply == 2;
    EXPECT_EQ(Check("chkAutoMan").Checked(), row.automatic == undone);
    EXPECT_EQ(Check("chkPersonalTask").Enabled(), undone ? was_enabled : row.automatic);
    EXPECT_EQ(bench->task->Record().actions, row.left);
  }
  // Which records an action must be made for follows from the task; an unknown mode asks for nothing.
  task.allow_automation_manager = false;
  for (const auto& [mode, bit] : std::map<std::int16_t, std::int32_t>{{0, 16}, {1, 1}, {2, 8}, {3, 0}}) {
    task.record_mode = mode;
    task.actions = {action(bit, 8), action(~bit, 8)};
    Open();
    Check("chkAutoMan").SetEnabled(true);  // also where the user has no choice
    scene.dialogs.answers = {1};
    bench->user.Toggle((*bench)["chkAutoMan"]);
    if (bit != 0) task.actions.pop_back();
    EXPECT_EQ(bench->task->Record().actions, task.actions) << mode;
  }
}

TEST_F(DetailsTest, TheListOfDataObjects) {
  scene.data->entries.push_back({{"Locked", "Locked up", "Id"}, {}});
  scene.state.has_permission = [](std::string_view key, const DataObjectRecord* object) {
    return key != "view" || object->name != "Locked";
  };
  struct Row {
    std::int16_t mode;
    const char* name;
    Entries entries;
    Texts before, after;  // the list is opened
    int selected;         // afterwards
    bool enabled;
  };
  const Texts all = {"Customers", "Orders"};
  const Entries importing = {{"Importing", true}};
  for (const Row& row : std::vector<Row>{{2, "Order", kBothRights, {"Orders"}, all, 1, true},
                                         {2, "ORDER", {}, {"Orders"}, all, 1, true},
                                         {1, "", {}, all, all, 0, true},
                                         {1, "", kBothRights, {}, all, 0, true},
                                         {2, "Log", kBothRights, {"Log"}, all, -1, true},
                                         {3, "Log", {}, {"Log"}, {"Customers", "Log", "Orders"}, 1, true},
                                         {0, "", {}, {}, {}, -1, false},
                                         {0, "", kBothRights, {"[31]"}, {"[31]"}, 0, false},
                                         {2, "Order", importing, {"Orders"}, {"Orders"}, 0, false}}) {
    task.record_mode = row.mode;
    task.data_object_name = row.name;
    task.actions = {};
    Open(row.entries);
    EXPECT_EQ(Items(Object()), row.before) << row.name;
    EXPECT_EQ(Object().Enabled(), row.enabled);
    EXPECT_EQ(bench->user.DropDown(Object()), row.enabled);
    EXPECT_EQ(Items(Object()), row.after) << row.name;
    EXPECT_EQ(Object().Index(), row.selected) << row.name;
    EXPECT_EQ(bench->Controls().MousePointer(), Pointer::kDefault);
  }
  // The records went while the page was open.
  for (const auto& [right, items] : std::map<std::string, Texts>{
           {"CreateGroup", {"Orders", "[31]"}}, {"CreatePersonal", {"Orders", "[31]"}}, {"", {"Orders"}}}) {
    task.record_mode = 2;
    task.data_object_name = "Order";
    Open({{right, true}});
    bench->task->SetRecordMode(0);
    bench->user.DropDown(Object());
    EXPECT_EQ(Items(Object()), items) << right;
  }
}

TEST_F(DetailsTest, AnotherDataObjectTakesTheActionsAlong) {
  scene.data->entries = {{kCustomer, {}}, {{"Order", "Orders", "Id"}, {}}, {{"Item", "ITEM", "Id"}, {}}};
  struct Row {
    const char* former;
    std::size_t actions;
    const char* picked;
    int reply;  // 0: not asked
    const char* shown;
    const char* saved;
  };
  task.record_mode = 2;
  for (const Row& row : std::vector<Row>{{"Customer", 0, "Orders", 0, "Orders", "Order"},
                                         {"Customer", 1, "Customers", 0, "Customers", "Customer"},
                                         {"CUSTOMER", 1, "Customers", 0, "Customers", "Customer"},
                                         {"Customer", 2, "Orders", 6, "Orders", "Order"},
                                         // No goes back to the entry that reads as the object is named.
                                         {"item", 1, "Orders", 7, "ITEM", "Item"},
                                         {"Customer", 1, "Orders", 7, "Orders", "Customer"}}) {
    task.data_object_name = row.former;
    task.actions.assign(row.actions, LogAction("line"));
    Open(kBothRights);
    bench->user.DropDown(Object());
    if (row.reply != 0) scene.dialogs.answers = {row.reply};
    const Texts items = Items(Object());
    bench->user.Pick(Object(), static_cast<int>(std::ranges::find(items, row.picked) - items.begin()));
    EXPECT_EQ(std::exchange(scene.dialogs.boxes, {}), row.reply == 0 ? Texts{} : Texts{"[113]/36"});
    EXPECT_EQ(Object().Text(), row.shown);
    const TaskRecord saved = Left();
    EXPECT_EQ(saved.data_object_name, row.saved);
    EXPECT_EQ(saved.actions.size(), row.reply == 6 ? 0 : row.actions);
    EXPECT_TRUE(ObjectFrom<DataObjectCollection>(bench->store->values.at("DataObjects")));
    EXPECT_EQ(ObjectFrom<DataObject>(bench->store->values.at("DataObject"))->Name(), row.saved);
  }
  // Without a former one No selects the first entry, which is asked about in its turn.
  task.data_object_name = "";
  task.actions = {LogAction("line")};
  Open(kBothRights);
  scene.dialogs.answers = {7};
  bench->user.DropDown(Object());
  EXPECT_EQ(Object().Index(), 0);
  scene.dialogs.answers = {7, 7};
  bench->user.Pick(Object(), 2);
  EXPECT_EQ(Object().Index(), 0);
  EXPECT_EQ(scene.dialogs.boxes, Texts(3, "[113]/36"));
  // The list that the store holds is not loaded again.
  (void)Left();
  const Value held = bench->store->values.at("DataObjects");
  Object().Select(-1);  // no choice, no question
  EXPECT_EQ(scene.dialogs.boxes.size(), 3U);
  scene.data->entries.clear();
  Open({{"CreateGroup", true}, {"DataObjects", held}});
  bench->user.DropDown(Object());
  EXPECT_EQ(Object().Count(), 3);
}

TEST_F(DetailsTest, SettingsPermissionsAndFlags) {
  task.record_mode = 2;
  task.skip_row_selection = true;
  scene.state.has_permission = [](std::string_view key, const DataObjectRecord* object) {
    return key == "run" && object != nullptr && object->name == "Customer";
  };
  scene.dialogs.chosen_permissions = PermissionSet{{"bob", false, true, true, false, false}};
  Open(kBothRights);
  bench->user.Toggle((*bench)["chkSkipRowSelection"]);
  bench->user.Click((*bench)["lblPermissions"]);
  EXPECT_EQ(scene.dialogs.edited_permissions, Texts{"[114] none"});
  const TaskRecord saved = Left();
  EXPECT_FALSE(saved.skip_row_selection);
  EXPECT_EQ(saved.permissions, scene.dialogs.chosen_permissions);
  EXPECT_TRUE(saved.may_run && !saved.may_edit && !saved.may_delete);
  task = saved;
  scene.dialogs.chosen_permissions.reset();  // cancelled: the set stays
  Open(kBothRights);
  bench->user.Click((*bench)["lblPermissions"]);
  EXPECT_EQ(scene.dialogs.edited_permissions.back(), "[114]");
  EXPECT_EQ(Left().permissions, saved.permissions);
  for (const std::int16_t mode :
       {record_mode::kNoData, record_mode::kSingleRecord}) {  // what makes sense on query results only
    task.record_mode = mode;
    task.skip_row_selection = true;
    Open();
    EXPECT_FALSE(Check("chkSkipRowSelection").Enabled() || Check("chkSkipRowSelection").Checked());
    EXPECT_FALSE(Left().skip_row_selection);
  }
}

// Continuing after a failure loses neither a category nor a permission set.
TEST_F(DetailsTest, WhatASkippedStatementWasToGiveStaysAsItWas) {
  task.permissions = PermissionSet{{"bob", false, true}};
  scene.stored_categories = {"twice", "twice"};
  for (const char* member : {"LanguageTable.TagForText", "Category.Tag", "AutoTask.Permissions",
                             "ObjectFactory.NewPermissionEditor", "CategoryList.Load", "Category.Text"}) {
    scene.dialogs.on_report = [](const FailureReport&) { return 1; };
    struct FailOnce final : CallObserver {
      explicit FailOnce(std::string_view wanted) : member(wanted) {}
      void HostCalled(std::string_view called) override {
        if (called != member || failed) return;
        failed = true;
        throw Failure(failure_number::kInvalidCall, "fails once");
      }
      std::string_view member;
      bool failed = false;
    };
    const bool at_start =
        std::string_view(member) == "CategoryList.Load" || std::string_view(member) == "Category.Text";
    if (!at_start) Open(kBothRights);
    FailOnce injected(member);
    const ObserveCalls observe(injected);
    if (at_start) Open(kBothRights);
    bench->user.Click((*bench)["lblPermissions"]);
    const TaskRecord saved = Left();
    EXPECT_TRUE(injected.failed) << member;
    EXPECT_EQ(saved.categories, task.categories) << member;
    EXPECT_EQ(saved.permissions, task.permissions) << member;
    EXPECT_EQ(Items(Category()), Texts{"twice"}) << member;
  }
}

}  // namespace
}  // namespace plovix
