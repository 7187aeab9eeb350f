#include "practice_store.h"

#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <QtSql/QSqlRecord>

#include <QtSql/QSqlDriver>

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <QUrl>
#include <QUrlQuery>
#include <QVariant>

#include <array>

using quorvane::OleDate;

namespace practice {

namespace {

// The schema, one step per version. A database is brought forward from the
// version it records, one step at a time, each in a transaction of its own.
// %ID% is a key the database numbers itself, in each dialect's words.
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
        "CREATE TABLE appointments (app_id %ID%, resource_value TEXT NOT NULL, "
        "start_at TEXT NOT NULL, end_at TEXT NOT NULL, description TEXT NOT NULL, patient_id TEXT NOT NULL, "
        "status TEXT NOT NULL, recurrence_id TEXT NOT NULL DEFAULT '', type_id TEXT NOT NULL DEFAULT '', "
        "comments TEXT NOT NULL DEFAULT '', chief_complaint TEXT NOT NULL DEFAULT '', "
        "prior_auth TEXT NOT NULL DEFAULT '', ref_provider TEXT NOT NULL DEFAULT '', "
        "ref_provider_id TEXT NOT NULL DEFAULT '')",
        "CREATE TABLE templates (template_id %ID%, resource_value TEXT NOT "
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

// What a front desk is told, by what the database reports. `what` names the
// change that failed; none for a read. A database out of reach is a
// ConnectionLost, so the desk can wait for it.
[[noreturn]] void fail(const QSqlDatabase& db, const QSqlError& e, const char* what) {
    const QString text = e.databaseText() + " " + e.driverText();
    const QString native = e.nativeErrorCode();
    const QString failed =
        what ? QString(what) + " could not be stored" : QString("the schedule could not be read");
    auto has = [&](const char* words) { return text.contains(words, Qt::CaseInsensitive); };
    // SQLite has no server to lose; what it reports as a connection error is a file's.
    if (db.driverName() == "QPSQL" &&
        (e.type() == QSqlError::ConnectionError || has("server closed the connection") ||
         has("no connection") || has("could not connect") || has("terminating connection") ||
         has("connection refused") || has("connection to server") || native == "57P01" || !db.isOpen()))
        throw ConnectionLost(("The practice database cannot be reached, so " + failed +
                              ". Nothing can be stored until it is back.")
                                 .toStdString());
    if (native == "5" || native == "6" || has("locked"))
        throw StoreError(
            ("The practice database is in use by another program, so " + failed + ". Try again in a moment.")
                .toStdString());
    if (native == "8" || has("readonly") || has("read-only"))
        throw StoreError(("The practice database can only be read, so " + failed + ".").toStdString());
    if (native == "11" || native == "26" || has("malformed") || has("not a database"))
        throw StoreError("The practice database is damaged and cannot be used.");
    throw StoreError(
        ("The practice database failed, so " + failed + ": " + e.text().trimmed()).toStdString());
}

QSqlQuery prepared(const QSqlDatabase& db, const QString& sql, const QVariantList& values = {}) {
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql)) fail(db, q.lastError(), nullptr);
    for (const QVariant& v : values)
        // An empty text is stored as one, never as NULL.
        q.addBindValue(v.typeId() == QMetaType::QString && v.toString().isNull() ? QVariant(QString("")) : v);
    return q;
}

// A statement with values goes prepared; one without goes as it is, since a
// server may not prepare every kind (PostgreSQL prepares no CREATE TABLE).
QSqlQuery run(const QSqlDatabase& db, const QString& sql, const QVariantList& values = {},
              const char* what = nullptr) {
    if (values.isEmpty()) {
        QSqlQuery q(db);
        q.setForwardOnly(true);
        if (!q.exec(sql)) fail(db, q.lastError(), what);
        return q;
    }
    QSqlQuery q = prepared(db, sql, values);
    if (!q.exec()) fail(db, q.lastError(), what);
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
    if (!db_.transaction()) fail(db_, db_.lastError(), what);
    try {
        work();
    } catch (...) {
        db_.rollback();
        throw;
    }
    if (!db_.commit()) {
        const QSqlError e = db_.lastError();
        db_.rollback();
        fail(db_, e, what);
    }
}

