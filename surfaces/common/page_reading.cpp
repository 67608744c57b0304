#include "page_reading.h"

#include <plovix/base/text_rules.h>

#include <algorithm>

namespace plovix::surface {
namespace {

// Below its caption there is nothing to do with it.
bool IsPassive(const Control& control) {
  return control.GetKind() == Kind::kLabel || control.GetKind() == Kind::kFrame;
}

bool IsLink(const Control& control) {
  const auto* label = dynamic_cast<const Label*>(&control);
  return label != nullptr && label->Link();
}

constexpr const char* kEllipsis = "\u2026";  // stands for what is to be entered

// The texts of one line, as they are read.
class Words {
 public:
  Words(const Line& line, const Unicode& unicode) : line_(line), unicode_(unicode) {}

  [[nodiscard]] std::string Caption(std::size_t at) const {
    return ReadCaption(line_.controls[at]->Caption(), unicode_).text;
  }
  // The line as a person would read it. Empty where there is no word in it.
  [[nodiscard]] std::string Sentence() const {
    std::string sentence;
    for (std::size_t i = 0; i < line_.controls.size(); ++i) {
      sentence += (i == 0 ? "" : " ") + (IsField(*line_.controls[i]) ? kEllipsis : Caption(i));
    }
    return Phrase(sentence);
  }
  // What stands on both sides of a field: "every … minute(s).". Empty where there is nothing.
  [[nodiscard]] std::string Around(std::size_t field) const {
    const auto words = [this](std::size_t at) {
      const bool text = at < line_.controls.size() && !IsField(*line_.controls[at]);
      return text ? Caption(at) : std::string();
    };
    return Phrase(words(field - 1) + ' ' + kEllipsis + ' ' + words(field + 1));  // before the first: none
  }
  [[nodiscard]] bool Speaks(std::size_t at) const { return HasLetters(Caption(at), unicode_); }

 private:
  [[nodiscard]] std::string Phrase(std::string_view words) const {
    return HasLetters(words, unicode_) ? std::string(Trimmed(words)) : std::string();
  }

  const Line& line_;
  const Unicode& unicode_;
};

// `above`: the last text that stood alone.
std::string NameOf(const Line& line, std::size_t at, const Words& words, const std::string& above) {
  const Control& control = *line.controls[at];
  if (control.GetKind() == Kind::kCommandButton) {
    // "..." alone says nothing.
    const bool speaks = words.Speaks(at) || line.kind != LineKind::kRow;
    return speaks ? words.Caption(at) : words.Caption(0) + ' ' + words.Caption(at);
  }
  const std::string sentence = words.Sentence();
  const std::string& told = sentence.empty() ? above : sentence;
  // "every" alone says little, and more than one option may begin so.
  if (!IsField(control)) return line.controls.size() > 1 ? told : words.Caption(at);
  std::string around = line.kind == LineKind::kFlow ? words.Around(at) : std::string();
  if (!around.empty()) return around;
  return NamingLabel(line, at) != nullptr ? words.Caption(at - 1) : told;
}

}  // namespace

PageReading::PageReading(const Form& form) : form_(form), lines_(ReadLines(form)) {
  for (Control* control : InOrder(TabOrder::kReading)) {
    if (auto* option = dynamic_cast<OptionButton*>(control)) options_.push_back(option);
  }
}

const Control* PageReading::Heading() const {
  for (const Control* control : InOrder(TabOrder::kReading)) {
    if (Has(control->Info().style, Style::kHeading)) return control;
  }
  return nullptr;
}

std::vector<Control*> PageReading::InOrder(TabOrder order) const {
  std::vector<Control*> controls;
  if (order == TabOrder::kDeclared) {
    for (std::size_t i = 0; i < form_.Count(); ++i) controls.push_back(&form_.At(i));
    return controls;
  }
  for (const Line& line : lines_) controls.insert(controls.end(), line.controls.begin(), line.controls.end());
  return controls;
}

std::vector<Control*> PageReading::TabStops(TabOrder order) const {
  std::vector<Control*> stops = InOrder(order);
  std::erase_if(stops, [this](const Control* control) {
    const bool option = control->GetKind() == Kind::kOptionButton;
    return !control->Usable() || (IsPassive(*control) && !IsLink(*control)) ||
           (option && control != OptionStop());
  });
  return stops;
}

OptionButton* PageReading::OptionStop() const {
  const auto selected = std::ranges::find_if(options_, &OptionButton::Selected);
  if (selected != options_.end()) return *selected;
  return options_.empty() ? nullptr : options_.front();
}

Control* PageReading::FirstFocus() const {
  Control* focused = form_.Focused();
  if (focused != nullptr && focused->Usable()) return focused;
  for (Control* control : InOrder(TabOrder::kReading)) {
    if (!IsPassive(*control) && control->Usable()) return SelectedOr(control);
  }
  return nullptr;
}

Control* PageReading::SelectedOr(Control* first) const {
  OptionButton* stop = OptionStop();
  const bool selected = stop != nullptr && stop->Selected() && stop->Usable();
  return selected && first->GetKind() == Kind::kOptionButton ? stop : first;
}

OptionButton* PageReading::OptionAfter(const OptionButton& from, int step) const {
  const int count = static_cast<int>(options_.size());
  int at = static_cast<int>(std::ranges::find(options_, &from) - options_.begin());
  for (int tried = 1; tried < count; ++tried) {
    at = (at + step + count) % count;
    OptionButton* next = options_[static_cast<std::size_t>(at)];
    if (next->Usable()) return next;
  }
  return nullptr;
}

std::vector<Announcement> PageReading::Announcements(const Unicode& unicode) const {
  std::vector<Announcement> announcements;
  std::string above;  // the last text that stood alone
  for (const Line& line : lines_) {
    const Words words(line, unicode);
    if (line.kind == LineKind::kText) above = words.Caption(0);
    if (line.explained != nullptr) announcements.back().description = words.Caption(0);
    for (std::size_t i = 0; i < line.controls.size(); ++i) {
      const Kind kind = line.controls[i]->GetKind();
      if (IsField(*line.controls[i]) || kind == Kind::kOptionButton || kind == Kind::kCommandButton)
        announcements.push_back({line.controls[i], NameOf(line, i, words, above)});
    }
  }
  return announcements;
}

}  // namespace plovix::surface
