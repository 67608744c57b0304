// The host's dialogs, played by a script: answers come from queues that the script fills, and what was shown
// is kept until the script asks for it.
#pragma once

#include <plovix/standalone/objects/dialogs.h>

#include <deque>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace plovix::script {

class ScriptDialogs final : public HostDialogs {
 public:
  // Each queues one answer; any other word is a LineError.
  void QueueAnswer(const std::string& word);        // ok, cancel, yes, no
  void QueueReportAnswer(const std::string& word);  // retry, continue, leave or a number
  void QueueTag(const std::string& tag) { tags_.emplace_back(tag); }
  // Nothing: the user cancels, or changes nothing.
  void QueueCategories(std::optional<std::vector<CategoryRecord>> categories) {
    categories_.push_back(std::move(categories));
  }
  void QueueQuery(std::optional<std::string> text) { queries_.push_back(std::move(text)); }
  void QueuePermissions(std::optional<PermissionSet> set) { permissions_.push_back(std::move(set)); }

  // What was shown since the last call, oldest first.
  [[nodiscard]] nlohmann::ordered_json TakeMessages();
  [[nodiscard]] nlohmann::ordered_json TakeReports();

  // The meaning of a queued answer counts: yes also means ok, cancel also means no, and the other way round;
  // a box with one button has one answer. When none are left: ok, or yes.
  int MessageBox(const std::string& prompt, int buttons, const std::string& title) override;
  // When no answer is left: leave.
  ReportAction Report(const FailureReport& report) override;
  // When none are left, these are cancelled.
  std::optional<std::string> EditTag(const std::string& tag,
                                     const std::vector<std::string>& choices) override;
  // A queued answer without categories keeps the given ones.
  std::optional<std::vector<CategoryRecord>> EditCategories(const std::vector<CategoryRecord>& categories,
                                                            bool tagged,
                                                            const std::vector<std::string>& known) override;
  std::optional<std::string> BuildQuery(const std::string& text, const DataObjectRecord& object) override;
  std::optional<PermissionSet> EditPermissions(const std::optional<PermissionSet>& permissions,
                                               const std::string& title) override;

 private:
  struct Message {
    std::string text, title;
    int buttons = 0, answer = 0;
  };
  struct Reported {
    FailureReport failure;
    ReportAction answer = ReportAction::kLeave;
  };
  std::deque<bool> consents_;
  std::deque<ReportAction> report_answers_;
  std::deque<std::optional<std::string>> tags_, queries_;
  std::deque<std::optional<std::vector<CategoryRecord>>> categories_;
  std::deque<std::optional<PermissionSet>> permissions_;
  std::vector<Message> messages_;
  std::vector<Reported> reports_;
};

}  // namespace plovix::script
