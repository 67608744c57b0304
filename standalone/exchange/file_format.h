// The words in an exported task that its writer and its reader share.
#pragma once

#include <string>
#include <string_view>

namespace plovix::file_format {

inline constexpr std::string_view kName = "plovix-task";
inline constexpr int kVersion = 2;  // raised if files of the former version must be refused or converted

inline constexpr std::string_view kFormat = "format";
inline constexpr std::string_view kFileVersion = "version";
inline constexpr std::string_view kTask = "task";
inline constexpr std::string_view kTags = "tags";

inline constexpr std::string_view kPersonal = "personal";
inline constexpr std::string_view kCategories = "categories";
inline constexpr std::string_view kPermissions = "permissions";
inline constexpr std::string_view kRecurrence = "recurrence";
inline constexpr std::string_view kScheduleStart = "scheduleStart";
inline constexpr std::string_view kActions = "actions";
inline constexpr std::string_view kSettings = "settings";
inline constexpr std::string_view kPattern = "pattern";
inline constexpr std::string_view kKind = "kind";

// A field's name in the file, from its documented name: "everyNDays" for "EveryNDays".
[[nodiscard]] inline std::string MemberName(std::string_view field) {
  std::string name(field);
  if (!name.empty() && name[0] >= 'A' && name[0] <= 'Z') name[0] = static_cast<char>(name[0] - 'A' + 'a');
  return name;
}

}  // namespace plovix::file_format
