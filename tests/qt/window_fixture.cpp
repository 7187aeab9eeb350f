#include "window_fixture.h"

#include "qt/qt_dates.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QTest>
#include <QTimer>

namespace quorvane::test {

namespace {

// The lines of a transcript less the commands and the values they print, unindented.
Lines transcriptLines(const std::string& text) {
    Lines lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (const auto first = line.find_first_not_of(' ');
            first != std::string::npos && line[first] != '>' && line[first] != '=')
            lines.push_back(line.substr(first));
    return lines;
}

std::string printed(const QVariant& v) {
    if (v.typeId() == QMetaType::QDate) return "#" + shortDateText(oleDateOf(v.toDate())) + "#";
    if (v.typeId() == QMetaType::Int) return std::to_string(v.toInt());
    return host::printValue(Variant(v.toString().toStdString()));
}

} // namespace

Lines consoleTranscript(const std::string& setup, const std::string& gestures) {
    std::ostringstream out, err;
    host::Console c(out, makeDate(2008, 1, 15));
    EXPECT_EQ(c.run("setup", setup, err), 0) << err.str();
    const std::size_t mark = out.str().size();
    EXPECT_EQ(c.run("gestures", gestures, err), 0) << err.str();
    return transcriptLines(out.str().substr(mark));
}

WindowTest::WindowTest() {
    console = std::make_unique<host::Console>(consoleOut, makeDate(2008, 1, 15));
    std::ostringstream err;
    EXPECT_EQ(console->run("setup", kMorning, err), 0) << err.str();
    window = std::make_unique<SchedulerWidget>(console->control());
    window->setTimeOfDaySource([] { return QTime(10, 45); });
    QObject::connect(window.get(), &SchedulerWidget::eventRaised,
                     [this](const QString& name, const QVariantList& args) {
                         std::string line = "event " + name.toStdString() + "(";
                         for (qsizetype i = 0; i < args.size(); ++i)
                             line += (i ? ", " : "") + printed(args[i]);
                         log.push_back(line + ")");
                     });
    QObject::connect(window.get(), &SchedulerWidget::propertyChanged,
                     [this](const QString& name) { log.push_back("changed " + name.toStdString()); });
    QObject::connect(window.get(), &SchedulerWidget::contextMenuOpened,
                     [this](QMenu* menu) { log.push_back("popup " + menu->objectName().toStdString()); });
    window->resize(1000, 700);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    // Message boxes are answered as they open, as the user would, and logged as the console logs them.
    auto* answerer = new QTimer(window.get());
    QObject::connect(answerer, &QTimer::timeout, [this] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible()) return;
        const bool question = box->button(QMessageBox::Yes) != nullptr,
                   yes = question && !answers.empty() && answers[0];
        if (question && !answers.empty()) answers.erase(answers.begin());
        log.push_back(std::string("msgbox(") + (question ? "YesNo" : "OK") + ", " +
                      host::printValue(Variant(box->text().toStdString())) + ")" +
                      (question ? (yes ? " -> Yes" : " -> No") : ""));
        const auto answer = question ? (yes ? QMessageBox::Yes : QMessageBox::No) : QMessageBox::Ok;
        QTest::mouseClick(box->button(answer), Qt::LeftButton);
    });
    answerer->start(5);
}

WindowTest::~WindowTest() {
    if (QMenu* menu = window->openMenu()) menu->close();
    window.reset();
}

QPoint WindowTest::on(int column, std::int32_t key) {
    const auto p = model(column).pointOfAppointment(key);
    EXPECT_TRUE(p) << "appointment " << key << " is not shown";
    return p ? day(column).fromView({p->first, p->second}) : QPoint();
}

QPoint WindowTest::at(int column, int hour, int minute) {
    const auto p = model(column).pointOfTime(makeTime(hour, minute, 0));
    EXPECT_TRUE(p) << hour << ":" << minute << " is not shown";
    return p ? day(column).fromView({p->first, p->second}) : QPoint();
}

void WindowTest::drag(DayViewWidget& w, QPoint from, QPoint to, int steps) {
    QTest::mousePress(&w, Qt::LeftButton, {}, from);
    for (int step = 1; step <= steps; ++step)
        QTest::mouseMove(&w, from + (to - from) * step / steps);
    QTest::mouseRelease(&w, Qt::LeftButton, {}, to);
}

QImage WindowTest::shot(qreal ratio) {
    QImage image(window->size() * ratio, QImage::Format_ARGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    window->render(&image);
    if (QMenu* menu = window->openMenu(); menu && menu->isVisible()) {
        QPainter p(&image);
        menu->render(&p, window->mapFromGlobal(menu->pos()));
    }
    return image;
}

void WindowTest::saveShot(const QImage& image, const char* name) {
    const QString dir = qEnvironmentVariable("QUORVANE_SCREENSHOTS", QDir::currentPath() + "/screenshots");
    QDir().mkpath(dir);
    EXPECT_TRUE(image.save(dir + QLatin1Char('/') + QLatin1String(name) + QStringLiteral(".png")));
}

} // namespace quorvane::test
