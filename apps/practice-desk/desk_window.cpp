#include <QuorvaneScheduler/control_internals.h>
#include "desk_window.h"

#include <QApplication>
#include <QLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QMenuBar>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QGridLayout>
#include <QPushButton>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

#include <QuorvaneScheduler/qt/day_view_widget.h>

using namespace quorvane;

namespace practice {

namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

} // namespace

DeskWindow::DeskWindow(const QString& database, OleDate today, OpenMode mode, QWidget* parent)
    : DeskWindow(database, today, Opening{mode, {}, {}}, parent) {}

DeskWindow::DeskWindow(const QString& database, OleDate today, const Opening& opening, QWidget* parent)
    : QMainWindow(parent), today_(today) {
    openStore(database, opening);
    printFolder_ = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (printFolder_.isEmpty()) printFolder_ = QDir::tempPath();
    offlineLabel_ = new QLabel(this);
    offlineLabel_->setObjectName("offlineState");
    offlineLabel_->setStyleSheet("color: #8b0000; font-weight: bold;");
    statusBar()->addPermanentWidget(offlineLabel_);
    showOffline(false);
    buildMenus();
    statusBar()->showMessage("Ready");
    resize(1280, 860);
    // A window half built is taken down whole: the widget goes while the
    // control it shows still stands.
    try {
        build();
    } catch (...) {
        tearDown();
        throw;
    }
    buildLockScreen();
    buildPracticeMenu();
}

void DeskWindow::showOffline(bool offline) {
    const QString practice = "Practice Desk — " + store_.displayName();
    offlineLabel_->setText(offline ? kOffline : QString());
    offlineLabel_->setVisible(offline);
    setWindowTitle(offline ? practice + " — " + kOffline : practice);
    if (offline) statusBar()->clearMessage();
    if (!offline && s_) statusBar()->showMessage("The practice server is back; the schedule is loaded again.", 8000);
}

DeskWindow::~DeskWindow() {
    qApp->removeEventFilter(this); // the idle lock's
    tearDown();
    recorder_.reset();
}

void DeskWindow::buildMenus() {
    QMenu* session = menuBar()->addMenu("&Session");
    session->addAction("&Start Afresh", this, [this] { guarded([this] { restart(); }); });
    recordAction_ = session->addAction("&Record to a Script...", this, [this] {
        guarded([this] {
            if (recording()) {
                stopRecording();
                return;
            }
            const QString file = QFileDialog::getSaveFileName(this, "Record the Session", "session.host",
                                                              "Host scripts (*.host)");
            if (!file.isEmpty() && !startRecording(file)) tell("The recording cannot be written to " + file + ".");
        });
    });
}

