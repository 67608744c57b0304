// Export and import of a task as a file, for the task list's buttons.
#pragma once

#include <plovix/standalone/exchange/import_task.h>

#include <QString>
#include <optional>

#include "app_parts.h"

class QWidget;

namespace plovix::app {

// A file name derived from the task's name: short, with its ending, and valid on every file system.
[[nodiscard]] QString SuggestedFileName(const AppParts& parts, const TaskRecord& task);

// Writes the file all or nothing: an existing file stays until the new one is complete. Fails with a Failure
// for a person.
void SaveExport(const AppParts& parts, const TaskRecord& task, const QString& path);
// Fails with a Failure for a person.
[[nodiscard]] ImportedTask LoadExport(const AppParts& parts, const QString& path);

// Asks for the file. Shows failures.
void ExportTask(const AppParts& parts, const TaskRecord& task, QWidget* parent);
// Asks for the file, shows what is wrong with it or cannot be imported unchanged, and stores its tags.
// Returns the task, to be edited in the wizard; nothing if the user cancelled or it could not be read.
[[nodiscard]] std::optional<TaskRecord> ImportTask(const AppParts& parts, QWidget* parent);

// Shows what an imported task does and, if the user says so, lets it run; shows failures. `task`: as stored
// now. Returns whether it is released.
[[nodiscard]] bool ReleaseTask(const AppParts& parts, const TaskRecord& task, QWidget* parent);

}  // namespace plovix::app
