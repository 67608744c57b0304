/// @file
/// What a page knows of the application's data objects.
#pragma once

#include <cstdint>
#include <string>

#include "value.h"

namespace plovix {

/// Where the fields of a data object come from; pages hand it to the query builder.
class FieldSource : public HostObject {};

/// Something whose records a task can process: a table, a view, a kind of business object.
class DataObject : public HostObject {
 public:
  [[nodiscard]] virtual std::string Name() = 0;     ///< unique; what a task keeps
  [[nodiscard]] virtual std::string Caption() = 0;  ///< as shown
  /// Name of the field that identifies a record. Empty where there is none: then tasks on records
  /// are not offered the object.
  [[nodiscard]] virtual std::string Key() = 0;
  /// A number that Utilities::ObjectFromHandle turns back into this object while it lives; never 0.
  [[nodiscard]] virtual std::int32_t Handle() = 0;
  /// For the query builder; never nothing.
  [[nodiscard]] virtual Ref<FieldSource> Fields() = 0;
};

/// A collection that a page only keeps and hands on (designer objects).
class ObjectCollection : public HostObject {};

/// Keeps its data objects alive; pages remember their handles.
class DataObjectCollection : public ObjectCollection {
 public:
  /// The number of data objects.
  [[nodiscard]] virtual std::int32_t Count() = 0;
  /// 1-based; fails with 9 outside 1 .. Count(). In the order in which they are offered.
  [[nodiscard]] virtual Ref<DataObject> Item(std::int32_t index) = 0;
};

/// Single data objects by name, at once.
class DataObjectCatalog {
 public:
  virtual ~DataObjectCatalog() = default;
  /// The data object of that name, never nothing; fails with 5 when there is none.
  [[nodiscard]] virtual Ref<DataObject> Find(const std::string& name) = 0;
};

/// Loads the application's collections. Loading may be slow; pages keep what they got.
class ObjectLoader {
 public:
  virtual ~ObjectLoader() = default;
  /// All data objects, offered or not; asked for when the user opens the list of the Details page.
  [[nodiscard]] virtual Ref<DataObjectCollection> LoadDataObjects() = 0;
  /// What the action list wants to know of the application; may be an empty collection, never nothing.
  [[nodiscard]] virtual Ref<ObjectCollection> LoadDesignerObjects() = 0;
};

}  // namespace plovix
