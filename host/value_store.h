/// @file
/// The wizard's shared keyed store, implemented by the host. It outlives every page.
#pragma once

#include "value.h"

namespace plovix {

/// What ValueStore::Item gives out.
class StoreEntry {
 public:
  virtual ~StoreEntry() = default;
  /// The stored value; an object by reference.
  [[nodiscard]] virtual plovix::Value Value() const = 0;
};

/// Keys are case-sensitive UTF-8 strings. Objects are kept by reference, never copied. The host makes one for
/// each wizard, before the first page; pages also make their own through ObjectFactory::NewValueStore.
class ValueStore : public HostObject {
 public:
  /// Adds under a new key; fails with 457 when the key is in use.
  virtual void Add(const std::string& key, Value value) = 0;
  /// The entry under the key; fails with 5 when there is none.
  [[nodiscard]] virtual Ref<StoreEntry> Item(const std::string& key) = 0;
  /// The value under the key, else `fallback`; never fails for an absent key.
  [[nodiscard]] virtual Value GetValue(const std::string& key, const Value& fallback) = 0;
  /// Stores, replacing any earlier value.
  virtual void SetItem(const std::string& key, Value value) = 0;
  /// Whether a value is stored under the key, be it a missing value or an empty reference.
  [[nodiscard]] virtual bool Exists(const std::string& key) = 0;
};

/// Keys used by the pages; plain characters, as in framework/page_identifiers.h.
namespace store_key {
/// AutoTask: put there by the host before the first page; the only entry that every page needs.
inline constexpr char kAutoTask[] = "AutoTask";
/// DataObject, possibly nothing: written by Details, read by Actions.
inline constexpr char kDataObject[] = "DataObject";
/// DataObjectCollection, possibly nothing: by the host, or by the first page that has loaded it.
inline constexpr char kDataObjects[] = "DataObjects";
/// ObjectCollection: by the host, or by Actions.
inline constexpr char kDesignerObjects[] = "DesignerObjects";
/// @{
/// DailyPattern and so on: the entries of each pattern page while the wizard runs, written by that page
/// alone.
inline constexpr char kDailyRecurrence[] = "DailyRecurrence";
inline constexpr char kWeeklyRecurrence[] = "WeeklyRecurrence";
inline constexpr char kMonthlyRecurrence[] = "MonthlyRecurrence";
inline constexpr char kYearlyRecurrence[] = "YearlyRecurrence";
/// @}
/// bool, absent counts as true, by the host: whether tasks may be given to the automation manager.
inline constexpr char kAllowAutomationManager[] = "AllowAutomationManager";
/// bool, absent counts as false, by the host: the task is being imported; Details ends the wizard.
inline constexpr char kImporting[] = "Importing";
/// @{
/// bool, absent counts as false, by the host: the user may create shared tasks, or personal ones.
inline constexpr char kCreateGroup[] = "CreateGroup";
inline constexpr char kCreatePersonal[] = "CreatePersonal";
/// @}
/// bool: what the user chose for a new task; by Details.
inline constexpr char kPersonalTask[] = "PersonalTask";
}  // namespace store_key

}  // namespace plovix
