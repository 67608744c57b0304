// A page with a control of every kind, its widgets in a window, and a record of every event it raises.
#pragma once

#include <gtest/gtest.h>
#include <plovix/designs/design.h>
#include <plovix/surfaces/qt/form_widget.h>

#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

namespace plovix::qt {

inline constexpr auto kEveryKind = MakeDesign(
    "EveryKind",
    {
        {"slot", Kind::kHostSlot, "Some.List"},
        {"cmd", Kind::kCommandButton, "..."},
        {"memo", Kind::kTextBox, "", "", "", Style::kMultiLine},
        {"chkInside", Kind::kCheckBox, "R&D", "", "fra"},
        {"fra", Kind::kFrame, "Settings"},
        {"tim", Kind::kDateTimePicker, "", "", "", Style::kTime},
        {"dtp", Kind::kDateTimePicker},
        {"chk", Kind::kCheckBox, "Weekdays only"},
        {"txtDay", Kind::kTextBox},
        {"lst", Kind::kComboBox},
        {"optB", Kind::kOptionButton, "the"},
        {"optA", Kind::kOptionButton, "No data"},
        {"cbo", Kind::kComboBox, "", "", "", Style::kEditable},
        {"txt", Kind::kTextBox},
        {"lblTitle", Kind::kLabel, "Every <b>kind</b> & more", "", "", Style::kHeading},
        {"lblName", Kind::kLabel, "&Name"},
        {"lblCategory", Kind::kLabel, "Category"},
        {"lblHelp", Kind::kLabel, "For tasks without records."},
        {"lblMonths", Kind::kLabel, "month(s)."},
        {"lblLink", Kind::kLabel, "Edit the permissions"},
    },
    {"lblTitle", "lblName txt cmd", "lblCategory cbo", "optA", "lblHelp", "optB lst txtDay lblMonths", "chk",
     "dtp tim", "fra", "chkInside", "memo", "lblLink", "slot"});

struct EmbeddedControl final : HostControl {};

class PageTest : public testing::Test, private UserListener {
 protected:
  PageTest() {
    for (std::size_t i = 0; i < form->Count(); ++i) {
      Control& control = form->At(i);
      for (const Event event :
           {Event::kChange, Event::kClick, Event::kDblClick, Event::kDropDown, Event::kLostFocus}) {
        const std::string name = std::string(control.Name()) + "_" + std::string(EventName(event));
        control.On(event, [this, name] { events.push_back(name); });
      }
    }
    Get<HostSlot>("slot").Embed(std::make_shared<EmbeddedControl>());
    for (const char* entry : {"first", "second", "third"}) {
      Get<ComboBox>("lst").AddItem(entry);
      Get<ComboBox>("cbo").AddItem(entry);
    }
    Get<Label>("lblLink").SetLink(true);
  }

  // Draws the form and gives its window the activation.
  void Open() {
    page = new FormWidget(form, user, [](HostControl&, QWidget* parent) { return new QLineEdit(parent); });
    (new QVBoxLayout(&window))->addWidget(page);
    window.resize(700, 700);
    Activate(window);
    events.clear();
    verbs = 0;
  }

  template <class Type>
  [[nodiscard]] Type& Get(std::string_view name) const {
    return dynamic_cast<Type&>(form->Get(name));
  }
  template <class Type = QWidget>
  [[nodiscard]] Type* At(std::string_view name) const {
    return dynamic_cast<Type*>(page->WidgetOf(name));
  }
  void Press(std::string_view name, Qt::Key key) const { QTest::keyClick(At(name), key); }
  void Click(std::string_view name) const { QTest::mouseClick(At(name), Qt::LeftButton, {}, QPoint(8, 8)); }
  void DoubleClick(std::string_view name) const {
    Click(name);
    QTest::mouseDClick(At(name), Qt::LeftButton, {}, QPoint(8, 8));
    QTest::mouseRelease(At(name), Qt::LeftButton, {}, QPoint(8, 8));
  }
  static void Activate(QWidget& widget) {
    widget.show();
    widget.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
  }
  [[nodiscard]] static std::string Focused() {
    const QWidget* widget = QApplication::focusWidget();
    return widget == nullptr ? "" : widget->objectName().toStdString();
  }

  std::shared_ptr<Form> form = std::make_shared<Form>(kEveryKind.View());
  User user{*this};
  std::vector<std::string> events;
  int verbs = 0;  // that came through the user's door
  QWidget window;
  FormWidget* page = nullptr;  // the window's

 private:
  void EventFailed(const Failure& failure, std::string_view procedure) override {
    ADD_FAILURE() << procedure << ": " << failure.Description();
  }
  void EventBegins() override { ++verbs; }
  void EventEnds() override {}
};

}  // namespace plovix::qt
