// How many records a query finds, and the first of them. Used by the query builder dialog.
#pragma once

#include <plovix/standalone/data/query_preview.h>
#include <plovix/standalone/text/text_table.h>

#include <QTimer>
#include <QWidget>
#include <vector>

class QLabel;
class QTableWidget;

namespace plovix::app {

class QueryPreviewPanel final : public QWidget {
 public:
  // `texts` outlives it.
  QueryPreviewPanel(const TextTable& texts, QueryTarget target);

  // Says that the shown records are out of date.
  void ShowCounting();
  // Runs a query in the background and shows what it finds.
  void Ask(BoundQuery query);
  // Shows a host text instead of records.
  void ShowInstead(std::string_view text);
  [[nodiscard]] QWidget* TabStop() const;
  // A longer sentence takes its room from the table; otherwise a layout would use the panel's preferred
  // height as its minimum.
  [[nodiscard]] bool hasHeightForWidth() const override { return false; }

 private:
  void Cancel();
  void Show(const QueryPreview::Result& result);
  void ShowRows(const QueryRows& found);
  [[nodiscard]] QString CountText(const QueryRows& found) const;

  const TextTable& texts_;
  QLabel* count_;
  QTableWidget* table_;
  QTimer silence_;  // runs out if the query exceeds its time limit
  QueryPreview preview_;
};

}  // namespace plovix::app
