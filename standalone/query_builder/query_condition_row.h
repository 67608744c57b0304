// One condition of the query builder: field, comparison, value, and below them what is wrong. Used by the
// groups of conditions.
#pragma once

#include <plovix/standalone/query/query_model.h>
#include <plovix/standalone/text/text_table.h>

#include <QStringListModel>
#include <QWidget>
#include <functional>
#include <string_view>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace plovix::app {

// The fields of a data object, shared by all rows: the widgets of a hundred rows share one list of names.
struct QueryFields {
  explicit QueryFields(std::vector<FieldRecord> fields);
  const std::vector<FieldRecord> records;
  QStringListModel names;
};

class QueryConditionRow final : public QWidget {
 public:
  // `texts` and `fields`, which must not be empty, outlive it.
  QueryConditionRow(const TextTable& texts, QueryFields& fields, const Condition& condition);

  // A condition on the first field without a value.
  [[nodiscard]] static Condition NewCondition(const QueryFields& fields);

  [[nodiscard]] Condition Value() const;
  [[nodiscard]] bool IsInOrder() const;
  // Shows what is wrong, now and after every later change.
  void TellWhatIsWrong();
  void FocusValue();
  // Counted from 1: assistive technology announces the row by this number.
  void SetNumber(int number);
  [[nodiscard]] std::vector<QWidget*> TabStops() const;

  std::function<void()> changed, removed;  // set by the row's owner

 private:
  void BuildLine();
  void FillComparisons();
  void ShowEditor();
  void Edited();
  void ShowValue(const std::string& value);
  [[nodiscard]] QString Problem() const;
  [[nodiscard]] const FieldRecord& Field() const;
  [[nodiscard]] Comparison ChosenComparison() const;
  // The widget for the value; the comparison if there is none.
  [[nodiscard]] QWidget* Editor() const;
  [[nodiscard]] QString Text(std::string_view key, const std::vector<std::string>& parameters = {}) const;

  const TextTable& texts_;
  QueryFields& fields_;
  QComboBox *field_, *comparison_, *yes_no_;
  QLineEdit* value_;
  QStackedWidget* editors_;  // for the value, for yes and no, and none, in this order
  QPushButton* remove_;
  QLabel* problem_;
  bool tells_ = false;
};

}  // namespace plovix::app
