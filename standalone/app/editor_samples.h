// The editors of categories, permissions, language tags and users with sample content, for screenshots.
#pragma once

#include <plovix/standalone/text/text_table.h>

#include <QWidget>
#include <functional>
#include <string>

namespace plovix::app {

// Calls `save` with each editor in turn, in the states for the screenshots; nothing stays open.
void PictureEditors(const TextTable& texts,
                    const std::function<void(QWidget& editor, const std::string& name)>& save);

}  // namespace plovix::app
