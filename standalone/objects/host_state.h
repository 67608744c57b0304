/// @file
/// What the stand-alone host knows, and the services objects made from it.
#pragma once

#include <plovix/host/services.h>
#include <plovix/standalone/tasks/memory_data_source.h>
#include <plovix/standalone/tasks/row_cursor.h>
#include <plovix/standalone/text/text_table.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data_objects.h"
#include "dialogs.h"
#include "task_object.h"

namespace plovix {

/// Plain state; whoever owns it may change it between calls. It must outlive the installation and all objects
/// made from it.
struct HostState {
  HostDialogs* dialogs = nullptr;                ///< not owned, never nothing once installed
  TextTable texts;                               ///< of the current language
  std::map<std::string, std::string> tag_texts;  ///< by tag, in the current language
  std::map<int, bool> rights;                    ///< by number; a right not named here is held
  std::shared_ptr<DataSource> data = std::make_shared<MemoryDataSource>();  ///< never nothing
  /// of the data objects that pages know
  std::shared_ptr<HandleTable> handles = std::make_shared<HandleTable>();
  /// Opens a query on the stored tasks; there are none when empty.
  std::function<std::unique_ptr<RowCursor>(const std::string& query)> open_rows;
  /// Whether the session may do with the data object, or in general with nullptr, what the key says;
  /// everything when empty.
  std::function<bool(std::string_view key, const DataObjectRecord* object)> has_permission;
  /// Told of a tag that was filed for a typed text.
  std::function<void(const std::string& tag, const std::string& text)> tag_filed;
  std::string title = "Plovix";  ///< of message boxes
  std::string path;              ///< HostApplication::Path
  /// @{
  /// The current user's id and the session's own account id: alike where nobody sits in front of it.
  std::string user_id, session_id;
  /// @}
  bool permissions_locked = false;  ///< the permission set of the task that is edited is shown, not changed
  std::string decimal_separator = ".";  ///< HostApplication::DecimalSeparator
  bool language_tag_mode = false;       ///< HostApplication::LanguageTagMode
  std::optional<bool> marker_file;      ///< overrides the marker file's presence
  std::function<DateTime()> clock;      ///< local time; the machine's when empty
  /// The clock's time less UTC: tells the two instants of a repeated time apart. Counts with `clock` only.
  std::optional<std::chrono::seconds> clock_offset;

  /// Whether a task begun now has language tags for its texts: in language-tag mode without the marker file.
  [[nodiscard]] bool NewTasksUseTags() const;
  /// What the clock says.
  [[nodiscard]] DateTime Now() const;
  /// A tag without a text of its own is its own text.
  [[nodiscard]] std::string TagText(const std::string& tag) const;
  /// The tag under which a text that was typed for `tag` is filed: one that carries it already, else the text
  /// itself, else a new one.
  [[nodiscard]] std::string TagForText(const std::string& tag, const std::string& text);
  /// An object for the pages.
  [[nodiscard]] std::shared_ptr<HostDataObject> MakeDataObject(DataObjectRecord record) const;
};

/// Makes services objects on `state`.
[[nodiscard]] ServicesProvider ProviderOf(HostState& state);
/// Installs services objects on `state`, for every thread; the state itself belongs to one thread.
/// InstallServices({}) takes them away.
void InstallHost(HostState& state);

/// A task object whose tags are read in the state's language.
[[nodiscard]] std::shared_ptr<TaskObject> MakeTask(HostState& state, const TaskRecord& record);

/// The number that a tag "Lng=NN;" names, read without regard to case and with or without its semicolon;
/// nothing for any other tag.
[[nodiscard]] std::optional<int> TextNumber(std::string_view tag);

}  // namespace plovix
