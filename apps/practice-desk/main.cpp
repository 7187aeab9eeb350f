// practice-desk: a front desk's scheduler on the practice's database.
//
//   practice-desk [--database FILE|postgresql://...] [--demo] [--check] [--today M/D/YYYY]
//                 [--morning FOLDER] [--record SCRIPT] [--transcript FILE] [--user NAME]
//   practice-desk --add-user NAME [--role front_desk|practice_admin] --database FILE [--user ADMIN]
//
// Without a display it runs offscreen, and --morning plays a scripted morning
// that leaves its screenshots in FOLDER.
//
// The desk never makes a practice nobody asked for: only --demo, or the very
// first start on a machine with no settings at all, sets up the demo practice.
// Any other database that is missing, empty or damaged is named in one message
// and the desk exits with status 1.

#include "morning.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    // A desk started where there is no display runs offscreen.
    if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY") && !std::getenv("QT_QPA_PLATFORM"))
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    QApplication::setApplicationName("practice-desk");
    QCommandLineParser args;
    args.setApplicationDescription("A front desk's scheduler on the practice's database.");
    args.addHelpOption();
    const QCommandLineOption database("database",
                                      "The practice's database: a SQLite file or postgresql://...", "FILE");
    const QCommandLineOption today("today", "The date the desk takes as today.", "M/D/YYYY");
    const QCommandLineOption morning("morning", "Play a scripted morning; its screenshots go to FOLDER.",
                                     "FOLDER");
    const QCommandLineOption record("record", "Record the session as a host script to SCRIPT.", "SCRIPT");
    const QCommandLineOption transcript(
        "transcript", "Write the session's transcript, as scheduler-host prints it, to FILE.", "FILE");
    const QCommandLineOption demo(
        "demo", "Set up the demo practice in the database when it holds no practice yet (a new SQLite file "
                "is made).");
    const QCommandLineOption check("check", "Open the practice as the desk would, say which it is, and exit.");
    const QCommandLineOption generate(
        "generate-practice",
        "Fill a new database (--database) with a large practice of YEARS years: 20 resources, 100,000 patients, "
        "25 appointments per resource and working day.",
        "YEARS");
    const QCommandLineOption user("user",
                                  "Log in as USER; the password comes from PRACTICE_DESK_PASSWORD (for scripted "
                                  "runs), else the desk asks.",
                                  "USER");
    const QCommandLineOption addUser(
        "add-user",
        "Add a user to the practice's SQLite file, with --role; --user logs in the administrator who adds them "
        "(unless it is the practice's first). The new user's password comes from PRACTICE_DESK_NEW_PASSWORD.",
        "NAME");
    const QCommandLineOption role("role", "The new user's role: front_desk or practice_admin.", "ROLE", "front_desk");
    args.addOptions({database, demo, check, today, morning, record, transcript, generate, user, addUser, role});
    args.process(app);
    const bool offscreen = QApplication::platformName() == "offscreen";
    auto refuse = [&](const QString& message) {
        if (!offscreen) QMessageBox::critical(nullptr, "Practice Desk", message);
        std::fprintf(stderr, "practice-desk: %s\n", qPrintable(message));
        return 1;
    };

    // The database comes from the command line, else from the desk's settings
    // ("database" in practice-desk.conf), else, on a machine with no settings
    // at all, the demo practice in a SQLite file of the user's own.
    QString location = args.value(database);
    practice::OpenMode mode = args.isSet(demo) ? practice::OpenMode::Demo : practice::OpenMode::Existing;
    const QSettings settings("practice-desk", "practice-desk");
    // The settings are the user's own: readable by nobody else, and never a
    // place for a password.
    if (QFileInfo::exists(settings.fileName())) {
        QFile::setPermissions(settings.fileName(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        if (settings.contains("password") || !QUrl(settings.value("database").toString()).password().isEmpty())
            return refuse("The settings file " + settings.fileName() +
                          " holds a password. The desk never reads one from there: remove the line, and the desk "
                          "asks for the password when it opens.");
    }
    if (location.isEmpty()) {
        if (QFileInfo::exists(settings.fileName())) {
            location = settings.value("database").toString().trimmed();
            if (settings.status() != QSettings::NoError || location.isEmpty())
                return refuse("The settings file " + settings.fileName() +
                              " names no practice database. It needs a line database=FILE or "
                              "database=postgresql://USER@HOST/NAME.");
        } else {
            location = QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation))
                           .filePath("practice.sqlite");
            if (!QFileInfo::exists(location)) {
                const QString message = "No practice database is set up on this computer yet, so the desk "
                                        "sets up the demo practice at " +
                                        location + ". To use the practice's own database, name it with --database "
                                        "or in " + settings.fileName() + ".";
                std::fprintf(stderr, "practice-desk: %s\n", qPrintable(message));
                if (!offscreen) QMessageBox::information(nullptr, "Practice Desk", message);
                mode = practice::OpenMode::Demo;
            }
        }
    }
    quorvane::OleDate day;
    if (args.isSet(today)) {
        if (!quorvane::tryParseDate(args.value(today).toStdString(), day)) {
            std::fprintf(stderr, "practice-desk: --today takes a date M/D/YYYY\n");
            return 1;
        }
    } else {
        day = quorvane::Clock().today();
    }

    if (args.isSet(generate)) {
        bool whole = false;
        practice::PracticeSize size;
        size.years = args.value(generate).toInt(&whole);
        if (!whole || size.years < 1 || size.years > 50 || args.value(database).isEmpty())
            return refuse("--generate-practice takes a number of years from 1 to 50, and --database the new "
                          "database to fill.");
        QElapsedTimer took;
        took.start();
        try {
            practice::PracticeStore store("generator");
            store.generate(location, quorvane::datePart(day), size, [&](const QString& what) {
                std::fprintf(stderr, "practice-desk: %s (%.0f s)\n", qPrintable(what), took.elapsed() / 1000.0);
            });
            std::printf("Generated %d years of practice into %s in %.1f s\n", size.years, qPrintable(location),
                        took.elapsed() / 1000.0);
            return 0;
        } catch (const std::exception& e) {
            return refuse(QString::fromStdString(e.what()));
        }
    }

    practice::Opening opening{mode, {args.value(user), qEnvironmentVariable("PRACTICE_DESK_PASSWORD")}, {}};
    const bool attended = !offscreen && !args.isSet(morning) && !args.isSet(check) && !args.isSet(addUser);
    if (attended)
        opening.ask = [&](const QString& why, bool first) {
            return practice::askForLogin(nullptr, location, why, first);
        };

    if (args.isSet(addUser)) {
        try {
            practice::PracticeStore store("users");
            store.open(location, quorvane::datePart(day));
            if (store.hasUsers() || store.shared()) store.logIn(opening.login.user, opening.login.password);
            const QString name = args.value(addUser);
            const practice::Role given =
                args.value(role) == "practice_admin" ? practice::Role::Administrator : practice::Role::FrontDesk;
            if (args.value(role) != "practice_admin" && args.value(role) != "front_desk")
                return refuse("--role takes front_desk or practice_admin.");
            store.addUser(name, qEnvironmentVariable("PRACTICE_DESK_NEW_PASSWORD"), given);
            std::printf("%s can log in to %s as %s\n", qPrintable(name), qPrintable(store.displayName()),
                        qPrintable(args.value(role)));
            return 0;
        } catch (const std::exception& e) {
            return refuse(QString::fromStdString(e.what()));
        }
    }

    try {
        practice::DeskWindow desk(location, quorvane::datePart(day), opening);
        desk.setIdleLock(std::chrono::minutes(settings.value("lock_minutes", 10).toInt()));
        if (args.isSet(check)) {
            std::printf("%s: %d appointments\n", qPrintable(desk.windowTitle()), desk.store().appointmentCount());
            return 0;
        }
        if ((args.isSet(record) || args.isSet(transcript)) &&
            !desk.startRecording(args.value(record), args.value(transcript))) {
            std::fprintf(stderr, "practice-desk: the recording cannot be written\n");
            return 1;
        }
        if (args.isSet(morning)) {
            const QStringList shots = practice::playMorning(desk, args.value(morning));
            std::printf("The morning's screenshots and printout:\n");
            for (const QString& s : shots)
                std::printf("  %s\n", qPrintable(QDir::toNativeSeparators(QFileInfo(s).absoluteFilePath())));
            return 0;
        }
        desk.show();
        // The desk takes the keyboard when it opens, with a window manager or none.
        desk.activateWindow();
        return QApplication::exec();
    } catch (const std::exception& e) {
        return refuse(QString::fromStdString(e.what()));
    }
}
