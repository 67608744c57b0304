#include "time_rule.h"

namespace plovix {

std::optional<TimeRule> TimeRule::From(const RecurrenceRecord& record, std::chrono::local_days start) {
  const DateTime midnight{start};
  const std::int64_t interval = record.interval == 0 ? 1 : record.interval;
  switch (record.time_kind) {
    case time_kind::kAtTime:  // for a time before 1970 the first tick is on the day before, which has no run
      return TimeRule{midnight + record.execution_time.time_since_epoch() % std::chrono::days{1},
                      std::chrono::days{1}, false};
    case time_kind::kEveryNMinutes:
      if (interval < 0) return std::nullopt;
      return TimeRule{midnight, std::chrono::minutes{interval}, true};
    case time_kind::kEveryNHours:
      if (interval < 0) return std::nullopt;
      return TimeRule{midnight, std::chrono::hours{interval}, true};
    default:
      return std::nullopt;
  }
}

DateTime TimeRule::AtOrAfter(DateTime at) const {
  if (at <= first_) return first_;
  return first_ + (at - first_ + step_ - std::chrono::seconds{1}) / step_ * step_;
}

std::optional<DateTime> TimeRule::AtOrBefore(DateTime at) const {
  if (at < first_) return std::nullopt;
  return first_ + (at - first_) / step_ * step_;
}

}  // namespace plovix