void PracticeStore::connect(const QString& location) {
    location_ = location;
    postgres_ = location.startsWith("postgresql://");
    if (postgres_) {
        const QUrl url(location);
        const QUrlQuery query(url);
        db_ = QSqlDatabase::addDatabase("QPSQL", name_);
        // A folder as the host is the folder of the server's socket.
        db_.setHostName(query.hasQueryItem("host") ? query.queryItemValue("host") : url.host());
        if (url.port() > 0) db_.setPort(url.port());
        db_.setDatabaseName(url.path().mid(1));
        db_.setUserName(url.userName().isEmpty() ? QString("postgres") : url.userName());
        if (!url.password().isEmpty()) db_.setPassword(url.password());
        db_.setConnectOptions("connect_timeout=2");
        if (!db_.open()) fail(db_, db_.lastError(), nullptr);
        return;
    }
    db_ = QSqlDatabase::addDatabase("QSQLITE", name_);
    db_.setDatabaseName(location);
    QDir().mkpath(QFileInfo(location).absolutePath());
    // A database another desk holds is waited for a little before it counts as
    // locked. A file marked read-only is opened so, even by a user who could
    // write it anyway: the desk then shows the practice and stores nothing.
    const QFileInfo file(location);
    const bool readOnly = file.exists() && !(file.permissions() & QFileDevice::WriteOwner);
    db_.setConnectOptions(readOnly ? "QSQLITE_BUSY_TIMEOUT=2000;QSQLITE_OPEN_READONLY"
                                   : "QSQLITE_BUSY_TIMEOUT=2000");
    if (!db_.open()) fail(db_, db_.lastError(), nullptr);
    // A file that is no database fails at its first read, not at the open.
    QSqlQuery probe(db_);
    if (!probe.exec("SELECT count(*) FROM sqlite_master")) fail(db_, probe.lastError(), nullptr);
}

void PracticeStore::openAt(const QString& location, int version) {
    connect(location);
    migrate(version);
}

void PracticeStore::open(const QString& location, OleDate today) {
    connect(location);
    const bool fresh = schemaVersion() == 0;
    migrate(kSchemaVersion);
    if (fresh) seed(today);
}

bool PracticeStore::reconnect() {
    db_.close();
    if (!db_.open()) return false;
    if (listening_) subscribe();
    return true;
}

void PracticeStore::listen(std::function<void(const QString& resource, OleDate day)> changed) {
    changed_ = std::move(changed);
    if (!postgres_ || !changed_ || listening_) return;
    listening_ = true;
    subscribe();
}

void PracticeStore::subscribe() {
    db_.driver()->subscribeToNotification(kChannel);
    if (heard_ == db_.driver()) return;
    heard_ = db_.driver();
    QObject::connect(heard_, &QSqlDriver::notification,
                     [this](const QString& name, QSqlDriver::NotificationSource source, const QVariant& payload) {
                         // A desk's own changes are on its grid already.
                         if (name != kChannel || source == QSqlDriver::SelfSource || !changed_) return;
                         const QStringList parts = payload.toString().split('|');
                         if (parts.size() == 2) changed_(parts[0], fromStoredDate(parts[1] + " 00:00:00"));
                     });
}

// Other desks showing the resource's day reload it. In a transaction the
// notice goes out only when the change is committed.
void PracticeStore::announce(const QString& resource, OleDate day) {
    if (!postgres_) return;
    run(db_, "SELECT pg_notify(?, ?)",
        {kChannel, resource + "|" + storedDate(quorvane::datePart(day)).left(10)},
        "the notice to the other desks");
}

// 0 for a database that has no schema yet.
int PracticeStore::schemaVersion() const {
    checkOpen();
    const QStringList tables = db_.tables();
    if (!tables.contains("schema_version")) return 0;
    QSqlQuery q = run(db_, "SELECT version FROM schema_version");
    return q.next() ? q.value(0).toInt() : 0;
}

void PracticeStore::migrate(int upTo) {
    for (int version = schemaVersion(); version < upTo; ++version)
        transaction("the new layout of the database", [&] {
            for (QString sql : kMigrations[static_cast<std::size_t>(version)]) {
                sql.replace("%ID%",
                            postgres_ ? "BIGSERIAL PRIMARY KEY" : "INTEGER PRIMARY KEY AUTOINCREMENT");
                run(db_, sql, {}, "the new layout of the database");
            }
            run(db_, "UPDATE schema_version SET version = ?", {version + 1},
                "the new layout of the database");
        });
}

