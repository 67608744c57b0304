#include "page_layout.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QWidget>
#include <algorithm>
#include <string_view>

#include "flow_layout.h"
#include "host_slot_binding.h"
#include "label_binding.h"
#include "plain_text.h"
#include "text_box_binding.h"
#include "texts.h"

namespace plovix::qt {
namespace {

constexpr int kLabelColumn = 0;
constexpr int kFieldColumn = 1;
constexpr int kColumns = 2;

// The page, or a frame on it, filled row by row.
class Grid {
 public:
  explicit Grid(QWidget* owner) : layout_(new QGridLayout(owner)) {
    layout_->setColumnStretch(kFieldColumn, 1);
  }

  void AddWide(QWidget* widget, int stretch = 0) {
    layout_->addWidget(widget, row_, kLabelColumn, 1, kColumns);
    layout_->setRowStretch(row_++, stretch);
    filled_ = filled_ || stretch > 0;
  }
  void AddWide(QLayout* line) { layout_->addLayout(line, row_++, kLabelColumn, 1, kColumns); }
  void AddRow(QWidget* label, Qt::Alignment alignment, QLayout* field) {
    layout_->addWidget(label, row_, kLabelColumn, Qt::AlignLeft | alignment);
    layout_->addLayout(field, row_++, kFieldColumn);
  }
  // Space before a new section.
  void AddGap(int height) { layout_->setRowMinimumHeight(row_++, height); }
  [[nodiscard]] bool Empty() const { return row_ == 0; }
  // Puts the remaining height below the last row.
  void Close() {
    if (!filled_) layout_->setRowStretch(row_, 1);
  }

 private:
  QGridLayout* layout_;
  int row_ = 0;
  bool filled_ = false;
};

class Arranger {
 public:
  Arranger(const Bindings& bindings, QWidget* page, bool with_problems)
      : bindings_(bindings), page_(page), with_problems_(with_problems) {}

  void Add(const Line& line) {
    Control& first = *line.controls[0];
    Grid& grid = GridOf(first.Info().frame);
    const int gap = page_->fontMetrics().lineSpacing() / 2;
    switch (line.kind) {
      case LineKind::kText:
        LabelOf(first).ShowAsText();
        grid.AddWide(WidgetOf(first));
        if (Has(first.Info().style, Style::kHeading)) grid.AddGap(gap);
        break;
      case LineKind::kHelp:
        LabelOf(first).ShowAsHelp();
        grid.AddWide(WidgetOf(first));
        grid.AddGap(gap);
        break;
      case LineKind::kRow:
        AddRow(grid, line);
        break;
      case LineKind::kField:
        grid.AddWide(WidgetOf(first));
        break;
      case LineKind::kFill:
        LetGrow(WidgetOf(first));
        grid.AddWide(WidgetOf(first), 1);
        break;
      case LineKind::kFrame:
        if (!grid.Empty()) grid.AddGap(gap / 2);
        grid.AddWide(WidgetOf(first));
        break;
      case LineKind::kFlow:
        AddFlow(grid, line);
        break;
    }
    if (with_problems_) AddProblem(grid, line);
  }

  void Close() {
    for (auto& [frame, grid] : grids_) grid.Close();
  }

 private:
  [[nodiscard]] QWidget* WidgetOf(const Control& control) const { return bindings_.at(&control)->Widget(); }
  [[nodiscard]] LabelBinding& LabelOf(const Control& label) const {
    return dynamic_cast<LabelBinding&>(*bindings_.at(&label));
  }

  Grid& GridOf(std::string_view frame) {
    const auto found = grids_.find(frame);
    if (found != grids_.end()) return found->second;
    QWidget* owner = page_;
    for (const auto& [control, binding] : bindings_) {
      if (!frame.empty() && control->Name() == frame) owner = binding->Widget();
    }
    return grids_.emplace(frame, owner).first->second;
  }

