// The details page: literal texts and language tags, validation, and what is saved when.
#include <plovix/framework/page_identifiers.h>

#include <filesystem>
#include <fstream>

#include "tests/support/snapshot.h"

namespace plovix {
namespace {

using namespace testing_support;
using Boxes = std::vector<std::string>;

class DetailsTest : public testing::Test {
 protected:
  DetailsTest() {
    scene.state.tag_texts = {
        {"tn", "Tagged name"}, {"td", "Tagged description"}, {"ts", "Tagged short"}, {"tx", "Another"}};
  }
  static TaskRecord Task() {
    TaskRecord task;
    task.name = "Name";
    task.description = "Description";
    task.short_description = "Short";
    task.name_tag = "tn";
    task.description_tag = "td";
    task.short_description_tag = "ts";
    task.data_object_name = "Customer";
    task.data_object_caption = "Customers";
    task.owner = "u1";
    task.skip_row_selection = true;
    return task;
  }
  std::unique_ptr<Bench> Open(const TaskRecord& task, const Entries& entries = {}) {
    auto bench = std::make_unique<Bench>(scene, page_identifier::kDetails, task, entries);
    bench->Initialize();
    EXPECT_TRUE(scene.dialogs.reports.empty());
    return bench;
  }
  Scene scene;
};

TEST_F(DetailsTest, Validation) {
  struct Row {
    const char *name, *description;
    std::int16_t mode;
    bool data_object;
    Boxes boxes;
  };
  const std::vector<Row> rows = {
      {"N", "D", 0, false, {}},          {" N ", "\tD\n", 0, false, {}},
      {"", "D", 0, false, {"[27]/64"}},  {" \t\r\n", "D", 0, false, {"[27]/64"}},
      {"", "", 2, false, {"[27]/64"}},  // the first that fails ends it
      {"N", "", 0, false, {"[28]/64"}},  {"N", "  ", 2, false, {"[28]/64"}},
      {"N", "D", 1, false, {"[29]/48"}}, {"N", "D", 2, false, {"[29]/48"}},
      {"N", "D", 3, false, {"[29]/48"}}, {"N", "D", 2, true, {}},
  };
  for (const Row& row : rows) {
    TaskRecord task = Task();
    task.record_mode = row.mode;
    if (!row.data_object) task.data_object_name = task.data_object_caption = "";
    for (const ChangeDirection direction : {ChangeDirection::kNext, ChangeDirection::kFinish}) {
      const auto bench = Open(task);
      bench->user.Type((*bench)["txtName"], row.name);
      bench->user.Type((*bench)["txtDescription"], row.description);
      const Control* focused = bench->Controls().Focused();
      scene.dialogs.boxes.clear();
      EXPECT_EQ(bench->Leave(direction), row.boxes.empty()) << row.name << "/" << row.description;
      EXPECT_EQ(scene.dialogs.boxes, row.boxes);
      EXPECT_EQ(bench->Controls().Focused(), focused) << "validation moves no focus";
      // As typed, blanks and all; nothing on refusal.
      TaskRecord expected = task;
      if (row.boxes.empty()) {
        expected.name = row.name;
        expected.description = row.description;
      }
      EXPECT_EQ(bench->task->Record(), expected);
    }
  }
}

TEST_F(DetailsTest, BackSavesNothingAndAsksNothing) {
  const auto bench = Open(Task());
  bench->user.Type((*bench)["txtName"], "");
  EXPECT_TRUE(bench->Leave(ChangeDirection::kBack));
  EXPECT_EQ(bench->task->Record(), Task());
  EXPECT_TRUE(scene.dialogs.boxes.empty());
}

TEST_F(DetailsTest, WhenTextsAreTags) {
  struct Row {
    bool task, application, marker, tagged;
  };
  const std::vector<Row> rows = {
      {false, false, false, false}, {false, true, false, true}, {false, true, true, false},
      {true, false, false, true},   {true, true, true, true},   {false, false, true, false},
  };
  for (const Row& row : rows) {
    TaskRecord task = Task();
    task.uses_language_tags = row.task;
    scene.state.language_tag_mode = row.application;
    scene.state.marker_file = row.marker;
    const auto bench = Open(task);
    EXPECT_EQ((*bench)["txtName"].Enabled(), !row.tagged);
    EXPECT_EQ((*bench)["txtDescription"].Enabled(), !row.tagged);
    EXPECT_EQ((*bench)["txtShortDescription"].Enabled(), !row.tagged);
    EXPECT_EQ((*bench)["cmdNameLangTag"].Visible(), row.tagged);
    EXPECT_EQ((*bench)["cmdDescriptionLangTag"].Visible(), row.tagged);
    EXPECT_EQ((*bench)["cmdShortDescriptionLangTag"].Visible(), row.tagged);
    EXPECT_EQ(bench->Text("txtName"), row.tagged ? "Tagged name" : "Name");
    EXPECT_EQ(bench->Text("txtDescription"), row.tagged ? "Tagged description" : "Description");
    EXPECT_EQ(bench->Text("txtShortDescription"), row.tagged ? "Tagged short" : "Short");
    // The decision stands for the life of the page.
    scene.state.language_tag_mode = !row.application;
    scene.state.marker_file = !row.marker;
    EXPECT_EQ(bench->user.Press((*bench)["cmdNameLangTag"]), row.tagged);
  }
}

TEST_F(DetailsTest, TheMarkerFileItself) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "plovix-marker";
  std::filesystem::create_directories(folder);
  scene.state.path = folder.string();
  scene.state.marker_file.reset();
  scene.state.language_tag_mode = true;
  EXPECT_FALSE((*Open(Task()))["txtName"].Enabled());
  std::ofstream(folder / "forceusertask.txt").flush();
  EXPECT_TRUE((*Open(Task()))["txtName"].Enabled());
  std::filesystem::remove_all(folder);
}

TEST_F(DetailsTest, EditingTags) {
  TaskRecord task = Task();
  task.uses_language_tags = true;
  struct Row {
    const char *button, *box, *tag;
    std::string TaskRecord::*member;
  };
  const std::vector<Row> rows = {
      {"cmdNameLangTag", "txtName", "tn", &TaskRecord::name_tag},
      {"cmdDescriptionLangTag", "txtDescription", "td", &TaskRecord::description_tag},
      {"cmdShortDescriptionLangTag", "txtShortDescription", "ts", &TaskRecord::short_description_tag},
  };
  for (const Row& row : rows) {
    const auto bench = Open(task);
    scene.dialogs.edited_tags.clear();
    scene.dialogs.chosen_tag = "tx";
    bench->user.Press((*bench)[row.button]);
    EXPECT_EQ(bench->Text(row.box), "Another");
    EXPECT_EQ(bench->task->Record(), task) << "nothing is written before the page is left";
    scene.state.tag_texts["tx"] = "Refreshed";
    scene.dialogs.chosen_tag.reset();  // cancelled: the same tag, its text read again
    bench->user.Press((*bench)[row.button]);
    EXPECT_EQ(bench->Text(row.box), "Refreshed");
    EXPECT_EQ(scene.dialogs.edited_tags, (Boxes{row.tag, "tx"}));
    scene.state.tag_texts["tx"] = "Another";
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    TaskRecord expected = task;
    expected.*row.member = "tx";
    EXPECT_EQ(bench->task->Record(), expected) << "the literal texts are not touched";
  }
  // A tag without a text is an empty name.
  scene.state.tag_texts["tn"] = " ";
  EXPECT_FALSE(Open(task)->Leave(ChangeDirection::kNext));
  EXPECT_EQ(scene.dialogs.boxes, Boxes{"[27]/64"});
}

TEST_F(DetailsTest, LeavingTheNameFillsAnEmptyDescription) {
  struct Row {
    const char *description, *after;
  };
  for (const Row& row : {Row{"", "New"}, Row{" ", " "}, Row{"Mine", "Mine"}}) {
    TaskRecord task = Task();
    task.description = row.description;
    const auto bench = Open(task);
    bench->user.Type((*bench)["txtName"], "New");
    bench->user.Leave((*bench)["txtName"]);
    EXPECT_EQ(bench->Text("txtDescription"), row.after);
  }
}

TEST_F(DetailsTest, StoredCategoryDataObjectAndSettingsPassThrough) {
  TaskRecord task = Task();
  task.record_mode = 2;
  for (const auto& [categories, shown] : std::vector<std::pair<std::vector<CategoryRecord>, const char*>>{
           {{}, ""}, {{{"tx", true}}, "Another"}, {{{"tx", true}, {"b", false}}, "..."}}) {
    task.categories = categories;
    const auto bench = Open(task);
    EXPECT_EQ(bench->Get<ComboBox>("cboCategory").Text(), shown);
    EXPECT_EQ(bench->Get<ComboBox>("cboDataObject").Text(), "Customers");
    EXPECT_TRUE(bench->Get<CheckBox>("chkPersonalTask").Checked());
    EXPECT_TRUE(bench->Get<CheckBox>("chkSkipRowSelection").Checked());
    EXPECT_TRUE(bench->Leave(ChangeDirection::kNext));
    EXPECT_EQ(bench->task->Record(), task);
  }
}

TEST_F(DetailsTest, TheCategoryLabelIsALinkForThoseWhoMayEdit) {
  for (const bool right : {true, false}) {
    scene.state.rights[112] = right;
    const auto bench = Open(Task());
    EXPECT_FALSE(bench->Get<Label>("lblCategory").Link());
    bench->user.Show(bench->Controls());
    EXPECT_EQ(bench->Get<Label>("lblCategory").Link(), right);
  }
}

}  // namespace
}  // namespace plovix
