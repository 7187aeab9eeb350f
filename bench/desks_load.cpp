// Many desks on one practice at once. The program starts a PostgreSQL server of
// its own and N headless desks, each in its own process running the desk's own
// code: the control, the desk's host and its store. For a set time each desk
// works as a busy front desk would: bookings, moves across times and
// resources, resizes, status changes and removals, at random, and a share of
// them aimed at the same appointments and the same afternoon slots of the same
// day, so that desks collide.
//
// Each desk writes what it committed, what it was refused and every column it
// loaded from the store into a log of its own. From the logs and the store,
// the program measures the actions committed per second, the time from each
// commit until every other desk shows it, and the refusals by kind; it fails
// when a committed change is lost, an appointment is stored twice, a double
// booking is stored, or a desk's grid differs from the store at the end.
//
//   desks-load [--desks N] [--seconds S] [--pace MS] [--goal-ms P99]

#include <QuorvaneScheduler/control_internals.h>
#include "desk_host.h"
#include "local_pg_server.h"
#include "practice_store.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <QTimer>
#include <QtSql/QSqlQuery>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

using namespace practice;
using namespace quorvane;

namespace {

const OleDate kToday = makeDate(2026, 11, 23);

qint64 nowNs() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}
qint64 ns(std::chrono::steady_clock::time_point t) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(t.time_since_epoch()).count();
}

// Lets the event loop run for `ms`: the other desks' notices are heard and
// answered meanwhile, as in a desk waiting for its user.
void idle(int ms) {
    QEventLoop loop;
    QTimer::singleShot(std::max(ms, 0), &loop, &QEventLoop::quit);
    loop.exec();
}

struct YesBoxes final : MessageBoxService {
    MsgBoxResult show(std::string_view, MsgBoxButtons buttons, std::string_view) override {
        return buttons == MsgBoxButtons::OK ? MsgBoxResult::OK : MsgBoxResult::Yes;
    }
};

// ---- One desk ----------------------------------------------------------------

class LoadDesk {
public:
    LoadDesk(const QString& location, const QString& log, std::uint64_t seed)
        : store_("desk"), log_(log), random_(seed) {
        platform_.clock.setToday(kToday);
        platform_.messageBoxes = &yes_;
        if (!log_.open(QIODevice::WriteOnly | QIODevice::Text))
            throw std::runtime_error("the log " + log.toStdString() + " cannot be written");
        out_.setDevice(&log_);
        store_.open(location, kToday);
        host_.tell = [this](const QString& m) { out_ << "R " << nowNs() << " " << m.simplified() << "\n"; };
        host_.columnShown = [this](const QString& resource, OleDate day, const std::vector<StoredAppointment>& shown) {
            if (day != kToday) return;
            out_ << "L " << nowNs() << " " << resource;
            for (const StoredAppointment& a : shown)
                out_ << " " << a.id << ":" << a.version;
            out_ << "\n";
        };
        host_.start(1200, 700);
        committed_ = store_.lastCommit(); // the layout's check at the opening
        columns_ = std::max(1, QString::fromStdString(widgetsOf(control_).sbSchedule.tag).toInt());
    }

