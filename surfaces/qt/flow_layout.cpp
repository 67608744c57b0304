#include "flow_layout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>
#include <numeric>

namespace plovix::qt {

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index < 0 || index >= count() ? nullptr : items_[static_cast<std::size_t>(index)].get();
}

QLayoutItem* FlowLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  const auto taken = items_.begin() + index;
  QLayoutItem* item = taken->release();
  items_.erase(taken);
  return item;
}

QSize FlowLayout::sizeHint() const {
  QSize size;
  for (const auto& item : items_) {
    if (item->isEmpty()) continue;
    const int gap = size.isEmpty() ? 0 : spacing();
    size = {size.width() + gap + item->sizeHint().width(),
            std::max(size.height(), item->sizeHint().height())};
  }
  return size;
}

QSize FlowLayout::minimumSize() const {
  return std::accumulate(items_.begin(), items_.end(), QSize(0, 0), [](QSize size, const auto& item) {
    return item->isEmpty() ? size : size.expandedTo(item->minimumSize());
  });
}

void FlowLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  Place(rect, true);
}

// The end of the items from `begin` on that fit side by side; at least one fits.
std::size_t FlowLayout::LineEnd(std::size_t begin, int width) const {
  int used = -spacing();
  for (std::size_t i = begin; i < items_.size(); ++i) {
    if (items_[i]->isEmpty()) continue;
    used += spacing() + items_[i]->sizeHint().width();
    if (used > width && i > begin) return i;
  }
  return items_.size();
}

int FlowLayout::Place(const QRect& rect, bool move) const {
  const Qt::LayoutDirection direction = parentWidget()->layoutDirection();
  int y = rect.y();
  for (std::size_t begin = 0; begin < items_.size();) {
    const std::size_t end = LineEnd(begin, rect.width());
    int height = 0;
    for (std::size_t i = begin; i < end; ++i) {
      if (!items_[i]->isEmpty()) height = std::max(height, items_[i]->sizeHint().height());
    }
    int x = rect.x();
    for (std::size_t i = begin; i < end; ++i) {
      if (items_[i]->isEmpty()) continue;
      const QSize size(std::min(items_[i]->sizeHint().width(), rect.width()), items_[i]->sizeHint().height());
      const QRect place(QPoint(x, y + (height - size.height()) / 2), size);
      if (move) items_[i]->setGeometry(QStyle::visualRect(direction, rect, place));
      x += size.width() + spacing();
    }
    y += height + (end < items_.size() ? spacing() : 0);
    begin = end;
  }
  return y - rect.y();
}

}  // namespace plovix::qt
