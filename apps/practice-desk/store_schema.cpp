// The layout of a practice's database: its migrations, the unit in which one
// desk at a time sets a database up, the check that a database is whole, and
// the practice's settings that live in the layout itself.

#include "store_sql.h"

#include <QtSql/QSqlRecord>

#include <array>
#include <cstdio>

namespace practice {

using sql::run;

namespace {

// The schema, one step per version. %ID% is a key the database numbers
// itself, in each dialect's words. What a step needs beyond plain statements
// (the names folded for search, the rule against double bookings on a server)
// is done in migrate().
const std::array<QStringList, PracticeStore::kSchemaVersion> kMigrations = {{
    {
        "CREATE TABLE schema_version (version INTEGER NOT NULL)",
        "INSERT INTO schema_version (version) VALUES (0)",
        "CREATE TABLE practice_groups (group_id TEXT PRIMARY KEY, group_name TEXT NOT NULL, "
        "columns_shown INTEGER NOT NULL, columns_total INTEGER NOT NULL, is_default INTEGER NOT NULL, "
        "position INTEGER NOT NULL)",
        "CREATE TABLE resources (resource_value TEXT PRIMARY KEY, name TEXT NOT NULL, cat_type TEXT NOT "
        "NULL, sub_type TEXT NOT NULL)",
        "CREATE TABLE group_members (group_id TEXT NOT NULL, resource_value TEXT NOT NULL, "
        "default_column INTEGER NOT NULL, position INTEGER NOT NULL)",
        "CREATE TABLE patients (patient_id TEXT PRIMARY KEY, name TEXT NOT NULL, chart_number TEXT, dob "
        "TEXT, sex TEXT, pcp TEXT, home_phone TEXT, home_ext TEXT, work_phone TEXT, work_ext TEXT, "
        "other_phone TEXT, other_ext TEXT, primary_ins TEXT, primary_active TEXT, primary_copay TEXT, "
        "secondary_ins TEXT, secondary_active TEXT, secondary_copay TEXT, balance30 TEXT, balance60 TEXT, "
        "balance90 TEXT, balance180 TEXT, dod TEXT, photo_image_id TEXT)",
        "CREATE TABLE appointments (app_id %ID%, resource_value TEXT NOT NULL, "
        "start_at TEXT NOT NULL, end_at TEXT NOT NULL, description TEXT NOT NULL, patient_id TEXT NOT NULL, "
        "status TEXT NOT NULL, recurrence_id TEXT NOT NULL DEFAULT '', type_id TEXT NOT NULL DEFAULT '', "
        "comments TEXT NOT NULL DEFAULT '', chief_complaint TEXT NOT NULL DEFAULT '', "
        "prior_auth TEXT NOT NULL DEFAULT '', ref_provider TEXT NOT NULL DEFAULT '', "
        "ref_provider_id TEXT NOT NULL DEFAULT '')",
        "CREATE TABLE templates (template_id %ID%, resource_value TEXT NOT NULL, "
        "weekday INTEGER NOT NULL, start_time TEXT NOT NULL, end_time TEXT NOT NULL, description TEXT NOT "
        "NULL, colour TEXT NOT NULL)",
        "CREATE TABLE appointment_types (resource_value TEXT NOT NULL, position INTEGER NOT NULL, "
        "caption TEXT NOT NULL, duration TEXT NOT NULL, comment TEXT NOT NULL, chief TEXT NOT NULL, "
        "type_id TEXT NOT NULL)",
    },
    {
        // Two desks may change one appointment: each change counts up its version.
        "ALTER TABLE appointments ADD COLUMN version INTEGER NOT NULL DEFAULT 1",
        "CREATE INDEX appointments_by_day ON appointments (resource_value, start_at)",
    },
    {
        // The practice's own rules, and names folded for a search that ignores case.
        "CREATE TABLE practice_settings (name TEXT PRIMARY KEY, value TEXT NOT NULL)",
        "INSERT INTO practice_settings (name, value) VALUES ('allow_double_booking', 'off')",
        "ALTER TABLE patients ADD COLUMN name_folded TEXT NOT NULL DEFAULT ''",
    },
    {
        // The check against double bookings looks from the new start onwards,
        // by the appointments' ends, never back through the past. A search by
        // a fragment of a name or a chart number reads an index of the
        // engine's (see kServerSearchIndex and kFileSearchIndex).
        "CREATE INDEX appointments_by_end ON appointments (resource_value, end_at)",
    },
    {
        // Who did what: the audit trail, written by the engine's triggers in
        // the transaction of each change, and the users and roles that name
        // the who (see kServerAudit and kFileAudit).
    },
}};

// On a server the rule against double bookings is a constraint, so two desks
// racing for one slot cannot both win. The stored times are ISO texts, read the
// same whatever the server's date style, which is what makes the period
// function immutable in fact.
const char* const kPeriodFunction =
    "CREATE OR REPLACE FUNCTION practice_period(text, text) RETURNS tsrange LANGUAGE sql IMMUTABLE "
    "AS 'SELECT tsrange(CAST($1 AS timestamp), CAST($2 AS timestamp))'";
const char* const kNoDoubleBooking =
    "ALTER TABLE appointments ADD CONSTRAINT appointments_no_double_booking EXCLUDE USING gist "
    "(resource_value WITH =, practice_period(start_at, end_at) WITH &&) WHERE (status <> 'Cancelled')";

// An appointment's columns, as the audit trail keeps its values.
const char* const kAppointmentColumns[] = {
    "app_id",   "resource_value", "start_at",        "end_at",     "description",  "patient_id",
    "status",   "recurrence_id",  "type_id",         "comments",   "chief_complaint", "prior_auth",
    "ref_provider", "ref_provider_id", "version"};

// The kind of a change, from the row before and after, in both dialects.
QString actionOf(const QString& o, const QString& n) {
    return QString("CASE WHEN %1.resource_value <> %2.resource_value OR %1.start_at <> %2.start_at THEN 'move' "
                   "WHEN %1.end_at <> %2.end_at THEN 'resize' WHEN %1.status <> %2.status THEN 'status' "
                   "WHEN %1.comments <> %2.comments OR %1.chief_complaint <> %2.chief_complaint OR "
                   "%1.prior_auth <> %2.prior_auth OR %1.ref_provider <> %2.ref_provider OR "
                   "%1.ref_provider_id <> %2.ref_provider_id THEN 'notes' ELSE 'edit' END")
        .arg(o, n);
}

// On a server: the login roles are the users, members of two group roles
// whose grants the server enforces. The trigger's function runs as the
// layout's owner, so the trail takes rows no desk's role may write itself.
QStringList serverAudit() {
    return {
        "CREATE TABLE audit_trail (audit_id BIGSERIAL PRIMARY KEY, at TIMESTAMPTZ NOT NULL DEFAULT clock_timestamp(), "
        "who TEXT NOT NULL, desk TEXT NOT NULL, action TEXT NOT NULL, app_id BIGINT NOT NULL, "
        "patient_id TEXT NOT NULL, before JSONB, after JSONB)",
        "CREATE INDEX audit_by_appointment ON audit_trail (app_id, audit_id)",
        "CREATE INDEX audit_by_patient ON audit_trail (patient_id, app_id)",
        "CREATE INDEX appointments_by_patient ON appointments (patient_id, start_at)",
        "CREATE OR REPLACE FUNCTION practice_audit() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER "
        "SET search_path = public AS $$ "
        "DECLARE desk text := coalesce(nullif(current_setting('application_name', true), ''), "
        "host(inet_client_addr()), 'local'); "
        "BEGIN "
        "IF TG_OP = 'INSERT' THEN "
        "INSERT INTO audit_trail (who, desk, action, app_id, patient_id, before, after) "
        "VALUES (session_user, desk, 'create', NEW.app_id, NEW.patient_id, NULL, to_jsonb(NEW)); "
        "ELSIF TG_OP = 'DELETE' THEN "
        "INSERT INTO audit_trail (who, desk, action, app_id, patient_id, before, after) "
        "VALUES (session_user, desk, 'remove', OLD.app_id, OLD.patient_id, to_jsonb(OLD), NULL); "
        "ELSE "
        "INSERT INTO audit_trail (who, desk, action, app_id, patient_id, before, after) "
        "VALUES (session_user, desk, " + actionOf("OLD", "NEW") + ", NEW.app_id, NEW.patient_id, "
        "to_jsonb(OLD), to_jsonb(NEW)); "
        "END IF; RETURN NULL; END $$",
        "CREATE TRIGGER appointments_audit AFTER INSERT OR UPDATE OR DELETE ON appointments "
        "FOR EACH ROW EXECUTE FUNCTION practice_audit()",
        "CREATE OR REPLACE FUNCTION practice_audit_fixed() RETURNS trigger LANGUAGE plpgsql AS $$ "
        "BEGIN RAISE EXCEPTION 'The audit trail cannot be changed.'; END $$",
        "CREATE TRIGGER audit_trail_fixed BEFORE UPDATE OR DELETE ON audit_trail "
        "FOR EACH ROW EXECUTE FUNCTION practice_audit_fixed()",
        "DO $$ BEGIN "
        "IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = 'front_desk') THEN CREATE ROLE front_desk NOLOGIN; "
        "END IF; "
        "IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = 'practice_admin') THEN "
        "CREATE ROLE practice_admin NOLOGIN; END IF; END $$",
        "GRANT front_desk TO practice_admin",
        "REVOKE ALL ON ALL TABLES IN SCHEMA public FROM PUBLIC",
        "GRANT SELECT ON schema_version, practice_groups, resources, group_members, patients, appointments, "
        "templates, appointment_types, practice_settings TO front_desk",
        "GRANT INSERT, UPDATE, DELETE ON appointments TO front_desk",
        "GRANT USAGE ON SEQUENCE appointments_app_id_seq TO front_desk",
        "GRANT INSERT, UPDATE, DELETE ON practice_groups, resources, group_members, patients, templates, "
        "appointment_types, practice_settings TO practice_admin",
        "GRANT USAGE ON ALL SEQUENCES IN SCHEMA public TO practice_admin",
        "GRANT SELECT ON audit_trail TO practice_admin",
        // The rule against double bookings is the layout's owner's to change;
        // an administrator changes it through this.
        QString("CREATE OR REPLACE FUNCTION practice_allow_double_booking(allow boolean) RETURNS void "
                "LANGUAGE plpgsql SECURITY DEFINER SET search_path = public AS $$ BEGIN "
                "UPDATE practice_settings SET value = CASE WHEN allow THEN 'on' ELSE 'off' END "
                "WHERE name = 'allow_double_booking'; "
                "ALTER TABLE appointments DROP CONSTRAINT IF EXISTS appointments_no_double_booking; "
                "IF NOT allow THEN %1; END IF; END $$")
            .arg(kNoDoubleBooking),
        "REVOKE ALL ON FUNCTION practice_allow_double_booking(boolean) FROM PUBLIC",
        "GRANT EXECUTE ON FUNCTION practice_allow_double_booking(boolean) TO practice_admin",
    };
}

// In a file: the users are rows with their password hashes, and each desk's
// write transaction names its user in desk_actor, which the triggers read; a
// change without one is refused, as is any change to the trail.
QStringList fileAudit() {
    QStringList newValues, oldValues;
    for (const char* column : kAppointmentColumns) {
        newValues << QString("'%1', new.%1").arg(column);
        oldValues << QString("'%1', old.%1").arg(column);
    }
    const QString after = "json_object(" + newValues.join(", ") + ")";
    const QString before = "json_object(" + oldValues.join(", ") + ")";
    const QString named = "SELECT RAISE(ABORT, 'No user is named for this change, so it was not stored.') "
                          "WHERE NOT EXISTS (SELECT 1 FROM desk_actor); ";
    const QString now = "strftime('%Y-%m-%d %H:%M:%f', 'now', 'localtime')";
    const QString into = "INSERT INTO audit_trail (at, who, desk, action, app_id, patient_id, before, after) ";
    return {
        "CREATE TABLE audit_trail (audit_id INTEGER PRIMARY KEY AUTOINCREMENT, at TEXT NOT NULL, who TEXT NOT NULL, "
        "desk TEXT NOT NULL, action TEXT NOT NULL, app_id INTEGER NOT NULL, patient_id TEXT NOT NULL, "
        "before TEXT, after TEXT)",
        "CREATE INDEX audit_by_appointment ON audit_trail (app_id, audit_id)",
        "CREATE INDEX audit_by_patient ON audit_trail (patient_id, app_id)",
        "CREATE INDEX appointments_by_patient ON appointments (patient_id, start_at)",
        "CREATE TABLE desk_users (name TEXT PRIMARY KEY, password_hash TEXT NOT NULL, "
        "role TEXT NOT NULL CHECK (role IN ('front_desk', 'practice_admin')))",
        "CREATE TABLE desk_actor (name TEXT NOT NULL, desk TEXT NOT NULL)",
        "CREATE TRIGGER appointments_audit_insert AFTER INSERT ON appointments BEGIN " + named + into + "SELECT " +
            now + ", name, desk, 'create', new.app_id, new.patient_id, NULL, " + after + " FROM desk_actor; END",
        "CREATE TRIGGER appointments_audit_update AFTER UPDATE ON appointments BEGIN " + named + into + "SELECT " +
            now + ", name, desk, " + actionOf("old", "new") + ", new.app_id, new.patient_id, " + before + ", " +
            after + " FROM desk_actor; END",
        "CREATE TRIGGER appointments_audit_delete AFTER DELETE ON appointments BEGIN " + named + into + "SELECT " +
            now + ", name, desk, 'remove', old.app_id, old.patient_id, " + before + ", NULL FROM desk_actor; END",
        "CREATE TRIGGER audit_trail_fixed_update BEFORE UPDATE ON audit_trail BEGIN "
        "SELECT RAISE(ABORT, 'The audit trail cannot be changed.'); END",
        "CREATE TRIGGER audit_trail_fixed_delete BEFORE DELETE ON audit_trail BEGIN "
        "SELECT RAISE(ABORT, 'The audit trail cannot be changed.'); END",
    };
}

// Trigram indexes: PostgreSQL's pg_trgm behind LIKE, SQLite's FTS5 table of
// trigrams kept by triggers, whose LIKE reads the index for a fragment of
// three characters or more.
const char* const kServerSearchIndex[] = {
    "CREATE EXTENSION IF NOT EXISTS pg_trgm",
    "CREATE INDEX patients_name_trigrams ON patients USING gin (name_folded gin_trgm_ops)",
    "CREATE INDEX patients_chart_trigrams ON patients USING gin (lower(chart_number) gin_trgm_ops)",
};
const char* const kFileSearchIndex[] = {
    "CREATE VIRTUAL TABLE patients_search USING fts5(name_folded, chart, tokenize = 'trigram')",
    "CREATE TRIGGER patients_search_insert AFTER INSERT ON patients BEGIN "
    "INSERT INTO patients_search (rowid, name_folded, chart) "
    "VALUES (new.rowid, new.name_folded, lower(coalesce(new.chart_number, ''))); END",
    "CREATE TRIGGER patients_search_update AFTER UPDATE ON patients BEGIN "
    "UPDATE patients_search SET name_folded = new.name_folded, chart = lower(coalesce(new.chart_number, '')) "
    "WHERE rowid = old.rowid; END",
    "CREATE TRIGGER patients_search_delete AFTER DELETE ON patients BEGIN "
    "DELETE FROM patients_search WHERE rowid = old.rowid; END",
    "INSERT INTO patients_search (rowid, name_folded, chart) "
    "SELECT rowid, name_folded, lower(coalesce(chart_number, '')) FROM patients",
};

// One number for the lock that lets one desk at a time set a server's database up.
constexpr qint64 kSetUpLock = 0x51756f7276616e65; // "Quorvane"

} // namespace

void PracticeStore::openAt(const QString& location, int version) {
    connect(location, OpenMode::Demo);
    setUp(version, false, {});
}

void PracticeStore::open(const QString& location, quorvane::OleDate today, OpenMode mode) {
    connect(location, mode);
    setUp(kSchemaVersion, mode == OpenMode::Demo, today);
    validate();
    audited_ = !postgres_;
    fileHasUsers_ = !postgres_ && hasUsers();
}

void PracticeStore::setUp(int upTo, bool seedDemo, quorvane::OleDate today) {
    transaction("the practice's layout", [&] {
        if (postgres_) run(db_, "SELECT pg_advisory_xact_lock(?)", {kSetUpLock}, "the practice's layout");
        const int from = schemaVersion();
        if (from > kSchemaVersion)
            throw StoreError((sql::nameOf(db_) + " was set up by a newer practice desk (layout " +
                              QString::number(from) + "); this desk knows layouts up to " +
                              QString::number(kSchemaVersion) + ".")
                                 .toStdString());
        if (from == 0 && upTo == kSchemaVersion && !seedDemo)
            throw StoreError((sql::nameOf(db_) +
                              " holds no practice. Start the desk with --demo to set up the demo practice "
                              "there.")
                                 .toStdString());
        migrate(from, upTo);
        if (from == 0 && seedDemo) {
            nameActor("the practice's set-up");
            seed(today);
        }
    });
}

// 0 for a database that has no schema yet.
int PracticeStore::schemaVersion() const {
    checkOpen();
    if (!db_.tables().contains("schema_version")) return 0;
    sql::Rows q = run(db_, "SELECT version FROM schema_version");
    return q.next() ? q.value(0).toInt() : 0;
}

void PracticeStore::migrate(int from, int upTo) {
    const char* what = "the new layout of the database";
    for (int version = from; version < upTo; ++version) {
        for (QString statement : kMigrations[static_cast<std::size_t>(version)]) {
            statement.replace("%ID%", postgres_ ? "BIGSERIAL PRIMARY KEY" : "INTEGER PRIMARY KEY AUTOINCREMENT");
            run(db_, statement, {}, what);
        }
        if (version == 2) {
            foldPatientNames();
            if (postgres_) {
                run(db_, "CREATE EXTENSION IF NOT EXISTS btree_gist", {}, what);
                run(db_, kPeriodFunction, {}, what);
                // A practice that already has overlapping appointments keeps
                // allowing them until it sorts them out.
                sql::Rows overlaps = run(db_,
                                         "SELECT 1 FROM appointments a JOIN appointments b ON "
                                         "a.resource_value = b.resource_value AND a.app_id < b.app_id AND "
                                         "a.status <> 'Cancelled' AND b.status <> 'Cancelled' AND "
                                         "a.start_at < b.end_at AND b.start_at < a.end_at LIMIT 1",
                                         {}, what);
                if (overlaps.next()) {
                    overlaps.finish();
                    run(db_, "UPDATE practice_settings SET value = 'on' WHERE name = 'allow_double_booking'",
                        {}, what);
                    std::fprintf(stderr, "practice-desk: the practice has overlapping appointments, so "
                                         "double bookings stay allowed\n");
                } else {
                    forbidDoubleBookings(true);
                }
            }
        }
        if (version == 4)
            for (const QString& statement : postgres_ ? serverAudit() : fileAudit())
                run(db_, statement, {}, what);
        if (version == 3) {
            if (postgres_)
                for (const char* statement : kServerSearchIndex)
                    run(db_, statement, {}, what);
            else
                for (const char* statement : kFileSearchIndex)
                    run(db_, statement, {}, what);
        }
        run(db_, "UPDATE schema_version SET version = ?", {version + 1}, what);
    }
}

// The name as a search compares it: case folded, so "hopper" finds "Hopper"
// and "ölander" finds "Ölander" on either engine.
void PracticeStore::foldPatientNames() {
    std::vector<std::pair<QString, QString>> names;
    sql::Rows q = run(db_, "SELECT patient_id, name FROM patients");
    while (q.next())
        names.emplace_back(q.value(0).toString(), q.value(1).toString());
    for (const auto& [id, name] : names)
        run(db_, "UPDATE patients SET name_folded = ? WHERE patient_id = ?", {name.toCaseFolded(), id},
            "the names for search");
}

void PracticeStore::forbidDoubleBookings(bool forbid) {
    if (!postgres_) return; // SQLite checks inside each write transaction
    run(db_, "ALTER TABLE appointments DROP CONSTRAINT IF EXISTS appointments_no_double_booking", {},
        "the rule against double bookings");
    if (forbid) run(db_, kNoDoubleBooking, {}, "the rule against double bookings");
}

bool PracticeStore::allowDoubleBooking() const {
    checkOpen();
    sql::Rows q = run(db_, "SELECT value FROM practice_settings WHERE name = 'allow_double_booking'");
    return q.next() && q.value(0).toString() == "on";
}

void PracticeStore::setAllowDoubleBooking(bool allow) {
    refuseUnlessAdministrator("the rule against double bookings");
    transaction("the rule against double bookings", [&] {
        if (postgres_) {
            run(db_, "SELECT practice_allow_double_booking(?)", {allow}, "the rule against double bookings");
            return;
        }
        run(db_, "UPDATE practice_settings SET value = ? WHERE name = 'allow_double_booking'",
            {allow ? "on" : "off"}, "the rule against double bookings");
    });
}

// A file whose pages were overwritten, or a database that lost a table, would
// otherwise read as a practice with a free day.
void PracticeStore::validate() {
    const QStringList tables = db_.tables();
    for (const char* table : sql::kTables)
        if (!tables.contains(table))
            throw DamagedError((sql::nameOf(db_) + " is damaged and cannot be used: its table \"" + table +
                                "\" is missing.")
                                   .toStdString());
    if (postgres_) return;
    sql::Rows check = run(db_, "PRAGMA quick_check(1)");
    if (!check.next() || check.value(0).toString() != "ok")
        throw DamagedError((sql::nameOf(db_) + " is damaged and cannot be used.").toStdString());
}

} // namespace practice
