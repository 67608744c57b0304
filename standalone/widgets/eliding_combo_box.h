// A combo box for names of any length, which it elides. Used by the query builder for fields.
#pragma once

#include <QComboBox>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStylePainter>

namespace plovix::app {

class ElidingComboBox final : public QComboBox {
 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const int width =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this).width();
    option.currentText = option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, width - 2);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
  }
};

}  // namespace plovix::app
