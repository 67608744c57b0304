/// @file
/// The dialogs of the stand-alone host, one implementation per surface: windows, or a script's answers.
#pragma once

#include <plovix/host/error_reporter.h>
#include <plovix/standalone/tasks/data_source.h>
#include <plovix/standalone/tasks/task_record.h>

#include <optional>
#include <string>
#include <vector>

namespace plovix {

/// The arguments of ErrorReporter::Report.
struct FailureReport {
  /// @{
  /// As there.
  int number = 0;
  std::string description, module, page, procedure;
  int line = 0;
  /// @}
};

/// Every member is modal: it returns when the user has answered. A host without one of the editors need not
/// override its member; the editor's button then acts as if the user had cancelled.
class HostDialogs {
 public:
  virtual ~HostDialogs() = default;
  /// `buttons` is one of the five values of message_box; returns one of its answers.
  virtual int MessageBox(const std::string& prompt, int buttons, const std::string& title) = 0;
  /// Reports a failure; any answer is allowed.
  virtual ReportAction Report(const FailureReport& report) = 0;
  /// Here and below: returns what was chosen, edited or built; nothing if the user cancelled. `choices`: tags
  /// to offer first; may be empty.
  virtual std::optional<std::string> EditTag([[maybe_unused]] const std::string& tag,
                                             [[maybe_unused]] const std::vector<std::string>& choices) {
    return {};
  }
  /// `known`: the categories in use, as tags if the texts are tags, otherwise as texts.
  virtual std::optional<std::vector<CategoryRecord>> EditCategories(
      [[maybe_unused]] const std::vector<CategoryRecord>& categories, [[maybe_unused]] bool tagged,
      [[maybe_unused]] const std::vector<std::string>& known) {
    return {};
  }
  /// `text`: any text, because the user may have typed it.
  virtual std::optional<std::string> BuildQuery([[maybe_unused]] const std::string& text,
                                                [[maybe_unused]] const DataObjectRecord& object) {
    return {};
  }
  /// `permissions`: nothing if the task has no set yet.
  virtual std::optional<PermissionSet> EditPermissions(
      [[maybe_unused]] const std::optional<PermissionSet>& permissions,
      [[maybe_unused]] const std::string& title) {
    return {};
  }
};

}  // namespace plovix
