#include "entry_rule.h"

#include <QLineEdit>
#include <utility>

namespace plovix::qt {

EntryRule::EntryRule(QLineEdit& field, std::function<QString(const QString& text)> problem,
                     std::function<void(const QString& problem)> tell)
    : QValidator(&field), problem_(std::move(problem)) {
  connect(&field, &QLineEdit::inputRejected, this, [this, tell = std::move(tell)] { tell(last_); });
  field.setValidator(this);
}

QValidator::State EntryRule::validate(QString& text, int& /*position*/) const {
  last_ = problem_(text);
  return last_.isEmpty() ? Acceptable : Invalid;
}

}  // namespace plovix::qt
