/// @file
/// The stand-alone host's objects behind data objects, their catalogue, handles and the query builder.
#pragma once

#include <plovix/host/query_builder.h>
#include <plovix/standalone/tasks/data_source.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "arguments.h"
#include "call_gate.h"
#include "state_object.h"

namespace plovix {

class HostDataObject;
struct HostState;

/// Numbers objects in the order in which their handles are requested; knows the living ones.
class HandleTable {
 public:
  /// Gives a handle, 1 or greater, to an object that has none yet.
  [[nodiscard]] std::int32_t Add(const std::weak_ptr<HostDataObject>& object);
  /// Called by the object's destructor.
  void Remove(std::int32_t handle) { objects_.erase(handle); }
  /// Null if there is none.
  [[nodiscard]] std::shared_ptr<HostDataObject> Find(std::int32_t handle) const;

 private:
  std::map<std::int32_t, std::weak_ptr<HostDataObject>> objects_;
  std::int32_t last_ = 0;
};

/// Names the data object whose fields a query builder offers.
class FieldSourceObject final : public FieldSource {
 public:
  /// Created by HostDataObject::Fields.
  explicit FieldSourceObject(DataObjectRecord object) : object_(std::move(object)) {}
  /// The data object.
  [[nodiscard]] const DataObjectRecord& Object() const noexcept { return object_; }

 private:
  DataObjectRecord object_;
};

/// A data object over plain values; created by HostState::MakeDataObject.
class HostDataObject final : public DataObject, public std::enable_shared_from_this<HostDataObject> {
 public:
  /// `handles` assigns its handle when it is requested.
  HostDataObject(std::shared_ptr<HandleTable> handles, DataObjectRecord record)
      : handles_(std::move(handles)), record_(std::move(record)) {}
  ~HostDataObject() override;
  HostDataObject(const HostDataObject&) = delete;
  HostDataObject& operator=(const HostDataObject&) = delete;

  /// The host's own view, not gated.
  [[nodiscard]] const DataObjectRecord& Record() const noexcept { return record_; }
  [[nodiscard]] std::string Name() override { return Gated("DataObject.Name", record_.name); }
  [[nodiscard]] std::string Caption() override { return Gated("DataObject.Caption", record_.caption); }
  [[nodiscard]] std::string Key() override { return Gated("DataObject.Key", record_.key); }
  [[nodiscard]] std::int32_t Handle() override;
  [[nodiscard]] Ref<FieldSource> Fields() override;

 private:
  std::shared_ptr<HandleTable> handles_;
  DataObjectRecord record_;
  std::int32_t handle_ = 0;  // 0: not requested yet
};

/// The data objects of the source at the time of loading.
struct DataObjectsObject final : DataObjectCollection {
  [[nodiscard]] std::int32_t Count() override { return Gated("DataObjects.Count", CountOf(items)); }
  [[nodiscard]] Ref<DataObject> Item(std::int32_t index) override;

  std::vector<std::shared_ptr<HostDataObject>> items;  ///< the host's own view, not gated
};

/// What the loader returns as designer objects.
struct DesignerObjectsObject final : ObjectCollection {
  std::vector<std::string> kinds;  ///< the identifiers of the action kinds
};

/// Finds data objects in HostState::data.
class CatalogObject final : public StateObject<DataObjectCatalog> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] Ref<DataObject> Find(const std::string& name) override;
};

/// Loads what HostState::data lists.
class LoaderObject final : public StateObject<ObjectLoader> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] Ref<DataObjectCollection> LoadDataObjects() override;
  [[nodiscard]] Ref<ObjectCollection> LoadDesignerObjects() override;
};

/// A query text in memory.
class QueryDefinitionObject final : public QueryDefinition {
 public:
  [[nodiscard]] std::string Text() override { return Gated("QueryDefinition.Text", text); }
  void SetText(const std::string& new_text) override;

  std::string text;  ///< the host's own view, not gated
};

/// Opens HostDialogs::BuildQuery.
class QueryBuilderObject final : public StateObject<QueryBuilder> {
 public:
  using StateObject::StateObject;
  /// Fails with 13 on a definition or a source that this host did not create.
  [[nodiscard]] bool Show(const Ref<QueryDefinition>& definition, const Ref<FieldSource>& source) override;
};

}  // namespace plovix
