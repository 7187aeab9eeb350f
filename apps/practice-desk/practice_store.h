#pragma once
// The practice's data: the catalogue of groups and resources, patients,
// appointments with their statuses, templates and appointment types, kept in a
// SQL database through Qt SQL: a SQLite file for one desk, or a PostgreSQL
// database that several desks share. Every change the desk makes is one
// transaction, committed before the control is told it succeeded; each counts
// up the appointment's version, and a change made against an older version (by
// a desk that had not seen another's change) is refused. Every statement of the
// desk, and every difference between the two dialects, is in practice_store.cpp.

#include <QuorvaneScheduler/ole_date.h>

#include <QJsonObject>
#include <QString>
#include <QVariantList>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlDriver>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <vector>

namespace practice {

// A failure of the store, in words a front desk can read.
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
// Another desk changed the appointment first: this change was refused.
class ConflictError : public StoreError {
public:
    using StoreError::StoreError;
};
// The database cannot be reached (its server stopped): nothing can be stored
// until it is back.
class ConnectionLost : public StoreError {
public:
    using StoreError::StoreError;
};
// The database is damaged or lacks part of its layout: nothing it says can be
// trusted, so the desk does not run on it.
class DamagedError : public StoreError {
public:
    using StoreError::StoreError;
};
// The change would put two live appointments of one resource at one time, and
// the practice does not allow double bookings.
class DoubleBooking : public StoreError {
public:
    using StoreError::StoreError;
};

// The server turned the user away: a wrong password, or a user it does not
// know. The desk asks again.
class LoginRefused : public StoreError {
public:
    using StoreError::StoreError;
};
// The user's role may not do this: the server refused it, or the desk does
// on its behalf for a file.
class NotPermitted : public StoreError {
public:
    using StoreError::StoreError;
};

// Two writes waited on each other and the server gave one up; the store runs
// such a transaction again before it tells anyone.
class Contention : public StoreError {
public:
    using StoreError::StoreError;
};

struct Patient {
    QString id, name, chartNumber, dob, sex, pcp;
    QString homePhone, homePhoneExt, workPhone, workPhoneExt, otherPhone, otherPhoneExt;
    QString primaryIns, primaryActive, primaryCoPay, secondaryIns, secondaryActive, secondaryCoPay;
    QString balance30, balance60, balance90, balance180;
    QString dod, photoImageId;
};

struct StoredAppointment {
    qint64 id = 0;
    QString resource;
    quorvane::OleDate start, end;
    QString description, patientId, status, recurrenceId, typeId;
    QString comments, chiefComplaint, priorAuth, refProvider, refProviderId;
    int version = 1;
};

struct Template {
    QString resource;
    quorvane::OleDate start, end; // on the day asked for
    QString description, colour;
};

// One change in the audit trail: when (the server's time, or the file's
// computer's), who, from which desk, what, and the appointment's values
// before and after (none before a booking, none after a removal).
struct AuditEntry {
    QString at, who, desk, action;
    QJsonObject before, after;
};

// A patient's appointment as it stands, or as its removal left it.
struct Visit {
    StoredAppointment appointment;
    bool removed = false;
};

// What a user may do: the front desk works the schedule; a practice
// administrator also keeps the catalogue, the templates, the types and the
// settings, and reads the audit trail.
enum class Role { FrontDesk, Administrator };

// The four catalogue strings, in the control's grammar.
struct Catalogue {
    QString views, defaults, groups, resources;
};

// How a database is opened: only one that already holds a practice, or
// one that is set up with the demo practice when it holds none yet.
enum class OpenMode { Existing, Demo };

// The size of a generated practice: its resources, its patients, and years of
// working days with `perDay` appointments per resource.
struct PracticeSize {
    int resources = 20;
    int patients = 100000;
    int years = 10;
    int perDay = 25;
    int days = 0; // the history in days, when set, instead of years
};

class PracticeStore {
public:
    static constexpr int kSchemaVersion = 5;
    static constexpr int kAuditedVersion = 5; // the layout that brought the audit trail

