// A keyed collection of texts in the order in which they were added.
#pragma once

#include <cstdint>
#include <string>

#include "value.h"

namespace plovix {

class TextCollection : public HostObject {
 public:
  // Fails with 457 when the key is in use.
  virtual void Add(const std::string& text, const std::string& key) = 0;
  [[nodiscard]] virtual std::int32_t Count() = 0;
  // 1-based; fails with 9 outside 1 .. Count().
  [[nodiscard]] virtual std::string Item(std::int32_t index) = 0;
};

}  // namespace plovix
