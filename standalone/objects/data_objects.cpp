#include "data_objects.h"

#include <plovix/standalone/tasks/action_kinds.h>

#include "host_state.h"

namespace plovix {

std::int32_t HandleTable::Add(const std::weak_ptr<HostDataObject>& object) {
  objects_.emplace_hint(objects_.end(), ++last_, object);
  return last_;
}

std::shared_ptr<HostDataObject> HandleTable::Find(std::int32_t handle) const {
  const auto found = objects_.find(handle);
  return found == objects_.end() ? nullptr : found->second.lock();
}

HostDataObject::~HostDataObject() {
  if (handle_ != 0) handles_->Remove(handle_);
}

std::int32_t HostDataObject::Handle() {
  Called("DataObject.Handle");
  if (handle_ == 0) handle_ = handles_->Add(weak_from_this());
  return handle_;
}

Ref<FieldSource> HostDataObject::Fields() {
  Called("DataObject.Fields");
  return std::make_shared<FieldSourceObject>(record_);
}

Ref<DataObject> DataObjectsObject::Item(std::int32_t index) {
  Called("DataObjects.Item");
  return ItemAt(items, index);
}

Ref<DataObject> CatalogObject::Find(const std::string& name) {
  Called("DataObjectCatalog.Find");
  auto record = state_.data->Find(name);
  if (record) return state_.MakeDataObject(std::move(*record));
  throw Failure(failure_number::kInvalidCall,
                name.empty() ? "The task has no data object" : "There is no data object \"" + name + "\"");
}

Ref<DataObjectCollection> LoaderObject::LoadDataObjects() {
  Called("ObjectLoader.LoadDataObjects");
  auto objects = std::make_shared<DataObjectsObject>();
  for (DataObjectRecord& record : state_.data->List())
    objects->items.push_back(state_.MakeDataObject(std::move(record)));
  return objects;
}

Ref<ObjectCollection> LoaderObject::LoadDesignerObjects() {
  Called("ObjectLoader.LoadDesignerObjects");
  auto objects = std::make_shared<DesignerObjectsObject>();
  for (const ActionKind& kind : ActionKinds()) objects->kinds.emplace_back(kind.id);
  return objects;
}

void QueryDefinitionObject::SetText(const std::string& new_text) {
  Called("QueryDefinition.SetText");
  text = new_text;
}

bool QueryBuilderObject::Show(const Ref<QueryDefinition>& definition, const Ref<FieldSource>& source) {
  Called("QueryBuilder.Show");
  const auto own = OwnObject<QueryDefinitionObject>(definition);
  const auto fields = OwnObject<FieldSourceObject>(source);
  const auto built = state_.dialogs->BuildQuery(own->text, fields->Object());
  if (built) own->text = *built;
  return built.has_value();
}

}  // namespace plovix
