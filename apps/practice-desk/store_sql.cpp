#include "store_sql.h"

#include <QDir>

#include <map>

namespace practice {

namespace sql {

QString nameOf(const QSqlDatabase& db) {
    if (db.driverName() == "QPSQL")
        return "The practice database \"" + db.databaseName() + "\" on the server " +
               (db.hostName().isEmpty() ? QString("localhost") : db.hostName());
    return "The practice database " + QDir::toNativeSeparators(db.databaseName());
}

[[noreturn]] void fail(const QSqlDatabase& db, const QSqlError& e, const char* what) {
    const QString text = e.databaseText() + " " + e.driverText();
    const QString native = e.nativeErrorCode();
    const QString failed =
        what ? QString(what) + " could not be stored" : QString("the schedule could not be read");
    auto has = [&](const char* words) { return text.contains(words, Qt::CaseInsensitive); };
    auto message = [&](const QString& m) { return (nameOf(db) + m).toStdString(); };
    // A server that turned the user away: the user name or the password is
    // wrong (the server does not tell which, and neither does the desk).
    if (db.driverName() == "QPSQL" &&
        (native == "28P01" || native == "28000" || has("password authentication failed") ||
         (has("role \"") && has("does not exist")) || has("no password supplied") || has("no pg_hba.conf entry")))
        throw LoginRefused(message(" did not accept the user name and password" +
                                   (db.userName().isEmpty() ? QString() : " of \"" + db.userName() + "\"") +
                                   ". Check them and try again."));
    // What the user's role may not do, refused by the server itself.
    if (native == "42501" || has("permission denied"))
        throw NotPermitted(message(" refused " + QString(what ? what : "the read") +
                                   ": the user \"" + db.userName() + "\" may not do this."));
    // SQLite has no server to lose; what it reports as a connection error is a file's.
    if (db.driverName() == "QPSQL" &&
        (e.type() == QSqlError::ConnectionError || has("server closed the connection") ||
         has("no connection") || has("could not connect") || has("terminating connection") ||
         has("connection refused") || has("connection to server") || native.startsWith("08") ||
         native == "57P01" || native == "57P02" || native == "57P03" || !db.isOpen()))
        throw ConnectionLost(message(" cannot be reached, so " + failed + ". Nothing can be stored until it is back."));
    // Two writes that waited on each other: the server gave up one of them, and
    // the same transaction run again goes through.
    if (native == "40P01" || native == "40001")
        throw Contention(message(" is busy, so " + failed + ". Try again in a moment."));
    if (native == "23P01")
        throw DoubleBooking(message(" refused " + QString(what ? what : "the change") +
                                    ": another appointment of the resource stands at that time."));
    if (has("The audit trail cannot be changed") || has("No user is named for this change"))
        throw NotPermitted(message(" refused " + QString(what ? what : "the change") + ": " +
                                   (has("audit trail") ? QString("the audit trail cannot be changed.")
                                                       : QString("no user is named for it."))));
    if (db.driverName() != "QPSQL" && (native == "5" || native == "6" || has("locked")))
        throw StoreError(message(" is in use by another program, so " + failed + ". Try again in a moment."));
    if (native == "8" || has("readonly") || has("read-only"))
        throw StoreError(message(" can only be read, so " + failed + "."));
    if (native == "11" || native == "26" || has("malformed") || has("not a database"))
        throw DamagedError(message(" is damaged and cannot be used."));
    throw StoreError(message(" failed, so " + failed + ": " + e.text().trimmed()));
}

namespace {

// A server's statements stay prepared on their connection: preparing one
// costs a round trip of its own, and the statement's release another. A file's
// are prepared anew, which costs nothing, and go with their rows, so that none
// is left holding a read. Connections belong to the thread that made them, and
// so does this.
thread_local std::map<QString, std::map<QString, QSqlQuery>> preparedOn;

void bind(QSqlQuery& q, const QVariantList& values) {
    for (int i = 0; i < values.size(); ++i) {
        const QVariant& v = values[i];
        // An empty text is stored as one, never as NULL.
        q.bindValue(i, v.typeId() == QMetaType::QString && v.toString().isNull() ? QVariant(QString("")) : v);
    }
}

QSqlQuery prepared(const QSqlDatabase& db, const QString& sql, const char* what) {
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql)) fail(db, q.lastError(), what);
    return q;
}

Statement lastReadStatement;

} // namespace

void forgetStatements(const QSqlDatabase& db) { preparedOn.erase(db.connectionName()); }

const Statement& lastRead() { return lastReadStatement; }

Rows run(const QSqlDatabase& db, const QString& sql, const QVariantList& values, const char* what) {
    if (!what) lastReadStatement = {sql, values};
    if (values.isEmpty()) {
        QSqlQuery q(db);
        q.setForwardOnly(true);
        if (!q.exec(sql)) fail(db, q.lastError(), what);
        return Rows(std::move(q));
    }
    if (db.driverName() != "QPSQL") {
        QSqlQuery q = prepared(db, sql, what);
        bind(q, values);
        if (!q.exec()) fail(db, q.lastError(), what);
        return Rows(std::move(q));
    }
    std::map<QString, QSqlQuery>& kept = preparedOn[db.connectionName()];
    auto found = kept.find(sql);
    if (found == kept.end()) found = kept.emplace(sql, prepared(db, sql, what)).first;
    QSqlQuery& q = found->second;
    bind(q, values);
    if (!q.exec()) fail(db, q.lastError(), what);
    return Rows(&q);
}

} // namespace sql

} // namespace practice
