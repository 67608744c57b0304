#include "details.h"

#include <plovix/base/raised.h>
#include <plovix/base/text_rules.h>
#include <plovix/framework/page_identifiers.h>

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
  const std::int16_t mode = Task->RecordMode();
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
    Forget();
    run([&] { Task = ObjectFrom<AutoTask>(Store->GetValue(store_key::kAutoTask, {})); });
    Load(run, DataObjects, [&] {
      DataObjects = ObjectFrom<DataObjectCollection>(Store->GetValue(store_key::kDataObjects, {}));
    });
    run([&] { Importing = BooleanFrom(Store->GetValue(store_key::kImporting, false)); });
    run([&] { CreateGroup = BooleanFrom(Store->GetValue(store_key::kCreateGroup, false)); });
    run([&] { CreatePersonal = BooleanFrom(Store->GetValue(store_key::kCreatePersonal, false)); });
    TaggedTask = IsTaggedTask();
    RetrieveSettings(run);
    RetrieveOwnCategories(run);
    ShowCategoryInfo();
  });
}

// Restores the state of a new page, so that another Initialize finds nothing left of the former task.
void Details::Forget() {
  Importing = CreateGroup = CreatePersonal = TaggedTask = DataObjectsLoaded = MultipleCategories = false;
  DataObject = nullptr;
  DataObjects = nullptr;
  Categories = nullptr;
  for (std::string* tag : {&NameTag, &DescriptionTag, &ShortDescriptionTag, &CategoryTag}) {
    tag->clear();
    MarkUnread(*tag);
  }
  MarkUnread(DataObject);
  MarkUnread(DataObjects);
  for (CheckBox* box : {&chkAutoMan, &chkPersonalTask, &chkSkipRowSelection}) {
    box->SetValue(0);
    MarkUnread(*box);
  }
}

bool Details::IsTaggedTask() {
  bool answer = false;
  Procedure("IsTaggedTask", [&](Statements& run) {
    if (run.If([&] { return Task->UsesLanguageTags(); })) {
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
      Load(run, NameTag, [&] { NameTag = Task->NameTag(); });
      Load(run, DescriptionTag, [&] { DescriptionTag = Task->DescriptionTag(); });
      Load(run, ShortDescriptionTag, [&] { ShortDescriptionTag = Task->ShortDescriptionTag(); });
      run([&] { txtName.SetText(Task->LocalizedName()); });
      run([&] { txtDescription.SetText(Task->LocalizedDescription()); });
      run([&] { txtShortDescription.SetText(Task->LocalizedShortDescription()); });
    } else {
      Load(run, txtName, [&] { txtName.SetText(Task->Name()); });
      Load(run, txtDescription, [&] { txtDescription.SetText(Task->Description()); });
      Load(run, txtShortDescription, [&] { txtShortDescription.SetText(Task->ShortDescription()); });
    }
  });
}

template <class Box>
void Details::ChooseTag(std::string_view procedure, std::string& tag, const Ref<TextCollection>& choices,
                        Box& box) {
  Procedure(procedure, [&](Statements& run) {
    if (!TaggedTask) return;
    run([&] { tag = Application()->Language()->EditTag(tag, choices); });
    run([&] { box.SetText(Application()->Language()->TagText(tag, nullptr)); });
  });
}

// A description that is not empty, even if it is only blanks, is never overwritten; nor is one that could not
// be read.
void Details::txtName_LostFocus() {
  Procedure("txtName_LostFocus", [&](Statements& run) {
    if (txtDescription.Text().empty() && !IsUnread(txtDescription))
      run([&] { txtDescription.SetText(txtName.Text()); });
  });
}

void Details::UserControl_Show() {
  Procedure("UserControl_Show", [&](Statements& run) {
    if (!run.If([&] { return Application()->UserRights()->HasRight(kRightEditCategories); })) return;
    run([&] { Application()->Translator()->SetLinkStyle(lblCategory, true); });
  });
}

bool Details::Validate() {
  return Answer("Validate", [&](Statements& run) {
    if (Trimmed(txtName.Text()).empty()) {
      run([&] { MsgBox(kNameMissingText, message_box::kOkInformation); });
      return false;
    }
    if (Trimmed(txtDescription.Text()).empty()) {
      run([&] { MsgBox(kDescriptionMissingText, message_box::kOkInformation); });
      return false;
    }
    const bool needs_data = run.If([&] { return Task->RecordMode() != record_mode::kNoData; });
    if (needs_data && cboDataObject.Index() == -1) {
      run([&] { MsgBox(kDataObjectMissingText, message_box::kOkWarning); });
      return false;
    }
    return true;
  });
}

Outcome Details::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    if (!chkAutoMan.Checked())
      Save(run, chkPersonalTask,
           [&] { Store->SetItem(store_key::kPersonalTask, chkPersonalTask.Checked()); });
    Save(run, DataObject, [&] { Store->SetItem(store_key::kDataObject, DataObject); });
    Save(run, DataObjects, [&] { Store->SetItem(store_key::kDataObjects, DataObjects); });
    if (TaggedTask) {
      Save(run, NameTag, [&] { Task->SetNameTag(NameTag); });
      Save(run, DescriptionTag, [&] { Task->SetDescriptionTag(DescriptionTag); });
      Save(run, ShortDescriptionTag, [&] { Task->SetShortDescriptionTag(ShortDescriptionTag); });
    } else {
      Save(run, txtName, [&] { Task->SetName(txtName.Text()); });
      Save(run, txtDescription, [&] { Task->SetDescription(txtDescription.Text()); });
      Save(run, txtShortDescription, [&] { Task->SetShortDescription(txtShortDescription.Text()); });
    }
    const bool settled =
        Save(run, chkAutoMan, [&] { Task->SetAllowAutomationManager(chkAutoMan.Checked()); });
    Save(run, chkSkipRowSelection,
         [&] { Task->SetSkipRowSelection(ServicesUtilities().CheckToBool(chkSkipRowSelection.Value())); });
    // A task that the automation manager does not run has no schedule.
    if (settled && run.If([&] { return !Task->AllowAutomationManager(); })) {
      run([&] { Task->SetProcessingMode(processing_mode::kEveryTime); });
      run([&] { Task->SetRecurrence(nullptr); });
    }
    SaveDataObject(run);
    std::optional<std::string> owner;
    if (GetOwner(owner) == Outcome::kLeft) Statements::Leave();
    const bool owned = owner && run([&] { Task->SetOwner(*owner); }) && !owner->empty();
    if (owned) run([&] { Task->SetPermissions(nullptr); });
    if (ApplyCategories() == Outcome::kLeft) Statements::Leave();
    // A copy, so that later edits reach the task only when it is saved again.
    if (Categories) run([&] { Task->SetCategories(Categories->Clone()); });
  });
}

}  // namespace plovix
