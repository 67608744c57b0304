// Wall times as instants, and the next runs across the changes of real zones.
#include <plovix/standalone/schedule/runs.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <utility>

#include "schedule_support.h"

namespace plovix::schedule_tests {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

// The zone of a value of TZ; without a value that of the system. Stays set, for the C library too.
Zone LocalZone(const char* value) {
  if (value != nullptr)
    setenv("TZ", value, 1);
  else
    unsetenv("TZ");
  tzset();
  return Zone::Local();
}

std::string Text(sys_seconds at) {
  return schedule_tests::Text(DateTime{at.time_since_epoch()});
}

TEST(Zone, TurnsWallTimesIntoInstants) {
  const struct {
    const char *tz, *wall, *at, *abbreviation, *name;
  } cases[] = {
      {"no zone", "2026-07-01 00:00", "2026-07-01 00:00", "UTC", "UTC"},
      {"CEST", "2026-07-01 00:00", "2026-07-01 00:00", "UTC", "UTC"},
      {"UTC-3", "2026-07-01 00:00", "2026-06-30 21:00", "utc", "UTC-3"},
      {"GMT+3:30", "2026-07-01 00:00", "2026-07-01 03:30", "utc", "GMT+3:30"},
      {"AAA8BBB", "2061-07-01 00:00", "2061-07-01 07:00", "BBB", "AAA8BBB"},
      {":/usr/share/zoneinfo/Asia/Kolkata", "2026-07-01 00:00", "2026-06-30 18:30", "IST", "Asia/Kolkata"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "0001-01-01 12:00", "0001-01-01 11:00", "CET",
       "CET-1CEST,M3.5.0,M10.5.0/3"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.tz) + " " + c.wall);
    const Zone zone = LocalZone(c.tz);
    const Zone::Moment moment = zone.At(Time(c.wall));
    EXPECT_EQ(Text(moment.at), c.at);
    EXPECT_EQ(moment.wall, Time(c.wall));
    EXPECT_EQ(moment.abbreviation, c.abbreviation);
    EXPECT_FALSE(moment.shifted);
    EXPECT_EQ(zone.Name(), c.name);
    for (const DateTime wall : {Time(c.wall), DateTime::min(), DateTime::max()})
      EXPECT_EQ(zone.At(wall).at + zone.At(wall).offset, sys_seconds{zone.At(wall).wall.time_since_epoch()});
  }
  for (const char* name :
       {"Europe/Nowhere", "Europe/Nowhere3", "Europe", "", "CEST", "zone.tab", "../tzdata3"})
    EXPECT_FALSE(Zone::Named(name)) << name;
}

// For every value of TZ the C library knows what its clock shows at an instant.
TEST(Zone, AgreesWithTheSystemsClock) {
  std::mt19937_64 random(3);
  std::istringstream values(
      "Europe/Paris :America/New_York Australia/Lord_Howe America/Nuuk Africa/Casablanca Asia/Gaza "
      "Europe/Dublin Pacific/Apia UTC \"\" /usr/share/zoneinfo/Asia/Tokyo :/etc/localtime unset "
      "CET-1CEST,M3.5.0,M10.5.0/3 NZST-12NZDT,M9.5.0,M4.1.0/3 <-02>2<-01>,M3.5.0/-1,M10.5.0/0 "
      "ABC3:30DEF,J60/0,J300/26:15 <+0330>-3:30 ABC5DEF4,58,299/-3");
  for (std::string value; values >> std::quoted(value);) {
    const Zone local = LocalZone(value == "unset" ? nullptr : value.c_str());
    ASSERT_TRUE(Zone::Named(local.Name())) << value;
    const Zone zone = *Zone::Named(local.Name());
    for (int probe = 0; probe < 1500; ++probe) {
      // Until 2099 or 9000.
      const auto clock =
          static_cast<std::time_t>(random() % (probe % 2 == 0 ? 4'100'000'000 : 221'800'000'000));
      std::tm shown{};
      localtime_r(&clock, &shown);
      const sys_seconds at{seconds{clock}};
      const Zone::Moment moment = zone.At(DateTime{(at + seconds{shown.tm_gmtoff}).time_since_epoch()});
      const std::string trace = value + " at " + Text(at);
      ASSERT_FALSE(moment.shifted) << trace;
      ASSERT_EQ(zone.WallAt(at).time_since_epoch(), (at + seconds{shown.tm_gmtoff}).time_since_epoch())
          << trace;
      if (moment.at == at) {
        ASSERT_EQ(moment.abbreviation, shown.tm_zone) << trace;
        ASSERT_EQ(moment.offset.count(), shown.tm_gmtoff) << trace;
      } else {  // a repeated time, of which the clock showed the first
        const std::time_t first = moment.at.time_since_epoch().count();
        ASSERT_TRUE(moment.at < at && moment.offset.count() > shown.tm_gmtoff) << trace;
        localtime_r(&first, &shown);
        ASSERT_EQ(moment.offset.count(), shown.tm_gmtoff) << trace;
      }
    }
  }
}

