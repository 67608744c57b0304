// The script surface: sits at the wizard without a window, one command a line. Used by the program's
// "script" command and, on a machine without a display, in place of the window.
#pragma once

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
  UsersAndTags* tables = nullptr;  // not owned, outlives the run: where `user` is looked up
  // Who works, with the rights that they have there; nothing: the scene says who, and nothing is refused.
  std::optional<std::string> user = {};
  // Opens a query on the file behind `storage`; empty where there is none.
  std::function<std::unique_ptr<RowCursor>(const std::string& query)> open_rows = {};
  std::shared_ptr<DataSource> data = {};  // nothing: the data objects that the script names
  bool interactive = false;               // prompts, and goes on after a wrong line
  std::string source_name = "-";          // FILE in "FILE:LINE: what is wrong"
};

// Runs the commands of `in` to its end. `out` gets JSON Lines and nothing else, flushed line by line;
// messages, help and the prompt go to `err`. Installs its own host services for the time of the run, in
// place of any installed before, and leaves none; with a user, a guard on the storage likewise. Returns the
// exit status: 0, or 2 when a line was wrong or there is no such user.
[[nodiscard]] int RunScript(std::istream& in, std::ostream& out, std::ostream& err,
                            const ScriptOptions& options);

}  // namespace plovix
