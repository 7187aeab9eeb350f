#include "store_sql.h"

#include <QDir>

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
    if (db.driverName() != "QPSQL" && (native == "5" || native == "6" || has("locked")))
        throw StoreError(message(" is in use by another program, so " + failed + ". Try again in a moment."));
    if (native == "8" || has("readonly") || has("read-only"))
        throw StoreError(message(" can only be read, so " + failed + "."));
    if (native == "11" || native == "26" || has("malformed") || has("not a database"))
        throw DamagedError(message(" is damaged and cannot be used."));
    throw StoreError(message(" failed, so " + failed + ": " + e.text().trimmed()));
}

namespace {
QSqlQuery prepared(const QSqlDatabase& db, const QString& sql, const QVariantList& values) {
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql)) fail(db, q.lastError(), nullptr);
    for (const QVariant& v : values)
        // An empty text is stored as one, never as NULL.
        q.addBindValue(v.typeId() == QMetaType::QString && v.toString().isNull() ? QVariant(QString("")) : v);
    return q;
}
} // namespace

namespace {
Statement lastReadStatement;
}

const Statement& lastRead() { return lastReadStatement; }

QSqlQuery run(const QSqlDatabase& db, const QString& sql, const QVariantList& values, const char* what) {
    if (!what) lastReadStatement = {sql, values};
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

} // namespace sql

} // namespace practice
