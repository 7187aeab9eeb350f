// The day view as a screen reader meets it. The view's interface lists its
// parts, and each part's interface reads the model anew on every question, so
// nothing a reader hears can lag behind the grid. A part whose slot has
// scrolled away or whose appointment has gone reads as invalid.

#include <QuorvaneScheduler/control_internals.h>
#include "qt/day_view_accessible.h"

#include <QuorvaneScheduler/qt/scheduler_widget.h>

#include "qt/qt_dates.h"

#include <QAccessibleWidget>
#include <QLocale>
#include <QWindow>

namespace quorvane {

namespace {

using Part = DayViewWidget::Part;
constexpr int kSlot = 0, kAppointment = 1;

QString clockText(int minute) {
    return QLocale(QLocale::English).toString(QTime(minute / 60 % 24, minute % 60), QStringLiteral("h:mm AP"));
}

// A slot or an appointment of a day view.
class PartAccessible : public QAccessibleInterface {
public:
    PartAccessible(DayViewWidget* view, Part part) : view_(view), part_(part) {}

    bool isValid() const override {
        if (!view_) return false;
        const std::vector<Part> parts = view_->accessibleParts();
        return std::find(parts.begin(), parts.end(), part_) != parts.end();
    }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return view_ ? view_->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(view_.data()); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override {
        return part_.first == kSlot ? QAccessible::Cell : QAccessible::ListItem;
    }

    QString text(QAccessible::Text t) const override {
        if (!view_) return {};
        if (part_.first == kSlot) return t == QAccessible::Name ? spokenSlot(*view_, part_.second) : QString();
        const AppointmentRef app = view_->view().appointmentSet().Item(part_.second);
        if (!app) return {};
        if (t == QAccessible::Name) return spokenAppointment(*view_, *app);
        if (t == QAccessible::Description) return view_->owner().appointmentToolTip(app);
        return {};
    }

    QRect rect() const override {
        if (!view_) return {};
        const PVDayView& v = view_->view();
        QRect r;
        if (part_.first == kSlot) {
            const int right = v.appointmentColumns().second;
            const int y = v.pixelOfMinute(part_.second);
            r = QRect(view_->fromView({PVDayView::kRulerPixels, y}), view_->fromView({right, y + PVDayView::kRowPixels}));
        } else {
            for (const PVDayView::Box& b : v.appointmentBoxes())
                if (b.app->Key() == part_.second)
                    r = QRect(view_->fromView({b.left, b.top}), view_->fromView({b.right, b.bottom}));
        }
        return r.isNull() ? QRect() : QRect(view_->mapToGlobal(r.topLeft()), r.size());
    }

    QAccessible::State state() const override {
        QAccessible::State s;
        if (!view_) {
            s.invalid = true;
            return s;
        }
        s.focusable = true;
        s.selectable = true;
        s.readOnly = true;
        const PVDayView& v = view_->view();
        if (part_.first == kSlot) {
            s.selected = v.TimeSlotSelected(makeTime(part_.second / 60, part_.second % 60, 0));
        } else if (const AppointmentRef app = v.appointmentSet().Item(part_.second)) {
            s.selected = app->Selected();
        }
        s.focused = view_->hasFocus() && view_->focusedPart() == part_;
        s.invisible = rect().isNull();
        return s;
    }

private:
    QPointer<DayViewWidget> view_;
    Part part_;
};

class DayViewAccessible : public QAccessibleWidget {
public:
    explicit DayViewAccessible(DayViewWidget* w) : QAccessibleWidget(w, QAccessible::Table) {}

    DayViewWidget* dayView() const { return static_cast<DayViewWidget*>(widget()); }

