#include "category_dialog.h"

#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/tables.h>
#include <plovix/standalone/widgets/text_field.h>

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <algorithm>

#include "add_field.h"

namespace plovix::app {
namespace {

enum Column { kCategory, kPublic };
constexpr int kTagRole = Qt::UserRole;
constexpr int kCategoryWide = 70;
constexpr int kCategoryHigh = 20;

}  // namespace

CategoryDialog::CategoryDialog(const TextTable& texts, const std::vector<CategoryRecord>& categories,
                               CategorySource source, QWidget* parent)
    : EditorDialog(texts, texts.Host("category.title"), parent),
      source_(std::move(source)),
      categories_(categories),
      table_(new QTableWidget),
      problem_(NewProblemLabel()) {
  auto* columns = new QHBoxLayout;
  Rows()->addLayout(columns, 1);
  BuildTable();
  columns->addWidget(table_, 1);
  auto* buttons = new QVBoxLayout;
  columns->addLayout(buttons);
  BuildButtons(*buttons);
  buttons->addStretch();
  Rows()->addWidget(problem_);
  if (!source_.tagged) {
    add_ = new AddField(Text("category.addLabel"), Text("category.add"), [this](const QString& text) {
      const QString problem = ProblemOf(text, -1);
      if (problem.isEmpty()) Append({{}, text, true});
      return problem;
    });
    QStringList known;
    for (const std::string& text : source_.known) known += ToQt(text);
    add_->SetChoices(known);
    Rows()->addWidget(add_);
  }
  Rows()->addWidget(NewNote("category.publicNote"));
  AddOkAndCancel();
  for (const CategoryRecord& category : categories) {
    const Line line{category.tag, ToQt(source_.text_of(category.tag)).trimmed(), category.is_public};
    // An empty text, as an empty box leaves it, is not a category.
    if (!line.text.isEmpty() || !ToQt(line.tag).trimmed().isEmpty()) Append(line);
  }
  initial_ = Lines();
  table_->setCurrentCell(0, kCategory);
  if (initial_.empty() && add_ != nullptr) add_->setFocus();
  UpdateButtons();
  ResizeToText(*this, font(), kCategoryWide, kCategoryHigh);
}

void CategoryDialog::BuildTable() {
  PrepareTable(*table_, {Text("category.column.text"), Text("category.column.public")});
  table_->setAccessibleName(qt::TitleOf(*this));
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  OnKey(*table_, Qt::Key_F2, [this] { Rename(); });
  OnKey(*table_, Qt::Key_Delete, [this] { Remove(); });
  OnKey(*table_, Qt::Key_Space, [this] { TogglePublic(); });
  OnKey(*table_, QKeyCombination(Qt::ALT, Qt::Key_Up), [this] { Move(-1); });
  OnKey(*table_, QKeyCombination(Qt::ALT, Qt::Key_Down), [this] { Move(1); });
  connect(table_, &QTableWidget::currentCellChanged, this, &CategoryDialog::UpdateButtons);
  connect(table_, &QTableWidget::itemChanged, this, &CategoryDialog::Check);
  connect(table_, &QTableWidget::cellDoubleClicked, this, [this](int /*row*/, int column) {
    if (column == kCategory) Rename();
  });
}

void CategoryDialog::BuildButtons(QLayout& column) {
  const auto add = [&](std::string_view key, std::function<void()> action) {
    QPushButton* button = NewButton(key, std::move(action));
    column.addWidget(button);
    return button;
  };
  if (source_.tagged) add("category.addTag", [this] { EditTag(nullptr); });
  buttons_ = {.edit = add(source_.tagged ? "category.changeTag" : "category.rename", [this] { Rename(); }),
              .remove = add("category.remove", [this] { Remove(); }),
              .up = add("category.up", [this] { Move(-1); }),
              .down = add("category.down", [this] { Move(1); })};
}

std::vector<CategoryDialog::Line> CategoryDialog::Lines() const {
  std::vector<Line> lines;
  for (int row = 0; row < table_->rowCount(); ++row) {
    const QTableWidgetItem* text = table_->item(row, kCategory);
    lines.push_back({FromQt(text->data(kTagRole).toString()), text->text().trimmed(),
                     table_->item(row, kPublic)->checkState() == Qt::Checked});
  }
  return lines;
}

void CategoryDialog::Append(const Line& line) {
  const QSignalBlocker quiet(table_);  // half a row is nothing to check
  const int row = table_->rowCount();
  table_->insertRow(row);
  auto* text = new QTableWidgetItem(line.text);
  text->setData(kTagRole, ToQt(line.tag));
  table_->setItem(row, kCategory, text);
  table_->setItem(row, kPublic, NewCheckCell(Text("category.column.public"), line.is_public));
  table_->setCurrentCell(row, kCategory);
  UpdateButtons();
}

void CategoryDialog::Rename() {
  QTableWidgetItem* item = table_->item(table_->currentRow(), kCategory);
  if (item == nullptr) return;
  if (source_.tagged) return EditTag(item);
  table_->setCurrentItem(item);
  table_->editItem(item);
}

void CategoryDialog::EditTag(QTableWidgetItem* item) {
  Try("category.failed", *problem_, [&] {
    const std::string former = item != nullptr ? FromQt(item->data(kTagRole).toString()) : "";
    const auto tag = source_.edit_tag(former, source_.known);
    if (!tag) return;
    const QString text = ToQt(source_.text_of(*tag)).trimmed();
    const QString problem = ProblemOf(text, item != nullptr ? item->row() : -1);
    if (problem.isEmpty() && item == nullptr) Append({*tag, text, true});
    if (problem.isEmpty() && item != nullptr) {
      item->setData(kTagRole, ToQt(*tag));
      item->setText(text);
    }
    TellProblem(*problem_, *table_, problem);
  });
  table_->setFocus();
}

void CategoryDialog::Remove() {
  if (table_->currentRow() < 0) return;
  table_->removeRow(table_->currentRow());
  Check();
  UpdateButtons();
}

void CategoryDialog::Move(int by) {
  const int row = table_->currentRow();
  const int other = row + by;
  if (row < 0 || other < 0 || other >= table_->rowCount()) return;
  const QSignalBlocker quiet(table_);  // half a row is nothing to check
  for (const int column : {kCategory, kPublic}) {
    QTableWidgetItem* moved = table_->takeItem(row, column);
    table_->setItem(row, column, table_->takeItem(other, column));
    table_->setItem(other, column, moved);
  }
  table_->setCurrentCell(other, kCategory);
  UpdateButtons();
}

void CategoryDialog::TogglePublic() {
  QTableWidgetItem* item = table_->item(table_->currentRow(), kPublic);
  if (item != nullptr) item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

void CategoryDialog::UpdateButtons() {
  buttons_.Enable(*table_, table_->currentRow(), table_->rowCount());
}

QString CategoryDialog::ProblemOf(const QString& text, int row) const {
  if (text.isEmpty()) return Text("category.problem.empty");
  if (const auto problem = LengthProblem(FromQt(text), kLongestName, Texts()); !problem.empty())
    return ToQt(problem);
  const std::vector<Line> lines = Lines();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (static_cast<int>(i) == row || Folded(lines[i].text) != Folded(text)) continue;
    return Text("category.problem.twice", {FromQt(text)});
  }
  return {};
}

// An invalid text is not reverted: the problem is shown, and OK is refused until the text is changed.
int CategoryDialog::Check() {
  const std::vector<Line> lines = Lines();
  const int count = table_->rowCount();
  for (int i = 0; i < count; ++i) {
    const int row = (std::max(table_->currentRow(), 0) + i) % count;  // starting at the current row
    const QString problem = ProblemOf(lines.at(static_cast<std::size_t>(row)).text, row);
    if (problem.isEmpty()) continue;
    TellProblem(*problem_, *table_, problem);
    return row;
  }
  TellProblem(*problem_, *table_, {});
  return -1;
}

bool CategoryDialog::Changed() const {
  return Lines() != initial_ || (add_ != nullptr && !add_->IsEmpty());
}

std::string CategoryDialog::TagOf(const Line& line) const {
  const std::string text = FromQt(line.text);
  if (source_.tagged || (!line.tag.empty() && ToQt(source_.text_of(line.tag)).trimmed() == line.text))
    return line.tag;
  return source_.tag_for_text(line.tag, text);
}

void CategoryDialog::accept() {
  if (add_ != nullptr && !add_->IsEmpty() && !add_->Commit()) return;
  if (const int row = Check(); row >= 0) {
    table_->setCurrentCell(row, kCategory);
    table_->setFocus();
    return;
  }
  std::vector<CategoryRecord> edited;
  if (!Try("category.failed", *problem_, [&] {
        for (const Line& line : Lines()) edited.push_back({TagOf(line), line.is_public});
      }))
    return;
  categories_ = std::move(edited);
  QDialog::accept();
}

}  // namespace plovix::app
