#include "records_panel.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/runs/run_rules.h>
#include <plovix/standalone/runs/run_words.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/tables.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTableView>
#include <algorithm>

namespace plovix::app {
namespace {

constexpr std::size_t kRecordPage = 1000;
constexpr std::int64_t kRestOfRecords = 20;  // times as long as a reading took, until the next one
constexpr std::int64_t kTurn = 20;  // milliseconds of deciding between two looks at the window's events
constexpr int kWidestKey = 30;      // characters
constexpr int kRecordLinesInSight = 5;
constexpr const char* kRecordHeaders[] = {"details.column.record", "details.column.state",
                                          "details.column.reason"};

}  // namespace

void LedgerTableModel::Take(const std::string& after, const std::vector<LedgerRow>& page, bool last) {
  const auto behind = [this](const std::string& key) {
    const auto row = std::ranges::upper_bound(Rows(), key, {}, &LedgerRow::record);
    return static_cast<std::size_t>(row - Rows().begin());
  };
  Replace(behind(after), last || page.empty() ? Rows().size() : behind(page.back().record), page);
}

int LedgerTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumnCount;
}

QVariant LedgerTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto text = [&] {
    const LedgerRow& row = At(index.row());
    const std::string words = index.column() == kRecord  ? RecordInWords(row.record, texts_)
                              : index.column() == kState ? StateInWords(row.state, texts_)
                                                         : row.reason;
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

QVariant LedgerTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return ToQt(texts_.Host(kRecordHeaders[section]));
}

RecordsPanel::RecordsPanel(RunParts parts, const RunRecord& run)
    : parts_(std::move(parts)),
      task_(run.task),
      run_(run.id),
      model_(new LedgerTableModel(parts_.texts, this)),
      table_(new QTableView),
      only_undecided_(new QCheckBox(parts_.Shown("details.onlyUndecided"))),
      done_(NewButton(parts_.Shown("details.isDone"), [this] { Decide(true); })),
      again_(NewButton(parts_.Shown("details.takeAgain"), [this] { Decide(false); })),
      note_(qt::NewWrappedLabel()) {
  table_->setModel(model_);
  table_->setObjectName("records");
  table_->setAccessibleName(parts_.Shown("details.recordsName"));
  PrepareRowTable(*table_);
  table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  table_->setMinimumHeight(table_->fontMetrics().lineSpacing() * kRecordLinesInSight);
  note_->setMinimumHeight(note_->fontMetrics().lineSpacing() * 2);
  note_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  done_->setObjectName("done");
  again_->setObjectName("again");
  auto* rows = NewColumn({only_undecided_, table_, note_});
  rows->setStretch(1, 1);
  rows->addLayout(NewRow({done_, again_, nullptr}));
  setLayout(rows);
  reading_.setSingleShot(true);
  deciding_.setSingleShot(true);
  reading_.callOnTimeout(this, [this] { ReadPage(); });
  deciding_.callOnTimeout(this, [this] { DecideSome(); });
  connect(only_undecided_, &QCheckBox::clicked, this, [this] {
    model_->Clear();
    ReadFromBeginning();
  });
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &RecordsPanel::UpdateButtons);
}

// A reading that takes long is repeated less often.
void RecordsPanel::Refresh(bool may_decide) {
  may_decide_ = may_decide;
  UpdateButtons();
  const bool rests = since_read_.isValid() && since_read_.elapsed() < kRestOfRecords * cost_;
  if (!reading_.isActive() && !deciding_.isActive() && !rests) ReadFromBeginning();
}

void RecordsPanel::ReadFromBeginning() {
  after_.clear();
  cost_ = 0;
  ReadPage();
}

void RecordsPanel::ReadPage() {
  QElapsedTimer took;
  took.start();
  const int before = model_->rowCount();
  const auto failure = FailureOf([this, before] {
    const auto page =
        parts_.runs.LedgerOfRun({task_, run_, after_, only_undecided_->isChecked(), kRecordPage});
    const bool last = page.size() < kRecordPage;
    model_->Take(after_, page, last);
    if (before == 0 && model_->rowCount() > 0) FitColumn(*table_, LedgerTableModel::kRecord, kWidestKey);
    if (last) return;
    after_ = page.back().record;
    reading_.start(0);
  });
  cost_ += took.elapsed();
  since_read_.start();
  failure ? note_->setText(parts_.Shown("history.unreadable", {failure->Description()})) : TellCount();
}

void RecordsPanel::TellCount() {
  if (!to_decide_.empty()) return;
  const std::string count = FromQt(QLocale().toString(model_->rowCount()));
  note_->setText(model_->rowCount() > 0         ? parts_.Shown("details.recordCount", {count})
                 : only_undecided_->isChecked() ? parts_.Shown("details.noUndecided")
                                                : parts_.Shown("details.noRecords"));
}

bool RecordsPanel::AnyUndecidedSelected() const {
  for (const QItemSelectionRange& range : table_->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row)
      if (IsUndecided(model_->At(row))) return true;
  return false;
}

void RecordsPanel::UpdateButtons() {
  const bool can = may_decide_ && to_decide_.empty() && AnyUndecidedSelected();
  for (QPushButton* button : {done_, again_}) EnableBeside(*table_, *button, can);
}

// Each is a transaction of its own, so many of them take a while.
void RecordsPanel::Decide(bool done) {
  decided_as_done_ = done;
  for (const QItemSelectionRange& range : table_->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row)
      if (IsUndecided(model_->At(row))) to_decide_.push_back(model_->At(row).record);
  UpdateButtons();
  DecideSome();
}

void RecordsPanel::DecideSome() {
  QElapsedTimer turn;
  turn.start();
  const bool well = DoOrTell(parts_, *window(), [&] {
    for (; !to_decide_.empty() && turn.elapsed() < kTurn; to_decide_.pop_front())
      parts_.control.Decide(task_, to_decide_.front(), decided_as_done_);
  });
  if (!well) to_decide_.clear();
  if (to_decide_.empty()) {
    ReadFromBeginning();
    return UpdateButtons();
  }
  note_->setText(parts_.Shown("details.deciding",
                              {FromQt(QLocale().toString(static_cast<qulonglong>(to_decide_.size())))}));
  deciding_.start(0);
}

}  // namespace plovix::app
