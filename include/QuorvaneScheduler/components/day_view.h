#pragma once
// The day view: one day as a grid of time slots with appointments on it. It holds
// its date, its grid and its appointment objects, and turns the user's gestures
// into its events. Every rule of the grid (time to row, hit test, the order of a
// gesture's events) lives here, where a test can reach it.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/components/platform.h>
#include <QuorvaneScheduler/ole_date.h>
#include <QuorvaneScheduler/variant.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {

class PVDayView;
class AppointmentSet;

// An appointment. Shared: the set holds it, and so may the control after the set
// has let it go; a removed appointment stays readable and writable.
class QUORVANE_EXPORT Appointment : public Object {
public:
    std::string Text;           // what the box shows: the patient, as the host wrote it
    OleDate StartDateTime;      // when the visit starts
    OleDate EndDateTime;        // when it ends
    std::string Tag;            // the host's ids, "APPID~RECURRENCEID~PATIENTID"
    std::int32_t BackColor = 0; // the fill, which tells its status

    bool Selected() const { return selected_; } // whether its view has it selected
    // A view selects one appointment at a time: selecting this one takes the
    // selection from the others of its set.
    void setSelected(bool on);

    std::int32_t Key() const { return key_; } // the set's own number for it
    // The view whose set holds it, or nullptr once it has left its set.
    PVDayView* view() const { return view_; }

private:
    friend class AppointmentSet;
    std::int32_t key_ = 0;
    bool selected_ = false;
    PVDayView* view_ = nullptr;
    std::size_t index_ = 0;               // its place in its set while it is there
    std::weak_ptr<Appointment> follower_; // what followed it when it left its set
};
// A shared reference to an appointment.
using AppointmentRef = std::shared_ptr<Appointment>;

// The appointments of a day view, numbered by the set as they come.
class QUORVANE_EXPORT AppointmentSet {
public:
    explicit AppointmentSet(PVDayView& view) : view_(view) {} // the set of `view`
    ~AppointmentSet();
    AppointmentSet(const AppointmentSet&) = delete;
    AppointmentSet& operator=(const AppointmentSet&) = delete;

    // Creates an appointment in the view's default colour; raises nothing.
    AppointmentRef Add(std::string text, OleDate start, OleDate end);
    std::int32_t Count() const { return static_cast<std::int32_t>(items_.size()); }
    AppointmentRef FirstAppointment() const;
    // The one after `app` in the set's order, none at the end. For an appointment
    // that has left the set, the one that followed it then, or the next of those
    // still here, so a walk that removes as it goes visits every appointment.
    AppointmentRef NextAppointment(const AppointmentRef& app) const;
    AppointmentRef Item(std::int32_t key) const; // none when no appointment has the key
    // Raises BeforeRemove inside the call; the appointment stays when the handler
    // calls Undo. A key that no appointment has: InvalidProcedureCall.
    void Remove(std::int32_t key);
    // Removes all and raises nothing.
    void RemoveAll();
    // The appointment at a pixel position of the view, or none.
    AppointmentRef HitTest(std::int32_t x, std::int32_t y) const;
    AppointmentRef GetSelectedAppointment() const;

    const std::vector<AppointmentRef>& items() const { return items_; } // all, in the set's order

private:
    friend class PVDayView;
    void append(const AppointmentRef& app);
    void detach(const AppointmentRef& app);

    PVDayView& view_;
    std::vector<AppointmentRef> items_;
    std::int32_t nextKey_ = 1;
};

// Slot lengths by Increments code.
inline constexpr std::array<int, 5> kIncrementMinutes = {60, 30, 15, 10, 5};

// A day view: one day of one column as a grid of time slots, with its
// appointments; a host reaches a column's through GetDayView.
class QUORVANE_EXPORT PVDayView : public Object {
public:
    // Pixels of one row of the grid, of the time ruler at its left, and of the
    // band at an appointment's bottom where a press takes its edge to resize it.
    static constexpr int kRowPixels = 20;
    static constexpr int kRulerPixels = 40;
    static constexpr int kResizeEdgePixels = 4;
    static constexpr std::int32_t kDefaultDayBackColor = 16777215;     // white
    static constexpr std::int32_t kDefaultAppointmentColor = 14737632; // light grey

