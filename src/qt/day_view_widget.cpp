// The mouse and the keys on a painted day view. Each finished gesture is one
// call of the model's gesture functions, the ones the host console plays; what
// this file decides is only which gesture the pointer made (a press, a drag
// past the start distance, a pull on the bottom edge), and what to show while
// it runs.

#include <QuorvaneScheduler/qt/day_view_widget.h>
#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <cmath>

namespace quorvane {

namespace {

constexpr int kWheelRows = 3;       // rows a notch of the wheel moves the grid
constexpr int kScrollBarWidth = 14; // in the widget's pixels

// The slot editor: Return keeps what was typed, Escape drops it.
class SlotEditor : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) {
            deleteLater();
            return;
        }
        QLineEdit::keyPressEvent(event);
        // Return ends the editing here; it is no key for the grid behind.
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) event->accept();
    }
};

} // namespace

DayViewWidget::DayViewWidget(SchedulerWidget& owner, DayViewRef view, QWidget* parent)
    : QWidget(parent), owner_(owner), view_(std::move(view)) {
    setObjectName(QString::fromStdString(view_->focusName()));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(false);
    setAttribute(Qt::WA_OpaquePaintEvent);
    scroll_ = new QScrollBar(Qt::Vertical, this);
    scroll_->setObjectName(QStringLiteral("topIndexScroll"));
    scroll_->setFocusPolicy(Qt::NoFocus);
    connect(scroll_, &QScrollBar::valueChanged, this, [this](int row) {
        if (!owner_.syncing_) scrollRows(row - view_->topRow());
    });
}

DayViewWidget::~DayViewWidget() { forgetParts(); }

void DayViewWidget::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    announced_.reset();
    announceFocus();
    update();
}

void DayViewWidget::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

double DayViewWidget::scaleX() const { return 15.0 / owner_.platform().screen.twipsPerPixelX; }
double DayViewWidget::scaleY() const { return 15.0 / owner_.platform().screen.twipsPerPixelY; }

QPoint DayViewWidget::toView(const QPointF& p) const {
    return QPoint(static_cast<int>(std::floor(p.x() / scaleX())),
                  static_cast<int>(std::floor(p.y() / scaleY())));
}

QPoint DayViewWidget::fromView(QPoint v) const {
    return QPoint(static_cast<int>(std::lround(v.x() * scaleX())),
                  static_cast<int>(std::lround(v.y() * scaleY())));
}

void DayViewWidget::setPreview(std::optional<DayViewDecor::Preview> preview) {
    preview_ = std::move(preview);
    update();
}

void DayViewWidget::syncScrollBar() {
    const QSignalBlocker block(scroll_);
    scroll_->setRange(0, std::max(view_->lastTopRow(), view_->topRow()));
    scroll_->setPageStep(std::max(view_->visibleRows(), 1));
    scroll_->setValue(view_->topRow());
}

void DayViewWidget::resizeEvent(QResizeEvent*) {
    scroll_->setGeometry(width() - kScrollBarWidth, 0, kScrollBarWidth, height());
}

void DayViewWidget::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.scale(scaleX(), scaleY());
    DayViewDecor decor;
    decor.preview = preview_;
    if (view_->CurrentDate() == owner_.platform().clock.today()) {
        const QTime now = owner_.timeOfDay();
        decor.nowMinute = now.hour() * 60 + now.minute();
    }
    if (hasFocus()) {
        const Part focus = focusedPart();
        if (focus.first == 0)
            decor.focusSlot = focus.second;
        else
            decor.focusAppointment = focus.second;
        decor.coveredRight = static_cast<int>(std::ceil(kScrollBarWidth / scaleX()));
    }
    decor.struckOut = [this](const Appointment& app) {
        const AppointmentRef ref = view_->appointmentSet().Item(app.Key());
        const std::string status = ref ? owner_.control().GetStatus(ref) : std::string();
        return status == "Cancelled" || status == "No-Show";
    };
    paintDayView(p, *view_, decor);
}

