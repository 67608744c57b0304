#include "task_exchange.h"

#include <plovix/host/host_application.h>
#include <plovix/standalone/editors/release_dialog.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/tasks/task_access.h>
#include <plovix/standalone/text/ordinary_file.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include "import_report_dialog.h"

namespace plovix::app {
namespace {

constexpr int kLongestFileName = 60;  // UTF-16 units: with the ending, less than the 255 bytes of a file name
constexpr const char* kEnding = "task.json";

// Names that some systems reserve for devices, whatever their ending.
bool IsDeviceName(const QString& name) {
  static const QRegularExpression device("^(con|prn|aux|nul|com\\d|lpt\\d)(\\..*)?$",
                                         QRegularExpression::CaseInsensitiveOption);
  return device.match(name).hasMatch();
}

QString NameFilters(const AppParts& parts) {
  return parts.Shown("exchange.exports") + " (*." + kEnding + ");;" + parts.Shown("exchange.allFiles") +
         " (*)";
}

}  // namespace

QString SuggestedFileName(const AppParts& parts, const TaskRecord& task) {
  QString name = ToQt(TaskName(parts, task)).simplified();
  for (QChar& character : name) {
    // Surrogates are halves of characters that every file system accepts.
    const bool printable = character.isPrint() || character.isSurrogate();
    if (!printable || QString("<>:\"/\\|?*").contains(character)) character = '_';
  }
  name.truncate(kLongestFileName);
  if (!name.isEmpty() && name.back().isHighSurrogate()) name.chop(1);
  static const QRegularExpression edges("^[. ]+|[. ]+$");
  name.remove(edges);
  if (name.isEmpty()) name = parts.Shown("exchange.fileName");
  return (IsDeviceName(name) ? "_" : "") + name + "." + kEnding;
}

void SaveExport(const AppParts& parts, const TaskRecord& task, const QString& path) {
  const auto fail = [&](const std::string& cause) {
    throw Failure(failure_number::kInvalidCall, parts.Text("exchange.unwritable", {FromQt(path), cause}));
  };
  // The file would replace the folder, pipe or device.
  if (const QFileInfo there(path); there.exists() && !there.isFile()) fail(parts.Text("exchange.notAFile"));
  const std::string text = WriteExport(task, TagsUsed(task, parts.tables.Tags()), parts.state.texts);
  QSaveFile file(path);
  const bool written = file.open(QIODevice::WriteOnly) &&
                       file.write(text.data(), static_cast<qint64>(text.size())) != -1 && file.commit();
  if (!written) fail(FromQt(file.errorString()));
}

ImportedTask LoadExport(const AppParts& parts, const QString& path) {
  const TextTable& texts = parts.state.texts;
  const TaskExport file = ReadExport(ReadOrdinaryFile(FromQt(path), kLargestExport, texts),
                                     FromQt(QFileInfo(path).fileName()), texts);
  return ForImport(file, {.data_source = parts.data.get(),
                          .users = parts.tables.Users(),
                          .tags = parts.tables.Tags(),
                          .user_id = parts.user.id,
                          // Such a task has no owner.
                          .automation_manager = MayCreateShared(parts.user)});
}

void ExportTask(const AppParts& parts, const TaskRecord& task, QWidget* parent) {
  QFileDialog dialog(parent, parts.Shown("exchange.exportTitle"), {}, NameFilters(parts));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(kEnding);
  dialog.selectFile(SuggestedFileName(parts, task));
  const QString path = ChoosePath(dialog);
  if (path.isEmpty()) return;
  DoOrTell(parts.state, "exchange.exportFailed", [&] { SaveExport(parts, task, path); });
}

std::optional<TaskRecord> ImportTask(const AppParts& parts, QWidget* parent) {
  QFileDialog dialog(parent, parts.Shown("exchange.importTitle"), {}, NameFilters(parts));
  dialog.setFileMode(QFileDialog::ExistingFile);
  const QString path = ChoosePath(dialog);
  if (path.isEmpty()) return std::nullopt;
  ImportedTask imported;
  if (!DoOrTell(parts.state, "exchange.importFailed", [&] { imported = LoadExport(parts, path); }))
    return std::nullopt;
  if (!imported.report.empty()) {
    ImportReportDialog report(parts.state.texts, FromQt(QFileInfo(path).fileName()), imported.report, parent);
    if (report.exec() != QDialog::Accepted) return std::nullopt;
  }
  const bool taken = DoOrTell(parts.state, "exchange.importFailed", [&] {
    for (const TagRecord& tag : imported.new_tags) parts.tables.SaveTag(tag, {});
    ReadTags(parts.state, parts.tables, parts.state.texts.code);
  });
  return taken ? std::optional(imported.task) : std::nullopt;
}

bool ReleaseTask(const AppParts& parts, const TaskRecord& task, QWidget* parent) {
  ReleaseDialog dialog(parts.state.texts, task, TaskName(parts, task), parent);
  if (dialog.exec() != QDialog::Accepted) return false;
  return DoOrTell(parts.state, "release.failed", [&] { parts.control.Release(task.id, task.version); });
}

}  // namespace plovix::app
