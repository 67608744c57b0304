// The commands that say what the host is to answer: boxes, dialogs, failure reports, planned failures.
#include <array>

#include "commands.h"

namespace plovix::script {
namespace {

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

void RefuseDialog(ScriptSession& /*session*/, const Words& /*words*/) {
  throw LineError("no page opens this dialog yet");
}

void PlanFailure(ScriptSession& session, const Words& words) {
  session.Faults().Plan(words[0], words.size() == 1 ? 1 : IntegerFrom<int>(words[1]));
}

constexpr auto kCommands = std::to_array<Command>({
    {"answer", "ok|cancel|yes|no ...", 1, kAnyNumber, "answers for the next message boxes",
     QueueAll<&ScriptDialogs::QueueAnswer>},
    {"report", "retry|continue|leave|NUMBER ...", 1, kAnyNumber, "answers for the next failure reports",
     QueueAll<&ScriptDialogs::QueueReportAnswer>},
    {"dialog edittag", "TAG", 1, 1, "the tag that the tag editor gives back next", ChooseTag},
    {"dialog categories", "changed|unchanged", 1, 1, "what the category editor gives back", RefuseDialog},
    {"dialog builder", "TEXT|cancel", 1, 1, "what the query builder gives back", RefuseDialog},
    {"dialog permissions", "NAME|cancel", 1, 1, "what the permission editor gives back", RefuseDialog},
    {"fail", "MEMBER [N]", 1, 2, "makes the N-th next call of that host member fail", PlanFailure},
});

}  // namespace

std::span<const Command> AnswerCommands() {
  return kCommands;
}

}  // namespace plovix::script
