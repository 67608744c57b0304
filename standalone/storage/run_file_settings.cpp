// The members of SqliteRunStore about its file as a whole: its zone, its managers, and whether it and the
// data are those that its tasks were run on before.
#include <plovix/standalone/runs/run_rules.h>

#include "file_place.h"
#include "run_tables.h"
#include "sqlite_run_store.h"

namespace plovix {
namespace {

constexpr const char* kRestored = "restored";  // a reason, put into words where it is shown

}  // namespace

std::string SqliteRunStore::FileId() {
  return tables_->Settings().id;
}

std::string SqliteRunStore::ZoneName() {
  return tables_->Settings().zone;
}

void SqliteRunStore::SetZone(const std::string& name) {
  ChangeSettings([&](FileSettings& settings) { settings.zone = name; });
}

Zone SqliteRunStore::ScheduleZone() {
  if (ZoneName().empty()) SetZone(Zone::Local().Name());
  auto zone = Zone::Named(ZoneName());
  if (!zone) {
    tables_->File().Refuse(
        failure_number::kInvalidFormat,
        "its schedules are in the time zone \"" + ZoneName() + "\", which this machine does not know");
  }
  return *std::move(zone);
}

// After a failure the number may be given away or not; nobody has it then.
std::int64_t SqliteRunStore::NewManager() {
  std::int64_t number = 0;
  ChangeSettings([&](FileSettings& settings) { number = ++settings.last_manager; });
  return number;
}

std::int64_t SqliteRunStore::LastManager() {
  return tables_->Settings().last_manager;
}

bool SqliteRunStore::PauseIfRestored(bool restored, Instant now) {
  const std::string place = FilePlace(Path());
  FileSettings settings = tables_->Settings();
  const bool is_new = settings.ran_on.empty();
  const bool other = restored || (!is_new && settings.ran_on != place);
  if (!other && !is_new) return false;
  ChangeSettings([&](FileSettings& change) {
    change.ran_on = place;
    if (!other) return;
    if (!change.paused) change.paused = Pause{"", kRestored, now};
    tables_->Add(EntryOfPause(0, change.paused, {"", now}));
    for (RunRecord& run : tables_->AskedFor()) CancelNow(run, kRestored, now);
  });
  return other;
}

std::string SqliteRunStore::DataIdentity() {
  return tables_->Settings().data;
}

void SqliteRunStore::SetDataIdentity(const std::string& identity) {
  ChangeSettings([&](FileSettings& settings) { settings.data = identity; });
}

}  // namespace plovix
