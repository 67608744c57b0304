#include "details.h"

#include <plovix/framework/page_identifiers.h>
#include <plovix/framework/raised.h>
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
  cmdNameLangTag.On(Event::kClick, [this] { ChooseTag("cmdNameLangTag_Click", NameTag, nullptr, txtName); });
  cmdDescriptionLangTag.On(Event::kClick, [this] {
    ChooseTag("cmdDescriptionLangTag_Click", DescriptionTag, nullptr, txtDescription);
  });
  cmdShortDescriptionLangTag.On(Event::kClick, [this] {
    ChooseTag("cmdShortDescriptionLangTag_Click", ShortDescriptionTag, nullptr, txtShortDescription);
  });
  cmdCategoryLangTag.On(Event::kClick, [this] {
    ChooseTag("cmdCategoryLangTag_Click", CategoryTag, CategoryTags, cboCategory);
  });
  lblCategory.On(Event::kClick, [this] { ShowCategoriesEditor(); });
  cboCategory.On(Event::kDropDown, [this] { cboCategory_DropDown(); });
  cboDataObject.On(Event::kDropDown, [this] { cboDataObject_DropDown(); });
  cboDataObject.On(Event::kClick, [this] { cboDataObject_Click(); });
  chkPersonalTask.On(Event::kClick, [this] { chkPersonalTask_Click(); });
  chkAutoMan.On(Event::kClick, [this] { chkAutoMan_Click(); });
  lblPermissions.On(Event::kClick, [this] { lblPermissions_Click(); });
  Controls().OnShow([this] { UserControl_Show(); });
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
  if (!CategoriesLoaded) RetrieveCategories();
}

Outcome Details::RetrieveValues() {
  const Raised loading(Loading);
  return Procedure("RetrieveValues", [&](Statements& run) {
    run([&] { Task = ObjectFrom<AutoTask>(Set(Store)->GetValue(store_key::kAutoTask, {})); });
    run([&] {
      DataObjects = ObjectFrom<DataObjectCollection>(Set(Store)->GetValue(store_key::kDataObjects, {}));
    });
    run([&] { Importing = BooleanFrom(Set(Store)->GetValue(store_key::kImporting, false)); });
    run([&] { CreateGroup = BooleanFrom(Set(Store)->GetValue(store_key::kCreateGroup, false)); });
    run([&] { CreatePersonal = BooleanFrom(Set(Store)->GetValue(store_key::kCreatePersonal, false)); });
    TaggedTask = IsTaggedTask();
    RetrieveSettings(run);
    RetrieveOwnCategories(run);
    ShowCategoryInfo();
  });
}

bool Details::IsTaggedTask() {
  bool answer = false;
  Procedure("IsTaggedTask", [&](Statements& run) {
    if (run.If([&] { return Set(Task)->UsesLanguageTags(); })) {
      answer = true;
      return;
    }
    std::string marker;
    run([&] { marker = ServicesUtilities().BuildPath(Application()->Path(), kForceUserTaskFile); });
    if (run.If([&] { return ServicesUtilities().FileExists(marker); })) return;
    run([&] { answer = Application()->LanguageTagMode(); });
  });
  return answer;
}

Outcome Details::InitControls() {
  return Procedure("InitControls", [&](Statements& run) {
    InitDataObjects(run);
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

template <class Box>
void Details::ChooseTag(std::string_view procedure, std::string& tag,
                        const std::shared_ptr<TextCollection>& choices, Box& box) {
  Procedure(procedure, [&](Statements& run) {
    if (!TaggedTask) return;
    run([&] { tag = Set(Application()->Language())->EditTag(tag, choices); });
    run([&] { box.SetText(Set(Application()->Language())->TagText(tag, nullptr)); });
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
    if (!run.If([&] { return Set(Application()->UserRights())->HasRight(kRightEditCategories); })) return;
    run([&] { Set(Application()->Translator())->SetLinkStyle(lblCategory, true); });
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
    if (!chkAutoMan.Checked())
      run([&] { Set(Store)->SetItem(store_key::kPersonalTask, chkPersonalTask.Checked()); });
    run([&] { Set(Store)->SetItem(store_key::kDataObject, ObjectRef(DataObject)); });
    run([&] { Set(Store)->SetItem(store_key::kDataObjects, ObjectRef(DataObjects)); });
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
    run([&] {
      Set(Task)->SetSkipRowSelection(ServicesUtilities().CheckToBool(chkSkipRowSelection.Value()));
    });
    // What the automation manager does not run has no schedule.
    if (run.If([&] { return !Set(Task)->AllowAutomationManager(); })) {
      run([&] { Set(Task)->SetProcessingMode(processing_mode::kEveryTime); });
      run([&] { Set(Task)->SetRecurrence(nullptr); });
    }
    SaveDataObject(run);
    const auto owner = GetOwner();
    if (!owner) Statements::Leave();
    run([&] { Set(Task)->SetOwner(*owner); });
    if (!owner->empty()) run([&] { Set(Task)->SetPermissions(nullptr); });
    if (ApplyCategories() == Outcome::kLeft) Statements::Leave();
    run([&] { Set(Task)->SetCategories(Categories); });
  });
}

}  // namespace plovix
