#pragma once
// The store's statements and what their failures mean to a front desk, shared
// by the reads and writes (practice_store.cpp) and the layout (store_schema.cpp).

#include "practice_store.h"

#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>
#include <QtSql/QSqlRecord>

#include <memory>
#include <utility>

namespace practice::sql {

// The database as a message names it: "The practice database /path/x.sqlite",
// or "The practice database "name" on the server host".
QString nameOf(const QSqlDatabase& db);

// Throws what the database's failure means: a ConnectionLost for a server out
// of reach, a DamagedError for a damaged file, a DoubleBooking for the rule
// against double bookings, else a StoreError naming the database. `what`
// names the change that failed; none for a read.
[[noreturn]] void fail(const QSqlDatabase& db, const QSqlError& e, const char* what);

// What a statement gave, read a row at a time. A server's statement stays
// prepared on its connection for the next run, and what was left unread of it
// is let go when its rows go.
class Rows {
public:
    explicit Rows(QSqlQuery* kept) : q_(kept) {}
    explicit Rows(QSqlQuery&& own) : own_(std::make_unique<QSqlQuery>(std::move(own))), q_(own_.get()) {}
    Rows(Rows&& other) noexcept
        : own_(std::move(other.own_)), q_(std::exchange(other.q_, nullptr)), record_(std::move(other.record_)) {}
    Rows& operator=(Rows&&) = delete;
    ~Rows() {
        if (q_ && !own_ && q_->isActive()) q_->finish();
    }
    operator const QSqlQuery&() const { return *q_; }
    bool next() { return q_->next(); }
    QVariant value(int i) const { return q_->value(i); }
    // By name, through the row's description taken once: a server's driver
    // would build the description anew for every value asked for by name.
    QVariant value(const QString& field) const {
        if (record_.isEmpty()) record_ = q_->record();
        return q_->value(record_.indexOf(field));
    }
    void finish() { q_->finish(); }
    int numRowsAffected() const { return q_->numRowsAffected(); }
    QVariant lastInsertId() const { return q_->lastInsertId(); }

private:
    std::unique_ptr<QSqlQuery> own_;
    QSqlQuery* q_;
    mutable QSqlRecord record_;
};

// A statement with values goes prepared; one without goes as it is, since a
// server may not prepare every kind (PostgreSQL prepares no CREATE TABLE).
Rows run(const QSqlDatabase& db, const QString& sql, const QVariantList& values = {}, const char* what = nullptr);

// Lets go of the statements kept prepared on a connection, before it closes.
void forgetStatements(const QSqlDatabase& db);

// The last read run, with its values: what planOfLastRead explains.
struct Statement {
    QString sql;
    QVariantList values;
};
const Statement& lastRead();

inline QString text(const Rows& q, const char* field) { return q.value(field).toString(); }

// The tables a practice's database holds at the newest layout.
inline const char* const kTables[] = {"schema_version", "practice_groups",   "resources",
                                      "group_members",  "patients",          "appointments",
                                      "templates",      "appointment_types", "practice_settings",
                                      "audit_trail"};

} // namespace practice::sql
