#include "data_guard.h"

#include <plovix/host/auto_task.h>
#include <plovix/standalone/storage/file_place.h>

#include <algorithm>
#include <filesystem>

namespace plovix::manager {
namespace {

bool WorksOnData(const TaskRecord& task) {
  return task.record_mode != record_mode::kNoData ||
         std::ranges::count(task.actions, "run-sql", &ActionRecord::kind) > 0;
}

}  // namespace

DataGuard::DataGuard(SqliteRunStore& runs, std::string path, bool accept)
    : runs_(runs), path_(std::move(path)) {
  if (accept) runs_.SetDataIdentity(Identity());
}

std::string DataGuard::Identity() const {
  std::error_code error;
  const std::string real = std::filesystem::canonical(path_, error).string();
  return error ? std::string() : real + "\n" + FilePlace(real);
}

std::optional<std::string> DataGuard::Refusal(const TaskRecord& task) {
  if (!WorksOnData(task)) return std::nullopt;
  const std::string mine = Identity(), stored = runs_.DataIdentity();
  if (mine.empty() || mine == stored) return std::nullopt;  // a missing file is told by whoever opens it
  if (stored.empty()) {
    runs_.SetDataIdentity(mine);
    return std::nullopt;
  }
  const auto path_of = [](const std::string& identity) { return identity.substr(0, identity.find('\n')); };
  const bool replaced = path_of(mine) == path_of(stored);
  return (replaced ? path_of(mine) + " is another file than the one that the tasks were run on before"
                   : "the tasks were run on " + path_of(stored) + " before, not on " + path_of(mine)) +
         "; if that is meant, start plovix-manager once with --accept-data";
}

}  // namespace plovix::manager
