#pragma once
// The practice desk's window: the scheduler as a Qt widget over the desk's
// store, a patient search, the day's printout as a PDF, and the patient's
// photo in place of the calendar.

#include "desk_host.h"
#include "event_tee.h"

#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QLabel>
#include <QMainWindow>
#include <QPointer>

namespace practice {

class DeskWindow : public QMainWindow {
public:
    // Opens the practice at `database` (a SQLite file or a postgresql:// URL);
    // StoreError when it cannot be opened.
    DeskWindow(const QString& database, quorvane::OleDate today, QWidget* parent = nullptr);
    ~DeskWindow() override;

    quorvane::SchedulerWidget& scheduler() { return *widget_; }
    quorvane::ctlScheduler& control() { return control_; }
    quorvane::Platform& platform() { return platform_; }
    DeskHost& host() { return host_; }
    PracticeStore& store() { return store_; }
    EventTee& events() { return tee_; }

    // Where PrintDay writes its PDF, and the last one written.
    void setPrintFolder(const QString& folder) { printFolder_ = folder; }
    struct Printout {
        QString path, resource, resourceName, info;
        quorvane::OleDate day;
    };
    const Printout& lastPrintout() const { return lastPrintout_; }
    // Whether the desk asks the user with dialogs (a patient search, a print
    // preview, its messages) or runs unattended, as a scripted morning does.
    void setUnattended(bool on);
    // What an unattended patient search chooses.
    void setNextPatient(const QString& id) { nextPatient_ = id; }

private:
    QString searchPatient();
    void print(const QString& resource, const QString& info);
    void showPhoto(const QString& imageId);
    void tell(const QString& message);

    quorvane::Platform platform_;
    quorvane::ctlScheduler control_{platform_};
    PracticeStore store_{"desk"};
    DeskHost host_{control_, store_};
    EventTee tee_;
    QPointer<quorvane::SchedulerWidget> widget_;
    QLabel* photo_ = nullptr;
    QString printFolder_;
    Printout lastPrintout_;
    QString nextPatient_;
    bool unattended_ = false;
    // An unattended desk's message boxes: the words go to the status bar, and a
    // question is answered Yes.
    struct Answering final : quorvane::MessageBoxService {
        DeskWindow* desk = nullptr;
        quorvane::MessageBoxService* window = nullptr;
        quorvane::MsgBoxResult show(std::string_view text, quorvane::MsgBoxButtons buttons,
                                    std::string_view title) override;
    } answering_;
};

// The day's printout: the resource's day in slots of its length over the
// business hours, each with the appointments that start in it. `info` is the
// control's ScheduleInfo, "yyyymmdd~minutes~HH~HH".
void paintPrintout(QPainter& painter, const QRectF& page, const QString& resourceName, const QString& info,
                   const std::vector<StoredAppointment>& appointments);

} // namespace practice
