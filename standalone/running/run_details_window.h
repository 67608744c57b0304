// All that is known of one run: why it ended so, what became of its records, what its program wrote; and what
// a person can do about it. Opened from the history.
#pragma once

#include <QDialog>
#include <QTimer>
#include <optional>
#include <vector>

#include "run_parts.h"

class QFormLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;

namespace plovix::app {

class OutputPanel;
class RecordsPanel;

// Not modal: it follows the run.
class RunDetailsWindow final : public QDialog {
 public:
  // Of a run as it was read from the store.
  RunDetailsWindow(RunParts parts, const RunRecord& run, QWidget* parent);

  [[nodiscard]] std::int64_t Run() const { return run_.id; }
  // Reads the run again. Does so by itself every second while it is visible.
  void Refresh();
  // Returns the focus to the window behind.
  void done(int result) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildHead(QFormLayout& form);
  void BuildTabs();
  void BuildButtons();
  void SayOnce(const QString& words);
  void Show();
  void ShowHead();
  void ShowTabs();
  void ShowButtons();
  [[nodiscard]] std::string BeginInWords() const;
  [[nodiscard]] std::string AttemptsInWords() const;
  [[nodiscard]] QString WaitInWords() const;
  // Starts a run, tells its number, and goes on.
  void Start(const std::function<RunRecord()>& start);
  void Cancel();
  void CloseByForce();

  RunParts parts_;
  RunRecord run_;
  bool is_gone_ = false;
  struct Line {
    QLabel *caption = nullptr, *value = nullptr;
  };
  Line task_, state_, origin_, begin_, attempts_, duration_, records_;
  QLabel *reason_caption_ = nullptr, *wait_ = nullptr, *told_ = nullptr;
  QPlainTextEdit *reason_ = nullptr, *planned_ = nullptr;
  QTabWidget* tabs_ = nullptr;
  RecordsPanel* records_panel_ = nullptr;
  OutputPanel* output_panel_ = nullptr;
  QPushButton *again_ = nullptr, *only_failed_ = nullptr, *missed_ = nullptr, *cancel_ = nullptr,
              *force_ = nullptr, *close_ = nullptr;
  QTimer timer_;
};

}  // namespace plovix::app
