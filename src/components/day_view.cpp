#include <QuorvaneScheduler/components/day_view.h>
#include <QuorvaneScheduler/errors.h>

#include "components/block_pool.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvane {

// ---- helpers ------------------------------------------------------------------

OleDate PVDayView::checkedDate(OleDate d) {
    if (!validDate(d)) throw InvalidProcedureCall("date value out of range");
    return d;
}

// The bounds of the runtime's date arithmetic, 1 January 100 to 31 December 9999;
// NaN fails the comparison as well.
bool PVDayView::validDate(OleDate d) { return d.value > -657435.0 && d.value < 2958466.0; }

OleDate PVDayView::onDay(OleDate day, OleDate timeOfDay) {
    const double date = datePart(checkedDate(day)).value;
    const double time = timePart(checkedDate(timeOfDay)).value;
    // Before the epoch the fraction counts forward from midnight while the stored
    // value runs backwards: 6:00 AM on day -1 is -1.25.
    return OleDate(date >= 0 ? date + time : date - time);
}

int PVDayView::pixelsOf(float twips) {
    // Geometry is public and may hold anything; a negative, NaN or absurd size
    // gives an empty or a bounded view rather than an overflowing cast.
    if (!(twips >= 15.0f)) return 0;
    return static_cast<int>(std::min(std::floor(static_cast<double>(twips) / 15.0), 1.0e6));
}

// ---- Appointment ----------------------------------------------------------------

void Appointment::setSelected(bool on) {
    if (on && view_)
        for (const AppointmentRef& other : view_->appointmentSet().items())
            other->selected_ = false;
    selected_ = on;
}

// ---- AppointmentSet -----------------------------------------------------------

AppointmentSet::~AppointmentSet() {
    for (const AppointmentRef& app : items_)
        app->view_ = nullptr;
}

AppointmentRef AppointmentSet::Add(std::string text, OleDate start, OleDate end) {
    PVDayView::checkedDate(start);
    PVDayView::checkedDate(end);
    // Key 0 marks a set that has given out every key; a key is never given twice.
    if (nextKey_ <= 0) throw Overflow("appointment keys exhausted");
    auto app = std::allocate_shared<Appointment>(PoolAllocator<Appointment>());
    app->Text = std::move(text);
    app->StartDateTime = start;
    app->EndDateTime = end;
    app->BackColor = PVDayView::kDefaultAppointmentColor;
    app->key_ = nextKey_;
    nextKey_ = nextKey_ == std::numeric_limits<std::int32_t>::max() ? 0 : nextKey_ + 1;
    append(app);
    return app;
}

AppointmentRef AppointmentSet::FirstAppointment() const { return items_.empty() ? nullptr : items_.front(); }

AppointmentRef AppointmentSet::NextAppointment(const AppointmentRef& app) const {
    if (!app) return nullptr;
    if (app->view_ == &view_) return app->index_ + 1 < items_.size() ? items_[app->index_ + 1] : nullptr;
    // Followers only ever come later in the set, so the chain ends.
    for (AppointmentRef next = app->follower_.lock(); next; next = next->follower_.lock())
        if (next->view_ == &view_) return next;
    return nullptr;
}

// Keys grow with every Add and a set only ever appends, so the set is in key order.
AppointmentRef AppointmentSet::Item(std::int32_t key) const {
    const auto it = std::lower_bound(items_.begin(), items_.end(), key,
                                     [](const AppointmentRef& a, std::int32_t k) { return a->key_ < k; });
    return it != items_.end() && (*it)->key_ == key ? *it : nullptr;
}

void AppointmentSet::Remove(std::int32_t key) {
    const AppointmentRef app = Item(key);
    if (!app) throw InvalidProcedureCall("no appointment with key " + std::to_string(key));
    view_.runRemove(app, false);
}

// One pass: each appointment leaves the view and is let go while its memory is
// at hand, which matters when a reload drops thousands. Nothing here runs code
// of anyone else's, so the set is emptied in place and keeps its room for the
// reload that usually follows.
void AppointmentSet::RemoveAll() {
    for (AppointmentRef& app : items_) {
        app->view_ = nullptr;
        app.reset();
    }
    items_.clear();
}

// Lanes keep the boxes apart, so at most one holds the point.
AppointmentRef AppointmentSet::HitTest(std::int32_t x, std::int32_t y) const {
    for (const PVDayView::Box& box : view_.appointmentBoxes())
        if (box.left <= x && x < box.right && box.top <= y && y < box.bottom) return box.app;
    return nullptr;
}

AppointmentRef AppointmentSet::GetSelectedAppointment() const {
    for (const AppointmentRef& app : items_)
        if (app->selected_) return app;
    return nullptr;
}

void AppointmentSet::append(const AppointmentRef& app) {
    app->index_ = items_.size();
    app->view_ = &view_;
    items_.push_back(app);
}

void AppointmentSet::detach(const AppointmentRef& app) {
    // A copy: the argument may be an element of items_ itself.
    const AppointmentRef held = app;
    if (held->view_ != &view_) return;
    const std::size_t pos = held->index_;
    held->follower_ = pos + 1 < items_.size() ? items_[pos + 1] : nullptr;
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(pos));
    for (std::size_t i = pos; i < items_.size(); ++i)
        items_[i]->index_ = i;
    held->view_ = nullptr;
}

