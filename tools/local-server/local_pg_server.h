#pragma once
// A PostgreSQL cluster of a test's or a benchmark's own, in a temporary folder,
// reached on a Unix socket there and nowhere else. The server refuses to run as
// root, so a root caller runs its programs as the postgres user the package made.

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

namespace practice::local {

class Server {
public:
    // In a temporary folder that goes with the server, or in `folder`, where the
    // cluster stays for the next run (a benchmark's generated practices).
    explicit Server(const QString& folder = {}) : folder_(folder.isEmpty() ? temporary_.path() : folder) {
        QDir().mkpath(folder_);
        QFile::setPermissions(folder_, QFileDevice::Permissions(0x7777));
        const QStringList bins = QDir("/usr/lib/postgresql").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (!bins.isEmpty()) bin_ = "/usr/lib/postgresql/" + bins.last() + "/bin/";
    }
    ~Server() { stop(); }

    bool start() {
        if (!QFile::exists(folder_ + "/data/PG_VERSION") &&
            !run("initdb", {"-D", data(), "-A", "trust", "-U", "postgres", "--no-sync", "-E", "UTF8"}))
            return false;
        return run("pg_ctl", {"-D", data(), "-l", folder_ + "/log", "-w", "-o",
                              "-k " + folder_ + " -c listen_addresses='' -F -p 5432", "start"}) &&
               (created_ || (created_ = createDatabase("practice")));
    }
    // "fast" ends the sessions and stops cleanly; "immediate" as a power cut would.
    void stop(const QString& mode = "fast") {
        if (QFile::exists(data() + "/postmaster.pid")) run("pg_ctl", {"-D", data(), "-m", mode, "-w", "stop"});
    }
    bool restart() { return run("pg_ctl", {"-D", data(), "-m", "fast", "-w", "restart"}); }
    // A statement from a client of its own, as psql sends it. With `expect`, it holds only when the statement's one value reads so.
    bool psql(const QString& statement, const QString& database = "practice", const QString& expect = {}) {
        QString out;
        return run("psql", {"-h", folder_, "-U", "postgres", "-d", database, "-v", "ON_ERROR_STOP=1", "-Atc",
                            statement}, &out) &&
               (expect.isNull() || out.trimmed() == expect);
    }
    QString folder() const { return folder_; }
    QString location(const QString& database = "practice") const {
        return "postgresql://postgres@localhost/" + database + "?host=" + folder_;
    }
    // A database of that name, made when it is not there yet.
    bool createDatabase(const QString& name) {
        return psql("SELECT 1 FROM pg_database WHERE datname = '" + name + "'", "postgres", "1") ||
               run("createdb", {"-h", folder_, "-U", "postgres", name});
    }
    bool available() const { return !bin_.isEmpty() && QFile::exists(bin_ + "initdb"); }

private:
    QString data() const { return folder_ + "/data"; }
    bool run(const QString& program, const QStringList& args, QString* out = nullptr) {
        QProcess p;
        const QString path = QFile::exists(bin_ + program) ? bin_ + program : program;
        if (::geteuid() == 0)
            p.start("runuser", QStringList{"-u", "postgres", "--", path} + args);
        else
            p.start(path, args);
        const bool ran = p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
        if (out) *out = QString::fromUtf8(p.readAllStandardOutput());
        return ran;
    }
    QTemporaryDir temporary_;
    QString folder_;
    QString bin_;
    bool created_ = false;
};

} // namespace practice::local
