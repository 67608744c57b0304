#include "pattern_page.h"

#include <plovix/framework/page_identifiers.h>

namespace plovix {

void AnyPatternPage::IWizardPage_GetNextPage(std::string& next) {
  using namespace page_identifier;
  const bool tags = Set(Task)->UsesLanguageTags();
  // Asked each time, because the user's rights may change while the wizard is open.
  const bool may_go_on = Set(Application()->UserRights())->HasRight(kRightGoOnWithLanguageTags);
  if (tags && !may_go_on) {
    next.clear();
    return;
  }
  next = Set(Task)->RecordMode() == record_mode::kQueryResults ? kQuery : kActions;
}

std::shared_ptr<PatternBase> AnyPatternPage::CurrentPattern() const {
  return Set(Set(Task)->Recurrence())->Pattern();
}

void AnyPatternPage::StorePattern(Statements& run, const char* key,
                                  const std::shared_ptr<PatternBase>& pattern, std::source_location where) {
  run([&] { Set(Store)->SetItem(key, ObjectRef(Set(pattern))); }, where);
  if (run.If([&] { return Set(Task)->Recurrence() != nullptr; }, where)) {
    run([&] { Set(Task->Recurrence())->SetPattern(Set(pattern)); }, where);
  }
}

void AnyPatternPage::AddTexts(Statements& run, ComboBox& list, int first, int last,
                              std::source_location where) {
  for (int id = first; id <= last; ++id) {
    const auto text = run.Read([&] { return GetString(id); }, where);
    list.AddItem(text.value_or(""));  // an entry's position is its meaning
  }
}

void AnyPatternPage::SelectEntry(ComboBox& list, std::int64_t position) {
  if (position < 0 || position >= list.Count()) {
    throw Failure(failure_number::kInvalidPropertyValue, "Invalid property value");
  }
  list.Select(static_cast<int>(position));
}

}  // namespace plovix
