// The policies of a task, and what holds for the keys of all windows of runs.
#include <plovix/standalone/running/history_window.h>
#include <plovix/standalone/running/policies_dialog.h>
#include <plovix/standalone/running/run_details_window.h>

#include <map>

#include "tests/running/running_support.h"

namespace plovix::app {
namespace {

using std::chrono::seconds;

class PoliciesTest : public RunningTest {
 protected:
  static void Choose(PoliciesDialog& dialog, const char* name, int entry) {
    dialog.findChild<QComboBox*>(name)->setCurrentIndex(entry);
  }
  [[nodiscard]] TaskPolicies Stored() { return runs.State(1)->policies; }
};

TEST_F(PoliciesTest, StoresWhatWasChosenAndKeepsWhatItDoesNotShow) {
  const TaskPolicies former{MissedPolicy::kOnce,
                            7,
                            OverlapPolicy::kQueue,
                            2,
                            InterruptedPolicy::kLeave,
                            ShortMonth::kSkip,
                            seconds{std::int64_t{3600} << 32}};
  runs.SetPolicies(1, former, {});
  {
    PoliciesDialog dialog(Parts(), 1, nullptr);
    Show(dialog);
    EXPECT_FALSE(dialog.Changed());
    EXPECT_EQ(dialog.Policies(), former);
    EXPECT_THAT(Told(dialog), HasSubstr("nothing is processed twice"));
    Choose(dialog, "policies.missed", 1);
    EXPECT_TRUE(dialog.Changed());
    dialog.accept();
    EXPECT_FALSE(dialog.isVisible());
  }
  TaskPolicies wanted = former;
  wanted.missed = MissedPolicy::kNone;
  EXPECT_EQ(Stored(), wanted);
  const struct Limit {
    int entry, number;
    std::int64_t stored;
  } limits[] = {{1, 90, 90}, {2, 90, 5400}, {3, 2, 7200}, {0, 0, 0}};
  for (const auto& [entry, number, stored] : limits) {
    PoliciesDialog dialog(Parts(), 1, nullptr);
    Choose(dialog, "policies.limit", entry);
    if (entry > 0) dialog.findChild<QSpinBox*>("policies.limitNumber")->setValue(number);
    dialog.accept();
    EXPECT_EQ(Stored().limit, seconds{stored}) << entry;
    EXPECT_FALSE(PoliciesDialog(Parts(), 1, nullptr).Changed()) << "shown as it is stored";
  }
}

TEST_F(PoliciesTest, SomebodyElsesChangeInBetweenIsToldAndKept) {
  PoliciesDialog dialog(Parts(), 1, nullptr);
  Show(dialog);
  Choose(dialog, "policies.overlap", 1);
  TaskPolicies theirs;
  theirs.retries = 5;
  runs.SetPolicies(1, theirs, {});
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_THAT(Told(dialog), HasSubstr("somebody else has changed"));
  EXPECT_EQ(dialog.findChild<QSpinBox*>("policies.retries")->value(), 5);
  EXPECT_EQ(Stored(), theirs) << "nothing is stored yet";
  dialog.accept();
  EXPECT_FALSE(dialog.isVisible());
  theirs.overlap = OverlapPolicy::kQueue;
  EXPECT_EQ(Stored(), theirs);
}

TEST_F(PoliciesTest, TheZoneIsAnAdministratorsAndOneThatExists) {
  std::vector<std::string> set;
  RunParts parts = Parts();
  parts.set_zone = [&](const std::string& zone) { set.push_back(zone); };
  PoliciesDialog dialog(parts, 1, nullptr);
  Show(dialog);
  auto* zone = dialog.findChild<QComboBox*>("policies.zone");
  zone->setCurrentText("Europe/Nowhere");
  dialog.accept();
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_THAT(Told(dialog), HasSubstr("knows no time zone of this name"));
  zone->setCurrentText("Europe/Lisbon");
  dialog.accept();
  EXPECT_THAT(set, ElementsAre("Europe/Lisbon"));
  user = User("ben");
  PoliciesDialog viewer(Parts(), 1, nullptr);
  Show(viewer);
  EXPECT_EQ(viewer.findChild<QComboBox*>("policies.zone"), nullptr);
  EXPECT_FALSE(viewer.findChild<QComboBox*>("policies.missed")->isEnabled());
  EXPECT_THAT(Told(viewer), HasSubstr("but not change it"));
  tasks.Delete(1, 1);
  EXPECT_THROW(PoliciesDialog(Parts(), 1, nullptr), Failure);
}

// Each letter leads to one place, and Tab goes everywhere and comes back.
TEST_F(PoliciesTest, MnemonicsAreUniqueAndTabReachesEverything) {
  const RunRecord run = Running(1);
  Finish(run, kPartly, "why", {{"i:1", LedgerState::kFailed, "", run.id, "why"}});
  RunParts parts = Parts();
  parts.set_zone = [](const std::string&) {};
  for (const char* language : {"en", "fr"}) {
    texts = LoadLanguage(language);
    HistoryWindow history(parts, std::nullopt, nullptr);
    RunDetailsWindow details(parts, *runs.Run(run.id), nullptr);
    PoliciesDialog policies(parts, 1, nullptr);
    for (QDialog* window : std::initializer_list<QDialog*>{&history, &details, &policies}) {
      Show(*window);
      std::map<QChar, QStringList> places;
      const auto add = [&](const QString& caption) {
        const auto at = caption.indexOf(u'&');
        if (at >= 0) places[caption[at + 1].toCaseFolded()] += caption;
      };
      for (const QLabel* label : window->findChildren<QLabel*>())
        if (label->buddy() != nullptr) add(label->text());
      for (const QAbstractButton* button : window->findChildren<QAbstractButton*>()) add(button->text());
      for (const QTabBar* bar : window->findChildren<QTabBar*>())
        for (int tab = 0; tab < bar->count(); ++tab) add(bar->tabText(tab));
      for (const auto& [letter, captions] : places)
        EXPECT_EQ(captions.size(), 1) << language << FromQt(captions.join(u", "));
      EXPECT_GE(places.size(), 2U);
      std::set<const QWidget*> reached;
      for (const QWidget* at = window->focusWidget(); reached.insert(at).second; at = window->focusWidget())
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      for (const QWidget* part : window->findChildren<QWidget*>()) {
        const bool stop = part->isVisible() && part->isEnabled() && part->focusProxy() == nullptr &&
                          (part->focusPolicy() & Qt::TabFocus) != 0 && !part->inherits("QAbstractScrollArea");
        EXPECT_TRUE(!stop || reached.contains(part)) << language << part->metaObject()->className();
      }
      window->close();
    }
  }
}

}  // namespace
}  // namespace plovix::app
