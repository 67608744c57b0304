// The commands that play the user, through User and the wizard's buttons.
#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/objects/velo_action_list.h>

#include <array>
#include <nlohmann/json.hpp>

#include "commands.h"

namespace plovix::script {
namespace {

void Refuse(ScriptSession& session, const std::string& what) {
  session.Print({{"refused", what}});
}

// Lets `act` play the user on the control named by the first word, unless the user could not reach it.
template <class Fits, class Act>
void Play(ScriptSession& session, std::string_view verb, const Words& words, Fits fits, Act act) {
  VeloWiz& wizard = session.Wizard();
  const auto form = wizard.Controls();
  Control* control = form->Find(words[0]);
  if (control == nullptr) throw LineError("the page " + wizard.Identifier() + " has no control " + words[0]);
  if (!fits(*control)) {
    throw LineError("no " + std::string(verb) + " on " + words[0] + ", a " +
                    std::string(KindName(control->GetKind())));
  }
  if (!control->Usable() || !act(wizard, *control)) Refuse(session, std::string(verb) + " " + words[0]);
}

template <Kind... kKinds>
bool IsOneOf(const Control& control) {
  return ((control.GetKind() == kKinds) || ...);
}

bool CanBeTyped(const Control& control) {
  const auto* combo = dynamic_cast<const ComboBox*>(&control);
  return control.GetKind() == Kind::kTextBox || (combo != nullptr && combo->Editable());
}

void Type(ScriptSession& session, const Words& words) {
  Play(session, "type", words, CanBeTyped,
       [&](VeloWiz& wizard, Control& control) { return wizard.User().Type(control, words[1]); });
}

void Toggle(ScriptSession& session, const Words& words) {
  Play(session, "toggle", words, IsOneOf<Kind::kCheckBox>,
       [](VeloWiz& wizard, Control& control) { return wizard.User().Toggle(control); });
}

void Choose(ScriptSession& session, const Words& words) {
  Play(session, "choose", words, IsOneOf<Kind::kOptionButton>,
       [](VeloWiz& wizard, Control& control) { return wizard.User().Choose(control); });
}

void Press(ScriptSession& session, const Words& words) {
  Play(session, "press", words, IsOneOf<Kind::kCommandButton>,
       [](VeloWiz& wizard, Control& control) { return wizard.User().Press(control); });
}

void Click(ScriptSession& session, const Words& words) {
  Play(session, "click", words,
       IsOneOf<Kind::kLabel, Kind::kCommandButton, Kind::kOptionButton, Kind::kCheckBox>,
       [](VeloWiz& wizard, Control& control) { return wizard.User().Click(control); });
}

// The whole gesture: the first click, and the second unless the first one left the page.
void DoubleClick(ScriptSession& session, const Words& words) {
  Play(session, "dblclick", words, IsOneOf<Kind::kLabel, Kind::kOptionButton>,
       [](VeloWiz& wizard, Control& control) {
         const auto form = wizard.Controls();
         if (!wizard.User().Click(control)) return false;
         return wizard.Controls() != form || wizard.User().DoubleClick(control);
       });
}

void Drop(ScriptSession& session, const Words& words) {
  Play(session, "drop", words, IsOneOf<Kind::kComboBox, Kind::kHostSlot>,
       [](VeloWiz& wizard, Control& control) {
         if (control.GetKind() == Kind::kComboBox) return wizard.User().DropDown(control);
         auto* list = dynamic_cast<VeloActionList*>(static_cast<HostSlot&>(control).Embedded().get());
         if (list != nullptr) static_cast<void>(list->OfferedKinds());
         return list != nullptr;
       });
}

void Leave(ScriptSession& session, const Words& words) {
  Play(
      session, "leave", words,
      [](const Control& control) { return !IsOneOf<Kind::kLabel, Kind::kFrame>(control); },
      [](VeloWiz& wizard, Control& control) { return wizard.User().Leave(control); });
}

// Position of the entry that the word names: a number is a position, anything else a text.
int EntryOf(const ComboBox& box, const std::string& word) {
  if (IsInteger(word)) {
    const int index = IntegerFrom<int>(word);
    if (index >= 0 && index < box.Count()) return index;
  } else {
    for (int i = 0; i < box.Count(); ++i) {
      if (box.ItemText(i) == word) return i;
    }
  }
  throw LineError(std::string(box.Name()) + " has no entry " + word);
}

void Pick(ScriptSession& session, const Words& words) {
  Play(session, "pick", words, IsOneOf<Kind::kComboBox>, [&](VeloWiz& wizard, Control& control) {
    return wizard.User().Pick(control, EntryOf(static_cast<ComboBox&>(control), words[1]));
  });
}

void SetPicker(ScriptSession& session, const Words& words) {
  const DateTime value = DateTimeFrom(words[1]);
  Play(session, "set", words, IsOneOf<Kind::kDateTimePicker>,
       [&](VeloWiz& wizard, Control& control) { return wizard.User().Set(control, value); });
}

// Refuses a disabled button, and any button without an open wizard.
void PressButton(ScriptSession& session, const std::string& button, bool (VeloWiz::*press)()) {
  if (!session.IsOpen() || !(session.Wizard().*press)()) Refuse(session, button);
}

void Next(ScriptSession& session, const Words& /*words*/) {
  PressButton(session, "next", &VeloWiz::Next);
}

void Back(ScriptSession& session, const Words& /*words*/) {
  PressButton(session, "back", &VeloWiz::Back);
}

// The task then has the id under which it is stored.
void Finish(ScriptSession& session, const Words& /*words*/) {
  const bool was_open = session.IsOpen();
  PressButton(session, "finish", &VeloWiz::Finish);
  if (was_open && !session.IsOpen()) session.SetTask(session.LastWizard()->Saved());
}

void Cancel(ScriptSession& session, const Words& /*words*/) {
  PressButton(session, "cancel", &VeloWiz::Cancel);
}

void Open(ScriptSession& session, const Words& words) {
  session.Open(words.empty() ? page_identifier::kAutoTaskType : words[0]);
}

void LeavePage(ScriptSession& session, const Words& words) {
  const auto direction = IntegerFrom<std::int32_t>(words[0]);
  const bool answer = session.Wizard().AskToLeave(direction);
  session.SceneChanged();
  session.Print({{"direction", direction}, {"answer", answer}});
}

constexpr auto kUserCommands = std::to_array<Command>({
    {"open", "[IDENTIFIER]", 0, 1, "starts the wizard at that page", Open},
    {"type", "CONTROL TEXT", 2, 2, "replaces the text", Type},
    {"toggle", "CONTROL", 1, 1, "a check box", Toggle},
    {"choose", "CONTROL", 1, 1, "an option button", Choose},
    {"press", "CONTROL", 1, 1, "a command button", Press},
    {"click", "CONTROL", 1, 1, "a label or button", Click},
    {"dblclick", "CONTROL", 1, 1, "a double click on a label or option button", DoubleClick},
    {"drop", "CONTROL", 1, 1, "opens a list, or what the action list offers", Drop},
    {"leave", "CONTROL", 1, 1, "takes the focus away", Leave},
    {"pick", "CONTROL INDEX|TEXT", 2, 2, "a list entry; the first has index 0", Pick},
    {"set", "CONTROL DATETIME", 2, 2, "a date or time picker", SetPicker},
    {"next", "", 0, 0, "the wizard's button", Next},
    {"back", "", 0, 0, "the wizard's button", Back},
    {"finish", "", 0, 0, "the wizard's button", Finish},
    {"cancel", "", 0, 0, "the wizard's button", Cancel},
    {"leave-page", "CODE", 1, 1, "asks the page with a raw direction code, without moving", LeavePage},
});

}  // namespace

std::span<const Command> UserCommands() {
  return kUserCommands;
}

}  // namespace plovix::script
