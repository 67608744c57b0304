// The script surface: operates the wizard without a window, with one command per line. Used by the program's
// "script" command and, on a machine without a display, instead of the window.
#pragma once

#include <plovix/standalone/runs/manager_ports.h>
#include <plovix/standalone/schedule/zone.h>
#include <plovix/standalone/tasks/data_source.h>
#include <plovix/standalone/tasks/row_cursor.h>
#include <plovix/standalone/tasks/task_storage.h>
#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/text/text_table.h>

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

namespace plovix {

struct ScriptOptions {
  TaskStorage* storage;            // not owned, outlives the run
  TextTable texts;                 // TextTable::Ids() shows every text as its number
  RunStore* runs = nullptr;        // not owned, outlives the run: what the tasks did; nullptr: in memory
  std::optional<Zone> zone = {};   // of the schedules; nothing: the machine's
  UsersAndTags* tables = nullptr;  // not owned, outlives the run: where `user` is looked up
  // The user who works, with the rights stored there; nothing: the script sets the user, and nothing is
  // refused.
  std::optional<std::string> user = {};
  // Opens a query on the file behind `storage`; empty if there is none.
  std::function<std::unique_ptr<RowCursor>(const std::string& query)> open_rows = {};
  std::shared_ptr<DataSource> data = {};  // nullptr: the data objects that the script adds
  RecordSource* records = nullptr;  // those of `data`, not owned; nullptr: the records that the script adds
  bool interactive = false;         // prompts, and goes on after an invalid line
  std::string source_name = "-";    // FILE in "FILE:LINE: what is wrong"
};

// Runs the commands of `in` to its end. `out` gets only JSON Lines, flushed line by line; messages, help and
// the prompt go to `err`. Installs its own host services during the run, replacing any installed before, and
// leaves none; with a user, also a guard on the storage. Returns the exit status: 0, or 2 if a line was
// invalid or there is no such user.
[[nodiscard]] int RunScript(std::istream& in, std::ostream& out, std::ostream& err,
                            const ScriptOptions& options);

}  // namespace plovix
