// What a page knows of the application's data objects.
#pragma once

#include <memory>
#include <string>

#include "value.h"

namespace plovix {

class DataObject : public HostObject {
 public:
  [[nodiscard]] virtual std::string Name() = 0;
  [[nodiscard]] virtual std::string Key() = 0;  // name of the field that identifies a record
};

// A collection that a page only keeps and hands on (data objects, designer objects).
class ObjectCollection : public HostObject {};

// Loads the application's collections. Loading may be slow; pages keep what they got.
class ObjectLoader {
 public:
  virtual ~ObjectLoader() = default;
  [[nodiscard]] virtual std::shared_ptr<ObjectCollection> LoadDataObjects() = 0;
  [[nodiscard]] virtual std::shared_ptr<ObjectCollection> LoadDesignerObjects() = 0;
};

}  // namespace plovix
