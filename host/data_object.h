// What a page knows of the application's data objects.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "value.h"

namespace plovix {

// Where the fields of a data object come from; pages hand it to the query builder.
class FieldSource : public HostObject {};

class DataObject : public HostObject {
 public:
  [[nodiscard]] virtual std::string Name() = 0;
  [[nodiscard]] virtual std::string Caption() = 0;  // as shown
  [[nodiscard]] virtual std::string Key() = 0;  // name of the field that identifies a record; may be empty
  // A number that Utilities::ObjectFromHandle turns back into this object while it lives; never 0.
  [[nodiscard]] virtual std::int32_t Handle() = 0;
  [[nodiscard]] virtual std::shared_ptr<FieldSource> Fields() = 0;
};

// A collection that a page only keeps and hands on (designer objects).
class ObjectCollection : public HostObject {};

class DataObjectCollection : public ObjectCollection {
 public:
  [[nodiscard]] virtual std::int32_t Count() = 0;
  // 1-based; fails with 9 outside 1 .. Count().
  [[nodiscard]] virtual std::shared_ptr<DataObject> Item(std::int32_t index) = 0;
};

class DataObjectCatalog {
 public:
  virtual ~DataObjectCatalog() = default;
  // The data object of that name, never nothing; fails with 5 when there is none.
  [[nodiscard]] virtual std::shared_ptr<DataObject> Find(const std::string& name) = 0;
};

// Loads the application's collections. Loading may be slow; pages keep what they got.
class ObjectLoader {
 public:
  virtual ~ObjectLoader() = default;
  [[nodiscard]] virtual std::shared_ptr<DataObjectCollection> LoadDataObjects() = 0;
  [[nodiscard]] virtual std::shared_ptr<ObjectCollection> LoadDesignerObjects() = 0;
};

}  // namespace plovix
