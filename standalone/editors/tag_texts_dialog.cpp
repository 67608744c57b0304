#include "tag_texts_dialog.h"

#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "tag_table_model.h"

namespace plovix::app {
namespace {

constexpr int kTextCharacters = 56;
constexpr int kTextLines = 3;

}  // namespace

TagTextsDialog::TagTextsDialog(const TextTable& texts, const TagRecord& tag, UsersAndTags& tables,
                               const std::vector<std::string>& languages, const std::string& current,
                               IsTaken is_taken, QWidget* parent)
    : EditorDialog(texts, tag.tag.empty() ? texts.Host("tag.newTitle") : texts.Host("tag.editTitle"), parent),
      initial_(tag),
      tables_(tables),
      current_(current),
      is_taken_(std::move(is_taken)),
      name_(tag.tag, kLongestName),
      problem_(NewProblemLabel()) {
  BuildName();
  for (const std::string& language : languages) BuildField(language);
  Rows()->addWidget(problem_);
  AddOkAndCancel();
  if (!initial_.tag.empty() && !fields_.empty()) fields_.front().text.Editor()->setFocus();
}

void TagTextsDialog::BuildName() {
  QLineEdit* line = name_.Line();
  line->setMinimumWidth(fontMetrics().averageCharWidth() * kTextCharacters);
  line->setReadOnly(!initial_.tag.empty());
  connect(line, &QLineEdit::textChanged, this, [this] { name_.Tell({}); });
  for (QWidget* widget : Widgets{NewCaption(Text("tag.name"), *line), line, name_.ProblemLabel()})
    Rows()->addWidget(widget);
}

void TagTextsDialog::BuildField(const std::string& language) {
  const auto stored = initial_.texts.find(language);
  const TextField field(stored == initial_.texts.end() ? "" : stored->second, kLongestText, kTextLines);
  field.Editor()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);  // its own wish is a page
  const auto* key = language == current_ ? "tag.needed" : "tag.column.text";
  Rows()->addWidget(NewCaption(Text(key, {FromQt(LanguageName(language))}), *field.Editor()));
  Rows()->addWidget(field.Editor(), 1);
  Rows()->addWidget(field.ProblemLabel());
  field.Editor()->setAccessibleName(LanguageName(language));
  connect(static_cast<QPlainTextEdit*>(field.Editor()), &QPlainTextEdit::textChanged, this,
          [field] { field.Tell({}); });
  fields_.push_back({language, field});
}

TagRecord TagTextsDialog::Tag() const {
  TagRecord tag = initial_;
  tag.tag = FromQt(initial_.tag.empty() ? name_.Text().trimmed() : name_.Text());
  for (const Field& field : fields_) {
    const QString text = field.text.Text();
    if (text.trimmed().isEmpty()) {
      tag.texts.erase(field.language);
    } else {
      tag.texts[field.language] = FromQt(text);
    }
  }
  return tag;
}

bool TagTextsDialog::IsInOrder() const {
  const TagRecord tag = Tag();
  if (initial_.tag.empty() && (tag.tag.empty() || is_taken_(tag.tag)))
    return name_.Accepts(Text(tag.tag.empty() ? "tag.problem.name" : "tag.problem.taken"));
  return name_.Accepts(name_.TooLong(Texts())) && std::ranges::all_of(fields_, [&](const Field& field) {
           const bool missing = field.language == current_ && !tag.texts.contains(current_);
           return field.text.Accepts(missing ? Text("tag.problem.text") : field.text.TooLong(Texts()));
         });
}

void TagTextsDialog::accept() {
  const bool is_new = initial_.tag.empty();
  const auto save = [&] { tables_.SaveTag(Tag(), is_new ? TagRecord().texts : initial_.texts); };
  const auto conflict = [&](const auto& languages) {
    is_new ? void(name_.Accepts(Text("tag.problem.taken"))) : TakeOver(languages);
  };
  if (IsInOrder() && TryToStore("tag.failed", *problem_, save, conflict)) QDialog::accept();
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
    if (field.text.Text() != shown) field.text.SetText(shown);
  }
  TellProblem(*problem_, *this, Text("tag.conflict", {FromQt(Joined(conflicts, LanguageName))}));
}

}  // namespace plovix::app