// The widget becomes the control's container and takes its events; the tee
// hands each to the desk first, then to the widget, which shows it.
void DeskWindow::build() {
    s_ = std::make_unique<Session>(store_);
    Session& s = *s_;
    s.platform.clock.setToday(today_);
    s.widget = new SchedulerWidget(s.control, this);
    s.widget->setMessageTitle("Practice Desk");
    // The desk sizes the control itself, as a call a recording hears.
    s.widget->setResizesControl(false);
    // A booking goes through the slot's menu, with the panel's patient; text
    // typed on a slot would be an appointment of nobody that nothing stores.
    s.widget->setSlotEditorEnabled(false);
    s.widget->setToolTipNotes([&host = s.host](const Appointment& app) { return host.notesOf(app); });
    s.widget->installEventFilter(this);
    s.tee.sinks = {&s.host, s.control.eventSink()};
    s.control.setEventSink(&s.tee);
    s.answering.desk = this;
    s.answering.window = s.platform.messageBoxes;
    s.platform.messageBoxes = &s.answering;
    hear(s);
    setCentralWidget(s.widget);

    photo_ = new QLabel(s.widget);
    photo_->setObjectName("patientPhoto");
    photo_->setAlignment(Qt::AlignCenter);
    photo_->setStyleSheet("background: #e8e0d0; border: 1px solid #a09080; font: bold 14px;");
    photo_->hide();

    DeskHost& host = s.host;
    host.tell = [this](const QString& m) { tell(m); };
    host.note = [this](const QString& m) { statusBar()->showMessage(m, 8000); };
    host.choosePatient = [this] { return searchPatient(); };
    host.printDay = [this](const QString& resource, const QString& info) { print(resource, info); };
    host.showPhoto = [this](const QString& imageId) { showPhoto(imageId); };
    host.showLegend = [this](const std::vector<DeskHost::LegendRow>& rows) { showLegend(rows); };
    host.session().onRefused = [this](std::string_view member, const RuntimeError& e) {
        statusBar()->showMessage("The schedule refused " + QString::fromUtf8(member.data(), member.size()) +
                                     ": " + QString::fromStdString(e.reason()),
                                 15000);
    };
    host.session().recorder = recorder_.get();
    host.changedOutside = [this] { s_->widget->refresh(); };
    host.offlineChanged = [this](bool offline) { showOffline(offline); };
    host.showHistory = [this](const QString& patient) { showHistory(patient); };
    host.mayProbe = [] { return !QApplication::activeModalWidget() && !QApplication::activePopupWidget(); };

    // A new control takes the size of the one before it; the first, the size
    // the window's layout gives it.
    if (controlSize_.isEmpty()) {
        if (layout()) layout()->activate();
        controlSize_ = s.widget->size();
    } else {
        s.widget->resize(controlSize_);
    }
    host.start(controlSize_.width(), controlSize_.height());
    s.widget->refresh();
    if (idle_ && idle_->interval() > 0) qApp->installEventFilter(this);
}

// What crosses between the control and the desk, for a recording. The widget's
// own hooks go on working behind each.
void DeskWindow::hear(Session& s) {
    Container& c = s.platform.container;
    c.onUserGesture = [this](const UserGesture& g) {
        if (recorder_) recorder_->gesture(g);
    };
    s.tee.before = [this](std::string_view name, const std::vector<Variant>& args) {
        if (recorder_) recorder_->eventRaised(name, args);
    };
    s.tee.after = [this] {
        if (recorder_) recorder_->eventDone();
    };
    c.onPropertyChanged = [this, shown = c.onPropertyChanged](std::string_view name) {
        if (recorder_) recorder_->changed(name);
        if (shown) shown(name);
    };
    c.onUntrappedError = [this, shown = c.onUntrappedError](const RuntimeError& e) {
        if (recorder_) recorder_->untrapped(e);
        if (shown) shown(e);
    };
    c.onShowModal = [this, shown = c.onShowModal](Form& form) {
        if (recorder_) recorder_->modal(form.name);
        if (shown) shown(form);
    };
    for (PopupMenu* menu : {&widgetsOf(s.control).mnuRightClickScheduler, &widgetsOf(s.control).mnuRightClickSchedulerApp})
        menu->onPopup = [this, shown = menu->onPopup](PopupMenu& m, float x, float y) {
            if (recorder_) recorder_->popup(m.name);
            if (shown) shown(m, x, y);
        };
}

void DeskWindow::tearDown() {
    if (!s_) return;
    // Nothing of the idle lock hears the widget while it dies.
    qApp->removeEventFilter(this);
    if (recorder_) recorder_->flush();
    s_->control.setEventSink(nullptr);
    s_->platform.messageBoxes = s_->answering.window;
    // The widget goes while the control it shows is whole, and unheard: what
    // it sends while it dies is no longer a SchedulerWidget's.
    s_->widget->removeEventFilter(this);
    delete s_->widget.data();
    photo_ = nullptr;
    s_.reset();
}

// A script plays on one control from its start, so a recording ends here.
void DeskWindow::restart() {
    if (s_ && s_->host.offline()) {
        tell("The practice server is away; the desk starts afresh once it is back.");
        return;
    }
    stopRecording();
    tearDown();
    build();
    statusBar()->showMessage(recording() ? "Recording the session" : "Ready");
}

