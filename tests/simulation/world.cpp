#include "world.h"

#include <plovix/host/auto_task.h>
#include <plovix/standalone/tasks/action_kinds.h>

#include <algorithm>

namespace plovix::test {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr std::size_t kPlaces = 3;
constexpr seconds kLongestAction{150};
constexpr hours kMostWrong{2};  // of the clock
constexpr hours kCalm{6};

class AllRecords final : public RecordPass {
 public:
  explicit AllRecords(std::vector<SourceRecord> records) : records_(std::move(records)) {}
  std::optional<SourceRecord> Next() override {
    return at_ < records_.size() ? std::optional(records_[at_++]) : std::nullopt;
  }
  bool TellsChange() const override { return true; }

 private:
  std::vector<SourceRecord> records_;
  std::size_t at_ = 0;
};

class Source final : public RecordSource {
 public:
  explicit Source(const std::map<std::string, int>& versions) : versions_(versions) {}
  std::unique_ptr<RecordPass> Open(const TaskRecord& /*task*/,
                                   const std::vector<std::string>& keys) override {
    std::vector<SourceRecord> records;
    for (const auto& [key, version] : versions_)
      if (keys.empty() || std::ranges::count(keys, key) > 0)
        records.push_back({key, {}, std::to_string(version), std::nullopt});
    return std::make_unique<AllRecords>(std::move(records));
  }

 private:
  const std::map<std::string, int>& versions_;
};

}  // namespace

// A place for one manager after the other. What it has begun ends with it, as with a killed process.
class SimulatedWorld::Place final : public Launcher {
 public:
  explicit Place(SimulatedWorld& world)
      : world_(world),
        store_(world.runs_, world.Listen()),
        records_(world.versions_),
        ports_{.tasks = world.tasks_, .runs = store_, .launcher = *this, .records = records_} {}

  void Begin(const ActionOrder& order) override {
    SimulatedEvent event{.what = SimulatedEvent::What::kAction, .record = order.record, .action = order.text};
    event.run.id = order.run;
    event.run.epoch = order.epoch;
    event.run.task = world_.runs_.Run(order.run)->task;
    world_.Note(std::move(event));
    if (world_.Below(20) == 0 && !world_.calm_) throw Failure(53, "no such program");
    const bool fails = world_.Below(6) == 0;
    going_.push_back({world_.boot_ + seconds{world_.Below(kLongestAction.count())},
                      {order.run, order.epoch, fails ? "it failed" : ""}});
  }
  std::vector<ActionEnd> Ended(Instant /*now*/) override {
    std::vector<ActionEnd> ended;
    std::erase_if(going_, [&](const Going& going) {
      if (going.at <= world_.boot_) ended.push_back(going.end);
      return going.at <= world_.boot_;
    });
    return ended;
  }
  void Stop(std::int64_t run) override {
    std::erase_if(going_, [&](const Going& going) { return going.end.run == run; });
  }

  [[nodiscard]] std::int64_t Number() const { return manager_ && !seems_dead_ ? number_ : 0; }
  void Start() {
    if (manager_) return;
    number_ = ++world_.last_number_;
    Freeze(false, false);
    manager_.emplace(
        ports_, world_.zone_,
        Manager::Settings{.number = number_, .most_runs = 2, .alive = [this](std::int64_t number) {
                            return std::ranges::any_of(
                                world_.places_, [&](const auto& place) { return place->Number() == number; });
                          }});
  }
  void Kill() {
    manager_.reset();
    going_.clear();
  }
  void End() {
    if (manager_ && !frozen_) Try([&] { manager_->Stop(world_.wall_); });
    Kill();
  }
  void Step() {
    if (manager_ && !frozen_) Try([&] { (void)manager_->Step(world_.wall_); });
  }
  [[nodiscard]] bool IsStepping() const noexcept { return stepping_; }
  // A frozen one may be taken for dead.
  void Freeze(bool frozen, bool seems_dead) {
    frozen_ = frozen;
    seems_dead_ = frozen && seems_dead;
  }
  FaultyStore& Store() { return store_; }

 private:
  struct Going {
    Instant at;  // since the machine was started
    ActionEnd end;
  };
  void Try(const auto& work) {
    stepping_ = true;
    (void)plovix::FailureOf(work);
    stepping_ = false;
  }

  SimulatedWorld& world_;
  FaultyStore store_;
  Source records_;
  ManagerPorts ports_;
  std::optional<Manager> manager_;
  std::int64_t number_ = 0;
  std::vector<Going> going_;
  bool frozen_ = false, seems_dead_ = false, stepping_ = false;
};

SimulatedWorld::SimulatedWorld(TaskStorage& tasks, RunStore& runs, std::uint64_t seed)
    : tasks_(tasks),
      runs_(runs),
      random_(seed),
      sets_clock_(seed % 2 == 0),
      zone_(Zone::Named("Europe/Paris").value()),
      wall_(std::chrono::sys_days(std::chrono::year{2026} / 3 / 28) +
            hours{20}),  // a change of the clocks ahead
      boot_(wall_),
      saved_(wall_),
      asked_(runs, Listen()),
      control_(
          {.tasks = tasks, .runs = asked_, .zone = zone_, .now = [this] { return wall_; }, .person = "p"}) {
  for (const std::string& key : Records()) versions_[key] = 1;
  const TaskPolicies left{.interrupted = InterruptedPolicy::kLeave};
  ids_ = {Save(5, record_mode::kNoData, processing_mode::kEveryTime, AnyPolicies()),
          Save(7, record_mode::kNoData, processing_mode::kEveryTime, left),
          Save(10, record_mode::kQueryResults, processing_mode::kOnce, left),
          Save(15, record_mode::kQueryResults, processing_mode::kModified, AnyPolicies())};
  for (std::size_t i = 0; i < kPlaces; ++i) places_.push_back(std::make_unique<Place>(*this));
  for (const auto& place : places_) place->Start();
}

