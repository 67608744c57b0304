// A page with a control of every kind, and the test fixture that shows it. Used wherever controls and
// surfaces are tested.
#pragma once

#include <gtest/gtest.h>
#include <plovix/controls/user.h>
#include <plovix/designs/design.h>

#include <memory>
#include <string>
#include <vector>

namespace plovix::testing_support {

using namespace std::chrono_literals;

inline constexpr auto kEveryKind = MakeDesign(
    "EveryKind",
    {
        {"slot", Kind::kHostSlot, "Some.List"},
        {"cmd", Kind::kCommandButton, "..."},
        {"cmdLater", Kind::kCommandButton, "Later", "", "", Style::kHidden},
        {"memo", Kind::kTextBox, "", "", "", Style::kMultiLine},
        {"chkInside", Kind::kCheckBox, "&R&&D", "", "fra"},
        {"fra", Kind::kFrame, "Settings"},
        {"tim", Kind::kDateTimePicker, "", "", "", Style::kTime},
        {"dtp", Kind::kDateTimePicker},
        {"chk", Kind::kCheckBox, "Weekdays only"},
        {"chkOff", Kind::kCheckBox, "Off", "", "", Style::kDisabled},
        {"txtDay", Kind::kTextBox},
        {"lst", Kind::kComboBox},
        {"optB", Kind::kOptionButton, "the"},
        {"optA", Kind::kOptionButton, "No &data"},
        {"cbo", Kind::kComboBox, "", "", "", Style::kEditable},
        {"txt", Kind::kTextBox},
        {"lblTitle", Kind::kLabel, "Every <b>kind</b> & more", "", "", Style::kHeading},
        {"lblName", Kind::kLabel, "&Name"},
        {"lblCategory", Kind::kLabel, "Category"},
        {"lblHelp", Kind::kLabel, "For tasks without records."},
        {"lblMonths", Kind::kLabel, "month(s)."},
        {"lblLink", Kind::kLabel, "Edit the permissions", "", "", Style::kLink},
    },
    {"lblTitle", "lblName txt cmd", "lblCategory cbo", "optA", "lblHelp", "optB lst txtDay lblMonths",
     "chk chkOff cmdLater", "dtp tim", "fra", "chkInside", "memo", "lblLink", "slot"});

inline constexpr DateTime kMorning = std::chrono::local_days{2026y / 1 / 31} + 8h + 30min + 15s;

// A page with a control of every kind, whose every event is written down: "optA_Click".
class EveryKindTest : public testing::Test, protected UserListener {
 protected:
  EveryKindTest() {
    for (std::size_t i = 0; i < form->Count(); ++i) {
      for (std::size_t e = 0; e < kEventCount; ++e) {
        const auto event = static_cast<Event>(e);
        const std::string name = std::string(form->At(i).Name()) + "_" + std::string(EventName(event));
        form->At(i).On(event, [this, name] {
          events.push_back(name);
          if (failing) throw Failure(failure_number::kInvalidCall, "no");
        });
      }
    }
    for (const char* entry : {"first", "second", "third"}) Get<ComboBox>("lst").AddItem(entry);
    Get<ComboBox>("cbo").AddItem("first");
  }
  template <class Type = Control>
  [[nodiscard]] Type& Get(std::string_view name) const {
    return dynamic_cast<Type&>(form->Get(name));
  }
  void EventBegins() override { ++verbs, ++depth; }
  void EventEnds() override { --depth; }
  void EventFailed(const Failure& failure, std::string_view procedure) override {
    EXPECT_TRUE(failing && !std::current_exception()) << procedure << ": " << failure.Description();
    failures += std::string(procedure) + ":" + std::to_string(failure.Number()) + " ";
  }

  std::shared_ptr<Form> form = std::make_shared<Form>(kEveryKind.View());
  User user{*this};
  std::vector<std::string> events;
  std::string failures;
  bool failing = false;  // every handler
  int verbs = 0;         // that came through the user's door
  int depth = 0;         // of them, now
};

}  // namespace plovix::testing_support
