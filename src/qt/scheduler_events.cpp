// What crosses between the control and its window: the 37 events become
// signals, message boxes become QMessageBoxes, a context menu becomes a QMenu
// built from the menu models, and the week form a modal dialog. The widget is
// the control's container, so it also hears the change reports, the errors a
// gesture left and the enabled state.

#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/errors.h>
#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include "qt/qt_dates.h"
#include "qt/week_dialog.h"
#include "qt/widget_views.h"

#include <QGuiApplication>
#include <QMetaMethod>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>

#include <array>

namespace quorvane {

namespace {

QString q(const std::string& s) { return QString::fromStdString(s); }

// A caption's "&" stands for itself, not for a shortcut.
QString menuText(const std::string& caption) {
    return q(caption).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

// Each event goes out by name first, then as its own signal (the event's name
// with a small first letter), so a log of the names keeps the order in which
// the host's slots see them. Each argument takes the type its signal declares:
// a text, a number, or a date (from the control's date, or from a text that
// holds one).
class SchedulerWidget::Events final : public ctlSchedulerEvents {
public:
    explicit Events(SchedulerWidget& w) : w_(w) {}

#define QUORVANE_EVENT_SIGNAL(Name, Params, Args, Table) \
    void Name Params override { forward(#Name, detail::asVariants(QUORVANE_UNWRAP Args)); }
    QUORVANE_EVENTS(QUORVANE_EVENT_SIGNAL)
#undef QUORVANE_EVENT_SIGNAL

private:
    static QVariant qtValue(const Variant& v, QMetaType type) {
        if (type.id() == QMetaType::QDate) {
            if (v.type() == VariantType::String) return qDateOfText(v.toString());
            try {
                return qDateOf(v.toDate());
            } catch (const RuntimeError&) {
                return QDate();
            }
        }
        if (type.id() == QMetaType::Int) return int{v.toInteger()};
        return q(v.toString());
    }
    void forward(const char* name, const std::vector<Variant>& args) {
        const QMetaMethod signal = eventSignal(QLatin1String(name));
        QVariantList values;
        for (int i = 0; i < signal.parameterCount() && i < static_cast<int>(args.size()); ++i)
            values << qtValue(args[static_cast<std::size_t>(i)], signal.parameterMetaType(i));
        Q_EMIT w_.eventRaised(QString::fromLatin1(name), values);
        std::array<QGenericArgument, 4> a{};
        for (qsizetype i = 0; i < values.size() && i < 4; ++i)
            a[static_cast<std::size_t>(i)] = QGenericArgument(values[i].typeName(), values[i].constData());
        signal.invoke(&w_, Qt::DirectConnection, a[0], a[1], a[2], a[3]);
        // What the host did in its slots shows when the gesture ends; outside
        // one, it shows when the event loop next runs.
        w_.scheduleRefresh();
    }
    SchedulerWidget& w_;
};

QMetaMethod SchedulerWidget::eventSignal(QLatin1String event) {
    const QByteArray name = QByteArray(event.data(), event.size()).left(1).toLower() + QByteArray(event.data() + 1, event.size() - 1);
    const QMetaObject& meta = staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod m = meta.method(i);
        if (m.methodType() == QMetaMethod::Signal && m.name() == name) return m;
    }
    return {};
}

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
            // Enter never answers Yes to a question such as a removal's.
            box.setDefaultButton(QMessageBox::No);
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
    widgetsOf(*control_).mnuRightClickScheduler.onPopup = nullptr;
    widgetsOf(*control_).mnuRightClickSchedulerApp.onPopup = nullptr;
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
    SchedulerWidgets& w = widgetsOf(*control_);
    for (PopupMenu* menu : {&w.mnuRightClickScheduler, &w.mnuRightClickSchedulerApp})
        menu->onPopup = [this](PopupMenu& m, float, float) { requestMenu(m); };
}

void SchedulerWidget::showWeekForm(Form& form) {
    WeekViewForm* week = widgetsOf(*control_).frmWeekView.get();
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
