// The categories of a task.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "value.h"

namespace plovix {

class Category : public HostObject {
 public:
  [[nodiscard]] virtual std::string Tag() = 0;   // language tag that carries the text
  [[nodiscard]] virtual std::string Text() = 0;  // the tag's text in the current language
  [[nodiscard]] virtual bool Public() = 0;
};

class CategoryList : public HostObject {
 public:
  [[nodiscard]] virtual std::int32_t Count() = 0;
  // 1-based; fails with 9 outside 1 .. Count().
  [[nodiscard]] virtual std::shared_ptr<Category> Item(std::int32_t index) = 0;
};

}  // namespace plovix
