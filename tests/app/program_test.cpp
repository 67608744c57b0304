// The program's windows, driven by keyboard and mouse, and the program itself as a process.
#include <plovix/standalone/app/program_options.h>
#include <plovix/standalone/app/task_exchange.h>
#include <plovix/standalone/editors/release_dialog.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <sys/stat.h>

#include <map>

#include "tests/app/program_support.h"

namespace plovix::app {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using namespace std::chrono_literals;

TEST_F(ProgramTest, ATaskIsCreatedByKeyboardAlone) {
  EXPECT_FALSE(ListButton("edit")->isEnabled());
  OpenWizard("new");
  EXPECT_EQ(FocusName(), "optNoData");
  Key(Qt::Key_Return);
  EXPECT_EQ(FocusName(), "txtName");
  EXPECT_THAT(FromQt(Wizard()->windowTitle()), HasSubstr("Automated Task Details"));
  Type("Nightly \"import\"");
  Key(Qt::Key_Tab);
  Type("short");
  Key(Qt::Key_Tab);
  EXPECT_EQ(FocusName(), "txtDescription");
  Key(Qt::Key_End, Qt::ControlModifier);
  Key(Qt::Key_Return);  // a new line, not the next page
  Type("second line");
  Key(Qt::Key_Backtab, Qt::ShiftModifier);
  Key(Qt::Key_Return);
  auto* rows = Wizard()->findChild<QListWidget*>();
  {
    const Answers answers({[](QWidget* dialog) {
      QTest::keyClick(dialog->findChild<QComboBox*>(), Qt::Key_End);
      for (auto* button : dialog->findChildren<QPushButton*>()) button->setFocus();
      dialog->findChild<QComboBox*>()->setFocus();  // Enter means OK, wherever the focus has been
      QTest::keyClick(dialog, Qt::Key_Return);      // refused: the line is missing
      QTest::keyClicks(dialog->focusWidget(), "done");
      QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
      QTest::keyClicks(dialog->focusWidget(), "/tmp/plovix.log");
      QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    }});
    Key(Qt::Key_A, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([rows] { return rows->count() == 1; }));
  }
  EXPECT_EQ(Wizard()->focusWidget(), rows);
  {
    const Answers answers({PressKey(Qt::Key_Escape)});
    Key(Qt::Key_Return);  // edits the row
  }
  Key(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Wizard(), nullptr);
  EXPECT_THAT(Names(), ElementsAre("Nightly \"import\""));

  const TaskRecord saved = storage_->Load(1).value();
  EXPECT_EQ(saved.short_description, "short");
  EXPECT_EQ(saved.description, "Nightly \"import\"\nsecond line");
  ASSERT_EQ(saved.actions.size(), 1U);
  EXPECT_EQ(saved.actions[0].kind, "write-log");
  EXPECT_THAT(saved.actions[0].settings, ElementsAre(Pair("file", "/tmp/plovix.log"), Pair("text", "done")));
}

// By keyboard: the time, a kind of pattern and another one, and back to the first, which is as it was left.
// The panel and the list say what the user will get.
TEST_F(ProgramTest, AScheduleIsMadeByKeyboardAndSaidInWords) {
  state_.clock = [] { return DateTime{std::chrono::local_days{std::chrono::year{2026} / 2 / 27}}; };
  OpenWizard("new");
  const auto summary = [this] {
    return FromQt(Wizard()->findChild<QTextBrowser*>("summary")->toPlainText());
  };
  Key(Qt::Key_Return);
  Type("Report");
  Wizard()->Page()->WidgetOf("chkAutoMan")->setFocus();
  Key(Qt::Key_Space);
  EXPECT_THAT(summary(), HasSubstr("Only when started by hand"));
  Key(Qt::Key_Return);
  EXPECT_THAT(summary(), AllOf(HasSubstr("“Report”"), HasSubstr("No recurrence pattern yet")));
  EXPECT_EQ(FocusName(), "optSpecificTime");
  Key(Qt::Key_Tab);
  Type("21");
  Key(Qt::Key_Return);
  EXPECT_EQ(FocusName(), "optDaily");
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return, Qt::Key_Tab}) Key(key);
  Type("31");
  EXPECT_EQ(FocusName(), "txtDay");
  Key(Qt::Key_B, Qt::AltModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return FocusName() == "optMonthly"; }));
  EXPECT_THAT(summary(),
              AllOf(HasSubstr("Every month on day 31, or on the last day of a month that has no day 31, at "),
                    HasSubstr("This month has no day 31; runs on its last day"),
                    testing::Not(HasSubstr("Counted from "))));  // every month counts from nowhere
  Key(Qt::Key_Up);
  Key(Qt::Key_Return);
  EXPECT_FALSE(WizardButton("next")->isEnabled()) << "no day of the week is checked";
  EXPECT_THAT(summary(), HasSubstr("No recurrence pattern yet")) << "the weekly one is still to come";
  WizardButton("back")->click();
  Key(Qt::Key_Down);
  Key(Qt::Key_Return);
  {
    const Answers answers({PressKey(Qt::Key_Return)});  // on with day 31
    Key(Qt::Key_Return);
  }
  WizardButton("finish")->click();
  const auto* table = list_->findChild<QTableView*>("tasks");
  EXPECT_THAT(FromQt(table->model()->index(0, TaskTableModel::kSchedule).data().toString()),
              HasSubstr("Every month on day 31"));
  const DateTime at = storage_->Load(1)->recurrence->execution_time;
  EXPECT_EQ(at - std::chrono::floor<std::chrono::days>(at), 21h);
  ListButton("duplicate")->click();
  const TaskRecord copy = storage_->Load(2).value();
  EXPECT_FALSE(copy.allow_automation_manager || copy.recurrence || copy.schedule_start)
      << "nothing runs twice";
}

