#include "query_builder_dialog.h"

#include <plovix/standalone/data/background_job.h>
#include <plovix/standalone/query/query_reader.h>
#include <plovix/standalone/query/query_text.h>
#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/text_field.h>

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>

#include "query_preview_panel.h"
#include "query_rows_widget.h"
#include "wait_window.h"

namespace plovix::app {
namespace {

constexpr std::chrono::milliseconds kSettled{300};
constexpr int kCharactersWide = 110;
constexpr int kLinesHigh = 50;
constexpr int kLinesOfText = 3;

// The text as typed, unlike the editor's plain text, which turns no-break spaces into spaces.
std::string TextOf(const QPlainTextEdit& editor) {
  return FromQt(editor.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n'));
}

}  // namespace

QueryBuilderDialog::QueryBuilderDialog(const TextTable& texts, DataSource& source,
                                       const DataObjectRecord& object, const std::string& text,
                                       QueryTarget target, QWidget* parent)
    : EditorDialog(texts, texts.Host("query.title"), parent),
      object_(object.name),
      query_(text),
      target_(std::move(target)),
      rows_(new QueryRowsWidget(texts, object.name, source.Fields(object.name))),
      text_(new QPlainTextEdit),
      notice_(NewProblemLabel()) {
  QLabel* heading = qt::NewWrappedLabel(
      Text("query.heading", {FromQt(qt::Shortened(ToQt(object.caption), qt::kLongestShown))}));
  Rows()->addWidget(heading);
  rows_->setAccessibleName(heading->text());
  Rows()->addWidget(rows_, 2);
  BuildText();
  if (!target_.path.empty()) {
    preview_ = new QueryPreviewPanel(texts, target_);
    Rows()->addWidget(preview_, 1);
  }
  AddOkAndCancel();
  settled_.setSingleShot(true);
  settled_.setInterval(kSettled);
  connect(&settled_, &QTimer::timeout, this, &QueryBuilderDialog::Settle);
  if (IsBlank()) query_ = QueryText({object_, Join::kAll, {}}, rows_->Fields());
  initial_ = query_;
  ShowQueryText();
  ReadQueryText();
  ShowPreview();
  (rows_count_ ? static_cast<QWidget*>(rows_) : text_)->setFocus();
  rows_->changed = [this] { RowsChanged(); };
  ResizeToText(*this, font(), kCharactersWide, kLinesHigh);
}

void QueryBuilderDialog::BuildText() {
  text_->setTabChangesFocus(true);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  const int margins = 2 * (text_->frameWidth() + static_cast<int>(text_->document()->documentMargin()));
  text_->setFixedHeight(text_->fontMetrics().lineSpacing() * kLinesOfText + margins);
  connect(text_, &QPlainTextEdit::textChanged, this, &QueryBuilderDialog::TextTyped);
  Rows()->addWidget(NewCaption(Text("query.text"), *text_));
  Rows()->addWidget(text_);
  Rows()->addWidget(notice_);
}

// New rows would otherwise come after the buttons. The buttons' box is the stop: if it came after its last
// button, it would lead back to the first, and the Tab key would never get out.
void QueryBuilderDialog::ChainTabStops() {
  std::vector<QWidget*> stops = rows_->TabStops();
  stops.push_back(text_);
  if (preview_ != nullptr) stops.push_back(preview_->TabStop());
  stops.push_back(findChild<QDialogButtonBox*>());
  for (std::size_t i = 1; i < stops.size(); ++i) setTabOrder(stops[i - 1], stops[i]);
}

bool QueryBuilderDialog::IsBlank() const {
  return std::holds_alternative<NothingAsked>(ReadQuery(query_, object_, rows_->Fields()));
}

void QueryBuilderDialog::RowsChanged() {
  query_ = QueryText(rows_->Model(), rows_->Fields());
  is_typed_ = false;
  Tell({});
  ShowQueryText();
  ChainTabStops();
  if (preview_ != nullptr) preview_->ShowCounting();
  settled_.start();
}

void QueryBuilderDialog::TextTyped() {
  query_ = TextOf(*text_);
  is_typed_ = true;
  if (preview_ != nullptr) preview_->ShowCounting();
  settled_.start();
}

// As an edit that can be undone: Ctrl+Z restores what was typed.
void QueryBuilderDialog::ShowQueryText() {
  const QSignalBlocker quiet(text_);
  QTextCursor cursor(text_->document());
  cursor.select(QTextCursor::Document);
  cursor.insertText(ToQt(query_));
}

void QueryBuilderDialog::Settle() {
  settled_.stop();
  if (is_typed_) ReadQueryText();
  is_typed_ = false;
  ShowPreview();
}

void QueryBuilderDialog::ReadQueryText() {
  const auto read = ReadQuery(query_, object_, rows_->Fields());
  const auto* refused = std::get_if<NotExpressible>(&read);
  rows_count_ = refused == nullptr;
  if (const auto* model = std::get_if<QueryModel>(&read)) {
    if (QueryText(*model, rows_->Fields()) != QueryText(rows_->Model(), rows_->Fields()) ||
        model->groups.empty())
      rows_->Show(*model);
  }
  if (std::holds_alternative<NothingAsked>(read)) rows_->ShowNothing();
  rows_->SetInUse(rows_count_);
  Tell(refused == nullptr ? QString()
                          : Text(refused->reason, {refused->detail}) + u'\n' + Text("query.asTyped"));
  ChainTabStops();
}

void QueryBuilderDialog::ShowPreview() {
  if (preview_ == nullptr) return;
  if (IsBlank()) {
    preview_->ShowInstead("query.preview.blank");
  } else if (rows_count_ && !rows_->IsInOrder()) {
    preview_->ShowInstead("query.preview.incomplete");
  } else {
    preview_->Ask(rows_count_ ? BindQuery(rows_->Model(), rows_->Fields()) : BoundQuery{query_, {}});
  }
}

void QueryBuilderDialog::Tell(const QString& notice) {
  if (notice != notice_->text()) TellProblem(*notice_, *text_, notice);
}

std::optional<QueryProblem> QueryBuilderDialog::Problem() const {
  using Found = std::optional<QueryProblem>;
  std::unique_ptr<BackgroundJob> left;
  try {
    const auto found =
        FindInBackground<Found>(WaitWithWindow(Texts()), left,
                                [target = target_, query = query_](const std::stop_token& unwanted) -> Found {
                                  return CheckQuery(target, query, unwanted);
                                });
    return found ? *found : QueryProblem{"query.preview.tooLong", {}};
  } catch (const Failure& failure) {
    return QueryProblem{"query.preview.file", failure.Description()};
  }
}

// The database may reject the text, or be unavailable.
bool QueryBuilderDialog::IsKept() {
  if (target_.path.empty()) return true;
  const auto problem = Problem();
  if (!problem) return true;
  const std::string words = Texts().Host(problem->text, {problem->detail});
  return IsSure(Texts(), {Texts().Host("query.keep", {words}), "query.keepYes", "query.keepNo"}, *this);
}

void QueryBuilderDialog::accept() {
  if (is_typed_) Settle();
  if (IsBlank()) {
    Tell(Text("query.preview.blank"));
    text_->setFocus();
  } else if (rows_count_ && !rows_->IsInOrder()) {
    rows_->TellWhatIsWrong();
  } else if (const auto problem = LengthProblem(query_, kLongestText, Texts()); !problem.empty()) {
    Tell(ToQt(problem));
    text_->setFocus();
  } else if (IsKept()) {
    EditorDialog::accept();
  }
}

}  // namespace plovix::app
