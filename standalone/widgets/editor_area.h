// The part of a window that scrolls if the screen is too small. Used by the editors.
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace plovix::app {

class EditorArea final : public QScrollArea {
 public:
  EditorArea();
  // The contents, from top to bottom.
  [[nodiscard]] QVBoxLayout* Rows() const { return rows_; }

  // The size of the whole contents; it can be made much smaller.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  // The missing height to show everything, in pixels; 0 if none is missing.
  [[nodiscard]] int MissingHeight() const;

 private:
  QVBoxLayout* rows_ = nullptr;
};

}  // namespace plovix::app
