// The history of one task, or of everything. Opened from the list of tasks.
#pragma once

#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <map>
#include <optional>

#include "run_parts.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedLayout;
class QTableView;

namespace plovix::app {

class RunDetailsWindow;
class RunTableModel;

// Not modal: it shows what is new about once a second.
class HistoryWindow final : public QDialog {
 public:
  // `task`: of that one alone.
  HistoryWindow(RunParts parts, std::optional<std::int64_t> task, QWidget* parent);

  // Reads again what may have changed.
  void Refresh();
  // Opens the details of the selected run, or brings them to the front. Nothing if none is selected.
  RunDetailsWindow* OpenDetails();
  // Returns the focus to the window behind.
  void done(int result) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildFilter();
  void BuildTable();
  void BuildButtons();
  void Look();
  // Reads pages between the events of the window until there is enough to show.
  void Fill();
  // Changes the rows; what is selected and where the view stands stays.
  void Change(const std::function<void()>& change);
  void Update();
  [[nodiscard]] std::int64_t Selected() const;  // 0: none
  [[nodiscard]] const char* WhyEmpty() const;

  RunParts parts_;
  bool of_one_task_;
  RunTableModel* model_;
  QComboBox* states_ = nullptr;
  QLineEdit* search_ = nullptr;
  QTableView* table_ = nullptr;
  QStackedLayout* stack_ = nullptr;
  QLabel *hint_ = nullptr, *problem_ = nullptr, *count_ = nullptr;
  QPushButton* details_ = nullptr;
  int wanted_ = 0;  // rows to show before reading stops
  QTimer timer_, filling_, typing_;
  std::map<std::int64_t, QPointer<RunDetailsWindow>> open_;  // by run
};

}  // namespace plovix::app
