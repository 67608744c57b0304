// The program's windows on a task file of the test's own, and what stands in for the person in front of them.
#pragma once

#include <gmock/gmock.h>
#include <plovix/component/entry_points.h>
#include <plovix/standalone/app/qt_dialogs.h>
#include <plovix/standalone/app/task_list_window.h>
#include <plovix/standalone/app/wizard_window.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/schedule/outlook.h>
#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QtTest>
#include <QtWidgets>
#include <functional>

namespace plovix::app {

// Answers the modal dialogs that a test expects, in order.
class Answers {
 public:
  explicit Answers(std::vector<std::function<void(QWidget*)>> steps) : steps_(std::move(steps)) {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      QWidget* box = QApplication::activeModalWidget();
      if (box == nullptr || !box->isActiveWindow() || box == last_ ||
          dynamic_cast<WizardWindow*>(box) != nullptr || next_ >= steps_.size()) {
        return;
      }
      last_ = box;
      steps_[next_++](box);
    });
    timer_.start(5);
  }
  ~Answers() { EXPECT_EQ(next_, steps_.size()) << "a dialog did not appear"; }

 private:
  std::vector<std::function<void(QWidget*)>> steps_;
  std::size_t next_ = 0;
  QPointer<QWidget> last_;  // forgets a closed box: the next one may stand at the same address
  QTimer timer_;
};

inline std::function<void(QWidget*)> PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  return [=](QWidget* box) { QTest::keyClick(box, key, modifiers); };
}

// The box must say so; then the key is pressed.
inline std::function<void(QWidget*)> Reads(const std::string& words, Qt::Key key,
                                           Qt::KeyboardModifiers modifiers = {}) {
  return [=](QWidget* box) {
    const auto* message = qobject_cast<QMessageBox*>(box);
    EXPECT_THAT(message != nullptr ? FromQt(message->text()) : "no message", testing::HasSubstr(words));
    QTest::keyClick(box, key, modifiers);
  };
}

// Enters the path in a file dialog, and agrees.
inline std::function<void(QWidget*)> ChooseFile(const QString& path) {
  return [path](QWidget* dialog) {
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path);
    qobject_cast<QDialog*>(dialog)->accept();
  };
}

// What the visible labels say, a line each.
inline std::string Told(const QWidget& window) {
  std::string told;
  for (const QLabel* label : window.findChildren<QLabel*>())
    if (label->isVisible()) told += FromQt(label->text()) + "\n";
  return told;
}

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() {
    state_.texts = LoadLanguage("en");
    state_.dialogs = &dialogs_;
    state_.marker_file = false;
    state_.data = data_;
    dialogs_.Use(tables_, FromQt(Path()));
    SetUser(state_, tables_, user_);
    storage_->SetGuard(GuardFor(tables_, user_.id, state_.texts));
    RegisterPages(registry_);
    InstallHost(state_);
    state_.open_rows = [this](const std::string& query) { return storage_->OpenRows(query); };
    list_ = std::make_unique<TaskListWindow>(Parts());
    list_->show();
  }
  ~ProgramTest() override { InstallServices({}); }

  [[nodiscard]] AppParts Parts() {
    return {state_, registry_, *storage_, tables_, user_, data_, runs_, control_, zone_};
  }
  [[nodiscard]] QString Path() const { return folder_.filePath("tasks ?#%'é.sqlite"); }
  [[nodiscard]] QPushButton* ListButton(const char* name) const {
    return list_->findChild<QPushButton*>(name);
  }
  [[nodiscard]] WizardWindow* Wizard() const { return list_->OpenWizard(); }
  [[nodiscard]] QPushButton* WizardButton(const char* name) const {
    return Wizard()->findChild<QPushButton*>(name);
  }
  // A key to whatever has the focus in the wizard, as a person types it.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QTest::keyClick(Wizard()->focusWidget(), key, modifiers);
  }
  void Type(const QString& text) const { QTest::keyClicks(Wizard()->focusWidget(), text); }
  [[nodiscard]] QString FocusName() const { return Wizard()->focusWidget()->objectName(); }
  void OpenWizard(const char* button) const {
    ListButton(button)->click();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Wizard()));
  }
  [[nodiscard]] QStringList Names() const {
    QStringList names;
    const auto* table = list_->findChild<QTableView*>("tasks");
    for (int row = 0; row < table->model()->rowCount(); ++row)
      names += table->model()->index(row, 0).data().toString();
    return names;
  }
  // Stores a task of this name and lists it.
  TaskRecord Put(const std::string& name) {
    TaskRecord task;
    task.name = name;
    task = storage_->Save(task, state_.Now());
    list_->Reload();
    return task;
  }
  QTemporaryDir folder_;
  HostState state_;
  QtDialogs dialogs_{state_};
  MemoryUsersAndTags tables_;
  UserRecord user_ = FirstAdministrator();
  std::shared_ptr<MemoryDataSource> data_ = std::make_shared<MemoryDataSource>();
  PageRegistry registry_;
  std::unique_ptr<SqliteStorage> storage_ = std::make_unique<SqliteStorage>(FromQt(Path()));
  SqliteRunStore runs_{FromQt(Path())};
  Zone zone_ = runs_.ScheduleZone();
  TaskControl control_{{.tasks = *storage_,
                        .runs = runs_,
                        .zone = zone_,
                        .now = [this] { return InstantOf(state_.clock, state_.clock_offset, zone_); },
                        .person = user_.id,
                        .user = [this] { return UserOf(tables_, user_.id); }}};
  std::unique_ptr<TaskListWindow> list_;
};

}  // namespace plovix::app