bool DeskWindow::startRecording(const QString& script, const QString& transcript) {
    stopRecording();
    if (!script.isEmpty()) scriptFile_.open(script.toStdString(), std::ios::binary | std::ios::trunc);
    if (!transcript.isEmpty()) transcriptFile_.open(transcript.toStdString(), std::ios::binary | std::ios::trunc);
    if ((!script.isEmpty() && !scriptFile_) || (!transcript.isEmpty() && !transcriptFile_)) {
        scriptFile_.close();
        transcriptFile_.close();
        return false;
    }
    // A script replays from a new control, so the recording starts from one.
    tearDown();
    recorder_ = std::make_unique<SessionRecorder>(scriptFile_.is_open() ? &scriptFile_ : nullptr,
                                                  transcriptFile_.is_open() ? &transcriptFile_ : nullptr, today_,
                                                  Screen{});
    build();
    if (recordAction_) recordAction_->setText("Stop &Recording");
    statusBar()->showMessage("Recording the session" + (script.isEmpty() ? QString() : " to " + script));
    return true;
}

void DeskWindow::stopRecording() {
    if (!recorder_) return;
    recorder_->flush();
    if (s_) s_->host.session().recorder = nullptr;
    recorder_.reset();
    scriptFile_.close();
    transcriptFile_.close();
    if (recordAction_) recordAction_->setText("&Record to a Script...");
    statusBar()->showMessage("Recording stopped", 8000);
}

// What the desk does for a menu of its own or a dialog: a failure is told, and
// the window goes on.
void DeskWindow::guarded(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& e) {
        tell(QString::fromStdString(e.what()));
    }
}

bool DeskWindow::eventFilter(QObject* watched, QEvent* event) {
    if (filtersInput(watched, event)) return true;
    // The type first: the widget may be in the middle of its destruction, when
    // it is no SchedulerWidget any more.
    if (event->type() == QEvent::Resize && s_ && watched == s_->widget && s_->widget->size() != controlSize_) {
        controlSize_ = s_->widget->size();
        const auto clamp16 = [](int v) { return Variant(static_cast<std::int16_t>(std::clamp(v, 0, 32767))); };
        s_->host.session().call("ResizeControl", {clamp16(controlSize_.height()), clamp16(controlSize_.width())});
        s_->widget->refresh();
    }
    return QMainWindow::eventFilter(watched, event);
}

MsgBoxResult DeskWindow::Answering::show(std::string_view text, MsgBoxButtons buttons, std::string_view title) {
    MsgBoxResult answer;
    if (desk->unattended_) {
        desk->statusBar()->showMessage(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                                       15000);
        answer = buttons == MsgBoxButtons::OK ? MsgBoxResult::OK : std::exchange(desk->nextAnswer_, MsgBoxResult::Yes);
    } else {
        answer = window->show(text, buttons, title);
    }
    if (desk->recorder_) desk->recorder_->messageBox(text, buttons, title, answer);
    return answer;
}

void DeskWindow::tell(const QString& message) {
    statusBar()->showMessage(message, 15000);
    if (!unattended_) QMessageBox::warning(this, "Practice Desk", message);
}

