// The list of tasks with runs of several kinds, and its dialogs, for pictures.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "app_parts.h"

namespace plovix::app {

// Stores tasks and runs, and hands over each window with its name.
void PictureList(const AppParts& parts,
                 const std::function<void(QWidget& window, const std::string& name)>& save);

}  // namespace plovix::app
