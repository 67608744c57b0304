#include "application.h"

#include <optional>

namespace plovix::app {

bool Application::notify(QObject* receiver, QEvent* event) {
  std::optional<Failure> failure;
  try {
    return QApplication::notify(receiver, event);
  } catch (...) {
    failure = CurrentFailure();
  }
  if (handler_) handler_(*failure, receiver);
  return false;
}

}  // namespace plovix::app
