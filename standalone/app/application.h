// The QApplication of the program: keeps failures out of the toolkit's event loop.
#pragma once

#include <plovix/base/failure.h>

#include <QApplication>
#include <functional>

namespace plovix::app {

class Application final : public QApplication {
 public:
  using QApplication::QApplication;
  // The handler is called with a failure that an event handler let through, and the event's receiver.
  void OnFailure(std::function<void(const Failure&, QObject*)> handler) { handler_ = std::move(handler); }

  bool notify(QObject* receiver, QEvent* event) override;

 private:
  std::function<void(const Failure&, QObject*)> handler_;
};

}  // namespace plovix::app
