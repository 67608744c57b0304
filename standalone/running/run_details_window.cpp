#include "run_details_window.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/runs/run_words.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

#include "output_panel.h"
#include "output_text.h"
#include "planned_text.h"
#include "records_panel.h"

namespace plovix::app {
namespace {

constexpr std::chrono::milliseconds kLook{1000};
constexpr int kDetailsWide = 110;  // characters
constexpr int kDetailsHigh = 38;   // lines
constexpr int kNotBegunHigh = 18;
constexpr int kReasonLines = 2;

QPlainTextEdit* NewReading(const QString& name, int lines) {
  auto* text = new QPlainTextEdit;
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setUndoRedoEnabled(false);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text->setAccessibleName(name);
  text->setMinimumHeight(text->fontMetrics().lineSpacing() * (lines + 1));
  return text;
}

// A text that is the same already stays as it is, with what is selected in it.
void SetReading(QPlainTextEdit& text, const QString& words) {
  if (text.toPlainText() != words) text.setPlainText(words);
}

}  // namespace

RunDetailsWindow::RunDetailsWindow(RunParts parts, const RunRecord& run, QWidget* parent)
    : QDialog(parent), parts_(std::move(parts)), run_(run) {
  const std::string name = parts_.name(run.task).value_or("");
  qt::SetTitle(*this, parts_.Shown("details.title", {name, std::to_string(run.id)}));
  auto* rows = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  rows->addLayout(form);
  BuildHead(*form);
  reason_ = NewReading({}, kReasonLines);
  reason_->setObjectName("reason");
  reason_->setMaximumHeight(reason_->minimumHeight());
  reason_caption_ = NewCaption(parts_.Shown("details.reason"), *reason_);
  form->addRow(reason_caption_, reason_);
  wait_ = qt::NewWrappedLabel();
  wait_->hide();
  rows->addWidget(wait_);
  BuildTabs();
  constexpr int kAlmostAll = 100;
  rows->addWidget(tabs_, kAlmostAll);
  rows->addStretch(1);  // for a run that has not begun
  told_ = qt::NewWrappedLabel();
  told_->hide();
  rows->addWidget(told_);
  BuildButtons();
  ResizeToText(*this, font(), kDetailsWide, run.attempt > 0 ? kDetailsHigh : kNotBegunHigh);
  timer_.callOnTimeout(this, [this] {
    if (isVisible()) Refresh();
  });
  timer_.start(kLook);
  Show();
  tabs_->setCurrentIndex(run_.records.found == 0 && !run_.IsDry() ? tabs_->indexOf(output_panel_)
                                                                  : tabs_->indexOf(records_panel_));
  if (run_.IsDry()) tabs_->setCurrentWidget(planned_);
  close_->setFocus();
}

void RunDetailsWindow::BuildHead(QFormLayout& form) {
  const auto add = [&](const char* key) {
    const Line line{qt::NewLabel(parts_.Shown(key)), qt::NewWrappedLabel()};
    line.value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form.addRow(line.caption, line.value);
    return line;
  };
  form.setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  task_ = add("details.task");
  state_ = add("details.state");
  origin_ = add("details.origin");
  begin_ = add("details.begin");
  attempts_ = add("details.attempts");
  duration_ = add("details.duration");
  records_ = add("details.recordCounts");
}

void RunDetailsWindow::BuildTabs() {
  tabs_ = new QTabWidget;
  tabs_->setUsesScrollButtons(true);
  records_panel_ = new RecordsPanel(parts_, run_);
  output_panel_ = new OutputPanel(parts_, run_.id);
  planned_ = NewReading(parts_.Shown("details.plannedName"), kReasonLines);
  planned_->setObjectName("planned");
  tabs_->addTab(records_panel_, parts_.Shown("details.tab.records"));
  tabs_->addTab(output_panel_, parts_.Shown("details.tab.output"));
  tabs_->addTab(planned_, parts_.Shown("details.tab.planned"));
  if (run_.IsDry()) {
    tabs_->setTabVisible(tabs_->indexOf(records_panel_), false);
    tabs_->setTabVisible(tabs_->indexOf(output_panel_), false);
  } else {
    tabs_->setTabVisible(tabs_->indexOf(planned_), false);
  }
}

void RunDetailsWindow::BuildButtons() {
  const auto make = [this](const char* name, const char* key, std::function<void()> action) {
    QPushButton* button = NewButton(parts_.Shown(key), std::move(action));
    button->setObjectName(name);
    return button;
  };
  again_ = make("runAgain", "details.again",
                [this] { Start([this] { return parts_.control.StartAgain(run_.id, false); }); });
  only_failed_ = make("onlyFailed", "details.onlyFailed",
                      [this] { Start([this] { return parts_.control.StartAgain(run_.id, true); }); });
  missed_ = make("runMissed", "details.runMissed",
                 [this] { Start([this] { return parts_.control.StartMissed(run_.id); }); });
  cancel_ = make("cancelRun", "details.cancel", [this] { Cancel(); });
  force_ = make("closeByForce", "details.force", [this] { CloseByForce(); });
  close_ = make("close", "details.close", [this] { close(); });
  static_cast<QVBoxLayout*>(layout())->addLayout(
      NewRow({again_, only_failed_, missed_, cancel_, force_, nullptr, close_}));
}

void RunDetailsWindow::Refresh() {
  const auto failure = FailureOf([this] {
    const auto run = parts_.runs.Run(run_.id);
    is_gone_ = !run.has_value();
    if (run) run_ = *run;
  });
  if (failure) return SayOnce(parts_.Shown("history.unreadable", {failure->Description()}));
  if (is_gone_) SayOnce(parts_.Shown("details.gone"));
  Show();
}

// What is said every second is announced once.
void RunDetailsWindow::SayOnce(const QString& words) {
  if (told_->text() != words) TellProblem(*told_, *close_, words);
}

void RunDetailsWindow::Show() {
  ShowHead();
  ShowTabs();
  ShowButtons();
}

void RunDetailsWindow::ShowHead() {
  const auto show = [](const Line& line, const std::string& words) {
    const QString text = qt::Shortened(ToQt(words).simplified(), qt::kLongestShown);
    if (line.value->text() != text) line.value->setText(text);
    line.caption->setVisible(!text.isEmpty());
    line.value->setVisible(!text.isEmpty());
  };
  const TextTable& texts = parts_.texts;
  show(task_, parts_.name(run_.task).value_or(""));
  show(state_, StateInWords(run_, texts));
  show(origin_, OriginInWords(run_, texts));
  show(begin_, BeginInWords());
  show(attempts_, AttemptsInWords());
  show(duration_, DurationInWords(run_, parts_.now(), texts));
  show(records_, CountsInWords(run_.records, texts));
  const QString reason = VisibleText(ReasonInWords(run_, texts).substr(0, kMostRead)).trimmed();
  SetReading(*reason_, reason);
  reason_caption_->setVisible(!reason.isEmpty());
  reason_->setVisible(!reason.isEmpty());
  const QString wait = WaitInWords();
  if (wait_->text() != wait) TellProblem(*wait_, *tabs_, wait);
}

void RunDetailsWindow::ShowTabs() {
  tabs_->setVisible(run_.attempt > 0);
  if (run_.IsDry()) {
    SetReading(*planned_, run_.IsOver() ? PlannedText(run_.planned, parts_.texts)
                                        : parts_.Shown("details.plannedNotYet"));
    if (run_.IsOver()) timer_.stop();  // nothing of it changes any more, and a long plan takes its time
    return;
  }
  records_panel_->Refresh(!is_gone_ && parts_.may(run_.task, TaskRight::kRun));
  output_panel_->Refresh(run_.IsOver());
}

// A button that does not apply is not there; one that the user may not press cannot be pressed.
void RunDetailsWindow::ShowButtons() {
  const bool may = !is_gone_ && parts_.may(run_.task, TaskRight::kRun);
  const bool is_missed = run_.missed.has_value();
  const auto show = [&](QPushButton& button, bool applies) {
    if (button.hasFocus() && !(applies && may)) close_->setFocus();
    button.setVisible(applies);
    button.setEnabled(may);
  };
  show(*again_, run_.IsOver() && !is_missed);
  show(*only_failed_, run_.IsOver() && !run_.IsDry() && run_.records.failed > 0);
  show(*missed_, is_missed);
  show(*cancel_, !run_.IsOver() && !run_.cancel);
  show(*force_, run_.state == RunState::kRunning && run_.cancel);
}

std::string RunDetailsWindow::BeginInWords() const {
  const TextTable& texts = parts_.texts;
  if (run_.missed) {
    return run_.missed->count > 1 ? texts.Host("details.missedMany", {std::to_string(run_.missed->count),
                                                                      parts_.ExactTime(run_.missed->from),
                                                                      parts_.ExactTime(run_.missed->to)})
                                  : texts.Host("details.due", {parts_.ExactTime(run_.missed->to)});
  }
  std::string due = run_.due ? texts.Host("details.due", {parts_.ExactTime(*run_.due)}) : "";
  if (!run_.started) return due;
  const std::string began = parts_.ExactTime(*run_.started);
  if (!run_.due) return texts.Host(run_.attempt > 1 ? "details.beganLast" : "details.began", {began});
  if (run_.attempt > 1) return texts.Host("details.dueAndLast", {due, began});
  return texts.Host("details.dueAndBegan", {due, began, LatenessInWords(run_, texts)});
}

std::string RunDetailsWindow::AttemptsInWords() const {
  if (run_.attempt == 0) return {};
  if (run_.failures == 0 && run_.repeats == 0) return std::to_string(run_.attempt);
  return parts_.texts.Host(
      "details.attemptCounts",
      {std::to_string(run_.attempt), std::to_string(run_.failures), std::to_string(run_.repeats)});
}

// What the run waits for, or what cancelling it waits for.
QString RunDetailsWindow::WaitInWords() const {
  if (is_gone_ || run_.IsOver()) return {};
  if (run_.state == RunState::kRunning) return run_.cancel ? parts_.Shown("details.cancelling") : QString();
  if (run_.not_before > parts_.now())
    return parts_.Shown("details.waitsUntil", {parts_.ExactTime(run_.not_before)});
  return parts_.Shown("details.waits");
}

void RunDetailsWindow::Start(const std::function<RunRecord()>& start) {
  const bool started =
      DoOrTell(parts_, *this, [&] { SayOnce(parts_.Shown("details.asked", {std::to_string(start().id)})); });
  if (started) close_->setFocus();
  Refresh();
}

void RunDetailsWindow::Cancel() {
  DoOrTell(parts_, *this, [this] { parts_.control.Cancel(run_.id); });
  Refresh();
}

void RunDetailsWindow::CloseByForce() {
  const WarningQuestion question{parts_.texts.Host("details.forceQuestion"), "details.forceYes",
                                 "details.forceNo"};
  if (!IsSure(parts_.texts, question, *this)) return;
  DoOrTell(parts_, *this, [this] { parts_.control.CloseByForce(run_.id); });
  Refresh();
}

// Enter presses the focused button.
void RunDetailsWindow::keyPressEvent(QKeyEvent* event) {
  if (!PressesButton(*this, *event) && !IsEnter(*event)) QDialog::keyPressEvent(event);
}

void RunDetailsWindow::done(int result) {
  QDialog::done(result);
  if (parentWidget() != nullptr) parentWidget()->activateWindow();
}

}  // namespace plovix::app
