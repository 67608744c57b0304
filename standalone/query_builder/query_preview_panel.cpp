#include "query_preview_panel.h"

#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/tables.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMetaObject>
#include <QTableWidget>
#include <QVBoxLayout>

namespace plovix::app {
namespace {

constexpr int kWidestColumn = 30;  // characters
constexpr int kPreviewLines = 5;
constexpr std::chrono::milliseconds kSilence = QueryLimits{}.time + std::chrono::seconds{1};

}  // namespace

QueryPreviewPanel::QueryPreviewPanel(const TextTable& texts, QueryTarget target)
    : texts_(texts),
      count_(qt::NewWrappedLabel()),
      table_(new QTableWidget),
      preview_(std::move(target), [this](std::function<void()> arrived) {
        QMetaObject::invokeMethod(this, std::move(arrived), Qt::QueuedConnection);
      }) {
  count_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  table_->setAccessibleName(ToQt(texts_.Host("query.preview.name")));
  PrepareTable(*table_);
  table_->setShowGrid(true);
  table_->setWordWrap(false);
  table_->horizontalHeader()->setTextElideMode(Qt::ElideRight);
  table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table_->setMinimumHeight(fontMetrics().lineSpacing() * kPreviewLines);
  silence_.setSingleShot(true);
  silence_.setInterval(kSilence);
  silence_.callOnTimeout(this, [this] { ShowInstead("query.preview.tooLong"); });
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins({});
  rows->addWidget(count_);
  rows->addWidget(table_, 1);
}

QWidget* QueryPreviewPanel::TabStop() const {
  return table_;
}

void QueryPreviewPanel::ShowCounting() {
  Cancel();
  count_->setText(ToQt(texts_.Host("query.preview.counting")));
  table_->setEnabled(false);
}

void QueryPreviewPanel::Ask(BoundQuery query) {
  ShowCounting();
  silence_.start();
  preview_.Ask(std::move(query), [this](const QueryPreview::Result& result) { Show(result); });
}

void QueryPreviewPanel::Cancel() {
  silence_.stop();
  preview_.Cancel();
}

void QueryPreviewPanel::ShowInstead(std::string_view text) {
  Cancel();
  count_->setText(ToQt(texts_.Host(text)));
  ShowRows({});
}

void QueryPreviewPanel::Show(const QueryPreview::Result& result) {
  silence_.stop();
  if (const auto* problem = std::get_if<QueryProblem>(&result)) {
    count_->setText(ToQt(texts_.Host(problem->text, {problem->detail})));
    ShowRows({});
    return;
  }
  const auto& found = std::get<QueryRows>(result);
  count_->setText(CountText(found));
  ShowRows(found);
}

QString QueryPreviewPanel::CountText(const QueryRows& found) const {
  const std::string count = FromQt(QLocale().toString(static_cast<qlonglong>(found.count)));
  if (!found.complete) return ToQt(texts_.Host("query.preview.more", {count}));
  if (found.count == 0) return ToQt(texts_.Host("query.preview.none"));
  if (found.count == 1) return ToQt(texts_.Host("query.preview.one"));
  return ToQt(texts_.Host("query.preview.count", {count}));
}

void QueryPreviewPanel::ShowRows(const QueryRows& found) {
  table_->clear();
  table_->setEnabled(true);
  table_->setRowCount(static_cast<int>(found.rows.size()));
  table_->setColumnCount(static_cast<int>(found.columns.size()));
  for (int column = 0; column < table_->columnCount(); ++column) {
    QTableWidgetItem* header = NewCell(ToQt(found.columns[static_cast<std::size_t>(column)]));
    table_->setHorizontalHeaderItem(column, header);
    for (int row = 0; row < table_->rowCount(); ++row) {
      const auto& value = found.rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
      QTableWidgetItem* cell = NewCell(ToQt(value ? *value : texts_.Host("query.preview.empty")));
      if (!value) cell->setForeground(palette().brush(QPalette::PlaceholderText));
      table_->setItem(row, column, cell);
    }
  }
  for (int column = 0; column < table_->columnCount(); ++column) FitColumn(*table_, column, kWidestColumn);
}

}  // namespace plovix::app
