// Keeps texts that the host refuses out of a single-line field. Used by the bindings of text and combo boxes.
#pragma once

#include <QValidator>
#include <functional>

class QLineEdit;

namespace plovix::qt {

class EntryRule final : public QValidator {
 public:
  // `problem` describes what is wrong with a text; `tell` is called with the description after an edit was
  // refused. The field owns the rule.
  EntryRule(QLineEdit& field, std::function<QString(const QString& text)> problem,
            std::function<void(const QString& problem)> tell);

  [[nodiscard]] State validate(QString& text, int& position) const override;

 private:
  std::function<QString(const QString& text)> problem_;
  mutable QString last_;  // what was wrong with the last text checked
};

}  // namespace plovix::qt
