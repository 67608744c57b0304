// The peer's pages of the schedule: the time, the kind of pattern, and the four patterns.
#include <plovix/host/auto_task.h>

#include <QCheckBox>
#include <QTimeEdit>
#include <algorithm>
#include <array>

#include "peer_page.h"

namespace plovix::peer {
namespace {

// An interval that is not set yet is offered as 1.
QString NumberText(std::int32_t number) {
  return QString::number(std::max(number, 1));
}

class TimePage final : public Page {
 public:
  explicit TimePage(TaskWizard& owner) : Page(owner, 81) {
    AddText(82);
    ways_ = {NewWay(83, "atTime"), NewWay(84, "byMinutes"), NewWay(84, "byHours")};
    time_ = new QTimeEdit;
    time_->setTimeSpec(Qt::UTC);
    time_->setDisplayFormat("HH:mm");
    time_->setAccessibleName(Around(83, 0));
    registerField("time", time_);
    connect(time_, &QTimeEdit::userTimeChanged, ways_[0], [this] { ways_[0]->setChecked(true); });
    minutes_ = NewNumber(Around(84, 85), kNoLimit, "minutes", ways_[1]);
    hours_ = NewNumber(Around(84, 86), kNoLimit, "hours", ways_[2]);
    ways_[1]->setAccessibleDescription(minutes_->accessibleName());
    ways_[2]->setAccessibleDescription(hours_->accessibleName());
    AddLine({ways_[0], time_});
    AddLine({ways_[1], minutes_, NewWord(85)});
    AddLine({ways_[2], hours_, NewWord(86)});
    lines_->addStretch();
  }
  void initializePage() override {
    const RecurrenceRecord recurrence = owner_.task.recurrence.value_or(RecurrenceRecord());
    minutes_->setText(NumberText(recurrence.interval));
    hours_->setText(NumberText(recurrence.interval));
    time_->setDateTime(
        QDateTime::fromSecsSinceEpoch(recurrence.execution_time.time_since_epoch().count(), Qt::UTC));
    Choose(ways_.at(static_cast<std::size_t>(recurrence.time_kind)));
  }
  [[nodiscard]] bool isComplete() const override {
    if (ways_[1]->isChecked()) return minutes_->hasAcceptableInput();
    return !ways_[2]->isChecked() || hours_->hasAcceptableInput();
  }
  [[nodiscard]] int nextId() const override { return kPattern; }

 private:
  std::array<QRadioButton*, 3> ways_{};  // by time kind
  QTimeEdit* time_;
  QLineEdit *minutes_, *hours_;
};

class PatternPage final : public Page {
 public:
  explicit PatternPage(TaskWizard& owner) : Page(owner, 71) {
    AddText(72);
    options_ = {AddOption(73, 74, "daily"), AddOption(75, 76, "weekly"), AddOption(77, 78, "monthly"),
                AddOption(79, 80, "yearly")};
    lines_->addStretch();
  }
  void initializePage() override {
    const RecurrenceRecord recurrence = owner_.task.recurrence.value_or(RecurrenceRecord());
    Choose(options_.at(static_cast<std::size_t>(recurrence.recurrence_type)));
  }
  [[nodiscard]] int nextId() const override {
    const auto chosen = std::ranges::find_if(options_, &QAbstractButton::isChecked);
    return chosen == options_.end() ? kDaily : kDaily + static_cast<int>(chosen - options_.begin());
  }

 private:
  std::array<QRadioButton*, 4> options_{};  // by recurrence type
};

// What follows a pattern.
class AnyPatternPage : public Page {
 public:
  using Page::Page;
  [[nodiscard]] int nextId() const override {
    return owner_.task.record_mode == record_mode::kQueryResults ? kQuery : kActions;
  }

 protected:
  template <class Pattern>
  [[nodiscard]] Pattern PatternOf() const {
    const Pattern* pattern =
        owner_.task.recurrence ? std::get_if<Pattern>(&owner_.task.recurrence->pattern) : nullptr;
    return pattern != nullptr ? *pattern : Pattern();
  }
};

class DailyPage final : public AnyPatternPage {
 public:
  explicit DailyPage(TaskWizard& owner) : AnyPatternPage(owner, 13) {
    days_ = NewNumber(Around(14, 15), kNoLimit, "days");
    auto* before = NewWord(14);
    before->setBuddy(days_);
    AddLine({before, days_, NewWord(15)});
    lines_->addWidget(weekdays_ = NewButton<QCheckBox>(16, "weekdaysOnly"));
    lines_->addStretch();
  }
  void initializePage() override {
    const auto pattern = PatternOf<DailyRecord>();
    days_->setText(NumberText(pattern.every_n_days));
    weekdays_->setChecked(pattern.weekdays_only);
    days_->setFocus();
  }
  [[nodiscard]] bool isComplete() const override { return days_->hasAcceptableInput(); }

