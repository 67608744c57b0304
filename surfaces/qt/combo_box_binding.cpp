#include "combo_box_binding.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <algorithm>
#include <utility>

#include "accessibility.h"
#include "texts.h"

namespace plovix::qt {
namespace {

constexpr int kLeastHeight = 14;  // pixels, of the contents; as QComboBox has it
constexpr int kLongList = 500;  // entries; Qt's popup takes 4 to 5 microseconds for each, whatever is in view

}  // namespace

ComboBoxWidget::ComboBoxWidget(const ComboBox& box, const SurfaceTexts& texts, QWidget* parent)
    : QComboBox(parent), box_(box), texts_(texts), entries_(new EntryModel(box, this)) {
  setModel(entries_);
}

void ComboBoxWidget::UpdateEntries() {
  entries_->Update();
  if (popup_) popup_->EntriesChanged();
}

bool ComboBoxWidget::PopupIsOpen() const {
  return popup_ ? popup_->isVisible() : opened_ && view()->isVisible();
}

void ComboBoxWidget::SetContentsLength(int letters) {
  if (std::exchange(letters_, letters) != letters) updateGeometry();
}

// What QComboBox returns for AdjustToMinimumContentsLengthWithIcon. That policy would create the popup list
// for every box of a page, which is most of the cost of a box.
QSize ComboBoxWidget::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  QSize contents(0, std::max({metrics.height(), kLeastHeight, iconSize().height()}) + 2);
  if (letters_ > 0) contents.setWidth(letters_ * metrics.horizontalAdvance('X') + iconSize().width() + 4);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  return style()->sizeFromContents(QStyle::CT_ComboBox, &option, contents, this);
}

// The handler may replace the page.
bool ComboBoxWidget::AskForEntries() {
  asked_ = true;
  const QPointer<ComboBoxWidget> self(this);
  const auto tell = before_popup;
  tell();
  return self && isEnabled() && isVisible();
}

// Keys move from entry to entry in a closed list, too, which a page may fill only when it is about to open.
// In an editable box only the arrow keys do.
void ComboBoxWidget::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool along = key == Qt::Key_Up || key == Qt::Key_Down;
  const bool far =
      key == Qt::Key_PageUp || key == Qt::Key_PageDown || key == Qt::Key_Home || key == Qt::Key_End;
  const bool types = key != Qt::Key_Space && !event->text().isEmpty() && event->text().at(0).isPrint();
  const bool chooses = along || (!isEditable() && (far || types));
  const bool with_others =
      (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
  if (chooses && !with_others && !asked_ && !AskForEntries()) return;
  QComboBox::keyPressEvent(event);
}

void ComboBoxWidget::wheelEvent(QWheelEvent* event) {
  if (!asked_ && !AskForEntries()) return;
  QComboBox::wheelEvent(event);
}

void ComboBoxWidget::showPopup() {
  if (popup_ && popup_->isVisible()) return;
  if (!AskForEntries()) return;
  opened_ = true;
  if (count() <= kLongList) {
    QComboBox::showPopup();
    return;
  }
  auto* popup = new EntryPopup(box_, texts_, this, [this](int index) { emit activated(index); });
  popup_ = popup;
  popup->Open();
}

void ComboBoxWidget::hidePopup() {
  if (popup_) popup_->close();
  QComboBox::hidePopup();
}

ComboBoxBinding::ComboBoxBinding(Surface& surface, ComboBox& box, QWidget* parent)
    : BindingOf(surface, box), widget_(new ComboBoxWidget(box, surface.texts, parent)) {
  widget_->setFocusPolicy(Qt::StrongFocus);
  widget_->setInsertPolicy(QComboBox::NoInsert);
  if (box.Editable()) MakeEditable();
  Adopt(widget_);
  FitWidth();
  widget_->before_popup = [this] { AsUser([&model = Model()](User& user) { return user.DropDown(model); }); };
  connect(widget_, &QComboBox::activated, this, [this](int index) {
    AsUser([&model = Model(), index](User& user) { return user.Pick(model, index); });
  });
}

// Typing the text of an entry does not pick it, so the box must not complete what is typed, nor search for it
// when the field is left. Qt's own way to make a box editable would create the popup list at once.
void ComboBoxBinding::MakeEditable() {
  widget_->setLineEdit(new QLineEdit(widget_));
  widget_->setCompleter(nullptr);
  QLineEdit* field = widget_->lineEdit();
  disconnect(field, &QLineEdit::editingFinished, widget_, nullptr);
  connect(field, &QLineEdit::textEdited, this, [this](const QString& text) {
    TellProblem(ProblemWith(text));
    AsUser([&model = Model(), typed = text.toStdString()](User& user) { return user.Type(model, typed); });
  });
  KeepToRule(*field);
}

bool ComboBoxBinding::TakesEnter() const {
  return widget_->PopupIsOpen();
}

void ComboBoxBinding::SetAccessibleName(const QString& name) {
  Binding::SetAccessibleName(name);
  if (widget_->lineEdit() != nullptr) Announce(*widget_->lineEdit(), name);
  NameComboBox(*widget_, name);
}

// Qt selects the first entry of a list that was empty; setting the text corrects that.
void ComboBoxBinding::Draw() {
  if (Model().Count() != widget_->count()) {
    widget_->UpdateEntries();
    FitWidth();
  }
  const QString text = Text(Model().Text());
  // Typed text stays although no entry is selected.
  const bool typed = Model().Index() < 0 && Model().Editable() && widget_->currentText() == text;
  if (widget_->currentIndex() != Model().Index() && !typed) widget_->setCurrentIndex(Model().Index());
  if (Model().Editable() && widget_->currentText() != text) widget_->setEditText(text);
}

void ComboBoxBinding::FitWidth() {
  widget_->SetContentsLength(width_.Of(Model()));
}

}  // namespace plovix::qt
