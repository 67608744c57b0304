// Base of the four pattern pages: how a page gets its working pattern object and stores it, and which page
// follows.
#pragma once

#include "numeric_page.h"

namespace plovix {

// What does not depend on the kind of pattern.
class AnyPatternPage : public NumericPage {
 public:
  using NumericPage::NumericPage;
  // No page follows for a user who may not go on with a task that uses language tags.
  void IWizardPage_GetNextPage(std::string& next) final;

 protected:
  // The task's current pattern object; null if it has none.
  [[nodiscard]] Ref<PatternBase> CurrentPattern() const;
  // Puts the working object into the store and, if the task has a recurrence, makes it the task's pattern.
  void StorePattern(RunAt run, const char* key, const Ref<PatternBase>& pattern);
  // Chooses the line according to the pattern, `relative` or `specific`; neither if that cannot be read.
  template <class Expression>
  void LoadLine(RunAt run, OptionButton& relative, OptionButton& specific, Expression&& is_relative) {
    bool answer = false;
    const auto read = [&] { answer = is_relative(); };
    if (Load(run.statements, relative, read, run.where)) Choose(run, answer ? relative : specific);
  }
  // Appends the texts `first` to `last` to the list, with an empty entry for a text that fails.
  static void AddTexts(RunAt run, ComboBox& list, int first, int last);
  // Selects the entry at a 0-based position; fails with 380 outside the list.
  static void SelectEntry(ComboBox& list, std::int64_t position);
};

// PatternType: the page's pattern interface; kKey: its key in the shared store; kNew: creates a new object.
template <class PatternType, const char* kKey, Ref<PatternType> (ObjectFactory::*kNew)()>
class PatternPage : public AnyPatternPage {
 public:
  using AnyPatternPage::AnyPatternPage;

 protected:
  // Gets the task, then the working object: the store's, else the task's own if it is of this page's kind,
  // else a new one. A pattern of another kind stays the task's until this page saves. If an existing one
  // cannot be read, there is no working object, because nothing may replace it.
  void TakePattern(RunAt run) {
    Pattern = nullptr;
    TakeTask(run);
    const auto held = run.Read([&] { return Store->Exists(kKey); });
    if (!held) return;
    if (*held) {
      run([&] { Pattern = ObjectFrom<PatternType>(Store->Item(kKey)->Value()); });
      return;
    }
    const auto current = run.Read([&] { return CurrentPattern(); });
    if (!current) return;
    Pattern = As<PatternType>(*current);
    if (!Pattern) run([&] { Pattern = ((*Services().Factory()).*kNew)(); });
  }
  void StorePattern(RunAt run) { AnyPatternPage::StorePattern(run, kKey, Pattern); }
  // Immediately sets a number of the pattern that is not yet set to 1.
  void SetUnsetToOne(RunAt run, std::int32_t (PatternType::*get)(), void (PatternType::*set)(std::int32_t)) {
    if (run.If([&] { return ((*Pattern).*get)() == 0; })) run([&] { ((*Pattern).*set)(1); });
  }

  Ref<PatternType> Pattern;  // the working object
};

}  // namespace plovix
