#include "query_condition_row.h"

#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/accessibility.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <algorithm>

namespace plovix::app {
namespace {

constexpr int kFieldCharacters = 16;
constexpr int kComparisonCharacters = 12;
constexpr int kVisibleFields = 20;
constexpr int kLongestValue = 1 << 24;  // the default limit would cut a value typed as SQL
constexpr double kSampleNumber = 0.5;

// For names of any length: what does not fit is elided.
class ElidingComboBox final : public QComboBox {
 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const int width =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this).width();
    option.currentText = option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, width - 2);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
  }
};

bool IsTime(FieldType type) {
  return type == FieldType::kDate || type == FieldType::kDateTime;
}

// In the order of the comparisons. Moments are before and after, numbers less and greater.
struct ComparisonText {
  const char* text;
  const char* of_times = text;
};
constexpr ComparisonText kComparisonTexts[] = {{"query.compare.equals"},
                                               {"query.compare.differs"},
                                               {"query.compare.less", "query.compare.before"},
                                               {"query.compare.atMost", "query.compare.until"},
                                               {"query.compare.greater", "query.compare.after"},
                                               {"query.compare.atLeast", "query.compare.from"},
                                               {"query.compare.contains"},
                                               {"query.compare.beginsWith"},
                                               {"query.compare.endsWith"},
                                               {"query.compare.isEmpty"},
                                               {"query.compare.isNotEmpty"}};
static_assert(std::size(kComparisonTexts) == static_cast<std::size_t>(Comparison::kIsNotEmpty) + 1);

std::string_view TextKeyOf(Comparison comparison, FieldType type) {
  const ComparisonText& texts = kComparisonTexts[static_cast<std::size_t>(comparison)];
  return IsTime(type) ? texts.of_times : texts.text;
}

std::string_view HintKeyOf(FieldType type) {
  if (type == FieldType::kInteger) return "query.hint.integer";
  if (type == FieldType::kReal) return "query.hint.real";
  if (type == FieldType::kDate) return "query.hint.date";
  return type == FieldType::kDateTime ? "query.hint.dateTime" : "query.hint.text";
}

void LimitWidth(QComboBox& box, int characters) {
  box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box.setMinimumContentsLength(characters);
  box.setMaxVisibleItems(kVisibleFields);
}

}  // namespace

QueryFields::QueryFields(std::vector<FieldRecord> fields) : records(std::move(fields)) {
  QStringList list;
  for (const FieldRecord& field : records) list += qt::Shortened(ToQt(field.name), qt::kLongestShown);
  names.setStringList(list);
}

Condition QueryConditionRow::NewCondition(const QueryFields& fields) {
  const FieldRecord& field = fields.records.front();
  const Comparison comparison = ComparisonsFor(field.type).front();
  const bool is_yes_no = field.type == FieldType::kBoolean;
  return {field.name, comparison, is_yes_no ? "1" : ""};
}

QueryConditionRow::QueryConditionRow(const TextTable& texts, QueryFields& fields, const Condition& condition)
    : texts_(texts),
      fields_(fields),
      field_(new ElidingComboBox),
      comparison_(new QComboBox),
      yes_no_(new QComboBox),
      value_(new QLineEdit),
      editors_(new QStackedWidget),
      remove_(NewButton(Text("query.remove"), [this] { removed(); })),
      problem_(NewProblemLabel()) {
  BuildLine();
  const FieldRecord* field = FindField(fields_.records, condition.field);
  if (field != nullptr) field_->setCurrentIndex(static_cast<int>(field - fields_.records.data()));
  FillComparisons();
  comparison_->setCurrentIndex(comparison_->findData(static_cast<int>(condition.comparison)));
  ShowValue(condition.value);
  ShowEditor();
  connect(field_, &QComboBox::currentIndexChanged, this, [this] {
    FillComparisons();
    Edited();
  });
  connect(comparison_, &QComboBox::currentIndexChanged, this, [this] { Edited(); });
  connect(yes_no_, &QComboBox::currentIndexChanged, this, [this] { Edited(); });
  connect(value_, &QLineEdit::textChanged, this, [this] { Edited(); });
  connect(value_, &QLineEdit::editingFinished, this, [this] {
    if (!value_->text().isEmpty()) TellWhatIsWrong();
  });
}

