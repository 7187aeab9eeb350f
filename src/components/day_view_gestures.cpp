// The user's gestures on a day view. Each one raises the view's events in the
// order a real view does, and every raise may re-enter: a handler can remove the
// appointment being worked on, empty the set or start another gesture. So only
// shared references are kept across a raise, and after each one the appointment's
// place in its set is checked again before the gesture goes on with it. A handler
// that fails stops itself only: its error goes to the container (fromUser) and
// the gesture's next event follows.

#include <QuorvaneScheduler/components/day_view.h>

namespace quorvane {

namespace {

// MouseButton carries twips; a view's pixel is 15 of them whatever the screen.
constexpr float kTwipsPerViewPixel = 15.0f;

std::int16_t buttonOf(bool right) { return right ? 2 : 1; }

const char* clickName(bool right) { return right ? "rightclick " : "click "; }

} // namespace

// What a recording host hears. A day of the week view takes no gestures a
// script could name, so it reports none.
Container::GestureScope PVDayView::reportGesture(const std::string& action, const std::string& rest,
                                                 std::vector<Variant> values) {
    if (weekDay) return Container::GestureScope(nullptr);
    return platform_.container.userGesture(action + focusName() + rest, std::move(values));
}

// The focus moves before GotFocus is raised: a handler that asks who has the
// focus already hears this view.
void PVDayView::takeFocus() {
    Container& container = platform_.container;
    if (container.activeControl() == focusName()) return;
    container.setActiveControl(focusName());
    fromUser([&] { raise(hooks_.GotFocus, index_); });
}

bool PVDayView::userClickAt(OleDate t, bool right) {
    const auto point = pointOfTime(t);
    if (!point) return false;
    const auto gesture = reportGesture(clickName(right), " at %", {Variant(timePart(t))});
    return clickSlot(t, *point, right);
}

bool PVDayView::userClickOn(std::int32_t key, bool right) {
    const auto point = pointOfAppointment(key);
    if (!point) return false;
    const auto gesture = reportGesture(clickName(right), " on %", {Variant(key)});
    return clickAppointment(set_.Item(key), *point, right);
}

bool PVDayView::userPressAt(int x, int y, bool right) { return pressAt(x, y, right, false); }

// A double click on a free slot is a click there, and is heard as one.
bool PVDayView::userDblClickAt(int x, int y) { return pressAt(x, y, false, true); }

// What lies under the point decides before any handler runs, as for the aimed clicks.
bool PVDayView::pressAt(int x, int y, bool right, bool twice) {
    if (x < 0 || x >= pixelWidth()) return false;
    const auto slot = slotAtPixel(y);
    if (!slot) return false;
    if (const AppointmentRef app = set_.HitTest(x, y)) {
        const auto gesture = reportGesture(twice ? "dblclick " : clickName(right), " on %", {Variant(app->Key())});
        clickAppointment(app, {x, y}, right);
        if (twice) fromUser([&] { raise(hooks_.DblClick, index_); });
        return true;
    }
    const auto gesture = reportGesture(clickName(right), " at %", {Variant(timePart(*slot))});
    return clickSlot(*slot, {x, y}, right);
}

bool PVDayView::clickSlot(OleDate t, std::pair<int, int> point, bool right) {
    takeFocus();
    pressButton(right, point);
    if (right) return true;
    // The slot is taken at the view's Increments as they stand after the handlers.
    selectSlotOnly(t);
    fromUser([&] { raise(hooks_.TimeSlotSelect, index_, slotStartOnCurrentDate(t)); });
    fromUser([&] { raise(hooks_.Click, index_); });
    return true;
}

bool PVDayView::clickAppointment(const AppointmentRef& app, std::pair<int, int> point, bool right) {
    takeFocus();
    pressButton(right, point);
    if (right) return true;
    // The set as the handlers left it: an appointment they took out of it is not
    // selected again, and one they added loses its selection like any other.
    for (const AppointmentRef& other : set_.items())
        other->setSelected(false);
    if (app->view() == this) app->setSelected(true);
    fromUser([&] { raise(hooks_.Click, index_); });
    return true;
}

bool PVDayView::userDblClickOn(std::int32_t key) {
    if (!pointOfAppointment(key)) return false;
    const auto gesture = reportGesture("dblclick ", " on %", {Variant(key)});
    if (!userClickOn(key)) return false;
    fromUser([&] { raise(hooks_.DblClick, index_); });
    return true;
}

void PVDayView::userSlot(OleDate t) {
    const auto gesture = reportGesture("slot ", " %", {Variant(timePart(t))});
    selectSlotOnly(t);
    fromUser([&] { raise(hooks_.TimeSlotSelect, index_, slotStartOnCurrentDate(t)); });
}

bool PVDayView::userType(OleDate t, std::string text) {
    if (!pointOfTime(t)) return false;
    const auto gesture = reportGesture("type ", " at % %", {Variant(timePart(t)), Variant(text)});
    const OleDate start = slotStartOnCurrentDate(t);
    const AppointmentRef app = set_.Add(std::move(text), start, addMinutes(start, slotMinutes()));
    raiseWithUndo(removalOf(app), [&] { fromUser([&] { raise(hooks_.AfterAdd, index_, app); }); });
    return true;
}

bool PVDayView::userResize(std::int32_t key, OleDate end) {
    if (!pointOfAppointment(key) || !pointOfTime(end)) return false;
    const auto gesture = reportGesture("resize ", " % to %", {Variant(key), Variant(timePart(end))});
    const AppointmentRef app = set_.Item(key);
    const OleDate oldEnd = app->EndDateTime;
    app->EndDateTime = onDay(app->StartDateTime, end);
    raiseWithUndo([app, oldEnd] { app->EndDateTime = oldEnd; },
                  [&] { fromUser([&] { raise(hooks_.AfterResize, index_, app); }); });
    return true;
}

// A key press acts on the appointment wherever the grid is scrolled, so only
// its presence in the set counts here.
bool PVDayView::userDelete(std::int32_t key) {
    const AppointmentRef app = set_.Item(key);
    if (!app) return false;
    const auto gesture = reportGesture("delete ", " %", {Variant(key)});
    runRemove(app, true);
    return true;
}

bool PVDayView::userDrag(std::int32_t key, PVDayView& target, OleDate start) {
    if (!pointOfAppointment(key) || !target.pointOfTime(start)) return false;
    const auto gesture =
        reportGesture("drag ", " % to " + target.focusName() + " %", {Variant(key), Variant(timePart(start))});
    const AppointmentRef original = set_.Item(key);
    fromUser([&] { raise(hooks_.BeforeDrag, index_, original); });
    // A drag whose appointment was taken away while it began has nothing to drop.
    if (original->view() != this) return true;

    const OleDate copyStart = onDay(target.CurrentDate(), start);
    const OleDate copyEnd =
        addMinutes(copyStart, minutesBetween(original->StartDateTime, original->EndDateTime));
    const AppointmentRef copy = target.set_.Add(original->Text, copyStart, copyEnd);
    copy->Tag = original->Tag;
    copy->BackColor = original->BackColor;
    target.raiseWithUndo(target.removalOf(copy),
                         [&] { target.fromUser([&] { raise(target.hooks_.AfterAdd, target.index_, copy); }); });
    // A drop that AfterAdd took back (by Undo or otherwise) is no drag to report.
    if (copy->view() == &target)
        target.raiseWithUndo(target.removalOf(copy),
                             [&] { target.fromUser([&] { raise(target.hooks_.AfterDrag, target.index_, copy); }); });

    // The original goes last, by the view's own removal, whatever happened to the
    // drop: a caller restoring a refused drop relies on one BeforeRemove per drag.
    if (original->view() == this) runRemove(original, true);
    return true;
}

void PVDayView::userScroll(OleDate t) {
    const auto gesture = reportGesture("scroll ", " to %", {Variant(timePart(t))});
    moveTop(onDay(currentDate_, t), true);
}

void PVDayView::userDate(OleDate d) {
    const auto gesture = reportGesture("date ", " %", {Variant(d)});
    moveDate(d, true);
}

void PVDayView::pressButton(bool right, std::pair<int, int> point) {
    fromUser([&] {
        raise(hooks_.MouseButton, index_, buttonOf(right), std::int16_t{0}, point.first * kTwipsPerViewPixel,
              point.second * kTwipsPerViewPixel);
    });
}

} // namespace quorvane
