// A complete host without a toolkit: the wizard in a terminal, the tasks in a text file.
//
//   terminal_host TASKS              lists the tasks in the file TASKS
//   terminal_host TASKS new          makes a task; pages are drawn, and commands read from standard input
//   terminal_host TASKS edit ID
//   terminal_host TASKS delete ID
//
// Compiled a second time, with LOAD_PAGES_FROM, the program is not linked with the pages but loads them.
#include <plovix/component/page_library.h>
#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/tasks/category_column.h>
#include <plovix/standalone/tasks/category_rows.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/wizard/velo_wiz.h>

#include <cstdlib>
#include <iostream>

#include "text_storage.h"

using namespace plovix;

namespace {

// Boxes are answered in a line of standard input, failures leave their procedure, and where this host has no
// editor, nothing comes back, as if the user had cancelled.
class TerminalDialogs final : public HostDialogs {
 public:
  int MessageBox(const std::string& prompt, int buttons, const std::string& title) override {
    std::cout << "[" << title << "] " << prompt;
    const bool yes_no = buttons == message_box::kYesNoQuestion;
    if (!yes_no && buttons != message_box::kOkCancelWarning && buttons != message_box::kOkCancelQuestion) {
      std::cout << '\n';
      return message_box::kOk;
    }
    std::cout << " (y/n) " << std::flush;
    std::string answer;
    const bool agreed = std::getline(std::cin, answer) && answer.starts_with('y');
    if (yes_no) return agreed ? message_box::kYes : message_box::kNo;
    return agreed ? message_box::kOk : message_box::kCancel;
  }
  ReportAction Report(const FailureReport& report) override {
    std::cout << report.page << "." << report.procedure << ", line " << report.line << ": "
              << report.description << '\n';
    return ReportAction::kLeave;
  }
};

// A caption without its mnemonic's mark.
std::string Plain(const std::string& caption) {
  std::string plain;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size() && caption[i + 1] != ' ') ++i;
    plain += caption[i];
  }
  return plain;
}

// What the user has entered or chosen; nothing for a control that has only a caption.
std::optional<std::string> ValueOf(const Control& control) {
  if (const auto* box = dynamic_cast<const TextBox*>(&control)) return box->Text();
  if (const auto* list = dynamic_cast<const ComboBox*>(&control)) return list->Text();
  if (const auto* check = dynamic_cast<const CheckBox*>(&control)) return check->Checked() ? "x" : " ";
  if (const auto* option = dynamic_cast<const OptionButton*>(&control)) return option->Selected() ? "o" : " ";
  if (const auto* picker = dynamic_cast<const DateTimePicker*>(&control)) return IsoDateTime(picker->Value());
  const auto* slot = dynamic_cast<const HostSlot*>(&control);
  if (slot == nullptr) return {};
  std::string rows;
  for (const ActionRecord& action : dynamic_cast<VeloActionList&>(*slot->Embedded()).Rows()) {
    const auto text = action.settings.find("text");
    rows += (text == action.settings.end() ? action.kind : text->second) + "; ";
  }
  return rows;
}

// "[VALUE] CAPTION {NAME}", with its name only where a user can do something.
std::string Drawn(const Control& control) {
  const auto value = ValueOf(control);
  const auto* label = dynamic_cast<const Label*>(&control);
  const bool answers = label != nullptr ? label->Link() : control.GetKind() != Kind::kFrame;
  std::string text = value ? "[" + *value + "] " : "";
  const std::string caption = control.GetKind() == Kind::kHostSlot ? "" : Plain(control.Caption());
  if (!caption.empty()) text += caption + " ";
  return text + (answers && control.Usable() ? "{" + std::string(control.Name()) + "} " : "");
}

class TerminalWizard {
 public:
  TerminalWizard(const WizardParts& parts, const TaskRecord& task)
      : wizard_(parts, task, {{store_key::kCreateGroup, true}, {store_key::kCreatePersonal, true}}) {}

  // False when the user cancelled, or there are no more commands.
  bool Run() {
    std::string line;
    if (!wizard_.Open(page_identifier::kAutoTaskType)) return false;
    std::cout << "NAME clicks, NAME=TEXT types or picks.\n\n";
    for (Draw(); wizard_.IsOpen() && std::getline(std::cin, line); Draw()) Obey(line);
    return wizard_.End() == WizardEnd::kFinished;
  }