// ---- PVDayView: state -----------------------------------------------------------

PVDayView::PVDayView(Platform& platform, std::int16_t index)
    : platform_(platform), index_(index), set_(*this), currentDate_(platform.clock.today()),
      businessBegin_(makeTime(8, 0, 0)), businessEnd_(makeTime(17, 0, 0)), dayStart_(0.0),
      dayEnd_(makeTime(23, 55, 0)), topIndex_(makeTime(8, 0, 0)) {
    colors_.fill(dayBackColor_);
}

PVDayView::~PVDayView() = default;

void PVDayView::setCurrentDate(OleDate d) { moveDate(d, false); }

void PVDayView::moveDate(OleDate d, bool user) {
    const OleDate date = datePart(checkedDate(d));
    const OleDate old = currentDate_;
    currentDate_ = date;
    if (date != old) raiseAs(user, [&] { raise(hooks_.DateChange, index_, old); });
}

void PVDayView::setBusinessHours(OleDate begin, OleDate end) {
    businessBegin_ = timePart(checkedDate(begin));
    businessEnd_ = timePart(checkedDate(end));
}

void PVDayView::setIncrements(std::int32_t code) {
    if (code < 0 || code >= static_cast<std::int32_t>(kIncrementMinutes.size()))
        throw InvalidPropertyValue("Increments " + std::to_string(code) + " out of range");
    increments_ = code;
}

int PVDayView::cellOf(OleDate t) {
    return std::clamp(minuteOfDay(checkedDate(t)) / 5, 0, static_cast<int>(kCells) - 1);
}

bool PVDayView::TimeSlotSelected(OleDate slot) const {
    const auto [first, last] = slotCells(slot);
    return std::all_of(selected_.begin() + first, selected_.begin() + last + 1, [](bool on) { return on; });
}

void PVDayView::setTimeSlotSelected(OleDate slot, bool on) {
    const auto [first, last] = slotCells(slot);
    std::fill(selected_.begin() + first, selected_.begin() + last + 1, on);
}

void PVDayView::setTimeSlotColor(OleDate start, OleDate end, std::int32_t color) {
    const int first = cellOf(start), last = cellOf(end);
    if (last < first) return;
    std::fill(colors_.begin() + first, colors_.begin() + last + 1, color);
}

std::int32_t PVDayView::TimeSlotColor(OleDate t) const {
    return colors_[static_cast<std::size_t>(cellOf(t))];
}

void PVDayView::setTopIndex(OleDate t) { moveTop(t, false); }

void PVDayView::moveTop(OleDate t, bool user) {
    checkedDate(t);
    if (t == topIndex_) return;
    topIndex_ = t;
    raiseAs(user, [&] { raise(hooks_.TopIndexChange, index_, t); });
}

void PVDayView::Undo() {
    if (!undo_) return;
    // Cleared before it runs: a second Undo from the same handler takes back nothing.
    const std::function<void()> record = std::move(undo_);
    undo_ = nullptr;
    record();
}

std::pair<int, int> PVDayView::slotCells(OleDate t) const {
    const int cellsPerSlot = slotMinutes() / 5;
    const int first = cellOf(t) / cellsPerSlot * cellsPerSlot;
    return {first, first + cellsPerSlot - 1};
}

int PVDayView::slotStartMinute(OleDate t) const {
    return minuteOfDay(checkedDate(t)) / slotMinutes() * slotMinutes();
}

OleDate PVDayView::slotStartOnCurrentDate(OleDate t) const {
    const int minute = slotStartMinute(t);
    return onDay(currentDate_, makeTime(minute / 60, minute % 60, 0));
}

void PVDayView::selectSlotOnly(OleDate t) {
    const auto [first, last] = slotCells(t);
    selected_.fill(false);
    std::fill(selected_.begin() + first, selected_.begin() + last + 1, true);
}

void PVDayView::raiseWithUndo(std::function<void()> record, const std::function<void()>& fire) {
    // The record stands only while its event runs. A gesture started from inside
    // a handler brings its own record and puts the outer one back when it ends,
    // so the outer handler's Undo still takes back the outer change.
    struct Restore {
        std::function<void()>& slot;
        std::function<void()> outer;
        ~Restore() { slot = std::move(outer); }
    } restore{undo_, std::move(undo_)};
    undo_ = std::move(record);
    fire();
}

std::function<void()> PVDayView::removalOf(const AppointmentRef& app) {
    return [this, app] { set_.detach(app); };
}

void PVDayView::fromUser(const std::function<void()>& fire) { platform_.container.runForUser(fire); }

bool PVDayView::runRemove(const AppointmentRef& app, bool user) {
    const AppointmentRef held = app;
    bool cancelled = false;
    raiseWithUndo([&cancelled] { cancelled = true; },
                  [&] { raiseAs(user, [&] { raise(hooks_.BeforeRemove, index_, held); }); });
    if (cancelled) return false;
    // The handler may have removed it or emptied the set; detach finds it again.
    if (held->view() != this) return false;
    set_.detach(held);
    return true;
}

} // namespace quorvane
