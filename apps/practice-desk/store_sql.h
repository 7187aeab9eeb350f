#pragma once
// The store's statements and what their failures mean to a front desk, shared
// by the reads and writes (practice_store.cpp) and the layout (store_schema.cpp).

#include "practice_store.h"

#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace practice::sql {

// The database as a message names it: "The practice database /path/x.sqlite",
// or "The practice database "name" on the server host".
QString nameOf(const QSqlDatabase& db);

// Throws what the database's failure means: a ConnectionLost for a server out
// of reach, a DamagedError for a damaged file, a DoubleBooking for the rule
// against double bookings, else a StoreError naming the database. `what`
// names the change that failed; none for a read.
[[noreturn]] void fail(const QSqlDatabase& db, const QSqlError& e, const char* what);

// A statement with values goes prepared; one without goes as it is, since a
// server may not prepare every kind (PostgreSQL prepares no CREATE TABLE).
QSqlQuery run(const QSqlDatabase& db, const QString& sql, const QVariantList& values = {},
              const char* what = nullptr);

// The last read run, with its values: what planOfLastRead explains.
struct Statement {
    QString sql;
    QVariantList values;
};
const Statement& lastRead();

inline QString text(const QSqlQuery& q, const char* field) { return q.value(field).toString(); }

// The tables a practice's database holds at the newest layout.
inline const char* const kTables[] = {"schema_version", "practice_groups",   "resources",
                                      "group_members",  "patients",          "appointments",
                                      "templates",      "appointment_types", "practice_settings"};

} // namespace practice::sql