TEST_F(ProgramTest, TheListFiltersDuplicatesAndDeletesAfterAQuestion) {
  for (const char* name : {"Beta", "alpha", "gamma"}) Put(name);
  EXPECT_THAT(Names(), ElementsAre("alpha", "Beta", "gamma"));
  auto* filter = list_->findChild<QLineEdit*>("filter");
  QTest::keyClicks(filter, "BET");
  EXPECT_THAT(Names(), ElementsAre("Beta"));
  ListButton("duplicate")->click();
  EXPECT_THAT(Names(), ElementsAre("Beta", "Beta (copy)"));
  {
    const Answers answers({PressKey(Qt::Key_Escape)});
    list_->Delete();
  }
  EXPECT_EQ(storage_->List().size(), 4U);
  {
    const auto yes_to = [](const char* question) { return Reads(question, Qt::Key_Y, Qt::AltModifier); };
    const Answers answers({[&](QWidget* box) {
                             TaskRecord changed = storage_->List().back();
                             changed.name = "Beta (changed)";
                             storage_->Save(changed, state_.Now());
                             yes_to("Beta (copy)")(box);
                           },
                           yes_to("\"Beta (changed)\" has been changed")});
    QTest::keyClick(list_->findChild<QTableView*>("tasks"), Qt::Key_Delete);
  }
  QTest::keyClick(filter, Qt::Key_Escape);
  EXPECT_THAT(Names(), ElementsAre("alpha", "Beta", "gamma"));
  Connection(FromQt(Path()), kTaskFilePatience, Access::kReadWrite)
      .Run("UPDATE VeloAutoTasks SET MayRun = 'x' WHERE Name = 'Beta'");
  list_->Reload();
  EXPECT_THAT(Names(), ElementsAre("alpha", "gamma"));
  const auto told = list_->findChild<QTableView*>("tasks")->accessibleDescription();
  EXPECT_THAT(FromQt(told), HasSubstr("\"Beta\" (number 1) cannot be shown: its value \"MayRun\""));
}

