// Where things stand on a day view, in its own pixels: rows of the grid, the
// boxes of the appointments with their lanes, and the inverse mappings from a
// pixel to a time that a window needs to turn a pointer into a gesture. Both
// directions round the same way, so a point that one function gives is found
// again by the other.

#include <QuorvaneScheduler/components/day_view.h>

#include "runtime/arith.h"

#include <algorithm>

namespace quorvane {


int PVDayView::visibleRows() const { return pixelsOf(Height) / kRowPixels; }

int PVDayView::topMinute() const {
    // TopIndex is stored as given; a value the runtime cannot place shows the
    // grid from midnight rather than failing every gesture.
    if (!validDate(topIndex_)) return 0;
    return minuteOfDay(topIndex_) / slotMinutes() * slotMinutes();
}

int PVDayView::minuteOnGrid(OleDate t) const { return minuteOfDay(checkedDate(t)) - topMinute(); }

int PVDayView::gridRows() const {
    // The grid ends with the day even when the view is taller.
    const int rowsLeft = (kMinutesPerDay - topMinute()) / slotMinutes();
    return std::min(visibleRows(), rowsLeft);
}

int PVDayView::gridBottom() const { return gridRows() * kRowPixels; }

int PVDayView::lastTopRow() const { return std::max(0, kMinutesPerDay / slotMinutes() - visibleRows()); }

std::pair<int, int> PVDayView::appointmentColumns() const {
    const int width = pixelsOf(Width);
    if (width <= kRulerPixels) return {kRulerPixels, kRulerPixels};
    return {kRulerPixels, kRulerPixels + 3 * (width - kRulerPixels) / 4};
}

std::optional<std::pair<std::int64_t, std::int64_t>> PVDayView::spanOf(const Appointment& app) const {
    if (!validDate(app.StartDateTime) || !validDate(app.EndDateTime)) return std::nullopt;
    if (datePart(app.StartDateTime) != currentDate_) return std::nullopt;
    const auto endDay = static_cast<std::int64_t>(datePart(app.EndDateTime).value - currentDate_.value);
    const std::int64_t top = topMinute();
    const std::int64_t start = minuteOfDay(app.StartDateTime) - top;
    const std::int64_t end = endDay * kMinutesPerDay + minuteOfDay(app.EndDateTime) - top;
    if (end <= start) return std::nullopt;
    return std::make_pair(start, end);
}

// Edges are compared in pixels times slot minutes, so that no rounding decides
// what is visible: pixel row y lies in an appointment of minutes [a, b) from the
// top when a * 20 <= y * s < b * 20, which the hit test then reads off the box.
std::vector<PVDayView::Box> PVDayView::appointmentBoxes() const {
    struct Placed {
        std::size_t order;
        std::int64_t start, end;
        std::size_t lane = 0, lanes = 1;
    };
    std::vector<Placed> placed;
    const std::vector<AppointmentRef>& items = set_.items();
    for (std::size_t i = 0; i < items.size(); ++i)
        if (const auto span = spanOf(*items[i])) placed.push_back({i, span->first, span->second});
    std::stable_sort(placed.begin(), placed.end(),
                     [](const Placed& a, const Placed& b) { return a.start < b.start; });

    // A cluster is a run of appointments that overlap one another in a chain;
    // each takes the first lane free at its start, and the cluster's lanes share
    // the width.
    for (std::size_t begin = 0; begin < placed.size();) {
        std::vector<std::int64_t> laneEnds;
        std::int64_t clusterEnd = placed[begin].end;
        std::size_t end = begin;
        for (; end < placed.size() && (end == begin || placed[end].start < clusterEnd); ++end) {
            Placed& p = placed[end];
            const auto free = std::find_if(laneEnds.begin(), laneEnds.end(),
                                           [&](std::int64_t laneEnd) { return laneEnd <= p.start; });
            p.lane = static_cast<std::size_t>(free - laneEnds.begin());
            if (free == laneEnds.end())
                laneEnds.push_back(p.end);
            else
                *free = p.end;
            clusterEnd = std::max(clusterEnd, p.end);
        }
        for (std::size_t k = begin; k < end; ++k)
            placed[k].lanes = laneEnds.size();
        begin = end;
    }
    std::sort(placed.begin(), placed.end(),
              [](const Placed& a, const Placed& b) { return a.order < b.order; });

    const auto [left, right] = appointmentColumns();
    const std::int64_t s = slotMinutes();
    const std::int64_t limit = std::int64_t{gridBottom()} * s;
    std::vector<Box> boxes;
    for (const Placed& p : placed) {
        const std::int64_t top = std::max<std::int64_t>(p.start * kRowPixels, 0);
        const std::int64_t bottom = std::min<std::int64_t>(p.end * kRowPixels, limit);
        const auto firstPixel = static_cast<int>(ceilDiv(top, s));
        const auto endPixel = static_cast<int>(ceilDiv(bottom, s));
        const auto lanes = static_cast<std::int64_t>(p.lanes), lane = static_cast<std::int64_t>(p.lane);
        const auto x0 = static_cast<int>(left + (right - left) * lane / lanes);
        const auto x1 = static_cast<int>(left + (right - left) * (lane + 1) / lanes);
        if (top >= bottom || firstPixel >= endPixel || x0 >= x1) continue;
        boxes.push_back({items[p.order], x0, firstPixel, x1, endPixel, p.end * kRowPixels <= limit});
    }
    return boxes;
}

const PVDayView::Box* PVDayView::boxOf(const std::vector<Box>& boxes, std::int32_t key) const {
    for (const Box& box : boxes)
        if (box.app->Key() == key) return &box;
    return nullptr;
}

std::optional<std::pair<int, int>> PVDayView::pointOfAppointment(std::int32_t key) const {
    const std::vector<Box> boxes = appointmentBoxes();
    const Box* box = boxOf(boxes, key);
    if (!box) return std::nullopt;
    // The middle of the appointment's rows as they stand, before any pixel
    // rounding, and then the pixel row that holds it.
    const auto span = spanOf(*box->app);
    const std::int64_t s = slotMinutes();
    const std::int64_t top = std::max<std::int64_t>(span->first * kRowPixels, 0);
    const std::int64_t bottom =
        std::min<std::int64_t>(span->second * kRowPixels, std::int64_t{gridBottom()} * s);
    const std::int64_t y = std::clamp<std::int64_t>((top + bottom) / (2 * s), box->top, box->bottom - 1);
    return std::make_pair((box->left + box->right) / 2, static_cast<int>(y));
}

std::optional<std::pair<int, int>> PVDayView::pointOfTime(OleDate t) const {
    const int minute = minuteOnGrid(t);
    const int width = pixelsOf(Width);
    const int stripLeft = appointmentColumns().second;
    if (minute < 0 || stripLeft >= width) return std::nullopt;
    const int row = minute / slotMinutes();
    if ((row + 1) * kRowPixels > gridBottom()) return std::nullopt;
    return std::make_pair((stripLeft + width) / 2, row * kRowPixels + kRowPixels / 2);
}

int PVDayView::pixelOfMinute(int minuteOfDay) const {
    return static_cast<int>(ceilDiv(std::int64_t{minuteOfDay - topMinute()} * kRowPixels, slotMinutes()));
}

std::optional<OleDate> PVDayView::timeAtPixel(int y) const {
    if (y < 0 || y >= gridBottom()) return std::nullopt;
    const int minute = topMinute() + y * slotMinutes() / kRowPixels;
    return onDay(currentDate_, makeTime(minute / 60, minute % 60, 0));
}

std::optional<OleDate> PVDayView::slotAtPixel(int y) const {
    if (y < 0 || y >= gridBottom()) return std::nullopt;
    const int minute = topMinute() + y / kRowPixels * slotMinutes();
    return onDay(currentDate_, makeTime(minute / 60, minute % 60, 0));
}

// The band shrinks on a short appointment, so that a press on it can still
// take the appointment itself.
AppointmentRef PVDayView::resizeEdgeAt(int x, int y) const {
    for (const Box& box : appointmentBoxes()) {
        const int band = std::min(kResizeEdgePixels, (box.bottom - box.top) / 2);
        if (box.endShown && box.left <= x && x < box.right && box.bottom - band <= y && y < box.bottom)
            return box.app;
    }
    return nullptr;
}

std::optional<OleDate> PVDayView::resizeEndAt(std::int32_t key, int y) const {
    const AppointmentRef app = set_.Item(key);
    const auto span = app ? spanOf(*app) : std::nullopt;
    const int rows = gridRows();
    if (!span || rows == 0) return std::nullopt;
    const std::int64_t s = slotMinutes();
    const std::int64_t pointer = std::clamp(y, 0, rows * kRowPixels);
    const std::int64_t nearest = floorDiv(pointer + kRowPixels / 2, kRowPixels) * s;
    const std::int64_t firstAfterStart = (floorDiv(span->first, s) + 1) * s;
    const std::int64_t lowest = std::max<std::int64_t>(firstAfterStart, 0);
    const std::int64_t highest = (rows - 1) * s; // the end's own row must be shown
    if (lowest > highest) return std::nullopt;
    const auto minute = static_cast<int>(topMinute() + std::clamp(nearest, lowest, highest));
    return onDay(currentDate_, makeTime(minute / 60, minute % 60, 0));
}

std::optional<int> PVDayView::grabMinutes(std::int32_t key, int y) const {
    const AppointmentRef app = set_.Item(key);
    const auto span = app ? spanOf(*app) : std::nullopt;
    if (!span) return std::nullopt;
    return static_cast<int>(floorDiv(std::int64_t{y} * slotMinutes(), kRowPixels) - span->first);
}

std::optional<OleDate> PVDayView::dropStartAt(int y, int grab) const {
    const int rows = gridRows();
    if (rows == 0) return std::nullopt;
    const std::int64_t s = slotMinutes();
    const std::int64_t minute = floorDiv(std::int64_t{y} * s, kRowPixels) - grab;
    const std::int64_t row = std::clamp<std::int64_t>(floorDiv(minute + s / 2, s), 0, rows - 1);
    const auto start = static_cast<int>(topMinute() + row * s);
    return onDay(currentDate_, makeTime(start / 60, start % 60, 0));
}

std::optional<OleDate> PVDayView::selectedSlot() const {
    for (int minute = 0; minute < kMinutesPerDay; minute += slotMinutes()) {
        const OleDate slot = makeTime(minute / 60, minute % 60, 0);
        if (TimeSlotSelected(slot)) return onDay(currentDate_, slot);
    }
    return std::nullopt;
}

std::optional<OleDate> PVDayView::topAfterScroll(int rows) const {
    // A grid scrolled past its last top row by code goes no further down, but
    // comes back up row by row.
    const int row =
        rows > 0 ? std::min(topRow() + rows, std::max(lastTopRow(), topRow())) : std::max(topRow() + rows, 0);
    if (row == topRow()) return std::nullopt;
    const int minute = row * slotMinutes();
    return onDay(currentDate_, makeTime(minute / 60, minute % 60, 0));
}

} // namespace quorvane
