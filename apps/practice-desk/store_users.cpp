// Who is at the desk. On a server the users are its login roles, members of
// front_desk or practice_admin, and logging in is connecting as one. In a file
// they are rows with an Argon2id hash of their password, checked here; the
// desk holds a file's user to what the role allows.

#include "store_sql.h"

#include <sodium.h>

namespace practice {

using sql::run;

namespace {

void startSodium() {
    if (sodium_init() < 0) throw StoreError("The password functions cannot start on this computer.");
}

QByteArray hashOf(const QString& password) {
    startSodium();
    const QByteArray secret = password.toUtf8();
    QByteArray hash(crypto_pwhash_argon2id_STRBYTES, '\0');
    if (crypto_pwhash_argon2id_str(hash.data(), secret.constData(), static_cast<unsigned long long>(secret.size()),
                                   crypto_pwhash_argon2id_OPSLIMIT_INTERACTIVE,
                                   crypto_pwhash_argon2id_MEMLIMIT_INTERACTIVE) != 0)
        throw StoreError("The password could not be kept: this computer is short of memory.");
    return QByteArray(hash.constData()); // up to its terminating zero
}

bool matches(const QByteArray& hash, const QString& password) {
    startSodium();
    const QByteArray secret = password.toUtf8();
    return crypto_pwhash_argon2id_str_verify(hash.constData(), secret.constData(),
                                             static_cast<unsigned long long>(secret.size())) == 0;
}

const char* roleName(Role role) { return role == Role::Administrator ? "practice_admin" : "front_desk"; }

} // namespace

bool PracticeStore::hasUsers() const {
    checkOpen();
    if (postgres_) return true;
    sql::Rows q = run(db_, "SELECT count(*) FROM desk_users");
    return q.next() && q.value(0).toInt() > 0;
}

void PracticeStore::refuseUnlessAdministrator(const char* what) const {
    if (postgres_ || role() == Role::Administrator) return; // a server checks its grants itself
    throw NotPermitted((sql::nameOf(db_) + " refused " + what + ": only a practice administrator may change it, and " +
                        userName() + " works at the front desk.")
                           .toStdString());
}

void PracticeStore::addUser(const QString& name, const QString& password, Role role) {
    checkOpen();
    if (postgres_)
        throw StoreError("A server's users are its login roles: an administrator creates them on the server.");
    if (name.trimmed().isEmpty() || name != name.trimmed() || password.size() < 8)
        throw StoreError("A user needs a name without spaces at either end, and a password of 8 characters or more.");
    const bool first = !hasUsers();
    if (first && role != Role::Administrator) throw StoreError("The first user of a practice is its administrator.");
    if (!first) refuseUnlessAdministrator("the new user");
    const QByteArray hash = hashOf(password);
    transaction("the new user", [&] {
        sql::Rows taken = run(db_, "SELECT 1 FROM desk_users WHERE name = ?", {name}, "the new user");
        if (taken.next()) throw StoreError(("There is a user " + name + " already.").toStdString());
        taken.finish();
        run(db_, "INSERT INTO desk_users (name, password_hash, role) VALUES (?, ?, ?)",
            {name, QString::fromLatin1(hash), roleName(role)}, "the new user");
    });
    fileHasUsers_ = true;
    if (first) user_ = name; // who sets a practice up is at its desk
}

void PracticeStore::logIn(const QString& name, const QString& password) {
    if (postgres_) {
        const QString before = db_.userName(), kept = db_.password();
        auto connectAs = [&](const QString& user, const QString& secret) {
            db_.setUserName(user);
            db_.setPassword(secret);
            connectAgain();
        };
        try {
            connectAs(name, password);
        } catch (const StoreError&) {
            try {
                connectAs(before, kept); // the one logged in before stays connected
            } catch (const StoreError&) {
            }
            throw;
        }
        return;
    }
    checkOpen();
    sql::Rows q = run(db_, "SELECT password_hash FROM desk_users WHERE name = ?", {name});
    const QByteArray hash = q.next() ? q.value(0).toString().toLatin1() : QByteArray();
    q.finish();
    // An unknown user costs as long as a wrong password, and reads the same.
    if (!matches(hash.isEmpty() ? hashOf(QString()) : hash, password) || hash.isEmpty())
        throw LoginRefused((sql::nameOf(db_) + " did not accept the user name and password of \"" + name +
                            "\". Check them and try again.")
                               .toStdString());
    user_ = name;
}

} // namespace practice
