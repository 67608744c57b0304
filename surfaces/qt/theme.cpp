#include "theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>

namespace plovix::qt {
namespace {

// The colours of a palette: texts have a contrast of at least 4.5 to 1 with their background, outlines 3 to
// 1.
struct Colours {
  QRgb window, base, alternate, button, outline, faint_outline, text, muted, disabled, highlight,
      highlighted_text, link, visited, tip;
};

constexpr Colours kLightColours{.window = 0xfff3f3f3,
                                .base = 0xffffffff,
                                .alternate = 0xfff5f7fa,
                                .button = 0xffebebeb,
                                .outline = 0xff8a8a8a,
                                .faint_outline = 0xffc4c4c4,
                                .text = 0xff1b1b1b,
                                .muted = 0xff5a5a5a,
                                .disabled = 0xff8a8a8a,
                                .highlight = 0xff1f5fa8,
                                .highlighted_text = 0xffffffff,
                                .link = 0xff0b57b0,
                                .visited = 0xff6b3fa0,
                                .tip = 0xffffffe1};
constexpr Colours kDarkColours{.window = 0xff262626,
                               .base = 0xff333333,
                               .alternate = 0xff3a3a3a,
                               .button = 0xff3d3d3d,
                               .outline = 0xff7d7d7d,
                               .faint_outline = 0xff555555,
                               .text = 0xffededed,
                               .muted = 0xffb4b4b4,
                               .disabled = 0xff858585,
                               .highlight = 0xff3576b8,
                               .highlighted_text = 0xffffffff,
                               .link = 0xff7db7ff,
                               .visited = 0xffc3a4f0,
                               .tip = 0xff404040};

QPalette MakePalette(const Colours& colours) {
  QPalette palette(QColor::fromRgb(colours.button), QColor::fromRgb(colours.window));
  const auto set = [&](QRgb colour, std::initializer_list<QPalette::ColorRole> roles) {
    for (const auto role : roles) palette.setColor(role, QColor::fromRgb(colour));
  };
  set(colours.window, {QPalette::Window});
  set(colours.base, {QPalette::Base});
  set(colours.alternate, {QPalette::AlternateBase});
  set(colours.button, {QPalette::Button});
  set(colours.text, {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                     QPalette::BrightText});
  set(colours.outline, {QPalette::Mid});
  set(colours.muted, {QPalette::PlaceholderText});
  set(colours.highlight, {QPalette::Highlight});
  set(colours.highlighted_text, {QPalette::HighlightedText});
  set(colours.link, {QPalette::Link});
  set(colours.visited, {QPalette::LinkVisited});
  set(colours.tip, {QPalette::ToolTipBase});
  const QColor disabled = QColor::fromRgb(colours.disabled);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText, QPalette::Link,
        QPalette::LinkVisited, QPalette::HighlightedText}) {
    palette.setColor(QPalette::Disabled, role, disabled);
  }
  for (const auto role : {QPalette::Base, QPalette::Button}) {
    palette.setColor(QPalette::Disabled, role, QColor::fromRgb(colours.window));
  }
  palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor::fromRgb(colours.button));
  palette.setColor(QPalette::Disabled, QPalette::Mid, QColor::fromRgb(colours.faint_outline));
  return palette;
}

// Fusion outlines with a darker shade of the window's colour, which is invisible in a dark window. This style
// outlines everything that can be checked, edited or pressed in the palette's Mid or, with the focus, in its
// colour.
class OutlineStyle final : public QProxyStyle {
 public:
  OutlineStyle() : QProxyStyle(QStyleFactory::create("fusion")) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool area = element == PE_Frame && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr;
    if (element == PE_IndicatorRadioButton) {
      Outline(option, painter, option->rect.width() / 2.0);
    } else if (element == PE_IndicatorCheckBox || element == PE_FrameLineEdit ||
               element == PE_PanelButtonCommand) {
      Outline(option, painter, kCorner);
    } else if (element == PE_FrameFocusRect && (option->state & State_KeyboardFocusChange) != 0) {
      Outline(option, painter, kCorner);
    } else if (area) {
      Outline(option, painter, 0);
    }
  }

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox || control == CC_SpinBox) Outline(option, painter, kCorner);
  }

  // Check boxes and option buttons grow with their text.
  [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const override {
    const int size = QProxyStyle::pixelMetric(metric, option, widget);
    const bool indicator = metric == PM_IndicatorWidth || metric == PM_IndicatorHeight ||
                           metric == PM_ExclusiveIndicatorWidth || metric == PM_ExclusiveIndicatorHeight;
    return indicator && widget != nullptr ? std::max(size, widget->fontMetrics().ascent()) : size;
  }

 private:
  static constexpr double kCorner = 2;

  static void Outline(const QStyleOption* option, QPainter* painter, double radius) {
    const bool enabled = (option->state & State_Enabled) != 0;
    const bool focused = enabled && (option->state & State_HasFocus) != 0;
    QPen pen(option->palette.color(focused ? QPalette::Highlight : QPalette::Mid));
    if (!enabled) pen.setColor(option->palette.color(QPalette::Disabled, QPalette::Mid));
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, radius > 0);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    const QRectF rect = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter->drawRoundedRect(rect, radius, radius);
    painter->restore();
  }
};

// The system's colours, completed so that help texts, placeholders and outlines are never fainter than this.
QPalette Completed(QPalette palette) {
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const QColor ground = palette.color(QPalette::Active, QPalette::Window);
  const auto shade = [&](int percent) {
    const auto mix = [&](int a, int b) { return (percent * a + (100 - percent) * b) / 100; };
    return QColor(mix(text.red(), ground.red()), mix(text.green(), ground.green()),
                  mix(text.blue(), ground.blue()));
  };
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    palette.setColor(group, QPalette::PlaceholderText, shade(70));
    palette.setColor(group, QPalette::Mid, shade(50));
  }
  palette.setColor(QPalette::Disabled, QPalette::Mid, shade(20));
  return palette;
}

}  // namespace

QFont PageFont() {
  QFont font;
  font.setFamilies({"Tahoma", "DejaVu Sans", "sans-serif"});
  return font;
}

void ApplyPalette(QApplication& application, Palette palette) {
  application.setStyle(new OutlineStyle);
  switch (palette) {
    case Palette::kSystem:
      application.setPalette(QPalette());
      application.setPalette(Completed(application.palette()));
      break;
    case Palette::kLight:
      application.setPalette(MakePalette(kLightColours));
      break;
    case Palette::kDark:
      application.setPalette(MakePalette(kDarkColours));
      break;
  }
}

}  // namespace plovix::qt
