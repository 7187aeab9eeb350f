// practice-desk: a front desk's scheduler on the practice's database.
//
//   practice-desk [--database FILE|postgresql://...] [--today M/D/YYYY] [--morning FOLDER]
//                 [--record SCRIPT] [--transcript FILE]
//
// Without a display it runs offscreen, and --morning plays a scripted morning
// that leaves its screenshots in FOLDER.

#include "morning.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>

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
    args.addOptions({database, today, morning, record, transcript});
    args.process(app);

    // The database comes from the command line, else from the desk's settings
    // ("database" in practice-desk.conf), else a SQLite file of the user's own.
    QString location = args.value(database);
    if (location.isEmpty()) location = QSettings("practice-desk", "practice-desk").value("database").toString();
    if (location.isEmpty()) {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
        QDir().mkpath(folder);
        location = QDir(folder).filePath("practice.sqlite");
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

    try {
        practice::DeskWindow desk(location, quorvane::datePart(day));
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
        return QApplication::exec();
    } catch (const practice::StoreError& e) {
        if (QApplication::platformName() != "offscreen")
            QMessageBox::critical(nullptr, "Practice Desk", e.what());
        std::fprintf(stderr, "practice-desk: %s\n", e.what());
        return 1;
    }
}