// Golden runs forwards, backwards and one by one.
TEST(Runs, AreInstantsInOrderEachOnce) {
  const RecurrenceRecord at_gap = AtTime(DailyRecord{}, "02:30"),
                         day_30 = AtTime(MonthlyRecord{1, OnDay(30)});
  const auto minutes = [](int n) { return Every(n, time_kind::kEveryNMinutes, DailyRecord{}); };
  const auto hours = [](int n) { return Every(n, time_kind::kEveryNHours, DailyRecord{}); };
  const struct {
    const char *zone, *now;  // with Z an instant
    RecurrenceRecord record;
    std::string runs;  // instants without the year; for a shifted one the clock
  } cases[] = {
      {"Europe/Paris", "2026-03-28 00:00", at_gap, "03-28 01:30, 03-29 01:30 (03-29 03:30), 03-30 00:30"},
      {"Europe/Paris", "2026-03-29 02:30", at_gap, "03-30 00:30, 03-31 00:30"},
      {"Europe/Paris", "2026-03-29 03:00", at_gap, "03-29 01:30 (03-29 03:30), 03-30 00:30"},
      {"Europe/Paris", "2026-10-24 12:00", at_gap, "10-25 00:30, 10-26 01:30"},
      {"Europe/Paris", "2700-03-24 12:00", at_gap, "03-25 01:30 (03-25 03:30), 03-26 00:30"},
      {"Europe/Paris", "2026-03-29 01:00", minutes(30), "03-29 00:30, 03-29 01:00, 03-29 01:30, 03-29 02:00"},
      {"Europe/Paris", "2026-03-29 01:00", minutes(120), "03-29 01:00 (03-29 03:00), 03-29 02:00"},
      {"Europe/Paris", "2026-10-25 01:30", minutes(30),
       "10-25 00:00, 10-25 00:30, 10-25 01:00, 10-25 01:30, 10-25 02:00"},
      {"Europe/Paris", "2026-10-25 01:30", hours(1), "10-25 00:00, 10-25 01:00, 10-25 02:00"},
      {"Europe/Paris", "2026-10-25 01:30", hours(2), "10-25 00:00, 10-25 03:00"},
      {"Europe/Paris", "2026-10-25 01:10Z", minutes(30), "10-25 01:30, 10-25 02:00"},  // the second 02:10
      {"America/New_York", "2026-03-08 01:00", minutes(45), "03-08 06:30, 03-08 07:00, 03-08 07:45"},
      {"America/Havana", "2026-03-07 12:00", AtTime(WeeklyRecord{1, {true}}, "00:00"),
       "03-08 05:00 (03-08 01:00), 03-15 04:00"},
      {"Africa/Casablanca", "2026-02-14 12:00", at_gap, "02-15 01:30, 02-16 02:30"},
      {"Africa/Casablanca", "2026-03-21 12:00", at_gap, "03-22 02:30 (03-22 03:30), 03-23 01:30"},
      {"Australia/Lord_Howe", "2026-10-04 01:15", minutes(30), "10-03 15:00, 10-03 15:30, 10-03 16:00"},
      {"Australia/Lord_Howe", "2026-10-04 01:15", minutes(45),
       "10-03 15:00, 10-03 15:45 (10-04 02:45), 10-03 16:00"},
      {"Australia/Lord_Howe", "2026-10-04 01:15", hours(1), "10-03 15:30 (10-04 02:30), 10-03 16:00"},
      {"Australia/Lord_Howe", "2026-04-05 01:15", minutes(30), "04-04 14:30, 04-04 15:00, 04-04 15:30"},
      {"Australia/Lord_Howe", "2026-04-05 01:15", minutes(45), "04-04 14:30, 04-04 15:45"},
      {"Pacific/Apia", "2011-12-29 00:00", day_30, "12-30 18:00 (12-31 08:00), 01-29 18:00"},
      {"Pacific/Apia", "2011-12-29 09:00", AtTime(DailyRecord{}), "12-30 18:00, 12-31 18:00"},
      {"Pacific/Apia", "2011-12-29 12:00", hours(6), "12-30 04:00, 12-30 10:00, 12-30 16:00"},
      {"Pacific/Apia", "2011-12-29 12:00", hours(24), "12-30 10:00, 12-31 10:00"},
      {"Pacific/Apia", "2011-12-29 12:00", hours(58), "12-30 10:00 (12-31 00:00), 12-31 20:00"},
      {"Asia/Tokyo", "2026-12-31 08:00", AtTime(YearlyRecord{}), "12-31 23:00, 12-31 23:00"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.zone) + " " + c.runs);
    const Schedule schedule(c.record, Day("2011-12-01"));
    const Zone zone = *Zone::Named(c.zone);
    const Timetable timetable(schedule, zone);
    const DateTime now = Time(c.now);
    const auto after =
        std::string(c.now).ends_with('Z') ? sys_seconds{now.time_since_epoch()} : zone.At(now).at;
    const auto count = static_cast<std::size_t>(std::ranges::count(c.runs, ',')) + 1;
    const auto runs = NextRuns(timetable, after, count);
    ASSERT_EQ(runs.size(), count);
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
      const plovix::Run& run = runs[i];
      const sys_seconds at = run.moment.at;
      text += (text.empty() ? "" : ", ") + Text(at).substr(5);
      if (run.moment.shifted) text += " (" + schedule_tests::Text(run.moment.wall).substr(5) + ")";
      EXPECT_EQ(run.moment.wall != run.wanted, run.moment.shifted);
      EXPECT_TRUE(schedule.IsRun(run.wanted));
      EXPECT_EQ(timetable.Latest(at)->wanted, run.wanted);
      EXPECT_EQ(timetable.Next(at - seconds{1})->moment.at, at);
      const auto before = timetable.Latest(at - seconds{1});
      EXPECT_TRUE(i == 0 ? !before || before->moment.at <= after
                         : before && before->moment.at == runs[i - 1].moment.at);
      EXPECT_EQ(NextRuns(timetable, after, count, at).size(), i + 1);
      EXPECT_EQ(LatestRuns(timetable, after, count, at).size(), i + 1);
      EXPECT_EQ(LatestRuns(timetable, after, count, at).at(0).wanted, runs[0].wanted);
      EXPECT_EQ(LatestRuns(timetable, after, 1, at).at(0).moment.at, at);
      EXPECT_EQ(CountRuns(timetable, after, at), i + 1);
    }
    EXPECT_EQ(text, c.runs);
  }
}

