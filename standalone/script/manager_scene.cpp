#include "manager_scene.h"

#include <plovix/standalone/runs/claim_refusal.h>
#include <plovix/standalone/schedule/outlook.h>
#include <plovix/standalone/text/iso_time.h>

#include "offset_text.h"
#include "words.h"

namespace plovix::script {

ManagerScene::ManagerScene(const Parts& parts)
    : state_(parts.state),
      tables_(parts.tables),
      person_(parts.person),
      zone_(parts.zone),
      memory_(parts.storage),
      runs_(parts.runs != nullptr ? *parts.runs : memory_),
      records_(*parts.state.data),
      ports_{.tasks = parts.storage,
             .runs = runs_,
             .launcher = launcher_,
             .records = parts.records != nullptr ? *parts.records : records_} {
  if (tables_ == nullptr) return;
  ports_.refusal = [this](const TaskRecord& task, const RunRecord& run) {
    return ClaimRefusal(task, run, tables_->Users());
  };
}

Instant ManagerScene::Now() const {
  return InstantOf(state_.clock, state_.clock_offset, zone_);
}

Instant ManagerScene::InstantAt(const ClockTimeWord& word) const {
  return word.offset ? Instant{word.wall.time_since_epoch() - *word.offset} : zone_.At(word.wall).at;
}

void ManagerScene::SetNow(Instant now) {
  state_.clock = [stopped = zone_.WallAt(now)] { return stopped; };
  state_.clock_offset = zone_.PeriodAt(now).offset;
}

void ManagerScene::CheckFuture(Instant until) const {
  if (until < Now()) throw LineError("the manager cannot go back in time; host now sets the clock");
}

void ManagerScene::Advance(Instant until) {
  CheckFuture(until);
  if (!LiveUntil(until)) manager_.reset();
  SetNow(until);
}

bool ManagerScene::LiveUntil(Instant until) {
  if (!manager_) {
    launcher_.ForgetRunning();
    manager_ = std::make_unique<Manager>(ports_, zone_, Manager::Settings{.number = ++managers_});
  }
  try {
    for (Instant at = Now();;) {
      launcher_.now = at;
      const auto wake = manager_->Step(at);
      if (!wake || *wake > until) return true;
      at = std::max(*wake, at + std::chrono::seconds{1});
    }
  } catch (const ManagerCrash&) {
    return false;
  }
}

void ManagerScene::Down(Instant until) {
  CheckFuture(until);
  if (manager_) manager_->Stop(Now());
  manager_.reset();
  SetNow(until);
}

// A run that no manager looks after is closed here.
void ManagerScene::Cancel(std::int64_t id) {
  TaskControl control = Control();
  control.Cancel(id);
  if (manager_) {
    launcher_.now = Now();
    if (!LiveUntil(Now())) manager_.reset();
  } else if (!runs_.Run(id)->IsOver()) {
    control.CloseByForce(id);
  }
}

TaskControl ManagerScene::Control() {
  return TaskControl({ports_.tasks, runs_, zone_, [this] { return Now(); }, person_});
}

std::string ManagerScene::TimeText(Instant at) const {
  return IsoDateTime(zone_.WallAt(at)) + OffsetText(zone_.PeriodAt(at).offset);
}

}  // namespace plovix::script
