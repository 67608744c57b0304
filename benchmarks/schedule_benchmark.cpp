// Compares the schedule engine with libical on the same rules, in the same run, in wall times without a zone.
// Both sides are prepared outside the measurement (a Schedule, and a kept icalrecur_iterator) and then
// queried from a given time on: Next against icalrecur_iterator_set_start and icalrecur_iterator_next,
// libical's quickest way to a run far from DTSTART. Then the next run as an instant, in a zone and from a
// schedule made anew, against QTimeZone's bare conversion of the same wall time. All results are compared
// first. The table at the end gives the ratios; exit status 1: one is below its limit, 2: the answers differ.
#include <benchmark/benchmark.h>
#include <libical/ical.h>
#include <plovix/standalone/schedule/runs.h>

#include <QDateTime>
#include <QTimeZone>
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

constexpr double kLeastRatio = 10;  // to libical
// To QTimeZone: a run costs at most as much as two conversions, so that a million are ready within a second.
constexpr double kLeastZoneRatio = 0.5;

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

// The next runs of one rule after instants all over a year, in a zone that has clock changes.
class ZoneSubject {
 public:
  explicit ZoneSubject(const RecurrenceRecord& record) : record_(record) {
    for (std::size_t i = 0; i < afters_.size(); ++i) {  // never in a repeated hour, which Qt takes otherwise
      afters_[i] = std::chrono::sys_days{year{2026} / 1 / 1} + hours{3} + i * hours{8};
      const DateTime wall = Ours(i).wanted;
      const auto day = std::chrono::floor<std::chrono::days>(wall);
      dates_[i] = QDate(1970, 1, 1).addDays(day.time_since_epoch().count());
      times_[i] =
          QTime::fromMSecsSinceStartOfDay(static_cast<int>((wall - day) / std::chrono::milliseconds{1}));
    }
  }

  Run Ours(std::size_t i) const {
    return *Timetable(Schedule(record_, kStarts[0].day), zone_).Next(afters_[i % afters_.size()]);
  }
  qint64 Qt(std::size_t i) const {
    return QDateTime(dates_[i % dates_.size()], times_[i % times_.size()], qt_zone_).toSecsSinceEpoch();
  }
  bool Agrees() const {
    for (std::size_t i = 0; i < afters_.size(); ++i)
      if (Ours(i).moment.at.time_since_epoch().count() != Qt(i)) return false;
    return true;
  }

 private:
  static constexpr std::size_t kAfters = 1000;
  RecurrenceRecord record_;
  Zone zone_ = Zone::Named("Europe/Paris").value();
  QTimeZone qt_zone_{"Europe/Paris"};
  std::array<std::chrono::sys_seconds, kAfters> afters_;
  std::array<QDate, kAfters> dates_;
  std::array<QTime, kAfters> times_;
};

struct Row {
  std::string name;
  double least_ratio;
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
  bool Print(const std::vector<Row>& rows) const {
    bool enough = true;
    std::printf("\n%-50s %10s %12s %8s\n", "rule, start, query", "ours ns", "theirs ns", "ratio");
    for (const auto& [name, least_ratio] : rows) {
      const auto ours = nanoseconds_.find(name + "/ours");
      const auto theirs = nanoseconds_.find(name + "/theirs");
      if (ours == nanoseconds_.end() || theirs == nanoseconds_.end()) continue;  // filtered out
      const double ratio = theirs->second / ours->second;
      enough = enough && ratio >= least_ratio;
      std::printf("%-50s %10.1f %12.1f %8.1f\n", name.c_str(), ours->second, theirs->second, ratio);
    }
    return enough;
  }

 private:
  std::map<std::string, double> nanoseconds_;
};

// Each side is called with the number of the call.
template <class Ours, class Theirs>
void Register(const std::string& name, Ours ours, Theirs theirs) {
  const auto measure = [](const std::string& side, auto work) {
    benchmark::RegisterBenchmark(side.c_str(), [work](benchmark::State& state) {
      std::size_t call = 0;
      for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(work(call++));
    });
  };
  measure(name + "/ours", ours);
  measure(name + "/theirs", theirs);
}

bool RegisterZone(const std::string& name, const RecurrenceRecord& record, std::vector<Row>& rows) {
  const auto subject = std::make_shared<const ZoneSubject>(record);
  if (!subject->Agrees()) {
    std::fprintf(stderr, "%s: the instants differ\n", name.c_str());
    return false;
  }
  rows.push_back({name, kLeastZoneRatio});
  Register(
      name, [=](std::size_t call) { return subject->Ours(call); },
      [=](std::size_t call) { return subject->Qt(call); });
  return true;
}

int Measure(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<Row> rows;
  for (const Rule& rule : kRules)
    for (const Start& start : kStarts) {
      const auto subject = std::make_shared<const Subject>(rule, start.day);
      if (!subject->Agrees()) {
        std::fprintf(stderr, "%s from %s: the answers differ\n", rule.name, start.name);
        return 2;
      }
      for (const int count : {1, 10}) {
        rows.push_back(
            {std::string(rule.name) + ", " + start.name + (count == 1 ? ", next run" : ", ten runs"),
             kLeastRatio});
        Register(
            rows.back().name, [=](std::size_t /*call*/) { return subject->Ours(count); },
            [=](std::size_t /*call*/) { return subject->Ical(count); });
      }
    }
  for (const Rule& rule : kRules)
    if (!RegisterZone(std::string(rule.name) + ", an instant",
                      {0, time_kind::kAtTime, 0, kZeroDate + hours{8}, rule.pattern}, rows))
      return 2;
  if (!RegisterZone("every minute, an instant",
                    {0, time_kind::kEveryNMinutes, 1, kZeroDate, DailyRecord{1, false}}, rows))
    return 2;
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.Print(rows) ? 0 : 1;
}

}  // namespace
}  // namespace plovix

int main(int argc, char** argv) {
  return plovix::Measure(argc, argv);
}
