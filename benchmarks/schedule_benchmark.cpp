// Compares the schedule engine with libical on the same rules, in the same run, in wall times without a zone.
// Both sides are prepared outside the measurement (a Schedule, and a kept icalrecur_iterator) and then
// queried from a given time on: Next against icalrecur_iterator_set_start and icalrecur_iterator_next,
// libical's quickest way to a run far from DTSTART. All results are compared first. The table at the end
// gives the ratios; exit status 1: one is below kLeastRatio, 2: the answers differ.
#include <benchmark/benchmark.h>
#include <libical/ical.h>
#include <plovix/standalone/schedule/schedule.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace plovix {
namespace {

using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::year;

constexpr double kLeastRatio = 10;

struct Rule {
  const char* name = nullptr;
  PatternRecord pattern;
  const char* text = nullptr;  // for libical
};

const Rule kRules[] = {
    {"daily, every 3 days", DailyRecord{3, false}, "FREQ=DAILY;INTERVAL=3"},
    {"weekly, every 2 on Mo We Fr", WeeklyRecord{2, {false, true, false, true, false, true, false}},
     "FREQ=WEEKLY;WKST=SU;INTERVAL=2;BYDAY=MO,WE,FR"},
    {"monthly, 31 or last", MonthlyRecord{1, {false, 31, 0, 0}},
     "FREQ=MONTHLY;BYMONTHDAY=28,29,30,31;BYSETPOS=-1"},
    {"monthly, last Friday", MonthlyRecord{1, {true, 0, 4, 6}}, "FREQ=MONTHLY;BYDAY=-1FR"},
    {"monthly, second weekday", MonthlyRecord{1, {true, 0, 1, 9}},
     "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=2"},
    {"yearly, 15 November", YearlyRecord{11, {false, 15, 0, 0}}, "FREQ=YEARLY;BYMONTH=11;BYMONTHDAY=15"},
};

// Each is a Sunday and a New Year's Day: the first day of every period, so that DTSTART needs no shift.
struct Start {
  const char* name = nullptr;
  local_days day;
};
const Start kStarts[] = {{"1984", local_days{year{1984} / 1 / 1}}, {"2023", local_days{year{2023} / 1 / 1}}};

const DateTime kAfter = local_days{year{2023} / 3 / 10} + hours{12};

icaltimetype IcalTime(DateTime time) {
  const local_days day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date{day};
  icaltimetype result = icaltime_null_time();
  result.year = int{date.year()};
  result.month = static_cast<int>(unsigned{date.month()});
  result.day = static_cast<int>(unsigned{date.day()});
  result.hour = static_cast<int>(std::chrono::floor<hours>(time - day).count());
  return result;
}

DateTime FromIcal(const icaltimetype& time) {
  return local_days{year{time.year} / time.month / time.day} + hours{time.hour};
}

// One rule from one start, ready to be queried on either side.
class Subject {
 public:
  Subject(const Rule& rule, local_days start)
      : schedule_({0, time_kind::kAtTime, 0, kZeroDate + hours{8}, rule.pattern}, start),
        iterator_(
            icalrecur_iterator_new(icalrecurrencetype_from_string(rule.text), IcalTime(start + hours{8})),
            &icalrecur_iterator_free) {}

  DateTime Ours(int count) const {
    DateTime at = kAfter;
    for (int run = 0; run < count; ++run) at = *schedule_.Next(at);
    return at;
  }

  icaltimetype Ical(int count) const {
    icalrecur_iterator_set_start(iterator_.get(), after_);
    icaltimetype at{};
    for (int run = 0; run < count; ++run) at = icalrecur_iterator_next(iterator_.get());
    return at;
  }

  bool Agrees() const {
    for (int count = 1; count <= 50; ++count)
      if (Ours(count) != FromIcal(Ical(count))) return false;
    return true;
  }

 private:
  Schedule schedule_;
  std::unique_ptr<icalrecur_iterator, decltype(&icalrecur_iterator_free)> iterator_;
  icaltimetype after_ = IcalTime(kAfter);
};

// Shows the measurements as they come and keeps them for the table.
class Table final : public benchmark::ConsoleReporter {
 public:
  Table() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) nanoseconds_[run.run_name.function_name] = run.GetAdjustedCPUTime();
  }

  // Prints the table; returns whether every ratio is large enough.
  bool Print(const std::vector<std::string>& names) const {
    bool enough = true;
    std::printf("\n%-50s %10s %12s %8s\n", "rule, start, query", "ours ns", "libical ns", "ratio");
    for (const std::string& name : names) {
      const auto ours = nanoseconds_.find(name + "/ours");
      const auto ical = nanoseconds_.find(name + "/libical");
      if (ours == nanoseconds_.end() || ical == nanoseconds_.end()) continue;  // filtered out
      const double ratio = ical->second / ours->second;
      enough = enough && ratio >= kLeastRatio;
      std::printf("%-50s %10.1f %12.1f %8.1f\n", name.c_str(), ours->second, ical->second, ratio);
    }
    return enough;
  }

 private:
  std::map<std::string, double> nanoseconds_;
};

void Register(const std::string& name, const std::shared_ptr<const Subject>& subject, int count) {
  benchmark::RegisterBenchmark((name + "/ours").c_str(), [=](benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(subject->Ours(count));
  });
  benchmark::RegisterBenchmark((name + "/libical").c_str(), [=](benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(subject->Ical(count));
  });
}

int Run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<std::string> names;
  for (const Rule& rule : kRules)
    for (const Start& start : kStarts) {
      const auto subject = std::make_shared<const Subject>(rule, start.day);
      if (!subject->Agrees()) {
        std::fprintf(stderr, "%s from %s: the answers differ\n", rule.name, start.name);
        return 2;
      }
      for (const int count : {1, 10}) {
        names.push_back(std::string(rule.name) + ", " + start.name +
                        (count == 1 ? ", next run" : ", ten runs"));
        Register(names.back(), subject, count);
      }
    }
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.Print(names) ? 0 : 1;
}

}  // namespace
}  // namespace plovix

int main(int argc, char** argv) {
  return plovix::Run(argc, argv);
}
