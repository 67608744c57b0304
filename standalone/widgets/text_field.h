// A field of an editor for a text, with what is wrong with it below. Used by the editors of actions and of
// the texts of language tags.
#pragma once

#include <plovix/standalone/text/text_table.h>

#include <QString>
#include <cstddef>
#include <string>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace plovix::app {

// Why a text is too long, in words; empty: it is not. `most`: characters, of text_limits.h.
[[nodiscard]] std::string LengthProblem(const std::string& text, std::size_t most, const TextTable& texts);

// The widgets belong to the editor, which lays them out.
class TextField final {
 public:
  // With `lines` of 0 the text has one line, else any number, of which so many are in sight at least. It may
  // have `most` characters, and whatever is stored already is shown whole.
  TextField(const std::string& text, std::size_t most, int lines = 0);

  [[nodiscard]] QLineEdit* Line() const { return line_; }  // nothing with several lines
  [[nodiscard]] QWidget* Editor() const;
  [[nodiscard]] QLabel* ProblemLabel() const { return problem_; }
  [[nodiscard]] QString Text() const;
  void SetText(const QString& text) const;
  // In place of what is selected, else at the cursor; the field has the focus then.
  void Insert(const QString& text) const;

  // Says what is wrong; empty: nothing.
  void Tell(const QString& problem) const;
  // Says it and goes there. Gives back whether there was nothing to say.
  [[nodiscard]] bool Accepts(const QString& problem) const;
  // Selects a part of the text, given in bytes of UTF-8.
  void Select(std::size_t offset, std::size_t length) const;
  [[nodiscard]] QString TooLong(const TextTable& texts) const;

 private:
  std::size_t most_;
  QLineEdit* line_ = nullptr;  // one of the two
  QPlainTextEdit* lines_ = nullptr;
  QLabel* problem_;
};

}  // namespace plovix::app
