#include "run_table_model.h"

#include <plovix/standalone/runs/run_words.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <algorithm>

namespace plovix::app {
namespace {

constexpr std::size_t kPage = 200;  // runs

constexpr const char* kRunHeaders[] = {
    "history.column.started",  "history.column.task",    "history.column.due",
    "history.column.origin",   "history.column.state",   "history.column.attempt",
    "history.column.duration", "history.column.records", "history.column.reason"};

}  // namespace

void RunTableModel::Look(std::vector<RunState> states, const QString& text) {
  states_ = std::move(states);
  text_ = Folded(text);
  names_.clear();
  Clear();
  newest_ = oldest_ = 0;
  more_ = true;
  ReadOn();
}

std::vector<RunRecord> RunTableModel::Page(std::optional<std::int64_t> before) {
  return parts_.runs.Recent({.task = task_, .states = states_, .before = before, .most = kPage});
}

std::vector<RunRow> RunTableModel::Shown(const std::vector<RunRecord>& page) {
  std::vector<RunRow> shown;
  for (const RunRecord& run : page) {
    const auto [known, is_new] = names_.try_emplace(run.task);
    if (is_new) known->second = parts_.name(run.task);
    if (!known->second) continue;
    const std::string& name = *known->second;
    const bool found = text_.empty() || FoldCase(name).find(text_) != std::string::npos ||
                       FoldCase(ReasonInWords(run, parts_.texts)).find(text_) != std::string::npos;
    if (found) shown.push_back({run, name});
  }
  return shown;
}

void RunTableModel::ReadOn() {
  if (!more_) return;
  const auto page = Page(oldest_ == 0 ? std::nullopt : std::optional(oldest_));
  more_ = page.size() == kPage;
  if (page.empty()) return;
  if (newest_ == 0) newest_ = page.front().id;
  oldest_ = page.back().id;
  Replace(Rows().size(), Rows().size(), Shown(page));
}

// The newest page says everything about its time. Older runs change only if they are not over.
void RunTableModel::Refresh() {
  const auto page = Page(std::nullopt);
  const bool whole = page.size() < kPage;
  if (!whole && page.back().id > newest_) return Look(std::vector(states_), ToQt(text_));  // too many are new
  if (whole) more_ = false;
  const std::size_t end = whole ? Rows().size() : EndOf(page.back().id);
  Replace(0, end, Shown(page));
  if (!page.empty()) {
    newest_ = page.front().id;
    oldest_ = oldest_ == 0 ? page.back().id : std::min(oldest_, page.back().id);
  }
  if (!whole) RefreshOlder(EndOf(page.back().id));
  TellTimeGoesOn();
}

void RunTableModel::RefreshOlder(std::size_t from) {
  for (std::size_t row = from; row < Rows().size();) {
    const std::size_t before = Rows().size();
    if (!Rows()[row].run.IsOver()) {
      const auto run = parts_.runs.Run(Rows()[row].run.id);
      const bool passes = run && (states_.empty() || std::ranges::count(states_, run->state) > 0);
      Replace(row, row + 1, passes ? Shown({*run}) : std::vector<RunRow>());
    }
    if (Rows().size() == before) ++row;
  }
}

void RunTableModel::TellTimeGoesOn() {
  for (int row = 0; row < rowCount(); ++row)
    if (At(row).run.state == RunState::kRunning)
      emit dataChanged(index(row, kDuration), index(row, kDuration));
}

std::size_t RunTableModel::EndOf(std::int64_t run) const {
  const auto end =
      std::ranges::partition_point(Rows(), [run](const RunRow& row) { return row.run.id >= run; });
  return static_cast<std::size_t>(end - Rows().begin());
}

int RunTableModel::RowOf(std::int64_t run) const {
  const std::size_t end = EndOf(run);
  return end > 0 && Rows()[end - 1].run.id == run ? static_cast<int>(end) - 1 : -1;
}

int RunTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant RunTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto text = [&] {
    const std::string words = Text(At(index.row()), static_cast<Column>(index.column()));
    return ToQt(words).left(qt::kLongestTold).simplified();
  };
  switch (role) {
    case Qt::DisplayRole:
      return qt::Shortened(text(), qt::kLongestShown);
    case Qt::ToolTipRole:
      return qt::ToolTip(text());
    default:
      return {};
  }
}

QVariant RunTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return parts_.Shown(kRunHeaders[section]);
}

std::string RunTableModel::Text(const RunRow& row, Column column) const {
  const RunRecord& run = row.run;
  switch (column) {
    case kStarted:
      return run.started ? parts_.Time(*run.started) : "";
    case kTask:
      return row.name;
    case kDue:
      return DueInWords(run);
    case kOrigin:
      return OriginInWords(run, parts_.texts);
    case kState:
      return StateInWords(run, parts_.texts);
    case kAttempt:
      return run.attempt > 0 ? std::to_string(run.attempt) : "";
    case kDuration:
      return DurationInWords(run, parts_.now(), parts_.texts);
    case kRecords:
      return CountsInWords(run.records, parts_.texts);
    case kReason:
      return ReasonInWords(run, parts_.texts);
    case kColumnCount:
      break;
  }
  return {};
}

// Of a run that has not begun, or not at the first attempt, the instant itself.
std::string RunTableModel::DueInWords(const RunRecord& run) const {
  if (run.missed && run.missed->count > 1)
    return parts_.texts.Host("history.span", {parts_.Time(run.missed->from), parts_.Time(run.missed->to)});
  std::string late = LatenessInWords(run, parts_.texts);
  if (!late.empty()) return late;
  const auto due = run.missed ? std::optional(run.missed->to) : run.due;
  if (due) return parts_.texts.Host("history.due", {parts_.Time(*due)});
  const bool is_to_come = run.state == RunState::kWaiting && run.not_before > parts_.now();
  return is_to_come ? parts_.texts.Host("history.notBefore", {parts_.Time(run.not_before)}) : "";
}

}  // namespace plovix::app
