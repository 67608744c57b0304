// The details page: texts and tags, categories, settings, data object, and the actions that depend on them.
#include <plovix/framework/page_identifiers.h>

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
  void Click(std::string_view name) const { bench->user.Click((*bench)[name]); }
  void Toggle(std::string_view name) const { bench->user.Toggle((*bench)[name]); }
  void Press(std::string_view name) const { bench->user.Press((*bench)[name]); }
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
  const struct {
    const char *name, *description;
    std::int16_t mode;
    const char* data_object;
    Texts boxes;  // the first check that fails ends it
  } rows[] = {{" N ", "\tD\n", 0, "", {}},     {" \t\r\n", "", 2, "", {"[27]/64"}},
              {"N", "  ", 2, "", {"[28]/64"}}, {"N", "D", 1, "", {"[29]/48"}},
              {"N", "D", 3, "", {"[29]/48"}},  {"N", "D", 2, "Customer", {}}};
  for (const auto& [name, description, mode, data_object, boxes] : rows) {
    task.record_mode = mode;
    task.data_object_name = data_object;
    task.data_object_caption = task.data_object_name.empty() ? "" : "Customers";
    for (const ChangeDirection direction : {ChangeDirection::kNext, ChangeDirection::kFinish}) {
      Open(kBothRights);
      bench->user.Type((*bench)["txtName"], name);
      bench->user.Type((*bench)["txtDescription"], description);
      scene.dialogs.boxes.clear();
      EXPECT_EQ(bench->Leave(direction), boxes.empty()) << name << "/" << description;
      EXPECT_EQ(scene.dialogs.boxes, boxes);
      TaskRecord expected = task;  // as typed, blanks and all; nothing on refusal
      if (boxes.empty()) {
        expected.name = name;
        expected.description = description;
      }
      EXPECT_EQ(bench->task->Record(), expected);
    }
  }
}

TEST_F(DetailsTest, WhenTextsAreTags) {
  const struct {
    bool of_task = false, application = false, marker = false, tagged = false;
  } rows[] = {{},
              {.application = true, .tagged = true},
              {.application = true, .marker = true},
              {.of_task = true, .marker = true, .tagged = true}};
  for (const auto& [of_task, application, marker, tagged] : rows) {
    scene.state.marker_file = marker;
    task.uses_language_tags = of_task;
    scene.state.language_tag_mode = application;
    Open();
    for (const TextRow& shown : kShown) {
      EXPECT_EQ((*bench)["txt" + shown.field].Enabled(), !tagged) << shown.field;
      EXPECT_EQ((*bench)["cmd" + shown.field + "LangTag"].Visible(), tagged);
      EXPECT_EQ(bench->Text("txt" + shown.field), tagged ? shown.tagged : shown.literal);
    }
    scene.state.language_tag_mode = !application;  // the decision stands for the life of the page
    (*bench)["cmdNameLangTag"].SetVisible(true);   // shown all the same it does nothing
    scene.dialogs.edited_tags.clear();
    Press("cmdNameLangTag");
    EXPECT_EQ(scene.dialogs.edited_tags.size(), tagged ? 1U : 0U);
  }
}

