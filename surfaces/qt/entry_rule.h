// Keeps what the host refuses out of a field of one line. Used by the bindings of text and combo boxes.
#pragma once

#include <QValidator>
#include <functional>

class QLineEdit;

namespace plovix::qt {

class EntryRule final : public QValidator {
 public:
  // `problem` says in words what is wrong with a text; `tell` is called with it after an edit was refused.
  // The field owns the rule.
  EntryRule(QLineEdit& field, std::function<QString(const QString& text)> problem,
            std::function<void(const QString& problem)> tell);

  [[nodiscard]] State validate(QString& text, int& position) const override;

 private:
  std::function<QString(const QString& text)> problem_;
  mutable QString last_;  // what was wrong with the text that was looked at last
};

}  // namespace plovix::qt
