// Pickers for a date or a time of day.
#pragma once

#include <QDateTimeEdit>

#include "binding.h"

namespace plovix::qt {

class DateTimePickerBinding final : public BindingOf<DateTimePicker> {
 public:
  DateTimePickerBinding(Surface& surface, DateTimePicker& picker, QWidget* parent);
  // The field inside the picker is announced separately.
  void SetAccessibleName(const QString& name) override;

 private:
  void Draw() override;
  void Entered();

  QDateTimeEdit* widget_;
};

}  // namespace plovix::qt
