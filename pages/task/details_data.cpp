// The settings of the details page, its data object, and the actions that depend on both.
#include <plovix/framework/raised.h>

#include "details.h"

namespace plovix {
namespace {

constexpr int kNoDataObjectText = 31;
constexpr int kOtherDataObjectText = 113;
constexpr int kPermissionsTitleText = 114;
constexpr int kUnfitActionsText = 120;
constexpr std::int32_t kNoHandle = 0;

// The bit that an action must have to fit the mode; 0, which every action has, for a mode that is unknown.
std::int32_t RecordModeBit(std::int16_t mode) {
  switch (mode) {
    case record_mode::kNoData:
      return record_mode_bit::kNoData;
    case record_mode::kSingleRecord:
      return record_mode_bit::kSingleRecord;
    case record_mode::kQueryResults:
      return record_mode_bit::kQueryResults;
    default:
      return 0;
  }
}

bool EqualText(const std::string& left, const std::string& right) {
  Utilities& utilities = ServicesUtilities();
  return utilities.FoldCase(left) == utilities.FoldCase(right);
}

// The hourglass for as long as it lives.
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

void Details::RetrieveSettings(Statements& run) {
  if (run.If([&] { return Set(Task)->IsExisting(); })) {
    run([&] { chkPersonalTask.SetValue(Set(Task)->Owner().empty() ? 0 : 1); });
  } else if (run.If([&] { return Set(Store)->Exists(store_key::kPersonalTask); })) {
    run([&] {
      chkPersonalTask.SetValue(BooleanFrom(Set(Store->Item(store_key::kPersonalTask))->Value()) ? 1 : 0);
    });
  } else if (CreatePersonal || CreateGroup) {
    chkPersonalTask.SetValue(CreateGroup ? 0 : 1);
  }
  // Where nobody sits in front of the session, there is nobody to own a task.
  const bool unattended = run.If([&] {
    const auto session = Set(Application()->Session());
    return Set(session->CurrentUser())->UserId() == session->AccountId();
  });
  if (unattended) chkPersonalTask.SetValue(0);
  chkPersonalTask.SetEnabled(!unattended && CreatePersonal && CreateGroup);
  PersonalTaskEnabled = chkPersonalTask.Enabled();
  run([&] { chkAutoMan.SetEnabled(MayBeAutomatic()); });
  run([&] { chkAutoMan.SetValue(ServicesUtilities().BoolToCheck(Set(Task)->AllowAutomationManager())); });
  const bool on_query = run.If([&] { return Set(Task)->RecordMode() == record_mode::kQueryResults; });
  chkSkipRowSelection.SetEnabled(on_query);
  if (on_query) {
    run([&] { chkSkipRowSelection.SetValue(ServicesUtilities().BoolToCheck(Task->SkipRowSelection())); });
  } else {
    chkSkipRowSelection.SetValue(0);
  }
}

// A task on a single record runs where that record is; an imported one is settled where it came from.
bool Details::MayBeAutomatic() const {
  return Set(Task)->RecordMode() != record_mode::kSingleRecord && !Importing &&
         BooleanFrom(Set(Store)->GetValue(store_key::kAllowAutomationManager, true));
}

// With a data object the list holds that one alone until it is opened: loading all may be slow.
void Details::InitDataObjects(Statements& run) {
  std::string name;
  run([&] { name = Set(Task)->DataObjectName(); });
  if (!name.empty()) run([&] { DataObject = Set(Application()->DataObjectCatalog())->Find(name); });
  std::int16_t mode = record_mode::kNoData;
  run([&] { mode = Set(Task)->RecordMode(); });
  cboDataObject.Clear();
  if (DataObject) {
    run([&] { cboDataObject.AddItem(DataObject->Caption(), DataObject->Handle()); });
  } else if (!CreatePersonal && !CreateGroup) {
    RetrieveDataObjects();
  } else if (mode == record_mode::kNoData) {
    run([&] { cboDataObject.AddItem(GetString(kNoDataObjectText), kNoHandle); });
  }
  if (cboDataObject.Index() == -1 && cboDataObject.Count() > 0) cboDataObject.Select(0);
  cboDataObject.SetEnabled(mode != record_mode::kNoData && !Importing);
}

void Details::RetrieveDataObjects() {
  Procedure("RetrieveDataObjects", [&](Statements& run) {
    const WaitPointer waiting(Controls());
    const std::string shown = cboDataObject.Text();
    std::int16_t mode = record_mode::kNoData;
    run([&] { mode = Set(Task)->RecordMode(); });
    if (mode != record_mode::kNoData) {
      ListDataObjects(run, mode);
    } else if (CreatePersonal || CreateGroup) {
      run([&] { cboDataObject.AddItem(GetString(kNoDataObjectText), kNoHandle); });
    }
    if (!shown.empty()) {
      SelectDataObject(run, shown);
    } else if (cboDataObject.Count() > 0) {
      cboDataObject.Select(0);
    }
    DataObjectsLoaded = true;
  });
}

// Offered is what the session may read and, where the task works on records, what can tell them apart.
void Details::ListDataObjects(Statements& run, std::int16_t mode) {
  const bool needs_key = mode == record_mode::kSingleRecord || mode == record_mode::kQueryResults;
  if (!DataObjects) run([&] { DataObjects = Set(Application()->Loader())->LoadDataObjects(); });
  cboDataObject.Clear();
  for (std::int32_t index = 1; run.If([&] { return index <= Set(DataObjects)->Count(); }); ++index) {
    std::shared_ptr<plovix::DataObject> object;
    run([&] { object = DataObjects->Item(index); });
    const bool offered = run.If([&] {
      return Set(Application()->Session())->HasPermission(permission_key::kView, Set(object)) &&
             !(needs_key && object->Key().empty());
    });
    if (offered) run([&] { cboDataObject.AddItem(object->Caption(), object->Handle()); });
  }
}

void Details::SelectDataObject(Statements& run, const std::string& text) {
  std::string folded;
  run([&] { folded = ServicesUtilities().FoldCase(text); });
  int found = -1;
  for (int index = 0; index < cboDataObject.Count() && found == -1; ++index) {
    if (run.If([&] { return ServicesUtilities().FoldCase(cboDataObject.ItemText(index)) == folded; }))
      found = index;
  }
  if (found != -1) cboDataObject.Select(found);
}

void Details::SaveDataObject(Statements& run) {
  std::string name, caption;
  if (DataObject) run([&] { name = DataObject->Name(); });
  if (DataObject) run([&] { caption = DataObject->Caption(); });
  run([&] { Set(Task)->SetDataObjectName(name); });
  run([&] { Set(Task)->SetDataObjectCaption(caption); });
  const auto may = [&](std::string_view key) {
    return Set(Application()->Session())->HasPermission(key, DataObject);
  };
  run([&] { Set(Task)->SetMayRun(may(permission_key::kRun)); });
  run([&] { Set(Task)->SetMayEdit(may(permission_key::kEdit)); });
  run([&] { Set(Task)->SetMayDelete(may(permission_key::kDelete)); });
}

std::optional<std::string> Details::GetOwner() {
  std::string owner;
  const Outcome outcome = Procedure("GetOwner", [&](Statements& run) {
    if (!chkPersonalTask.Checked()) return;
    run([&] { owner = Set(Set(Application()->Session())->CurrentUser())->UserId(); });
  });
  if (outcome == Outcome::kLeft) return std::nullopt;
  return owner;
}

bool Details::IsInvalid(Action& action, std::int32_t mode_bit) const {
  return (action.RecordModes() & mode_bit) != mode_bit ||
         (chkAutoMan.Checked() && (action.Capabilities() & kAutomationManagerCapability) == 0);
}

bool Details::HasInvalidActions() {
  bool answer = false;
  Procedure("HasInvalidActions", [&](Statements& run) {
    std::int32_t bit = 0;
    run([&] { bit = RecordModeBit(Set(Task)->RecordMode()); });
    std::shared_ptr<ActionList> actions;
    run([&] { actions = Set(Task)->Actions(); });
    for (std::int32_t index = 1; run.If([&] { return index <= Set(actions)->Count(); }); ++index) {
      run([&] { answer = IsInvalid(*Set(actions->Item(index)), bit); });
      if (answer) return;
    }
  });
  return answer;
}

// Downwards, so that the positions of the actions still to be looked at stay.
void Details::ClearInvalidActions() {
  Procedure("ClearInvalidActions", [&](Statements& run) {
    std::int32_t bit = 0;
    run([&] { bit = RecordModeBit(Set(Task)->RecordMode()); });
    std::shared_ptr<ActionList> actions;
    run([&] { actions = Set(Task)->Actions(); });
    std::int32_t count = 0;
    run([&] { count = Set(actions)->Count(); });
    for (std::int32_t index = count; index >= 1; --index) {
      if (run.If([&] { return IsInvalid(*Set(actions->Item(index)), bit); }))
        run([&] { actions->Remove(index); });
    }
  });
}

void Details::cboDataObject_DropDown() {
  Procedure("cboDataObject_DropDown", [&](Statements& /*run*/) {
    if (!DataObjectsLoaded) RetrieveDataObjects();
  });
}

// Actions are made for a data object: with another one they all go, or the choice does.
void Details::cboDataObject_Click() {
  Procedure("cboDataObject_Click", [&](Statements& run) {
    if (cboDataObject.Index() == -1) return;
    std::int32_t handle = kNoHandle;
    run([&] { handle = cboDataObject.ItemData(cboDataObject.Index()); });
    std::shared_ptr<plovix::DataObject> chosen;
    std::string name, current;
    if (handle != kNoHandle) {
      run([&] { chosen = ObjectFrom<plovix::DataObject>(ServicesUtilities().ObjectFromHandle(handle)); });
      run([&] { name = Set(chosen)->Name(); });
    }
    if (run.If([&] { return Set(Set(Task)->Actions())->Count() == 0; })) {
      DataObject = chosen;
      return;
    }
    if (DataObject) run([&] { current = DataObject->Name(); });
    if (run.If([&] { return EqualText(current, name); })) return;
    int answer = 0;
    run([&] { answer = MsgBox(kOtherDataObjectText, message_box::kYesNoQuestion); });
    if (answer == message_box::kYes) {
      DataObject = chosen;
      run([&] { Set(Task)->SetActions(Set(Services().Factory())->NewActionList()); });
    } else if (DataObject) {
      SelectDataObject(run, current);
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

// A task for the automation manager is nobody's own, and its actions must be able to run there.
void Details::chkAutoMan_Click() {
  Procedure("chkAutoMan_Click", [&](Statements& run) {
    const bool asks = !Loading && !RevertingAutoMan &&
                      run.If([&] { return Set(Set(Task)->Actions())->Count() > 0; }) && HasInvalidActions();
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
    std::shared_ptr<PermissionEditor> editor;
    run([&] { editor = Set(Services().Factory())->NewPermissionEditor(); });
    std::optional<std::shared_ptr<Permissions>> edited;
    run([&] {
      edited = Set(Application()->Session())
                   ->EditPermissions(Set(editor), Set(Task)->Permissions(), nullptr,
                                     GetString(kPermissionsTitleText));
    });
    if (edited) run([&] { Set(Task)->SetPermissions(*edited); });
  });
}

}  // namespace plovix
