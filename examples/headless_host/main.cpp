// A host without a toolkit: it goes through the wizard from the first page to Finish with a user's verbs, and
// prints the result. Compiled a second time, with LOAD_PAGES_FROM, it does not link the pages but loads them.
#include <plovix/component/page_library.h>
#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/wizard/velo_wiz.h>

#include <iostream>

using namespace plovix;

namespace {

// Nobody watches this host: message boxes are printed and answered with OK, failures leave their procedure,
// and every editor is cancelled.
class PrintedDialogs final : public HostDialogs {
 public:
  int MessageBox(const std::string& prompt, int /*buttons*/, const std::string& title) override {
    std::cout << "[" << title << "] " << prompt << '\n';
    return message_box::kOk;
  }
  ReportAction Report(const FailureReport& report) override {
    std::cout << report.page << "." << report.procedure << ", line " << report.line << ": "
              << report.description << '\n';
    return ReportAction::kLeave;
  }
};

// The user: finds controls of the current page by their names.
class Hand {
 public:
  explicit Hand(VeloWiz& wizard) : wizard_(wizard) {}
  void Choose(std::string_view name) { wizard_.User().Choose(At(name)); }
  void Type(std::string_view name, const std::string& text) { wizard_.User().Type(At(name), text); }
  void Toggle(std::string_view name) { wizard_.User().Toggle(At(name)); }
  // What the host's own widget would do for "Add".
  void AddAction(const std::string& text) {
    ActionRecord action = NewAction(*FindActionKind("write-log"));
    action.settings["text"] = text;
    auto& slot = dynamic_cast<HostSlot&>(At("VeloActionList"));
    dynamic_cast<VeloActionList&>(*slot.Embedded()).Append(action);
  }
  void Next() {
    std::cout << wizard_.Identifier() << '\n';
    wizard_.Next();
  }

 private:
  Control& At(std::string_view name) { return wizard_.Controls()->Get(name); }
  VeloWiz& wizard_;
};

void Walk(const PageRegistry& registry) {
  PrintedDialogs dialogs;
  HostState state;
  state.dialogs = &dialogs;
  state.user_id = "ann";
  state.texts = LoadLanguage("en");
  InstallHost(state);

  MemoryStorage storage;
  const auto embed = [](std::string_view) { return std::make_shared<VeloActionList>(); };
  VeloWiz wizard({state, registry, storage, embed}, TaskRecord{});
  Hand hand(wizard);
  wizard.Open("Plovix.AutoTaskType");
  hand.Choose("optNoData");
  hand.Next();
  hand.Next();  // too early: the page says what is missing and stays
  hand.Type("txtName", "Nightly report");
  hand.Type("txtDescription", "Writes a line every second day.");
  hand.Toggle("chkAutoMan");
  hand.Next();
  hand.Next();  // at a time of day
  hand.Choose("optDaily");
  hand.Next();
  hand.Type("txtDays", "2");
  hand.Next();
  hand.AddAction("Good night");
  std::cout << wizard.Identifier() << '\n';
  wizard.Finish();

  for (const TaskRecord& task : storage.List()) {
    const auto& pattern = std::get<DailyRecord>(task.recurrence.value().pattern);
    std::cout << task.name << ": every " << pattern.every_n_days << " days, " << task.actions.size()
              << " action\n";
  }
  InstallServices({});
}

}  // namespace

int main() {
  PageRegistry registry;
#ifdef LOAD_PAGES_FROM
  const PageLibrary pages(LOAD_PAGES_FROM, registry);
#else
  RegisterPages(registry);
#endif
  Walk(registry);
}