    PVDayView(Platform& platform, std::int16_t index); // the view with this index
    ~PVDayView() override;
    PVDayView(const PVDayView&) = delete;
    PVDayView& operator=(const PVDayView&) = delete;

    std::int16_t Index() const { return index_; } // the column's index, 0 to 9

    // The date the view shows (midnight). Another date raises DateChange inside
    // the assignment, with the old date.
    OleDate CurrentDate() const { return currentDate_; }
    void setCurrentDate(OleDate d);

    // The appointments on the view.
    AppointmentSet& appointmentSet() { return set_; }
    const AppointmentSet& appointmentSet() const { return set_; }

    // 0..4 for 60, 30, 15, 10, 5 minutes; anything else is InvalidPropertyValue.
    std::int32_t Increments() const { return increments_; }
    // Paints the whole day in its background colour: the bare grid, no blocks.
    void paintBareDay() { setTimeSlotColor(DayStartTime(), DayEndTime(), DayBackColor()); }
    void setIncrements(std::int32_t code);
    int slotMinutes() const { return kIncrementMinutes[static_cast<std::size_t>(increments_)]; }

    // The practice's hours on the view, by time of day.
    OleDate BusinessHoursBegin() const { return businessBegin_; }
    OleDate BusinessHoursEnd() const { return businessEnd_; }
    // The view's own setting, by time of day; the control only reads it.
    void setBusinessHours(OleDate begin, OleDate end);
    OleDate DayStartTime() const { return dayStart_; }
    OleDate DayEndTime() const { return dayEnd_; }
    std::int32_t DayBackColor() const { return dayBackColor_; }

    // Selection and colour are kept per five-minute cell, so both survive a change
    // of Increments. A slot is selected when every cell of it is.
    bool TimeSlotSelected(OleDate slot) const;
    void setTimeSlotSelected(OleDate slot, bool on);
    // Colours the cells from start to end, both included, by time of day.
    void setTimeSlotColor(OleDate start, OleDate end, std::int32_t color);
    std::int32_t TimeSlotColor(OleDate t) const; // the colour of the cell holding t

    // The time at the top of the grid; a move raises TopIndexChange.
    OleDate TopIndex() const { return topIndex_; }
    void setTopIndex(OleDate t);

    std::int32_t ViewMode = 0; // 0 shows no resource; the control sets it
    std::string Tag;           // the control's note on the view
    // A day of the week view rather than a column; Index() is then its day number.
    bool weekDay = false;
    bool Visible = true;
    float Left = 0, Top = 0, Width = 1440, Height = 7020;

    // Takes back the change the view has just made: an added appointment goes, a
    // removal being asked about is cancelled, a resize or a drop is reverted.
    void Undo();

    // The view's events, each with the view's index first. The control
    // connects them to its columns; a host hears the control's events instead
    // and cannot reach these (the control's internal header can).
    struct Hooks {
        std::function<void(std::int16_t)> GotFocus;
        std::function<void(std::int16_t, std::int16_t button, std::int16_t shift, float x, float y)> MouseButton;
        std::function<void(std::int16_t)> Click;
        std::function<void(std::int16_t)> DblClick;
        std::function<void(std::int16_t, AppointmentRef)> AfterAdd;
        std::function<void(std::int16_t, AppointmentRef)> BeforeRemove;
        std::function<void(std::int16_t, AppointmentRef)> AfterResize;
        std::function<void(std::int16_t, AppointmentRef)> BeforeDrag;
        std::function<void(std::int16_t, AppointmentRef)> AfterDrag;
        std::function<void(std::int16_t, AppointmentRef)> AppointmentChangeRefused;
        std::function<void(std::int16_t)> ViewChangeRefused;
        std::function<void(std::int16_t, OleDate oldDate)> DateChange;
        std::function<void(std::int16_t, OleDate topTime)> TopIndexChange;
        std::function<void(std::int16_t, OleDate timeSlot)> TimeSlotSelect;
    };

