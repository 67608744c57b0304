// What the windows do with rights: asked when something happens, not when the list was read.
#include <plovix/host/host_application.h>
#include <plovix/standalone/app/task_exchange.h>
#include <plovix/surfaces/qt/plain_text.h>

#include "tests/app/program_support.h"

namespace plovix::app {
namespace {

using testing::HasSubstr;

const UserRecord kClerk{
    .id = "clerk", .name = "", .groups = {}, .create_personal = true, .create_shared = true};

class RightsTest : public ProgramTest {
 protected:
  RightsTest() { SaveUsers({kClerk, {.id = "guest", .name = "", .groups = {}}}); }
  void SaveUsers(std::vector<UserRecord> users) {
    users.push_back(FirstAdministrator());
    tables_.SaveUsers(users, tables_.Users());
  }
  // The list as the user opens it; the task is selected.
  void WorkAs(const std::string& id) {
    user_ = FindUser(tables_, id, state_.texts);
    SetUser(state_, tables_, user_);
    storage_->SetGuard(GuardFor(tables_, id, state_.texts));
    list_ = std::make_unique<TaskListWindow>(Parts());
    list_->show();
  }
  // As somebody else saves it.
  TaskRecord Put(const std::string& owner, const std::optional<PermissionSet>& permissions = {}) {
    TaskRecord task;
    task.name = task.description = "Report";
    task.categories = {{"Secret", false}, {"Open", true}};
    task.owner = owner;
    task.permissions = permissions;
    return others_->Save(task, state_.Now());
  }
  void Erase(std::int64_t id) { others_->Delete(id, others_->Load(id)->version); }
  void OpenDetails() {
    OpenWizard("edit");
    WizardButton("next")->click();
  }
  void FinishFromDetails() {
    WizardButton("next")->click();
    WizardButton("finish")->click();
    EXPECT_EQ(Wizard(), nullptr);
  }

  std::unique_ptr<SqliteStorage> others_ = std::make_unique<SqliteStorage>(FromQt(Path()));
};

TEST_F(RightsTest, AreThoseOfTheMomentForWhateverTheListDoes) {
  const auto take = [this](TaskRecord task) { task.owner = "admin", others_->Save(task, state_.Now()); };
  const auto demote = [this](const TaskRecord&) { SaveUsers({{.id = "clerk", .name = "", .groups = {}}}); };
  const auto remove = [this](const TaskRecord&) { SaveUsers({}); };
  const struct {
    std::function<void(const TaskRecord& task)> meanwhile;
    void (TaskListWindow::*verb)();
    const char* told;
    bool listed;  // afterwards
  } cases[] = {{take, &TaskListWindow::Duplicate, "may not view", false},
               {take, &TaskListWindow::Export, "may not view", false},
               {demote, &TaskListWindow::New, "may not create automated tasks", true},
               {demote, &TaskListWindow::Edit, "may not edit", true},
               {demote, &TaskListWindow::Duplicate, "may not create personal tasks", true},
               {demote, &TaskListWindow::Delete, "may not delete", true},
               {demote, &TaskListWindow::Import, "may not create automated tasks", true},
               {demote, &TaskListWindow::EditUsers, "Only administrators", true},
               {remove, &TaskListWindow::Export, "not a user", false}};
  for (const auto& each : cases) {
    SCOPED_TRACE(&each - cases);
    SaveUsers({kClerk});
    const TaskRecord task = Put("");
    WorkAs("clerk");
    each.meanwhile(task);
    const auto stored = others_->List();
    {
      const Answers answers({Reads(each.told, Qt::Key_Escape)});
      (list_.get()->*each.verb)();
    }
    EXPECT_EQ(Wizard(), nullptr);
    EXPECT_EQ(others_->List(), stored);
    EXPECT_EQ(Names().isEmpty(), !each.listed);
    Erase(task.id);
  }
}

// Whoever may only edit a task cannot take it over: the box is locked, the permissions are shown.
TEST_F(RightsTest, WhoMayDoEverythingWithATaskChangesWhoMayDoWhat) {
  const PermissionSet set{
      {.subject = "clerk", .is_group = false, .view = true, .run = true, .edit = true},
      {.subject = "guest", .is_group = false, .view = true, .run = true, .edit = true, .erase = true}};
  const struct {
    const char* actor;
    bool box, changes;
  } cases[] = {{"clerk", false, false}, {"guest", false, true}, {"admin", true, true}};
  for (const auto& [actor, box, changes] : cases) {
    SCOPED_TRACE(actor);
    const TaskRecord stored = Put("", set);
    WorkAs(actor);
    OpenDetails();
    EXPECT_EQ(Wizard()->Page()->WidgetOf("chkPersonalTask")->isEnabled(), box);
    {
      const Answers answers({[told = changes ? "" : "You may not change"](QWidget* dialog) {
        EXPECT_TRUE(FromQt(dialog->accessibleDescription()).starts_with(told));
        auto* table = dialog->findChild<QTableWidget*>();
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Delete, Qt::Key_Return}) QTest::keyClick(table, key);
      }});
      Wizard()->Page()->WidgetOf("lblPermissions")->setFocus();
      Key(Qt::Key_Return);
      QTest::qWait(20);
    }
    FinishFromDetails();
    EXPECT_EQ(others_->Load(stored.id)->version, stored.version + 1);
    EXPECT_EQ(others_->Load(stored.id)->permissions != stored.permissions, changes);
    Erase(stored.id);
  }
}

