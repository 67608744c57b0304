/// @file
/// Data objects of a source that may become unavailable: the problem is reported, and the host goes on.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "data_source.h"

namespace plovix {

/// If a task's data object cannot be found, a stand-in replaces it, so that the task keeps it.
class StandInDataSource final : public DataSource {
 public:
  /// Messages to the user, who reads them before the call goes on.
  struct Tell {
    std::function<void(const std::string& problem)> unreadable;  ///< why the source cannot be read
    std::function<void(const std::string& name)> missing;        ///< a data object that does not exist
  };
  /// Reads `source`, which is never null, again for each call.
  StandInDataSource(std::shared_ptr<DataSource> source, Tell tell)
      : source_(std::move(source)), tell_(std::move(tell)) {}

  /// While the source cannot be read, the data objects found before.
  [[nodiscard]] std::vector<DataObjectRecord> List() override;
  /// Nothing only for the empty name.
  [[nodiscard]] std::optional<DataObjectRecord> Find(std::string_view name) override;
  [[nodiscard]] std::vector<FieldRecord> Fields(std::string_view name) override;

 private:
  std::shared_ptr<DataSource> source_;
  Tell tell_;
  std::map<std::string, DataObjectRecord, std::less<>> found_;  // by the requested name
};

}  // namespace plovix
