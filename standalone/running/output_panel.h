// What the program of a run writes: the end, which grows as the program goes on, or all from the beginning.
// Used by the details of a run.
#pragma once

#include <QWidget>

#include "run_parts.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace plovix::app {

class OutputPanel final : public QWidget {
 public:
  OutputPanel(RunParts parts, std::int64_t run);

  // Reads again what may have changed; as long as somebody reads further up, the text stays as it is.
  void Refresh(bool is_over);
  // A longer sentence takes its room from the rest; otherwise a layout would use the panel's preferred height
  // as its minimum.
  [[nodiscard]] bool hasHeightForWidth() const override { return false; }

 private:
  void ShowEnd();
  void ReadOn();  // from the beginning
  void Turn();    // to the other of the two
  void Tell(const QString& words);

  RunParts parts_;
  std::string path_;
  QLabel* note_;
  QPlainTextEdit* text_;
  QPushButton* turn_;
  bool from_beginning_ = false, is_over_ = false;
  std::string shown_;      // the bytes of the end
  std::int64_t read_ = 0;  // from the beginning
};

}  // namespace plovix::app
