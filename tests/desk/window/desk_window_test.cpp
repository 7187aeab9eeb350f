// The desk's window as a person sees it: which practice is open, the server
// going away and coming back, and where the day's printout went.

#include "local_pg_server.h"
#include "desk_window.h"

#include <QuorvaneScheduler/qt/day_view_widget.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace quorvane;

namespace practice {
namespace {

const OleDate kToday = makeDate(2026, 11, 23);

bool within(const std::function<bool()>& done, int ms) {
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

void screenshot(QWidget& w, const char* name) {
    const QString folder = qEnvironmentVariable("QUORVANE_SCREENSHOTS");
    if (folder.isEmpty()) return;
    QDir().mkpath(folder);
    w.grab().save(QDir(folder).filePath(name));
}

double linear(double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); }

double contrast(const QColor& a, const QColor& b) {
    auto lum = [](const QColor& c) {
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    const double x = lum(a) + 0.05, y = lum(b) + 0.05;
    return std::max(x, y) / std::min(x, y);
}

// CIE L*a*b* under D65, and the distance between two colours there.
std::array<double, 3> lab(const QColor& c) {
    const double r = linear(c.redF()), g = linear(c.greenF()), b = linear(c.blueF());
    auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
    const double fx = f((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.95047);
    const double fy = f(0.2126 * r + 0.7152 * g + 0.0722 * b);
    const double fz = f((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.08883);
    return {116 * fy - 16, 500 * (fx - fy), 200 * (fy - fz)};
}

double deltaE(const QColor& a, const QColor& b) {
    const auto p = lab(a), q = lab(b);
    return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

// An idle window learns within seconds that its server went away, says so in
// its title and status bar with the grid as it was, and comes back by itself.
TEST(DeskWindowOnAServer, AnIdleWindowShowsItsServerAwayAndBack) {
    local::Server server;
    if (!server.available()) GTEST_SKIP() << "no PostgreSQL server programs on this machine";
    ASSERT_TRUE(server.start());
    DeskWindow desk(server.location(), kToday, OpenMode::Demo);
    desk.setUnattended(true);
    desk.show();
    const QString title = desk.windowTitle();
    EXPECT_TRUE(title.startsWith("Practice Desk — practice on ")) << title.toStdString();
    const int shown = desk.control().GetDayView("1")->appointmentSet().Count();
    auto* offline = desk.findChild<QLabel*>("offlineState");
    ASSERT_TRUE(offline);

    server.stop("immediate");
    EXPECT_TRUE(within([&] { return offline->isVisible(); }, 5000));
    EXPECT_EQ(offline->text(), "Offline: the practice server is unreachable; retrying…");
    EXPECT_TRUE(desk.windowTitle().endsWith("Offline: the practice server is unreachable; retrying…"));
    EXPECT_FALSE(desk.control().UserControlEnabled());
    EXPECT_EQ(desk.control().GetDayView("1")->appointmentSet().Count(), shown) << "the grid is kept";
    screenshot(desk, "desk-offline.png");

    ASSERT_TRUE(server.start());
    EXPECT_TRUE(within([&] { return !offline->isVisible(); }, 10000));
    EXPECT_EQ(desk.windowTitle(), title);
    EXPECT_TRUE(desk.control().UserControlEnabled());
    EXPECT_EQ(desk.control().GetDayView("1")->appointmentSet().Count(), shown);
}

// The printout goes to the user's documents, and the status bar says where.
TEST(DeskWindowOnAFile, TheTitleNamesThePracticeAndThePrintoutGoesToDocuments) {
    QTemporaryDir home;
    const QByteArray oldHome = qgetenv("HOME");
    qputenv("HOME", home.path().toUtf8());
    {
        const QString database = home.filePath("office/practice.sqlite");
        DeskWindow desk(database, kToday, OpenMode::Demo);
        desk.setUnattended(true);
        EXPECT_EQ(desk.windowTitle(), "Practice Desk — " + database);
        desk.host().PrintDay("501", "20261123~15~08~17");
        const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        EXPECT_EQ(desk.lastPrintout().path, documents + "/schedule-501-20261123.pdf");
        EXPECT_TRUE(QFile::exists(desk.lastPrintout().path));
        EXPECT_TRUE(desk.statusBar()->currentMessage().contains(desk.lastPrintout().path));
        EXPECT_FALSE(QFile::exists(home.filePath("office/schedule-501-20261123.pdf")));
    }
    qputenv("HOME", oldHome);
}

// The Template Key button opens a window that names every colour on the grid:
// the six statuses, then the practice's blocks.
TEST(DeskWindowOnAFile, TheColourKeyNamesEveryStatusAndBlock) {
    QTemporaryDir dir;
    DeskWindow desk(dir.filePath("practice.sqlite"), kToday, OpenMode::Demo);
    desk.setUnattended(true);
    desk.show();
    QTest::mouseClick(desk.scheduler().findChild<QWidget*>("cmdLegend"), Qt::LeftButton);
    auto* legend = desk.findChild<QWidget*>("legend");
    ASSERT_TRUE(legend);
    QStringList names;
    for (const QLabel* row : legend->findChildren<QLabel*>("legendRow")) {
        names << row->text();
        // Text on the colour is readable (WCAG 2.1 AA), and a selected slot
        // never looks like it (CIE76 colour difference).
        const QColor colour(row->accessibleName().section(", ", -1));
        EXPECT_GE(contrast(textColourOn(colour), colour), 4.5) << row->text().toStdString();
        EXPECT_GE(deltaE(selectedSlotColour(), colour), 10.0) << row->text().toStdString();
    }
    EXPECT_EQ(names.join(", "), "Scheduled, Confirmed, Checked-In, Checked-Out, No-Show, Cancelled, Lunch, Surgery");
    screenshot(*legend, "desk-legend.png");
}

} // namespace
} // namespace practice
