#pragma once
// The control as a Qt widget. SchedulerWidget shows every widget model of a
// ctlScheduler as a Qt widget at the model's place, paints the day views, and
// turns the user's mouse and keys into the same model gestures the host console
// plays, so both raise the same events in the same order. No rule of the
// scheduler lives here: the widget draws the models and forwards gestures.
//
// A host drives the control through control(), as any host does, and hears its
// 37 events as the signals below, raised synchronously: a slot may call the
// control again, as AddApptWithPatient's answer with SetAppId does. After it
// changes the control from outside a signal (a load at start-up, a timer of its
// own), it calls refresh() so the Qt widgets show the models again.

// moc reads what a header includes and cannot parse the standard library's
// concepts, which the control's headers bring in; it needs none of their names.
#ifndef Q_MOC_RUN
#include <QuorvaneScheduler/ctl_scheduler.h>
#endif

#include <QuorvaneScheduler/qt/export.h>

#include <QDate>
#include <QMenu>
#include <QPointer>
#include <QString>
#include <QTime>
#include <QVariantList>
#include <QMetaMethod>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

class QCalendarWidget;
class QComboBox;
class QLabel;
class QScrollBar;

namespace quorvane {

class DayViewWidget;
class Form;
class PopupMenu;
struct WidgetBase;

// The control as a Qt widget; see the top of this header.
class QUORVANE_WIDGETS_EXPORT SchedulerWidget : public QWidget {
    Q_OBJECT

public:
    // Owns a new control on a platform of its own, whose twips per pixel are the
    // screen's.
    explicit SchedulerWidget(QWidget* parent = nullptr);
    // Shows a control the host made; the control and its platform must outlive
    // the widget. The widget becomes the control's container: it takes the
    // platform's message boxes, modal forms, change reports, error reports and
    // the control's event sink.
    explicit SchedulerWidget(ctlScheduler& control, QWidget* parent = nullptr);
    ~SchedulerWidget() override;

    ctlScheduler& control() { return *control_; }         // the control the widget shows
    Platform& platform() { return control_->platform(); } // and the platform it runs on

    // Reads every model again and shows it.
    void refresh();
    // The painted day view of a column, index 0 to 9.
    DayViewWidget* dayView(int index) const { return dayViews_[static_cast<std::size_t>(index)]; }
    // The day view under a point of the screen, or nullptr.
    DayViewWidget* dayViewAt(const QPoint& globalPos) const;
    // The context menu the control has opened and the user has not yet closed.
    QMenu* openMenu() const { return openMenu_; }

    // The default title of the control's message boxes.
    QString messageTitle() const { return messageTitle_; }
    void setMessageTitle(const QString& title) { messageTitle_ = title; }
    // Where the line of the current time is drawn on today's columns; the wall
    // clock unless a host or a test sets its own.
    void setTimeOfDaySource(std::function<QTime()> source);
    QTime timeOfDay() const;
    // Whether a resize of this widget calls ResizeControl with its new size (on
    // by default). A host that sizes the control itself turns it off.
    void setResizesControl(bool on) { resizesControl_ = on; }
    // Whether a character typed on a selected slot opens the slot editor, whose
    // text becomes an appointment that has no tag until the host names it (on by
    // default). A host that books only through its own path turns it off.
    void setSlotEditorEnabled(bool on) { slotEditor_ = on; }
    bool slotEditorEnabled() const { return slotEditor_; }
    // What an appointment's tool tip says: its text, its times on the grid's
    // 12-hour clock and its status, then what the host adds (its notes, say).
    QString appointmentToolTip(const AppointmentRef& app);
    void setToolTipNotes(std::function<QString(const Appointment&)> notes) { toolTipNotes_ = std::move(notes); }

    // Runs a user's gesture on the models: a failure a handler leaves goes to
    // the container (and untrappedError), never into Qt's event loop, and the
    // widgets show the models again when the outermost gesture ends.
    void runGesture(const std::function<void()>& gesture);
    // Runs what Qt called into the widgets for: any failure comes out as
    // untrappedError and goes no further.
    void guard(const std::function<void()>& work);
    // The signal that carries an event of the control, by the event's name; an
    // invalid method for a name that is no event.
    static QMetaMethod eventSignal(QLatin1String event);

Q_SIGNALS:
    // Every event, by its name, with its arguments as below; for logs and tests.
    void eventRaised(const QString& name, const QVariantList& args);
    // A property that reports its change to the container.
    void propertyChanged(const QString& name);
    // A run-time error that a handler of the control left untrapped during a gesture.
    void untrappedError(const QString& message);
    // A context menu of the control has opened; its object name is the menu's
    // and each action's the item's. A host may add entries of its own.
    void contextMenuOpened(QMenu* menu);