QString DeskWindow::searchPatient() {
    if (unattended_) return std::exchange(nextPatient_, QString());
    QDialog dialog(this);
    dialog.setWindowTitle("Find a Patient");
    auto* layout = new QVBoxLayout(&dialog);
    auto* text = new QLineEdit(&dialog);
    text->setPlaceholderText("Name, chart number or id");
    auto* list = new QListWidget(&dialog);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    layout->addWidget(text);
    layout->addWidget(list);
    layout->addWidget(buttons);
    auto fill = [&](const QString& t) {
        list->clear();
        try {
            // A list a person can read: a practice holds tens of thousands.
            constexpr int kShown = 100;
            const std::vector<Patient> found = store_.findPatients(t, kShown + 1);
            for (std::size_t i = 0; i < found.size() && i < kShown; ++i) {
                auto* item = new QListWidgetItem(found[i].name + "  (" + found[i].chartNumber + ")", list);
                item->setData(Qt::UserRole, found[i].id);
            }
            if (found.size() > kShown) {
                auto* more = new QListWidgetItem("More patients match: type more of the name or chart number.", list);
                more->setFlags(Qt::NoItemFlags);
            }
        } catch (const std::exception& e) {
            statusBar()->showMessage(QString::fromStdString(e.what()), 15000);
        }
        list->setCurrentRow(0);
    };
    QObject::connect(text, &QLineEdit::textChanged, &dialog, fill);
    QObject::connect(list, &QListWidget::itemDoubleClicked, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    fill(QString());
    if (dialog.exec() != QDialog::Accepted || !list->currentItem()) return {};
    return list->currentItem()->data(Qt::UserRole).toString();
}

void DeskWindow::print(const QString& resource, const QString& info) {
    const QString date = info.section('~', 0, 0);
    const OleDate day = makeDate(date.left(4).toInt(), date.mid(4, 2).toInt(), date.mid(6, 2).toInt());
    QString name = resource;
    for (int i = 0; i < kColumns; ++i)
        if (qs(s_->control.ResourceValue(i)) == resource) name = qs(widgetsOf(s_->control).cmbResource[i].text());
    std::vector<StoredAppointment> appointments;
    try {
        appointments = store_.appointments(resource, day);
    } catch (const StoreError& e) {
        tell(QString::fromStdString(e.what()));
        return;
    }
    QDir().mkpath(printFolder_);
    lastPrintout_ = {QDir(printFolder_).filePath("schedule-" + resource + "-" + date + ".pdf"), resource,
                     name, info, day};
    {
        QPdfWriter pdf(lastPrintout_.path);
        pdf.setPageSize(QPageSize(QPageSize::A4));
        pdf.setResolution(150);
        pdf.setTitle("Schedule of " + name);
        QPainter painter(&pdf);
        paintPrintout(painter, QRectF(0, 0, pdf.width(), pdf.height()), name, info, appointments);
    }
    statusBar()->showMessage("The schedule is printed to " + lastPrintout_.path, 15000);
    if (unattended_) return;
    QPrinter printer;
    QPrintPreviewDialog preview(&printer, this);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, this, [&](QPrinter* p) {
        QPainter painter(p);
        paintPrintout(painter, p->pageRect(QPrinter::DevicePixel), name, info, appointments);
    });
    preview.exec();
}

// The key to the colours, in a small window of its own that stays open beside
// the schedule: a swatch and a name for each status and each kind of block.
void DeskWindow::showLegend(const std::vector<DeskHost::LegendRow>& rows) {
    delete legend_.data();
    auto* legend = new QWidget(this, Qt::Tool);
    legend->setObjectName("legend");
    legend->setAttribute(Qt::WA_DeleteOnClose);
    legend->setWindowTitle("Colour Key");
    auto* grid = new QGridLayout(legend);
    auto heading = [&](const QString& text, int row) {
        auto* label = new QLabel("<b>" + text + "</b>", legend);
        grid->addWidget(label, row, 0, 1, 2);
    };
    heading("Statuses", 0);
    int row = 1;
    bool blocks = false;
    for (const DeskHost::LegendRow& r : rows) {
        if (r.statusColour < 0 && !blocks) {
            heading("Blocks", row++);
            blocks = true;
        }
        const QColor colour = r.statusColour >= 0 ? qColorOf(r.statusColour) : QColor(r.blockColour);
        auto* swatch = new QLabel(legend);
        swatch->setFixedSize(36, 18);
        swatch->setStyleSheet("background: " + colour.name() + "; border: 1px solid #606060;");
        auto* name = new QLabel(r.name, legend);
        name->setObjectName("legendRow");
        name->setAccessibleName(r.name + ", " + colour.name());
        grid->addWidget(swatch, row, 0);
        grid->addWidget(name, row++, 1);
    }
    auto* close = new QPushButton("Close", legend);
    QObject::connect(close, &QPushButton::clicked, legend, &QWidget::close);
    grid->addWidget(close, row, 0, 1, 2, Qt::AlignRight);
    legend_ = legend;
    legend->show();
}

