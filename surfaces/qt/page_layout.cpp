#include "page_layout.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QWidget>
#include <map>
#include <string_view>

#include "flow_layout.h"
#include "host_slot_binding.h"
#include "label_binding.h"
#include "plain_text.h"
#include "text_box_binding.h"

namespace plovix::qt {
namespace {

using surface::Line;
using surface::LineKind;

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
    for (std::size_t i = 0; i < line.controls.size(); ++i) {
      const Label* label = surface::NamingLabel(line, i);
      if (label != nullptr) LabelOf(*label).SetBuddy(WidgetOf(*line.controls[i]));
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
    for (const Control* control : line.controls) {
      QWidget* widget = WidgetOf(*control);
      if (auto* text = dynamic_cast<TextLineWidget*>(widget)) text->SetNarrow();
      row->addWidget(widget);
    }
    grid.AddWide(row);
  }

  // The fields of a line share the place, because only one is edited at a time.
  void AddProblem(Grid& grid, const Line& line) {
    QLabel* label = nullptr;
    for (const Control* control : line.controls) {
      if (!surface::TakesText(*control)) continue;
      if (label == nullptr) grid.AddWide(label = NewProblemLabel());
      bindings_.at(control)->TellProblemsAt(label);
    }
  }

  const Bindings& bindings_;
  QWidget* page_;
  bool with_problems_;
  std::map<std::string_view, Grid> grids_;  // by frame; empty name: the page
};

}  // namespace

void LayOut(const std::vector<Line>& lines, const Bindings& bindings, QWidget* page, bool with_problems) {
  Arranger arranger(bindings, page, with_problems);
  for (const Line& line : lines) arranger.Add(line);
  arranger.Close();
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

}  // namespace plovix::qt
