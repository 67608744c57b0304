#include "actions.h"

#include <plovix/framework/in_use.h>

namespace plovix {
Ref<ActionListControl> Actions::List() const {
  return std::dynamic_pointer_cast<ActionListControl>(VeloActionList.Embedded());
}

Outcome Actions::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    run([&] {
      const auto fill = [this, in_use = InUse()](Ref<ValueStore>& context) { context = GetProperties(); };
      List()->OnContextRequest(fill);
    });
    TakeTask(run);
    const auto take = [&]<class T>(Ref<T>& object, const std::string& key) {
      if (!run.If([&] { return Store->Exists(key); })) return;
      run([&] { object = ObjectFrom<T>(Store->Item(key)->Value()); });
    };
    take(DataObject, store_key::kDataObject);
    take(DataObjects, store_key::kDataObjects);
    take(DesignerObjects, store_key::kDesignerObjects);
    Load(run, VeloActionList, [&] { List()->Load(Task->Actions()); });
  });
}

Outcome Actions::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    const auto keep = [&](const Ref<ObjectCollection>& objects, const std::string& key) {
      if (!objects || run.If([&] { return Store->Exists(key); })) return;
      run([&] { Store->Add(key, objects); });
    };
    keep(DataObjects, store_key::kDataObjects);
    keep(DesignerObjects, store_key::kDesignerObjects);
    Save(run, VeloActionList, [&] { Task->SetActions(List()->Actions()); });
  });
}

// The list may outlive the page.
void Actions::IWizardPage_Terminate() {
  Procedure("IWizardPage_Terminate", [&](Statements& run) {
    if (VeloActionList.Embedded()) run([&] { List()->OnContextRequest(nullptr); });
  });
  PageBase::IWizardPage_Terminate();
}

Ref<ValueStore> Actions::GetProperties() {
  Ref<ValueStore> answer;
  Procedure("GetProperties", [&](Statements& run) {
    run([&] { Controls().SetMousePointer(Pointer::kWait); });
    const auto context = run.Get([&] { return Services().Factory()->NewValueStore(); });
    std::string key;
    if (DataObject) run([&] { key = DataObject->Key(); });
    run([&] { context->Add("DataObjectKey", key); });
    const auto type = run.Get([&] { return RecordModeBit(Task->RecordMode()); });
    if (type) run([&] { context->Add("DesignerObjectType", *type); });
    run([&] { context->Add(store_key::kDataObject, DataObject); });
    if (!DataObjects) run([&] { DataObjects = Application()->Loader()->LoadDataObjects(); });
    run([&] { context->Add(store_key::kDataObjects, DataObjects); });
    if (!DesignerObjects) run([&] { DesignerObjects = Application()->Loader()->LoadDesignerObjects(); });
    run([&] { context->Add(store_key::kDesignerObjects, DesignerObjects); });
    run([&] { Controls().SetMousePointer(Pointer::kDefault); });
    answer = context;
  });
  return answer;
}

}  // namespace plovix
