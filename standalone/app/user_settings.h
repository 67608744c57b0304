// What the program remembers of a user's choices, beside the task files.
#pragma once

#include <QSettings>

namespace plovix::app {

inline constexpr const char* kNotifySetting = "notices/on";                // true unless switched off
inline constexpr const char* kFailuresSetting = "notices/failuresInARow";  // before one is told; 1
inline constexpr const char* kAsRootSettings = "asRoot/";                  // and a task file: may run as root

[[nodiscard]] inline QSettings UserSettings() {
  return QSettings(QStringLiteral("plovix"), QStringLiteral("plovix"));
}

}  // namespace plovix::app
