// A user's act may take the page away while its widgets are still at work; what the page put over the
// program goes with it. And the colours: everything can be read.
#include <plovix/surfaces/qt/theme.h>

#include <QApplication>
#include <QPalette>
#include <cmath>

#include "page_fixture.h"

namespace plovix::qt {
namespace {

class LifetimeTest : public PageTest {};

TEST_F(LifetimeTest, AnActMayReplaceThePage) {
  const std::vector<std::pair<const char*, Event>> acts{
      {"lblHelp", Event::kDblClick}, {"optA", Event::kDblClick}, {"cmd", Event::kClick},
      {"txt", Event::kChange},       {"lst", Event::kDropDown},  {"txt", Event::kLostFocus}};
  for (const auto& [name, event] : acts) {
    page = new FormWidget(form, user, {}, &window);
    page->resize(600, 600);
    page->show();
    Activate(window);
    const QPointer<FormWidget> shown(page);
    const std::weak_ptr<Form> dropped(form);
    form->Get(name).On(event, [&] {
      page->hide();
      page->deleteLater();
      form = std::make_shared<Form>(kEveryKind.View());
    });
    form->Get(name).SetFocus();
    switch (event) {
      case Event::kDblClick:
        DoubleClick(name);
        break;
      case Event::kClick:
        Click(name);
        break;
      case Event::kChange:
        Press(name, Qt::Key_A);
        break;
      case Event::kDropDown:
        At<QComboBox>(name)->showPopup();
        break;
      case Event::kLostFocus:
        Press(name, Qt::Key_Tab);
        break;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(shown) << name;
    EXPECT_TRUE(dropped.expired()) << name;
  }
}

TEST_F(LifetimeTest, TheWaitPointerEndsWithThePage) {
  form->SetMousePointer(Pointer::kWait);
  Open();
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  form->SetMousePointer(Pointer::kDefault);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  form->SetMousePointer(Pointer::kWait);
  EXPECT_NE(QApplication::overrideCursor(), nullptr);
  delete page;
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  form->Get("txt").SetCaption("nobody listens");
  form->SetMousePointer(Pointer::kDefault);
  form->Redraw();
}

double Luminance(const QColor& colour) {
  const auto linear = [](double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

TEST(Theme, TextsCanBeRead) {
  auto& application = *static_cast<QApplication*>(QCoreApplication::instance());
  using Roles = std::vector<std::pair<QPalette::ColorRole, QPalette::ColorRole>>;
  const Roles pairs{{QPalette::WindowText, QPalette::Window},
                    {QPalette::Text, QPalette::Base},
                    {QPalette::Text, QPalette::AlternateBase},
                    {QPalette::ButtonText, QPalette::Button},
                    {QPalette::PlaceholderText, QPalette::Window},
                    {QPalette::PlaceholderText, QPalette::Base},
                    {QPalette::Link, QPalette::Window},
                    {QPalette::HighlightedText, QPalette::Highlight},
                    {QPalette::ToolTipText, QPalette::ToolTipBase}};
  for (const Palette palette : {Palette::kLight, Palette::kDark}) {
    ApplyPalette(application, palette);
    const QPalette colours = QApplication::palette();
    for (const auto& [text, ground] : pairs) {
      EXPECT_GE(Contrast(colours.color(text), colours.color(ground)), 4.5) << text << " on " << ground;
      const auto disabled = [&](QPalette::ColorRole role) { return colours.color(QPalette::Disabled, role); };
      EXPECT_GE(Contrast(disabled(text), disabled(ground)), 2.0) << "disabled: " << text << " on " << ground;
    }
    EXPECT_GE(Contrast(colours.color(QPalette::Mid), colours.color(QPalette::Window)), 3.0);
  }
}

}  // namespace
}  // namespace plovix::qt
