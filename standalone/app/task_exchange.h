// Export and import of a task as a file, as the task list's buttons do them.
#pragma once

#include <plovix/standalone/exchange/import_task.h>

#include <QString>
#include <optional>

#include "app_parts.h"

class QWidget;

namespace plovix::app {

// A file name made of the task's name: short, with its ending, and such that every file system takes it.
[[nodiscard]] QString SuggestedFileName(const AppParts& parts, const TaskRecord& task);

// Writes the file all or nothing: a file that was there stays until the new one is complete. Fails with a
// Failure for a person.
void SaveExport(const AppParts& parts, const TaskRecord& task, const QString& path);
// Fails with a Failure for a person.
[[nodiscard]] ImportedTask LoadExport(const AppParts& parts, const QString& path);

// Asks for the file. A failure is told.
void ExportTask(const AppParts& parts, const TaskRecord& task, QWidget* parent);
// Asks for the file, tells what is wrong with it, shows what cannot be taken over as it is, and stores
// its tags. The task is to be edited in the wizard; nothing when the user cancelled or it could not be read.
[[nodiscard]] std::optional<TaskRecord> ImportTask(const AppParts& parts, QWidget* parent);

}  // namespace plovix::app
