#pragma once
// A practice desk without a window: its store, the control and the desk's host,
// with what the desk tells the user kept for the test to read.

#include "desk_host.h"

#include <string>
#include <vector>

namespace practice::test {

inline const quorvane::OleDate kToday = quorvane::makeDate(2026, 11, 23); // a Monday

// A desk without a window: the store, the control and its host.
struct Desk {
    explicit Desk(const QString& location, const char* connection = "desk") : store(connection) {
        platform.clock.setToday(kToday);
        store.open(location, kToday);
        host.tell = [this](const QString& m) { told.push_back(m.toStdString()); };
        host.start(1200, 700);
    }
    // Books the panel's patient into a column's slot, as the menu's "General" does.
    void book(int column, int hour, int minute, const QString& patient) {
        host.loadPatient(patient);
        control.widgets().dvwResource[static_cast<std::size_t>(column - 1)]->userClickAt(
            quorvane::makeTime(hour, minute, 0));
        control.ScheduleApp();
    }
    quorvane::AppointmentSet& set(int column) {
        return control.widgets().dvwResource[static_cast<std::size_t>(column - 1)]->appointmentSet();
    }

    quorvane::Platform platform;
    PracticeStore store;
    quorvane::ctlScheduler control{platform};
    DeskHost host{control, store};
    std::vector<std::string> told;
};

} // namespace practice::test