void DayViewWidget::mousePressEvent(QMouseEvent* event) {
    owner_.keysOnGrid_ = false;
    if (editor_) commitEditor();
    const QPoint v = toView(event->position());
    owner_.lastPressGlobal_ = event->globalPosition().toPoint();
    mode_ = Mode::None;
    if (event->button() == Qt::RightButton) {
        // What the menu acts on is what the user pointed at: a slot or an
        // appointment not yet selected is selected first, as a click would.
        const AppointmentRef hit = view_->appointmentSet().HitTest(v.x(), v.y());
        const std::optional<OleDate> slot = view_->slotAtPixel(v.y());
        const bool selected = hit ? hit->Selected() : slot && view_->TimeSlotSelected(*slot);
        owner_.runGesture([&] {
            if (!selected) view_->userPressAt(v.x(), v.y());
            view_->userPressAt(v.x(), v.y(), true);
        });
        return;
    }
    if (event->button() != Qt::LeftButton) return;
    // What lies under the pointer is read before the press: its handlers may
    // change the set, and the drag or resize then holds the appointment by key.
    const AppointmentRef edge = view_->resizeEdgeAt(v.x(), v.y());
    const AppointmentRef hit = view_->appointmentSet().HitTest(v.x(), v.y());
    const std::optional<int> grab = hit ? view_->grabMinutes(hit->Key(), v.y()) : std::nullopt;
    owner_.runGesture([&] { view_->userPressAt(v.x(), v.y()); });
    if (edge && edge->view() == view_.get()) {
        mode_ = Mode::Resizing;
        key_ = edge->Key();
        resizeEnd_ = edge->EndDateTime;
    } else if (hit && grab && hit->view() == view_.get()) {
        mode_ = Mode::Pressed;
        key_ = hit->Key();
        grab_ = *grab;
        pressPos_ = event->position().toPoint();
    }
}

void DayViewWidget::mouseMoveEvent(QMouseEvent* event) {
    if (mode_ == Mode::Pressed &&
        (event->position().toPoint() - pressPos_).manhattanLength() >= QApplication::startDragDistance())
        mode_ = Mode::Dragging;
    if (mode_ == Mode::Dragging) dragTo(event->position());
    if (mode_ == Mode::Resizing) {
        const AppointmentRef app = view_->appointmentSet().Item(key_);
        std::optional<OleDate> end;
        try {
            if (app) end = view_->resizeEndAt(key_, toView(event->position()).y());
        } catch (const RuntimeError&) {
        }
        if (!end) {
            setPreview(std::nullopt);
            return;
        }
        resizeEnd_ = *end;
        setPreview(DayViewDecor::Preview{app->StartDateTime, *end, QString::fromStdString(app->Text),
                                         qColorOf(app->BackColor)});
    }
}

// A drop the view cannot place (a day past the last date there is, say) shows
// no preview rather than failing.
void DayViewWidget::dragTo(const QPointF& pos) {
    try {
        previewDrop(pos);
    } catch (const RuntimeError&) {
        if (dropTarget_) dropTarget_->setPreview(std::nullopt);
        dropStart_.reset();
    }
}

void DayViewWidget::previewDrop(const QPointF& pos) {
    const AppointmentRef app = view_->appointmentSet().Item(key_);
    const QPoint global = mapToGlobal(pos.toPoint());
    DayViewWidget* target = app ? owner_.dayViewAt(global) : nullptr;
    if (dropTarget_ && dropTarget_ != target) dropTarget_->setPreview(std::nullopt);
    dropTarget_ = target;
    dropStart_.reset();
    if (!target) return;
    const QPoint tv = target->toView(target->mapFromGlobal(QPointF(global)));
    dropStart_ = target->view().dropStartAt(tv.y(), grab_);
    if (!dropStart_) return;
    const OleDate end = addMinutes(*dropStart_, minutesBetween(app->StartDateTime, app->EndDateTime));
    target->setPreview(
        DayViewDecor::Preview{*dropStart_, end, QString::fromStdString(app->Text), qColorOf(app->BackColor)});
}

void DayViewWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    finishGesture();
}

