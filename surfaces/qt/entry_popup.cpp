#include "entry_popup.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "accessibility.h"
#include "plain_text.h"
#include "texts.h"

namespace plovix::qt {
namespace {

constexpr int kMostShown = 200;  // matches; their layout takes a millisecond
constexpr int kRowsHigh = 12;    // in view at a time

}  // namespace

EntryPopup::EntryPopup(const ComboBox& box, const SurfaceTexts& texts, QWidget* owner,
                       std::function<void(int)> choose)
    : QWidget(owner, Qt::Popup),
      box_(box),
      texts_(texts),
      owner_(owner),
      choose_(std::move(choose)),
      search_(new QLineEdit),
      list_(new QListView),
      note_(NewLabel()),
      rows_(new QStringListModel(this)) {
  AnnounceAs(*this, QAccessible::Dialog);
  setAttribute(Qt::WA_DeleteOnClose);
  setFont(owner->font());
  setLayoutDirection(owner->layoutDirection());
  setAccessibleName(owner->accessibleName());
  search_->setPlaceholderText(Text(texts.search));
  search_->setAccessibleName(Text(texts.search));
  search_->setClearButtonEnabled(true);
  search_->installEventFilter(this);
  connect(search_, &QLineEdit::textChanged, this, [this] { ShowMatches(); });
  BuildList();
  note_->setForegroundRole(QPalette::PlaceholderText);
  note_->setMinimumHeight(note_->fontMetrics().lineSpacing());  // without a text, too
  auto* layout = new QVBoxLayout(this);
  const int margin = fontMetrics().lineSpacing() / 4;
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->setSpacing(margin);
  layout->addWidget(search_);
  layout->addWidget(list_, 1);
  layout->addWidget(note_);
}

// Keys go to the search field, so the list is only viewed and clicked.
void EntryPopup::BuildList() {
  list_->setModel(rows_);
  list_->setFocusPolicy(Qt::NoFocus);
  list_->setFrameShape(QFrame::NoFrame);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setMouseTracking(true);
  list_->setAccessibleName(owner_->accessibleName());
  connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) { Choose(index.row()); });
  connect(list_, &QListView::entered, this,
          [this](const QModelIndex& index) { list_->setCurrentIndex(index); });
}

void EntryPopup::Open() {
  ShowMatches();
  Place();
  search_->setFocus();
  show();
  SetRow(matches_.row);  // again, because assistive technology reads only what is visible
  list_->scrollTo(list_->currentIndex(), QListView::PositionAtCenter);
}

// Places it below the owner, or above it if there is more room, as wide as its entries if the screen allows.
void EntryPopup::Place() {
  const QRect screen = owner_->screen()->availableGeometry();
  const QRect at(owner_->mapToGlobal(QPoint(0, 0)), owner_->size());
  const int row = std::max(list_->sizeHintForRow(0), 1);
  const int around = layout()->sizeHint().height() - list_->sizeHint().height();
  const int scroll_bar = list_->verticalScrollBar()->sizeHint().width();
  const int margins = 2 * layout()->contentsMargins().left();
  const int width = std::clamp(list_->sizeHintForColumn(0) + scroll_bar + margins, at.width(),
                               std::max(at.width(), screen.width() / 2));
  const int below = screen.bottom() - at.bottom();
  const int above = at.top() - screen.top();
  const int wanted = around + kRowsHigh * row;
  const bool goes_below = below >= wanted || below >= above;
  const int height = std::min(wanted, goes_below ? below : above);
  const int left = isRightToLeft() ? at.right() + 1 - width : at.left();
  setGeometry(std::clamp(left, screen.left(), std::max(screen.left(), screen.right() + 1 - width)),
              goes_below ? at.bottom() + 1 : at.top() - height, width, height);
}

void EntryPopup::ShowMatches(std::optional<int> around) {
  matches_ = surface::FindMatches(box_, search_->text().toStdString(), around, kMostShown, Characters());
  QStringList texts;
  for (const int entry : matches_.entries) texts << Shortened(Text(box_.ItemText(entry)), kLongestShown);
  rows_->setStringList(texts);
  ShowNote();
  SetRow(matches_.row);
}

void EntryPopup::ShowNote() {
  QString note;
  if (matches_.entries.empty()) note = Text(texts_.no_match);
  if (matches_.hidden > 0) note = Text(texts_.more(QLocale().toString(matches_.hidden).toStdString()));
  note_->setText(note);
  search_->setAccessibleDescription(note);
}

// No key pressed here is a shortcut of the window behind.
bool EntryPopup::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();
    return true;
  }
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<QKeyEvent&>(*event);
  return TakesKey(key.key(), key.modifiers().testFlag(Qt::AltModifier));
}

// False for keys that go to the search field.
bool EntryPopup::TakesKey(int key, bool with_alt) {
  switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (with_alt) {
        close();
      } else {
        GoDown(key == Qt::Key_Down ? 1 : -1);
      }
      return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: {
      const int page = std::max(1, list_->viewport()->height() / std::max(1, list_->sizeHintForRow(0)) - 1);
      GoDown(key == Qt::Key_PageDown ? page : -page);
      return true;
    }
    case Qt::Key_Home:
    case Qt::Key_End:
      ShowMatches(key == Qt::Key_Home ? 0 : box_.Count());
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Choose(list_->currentIndex().row());
      return true;
    case Qt::Key_Escape:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_F4:
      close();
      return true;
    default:
      return false;
  }
}

// Goes up if `rows` is negative.
void EntryPopup::GoDown(int rows) {
  const int count = static_cast<int>(matches_.entries.size());
  const int from = list_->currentIndex().row();
  const bool leaves =
      (from + rows < 0 && !matches_.from_first) || (from + rows >= count && !matches_.to_last);
  if (leaves && from >= 0) ShowMatches(matches_.entries[static_cast<std::size_t>(from)]);
  const int last = static_cast<int>(matches_.entries.size()) - 1;
  SetRow(std::clamp(list_->currentIndex().row() + rows, std::min(0, last), last));
}

// The focus stays in the search field, so the row must be announced to assistive technology.
void EntryPopup::SetRow(int row) {
  const QModelIndex index = rows_->index(row);
  list_->setCurrentIndex(index);
  if (!index.isValid()) return;
  list_->scrollTo(index);
  QAccessibleEvent event(list_, QAccessible::Focus);
  event.setChild(row);
  QAccessible::updateAccessibility(&event);
}

// Outlined like an editable field, because a frame's shades are invisible in dark windows.
void EntryPopup::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// A press on the owner closes the popup and must not open it again.
void EntryPopup::mousePressEvent(QMouseEvent* event) {
  const QPoint at = owner_->mapFromGlobal(event->globalPosition().toPoint());
  if (owner_->rect().contains(at)) setAttribute(Qt::WA_NoMouseReplay);
  if (!rect().contains(event->position().toPoint())) close();
}

void EntryPopup::Choose(int row) {
  if (row < 0 || row >= static_cast<int>(matches_.entries.size())) return;
  const int entry = matches_.entries[static_cast<std::size_t>(row)];
  const auto choose = choose_;
  close();
  choose(entry);
}

}  // namespace plovix::qt