Catalogue PracticeStore::catalogue() const {
    checkOpen();
    // Each query is read to its end before the next: a server connection has
    // one result at a time.
    struct Group {
        QString id, name, shown, total;
        bool isDefault;
    };
    std::vector<Group> groupRows;
    QSqlQuery g = run(db_, "SELECT group_id, group_name, columns_shown, columns_total, is_default "
                           "FROM practice_groups ORDER BY position");
    while (g.next())
        groupRows.push_back({text(g, "group_id"), text(g, "group_name"), text(g, "columns_shown"),
                             text(g, "columns_total"), g.value("is_default").toInt() != 0});
    QStringList views, defaults, groups, resources;
    for (const Group& group : groupRows) {
        views << group.id + "~" + group.name + "~" + group.shown + "~" + group.total;
        QSqlQuery m = run(db_,
                          "SELECT m.resource_value, m.default_column, r.name, r.cat_type, r.sub_type FROM "
                          "group_members m JOIN resources r ON r.resource_value = m.resource_value "
                          "WHERE m.group_id = ? ORDER BY m.position",
                          {group.id});
        bool first = true;
        while (m.next()) {
            const QString value = text(m, "resource_value");
            // Only the first record of a group carries its default flag.
            groups << group.id + "~" + group.name + "~" + (first && group.isDefault ? "Y" : "N") + "~" +
                          value + "~" + text(m, "name") + "~" + text(m, "cat_type") + "~" +
                          text(m, "sub_type");
            first = false;
            if (m.value("default_column").toInt() > 0)
                defaults << group.id + "~" + group.name + "~" + value + "~" + text(m, "default_column");
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
        // Only PostgreSQL says the new key in the same statement.
        QSqlQuery q =
            run(db_,
                "INSERT INTO appointments (resource_value, start_at, end_at, description, patient_id, "
                "status, recurrence_id, type_id, comments, chief_complaint, prior_auth, ref_provider, "
                "ref_provider_id) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)" +
                    QString(postgres_ ? " RETURNING app_id" : ""),
                {a.resource, storedDate(a.start), storedDate(a.end), a.description, a.patientId, a.status,
                 a.recurrenceId, a.typeId, a.comments, a.chiefComplaint, a.priorAuth, a.refProvider,
                 a.refProviderId},
                "the booking");
        id = postgres_ ? (q.next() ? q.value(0).toLongLong() : 0) : q.lastInsertId().toLongLong();
        announce(a.resource, a.start);
    });
    return id;
}

int PracticeStore::changeVersioned(const char* what, qint64 id, int version, const QString& set,
                                   const QVariantList& values, const QString& newResource, OleDate newDay) {
    int now = 0;
    transaction(what, [&] {
        // The row as it stands, locked until the commit where the dialect can.
        QSqlQuery row = run(db_,
                            "SELECT resource_value, start_at, version FROM appointments WHERE app_id = ?" +
                                QString(postgres_ ? " FOR UPDATE" : ""),
                            {id}, what);
        if (!row.next())
            throw StoreError("The appointment " + std::to_string(id) + " is no longer in the schedule.");
        const QString resource = text(row, "resource_value");
        const OleDate day = fromStoredDate(text(row, "start_at"));
        const int stands = row.value("version").toInt();
        row.finish();
        if (stands != version)
            throw ConflictError("Another desk changed this appointment first, so " + std::string(what) +
                                " was not stored. The schedule now shows it as it is.");
        QVariantList bound = values;
        bound << id << version;
        QSqlQuery q = run(db_,
                          set.isEmpty() ? QString("DELETE FROM appointments WHERE app_id = ? AND version = ?")
                                        : "UPDATE appointments SET " + set +
                                              ", version = version + 1 WHERE app_id = ? AND version = ?",
                          bound, what);
        if (q.numRowsAffected() != 1)
            throw ConflictError("Another desk changed this appointment first, so " + std::string(what) +
                                " was not stored. The schedule now shows it as it is.");
        announce(resource, day);
        if (!newResource.isEmpty()) announce(newResource, newDay);
        now = version + 1;
    });
    return now;
}

int PracticeStore::moveAppointment(qint64 id, int version, const QString& resource, OleDate start,
                                   OleDate end) {
    return changeVersioned("the move", id, version, "resource_value = ?, start_at = ?, end_at = ?",
                           {resource, storedDate(start), storedDate(end)}, resource, start);
}

void PracticeStore::removeAppointment(qint64 id, int version) {
    changeVersioned("the removal", id, version, {}, {});
}

int PracticeStore::setStatus(qint64 id, int version, const QString& status) {
    return changeVersioned("the status", id, version, "status = ?", {status});
}

int PracticeStore::saveDetails(const StoredAppointment& a) {
    return changeVersioned(
        "the appointment's details", a.id, a.version,
        "comments = ?, chief_complaint = ?, prior_auth = ?, ref_provider = ?, ref_provider_id = ?",
        {a.comments, a.chiefComplaint, a.priorAuth, a.refProvider, a.refProviderId});
}

} // namespace practice