void DayViewWidget::finishGesture() {
    const Mode mode = mode_;
    mode_ = Mode::None;
    if (mode == Mode::Dragging) {
        QPointer<DayViewWidget> target = dropTarget_;
        dropTarget_ = nullptr;
        if (target) target->setPreview(std::nullopt);
        const AppointmentRef app = view_->appointmentSet().Item(key_);
        if (!target || !dropStart_ || !app) return;
        // Dropped where it stood: no move.
        if (target == this && *dropStart_ == app->StartDateTime) return;
        const OleDate start = *dropStart_;
        owner_.runGesture([&] { view_->userDrag(key_, target->view(), start); });
    } else if (mode == Mode::Resizing) {
        setPreview(std::nullopt);
        const AppointmentRef app = view_->appointmentSet().Item(key_);
        if (!app || resizeEnd_ == app->EndDateTime) return;
        const OleDate end = resizeEnd_;
        owner_.runGesture([&] { view_->userResize(key_, end); });
    }
}

void DayViewWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const QPoint v = toView(event->position());
    owner_.lastPressGlobal_ = event->globalPosition().toPoint();
    mode_ = Mode::None;
    owner_.runGesture([&] { view_->userDblClickAt(v.x(), v.y()); });
}

void DayViewWidget::wheelEvent(QWheelEvent* event) {
    const int notches = event->angleDelta().y() / 120;
    if (notches != 0) scrollRows(-notches * kWheelRows);
    event->accept();
}

void DayViewWidget::scrollRows(int rows) {
    const std::optional<OleDate> top = view_->topAfterScroll(rows);
    if (top)
        owner_.runGesture([&] { view_->userScroll(*top); });
    else
        syncScrollBar();
}

void DayViewWidget::keyPressEvent(QKeyEvent* event) {
    // Keys that reach the view while its slot editor is open belong to the editor.
    if (editor_) {
        QApplication::sendEvent(editor_, event);
        return;
    }
    if (keyboard(event)) return;
    if (event->key() == Qt::Key_Delete) {
        if (const AppointmentRef app = view_->appointmentSet().GetSelectedAppointment()) {
            const std::int32_t key = app->Key();
            owner_.runGesture([&] { view_->userDelete(key); });
        }
        return;
    }
    const QString typed = event->text();
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    // A column that shows no resource has nothing to type into: what the view
    // added there could never reach the host.
    const bool showsResource =
        view_->ViewMode != 0 && !view_->weekDay && !owner_.control().ResourceValue(view_->Index()).empty();
    if (plain && !typed.isEmpty() && typed.at(0).isPrint() && owner_.slotEditorEnabled() && showsResource) {
        const std::optional<OleDate> slot = view_->selectedSlot();
        if (slot && view_->pointOfTime(*slot)) {
            openEditor(typed, *slot);
            return;
        }
    }
    QWidget::keyPressEvent(event);
}

// The editor covers the slot's row beside the ruler; what it holds becomes the
// appointment's text when the user keeps it.
void DayViewWidget::openEditor(const QString& typed, OleDate slot) {
    auto* editor = new SlotEditor(this);
    editor->setObjectName(QStringLiteral("slotEditor"));
    editor->setText(typed);
    const int y = view_->pixelOfMinute(minuteOfDay(slot));
    const auto [left, right] = view_->appointmentColumns();
    const QPoint topLeft = fromView({left, y});
    const QPoint bottomRight = fromView({right, y + PVDayView::kRowPixels});
    editor->setGeometry(QRect(topLeft, bottomRight).adjusted(0, 0, -1, -1));
    connect(editor, &QLineEdit::returnPressed, this, [this] { commitEditor(); });
    editor_ = editor;
    editorSlot_ = slot;
    editor->show();
    editor->setFocus();
}

void DayViewWidget::commitEditor() {
    if (!editor_) return;
    const std::string text = editor_->text().toStdString();
    editor_->deleteLater();
    editor_ = nullptr;
    setFocus();
    const OleDate slot = editorSlot_;
    owner_.runGesture([&] { view_->userType(slot, text); });
}

// The keyboard. Every action goes through the view's own gestures, so the host
// hears what a mouse would have made it hear, and a recording replays it.
namespace {
constexpr int kMinutesPerDay = 24 * 60;
OleDate timeOfMinute(int minute) { return makeTime(minute / 60, minute % 60, 0); }

// A moved appointment stands in its column as the newest one there; the keys
// go on with it, selected as a click would select it.
void followMoved(PVDayView& view) {
    AppointmentRef newest;
    for (const AppointmentRef& a : view.appointmentSet().items())
        if (!newest || a->Key() > newest->Key()) newest = a;
    if (newest && !newest->Selected()) view.userClickOn(newest->Key());
}
} // namespace

