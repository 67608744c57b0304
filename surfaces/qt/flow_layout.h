// A line of widgets side by side that wraps if the page is too narrow.
#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace plovix::qt {

class FlowLayout final : public QLayout {
 public:
  using QLayout::QLayout;

  void addItem(QLayoutItem* item) override { items_.emplace_back(item); }
  [[nodiscard]] int count() const override { return static_cast<int>(items_.size()); }
  [[nodiscard]] QLayoutItem* itemAt(int index) const override;
  [[nodiscard]] QLayoutItem* takeAt(int index) override;

  [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override { return Place(QRect(0, 0, width, 0), false); }
  [[nodiscard]] QSize sizeHint() const override;     // all on one line
  [[nodiscard]] QSize minimumSize() const override;  // only the widest item
  void setGeometry(const QRect& rect) override;

 private:
  // The height needed for the rectangle's width; `move` also places the items there.
  int Place(const QRect& rect, bool move) const;
  [[nodiscard]] std::size_t LineEnd(std::size_t begin, int width) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace plovix::qt
