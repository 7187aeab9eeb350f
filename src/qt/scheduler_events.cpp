// What crosses between the control and its window: the 37 events become
// signals, message boxes become QMessageBoxes, a context menu becomes a QMenu
// built from the menu models, and the week form a modal dialog. The widget is
// the control's container, so it also hears the change reports, the errors a
// gesture left and the enabled state.

#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include "qt/qt_dates.h"
#include "qt/week_dialog.h"
#include "qt/widget_views.h"

#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>

namespace quorvane {

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }

// A caption's "&" stands for itself, not for a shortcut.
QString menuText(const std::string& caption) {
    return q(caption).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

// Each event goes out by name first, then as its own signal, so a log of the
// names keeps the order in which the host's slots see them.
class SchedulerWidget::Events final : public ctlSchedulerEvents {
public:
    explicit Events(SchedulerWidget& w) : w_(w) {}

    void ValidatePatient(Str a) override {
        named("ValidatePatient", {q(a)}), Q_EMIT w_.validatePatient(q(a));
    }
    void UpdateAppStatus(Str a, Variant& status) override {
        const QString s = q(status.toString());
        named("UpdateAppStatus", {q(a), s}), Q_EMIT w_.updateAppStatus(q(a), s);
    }
    void SaveAdditionalAppInfo(Str a) override {
        named("SaveAdditionalAppInfo", {q(a)}), Q_EMIT w_.saveAdditionalAppInfo(q(a));
    }
    void PrintDay(Str a, Str b) override { named("PrintDay", {q(a), q(b)}), Q_EMIT w_.printDay(q(a), q(b)); }
    void PrintResourceSuperbills(Str a, Str b) override {
        named("PrintResourceSuperbills", {q(a), qDateOfText(b)}),
            Q_EMIT w_.printResourceSuperbills(q(a), qDateOfText(b));
    }
    void AddApptWithPatient(Str a, Str b) override {
        named("AddApptWithPatient", {q(a), q(b)}), Q_EMIT w_.addApptWithPatient(q(a), q(b));
    }
    void PatientSearch() override { named("PatientSearch", {}), Q_EMIT w_.patientSearch(); }
    void AppointmentSearch(Str a) override {
        named("AppointmentSearch", {q(a)}), Q_EMIT w_.appointmentSearch(q(a));
    }
    void AddEditRecurrence(Str a, Str b) override {
        named("AddEditRecurrence", {q(a), q(b)}), Q_EMIT w_.addEditRecurrence(q(a), q(b));
    }
    void OnWeekLoad(Str a, OleDate d) override {
        named("OnWeekLoad", {q(a), qDateOf(d)}), Q_EMIT w_.onWeekLoad(q(a), qDateOf(d));
    }
    void OpenPatient(Str a) override { named("OpenPatient", {q(a)}), Q_EMIT w_.openPatient(q(a)); }
    void OpenPatientHistory(Str a) override {
        named("OpenPatientHistory", {q(a)}), Q_EMIT w_.openPatientHistory(q(a));
    }
    void AppointmentSelected(Str a) override {
        named("AppointmentSelected", {q(a)}), Q_EMIT w_.appointmentSelected(q(a));
    }
    void ResourceBeforeRemove(Str a, Str b) override {
        named("ResourceBeforeRemove", {q(a), q(b)}), Q_EMIT w_.resourceBeforeRemove(q(a), q(b));
    }
    void ResourceAfterResize(Str a, Str b) override {
        named("ResourceAfterResize", {q(a), q(b)}), Q_EMIT w_.resourceAfterResize(q(a), q(b));
    }
    void ResourceAfterDrag(Str a, Str b) override {
        named("ResourceAfterDrag", {q(a), q(b)}), Q_EMIT w_.resourceAfterDrag(q(a), q(b));
    }
    void ResourceOnClick(std::int16_t n, Str a, const Variant& d) override {
        QDate date;
        try {
            date = qDateOf(d.toDate());
        } catch (const RuntimeError&) {
        }
        named("ResourceOnClick", {int{n}, q(a), date}), Q_EMIT w_.resourceOnClick(n, q(a), date);
    }
    void NextAvailable(Str a, Str b) override {
        named("NextAvailable", {q(a), q(b)}), Q_EMIT w_.nextAvailable(q(a), q(b));
    }
    void RefreshAllSchedules() override { named("RefreshAllSchedules", {}), Q_EMIT w_.refreshAllSchedules(); }
    void RefreshAllDisplayAll() override {
        named("RefreshAllDisplayAll", {}), Q_EMIT w_.refreshAllDisplayAll();
    }
    void RefreshSchedule(Str a) override {
        named("RefreshSchedule", {q(a)}), Q_EMIT w_.refreshSchedule(q(a));
    }
    void RefProviderSearch() override { named("RefProviderSearch", {}), Q_EMIT w_.refProviderSearch(); }
    void PrintSuperbill(Str a, Str b) override {
        named("PrintSuperbill", {q(a), q(b)}), Q_EMIT w_.printSuperbill(q(a), q(b));
    }
    void PrintDaysFacesheets(Str a, Str b) override {
        named("PrintDaysFacesheets", {q(a), qDateOfText(b)}),
            Q_EMIT w_.printDaysFacesheets(q(a), qDateOfText(b));
    }
    void PrintFaceSheet(Str a, Str b) override {
        named("PrintFaceSheet", {q(a), q(b)}), Q_EMIT w_.printFaceSheet(q(a), q(b));
    }
    void DisplayPhoto(Str a, Str b, Str c, Str d) override {
        named("DisplayPhoto", {q(a), q(b), q(c), q(d)}), Q_EMIT w_.displayPhoto(q(a), q(b), q(c), q(d));
    }
    void HidePhoto() override { named("HidePhoto", {}), Q_EMIT w_.hidePhoto(); }
    void DisplayQuickScan(Str a, std::int16_t n) override {
        named("DisplayQuickScan", {q(a), int{n}}), Q_EMIT w_.displayQuickScan(q(a), n);
    }
    void QuickComments(Str a, Str b) override {
        named("QuickComments", {q(a), q(b)}), Q_EMIT w_.quickComments(q(a), q(b));
    }
    void DisplayTasking() override { named("DisplayTasking", {}), Q_EMIT w_.displayTasking(); }
    void DisplayRecallSetup(Str a) override {
        named("DisplayRecallSetup", {q(a)}), Q_EMIT w_.displayRecallSetup(q(a));
    }
    void DisplayRecallList() override { named("DisplayRecallList", {}), Q_EMIT w_.displayRecallList(); }
    void DisplayLegend() override { named("DisplayLegend", {}), Q_EMIT w_.displayLegend(); }
    void PrintTxPlan(Str a, Str b, Str c) override {
        named("PrintTxPlan", {q(a), q(b), qDateOfText(c)}), Q_EMIT w_.printTxPlan(q(a), q(b), qDateOfText(c));
    }
    void OpenQuickPay(Str a, Str b) override {
        named("OpenQuickPay", {q(a), q(b)}), Q_EMIT w_.openQuickPay(q(a), q(b));
    }
    void OpenAuthorization(Str a, Str b) override {
        named("OpenAuthorization", {q(a), q(b)}), Q_EMIT w_.openAuthorization(q(a), q(b));
    }
    void OpenOfficeCommunication(Str a) override {
        named("OpenOfficeCommunication", {q(a)}), Q_EMIT w_.openOfficeCommunication(q(a));
    }

private:
    void named(const char* name, const QVariantList& args) {
        Q_EMIT w_.eventRaised(QString::fromLatin1(name), args);
        // What the host did in its slots shows when the gesture ends; outside
        // one, it shows when the event loop next runs.
        w_.scheduleRefresh();
    }
    SchedulerWidget& w_;
};

// Modal, over the window: the control's call returns with the user's answer.
class SchedulerWidget::MessageBoxes final : public MessageBoxService {
public:
    explicit MessageBoxes(SchedulerWidget& w) : w_(w) {}
    MsgBoxResult show(std::string_view text, MsgBoxButtons buttons, std::string_view title) override {
        QMessageBox box(w_.window());
        box.setObjectName(QStringLiteral("controlMessageBox"));
        box.setWindowTitle(title.empty() ? w_.messageTitle() : QString::fromUtf8(title.data(), title.size()));
        box.setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
        if (buttons == MsgBoxButtons::YesNo) {
            box.setIcon(QMessageBox::Question);
            box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
            box.setDefaultButton(QMessageBox::Yes);
            return box.exec() == QMessageBox::Yes ? MsgBoxResult::Yes : MsgBoxResult::No;
        }
        box.setIcon(QMessageBox::Information);
        box.setStandardButtons(QMessageBox::Ok);
        box.exec();
        return MsgBoxResult::OK;
    }

private:
    SchedulerWidget& w_;
};

SchedulerWidget::SchedulerWidget(QWidget* parent)
    : QWidget(parent), ownPlatform_(std::make_unique<Platform>()) {
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        ownPlatform_->screen.twipsPerPixelX = static_cast<float>(1440.0 / screen->logicalDotsPerInchX());
        ownPlatform_->screen.twipsPerPixelY = static_cast<float>(1440.0 / screen->logicalDotsPerInchY());
    }
    ownControl_ = std::make_unique<ctlScheduler>(*ownPlatform_);
    control_ = ownControl_.get();
    build();
}

