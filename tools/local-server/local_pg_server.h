#pragma once
// A PostgreSQL cluster of the test's own, in a temporary folder, reached on a
// Unix socket there. The server refuses to run as root, so a root test runs its
// programs as the postgres user the package made.

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <unistd.h>

namespace practice::test {

class Server {
public:
    Server() {
        QFile::setPermissions(dir_.path(), QFileDevice::Permissions(0x7777));
        const QStringList bins = QDir("/usr/lib/postgresql").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (!bins.isEmpty()) bin_ = "/usr/lib/postgresql/" + bins.last() + "/bin/";
    }
    ~Server() { stop(); }

    bool start() {
        if (!QFile::exists(dir_.path() + "/data/PG_VERSION") &&
            !run("initdb", {"-D", data(), "-A", "trust", "-U", "postgres", "--no-sync", "-E", "UTF8"}))
            return false;
        return run("pg_ctl", {"-D", data(), "-l", dir_.path() + "/log", "-w", "-o",
                              "-k " + dir_.path() + " -c listen_addresses='' -F -p 5432", "start"}) &&
               (created_ || (created_ = run("createdb", {"-h", dir_.path(), "-U", "postgres", "practice"})));
    }
    // "fast" ends the sessions and stops cleanly; "immediate" as a power cut would.
    void stop(const QString& mode = "fast") {
        if (QFile::exists(data() + "/postmaster.pid")) run("pg_ctl", {"-D", data(), "-m", mode, "-w", "stop"});
    }
    bool restart() { return run("pg_ctl", {"-D", data(), "-m", "fast", "-w", "restart"}); }
    // A statement from a client of its own, as psql sends it.
    bool psql(const QString& statement) {
        return run("psql", {"-h", dir_.path(), "-U", "postgres", "-d", "practice", "-v", "ON_ERROR_STOP=1", "-c",
                            statement});
    }
    QString location() const { return "postgresql://postgres@localhost/practice?host=" + dir_.path(); }
    bool available() const { return !bin_.isEmpty() && QFile::exists(bin_ + "initdb"); }

private:
    QString data() const { return dir_.path() + "/data"; }
    bool run(const QString& program, const QStringList& args) {
        QProcess p;
        const QString path = QFile::exists(bin_ + program) ? bin_ + program : program;
        if (::geteuid() == 0)
            p.start("runuser", QStringList{"-u", "postgres", "--", path} + args);
        else
            p.start(path, args);
        return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }
    QTemporaryDir dir_;
    QString bin_;
    bool created_ = false;
};

} // namespace practice::test
