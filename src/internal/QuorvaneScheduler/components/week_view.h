#pragma once
// The week view: seven days of one resource, each a day object with the day
// view's appointment set and grid. A day is found by its number, 0 for Monday to
// 6 for Sunday, or by the full English name of its weekday.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/components/day_view.h>

#include <array>

namespace quorvane {

class QUORVANE_EXPORT IGWeekView {
public:
    static constexpr int kDays = 7;

    explicit IGWeekView(Platform& platform);

    // The date whose week is shown; the days take the dates of its week, Monday first.
    OleDate WeekDate() const { return weekDate_; }
    void setWeekDate(OleDate d);

    // A number outside 0 to 6 is SubscriptOutOfRange; a text that names no
    // weekday, or any other kind of key, is InvalidProcedureCall.
    const DayViewRef& Days(const Variant& key) const;
    const DayViewRef& day(int number) const { return days_.at(static_cast<std::size_t>(number)); }

private:
    OleDate weekDate_;
    std::array<DayViewRef, kDays> days_;
};

// The platform's full weekday name of a day number, Monday as day 1: "Monday" for 1.
QUORVANE_EXPORT const char* weekdayName(int mondayFirst);

} // namespace quorvane
