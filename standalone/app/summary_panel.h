// The wizard window's view of the task so far: what it is, when it will run, and its next runs. It belongs to
// the host; pages know nothing about it.
#pragma once

#include <plovix/standalone/data/background_question.h>
#include <plovix/standalone/schedule/runs.h>

#include <QTextBrowser>

#include "app_parts.h"

namespace plovix::app {

// Text to be read, scrolled and copied, also with the keyboard and by assistive technology.
class SummaryPanel final : public QTextBrowser {
 public:
  static constexpr int kRuns = 5;

  SummaryPanel(AppParts parts, QWidget* parent);

  // Shows the current state of the task, with its working patterns in the wizard's store; the runs are those
  // after the host's current time. What cannot work with the task's data object is added once its fields have
  // been read in the background.
  void Show(const TaskRecord& task, const std::map<std::string, Value>& store);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] QString ScheduleText(const std::optional<RecurrenceRecord>& recurrence,
                                     const TaskRecord& task) const;
  [[nodiscard]] QString RunText(const Run& run) const;

  using Fields = std::vector<FieldRecord>;
  // `fields`: of the task's data object; empty: unknown.
  void Warn(const Fields& fields);
  void AskForFields();

  AppParts parts_;
  TaskRecord task_;
  QString html_;                  // without warnings
  std::string fields_of_;         // the data object that was asked about last
  std::optional<Fields> fields_;  // of it, once they are known
  BackgroundQuestion<Fields> question_;
};

}  // namespace plovix::app