TEST_F(ProgramTest, ATaskGoesIntoAFileAndComesBackThroughTheWizard) {
  TaskRecord task;
  task.name = task.description = "Month: 1/2";
  task.actions = {{"fly", "x", 16, 8, {{"k", "\xFF"}}}};
  task.allow_automation_manager = true;
  task.name_tag = "T";
  const TaskRecord stored = storage_->Save(task, state_.Now());
  tables_.SaveTag({"T", {{"en", "Text"}}}, {});
  list_->Reload();
  const std::string suggested = "Month_ 1_2.task.json";
  const QString path = folder_.filePath(ToQt(suggested));
  const auto choose = [&](QWidget* box) {
    const bool saves = qobject_cast<QFileDialog*>(box)->acceptMode() == QFileDialog::AcceptSave;
    EXPECT_EQ(FromQt(box->findChild<QLineEdit*>("fileNameEdit")->text()), saves ? suggested : "");
    ChooseFile(path)(box);
  };
  const auto press = [&](const char* button, std::vector<std::function<void(QWidget*)>> steps) {
    const Answers answers(std::move(steps));
    ListButton(button)->click();
  };
  press("export", {choose});
  tables_ = MemoryUsersAndTags();
  press("import", {choose, PressKey(Qt::Key_Escape)});
  EXPECT_TRUE(Wizard() == nullptr && tables_.Tags().empty()) << "cancelled";
  press("import", {choose, [](QWidget* box) {
                     EXPECT_THAT(FromQt(box->findChild<QPlainTextEdit*>("notes")->toPlainText()),
                                 HasSubstr("Action 1 is of a kind that this program does not know (fly)"));
                     QTest::keyClick(box->focusWidget(), Qt::Key_Return);
                   }});
  ASSERT_NE(Wizard(), nullptr);
  EXPECT_THAT(tables_.Tags(), ElementsAre(TagRecord{"T", {{"en", "Text"}}}));
  EXPECT_FALSE(Wizard()->Page()->WidgetOf("chkAutoMan")->isEnabled());
  {
    const Answers answers({[](QWidget* box) {
      EXPECT_NE(dynamic_cast<ReleaseDialog*>(box), nullptr) << "what it does is shown at once";
      QTest::keyClick(box, Qt::Key_Escape);
    }});
    WizardButton("finish")->click();
  }
  TaskRecord imported = storage_->Load(2).value();
  imported.id = stored.id;
  imported.modified = stored.modified;
  EXPECT_TRUE(std::exchange(imported.held, false));
  EXPECT_EQ(imported, stored);

  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("[1 2]") == 5);
  file.close();
  press("import",
        {choose, Reads("1_2.task.json”: line 1, column 4: this is not valid JSON.", Qt::Key_Return)});
  const QString pipe = folder_.filePath("pipe");
  ASSERT_EQ(mkfifo(FromQt(pipe).c_str(), 0600), 0);
  EXPECT_THROW((void)LoadExport(Parts(), pipe), Failure);
  for (const QString& unwritable : {folder_.filePath("no/where"), pipe})
    EXPECT_THROW(SaveExport(Parts(), task, unwritable), Failure);
}

TEST_F(ProgramTest, EveryFileSystemTakesTheSuggestedName) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "(without a name)"}, {"../<x>|\"y\"?*\\", "__x___y____"},
      {"...", "task"},          {"Nul.a\tb\n", "_Nul.a b"},
      {"\u202egnp", "_gnp"},    {std::string(59, 'x') + "\U0001F600", std::string(59, 'x')}};
  for (const auto& [name, wanted] : cases) {
    TaskRecord task;
    task.name = name;
    EXPECT_EQ(FromQt(SuggestedFileName(Parts(), task)), wanted + ".task.json");
  }
}

