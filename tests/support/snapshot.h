// The state of a task, a store and a page as names with texts, so that two states compare and show where
// they differ.
#pragma once

#include <map>
#include <string>

#include "scene.h"

namespace plovix::testing_support {

using Snapshot = std::map<std::string, std::string>;

inline std::string Text(bool value) {
  return value ? "true" : "false";
}
inline std::string Text(DateTime value) {
  return std::to_string(value.time_since_epoch().count());
}

inline std::string Text(const ActionRecord& action) {
  std::string text = action.kind + "|" + action.name + "|" + std::to_string(action.record_modes) + "|" +
                     std::to_string(action.capabilities);
  for (const auto& [key, value] : action.settings) text += "|" + key + "=" + value;
  return text;
}

// Everything but id, version and time of change, which only the storage writes.
inline Snapshot TaskFields(const TaskRecord& task) {
  Snapshot fields = {
      {"RecordMode", std::to_string(task.record_mode)},
      {"UsesLanguageTags", Text(task.uses_language_tags)},
      {"Name", task.name},
      {"ShortDescription", task.short_description},
      {"Description", task.description},
      {"NameTag", task.name_tag},
      {"ShortDescriptionTag", task.short_description_tag},
      {"DescriptionTag", task.description_tag},
      {"DataObjectName", task.data_object_name},
      {"DataObjectCaption", task.data_object_caption},
      {"AllowAutomationManager", Text(task.allow_automation_manager)},
      {"SkipRowSelection", Text(task.skip_row_selection)},
      {"Owner", task.owner},
      {"Query", task.query},
      {"Processing", std::to_string(task.processing_mode) + Text(task.process_all_records) +
                         Text(task.process_failed_records) + Text(task.base_date)},
      {"Actions", ""},
      {"Categories", ""},
  };
  for (const auto& action : task.actions) fields["Actions"] += Text(action) + "\n";
  for (const auto& category : task.categories)
    fields["Categories"] += category.tag + Text(category.is_public) + "\n";
  return fields;
}

// Objects count as there or not there: which object it is differs from run to run.
inline std::string Text(const Value& value) {
  struct Visitor {
    std::string operator()(std::monostate) const { return "missing"; }
    std::string operator()(bool v) const { return Text(v); }
    std::string operator()(std::int32_t v) const { return std::to_string(v); }
    std::string operator()(double v) const { return std::to_string(v); }
    std::string operator()(const std::string& v) const { return '"' + v + '"'; }
    std::string operator()(DateTime v) const { return Text(v); }
    std::string operator()(const ObjectRef& v) const { return v ? "object" : "nothing"; }
  };
  return std::visit(Visitor{}, value);
}

inline std::string Text(Control& control) {
  std::string text = control.Caption() + (control.Enabled() ? "" : " disabled") +
                     (control.Visible() ? "" : " hidden") + (control.HasFocus() ? " focus" : "");
  if (const auto* box = dynamic_cast<TextBox*>(&control)) {
    text += " '" + box->Text() + "' " + std::to_string(box->SelectionStart()) + "+" +
            std::to_string(box->SelectionLength());
  } else if (const auto* check = dynamic_cast<CheckBox*>(&control)) {
    text += " " + std::to_string(check->Value());
  } else if (const auto* option = dynamic_cast<OptionButton*>(&control)) {
    text += option->Selected() ? " selected" : "";
  } else if (const auto* combo = dynamic_cast<ComboBox*>(&control)) {
    text += " '" + combo->Text() + "' " + std::to_string(combo->Index());
    for (int i = 0; i < combo->Count(); ++i) {
      text += " [" + combo->ItemText(i) + "/" + std::to_string(combo->ItemData(i)) + "]";
    }
  } else if (const auto* picker = dynamic_cast<DateTimePicker*>(&control)) {
    text += " " + Text(picker->Value());
  } else if (const auto* label = dynamic_cast<Label*>(&control)) {
    text += label->Link() ? " link" : "";
  } else if (const auto* slot = dynamic_cast<HostSlot*>(&control)) {
    if (const auto* list = dynamic_cast<VeloActionList*>(slot->Embedded().get())) {
      for (const auto& row : list->Rows()) text += " (" + Text(row) + ")";
    }
  }
  return text;
}

inline Snapshot TaskAndStore(const TaskObject& task, const StoreObject& store) {
  Snapshot all = TaskFields(task.Record());
  for (const auto& [key, value] : store.values) all["store " + key] = Text(value);
  return all;
}

inline Snapshot Everything(const Bench& bench) {
  Snapshot all = TaskAndStore(*bench.task, *bench.store);
  for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
    Control& control = bench.Controls().At(i);
    all["control " + std::string(control.Name())] = Text(control);
  }
  all["pointer"] = std::to_string(static_cast<int>(bench.Controls().MousePointer()));
  all["pushed"] = bench.host->pushes.empty() ? "nothing" : Text(static_cast<bool>(bench.host->pushes.back()));
  all["moves"] = std::to_string(bench.host->moves);
  return all;
}

}  // namespace plovix::testing_support
