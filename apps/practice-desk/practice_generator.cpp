// A large practice for measuring the store as a practice grows: resources,
// patients, and years of working days full of appointments up to a few weeks
// past today, with templates and types. Rows go in many at a time, inside
// transactions, so ten years take minutes.

#include "practice_store.h"
#include "store_sql.h"

#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <QDate>

using quorvane::OleDate;

namespace practice {

namespace {

const char* const kFirst[] = {"Ada",   "Alan",  "Grace", "Edsger", "Barbara", "Donald", "Frances", "John",
                              "Niklaus", "Margaret", "Ken", "Radia", "Tony",   "Leslie", "Shafi",  "Robin",
                              "Jean",  "Karen", "Peter", "Adele",  "Butler",  "Mary",   "Carl",    "Hedy"};
const char* const kLast[] = {"Byron",  "Kay",     "Hopper",  "Dijkstra", "Liskov", "Knuth",   "Allen",  "Backus",
                             "Wirth",  "Hamilton", "Thompson", "Perlman", "Hoare", "Lamport", "Goldwasser",
                             "Milner", "Sammet",  "Jones",   "Naur",     "Goldberg", "Lampson", "Keller", "Petri",
                             "Lamarr", "Booth",   "Dahl",    "Nygaard",  "Wilson", "Ortiz",   "Park"};
const char* const kStatuses[] = {"Checked-Out", "Checked-Out", "Checked-Out", "Checked-Out",
                                 "Checked-Out", "No-Show",     "Cancelled",   "Checked-Out"};

// Rows of one table, written `kBatch` at a time in one statement each.
class Batch {
public:
    Batch(QSqlDatabase& db, QString head, int columns) : db_(db), head_(std::move(head)), columns_(columns) {}
    void add(const QVariantList& row) {
        values_ << row;
        if (++rows_ == kBatch) flush();
    }
    void flush() {
        if (rows_ == 0) return;
        QString one = "(" + QString("?, ").repeated(columns_ - 1) + "?)";
        QStringList all;
        for (int i = 0; i < rows_; ++i)
            all << one;
        QSqlQuery q(db_);
        q.prepare(head_ + " VALUES " + all.join(", "));
        for (const QVariant& v : values_)
            q.addBindValue(v);
        if (!q.exec()) throw StoreError("The practice could not be generated: " + q.lastError().text().toStdString());
        values_.clear();
        rows_ = 0;
    }

private:
    static constexpr int kBatch = 400;
    QSqlDatabase& db_;
    QString head_;
    int columns_;
    QVariantList values_;
    int rows_ = 0;
};

} // namespace

void PracticeStore::generate(const QString& location, OleDate today, const PracticeSize& size,
                             const std::function<void(const QString&)>& progress) {
    connect(location, OpenMode::Demo);
    transaction("the practice's layout", [&] {
        if (schemaVersion() != 0)
            throw StoreError((sql::nameOf(db_) + " already holds a practice; generate into a new one.").toStdString());
        // The audit trail's triggers come last: a generated past has no trail.
        migrate(0, kAuditedVersion - 1);
    });
    auto say = [&](const QString& what) {
        if (progress) progress(what);
    };
    std::uint64_t seed = 0x2545F4914F6CDD1DULL;
    auto next = [&](std::uint64_t below) {
        seed ^= seed << 13, seed ^= seed >> 7, seed ^= seed << 17;
        return seed % below;
    };

    transaction("the generated catalogue", [&] {
        // The whole practice, and its second half on a floor of its own: a
        // group switch fills the control's ten columns (five in view) with the
        // resources the other group's columns do not hold.
        const int half = size.resources / 2;
        sql::run(db_, "INSERT INTO practice_groups VALUES (?, ?, ?, ?, ?, ?)",
                 {"10", "Whole Practice", std::min(size.resources, 5), std::min(size.resources, 10), 1, 0});
        sql::run(db_, "INSERT INTO practice_groups VALUES (?, ?, ?, ?, ?, ?)",
                 {"20", "Second Floor", std::min(size.resources - half, 5), std::min(size.resources - half, 10), 0, 1});
        Batch resources(db_, "INSERT INTO resources", 4), members(db_, "INSERT INTO group_members", 4);
        Batch templates(db_, "INSERT INTO templates (resource_value, weekday, start_time, end_time, description, "
                             "colour)", 6);
        Batch types(db_, "INSERT INTO appointment_types", 7);
        for (int r = 0; r < size.resources; ++r) {
            const QString value = QString::number(7001 + r);
            resources.add({value, QString("Dr. %1 %2").arg(kLast[r % std::size(kLast)]).arg(r + 1),
                           r % 4 == 3 ? "Hygiene" : "Providers", "General"});
            members.add({"10", value, r < 10 ? r + 1 : 0, r});
            if (r >= half) members.add({"20", value, r - half < 10 ? r - half + 1 : 0, r - half});
            templates.add({value, 0, "12:00:00", "13:00:00", "Lunch", "#C0C0C0"});
            types.add({value, 0, "Check-Up", "20", "", "", "1"});
            types.add({value, 1, "Treatment", "40", "", "", "2"});
        }
        resources.flush(), members.flush(), templates.flush(), types.flush();
    });

    transaction("the generated patients", [&] {
        Batch patients(db_, "INSERT INTO patients (patient_id, name, chart_number, dob, sex, home_phone, name_folded)",
                       7);
        for (int p = 0; p < size.patients; ++p) {
            const QString name = QString("%1 %2 %3")
                                     .arg(kFirst[next(std::size(kFirst))], kLast[next(std::size(kLast))])
                                     .arg(p + 1);
            patients.add({QString::number(100001 + p), name, QString("C-%1").arg(p + 1, 6, 10, QChar('0')),
                          QString("%1/%2/19%3").arg(1 + p % 12).arg(1 + p % 28).arg(30 + p % 70),
                          p % 2 ? "F" : "M", QString("555-%1").arg(p % 10000, 4, 10, QChar('0')),
                          name.toCaseFolded()});
            if ((p + 1) % 20000 == 0) say(QString("%1 patients").arg(p + 1));
        }
        patients.flush();
    });

    // Working days back from today, and a few weeks ahead.
    const QDate last = QDate(1899, 12, 30).addDays(static_cast<qint64>(quorvane::datePart(today).value)).addDays(28);
    const QDate first = size.days > 0 ? last.addDays(-28 - size.days) : last.addYears(-size.years).addDays(-28);
    const int slot = std::max(1, (9 * 60) / std::max(size.perDay, 1));
    qint64 written = 0;
    for (QDate year = first; year <= last; year = year.addYears(1)) {
        transaction("the generated appointments", [&] {
            Batch appointments(db_, "INSERT INTO appointments (resource_value, start_at, end_at, description, "
                                    "patient_id, status, type_id)",
                               7);
            for (QDate day = year; day <= last && day < year.addYears(1); day = day.addDays(1)) {
                if (day.dayOfWeek() > 5) continue;
                const OleDate date = quorvane::makeDate(day.year(), day.month(), day.day());
                const bool past = date < today;
                for (int r = 0; r < size.resources; ++r)
                    for (int i = 0; i < size.perDay; ++i) {
                        const OleDate start = quorvane::addMinutes(date, 8 * 60 + i * slot);
                        const int p = static_cast<int>(next(static_cast<std::uint64_t>(size.patients)));
                        appointments.add({QString::number(7001 + r), storedDate(start),
                                          storedDate(quorvane::addMinutes(start, slot)),
                                          QString("%1 %2").arg(kFirst[p % std::size(kFirst)],
                                                               kLast[p % std::size(kLast)]),
                                          QString::number(100001 + p),
                                          past ? kStatuses[next(std::size(kStatuses))] : "Scheduled",
                                          i % 3 ? "1" : "2"});
                        ++written;
                    }
            }
            appointments.flush();
        });
        say(QString("%1 appointments, to %2").arg(written).arg(std::min(year.addYears(1), last).toString("M/d/yyyy")));
    }
    transaction("the practice's audit trail", [&] { migrate(kAuditedVersion - 1, kSchemaVersion); });
    // The planner's picture of the tables, as a practice's server keeps it up to date.
    sql::run(db_, "ANALYZE", {}, "the statistics");
}

} // namespace practice
