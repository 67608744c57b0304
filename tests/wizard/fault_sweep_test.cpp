// The fault sweep over the whole wizard, from opening a stored task to Finish: whatever fails on the way,
// nothing half-saved reaches the storage.
#include <plovix/framework/page_identifiers.h>

#include "tests/support/faults.h"
#include "tests/support/snapshot.h"

namespace plovix {
namespace {

using namespace testing_support;

class WizardSweep {
 public:
  // Walks as far as the faults let it; gives the number of host calls.
  int Walk(const State& state, int n, Times times, int answer) {
    Scene scene;
    scene.state.language_tag_mode = state.application_tags;
    const TaskRecord stored = scene.storage.Save(RecordOf(state), {});
    int retries = 0;
    scene.dialogs.on_report = [&](const FailureReport&) {
      return answer == 0 && times == Times::kForEver && ++retries > kRetriesWhileItLasts ? 2 : answer;
    };
    VeloWiz wizard(scene.Parts(), stored, EntriesOf(state));
    int calls = 0;
    {
      Injector injector(n, times);
      wizard.Open(page_identifier::kAutoTaskType);
      for (int step = 0; step < 12 && wizard.IsOpen(); ++step) Step(wizard);
      calls = static_cast<int>(injector.calls.size());
    }
    const bool finished = wizard.End() == WizardEnd::kFinished;
    EXPECT_EQ(scene.storage.List(), std::vector{finished ? wizard.Saved() : stored});
    if (finished) {
      EXPECT_EQ(TaskFields(wizard.Saved()), TaskFields(wizard.Task().Record()));
    }
    if (n == 0 || (answer == 0 && times != Times::kForEver && scene.dialogs.reports.size() == 1 &&
                   scene.dialogs.reports[0].line != 0)) {
      if (n == 0) fault_free_ = {finished, TaskFields(scene.storage.List()[0])};
      EXPECT_EQ(std::pair(finished, TaskFields(scene.storage.List()[0])), fault_free_);
    }
    EXPECT_TRUE(!wizard.IsOpen() || wizard.Cancel());
    EXPECT_EQ(scene.storage.List(), std::vector{finished ? wizard.Saved() : stored});
    return calls;
  }
  [[nodiscard]] bool FinishesWithoutFault() const { return fault_free_.first; }

 private:
  static void Step(VeloWiz& wizard) {
    const auto form = wizard.Controls();
    for (std::size_t i = 0; i < form->Count(); ++i) {
      auto* box = dynamic_cast<TextBox*>(&form->At(i));
      if (box != nullptr) wizard.User().Type(*box, "9");
    }
    if (!wizard.Next()) wizard.Finish();
  }
  std::pair<bool, Snapshot> fault_free_;
};

TEST(WizardFaultSweep, NothingHalfSavedReachesTheStorage) {
  int finished = 0;
  for (const State& state : kStates) {
    if (state.application_tags) continue;  // the pages' own sweep covers the tags
    WizardSweep sweep;
    const int calls = sweep.Walk(state, 0, Times::kOnce, 2);
    for (int n = 1; n <= calls; ++n) {
      for (const Times times : {Times::kOnce, Times::kTwice, Times::kForEver}) {
        for (const int answer : {0, 1, 2}) {
          SCOPED_TRACE(testing::Message() << state.name << ", call " << n << ", answer " << answer);
          sweep.Walk(state, n, times, answer);
          if (testing::Test::HasFailure()) return;
        }
      }
    }
    finished += sweep.FinishesWithoutFault() ? 1 : 0;
  }
  EXPECT_GE(finished, 4);
}

}  // namespace
}  // namespace plovix
