#include "tag_dialog.h"

#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QCheckBox>
#include <QCoreApplication>
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

constexpr int kTagsWide = 90;
constexpr int kTagWide = 34;  // of these
constexpr int kTagsHigh = 26;
constexpr int kLinesOfAllTexts = 5;

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
      tags_(*model_, TagTableModel::kSearchRole),
      only_(new QCheckBox(Text("tag.onlySuggested"))),
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
  tags_.Select(model_->RowOf(tag));
  ShowSelected();
  tags_.Field().setFocus();
  ResizeToText(*this, font(), kTagsWide, kTagsHigh);
}

void TagDialog::BuildSearch(bool with_choices) {
  Rows()->addLayout(tags_.NewFilterRow(Text("tag.search"), Text("tag.searchHint")));
  tags_.Field().installEventFilter(this);
  only_->setVisible(with_choices);
  Rows()->addWidget(only_);
  tags_.OnChanged([this] { ShowSelected(); });
  connect(only_, &QCheckBox::toggled, this, [this](bool only) {
    const TagRecord* selected = Selected();
    const std::string tag = selected != nullptr ? selected->tag : std::string();
    model_->ShowSuggestedOnly(only);
    tags_.Select(model_->RowOf(tag));
    tags_.SelectAnyRow();
    ShowSelected();
  });
}

void TagDialog::BuildTable() {
  QTableView& table = tags_.Table();
  table.setAccessibleName(qt::TitleOf(*this));
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table.setColumnWidth(TagTableModel::kTag, fontMetrics().averageCharWidth() * kTagWide);
  Rows()->addWidget(&table, 1);
  tag_texts_->setReadOnly(true);
  tag_texts_->setTabChangesFocus(true);
  tag_texts_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  tag_texts_->setAccessibleName(Text("tag.texts"));
  tag_texts_->setFixedHeight(fontMetrics().lineSpacing() * kLinesOfAllTexts);
  Rows()->addWidget(tag_texts_);
  Rows()->addWidget(problem_);
  OnKey(table, Qt::Key_F2, [this] { Edit(false); });
  connect(&table, &QTableView::doubleClicked, this, &TagDialog::accept);
}

void TagDialog::BuildButtons() {
  edit_ = NewButton("tag.edit", [this] { Edit(false); });
  auto* row = NewRow({NewButton("tag.new", [this] { Edit(true); }), edit_});
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
    QCoreApplication::sendEvent(&tags_.Table(), event);
    return true;
  }
  if (key != Qt::Key_Escape || tags_.Field().text().isEmpty()) return QDialog::eventFilter(watched, event);
  tags_.Field().clear();
  return true;
}

// The text of a search without matches is the likely text of a new tag.
void TagDialog::Edit(bool make_new) {
  TagRecord tag;
  if (!make_new) {
    if (Selected() == nullptr) return;
    tag = *Selected();
  } else if (const QString sought = tags_.Field().text();
             tags_.Shown().rowCount() == 0 && !sought.isEmpty()) {
    tag.texts[current_] = FromQt(sought);
  }
  TagTextsDialog dialog(
      Texts(), tag, tables_, languages_, current_,
      [this](const std::string& name) { return model_->HasName(name); }, this);
  if (dialog.exec() != QDialog::Accepted) return;
  model_->Put(dialog.Tag());
  tags_.Select(model_->RowOf(dialog.Tag().tag));
  tags_.Table().setFocus();
}

const TagRecord* TagDialog::Selected() const {
  const int row = tags_.SelectedRow();
  return row < 0 ? nullptr : &model_->Tag(row);
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
  const bool in_vain = tags_.Shown().rowCount() == 0 && !tags_.Field().text().isEmpty();
  TellProblem(*problem_, tags_.Field(), in_vain ? Text("tag.noMatch") : QString());
}

void TagDialog::accept() {
  const TagRecord* tag = Selected();
  if (tag == nullptr) {
    TellProblem(*problem_, tags_.Field(), Text("tag.problem.choose"));
    tags_.Field().setFocus();
    return;
  }
  tag_ = tag->tag;
  QDialog::accept();
}

}  // namespace plovix::app
