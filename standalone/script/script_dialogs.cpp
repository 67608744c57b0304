#include "script_dialogs.h"

#include <plovix/host/host_application.h>

#include <nlohmann/json.hpp>
#include <type_traits>
#include <utility>

#include "words.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

template <class T>
T Taken(std::deque<T>& queue, std::type_identity_t<T> otherwise) {
  if (queue.empty()) return otherwise;
  otherwise = std::move(queue.front());
  queue.pop_front();
  return otherwise;
}

int BoxAnswer(int buttons, bool consent) {
  switch (buttons) {
    case message_box::kYesNoQuestion:
      return consent ? message_box::kYes : message_box::kNo;
    case message_box::kOkCancelWarning:
    case message_box::kOkCancelQuestion:
      return consent ? message_box::kOk : message_box::kCancel;
    default:
      return message_box::kOk;
  }
}

}  // namespace

void ScriptDialogs::QueueAnswer(const std::string& word) {
  const bool consent = word == "ok" || word == "yes";
  if (!consent && word != "cancel" && word != "no") {
    throw LineError("\"" + word + "\" is no answer: ok, cancel, yes or no");
  }
  consents_.push_back(consent);
}

void ScriptDialogs::QueueReportAnswer(const std::string& word) {
  if (word == "retry") {
    report_answers_.push_back(ReportAction::kRetry);
  } else if (word == "continue") {
    report_answers_.push_back(ReportAction::kContinue);
  } else if (word == "leave") {
    report_answers_.push_back(ReportAction::kLeave);
  } else if (IsInteger(word)) {
    report_answers_.push_back(static_cast<ReportAction>(IntegerFrom<std::int32_t>(word)));
  } else {
    throw LineError("\"" + word + "\" is no answer: retry, continue, leave or a number");
  }
}

Json ScriptDialogs::TakeMessages() {
  Json list = Json::array();
  for (const Message& message : std::exchange(messages_, {})) {
    list.push_back({{"text", message.text},
                    {"buttons", message.buttons},
                    {"title", message.title},
                    {"answer", message.answer}});
  }
  return list;
}

Json ScriptDialogs::TakeReports() {
  Json list = Json::array();
  for (const auto& [failure, answer] : std::exchange(reports_, {})) {
    list.push_back({{"number", failure.number},
                    {"description", failure.description},
                    {"module", failure.module},
                    {"page", failure.page},
                    {"procedure", failure.procedure},
                    {"line", failure.line},
                    {"answer", static_cast<std::int32_t>(answer)}});
  }
  return list;
}

int ScriptDialogs::MessageBox(const std::string& prompt, int buttons, const std::string& title) {
  const int answer = BoxAnswer(buttons, Taken(consents_, true));
  messages_.push_back({prompt, title, buttons, answer});
  return answer;
}

ReportAction ScriptDialogs::Report(const FailureReport& report) {
  const ReportAction answer = Taken(report_answers_, ReportAction::kLeave);
  reports_.push_back({report, answer});
  return answer;
}

std::optional<std::string> ScriptDialogs::EditTag(const std::string& /*tag*/,
                                                  const std::vector<std::string>& /*choices*/) {
  return Taken(tags_, std::nullopt);
}

std::optional<std::vector<CategoryRecord>> ScriptDialogs::EditCategories(
    const std::vector<CategoryRecord>& categories, bool /*tagged*/,
    const std::vector<std::string>& /*known*/) {
  const auto answer = Taken(categories_, std::nullopt);
  return answer && answer->empty() ? categories : answer;
}

std::optional<std::string> ScriptDialogs::BuildQuery(const std::string& /*text*/,
                                                     const DataObjectRecord& /*object*/) {
  return Taken(queries_, std::nullopt);
}

std::optional<PermissionSet> ScriptDialogs::EditPermissions(
    const std::optional<PermissionSet>& /*permissions*/, const std::string& /*title*/) {
  return Taken(permissions_, std::nullopt);
}

}  // namespace plovix::script
