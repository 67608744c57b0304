#include "summary_panel.h"

#include <plovix/standalone/schedule/sentence.h>
#include <plovix/standalone/schedule/task_schedule.h>
#include <plovix/surfaces/qt/theme.h>

#include <QKeyEvent>
#include <QLocale>
#include <QScrollBar>

#include "date_text.h"
#include "qt_text.h"

namespace plovix::app {
namespace {

QString Paragraph(const QString& text) {
  return QStringLiteral("<p style='margin-top:0;margin-bottom:4px'>") + text.toHtmlEscaped() +
         QStringLiteral("</p>");
}

QString Heading(const QString& text) {
  return QStringLiteral("<h4 style='margin-top:8px;margin-bottom:4px'>") + text.toHtmlEscaped() +
         QStringLiteral("</h4>");
}

std::string_view RecordsKey(std::int16_t mode) {
  switch (mode) {
    case record_mode::kNoData:
      return "summary.noData";
    case record_mode::kSingleRecord:
      return "summary.singleRecord";
    case record_mode::kQueryResults:
      return "summary.queryResults";
    default:
      return "summary.unknownRecords";
  }
}

// The schedule that the task will have. While the page of another kind of pattern is still to come, the
// pattern is an open question.
std::optional<RecurrenceRecord> Draft(std::optional<RecurrenceRecord> recurrence) {
  const bool settled =
      recurrence && recurrence->recurrence_type == static_cast<std::int32_t>(recurrence->pattern.index()) - 1;
  if (recurrence && !settled) recurrence->pattern = {};
  return recurrence;
}

}  // namespace

SummaryPanel::SummaryPanel(AppParts parts, QWidget* parent) : QTextBrowser(parent), parts_(parts) {
  setObjectName("summary");
  setAccessibleName(ToQt(parts_.Text("summary.title")));
  setFont(qt::PageFont());
  setOpenLinks(false);
  setTabChangesFocus(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
}

void SummaryPanel::Show(const TaskRecord& task) {
  const DateTime now = parts_.state.Now();
  const TaskSchedule schedule = ScheduleOf(task, now);
  const auto recurrence = Draft(schedule.recurrence);
  const auto sentence = [this](std::string_view key, const std::vector<std::string>& parameters = {}) {
    return Paragraph(ToQt(parts_.Text(key, parameters)));
  };
  QString html = Heading(ToQt(parts_.Text("summary.title")));
  html += sentence("summary.name", {TaskName(parts_, task)});
  html += sentence(RecordsKey(task.record_mode));
  if (task.record_mode != record_mode::kNoData) {
    const bool chosen = !task.data_object_caption.empty();
    html += chosen ? sentence("summary.dataObject", {task.data_object_caption})
                   : sentence("summary.noDataObject");
  }
  html += Heading(ToQt(parts_.Text("summary.schedule")));
  html += Paragraph(ToQt(ScheduleSentence(recurrence, schedule.start, parts_.state.texts, LocaleTime)));
  if (recurrence) {
    const auto runs = NextRuns(Schedule(*recurrence, schedule.start), parts_.zone, now, kRuns);
    if (!runs.empty()) html += Heading(ToQt(parts_.Text("summary.nextRuns")));
    for (const Run& run : runs) html += RunText(run);
  }
  setHtml(html);
  verticalScrollBar()->setValue(0);
}

QString SummaryPanel::RunText(const Run& run) const {
  const QString date = QLocale().toString(WallTime(run.moment.wall).date(), QLocale::LongFormat);
  QString html = Paragraph(
      ToQt(parts_.Text("summary.run", {FromQt(date), LocaleTime(run.moment.wall), run.moment.abbreviation})));
  if (const auto note = RunNote(run, parts_.state.texts, LocaleTime)) {
    html.chop(4);  // the end of the paragraph, which the note belongs to
    html += QStringLiteral("<br><i>") + ToQt(*note).toHtmlEscaped() + QStringLiteral("</i></p>");
  }
  return html;
}

// Enter means to the wizard what it means elsewhere.
void SummaryPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    event->ignore();
  } else {
    QTextBrowser::keyPressEvent(event);
  }
}

}  // namespace plovix::app
