// The settings of the details page, its data object, and the actions that depend on both.
#include <plovix/base/raised.h>

#include <algorithm>

#include "details.h"

namespace plovix {
namespace {

constexpr int kNoDataObjectText = 31;
constexpr int kOtherDataObjectText = 113;
constexpr int kPermissionsTitleText = 114;
constexpr int kUnfitActionsText = 120;
constexpr std::int32_t kNoHandle = 0;
constexpr std::int32_t kEveryAction = 0;  // the bit that all actions have, for a mode that is unknown

bool EqualText(const std::string& left, const std::string& right) {
  Utilities& utilities = ServicesUtilities();
  return utilities.FoldCase(left) == utilities.FoldCase(right);
}

// Shows the wait pointer during its lifetime.
class WaitPointer {
 public:
  explicit WaitPointer(Form& form) : form_(form) { form_.SetMousePointer(Pointer::kWait); }
  ~WaitPointer() { form_.SetMousePointer(Pointer::kDefault); }
  WaitPointer(const WaitPointer&) = delete;
  WaitPointer& operator=(const WaitPointer&) = delete;

 private:
  Form& form_;
};

}  // namespace

bool Details::IsPersonal() const {
  if (Task->IsExisting()) return !Task->Owner().empty();
  if (Store->Exists(store_key::kPersonalTask))
    return BooleanFrom(Store->Item(store_key::kPersonalTask)->Value());
  return CreatePersonal && !CreateGroup;
}

void Details::RetrieveSettings(Statements& run) {
  Load(run, chkPersonalTask, [&] { chkPersonalTask.SetValue(IsPersonal() ? 1 : 0); });
  // If no person works in the session, nobody can own a task.
  const bool unattended = run.If([&] {
    const auto session = Application()->Session();
    return session->CurrentUser()->UserId() == session->AccountId();
  });
  if (unattended) chkPersonalTask.SetValue(0);
  chkPersonalTask.SetEnabled(!unattended && CreatePersonal && CreateGroup);
  PersonalTaskEnabled = chkPersonalTask.Enabled();
  run([&] { chkAutoMan.SetEnabled(MayBeAutomatic()); });
  Load(run, chkAutoMan,
       [&] { chkAutoMan.SetValue(ServicesUtilities().BoolToCheck(Task->AllowAutomationManager())); });
  bool on_query = false;
  Load(run, chkSkipRowSelection, [&] {
    on_query = Task->RecordMode() == record_mode::kQueryResults;
    if (on_query) chkSkipRowSelection.SetValue(ServicesUtilities().BoolToCheck(Task->SkipRowSelection()));
  });
  chkSkipRowSelection.SetEnabled(on_query);
}

// A task on a single record runs where that record is; for an imported task this was decided where it came
// from.
bool Details::MayBeAutomatic() const {
  return Task->RecordMode() != record_mode::kSingleRecord && !Importing &&
         BooleanFrom(Store->GetValue(store_key::kAllowAutomationManager, true));
}

// With a data object, the list has only that one until it is opened, because loading all may be slow. If it
// could not be read, nothing is chosen in its place.
void Details::InitDataObjects(Statements& run) {
  cboDataObject.Clear();
  std::string name;
  if (Load(run, DataObject, [&] { name = Task->DataObjectName(); }) && !name.empty())
    Load(run, DataObject, [&] { DataObject = Application()->DataObjectCatalog()->Find(name); });
  const auto mode = run.Read([&] { return Task->RecordMode(); });
  if (DataObject) {
    run([&] { cboDataObject.AddItem(DataObject->Caption(), DataObject->Handle()); });
  } else if (!CreatePersonal && !CreateGroup) {
    RetrieveDataObjects();
  } else if (mode == record_mode::kNoData) {
    run([&] { cboDataObject.AddItem(GetString(kNoDataObjectText), kNoHandle); });
  }
  if (cboDataObject.Index() == -1 && cboDataObject.Count() > 0 && !IsUnread(DataObject))
    cboDataObject.Select(0);
  if (mode) cboDataObject.SetEnabled(*mode != record_mode::kNoData && !Importing);
}

// Without records there is nothing to choose from; the list stays as it is.
void Details::RetrieveDataObjects() {
  Procedure("RetrieveDataObjects", [&](Statements& run) {
    const WaitPointer waiting(Controls());
    const std::string shown = cboDataObject.Text();
    const auto mode = run.Read([&] { return Task->RecordMode(); });
    const bool on_records = mode && *mode != record_mode::kNoData;
    Entries entries = on_records ? OfferedDataObjects(run, *mode) : Listed();
    if (!on_records && (CreatePersonal || CreateGroup))
      run([&] { entries.emplace_back(GetString(kNoDataObjectText), kNoHandle); });
    int chosen = IsUnread(DataObject) || entries.empty() ? -1 : 0;
    if (!shown.empty()) chosen = FindEntry(run, entries, shown);
    if (run.Skipped() > 0) return;
    cboDataObject.Clear();
    const EntryBatch batch(cboDataObject);
    for (auto& [caption, handle] : entries) cboDataObject.AddItem(std::move(caption), handle);
    if (chosen != -1) cboDataObject.Select(chosen);
    DataObjectsLoaded = true;
  });
}

// Offers the data objects that the session may read and, if the task works on records, that can tell these
// apart.
Details::Entries Details::OfferedDataObjects(Statements& run, std::int16_t mode) {
  const bool needs_key = mode == record_mode::kSingleRecord || mode == record_mode::kQueryResults;
  if (!DataObjects) run([&] { DataObjects = Application()->Loader()->LoadDataObjects(); });
  Entries entries;
  for (std::int32_t index = 1; run.If([&] { return index <= DataObjects->Count(); }); ++index) {
    const auto object = run.Get([&] { return DataObjects->Item(index); });
    const bool offered = run.If([&] {
      return Application()->Session()->HasPermission(permission_key::kView, object.OrFail()) &&
             !(needs_key && object->Key().empty());
    });
    if (offered) run([&] { entries.emplace_back(object->Caption(), object->Handle()); });
  }
  return entries;
}

Details::Entries Details::Listed() const {
  Entries entries;
  for (int index = 0; index < cboDataObject.Count(); ++index)
    entries.emplace_back(cboDataObject.ItemText(index), cboDataObject.ItemData(index));
  return entries;
}

int Details::FindEntry(Statements& run, const Entries& entries, const std::string& text) {
  const auto folded = run.Read([&] { return ServicesUtilities().FoldCase(text); });
  const auto equal = [&](const auto& entry) {
    return run.If([&] { return ServicesUtilities().FoldCase(entry.first) == folded; });
  };
  const auto found = std::ranges::find_if(entries, equal);
  return found == entries.end() ? -1 : static_cast<int>(found - entries.begin());
}

void Details::SaveDataObject(Statements& run) {
  if (IsUnread(DataObject)) return;
  const auto name = run.Read([&] { return DataObject ? DataObject->Name() : std::string(); });
  const auto caption = run.Read([&] { return DataObject ? DataObject->Caption() : std::string(); });
  if (name && caption) {
    run([&] { Task->SetDataObjectName(*name); });
    run([&] { Task->SetDataObjectCaption(*caption); });
  }
  const auto may = [&](std::string_view key) {
    return Application()->Session()->HasPermission(key, DataObject);
  };
  run([&] { Task->SetMayRun(may(permission_key::kRun)); });
  run([&] { Task->SetMayEdit(may(permission_key::kEdit)); });
  run([&] { Task->SetMayDelete(may(permission_key::kDelete)); });
}

// A task for the automation manager has no owner, whoever owned it before.
Outcome Details::GetOwner(std::optional<std::string>& owner) {
  return Procedure("GetOwner", [&](Statements& run) {
    if (IsUnread(chkPersonalTask) && !chkAutoMan.Checked()) return;
    owner.emplace();
    if (chkPersonalTask.Checked())
      owner = run.Read([&] { return Application()->Session()->CurrentUser()->UserId(); });
  });
}

bool Details::IsInvalid(Action& action, std::int32_t mode_bit) const {
  return (action.RecordModes() & mode_bit) != mode_bit ||
         (chkAutoMan.Checked() && (action.Capabilities() & kAutomationManagerCapability) == 0);
}

bool Details::HasInvalidActions() {
  return Answer("HasInvalidActions", [&](Statements& run) {
    const auto bit = run.Get([&] { return RecordModeBit(Task->RecordMode()).value_or(kEveryAction); });
    const auto actions = run.Get([&] { return Task->Actions(); });
    bool found = false;
    for (std::int32_t index = 1; !found && run.If([&] { return index <= actions->Count(); }); ++index)
      run([&] { found = IsInvalid(*actions->Item(index), bit); });
    return found;
  });
}

// Downwards, so that the positions of the actions still to be checked do not change.
void Details::ClearInvalidActions() {
  Procedure("ClearInvalidActions", [&](Statements& run) {
    const auto bit = run.Get([&] { return RecordModeBit(Task->RecordMode()).value_or(kEveryAction); });
    const auto actions = run.Get([&] { return Task->Actions(); });
    const auto count = run.Get([&] { return actions->Count(); });
    for (std::int32_t index = count; index >= 1; --index) {
      if (run.If([&] { return IsInvalid(*actions->Item(index), bit); })) run([&] { actions->Remove(index); });
    }
  });
}

void Details::cboDataObject_DropDown() {
  Procedure("cboDataObject_DropDown", [&](Statements& /*run*/) {
    if (!DataObjectsLoaded) RetrieveDataObjects();
  });
}

// Actions are made for a data object: if it changes, either all actions or the change must go.
void Details::cboDataObject_Click() {
  Procedure("cboDataObject_Click", [&](Statements& run) {
    if (cboDataObject.Index() == -1) return;
    std::int32_t handle = kNoHandle;
    run([&] { handle = cboDataObject.ItemData(cboDataObject.Index()); });
    Ref<plovix::DataObject> chosen;
    std::string name, current;
    if (handle != kNoHandle) {
      run([&] { chosen = ObjectFrom<plovix::DataObject>(ServicesUtilities().ObjectFromHandle(handle)); });
      run([&] { name = chosen->Name(); });
    }
    const auto actions = run.Read([&] { return Task->Actions()->Count(); });
    if (DataObject && actions != 0) run([&] { current = DataObject->Name(); });
    const bool same = actions != 0 && run.If([&] { return EqualText(current, name); });
    if (run.Skipped() > 0 || same) return;
    if (actions == 0) {
      DataObject = chosen;
      return;
    }
    const auto answer = run.Get([&] { return MsgBox(kOtherDataObjectText, message_box::kYesNoQuestion); });
    if (answer == message_box::kYes) {
      DataObject = chosen;
      run([&] { Task->SetActions(Services().Factory()->NewActionList()); });
    } else if (DataObject) {
      const int former = FindEntry(run, Listed(), current);
      if (former != -1) cboDataObject.Select(former);
    } else {
      cboDataObject.Select(0);
    }
  });
}

// A personal task has no permissions to edit.
void Details::chkPersonalTask_Click() {
  Procedure("chkPersonalTask_Click", [&](Statements& /*run*/) {
    lblPermissions.SetLink(!chkPersonalTask.Checked());
    lblPermissions.SetEnabled(!chkPersonalTask.Checked());
  });
}

// A task for the automation manager has no owner, and its actions must be able to run there.
void Details::chkAutoMan_Click() {
  Procedure("chkAutoMan_Click", [&](Statements& run) {
    const bool asks = !Loading && !RevertingAutoMan && run.If([&] { return Task->Actions()->Count() > 0; }) &&
                      HasInvalidActions();
    if (asks) {
      int answer = 0;
      run([&] {
        answer = Application()->MsgBox(GetString(kUnfitActionsText), message_box::kOkCancelQuestion, "", "");
      });
      if (answer != message_box::kOk) {
        const Raised reverting(RevertingAutoMan);
        chkAutoMan.SetValue(1 - chkAutoMan.Value());
        return;
      }
      ClearInvalidActions();
    }
    if (chkAutoMan.Checked()) chkPersonalTask.SetValue(0);
    chkPersonalTask.SetEnabled(!chkAutoMan.Checked() && PersonalTaskEnabled);
  });
}

void Details::lblPermissions_Click() {
  Procedure("lblPermissions_Click", [&](Statements& run) {
    const WaitPointer waiting(Controls());
    const auto editor = run.Get([&] { return Services().Factory()->NewPermissionEditor(); });
    std::optional<Ref<Permissions>> edited;
    run([&] {
      edited = Application()->Session()->EditPermissions(editor.OrFail(), Task->Permissions(), nullptr,
                                                         GetString(kPermissionsTitleText));
    });
    if (edited) run([&] { Task->SetPermissions(*edited); });
  });
}

}  // namespace plovix
