#include "run_words.h"

#include <algorithm>
#include <array>

namespace plovix {
namespace {

struct TimeUnit {
  std::chrono::seconds length;
  const char* text;
};
constexpr std::array kUnits{
    TimeUnit{std::chrono::days{1}, "time.days"}, TimeUnit{std::chrono::hours{1}, "time.hours"},
    TimeUnit{std::chrono::minutes{1}, "time.minutes"}, TimeUnit{std::chrono::seconds{1}, "time.seconds"}};

// Less late than this is on time: an instant is a whole second, and a program takes a moment to begin.
constexpr std::chrono::seconds kOnTime{5};

constexpr std::array kRecordStates{"run.record.begun", "run.record.done", "run.record.failed",
                                   "run.record.inDoubt"};

// The largest `most` units from the first that is not nothing on, without those that are nothing.
std::string InUnits(std::chrono::seconds time, std::size_t most, const TextTable& texts) {
  std::string words;
  const auto* unit = std::ranges::find_if(kUnits, [&](const TimeUnit& each) { return each.length <= time; });
  for (std::size_t count = 0; unit != kUnits.end() && count < most; ++unit, ++count) {
    const auto number = time / unit->length;
    time %= unit->length;
    if (number == 0) continue;
    if (!words.empty()) words += ' ';
    words += texts.Host(unit->text, {std::to_string(number)});
  }
  return words.empty() ? texts.Host(kUnits.back().text, {"0"}) : words;
}

}  // namespace

std::string StateInWords(const RunRecord& run, const TextTable& texts) {
  if (run.missed && run.missed->count > 1)
    return texts.Host("run.state.missedMany", {std::to_string(run.missed->count)});
  if (run.IsRetrying()) return texts.Host("run.state.retrying");
  if (run.state == RunState::kRunning && run.cancel) return texts.Host("run.state.cancelling");
  return texts.Host("run.state." + std::string(kRunStateNames.at(IndexOf(run.state))));
}

std::string OriginInWords(const RunRecord& run, const TextTable& texts) {
  const std::string key = "run.origin." + std::string(kRunOriginNames.at(IndexOf(run.origin)));
  return run.person.empty() ? texts.Host(key) : texts.Host(key + "By", {run.person});
}

std::string ReasonInWords(const RunRecord& run, const TextTable& texts) {
  constexpr std::array kOwn{"late", "paused", "running", "queued", "cancelled", "restored"};
  if (std::ranges::count(kOwn, run.reason) == 0) return run.reason;
  return texts.Host("run.reason." + run.reason);
}

std::string ReasonInWords(const Pause& pause, const TextTable& texts) {
  return pause.person.empty() && pause.reason == "restored" ? texts.Host("pause.restored") : pause.reason;
}

std::string LatenessInWords(const RunRecord& run, const TextTable& texts) {
  if (!run.due || !run.started || run.attempt != 1) return {};
  const std::chrono::seconds late = *run.started - *run.due;
  return late < kOnTime ? texts.Host("run.onTime") : texts.Host("run.late", {DurationInWords(late, texts)});
}

std::string CountsInWords(const RecordCounts& records, const TextTable& texts) {
  if (records.found == 0) return {};
  const auto number = [](std::int64_t count) { return std::to_string(count); };
  if (records.failed == 0 && records.skipped == 0)
    return texts.Host("run.allDone", {number(records.done), number(records.found)});
  return texts.Host("run.counts", {number(records.found), number(records.done), number(records.failed),
                                   number(records.skipped)});
}

std::string RecordInWords(const std::string& key, const TextTable& texts) {
  constexpr std::size_t kType = 2;  // "i:"
  const bool typed = key.size() >= kType && key[1] == ':';
  const std::string text = typed ? key.substr(kType) : key;
  return text.empty() ? texts.Host("run.record.empty") : text;
}

std::string StateInWords(LedgerState state, const TextTable& texts) {
  return texts.Host(kRecordStates.at(IndexOf(state)));
}

std::string DurationInWords(const RunRecord& run, Instant now, const TextTable& texts) {
  if (!run.started) return {};
  return DurationInWords(std::max(run.ended.value_or(now) - *run.started, std::chrono::seconds{0}), texts);
}

std::string DurationInWords(std::chrono::seconds time, const TextTable& texts) {
  return InUnits(time, 2, texts);
}

std::string DistanceInWords(Instant at, Instant now, const TextTable& texts) {
  if (at == now) return texts.Host("time.now");
  return at < now ? texts.Host("time.ago", {InUnits(now - at, 1, texts)})
                  : texts.Host("time.in", {InUnits(at - now, 1, texts)});
}

}  // namespace plovix
