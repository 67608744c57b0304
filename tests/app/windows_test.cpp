// What holds for every window: texts of others stay texts, nothing is larger than the screen, and keys do
// what the program's description says wherever they are pressed.
#include <plovix/standalone/app/editor_samples.h>
#include <plovix/standalone/app/import_report_dialog.h>
#include <plovix/standalone/app/run_samples.h>
#include <plovix/standalone/editors/action_dialog.h>
#include <plovix/standalone/editors/action_list_widget.h>
#include <plovix/standalone/editors/permission_dialog.h>
#include <plovix/standalone/editors/tag_dialog.h>
#include <plovix/standalone/query_builder/query_builder_dialog.h>
#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/surfaces/qt/plain_text.h>

#include "tests/app/program_support.h"

namespace plovix::app {
namespace {

using testing::HasSubstr;

class WindowsTest : public ProgramTest {
 protected:
  // Makes each window in turn and hands it over. `name` stands wherever others may have named something.
  void ForEachWindow(const std::string& name, const std::function<void(QWidget&, const std::string&)>& look) {
    TaskRecord task;
    task.id = 1;
    task.name = task.short_description = task.owner = name;
    task.categories = {{name, true}};
    class Foreign final : public TaskStorage {  // a file that was not made by this program
     public:
      explicit Foreign(TaskRecord record) : record_(std::move(record)) {}
      std::vector<TaskRecord> List() override { return {record_}; }
      std::optional<TaskRecord> Load(std::int64_t) override { return record_; }
      TaskRecord Save(const TaskRecord& saved, DateTime) override { return saved; }
      void Delete(std::int64_t, std::int64_t) override {}

     private:
      TaskRecord record_;
    } foreign(task);
    AppParts parts{state_, registry_, foreign, tables_, user_, data_, runs_, control_, zone_};
    TaskListWindow list(parts);
    look(list, "list");
    VeloActionList actions;
    actions.Append({name, name, 0, 0, {}});
    ActionListWidget action_list(actions, state_.texts, nullptr);
    look(action_list, "actions");
    ActionDialog action(state_.texts, "Edit", {}, {name, "x", 0, 0, {}}, nullptr);
    look(action, "action");
    const PermissionSet set{{.subject = name}};
    PermissionDialog permissions(state_.texts, name, set, tables_, nullptr);
    look(permissions, "permissions");
    TagDialog tags(state_.texts, name, {}, tables_, {"en"}, "en", nullptr);
    look(tags, "tags");
    ImportReportDialog report(state_.texts, name, {{"exchange.note.user", {name}}}, nullptr);
    look(report, "import");
    look(*MakeMessageBox(state_.texts, name, message_box::kOkWarning, name), "box");
    look(*MakeReportBox(state_.texts, {6, name, name, name, name, 1}), "report");
    const std::unique_ptr<QMessageBox> question =
        MakeWarningQuestion(state_.texts, name, {name, "button.yes", "button.no"}, nullptr);
    look(*question, "question");
    MemoryDataSource source;
    const DataObjectRecord object{"o", name, "id"};
    source.entries = {{object, {{name, FieldType::kReal}}}};
    QueryBuilderDialog builder(state_.texts, source, object, "SELECT * FROM o WHERE 1",
                               QueryTarget{FromQt(Path())}, nullptr);
    look(builder, "builder");
    for (const std::string& identifier : registry_.Identifiers()) {
      task.recurrence = RecurrenceRecord{};
      WizardWindow window(parts, task);
      if (window.Start(identifier)) look(window, identifier);
      window.Wizard().Cancel();
    }
    PictureEditors(state_.texts, look);
    PictureRuns(state_.texts, look);
  }
};

// What the toolkit would make of a tool tip.
QString Shown(const QString& tip) {
  return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip;
}

// Half a megabyte of accents on one letter, markup, a mnemonic's mark and a title's placeholder.
TEST_F(WindowsTest, TextsOfOthersAreShownAsTheyStandAndNoLongerThanNeeded) {
  const std::string name = "<img src=\"/dev/zero\"> &a [*]";
  std::string accents;
  for (int i = 0; i < 250'000; ++i) accents += "\xCC\x81";
  int tips = 0;
  ForEachWindow(name + accents, [&](QWidget& window, const std::string& which) {
    window.show();
    const QString shown = window.windowTitle().replace("[*][*]", "");
    EXPECT_FALSE(shown.contains("[*]")) << which << " would show no placeholder";
    for (const QLabel* label : window.findChildren<QLabel*>()) {
      const bool picture = !label->pixmap().isNull();
      EXPECT_TRUE(picture || label->textFormat() == Qt::PlainText) << which << FromQt(label->text().left(50));
      EXPECT_LT(label->text().size(), 4000) << which;
    }
    for (const QAbstractItemView* view : window.findChildren<QAbstractItemView*>()) {
      if (view->model() == nullptr) continue;
      for (int column = 0; column < view->model()->columnCount(); ++column) {
        const QModelIndex cell = view->model()->index(0, column);
        const QString tip = cell.data(Qt::ToolTipRole).toString();
        EXPECT_LT(cell.data().toString().size(), 1000) << which << column;
        EXPECT_LT(tip.size(), 4000) << which << column;
        if (!cell.data().toString().startsWith('<') || tip.isEmpty()) continue;
        ++tips;
        EXPECT_TRUE(FromQt(Shown(tip)).starts_with(name)) << which << column << FromQt(tip.left(99));
      }
    }
  });
  EXPECT_GE(tips, 6);
  EXPECT_EQ(qt::Shortened("a\ne\u0301\U0001F600b", 4), QStringLiteral("a\ne\u0301…"))
      << "no half a character";
  EXPECT_EQ(qt::Shortened("a\nb\nc", 9, 2), QStringLiteral("a\nb…"));
}

// A screen of 800 by 600, less what a desktop needs around a window.
TEST_F(WindowsTest, NoWindowNeedsMoreThanASmallScreen) {
  const QSize room(790, 560);
  for (const auto& [code, json] : EmbeddedLanguages()) {
    state_.texts = LoadLanguage(code);
    ForEachWindow(std::string(300, 'x'), [&](QWidget& window, const std::string& which) {
      const QSize least = window.layout()->totalMinimumSize();
      EXPECT_TRUE(qobject_cast<QMessageBox*>(&window) != nullptr || least.boundedTo(room) == least)
          << code << " " << which << " " << least.width() << " x " << least.height();
      window.show();
      EXPECT_TRUE(window.screen()->availableGeometry().size().boundedTo(window.size()) == window.size())
          << which << " " << window.width() << " x " << window.height();
      window.resize(room);
      QCoreApplication::processEvents();
      for (const QWidget* part : window.findChildren<QWidget*>()) {
        if (!part->isVisible() || part->layout() == nullptr) continue;
        EXPECT_GE(part->height(), part->layout()->totalMinimumSize().height())
            << code << " " << which << ": what stands in it is painted over each other";
      }
    });
  }
}

TEST_F(WindowsTest, CtrlEnterGoesOnFromEverywhereInTheWizard) {
  const auto popup = [] { return QApplication::activePopupWidget(); };
  const struct Row {
    const char* from;
    std::function<QWidget*()> target;
  } rows[] = {
      {"a line", [&] { return Wizard()->Page()->WidgetOf("txtShortDescription"); }},
      {"lines", [&] { return Wizard()->Page()->WidgetOf("txtDescription"); }},
      {"a check box", [&] { return Wizard()->Page()->WidgetOf("chkPersonalTask"); }},
      {"the summary", [&] { return Wizard()->findChild<QWidget*>("summary"); }},
      {"an open list",
       [&]() -> QWidget* {
         auto* box = qobject_cast<QComboBox*>(Wizard()->Page()->WidgetOf("cboCategory"));
         box->showPopup();
         box->view()->setCurrentIndex(box->model()->index(0, 0));
         return popup()->focusWidget();
       }},
      {"a menu",
       [&]() -> QWidget* {
         auto* field = Wizard()->Page()->WidgetOf("txtName");
         QContextMenuEvent event(QContextMenuEvent::Keyboard, {1, 1}, field->mapToGlobal(QPoint(1, 1)));
         QApplication::sendEvent(field, &event);
         return popup();
       }},
  };
  TaskRecord other;
  other.categories = {{"Known", true}};
  storage_->Save(other, state_.Now());
  for (const auto& [from, target] : rows) {
    OpenWizard("new");
    Key(Qt::Key_Return);
    Type("name");
    Key(Qt::Key_Tab);
    QWidget* at = target();
    ASSERT_NE(at, nullptr) << from;
    if (popup() == nullptr) at->setFocus();
    QTest::keyClick(at, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(popup(), nullptr) << from;
    auto* actions = Wizard()->findChild<QListWidget*>();
    ASSERT_NE(actions, nullptr) << from;
    QTest::keyClick(actions, Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
    ASSERT_EQ(Wizard(), nullptr) << from;
    const TaskRecord saved = storage_->List().back();
    EXPECT_EQ(saved.description, "name") << from;
    const bool chosen = std::string(from) == "an open list";
    EXPECT_EQ(saved.categories, chosen ? other.categories : std::vector<CategoryRecord>{}) << from;
  }
}

// Leaving a changed task asks; Esc in the question goes on editing.
TEST_F(WindowsTest, EnterOnAnEmptyListPressesAndTheListHasTheFocusAfterDiscard) {
  list_->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(list_.get()));
  EXPECT_EQ(list_->focusWidget(), ListButton("new"));
  QTest::keyClick(list_->focusWidget(), Qt::Key_Return);
  ASSERT_NE(Wizard(), nullptr);
  QTest::keyClick(Wizard(), Qt::Key_Escape);
  const TaskRecord task = Put("a");
  OpenWizard("edit");
  Key(Qt::Key_Return);
  Type("changed");
  {
    const Answers answers({PressKey(Qt::Key_Escape), PressKey(Qt::Key_D, Qt::AltModifier)});
    Key(Qt::Key_Escape);
    ASSERT_NE(Wizard(), nullptr);
    Key(Qt::Key_Escape);
  }
  ASSERT_EQ(Wizard(), nullptr);
  EXPECT_EQ(storage_->List(), std::vector{task});
  ASSERT_TRUE(QTest::qWaitForWindowActive(list_.get()));
  EXPECT_EQ(QApplication::focusWidget(), list_->findChild<QTableView*>("tasks"));
}

TEST_F(WindowsTest, WidthsSetByHandStay) {
  TaskRecord task = Put("a");
  auto* table = list_->findChild<QTableView*>("tasks");
  const int fitted = table->columnWidth(TaskTableModel::kShortDescription);
  table->horizontalHeader()->resizeSection(TaskTableModel::kName, 321);
  task.name = task.short_description = std::string(80, 'x');
  storage_->Save(task, state_.Now());
  list_->Reload();
  EXPECT_EQ(table->columnWidth(TaskTableModel::kName), 321);
  EXPECT_GT(table->columnWidth(TaskTableModel::kShortDescription), fitted);
}

// Where it is typed, and what was typed before it stays.
TEST_F(WindowsTest, WhatCannotBeStoredIsRefusedInItsField) {
  TaskRecord task;
  task.name = "n";
  task.allow_automation_manager = true;
  task.recurrence = RecurrenceRecord{1, 0, 0, RecurrenceRecord::kFirstExecutionTime, DailyRecord{3, false}};
  const std::string long_name(kLongestName + 1, 'x');
  const struct Row {
    const char *page, *field;
    std::string typed, kept, told;
  } rows[] = {
      {"Plovix.DailyRecurrence", "txtDays", "2147483647", "2147483647", ""},
      {"Plovix.DailyRecurrence", "txtDays", "99999999999", "999999999",
       "largest number here is 2,147,483,647"},
      {"Plovix.DailyRecurrence", "txtDays", "3e10", "3e1", "largest number"},
      {"Plovix.DailyRecurrence", "txtDays", "many", "many", ""},
      {"Plovix.Details", "txtName", long_name, long_name.substr(1), "longer than 1,000 characters"},
      {"Plovix.Details", "cboCategory", long_name, long_name.substr(1), "longer than 1,000 characters"},
  };
  QLocale::setDefault(QLocale(QLocale::English));
  for (const auto& [page, name, typed, kept, told] : rows) {
    WizardWindow window(Parts(), task);
    ASSERT_TRUE(window.Start(page));
    window.show();
    QWidget* field = window.Page()->WidgetOf(name);
    auto* combo = qobject_cast<QComboBox*>(field);
    auto* line = combo != nullptr ? combo->lineEdit() : qobject_cast<QLineEdit*>(field);
    line->clear();
    for (const char letter : typed) line->insert(QString(QLatin1Char(letter)));
    EXPECT_EQ(FromQt(line->text()), kept) << name;
    const std::string said = FromQt(field->accessibleDescription());
    EXPECT_EQ(said.empty(), told.empty()) << name << said;
    EXPECT_THAT(said, HasSubstr(told));
    EXPECT_THAT(Told(*window.Page()), HasSubstr(said));
    QTest::keyClick(line, Qt::Key_Backspace);
    EXPECT_EQ(FromQt(field->accessibleDescription()), "") << "the next edit is another matter";
    window.Wizard().Cancel();
  }
  QLocale::setDefault(QLocale::C);
  WizardWindow window(Parts(), task);
  ASSERT_TRUE(window.Start("Plovix.Details"));
  window.show();
  auto* lines = qobject_cast<QPlainTextEdit*>(window.Page()->WidgetOf("txtDescription"));
  lines->setPlainText(QString("a\n").repeated(static_cast<int>(kLongestText) / 2).chopped(1));
  lines->moveCursor(QTextCursor::Start);
  QTest::keyClicks(lines, "abc");
  EXPECT_EQ(lines->toPlainText().size(), static_cast<qsizetype>(kLongestText));
  EXPECT_EQ(lines->textCursor().position(), 1);
  EXPECT_THAT(FromQt(lines->accessibleDescription()), HasSubstr("longer than"));
  window.Wizard().Cancel();
}

TEST_F(WindowsTest, WhatIsWrongWithAnActionIsSelected) {
  const ActionRecord log{"write-log", "", 0, 0, {{"text", "é😀 {Id} } x"}, {"file", "/x"}}};
  ActionDialog dialog(state_.texts, "Edit", {}, log, nullptr);
  dialog.show();
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  const auto* text = qobject_cast<QLineEdit*>(dialog.focusWidget());
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->selectedText(), "}");
  EXPECT_THAT(FromQt(text->accessibleDescription()), HasSubstr("Braces enclose the name of a field"));
  const ActionRecord sql{"run-sql", "", 0, 0, {{"statement", "DELETE\nFROM é WHERE x = '{Id}'"}}};
  ActionDialog other(state_.texts, "Edit", {}, sql, nullptr);
  other.accept();
  EXPECT_EQ(other.findChild<QPlainTextEdit*>()->textCursor().selectedText(), "{Id}");
}

}  // namespace
}  // namespace plovix::app