    // The 37 events of the control, in the order of its interface.
    void validatePatient(const QString& patientEID);
    void updateAppStatus(const QString& resourceEID, const QString& status);
    void saveAdditionalAppInfo(const QString& resourceEID);
    void printDay(const QString& resourceEID, const QString& scheduleInfo);
    void printResourceSuperbills(const QString& resourceEID, const QDate& scheduleDate);
    void addApptWithPatient(const QString& resourceNumber, const QString& resourceEID);
    void patientSearch();
    void appointmentSearch(const QString& resourceNumber);
    void addEditRecurrence(const QString& appInfo, const QString& resourceNumber);
    void onWeekLoad(const QString& scheduledEID, const QDate& currentDate);
    void openPatient(const QString& patientEID);
    void openPatientHistory(const QString& patientEID);
    void appointmentSelected(const QString& resourceNumber);
    void resourceBeforeRemove(const QString& resourceValue, const QString& resourceNumber);
    void resourceAfterResize(const QString& resourceValue, const QString& resourceNumber);
    void resourceAfterDrag(const QString& resourceValue, const QString& resourceNumber);
    void resourceOnClick(int resourceNumber, const QString& resourceValue, const QDate& resourceDate);
    void nextAvailable(const QString& resourceEID, const QString& resourceNumber);
    void refreshAllSchedules();
    void refreshAllDisplayAll();
    void refreshSchedule(const QString& resourceNumber);
    void refProviderSearch();
    void printSuperbill(const QString& appID, const QString& patientEID);
    void printDaysFacesheets(const QString& resourceEID, const QDate& scheduleDate);
    void printFaceSheet(const QString& appID, const QString& patientEID);
    void displayPhoto(const QString& serverUsed, const QString& serverPath, const QString& imageId,
                      const QString& saveLocation);
    void hidePhoto();
    void displayQuickScan(const QString& patientEID, int scanNumber);
    void quickComments(const QString& text, const QString& type);
    void displayTasking();
    void displayRecallSetup(const QString& patientEID);
    void displayRecallList();
    void displayLegend();
    void printTxPlan(const QString& appID, const QString& patientEID, const QDate& scheduleDate);
    void openQuickPay(const QString& appID, const QString& patientEID);
    void openAuthorization(const QString& appID, const QString& patientEID);
    void openOfficeCommunication(const QString& patientEID);

protected:
    // Qt's handlers: a resize sizes the control, a key reaches it first.
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Events;
    class MessageBoxes;
    struct FieldView;
    struct ListView;
    struct ButtonView;

    void build();
    void hookPlatform();
    void scheduleRefresh();
    void syncFields();
    void syncLists();
    void syncButtons();
    void syncCalendar();
    void syncScrollBar();
    void syncDateHeaders();
    void syncFocus();
    // Scrolls the columns, as the user's scroll, until a column stands
    // whole inside the window.
    void revealColumn(DayViewWidget& column);
    QRect pixelRect(const WidgetBase& w) const;
    QRect pixelRect(float left, float top, float width, float height) const;
    // A context menu the control asked for during a gesture; it opens when the gesture ends.
    void requestMenu(PopupMenu& menu);
    void showPendingMenu();
    void showWeekForm(Form& form);

    std::unique_ptr<Platform> ownPlatform_;
    std::unique_ptr<ctlScheduler> ownControl_;
    ctlScheduler* control_ = nullptr;
    std::unique_ptr<Events> events_;
    std::unique_ptr<MessageBoxes> boxes_;
    MessageBoxService* previousBoxes_ = nullptr; // given back when the window goes

    std::array<DayViewWidget*, kColumns> dayViews_{};
    // Each column's date, at the right of its resource list.
    std::array<QLabel*, kColumns> dateHeaders_{};
    std::array<QComboBox*, kColumns> resourceBoxes_{};
    std::vector<FieldView> fields_;
    std::vector<ListView> lists_;
    std::vector<ButtonView> buttons_;
    QCalendarWidget* calendar_ = nullptr;
    std::vector<QDate> boldDates_;
    QScrollBar* columnScroll_ = nullptr;

    QString messageTitle_ = QStringLiteral("QuorvaneScheduler");
    std::function<QTime()> timeOfDay_;
    bool slotEditor_ = true;
    std::function<QString(const Appointment&)> toolTipNotes_;
    bool resizesControl_ = true;
    int gestureDepth_ = 0;
    bool syncing_ = false;
    bool refreshPosted_ = false;
    std::string lastActive_;
    PopupMenu* pendingMenu_ = nullptr;
    // The user works the grid by keys: a host that ends its busy phase with
    // FocusControl names the pane, but the keyboard stays on the grid. A
    // press of the mouse or a field taking the focus ends it.
    bool keysOnGrid_ = false;
    QPoint pendingMenuPos_;
    QPointer<QMenu> openMenu_;

    // The day views read the sync flag and leave the point of their last press,
    // where a context menu of the press opens.
    friend class DayViewWidget;
    QPoint lastPressGlobal_;
};

} // namespace quorvane
