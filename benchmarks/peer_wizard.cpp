#include "peer_wizard.h"

#include <QDateTime>
#include <utility>

namespace plovix::peer {

TaskWizard::TaskWizard(const TextTable& text_table, const TaskRecord& edited, QStringList category_names,
                       QStringList data_object_names)
    : texts(text_table),
      task(edited),
      categories(std::move(category_names)),
      data_objects(std::move(data_object_names)) {
  setWindowTitle(Text(4));
}

void TaskWizard::AddPage(PageId id) {
  QWizardPage* page = NewTaskPage(*this, id);
  setPage(id, page != nullptr ? page : NewRecurrencePage(*this, id));
}

QString TaskWizard::Text(int id) const {
  return QString::fromStdString(texts.Find(id).value_or(""));
}

void TaskWizard::accept() {
  const auto text = [this](const char* name) { return field(name).toString().toStdString(); };
  const auto checked = [this](const char* name) { return field(name).toBool(); };
  task.name = text("name");
  task.short_description = text("shortDescription");
  task.description = text("description");
  task.data_object_caption = text("dataObject");
  task.categories = {{text("category")}};
  task.skip_row_selection = checked("skipRowSelection");
  task.allow_automation_manager = checked("automatic");
  task.processing_mode = checked("once") ? 0 : checked("modified") ? 1 : 2;
  task.process_all_records = checked("allRecords");
  task.process_failed_records = checked("failedRecords");
  task.query = text("query");
  TakeSchedule();
  QWizard::accept();
}

void TaskWizard::TakeSchedule() {
  const auto number = [this](const char* name) { return field(name).toInt(); };
  const auto checked = [this](const char* name) { return field(name).toBool(); };
  if (!checked("automatic")) {
    task.recurrence.reset();
    return;
  }
  RecurrenceRecord recurrence;
  recurrence.recurrence_type = checked("daily") ? 0 : checked("weekly") ? 1 : checked("monthly") ? 2 : 3;
  recurrence.time_kind = checked("byMinutes") ? 1 : checked("byHours") ? 2 : 0;
  recurrence.interval = number(checked("byHours") ? "hours" : "minutes");
  recurrence.execution_time = DateTime(std::chrono::seconds(field("time").toDateTime().toSecsSinceEpoch()));
  if (checked("daily")) {
    recurrence.pattern = DailyRecord{number("days"), checked("weekdaysOnly")};
  } else if (checked("weekly")) {
    WeeklyRecord weekly{number("weeks")};
    for (std::size_t day = 0; day < weekly.days.size(); ++day)
      weekly.days.at(day) = field("day" + QString::number(day)).toBool();
    recurrence.pattern = weekly;
  } else if (checked("monthly")) {
    recurrence.pattern = MonthlyRecord{
        number(checked("monthRelative") ? "relativeMonths" : "specificMonths"),
        {checked("monthRelative"), number("monthDay"), number("monthOrdinal"), number("monthWeekday") + 1}};
  } else {
    recurrence.pattern = YearlyRecord{
        number(checked("yearRelative") ? "relativeMonth" : "yearMonth") + 1,
        {checked("yearRelative"), number("yearDay"), number("yearOrdinal"), number("yearWeekday") + 1}};
  }
  task.recurrence = recurrence;
}

}  // namespace plovix::peer
