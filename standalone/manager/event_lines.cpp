#include "event_lines.h"

#include <plovix/base/utf8.h>
#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace plovix::manager {
namespace {

constexpr std::size_t kLongestPart = 300;  // bytes of a name or reason in a line

// What others wrote stays one line and says nothing to a terminal.
std::string OneLineOf(const std::string& text) {
  std::string line = Shortened(text, kLongestPart);
  std::ranges::replace_if(
      line, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, ' ');
  return line;
}

std::string UtcText(Instant at) {
  return IsoDateTime(DateTime{at.time_since_epoch()}) + "Z";
}

}  // namespace

std::string EventLine(const RunRecord& run, const RunEnd* end, const std::string& name) {
  std::string line = "run " + std::to_string(run.id) + " of task " + std::to_string(run.task) + " \"" +
                     OneLineOf(name) + "\": ";
  if (end == nullptr) {
    line.append("begins, ").append(kRunOriginNames.at(IndexOf(run.origin)));
    if (run.attempt > 1) line += ", attempt " + std::to_string(run.attempt);
    return line;
  }
  line.append(kRunStateNames.at(IndexOf(end->state)));
  if (end->records.found > 0) {
    line += ", " + std::to_string(end->records.done) + " of " + std::to_string(end->records.found) +
            " records done, " + std::to_string(end->records.failed) + " failed";
  }
  return end->reason.empty() ? line : line + ": " + OneLineOf(end->reason);
}

std::string EventJson(const RunRecord& run, const RunEnd* end, const std::string& name, Instant now) {
  nlohmann::ordered_json json{{"at", UtcText(now)},    {"event", end == nullptr ? "begin" : "end"},
                              {"run", run.id},         {"task", run.task},
                              {"name", name},          {"origin", kRunOriginNames.at(IndexOf(run.origin))},
                              {"attempt", run.attempt}};
  if (end != nullptr) {
    json["state"] = kRunStateNames.at(IndexOf(end->state));
    json["reason"] = end->reason;
    json["records"] = {{"found", end->records.found},
                       {"done", end->records.done},
                       {"failed", end->records.failed},
                       {"skipped", end->records.skipped}};
  }
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace plovix::manager
