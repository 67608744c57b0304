/// @file
/// Data objects of a source that may fall away: what cannot be read is told, and the host goes on.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "data_source.h"

namespace plovix {

/// A data object that a task names and that cannot be found now has a stand-in, so that the task keeps it.
class StandInDataSource final : public DataSource {
 public:
  /// Told to the user, who reads it before the call goes on.
  struct Tell {
    std::function<void(const std::string& problem)> unreadable;  ///< why the source cannot be read
    std::function<void(const std::string& name)> missing;        ///< a data object that is not there
  };
  /// Reads `source`, never nothing, anew for each call.
  StandInDataSource(std::shared_ptr<DataSource> source, Tell tell)
      : source_(std::move(source)), tell_(std::move(tell)) {}

  /// While the source cannot be read, those that were found before.
  [[nodiscard]] std::vector<DataObjectRecord> List() override;
  /// Nothing for the empty name only.
  [[nodiscard]] std::optional<DataObjectRecord> Find(std::string_view name) override;
  [[nodiscard]] std::vector<FieldRecord> Fields(std::string_view name) override;

 private:
  std::shared_ptr<DataSource> source_;
  Tell tell_;
  std::map<std::string, DataObjectRecord, std::less<>> found_;  // by the name that was asked for
};

}  // namespace plovix
