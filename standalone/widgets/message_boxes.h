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
// As HostDialogs' members of that name; to be asked with Ask.
[[nodiscard]] std::unique_ptr<QMessageBox> MakeMessageBox(const TextTable& texts, const std::string& prompt,
                                                          int buttons, const std::string& title);
[[nodiscard]] std::unique_ptr<QMessageBox> MakeReportBox(const TextTable& texts, const FailureReport& report);
// @}

// Shows the box; the answer of the button that was pressed, of the last one when the program is being closed.
[[nodiscard]] int Ask(QMessageBox& box);

// A box without buttons, whose texts are never markup and never longer than a screen takes.
[[nodiscard]] std::unique_ptr<QMessageBox> NewBox(QMessageBox::Icon icon, const std::string& title,
                                                  const std::string& text, QWidget* parent);

// Tells something that only needs an OK.
void Tell(const TextTable& texts, const std::string& title, const std::string& text, QWidget* parent);

// A question whose Yes takes something away: Enter and Esc both mean No.
struct WarningQuestion {
  std::string text;
  const char* yes;  // keys of host texts
  const char* no;
};
[[nodiscard]] std::unique_ptr<QMessageBox> MakeWarningQuestion(const TextTable& texts,
                                                               const std::string& title,
                                                               const WarningQuestion& question,
                                                               QWidget* parent);
[[nodiscard]] bool IsSure(const TextTable& texts, const std::string& title, const WarningQuestion& question,
                          QWidget* parent);
// Lets the user choose a file or a folder. The path; empty when they cancelled.
[[nodiscard]] QString ChoosePath(QFileDialog& dialog);

// Asked before entered things are thrown away.
[[nodiscard]] WarningQuestion DiscardQuestion(const TextTable& texts);

}  // namespace plovix::app