TEST_F(DetailsTest, EditingTags) {
  task.uses_language_tags = true;
  for (const TextRow& shown : kShown) {
    Open();
    scene.dialogs.edited_tags.clear();
    // The second time it is cancelled: the same tag, its text read again.
    for (const std::string text : {"Another", "Refreshed"}) {
      scene.state.tag_texts["tx"] = text;
      scene.dialogs.chosen_tag = text == "Another" ? std::optional("tx") : std::nullopt;
      Press("cmd" + shown.field + "LangTag");
      EXPECT_EQ(bench->Text("txt" + shown.field), text);
      EXPECT_EQ(bench->task->Record(), task) << "nothing is written before the page is left";
    }
    EXPECT_EQ(scene.dialogs.edited_tags, (Texts{shown.tag, "tx"}));
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
  const auto may_be = [this](std::int16_t mode, const Entries& entries) {
    task.record_mode = mode;
    Open(entries);
    return (*bench)["chkAutoMan"].Enabled();
  };
  EXPECT_TRUE(may_be(0, {}) && may_be(2, {{"AllowAutomationManager", true}}));
  EXPECT_FALSE(may_be(1, {}) || may_be(0, {{"Importing", true}}) ||
               may_be(2, {{"AllowAutomationManager", false}}));
}

TEST_F(DetailsTest, CategoriesOfTheStoredTasksAreListedOnce) {
  scene.stored_categories = {"",        R"([{"tag":"secret","public":false},{"tag":"tx","public":true}])",
                             "ANOTHER", "Straße",
                             "STRASSE", "plain"};
  struct Row {
    bool tagged, see_all;
    Texts items;
    std::string edited;
  };
  for (const Row& row : std::vector<Row>{
           {false, false, {"Another", "Straße", "plain"}, "literal,own|Another|Straße|plain"},
           {false, true, {"secret", "Another", "Straße", "plain"}, "literal,own|secret|Another|Straße|plain"},
           {true, false, {"Another", "Straße", "plain"}, "tagged,own|tx|Straße|plain"}}) {
    task.uses_language_tags = row.tagged;
    scene.state.rights[113] = row.see_all;
    Open();
    for (int i = 0; i < Category().Count(); ++i) EXPECT_EQ(Category().ItemData(i), row.tagged ? i + 1 : 0);
    bench->user.DropDown(Category());
    EXPECT_EQ(Items(Category()), row.items) << "read once";
    Click("lblCategory");
    EXPECT_EQ(scene.dialogs.edited_categories.back(), row.edited);
  }
  // Without a row the tag editor opens without choices, and the list is asked for again.
  scene.stored_categories = {};
  Open();
  Press("cmdCategoryLangTag");
  EXPECT_EQ(scene.dialogs.edited_tags, Texts{"own"});
  task.uses_language_tags = false;
  Open();
  scene.stored_categories = {"late"};
  bench->user.DropDown(Category());
  EXPECT_EQ(Items(Category()), Texts{"late"});
}

TEST_F(DetailsTest, OneCategoryIsEditedInPlaceSeveralInTheEditor) {
  using Categories = std::vector<CategoryRecord>;
  const Categories two = {{"a", true}, {"b", false}};
  const struct {
    Categories stored;
    const char *shown, *typed;
    Categories edited;  // nothing: the editor is not opened
    Categories saved;
  } rows[] = {{{}, "", "", {}, {{"", true}}},
              {{}, "", "New", {}, {{"New", true}}},
              {{{"own", false}}, "own", "Another", {}, {{"tx", false}}},
              {{{"tx", true}}, "Another", "tx", {}, {{"tx (2)", true}}},
              {two, "...", "refused", {}, two},
              {{}, "", "typed", two, two},
              {two, "...", "", {{"b", true}}, {{"b", true}}}};
  for (const auto& [stored, shown, typed, edited, saved] : rows) {
    task.categories = stored;
    Open();
    EXPECT_EQ(Category().Text(), shown);
    EXPECT_EQ(bench->user.Type(Category(), typed), stored.size() < 2);
    scene.dialogs.chosen_categories = edited;
    if (!edited.empty()) Click("lblCategory");
    EXPECT_EQ(bench->task->Record().categories, stored) << "nothing is written before the page is left";
    EXPECT_EQ(Left().categories, saved);
  }
  EXPECT_EQ(scene.dialogs.edited_categories, (Texts{"literal,typed|hidden|one", "literal,a,b|hidden|one"}))
      << "what was typed is taken along";
  EXPECT_EQ(scene.state.TagText("tx (2)"), "tx");
  for (const bool right : {false, true}) {  // the label is a link for those who may edit, and dead for others
    scene.state.rights[112] = right;
    Open();
    bench->user.Show(bench->Controls());
    EXPECT_EQ(bench->Get<Label>("lblCategory").Link(), right);
    Click("lblCategory");
    EXPECT_EQ(scene.dialogs.edited_categories.size(), right ? 3U : 2U);
  }
}

TEST_F(DetailsTest, TheCategoryOfATaggedTask) {
  task.uses_language_tags = true;
  Open();
  EXPECT_FALSE(Category().Enabled());
  EXPECT_TRUE((*bench)["cmdCategoryLangTag"].Visible());
  scene.dialogs.chosen_tag = "tx";
  Press("cmdCategoryLangTag");
  EXPECT_EQ(scene.dialogs.edited_tags, Texts{"own,hidden,one"});
  EXPECT_EQ(Category().Text(), "Another");
  EXPECT_EQ(Left().categories, (std::vector<CategoryRecord>{{"tx", false}}));
  scene.dialogs.chosen_categories.emplace();  // the editor empties the list: the tag does not come back
  Click("lblCategory");
  EXPECT_EQ(Category().Text(), "");
  EXPECT_EQ(Left().categories, (std::vector<CategoryRecord>{{"", true}}));
}

TEST_F(DetailsTest, WhoOwnsTheTask) {
  Entries kept = kBothRights, given_up = kBothRights;
  kept["PersonalTask"] = true;
  given_up["PersonalTask"] = false;
  const struct {
    int id;
    const char* owner;
    Entries entries;
    bool checked, switchable;
  } rows[] = {{7, "bob", {}, true, false},
              {7, "", {{"CreatePersonal", true}}, false, false},
              {0, "bob", {}, false, false},
              {0, "", kBothRights, false, true},
              {0, "", kept, true, true},
              {0, "", given_up, false, true},
              {0, "", {{"CreatePersonal", true}}, true, false},
              {0, "", {{"CreateGroup", true}}, false, false}};
  task.permissions = PermissionSet{{"eve"}};
  for (const auto& [id, owner, entries, checked, switchable] : rows) {
    task.id = id;
    task.owner = owner;
    for (const bool unattended : {false, true}) {
      scene.state.session_id = unattended ? "ann" : "session";
      Open(entries);
      const bool personal = checked && !unattended;
      EXPECT_EQ(Check("chkPersonalTask").Checked(), personal);
      EXPECT_EQ(Check("chkPersonalTask").Enabled(), switchable && !unattended);
      EXPECT_EQ((*bench)["lblPermissions"].Enabled(), !personal);
      EXPECT_EQ(bench->Get<Label>("lblPermissions").Link(), !personal);
      const TaskRecord saved = Left();
      EXPECT_EQ(saved.owner, personal ? "ann" : "");
      EXPECT_EQ(saved.permissions.has_value(), !personal);
      EXPECT_EQ(bench->store->values.at("PersonalTask"), Value(personal));
    }
  }
  // Given to the automation manager the task is nobody's own, and the choice made before is kept.
  scene.state.session_id = "session";
  Open(kept);
  Toggle("chkAutoMan");
  EXPECT_FALSE(Check("chkPersonalTask").Checked() || Check("chkPersonalTask").Enabled());
  EXPECT_EQ(Left().owner, "");
  EXPECT_EQ(bench->store->values.at("PersonalTask"), Value(true));
  Toggle("chkAutoMan");
  EXPECT_TRUE(Check("chkPersonalTask").Enabled());
}

TEST_F(DetailsTest, ActionsThatDoNotFit) {
  using Actions = std::vector<ActionRecord>;
  const auto action = [](std::int32_t modes, std::int32_t capabilities) {
    return ActionRecord{"kind", "", modes, capabilities, {}};
  };
  const ActionRecord fits = action(16, 8), other_mode = action(8, 8), by_hand = action(24, 4);
  const struct {
    Actions actions;
    bool automatic;
    int reply;  // 0: nothing is asked
    Actions left;
  } rows[] = {{{}, false, 0, {}},
              {{fits, fits}, false, 0, {fits, fits}},
              {{by_hand, fits, other_mode}, false, 1, {fits}},
              {{by_hand, fits, other_mode}, false, 2, {by_hand, fits, other_mode}},
              {{by_hand}, true, 0, {by_hand}},
              {{other_mode, by_hand}, true, 1, {by_hand}},
              {{other_mode, by_hand}, true, 2, {other_mode, by_hand}}};
  for (const auto& [actions, automatic, reply, left] : rows) {
    task.actions = actions;
    task.allow_automation_manager = automatic;
    Open(kBothRights);
    const bool was_enabled = Check("chkPersonalTask").Enabled();
    if (reply != 0) scene.dialogs.answers = {reply};
    Toggle("chkAutoMan");
    EXPECT_EQ(std::exchange(scene.dialogs.boxes, {}), Texts(reply == 0 ? 0 : 1, "[120]/33 untitled"));
    EXPECT_EQ(Check("chkAutoMan").Checked(), automatic == (reply == 2));
    EXPECT_EQ(Check("chkPersonalTask").Enabled(), reply == 2 ? was_enabled : automatic);
    EXPECT_EQ(bench->task->Record().actions, left);
  }
  // Which records an action must be made for follows from the task; an unknown mode asks for nothing.
  task.allow_automation_manager = false;
  for (const auto& [mode, bit] : std::map<std::int16_t, std::int32_t>{{0, 16}, {1, 1}, {2, 8}, {3, 0}}) {
    task.record_mode = mode;
    task.actions = {action(bit, 8), action(~bit, 8)};
    Open();
    Check("chkAutoMan").SetEnabled(true);  // also where the user has no choice
    Toggle("chkAutoMan");
    if (bit != 0) task.actions.pop_back();
    EXPECT_EQ(bench->task->Record().actions, task.actions) << mode;
  }
}

TEST_F(DetailsTest, TheListOfDataObjects) {
  scene.data->entries.push_back({{"Locked", "Locked up", "Id"}, {}});
  scene.state.has_permission = [](std::string_view key, const DataObjectRecord* object) {
    return key != "view" || object->name != "Locked";
  };
  const Texts all = {"Customers", "Orders"};
  const Entries importing = {{"Importing", true}};
  const struct {
    std::int16_t mode;
    const char* name;
    Entries entries;
    Texts before, after;  // the list is opened
    int selected;
    bool enabled;
  } rows[] = {{2, "ORDER", kBothRights, {"Orders"}, all, 1, true},
              {1, "", {}, all, all, 0, true},
              {1, "", kBothRights, {}, all, 0, true},
              {2, "Log", kBothRights, {"Log"}, all, -1, true},
              {3, "Log", {}, {"Log"}, {"Customers", "Log", "Orders"}, 1, true},
              {0, "", {}, {}, {}, -1, false},
              {0, "", kBothRights, {"[31]"}, {"[31]"}, 0, false},
              {2, "Order", importing, {"Orders"}, {"Orders"}, 0, false}};
  for (const auto& [mode, name, entries, before, after, selected, enabled] : rows) {
    task.record_mode = mode;
    task.data_object_name = name;
    task.actions = {};
    Open(entries);
    EXPECT_EQ(Items(Object()), before) << name;
    EXPECT_EQ(bench->user.DropDown(Object()), enabled);
    EXPECT_EQ(Items(Object()), after) << name;
    EXPECT_EQ(Object().Index(), selected) << name;
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
  task.record_mode = 2;
  const struct {
    const char* former;
    std::size_t actions;
    int picked, reply;  // 0: nothing is asked
    const char *shown, *name;
  } rows[] = {
      {"Customer", 0, 1, 0, "Orders", "Order"},
      {"CUSTOMER", 1, 0, 0, "Customers", "Customer"},
      {"Customer", 2, 1, 6, "Orders", "Order"},
      {"item", 1, 1, 7, "ITEM", "Item"},  // No goes back to the entry that reads as the object is named
      {"Customer", 1, 1, 7, "Orders", "Customer"}};
  for (const auto& [former, actions, picked, reply, shown, name] : rows) {
    task.data_object_name = former;
    task.actions.assign(actions, LogAction("line"));
    Open(kBothRights);
    bench->user.DropDown(Object());
    if (reply != 0) scene.dialogs.answers = {reply};
    bench->user.Pick(Object(), picked);
    EXPECT_EQ(std::exchange(scene.dialogs.boxes, {}), Texts(reply == 0 ? 0 : 1, "[113]/36"));
    EXPECT_EQ(Object().Text(), shown);
    const TaskRecord saved = Left();
    EXPECT_EQ(saved.data_object_name, name);
    EXPECT_EQ(saved.actions.size(), reply == 6 ? 0 : actions);
    EXPECT_TRUE(ObjectFrom<DataObjectCollection>(bench->store->values.at("DataObjects")));
    EXPECT_EQ(ObjectFrom<DataObject>(bench->store->values.at("DataObject"))->Name(), name);
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
  Toggle("chkSkipRowSelection");
  Click("lblPermissions");
  EXPECT_EQ(scene.dialogs.edited_permissions, Texts{"[114] none"});
  const TaskRecord saved = Left();
  EXPECT_FALSE(saved.skip_row_selection);
  EXPECT_EQ(saved.permissions, scene.dialogs.chosen_permissions);
  EXPECT_TRUE(saved.may_run && !saved.may_edit && !saved.may_delete);
  task = saved;
  scene.dialogs.chosen_permissions.reset();  // cancelled: the set stays
  Open(kBothRights);
  Click("lblPermissions");
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

// Continuing after a failure does not lose what is listed, and trying again finds it all.
TEST_F(DetailsTest, WhatASkippedStatementWasToGiveStaysAsItWas) {
  task.record_mode = 2;
  task.data_object_name = "Order";
  task.data_object_caption = "Orders";
  scene.dialogs.on_report = [](const FailureReport&) { return 1; };
  struct Row {
    const char* member;
    bool always;
    const char* list;
    Texts before, after;
  };
  const Texts objects = {"Customers", "Orders"};
  for (const Row& row :
       std::vector<Row>{{"CategoryList.Load", false, "cboCategory", {"two"}, {"two", "one"}},
                        {"Category.Text", false, "cboCategory", {"two"}, {"two", "one"}},
                        {"Recordset.MoveNext", true, "cboCategory", {"one"}, {"one", "two"}},
                        {"DataObject.Caption", false, "cboDataObject", {"Orders"}, objects},
                        {"Utilities.FoldCase", true, "cboDataObject", {"Orders"}, objects}}) {
    scene.stored_categories = {"one", "two"};
    const bool categories = std::string_view(row.list) == "cboCategory";
    if (!categories) Open(kBothRights);
    {
      const Injector injected(row.member, row.always ? Times::kForEver : Times::kOnce);
      categories ? Open(kBothRights) : static_cast<void>(bench->user.DropDown(Object()));
      EXPECT_FALSE(injected.delivered.empty()) << row.member;
    }
    auto& list = bench->Get<ComboBox>(row.list);
    EXPECT_EQ(Items(list), row.before) << row.member;
    bench->user.DropDown(list);
    EXPECT_EQ(Items(list), row.after) << row.member;
    EXPECT_EQ(Object().Text(), "Orders") << row.member;
  }
}

// Also where everything else would go on.
TEST_F(DetailsTest, AFailedCheckDoesNotPass) {
  task.actions = {{"kind", "", 8, 4, {}}, {"kind", "", 8, 4, {}}};
  scene.dialogs.on_report = [](const FailureReport&) { return 1; };
  Open();
  {
    const Injector injected("ActionList.Item");
    Toggle("chkAutoMan");
  }
  EXPECT_TRUE(scene.dialogs.boxes.empty()) << "nobody is asked to drop what nobody has looked at";
  const Injector injected("AutoTask.RecordMode");
  EXPECT_FALSE(bench->Leave(ChangeDirection::kNext));
  EXPECT_EQ(bench->task->Record(), task);
}

// The name does not take the place of a description that could not be read, nor nothing that of a data
// object.
TEST_F(DetailsTest, WhatCouldNotBeReadWaitsForTheUser) {
  scene.dialogs.on_report = [](const FailureReport&) { return 1; };
  {
    const Injector injected("AutoTask.DataObjectName");
    Open();
  }
  EXPECT_EQ(Left(), task);
  EXPECT_FALSE(bench->store->values.contains("DataObject"));
  {
    const Injector injected("AutoTask.Description");
    Open();
  }
  bench->user.Leave((*bench)["txtName"]);
  EXPECT_FALSE(bench->Leave(ChangeDirection::kNext));
  bench->user.Type((*bench)["txtDescription"], "New");
  task.description = "New";
  EXPECT_EQ(Left(), task);
}

TEST_F(DetailsTest, AfterSavingCategoriesAreEditedInACopy) {
  Open();
  bench->task->SetCategories(nullptr);
  bench->Initialize();
  bench->user.Type(Category(), "own");
  task.categories = Left().categories;
  scene.dialogs.chosen_categories = {{"a", true}, {"b", true}};
  Click("lblCategory");
  EXPECT_EQ(bench->task->Record().categories, task.categories);
  EXPECT_EQ(Left().categories, *scene.dialogs.chosen_categories);
}

}  // namespace
}  // namespace plovix
