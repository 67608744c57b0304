#include "dry_run_dialog.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/runs/run_words.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <plovix/standalone/widgets/tables.h>

#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLocale>
#include <QTableWidget>
#include <QVBoxLayout>

namespace plovix::app {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{250};
constexpr int kMostOrders = 1000;  // in the table
constexpr int kDryRunWide = 105;   // characters
constexpr int kDryRunHigh = 14;    // lines
constexpr int kWidestKind = 26;    // characters

QString WordOf(const QJsonValue& value) {
  return value.isString() ? value.toString() : value.isNull() ? "NULL" : value.toVariant().toString();
}

// A command line that can be read: arguments with blanks stand in quotes.
QString CommandLine(const QJsonArray& arguments) {
  QStringList words;
  for (const auto& argument : arguments) {
    const QString word = argument.toString();
    words += word.isEmpty() || word.contains(u' ') ? u'"' + word + u'"' : word;
  }
  return words.join(u' ');
}

// What an action would have done, as OrderJson writes it.
QString OrderText(const QJsonObject& order, const TextTable& texts) {
  if (order.contains("arguments")) return CommandLine(order["arguments"].toArray());
  if (!order.contains("statement"))
    return ToQt(
        texts.Host("dryRun.log", {FromQt(order["text"].toString()), FromQt(order["file"].toString())}));
  const std::string statement = FromQt(order["statement"].toString());
  const QJsonArray parameters = order["parameters"].toArray();
  if (parameters.isEmpty()) return ToQt(statement);
  return ToQt(texts.Host("dryRun.sql", {statement, FromQt(Joined(parameters, WordOf))}));
}

QString KindText(const QJsonObject& order, const TextTable& texts) {
  const ActionKind* kind = FindActionKind(FromQt(order["kind"].toString()));
  return kind != nullptr ? ToQt(texts.Host(kind->caption)) : order["kind"].toString();
}

// Without the sign of its type.
QString RecordText(const QJsonObject& order) {
  return order["record"].toString().section(u':', 1);
}

}  // namespace

DryRunDialog::DryRunDialog(AppParts parts, const std::string& task, std::int64_t run, QWidget* parent)
    : EditorDialog(parts.state.texts, parts.Text("dryRun.title", {InSentence(task)}), parent),
      parts_(std::move(parts)),
      run_(run),
      state_(qt::NewWrappedLabel()),
      table_(new QTableWidget) {
  Rows()->addWidget(state_);
  Rows()->addWidget(table_, 1);
  PrepareTable(*table_, {Text("dryRun.record"), Text("dryRun.action"), Text("dryRun.what")});
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
  table_->horizontalHeader()->setStretchLastSection(true);
  table_->setAccessibleName(Text("dryRun.table"));
  table_->setMinimumSize(fontMetrics().averageCharWidth() * kDryRunWide,
                         fontMetrics().lineSpacing() * kDryRunHigh);
  AddOkAndCancel("button.close");
  HideCancel();
  table_->setFocus();
  look_.callOnTimeout(this, [this] { Look(); });
  look_.start(kBetweenLooks);
  Look();
}

// A file that cannot be read now may be readable at the next look.
void DryRunDialog::Look() {
  std::optional<RunRecord> run;
  if (FailureOf([&] { run = parts_.runs.Run(run_); }) || !run) return;
  if (!run->IsOver()) {
    const bool waits = run->state == RunState::kWaiting;
    state_->setText(Text(waits ? "dryRun.waits" : "dryRun.goesOn"));
    return;
  }
  look_.stop();
  Show(*run);
}

void DryRunDialog::Show(const RunRecord& run) {
  const QJsonArray orders = QJsonDocument::fromJson(QByteArray::fromStdString(run.planned)).array();
  const std::string number = FromQt(QLocale().toString(orders.size()));
  QString state = run.state == RunState::kSucceeded
                      ? Text(orders.isEmpty() ? "dryRun.nothing" : "dryRun.would", {number})
                      : Text("dryRun.failed", {StateInWords(run, Texts()), ReasonInWords(run, Texts())});
  if (orders.size() > kMostOrders)
    state += " " + Text("dryRun.first", {FromQt(QLocale().toString(kMostOrders))});
  state_->setText(qt::Shortened(state, qt::kLongestTold));
  table_->setRowCount(static_cast<int>(std::min<qsizetype>(orders.size(), kMostOrders)));
  for (int row = 0; row < table_->rowCount(); ++row) {
    const QJsonObject order = orders[row].toObject();
    table_->setItem(row, 0, NewCell(RecordText(order)));
    table_->setItem(row, 1, NewCell(KindText(order, Texts())));
    table_->setItem(row, 2, NewCell(OrderText(order, Texts())));
  }
  for (int column = 0; column < 2; ++column) FitColumn(*table_, column, kWidestKind);
}

void DryRunDialog::done(int result) {
  // Fails if the run is over, or was cancelled by somebody else.
  if (look_.isActive()) (void)FailureOf([&] { parts_.control.Cancel(run_); });
  look_.stop();
  EditorDialog::done(result);
}

}  // namespace plovix::app
