#include "editor_area.h"

#include <QApplication>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace plovix::app {
namespace {

constexpr int kLeastLines = 4;

// Requests only the height that it needs; extra height goes to the parts that can grow.
class Content final : public QWidget {
 public:
  [[nodiscard]] int heightForWidth(int width) const override {
    return layout()->hasHeightForWidth() ? layout()->minimumHeightForWidth(width)
                                         : layout()->minimumSize().height();
  }
};

}  // namespace

EditorArea::EditorArea() {
  auto* content = new Content;
  rows_ = new QVBoxLayout(content);
  rows_->setContentsMargins({});
  setWidget(content);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  // Qt scrolls to the focus by itself only for the Tab key.
  connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* /*former*/, QWidget* now) {
    if (now != nullptr && widget()->isAncestorOf(now)) ensureWidgetVisible(now);
  });
}

QSize EditorArea::sizeHint() const {
  const QSize wanted = rows_->totalSizeHint();
  const int height =
      rows_->hasHeightForWidth() ? rows_->totalHeightForWidth(wanted.width()) : wanted.height();
  return {wanted.width(), std::max(height, widget()->heightForWidth(wanted.width()))};
}

QSize EditorArea::minimumSizeHint() const {
  const int scroll_bar = verticalScrollBar()->sizeHint().width();
  const int whole = rows_->totalMinimumSize().height();
  return {rows_->totalMinimumSize().width() + scroll_bar,
          std::min(whole, kLeastLines * fontMetrics().lineSpacing())};
}

int EditorArea::MissingHeight() const {
  rows_->activate();
  return std::max(0, widget()->heightForWidth(viewport()->width()) - viewport()->height());
}

}  // namespace plovix::app
