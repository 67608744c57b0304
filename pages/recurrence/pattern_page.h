// Base of the four pattern pages: how a page takes its working pattern object and gives it back, and the
// page that follows.
#pragma once

#include "numeric_page.h"

namespace plovix {

// What does not depend on the kind of pattern.
class AnyPatternPage : public NumericPage {
 public:
  using NumericPage::NumericPage;
  // Nothing follows for a user who may not go on with a task of language tags.
  void IWizardPage_GetNextPage(std::string& next) final;

 protected:
  // The task's current pattern object; nothing when it has none.
  [[nodiscard]] Ref<PatternBase> CurrentPattern() const;
  // Puts the working object into the store and, where the task has a recurrence, makes it the task's pattern.
  void StorePattern(RunAt run, const char* key, const Ref<PatternBase>& pattern);
  // Chooses the line that the pattern says, `relative` or `specific`; neither where that cannot be read.
  template <class Expression>
  void LoadLine(RunAt run, OptionButton& relative, OptionButton& specific, Expression&& is_relative) {
    bool answer = false;
    const auto read = [&] { answer = is_relative(); };
    if (Load(run.statements, relative, read, run.where)) Choose(run, answer ? relative : specific);
  }
  // Appends the texts `first` to `last` to the list; an empty one where a text cannot be had.
  static void AddTexts(RunAt run, ComboBox& list, int first, int last);
  // Selects the entry at a 0-based position; fails with 380 outside the list.
  static void SelectEntry(ComboBox& list, std::int64_t position);
};

// PatternType: the page's pattern interface; kKey: its key in the shared store; kNew: makes a fresh object.
template <class PatternType, const char* kKey, Ref<PatternType> (ObjectFactory::*kNew)()>
class PatternPage : public AnyPatternPage {
 public:
  using AnyPatternPage::AnyPatternPage;

 protected:
  // Takes the task, then the working object: the store's; else the task's own when it is of this page's kind;
  // else a new one. A pattern of another kind stays the task's until this page saves. Without one where
  // what there is could not be read: nothing may take its place.
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
  // Gives a number of the pattern that is not yet set the value 1, at once.
  void SetUnsetToOne(RunAt run, std::int32_t (PatternType::*get)(), void (PatternType::*set)(std::int32_t)) {
    if (run.If([&] { return ((*Pattern).*get)() == 0; })) run([&] { ((*Pattern).*set)(1); });
  }

  Ref<PatternType> Pattern;  // the working object
};

}  // namespace plovix
