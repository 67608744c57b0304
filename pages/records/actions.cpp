#include "actions.h"

#include <plovix/framework/in_use.h>

namespace plovix {
namespace {

// The designer library's code of a record mode; nothing for an unknown mode.
std::optional<std::int32_t> DesignerObjectType(std::int16_t mode) {
  switch (mode) {
    case record_mode::kNoData:
      return record_mode_bit::kNoData;
    case record_mode::kSingleRecord:
      return record_mode_bit::kSingleRecord;
    case record_mode::kQueryResults:
      return record_mode_bit::kQueryResults;
    default:
      return std::nullopt;
  }
}

}  // namespace

std::shared_ptr<ActionListControl> Actions::List() const {
  return Set(std::dynamic_pointer_cast<ActionListControl>(VeloActionList.Embedded()));
}

Outcome Actions::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    run([&] {
      const auto fill = [this, in_use = InUse()](std::shared_ptr<ValueStore>& context) {
        context = GetProperties();
      };
      List()->OnContextRequest(fill);
    });
    TakeTask(run);
    const auto take = [&]<class T>(std::shared_ptr<T>& object, const std::string& key) {
      if (!run.If([&] { return Set(Store)->Exists(key); })) return;
      run([&] { object = ObjectFrom<T>(Set(Store->Item(key))->Value()); });
    };
    take(DataObject, store_key::kDataObject);
    take(DataObjects, store_key::kDataObjects);
    take(DesignerObjects, store_key::kDesignerObjects);
    Load(run, VeloActionList, [&] { List()->Load(Set(Task)->Actions()); });
  });
}

Outcome Actions::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    const auto keep = [&](const std::shared_ptr<ObjectCollection>& objects, const std::string& key) {
      if (!objects || run.If([&] { return Set(Store)->Exists(key); })) return;
      run([&] { Set(Store)->Add(key, objects); });
    };
    keep(DataObjects, store_key::kDataObjects);
    keep(DesignerObjects, store_key::kDesignerObjects);
    Save(run, VeloActionList, [&] { Set(Task)->SetActions(List()->Actions()); });
  });
}

// The list may outlive the page.
void Actions::IWizardPage_Terminate() {
  Procedure("IWizardPage_Terminate", [&](Statements& run) {
    if (VeloActionList.Embedded()) run([&] { List()->OnContextRequest(nullptr); });
  });
  PageBase::IWizardPage_Terminate();
}

std::shared_ptr<ValueStore> Actions::GetProperties() {
  std::shared_ptr<ValueStore> answer;
  Procedure("GetProperties", [&](Statements& run) {
    run([&] { Controls().SetMousePointer(Pointer::kWait); });
    std::shared_ptr<ValueStore> context;
    run([&] { context = Set(Services().Factory())->NewValueStore(); });
    std::string key;
    if (DataObject) run([&] { key = DataObject->Key(); });
    run([&] { Set(context)->Add("DataObjectKey", key); });
    std::optional<std::int32_t> type;
    run([&] { type = DesignerObjectType(Set(Task)->RecordMode()); });
    if (type) run([&] { Set(context)->Add("DesignerObjectType", *type); });
    run([&] { Set(context)->Add(store_key::kDataObject, DataObject); });
    if (!DataObjects) run([&] { DataObjects = Set(Application()->Loader())->LoadDataObjects(); });
    run([&] { Set(context)->Add(store_key::kDataObjects, DataObjects); });
    if (!DesignerObjects) run([&] { DesignerObjects = Set(Application()->Loader())->LoadDesignerObjects(); });
    run([&] { Set(context)->Add(store_key::kDesignerObjects, DesignerObjects); });
    run([&] { Controls().SetMousePointer(Pointer::kDefault); });
    answer = context;
  });
  return answer;
}

}  // namespace plovix
