// Failing host calls, tasks to try them on, and states as comparable values: for the fault sweeps of the
// pages and the wizard and the contract of the pages.
#pragma once

#include <plovix/standalone/objects/recurrence_object.h>

#include <map>
#include <sstream>

#include "hand.h"
#include "scene.h"

namespace plovix::testing_support {

inline constexpr std::chrono::local_days kSomeDay{std::chrono::year{2026} / 3 / 1};

inline const DataObjectRecord kCustomer{"Customer", "Customers", "CustomerId"};

enum class Times { kOnce, kTwice, kForEver, kMember };
inline constexpr int kRetriesWhileItLasts = 3;

// Writes down the host's members that are called and fails the n-th call (counted from 1): only that one,
// also the next call of the same member (its repetition, when retried), every call from it on, or every one
// of that member. Or else the members that begin with a text: the first call, or all.
class Injector final : public CallObserver {
 public:
  Injector() = default;  // fails nothing
  Injector(int n, Times times) : n_(static_cast<std::size_t>(n)), times_(times) {}
  explicit Injector(std::string_view members, Times times = Times::kOnce)
      : members_(members), times_(times) {}

  void HostCalled(std::string_view member) override {
    calls.emplace_back(member);
    if (members_.empty() ? !IsDue(member)
                         : !member.starts_with(members_) || (times_ == Times::kOnce && !delivered.empty()))
      return;
    delivered.push_back("injected " + std::to_string(calls.size()));
    if (at_fault) at_fault();
    throw Failure(failure_number::kInvalidCall, delivered.back());
  }

  std::vector<std::string> calls;
  std::vector<std::string> delivered;  // descriptions of the failures that were thrown
  std::function<void()> at_fault;      // called by the host before it fails

 private:
  [[nodiscard]] bool IsDue(std::string_view member) const {
    if (n_ == 0 || calls.size() <= n_) return n_ != 0 && calls.size() == n_;
    const bool same = member == calls[n_ - 1];
    return times_ == Times::kForEver || (times_ == Times::kMember && same) ||
           (times_ == Times::kTwice && same && delivered.size() == 1);
  }

