#pragma once
// The practice desk's window: the scheduler as a Qt widget over the desk's
// store, a patient search, the day's printout as a PDF, the patient's photo in
// place of the calendar, and a recording of the session as a host script.

#include "desk_host.h"
#include "event_tee.h"
#include "session_recorder.h"

#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QLabel>
#include <QMainWindow>
#include <QPointer>

#include <chrono>
#include <fstream>
#include <optional>
#include <functional>
#include <memory>

class QAction;
class QMenu;
class QLineEdit;
class QTimer;

namespace practice {

// Who is at the desk.
struct Login {
    QString user, password;
};

// How a desk opens its practice: the user the command line names (a scripted
// run), and for an attended desk the question it asks when it needs someone:
// `why` says what went before; `firstAdministrator` asks for a new practice's
// first user. No answer leaves the practice closed.
struct Opening {
    OpenMode mode = OpenMode::Existing;
    Login login;
    std::function<std::optional<Login>(const QString& why, bool firstAdministrator)> ask;
};

// The dialog an attended desk asks with.
std::optional<Login> askForLogin(QWidget* parent, const QString& practice, const QString& why, bool firstAdministrator);

class DeskWindow : public QMainWindow {
public:
    // Opens the practice at `database` (a SQLite file or a postgresql:// URL);
    // StoreError when it cannot be opened, holds no practice (unless `mode` asks
    // for the demo practice) or is damaged. LoginRefused when nobody logs in
    // to a practice that has users.
    DeskWindow(const QString& database, quorvane::OleDate today, OpenMode mode = OpenMode::Existing,
               QWidget* parent = nullptr);
    DeskWindow(const QString& database, quorvane::OleDate today, const Opening& opening, QWidget* parent = nullptr);
    ~DeskWindow() override;

    // The control and what surrounds it; a restart makes them anew.
    quorvane::SchedulerWidget& scheduler() { return *s_->widget; }
    quorvane::ctlScheduler& control() { return s_->control; }
    quorvane::Platform& platform() { return s_->platform; }
    DeskHost& host() { return s_->host; }
    EventTee& events() { return s_->tee; }
    PracticeStore& store() { return store_; }

    // Brings a new control up from the store, as at start; a recording ends.
    void restart();
    // Records the session from a new control on: the script to `script` and
    // the transcript the console prints for it to `transcript`, each unless empty.
    // Returns false when a file cannot be written.
    bool startRecording(const QString& script, const QString& transcript = {});
    void stopRecording();
    bool recording() const { return recorder_ != nullptr; }

    // Where PrintDay writes its PDF (the user's documents folder unless set),
    // and the last one written.
    void setPrintFolder(const QString& folder) { printFolder_ = folder; }
    struct Printout {
        QString path, resource, resourceName, info;
        quorvane::OleDate day;
    };
    const Printout& lastPrintout() const { return lastPrintout_; }
    // Whether the desk asks the user with dialogs (a patient search, a print
    // preview, its messages) or runs unattended, as a scripted morning does.
    void setUnattended(bool on) { unattended_ = on; }
    // What an unattended patient search chooses.
    void setNextPatient(const QString& id) { nextPatient_ = id; }
    // An unattended desk answers Yes to a question, unless told otherwise here.
    void setNextAnswer(quorvane::MsgBoxResult answer) { nextAnswer_ = answer; }

    // After `idle` without a key or a click the desk hides the practice behind
    // its lock screen (zero: never). What the pane holds stays as it was.
    void setIdleLock(std::chrono::milliseconds idle);
    void lock();
    bool locked() const;
    // The history of a patient's visits, removed ones too where the user may
    // read the trail, each with its trail: what OpenPatientHistory opens.
    void showHistory(const QString& patientId);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // An unattended desk's message boxes: the words go to the status bar and a
    // question takes the next answer; an attended one asks the user. Either
    // way a recording hears the box and its answer.
    struct Answering final : quorvane::MessageBoxService {
        DeskWindow* desk = nullptr;
        quorvane::MessageBoxService* window = nullptr;
        quorvane::MsgBoxResult show(std::string_view text, quorvane::MsgBoxButtons buttons,
                                    std::string_view title) override;
    };
    // One control with its platform, the desk's answers and the widget.
    struct Session {
        explicit Session(PracticeStore& store) : host(control, store) {}
        quorvane::Platform platform;
        quorvane::ctlScheduler control{platform};
        DeskHost host;
        EventTee tee;
        QPointer<quorvane::SchedulerWidget> widget;
        Answering answering;
    };
    void build();
    void tearDown();
    void hear(Session& s);
    void buildMenus();
    QString searchPatient();
    void print(const QString& resource, const QString& info);
    void showPhoto(const QString& imageId);
    void showLegend(const std::vector<DeskHost::LegendRow>& rows);
    void tell(const QString& message);
    void guarded(const std::function<void()>& work);
    // The title and the status bar say which practice is open, and whether
    // its server is away.
    void showOffline(bool offline);
    void openStore(const QString& database, Opening opening);
    void buildLockScreen();
    // The Practice menu is an administrator's: it shows for one only.
    void buildPracticeMenu();
    void showRole();
    void addUserByDialog();
    void unlock();
    bool filtersInput(QObject* watched, QEvent* event);

    PracticeStore store_{"desk"};
    quorvane::OleDate today_;
    std::unique_ptr<Session> s_;
    QLabel* photo_ = nullptr;
    QLabel* offlineLabel_ = nullptr;
    QPointer<QWidget> legend_;
    static constexpr const char* kOffline = "Offline: the practice server is unreachable; retrying…";
    QSize controlSize_;
    QString printFolder_;
    Printout lastPrintout_;
    QString nextPatient_;
    quorvane::MsgBoxResult nextAnswer_ = quorvane::MsgBoxResult::Yes;
    bool unattended_ = false;
    std::ofstream scriptFile_, transcriptFile_;
    std::unique_ptr<SessionRecorder> recorder_;
    QAction* recordAction_ = nullptr;
    QTimer* idle_ = nullptr;
    QWidget* lockScreen_ = nullptr;
    QLineEdit* lockUser_ = nullptr;
    QLineEdit* lockPassword_ = nullptr;
    QLabel* lockMessage_ = nullptr;
    QPointer<QWidget> history_;
    QMenu* practiceMenu_ = nullptr;
    QAction* allowDoubleBookings_ = nullptr;
    QAction* addUser_ = nullptr;
};

// The day's printout: the resource's day in slots of its length over the
// business hours, each with the appointments that start in it. `info` is the
// control's ScheduleInfo, "yyyymmdd~minutes~HH~HH".
void paintPrintout(QPainter& painter, const QRectF& page, const QString& resourceName, const QString& info,
                   const std::vector<StoredAppointment>& appointments);

} // namespace practice
