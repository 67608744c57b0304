#include "task_table_model.h"

#include <plovix/standalone/schedule/sentence.h>
#include <plovix/standalone/schedule/task_schedule.h>
#include <plovix/standalone/tasks/task_access.h>
#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QLocale>
#include <algorithm>

#include "date_text.h"

namespace plovix::app {
namespace {

constexpr int kLongestCell = static_cast<int>(kLongestName);  // UTF-16 units; enough to search in

constexpr const char* kHeaders[] = {"list.column.name",       "list.column.shortDescription",
                                    "list.column.categories", "list.column.records",
                                    "list.column.schedule",   "list.column.owner",
                                    "list.column.modified"};

}  // namespace

// Sorting and drawing ask for a cell again and again, and computing one may be expensive: a schedule that
// never runs, a name of a megabyte.
void TaskTableModel::SetTasks(std::vector<TaskRecord> tasks) {
  beginResetModel();
  tasks_ = std::move(tasks);
  cells_.clear();
  for (const TaskRecord& task : tasks_) {
    auto& cells = cells_.emplace_back();
    for (int column = 0; column < kColumnCount; ++column) {
      cells.at(static_cast<std::size_t>(column)) =
          qt::Shortened(ToQt(Text(task, static_cast<Column>(column))).simplified(), kLongestCell);
    }
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
  if (index.column() == kModified && role == kSortRole) return WallTime(Task(index.row()).modified);
  const QString& text =
      cells_.at(static_cast<std::size_t>(index.row())).at(static_cast<std::size_t>(index.column()));
  switch (role) {
    case Qt::DisplayRole:
      return qt::Shortened(text, qt::kLongestShown);
    case Qt::ToolTipRole:
      return qt::ToolTip(text);
    case kSortRole:
      return text.toCaseFolded();
    case kSearchRole:
      return text;
    default:
      return {};
  }
}

QVariant TaskTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return parts_.Shown(kHeaders[section]);
}

std::string TaskTableModel::Text(const TaskRecord& task, Column column) const {
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
      return ScheduleInWords(task);
    case kModified:
      return FromQt(QLocale().toString(WallTime(task.modified), QLocale::ShortFormat));
    case kColumnCount:
      break;
  }
  return {};
}

std::string TaskTableModel::ScheduleInWords(const TaskRecord& task) const {
  const TextTable& texts = parts_.state.texts;
  const auto recurrence = ScheduleOf(task);
  const Outlook outlook =
      recurrence ? OutlookOf(task, *recurrence, parts_.zone,
                             InstantOf(parts_.state.clock, parts_.state.clock_offset, parts_.zone))
                 : Outlook{};
  return OneLine(InWords(recurrence, outlook, texts, LocaleTime), texts);
}

// As many categories as fit into a cell.
std::string TaskTableModel::Categories(const TaskRecord& task) const {
  const bool sees_all = HasRight(parts_.user, kRightSeeAllCategories);
  std::string text;
  for (const CategoryRecord& category : task.categories) {
    if (!category.is_public && !sees_all) continue;
    if (!text.empty()) text += ", ";
    text += parts_.state.TagText(category.tag);
    if (IsLongerThan(text, kLongestCell)) break;
  }
  return text;
}

// The captions of the three choices on the task type page.
std::string TaskTableModel::Records(const TaskRecord& task) const {
  constexpr std::array kCaptions{8, 115, 10};  // by record mode
  const auto mode = static_cast<std::size_t>(task.record_mode);
  return mode < kCaptions.size() ? parts_.state.texts.Find(kCaptions.at(mode)).value_or("") : "";
}

}  // namespace plovix::app
