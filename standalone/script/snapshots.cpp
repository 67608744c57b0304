#include "snapshots.h"

#include <plovix/host/recurrence.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/text/iso_time.h>

#include <array>
#include <nlohmann/json.hpp>

#include "words.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

void Describe(const Label& label, Json& json) {
  json["link"] = label.Link();
}

void Describe(const TextBox& box, Json& json) {
  json["text"] = box.Text();
  json["selection"] = {box.SelectionStart(), box.SelectionLength()};
}

void Describe(const CheckBox& box, Json& json) {
  json["value"] = box.Value();
}

void Describe(const OptionButton& button, Json& json) {
  json["selected"] = button.Selected();
}

void Describe(const ComboBox& box, Json& json) {
  Json items = Json::array(), data = Json::array();
  for (int i = 0; i < box.Count(); ++i) {
    items.push_back(box.ItemText(i));
    data.push_back(box.ItemData(i));
  }
  json["text"] = box.Text();
  json["index"] = box.Index();
  json["items"] = std::move(items);
  json["itemData"] = std::move(data);
}

void Describe(const DateTimePicker& picker, Json& json) {
  json["datetime"] = IsoDateTime(picker.Value());
}

void Describe(const HostSlot& slot, Json& json) {
  const auto* list = dynamic_cast<const VeloActionList*>(slot.Embedded().get());
  if (list == nullptr) return;
  Json items = Json::array();
  for (const ActionRecord& action : list->Rows())
    items.push_back(action.name.empty() ? action.kind : action.name);
  json["items"] = std::move(items);
}

// Its caption says all.
void Describe(const Control& /*control*/, Json& /*json*/) {}

Json ControlJson(const Control& control) {
  Json json = {{"kind", KindName(control.GetKind())},
               {"caption", control.Caption()},
               {"enabled", control.Enabled()},
               {"visible", control.Visible()}};
  VisitKind(control, [&](const auto& typed) { Describe(typed, json); });
  return json;
}

struct ObjectKind {
  std::string_view name;
  bool (*fits)(const HostObject* object);
};

template <class T>
constexpr ObjectKind KindOf(std::string_view name) {
  return {name, [](const HostObject* object) { return dynamic_cast<const T*>(object) != nullptr; }};
}

constexpr auto kObjectKinds = std::to_array<ObjectKind>({
    KindOf<AutoTask>("AutoTask"),
    KindOf<DataObject>("DataObject"),
    KindOf<DataObjectsObject>("DataObjects"),
    KindOf<DesignerObjectsObject>("DesignerObjects"),
    KindOf<ActionList>("ActionList"),
    KindOf<Recurrence>("Recurrence"),
    KindOf<DailyPattern>("DailyPattern"),
    KindOf<WeeklyPattern>("WeeklyPattern"),
    KindOf<MonthlyPattern>("MonthlyPattern"),
    KindOf<YearlyPattern>("YearlyPattern"),
    KindOf<CategoryList>("CategoryList"),
    KindOf<ValueStore>("ValueStore"),
    KindOf<Permissions>("Permissions"),
    KindOf<HostObject>("Object"),
});

Json ValueJson(const Value& value, ObjectNumbers& numbers) {
  return std::visit(
      [&]<class T>(const T& held) -> Json {
        if constexpr (std::is_same_v<T, std::monostate>) {
          return nullptr;
        } else if constexpr (std::is_same_v<T, DateTime>) {
          return IsoDateTime(held);
        } else if constexpr (std::is_same_v<T, ObjectRef>) {
          if (!held) return nullptr;
          const auto* kind =
              std::ranges::find_if(kObjectKinds, [&](const auto& each) { return each.fits(held.Get()); });
          return {{"kind", kind->name}, {"number", numbers.Of(held)}};
        } else {
          return held;
        }
      },
      value);
}

}  // namespace

Json PageJson(const VeloWiz* wizard) {
  if (wizard == nullptr || !wizard->IsOpen()) {
    Json json = {{"page", nullptr}};
    if (wizard != nullptr && wizard->End()) {
      json["outcome"] = *wizard->End() == WizardEnd::kFinished ? "finished" : "cancelled";
    }
    return json;
  }
  const auto form = wizard->Controls();
  const WizardButtons buttons = wizard->Buttons();
  Json json = {{"page", wizard->Identifier()},
               {"title", wizard->Title()},
               {"description", wizard->Description()},
               {"canContinue", wizard->CanContinue()},
               {"refreshes", wizard->Refreshes()}};
  json["next"] = wizard->NextIdentifier() ? Json(*wizard->NextIdentifier()) : Json();
  json["buttons"] = {
      {"back", buttons.back}, {"next", buttons.next}, {"finish", buttons.finish}, {"cancel", buttons.cancel}};
  json["focus"] = form->Focused() != nullptr ? Json(form->Focused()->Name()) : Json();
  json["pointer"] = static_cast<int>(form->MousePointer());
  Json& controls = json["controls"] = Json::object();
  for (std::size_t i = 0; i < form->Count(); ++i) {
    controls[std::string(form->At(i).Name())] = ControlJson(form->At(i));
  }
  return json;
}

int ObjectNumbers::Of(const ObjectRef& object) {
  return numbers_.try_emplace(object.Shared(), static_cast<int>(numbers_.size()) + 1).first->second;
}

Json StoreJson(const std::map<std::string, Value>& values, ObjectNumbers& numbers) {
  Json json = Json::object();
  for (const auto& [key, value] : values) json[key] = ValueJson(value, numbers);
  return json;
}

}  // namespace plovix::script
