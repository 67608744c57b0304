// The host's dialogs as a script plays them: answers come from queues that the script fills, and what
// was shown is kept until the script asks for it.
#pragma once

#include <plovix/standalone/model/dialogs.h>

#include <deque>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace plovix::script {

class ScriptDialogs final : public HostDialogs {
 public:
  // Each queues one answer; a word that is none is a LineError.
  void QueueAnswer(const std::string& word);        // ok, cancel, yes, no
  void QueueReportAnswer(const std::string& word);  // retry, continue, leave or a number
  void QueueTag(const std::string& tag) { tags_.push_back(tag); }

  // What was shown since last asked, oldest first.
  [[nodiscard]] nlohmann::ordered_json TakeMessages();
  [[nodiscard]] nlohmann::ordered_json TakeReports();

  // A queued answer counts by its sense: yes stands for ok, cancel for no, and the other way round; a box
  // with one button has one answer. With none left: ok, or yes.
  int MessageBox(const std::string& prompt, int buttons, const std::string& title) override;
  // With no answer left: leave.
  ReportAction Report(const FailureReport& report) override;
  // With no tag left the editor is cancelled.
  std::optional<std::string> EditTag(const std::string& tag) override;

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
  std::deque<std::string> tags_;
  std::vector<Message> messages_;
  std::vector<Reported> reports_;
};

}  // namespace plovix::script
