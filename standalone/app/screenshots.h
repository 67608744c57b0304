// Screenshots of every page, window and dialog, in every language, light and dark.
#pragma once

#include <QApplication>
#include <string>

namespace plovix::app {

// Writes "<what>-<language>-<light|dark>.png" files into `folder`, which is created if it is missing. Returns
// the number of files; fails with a message if one cannot be written.
int SaveScreenshots(QApplication& application, const std::string& folder);

}  // namespace plovix::app
