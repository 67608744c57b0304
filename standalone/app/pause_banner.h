// Says above the list that everything is paused, and lets administrators end that.
#pragma once

#include <QFrame>
#include <functional>

#include "app_parts.h"

class QLabel;
class QPushButton;

namespace plovix::app {

class PauseBanner final : public QFrame {
 public:
  PauseBanner(AppParts parts, std::function<void()> resume);

  // Hidden where nothing is paused.
  void Show(const std::optional<Pause>& pause);

 private:
  AppParts parts_;
  QLabel* text_;
  QPushButton* resume_;
};

}  // namespace plovix::app
