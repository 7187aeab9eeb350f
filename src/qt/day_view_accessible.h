#pragma once
// What a screen reader finds in a day view: the view is a table named by its
// resource and date, each slot shown a cell named by its time and what lies
// there, each appointment an item named by its text, times and status.

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <QAccessible>
#include <QString>

namespace quorvane {

// The names a reader speaks.
QString spokenView(const DayViewWidget& view);
QString spokenSlot(const DayViewWidget& view, int minute);
QString spokenAppointment(const DayViewWidget& view, const Appointment& app);

// Qt's factory of accessible interfaces for the day views; installed once by
// the first SchedulerWidget.
QAccessibleInterface* dayViewAccessible(const QString& className, QObject* object);

} // namespace quorvane