 private:
  QLineEdit* days_;
  QCheckBox* weekdays_;
};

class WeeklyPage final : public AnyPatternPage {
 public:
  explicit WeeklyPage(TaskWizard& owner) : AnyPatternPage(owner, 92) {
    weeks_ = NewNumber(Around(93, 94), kNoLimit, "weeks");
    auto* before = NewWord(93);
    before->setBuddy(weeks_);
    AddLine({before, weeks_, NewWord(94)});
    auto* line = new QHBoxLayout;
    for (int day = 0; day < 7; ++day) {
      auto* box = NewButton<QCheckBox>(44 + day, "day" + QString::number(day));
      connect(box, &QCheckBox::toggled, this, &QWizardPage::completeChanged);
      line->addWidget(box);
      days_.at(static_cast<std::size_t>(day)) = box;
    }
    line->addStretch();
    lines_->addLayout(line);
    lines_->addStretch();
  }
  void initializePage() override {
    const auto pattern = PatternOf<WeeklyRecord>();
    weeks_->setText(NumberText(pattern.every_n_weeks));
    for (std::size_t day = 0; day < days_.size(); ++day) days_.at(day)->setChecked(pattern.days.at(day));
    weeks_->setFocus();
  }
  [[nodiscard]] bool isComplete() const override {
    return weeks_->hasAcceptableInput() && std::ranges::any_of(days_, &QAbstractButton::isChecked);
  }

 private:
  QLineEdit* weeks_;
  std::array<QCheckBox*, 7> days_{};
};

class MonthlyPage final : public AnyPatternPage {
 public:
  explicit MonthlyPage(TaskWizard& owner) : AnyPatternPage(owner, 32) {
    AddText(33);
    ways_ = {NewWay(34, "monthSpecific"), NewWay(37, "monthRelative")};
    day_ = NewNumber(Around(34, 35), 31, "monthDay", ways_[0]);
    months_ = NewNumber(Around(35, 36), kNoLimit, "specificMonths", ways_[0]);
    ordinal_ = NewList(39, 43, Around(37, 0), "monthOrdinal", ways_[1]);
    weekday_ = NewList(44, 53, Around(0, 38), "monthWeekday", ways_[1]);
    relative_months_ = NewNumber(Around(38, 39), kNoLimit, "relativeMonths", ways_[1]);
    ways_[0]->setAccessibleDescription(Around(34, 35) + Around(0, 36));
    ways_[1]->setAccessibleDescription(Around(37, 38) + Around(0, 39));
    AddLine({ways_[0], day_, NewWord(35), months_, NewWord(36)});
    AddLine({ways_[1], ordinal_, weekday_, NewWord(38), relative_months_, NewWord(39)});
    lines_->addStretch();
  }
  void initializePage() override {
    const auto pattern = PatternOf<MonthlyRecord>();
    day_->setText(NumberText(pattern.day.day_of_month));
    months_->setText(NumberText(pattern.every_n_months));
    relative_months_->setText(NumberText(pattern.every_n_months));
    ordinal_->setCurrentIndex(pattern.day.relative_week);
    weekday_->setCurrentIndex(std::max(pattern.day.relative_day_of_week, 1) - 1);
    Choose(ways_.at(pattern.day.use_relative_day ? 1 : 0));
  }
  [[nodiscard]] bool isComplete() const override {
    if (ways_[1]->isChecked()) return relative_months_->hasAcceptableInput();
    return day_->hasAcceptableInput() && months_->hasAcceptableInput();
  }

 private:
  std::array<QRadioButton*, 2> ways_{};
  QLineEdit *day_, *months_, *relative_months_;
  QComboBox *ordinal_, *weekday_;
};

class YearlyPage final : public AnyPatternPage {
 public:
  explicit YearlyPage(TaskWizard& owner) : AnyPatternPage(owner, 122) {
    AddText(82);
    ways_ = {NewWay(87, "yearSpecific"), NewWay(37, "yearRelative")};
    month_ = NewList(99, 110, Around(87, 0), "yearMonth", ways_[0]);
    day_ = NewNumber(Around(87, 0), 31, "yearDay", ways_[0]);
    ordinal_ = NewList(39, 43, Around(37, 0), "yearOrdinal", ways_[1]);
    weekday_ = NewList(44, 53, Around(0, 98), "yearWeekday", ways_[1]);
    relative_month_ = NewList(99, 110, Around(98, 0), "relativeMonth", ways_[1]);
    ways_[0]->setAccessibleDescription(Around(87, 0));
    ways_[1]->setAccessibleDescription(Around(37, 98));
    AddLine({ways_[0], month_, day_});
    AddLine({ways_[1], ordinal_, weekday_, NewWord(98), relative_month_});
    lines_->addStretch();
  }
  void initializePage() override {
    const auto pattern = PatternOf<YearlyRecord>();
    const int month = std::max(pattern.month, 1) - 1;
    day_->setText(NumberText(pattern.day.day_of_month));
    month_->setCurrentIndex(month);
    relative_month_->setCurrentIndex(month);
    ordinal_->setCurrentIndex(pattern.day.relative_week);
    weekday_->setCurrentIndex(std::max(pattern.day.relative_day_of_week, 1) - 1);
    Choose(ways_.at(pattern.day.use_relative_day ? 1 : 0));
  }
  [[nodiscard]] bool isComplete() const override {
    return ways_[1]->isChecked() || day_->hasAcceptableInput();
  }

 private:
  std::array<QRadioButton*, 2> ways_{};
  QComboBox *month_, *ordinal_, *weekday_, *relative_month_;
  QLineEdit* day_;
};

}  // namespace

QWizardPage* NewRecurrencePage(TaskWizard& owner, PageId id) {
  if (id == kTime) return new TimePage(owner);
  if (id == kPattern) return new PatternPage(owner);
  if (id == kDaily) return new DailyPage(owner);
  if (id == kWeekly) return new WeeklyPage(owner);
  if (id == kMonthly) return new MonthlyPage(owner);
  return id == kYearly ? new YearlyPage(owner) : nullptr;
}

}  // namespace plovix::peer
