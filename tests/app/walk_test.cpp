// A random walk through the wizard's window: every act is one of mouse and keys on the widgets, and what they
// show is what the controls hold. Tasks go to a file and come back from it.
#include <plovix/standalone/app/wizard_window.h>
#include <plovix/standalone/storage/sqlite_storage.h>

#include "tests/support/qt_hand.h"
#include "tests/support/walker.h"

namespace plovix::app {
namespace {

using namespace testing_support;

class WalkedWindow final : public Walked {
 public:
  WalkedWindow(Scene& scene, TaskStorage& storage)
      : parts_{scene.state, scene.registry, storage, tables_, user_, scene.data} {}

  void Open(const TaskRecord& task, const Entries& entries, const std::string& first) override {
    window_ = std::make_unique<WizardWindow>(parts_, task, entries);
    window_->Start(first);
    window_->show();
    window_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    hand_ = std::make_unique<QtHand>([this] { return window_->Page(); }, *Find(Button::kCancel));
  }
  VeloWiz& Wizard() override { return window_->Wizard(); }
  Hand& UsersHand() override { return *hand_; }

  // Cancel may ask whether what was entered is to be thrown away: in turn it is and is not.
  bool Press(Button button) override {
    QPushButton* pressed = Find(button);
    const bool enabled = pressed->isEnabled();
    if (button == Button::kCancel) {
      QTimer::singleShot(0, pressed, [this] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box != nullptr) box->buttons().at(++discarded_ % 2)->click();
      });
    }
    ClickOn(pressed);
    window_->activateWindow();  // as a window manager does when the question is gone
    return enabled;
  }

  void Check() override {
    hand_->Settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const Form& form = *Wizard().Controls();
    for (std::size_t i = 0; i < form.Count(); ++i) {
      const auto* slot = dynamic_cast<HostSlot*>(&form.At(i));
      EXPECT_EQ(hand_->Seen(form.At(i)), Held(form.At(i))) << form.At(i).Name();
      if (slot == nullptr) continue;
      const auto* rows = window_->Page()->WidgetOf(slot->Name())->findChild<QListWidget*>();
      EXPECT_EQ(rows->count(), dynamic_cast<VeloActionList&>(*slot->Embedded()).Rows().size());
    }
    EXPECT_EQ((WizardButtons{IsOn(Button::kBack), IsOn(Button::kNext), IsOn(Button::kFinish),
                             IsOn(Button::kCancel)}),
              Wizard().Buttons());
    // Nobody watches the focus in a control of the host's own.
    const Control* focused = form.Focused();
    const bool watched = focused != nullptr && focused->GetKind() != Kind::kHostSlot;
    EXPECT_TRUE(!watched || hand_->Focused(form) == focused) << focused->Name();
  }

 private:
  [[nodiscard]] QPushButton* Find(Button button) const {
    constexpr std::array names{"back", "next", "finish", "cancel"};
    return window_->findChild<QPushButton*>(names.at(static_cast<std::size_t>(button)));
  }
  [[nodiscard]] bool IsOn(Button button) const { return Find(button)->isEnabled(); }

  MemoryUsersAndTags tables_;
  UserRecord user_ = FirstAdministrator();
  AppParts parts_;
  std::unique_ptr<WizardWindow> window_;
  std::unique_ptr<Hand> hand_;
  int discarded_ = 0;
};

TEST(Walk, ThroughTheWindow) {
  const QTemporaryDir folder;
  Scene scene;
  SqliteStorage storage(folder.filePath("tasks.sqlite").toStdString());
  WalkedWindow window(scene, storage);
  Walker(scene, storage, window).Walk(3'000);
}

}  // namespace
}  // namespace plovix::app
