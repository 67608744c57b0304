// What the stand-alone host knows, and the services objects made from it.
#pragma once

#include <plovix/host/services.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data_source.h"
#include "dialogs.h"
#include "task_object.h"
#include "text_table.h"

namespace plovix {

class DataObjectObject final : public DataObject {
 public:
  explicit DataObjectObject(DataObjectRecord record) : record_(std::move(record)) {}
  [[nodiscard]] const DataObjectRecord& Record() const noexcept { return record_; }
  [[nodiscard]] std::string Name() override;
  [[nodiscard]] std::string Key() override;

 private:
  DataObjectRecord record_;
};

// A loaded collection: data objects, or the identifiers of the action kinds.
struct DataObjectsObject final : ObjectCollection {
  std::vector<std::shared_ptr<DataObjectObject>> items;
};
struct DesignerObjectsObject final : ObjectCollection {
  std::vector<std::string> kinds;
};

// Plain state; whoever owns it may change it between calls. It must outlive the installation.
struct HostState {
  HostDialogs* dialogs = nullptr;  // not owned, never nothing once installed
  TextTable texts;
  std::map<std::string, std::string> tag_texts;
  std::map<int, bool> rights;  // a right not named here is held
  std::vector<DataObjectRecord> data_objects;
  std::string title = "Plovix";
  std::string path;                 // the application's folder
  std::string user_id, session_id;  // the current user's id, the session's own account id
  std::string decimal_separator = ".";
  bool language_tag_mode = false;
  std::optional<bool> marker_file;  // overrides the marker file's presence
  std::function<DateTime()> clock;  // local time; the machine's when empty

  [[nodiscard]] DateTime Now() const;
  // A tag without a text of its own is its own text.
  [[nodiscard]] std::string TagText(const std::string& tag) const;
};

// Installs services objects on `state`, for every thread.
void InstallHost(HostState& state);

// A task object whose tags are read in the state's language.
[[nodiscard]] std::shared_ptr<TaskObject> MakeTask(HostState& state, const TaskRecord& record);

// The number that a tag "Lng=NN;" names, read without regard to case and with or without its semicolon;
// nothing for any other tag.
[[nodiscard]] std::optional<int> TextNumber(std::string_view tag);

}  // namespace plovix
