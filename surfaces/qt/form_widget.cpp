#include "form_widget.h"

#include <plovix/surfaces/common/widths.h>

#include <QApplication>
#include <QBoxLayout>
#include <QScrollArea>
#include <algorithm>
#include <utility>

#include "accessibility.h"
#include "binding_factory.h"
#include "page_layout.h"
#include "texts.h"
#include "theme.h"

namespace plovix::qt {
namespace {

// The wait pointer over the whole program, while it is wanted.
class WaitPointer {
 public:
  WaitPointer() = default;
  ~WaitPointer() { Show(false); }
  WaitPointer(const WaitPointer&) = delete;
  WaitPointer& operator=(const WaitPointer&) = delete;

  void Show(bool wait) {
    if (wait == std::exchange(shown_, wait)) return;
    if (wait) {
      QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
      QGuiApplication::restoreOverrideCursor();
    }
  }

 private:
  bool shown_ = false;
};

}  // namespace

// The contents of the widget: the bindings of a form, in its layout.
class FormWidget::Page final : private FormObserver {
 public:
  Page(Surface surface, QWidget* content) : surface_(std::move(surface)) {
    surface_.captions_changed = [this] { NameFields(); };
    // Created in Tab order, so that little has to be chained again.
    const std::vector<Control*> order = Reading().InOrder(surface_.options.tab_order);
    for (Control* control : order) surface_.bindings[control] = MakeBinding(surface_, *control, content);
    LayOut(Reading().Lines(), surface_.bindings, content, static_cast<bool>(surface_.options.refuse));
    ChainTabStops(order, surface_.bindings);
    RedrawRequested();
    NameFields();
    PointerChanged();
    Controls().Observe(this);
  }
  ~Page() override { Controls().Observe(nullptr); }

  [[nodiscard]] Form& Controls() const { return *surface_.form; }
  [[nodiscard]] std::shared_ptr<Form> Kept() const { return surface_.form; }
  [[nodiscard]] const surface::PageReading& Reading() const { return surface_.reading; }
  [[nodiscard]] Binding& BindingOf(const Control& control) const { return *surface_.bindings.at(&control); }

  // The binding whose widget is or contains `widget`; nullptr outside the page.
  [[nodiscard]] Binding* Holding(const QWidget* widget) const {
    for (; widget != nullptr; widget = widget->parentWidget()) {
      for (const auto& [control, binding] : surface_.bindings) {
        if (binding->Widget() == widget) return binding.get();
      }
    }
    return nullptr;
  }

  void Focus(Control& control) {
    {
      const PageWrite write(surface_);
      BindingOf(control).TakeFocus(Qt::TabFocusReason);
    }
    const auto* option = dynamic_cast<OptionButton*>(&control);
    if (control.HasFocus() || (option != nullptr && !option->Selected())) return;
    surface_.user.Enter(control);
  }

 private:
  void PointerChanged() override { pointer_.Show(Controls().MousePointer() == Pointer::kWait); }
  void RedrawRequested() override {
    for (const auto& [control, binding] : surface_.bindings) binding->DrawAll();
  }

  // Again when a caption has changed.
  void NameFields() {
    for (const auto& [control, name, description] : Reading().Announcements(Characters())) {
      Binding& binding = BindingOf(*control);
      binding.SetAccessibleName(Text(name));
      const QString help = Text(description);
      if (!help.isEmpty() && binding.Widget()->accessibleDescription() != help)
        binding.Widget()->setAccessibleDescription(help);
    }
  }

  Surface surface_;
  WaitPointer pointer_;
};

FormWidget::FormWidget(std::shared_ptr<Form> form, User& user, SlotFactory make_slot, QWidget* parent,
                       SurfaceTexts texts, SurfaceOptions options)
    : QWidget(parent) {
  AnnounceAs(*this, QAccessible::Grouping);
  setFont(PageFont());
  auto* scroll = new QScrollArea(this);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidgetResizable(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(scroll);
  auto* content = new QWidget(scroll->viewport());  // never a separate window, which would cost more
  scroll->setWidget(content);
  page_ = std::make_unique<Page>(
      Surface{std::move(form), user, std::move(make_slot), std::move(texts), std::move(options)}, content);
  setAccessibleName(Heading());
}

// Embedded widgets draw what only the form owns, so they are deleted before it.
FormWidget::~FormWidget() {
  const std::shared_ptr<Form> kept = page_->Kept();
  page_.reset();
  qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

QString FormWidget::Heading() const {
  const Control* heading = page_->Reading().Heading();
  return heading == nullptr ? QString() : Text(heading->Caption());
}

void FormWidget::FocusFirst() {
  Control* target = page_->Reading().FirstFocus();
  if (target != nullptr) page_->Focus(*target);
}

bool FormWidget::FocusTakesEnter() const {
  if (QApplication::activePopupWidget() != nullptr) return true;
  const Binding* binding = page_->Holding(QApplication::focusWidget());
  return binding != nullptr && binding->TakesEnter();
}

QWidget* FormWidget::WidgetOf(std::string_view control_name) const {
  const Control* control = page_->Controls().Find(control_name);
  return control == nullptr ? nullptr : page_->BindingOf(*control).Widget();
}

QSize FormWidget::sizeHint() const {
  const QWidget* content = findChild<QScrollArea*>()->widget();
  const int width = std::max(content->minimumSizeHint().width(),
                             surface::kPageWidth * fontMetrics().horizontalAdvance('x'));
  const int height =
      content->hasHeightForWidth() ? content->heightForWidth(width) : content->sizeHint().height();
  return {width, height};
}

QSize FormWidget::minimumSizeHint() const {
  return {surface::kLeastPageWidth * fontMetrics().horizontalAdvance('x'),
          surface::kLeastPageLines * fontMetrics().lineSpacing()};
}

}  // namespace plovix::qt
