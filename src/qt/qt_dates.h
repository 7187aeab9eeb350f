#pragma once
// Dates between the control and Qt. The control's dates are days since 30
// December 1899; Qt's are calendar dates. A date the runtime cannot place
// comes out as Qt's invalid date rather than failing.

#include <QuorvaneScheduler/ole_date.h>

#include <QDate>

#include <string>

namespace quorvane {

inline QDate qDateOf(OleDate d) {
    try {
        const DateParts p = splitDate(d);
        return QDate(p.year, p.month, p.day);
    } catch (...) {
        return QDate();
    }
}

inline OleDate oleDateOf(const QDate& d) { return makeDate(d.year(), d.month(), d.day()); }

// A date the control passes as text, such as a day view's date in an event.
inline QDate qDateOfText(const std::string& text) {
    try {
        return qDateOf(parseDate(text));
    } catch (...) {
        return QDate();
    }
}

} // namespace quorvane
