#include "details.h"

#include <plovix/framework/page_identifiers.h>
#include <plovix/framework/text_rules.h>

namespace plovix {
namespace {

constexpr int kNameMissingText = 27;
constexpr int kDescriptionMissingText = 28;
constexpr int kDataObjectMissingText = 29;
const char* const kForceUserTaskFile = "forceusertask.txt";

}  // namespace

Details::Details() {
  txtName.On(Event::kLostFocus, [this] { txtName_LostFocus(); });
  cmdNameLangTag.On(Event::kClick, [this] { ChooseTag("cmdNameLangTag_Click", NameTag, txtName); });
  cmdDescriptionLangTag.On(
      Event::kClick, [this] { ChooseTag("cmdDescriptionLangTag_Click", DescriptionTag, txtDescription); });
  cmdShortDescriptionLangTag.On(Event::kClick, [this] {
    ChooseTag("cmdShortDescriptionLangTag_Click", ShortDescriptionTag, txtShortDescription);
  });
  Controls().OnShow([this] { UserControl_Show(); });
  for (Control* locked : std::initializer_list<Control*>{&cboCategory, &cboDataObject, &chkSkipRowSelection,
                                                         &chkPersonalTask, &lblPermissions}) {
    locked->SetEnabled(false);
  }
  cmdCategoryLangTag.SetVisible(false);
}

void Details::IWizardPage_GetNextPage(std::string& next) {
  using namespace page_identifier;
  if (Importing) {
    next.clear();
    return;
  }
  const std::int16_t mode = Set(Task)->RecordMode();
  if (chkAutoMan.Checked()) {
    next = mode != record_mode::kNoData ? kRecords : kRecurrenceTime;
  } else {
    next = mode == record_mode::kQueryResults ? kQuery : kActions;
  }
}

void Details::Prepare() {
  RetrieveValues();
  InitControls();
}

// Category, data object and the settings but one are shown as they are stored. SaveValues does not write
// them, so they stay locked.
Outcome Details::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    run([&] { Task = ObjectFrom<AutoTask>(Set(Store)->GetValue(store_key::kAutoTask, {})); });
    run([&] { Importing = BooleanFrom(Set(Store)->GetValue(store_key::kImporting, false)); });
    TaggedTask = IsTaggedTask();
    run([&] { chkAutoMan.SetEnabled(MayBeAutomatic()); });
    run([&] { chkAutoMan.SetValue(Set(Task)->AllowAutomationManager() ? 1 : 0); });
    run([&] { chkPersonalTask.SetValue(Set(Task)->Owner().empty() ? 0 : 1); });
    run([&] { chkSkipRowSelection.SetValue(Set(Task)->SkipRowSelection() ? 1 : 0); });
    std::shared_ptr<CategoryList> categories;
    run([&] { categories = Set(Set(Task)->Categories()); });
    std::int32_t count = 0;
    if (categories) run([&] { count = categories->Count(); });
    if (count == 1) run([&] { cboCategory.SetText(Set(categories->Item(1))->Text()); });
    if (count > 1) cboCategory.SetText("...");
  });
}

// A task on a single record runs where that record is; an imported one is settled where it came from.
bool Details::MayBeAutomatic() const {
  return Set(Task)->RecordMode() != record_mode::kSingleRecord && !Importing &&
         BooleanFrom(Set(Store)->GetValue(store_key::kAllowAutomationManager, true));
}

bool Details::IsTaggedTask() {
  bool answer = false;
  Procedure("IsTaggedTask", [&](Statements& run) {
    if (run.If([&] { return Set(Task)->UsesLanguageTags(); })) {
      answer = true;
      return;
    }
    std::string marker;
    run([&] {
      marker = ServicesUtilities().BuildPath(Services().Application()->Path(), kForceUserTaskFile);
    });
    if (run.If([&] { return ServicesUtilities().FileExists(marker); })) return;
    run([&] { answer = Services().Application()->LanguageTagMode(); });
  });
  return answer;
}

