#include "tag_dialog.h"

#include <plovix/standalone/widgets/qt_text.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>

#include "tag_table_model.h"
#include "tag_texts_dialog.h"

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 90;
constexpr int kTagWide = 34;  // of these
constexpr int kLinesHigh = 26;
constexpr int kLinesOfTexts = 5;

}  // namespace

TagDialog::TagDialog(const TextTable& texts, const std::string& tag, const std::vector<std::string>& choices,
                     UsersAndTags& tables, std::vector<std::string> languages, std::string current,
                     QWidget* parent)
    : EditorDialog(texts, texts.Host("tag.title"), parent),
      tag_(tag),
      tables_(tables),
      languages_(std::move(languages)),
      current_(std::move(current)),
      model_(new TagTableModel(
          current_, {Text("tag.column.tag"), Text("tag.column.text", {FromQt(LanguageName(current_))})},
          this)),
      shown_(new QSortFilterProxyModel(this)),
      search_(new QLineEdit),
      only_(new QCheckBox(Text("tag.onlySuggested"))),
      table_(new QTableView),
      tag_texts_(new QPlainTextEdit),
      problem_(NewProblemLabel()) {
  std::set<std::string> suggested(choices.begin(), choices.end());
  suggested.insert(tag);
  suggested.erase("");
  model_->SetTags(tables_.Tags(), suggested);
  BuildSearch(!choices.empty());
  BuildTable();
  BuildButtons();
  AddOkAndCancel();
  Select(tag);
  ShowSelected();
  search_->setFocus();
  ResizeToText(*this, font(), kCharactersWide, kLinesHigh);
}

void TagDialog::BuildSearch(bool with_choices) {
  QLabel* label = qt::NewLabel(Text("tag.search"));
  label->setBuddy(search_);
  search_->setClearButtonEnabled(true);
  search_->setPlaceholderText(Text("tag.searchHint"));
  search_->setAccessibleName(Caption("tag.search"));
  search_->installEventFilter(this);
  auto* row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(search_);
  Rows()->addLayout(row);
  only_->setVisible(with_choices);
  Rows()->addWidget(only_);
  connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
    shown_->setFilterFixedString(text);
    Filtered();
  });
  connect(only_, &QCheckBox::toggled, this, [this](bool only) {
    const TagRecord* selected = Selected();
    const std::string tag = selected != nullptr ? selected->tag : std::string();
    model_->ShowSuggestedOnly(only);
    Select(tag);
    Filtered();
  });
}

void TagDialog::BuildTable() {
  shown_->setSourceModel(model_);
  shown_->setFilterRole(TagTableModel::kSearchRole);
  shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  table_->setAccessibleName(qt::TitleOf(*this));
  table_->setModel(shown_);
  PrepareRowTable(*table_);
  table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table_->setColumnWidth(TagTableModel::kTag, fontMetrics().averageCharWidth() * kTagWide);
  Rows()->addWidget(table_, 1);
  tag_texts_->setReadOnly(true);
  tag_texts_->setTabChangesFocus(true);
  tag_texts_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  tag_texts_->setAccessibleName(Text("tag.texts"));
  tag_texts_->setFixedHeight(fontMetrics().lineSpacing() * kLinesOfTexts);
  Rows()->addWidget(tag_texts_);
  Rows()->addWidget(problem_);
  OnKey(*table_, Qt::Key_F2, [this] { Edit(false); });
  connect(table_, &QTableView::doubleClicked, this, &TagDialog::accept);
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &TagDialog::ShowSelected);
}

void TagDialog::BuildButtons() {
  auto* row = new QHBoxLayout;
  row->addWidget(NewButton("tag.new", [this] { Edit(true); }));
  edit_ = NewButton("tag.edit", [this] { Edit(false); });
  row->addWidget(edit_);
  if (!tag_.empty()) {
    row->addWidget(NewButton("tag.none", [this] {
      tag_.clear();
      QDialog::accept();
    }));
  }
  row->addStretch();
  Rows()->addLayout(row);
}

// The search field passes the table's keys to the table, and Esc first clears the search.
bool TagDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown) {
    QCoreApplication::sendEvent(table_, event);
    return true;
  }
  if (key != Qt::Key_Escape || search_->text().isEmpty()) return QDialog::eventFilter(watched, event);
  search_->clear();
  return true;
}

// The text of a search without matches is the likely text of a new tag.
void TagDialog::Edit(bool make_new) {
  TagRecord tag;
  if (!make_new) {
    if (Selected() == nullptr) return;
    tag = *Selected();
  } else if (shown_->rowCount() == 0 && !search_->text().isEmpty()) {
    tag.texts[current_] = FromQt(search_->text());
  }
  TagTextsDialog dialog(
      Texts(), tag, tables_, languages_, current_,
      [this](const std::string& name) { return model_->HasName(name); }, this);
  if (dialog.exec() != QDialog::Accepted) return;
  model_->Put(dialog.Tag());
  Select(dialog.Tag().tag);
  table_->setFocus();
}

// A tag that was just created or given must be visible, even if the search would hide it.
void TagDialog::Select(const std::string& tag) {
  const int row = model_->RowOf(tag);
  if (row < 0) return;
  if (!shown_->mapFromSource(model_->index(row, 0)).isValid()) search_->clear();
  const QModelIndex index = shown_->mapFromSource(model_->index(row, 0));
  table_->setCurrentIndex(index);
  table_->scrollTo(index);
}

const TagRecord* TagDialog::Selected() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  return rows.isEmpty() ? nullptr : &model_->Tag(shown_->mapToSource(rows.constFirst()).row());
}

void TagDialog::Filtered() {
  if (Selected() == nullptr && shown_->rowCount() > 0) table_->selectRow(0);
  TellProblem(*problem_, *search_, shown_->rowCount() == 0 ? Text("tag.noMatch") : QString());
  ShowSelected();
}

void TagDialog::ShowSelected() {
  const TagRecord* tag = Selected();
  edit_->setEnabled(tag != nullptr);
  QStringList lines;
  for (const std::string& language : languages_) {
    if (tag == nullptr) break;
    const auto text = tag->texts.find(language);
    lines += Text("tag.text", {FromQt(LanguageName(language)),
                               text == tag->texts.end() ? Texts().Host("tag.noText") : text->second});
  }
  tag_texts_->setPlainText(lines.join(u'\n'));
  if (tag != nullptr) TellProblem(*problem_, *search_, {});
}

void TagDialog::accept() {
  const TagRecord* tag = Selected();
  if (tag == nullptr) {
    TellProblem(*problem_, *search_, Text("tag.problem.choose"));
    search_->setFocus();
    return;
  }
  tag_ = tag->tag;
  QDialog::accept();
}

}  // namespace plovix::app
