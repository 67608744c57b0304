// Failing host calls and the tasks to try them on: shared by the fault sweeps of the pages and the wizard.
#pragma once

#include <string>
#include <vector>

#include "scene.h"

namespace plovix::testing_support {

enum class Times { kOnce, kTwice, kForEver };
inline constexpr int kRetriesWhileItLasts = 3;

// Fails the n-th call (counted from 1): only that one, also the next call of the same member (which is
// its repetition, when the statement is retried), or every call from it on.
class Injector final : public CallObserver {
 public:
  Injector() = default;  // fails nothing
  Injector(int n, Times times) : n_(n), times_(times) {}

  void HostCalled(std::string_view member) override {
    calls.emplace_back(member);
    const int count = static_cast<int>(calls.size());
    if (n_ == 0 || count < n_) return;
    const bool again = times_ == Times::kForEver || (times_ == Times::kTwice && delivered.size() == 1 &&
                                                     member == calls[static_cast<std::size_t>(n_) - 1]);
    if (count > n_ && !again) return;
    delivered.push_back("injected " + std::to_string(count));
    throw Failure(failure_number::kInvalidCall, delivered.back());
  }

  std::vector<std::string> calls;
  std::vector<std::string> delivered;  // descriptions of the failures that were thrown

 private:
  int n_ = 0;
  Times times_ = Times::kOnce;
  ObserveCalls observe_{*this};
};

struct State {
  const char* name;
  std::int16_t mode;
  int actions, categories;
  bool tags, application_tags, importing, automation, data_object, typed;
};
inline constexpr State kStates[] = {
    {"a new task", 0, 0, 0, false, false, false, false, false, false},
    {"a new task typed in", 0, 0, 0, false, false, false, false, false, true},
    {"a task of single records", 1, 2, 1, false, false, false, true, true, true},
    {"a task on query results", 2, 1, 2, false, false, false, false, true, true},
    {"a task with tags", 2, 1, 1, true, true, false, false, false, false},
    {"a new task with tags", 0, 0, 0, false, true, false, true, false, false},
    {"an imported task", 1, 1, 0, false, false, true, true, true, true},
};

inline TaskRecord RecordOf(const State& state) {
  TaskRecord task;
  task.record_mode = state.mode;
  task.uses_language_tags = state.tags;
  if (state.mode != 0) {
    task.name = task.name_tag = "Name";
    task.description = task.description_tag = "Description";
  }
  if (state.data_object) {
    task.data_object_name = "Customer";
    task.data_object_caption = "Customers";
  }
  task.allow_automation_manager = state.automation;
  for (int i = 0; i < state.actions; ++i) task.actions.push_back(LogAction("line"));
  for (int i = 0; i < state.categories; ++i) task.categories.push_back({"category", true});
  return task;
}

inline Entries EntriesOf(const State& state) {
  Entries entries;
  if (state.importing) entries[store_key::kImporting] = true;
  if (state.data_object) {
    const DataObjectRecord record{"Customer", "Customers", "CustomerId"};
    entries[store_key::kDataObject] = ObjectRef(std::make_shared<DataObjectObject>(record));
  }
  return entries;
}

}  // namespace plovix::testing_support