  std::size_t n_ = 0;
  std::string_view members_ = {};
  Times times_ = Times::kOnce;
  ObserveCalls observe_{*this};
};

// Gives every report this answer; retrying something that always fails is given up in the end.
inline void AnswerReports(ScriptedDialogs& dialogs, Times times, int answer) {
  const bool ends = answer == 0 && times == Times::kForEver;
  dialogs.on_report = [=, retries = 0](const FailureReport&) mutable {
    return ends && ++retries > kRetriesWhileItLasts ? 2 : answer;
  };
}

// Every 15 minutes or hours, unless the kind of time says otherwise.
inline RecurrenceRecord Scheduled(const PatternRecord& pattern, std::int32_t time_kind = 0) {
  RecurrenceRecord record;
  record.recurrence_type = static_cast<std::int32_t>(pattern.index()) - 1;
  record.time_kind = time_kind;
  record.interval = 15;
  record.pattern = pattern;
  return record;
}

struct State {
  const char* name;
  std::int16_t mode;
  std::size_t actions, categories;
  bool tags, application_tags, importing, automation, data_object, typed;
  std::optional<RecurrenceRecord> recurrence;
  const char* owner = "";
};
// The schedules differ in kind, so that a pattern page meets none, its own kind and another one.
inline const State kStates[] = {
    {"a task without a schedule", 0, 0, 0, false, false, false, false, false, false, {}},
    {"a new task", 0, 0, 0, false, false, false, false, false, false, RecurrenceRecord{}},
    {"a new task typed in", 0, 0, 0, false, false, false, false, false, true,
     Scheduled(DailyRecord{2, true}, 1)},
    {"a task of single records", 1, 2, 1, false, false, false, true, true, true,
     Scheduled(WeeklyRecord{0, {false, true, false, false, false, true, false}}, 2)},
    {"a task on query results", 2, 1, 2, false, false, false, true, true, true,
     Scheduled(MonthlyRecord{3, {true, 31, 4, 10}})},
    {"a task with tags", 2, 1, 1, true, true, false, false, false, false,
     Scheduled(YearlyRecord{2, {false, 28, 0, 0}})},
    {"a new task with tags", 0, 0, 0, false, true, false, true, false, false, Scheduled(MonthlyRecord{})},
    {"an imported task", 1, 1, 0, false, false, true, true, true, true, Scheduled(YearlyRecord{}, 2)},
    {"a personal task", 2, 2, 3, false, false, false, false, true, false, Scheduled(MonthlyRecord{2, {}}, 1),
     "ann"},
};

inline TaskRecord RecordOf(const State& state) {
  TaskRecord task = state.mode == 0 ? TaskRecord{} : CompleteTask(state.mode);
  task.uses_language_tags = state.tags;
  task.name_tag = task.name;
  task.description_tag = task.description;
  if (!state.data_object) task.data_object_name = task.data_object_caption = "";
  task.allow_automation_manager = state.automation;
  task.recurrence = state.recurrence;
  task.processing_mode = state.mode;
  task.process_failed_records = state.tags;
  task.process_all_records = state.data_object;
  if (state.typed) task.base_date = kSomeDay + std::chrono::hours{14};
  task.owner = state.owner;
  task.actions.assign(state.actions, LogAction("line"));
  task.categories.assign(state.categories, {"category", true});
  return task;
}

// What the host offers: data objects, one of them without a key, and categories of stored tasks.
inline void Furnish(Scene& scene) {
  scene.data->entries = {{kCustomer, {}}, {{"Log", "Log", ""}, {}}, {{"Order", "Orders", "Id"}, {}}};
  scene.stored_categories = {R"([{"tag":"hidden","public":false},{"tag":"one","public":true}])", "", "ONE"};
}

inline Entries EntriesOf(const Scene& scene, const State& state) {
  Entries entries;
  if (state.automation) entries[store_key::kCreateGroup] = true;
  if (state.typed) entries[store_key::kCreatePersonal] = true;
  if (state.importing) entries[store_key::kImporting] = true;
  if (state.data_object) {
    entries[store_key::kDataObject] = ObjectRef(scene.state.MakeDataObject(kCustomer));
  }
  return entries;
}

// Changes everything that a user can change on the page.
inline void EnterSomething(Bench& bench) {
  for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
    Control& control = bench.Controls().At(i);
    bench.user.Type(control, "3");
    bench.user.Toggle(control);
    bench.user.Choose(control);
    bench.user.Pick(control, 0);
    bench.user.Set(control, DateTime{std::chrono::hours{1}});
    if (control.GetKind() == Kind::kHostSlot) bench.ActionRows().Append(LogAction("entered"));
  }
}

struct Snapshot {
  TaskRecord task;
  std::vector<PatternRecord> patterns;  // those in the store
  Entries store;  // an object only counts as present or absent, because objects differ from run to run
  std::map<std::string, std::string> page;
  std::vector<ActionRecord> rows;
  bool operator==(const Snapshot&) const = default;
};

inline std::string Shown(const Control& control) {
  std::ostringstream text;
  text << control.Caption() << '|' << control.Enabled() << control.HasFocus() << '|' << Held(control);
  if (const auto* box = dynamic_cast<const TextBox*>(&control))
    text << '|' << box->SelectionStart() << '+' << box->SelectionLength();
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) {
    for (int i = 0; i < combo->Count(); ++i) text << '|' << combo->ItemText(i) << '/' << combo->ItemData(i);
  }
  return text.str();
}

inline Snapshot TaskAndStore(const Bench& bench) {
  Snapshot all{bench.task->Record(), {}, bench.store->values, {}, {}};
  for (auto& [key, value] : all.store) {
    const auto* object = std::get_if<ObjectRef>(&value);
    if (object == nullptr) continue;
    if (const auto pattern = PatternValues(dynamic_cast<PatternBase*>(object->Get()))) {
      all.patterns.push_back(*pattern);
    }
    value = *object != nullptr;
  }
  return all;
}

inline Snapshot Everything(const Bench& bench) {
  Snapshot all = TaskAndStore(bench);
  for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
    Control& control = bench.Controls().At(i);
    all.page[std::string(control.Name())] = Shown(control);
    if (control.GetKind() == Kind::kHostSlot) all.rows = bench.ActionRows().Rows();
  }
  const auto& pushes = bench.host->pushes;
  all.page["pushed"] = pushes.empty() ? "nothing" : std::to_string(pushes.back());
  all.page["moves"] = std::to_string(bench.host->moves);
  all.page["pointer"] = std::to_string(static_cast<int>(bench.Controls().MousePointer()));
  return all;
}

}  // namespace plovix::testing_support