    // Geometry, in the view's pixels (15 twips each, whatever the screen).
    int visibleRows() const;
    // The rows shown: from TopIndex down, no further than the day's end.
    int gridRows() const;
    int pixelWidth() const { return pixelsOf(Width); }
    // x range of the appointments, end excluded; the free strip of the slots lies right of it.
    std::pair<int, int> appointmentColumns() const;

    // An appointment as drawn: its rectangle, end excluded, clipped to the rows
    // shown. Overlapping appointments share the width side by side, each in its
    // lane; the lanes follow the whole day, so scrolling does not reorder them.
    struct Box {
        AppointmentRef app; // the appointment drawn
        int left;           // its edges, in the view's pixels
        int top;            // (see left)
        int right;          // (see left)
        int bottom;         // (see left)
        bool endShown; // the bottom edge is the appointment's end, not the grid's
    };
    std::vector<Box> appointmentBoxes() const; // every appointment shown, as drawn
    // Pixel row of a time of day, from the top of the grid; negative above it.
    // Rows of a slot are spread evenly over its minutes.
    int pixelOfMinute(int minuteOfDay) const;
    // The time of day at a pixel row, on the view's date, to the minute; none
    // outside the rows shown.
    std::optional<OleDate> timeAtPixel(int y) const;
    // The start of the slot whose row holds pixel row y.
    std::optional<OleDate> slotAtPixel(int y) const;
    // The appointment whose bottom edge lies under a point, to be resized there.
    AppointmentRef resizeEdgeAt(int x, int y) const;
    // Where a resize with the pointer at row y would end the appointment: the
    // nearest slot boundary, at least one slot after its start and no lower
    // than the start of the last row shown. None when it cannot be resized.
    std::optional<OleDate> resizeEndAt(std::int32_t key, int y) const;
    // Minutes from an appointment's start to the point where the user took it.
    std::optional<int> grabMinutes(std::int32_t key, int y) const;
    // Where an appointment taken `grab` minutes below its start lands when the
    // pointer is at row y of this view: the nearest slot start, kept within the
    // rows shown. None when no row is shown.
    std::optional<OleDate> dropStartAt(int y, int grab) const;
    // The first selected slot of the day, if any.
    std::optional<OleDate> selectedSlot() const;
    // TopIndex after scrolling by `rows` rows of the grid, within the day, on the
    // view's date; none when it would not move.
    std::optional<OleDate> topAfterScroll(int rows) const;
    // The slots of the day, as rows a scroll bar counts: the first row shown and
    // the last row that can stand at the top.
    int topRow() const { return topMinute() / slotMinutes(); }
    int lastTopRow() const;
    // The pixel point a gesture aims at: the centre of an appointment's rectangle,
    // or the free strip beside the appointments on the row of a time. None when
    // the target is outside the visible grid.
    std::optional<std::pair<int, int>> pointOfAppointment(std::int32_t key) const;
    std::optional<std::pair<int, int>> pointOfTime(OleDate t) const;
    std::string focusName() const { return "dvwResource(" + std::to_string(index_) + ")"; }

    // The user's gestures. Each raises the view's events in the order a real view
    // does; a gesture on something that is not there returns false and does nothing.
    bool userClickAt(OleDate t, bool right = false);
    bool userClickOn(std::int32_t key, bool right = false);
    // A press at a pixel point, as a window delivers it: on an appointment it is
    // a click on that appointment, on a free part a click on the slot of its row.
    // MouseButton carries the point itself.
    bool userPressAt(int x, int y, bool right = false);
    // A double click at a point: on an appointment, its click and then DblClick;
    // on a free part only the click of the slot.
    bool userDblClickAt(int x, int y);
    bool userDblClickOn(std::int32_t key);
    void userSlot(OleDate t);
    bool userType(OleDate t, std::string text);
    bool userResize(std::int32_t key, OleDate end);
    bool userDelete(std::int32_t key);
    bool userDrag(std::int32_t key, PVDayView& target, OleDate start);
    void userScroll(OleDate t);
    void userDate(OleDate d);

private:
    friend class AppointmentSet;
    friend Hooks& hooksOf(PVDayView& view);
    Hooks hooks_;
    static constexpr int kMinutesPerDay = 1440;
    static constexpr std::size_t kCells = 288; // five-minute cells of a day

