// Wall times as instants, and the next runs across the changes of real zones.
#include <gtest/gtest.h>
#include <plovix/standalone/schedule/posix_rule.h>
#include <plovix/standalone/schedule/runs.h>

#include <cstdlib>
#include <ctime>
#include <random>

#include "schedule_support.h"

namespace plovix::schedule_tests {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using std::chrono::sys_seconds;

// Sets TZ for as long as it lives; nothing removes it.
class ZoneVariable {
 public:
  explicit ZoneVariable(const char* value) {
    if (const char* old = std::getenv("TZ")) old_ = old;
    Set(value);
  }
  ~ZoneVariable() { Set(old_ ? old_->c_str() : nullptr); }
  ZoneVariable(const ZoneVariable&) = delete;
  ZoneVariable& operator=(const ZoneVariable&) = delete;

 private:
  static void Set(const char* value) {
    if (value != nullptr)
      setenv("TZ", value, 1);
    else
      unsetenv("TZ");
    tzset();
  }

  std::optional<std::string> old_;
};

std::string Text(sys_seconds at) {
  return schedule_tests::Text(DateTime{at.time_since_epoch()});
}

TEST(Zone, TurnsWallTimesIntoInstants) {
  const struct {
    const char *zone, *wall, *at, *abbreviation, *shown;  // shown: where it differs from wall
  } cases[] = {
      {"Europe/Paris", "2026-01-15 08:00", "2026-01-15 07:00", "CET", ""},
      {"Europe/Paris", "2026-03-29 02:00", "2026-03-29 01:00", "CEST", "2026-03-29 03:00"},
      {"Europe/Paris", "2026-03-29 02:59:59", "2026-03-29 01:59:59", "CEST", "2026-03-29 03:59:59"},
      {"Europe/Paris", "2026-03-29 03:00", "2026-03-29 01:00", "CEST", ""},
      {"Europe/Paris", "2026-10-25 02:30", "2026-10-25 00:30", "CEST", ""},  // the first of two
      {"Europe/Paris", "2026-10-25 03:00", "2026-10-25 02:00", "CET", ""},
      {"Europe/Paris", "2060-07-01 12:00", "2060-07-01 10:00", "CEST", ""},  // after the stored changes
      {"America/Havana", "2026-03-08 00:30", "2026-03-08 05:30", "CDT", "2026-03-08 01:30"},
      {"Asia/Beirut", "2026-03-29 00:00", "2026-03-28 22:00", "EEST", "2026-03-29 01:00"},
      {"Australia/Lord_Howe", "2026-10-04 02:15", "2026-10-03 15:45", "+11", "2026-10-04 02:45"},
      {"Australia/Lord_Howe", "2026-04-05 01:45", "2026-04-04 14:45", "+11", ""},
      {"Pacific/Apia", "2011-12-30 12:00", "2011-12-30 22:00", "+14", "2011-12-31 12:00"},
      {"America/Caracas", "2016-05-01 02:45", "2016-05-01 07:15", "-04", "2016-05-01 03:15"},
      {"Asia/Kolkata", "2026-03-29 02:30", "2026-03-28 21:00", "IST", ""},
      {"UTC", "2026-03-29 02:30", "2026-03-29 02:30", "UTC", ""},
  };
  for (const auto& c : cases) {
    const auto zone = Zone::Named(c.zone);
    ASSERT_TRUE(zone) << c.zone;
    const Zone::Moment moment = zone->At(Time(c.wall));
    const std::string shown = *c.shown != '\0' ? c.shown : c.wall;
    EXPECT_EQ(Text(moment.at), c.at) << c.zone << " " << c.wall;
    EXPECT_EQ(schedule_tests::Text(moment.wall), shown) << c.zone << " " << c.wall;
    EXPECT_EQ(moment.abbreviation, c.abbreviation) << c.zone << " " << c.wall;
    EXPECT_EQ(moment.shifted, shown != c.wall) << c.zone << " " << c.wall;
    EXPECT_EQ(moment.at + moment.offset, sys_seconds{moment.wall.time_since_epoch()})
        << c.zone << " " << c.wall;
    for (const DateTime end : {DateTime::min(), DateTime::max()})
      EXPECT_EQ(zone->At(end).at + zone->At(end).offset, sys_seconds{zone->At(end).wall.time_since_epoch()});
  }
  EXPECT_FALSE(Zone::Named("Europe/Nowhere"));
  EXPECT_FALSE(Zone::Named(""));
}

// For every value of TZ the C library knows what its clock shows at an instant.
TEST(Zone, AgreesWithTheSystemsClock) {
  const char* const values[] = {"Europe/Paris",
                                ":America/New_York",
                                "Australia/Lord_Howe",
                                "America/Nuuk",
                                "Africa/Casablanca",
                                "Asia/Gaza",
                                "America/Santiago",
                                "Europe/Dublin",
                                "Pacific/Apia",
                                "Asia/Kolkata",
                                "UTC",
                                "",
                                "/usr/share/zoneinfo/Asia/Tokyo",
                                ":/etc/localtime",
                                "CET-1CEST,M3.5.0,M10.5.0/3",
                                "NZST-12NZDT,M9.5.0,M4.1.0/3",
                                "<-02>2<-01>,M3.5.0/-1,M10.5.0/0",
                                "ABC3:30DEF,J60/0,J300/26:15",
                                "XYZ-14:45",
                                "ABC5DEF4,58,299/-3",
                                nullptr};
  std::mt19937_64 random(3);
  for (const char* value : values) {
    const ZoneVariable variable(value);
    const Zone zone = Zone::Local();
    for (int probe = 0; probe < 1500; ++probe) {
      const auto clock = static_cast<std::time_t>(random() % 4'100'000'000U);  // until 2099
      std::tm shown{};
      localtime_r(&clock, &shown);
      const sys_seconds at{seconds{clock}};
      const DateTime wall{(at + seconds{shown.tm_gmtoff}).time_since_epoch()};
      const Zone::Moment moment = zone.At(wall);
      const std::string trace = (value != nullptr ? value : "system") + (" at " + Text(at));
      ASSERT_FALSE(moment.shifted) << trace;
      if (moment.at == at) {
        ASSERT_EQ(moment.abbreviation, shown.tm_zone) << trace;
        ASSERT_EQ(moment.offset.count(), shown.tm_gmtoff) << trace;
      } else {  // a repeated time
        ASSERT_TRUE(moment.at < at && moment.offset.count() > shown.tm_gmtoff) << trace;
      }
    }
  }
}

// Where C libraries differ, or where random probes hardly ever come.
TEST(Zone, ReadsTheVariable) {
  const struct {
    const char *variable, *wall, *abbreviation;
    int hours;
  } cases[] = {
      {"no zone", "2026-07-01", "UTC", 0},
      {"AAA8BBB", "2061-07-01", "BBB", -7},
      {"ABC3DEF,J59,J60", "2028-02-28 01:59", "ABC", -3},
      {"ABC3DEF,J59,J60", "2028-02-28 12:00", "DEF", -2},
      {"ABC3DEF,J59,J60", "2028-02-29 12:00", "DEF", -2},
      {"ABC3DEF,J59,J60", "2028-03-01 12:00", "ABC", -3},
      {"EST5EDT,0/0,J365/25", "2028-01-01 00:30", "EDT", -4},
  };
  for (const auto& c : cases) {
    const ZoneVariable variable(c.variable);
    const Zone::Moment moment = Zone::Local().At(Time(c.wall));
    EXPECT_EQ(moment.abbreviation, c.abbreviation) << c.variable << " " << c.wall;
    EXPECT_EQ(moment.offset, hours{c.hours}) << c.variable << " " << c.wall;
  }
}

TEST(Zone, RefusesWhatIsNoRule) {
  for (const char* text :
       {"", "CET", "AB-1", "CET-25", "CET-1CEST,", "CET-1CEST,M3.5.0", "CET-1CEST,M13.5.0,M10.5.0",
        "CET-1CEST,M3.6.0,M10.5.0", "CET-1CEST,M3.5.0,M10.5.0/168", "CET-1CEST,J0,J366",
        "CET-1CEST,M3.5.0,M10.5.0x", "<+01-1", "CET-1:60", "CET-99999999999"})
    EXPECT_FALSE(PosixRule::Parse(text)) << text;
}

TEST(Runs, AreInstantsInOrderEachOnce) {
  const RecurrenceRecord at_gap = AtTime(DailyRecord{}, "02:30"),
                         day_30 = AtTime(MonthlyRecord{1, OnDay(30)});
  const RecurrenceRecord midnight_on_sundays = AtTime(WeeklyRecord{1, {true}}, "00:00");
  const auto minutes = [](int n) { return Every(n, time_kind::kEveryNMinutes, DailyRecord{}); };
  const struct {
    const char *zone, *start;
    RecurrenceRecord record;
    const char* now;
    std::string runs;  // instants; for a shifted one the clock
  } cases[] = {
      {"Europe/Paris", "2026-03-28", at_gap, "2026-03-28 00:00",
       "2026-03-28 01:30, 2026-03-29 01:30 (2026-03-29 03:30), 2026-03-30 00:30"},
      {"Europe/Paris", "2026-03-28", at_gap, "2026-03-29 03:10",
       "2026-03-29 01:30 (2026-03-29 03:30), 2026-03-30 00:30"},
      {"Europe/Paris", "2026-03-28", at_gap, "2026-03-29 02:30", "2026-03-30 00:30, 2026-03-31 00:30"},
      {"America/New_York", "2026-03-08", minutes(45), "2026-03-08 01:00",
       "2026-03-08 06:30, 2026-03-08 07:00, 2026-03-08 07:15 (2026-03-08 03:15), 2026-03-08 07:45"},
      {"America/New_York", "2026-03-08", minutes(45), "2026-03-08 03:05",
       "2026-03-08 07:15 (2026-03-08 03:15), 2026-03-08 07:45"},
      {"Europe/Paris", "2026-03-29", minutes(30), "2026-03-29 01:00",
       "2026-03-29 00:30, 2026-03-29 01:00, 2026-03-29 01:30, 2026-03-29 02:00"},
      {"Europe/Paris", "2026-10-25", minutes(30), "2026-10-25 01:30",
       "2026-10-25 00:00, 2026-10-25 00:30, 2026-10-25 02:00, 2026-10-25 02:30"},
      {"Europe/Paris", "2026-03-29", minutes(30), "2026-03-29 03:00", "2026-03-29 01:30, 2026-03-29 02:00"},
      {"Europe/Paris", "2026-10-25", minutes(30), "2026-10-25 02:10", "2026-10-25 00:30, 2026-10-25 02:00"},
      {"America/Havana", "2026-03-07", midnight_on_sundays, "2026-03-07 12:00",
       "2026-03-08 05:00 (2026-03-08 01:00), 2026-03-15 04:00"},
      {"Australia/Lord_Howe", "2026-10-04", minutes(20), "2026-10-04 01:45",
       "2026-10-03 15:30 (2026-10-04 02:30), 2026-10-03 15:40, 2026-10-03 15:50 (2026-10-04 02:50), "
       "2026-10-03 16:00"},
      {"Pacific/Apia", "2011-12-29", AtTime(DailyRecord{}), "2011-12-29 00:00",
       "2011-12-29 18:00, 2011-12-30 18:00, 2011-12-31 18:00"},
      {"Pacific/Apia", "2011-12-01", day_30, "2011-12-29 00:00",
       "2011-12-30 18:00 (2011-12-31 08:00), 2012-01-29 18:00"},
      {"Pacific/Apia", "2011-12-01", day_30, "2011-12-31 07:59",
       "2011-12-30 18:00 (2011-12-31 08:00), 2012-01-29 18:00"},
      {"Asia/Kolkata", "2026-03-29", minutes(300), "2026-03-29 00:00", "2026-03-28 23:30, 2026-03-29 04:30"},
  };
  for (const auto& c : cases) {
    const Schedule schedule(c.record, Day(c.start));
    std::string text;
    for (std::size_t count = 0; text.size() < c.runs.size() && count < 9; ++count) {
      const std::string fewer = std::move(text);
      text.clear();
      const auto runs = NextRuns(schedule, *Zone::Named(c.zone), Time(c.now), count);
      for (const auto& run : runs) {
        text += (text.empty() ? "" : ", ") + Text(run.moment.at);
        if (run.moment.shifted) text += " (" + schedule_tests::Text(run.moment.wall) + ")";
        EXPECT_EQ(run.moment.wall != run.wanted, run.moment.shifted) << c.runs;
        EXPECT_TRUE(schedule.IsRun(run.wanted)) << c.runs;
      }
      EXPECT_EQ(runs.size(), count) << c.runs;
      EXPECT_TRUE(text.starts_with(fewer)) << text << " after " << fewer;
    }
    EXPECT_EQ(text, c.runs);
  }
}

TEST(Runs, EndWithTheScheduleAndNameMovedDays) {
  const Zone utc = *Zone::Named("UTC");
  const Schedule daily(AtTime(DailyRecord{}), Day("2026-03-07"));
  EXPECT_EQ(NextRuns(daily, utc, Time("9999-12-29 09:00"), 10).size(), 2U);
  EXPECT_TRUE(NextRuns(daily, utc, DateTime::max(), 10).empty());
  EXPECT_EQ(NextRuns(daily, utc, DateTime::min(), 1).at(0).wanted, Time("2026-03-07 08:00"));
  EXPECT_TRUE(NextRuns(Schedule(AtTime({}), Day("2026-03-07")), utc, Time("2026-03-07"), 10).empty());
  const Schedule last_days(AtTime(MonthlyRecord{1, OnDay(31)}), Day("2026-03-01"));
  const auto runs = NextRuns(last_days, utc, Time("2026-03-01"), 2);
  EXPECT_EQ(runs.at(0).moved_from, std::nullopt);
  EXPECT_EQ(runs.at(1).moved_from, 31);
}

}  // namespace
}  // namespace plovix::schedule_tests
