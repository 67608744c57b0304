/// @file
/// What a page knows about the application's data objects.
#pragma once

#include <cstdint>
#include <string>

#include "value.h"

namespace plovix {

/// The source of a data object's fields; pages only pass it to the query builder.
class FieldSource : public HostObject {};

/// Something whose records a task can process: a table, a view, a kind of business object.
class DataObject : public HostObject {
 public:
  [[nodiscard]] virtual std::string Name() = 0;     ///< unique; stored in the task
  [[nodiscard]] virtual std::string Caption() = 0;  ///< as shown
  /// Name of the field that identifies a record. Empty if there is none; then the object is not offered to
  /// tasks on records.
  [[nodiscard]] virtual std::string Key() = 0;
  /// A number that Utilities::ObjectFromHandle turns back into this object as long as it lives; never 0.
  [[nodiscard]] virtual std::int32_t Handle() = 0;
  /// For the query builder; never null.
  [[nodiscard]] virtual Ref<FieldSource> Fields() = 0;
};

/// A collection that a page only keeps and passes on (designer objects).
class ObjectCollection : public HostObject {};

/// Keeps its data objects alive; pages remember their handles.
class DataObjectCollection : public ObjectCollection {
 public:
  /// The number of data objects.
  [[nodiscard]] virtual std::int32_t Count() = 0;
  /// 1-based; fails with 9 outside 1 .. Count(). In the order in which they are offered.
  [[nodiscard]] virtual Ref<DataObject> Item(std::int32_t index) = 0;
};

/// Looks up single data objects by name, without loading them all.
class DataObjectCatalog {
 public:
  virtual ~DataObjectCatalog() = default;
  /// The data object of that name, never null; fails with 5 if there is none.
  [[nodiscard]] virtual Ref<DataObject> Find(const std::string& name) = 0;
};

/// Loads the application's collections. Loading may be slow, so pages keep the result.
class ObjectLoader {
 public:
  virtual ~ObjectLoader() = default;
  /// All data objects, whether offered or not; loaded when the user opens the list on the Details page.
  [[nodiscard]] virtual Ref<DataObjectCollection> LoadDataObjects() = 0;
  /// What the action list needs to know about the application; may be an empty collection, never null.
  [[nodiscard]] virtual Ref<ObjectCollection> LoadDesignerObjects() = 0;
};

}  // namespace plovix
