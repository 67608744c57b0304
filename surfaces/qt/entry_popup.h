// The list that opens below a combo box with very many entries: a search field and the matches nearest to the
// selected entry. Used by the combo box binding; short lists have Qt's own popup.
#pragma once

#include <plovix/surfaces/common/entry_search.h>

#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QStringListModel>
#include <QWidget>
#include <functional>
#include <optional>

#include "surface_texts.h"

namespace plovix::qt {

// Holds a limited number of texts however long the list is. Its rows are a section of the matches, which
// moves on when the arrow keys reach its end. Deletes itself when it closes.
class EntryPopup final : public QWidget {
 public:
  // `box` and `texts` outlive the popup; `owner`, the widget at which it opens, owns it. `choose` is called
  // with the index of an entry, after the popup has closed; it may delete the owner.
  EntryPopup(const ComboBox& box, const SurfaceTexts& texts, QWidget* owner, std::function<void(int)> choose);

  // Opens with the selected entry in view.
  void Open();
  // The list has changed: searches again.
  void EntriesChanged() { ShowMatches(); }

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

  void BuildList();
  void Place();
  void ShowMatches(std::optional<int> around = {});
  void ShowNote();
  [[nodiscard]] bool TakesKey(int key, bool with_alt);
  void GoDown(int rows);
  void SetRow(int row);
  void Choose(int row);

  const ComboBox& box_;
  const SurfaceTexts& texts_;
  QWidget* owner_;
  std::function<void(int)> choose_;
  surface::Matches matches_;
  QLineEdit* search_;
  QListView* list_;
  QLabel* note_;
  QStringListModel* rows_;
};

}  // namespace plovix::qt
