// Message boxes, questions and file dialogs in the language of a text table. Each box can also be made
// without being shown, for pictures. Used by the windows and dialogs of the program.
#pragma once

#include <plovix/standalone/objects/dialogs.h>
#include <plovix/standalone/text/text_table.h>

#include <QMessageBox>
#include <memory>
#include <string>

class QFileDialog;
class QString;
class QWidget;

namespace plovix::app {

// @{
// As HostDialogs' members of that name; to be shown with Ask.
[[nodiscard]] std::unique_ptr<QMessageBox> MakeMessageBox(const TextTable& texts, const std::string& prompt,
                                                          int buttons, const std::string& title);
[[nodiscard]] std::unique_ptr<QMessageBox> MakeReportBox(const TextTable& texts, const FailureReport& report);
// @}

// Shows the box; returns the answer of the pressed button, or of the last one if the program is being closed.
[[nodiscard]] int Ask(QMessageBox& box);

// A box without buttons, whose texts are never markup and never too long for the screen.
[[nodiscard]] std::unique_ptr<QMessageBox> NewBox(QMessageBox::Icon icon, const std::string& title,
                                                  const std::string& text, QWidget* parent);

// Shows a message with only an OK button.
void Tell(const TextTable& texts, const std::string& title, const std::string& text, QWidget* parent);

// A question whose Yes destroys something: Enter and Esc both mean No.
struct WarningQuestion {
  std::string text;
  const char* yes;  // keys of host texts
  const char* no;
};
[[nodiscard]] std::unique_ptr<QMessageBox> MakeWarningQuestion(const TextTable& texts,
                                                               const std::string& title,
                                                               const WarningQuestion& question,
                                                               QWidget* parent);
// Asks under the window's title.
[[nodiscard]] bool IsSure(const TextTable& texts, const WarningQuestion& question, QWidget& window);
// Lets the user choose a file or a folder. Returns the path; empty if they cancelled.
[[nodiscard]] QString ChoosePath(QFileDialog& dialog);

// The question before entries are discarded.
[[nodiscard]] WarningQuestion DiscardQuestion(const TextTable& texts);

}  // namespace plovix::app