SimulatedWorld::~SimulatedWorld() = default;

std::vector<std::string> SimulatedWorld::Records() {
  return {"i:1", "i:2", "i:3", "i:4"};
}

TaskPolicies SimulatedWorld::AnyPolicies() {
  TaskPolicies policies;
  policies.missed = static_cast<MissedPolicy>(Below(3));
  policies.missed_count = 1 + Below(3);
  policies.overlap = static_cast<OverlapPolicy>(Below(2));
  policies.retries = Below(3);
  policies.limit = seconds{Below(2) * 200};
  return policies;
}

std::int64_t SimulatedWorld::Save(int every, std::int16_t records, int mode, const TaskPolicies& policies) {
  TaskRecord task;
  task.allow_automation_manager = true;
  task.record_mode = records;
  task.processing_mode = mode;
  task.recurrence.emplace().pattern = DailyRecord{1, false};
  task.recurrence->time_kind = time_kind::kEveryNMinutes;
  task.recurrence->interval = every;
  task.schedule_start = std::chrono::floor<std::chrono::days>(zone_.WallAt(saved_));
  for (const char* text : {"first", "second"}) {
    task.actions.push_back(NewAction(*FindActionKind("write-log")));
    task.actions.back().settings = {{"text", text}, {"file", "/f"}};
  }
  task = tasks_.Save(task, zone_.WallAt(saved_));
  runs_.SetPolicies(task.id, policies, {});
  return task.id;
}

void SimulatedWorld::Note(SimulatedEvent event) {
  event.at = wall_;
  events_.push_back(std::move(event));
}

FaultyStore::Listener SimulatedWorld::Listen() {
  return {[this] { LetAnotherStep(); },
          [this](const RunRecord& run) {
            const bool paused = runs_.PauseOfAll().has_value() || runs_.State(run.task)->paused.has_value();
            Note({.what = SimulatedEvent::What::kClaim, .run = run, .paused = paused});
          },
          [this](const RunEnd& end) {
            SimulatedEvent event{.what = SimulatedEvent::What::kEnd};
            event.run.id = end.run;
            event.run.epoch = end.epoch;
            Note(std::move(event));
          }};
}

// Between what one manager has read and what it stores, another one does all of its work.
void SimulatedWorld::LetAnotherStep() {
  if (another_ || Below(4) != 0) return;
  another_ = true;
  const auto& place = places_[static_cast<std::size_t>(Below(kPlaces))];
  if (!place->IsStepping()) place->Step();
  another_ = false;
}

void SimulatedWorld::Pass(seconds time) {
  wall_ += time;
  boot_ += time;
}

void SimulatedWorld::Live(int turns) {
  for (int i = 0; i < turns; ++i) Act();
  Settle();
}

void SimulatedWorld::Act() {
  Place& place = *places_[static_cast<std::size_t>(Below(kPlaces))];
  const int what = Below(100);
  if (what < 55) {
    place.Step();
  } else if (what < 77) {
    Pass(seconds{Below(90)});
  } else if (what < 80) {
    place.Kill();
  } else if (what < 81) {
    place.End();
  } else if (what < 86) {
    place.Start();
  } else if (what < 89) {
    place.Freeze(Below(2) == 0, Below(2) == 0);
  } else if (what < 93) {
    place.Store().FailLater(Below(4), Below(2) == 0);
  } else if (what < 94) {
    if (sets_clock_)
      wall_ = boot_ + seconds{Below(2 * seconds(kMostWrong).count()) - seconds(kMostWrong).count()};
  } else if (what < 95) {
    ++versions_[Records().at(static_cast<std::size_t>(Below(4)))];
  } else {
    Ask();
  }
}

// A refusal is as good an answer as any.
void SimulatedWorld::Ask() {
  const std::array tasks{ids_.repeat, ids_.leave, ids_.once, ids_.modified};
  const std::int64_t task = tasks.at(static_cast<std::size_t>(Below(4)));
  RunFilter newest;
  newest.most = 8;
  const auto latest = runs_.Recent(newest);
  const std::int64_t run =
      latest.empty() ? 0 : latest[static_cast<std::size_t>(Below(static_cast<int>(latest.size())))].id;
  (void)plovix::FailureOf([&] {
    switch (Below(9)) {
      case 0:
        return (void)control_.Start(task, RunOrigin::kManual);
      case 1:
        return (void)control_.Start(task, RunOrigin::kDryRun);
      case 2:
        return control_.Cancel(run);
      case 3:
        return control_.CloseByForce(run);
      case 4:
        return control_.Pause(task, "");
      case 5:
        return control_.Pause(std::nullopt, "");
      case 6:
        return control_.Resume(task);
      case 7:
        return control_.Resume(std::nullopt);
      default:  // other texts; the schedule stays
        TaskRecord stored = tasks_.Load(task).value();
        stored.description += "x";
        (void)tasks_.Save(stored, zone_.WallAt(wall_));
    }
  });
}

void SimulatedWorld::Settle() {
  calm_ = true;
  for (const std::int64_t task : {ids_.repeat, ids_.leave, ids_.once, ids_.modified}) control_.Resume(task);
  control_.Resume(std::nullopt);
  for (const auto& place : places_) {
    place->Store().Heal();
    place->Freeze(false, false);
    place->Start();
  }
  constexpr seconds kTick{50};
  for (seconds left = kCalm; left.count() > 0; left -= kTick) {
    for (const auto& place : places_) place->Step();
    Pass(kTick);
  }
  for (const auto& place : places_) place->Step();
}

}  // namespace plovix::test
