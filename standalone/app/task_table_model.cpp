#include "task_table_model.h"

#include <plovix/standalone/schedule/sentence.h>
#include <plovix/standalone/schedule/task_schedule.h>
#include <plovix/standalone/tasks/task_access.h>
#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QColor>
#include <QGuiApplication>
#include <QLocale>
#include <QPalette>
#include <algorithm>

#include "date_text.h"

namespace plovix::app {
namespace {

constexpr int kLongestCell = static_cast<int>(kLongestName);  // UTF-16 units; enough to search in

constexpr const char* kHeaders[] = {
    "list.column.name",       "list.column.next",    "list.column.last",     "list.column.shortDescription",
    "list.column.categories", "list.column.records", "list.column.schedule", "list.column.owner",
    "list.column.modified"};

QString CellText(const std::string& text) {
  return qt::Shortened(ToQt(text).simplified(), kLongestCell);
}

// Red that can be read on the ground of a table, light or dark.
QColor ColourOfBad() {
  constexpr int kMiddle = 128;
  const bool dark = QGuiApplication::palette().color(QPalette::Base).lightness() < kMiddle;
  return dark ? QColor(255, 138, 128) : QColor(176, 0, 32);
}

}  // namespace

// Sorting and drawing ask for a cell again and again, and computing one may be expensive: a schedule that
// never runs, a name of a megabyte.
void TaskTableModel::SetTasks(std::vector<TaskRecord> tasks, RunsOfTasks runs) {
  beginResetModel();
  rows_.clear();
  runs_ = std::move(runs);
  const Instant now = parts_.control.Now();
  for (TaskRecord& task : tasks) {
    Row& row = rows_.emplace_back();
    row.task = std::move(task);
    for (int column = 0; column < kColumnCount; ++column)
      row.cells.at(static_cast<std::size_t>(column)) = CellText(Text(row.task, static_cast<Column>(column)));
    row.short_month = runs_.Of(row.task.id).state.policies.short_month;
    row.cells[kSchedule] = LookAhead(row, now);
    TellRuns(row, now);
  }
  endResetModel();
}

void TaskTableModel::SetRuns(RunsOfTasks runs) {
  runs_ = std::move(runs);
  TellTime();
}

// One signal for all rows, because each may make the table sort anew.
void TaskTableModel::TellTime() {
  const Instant now = parts_.control.Now();
  int first = rowCount(), last = -1;
  for (int at = 0; at < rowCount(); ++at) {
    if (!TellRuns(rows_[static_cast<std::size_t>(at)], now)) continue;
    first = std::min(first, at);
    last = at;
  }
  if (last >= 0) emit dataChanged(index(first, 0), index(last, kColumnCount - 1));
}

bool TaskTableModel::TellRuns(Row& row, Instant now) {
  const TaskRuns& runs = runs_.Of(row.task.id);
  const ShortMonth short_month = runs.state.policies.short_month;
  if (short_month != row.short_month || (row.next_run && *row.next_run <= now)) {
    row.short_month = short_month;
    row.cells[kSchedule] = LookAhead(row, now);
  }
  RunCell next = NextCell(parts_, runs, runs_.all_paused, row.next_run, now);
  RunCell last = LastCell(parts_, runs, now);
  const bool differs = next != row.next || last != row.last;
  row.next = std::move(next);
  row.last = std::move(last);
  return differs;
}

bool TaskTableModel::CountsSeconds() const {
  return std::ranges::any_of(
      rows_, [](const Row& row) { return row.next.counts_seconds || row.last.counts_seconds; });
}

int TaskTableModel::RowOf(std::int64_t id) const {
  const auto found = std::ranges::find_if(rows_, [id](const Row& row) { return row.task.id == id; });
  return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int TaskTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TaskTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

// What runs do is not searched: a row would vanish while somebody looks at it.
QVariant TaskTableModel::RunData(const Row& row, bool is_next, int role) const {
  const RunCell& cell = is_next ? row.next : row.last;
  switch (role) {
    case Qt::DisplayRole:
      return cell.text;
    case Qt::ToolTipRole:
      return qt::ToolTip(RunTip(row, is_next));
    case Qt::ForegroundRole:
      return cell.is_bad ? QVariant(ColourOfBad()) : QVariant();
    case kSortRole:
      return static_cast<qlonglong>(cell.order);
    default:
      return {};
  }
}

QString TaskTableModel::RunTip(const Row& row, bool is_next) const {
  const TaskRuns& runs = runs_.Of(row.task.id);
  return is_next ? NextTip(parts_, runs, runs_.all_paused, row.next_run) : LastTip(parts_, runs);
}

QVariant TaskTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Row& row = RowAt(index.row());
  const bool is_next = index.column() == kNext;
  if (is_next || index.column() == kLast) return RunData(row, is_next, role);
  if (index.column() == kModified && role == kSortRole) return WallTime(row.task.modified);
  const QString& text = row.cells.at(static_cast<std::size_t>(index.column()));
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
    case kModified:
      return FromQt(QLocale().toString(WallTime(task.modified), QLocale::ShortFormat));
    case kSchedule:  // LookAhead
    case kNext:
    case kLast:
    case kColumnCount:
      break;
  }
  return {};
}

QString TaskTableModel::LookAhead(Row& row, Instant now) const {
  const TextTable& texts = parts_.state.texts;
  const auto recurrence = ScheduleOf(row.task);
  const Outlook outlook =
      recurrence ? OutlookOf(row.task, *recurrence, row.short_month, parts_.zone, now) : Outlook{};
  row.next_run.reset();
  if (!outlook.runs.empty()) row.next_run = outlook.runs.front().moment.at;
  return CellText(OneLine(InWords(recurrence, outlook, texts, LocaleTime), texts));
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
