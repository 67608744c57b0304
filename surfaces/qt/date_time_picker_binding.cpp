#include "date_time_picker_binding.h"

#include <QDateEdit>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QTimeEdit>

namespace plovix::qt {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::seconds;

// The Tab key leaves it; the arrow keys go from day to month to year.
template <class Edit>
class OneStop : public Edit {
 public:
  using Edit::Edit;

 protected:
  // The base class would move from section to section. NOLINTNEXTLINE(bugprone-parent-virtual-call)
  bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }
};

// In locales with AM and PM, the first letter chooses the half of the day. The toolkit wants the whole word,
// and silently removes an incomplete one.
class TimeField final : public OneStop<QTimeEdit> {
 public:
  using OneStop<QTimeEdit>::OneStop;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QString typed = event->text();
    if (currentSection() != AmPmSection || typed.isEmpty() || !typed.at(0).isLetter()) {
      OneStop<QTimeEdit>::keyPressEvent(event);
      return;
    }
    const bool before = locale().amText().startsWith(typed, Qt::CaseInsensitive);
    const bool after = locale().pmText().startsWith(typed, Qt::CaseInsensitive);
    if (before != after) {
      setTime(time().addSecs((time().hour() < kNoon ? 0 : -kHalfDay) + (after ? kHalfDay : 0)));
    }
    setSelectedSection(AmPmSection);
  }

 private:
  static constexpr int kNoon = 12;
  static constexpr int kHalfDay = 12 * 60 * 60;  // seconds
};

QDateTimeEdit* MakeWidget(bool time, QWidget* parent) {
  if (time) return new TimeField(parent);
  return new OneStop<QDateEdit>(parent);
}

// The locale's short form, with the century.
QString DateFormat() {
  QString format = QLocale().dateFormat(QLocale::ShortFormat);
  if (!format.contains("yyyy")) format.replace("yy", "yyyy");
  return format;
}

QDate DateOf(local_days day) {
  return QDate(1970, 1, 1).addDays(day.time_since_epoch().count());
}

QTime TimeOf(seconds since_midnight) {
  return QTime::fromMSecsSinceStartOfDay(static_cast<int>(since_midnight.count()) * 1000);
}

}  // namespace

DateTimePickerBinding::DateTimePickerBinding(Surface& surface, DateTimePicker& picker, QWidget* parent)
    : BindingOf(surface, picker), widget_(MakeWidget(picker.ShowsTime(), parent)) {
  widget_->setTimeSpec(Qt::UTC);  // wall-clock values have no gaps
  widget_->setDisplayFormat(picker.ShowsTime() ? QLocale().timeFormat(QLocale::ShortFormat) : DateFormat());
  widget_->setCalendarPopup(!picker.ShowsTime());
  widget_->setFocusPolicy(Qt::StrongFocus);
  Adopt(widget_);
  connect(widget_, &QDateTimeEdit::dateTimeChanged, this, [this] {
    if (!PageWrites()) Entered();
  });
}

void DateTimePickerBinding::SetAccessibleName(const QString& name) {
  Binding::SetAccessibleName(name);
  Announce(*widget_->findChild<QLineEdit*>(), name);
}

void DateTimePickerBinding::Draw() {
  const local_days day = std::chrono::floor<days>(Model().Value());
  if (Model().ShowsTime()) {
    widget_->setTime(TimeOf(Model().Value() - day));
  } else {
    widget_->setDate(DateOf(day));
  }
}

void DateTimePickerBinding::Entered() {
  const local_days day{days(QDate(1970, 1, 1).daysTo(widget_->date()))};
  const DateTime entered = day + seconds(widget_->time().msecsSinceStartOfDay() / 1000);
  AsUser(
      [&model = Model(), value = Model().WithShown(entered)](User& user) { return user.Set(model, value); });
}

}  // namespace plovix::qt
