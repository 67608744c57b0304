// How a task runs: what happens with its runs when something is in their way. Opened from the list of tasks
// and from the wizard's panel.
#pragma once

#include <plovix/standalone/widgets/editor_dialog.h>

#include "run_parts.h"

class QComboBox;
class QFormLayout;
class QSpinBox;

namespace plovix::app {

class PoliciesDialog final : public EditorDialog {
 public:
  // Reads the policies of the task; fails as the store does, and with 5 if the task is gone.
  PoliciesDialog(RunParts parts, std::int64_t task, QWidget* parent);

  [[nodiscard]] bool Changed() const override;
  // As chosen; what was not touched is what was stored.
  [[nodiscard]] TaskPolicies Policies() const;

  // Stores. Where somebody else has stored other policies meanwhile, shows theirs where this user has chosen
  // nothing, says so, and stays open.
  void accept() override;

 private:
  struct Choice {
    QComboBox* box = nullptr;
    QLabel* note = nullptr;
    std::vector<const char*> notes;  // keys of host texts, by entry
  };

  Choice AddChoice(QFormLayout& form, const char* caption, const std::vector<const char*>& entries,
                   const std::vector<const char*>& notes, QSpinBox* number = nullptr);
  QSpinBox* NewNumber(const char* name, int least, int most);
  void AddChoices(QFormLayout& form);
  void AddRetries(QFormLayout& form);
  void AddZone(QFormLayout& form);
  void MakeReadOnly();
  void Show(const TaskPolicies& policies);
  void ShowNotes();
  [[nodiscard]] std::string ZoneName() const;
  // Whether the zone's name is one; tells where not.
  bool CheckZone();
  // Whether nobody else has stored others since.
  bool CheckStored();

  RunParts parts_;
  std::int64_t task_;
  bool read_only_ = false;
  TaskPolicies stored_;  // as read last
  Choice missed_, overlap_, interrupted_, short_month_, limit_;
  QSpinBox *missed_count_, *retries_, *limit_number_;
  QLabel *retries_note_ = nullptr, *problem_ = nullptr, *zone_problem_ = nullptr;
  QComboBox* zone_ = nullptr;  // nullptr: the user may not change it
};

}  // namespace plovix::app
