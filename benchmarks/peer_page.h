// The base of the peer's pages, with the parts that several of them share.
#pragma once

#include <QBoxLayout>
#include <QComboBox>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyle>
#include <limits>

#include "peer_wizard.h"

namespace plovix::peer {

inline constexpr int kNoLimit = std::numeric_limits<int>::max();

// A link, or the help text of an option.
class ClickLabel final : public QLabel {
 public:
  using QLabel::QLabel;
  std::function<void()> clicked, double_clicked;

  void SetLink(bool link) {
    QFont look = font();
    look.setUnderline(link);
    setFont(look);
    setForegroundRole(link ? QPalette::Link : QPalette::WindowText);
    setFocusPolicy(link ? Qt::StrongFocus : Qt::NoFocus);
    setCursor(link ? Qt::PointingHandCursor : Qt::ArrowCursor);
  }

 protected:
  void mouseReleaseEvent(QMouseEvent* /*event*/) override {
    if (clicked) clicked();
  }
  void mouseDoubleClickEvent(QMouseEvent* /*event*/) override {
    if (double_clicked) double_clicked();
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Space) clicked();
  }
};

// A page under the wizard's title, with its heading; scrolls in a small window.
class Page : public QWizardPage {
 public:
  Page(TaskWizard& owner, int heading) : owner_(owner) {
    setTitle(Text(4));
    setSubTitle(Text(5));
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins({});
    outer->addWidget(scroll);
    auto* content = new QWidget;
    lines_ = new QVBoxLayout(content);
    scroll->setWidget(content);
    QFont font;
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.35);
    AddText(heading)->setFont(font);
    lines_->addSpacing(fontMetrics().lineSpacing() / 2);
  }

 protected:
  [[nodiscard]] QString Text(int id) const { return owner_.Text(id); }
  // The announced name of a field in a sentence.
  [[nodiscard]] QString Around(int before, int after) const {
    return (before == 0 ? QString() : Text(before)) + " … " + (after == 0 ? QString() : Text(after));
  }

  QLabel* AddText(int text) {
    auto* label = new QLabel(Text(text));
    label->setWordWrap(true);
    lines_->addWidget(label);
    return label;
  }
  // A radio button with its explanation, which can be clicked instead.
  QRadioButton* AddOption(int text, int help, const QString& field) {
    auto* option = NewButton<QRadioButton>(text, field);
    option->setAccessibleDescription(Text(help));
    lines_->addWidget(option);
    auto* label = new ClickLabel(Text(help));
    label->setWordWrap(true);
    label->setIndent(style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, option) +
                     style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, option));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->clicked = [option] { Choose(option); };
    label->double_clicked = [this] { owner_.next(); };
    lines_->addWidget(label);
    lines_->addSpacing(fontMetrics().lineSpacing() / 2);
    return option;
  }
  template <class Button>
  Button* NewButton(int text, const QString& field) {
    auto* button = new Button(Text(text));
    registerField(field, button);
    return button;
  }
  // One of several alternatives on a page: choosing it may complete the page.
  QRadioButton* NewWay(int text, const QString& field) {
    auto* way = NewButton<QRadioButton>(text, field);
    connect(way, &QRadioButton::toggled, this, &QWizardPage::completeChanged);
    return way;
  }
  // A number in a sentence; editing it chooses its alternative.
  QLineEdit* NewNumber(const QString& name, int limit, const QString& field, QRadioButton* way = nullptr) {
    auto* edit = new QLineEdit;
    edit->setObjectName(field);
    edit->setValidator(new QIntValidator(1, limit, edit));
    edit->setFixedWidth(10 * fontMetrics().horizontalAdvance('x'));
    edit->setAccessibleName(name);
    registerField(field, edit);
    if (way != nullptr) connect(edit, &QLineEdit::textEdited, way, [way] { way->setChecked(true); });
    connect(edit, &QLineEdit::textChanged, this, &QWizardPage::completeChanged);
    return edit;
  }
  // A list in a sentence. Assistive technology reads its entry as its name, so a label has to carry the name.
  QComboBox* NewList(int first, int last, const QString& name, const QString& field, QRadioButton* way) {
    auto* list = new QComboBox;
    for (int text = first; text <= last; ++text) list->addItem(Text(text));
    auto* label = new QLabel(name, this);
    label->hide();
    label->setBuddy(list);
    registerField(field, list);
    connect(list, &QComboBox::activated, way, [way] { way->setChecked(true); });
    return list;
  }
  QLabel* NewWord(int text, QWidget* buddy = nullptr) {
    auto* label = new QLabel(Text(text));
    label->setBuddy(buddy);
    return label;
  }
  void AddLine(std::initializer_list<QWidget*> widgets) {
    auto* line = new QHBoxLayout;
    for (QWidget* widget : widgets) line->addWidget(widget);
    line->addStretch();
    lines_->addLayout(line);
  }
  static void Choose(QAbstractButton* button) {
    button->setChecked(true);
    button->setFocus();
  }

  TaskWizard& owner_;
  QVBoxLayout* lines_;
};

}  // namespace plovix::peer
