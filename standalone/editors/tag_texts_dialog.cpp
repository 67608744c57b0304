#include "tag_texts_dialog.h"

#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/entry_rules.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "tag_table_model.h"

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 56;
constexpr int kLinesOfText = 3;

}  // namespace

TagTextsDialog::TagTextsDialog(const TextTable& texts, const TagRecord& tag, UsersAndTags& tables,
                               const std::vector<std::string>& languages, const std::string& current,
                               IsTaken is_taken, QWidget* parent)
    : EditorDialog(texts, tag.tag.empty() ? texts.Host("tag.newTitle") : texts.Host("tag.editTitle"), parent),
      initial_(tag),
      tables_(tables),
      current_(current),
      is_taken_(std::move(is_taken)),
      name_(new QLineEdit(ToQt(tag.tag))),
      name_problem_(NewProblemLabel()),
      problem_(NewProblemLabel()) {
  BuildName(*Rows());
  for (const std::string& language : languages) BuildField(*Rows(), language);
  Rows()->addWidget(problem_);
  AddOkAndCancel();
  if (!initial_.tag.empty() && !fields_.empty()) fields_.front().text->setFocus();
}

void TagTextsDialog::BuildName(QLayout& column) {
  name_->setMinimumWidth(fontMetrics().averageCharWidth() * kCharactersWide);
  name_->setAccessibleName(Caption("tag.name"));
  name_->setReadOnly(!initial_.tag.empty());
  QLabel* label = qt::NewLabel(Text("tag.name"));
  label->setBuddy(name_);
  connect(name_, &QLineEdit::textChanged, this, [this] { TellProblem(*name_problem_, *name_, {}); });
  for (QWidget* widget : std::initializer_list<QWidget*>{label, name_, name_problem_})
    column.addWidget(widget);
}

void TagTextsDialog::BuildField(QBoxLayout& column, const std::string& language) {
  const auto stored = initial_.texts.find(language);
  const Field field{language,
                    new QPlainTextEdit(stored == initial_.texts.end() ? QString() : ToQt(stored->second)),
                    NewProblemLabel()};
  field.text->setTabChangesFocus(true);
  field.text->setMinimumHeight(fontMetrics().lineSpacing() * kLinesOfText);
  field.text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);  // its default height is a page
  field.text->setAccessibleName(LanguageName(language));
  QLabel* label = qt::NewLabel(
      Text(language == current_ ? "tag.needed" : "tag.column.text", {FromQt(LanguageName(language))}));
  label->setBuddy(field.text);
  connect(field.text, &QPlainTextEdit::textChanged, this,
          [field] { TellProblem(*field.problem, *field.text, {}); });
  column.addWidget(label);
  column.addWidget(field.text, 1);
  column.addWidget(field.problem);
  fields_.push_back(field);
}

TagRecord TagTextsDialog::Tag() const {
  TagRecord tag = initial_;
  tag.tag = FromQt(name_->isReadOnly() ? name_->text() : name_->text().trimmed());
  for (const Field& field : fields_) {
    const QString text = field.text->toPlainText();
    if (text.trimmed().isEmpty()) {
      tag.texts.erase(field.language);
    } else {
      tag.texts[field.language] = FromQt(text);
    }
  }
  return tag;
}

bool TagTextsDialog::Check() {
  const TagRecord tag = Tag();
  if (initial_.tag.empty() && (tag.tag.empty() || is_taken_(tag.tag))) {
    TellTaken(Text(tag.tag.empty() ? "tag.problem.name" : "tag.problem.taken"));
    return false;
  }
  if (const auto problem = LengthProblem(tag.tag, kLongestName, Texts()); !problem.empty()) {
    TellProblem(*name_problem_, *name_, ToQt(problem));
    name_->setFocus();
    return false;
  }
  for (const Field& field : fields_) {
    QString problem = ToQt(LengthProblem(FromQt(field.text->toPlainText()), kLongestText, Texts()));
    if (field.language == current_ && !tag.texts.contains(current_)) problem = Text("tag.problem.text");
    if (problem.isEmpty()) continue;
    TellProblem(*field.problem, *field.text, problem);
    field.text->setFocus();
    return false;
  }
  return true;
}

void TagTextsDialog::accept() {
  const bool is_new = initial_.tag.empty();
  const auto save = [&] { tables_.SaveTag(Tag(), is_new ? TagRecord().texts : initial_.texts); };
  const auto conflict = [&](const auto& languages) {
    is_new ? TellTaken(Text("tag.problem.taken")) : TakeOver(languages);
  };
  if (Check() && TryToStore("tag.failed", *problem_, save, conflict)) QDialog::accept();
}

void TagTextsDialog::TellTaken(const QString& problem) {
  TellProblem(*name_problem_, *name_, problem);
  name_->setFocus();
  name_->selectAll();
}

// From now on, entries are compared with what somebody else has stored. Their other texts appear, those in
// the same languages are reported, and what was entered here stays.
void TagTextsDialog::TakeOver(const std::vector<std::string>& conflicts) {
  const auto tags = tables_.Tags();
  const auto found = std::ranges::find(tags, initial_.tag, &TagRecord::tag);
  const auto stored = found == tags.end() ? TagRecord().texts : found->texts;
  const auto merged = MergeRows(initial_.texts, Tag().texts, stored).rows;
  initial_.texts = stored;
  for (const Field& field : fields_) {
    const auto text = merged.find(field.language);
    const QString shown = text == merged.end() ? QString() : ToQt(text->second);
    if (field.text->toPlainText() != shown) field.text->setPlainText(shown);
  }
  QStringList languages;
  for (const std::string& language : conflicts) languages += LanguageName(language);
  TellProblem(*problem_, *this, Text("tag.conflict", {FromQt(languages.join(u", "))}));
}

}  // namespace plovix::app