void QueryConditionRow::BuildLine() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  auto* line = new QHBoxLayout;
  column->addLayout(line);
  column->addWidget(problem_);
  for (QComboBox* box : {field_, comparison_, yes_no_}) LimitWidth(*box, kComparisonCharacters);
  field_->setMinimumContentsLength(kFieldCharacters);
  field_->setModel(&fields_.names);
  static_cast<QListView*>(field_->view())->setUniformItemSizes(true);
  field_->view()->setTextElideMode(Qt::ElideMiddle);
  value_->setMaxLength(kLongestValue);
  yes_no_->addItem(Text("query.value.yes"), QStringLiteral("1"));
  yes_no_->addItem(Text("query.value.no"), QStringLiteral("0"));
  for (QComboBox* box : {field_, comparison_}) line->addWidget(box, 2);
  for (QWidget* editor : std::initializer_list<QWidget*>{value_, yes_no_, new QWidget})
    editors_->addWidget(editor);
  editors_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  line->addWidget(editors_, 3);
  line->addWidget(remove_);
}

// The typed value and the comparison stay if the field accepts them.
void QueryConditionRow::FillComparisons() {
  const QSignalBlocker quiet(comparison_);
  const QVariant former = comparison_->currentData();
  comparison_->clear();
  for (const Comparison comparison : ComparisonsFor(Field().type))
    comparison_->addItem(Text(TextKeyOf(comparison, Field().type)), static_cast<int>(comparison));
  comparison_->setCurrentIndex(std::max(comparison_->findData(former), 0));
}

void QueryConditionRow::ShowEditor() {
  const int last = editors_->count() - 1;
  editors_->setCurrentIndex(Editor() == comparison_ ? last : editors_->indexOf(Editor()));
  value_->setPlaceholderText(
      Text(HintKeyOf(Field().type), {FromQt(QLocale().toString(kSampleNumber, 'f', 1))}));
  field_->setToolTip(qt::ToolTip(ToQt(Field().name)));
  field_->setAccessibleDescription(qt::Shortened(ToQt(Field().name), qt::kLongestTold));  // not the markup
}

void QueryConditionRow::Edited() {
  ShowEditor();
  if (tells_) TellProblem(*problem_, *Editor(), Problem());
  if (changed) changed();
}

void QueryConditionRow::TellWhatIsWrong() {
  tells_ = true;
  TellProblem(*problem_, *Editor(), Problem());
}

QString QueryConditionRow::Problem() const {
  const auto problem = CheckCondition(Value(), Field().type);
  return problem ? Text(*problem) : QString();
}

bool QueryConditionRow::IsInOrder() const {
  return !CheckCondition(Value(), Field().type);
}

void QueryConditionRow::FocusValue() {
  Editor()->setFocus();
  value_->selectAll();
}

// Numbers have the user's decimal separator in the field and a point in the query.
void QueryConditionRow::ShowValue(const std::string& value) {
  QString text = ToQt(value);
  if (Field().type == FieldType::kReal) text.replace(u'.', QLocale().decimalPoint());
  value_->setText(text);
  yes_no_->setCurrentIndex(value == "0" ? 1 : 0);
}

Condition QueryConditionRow::Value() const {
  Condition condition{Field().name, ChosenComparison(), {}};
  if (!TakesValue(condition.comparison)) return condition;
  QString text = Field().type == FieldType::kBoolean ? yes_no_->currentData().toString() : value_->text();
  if (Field().type != FieldType::kText) text = text.trimmed();
  if (Field().type == FieldType::kReal) text.replace(QLocale().decimalPoint(), QStringLiteral("."));
  condition.value = FromQt(text);
  return condition;
}

void QueryConditionRow::SetNumber(int number) {
  const std::vector<std::string> parameter{std::to_string(number)};
  qt::NameComboBox(*field_, Text("query.name.field", parameter));
  qt::NameComboBox(*comparison_, Text("query.name.comparison", parameter));
  value_->setAccessibleName(Text("query.name.value", parameter));
  qt::NameComboBox(*yes_no_, value_->accessibleName());
  remove_->setAccessibleName(Text("query.name.remove", parameter));
}

std::vector<QWidget*> QueryConditionRow::TabStops() const {
  return {field_, comparison_, value_, yes_no_, remove_};
}

const FieldRecord& QueryConditionRow::Field() const {
  return fields_.records.at(static_cast<std::size_t>(std::max(field_->currentIndex(), 0)));
}

Comparison QueryConditionRow::ChosenComparison() const {
  return static_cast<Comparison>(comparison_->currentData().toInt());
}

QWidget* QueryConditionRow::Editor() const {
  if (!TakesValue(ChosenComparison())) return comparison_;
  return Field().type == FieldType::kBoolean ? static_cast<QWidget*>(yes_no_) : value_;
}

QString QueryConditionRow::Text(std::string_view key, const std::vector<std::string>& parameters) const {
  return ToQt(texts_.Host(key, parameters));
}

}  // namespace plovix::app
