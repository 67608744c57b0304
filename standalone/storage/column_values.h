// The values of records, by type, to and from the columns of a task file. Used by the lists of columns.
#pragma once

#include <plovix/base/failure.h>
#include <plovix/standalone/runs/run_store.h>
#include <plovix/standalone/tasks/category_column.h>
#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <type_traits>

#include "columns.h"
#include "manager_record.h"
#include "settings_column.h"
#include "text_list_column.h"

namespace plovix {

// Returns the value; fails if it could not be read again.
template <class Time>
[[nodiscard]] Time Storable(Time value) {
  using std::chrono::local_days;
  constexpr local_days kFirst{std::chrono::year{0} / 1 / 1};
  constexpr local_days kBehind{std::chrono::year{10000} / 1 / 1};
  if (value < kFirst || value >= kBehind) {
    throw Failure(failure_number::kOverflow, "A date outside the years 0 to 9999 cannot be stored");
  }
  return value;
}

[[nodiscard]] inline bool IsNull(const Statement& row, int column) {
  return row.Type(column) == ColumnType::kNull;
}

// The names by which an enumeration is stored, in its order.
template <class Enum>
inline constexpr auto kStoredNames = nullptr;
template <>
inline constexpr auto kStoredNames<RunOrigin> = kRunOriginNames;
template <>
inline constexpr auto kStoredNames<RunState> = kRunStateNames;
template <>
inline constexpr auto kStoredNames<LedgerState> = kLedgerStateNames;
template <>
inline constexpr auto kStoredNames<Deed> = kDeedNames;
template <>
inline constexpr auto kStoredNames<MissedPolicy> = kMissedPolicyNames;
template <>
inline constexpr auto kStoredNames<OverlapPolicy> = kOverlapPolicyNames;
template <>
inline constexpr auto kStoredNames<InterruptedPolicy> = kInterruptedPolicyNames;
template <>
inline constexpr auto kStoredNames<ShortMonth> = kShortMonthNames;
template <>
inline constexpr auto kStoredNames<ManagerKind> = kManagerKindNames;

struct ToFile {
  Statement& statement;
  int parameter;
  void operator()(const std::string& text) const { statement.BindText(parameter, text); }
  void operator()(std::integral auto number) const { statement.BindInteger(parameter, number); }
  void operator()(DateTime value) const { statement.BindText(parameter, IsoDateTime(Storable(value))); }
  // In seconds since 1970.
  void operator()(Instant value) const { (*this)(value.time_since_epoch()); }
  void operator()(std::chrono::seconds value) const { statement.BindInteger(parameter, value.count()); }
  void operator()(const std::vector<CategoryRecord>& categories) const {
    statement.BindText(parameter, EncodeCategories(categories));
  }
  void operator()(const std::map<std::string, std::string>& settings) const {
    statement.BindText(parameter, EncodeSettings(settings));
  }
  void operator()(const std::vector<std::string>& texts) const {
    statement.BindText(parameter, EncodeTexts(texts));
  }
  template <class Enum>
  requires std::is_enum_v<Enum>
  void operator()(Enum value) const {
    statement.BindText(parameter, kStoredNames<Enum>.at(static_cast<std::size_t>(value)));
  }
  template <class Value>
  void operator()(const std::optional<Value>& value) const {
    if (!value) return statement.BindNull(parameter);
    (*this)(*value);
  }
};

// False if the stored value is not one of that type.
struct FromFile {
  const Statement& row;
  int column;
  bool operator()(std::string& text) const {
    text = row.Text(column);
    return true;
  }
  bool operator()(bool& flag) const {
    std::int64_t number = 0;
    const bool fits = ReadInteger(number, row, column);
    flag = number != 0;
    return fits;
  }
  template <std::integral Number>
  bool operator()(Number& number) const {
    return ReadInteger(number, row, column);
  }
  bool operator()(DateTime& date) const {
    const auto stored = ParseIsoDateTime(row.Text(column));
    if (stored) date = *stored;
    return stored.has_value();
  }
  bool operator()(Instant& value) const {
    std::chrono::seconds since{};
    const bool fits = (*this)(since);
    value = Instant(since);
    return fits;
  }
  bool operator()(std::chrono::seconds& value) const {
    std::int64_t number = 0;
    const bool fits = ReadInteger(number, row, column);
    value = std::chrono::seconds(number);
    return fits;
  }
  bool operator()(std::vector<CategoryRecord>& categories) const {
    categories = DecodeCategories(row.Text(column));
    return true;
  }
  bool operator()(std::map<std::string, std::string>& settings) const {
    settings = DecodeSettings(row.Text(column));
    return true;
  }
  bool operator()(std::vector<std::string>& texts) const {
    auto stored = DecodeTexts(row.Text(column));
    if (stored) texts = std::move(*stored);
    return stored.has_value();
  }
  template <class Enum>
  requires std::is_enum_v<Enum>
  bool operator()(Enum& value) const {
    const auto& names = kStoredNames<Enum>;
    const auto* found = std::ranges::find(names, row.Text(column));
    if (found != names.end()) value = static_cast<Enum>(found - names.begin());
    return found != names.end();
  }
  template <class Value>
  bool operator()(std::optional<Value>& value) const {
    value.reset();
    return IsNull(row, column) || (*this)(value.emplace());
  }
};

// A column for the value that `kLocate` finds in a record; NULL where it finds none.
template <auto kLocate, class Record>
[[nodiscard]] constexpr ColumnOf<Record> Column(std::string_view name) {
  return {name,
          [](Statement& statement, int parameter, const Record& record) {
            const auto* field = kLocate(record);
            if (field == nullptr) return statement.BindNull(parameter);
            ToFile{statement, parameter}(*field);
          },
          [](Record& record, const Statement& row, int column) {
            auto* field = kLocate(record);
            const bool is_null = IsNull(row, column);
            if (field == nullptr) return is_null;
            constexpr bool kMayBeNull = requires {
              field->reset();
            };
            return (kMayBeNull || !is_null) && FromFile{row, column}(*field);
          }};
}

}  // namespace plovix
