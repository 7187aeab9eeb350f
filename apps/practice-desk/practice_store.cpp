#include "store_sql.h"

#include <QtSql/QSqlDriver>
#include <QtSql/QSqlField>
#include <QtSql/QSqlRecord>

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <QStringList>
#include <QSysInfo>
#include <QTime>
#include <QUrl>
#include <QUrlQuery>
#include <QVariant>

#include <cstdio>

using quorvane::OleDate;

namespace practice {

namespace {

using sql::fail;
using sql::run;
using sql::text;

StoredAppointment appointmentOf(const sql::Rows& q) {
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

Patient patientOf(const sql::Rows& q) {
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
    if (!ok || !QDate(y, mo, d).isValid() || !QTime(h, mi, s).isValid() || y < 100)
        throw DamagedError(("The practice database is damaged: \"" + t + "\" is no date.").toStdString());
    return quorvane::makeDateTime(y, mo, d, h, mi, s);
}

PracticeStore::PracticeStore(QString connectionName) : name_(std::move(connectionName)) {}

PracticeStore::~PracticeStore() { drop(); }

// The connection and all that hangs on it: its kept statements, and the
// connection's entry by name.
void PracticeStore::drop() {
    if (!db_.isValid()) return;
    sql::forgetStatements(db_);
    db_.close();
    db_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(name_);
}

QString PracticeStore::displayName() const {
    if (!postgres_) return QDir::toNativeSeparators(QFileInfo(location_).absoluteFilePath());
    return db_.databaseName() + " on " + (db_.hostName().isEmpty() ? QString("localhost") : db_.hostName());
}

// A server connection that was lost and let go is still the server's to come
// back: the desk waits for it rather than failing.
void PracticeStore::checkOpen() const {
    if (db_.isOpen()) return;
    if (postgres_)
        throw ConnectionLost((sql::nameOf(db_) + " cannot be reached. Nothing can be stored until it is back.")
                                 .toStdString());
    throw StoreError((sql::nameOf(db_) + " is not open.").toStdString());
}

// A write on SQLite takes the file's write lock at its start, so that two
// desks checking and then writing cannot both pass the check.
void PracticeStore::transaction(const char* what, const std::function<void()>& work) {
    checkOpen();
    if (transactionDepth_ > 0) {
        work();
        return;
    }
    for (int attempt = 1;; ++attempt) {
        try {
            transactionOnce(what, work);
            return;
        } catch (const Contention&) {
            if (attempt == 5) throw;
        }
    }
}

void PracticeStore::transactionOnce(const char* what, const std::function<void()>& work) {
    auto rollback = [&] {
        if (postgres_)
            db_.rollback();
        else
            QSqlQuery(db_).exec("ROLLBACK");
    };
    if (postgres_) {
        if (!db_.transaction()) fail(db_, db_.lastError(), what);
    } else {
        run(db_, "BEGIN IMMEDIATE", {}, what);
    }
    ++transactionDepth_;
    try {
        if (audited_) nameActor(user_);
        work();
        // Whoever was named for this transaction's changes goes with it.
        if (std::exchange(actorNamed_, false)) run(db_, "DELETE FROM desk_actor", {}, what);
    } catch (...) {
        actorNamed_ = false;
        --transactionDepth_;
        rollback();
        throw;
    }
    --transactionDepth_;
    const auto committing = std::chrono::steady_clock::now();
    if (postgres_ ? db_.commit() : QSqlQuery(db_).exec("COMMIT")) {
        lastCommit_ = committing;
        return;
    }
    const QSqlError e = db_.lastError();
    rollback();
    fail(db_, e, what);
}

void PracticeStore::connect(const QString& location, OpenMode mode) {
    // An open that failed (a refused login) is tried again on a connection anew.
    drop();
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
        const QString user = !serverUser_.isEmpty() ? serverUser_ : url.userName();
        db_.setUserName(user.isEmpty() ? QString("postgres") : user);
        const QString password = !serverUser_.isEmpty() ? password_ : url.password();
        if (!password.isEmpty()) db_.setPassword(password);
        password_.clear();
        // The server's audit trail names the desk by its connection's name.
        QStringList options{"connect_timeout=2", "application_name=" + deskName()};
        for (const char* tls : {"sslmode", "sslrootcert", "sslcert", "sslkey"})
            if (query.hasQueryItem(tls)) options << QString(tls) + "=" + query.queryItemValue(tls);
        db_.setConnectOptions(options.join(';'));
        if (!db_.open()) fail(db_, db_.lastError(), nullptr);
        quiet();
        return;
    }
    db_ = QSqlDatabase::addDatabase("QSQLITE", name_);
    db_.setDatabaseName(location);
    const QFileInfo file(location);
    // A desk never makes a database nobody asked for: a missing file is most
    // often a share that is not mounted, or a path mistyped.
    if (!file.exists()) {
        const QString folder = QDir::toNativeSeparators(file.absolutePath());
        const QString path = QDir::toNativeSeparators(file.absoluteFilePath());
        if (mode == OpenMode::Existing)
            throw StoreError((QFileInfo(file.absolutePath()).isDir()
                                  ? "There is no practice database at " + path + "."
                                  : "There is no practice database at " + path + ": the folder " + folder +
                                        " does not exist. Is the practice's share mounted?")
                                 .toStdString());
        if (!QDir().mkpath(file.absolutePath()))
            throw StoreError(("The folder " + folder + " cannot be made, so the demo practice cannot be set up at " +
                              path + ".")
                                 .toStdString());
    }
    // A database another desk holds is waited for a little before it counts as
    // locked. A file marked read-only is opened so, even by a user who could
    // write it anyway: the desk then shows the practice and stores nothing.
    const bool readOnly = file.exists() && !(file.permissions() & QFileDevice::WriteOwner);
    db_.setConnectOptions(readOnly ? "QSQLITE_BUSY_TIMEOUT=2000;QSQLITE_OPEN_READONLY"
                                   : "QSQLITE_BUSY_TIMEOUT=2000");
    if (!db_.open()) fail(db_, db_.lastError(), nullptr);
    // A file that is no database fails at its first read, not at the open.
    run(db_, "SELECT count(*) FROM sqlite_master");
}

// This computer, as the audit trail names the desk a change came from.
QString PracticeStore::deskName() {
    // Taken once: every write of a file names it.
    static const QString name = [] {
        QString host = QSysInfo::machineHostName();
        host.replace(QRegularExpression("[^A-Za-z0-9._-]"), "-");
        return host.isEmpty() ? QString("desk") : host.left(60);
    }();
    return name;
}

// In a file, the user a write transaction's changes are audited under: the
// triggers refuse a change that names none.
void PracticeStore::nameActor(const QString& who) {
    if (postgres_) return;
    if (who.isEmpty() && fileHasUsers_)
        throw NotPermitted((sql::nameOf(db_) + " has users: log in to change the schedule.").toStdString());
    run(db_, "DELETE FROM desk_actor", {}, "the name of the desk's user");
    run(db_, "INSERT INTO desk_actor (name, desk) VALUES (?, ?)", {who.isEmpty() ? osUser() : who, deskName()},
        "the name of the desk's user");
    actorNamed_ = true;
}

QString PracticeStore::osUser() {
    const QString name = qEnvironmentVariable("USER", qEnvironmentVariable("LOGNAME", qEnvironmentVariable("USERNAME")));
    return name.isEmpty() ? QString("unknown") : name;
}

// The server's notices (a constraint dropped that was not there) are not the
// desk's to print.
void PracticeStore::quiet() {
    run(db_, "SET client_min_messages TO warning");
}

void PracticeStore::ping() {
    checkOpen();
    if (postgres_) run(db_, "SELECT 1");
}

void PracticeStore::disconnect() {
    if (!postgres_) return;
    heard_ = nullptr;
    sql::forgetStatements(db_);
    db_.close();
}

bool PracticeStore::reconnect() {
    try {
        connectAgain();
        ping();
        return true;
    } catch (const StoreError&) {
        sql::forgetStatements(db_);
        db_.close();
        return false;
    }
}

// The same connection made anew, as whoever it names now: what was kept on the
// old one goes with it, and the new one listens if the store did.
void PracticeStore::connectAgain() {
    sql::forgetStatements(db_);
    db_.close();
    heard_ = nullptr;
    if (!db_.open()) fail(db_, db_.lastError(), nullptr);
    quiet();
    if (listening_) subscribe();
}

void PracticeStore::listen(std::function<void(const QString& resource, OleDate day)> changed) {
    changed_ = std::move(changed);
    if (!postgres_ || !changed_ || listening_) return;
    listening_ = true;
    subscribe();
}

void PracticeStore::subscribe() {
    if (!db_.driver()->subscribeToNotification(kChannel)) fail(db_, db_.driver()->lastError(), nullptr);
    if (heard_ == db_.driver()) return;
    heard_ = db_.driver();
    QObject::connect(heard_, &QSqlDriver::notification, heard_,
                     [this](const QString& name, QSqlDriver::NotificationSource source, const QVariant& payload) {
                         // A desk's own changes are on its grid already.
                         if (name != kChannel || source == QSqlDriver::SelfSource || !changed_) return;
                         QString resource;
                         OleDate day;
                         if (!readNotice(payload.toString(), resource, day)) {
                             std::fprintf(stderr, "practice-desk: ignored a notice that is not a desk's: %s\n",
                                          qPrintable(payload.toString().left(80)));
                             return;
                         }
                         changed_(resource, day);
                     });
}

// {"resource": "...", "day": "yyyy-MM-dd"}: JSON carries any text a resource
// value may hold.
QString PracticeStore::noticeOf(const QString& resource, OleDate day) {
    const QJsonObject notice{{"resource", resource}, {"day", storedDate(quorvane::datePart(day)).left(10)}};
    return QString::fromUtf8(QJsonDocument(notice).toJson(QJsonDocument::Compact));
}

bool PracticeStore::readNotice(const QString& payload, QString& resource, OleDate& day) {
    const QJsonDocument doc = QJsonDocument::fromJson(payload.toUtf8());
    if (!doc.isObject()) return false;
    const QJsonValue r = doc.object().value("resource"), d = doc.object().value("day");
    if (!r.isString() || !d.isString()) return false;
    const QDate date = QDate::fromString(d.toString(), Qt::ISODate);
    if (!date.isValid() || date.year() < 100 || date.year() > 9999) return false;
    resource = r.toString();
    day = quorvane::makeDate(date.year(), date.month(), date.day());
    return true;
}

// Other desks showing the resource's day reload it. In a transaction the
// notice goes out only when the change is committed.
void PracticeStore::announce(const QString& resource, OleDate day) {
    if (!postgres_) return;
    run(db_, "SELECT pg_notify(?, ?)", {kChannel, noticeOf(resource, day)}, "the notice to the other desks");
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
    sql::Rows g = run(db_, "SELECT group_id, group_name, columns_shown, columns_total, is_default "
                           "FROM practice_groups ORDER BY position");
    while (g.next())
        groupRows.push_back({text(g, "group_id"), text(g, "group_name"), text(g, "columns_shown"),
                             text(g, "columns_total"), g.value("is_default").toInt() != 0});
    QStringList views, defaults, groups, resources;
    for (const Group& group : groupRows) {
        views << group.id + "~" + group.name + "~" + group.shown + "~" + group.total;
        sql::Rows m = run(db_,
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
    sql::Rows r =
        run(db_, "SELECT resource_value, name, cat_type, sub_type FROM resources ORDER BY resource_value");
    while (r.next())
        resources << text(r, "resource_value") + "~" + text(r, "name") + "~" + text(r, "cat_type") + "~" +
                         text(r, "sub_type");
    return {joined(views), joined(defaults), joined(groups), joined(resources)};
}

QString PracticeStore::appointmentTypes(const QString& resource) const {
    checkOpen();
    QStringList entries;
    sql::Rows q = run(db_,
                      "SELECT caption, duration, comment, chief, type_id FROM appointment_types "
                      "WHERE resource_value = ? ORDER BY position",
                      {resource});
    while (q.next())
        entries << text(q, "caption") + "|" + text(q, "duration") + "|" + text(q, "comment") + "|" +
                       text(q, "chief") + "|" + text(q, "type_id");
    return entries.join("~");
}

std::vector<std::pair<QString, QString>> PracticeStore::templateKinds() const {
    checkOpen();
    std::vector<std::pair<QString, QString>> out;
    sql::Rows q = run(db_, "SELECT DISTINCT description, colour FROM templates ORDER BY description, colour");
    while (q.next())
        out.emplace_back(q.value(0).toString(), q.value(1).toString());
    return out;
}

std::vector<StoredAppointment> PracticeStore::appointmentsBetween(const QString& resource, OleDate first,
                                                                  OleDate last) const {
    checkOpen();
    std::vector<StoredAppointment> out;
    sql::Rows q =
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
    sql::Rows q = run(db_,
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
    sql::Rows q = run(db_, "SELECT * FROM appointments WHERE app_id = ?", {id});
    if (!q.next())
        throw StoreError("The appointment " + std::to_string(id) + " is no longer in the schedule.");
    return appointmentOf(q);
}

int PracticeStore::appointmentCount() const {
    checkOpen();
    sql::Rows q = run(db_, "SELECT count(*) FROM appointments");
    return q.next() ? q.value(0).toInt() : 0;
}

// A name or chart number holding the text, whatever its case; "%" and "_"
// are taken as typed.
std::vector<Patient> PracticeStore::findPatients(const QString& t, int limit) const {
    checkOpen();
    QString literal = t;
    literal.replace("\\", "\\\\").replace("%", "\\%").replace("_", "\\_");
    std::vector<Patient> out;
    // SQLite's trigram index answers one LIKE without ESCAPE at a time (hence
    // the UNION); a fragment that holds a wildcard character is rare and is
    // read row by row.
    const bool plain = literal == t;
    const QString escape = plain ? QString() : QStringLiteral(" ESCAPE '\\'");
    const QString where = postgres_ ? "name_folded LIKE ?" + escape + " OR lower(chart_number) LIKE ?" + escape
                                    : "rowid IN (SELECT rowid FROM patients_search WHERE name_folded LIKE ?" +
                                          escape + " UNION SELECT rowid FROM patients_search WHERE chart LIKE ?" +
                                          escape + ")";
    sql::Rows q = run(db_,
                      "SELECT patient_id, name, chart_number, dob FROM patients WHERE " + where +
                          " OR patient_id = ? ORDER BY name, patient_id LIMIT ?",
                      {"%" + literal.toCaseFolded() + "%", "%" + literal.toLower() + "%", t, std::max(limit, 0)});
    while (q.next()) {
        Patient p;
        p.id = text(q, "patient_id"), p.name = text(q, "name"), p.chartNumber = text(q, "chart_number");
        p.dob = text(q, "dob");
        out.push_back(p);
    }
    return out;
}

Patient PracticeStore::patient(const QString& id) const {
    checkOpen();
    sql::Rows q = run(db_, "SELECT * FROM patients WHERE patient_id = ?", {id});
    if (!q.next()) throw StoreError(("There is no patient " + id + ".").toStdString());
    return patientOf(q);
}

// Within a write: the live appointment of `resource` that [start, end) would
// overlap, other than `id` itself, refused by name while the practice forbids
// double bookings. Desks take turns per resource, so a desk that loses a race
// is refused here, by name; the server's constraint stands behind this for
// any other program that writes.
void PracticeStore::refuseDoubleBooking(const char* what, qint64 id, const QString& resource, OleDate start,
                                        OleDate end, const QString& status) {
    if (status == "Cancelled" || !(start < end)) return;
    // Desks writing one resource's times take turns, so the second sees what
    // the first stored and is told by name, rather than the two waiting on
    // each other inside the constraint.
    if (postgres_ && transactionDepth_ > 0)
        run(db_, "SELECT pg_advisory_xact_lock(7, hashtext(?))", {resource}, what);
    if (allowDoubleBooking()) return;
    sql::Rows q = run(db_,
                      "SELECT a.description, a.start_at, a.end_at, r.name FROM appointments a "
                      "LEFT JOIN resources r ON r.resource_value = a.resource_value "
                      "WHERE a.resource_value = ? AND a.status <> 'Cancelled' AND a.app_id <> ? "
                      "AND a.start_at < ? AND a.end_at > ? AND a.start_at < a.end_at ORDER BY a.end_at",
                      {resource, id, storedDate(end), storedDate(start)}, what);
    if (!q.next()) return;
    const QLocale english(QLocale::English);
    auto clock = [&](const QString& stored) { return english.toString(QTime::fromString(stored.mid(11), "HH:mm:ss"), "h:mm AP"); };
    const QString who = text(q, "name").isEmpty() ? resource : text(q, "name");
    const QString day = QDate::fromString(text(q, "start_at").left(10), Qt::ISODate).toString("M/d/yyyy");
    throw DoubleBooking((who + " already has " + text(q, "description") + " from " + clock(text(q, "start_at")) +
                         " to " + clock(text(q, "end_at")) + " on " + day + ", so " + what +
                         " was not stored. The practice does not allow double bookings.")
                            .toStdString());
}

qint64 PracticeStore::addAppointment(const StoredAppointment& a) {
    qint64 id = 0;
    transaction("the booking", [&] {
        refuseDoubleBooking("the booking", 0, a.resource, a.start, a.end, a.status);
        // Only PostgreSQL says the new key in the same statement.
        sql::Rows q =
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
        written_ = a;
        written_.id = id;
        written_.version = 1;
        announce(a.resource, a.start);
    });
    return id;
}

int PracticeStore::changeVersioned(const char* what, qint64 id, int version, const QString& set,
                                   const QVariantList& values, const std::function<void(StoredAppointment&)>& after) {
    int now = 0;
    auto refused = [&] {
        throw ConflictError("Another desk changed this appointment first, so " + std::string(what) +
                            " was not stored. The schedule now shows it as it is.");
    };
    transaction(what, [&] {
        // The row as it stands, locked until the commit where the dialect can.
        sql::Rows row = run(db_, "SELECT * FROM appointments WHERE app_id = ?" + QString(postgres_ ? " FOR UPDATE" : ""),
                            {id}, what);
        if (!row.next())
            throw StoreError("The appointment " + std::to_string(id) + " is no longer in the schedule.");
        const StoredAppointment before = appointmentOf(row);
        row.finish();
        if (before.version != version) refused();
        StoredAppointment changed = before;
        if (after) after(changed);
        if (changed.resource != before.resource || changed.start != before.start || changed.end != before.end ||
            changed.status != before.status)
            refuseDoubleBooking(what, id, changed.resource, changed.start, changed.end, changed.status);
        QVariantList bound = values;
        bound << id << version;
        sql::Rows q = run(db_,
                          set.isEmpty() ? QString("DELETE FROM appointments WHERE app_id = ? AND version = ?")
                                        : "UPDATE appointments SET " + set +
                                              ", version = version + 1 WHERE app_id = ? AND version = ?",
                          bound, what);
        if (q.numRowsAffected() != 1) refused();
        announce(before.resource, before.start);
        if (changed.resource != before.resource || quorvane::datePart(changed.start) != quorvane::datePart(before.start))
            announce(changed.resource, changed.start);
        now = changed.version = version + 1;
        written_ = changed;
    });
    return now;
}

int PracticeStore::moveAppointment(qint64 id, int version, const QString& resource, OleDate start,
                                   OleDate end) {
    return changeVersioned("the move", id, version, "resource_value = ?, start_at = ?, end_at = ?",
                           {resource, storedDate(start), storedDate(end)}, [&](StoredAppointment& a) {
                               a.resource = resource, a.start = start, a.end = end;
                           });
}

void PracticeStore::removeAppointment(qint64 id, int version) {
    changeVersioned("the removal", id, version, {}, {}, {});
}

int PracticeStore::setStatus(qint64 id, int version, const QString& status) {
    return changeVersioned("the status", id, version, "status = ?", {status},
                           [&](StoredAppointment& a) { a.status = status; });
}

int PracticeStore::saveDetails(const StoredAppointment& a) {
    return changeVersioned(
        "the appointment's details", a.id, a.version,
        "comments = ?, chief_complaint = ?, prior_auth = ?, ref_provider = ?, ref_provider_id = ?",
        {a.comments, a.chiefComplaint, a.priorAuth, a.refProvider, a.refProviderId}, [&](StoredAppointment& now) {
            now.comments = a.comments, now.chiefComplaint = a.chiefComplaint, now.priorAuth = a.priorAuth;
            now.refProvider = a.refProvider, now.refProviderId = a.refProviderId;
        });
}

Role PracticeStore::role() const {
    checkOpen();
    if (postgres_) {
        sql::Rows q = run(db_, "SELECT pg_has_role(session_user, 'practice_admin', 'MEMBER') OR "
                               "(SELECT rolsuper FROM pg_roles WHERE rolname = session_user)");
        return q.next() && q.value(0).toBool() ? Role::Administrator : Role::FrontDesk;
    }
    sql::Rows q = run(db_, "SELECT role FROM desk_users WHERE name = ?", {user_.isEmpty() ? QString("\n") : user_});
    if (q.next()) return q.value(0).toString() == "practice_admin" ? Role::Administrator : Role::FrontDesk;
    // A file nobody has logged in to yet is its computer's user's alone.
    return user_.isEmpty() ? Role::Administrator : Role::FrontDesk;
}

QString PracticeStore::userName() const {
    if (postgres_) return db_.userName();
    return user_.isEmpty() ? osUser() : user_;
}

namespace {

QJsonObject jsonOf(const QString& text) { return QJsonDocument::fromJson(text.toUtf8()).object(); }

StoredAppointment appointmentOf(const QJsonObject& o) {
    auto t = [&](const char* field) { return o.value(field).toString(); };
    StoredAppointment a;
    a.id = o.value("app_id").toInteger();
    a.resource = t("resource_value"), a.start = fromStoredDate(t("start_at")), a.end = fromStoredDate(t("end_at"));
    a.description = t("description"), a.patientId = t("patient_id"), a.status = t("status");
    a.recurrenceId = t("recurrence_id"), a.typeId = t("type_id"), a.comments = t("comments");
    a.chiefComplaint = t("chief_complaint"), a.priorAuth = t("prior_auth"), a.refProvider = t("ref_provider");
    a.refProviderId = t("ref_provider_id"), a.version = static_cast<int>(o.value("version").toInteger());
    return a;
}

} // namespace

std::vector<AuditEntry> PracticeStore::auditOf(qint64 id) const {
    checkOpen();
    if (!postgres_ && role() != Role::Administrator)
        throw NotPermitted(("Only a practice administrator may read the audit trail; " + userName() +
                            " works at the front desk.")
                               .toStdString());
    const QString at = postgres_ ? "to_char(at, 'YYYY-MM-DD HH24:MI:SS')" : "substr(at, 1, 19)";
    const QString json = postgres_ ? "::text" : "";
    std::vector<AuditEntry> out;
    sql::Rows q = run(db_,
                      "SELECT " + at + " AS at_text, who, desk, action, before" + json + " AS before_text, after" +
                          json + " AS after_text FROM audit_trail WHERE app_id = ? ORDER BY audit_id",
                      {id});
    while (q.next())
        out.push_back({text(q, "at_text"), text(q, "who"), text(q, "desk"), text(q, "action"),
                       jsonOf(text(q, "before_text")), jsonOf(text(q, "after_text"))});
    return out;
}

std::vector<Visit> PracticeStore::visitsOf(const QString& patientId) const {
    checkOpen();
    std::vector<Visit> out;
    {
        sql::Rows q = run(db_, "SELECT * FROM appointments WHERE patient_id = ? ORDER BY start_at", {patientId});
        while (q.next())
            out.push_back({appointmentOf(q), false});
    }
    if (role() == Role::Administrator) {
        sql::Rows q = run(db_,
                          "SELECT before" + QString(postgres_ ? "::text" : "") +
                              " AS before_text FROM audit_trail WHERE patient_id = ? AND action = 'remove' "
                              "ORDER BY audit_id",
                          {patientId});
        while (q.next())
            out.push_back({appointmentOf(jsonOf(text(q, "before_text"))), true});
        std::stable_sort(out.begin(), out.end(),
                         [](const Visit& a, const Visit& b) { return a.appointment.start < b.appointment.start; });
    }
    return out;
}

QStringList PracticeStore::planOfLastRead() {
    checkOpen();
    const sql::Statement read = sql::lastRead();
    QSqlQuery q(db_);
    bool ran = false;
    if (postgres_) {
        // A server prepares no EXPLAIN: the values go in as the driver quotes them.
        QString text = read.sql;
        for (const QVariant& v : read.values) {
            QSqlField field(QString(), v.metaType());
            field.setValue(v);
            const qsizetype at = text.indexOf('?');
            if (at >= 0) text.replace(at, 1, db_.driver()->formatValue(field));
        }
        ran = q.exec("EXPLAIN " + text);
    } else {
        q.prepare("EXPLAIN QUERY PLAN " + read.sql);
        for (const QVariant& v : read.values)
            q.addBindValue(v);
        ran = q.exec();
    }
    if (!ran) sql::fail(db_, q.lastError(), nullptr);
    QStringList plan;
    while (q.next())
        plan << q.value(postgres_ ? 0 : 3).toString();
    return plan;
}

} // namespace practice
