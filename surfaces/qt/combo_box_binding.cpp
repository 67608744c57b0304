#include "combo_box_binding.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <algorithm>

#include "texts.h"

namespace plovix::qt {
namespace {

constexpr int kWidestContents = 24;  // characters; longer entries show in the opened list

}  // namespace

// Whoever is told may replace the page.
void ComboBoxWidget::showPopup() {
  const QPointer<ComboBoxWidget> self(this);
  const auto tell = before_popup;
  tell();
  if (self && isEnabled() && isVisible()) QComboBox::showPopup();
}

ComboBoxBinding::ComboBoxBinding(Surface& surface, ComboBox& box, QWidget* parent)
    : BindingOf(surface, box), widget_(new ComboBoxWidget(parent)), name_(new QLabel(parent)) {
  name_->hide();
  widget_->setFocusPolicy(Qt::StrongFocus);
  widget_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  widget_->setInsertPolicy(QComboBox::NoInsert);
  if (box.Editable()) MakeEditable();
  Adopt(widget_);
  widget_->before_popup = [this] { AsUser([&model = Model()](User& user) { return user.DropDown(model); }); };
  connect(widget_, &QComboBox::activated, this, [this](int index) {
    AsUser([&model = Model(), index](User& user) { return user.Pick(model, index); });
  });
}

// Typing the text of an entry does not pick it, so the box must not complete what is typed, nor look for
// it when the field is left.
void ComboBoxBinding::MakeEditable() {
  widget_->setEditable(true);
  widget_->setCompleter(nullptr);
  QLineEdit* field = widget_->lineEdit();
  disconnect(field, &QLineEdit::editingFinished, widget_, nullptr);
  connect(field, &QLineEdit::textEdited, this, [this](const QString& text) {
    AsUser([&model = Model(), typed = text.toStdString()](User& user) { return user.Type(model, typed); });
  });
}

bool ComboBoxBinding::TakesEnter() const {
  return widget_->view()->isVisible();
}

// Assistive technology reads the current entry as the box's own name, so that a label has to carry the
// name; it need not be seen.
void ComboBoxBinding::SetAccessibleName(const QString& name) {
  Binding::SetAccessibleName(name);
  name_->setText(QString(name).replace('&', "&&"));
  name_->setParent(widget_->parentWidget());
  const auto labels = widget_->parentWidget()->findChildren<QLabel*>();
  const bool named = std::ranges::any_of(
      labels, [&](const QLabel* label) { return label != name_ && label->buddy() == widget_; });
  name_->setBuddy(named ? nullptr : widget_);
}

void ComboBoxBinding::Draw() {
  DrawItems();
  const QString text = Text(Model().Text());
  // What is being typed stays although no entry is selected.
  const bool typed = Model().Index() < 0 && Model().Editable() && widget_->currentText() == text;
  if (widget_->currentIndex() != Model().Index() && !typed) widget_->setCurrentIndex(Model().Index());
  if (Model().Editable() && widget_->currentText() != text) widget_->setEditText(text);
}

// A list only grows, or is emptied.
void ComboBoxBinding::DrawItems() {
  if (Model().Count() < widget_->count() || Model().Count() == 0) {
    widget_->clear();
    longest_ = 0;
  }
  for (int index = widget_->count(); index < Model().Count(); ++index) {
    const QString text = Text(Model().ItemText(index));
    longest_ = std::max(longest_, static_cast<int>(text.size()));
    widget_->addItem(text);
  }
  widget_->setMinimumContentsLength(std::min(longest_, kWidestContents));
}

}  // namespace plovix::qt