SchedulerWidget::SchedulerWidget(ctlScheduler& control, QWidget* parent)
    : QWidget(parent), control_(&control) {
    build();
}

SchedulerWidget::~SchedulerWidget() {
    // The Qt widgets go first, while the models and the hooks they call are
    // still whole; then the control, which may outlive the window, is unhooked.
    qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
    Platform& p = platform();
    p.container.onPropertyChanged = nullptr;
    p.container.onShowModal = nullptr;
    p.container.onUntrappedError = nullptr;
    p.container.onEnabledChanged = nullptr;
    if (p.messageBoxes == boxes_.get()) p.messageBoxes = previousBoxes_;
    control_->widgets().mnuRightClickScheduler.onPopup = nullptr;
    control_->widgets().mnuRightClickSchedulerApp.onPopup = nullptr;
    if (control_->eventSink() == events_.get()) control_->setEventSink(nullptr);
}

void SchedulerWidget::hookPlatform() {
    Platform& p = platform();
    events_ = std::make_unique<Events>(*this);
    boxes_ = std::make_unique<MessageBoxes>(*this);
    control_->setEventSink(events_.get());
    previousBoxes_ = p.messageBoxes;
    p.messageBoxes = boxes_.get();
    p.container.onPropertyChanged = [this](std::string_view name) {
        Q_EMIT propertyChanged(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
        scheduleRefresh();
    };
    p.container.onUntrappedError = [this](const RuntimeError& e) {
        Q_EMIT untrappedError(QString::fromUtf8(e.what()));
    };
    // Inside a gesture the end of the gesture shows the state; outside one, at once.
    p.container.onEnabledChanged = [this](bool on) {
        if (gestureDepth_ > 0) return;
        setEnabled(on);
        scheduleRefresh();
    };
    p.container.onShowModal = [this](Form& form) { showWeekForm(form); };
    SchedulerWidgets& w = control_->widgets();
    for (PopupMenu* menu : {&w.mnuRightClickScheduler, &w.mnuRightClickSchedulerApp})
        menu->onPopup = [this](PopupMenu& m, float, float) { requestMenu(m); };
}

void SchedulerWidget::showWeekForm(Form& form) {
    WeekViewForm* week = control_->widgets().frmWeekView.get();
    if (week && &form == week) runWeekDialog(*this, *week);
}

void SchedulerWidget::requestMenu(PopupMenu& menu) {
    pendingMenu_ = &menu;
    pendingMenuPos_ = lastPressGlobal_;
    if (gestureDepth_ == 0) showPendingMenu();
}

namespace {

void addItems(QMenu& menu, const std::vector<MenuItem*>& items, SchedulerWidget& owner) {
    for (MenuItem* item : items) {
        if (!item->visible) continue;
        if (item->isSeparator()) {
            menu.addSeparator()->setObjectName(q(item->name));
            continue;
        }
        if (!item->children.empty()) {
            QMenu* sub = menu.addMenu(menuText(item->caption));
            sub->setObjectName(q(item->name));
            sub->menuAction()->setObjectName(q(item->name));
            sub->setEnabled(item->enabled);
            addItems(*sub, item->children, owner);
            continue;
        }
        QAction* action = menu.addAction(menuText(item->caption));
        action->setObjectName(q(item->name));
        action->setEnabled(item->enabled);
        action->setCheckable(item->checked);
        action->setChecked(item->checked);
        QObject::connect(action, &QAction::triggered, &owner, [&owner, item] {
            owner.runGesture([&] {
                if (owner.control().UserControlEnabled() && item->enabled) item->userPick();
            });
        });
    }
}

} // namespace

// Opened once the gesture that asked for it has ended, so that the command the
// user picks runs as a gesture of its own, as with the console's "user menu".
void SchedulerWidget::showPendingMenu() {
    PopupMenu* menu = pendingMenu_;
    pendingMenu_ = nullptr;
    if (!menu) return;
    if (openMenu_) openMenu_->close();
    auto* qmenu = new QMenu(this);
    qmenu->setObjectName(q(menu->name));
    qmenu->setAttribute(Qt::WA_DeleteOnClose);
    addItems(*qmenu, menu->items, *this);
    openMenu_ = qmenu;
    qmenu->popup(pendingMenuPos_);
    Q_EMIT contextMenuOpened(qmenu);
}

} // namespace quorvane
