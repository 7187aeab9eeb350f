#include "practice_store.h"

#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <QtSql/QSqlRecord>

#include <QDate>
#include <QFileInfo>
#include <QStringList>
#include <QVariant>

#include <array>

using quorvane::OleDate;

namespace practice {

namespace {

// The schema, one step per version. A database is brought forward from the
// version it records, one step at a time, each in a transaction of its own.
const std::array<QStringList, PracticeStore::kSchemaVersion> kMigrations = {{
    {
        "CREATE TABLE schema_version (version INTEGER NOT NULL)",
        "INSERT INTO schema_version (version) VALUES (0)",
        "CREATE TABLE practice_groups (group_id TEXT PRIMARY KEY, group_name TEXT NOT NULL, "
        "columns_shown INTEGER NOT NULL, columns_total INTEGER NOT NULL, is_default INTEGER NOT NULL, "
        "position INTEGER NOT NULL)",
        "CREATE TABLE resources (resource_value TEXT PRIMARY KEY, name TEXT NOT NULL, cat_type TEXT NOT "
        "NULL, "
        "sub_type TEXT NOT NULL)",
        "CREATE TABLE group_members (group_id TEXT NOT NULL, resource_value TEXT NOT NULL, "
        "default_column INTEGER NOT NULL, position INTEGER NOT NULL)",
        "CREATE TABLE patients (patient_id TEXT PRIMARY KEY, name TEXT NOT NULL, chart_number TEXT, dob "
        "TEXT, "
        "sex TEXT, pcp TEXT, home_phone TEXT, home_ext TEXT, work_phone TEXT, work_ext TEXT, other_phone "
        "TEXT, "
        "other_ext TEXT, primary_ins TEXT, primary_active TEXT, primary_copay TEXT, secondary_ins TEXT, "
        "secondary_active TEXT, secondary_copay TEXT, balance30 TEXT, balance60 TEXT, balance90 TEXT, "
        "balance180 TEXT, dod TEXT, photo_image_id TEXT)",
        "CREATE TABLE appointments (app_id INTEGER PRIMARY KEY AUTOINCREMENT, resource_value TEXT NOT NULL, "
        "start_at TEXT NOT NULL, end_at TEXT NOT NULL, description TEXT NOT NULL, patient_id TEXT NOT NULL, "
        "status TEXT NOT NULL, recurrence_id TEXT NOT NULL DEFAULT '', type_id TEXT NOT NULL DEFAULT '', "
        "comments TEXT NOT NULL DEFAULT '', chief_complaint TEXT NOT NULL DEFAULT '', "
        "prior_auth TEXT NOT NULL DEFAULT '', ref_provider TEXT NOT NULL DEFAULT '', "
        "ref_provider_id TEXT NOT NULL DEFAULT '')",
        "CREATE TABLE templates (template_id INTEGER PRIMARY KEY AUTOINCREMENT, resource_value TEXT NOT "
        "NULL, "
        "weekday INTEGER NOT NULL, start_time TEXT NOT NULL, end_time TEXT NOT NULL, description TEXT NOT "
        "NULL, "
        "colour TEXT NOT NULL)",
        "CREATE TABLE appointment_types (resource_value TEXT NOT NULL, position INTEGER NOT NULL, "
        "caption TEXT NOT NULL, duration TEXT NOT NULL, comment TEXT NOT NULL, chief TEXT NOT NULL, "
        "type_id TEXT NOT NULL)",
    },
    {
        // Two desks may change one appointment: each change counts up its version.
        "ALTER TABLE appointments ADD COLUMN version INTEGER NOT NULL DEFAULT 1",
        "CREATE INDEX appointments_by_day ON appointments (resource_value, start_at)",
    },
}};

// What a front desk is told, by what SQLite reports. `what` names the change
// that failed; none for a read.
QString plainWords(const QSqlError& e, const char* what) {
    const QString text = e.databaseText() + " " + e.driverText();
    const QString native = e.nativeErrorCode();
    const QString failed =
        what ? QString(what) + " could not be stored" : QString("the schedule could not be read");
    if (native == "5" || native == "6" || text.contains("locked", Qt::CaseInsensitive))
        return "The practice database is in use by another program, so " + failed +
               ". Try again in a moment.";
    if (native == "8" || text.contains("readonly", Qt::CaseInsensitive) ||
        text.contains("read-only", Qt::CaseInsensitive))
        return "The practice database can only be read, so " + failed + ".";
    if (native == "11" || native == "26" || text.contains("malformed", Qt::CaseInsensitive) ||
        text.contains("not a database", Qt::CaseInsensitive))
        return "The practice database is damaged and cannot be used.";
    return "The practice database failed, so " + failed + ": " + e.text().trimmed();
}

QSqlQuery prepared(const QSqlDatabase& db, const QString& sql, const QVariantList& values = {}) {
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql)) throw StoreError(plainWords(q.lastError(), nullptr).toStdString());
    for (const QVariant& v : values)
        // An empty text is stored as one, never as NULL.
        q.addBindValue(v.typeId() == QMetaType::QString && v.toString().isNull() ? QVariant(QString("")) : v);
    return q;
}

