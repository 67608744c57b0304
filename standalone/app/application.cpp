#include "application.h"

#include <plovix/base/failure.h>

namespace plovix::app {

bool Application::notify(QObject* receiver, QEvent* event) {
  bool handled = false;
  const auto failure = FailureOf([&] { handled = QApplication::notify(receiver, event); });
  if (failure && handler_) handler_(*failure, receiver);
  return handled;
}

}  // namespace plovix::app
