#pragma once
// A practice desk without a window: its store, the control and the desk's host,
// with what the desk tells the user kept for the test to read.

#include <QuorvaneScheduler/control_internals.h>
#include "desk_host.h"

#include <QCoreApplication>
#include <QtSql/QSqlQuery>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace practice::test {

inline const quorvane::OleDate kToday = quorvane::makeDate(2026, 11, 23); // a Monday

// A desk without a window: the store, the control and its host.
struct Desk {
    explicit Desk(const QString& location, const char* connection = "desk") : store(connection) {
        platform.clock.setToday(kToday);
        store.open(location, kToday, OpenMode::Demo);
        host.tell = [this](const QString& m) { told.push_back(m.toStdString()); };
        host.start(1200, 700);
    }
    // Books a patient into a column's slot, as the menu's "General" does.
    void book(int column, int hour, int minute, const QString& patient) {
        host.loadPatient(patient);
        bookAt(column, hour, minute);
    }
    // The same for the patient on the panel; the id the store gave, or 0.
    qint64 bookAt(int column, int hour, int minute) {
        quorvane::PVDayView& view = *widgetsOf(control).dvwResource[static_cast<std::size_t>(column - 1)];
        const quorvane::OleDate time = quorvane::makeTime(hour, minute, 0);
        if (!view.pointOfTime(time)) view.setTopIndex(quorvane::addMinutes(view.CurrentDate(), hour * 60));
        view.userClickAt(time);
        control.ScheduleApp();
        settle();
        const quorvane::AppointmentRef booked = set(column).GetSelectedAppointment();
        return booked && !booked->Tag.empty() && booked->StartDateTime == quorvane::addMinutes(view.CurrentDate(), hour * 60 + minute)
                   ? std::stoll(quorvane::tagField(booked->Tag, 0))
                   : 0;
    }
    // Lets the desk finish what it put off until the gesture had ended.
    static void settle() { QCoreApplication::processEvents(); }
    quorvane::AppointmentSet& set(int column) {
        return widgetsOf(control).dvwResource[static_cast<std::size_t>(column - 1)]->appointmentSet();
    }

    quorvane::Platform platform;
    PracticeStore store;
    quorvane::ctlScheduler control{platform};
    DeskHost host{control, store};
    std::vector<std::string> told;
};

// A search finds names whatever their case, and takes "%" and "_" as typed.
inline void expectSearchFoldsCase(PracticeStore& store) {
    QSqlQuery q(store.database());
    for (const char* name : {"Zoë Ölander", "100% Pure_Test"})
        ASSERT_TRUE(q.exec(QString("INSERT INTO patients (patient_id, name, name_folded) VALUES ('%1', '%2', '%3')")
                               .arg(QString::number(qHash(QString(name))), name, QString(name).toCaseFolded())));
    auto names = [&](const QString& text) {
        std::vector<std::string> out;
        for (const Patient& p : store.findPatients(text))
            out.push_back(p.name.toStdString());
        return out;
    };
    using V = std::vector<std::string>;
    EXPECT_EQ(names("hopper"), V{"Grace Hopper"});
    EXPECT_EQ(names("ÖLANDER"), V{"Zoë Ölander"});
    EXPECT_EQ(names("%"), V{"100% Pure_Test"});
    EXPECT_EQ(names("e_t"), V{"100% Pure_Test"}) << "\"_\" stands for itself";
    EXPECT_EQ(names("c-103"), V{"Grace Hopper"}) << "a chart number, whatever its case";
    const std::vector<Patient> first = store.findPatients("", 3);
    ASSERT_EQ(first.size(), 3u) << "as many as asked for";
    EXPECT_LE(first[0].name, first[1].name);
}

} // namespace practice::test
