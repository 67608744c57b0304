#include "record_choice.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace plovix {
namespace {

// FNV-1a; it stands in files, so it never changes.
std::string HashOf(const std::string& text) {
  std::uint64_t hash = 14'695'981'039'346'656'037U;
  for (const char byte : text) {
    hash ^= static_cast<unsigned char>(byte);
    hash *= 1'099'511'628'211U;
  }
  std::array<char, 16> digits{};
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), hash, 16);
  return {digits.data(), end};
}

// Values outside the known three are kept by the page; they process nothing twice.
bool IsTakenAnew(const TaskRecord& task, const SourceRecord& record, const std::optional<LedgerRow>& known) {
  constexpr std::int32_t kModified = 1, kEveryTime = 2;
  if (!known || task.processing_mode == kEveryTime) return true;
  return task.processing_mode == kModified && known->fingerprint != FingerprintOf(record);
}

}  // namespace

std::string FingerprintOf(const SourceRecord& record) {
  if (record.change) return "c:" + *record.change;
  std::string all;
  for (const NamedValue& value : record.values) {
    const std::string key = KeyOf(value.value);
    all.append(value.name).append("=").append(std::to_string(key.size())).append(":").append(key);
  }
  return "h:" + HashOf(all);
}

RecordChoice Choose(const TaskRecord& task, const RunRecord& run, const SourceRecord& record,
                    const std::optional<LedgerRow>& known) {
  const bool of_this_run = known && known->run == run.id;
  if (of_this_run && known->state == LedgerState::kDone) return RecordChoice::kDoneBefore;
  if (of_this_run) return RecordChoice::kTake;
  if (!run.keys.empty()) return RecordChoice::kTake;
  if (known && known->state == LedgerState::kInDoubt) return RecordChoice::kSkip;
  if (task.base_date != kZeroDate && record.changed_at < task.base_date) return RecordChoice::kSkip;
  return IsTakenAnew(task, record, known) ? RecordChoice::kTake : RecordChoice::kSkip;
}

}  // namespace plovix