int DayViewWidget::focusMinute() const {
    if (const AppointmentRef app = view_->appointmentSet().GetSelectedAppointment())
        return minuteOfDay(app->StartDateTime);
    if (const std::optional<OleDate> slot = view_->selectedSlot()) return minuteOfDay(*slot);
    return view_->topRow() * view_->slotMinutes();
}

// Scrolls the grid, as the user's scroll, until the row of `minute` shows.
void DayViewWidget::showMinute(int minute) {
    const int row = minute / view_->slotMinutes(), top = view_->topRow(), rows = std::max(view_->visibleRows(), 1);
    const int by = row < top ? row - top : row >= top + rows ? row - (top + rows - 1) : 0;
    if (by == 0) return;
    if (const std::optional<OleDate> to = view_->topAfterScroll(by)) view_->userScroll(*to);
}

void DayViewWidget::aimAt(std::optional<std::pair<int, int>> point) {
    if (point) owner_.lastPressGlobal_ = mapToGlobal(fromView({point->first, point->second}));
}

void DayViewWidget::selectMinute(int minute) {
    const int step = view_->slotMinutes();
    minute = std::clamp(minute - minute % step, 0, kMinutesPerDay - step);
    owner_.runGesture([&] {
        showMinute(minute);
        aimAt(view_->pointOfTime(timeOfMinute(minute)));
        view_->userClickAt(timeOfMinute(minute));
    });
}

void DayViewWidget::openMenuAtFocus() {
    const AppointmentRef app = view_->appointmentSet().GetSelectedAppointment();
    const int minute = focusMinute();
    owner_.runGesture([&] {
        showMinute(minute);
        if (app) {
            aimAt(view_->pointOfAppointment(app->Key()));
            view_->userClickOn(app->Key(), true);
        } else {
            aimAt(view_->pointOfTime(timeOfMinute(minute)));
            view_->userClickAt(timeOfMinute(minute), true);
        }
    });
}

DayViewWidget* DayViewWidget::neighbour(int by) const {
    for (int i = view_->Index() + by; i >= 0 && i < kColumns; i += by)
        if (DayViewWidget* w = owner_.dayView(i); w && w->isVisible()) return w;
    return nullptr;
}

// The keys keep the keyboard on the grid: a host that ends its busy phase
// with FocusControl puts the control's focus in the pane, but the user who
// works by keys goes on from the column the key left them in.
bool DayViewWidget::keyboard(QKeyEvent* event) {
    QPointer<DayViewWidget> stay = this;
    const bool taken = takeKey(event, stay);
    if (taken) owner_.keysOnGrid_ = true;
    if (taken && stay && stay->isVisible() && stay->isEnabled()) stay->setFocus(Qt::OtherFocusReason);
    return taken;
}