TEST(Runs, EndWithTheScheduleAndNameMovedDays) {
  const Zone utc = *Zone::Named("UTC");
  const Timetable daily({AtTime(DailyRecord{}), Day("2026-03-07")}, utc);
  EXPECT_EQ(NextRuns(daily, utc.At(Time("9999-12-29 09:00")).at, 10).size(), 2U);
  EXPECT_FALSE(daily.Next(sys_seconds::max()) || daily.Latest(sys_seconds::min()) ||
               daily.Latest(utc.At(Time("2026-03-07 07:59:59")).at));
  EXPECT_EQ(daily.Next(sys_seconds::min())->wanted, Time("2026-03-07 08:00"));
  EXPECT_EQ(daily.Latest(sys_seconds::max())->wanted, Time("9999-12-31 08:00"));
  const Timetable last_days({AtTime(MonthlyRecord{1, OnDay(31)}), Day("2026-03-01")}, utc);
  const auto runs = NextRuns(last_days, utc.At(Time("2026-03-01")).at, 2);
  EXPECT_EQ(runs.at(0).moved_from, std::nullopt);
  EXPECT_EQ(runs.at(1).moved_from, 31);
}

// Every minute of a week ticks, in the skipped hour none and in the repeated one twice.
TEST(Runs, AreCountedInASpan) {
  const Zone paris = *Zone::Named("Europe/Paris");
  const Timetable every_minute({Every(1, time_kind::kEveryNMinutes, DailyRecord{}), Day("2026-01-01")},
                               paris);
  for (const auto& [monday, count] :
       {std::pair{"2026-03-16", 10'080U}, {"2026-03-23", 10'020U}, {"2026-10-19", 10'140U}})
    EXPECT_EQ(
        CountRuns(every_minute, paris.At(Time(monday)).at, paris.At(Time(monday) + std::chrono::days{7}).at),
        count);
}

}  // namespace
}  // namespace plovix::schedule_tests