    // Acts until `end` with about `paceMs` between actions, then waits
    // `quietMs` for the last notices and writes its grid.
    void run(qint64 end, int paceMs, int quietMs) {
        std::uniform_int_distribution<int> pause(paceMs / 2, paceMs * 3 / 2);
        while (nowNs() < end) {
            act();
            idle(static_cast<int>(std::min<qint64>(pause(random_), (end - nowNs()) / 1000000)));
        }
        idle(quietMs);
        for (int column = 1; column <= columns_; ++column) {
            out_ << "G " << QString::fromStdString(control_.ResourceValue(column - 1));
            for (const AppointmentRef& a : view(column).appointmentSet().items())
                out_ << " " << QString::fromStdString(tagField(a->Tag, 0)) << ":" << storedDate(a->StartDateTime).mid(11, 5)
                     << "-" << storedDate(a->EndDateTime).mid(11, 5) << ":"
                     << QString::fromStdString(control_.GetStatus(a));
            out_ << "\n";
        }
        out_ << "E " << (host_.offline() ? "offline" : "online") << "\n";
        out_.flush();
    }

private:
    PVDayView& view(int column) { return *widgetsOf(control_).dvwResource[static_cast<std::size_t>(column - 1)]; }
    int pick(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random_); }
    // One of the sixteen quarter hours from 1 PM: the afternoon every desk books into.
    OleDate slot() { return makeTime(13, 15 * pick(16), 0); }

    // An appointment of the afternoon in `column`: half the time the first,
    // which every desk aims at, else any.
    AppointmentRef target(int column) {
        std::vector<AppointmentRef> afternoon;
        for (const AppointmentRef& a : view(column).appointmentSet().items())
            if (!a->Tag.empty() && a->StartDateTime >= addMinutes(kToday, 13 * 60)) afternoon.push_back(a);
        if (afternoon.empty()) return nullptr;
        return afternoon[static_cast<std::size_t>(pick(2) ? 0 : pick(static_cast<int>(afternoon.size())))];
    }

    void act() {
        for (int column = 1; column <= columns_; ++column)
            if (!view(column).pointOfTime(makeTime(16, 45, 0)) || !view(column).pointOfTime(makeTime(13, 0, 0)))
                view(column).setTopIndex(addMinutes(kToday, 12 * 60 + 45));
        const int column = 1 + pick(columns_);
        const int roll = pick(100);
        const char* kind = "book";
        QString from = QString::fromStdString(control_.ResourceValue(column - 1));
        const AppointmentRef a = roll < 25 ? nullptr : target(column);
        if (roll < 25 || !a) {
            host_.loadPatient(QString::number(5501 + pick(30)));
            if (!view(column).userClickAt(slot())) return;
            control_.ScheduleApp();
        } else if (roll < 40) {
            kind = "move";
            view(column).userDrag(a->Key(), view(column), slot());
        } else if (roll < 50) {
            kind = "move";
            const int other = 1 + (column + pick(columns_ - 1 > 0 ? columns_ - 1 : 1)) % columns_;
            view(column).userDrag(a->Key(), view(other), slot());
        } else if (roll < 60) {
            kind = "resize";
            view(column).userResize(a->Key(), addMinutes(a->StartDateTime, 15 * (1 + pick(3))));
        } else if (roll < 80) {
            kind = "status";
            static const char* const items[] = {"mnoScheduled", "mnoConfirm", "mnoCheckIn",
                                                "mnoCheckOut",  "mnoNoShow",  "mnoCancelled"};
            if (!view(column).userClickOn(a->Key(), true)) return;
            if (MenuItem* item = ControlInternals::findMenuItem(control_, items[pick(6)])) item->onClick();
        } else {
            kind = "remove";
            view(column).userDelete(a->Key());
        }
        QCoreApplication::processEvents(); // what the desk put off until the gesture ended
        ++tried_;
        if (store_.lastCommit() == committed_) return;
        committed_ = store_.lastCommit();
        const StoredAppointment& w = store_.written();
        out_ << "C " << ns(committed_) << " " << kind << " " << w.id << " " << w.version << " " << from << " "
             << w.resource << " " << storedDate(w.start).mid(11, 5) << "-" << storedDate(w.end).mid(11, 5) << " "
             << w.status << "\n";
    }

    Platform platform_;
    YesBoxes yes_;
    PracticeStore store_;
    ctlScheduler control_{platform_};
    DeskHost host_{control_, store_};
    QFile log_;
    QTextStream out_;
    std::mt19937_64 random_;
    int columns_ = 1;
    int tried_ = 0;
    std::chrono::steady_clock::time_point committed_;
};

int deskMain(const QString& location, const QString& log, std::uint64_t seed, int paceMs, int quietMs) {
    try {
        LoadDesk desk(location, log, seed);
        std::cout << "ready" << std::endl;
        std::string go;
        qint64 end = 0;
        if (!(std::cin >> go >> end) || go != "go") return 2;
        desk.run(end, paceMs, quietMs);
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "desk: %s\n", e.what());
        return 1;
    }
}

// ---- The run and its figures --------------------------------------------------

