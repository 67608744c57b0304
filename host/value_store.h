// The wizard's shared keyed store, implemented by the host. It outlives every page.
#pragma once

#include "value.h"

namespace plovix {

class StoreEntry {
 public:
  virtual ~StoreEntry() = default;
  [[nodiscard]] virtual plovix::Value Value() const = 0;
};

// Keys are case-sensitive UTF-8 strings. Objects are kept by reference, never copied.
class ValueStore : public HostObject {
 public:
  // Adds under a new key; fails with 457 when the key is in use.
  virtual void Add(const std::string& key, Value value) = 0;
  // The entry under the key; fails with 5 when there is none.
  [[nodiscard]] virtual std::shared_ptr<StoreEntry> Item(const std::string& key) = 0;
  // The value under the key, else `fallback`; never fails for an absent key.
  [[nodiscard]] virtual Value GetValue(const std::string& key, const Value& fallback) = 0;
  // Stores, replacing any earlier value.
  virtual void SetItem(const std::string& key, Value value) = 0;
  [[nodiscard]] virtual bool Exists(const std::string& key) = 0;
};

// Keys used by the pages.
namespace store_key {
inline const std::string kAutoTask = "AutoTask";                    // AutoTask: put there by the host
inline const std::string kDataObject = "DataObject";                // DataObject, possibly nothing
inline const std::string kDataObjects = "DataObjects";              // DataObjectCollection, possibly nothing
inline const std::string kDesignerObjects = "DesignerObjects";      // ObjectCollection
inline const std::string kDailyRecurrence = "DailyRecurrence";      // DailyPattern: the daily page's entries
inline const std::string kWeeklyRecurrence = "WeeklyRecurrence";    // WeeklyPattern
inline const std::string kMonthlyRecurrence = "MonthlyRecurrence";  // MonthlyPattern
inline const std::string kYearlyRecurrence = "YearlyRecurrence";    // YearlyPattern
// bool, absent counts as true: whether tasks may be given to the automation manager
inline const std::string kAllowAutomationManager = "AllowAutomationManager";
// bools, absent counts as false: the task is being imported; the user may create shared tasks, personal ones
inline const std::string kImporting = "Importing";
inline const std::string kCreateGroup = "CreateGroup";
inline const std::string kCreatePersonal = "CreatePersonal";
inline const std::string kPersonalTask = "PersonalTask";  // bool: what the user chose for a new task
}  // namespace store_key

}  // namespace plovix
