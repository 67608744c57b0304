#include "summary_panel.h"

#include <plovix/host/auto_task.h>
#include <plovix/standalone/data/sqlite_data_source.h>
#include <plovix/standalone/objects/recurrence_object.h>
#include <plovix/standalone/schedule/sentence.h>
#include <plovix/standalone/schedule/task_schedule.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>
#include <plovix/surfaces/qt/theme.h>

#include <QKeyEvent>
#include <QLocale>
#include <QScrollBar>
#include <array>
#include <utility>

#include "date_text.h"
#include "task_warnings.h"

namespace plovix::app {
namespace {

QString Paragraph(const QString& text, const QString& style = {}) {
  return QStringLiteral("<p style='margin-top:0;margin-bottom:4px;") + style + QStringLiteral("'>") +
         text.toHtmlEscaped() + QStringLiteral("</p>");
}

QString Heading(const QString& text) {
  return QStringLiteral("<h4 style='margin-top:8px;margin-bottom:4px'>") + text.toHtmlEscaped() +
         QStringLiteral("</h4>");
}

std::string_view RecordsKey(std::int16_t mode) {
  constexpr std::array<const char*, 3> kKeys{"summary.noData", "summary.singleRecord",
                                             "summary.queryResults"};
  const auto at = static_cast<std::size_t>(mode);
  return at < kKeys.size() ? kKeys.at(at) : "summary.unknownRecords";
}

// The schedule that the task will have. After another kind of pattern was chosen and before its page is left,
// the pattern is the one that its page will show: the working one in the store, or none yet.
std::optional<RecurrenceRecord> Draft(const TaskRecord& task, const std::map<std::string, Value>& store) {
  auto recurrence = ScheduleOf(task);
  if (!recurrence) return recurrence;
  const std::array<const char*, 4> keys{store_key::kDailyRecurrence, store_key::kWeeklyRecurrence,
                                        store_key::kMonthlyRecurrence, store_key::kYearlyRecurrence};
  const auto type = static_cast<std::size_t>(recurrence->recurrence_type);
  if (type >= keys.size() || type + 1 == recurrence->pattern.index()) return recurrence;
  const auto entry = store.find(keys.at(type));
  const auto* held = entry == store.end() ? nullptr : std::get_if<ObjectRef>(&entry->second);
  auto* pattern = held == nullptr ? nullptr : dynamic_cast<PatternBase*>(held->Get());
  recurrence->pattern = PatternValues(pattern).value_or(PatternRecord{});
  return recurrence;
}

// Whether the day from which intervals are counted affects on which days the task runs.
bool StartMatters(const RecurrenceRecord& recurrence) {
  const auto* daily = std::get_if<DailyRecord>(&recurrence.pattern);
  const auto* weekly = std::get_if<WeeklyRecord>(&recurrence.pattern);
  const auto* monthly = std::get_if<MonthlyRecord>(&recurrence.pattern);
  return (daily != nullptr && daily->every_n_days > 1) || (weekly != nullptr && weekly->every_n_weeks > 1) ||
         (monthly != nullptr && monthly->every_n_months > 1);
}

QString DateText(DateTime time) {
  return QLocale().toString(WallTime(time).date(), QLocale::LongFormat);
}

}  // namespace

SummaryPanel::SummaryPanel(AppParts parts, QWidget* parent)
    : QTextBrowser(parent), parts_(std::move(parts)), question_([this](std::function<void()> arrived) {
        QMetaObject::invokeMethod(this, std::move(arrived), Qt::QueuedConnection);
      }) {
  setObjectName("summary");
  setAccessibleName(parts_.Shown("summary.title"));
  setFont(qt::PageFont());
  setOpenLinks(false);
  setTabChangesFocus(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFrameShape(QFrame::NoFrame);
  viewport()->setAutoFillBackground(false);
}

void SummaryPanel::Show(const TaskRecord& task, const std::map<std::string, Value>& store) {
  const auto sentence = [this](std::string_view key, const std::vector<std::string>& parameters = {}) {
    return Paragraph(parts_.Shown(key, parameters));
  };
  QString html;
  if (parts_.state.user_id != parts_.user.id) html += sentence("summary.owner", {parts_.state.user_id});
  html += Heading(parts_.Shown("summary.title"));
  const std::string name = task.uses_language_tags ? parts_.state.TagText(task.name_tag) : task.name;
  html += name.empty() ? sentence("summary.unnamed") : sentence("summary.name", {InSentence(name)});
  html += sentence(RecordsKey(task.record_mode));
  if (task.record_mode != record_mode::kNoData) {
    const std::string& caption = task.data_object_caption;
    html += caption.empty() ? sentence("summary.noDataObject")
                            : sentence("summary.dataObject", {InSentence(caption)});
  }
  html += Heading(parts_.Shown("summary.schedule")) + ScheduleText(Draft(task, store), task);
  html_ = html;
  task_ = task;
  setHtml(html_);
  verticalScrollBar()->setValue(0);
  AskForFields();
}

// Data that are at hand are asked at once; a file may keep whoever reads it waiting.
void SummaryPanel::AskForFields() {
  if (task_.record_mode == record_mode::kNoData) return Warn({});
  if (parts_.data_file.empty()) return Warn(parts_.data->Fields(task_.data_object_name));
  if (fields_of_ != task_.data_object_name) {
    fields_of_ = task_.data_object_name;
    fields_.reset();
    question_.Ask(
        [path = parts_.data_file, name = fields_of_](const std::stop_token& unwanted) {
          SqliteDataSource source(path);
          source.StopWhen(unwanted);
          return source.Fields(name);
        },
        [](const Failure&) { return Fields(); },
        [this](const Fields& fields) {
          fields_ = fields;
          Warn(fields);
        });
  } else if (fields_) {
    Warn(*fields_);
  }
}

void SummaryPanel::Warn(const Fields& fields) {
  if (fields.empty() && task_.record_mode != record_mode::kNoData) return;
  QString warnings;
  for (const QString& warning : WarningsOf(parts_, task_, fields))
    warnings += Paragraph(warning, QStringLiteral("font-weight:bold"));
  if (warnings.isEmpty()) return;
  setHtml(Heading(parts_.Shown("summary.warnings")) + warnings + html_);
  verticalScrollBar()->setValue(0);
}

QString SummaryPanel::ScheduleText(const std::optional<RecurrenceRecord>& recurrence,
                                   const TaskRecord& task) const {
  const TextTable& texts = parts_.state.texts;
  if (!recurrence) return Paragraph(ToQt(InWords(recurrence, {}, texts).sentence));
  const Outlook outlook = OutlookOf(task, *recurrence, parts_.runs.ShortMonthOf(task.id), parts_.zone,
                                    parts_.control.Now(), kRuns);
  const ScheduleWords words = InWords(recurrence, outlook, texts, LocaleTime);
  QString html;
  if (words.warning) html += Paragraph(ToQt(*words.warning), QStringLiteral("font-weight:bold"));
  html += Paragraph(ToQt(words.sentence));
  if (words.note) html += Paragraph(ToQt(*words.note));
  if (outlook.runs.empty()) return html;
  if (!words.name_start && StartMatters(*recurrence))
    html += Paragraph(parts_.Shown("summary.start", {FromQt(DateText(outlook.start))}));
  html += Heading(parts_.Shown("summary.nextRuns"));
  for (const Run& run : outlook.runs) html += RunText(run);
  return html;
}

QString SummaryPanel::RunText(const Run& run) const {
  QString html =
      Paragraph(parts_.Shown("summary.run", {FromQt(DateText(run.moment.wall)), LocaleTime(run.moment.wall),
                                             run.moment.abbreviation}));
  if (const auto note = RunNote(run, parts_.state.texts, LocaleTime)) {
    html.chop(4);  // the end of the paragraph, to which the note belongs
    html += QStringLiteral("<br><i>") + ToQt(*note).toHtmlEscaped() + QStringLiteral("</i></p>");
  }
  return html;
}

// Enter goes to the wizard, as everywhere else.
void SummaryPanel::keyPressEvent(QKeyEvent* event) {
  if (IsEnter(*event)) {
    event->ignore();
  } else {
    QTextBrowser::keyPressEvent(event);
  }
}

}  // namespace plovix::app
