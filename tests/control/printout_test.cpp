// The day's description for the printout: only hours of the business times, two
// digits for month and day, the slot length at its natural width.

#include "control/control_fixture.h"

namespace quorvane {
namespace {

using PrintoutTest = test::ControlFixture;

TEST_F(PrintoutTest, DescribesTheFocusedColumnsDay) {
    control->setResourceGroupViews("10~Main~1~1");
    control->setResourceGroupDefaults("10~Main~501~1");
    control->setResourceGroups("10~Main~Y~501~Dr. Ortiz~Providers~Dentists");
    PVDayView& view = *control->widgets().dvwResource[0];
    const struct {
        std::int32_t increments;
        OleDate date, begin, end;
        const char* info;
    } rows[] = {
        {0, makeDate(2008, 1, 5), makeTime(8, 30, 0), makeTime(17, 0, 0), "20080105~60~08~17"},
        {4, makeDate(2008, 12, 25), makeTime(0, 0, 0), makeTime(0, 0, 0), "20081225~5~00~00"},
        {2, makeDate(987, 3, 9), makeTime(7, 59, 59), makeTime(23, 59, 0), "9870309~15~07~23"},
    };
    for (const auto& row : rows) {
        view.setIncrements(row.increments);
        view.setBusinessHours(row.begin, row.end);
        control->widgets().dvwResource[0]->setCurrentDate(row.date);
        log.clear();
        control->mnoPrint_Click();
        EXPECT_EQ(log, (std::vector<std::string>{"event PrintDay(501, " + std::string(row.info) + ")"}));
    }
}

} // namespace
} // namespace quorvane
