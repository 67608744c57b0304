// The one day that a monthly or yearly record chooses in each of its months. Used by the rules of days.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>

#include <chrono>
#include <cstdint>
#include <optional>

namespace plovix {

class DayInMonth {
 public:
  // Nothing when a number that counts in this choice is outside its range.
  [[nodiscard]] static std::optional<DayInMonth> From(const DayChoice& choice);

  // Every month has the day: a specific day that the month lacks is the month's last.
  [[nodiscard]] std::chrono::local_days In(std::chrono::year_month month) const;
  // The specific day when `month` lacks it.
  [[nodiscard]] std::optional<int> MissingIn(std::chrono::year_month month) const;

 private:
  [[nodiscard]] std::chrono::local_days NthIn(std::chrono::year_month month) const;
  [[nodiscard]] std::chrono::local_days LastIn(std::chrono::year_month month) const;

  bool relative_ = false;
  unsigned day_ = 1;       // 1 to 31
  std::int32_t week_ = 0;  // 0 to 4
  // The kinds of relative days are runs of neighbours in the week: where the run begins, and its length.
  std::chrono::weekday kind_begin_ = std::chrono::Sunday;
  int kind_length_ = 1;
};

}  // namespace plovix
