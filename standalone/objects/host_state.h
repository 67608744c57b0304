/// @file
/// What the stand-alone host knows, and the services objects created from it.
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

/// Plain state; its owner may change it between calls. It must outlive the installation and all objects
/// created from it.
struct HostState {
  HostDialogs* dialogs = nullptr;                ///< not owned, never null once installed
  TextTable texts;                               ///< of the current language
  std::map<std::string, std::string> tag_texts;  ///< by tag, in the current language
  std::map<int, bool> rights;                    ///< by number; rights not listed here are granted
  std::shared_ptr<DataSource> data = std::make_shared<MemoryDataSource>();  ///< never null
  /// The handles of the data objects that pages know.
  std::shared_ptr<HandleTable> handles = std::make_shared<HandleTable>();
  /// Opens a query on the stored tasks; if empty, there are none.
  std::function<std::unique_ptr<RowCursor>(const std::string& query)> open_rows;
  /// Whether the session has the permission `key` for the data object, or in general for nullptr; if empty,
  /// everything is permitted.
  std::function<bool(std::string_view key, const DataObjectRecord* object)> has_permission;
  /// Called when a tag was stored for a typed text.
  std::function<void(const std::string& tag, const std::string& text)> tag_filed;
  std::string title = "Plovix";  ///< of message boxes
  std::string path;              ///< HostApplication::Path
  /// @{
  /// The current user's id and the session's own account id; equal if no person works in the session.
  std::string user_id, session_id;
  /// @}
  bool permissions_locked = false;      ///< the edited task's permissions are read-only
  std::string decimal_separator = ".";  ///< HostApplication::DecimalSeparator
  bool language_tag_mode = false;       ///< HostApplication::LanguageTagMode
  std::optional<bool> marker_file;      ///< overrides the marker file's presence
  std::function<DateTime()> clock;      ///< local time; if empty, the machine's
  /// The clock's time minus UTC: distinguishes the two instants of a repeated time. Used only with `clock`.
  std::optional<std::chrono::seconds> clock_offset;

  /// Whether a new task uses language tags for its texts: in language-tag mode without the marker file.
  [[nodiscard]] bool NewTasksUseTags() const;
  /// The current time of the clock.
  [[nodiscard]] DateTime Now() const;
  /// The text of a tag; a tag without a text is its own text.
  [[nodiscard]] std::string TagText(const std::string& tag) const;
  /// The tag under which a text typed for `tag` is stored: one that already carries it, else the text itself,
  /// else a new one.
  [[nodiscard]] std::string TagForText(const std::string& tag, const std::string& text);
  /// Creates an object for the pages.
  [[nodiscard]] std::shared_ptr<HostDataObject> MakeDataObject(DataObjectRecord record) const;
};

/// Creates services objects for `state`.
[[nodiscard]] ServicesProvider ProviderOf(HostState& state);
/// Installs services objects for `state`, for every thread; the state itself belongs to one thread.
/// InstallServices({}) removes them.
void InstallHost(HostState& state);

/// The number in a tag "Lng=NN;", ignoring case, with or without the semicolon; nothing for any other tag.
[[nodiscard]] std::optional<int> TextNumber(std::string_view tag);

}  // namespace plovix