    // A connection of its own, by name, so several stores may stand side by side.
    explicit PracticeStore(QString connectionName);
    ~PracticeStore();
    PracticeStore(const PracticeStore&) = delete;
    PracticeStore& operator=(const PracticeStore&) = delete;

    // Opens `location`, a SQLite file or a URL postgresql://[USER@]HOST[:PORT]/NAME
    // (?host=DIR for a server's socket folder), and brings its schema up to date.
    // Only OpenMode::Demo creates a SQLite file, and sets up a database that holds
    // no practice yet with the demo practice around `today`; the layout and the
    // seed are one unit that one desk at a time runs. StoreError naming the
    // database when it cannot be opened, holds no practice, or is damaged.
    void open(const QString& location, quorvane::OleDate today, OpenMode mode = OpenMode::Existing);
    // The user and password a server is opened with, in place of any the URL
    // carries; set before open().
    void setCredentials(const QString& user, const QString& password) {
        serverUser_ = user;
        password_ = password;
    }
    // The schema only, up to `version` (for a test of the migrations).
    void openAt(const QString& location, int version);
    bool shared() const { return postgres_; }
    // The database as a person names it: the file's path, or the database and
    // its server.
    QString displayName() const;
    // A light question to the server; ConnectionLost when it is away.
    void ping();
    // Lets go of a connection that was lost, so nothing listens on it any more.
    void disconnect();
    // After a ConnectionLost: tries to reach the database again, and listens
    // again for the other desks' changes.
    bool reconnect();
    // Hears the changes of other desks on a shared database: the resource and the
    // day of each, delivered by the event loop. Nothing comes on SQLite. A notice
    // that is not one of the desks' own is ignored, and said on standard error.
    void listen(std::function<void(const QString& resource, quorvane::OleDate day)> changed);
    // The notice's text for a change of `resource` on `day`, and the reading of
    // one: false for a notice that is not one of the desks'.
    static QString noticeOf(const QString& resource, quorvane::OleDate day);
    static bool readNotice(const QString& payload, QString& resource, quorvane::OleDate& day);

    // Whether two live appointments of one resource may overlap (off unless the
    // practice turns it on).
    bool allowDoubleBooking() const;
    void setAllowDoubleBooking(bool allow);

    int schemaVersion() const;
    // This computer's name, as the audit trail gives the desk a change came from.
    static QString deskName();
    QSqlDatabase& database() { return db_; }

    Catalogue catalogue() const;
    QString appointmentTypes(const QString& resource) const;
    // Each kind of template block the practice paints: its name and colour.
    std::vector<std::pair<QString, QString>> templateKinds() const;
    std::vector<StoredAppointment> appointments(const QString& resource, quorvane::OleDate day) const;
    std::vector<StoredAppointment> appointmentsBetween(const QString& resource, quorvane::OleDate first,
                                                       quorvane::OleDate last) const;
    std::vector<Template> templates(const QString& resource, quorvane::OleDate day) const;
    StoredAppointment appointment(qint64 id) const;
    // The first `limit` patients, by name, whose name or chart number holds
    // `text` whatever its case, or whose id is `text`: each one's id, name,
    // chart number and birth date (patient() reads the whole record).
    std::vector<Patient> findPatients(const QString& text, int limit = 100) const;
    Patient patient(const QString& id) const;
    int appointmentCount() const;
    // The user's role: on a server, the group role the login role belongs to
    // (its owner counts as an administrator); in a file, the user's row (the
    // computer's user holds a file that has no users yet).
    Role role() const;
    QString userName() const;
    // Whether a file has users, so that a desk asks who is there; a server's
    // users are its login roles.
    bool hasUsers() const;
    // Adds a user of a file, its password kept as an Argon2id hash. The first
    // must be an administrator; after that a logged-in administrator adds them.
    // A server's administrator creates login roles instead (see the README).
    void addUser(const QString& name, const QString& password, Role role);
    // Logs a user in: a file checks the password against the user's hash; a
    // server is connected to again as that user. LoginRefused when either is
    // not right, and nothing changes.
    void logIn(const QString& name, const QString& password);
    // An appointment's trail, oldest first. NotPermitted for a user who may not
    // read it.
    std::vector<AuditEntry> auditOf(qint64 id) const;
    // A patient's appointments by start, past and future; those removed too,
    // from the trail, for a user who may read it.
    std::vector<Visit> visitsOf(const QString& patientId) const;
    // The engine's plan for the last read the store ran, one step a line:
    // EXPLAIN on a server, EXPLAIN QUERY PLAN in a file.
    QStringList planOfLastRead();
    // Fills a new database with a practice of `size`, its days running up to a
    // few weeks past `today`; `progress` hears how far it has come.
    void generate(const QString& location, quorvane::OleDate today, const PracticeSize& size,
                  const std::function<void(const QString&)>& progress);

