/// @file
/// The actions of a task: one action as the pages see it, and the ordered collection.
#pragma once

#include <cstdint>

#include "value.h"

namespace plovix {

/// Bits of Action::RecordModes, also the designer-object types of the action list's context.
namespace record_mode_bit {
inline constexpr std::int32_t kSingleRecord = 1;  ///< fits a task with record_mode::kSingleRecord
inline constexpr std::int32_t kQueryResults = 8;  ///< fits one with record_mode::kQueryResults
inline constexpr std::int32_t kNoData = 16;       ///< fits one with record_mode::kNoData
}  // namespace record_mode_bit

/// Bit of Action::Capabilities: may run under the automation manager.
inline constexpr std::int32_t kAutomationManagerCapability = 8;

/// One step of a task. Only the host knows what it does; Details asks whether it still fits the task.
class Action : public HostObject {
 public:
  [[nodiscard]] virtual std::int32_t RecordModes() = 0;   ///< set of record_mode_bit
  [[nodiscard]] virtual std::int32_t Capabilities() = 0;  ///< set of capability bits
};

/// The actions of a task in the order in which they run.
class ActionList : public HostObject {
 public:
  /// The number of actions; if there are any, the first page asks the user before it drops them.
  [[nodiscard]] virtual std::int32_t Count() = 0;
  /// @{
  /// 1-based; fails with 9 outside 1 .. Count(). Details removes the actions that no longer fit, from the
  /// last to the first.
  [[nodiscard]] virtual Ref<Action> Item(std::int32_t index) = 0;
  virtual void Remove(std::int32_t index) = 0;
  /// @}
};

}  // namespace plovix
