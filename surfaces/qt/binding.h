// Connects one control with one widget: redraws the widget when the control changes and passes the user's
// actions to User. One class per kind of control derives from it; the form widget owns them.
#pragma once

#include <plovix/controls/user.h>
#include <plovix/surfaces/common/page_reading.h>

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <map>
#include <memory>

#include "slot_factory.h"
#include "surface_options.h"
#include "surface_texts.h"

class QEvent;
class QFocusEvent;
class QLabel;
class QLineEdit;
class QWidget;

namespace plovix::qt {

class Binding;
using Bindings = std::map<const Control*, std::unique_ptr<Binding>>;

// What the bindings of one page share.
struct Surface {
  std::shared_ptr<Form> form;
  User& user;
  SlotFactory make_slot;
  SurfaceTexts texts = {};
  SurfaceOptions options = {};
  surface::PageReading reading = surface::PageReading(*form);
  std::function<void()> captions_changed = {};
  Bindings bindings = {};
  int page_writes = 0;  // depth; signals of widgets meanwhile do not come from the user
};

// Marks a scope in which the program, not the user, changes widgets.
class PageWrite {
 public:
  explicit PageWrite(Surface& surface) : surface_(surface) { ++surface_.page_writes; }
  ~PageWrite() { --surface_.page_writes; }
  PageWrite(const PageWrite&) = delete;
  PageWrite& operator=(const PageWrite&) = delete;

 private:
  Surface& surface_;
};

class Binding : public QObject, private ControlObserver {
 public:
  Binding(Surface& surface, Control& control);
  ~Binding() override;

  [[nodiscard]] Control& Bound() const noexcept { return control_; }
  [[nodiscard]] QWidget* Widget() const noexcept { return widget_; }
  // Shows the control's current state.
  void DrawAll();
  // Moves the focus here without notifying the control; a reason such as the Tab key selects a field's text.
  virtual void TakeFocus(Qt::FocusReason reason = Qt::OtherFocusReason);
  // Scrolls the page to the widget; Qt does so by itself only for the Tab key.
  void Reveal();
  // Whether the Enter key means something to the widget while it has the focus.
  [[nodiscard]] virtual bool TakesEnter() const { return false; }
  // Sets where problems with typed text are shown: a hidden label that the page's layout has placed.
  void TellProblemsAt(QLabel* label) { problem_ = label; }
  // Names the widget for assistive technology.
  virtual void SetAccessibleName(const QString& name);

 protected:
  // Sets the announced name of a widget if it differs, because Qt creates an accessible object for each call.
  static void Announce(QWidget& widget, const QString& name);
  // To be called once, by the constructor of the derived binding. `watched`: focus moves and other events of
  // the widget are passed to OnEvent.
  void Adopt(QWidget* widget, bool watched = true);
  [[nodiscard]] Surface& Shared() const noexcept { return surface_; }
  [[nodiscard]] bool PageWrites() const noexcept { return surface_.page_writes > 0; }

  // Draws what is specific to the kind; changes only what differs from what is shown.
  virtual void Draw() = 0;
  virtual void DrawSelection() {}
  // True if the event has been handled.
  virtual bool OnEvent(QEvent& /*event*/) { return false; }

  // The host's objection to the text; empty without a rule.
  [[nodiscard]] QString ProblemWith(const QString& text) const;
  void TellProblem(const QString& problem);
  // Lets the host refuse what is typed into `field`.
  void KeepToRule(QLineEdit& field);

  // Runs a verb of User. The verb may replace the page: afterwards the binding, its widget and the control
  // may no longer exist, and callers must not touch them. After a refusal the widget shows its control again.
  template <class Verb>
  void AsUser(const Verb& verb) {
    const std::shared_ptr<Form> kept = surface_.form;
    const QPointer<Binding> self(this);
    if (!verb(surface_.user) && self) DrawAll();
  }

 private:
  void DrawState();
  void Changed(Aspect aspect) final;
  bool eventFilter(QObject* watched, QEvent* event) final;
  void FocusMoved(const QFocusEvent& event);

  Surface& surface_;
  Control& control_;
  QWidget* widget_ = nullptr;
  QLabel* problem_ = nullptr;
};

// A binding that knows its control's class.
template <class Type>
class BindingOf : public Binding {
 public:
  BindingOf(Surface& surface, Type& control) : Binding(surface, control) {}

 protected:
  [[nodiscard]] Type& Model() const { return static_cast<Type&>(Bound()); }
};

}  // namespace plovix::qt
