// Who did what. On a server that asks for passwords over TLS, a front-desk
// user books, moves and removes, is refused the catalogue, the templates and
// the trail by the server itself, and every change stands in the trail under
// that user's name with the values before and after, where no role of the
// desk may change it. In a file, users log in against their Argon2id hashes,
// the desk holds them to their role, and the triggers keep the same trail,
// refusing tampering and changes that name no user.

#include "desk_fixture.h"
#include "local_pg_server.h"

#include <QTemporaryDir>
#include <QtSql/QSqlError>

using namespace quorvane;
using namespace practice;
using practice::test::Desk;
using practice::test::kToday;

namespace {

// The error a statement of the user's own gets, "" when it ran.
std::string refusal(PracticeStore& store, const QString& statement) {
    QSqlQuery q(store.database());
    return q.exec(statement) ? std::string() : q.lastError().nativeErrorCode().toStdString() + " " +
                                                   q.lastError().databaseText().toStdString();
}

std::vector<std::string> actions(const std::vector<AuditEntry>& trail) {
    std::vector<std::string> out;
    for (const AuditEntry& e : trail)
        out.push_back(e.action.toStdString() + " by " + e.who.toStdString());
    return out;
}

TEST(AuditTrail, OnAServerEachUserIsHeldToTheirRoleAndEveryChangeIsTraced) {
    local::Server server;
    if (!server.available()) GTEST_SKIP() << "no PostgreSQL server programs on this machine";
    server.requirePasswords();
    ASSERT_TRUE(server.start());
    { Desk setUp(server.location(), "setup"); }
    ASSERT_TRUE(server.psql("CREATE ROLE maria LOGIN PASSWORD 'front-desk pass' IN ROLE front_desk"));
    ASSERT_TRUE(server.psql("CREATE ROLE ines LOGIN PASSWORD 'admin pass' IN ROLE practice_admin"));

    Desk desk(server.tcpLocation("maria", "front-desk pass"), "maria");
    PracticeStore& store = desk.store;
    EXPECT_EQ(store.role(), Role::FrontDesk);
    {
        QSqlQuery tls(store.database());
        ASSERT_TRUE(tls.exec("SELECT ssl FROM pg_stat_ssl WHERE pid = pg_backend_pid()") && tls.next());
        EXPECT_TRUE(tls.value(0).toBool()) << "the connection is encrypted";
    }
    desk.host.loadPatient("5501");
    const qint64 id = desk.bookAt(1, 13, 15);
    ASSERT_NE(id, 0) << (desk.told.empty() ? "" : desk.told.back());
    const int moved = store.moveAppointment(id, 1, "502", makeDateTime(2026, 11, 23, 16, 0, 0),
                                            makeDateTime(2026, 11, 23, 16, 30, 0));
    store.removeAppointment(id, moved);

    // The server refuses what the front desk may not do, whatever asks it.
    EXPECT_THROW(store.setAllowDoubleBooking(true), NotPermitted);
    EXPECT_THROW(store.auditOf(id), NotPermitted);
    for (const char* statement :
         {"INSERT INTO templates (resource_value, weekday, start_time, end_time, description, colour) "
          "VALUES ('501', 0, '07:00:00', '08:00:00', 'Staff', '#FFFFFF')",
          "UPDATE resources SET name = 'Dr. Nobody'", "DELETE FROM appointment_types",
          "INSERT INTO audit_trail (who, desk, action, app_id, patient_id) VALUES ('x', 'x', 'create', 1, '1')",
          "UPDATE audit_trail SET who = 'someone else'", "DELETE FROM audit_trail"})
        EXPECT_EQ(refusal(store, statement).substr(0, 5), "42501") << statement;

    // An administrator, checking the server's certificate, reads the trail.
    PracticeStore admin("ines");
    admin.open(server.tcpLocation("ines", "admin pass", "sslmode=verify-full&sslrootcert=" + server.certificate()),
               kToday);
    EXPECT_EQ(admin.role(), Role::Administrator);
    const std::vector<AuditEntry> trail = admin.auditOf(id);
    using V = std::vector<std::string>;
    ASSERT_EQ(actions(trail), (V{"create by maria", "move by maria", "remove by maria"}));
    EXPECT_EQ(trail[0].desk, PracticeStore::deskName());
    EXPECT_TRUE(trail[0].before.isEmpty());
    EXPECT_EQ(trail[0].after["start_at"].toString(), "2026-11-23 13:15:00");
    EXPECT_EQ(trail[1].before["resource_value"].toString(), "501");
    EXPECT_EQ(trail[1].after["resource_value"].toString(), "502");
    EXPECT_EQ(trail[1].after["start_at"].toString(), "2026-11-23 16:00:00");
    EXPECT_EQ(trail[2].before["description"].toString(), trail[0].after["description"].toString())
        << "a removal keeps the visit's last values";
    EXPECT_TRUE(trail[2].after.isEmpty());
    const std::vector<Visit> visits = admin.visitsOf(trail[0].after["patient_id"].toString());
    EXPECT_TRUE(std::ranges::any_of(visits, [&](const Visit& v) { return v.removed && v.appointment.id == id; }));
    EXPECT_EQ(refusal(admin, "UPDATE audit_trail SET who = 'someone else'").substr(0, 5), "42501");
    EXPECT_EQ(refusal(admin, "UPDATE resources SET name = 'Dr. Ortiz' WHERE resource_value = '501'"), "");
    admin.setAllowDoubleBooking(true); // through the owner's function, which only administrators may call
    EXPECT_TRUE(store.allowDoubleBooking());
    admin.setAllowDoubleBooking(false);

    // Another user logs in at the same desk: a wrong password leaves the one
    // before connected, the right one connects as the new user.
    EXPECT_THROW(store.logIn("ines", "not it"), LoginRefused);
    EXPECT_EQ(store.userName(), "maria");
    EXPECT_EQ(store.appointments("501", kToday).empty(), false);
    store.logIn("ines", "admin pass");
    EXPECT_EQ(store.role(), Role::Administrator);

    // An unknown user is told as a wrong password is (DeskUsers.ADeskOnAServerAsks...).
    PracticeStore stranger("stranger");
    EXPECT_THROW(stranger.open(server.tcpLocation("nobody", "front-desk pass"), kToday), LoginRefused);
}


// A file's first user is its administrator, who adds the front desk; a desk on
// a file with users changes nothing until someone logs in, and then only what
// that user's role allows, under that user's name.
TEST(AuditTrail, InAFileUsersLogInAndAreHeldToTheirRole) {
    QTemporaryDir dir;
    const QString path = dir.filePath("practice.sqlite");
    {
        Desk setUp(path, "setup");
        EXPECT_NE(refusal(setUp.store, "DELETE FROM appointments WHERE app_id = 3").find("No user is named"),
                  std::string::npos)
            << "the set-up's name goes with its transaction";
        EXPECT_FALSE(setUp.store.hasUsers());
        EXPECT_THROW(setUp.store.addUser("maria", "front desk 1", Role::FrontDesk), StoreError)
            << "the first user is an administrator";
        setUp.store.addUser("ines", "admin pass 1", Role::Administrator);
        setUp.store.addUser("maria", "front desk 1", Role::FrontDesk);
        QSqlQuery hashes(setUp.store.database());
        ASSERT_TRUE(hashes.exec("SELECT password_hash FROM desk_users"));
        while (hashes.next()) {
            EXPECT_TRUE(hashes.value(0).toString().startsWith("$argon2id$")) << hashes.value(0).toString().toStdString();
            EXPECT_FALSE(hashes.value(0).toString().contains("pass"));
        }
    }
    PracticeStore store("maria");
    store.open(path, kToday);
    ASSERT_TRUE(store.hasUsers());
    StoredAppointment a = store.appointments("501", kToday).front();
    EXPECT_THROW(store.setStatus(a.id, a.version, "Confirmed"), NotPermitted) << "nobody has logged in";
    for (const auto& [user, password] : {std::pair{"maria", "front desk 2"}, std::pair{"nobody", "front desk 1"}})
        EXPECT_THROW(store.logIn(user, password), LoginRefused) << user;
    store.logIn("maria", "front desk 1");
    EXPECT_EQ(store.role(), Role::FrontDesk);
    const int confirmed = store.setStatus(a.id, a.version, "Confirmed");
    store.removeAppointment(a.id, confirmed);
    EXPECT_THROW(store.setAllowDoubleBooking(true), NotPermitted);
    EXPECT_THROW(store.addUser("eve", "long enough", Role::Administrator), NotPermitted);
    EXPECT_THROW(store.auditOf(a.id), NotPermitted);
    EXPECT_FALSE(std::ranges::any_of(store.visitsOf(a.patientId), [](const Visit& v) { return v.removed; }))
        << "removed visits come from the trail, which the front desk does not read";

    store.logIn("ines", "admin pass 1");
    EXPECT_EQ(actions(store.auditOf(a.id)),
              (std::vector<std::string>{"create by the practice's set-up", "status by maria", "remove by maria"}));
    EXPECT_TRUE(std::ranges::any_of(store.visitsOf(a.patientId),
                                    [&](const Visit& v) { return v.removed && v.appointment.id == a.id; }));
    store.setAllowDoubleBooking(true);

    // The trail refuses tampering, and the triggers any change that names no user.
    EXPECT_NE(refusal(store, "UPDATE audit_trail SET who = 'someone else'").find("The audit trail cannot be changed"),
              std::string::npos);
    EXPECT_NE(refusal(store, "DELETE FROM audit_trail").find("The audit trail cannot be changed"), std::string::npos);
    EXPECT_NE(refusal(store, "DELETE FROM appointments WHERE app_id = 2").find("No user is named"), std::string::npos);
    EXPECT_EQ(store.auditOf(a.id).size(), 3u);
}

} // namespace