 private:
  void Draw() {
    const auto form = wizard_.Controls();
    if (!form) return;
    for (const std::string_view line : form->Design().lines) {
      std::istringstream names{std::string(line)};
      for (std::string name; names >> name;) {
        if (const Control& control = form->Get(name); control.Visible()) std::cout << Drawn(control);
      }
      std::cout << '\n';
    }
    const WizardButtons buttons = wizard_.Buttons();
    std::cout << (buttons.back ? "<{back}> " : "") << (buttons.next ? "<{next}> " : "")
              << (buttons.finish ? "<{finish}> " : "") << "<{cancel}>\n> " << std::flush;
  }

  // "NAME" clicks, "NAME=TEXT" types or picks.
  void Obey(const std::string& line) {
    const std::string name = line.substr(0, line.find('='));
    const std::string text = line.size() > name.size() ? line.substr(name.size() + 1) : "";
    const auto form = wizard_.Controls();  // kept: a verb may bring another page
    Control* const focused = form->Focused();
    if (focused != nullptr && focused->Name() != name) wizard_.User().Leave(*focused);
    Control* const control = form->Find(name);
    const bool done = name == "back"     ? wizard_.Back()
                      : name == "next"   ? wizard_.Next()
                      : name == "finish" ? wizard_.Finish()
                      : name == "cancel" ? wizard_.Cancel()
                                         : control != nullptr && Use(*control, text);
    if (!done) std::cout << "That cannot be done now: " << line << '\n';
  }

  bool Use(Control& control, const std::string& text) {
    if (auto* list = dynamic_cast<ComboBox*>(&control)) {
      wizard_.User().DropDown(*list);  // the page may fill it now
      for (int index = 0; index < list->Count(); ++index) {
        if (list->ItemText(index) == text) return wizard_.User().Pick(*list, index);
      }
    }
    if (dynamic_cast<DateTimePicker*>(&control) != nullptr) {
      const auto moment = ParseIsoDateTime(text);
      return moment && wizard_.User().Set(control, *moment);
    }
    if (auto* slot = dynamic_cast<HostSlot*>(&control)) {
      ActionRecord action = NewAction(*FindActionKind("write-log"));
      action.settings["text"] = text;
      dynamic_cast<VeloActionList&>(*slot->Embedded()).Append(action);
      return true;
    }
    return wizard_.User().Type(control, text) || wizard_.User().Click(control);
  }

  VeloWiz wizard_;
};

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

int Run(const std::vector<std::string>& arguments) {
  TerminalDialogs dialogs;
  HostState state;
  state.dialogs = &dialogs;
  state.user_id = Variable("USER");  // empty: nobody sits here, and a task cannot be personal
  state.texts = LoadPreferredLanguage({Variable("LANG")});
  auto data = std::make_shared<MemoryDataSource>();
  data->entries = {{{"Customer", "Customers", "Id"}, {}}, {{"Invoice", "Invoices", "Number"}, {}}};
  state.data = data;
  TextStorage storage(arguments.at(0), state.texts);
  state.open_rows = [&storage](const std::string& /*query*/) {
    std::vector<std::string> columns;
    for (const TaskRecord& task : storage.List()) columns.push_back(EncodeCategories(task.categories));
    return CategoryRows(columns);
  };
  InstallHost(state);
  PageRegistry registry;
#ifdef LOAD_PAGES_FROM
  const PageLibrary pages(LOAD_PAGES_FROM, registry);
#else
  RegisterPages(registry);
#endif
  const std::string command = arguments.size() > 1 ? arguments[1] : "list";
  const auto task = arguments.size() > 2 ? storage.Load(std::atoll(arguments[2].c_str())) : TaskRecord{};
  if (command != "list" && !task) throw Failure(failure_number::kInvalidCall, "There is no such task.");
  if (command == "delete") storage.Delete(task->id, task->version);
  if (command == "new" || command == "edit") {
    const auto embed = [](std::string_view) { return std::make_shared<VeloActionList>(); };
    if (!TerminalWizard({state, registry, storage, embed}, *task).Run()) return 1;
  }
  for (const TaskRecord& each : storage.List()) {
    std::cout << each.id << ": " << each.name << (each.recurrence ? ", scheduled" : "") << ", "
              << each.actions.size() << " action(s)\n";
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc > 1) return Run({argv + 1, argv + argc});
    std::cerr << "terminal_host TASKS [new | edit ID | delete ID]\n";
  } catch (const std::exception& problem) {
    std::cerr << problem.what() << '\n';
  }
  return 2;
}
