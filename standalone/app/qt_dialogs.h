// The stand-alone host's dialogs as windows.
#pragma once

#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/text/text_table.h>

#include <optional>
#include <string>
#include <vector>

namespace plovix::app {

class QtDialogs final : public HostDialogs {
 public:
  // `state`, whose texts are shown, outlives the dialogs.
  explicit QtDialogs(HostState& state) : state_(state), texts_(state.texts) {}
  // To be called before a dialog on stored tables or on data is opened. `tables` outlives the dialogs; `data`
  // is the data file.
  void Use(UsersAndTags& tables, std::string data) {
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

 private:
  HostState& state_;
  const TextTable& texts_;
  UsersAndTags* tables_ = nullptr;
  std::string data_;
};

}  // namespace plovix::app
