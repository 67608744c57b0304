// The one day that a monthly or yearly record chooses in each of its months. Used by DayRule.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>
#include <plovix/standalone/tasks/task_policies.h>

#include <chrono>
#include <cstdint>
#include <optional>

namespace plovix {

class DayInMonth {
 public:
  // Nothing if a number that this choice uses is outside its range.
  [[nodiscard]] static std::optional<DayInMonth> From(const DayChoice& choice, ShortMonth short_month);

  // Nothing only for a specific day that the month lacks, if such months are skipped; otherwise it is then
  // the month's last day.
  [[nodiscard]] std::optional<std::chrono::local_days> In(std::chrono::year_month month) const;
  // The specific day if `month` lacks it.
  [[nodiscard]] std::optional<int> MissingIn(std::chrono::year_month month) const;

 private:
  [[nodiscard]] std::chrono::local_days NthIn(std::chrono::year_month month) const;
  [[nodiscard]] std::chrono::local_days LastIn(std::chrono::year_month month) const;

  bool relative_ = false;
  unsigned day_ = 1;  // 1 to 31
  ShortMonth short_month_ = ShortMonth::kLast;
  std::int32_t week_ = 0;  // 0 to 4
  // A kind of relative day is a sequence of consecutive days of the week: its first day, and its length.
  std::chrono::weekday kind_begin_ = std::chrono::Sunday;
  int kind_length_ = 1;
};

}  // namespace plovix
