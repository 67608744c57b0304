// The dialogs of the stand-alone host, one implementation per surface: windows, or a script's answers.
#pragma once

#include <plovix/host/error_reporter.h>

#include <optional>
#include <string>

namespace plovix {

struct FailureReport {
  int number = 0;
  std::string description, module, page, procedure;
  int line = 0;
};

// Every member is modal: it returns when the user has answered.
class HostDialogs {
 public:
  virtual ~HostDialogs() = default;
  // `buttons` is one of the five values of message_box; gives back one of its answers.
  virtual int MessageBox(const std::string& prompt, int buttons, const std::string& title) = 0;
  virtual ReportAction Report(const FailureReport& report) = 0;
  // The tag chosen in the language-tag editor; nothing when the user cancelled.
  virtual std::optional<std::string> EditTag(const std::string& tag) = 0;
};

}  // namespace plovix
