// A page's controls: made from its design, owned here, in design order. The form also knows the focus
// and the mouse pointer. Surfaces render a form; the translator re-captions it.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "kinds.h"

namespace plovix {

// A page design as a form and a surface read it; the data live as long as the program.
struct DesignView {
  std::string_view page;                    // "Details"
  std::span<const ControlInfo> rows;        // in declaration order
  std::span<const std::string_view> lines;  // names standing on one line, separated by a blank, top to bottom
};

// Mouse pointers by their customary codes.
enum class Pointer { kDefault = 0, kWait = 11 };

// Implemented by a surface; called after the state has changed. Not owned by the form.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void PointerChanged() = 0;
  virtual void RedrawRequested() = 0;
};

class Form {
 public:
  explicit Form(const DesignView& design);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  [[nodiscard]] const DesignView& Design() const noexcept { return design_; }
  [[nodiscard]] std::size_t Count() const noexcept { return controls_.size(); }
  [[nodiscard]] Control& At(std::size_t index) const { return *controls_.at(index); }
  // nullptr when no control has that name (case matters).
  [[nodiscard]] Control* Find(std::string_view name) const;
  // Fails with 5 when no control has that name.
  [[nodiscard]] Control& Get(std::string_view name) const;
  [[nodiscard]] std::vector<OptionButton*> OptionButtons() const;

  [[nodiscard]] Control* Focused() const noexcept { return focused_; }
  [[nodiscard]] Pointer MousePointer() const noexcept { return pointer_; }
  void SetMousePointer(Pointer pointer);

  // Display only: asks the surface to draw the page anew.
  void Redraw();

  // The page's handler for becoming visible.
  void OnShow(std::function<void()> handler) { on_show_ = std::move(handler); }
  void Show(UserKey key);

  // Number of changes of texts, values and selections so far, whoever made them.
  [[nodiscard]] unsigned Changes() const noexcept { return changes_; }
  // True once a user has changed something, embedded controls included.
  [[nodiscard]] bool Touched() const;
  void Touch(UserKey /*key*/) noexcept { touched_ = true; }

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
