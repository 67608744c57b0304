#include "pattern_page.h"

#include <plovix/framework/page_identifiers.h>

namespace plovix {

void AnyPatternPage::IWizardPage_GetNextPage(std::string& next) {
  using namespace page_identifier;
  const bool tags = Task->UsesLanguageTags();
  // Asked each time, because the user's rights may change while the wizard is open.
  const bool may_go_on = Application()->UserRights()->HasRight(kRightGoOnWithLanguageTags);
  if (tags && !may_go_on) {
    next.clear();
    return;
  }
  next = Task->RecordMode() == record_mode::kQueryResults ? kQuery : kActions;
}

Ref<PatternBase> AnyPatternPage::CurrentPattern() const {
  return Task->Recurrence()->Pattern();
}

void AnyPatternPage::StorePattern(RunAt run, const char* key, const Ref<PatternBase>& pattern) {
  run([&] { Store->SetItem(key, pattern.OrFail()); });
  if (run.If([&] { return Task->Recurrence() != nullptr; })) {
    run([&] { Task->Recurrence()->SetPattern(pattern.OrFail()); });
  }
}

void AnyPatternPage::AddTexts(RunAt run, ComboBox& list, int first, int last) {
  const EntryBatch batch(list);
  for (int id = first; id <= last; ++id) {
    const auto text = run.Read([&] { return GetString(id); });
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
