// The part of a window that scrolls where the screen is too small for it. Used by the editors.
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace plovix::app {

class EditorArea final : public QScrollArea {
 public:
  EditorArea();
  // What stands in it, from top to bottom.
  [[nodiscard]] QVBoxLayout* Rows() const { return rows_; }

  // As large as all of it; it can be made much smaller.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  // What it lacks in height to show all of it, in pixels; 0: nothing.
  [[nodiscard]] int MissingHeight() const;

 private:
  QVBoxLayout* rows_ = nullptr;
};

}  // namespace plovix::app
