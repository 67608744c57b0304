// The stand-alone host's dialogs as windows. Each box can also be made without being shown, for pictures.
#pragma once

#include <plovix/standalone/model/host_state.h>
#include <plovix/standalone/model/host_tables.h>
#include <plovix/standalone/model/text_table.h>

#include <QMessageBox>
#include <memory>

class QDialog;
class QFileDialog;
class QString;
class QWidget;

namespace plovix::app {

class QtDialogs final : public HostDialogs {
 public:
  // `state`, whose texts are shown, outlives the dialogs.
  explicit QtDialogs(HostState& state) : state_(state), texts_(state.texts) {}
  // To be called before a dialog on stored tables or on data is opened. `tables` outlives the dialogs; `data`
  // is the data file.
  void Use(HostTables& tables, std::string data) {
    tables_ = &tables;
    data_ = std::move(data);
  }

  int MessageBox(const std::string& prompt, int buttons, const std::string& title) override;
  ReportAction Report(const FailureReport& report) override;
  std::optional<std::string> EditTag(const std::string& tag,
                                     const std::vector<std::string>& choices) override;
  std::optional<std::vector<CategoryRecord>> EditCategories(const std::vector<CategoryRecord>& categories,
                                                            bool tagged,
                                                            const std::vector<std::string>& known) override;
  std::optional<std::string> BuildQuery(const std::string& text, const DataObjectRecord& object) override;
  std::optional<PermissionSet> EditPermissions(const std::optional<PermissionSet>& permissions,
                                               const std::string& title) override;

  [[nodiscard]] std::unique_ptr<QMessageBox> MakeMessageBox(const std::string& prompt, int buttons,
                                                            const std::string& title) const;
  [[nodiscard]] std::unique_ptr<QMessageBox> MakeReportBox(const FailureReport& report) const;

 private:
  HostState& state_;
  const TextTable& texts_;
  HostTables* tables_ = nullptr;
  std::string data_;
};

// A box without buttons, whose texts are never markup and never longer than a screen takes.
[[nodiscard]] std::unique_ptr<QMessageBox> NewBox(QMessageBox::Icon icon, const std::string& title,
                                                  const std::string& text, QWidget* parent);

// Tells something that only needs an OK.
void Tell(const TextTable& texts, const std::string& title, const std::string& text, QWidget* parent);

// A question whose Yes takes something away: Enter and Esc both mean No.
struct WarningQuestion {
  std::string text;
  const char* yes;  // keys of host texts
  const char* no;
};
[[nodiscard]] std::unique_ptr<QMessageBox> MakeWarningQuestion(const TextTable& texts,
                                                               const std::string& title,
                                                               const WarningQuestion& question,
                                                               QWidget* parent);
[[nodiscard]] bool IsSure(const TextTable& texts, const std::string& title, const WarningQuestion& question,
                          QWidget* parent);
// Lets the user choose a file or a folder. The path; empty when they cancelled.
[[nodiscard]] QString ChoosePath(QFileDialog& dialog);

// Asked before entered things are thrown away.
[[nodiscard]] WarningQuestion DiscardQuestion(const TextTable& texts);

}  // namespace plovix::app
