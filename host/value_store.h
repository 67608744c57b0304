/// @file
/// The wizard's shared keyed store, implemented by the host. It outlives every page.
#pragma once

#include "value.h"

namespace plovix {

/// What ValueStore::Item returns.
class StoreEntry {
 public:
  virtual ~StoreEntry() = default;
  /// The stored value; an object by reference.
  [[nodiscard]] virtual plovix::Value Value() const = 0;
};

/// Keys are case-sensitive UTF-8 strings. Objects are kept by reference, never copied. The host creates one
/// store for each wizard, before the first page; pages also create their own through
/// ObjectFactory::NewValueStore.
class ValueStore : public HostObject {
 public:
  /// Adds a value under a new key; fails with 457 if the key is in use.
  virtual void Add(const std::string& key, Value value) = 0;
  /// The entry under the key; fails with 5 if there is none.
  [[nodiscard]] virtual Ref<StoreEntry> Item(const std::string& key) = 0;
  /// The value under the key, or `fallback` if there is none.
  [[nodiscard]] virtual Value GetValue(const std::string& key, const Value& fallback) = 0;
  /// Stores a value, replacing any earlier one.
  virtual void SetItem(const std::string& key, Value value) = 0;
  /// Whether anything is stored under the key, even a missing value or an empty reference.
  [[nodiscard]] virtual bool Exists(const std::string& key) = 0;
};

/// Keys used by the pages; character arrays, as in framework/page_identifiers.h.
namespace store_key {
/// AutoTask: put there by the host before the first page; the only entry that every page needs.
inline constexpr char kAutoTask[] = "AutoTask";
/// DataObject, possibly null: written by Details, read by Actions.
inline constexpr char kDataObject[] = "DataObject";
/// DataObjectCollection, possibly null: written by the host, or by the first page that loads it.
inline constexpr char kDataObjects[] = "DataObjects";
/// ObjectCollection: written by the host, or by Actions.
inline constexpr char kDesignerObjects[] = "DesignerObjects";
/// @{
/// DailyPattern and so on: the entry of each pattern page while the wizard runs, written only by that page.
inline constexpr char kDailyRecurrence[] = "DailyRecurrence";
inline constexpr char kWeeklyRecurrence[] = "WeeklyRecurrence";
inline constexpr char kMonthlyRecurrence[] = "MonthlyRecurrence";
inline constexpr char kYearlyRecurrence[] = "YearlyRecurrence";
/// @}
/// bool, by default true, written by the host: whether tasks may be given to the automation manager.
inline constexpr char kAllowAutomationManager[] = "AllowAutomationManager";
/// bool, by default false, written by the host: the task is being imported; Details ends the wizard.
inline constexpr char kImporting[] = "Importing";
/// @{
/// bool, by default false, written by the host: the user may create shared tasks, or personal ones.
inline constexpr char kCreateGroup[] = "CreateGroup";
inline constexpr char kCreatePersonal[] = "CreatePersonal";
/// @}
/// bool: what the user chose for a new task; written by Details.
inline constexpr char kPersonalTask[] = "PersonalTask";
}  // namespace store_key

}  // namespace plovix