TEST_F(ProgramTest, MessageBoxesMapTheButtonValues) {
  const struct {
    int value, enter, escape;
    QMessageBox::Icon icon;
  } cases[] = {{48, 1, 1, QMessageBox::Warning},
               {64, 1, 1, QMessageBox::Information},
               {49, 1, 2, QMessageBox::Warning},
               {33, 1, 2, QMessageBox::Question},
               {36, 6, 7, QMessageBox::Question}};
  for (const auto& [value, enter, escape, icon] : cases) {
    EXPECT_EQ(MakeMessageBox(state_.texts, "<b>text", value, "title")->icon(), icon);
    const Answers answers({PressKey(Qt::Key_Return), PressKey(Qt::Key_Escape)});
    EXPECT_EQ(dialogs_.MessageBox("<b>text", value, "title"), enter) << value;
    EXPECT_EQ(dialogs_.MessageBox("<b>text", value, "title"), escape) << value;
  }
  const Answers answers({PressKey(Qt::Key_Return), PressKey(Qt::Key_Escape)});
  for (const ReportAction answer : {ReportAction::kRetry, ReportAction::kLeave})
    EXPECT_EQ(dialogs_.Report({6, "Overflow", "Plovix", "Details", "SaveValues", 12}), answer);
}

// The program as a process, with a home of its own and no display but what a case brings.
TEST(Program, ReadsCommandsWithoutADisplayAndSaysInWordsWhatItCannotUse) {
  const QTemporaryDir folder;
  const auto at = [&](const char* name) { return folder.filePath(name); };
  for (const char* pipe : {"pipe.json", "tasks.sqlite-journal"})
    ASSERT_EQ(mkfifo(FromQt(at(pipe)).c_str(), 0600), 0);
  QFile large(at("large.json"));
  ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(5 * 1024 * 1024));
  struct Case {
    QStringList arguments = {};
    std::map<QString, QString> environment = {};
    int status = 1;
    std::vector<const char*> words;
  };
  const Case cases[] = {
      {.status = 0, .words = {"no display", "{\"saved\":[]}\n"}},
      {.environment = {{"DISPLAY", ":4077"}}, .status = 0, .words = {"no display", "{\"saved\":[]}\n"}},
      {.environment = {{"QT_QPA_PLATFORM", "nonsense"}}, .words = {"no window", "QT_QPA_PLATFORM=nonsense"}},
      {.environment = {{"XDG_DATA_HOME", "/proc/no"}}, .words = {"/proc/no/plovix", "with --database"}},
      {.arguments = {"script", "/dev/stdin"}, .status = 0, .words = {"{\"saved\":[]}\n"}},
      {.arguments = {"script", folder.path()}, .status = 2, .words = {"Is a directory"}},
      {.arguments = {"script", "/dev/zero"},
       .status = 2,
       .words = {"/dev/zero:1: the line is longer than 1 MB"}},
      {.arguments = {"script", "-", "--language", at("pipe.json")},
       .words = {"not an ordinary file but a pipe"}},
      {.arguments = {"script", "-", "--language", folder.path()}, .words = {"is a folder"}},
      {.arguments = {"script", "-", "--language", at("large.json")}, .words = {"larger than 4 MB"}},
      {.arguments = {"script", "-", "--language", at("no.json")}, .words = {"does not exist"}},
      {.arguments = {"script", "-", "--database", at("tasks.sqlite")}, .words = {"-journal is no ordinary"}},
      {.arguments = {"--nonsense"}, .status = 2, .words = {"unknown argument: --nonsense"}},
      {.arguments = {"--database"}, .status = 2, .words = {"--database needs a value"}},
      {.arguments = {"script"}, .status = 2, .words = {"script needs a value"}},
  };
  for (const Case& each : cases) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) environment.remove(name);
    environment.insert("XDG_DATA_HOME", folder.path());
    for (const auto& [name, value] : each.environment) environment.insert(name, value);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationDirPath() + "/plovix", each.arguments);
    process.write("saved\n");
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished()) << each.words.front();
    const std::string said = process.readAll().toStdString();
    EXPECT_EQ(std::pair(process.exitStatus(), process.exitCode()),
              std::pair(QProcess::NormalExit, each.status))
        << said;
    for (const char* words : each.words) EXPECT_THAT(said, HasSubstr(words));
  }
}

}  // namespace
}  // namespace plovix::app