Outcome Details::InitControls() {
  return Procedure("InitControls", [&](Statements& run) {
    std::string data_object;
    run([&] { data_object = Set(Task)->DataObjectName(); });
    if (!data_object.empty()) {
      run([&] { cboDataObject.AddItem(Task->DataObjectCaption()); });
      run([&] { cboDataObject.Select(0); });
    }
    for (TextBox* box : {&txtName, &txtDescription, &txtShortDescription}) box->SetEnabled(!TaggedTask);
    for (CommandButton* button : {&cmdNameLangTag, &cmdDescriptionLangTag, &cmdShortDescriptionLangTag}) {
      button->SetVisible(TaggedTask);
    }
    if (TaggedTask) {
      run([&] { NameTag = Set(Task)->NameTag(); });
      run([&] { DescriptionTag = Set(Task)->DescriptionTag(); });
      run([&] { ShortDescriptionTag = Set(Task)->ShortDescriptionTag(); });
      run([&] { txtName.SetText(Set(Task)->LocalizedName()); });
      run([&] { txtDescription.SetText(Set(Task)->LocalizedDescription()); });
      run([&] { txtShortDescription.SetText(Set(Task)->LocalizedShortDescription()); });
    } else {
      run([&] { txtName.SetText(Set(Task)->Name()); });
      run([&] { txtDescription.SetText(Set(Task)->Description()); });
      run([&] { txtShortDescription.SetText(Set(Task)->ShortDescription()); });
    }
  });
}

void Details::ChooseTag(std::string_view procedure, std::string& tag, TextBox& box) {
  Procedure(procedure, [&](Statements& run) {
    if (!TaggedTask) return;
    run([&] { tag = Services().Application()->Language()->EditTag(tag, nullptr); });
    run([&] { box.SetText(Services().Application()->Language()->TagText(tag, nullptr)); });
  });
}

// A description that holds anything, blanks included, is never overwritten.
void Details::txtName_LostFocus() {
  Procedure("txtName_LostFocus", [&](Statements& run) {
    if (txtDescription.Text().empty()) run([&] { txtDescription.SetText(txtName.Text()); });
  });
}

void Details::UserControl_Show() {
  Procedure("UserControl_Show", [&](Statements& run) {
    if (!run.If([&] { return Services().Application()->UserRights()->HasRight(kRightEditCategories); }))
      return;
    run([&] { Services().Application()->Translator()->SetLinkStyle(lblCategory, true); });
  });
}

bool Details::Validate() {
  bool answer = false;
  Procedure("Validate", [&](Statements& run) {
    if (Trimmed(txtName.Text()).empty()) {
      run([&] { MsgBox(kNameMissingText, message_box::kOkInformation); });
      return;
    }
    if (Trimmed(txtDescription.Text()).empty()) {
      run([&] { MsgBox(kDescriptionMissingText, message_box::kOkInformation); });
      return;
    }
    const bool needs_data = run.If([&] { return Set(Task)->RecordMode() != record_mode::kNoData; });
    if (needs_data && cboDataObject.Index() == -1) {
      run([&] { MsgBox(kDataObjectMissingText, message_box::kOkWarning); });
      return;
    }
    answer = true;
  });
  return answer;
}

Outcome Details::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    if (TaggedTask) {
      run([&] { Set(Task)->SetNameTag(NameTag); });
      run([&] { Set(Task)->SetDescriptionTag(DescriptionTag); });
      run([&] { Set(Task)->SetShortDescriptionTag(ShortDescriptionTag); });
    } else {
      run([&] { Set(Task)->SetName(txtName.Text()); });
      run([&] { Set(Task)->SetDescription(txtDescription.Text()); });
      run([&] { Set(Task)->SetShortDescription(txtShortDescription.Text()); });
    }
    run([&] { Set(Task)->SetAllowAutomationManager(chkAutoMan.Checked()); });
    // What the automation manager does not run has no schedule.
    if (run.If([&] { return !Set(Task)->AllowAutomationManager(); })) {
      run([&] { Set(Task)->SetProcessingMode(processing_mode::kEveryTime); });
      run([&] { Set(Task)->SetRecurrence(nullptr); });
    }
  });
}

}  // namespace plovix
