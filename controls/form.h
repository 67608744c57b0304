/// @file
/// A page's controls: created from its design, owned here, in design order. The form also knows the focus and
/// the mouse pointer. Surfaces render a form; the translator sets its captions.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "kinds.h"

namespace plovix {

/// A page design as a form and a surface read it; the data live as long as the page's code.
struct DesignView {
  std::string_view page;              ///< the page's name: "Details"
  std::span<const ControlInfo> rows;  ///< in declaration order
  /// The reading order, which is also that of the Tab key, from top to bottom: the names on one line,
  /// separated by spaces. Every control is on exactly one line.
  std::span<const std::string_view> lines;
};

/// Mouse pointers by their customary codes.
enum class Pointer {
  kDefault = 0,  ///< the toolkit's own choice
  kWait = 11     ///< over the whole program, while the page loads something that may take long
};

/// Implemented by a surface; called after the state has changed. Not owned by the form.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  /// Form::MousePointer has changed.
  virtual void PointerChanged() = 0;
  /// The page asks to be redrawn from the current state of its controls.
  virtual void RedrawRequested() = 0;
};

/// Owned by its page, with the same lifetime.
class Form {
 public:
  /// Creates one control for each row; the design's data outlive the form.
  explicit Form(const DesignView& design);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  /// The design that the form was created from.
  [[nodiscard]] const DesignView& Design() const noexcept { return design_; }
  /// The number of controls.
  [[nodiscard]] std::size_t Count() const noexcept { return controls_.size(); }
  /// 0-based, in design order; `index` is less than Count().
  [[nodiscard]] Control& At(std::size_t index) const { return *controls_.at(index); }
  /// nullptr if no control has that name (case matters).
  [[nodiscard]] Control* Find(std::string_view name) const;
  /// Fails with 5 if no control has that name.
  [[nodiscard]] Control& Get(std::string_view name) const;
  /// The page's one group of options, in design order.
  [[nodiscard]] std::vector<OptionButton*> OptionButtons() const;

  /// The control that has the focus, nullptr if none has.
  [[nodiscard]] Control* Focused() const noexcept { return focused_; }
  /// @{
  /// The pointer over the page and everywhere else in the program. Set by the page.
  [[nodiscard]] Pointer MousePointer() const noexcept { return pointer_; }
  void SetMousePointer(Pointer pointer);
  /// @}

  /// Display only: asks the surface to redraw the page.
  void Redraw();

  /// Sets the page's handler for becoming visible.
  void OnShow(std::function<void()> handler) { on_show_ = std::move(handler); }
  /// The page has become visible: runs that handler. Called through User::Show.
  void Show(UserKey key);

  /// Number of changes of texts, values and selections so far, whoever made them.
  [[nodiscard]] unsigned Changes() const noexcept { return changes_; }
  /// True once a user has changed something, including in embedded controls.
  [[nodiscard]] bool Touched() const;
  /// A verb has changed something.
  void Touch(UserKey /*key*/) noexcept { touched_ = true; }

  /// At most one observer; nullptr removes it.
  void Observe(FormObserver* observer) noexcept { observer_ = observer; }

 private:
  friend class Control;
  void MoveFocus(Control* control) noexcept { focused_ = control; }
  void CountChange() noexcept { ++changes_; }

  DesignView design_;
  std::vector<std::unique_ptr<Control>> controls_;
  Control* focused_ = nullptr;
  Pointer pointer_ = Pointer::kDefault;
  unsigned changes_ = 0;
  bool touched_ = false;
  std::function<void()> on_show_;
  FormObserver* observer_ = nullptr;
};

}  // namespace plovix
