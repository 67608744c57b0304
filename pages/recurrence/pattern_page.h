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
  [[nodiscard]] std::shared_ptr<PatternBase> CurrentPattern() const;
  // Puts the working object into the store and, if the task has a recurrence, makes it the task's pattern.
  void StorePattern(Statements& run, const char* key, const std::shared_ptr<PatternBase>& pattern,
                    std::source_location where);
  // Chooses the line according to the pattern, `relative` or `specific`; neither if that cannot be read.
  template <class Expression>
  void LoadLine(Statements& run, OptionButton& relative, OptionButton& specific, Expression&& is_relative,
                std::source_location where = std::source_location::current()) {
    bool answer = false;
    if (Load(
            run, relative, [&] { answer = is_relative(); }, where))
      Choose(run, answer ? relative : specific, where);
  }
  // Appends the texts `first` to `last` to the list, with an empty entry for a text that fails.
  static void AddTexts(Statements& run, ComboBox& list, int first, int last,
                       std::source_location where = std::source_location::current());
  // Selects the entry at a 0-based position; fails with 380 outside the list.
  static void SelectEntry(ComboBox& list, std::int64_t position);
};

// PatternType: the page's pattern interface; kKey: its key in the shared store; kNew: creates a new object.
template <class PatternType, const char* kKey, std::shared_ptr<PatternType> (ObjectFactory::*kNew)()>
class PatternPage : public AnyPatternPage {
 public:
  using AnyPatternPage::AnyPatternPage;

 protected:
  // Gets the task, then the working object: the store's, else the task's own if it is of this page's kind,
  // else a new one. A pattern of another kind stays the task's until this page saves. If an existing one
  // cannot be read, there is no working object, because nothing may replace it.
  void TakePattern(Statements& run, std::source_location where = std::source_location::current()) {
    Pattern = nullptr;
    TakeTask(run, where);
    const auto held = run.Read([&] { return Set(Store)->Exists(kKey); }, where);
    if (!held) return;
    if (*held) {
      run([&] { Pattern = ObjectFrom<PatternType>(Set(Set(Store)->Item(kKey))->Value()); }, where);
      return;
    }
    const auto current = run.Read([&] { return CurrentPattern(); }, where);
    if (!current) return;
    Pattern = std::dynamic_pointer_cast<PatternType>(*current);
    if (!Pattern) run([&] { Pattern = ((*Services().Factory()).*kNew)(); }, where);
  }
  void StorePattern(Statements& run, std::source_location where = std::source_location::current()) {
    AnyPatternPage::StorePattern(run, kKey, Pattern, where);
  }
  // Immediately sets a number of the pattern that is not yet set to 1.
  void SetUnsetToOne(Statements& run, std::int32_t (PatternType::*get)(),
                     void (PatternType::*set)(std::int32_t),
                     std::source_location where = std::source_location::current()) {
    const auto unset = [&] { return ((*Set(Pattern)).*get)() == 0; };
    if (run.If(unset, where)) run([&] { ((*Set(Pattern)).*set)(1); }, where);
  }

  std::shared_ptr<PatternType> Pattern;  // the working object
};

}  // namespace plovix