QSqlQuery run(const QSqlDatabase& db, const QString& sql, const QVariantList& values = {},
              const char* what = nullptr) {
    QSqlQuery q = prepared(db, sql, values);
    if (!q.exec()) throw StoreError(plainWords(q.lastError(), what).toStdString());
    return q;
}

QString text(const QSqlQuery& q, const char* field) { return q.value(field).toString(); }

StoredAppointment appointmentOf(const QSqlQuery& q) {
    StoredAppointment a;
    a.id = q.value("app_id").toLongLong();
    a.resource = text(q, "resource_value");
    a.start = fromStoredDate(text(q, "start_at"));
    a.end = fromStoredDate(text(q, "end_at"));
    a.description = text(q, "description");
    a.patientId = text(q, "patient_id");
    a.status = text(q, "status");
    a.recurrenceId = text(q, "recurrence_id");
    a.typeId = text(q, "type_id");
    a.comments = text(q, "comments");
    a.chiefComplaint = text(q, "chief_complaint");
    a.priorAuth = text(q, "prior_auth");
    a.refProvider = text(q, "ref_provider");
    a.refProviderId = text(q, "ref_provider_id");
    a.version = q.value("version").toInt();
    return a;
}

Patient patientOf(const QSqlQuery& q) {
    Patient p;
    p.id = text(q, "patient_id"), p.name = text(q, "name"), p.chartNumber = text(q, "chart_number");
    p.dob = text(q, "dob"), p.sex = text(q, "sex"), p.pcp = text(q, "pcp");
    p.homePhone = text(q, "home_phone"), p.homePhoneExt = text(q, "home_ext");
    p.workPhone = text(q, "work_phone"), p.workPhoneExt = text(q, "work_ext");
    p.otherPhone = text(q, "other_phone"), p.otherPhoneExt = text(q, "other_ext");
    p.primaryIns = text(q, "primary_ins"), p.primaryActive = text(q, "primary_active");
    p.primaryCoPay = text(q, "primary_copay"), p.secondaryIns = text(q, "secondary_ins");
    p.secondaryActive = text(q, "secondary_active"), p.secondaryCoPay = text(q, "secondary_copay");
    p.balance30 = text(q, "balance30"), p.balance60 = text(q, "balance60");
    p.balance90 = text(q, "balance90"), p.balance180 = text(q, "balance180");
    p.dod = text(q, "dod"), p.photoImageId = text(q, "photo_image_id");
    return p;
}

QString joined(const QStringList& records) { return records.join("~~"); }

} // namespace

QString storedDate(OleDate d) {
    const quorvane::DateParts p = quorvane::splitDate(d);
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", p.year, p.month, p.day, p.hour, p.minute,
                             p.second);
}

OleDate fromStoredDate(const QString& t) {
    bool ok = t.size() == 19;
    auto number = [&](int from, int length) { return ok ? t.mid(from, length).toInt(&ok) : 0; };
    const int y = number(0, 4), mo = number(5, 2), d = number(8, 2);
    const int h = number(11, 2), mi = number(14, 2), s = number(17, 2);
    if (!ok) throw StoreError(("The practice database is damaged: \"" + t + "\" is no date.").toStdString());
    return quorvane::makeDateTime(y, mo, d, h, mi, s);
}

PracticeStore::PracticeStore(QString connectionName) : name_(std::move(connectionName)) {}

PracticeStore::~PracticeStore() {
    if (db_.isValid()) {
        db_.close();
        db_ = QSqlDatabase();
        QSqlDatabase::removeDatabase(name_);
    }
}

void PracticeStore::checkOpen() const {
    if (!db_.isOpen()) throw StoreError("The practice database is not open.");
}

void PracticeStore::transaction(const char* what, const std::function<void()>& work) {
    checkOpen();
    if (!db_.transaction()) throw StoreError(plainWords(db_.lastError(), what).toStdString());
    try {
        work();
    } catch (...) {
        db_.rollback();
        throw;
    }
    if (!db_.commit()) {
        const QSqlError e = db_.lastError();
        db_.rollback();
        throw StoreError(plainWords(e, what).toStdString());
    }
}

