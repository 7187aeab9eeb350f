#pragma once
// The Qt widgets that show the control's text fields, pick lists and buttons,
// each beside the model it reads.

#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>

namespace quorvane {

struct SchedulerWidget::FieldView {
    TextField* model;
    QLineEdit* line;      // a one-line field
    QPlainTextEdit* text; // a field of several lines
    QLabel* label;
    QWidget* widget() const { return line ? static_cast<QWidget*>(line) : text; }
};

struct SchedulerWidget::ListView {
    PickList* model;
    QComboBox* box;
};

struct SchedulerWidget::ButtonView {
    Button* model;
    QPushButton* button;
    QStyle::StandardPixmap icon; // for a button without a caption
};

} // namespace quorvane