    // Changes, each one transaction, each given the version the desk showed and
    // giving back the new one. An appointment that is no longer there is a
    // StoreError; one changed since `version` by another desk a ConflictError;
    // one that would overlap another live appointment of its resource, while the
    // practice forbids it, a DoubleBooking naming that appointment.
    qint64 addAppointment(const StoredAppointment& a);
    int moveAppointment(qint64 id, int version, const QString& resource, quorvane::OleDate start,
                        quorvane::OleDate end);
    void removeAppointment(qint64 id, int version);
    int setStatus(qint64 id, int version, const QString& status);
    int saveDetails(const StoredAppointment& a);
    // The appointment as the last booking or change stored it.
    const StoredAppointment& written() const { return written_; }
    // When the last change of this store was sent to be committed, by the
    // steady clock every process of the machine shares.
    std::chrono::steady_clock::time_point lastCommit() const { return lastCommit_; }

private:
    void connect(const QString& location, OpenMode mode);
    void drop();
    void connectAgain();
    // The layout brought to `upTo` and, for a database that had none, the demo
    // practice, as one transaction that holds every other desk off.
    void setUp(int upTo, bool seedDemo, quorvane::OleDate today);
    void migrate(int from, int upTo);
    void foldPatientNames();
    void forbidDoubleBookings(bool forbid);
    // Every table of the layout is there, and a SQLite file is sound.
    void validate();
    void seed(quorvane::OleDate today);
    // Refuses a change that would put appointment `id` over another live one.
    void refuseDoubleBooking(const char* what, qint64 id, const QString& resource, quorvane::OleDate start,
                             quorvane::OleDate end, const QString& status);
    // One appointment's change, checked against its version in the same
    // transaction; tells the other desks about `days` it touched.
    // `after` makes the appointment what the change leaves, for the rule
    // against double bookings; none for a change that moves nothing.
    int changeVersioned(const char* what, qint64 id, int version, const QString& set,
                        const QVariantList& values, const std::function<void(StoredAppointment&)>& after);
    void announce(const QString& resource, quorvane::OleDate day);
    // Runs `work` in one transaction: all of it is stored, or none.
    void transaction(const char* what, const std::function<void()>& work);
    void checkOpen() const;
    void transactionOnce(const char* what, const std::function<void()>& work);
    void quiet();
    void nameActor(const QString& who);
    static QString osUser();
    int transactionDepth_ = 0;
    bool audited_ = false; // a file whose triggers want each write's user named
    bool actorNamed_ = false; // within a transaction: desk_actor holds its user
    bool fileHasUsers_ = false;
    QString user_;
    QString serverUser_, password_;
    void refuseUnlessAdministrator(const char* what) const;
    static constexpr const char* kChannel = "schedule_changed";

    QString name_;
    StoredAppointment written_;
    std::chrono::steady_clock::time_point lastCommit_;
    QString location_;
    bool postgres_ = false;
    void subscribe();
    bool listening_ = false;
    QSqlDriver* heard_ = nullptr; // the driver whose notices reach changed_
    std::function<void(const QString& resource, quorvane::OleDate day)> changed_;
    QSqlDatabase db_;
};

// Dates as the store keeps them: "yyyy-MM-dd HH:mm:ss", which sorts as text.
QString storedDate(quorvane::OleDate d);
quorvane::OleDate fromStoredDate(const QString& text);

} // namespace practice
