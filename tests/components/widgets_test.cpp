#include <QuorvaneScheduler/components/day_view.h>
#include <QuorvaneScheduler/components/widgets.h>
#include <QuorvaneScheduler/errors.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

TEST(PickList, SelectionFailuresAndClickCounts) {
    PickList list;
    for (const char* item : {"a", "b", "c", "b"})
        list.addItem(item);
    int clicks = 0;
    list.onClick = [&] { ++clicks; };
    // "index:text:clicks since the last look"
    auto state = [&] {
        return std::to_string(list.listIndex()) + ":" + list.text() + ":" +
               std::to_string(std::exchange(clicks, 0));
    };
    // The scenarios show picks by text and index; here the edges of the index.
    list.setListIndex(3);
    EXPECT_THROW(list.setListIndex(4), InvalidPropertyValue);
    EXPECT_THROW(list.setListIndex(-2), InvalidPropertyValue);
    EXPECT_EQ(state(), "3:b:1");
    list.clear();
    EXPECT_EQ(state() + list.list(0), "-1::0");

    // A handler may refill its own list and drop itself while it runs.
    list.addItem("one");
    std::string seen;
    list.onClick = [&list, &seen, tag = std::string("ran")] {
        list.clear(), list.addItem("fresh"), list.onClick = nullptr;
        seen += tag;
    };
    list.setText("one");
    EXPECT_EQ(seen + list.text() + list.list(0), "ranfresh");
}

// A one-shot handler clears its own hook and goes on using what it captured;
// each site runs it from a copy (the sanitizer build sees any that does not).
TEST(Hooks, AOneShotHandlerMayClearItselfAtEverySite) {
    std::string seen;
    auto once = [&seen](auto& hook) {
        return [&hook, &seen, word = std::string(64, 'x')](auto&&...) {
            hook = nullptr;
            seen += word.substr(0, 1);
        };
    };
    Button button;
    button.onClick = once(button.onClick);
    button.click();
    PopupMenu menu;
    menu.onPopup = once(menu.onPopup);
    menu.popup();
    Container container;
    container.onPropertyChanged = once(container.onPropertyChanged);
    container.propertyChanged("Tag");
    container.onUntrappedError = once(container.onUntrappedError);
    container.untrappedError(Overflow("x"));
    EXPECT_EQ(seen, "xxxx");
    EXPECT_FALSE(button.onClick || menu.onPopup || container.onPropertyChanged || container.onUntrappedError);
}

// Typing stops at the field's length in characters, never inside one.
TEST(TextField, TypingKeepsToLengthInCharacters) {
    TextField f;
    f.maxLength = 3;
    f.userType("\xC3\xA9t\xC3\xA9s");
    EXPECT_EQ(f.text, "\xC3\xA9t\xC3\xA9");
    f.multiLine = true;
    f.userType("a\r\nb");
    EXPECT_EQ(f.text, "a\r\n");
}

TEST(ScrollBar, MaxPullsValueDownAndValueChecksRange) {
    ScrollBar bar;
    std::string changes; // the max and value each onChange saw
    bar.onChange = [&] { changes += std::to_string(bar.max) + "/" + std::to_string(bar.value) + " "; };
    bar.setValue(4);
    bar.setValue(4);
    EXPECT_THROW(bar.setValue(6), InvalidPropertyValue);
    EXPECT_THROW(bar.setValue(0), InvalidPropertyValue);
    bar.setMax(9);
    bar.setMax(2);
    bar.setMax(2);
    EXPECT_EQ(changes, "5/4 2/2 ");
    EXPECT_EQ(bar.value, 2);
}

TEST(Calendar, MarksByDayAndOnlyAPickRaisesChange) {
    Platform platform;
    platform.clock.setToday(makeDateTime(2008, 1, 15, 13, 0, 0));
    PVCalendar cal(platform);
    EXPECT_EQ(cal.Value(), makeDate(2008, 1, 15));
    std::vector<OleDate> changes;
    cal.Change = [&](OleDate d) { changes.push_back(d); };
    for (const OleDate d :
         {makeDateTime(2008, 2, 1, 9, 30, 0), makeDate(2008, 1, 20), makeDate(1899, 12, 29)})
        cal.setDateSelected(d, true);
    cal.setDateSelected(makeDate(2008, 1, 20), false);
    cal.setDateSelected(makeDate(2008, 3, 3), false);
    EXPECT_TRUE(cal.DateSelected(makeDateTime(2008, 2, 1, 23, 0, 0)));
    EXPECT_FALSE(cal.DateSelected(makeDate(2008, 1, 20)));
    EXPECT_EQ(cal.markedDates(), (std::vector<OleDate>{makeDate(1899, 12, 29), makeDate(2008, 2, 1)}));
    EXPECT_THROW(cal.setDateSelected(OleDate(1e300), true), InvalidProcedureCall);
    EXPECT_TRUE(changes.empty()) << "only the user's pick raises Change";
    platform.clock.useSystemDate();
    EXPECT_EQ(timePart(platform.clock.today()), OleDate(0.0));
}

} // namespace
} // namespace quorvane
