#include "background_data_source.h"

#include <utility>

namespace plovix {

template <typename Found>
Found BackgroundDataSource::Ask(std::function<Found(SqliteDataSource&)> ask) {
  const auto give_up = [this] {
    source_.reset();  // later calls start afresh
    throw Failure(failure_number::kInterrupted, path_ + ": reading the data was given up");
  };
  if (left_ && !left_->WaitFor(std::chrono::milliseconds{0})) give_up();
  if (!source_) source_ = std::make_shared<SqliteDataSource>(path_);
  auto found = FindInBackground<Found>(
      wait_, left_, [source = source_, ask = std::move(ask)](const std::stop_token& unwanted) {
        source->StopWhen(unwanted);
        return ask(*source);
      });
  if (!found) give_up();
  return *std::move(found);
}

std::vector<DataObjectRecord> BackgroundDataSource::List() {
  return Ask<std::vector<DataObjectRecord>>([](SqliteDataSource& source) { return source.List(); });
}

std::optional<DataObjectRecord> BackgroundDataSource::Find(std::string_view name) {
  return Ask<std::optional<DataObjectRecord>>(
      [name = std::string(name)](SqliteDataSource& source) { return source.Find(name); });
}

std::vector<FieldRecord> BackgroundDataSource::Fields(std::string_view name) {
  return Ask<std::vector<FieldRecord>>(
      [name = std::string(name)](SqliteDataSource& source) { return source.Fields(name); });
}

}  // namespace plovix