struct Commit {
    int desk;
    qint64 t;
    QString kind;
    qint64 id;
    int version;
    QString from, to, times, status;
};
struct Load {
    qint64 t;
    std::map<qint64, int> versions;
};
struct DeskLog {
    std::map<QString, std::vector<Load>> loads; // by resource, in time order
    std::map<QString, std::set<QString>> grid;  // by resource: "id:start-end:status"
    std::vector<QString> refusals;
    bool online = false, finished = false;
};

QString describe(const Commit& c) {
    return QString("desk %1's %2 of %3 to version %4 (%5 to %6 %7 %8)")
        .arg(c.desk).arg(c.kind).arg(c.id).arg(c.version).arg(c.from, c.to, c.times, c.status);
}

DeskLog readLog(const QString& path, int desk, std::vector<Commit>& commits) {
    DeskLog out;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return out;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QString line = in.readLine();
        const QStringList f = line.split(' ');
        if (f[0] == "C" && f.size() >= 9) {
            commits.push_back({desk, f[1].toLongLong(), f[2], f[3].toLongLong(), f[4].toInt(), f[5], f[6], f[7],
                               f[8]});
        } else if (f[0] == "L" && f.size() >= 3) {
            Load load{f[1].toLongLong(), {}};
            for (int i = 3; i < f.size(); ++i)
                load.versions[f[i].section(':', 0, 0).toLongLong()] = f[i].section(':', 1, 1).toInt();
            out.loads[f[2]].push_back(std::move(load));
        } else if (f[0] == "R" && f.size() >= 3) {
            out.refusals.push_back(line.section(' ', 2));
        } else if (f[0] == "G" && f.size() >= 2) {
            std::set<QString>& g = out.grid[f[1]];
            for (int i = 2; i < f.size(); ++i)
                g.insert(f[i]);
        } else if (f[0] == "E") {
            out.finished = true;
            out.online = f.value(1) == "online";
        }
    }
    return out;
}

QString refusalKind(const QString& told) {
    if (told.contains("Another desk changed this appointment first")) return "stale version";
    if (told.contains("does not allow double bookings")) return "double booking";
    if (told.contains("no longer in the schedule")) return "removed meanwhile";
    return "other";
}

double percentile(std::vector<double> v, double p) {
    if (v.empty()) return 0;
    std::sort(v.begin(), v.end());
    const auto rank = static_cast<std::size_t>(std::max(0.0, std::ceil(p / 100.0 * static_cast<double>(v.size())) - 1));
    return v[std::min(rank, v.size() - 1)];
}

struct Options {
    int desks = 4, seconds = 10, paceMs = 1000, quietMs = 3000;
    double goalMs = 0; // a p99 above it fails the run; 0 sets no goal
};

