// Which runs a person is told of.
#include <gtest/gtest.h>
#include <plovix/standalone/runs/notice_rules.h>

#include <algorithm>

namespace plovix {
namespace {

// A letter for each run: s succeeds, f fails, p partly, i interrupted, m missed, z missed in a pause, c
// cancelled, k skipped, d a dry run that fails, r still runs. Returns a letter for each notice: F, W, M.
std::string ToldOf(const std::string& known, const std::string& runs, int failures) {
  constexpr std::string_view kLetters = "?rsfpcimk";
  NoticeRules rules(failures);
  std::vector<RunRecord> history;
  std::string told;
  const auto add = [&](char letter) {
    RunRecord run;
    run.id = static_cast<std::int64_t>(history.size()) + 1;
    run.task = 7;
    if (letter == 'z') run.reason = "paused";
    if (letter == 'd') run.origin = RunOrigin::kDryRun;
    const char state = letter == 'z' ? 'm' : letter == 'd' ? 'f' : letter;
    run.state = static_cast<RunState>(kLetters.find(state));
    history.insert(history.begin(), run);
  };
  const auto take = [&] {
    for (const Notice& notice : rules.Take(history)) told += "FWM"[static_cast<int>(notice.kind)];
  };
  std::ranges::for_each(known, add);
  take();
  for (const char letter : runs) {
    add(letter);
    take();
    take();  // nothing is told twice
  }
  // What ran ends at last, and is told then, although newer runs are known.
  for (RunRecord& run : history)
    if (run.state == RunState::kRunning) run.state = RunState::kFailed;
  take();
  return told;
}

TEST(NoticeRules, TellEachStateOnce) {
  struct Case {
    const char *known, *runs;
    int failures;
    const char* told;
  };
  const std::vector<Case> cases{
      {"", "sss", 1, ""},    {"", "fff", 1, "F"}, {"", "ffsffs", 1, "FWFW"}, {"", "p", 1, "F"},
      {"", "i", 1, "F"},     {"f", "ff", 1, ""},  {"f", "s", 1, "W"},        {"", "fsff", 2, "F"},
      {"", "ffsf", 2, "FW"}, {"", "mmm", 1, "M"}, {"", "msm", 1, "MM"},      {"", "mfm", 1, "MFM"},
      {"", "zckd", 1, ""},   {"m", "ms", 1, ""},  {"", "fckf", 1, "F"},      {"", "fcsf", 3, ""},
      {"r", "", 1, "F"},     {"", "rs", 1, "F"},  {"f", "mfs", 1, "MW"}};
  for (const Case& each : cases)
    EXPECT_EQ(ToldOf(each.known, each.runs, each.failures), each.told) << each.known << "|" << each.runs;
}

}  // namespace
}  // namespace plovix