bool DayViewWidget::takeKey(QKeyEvent* event, QPointer<DayViewWidget>& stay) {
    const Qt::KeyboardModifiers mods = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    const int step = view_->slotMinutes();
    const AppointmentRef app = view_->appointmentSet().GetSelectedAppointment();
    const int key = event->key();
    const bool up = key == Qt::Key_Up, down = key == Qt::Key_Down;
    if ((up || down) && mods == Qt::NoModifier) {
        selectMinute(focusMinute() + (up ? -step : step));
    } else if ((key == Qt::Key_PageUp || key == Qt::Key_PageDown) && mods == Qt::NoModifier) {
        const int page = std::max(view_->visibleRows(), 1) * step;
        selectMinute(focusMinute() + (key == Qt::Key_PageUp ? -page : page));
    } else if (key == Qt::Key_Home && mods == Qt::NoModifier) {
        selectMinute(minuteOfDay(view_->BusinessHoursBegin()));
    } else if (key == Qt::Key_End && mods == Qt::NoModifier) {
        const int end = minuteOfDay(view_->BusinessHoursEnd());
        selectMinute((end == 0 ? kMinutesPerDay : end) - step);
    } else if ((key == Qt::Key_Left || key == Qt::Key_Right) && mods == Qt::NoModifier) {
        if (DayViewWidget* next = neighbour(key == Qt::Key_Left ? -1 : 1)) {
            owner_.revealColumn(*next);
            stay = next;
            next->setFocus(Qt::OtherFocusReason);
            next->selectMinute(focusMinute());
        }
    } else if ((up || down) && mods == Qt::ControlModifier && app) {
        const std::int32_t k = app->Key();
        const int to = std::clamp(minuteOfDay(app->StartDateTime) + (up ? -step : step), 0, kMinutesPerDay - step);
        owner_.runGesture([&] {
            showMinute(to);
            if (view_->userDrag(k, *view_, timeOfMinute(to))) followMoved(*view_);
        });
    } else if ((key == Qt::Key_Left || key == Qt::Key_Right) && mods == Qt::ControlModifier && app) {
        DayViewWidget* next = neighbour(key == Qt::Key_Left ? -1 : 1);
        if (!next) return true;
        owner_.revealColumn(*next);
        const std::int32_t k = app->Key();
        const int start = minuteOfDay(app->StartDateTime);
        owner_.runGesture([&] {
            next->showMinute(start);
            if (view_->userDrag(k, next->view(), timeOfMinute(start))) followMoved(next->view());
        });
        stay = next;
    } else if ((up || down) && mods == Qt::ShiftModifier && app) {
        const std::int32_t k = app->Key();
        const int end = minutesBetween(datePart(app->StartDateTime), app->EndDateTime) + (up ? -step : step);
        if (end <= minuteOfDay(app->StartDateTime) || end > kMinutesPerDay) return true;
        owner_.runGesture([&] {
            showMinute(std::min(end, kMinutesPerDay - 1));
            view_->userResize(k, timeOfMinute(end % kMinutesPerDay));
        });
    } else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && mods == Qt::NoModifier) {
        if (app) {
            const std::int32_t k = app->Key();
            owner_.runGesture([&] { view_->userDblClickOn(k); });
        } else {
            openMenuAtFocus();
        }
    } else if (key == Qt::Key_Menu || (key == Qt::Key_F10 && mods == Qt::ShiftModifier)) {
        openMenuAtFocus();
    } else {
        return false;
    }
    return true;
}

// Tab and Shift+Tab go from appointment to appointment of the column in time
// order; past the last (or before the first) the focus moves on.
bool DayViewWidget::focusNextPrevChild(bool next) {
    std::vector<AppointmentRef> apps = view_->appointmentSet().items();
    std::stable_sort(apps.begin(), apps.end(),
                     [](const AppointmentRef& a, const AppointmentRef& b) { return a->StartDateTime < b->StartDateTime; });
    const AppointmentRef current = view_->appointmentSet().GetSelectedAppointment();
    auto at = std::find(apps.begin(), apps.end(), current);
    AppointmentRef target;
    if (next)
        target = at == apps.end() ? (apps.empty() ? nullptr : apps.front()) : (at + 1 == apps.end() ? nullptr : *(at + 1));
    else if (at != apps.end() && at != apps.begin())
        target = *(at - 1);
    if (!target) return QWidget::focusNextPrevChild(next);
    owner_.keysOnGrid_ = true;
    const std::int32_t k = target->Key();
    owner_.runGesture([&] {
        showMinute(minuteOfDay(target->StartDateTime));
        view_->userClickOn(k);
    });
    return true;
}

// Every call Qt makes into the view (paint, mouse, keys, wheel, tool tips)
// comes through here: a failure is reported as the control's untrapped errors
// are, and the window goes on; nothing is thrown into Qt's event loop.
bool DayViewWidget::event(QEvent* event) {
    bool handled = true;
    owner_.guard([&] { handled = handleEvent(event); });
    return handled;
}

bool DayViewWidget::handleEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        const QPoint v = toView(help->pos());
        if (const AppointmentRef app = view_->appointmentSet().HitTest(v.x(), v.y()))
            QToolTip::showText(help->globalPos(), owner_.appointmentToolTip(app), this);
        else
            QToolTip::hideText();
        return true;
    }
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        // A busy phase began in the middle of a gesture: what the pointer was
        // doing ends with it.
        mode_ = Mode::None;
        if (dropTarget_) dropTarget_->setPreview(std::nullopt);
        setPreview(std::nullopt);
    }
    return QWidget::event(event);
}

} // namespace quorvane
