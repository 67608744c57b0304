#include "task_table_model.h"

#include <plovix/standalone/schedule/sentence.h>
#include <plovix/standalone/schedule/task_schedule.h>

#include <QLocale>
#include <algorithm>

#include "date_text.h"
#include "qt_text.h"

namespace plovix::app {
namespace {

constexpr const char* kCaptions[] = {"list.column.name",       "list.column.shortDescription",
                                     "list.column.categories", "list.column.records",
                                     "list.column.schedule",   "list.column.owner",
                                     "list.column.modified"};

}  // namespace

void TaskTableModel::SetTasks(std::vector<TaskRecord> tasks) {
  beginResetModel();
  tasks_ = std::move(tasks);
  schedules_.clear();
  const TextTable& texts = parts_.state.texts;
  const DateTime now = parts_.state.Now();
  const auto instant = InstantOf(parts_.state, parts_.zone);
  for (const TaskRecord& task : tasks_) {
    const auto recurrence = ScheduleOf(task);
    const Outlook outlook =
        recurrence ? OutlookOf(*recurrence, ScheduleStart(task, now), parts_.zone, instant) : Outlook{};
    schedules_.push_back(OneLine(InWords(recurrence, outlook, texts, LocaleTime), texts));
  }
  endResetModel();
}

int TaskTableModel::RowOf(std::int64_t id) const {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  return found == tasks_.end() ? -1 : static_cast<int>(found - tasks_.begin());
}

int TaskTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(tasks_.size());
}

int TaskTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant TaskTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const TaskRecord& task = Task(index.row());
  if (index.column() == kModified) {
    if (role == kSortRole) return WallTime(task.modified);
    if (role == Qt::DisplayRole) return QLocale().toString(WallTime(task.modified), QLocale::ShortFormat);
  }
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != kSortRole) return {};
  const QString text = ToQt(Text(index.row(), static_cast<Column>(index.column()))).simplified();
  return role == kSortRole ? text.toCaseFolded() : text;
}

QVariant TaskTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return ToQt(parts_.Text(kCaptions[section]));
}

std::string TaskTableModel::Text(int row, Column column) const {
  const TaskRecord& task = Task(row);
  switch (column) {
    case kName:
      return TaskName(parts_, task);
    case kShortDescription:
      return task.uses_language_tags ? parts_.state.TagText(task.short_description_tag)
                                     : task.short_description;
    case kCategories:
      return Categories(task);
    case kRecords:
      return Records(task);
    case kOwner:
      return task.owner;
    case kSchedule:
      return schedules_.at(static_cast<std::size_t>(row));
    case kModified:
    case kColumnCount:
      break;
  }
  return {};
}

std::string TaskTableModel::Categories(const TaskRecord& task) const {
  std::string text;
  for (const CategoryRecord& category : task.categories) {
    if (!text.empty()) text += ", ";
    text += parts_.state.TagText(category.tag);
  }
  return text;
}

// The captions of the three choices on the task type page.
std::string TaskTableModel::Records(const TaskRecord& task) const {
  constexpr int kNoData = 8;
  constexpr int kSingleRecord = 115;
  constexpr int kQueryResults = 10;
  switch (task.record_mode) {
    case record_mode::kNoData:
      return parts_.state.texts.Find(kNoData).value_or("");
    case record_mode::kSingleRecord:
      return parts_.state.texts.Find(kSingleRecord).value_or("");
    case record_mode::kQueryResults:
      return parts_.state.texts.Find(kQueryResults).value_or("");
    default:
      return {};
  }
}

}  // namespace plovix::app
