// A field with a button that adds to a list what is typed in it or chosen from what is known. Used by the
// editors of categories and permissions.
#pragma once

#include <QStringList>
#include <QWidget>
#include <functional>

class QComboBox;
class QLabel;

namespace plovix::app {

class AddField final : public QWidget {
 public:
  // Adds the text and gives back nothing, or says in words why it refuses.
  using Adder = std::function<QString(const QString& text)>;

  // The captions carry mnemonics.
  AddField(const QString& label, const QString& button, Adder adder);

  // Offered while typing, wherever in a choice the typed text stands. What is typed stays.
  void SetChoices(const QStringList& choices);
  [[nodiscard]] bool IsEmpty() const;
  // Adds what is typed. False when that is refused: the reason is shown, the text stays.
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
