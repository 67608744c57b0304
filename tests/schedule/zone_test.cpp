// Wall times as instants, and the next runs across the changes of real zones.
#include <plovix/standalone/schedule/runs.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <sstream>

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
    const char *tz, *wall, *at, *abbreviation;
  } cases[] = {
      {"no zone", "2026-07-01 00:00", "2026-07-01 00:00", "UTC"},
      {"CEST", "2026-07-01 00:00", "2026-07-01 00:00", "UTC"},
      {"UTC-3", "2026-07-01 00:00", "2026-06-30 21:00", "utc"},
      {"GMT+3:30", "2026-07-01 00:00", "2026-07-01 03:30", "utc"},
      {"AAA8BBB", "2061-07-01 00:00", "2061-07-01 07:00", "BBB"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "0001-01-01 12:00", "0001-01-01 11:00", "CET"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.tz) + " " + c.wall);
    const Zone zone = LocalZone(c.tz);
    const Zone::Moment moment = zone.At(Time(c.wall));
    EXPECT_EQ(Text(moment.at), c.at);
    EXPECT_EQ(moment.wall, Time(c.wall));
    EXPECT_EQ(moment.abbreviation, c.abbreviation);
    EXPECT_FALSE(moment.shifted);
    EXPECT_TRUE(zone.EarliestWallAfter(moment.at) <= moment.wall);
    for (const DateTime wall : {Time(c.wall), DateTime::min(), DateTime::max()})
      EXPECT_EQ(zone.At(wall).at + zone.At(wall).offset, sys_seconds{zone.At(wall).wall.time_since_epoch()});
  }
  for (const char* name : {"Europe/Nowhere", "Europe", "", "UTC+3", "AAA8", "zone.tab"})
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
    const Zone zone = LocalZone(value == "unset" ? nullptr : value.c_str());
    for (int probe = 0; probe < 1500; ++probe) {
      const auto clock = static_cast<std::time_t>(random() % 4'100'000'000U);  // until 2099
      std::tm shown{};
      localtime_r(&clock, &shown);
      const sys_seconds at{seconds{clock}};
      const Zone::Moment moment = zone.At(DateTime{(at + seconds{shown.tm_gmtoff}).time_since_epoch()});
      const std::string trace = value + " at " + Text(at);
      ASSERT_FALSE(moment.shifted) << trace;
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

TEST(Runs, AreInstantsInOrderEachOnce) {
  const RecurrenceRecord at_gap = AtTime(DailyRecord{}, "02:30"),
                         day_30 = AtTime(MonthlyRecord{1, OnDay(30)});
  const auto minutes = [](int n) { return Every(n, time_kind::kEveryNMinutes, DailyRecord{}); };
  const struct {
    const char *zone, *now;  // with Z an instant
    RecurrenceRecord record;
    std::string runs;  // instants without the year; for a shifted one the clock
  } cases[] = {
      {"Europe/Paris", "2026-03-28 00:00", at_gap, "03-28 01:30, 03-29 01:30 (03-29 03:30), 03-30 00:30"},
      {"Europe/Paris", "2026-03-29 02:30", at_gap, "03-30 00:30, 03-31 00:30"},
      {"Europe/Paris", "2026-03-29 03:00", at_gap, "03-29 01:30 (03-29 03:30), 03-30 00:30"},
      {"Europe/Paris", "2026-03-29 03:30", AtTime(DailyRecord{}, "03:30"), "03-30 01:30, 03-31 01:30"},
      {"America/New_York", "2026-03-08 01:00", minutes(45),
       "03-08 06:30, 03-08 07:00, 03-08 07:15 (03-08 03:15), 03-08 07:45"},
      {"America/New_York", "2026-03-08 03:05", minutes(45), "03-08 07:15 (03-08 03:15), 03-08 07:45"},
      {"Europe/Paris", "2026-03-29 01:00", minutes(30), "03-29 00:30, 03-29 01:00, 03-29 01:30, 03-29 02:00"},
      {"Europe/Paris", "2026-10-25 01:30", minutes(30), "10-25 00:00, 10-25 00:30, 10-25 02:00, 10-25 02:30"},
      {"Europe/Paris", "2026-10-25 02:10", minutes(30), "10-25 00:30, 10-25 02:00"},
      {"Europe/Paris", "2026-10-25 01:10Z", minutes(30), "10-25 02:00, 10-25 02:30"},  // the second 02:10
      {"America/Havana", "2026-03-07 12:00", AtTime(WeeklyRecord{1, {true}}, "00:00"),
       "03-08 05:00 (03-08 01:00), 03-15 04:00"},
      {"Australia/Lord_Howe", "2026-10-04 01:45", minutes(20),
       "10-03 15:30 (10-04 02:30), 10-03 15:40, 10-03 15:50 (10-04 02:50), 10-03 16:00"},
      {"Pacific/Apia", "2011-12-29 00:00", day_30, "12-30 18:00 (12-31 08:00), 01-29 18:00"},
  };
  for (const auto& c : cases) {
    const Schedule schedule(c.record, Day("2011-12-01"));
    const auto count = static_cast<std::size_t>(std::ranges::count(c.runs, ',')) + 1;
    for (std::size_t fewer = 0; fewer <= count; ++fewer) {
      const Zone zone = *Zone::Named(c.zone);
      const DateTime now = Time(c.now);
      const auto instant =
          std::string(c.now).ends_with('Z') ? sys_seconds{now.time_since_epoch()} : zone.At(now).at;
      const auto runs = NextRuns(schedule, zone, instant, fewer);
      std::string text;
      for (const auto& run : runs) {
        text += (text.empty() ? "" : ", ") + Text(run.moment.at).substr(5);
        if (run.moment.shifted) text += " (" + schedule_tests::Text(run.moment.wall).substr(5) + ")";
        EXPECT_EQ(run.moment.wall != run.wanted, run.moment.shifted) << c.runs;
        EXPECT_TRUE(schedule.IsRun(run.wanted)) << c.runs;
      }
      EXPECT_EQ(runs.size(), fewer) << c.runs;
      EXPECT_EQ(text, fewer == count ? c.runs : c.runs.substr(0, text.size()));
    }
  }
}

TEST(Runs, EndWithTheScheduleAndNameMovedDays) {
  const Zone utc = *Zone::Named("UTC");
  const Schedule daily(AtTime(DailyRecord{}), Day("2026-03-07"));
  EXPECT_EQ(NextRuns(daily, utc, utc.At(Time("9999-12-29 09:00")).at, 10).size(), 2U);
  EXPECT_TRUE(NextRuns(daily, utc, sys_seconds::max(), 10).empty());
  EXPECT_EQ(NextRuns(daily, utc, sys_seconds::min(), 1).at(0).wanted, Time("2026-03-07 08:00"));
  const Schedule last_days(AtTime(MonthlyRecord{1, OnDay(31)}), Day("2026-03-01"));
  const auto runs = NextRuns(last_days, utc, utc.At(Time("2026-03-01")).at, 2);
  EXPECT_EQ(runs.at(0).moved_from, std::nullopt);
  EXPECT_EQ(runs.at(1).moved_from, 31);
}

}  // namespace
}  // namespace plovix::schedule_tests
