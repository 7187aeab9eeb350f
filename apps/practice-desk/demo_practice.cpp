// The demo practice a new database starts with: two groups of providers and
// rooms, thirty patients, two weeks of appointments from the Monday of the week
// of today, and a lunch break on every column.

#include "practice_store.h"

#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <QDate>
#include <QVariant>

using quorvane::OleDate;

namespace practice {

namespace {

const char* const kPatients[] = {
    "Ada Byron",        "Alan Kay",       "Grace Hopper",   "Edsger Dijkstra", "Barbara Liskov",
    "Donald Knuth",     "Frances Allen",  "John Backus",    "Niklaus Wirth",   "Margaret Hamilton",
    "Ken Thompson",     "Dennis Ritchie", "Radia Perlman",  "Tony Hoare",      "Leslie Lamport",
    "Shafi Goldwasser", "Robin Milner",   "Jean Sammet",    "Karen Jones",     "Fran Ortiz",
    "Peter Naur",       "Adele Goldberg", "Butler Lampson", "Mary Keller",     "Carl Petri",
    "Hedy Lamarr",      "Kathleen Booth", "Ole-Johan Dahl", "Kristen Nygaard", "Sophie Wilson",
};

void exec(QSqlDatabase& db, const QString& sql, const QVariantList& values) {
    QSqlQuery q(db);
    q.prepare(sql);
    for (const QVariant& v : values)
        q.addBindValue(v);
    if (!q.exec()) throw StoreError("The demo practice could not be written: " + q.lastError().text().toStdString());
}

} // namespace

void PracticeStore::seed(OleDate today) {
    transaction("the demo practice", [&] {
        exec(db_, "INSERT INTO practice_groups VALUES (?, ?, ?, ?, ?, ?)", {"10", "Main Office", 2, 3, 1, 0});
        exec(db_, "INSERT INTO practice_groups VALUES (?, ?, ?, ?, ?, ?)", {"20", "Annex", 2, 2, 0, 1});
        struct Resource {
            const char *value, *name, *cat, *sub, *group;
            int column;
        };
        const Resource resources[] = {
            {"501", "Dr. Ortiz", "Providers", "Dentists", "10", 1},
            {"502", "Dr. Park", "Providers", "Dentists", "10", 2},
            {"503", "Hygienist Lee", "Providers", "Hygiene", "10", 3},
            {"610", "Room A", "Rooms", "Exam", "20", 1},
            {"611", "Room B", "Rooms", "Exam", "20", 2},
        };
        int position = 0;
        for (const Resource& r : resources) {
            exec(db_, "INSERT INTO resources VALUES (?, ?, ?, ?)", {r.value, r.name, r.cat, r.sub});
            exec(db_, "INSERT INTO group_members VALUES (?, ?, ?, ?)",
                 {r.group, r.value, r.column, position++});
            exec(db_,
                 "INSERT INTO templates (resource_value, weekday, start_time, end_time, description, colour) "
                 "VALUES (?, 0, '12:00:00', '13:00:00', 'Lunch', '#C0C0C0')",
                 {r.value});
        }
        exec(db_,
             "INSERT INTO templates (resource_value, weekday, start_time, end_time, description, colour) "
             "VALUES ('502', 2, '08:00:00', '10:00:00', 'Surgery', '#FFC0C0')",
             {});
        const char* const types[][6] = {
            {"501", "New Patient", "45", "First visit", "Intake", "7"},
            {"501", "Follow Up", "", "", "", "9"},
            {"502", "Surgery", "90", "Pre-op checked", "Surgery", "11"},
            {"502", "Consult", "30", "", "", "12"},
            {"503", "Cleaning", "60", "", "", "20"},
        };
        for (const auto& t : types)
            exec(db_, "INSERT INTO appointment_types VALUES (?, ?, ?, ?, ?, ?, ?)",
                 {t[0], position++, t[1], t[2], t[3], t[4], t[5]});

        int n = 0;
        for (const char* name : kPatients) {
            ++n;
            const QString id = QString::number(5500 + n);
            exec(db_,
                 "INSERT INTO patients (patient_id, name, chart_number, dob, sex, pcp, home_phone, home_ext, "
                 "work_phone, work_ext, other_phone, other_ext, primary_ins, primary_active, primary_copay, "
                 "secondary_ins, secondary_active, secondary_copay, balance30, balance60, balance90, "
                 "balance180, dod, "
                 "photo_image_id, name_folded) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                 "?, ?, ?, ?, ?, ?)",
                 {id,
                  name,
                  "C-" + QString::number(100 + n),
                  QString("%1/%2/19%3").arg(1 + n % 12).arg(1 + n % 28).arg(50 + n),
                  n % 2 ? "F" : "M",
                  "Dr. Ortiz",
                  QString("555-01%1").arg(n, 2, 10, QChar('0')),
                  "",
                  "555-0200",
                  "12",
                  "",
                  "",
                  "Acme Health",
                  n % 5 ? "Y" : "N",
                  "20.00",
                  n % 3 ? "" : "Blue Shield",
                  n % 3 ? "" : "Y",
                  n % 3 ? "" : "10.00",
                  QString::number(n * 5) + ".00",
                  "0.00",
                  "0.00",
                  n == 7 ? "45.00" : "0.00",
                  n == 13 ? "3/1/2008" : "",
                  n % 4 ? "" : QString::number(800 + n),
                  QString(name).toCaseFolded()});
        }

        // Two weeks of working days from the Monday of this week.
        static const char* const kStatuses[] = {"Scheduled", "Confirmed", "Checked-In", "Checked-Out",
                                                "Scheduled", "No-Show",   "Scheduled",  "Cancelled"};
        const quorvane::DateParts t = quorvane::splitDate(today);
        const int weekday = QDate(t.year, t.month, t.day).dayOfWeek();
        const OleDate monday = quorvane::addDays(quorvane::datePart(today), 1 - weekday);
        int k = 0;
        for (int day = 0; day < 14; ++day) {
            if (day % 7 >= 5) continue;
            const OleDate date = quorvane::addDays(monday, day);
            for (const Resource& r : resources) {
                const int count = QString(r.value).startsWith('6') ? 3 : 6;
                for (int i = 0; i < count; ++i, ++k) {
                    const int minute = 8 * 60 + i * (r.column == 3 ? 60 : 45) + (i >= 4 ? 60 : 0);
                    const OleDate start = quorvane::addMinutes(date, minute);
                    const OleDate end = quorvane::addMinutes(start, r.column == 3 ? 60 : 30);
                    const int p = (k * 7) % 30;
                    // The kinds of visit of the column's menu, in turn.
                    const QString value = r.value;
                    const QString type = value == "501"   ? (i % 2 ? "9" : "7")
                                         : value == "502" ? (i % 2 ? "12" : "11")
                                         : value == "503" ? "20"
                                                          : "";
                    exec(db_,
                         "INSERT INTO appointments (resource_value, start_at, end_at, description, "
                         "patient_id, status, recurrence_id, type_id) VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
                         {r.value, storedDate(start), storedDate(end), kPatients[p], QString::number(5501 + p),
                          kStatuses[k % 8], k % 9 == 0 ? "77" : "", type});
                }
            }
        }
    });
}

} // namespace practice