    // A date the runtime can place (years 100 to 9999); anything else, NaN
    // included, fails with InvalidProcedureCall.
    static OleDate checkedDate(OleDate d);
    static bool validDate(OleDate d);
    // The day of `day` at the time of day of `timeOfDay`.
    static OleDate onDay(OleDate day, OleDate timeOfDay);
    static int pixelsOf(float twips);
    // Raises an event through a copy of its handler, so a handler may replace itself.
    template <class... Params, class... Args>
    static void raise(const std::function<void(Params...)>& event, Args&&... args) {
        if (!event) return;
        const std::function<void(Params...)> handler = event;
        handler(std::forward<Args>(args)...);
    }

    static int cellOf(OleDate t);
    void takeFocus();
    // MouseButton of a press at a pixel point of the view.
    void pressButton(bool right, std::pair<int, int> point);
    void selectSlotOnly(OleDate t);
    int minuteOnGrid(OleDate t) const; // minutes of t's time of day from the top row
    // The view's own removal: BeforeRemove, then the appointment goes unless the
    // handler called Undo. `user` marks a removal the user's gesture asked for.
    bool runRemove(const AppointmentRef& app, bool user);

    std::pair<int, int> slotCells(OleDate t) const; // first and last cell of the slot holding t
    int slotStartMinute(OleDate t) const;
    OleDate slotStartOnCurrentDate(OleDate t) const;
    int topMinute() const;
    int gridBottom() const; // pixels of the rows shown, from y = 0
    // The two kinds of click, at the point a gesture aims at.
    bool clickSlot(OleDate t, std::pair<int, int> point, bool right);
    bool clickAppointment(const AppointmentRef& app, std::pair<int, int> point, bool right);
    const Box* boxOf(const std::vector<Box>& boxes, std::int32_t key) const;
    // Minutes from the top row to the start and end of a drawn appointment.
    std::optional<std::pair<std::int64_t, std::int64_t>> spanOf(const Appointment& app) const;
    void raiseWithUndo(std::function<void()> record, const std::function<void()>& fire);
    std::function<void()> removalOf(const AppointmentRef& app);
    // Runs one raise of a user's gesture. A run-time error that a handler left
    // untrapped goes to the container, and the gesture goes on with its next
    // event, as a real view keeps raising them.
    void fromUser(const std::function<void()>& fire);
    // Raises `fire` as the user's gesture when `user`, else as a plain raise from code.
    void raiseAs(bool user, const std::function<void()>& fire) { user ? fromUser(fire) : fire(); }
    void moveDate(OleDate d, bool user);
    // A press of the mouse at a pixel of the grid; `twice` for the second press of a double click.
    bool pressAt(int x, int y, bool right, bool twice);
    Container::GestureScope reportGesture(const std::string& action, const std::string& rest,
                                          std::vector<Variant> values);
    void moveTop(OleDate t, bool user);

    Platform& platform_;
    std::int16_t index_;
    AppointmentSet set_;
    OleDate currentDate_;
    std::int32_t increments_ = 1;
    OleDate businessBegin_, businessEnd_, dayStart_, dayEnd_;
    std::int32_t dayBackColor_ = kDefaultDayBackColor;
    OleDate topIndex_;
    std::array<bool, 288> selected_{};
    std::array<std::int32_t, 288> colors_{};

    // What Undo takes back: set just before an event that may be refused.
    std::function<void()> undo_;
};
// A shared reference to a day view.
using DayViewRef = std::shared_ptr<PVDayView>;


} // namespace quorvane
