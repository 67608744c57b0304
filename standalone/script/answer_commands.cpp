// The commands that set the host's answers: message boxes, dialogs, failure reports, planned failures.
#include <array>

#include "commands.h"

namespace plovix::script {
namespace {

constexpr std::string_view kCancelled = "cancel";

// The queues take all the words or none.
template <void (ScriptDialogs::*kQueue)(const std::string&)>
void QueueAll(ScriptSession& session, const Words& words) {
  ScriptDialogs trial;
  for (const std::string& word : words) (trial.*kQueue)(word);
  for (const std::string& word : words) (session.Dialogs().*kQueue)(word);
}

void ChooseTag(ScriptSession& session, const Words& words) {
  session.Dialogs().QueueTag(words[0]);
}

// The categories as edited by the user; without any, those that the editor was given.
void EditCategories(ScriptSession& session, const Words& words) {
  const bool changed = words[0] == "changed";
  if (!changed && (words[0] != "unchanged" || words.size() > 1))
    throw LineError("the editor's answer is changed [TEXT ...] or unchanged");
  std::vector<CategoryRecord> categories;
  for (std::size_t i = 1; i < words.size(); ++i) categories.push_back({words[i], true});
  session.Dialogs().QueueCategories(changed ? std::optional(categories) : std::nullopt);
}

void BuildQuery(ScriptSession& session, const Words& words) {
  session.Dialogs().QueueQuery(words[0] == kCancelled ? std::nullopt : std::optional(words[0]));
}

// A set in which the named user may do everything, and nobody else anything.
void EditPermissions(ScriptSession& session, const Words& words) {
  std::optional<PermissionSet> set;
  if (words[0] != kCancelled) set = {{words[0], false, true, true, true, true}};
  session.Dialogs().QueuePermissions(std::move(set));
}

void PlanFailure(ScriptSession& session, const Words& words) {
  session.Faults().Plan(words[0], words.size() == 1 ? 1 : IntegerFrom<int>(words[1]));
}

constexpr auto kAnswerCommands = std::to_array<Command>({
    {"answer", "ok|cancel|yes|no ...", 1, kAnyNumber, "answers for the next message boxes",
     QueueAll<&ScriptDialogs::QueueAnswer>},
    {"report", "retry|continue|leave|NUMBER ...", 1, kAnyNumber, "answers for the next failure reports",
     QueueAll<&ScriptDialogs::QueueReportAnswer>},
    {"dialog edittag", "TAG", 1, 1, "the tag that the tag editor gives back next", ChooseTag},
    {"dialog categories", "changed [TEXT ...]|unchanged", 1, kAnyNumber,
     "what the category editor gives back", EditCategories},
    {"dialog builder", "TEXT|cancel", 1, 1, "what the query builder gives back", BuildQuery},
    {"dialog permissions", "NAME|cancel", 1, 1, "what the permission editor gives back", EditPermissions},
    {"fail", "MEMBER [N]", 1, 2, "makes the N-th next call of that host member fail", PlanFailure},
});

}  // namespace

std::span<const Command> AnswerCommands() {
  return kAnswerCommands;
}

}  // namespace plovix::script
