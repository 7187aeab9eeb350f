#include "desk_window.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QStatusBar>
#include <QVBoxLayout>

using namespace quorvane;

namespace practice {

namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

} // namespace

DeskWindow::DeskWindow(const QString& database, OleDate today, QWidget* parent) : QMainWindow(parent) {
    setWindowTitle("Practice Desk");
    platform_.clock.setToday(today);
    store_.open(database, today);

    // The widget becomes the control's container and takes its events; the tee
    // hands each to the desk first, then to the widget, which shows it.
    widget_ = new SchedulerWidget(control_, this);
    widget_->setMessageTitle("Practice Desk");
    tee_.sinks = {&host_, control_.eventSink()};
    control_.setEventSink(&tee_);
    setCentralWidget(widget_);
    statusBar()->showMessage("Ready");

    photo_ = new QLabel(widget_);
    photo_->setObjectName("patientPhoto");
    photo_->setAlignment(Qt::AlignCenter);
    photo_->setStyleSheet("background: #e8e0d0; border: 1px solid #a09080; font: bold 14px;");
    photo_->hide();

    host_.tell = [this](const QString& m) { tell(m); };
    host_.note = [this](const QString& m) { statusBar()->showMessage(m, 8000); };
    host_.choosePatient = [this] { return searchPatient(); };
    host_.printDay = [this](const QString& resource, const QString& info) { print(resource, info); };
    host_.showPhoto = [this](const QString& imageId) { showPhoto(imageId); };
    printFolder_ = QFileInfo(database).absolutePath();

    resize(1280, 860);
    const QSize size = widget_->size();
    host_.start(size.width(), size.height());
    widget_->refresh();
}

DeskWindow::~DeskWindow() {
    // The widget goes while the control it shows is whole, and takes nothing
    // of the tee with it.
    setUnattended(false);
    control_.setEventSink(nullptr);
    delete widget_.data();
}

void DeskWindow::setUnattended(bool on) {
    unattended_ = on;
    if (on && platform_.messageBoxes != &answering_) {
        answering_.desk = this;
        answering_.window = platform_.messageBoxes;
        platform_.messageBoxes = &answering_;
    } else if (!on && platform_.messageBoxes == &answering_) {
        platform_.messageBoxes = answering_.window;
    }
}

MsgBoxResult DeskWindow::Answering::show(std::string_view text, MsgBoxButtons buttons, std::string_view) {
    desk->statusBar()->showMessage(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                                   15000);
    return buttons == MsgBoxButtons::YesNo ? MsgBoxResult::Yes : MsgBoxResult::OK;
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
        for (const Patient& p : store_.findPatients(t)) {
            auto* item = new QListWidgetItem(p.name + "  (" + p.chartNumber + ")", list);
            item->setData(Qt::UserRole, p.id);
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
        if (qs(control_.ResourceValue(i)) == resource) name = qs(control_.widgets().cmbResource[i].text());
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

// The host shows the photo in place of the calendar; the desk has no pictures,
// so it shows the photo's number on a card of the calendar's size.
void DeskWindow::showPhoto(const QString& imageId) {
    if (imageId.isEmpty()) {
        photo_->hide();
        return;
    }
    const PVCalendar& calendar = *control_.widgets().calCalendar;
    const Screen& s = platform_.screen;
    photo_->setGeometry(qRound(calendar.left / s.twipsPerPixelX), qRound(calendar.top / s.twipsPerPixelY),
                        qRound(calendar.width / s.twipsPerPixelX),
                        qRound(calendar.height / s.twipsPerPixelY));
    photo_->setText("Photo " + imageId + "\n" + qs(control_.widgets().txtPatName.text));
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
