/// @file
/// A keyed collection of texts in the order in which they were added.
#pragma once

#include <cstdint>
#include <string>

#include "value.h"

namespace plovix {

/// Created by ObjectFactory::NewTextCollection, filled by the Details page with the categories in use, and
/// passed to the host's editors as choices. Texts and keys are UTF-8; keys are case-sensitive.
class TextCollection : public HostObject {
 public:
  /// Fails with 457 if the key is in use.
  virtual void Add(const std::string& text, const std::string& key) = 0;
  /// The number of texts.
  [[nodiscard]] virtual std::int32_t Count() = 0;
  /// 1-based; fails with 9 outside 1 .. Count().
  [[nodiscard]] virtual std::string Item(std::int32_t index) = 0;
};

}  // namespace plovix