int coordinatorMain(const Options& o) {
    local::Server server;
    if (!server.available()) {
        std::fprintf(stderr, "desks-load: no PostgreSQL server programs on this machine\n");
        return 77;
    }
    if (!server.start()) {
        std::fprintf(stderr, "desks-load: the PostgreSQL server did not start\n");
        return 1;
    }
    const QString location = server.location();
    qint64 seeded = 0;
    {
        PracticeStore setUp("setup");
        setUp.open(location, kToday, OpenMode::Demo);
        QSqlQuery q(setUp.database());
        if (q.exec("SELECT max(app_id) FROM appointments") && q.next()) seeded = q.value(0).toLongLong();
    }
    QTemporaryDir logs;
    // QUORVANE_LOAD_KEEP_LOGS=1 leaves the desks' logs for a look.
    logs.setAutoRemove(qEnvironmentVariable("QUORVANE_LOAD_KEEP_LOGS") != "1");
    if (!logs.autoRemove()) std::fprintf(stderr, "desks-load: the desks' logs are in %s\n", qPrintable(logs.path()));
    std::vector<std::unique_ptr<QProcess>> desks;
    for (int i = 0; i < o.desks; ++i) {
        auto p = std::make_unique<QProcess>();
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->start(QCoreApplication::applicationFilePath(),
                 {"--desk", location, logs.filePath(QString("desk%1.log").arg(i)), QString::number(1000 + i),
                  QString::number(o.paceMs), QString::number(o.quietMs)});
        desks.push_back(std::move(p));
    }
    for (auto& p : desks)
        if (!p->waitForReadyRead(120000) || !p->readLine().startsWith("ready")) {
            std::fprintf(stderr, "desks-load: a desk did not start\n");
            return 1;
        }
    const qint64 start = nowNs(), end = start + qint64(o.seconds) * 1000000000;
    for (auto& p : desks) {
        p->write(QByteArray("go ") + QByteArray::number(end) + "\n");
        p->waitForBytesWritten(10000);
    }
    bool allExited = true;
    for (auto& p : desks)
        allExited = p->waitForFinished(o.seconds * 1000 + o.quietMs + 120000) && p->exitCode() == 0 && allExited;

    std::vector<Commit> commits;
    std::vector<DeskLog> logsOf;
    for (int i = 0; i < o.desks; ++i)
        logsOf.push_back(readLog(logs.filePath(QString("desk%1.log").arg(i)), i, commits));
    std::sort(commits.begin(), commits.end(), [](const Commit& a, const Commit& b) { return a.t < b.t; });

    // How soon every other desk shows each commit.
    std::map<qint64, std::vector<const Commit*>> byId;
    for (const Commit& c : commits)
        byId[c.id].push_back(&c);
    auto supersededBy = [&](const Commit& c, qint64 t) {
        for (const Commit* later : byId[c.id])
            if (later->version > c.version && later->t <= t) return true;
        return false;
    };
    std::vector<double> propagation;
    int unshown = 0;
    for (const Commit& c : commits) {
        const bool removed = c.kind == "remove";
        double worst = 0;
        bool shownEverywhere = true;
        for (int b = 0; b < o.desks && shownEverywhere; ++b) {
            if (b == c.desk) continue;
            std::vector<std::pair<QString, bool>> columns; // resource, whether it now holds the appointment
            if (!removed) columns.emplace_back(c.to, true);
            if (removed || c.from != c.to) columns.emplace_back(c.from, false);
            for (const auto& [resource, holds] : columns) {
                const std::vector<Load>& loads = logsOf[static_cast<std::size_t>(b)].loads[resource];
                auto l = std::lower_bound(loads.begin(), loads.end(), c.t,
                                          [](const Load& load, qint64 t) { return load.t < t; });
                for (; l != loads.end(); ++l) {
                    const auto v = l->versions.find(c.id);
                    const bool reflects = holds ? (v != l->versions.end() ? v->second >= c.version : supersededBy(c, l->t))
                                                : (v == l->versions.end() || v->second > c.version);
                    if (reflects) break;
                }
                if (l == loads.end()) {
                    shownEverywhere = false;
                    break;
                }
                worst = std::max(worst, (l->t - c.t) / 1e6);
            }
        }
        if (shownEverywhere)
            propagation.push_back(worst);
        else if (++unshown <= 5)
            std::fprintf(stderr, "desks-load: not shown on every desk: %s\n", qPrintable(describe(c)));
    }

    // The store at the end, against what was committed.
    PracticeStore check("check");
    check.open(location, kToday);
    std::map<qint64, StoredAppointment> stored;
    std::set<QString> resources;
    for (const DeskLog& d : logsOf)
        for (const auto& [resource, g] : d.grid)
            resources.insert(resource);
    for (const QString& r : resources)
        for (const StoredAppointment& a : check.appointments(r, kToday))
            stored[a.id] = a;
    int lost = 0, twice = 0;
    std::set<qint64> booked;
    for (const auto& [id, list] : byId) {
        std::set<int> versions;
        for (const Commit* c : list) {
            if (!versions.insert(c->version).second) ++lost; // two commits of one version: one overwrote the other
            if (c->kind == "book") booked.insert(id);
        }
        const Commit* last = *std::max_element(list.begin(), list.end(),
                                               [](const Commit* a, const Commit* b) { return a->version < b->version; });
        const auto s = stored.find(id);
        const bool kept = last->kind == "remove"
                              ? s == stored.end()
                              : s != stored.end() && s->second.version == last->version &&
                                    s->second.resource == last->to && s->second.status == last->status &&
                                    storedDate(s->second.start).mid(11, 5) + "-" + storedDate(s->second.end).mid(11, 5) ==
                                        last->times;
        if (!kept && ++lost <= 5)
            std::fprintf(stderr, "desks-load: the store does not hold the last change: %s\n", qPrintable(describe(*last)));
    }
    {
        QSqlQuery q(check.database());
        q.exec("SELECT app_id FROM appointments WHERE app_id > " + QString::number(seeded));
        while (q.next())
            if (!booked.contains(q.value(0).toLongLong())) ++twice; // a row no desk committed a booking for
    }
    int doubles = 0;
    {
        QSqlQuery q(check.database());
        if (q.exec("SELECT count(*) FROM appointments a JOIN appointments b ON a.resource_value = b.resource_value "
                   "AND a.app_id < b.app_id AND a.start_at < b.end_at AND b.start_at < a.end_at "
                   "WHERE a.status <> 'Cancelled' AND b.status <> 'Cancelled' AND a.start_at < a.end_at "
                   "AND b.start_at < b.end_at") &&
            q.next())
            doubles = q.value(0).toInt();
        else
            doubles = -1;
    }
    int converged = 0;
    for (const DeskLog& d : logsOf) {
        bool same = d.finished && d.online;
        for (const auto& [resource, g] : d.grid) {
            std::set<QString> want;
            for (const StoredAppointment& a : check.appointments(resource, kToday))
                want.insert(QString::number(a.id) + ":" + storedDate(a.start).mid(11, 5) + "-" +
                            storedDate(a.end).mid(11, 5) + ":" + a.status);
            same = same && g == want;
        }
        converged += same;
    }
    std::map<QString, int> refusals;
    for (const DeskLog& d : logsOf)
        for (const QString& r : d.refusals)
            ++refusals[refusalKind(r)];

    const double p99 = percentile(propagation, 99);
    std::printf("desks-load: %d desks for %d s, an action every %d ms or so each, on PostgreSQL (%s, %d cores)\n",
                o.desks, o.seconds, o.paceMs, qPrintable(QSysInfo::prettyProductName()), QThread::idealThreadCount());
    std::printf("  committed %zu changes: %.1f a second\n", commits.size(), commits.size() / double(o.seconds));
    std::printf("  refused:");
    for (const char* kind : {"stale version", "double booking", "removed meanwhile", "other"})
        std::printf(" %s %d%s", kind, refusals[kind], std::string(kind) == "other" ? "\n" : ",");
    std::printf("  shown on every other desk after (ms): p50 %.1f, p95 %.1f, p99 %.1f, max %.1f (%zu changes)\n",
                percentile(propagation, 50), percentile(propagation, 95), p99, percentile(propagation, 100),
                propagation.size());
    std::printf("  lost %d, stored twice %d, double bookings stored %d, never shown %d, desks converged %d of %d\n",
                lost, twice, doubles, unshown, converged, o.desks);
    const bool sound = allExited && lost == 0 && twice == 0 && doubles == 0 && unshown == 0 && converged == o.desks &&
                       !commits.empty();
    if (!sound) std::printf("desks-load: FAILED\n");
    if (o.goalMs > 0 && p99 > o.goalMs) std::printf("desks-load: p99 %.1f ms is over the goal of %.0f ms\n", p99, o.goalMs);
    return sound && (o.goalMs <= 0 || p99 <= o.goalMs) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 7 && args[1] == "--desk")
        return deskMain(args[2], args[3], args[4].toULongLong(), args[5].toInt(), args[6].toInt());
    Options o;
    for (int i = 1; i < args.size(); i += 2) {
        bool ok = false;
        const double value = args.value(i + 1).toDouble(&ok);
        if (ok && args[i] == "--desks") o.desks = static_cast<int>(value);
        else if (ok && args[i] == "--seconds") o.seconds = static_cast<int>(value);
        else if (ok && args[i] == "--pace") o.paceMs = static_cast<int>(value);
        else if (ok && args[i] == "--goal-ms") o.goalMs = value;
        else {
            std::fprintf(stderr, "usage: desks-load [--desks N] [--seconds S] [--pace MS] [--goal-ms P99]\n");
            return 2;
        }
    }
    if (o.desks < 1 || o.seconds < 1 || o.paceMs < 2) {
        std::fprintf(stderr, "desks-load: a run needs a desk, a second and a pace of 2 ms or more\n");
        return 2;
    }
    return coordinatorMain(o);
}
