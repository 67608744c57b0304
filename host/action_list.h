// The actions of a task: what one is to the pages, and the ordered collection of them.
#pragma once

#include <cstdint>
#include <memory>

#include "value.h"

namespace plovix {

// Bits of Action::RecordModes, also the designer-object types of the action list's context.
namespace record_mode_bit {
inline constexpr std::int32_t kSingleRecord = 1;
inline constexpr std::int32_t kQueryResults = 8;
inline constexpr std::int32_t kNoData = 16;
}  // namespace record_mode_bit

// Bit of Action::Capabilities: may run under the automation manager.
inline constexpr std::int32_t kAutomationManagerCapability = 8;

class Action : public HostObject {
 public:
  [[nodiscard]] virtual std::int32_t RecordModes() = 0;   // set of record_mode_bit
  [[nodiscard]] virtual std::int32_t Capabilities() = 0;  // set of capability bits
};

class ActionList : public HostObject {
 public:
  [[nodiscard]] virtual std::int32_t Count() = 0;
  // 1-based; both fail with 9 outside 1 .. Count().
  [[nodiscard]] virtual std::shared_ptr<Action> Item(std::int32_t index) = 0;
  virtual void Remove(std::int32_t index) = 0;
};

}  // namespace plovix
