#pragma once
// The practice's data: the catalogue of groups and resources, patients,
// appointments with their statuses, templates and appointment types, kept in a
// SQL database through Qt SQL. Every change the desk makes is one transaction,
// committed before the control is told it succeeded. Every statement of the
// desk is in practice_store.cpp.

#include <QuorvaneScheduler/ole_date.h>

#include <QString>
#include <QtSql/QSqlDatabase>

#include <functional>
#include <stdexcept>
#include <vector>

namespace practice {

// A failure of the store, in words a front desk can read.
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
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

// The four catalogue strings, in the control's grammar.
struct Catalogue {
    QString views, defaults, groups, resources;
};

class PracticeStore {
public:
    static constexpr int kSchemaVersion = 2;

    // A connection of its own, by name, so several stores may stand side by side.
    explicit PracticeStore(QString connectionName);
    ~PracticeStore();
    PracticeStore(const PracticeStore&) = delete;
    PracticeStore& operator=(const PracticeStore&) = delete;

    // Opens a SQLite file, creating it when it is not there, and brings its schema
    // up to date. A database opened for the first time is seeded with a demo
    // practice around `today`. StoreError when it cannot be opened or is damaged.
    void open(const QString& path, quorvane::OleDate today);
    // The schema only, up to `version` (for a test of the migrations).
    void openAt(const QString& path, int version);
    int schemaVersion() const;
    QSqlDatabase& database() { return db_; }

    Catalogue catalogue() const;
    QString appointmentTypes(const QString& resource) const;
    std::vector<StoredAppointment> appointments(const QString& resource, quorvane::OleDate day) const;
    std::vector<StoredAppointment> appointmentsBetween(const QString& resource, quorvane::OleDate first,
                                                       quorvane::OleDate last) const;
    std::vector<Template> templates(const QString& resource, quorvane::OleDate day) const;
    StoredAppointment appointment(qint64 id) const;
    std::vector<Patient> findPatients(const QString& text) const;
    Patient patient(const QString& id) const;
    int appointmentCount() const;

    // Changes, each one transaction. An appointment that is no longer there, or
    // that another desk changed since `version`, is a StoreError.
    qint64 addAppointment(const StoredAppointment& a);
    void moveAppointment(qint64 id, const QString& resource, quorvane::OleDate start, quorvane::OleDate end);
    void removeAppointment(qint64 id);
    void setStatus(qint64 id, const QString& status);
    void saveDetails(const StoredAppointment& a);

private:
    void migrate(int upTo);
    void seed(quorvane::OleDate today);
    // Runs `work` in one transaction: all of it is stored, or none.
    void transaction(const char* what, const std::function<void()>& work);
    void checkOpen() const;

    QString name_;
    QSqlDatabase db_;
};

// Dates as the store keeps them: "yyyy-MM-dd HH:mm:ss", which sorts as text.
QString storedDate(quorvane::OleDate d);
quorvane::OleDate fromStoredDate(const QString& text);

} // namespace practice