// The host shows the photo in place of the calendar; the desk has no pictures,
// so it shows the photo's number on a card of the calendar's size.
void DeskWindow::showPhoto(const QString& imageId) {
    if (imageId.isEmpty()) {
        photo_->hide();
        return;
    }
    const PVCalendar& calendar = *widgetsOf(s_->control).calCalendar;
    const Screen& s = s_->platform.screen;
    photo_->setGeometry(qRound(calendar.left / s.twipsPerPixelX), qRound(calendar.top / s.twipsPerPixelY),
                        qRound(calendar.width / s.twipsPerPixelX),
                        qRound(calendar.height / s.twipsPerPixelY));
    photo_->setText("Photo " + imageId + "\n" + qs(widgetsOf(s_->control).txtPatName.text));
    photo_->show();
    photo_->raise();
}

void paintPrintout(QPainter& painter, const QRectF& page, const QString& resourceName, const QString& info,
                   const std::vector<StoredAppointment>& appointments) {
    const QStringList f = info.split('~');
    const QString date = f.value(0);
    const QDate day(date.left(4).toInt(), date.mid(4, 2).toInt(), date.mid(6, 2).toInt());
    const int slot = std::max(5, f.value(1).toInt());
    const int begin = f.value(2).toInt(), end = f.value(3).toInt() == 0 ? 24 : f.value(3).toInt();

    painter.fillRect(page, Qt::white);
    const qreal margin = page.width() * 0.06;
    QRectF area = page.adjusted(margin, margin, -margin, -margin);
    QFont title("DejaVu Sans");
    title.setPixelSize(qRound(page.width() / 30));
    title.setBold(true);
    painter.setFont(title);
    painter.setPen(Qt::black);
    const qreal titleHeight = title.pixelSize() * 1.8;
    painter.drawText(QRectF(area.left(), area.top(), area.width(), titleHeight),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     resourceName + " — " + QLocale(QLocale::English).toString(day, "dddd, MMMM d, yyyy"));
    area.setTop(area.top() + titleHeight * 1.3);

    const int rows = std::max(1, (end - begin) * 60 / slot);
    const qreal rowHeight = std::min(area.height() / rows, page.height() / 40.0);
    QFont text("DejaVu Sans");
    text.setPixelSize(qRound(rowHeight * 0.55));
    painter.setFont(text);
    const qreal timeWidth = area.width() * 0.14, statusWidth = area.width() * 0.18;
    for (int r = 0; r < rows; ++r) {
        const int minute = begin * 60 + r * slot;
        const QRectF row(area.left(), area.top() + r * rowHeight, area.width(), rowHeight);
        if (r % 2) painter.fillRect(row, QColor(245, 245, 245));
        painter.setPen(QColor(200, 200, 200));
        painter.drawLine(row.bottomLeft(), row.bottomRight());
        painter.setPen(Qt::black);
        painter.drawText(
            row.adjusted(4, 0, 0, 0).intersected(QRectF(row.left(), row.top(), timeWidth, rowHeight)),
            Qt::AlignVCenter, QTime(minute / 60, minute % 60).toString("h:mm AP"));
        QStringList names, statuses;
        for (const StoredAppointment& a : appointments) {
            const int start = minuteOfDay(a.start);
            if (start >= minute && start < minute + slot) {
                names << a.description + " (" + QString::number(minutesBetween(a.start, a.end)) + " min)";
                statuses << a.status;
            }
        }
        painter.drawText(
            QRectF(row.left() + timeWidth, row.top(), row.width() - timeWidth - statusWidth, rowHeight),
            Qt::AlignVCenter, names.join(", "));
        painter.drawText(QRectF(row.right() - statusWidth, row.top(), statusWidth, rowHeight),
                         Qt::AlignVCenter, statuses.join(", "));
    }
}

} // namespace practice
