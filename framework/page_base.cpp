#include "page_base.h"

namespace plovix {
namespace {

constexpr int kTitleText = 4;
constexpr int kDescriptionText = 5;
constexpr int kTranslateFlag = 1;

}  // namespace

std::string PageBase::GetString(int id, const std::vector<std::string>& parameters) {
  return Application()->Language()->GetString(id, kModule, parameters);
}

int PageBase::MsgBox(int text_id, int buttons, const std::vector<std::string>& parameters) {
  const auto application = Application();
  return application->MsgBox(GetString(text_id, parameters), buttons, application->Title(), "");
}

std::string PageBase::IWizardPage_Title() {
  return GetString(kTitleText);
}

std::string PageBase::IWizardPage_Description() {
  return GetString(kDescriptionText);
}

void PageBase::Begin(Ref<WizardHost> host, Ref<ValueStore> store) {
  ended_ = false;
  Wizard = std::move(host);
  Store = std::move(store);
  Task = nullptr;
  for (OptionButton* option : Controls().OptionButtons()) option->Deselect();
  for (std::size_t i = 0; i < Controls().Count(); ++i) unread_.Add(Controls().At(i));
}

void PageBase::TranslateCaptions() {
  Application()->Translator()->TranslateControls(Controls(), kModule, kTranslateFlag);
}

void PageBase::IWizardPage_Terminate() {
  const Working working(*this);
  Wizard = nullptr;
  ended_ = true;
}

void PageBase::WorkEnds() {
  if (--working_ == 0 && ended_) Store = nullptr;
}

void CommonPage::IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> store) {
  Procedure("IWizardPage_Initialize", [&](Statements& run) {
    Begin(std::move(host), std::move(store));
    run([&] { TranslateCaptions(); });
    Prepare();
    RefreshWizard();
    run([&] { Controls().Redraw(); });
  });
}

// The answer is set last, so that the user stays on the page if a procedure is left before.
bool CommonPage::IWizardPage_CanChangePage(ChangeDirection direction) {
  bool answer = false;
  Procedure("IWizardPage_CanChangePage", [&](Statements& /*run*/) {
    if (direction == ChangeDirection::kBack) {
      if (SaveOnBack() == Outcome::kLeft) return;
    } else if (direction != ChangeDirection::kCancel) {
      if (!Validate() || SaveValues() == Outcome::kLeft) return;
    }
    answer = true;
  });
  return answer;
}

Outcome CommonPage::RefreshWizard() {
  return Procedure("RefreshWizard", [&](Statements& run) {
    const auto wizard = Wizard;  // held, because it may end the page
    if (!wizard) return;
    std::optional<bool> flag;
    run([&] { flag = CanContinue(); });
    if (flag) run([&] { wizard->Refresh(*flag); });
  });
}

void CommonPage::TakeTask(RunAt run) {
  if (!run.If([&] { return Store->Exists(store_key::kAutoTask); })) return;
  run([&] { Task = ObjectFrom<AutoTask>(Store->Item(store_key::kAutoTask)->Value()); });
}

void CommonPage::Choose(RunAt run, OptionButton& option) {
  run([&] { option.SetFocus(); });
  run([&] { option.Select(); });
}

}  // namespace plovix