  static void LetGrow(QWidget* widget) {
    widget->setSizePolicy(widget->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
  }

  void AddRow(Grid& grid, const Line& line) {
    QWidget* field = WidgetOf(*line.controls[1]);
    LabelOf(*line.controls[0]).SetBuddy(field);
    QWidget* label = WidgetOf(*line.controls[0]);
    const bool picker = line.controls[1]->GetKind() == Kind::kDateTimePicker;
    if (!picker) field->setSizePolicy(QSizePolicy::Expanding, field->sizePolicy().verticalPolicy());
    const bool tall = Has(line.controls[1]->Info().style, Style::kMultiLine);
    const Qt::Alignment alignment = tall ? Qt::AlignTop : Qt::AlignVCenter;
    auto* row = new QHBoxLayout;
    row->addWidget(field, picker ? 0 : 1);
    for (std::size_t i = 2; i < line.controls.size(); ++i)
      row->addWidget(WidgetOf(*line.controls[i]), 0, alignment);
    if (picker) row->addStretch(1);
    // Aligns the label with the first line of the text.
    if (tall) label->setContentsMargins(0, page_->fontMetrics().lineSpacing() / 3, 0, 0);
    grid.AddRow(label, alignment, row);
  }

  void AddFlow(Grid& grid, const Line& line) {
    auto* row = new FlowLayout;
    for (std::size_t i = 0; i < line.controls.size(); ++i) {
      const Control& control = *line.controls[i];
      QWidget* widget = WidgetOf(control);
      if (IsField(control) && LabelBefore(line, i) != nullptr)
        LabelOf(*line.controls[i - 1]).SetBuddy(widget);
      if (auto* text = dynamic_cast<TextLineWidget*>(widget)) text->SetNarrow();
      row->addWidget(widget);
    }
    grid.AddWide(row);
  }

  // The fields of a line share the place, because only one is edited at a time.
  void AddProblem(Grid& grid, const Line& line) {
    QLabel* label = nullptr;
    for (const Control* control : line.controls) {
      const auto* list = dynamic_cast<const ComboBox*>(control);
      if (control->GetKind() != Kind::kTextBox && (list == nullptr || !list->Editable())) continue;
      if (label == nullptr) grid.AddWide(label = NewProblemLabel());
      bindings_.at(control)->TellProblemsAt(label);
    }
  }

  const Bindings& bindings_;
  QWidget* page_;
  bool with_problems_;
  std::map<std::string_view, Grid> grids_;  // by frame; empty name: the page
};

bool HasLetters(const QString& text) {
  return std::ranges::any_of(text, [](QChar character) { return character.isLetterOrNumber(); });
}

// The line as a person would read it, with an ellipsis for what is to be entered.
QString Sentence(const Line& line) {
  QStringList words;
  for (const Control* control : line.controls) {
    words << (IsField(*control) ? QString(QChar(0x2026)) : CaptionToRead(control->Caption()));
  }
  const QString sentence = words.join(' ').trimmed();
  return HasLetters(sentence) ? sentence : QString();
}

// The words on both sides of a field: "every … minute(s).". Empty if there are none.
QString PhraseAround(const Line& line, std::size_t field) {
  const auto words = [&line](std::size_t at) {
    const bool text = at < line.controls.size() && !IsField(*line.controls[at]);
    return text ? CaptionToRead(line.controls[at]->Caption()) : QString();
  };
  const QString phrase =
      (words(field - 1) + ' ' + QChar(0x2026) + ' ' + words(field + 1)).trimmed();  // none before the first
  return HasLetters(phrase) ? phrase : QString();
}

}  // namespace

void LayOut(const std::vector<Line>& lines, const Bindings& bindings, QWidget* page, bool with_problems) {
  Arranger arranger(bindings, page, with_problems);
  for (const Line& line : lines) arranger.Add(line);
  arranger.Close();
}

std::vector<Control*> InOrder(const Form& form, const std::vector<Line>& lines, TabOrder order) {
  std::vector<Control*> controls;
  if (order == TabOrder::kDeclared) {
    for (std::size_t i = 0; i < form.Count(); ++i) controls.push_back(&form.At(i));
    return controls;
  }
  for (const Line& line : lines) controls.insert(controls.end(), line.controls.begin(), line.controls.end());
  return controls;
}

void ChainTabStops(const std::vector<Control*>& controls, const Bindings& bindings) {
  QWidget* last = nullptr;
  for (const Control* control : controls) {
    QWidget* widget = bindings.at(control)->Widget();
    std::vector<QWidget*> stops{widget};
    if (control->GetKind() == Kind::kHostSlot) stops = TabStops(widget);
    for (QWidget* stop : stops) {
      if (last != nullptr) QWidget::setTabOrder(last, stop);
      last = stop;
    }
  }
}

void NameFields(const std::vector<Line>& lines, const Bindings& bindings) {
  QString above;  // the last text on a line by itself
  for (const Line& line : lines) {
    const QString first = CaptionToRead(line.controls[0]->Caption());
    if (line.kind == LineKind::kText) above = first;
    if (line.explained != nullptr) bindings.at(line.explained)->Widget()->setAccessibleDescription(first);
    const QString sentence = Sentence(line).isEmpty() ? above : Sentence(line);
    for (std::size_t i = 0; i < line.controls.size(); ++i) {
      const Control& control = *line.controls[i];
      const QString caption = CaptionToRead(control.Caption());
      Binding& binding = *bindings.at(&control);
      if (IsField(control)) {
        const Label* label = LabelBefore(line, i);
        const QString around = line.kind == LineKind::kFlow ? PhraseAround(line, i) : QString();
        const QString before = label != nullptr ? CaptionToRead(label->Caption()) : sentence;
        binding.SetAccessibleName(around.isEmpty() ? before : around);
      } else if (control.GetKind() == Kind::kOptionButton) {
        // "every" alone says little, and several captions may begin like that.
        binding.SetAccessibleName(line.controls.size() > 1 ? sentence : caption);
      } else if (control.GetKind() == Kind::kCommandButton) {
        // "..." alone says nothing.
        const bool speaks = HasLetters(caption) || line.kind != LineKind::kRow;
        binding.SetAccessibleName(speaks ? caption : first + ' ' + caption);
      }
    }
  }
}

}  // namespace plovix::qt
