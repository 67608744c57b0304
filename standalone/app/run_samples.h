// The windows of runs with sample content, for screenshots.
#pragma once

#include <plovix/standalone/text/text_table.h>

#include <QWidget>
#include <functional>
#include <string>

namespace plovix::app {

// Calls `save` with each window in turn, in the states for the screenshots; nothing stays open.
void PictureRuns(const TextTable& texts,
                 const std::function<void(QWidget& window, const std::string& name)>& save);

}  // namespace plovix::app