// Neither an administrator's edit nor a copy nor an import makes it somebody else's in passing.
TEST_F(RightsTest, APersonalTaskStaysItsOwners) {
  const TaskRecord stored = Put("clerk");
  WorkAs("admin");
  OpenDetails();
  EXPECT_THAT(FromQt(Wizard()->windowTitle()), HasSubstr("in the name of clerk"));
  EXPECT_THAT(FromQt(Wizard()->findChild<QTextBrowser*>("summary")->toPlainText()),
              HasSubstr("name of clerk"));
  FinishFromDetails();
  EXPECT_EQ(state_.user_id, "admin");
  const QString path = folder_.filePath("personal.task.json");
  SaveExport(Parts(), stored, path);
  WorkAs("clerk");
  ListButton("duplicate")->click();
  {
    const Answers answers({ChooseFile(path), PressKey(Qt::Key_Return)});
    ListButton("import")->click();
  }
  {
    const Answers answers({PressKey(Qt::Key_Escape)});  // it is not released yet
    WizardButton("finish")->click();
  }
  EXPECT_EQ(others_->Load(stored.id)->version, stored.version + 1);
  EXPECT_EQ(others_->List().size(), 3U);
  for (const TaskRecord& task : others_->List()) EXPECT_EQ(task.owner, "clerk") << task.id;
  SaveUsers({{.id = "clerk", .name = "", .groups = {}, .create_shared = true}});
  list_->Reload();
  EXPECT_FALSE(ListButton("duplicate")->isEnabled());
}

TEST_F(RightsTest, CategoriesAreSeenAndEditedByThoseWhoMay) {
  SaveUsers({kClerk,
             {.id = "seer", .name = "", .groups = {}, .see_all_categories = true},
             {.id = "editor", .name = "", .groups = {}, .edit_categories = true}});
  Put("");
  const struct {
    std::string user, seen;
    bool edits;
  } cases[] = {{"admin", "Secret, Open", true},
               {"seer", "Secret, Open", false},
               {"editor", "Open", true},
               {"clerk", "Open", false}};
  for (const auto& [user, seen, edits] : cases) {
    WorkAs(user);
    EXPECT_EQ(state_.rights[kRightEditCategories], edits) << user;
    const QModelIndex cell =
        list_->findChild<QTableView*>("tasks")->model()->index(0, TaskTableModel::kCategories);
    EXPECT_EQ(FromQt(cell.data().toString()), seen);
    EXPECT_EQ(cell.data(Qt::ToolTipRole).toString(), qt::ToolTip(cell.data().toString()));
    list_->findChild<QLineEdit*>("filter")->setText("secret");
    EXPECT_EQ(Names().isEmpty(), seen == "Open");
  }
}

}  // namespace
}  // namespace plovix::app