void PracticeStore::openAt(const QString& path, int version) {
    db_ = QSqlDatabase::addDatabase("QSQLITE", name_);
    db_.setDatabaseName(path);
    // A database another desk holds is waited for a little before it counts as
    // locked. A file marked read-only is opened so, even by a user who could
    // write it anyway: the desk then shows the practice and stores nothing.
    const QFileInfo file(path);
    const bool readOnly = file.exists() && !(file.permissions() & QFileDevice::WriteOwner);
    db_.setConnectOptions(readOnly ? "QSQLITE_BUSY_TIMEOUT=2000;QSQLITE_OPEN_READONLY"
                                   : "QSQLITE_BUSY_TIMEOUT=2000");
    if (!db_.open()) throw StoreError(plainWords(db_.lastError(), nullptr).toStdString());
    // A file that is no database fails at its first read, not at the open.
    QSqlQuery probe(db_);
    if (!probe.exec("SELECT count(*) FROM sqlite_master"))
        throw StoreError(plainWords(probe.lastError(), nullptr).toStdString());
    migrate(version);
}

void PracticeStore::open(const QString& path, OleDate today) {
    const bool fresh = !QFileInfo::exists(path) || QFileInfo(path).size() == 0;
    openAt(path, kSchemaVersion);
    if (fresh) seed(today);
}

int PracticeStore::schemaVersion() const {
    checkOpen();
    QSqlQuery q(db_);
    if (!q.exec("SELECT version FROM schema_version") || !q.next()) return 0;
    return q.value(0).toInt();
}

void PracticeStore::migrate(int upTo) {
    for (int version = schemaVersion(); version < upTo; ++version)
        transaction("the new layout of the database", [&] {
            for (const QString& sql : kMigrations[static_cast<std::size_t>(version)])
                run(db_, sql, {}, "the new layout of the database");
            run(db_, "UPDATE schema_version SET version = ?", {version + 1},
                "the new layout of the database");
        });
}

Catalogue PracticeStore::catalogue() const {
    checkOpen();
    Catalogue c;
    QStringList views, defaults, groups, resources;
    QSqlQuery g = run(db_, "SELECT group_id, group_name, columns_shown, columns_total, is_default "
                           "FROM practice_groups ORDER BY position");
    while (g.next()) {
        const QString id = text(g, "group_id"), name = text(g, "group_name");
        views << id + "~" + name + "~" + text(g, "columns_shown") + "~" + text(g, "columns_total");
        const bool isDefault = g.value("is_default").toInt() != 0;
        QSqlQuery m = run(db_,
                          "SELECT m.resource_value, m.default_column, r.name, r.cat_type, r.sub_type FROM "
                          "group_members m JOIN resources r ON r.resource_value = m.resource_value "
                          "WHERE m.group_id = ? ORDER BY m.position",
                          {id});
        bool first = true;
        while (m.next()) {
            const QString value = text(m, "resource_value");
            // Only the first record of a group carries its default flag.
            groups << id + "~" + name + "~" + (first && isDefault ? "Y" : "N") + "~" + value + "~" +
                          text(m, "name") + "~" + text(m, "cat_type") + "~" + text(m, "sub_type");
            first = false;
            if (m.value("default_column").toInt() > 0)
                defaults << id + "~" + name + "~" + value + "~" + text(m, "default_column");
        }
    }
    QSqlQuery r =
        run(db_, "SELECT resource_value, name, cat_type, sub_type FROM resources ORDER BY resource_value");
    while (r.next())
        resources << text(r, "resource_value") + "~" + text(r, "name") + "~" + text(r, "cat_type") + "~" +
                         text(r, "sub_type");
    return {joined(views), joined(defaults), joined(groups), joined(resources)};
}

QString PracticeStore::appointmentTypes(const QString& resource) const {
    checkOpen();
    QStringList entries;
    QSqlQuery q = run(db_,
                      "SELECT caption, duration, comment, chief, type_id FROM appointment_types "
                      "WHERE resource_value = ? ORDER BY position",
                      {resource});
    while (q.next())
        entries << text(q, "caption") + "|" + text(q, "duration") + "|" + text(q, "comment") + "|" +
                       text(q, "chief") + "|" + text(q, "type_id");
    return entries.join("~");
}

std::vector<StoredAppointment> PracticeStore::appointmentsBetween(const QString& resource, OleDate first,
                                                                  OleDate last) const {
    checkOpen();
    std::vector<StoredAppointment> out;
    QSqlQuery q =
        run(db_,
            "SELECT * FROM appointments WHERE resource_value = ? AND start_at >= ? AND start_at < ? "
            "ORDER BY start_at, app_id",
            {resource, storedDate(quorvane::datePart(first)),
             storedDate(quorvane::addDays(quorvane::datePart(last), 1))});
    while (q.next())
        out.push_back(appointmentOf(q));
    return out;
}

