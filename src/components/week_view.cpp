#include <QuorvaneScheduler/components/week_view.h>
#include <QuorvaneScheduler/errors.h>

#include <cctype>
#include <cmath>

namespace quorvane {

namespace {

constexpr const char* kWeekdays[] = {"Monday", "Tuesday",  "Wednesday", "Thursday",
                                     "Friday", "Saturday", "Sunday"};

bool sameName(const std::string& a, const char* b) {
    std::size_t i = 0;
    for (; i < a.size() && b[i]; ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return i == a.size() && !b[i];
}

// Days since Monday of the date's week.
int daysSinceMonday(OleDate d) {
    // 30 December 1899, day 0, was a Saturday.
    const auto day = static_cast<long long>(std::floor(datePart(d).value));
    return static_cast<int>(((day + 5) % 7 + 7) % 7);
}

} // namespace

const char* weekdayName(int mondayFirst) {
    if (mondayFirst < 1 || mondayFirst > 7)
        throw InvalidProcedureCall("no weekday " + std::to_string(mondayFirst));
    return kWeekdays[mondayFirst - 1];
}

IGWeekView::IGWeekView(Platform& platform) : weekDate_(platform.clock.today()) {
    for (int k = 0; k < kDays; ++k) {
        days_[static_cast<std::size_t>(k)] =
            std::make_shared<PVDayView>(platform, static_cast<std::int16_t>(k));
        days_[static_cast<std::size_t>(k)]->weekDay = true;
    }
    setWeekDate(weekDate_);
}

void IGWeekView::setWeekDate(OleDate d) {
    const OleDate monday = addDays(datePart(d), -daysSinceMonday(d));
    for (int k = 0; k < kDays; ++k)
        days_[static_cast<std::size_t>(k)]->setCurrentDate(addDays(monday, k));
    weekDate_ = datePart(d);
}

const DayViewRef& IGWeekView::Days(const Variant& key) const {
    if (const std::string* name = key.asString()) {
        for (int k = 0; k < kDays; ++k)
            if (sameName(*name, kWeekdays[k])) return days_[static_cast<std::size_t>(k)];
        throw InvalidProcedureCall("no day \"" + name->substr(0, 32) + "\" in the week");
    }
    if (key.type() == VariantType::Empty || key.type() == VariantType::Object ||
        key.type() == VariantType::Date)
        throw InvalidProcedureCall("a day is a number or a weekday's name");
    const std::int16_t number = key.toInteger();
    if (number < 0 || number >= kDays)
        throw SubscriptOutOfRange("no day " + std::to_string(number) + " in the week");
    return days_[static_cast<std::size_t>(number)];
}

} // namespace quorvane
