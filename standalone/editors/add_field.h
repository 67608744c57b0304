// A field with a button that adds typed or chosen texts to a list. Used by the editors of categories and
// permissions.
#pragma once

#include <QStringList>
#include <QWidget>
#include <functional>

class QComboBox;
class QLabel;

namespace plovix::app {

class AddField final : public QWidget {
 public:
  // Adds the text and returns an empty text, or says in words why it refuses.
  using Adder = std::function<QString(const QString& text)>;

  // The captions have mnemonics.
  AddField(const QString& label, const QString& button, Adder adder);

  // Offered while typing, if they contain the typed text. The typed text stays.
  void SetChoices(const QStringList& choices);
  [[nodiscard]] bool IsEmpty() const;
  // Adds the typed text. False if it is refused: then the reason is shown and the text stays.
  bool Commit();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void EnterPressed();
  void Added();

  Adder adder_;
  QComboBox* choice_;
  QLabel* problem_;
};

}  // namespace plovix::app
