// The peer of wizard_benchmark: the same eleven pages as a QWizard, written by hand the way a Qt developer
// writes one. docs/performance.md says what "the same" means.
#pragma once

#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/text/text_table.h>

#include <QStringList>
#include <QWizard>
#include <functional>

namespace plovix::peer {

// The patterns in the order of recurrence_type.
enum PageId {
  kTaskType,
  kDetails,
  kRecords,
  kTime,
  kPattern,
  kDaily,
  kWeekly,
  kMonthly,
  kYearly,
  kQuery,
  kActions,
  kPageCount
};

class TaskWizard final : public QWizard {
 public:
  // `text_table` outlives the wizard, which has no pages yet.
  TaskWizard(const TextTable& text_table, const TaskRecord& edited, QStringList category_names,
             QStringList data_object_names);

  void AddPage(PageId id);
  [[nodiscard]] QString Text(int id) const;
  // Copies the pages' fields into the task.
  void accept() override;

  const TextTable& texts;
  TaskRecord task;
  const QStringList categories, data_objects;
  std::function<void(const char* what)> open_dialog = [](const char*) {};  // what a "..." button opens

 private:
  void TakeSchedule();
};

// Each creates the pages that it knows; nullptr for the others.
[[nodiscard]] QWizardPage* NewTaskPage(TaskWizard& owner, PageId id);
[[nodiscard]] QWizardPage* NewRecurrencePage(TaskWizard& owner, PageId id);

}  // namespace plovix::peer