    QString text(QAccessible::Text t) const override {
        if (t == QAccessible::Name) return spokenView(*dayView());
        return QAccessibleWidget::text(t);
    }
    // The parts first, then the widgets on the view (its scroll bar, the slot editor).
    int childCount() const override {
        return static_cast<int>(dayView()->accessibleParts().size()) + QAccessibleWidget::childCount();
    }
    QAccessibleInterface* child(int index) const override {
        const std::vector<Part> parts = dayView()->accessibleParts();
        if (index < 0) return nullptr;
        if (index < static_cast<int>(parts.size())) return dayView()->partInterface(parts[static_cast<std::size_t>(index)]);
        return QAccessibleWidget::child(index - static_cast<int>(parts.size()));
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const std::vector<Part> parts = dayView()->accessibleParts();
        for (std::size_t i = 0; i < parts.size(); ++i)
            if (dayView()->partInterface(parts[i]) == child) return static_cast<int>(i);
        const int widgetIndex = QAccessibleWidget::indexOfChild(child);
        return widgetIndex < 0 ? -1 : widgetIndex + static_cast<int>(parts.size());
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const std::vector<Part> parts = dayView()->accessibleParts();
        // Appointments lie over the slots: they are asked first.
        for (auto it = parts.rbegin(); it != parts.rend(); ++it) {
            QAccessibleInterface* part = dayView()->partInterface(*it);
            if (part->rect().contains(x, y)) return part;
        }
        return QAccessibleWidget::childAt(x, y);
    }
    QAccessibleInterface* focusChild() const override {
        if (!dayView()->hasFocus()) return QAccessibleWidget::focusChild();
        return dayView()->partInterface(dayView()->focusedPart());
    }
};

} // namespace

QString spokenView(const DayViewWidget& w) {
    const PVDayView& v = w.view();
    const PickList& list = widgetsOf(w.owner().control()).cmbResource[static_cast<std::size_t>(v.Index())];
    QString resource = QString::fromStdString(list.list(list.listIndex()));
    if (resource.isEmpty()) resource = QStringLiteral("Column %1").arg(v.Index() + 1);
    const QDate date = qDateOf(v.CurrentDate());
    return resource + QStringLiteral(", ") + QLocale(QLocale::English).toString(date, QStringLiteral("dddd, MMMM d, yyyy"));
}

QString spokenSlot(const DayViewWidget& w, int minute) {
    const PVDayView& v = w.view();
    const OleDate t = makeTime(minute / 60, minute % 60, 0);
    QString what;
    if (v.TimeSlotColor(t) == v.DayBackColor()) {
        what = QStringLiteral("free");
    } else {
        what = QString::fromStdString(w.owner().control().templateAt(v.Index(), t));
        if (what.isEmpty()) what = QStringLiteral("marked");
    }
    return clockText(minute) + QStringLiteral(", ") + what;
}

QString spokenAppointment(const DayViewWidget& w, const Appointment& app) {
    QString name = QString::fromStdString(app.Text) + QStringLiteral(", ") + clockText(minuteOfDay(app.StartDateTime)) +
                   QStringLiteral(" to ") + clockText(minuteOfDay(app.EndDateTime));
    const std::string status = w.owner().control().GetStatus(w.view().appointmentSet().Item(app.Key()));
    if (!status.empty()) name += QStringLiteral(", ") + QString::fromStdString(status);
    return name;
}

QAccessibleInterface* dayViewAccessible(const QString&, QObject* object) {
    if (auto* view = qobject_cast<DayViewWidget*>(object)) return new DayViewAccessible(view);
    return nullptr;
}

// The parts of the widget, kept here beside their interfaces.

std::vector<DayViewWidget::Part> DayViewWidget::accessibleParts() const {
    std::vector<Part> parts;
    const int step = view_->slotMinutes(), top = view_->topRow() * step;
    for (int r = 0; r < view_->gridRows(); ++r)
        parts.emplace_back(kSlot, top + r * step);
    std::vector<AppointmentRef> apps = view_->appointmentSet().items();
    std::stable_sort(apps.begin(), apps.end(),
                     [](const AppointmentRef& a, const AppointmentRef& b) { return a->StartDateTime < b->StartDateTime; });
    for (const AppointmentRef& a : apps)
        parts.emplace_back(kAppointment, a->Key());
    return parts;
}

DayViewWidget::Part DayViewWidget::focusedPart() const {
    if (const AppointmentRef app = view_->appointmentSet().GetSelectedAppointment()) return {kAppointment, app->Key()};
    const int step = view_->slotMinutes();
    const int minute = focusMinute();
    return {kSlot, minute - minute % step};
}

QAccessibleInterface* DayViewWidget::partInterface(Part part) const {
    auto it = partIds_.find(part);
    if (it != partIds_.end())
        if (QAccessibleInterface* known = QAccessible::accessibleInterface(it->second)) return known;
    auto* made = new PartAccessible(const_cast<DayViewWidget*>(this), part);
    partIds_[part] = QAccessible::registerAccessibleInterface(made);
    return made;
}

void DayViewWidget::forgetParts() {
    for (const auto& [part, id] : partIds_)
        QAccessible::deleteAccessibleInterface(id);
    partIds_.clear();
}

void DayViewWidget::announceFocus() {
    if (!hasFocus()) return;
    const Part part = focusedPart();
    if (announced_ == part) return;
    announced_ = part;
    const std::vector<Part> parts = accessibleParts();
    const auto at = std::find(parts.begin(), parts.end(), part);
    if (at == parts.end()) return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(static_cast<int>(at - parts.begin()));
    QAccessible::updateAccessibility(&event);
}

} // namespace quorvane