std::vector<StoredAppointment> PracticeStore::appointments(const QString& resource, OleDate day) const {
    return appointmentsBetween(resource, day, day);
}

std::vector<Template> PracticeStore::templates(const QString& resource, OleDate day) const {
    checkOpen();
    const quorvane::DateParts p = quorvane::splitDate(day);
    const int weekday = QDate(p.year, p.month, p.day).dayOfWeek(); // Monday 1
    std::vector<Template> out;
    QSqlQuery q = run(db_,
                      "SELECT start_time, end_time, description, colour FROM templates "
                      "WHERE resource_value = ? AND (weekday = 0 OR weekday = ?) ORDER BY template_id",
                      {resource, weekday});
    const QString date = storedDate(quorvane::datePart(day)).left(10);
    while (q.next())
        out.push_back({resource, fromStoredDate(date + " " + text(q, "start_time")),
                       fromStoredDate(date + " " + text(q, "end_time")), text(q, "description"),
                       text(q, "colour")});
    return out;
}

StoredAppointment PracticeStore::appointment(qint64 id) const {
    checkOpen();
    QSqlQuery q = run(db_, "SELECT * FROM appointments WHERE app_id = ?", {id});
    if (!q.next())
        throw StoreError("The appointment " + std::to_string(id) + " is no longer in the schedule.");
    return appointmentOf(q);
}

int PracticeStore::appointmentCount() const {
    checkOpen();
    QSqlQuery q = run(db_, "SELECT count(*) FROM appointments");
    return q.next() ? q.value(0).toInt() : 0;
}

std::vector<Patient> PracticeStore::findPatients(const QString& t) const {
    checkOpen();
    std::vector<Patient> out;
    QSqlQuery q = run(db_,
                      "SELECT * FROM patients WHERE name LIKE ? OR chart_number LIKE ? OR patient_id = ? "
                      "ORDER BY name",
                      {"%" + t + "%", "%" + t + "%", t});
    while (q.next())
        out.push_back(patientOf(q));
    return out;
}

Patient PracticeStore::patient(const QString& id) const {
    checkOpen();
    QSqlQuery q = run(db_, "SELECT * FROM patients WHERE patient_id = ?", {id});
    if (!q.next()) throw StoreError(("There is no patient " + id + ".").toStdString());
    return patientOf(q);
}

qint64 PracticeStore::addAppointment(const StoredAppointment& a) {
    qint64 id = 0;
    transaction("the booking", [&] {
        QSqlQuery q =
            run(db_,
                "INSERT INTO appointments (resource_value, start_at, end_at, description, patient_id, "
                "status, recurrence_id, type_id, comments, chief_complaint, prior_auth, ref_provider, "
                "ref_provider_id) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                {a.resource, storedDate(a.start), storedDate(a.end), a.description, a.patientId, a.status,
                 a.recurrenceId, a.typeId, a.comments, a.chiefComplaint, a.priorAuth, a.refProvider,
                 a.refProviderId},
                "the booking");
        id = q.lastInsertId().toLongLong();
    });
    return id;
}

namespace {
// An UPDATE or DELETE of one appointment must have found it.
void changedOne(const QSqlQuery& q, qint64 id) {
    if (q.numRowsAffected() != 1)
        throw StoreError("The appointment " + std::to_string(id) + " is no longer in the schedule.");
}
} // namespace

void PracticeStore::moveAppointment(qint64 id, const QString& resource, OleDate start, OleDate end) {
    transaction("the move", [&] {
        changedOne(
            run(db_,
                "UPDATE appointments SET resource_value = ?, start_at = ?, end_at = ?, version = version + 1 "
                "WHERE app_id = ?",
                {resource, storedDate(start), storedDate(end), id}, "the move"),
            id);
    });
}

void PracticeStore::removeAppointment(qint64 id) {
    transaction("the removal", [&] {
        changedOne(run(db_, "DELETE FROM appointments WHERE app_id = ?", {id}, "the removal"), id);
    });
}

void PracticeStore::setStatus(qint64 id, const QString& status) {
    transaction("the status", [&] {
        changedOne(run(db_, "UPDATE appointments SET status = ?, version = version + 1 WHERE app_id = ?",
                       {status, id}, "the status"),
                   id);
    });
}

void PracticeStore::saveDetails(const StoredAppointment& a) {
    transaction("the appointment's details", [&] {
        changedOne(run(db_,
                       "UPDATE appointments SET comments = ?, chief_complaint = ?, prior_auth = ?, "
                       "ref_provider = ?, "
                       "ref_provider_id = ?, version = version + 1 WHERE app_id = ?",
                       {a.comments, a.chiefComplaint, a.priorAuth, a.refProvider, a.refProviderId, a.id},
                       "the appointment's details"),
                   a.id);
    });
}

} // namespace practice
