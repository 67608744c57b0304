#include "record_chooser_dialog.h"

#include <plovix/host/auto_task.h>
#include <plovix/standalone/data/record_list.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/tables.h>
#include <plovix/surfaces/qt/accessibility.h>

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QRadioButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

namespace plovix::app {
namespace {

constexpr std::size_t kMostRecords = 5000;  // to choose from
constexpr std::chrono::milliseconds kLongestRead{10'000};
constexpr std::chrono::milliseconds kSilenceOfRecords = kLongestRead + std::chrono::seconds{5};
constexpr int kWidestField = 30;  // characters
constexpr int kTableWide = 80;    // characters
constexpr int kTableHigh = 12;    // lines

}  // namespace

RecordChooserDialog::RecordChooserDialog(const TextTable& texts, const std::string& title,
                                         const std::string& path, const TaskRecord& task, QWidget* parent)
    : EditorDialog(texts, title, parent),
      single_(task.record_mode == record_mode::kSingleRecord),
      model_(new RecordTableModel(texts, this)),
      rows_(*model_, RecordTableModel::kSearchRole),
      count_(qt::NewWrappedLabel()),
      problem_(NewProblemLabel()),
      question_([this](std::function<void()> arrived) {
        QMetaObject::invokeMethod(this, std::move(arrived), Qt::QueuedConnection);
      }) {
  if (single_) {
    Rows()->addWidget(NewNote("choose.single"));
  } else {
    BuildChoice();
  }
  BuildTable();
  AddOkAndCancel("choose.start");
  single_ ? rows_.Table().setFocus() : due_->setFocus();
  count_->setText(Text("data.reading"));
  silence_.setSingleShot(true);
  silence_.callOnTimeout(this, [this] {
    question_.Cancel();
    Show(QueryProblem{"query.preview.tooLong", {}});
  });
  silence_.start(kSilenceOfRecords);
  question_.Ask(
      [path, task](const std::stop_token& unwanted) {
        return ListRecords(path, task, {.time = kLongestRead, .rows = kMostRecords}, unwanted);
      },
      [](const Failure& failure) -> Found {
        return QueryProblem{"query.preview.file", failure.Description()};
      },
      [this](const Found& found) { Show(found); });
}

// What is due is taken unless the person chooses, because it never does anything twice.
void RecordChooserDialog::BuildChoice() {
  auto* group = new QWidget;
  qt::AnnounceAs(*group, QAccessible::Grouping);
  group->setAccessibleName(windowTitle());
  auto* rows = new QVBoxLayout(group);
  rows->setContentsMargins({});
  const auto add = [&](std::string_view caption, std::string_view note) {
    auto* button = new QRadioButton(Text(caption));
    button->setAccessibleDescription(Text(note));
    rows->addWidget(button);
    QLabel* label = NewNote(note);
    label->setIndent(fontMetrics().averageCharWidth() * 3);
    rows->addWidget(label);
    return button;
  };
  due_ = add("choose.due", "choose.dueNote");
  these_ = add("choose.these", "choose.theseNote");
  due_->setChecked(true);
  connect(due_, &QRadioButton::toggled, this, [this] {
    if (!model_->Records().columns.empty()) TellCount();
  });
  Rows()->addWidget(group);
}

void RecordChooserDialog::BuildTable() {
  QTableView& table = rows_.Table();
  table.setAccessibleName(Text("choose.records"));
  if (!single_) {
    table.setSelectionMode(QAbstractItemView::ExtendedSelection);
    // Who asks for all of them means them, although they are selected already.
    OnKey(table, QKeyCombination(Qt::CTRL, Qt::Key_A), [this] {
      rows_.Table().selectAll();
      SelectionChanged();
    });
  }
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table.setMinimumSize(table.fontMetrics().averageCharWidth() * kTableWide,
                       table.fontMetrics().lineSpacing() * kTableHigh);
  Rows()->addLayout(rows_.NewFilterRow(Text("list.filter"), Text("choose.filterHint")));
  Rows()->addWidget(&table, 1);
  Rows()->addWidget(count_);
  Rows()->addWidget(problem_);
  connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { SelectionChanged(); });
  connect(&rows_.Field(), &QLineEdit::textChanged, this,
          [this](const QString& typed) { rows_.Shown().setFilterFixedString(typed); });
  connect(&table, &QTableView::doubleClicked, this, [this] {
    if (single_) accept();
  });
}

void RecordChooserDialog::Show(const Found& found) {
  silence_.stop();
  if (const auto* problem = std::get_if<QueryProblem>(&found)) {
    count_->clear();
    TellProblem(*problem_, rows_.Table(), Text(problem->text, {problem->detail}));
    return;
  }
  filling_ = true;
  model_->SetRecords(std::get<QueryRows>(found));
  for (int column = 0; column < model_->columnCount(); ++column)
    FitColumn(rows_.Table(), column, kWidestField);
  if (!single_) rows_.Table().selectAll();
  filling_ = false;
  TellCount();
}

void RecordChooserDialog::SelectionChanged() {
  if (filling_) return;
  if (these_ != nullptr) these_->setChecked(true);
  TellProblem(*problem_, rows_.Table(), {});
  TellCount();
}

void RecordChooserDialog::TellCount() {
  const auto number = [](std::int64_t count) {
    return FromQt(QLocale().toString(static_cast<qlonglong>(count)));
  };
  const QueryRows& found = model_->Records();
  const auto listed = static_cast<std::int64_t>(found.rows.size());
  if (due_ != nullptr && due_->isChecked()) {
    const char* text = found.complete ? "choose.found" : "query.preview.more";
    return count_->setText(Text(text, {number(found.count)}));
  }
  QString text =
      Text("choose.count", {number(rows_.Table().selectionModel()->selectedRows().size()), number(listed)});
  if (!found.complete || found.count > listed) text += " " + Text("choose.more", {number(listed)});
  count_->setText(text);
}

void RecordChooserDialog::accept() {
  keys_.clear();
  if (due_ != nullptr && due_->isChecked()) return QDialog::accept();
  for (const QModelIndex& row : rows_.Table().selectionModel()->selectedRows()) {
    const int at = rows_.Shown().mapToSource(row).row();
    keys_.push_back(model_->Records().keys.at(static_cast<std::size_t>(at)));
  }
  if (!keys_.empty()) return QDialog::accept();
  TellProblem(*problem_, rows_.Table(), Text("choose.none"));
  rows_.Table().setFocus();
}

}  // namespace plovix::app
