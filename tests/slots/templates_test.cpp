#include <QuorvaneScheduler/control_internals.h>
#include "control/control_fixture.h"

using namespace quorvane;
using SlotFixture = quorvane::test::ControlFixture;

namespace {

constexpr std::int32_t kRed = 255, kGreen = 65280, kBare = 49344;

struct TemplateTest : SlotFixture {
    // The colour of every five-minute cell from `from` up to `to`, excluded, when
    // they all share one; -1 when they differ.
    std::int32_t colourOf(int index, OleDate from, OleDate to) {
        const std::int32_t first = view(index).TimeSlotColor(from);
        for (OleDate t = from; t < to; t = addMinutes(t, 5))
            if (view(index).TimeSlotColor(t) != first) return -1;
        return first;
    }
    const Variant& cell(int column, int field, int row) const {
        return (*stateOf(*control).varResourceTemplates)[static_cast<std::size_t>(
            column)][static_cast<std::size_t>(field)][static_cast<std::size_t>(row)];
    }
    std::int16_t count(int column) const {
        return stateOf(*control).intTemplateCount[static_cast<std::size_t>(column)];
    }
    void paint(OleDate start, OleDate end, std::string colour, const std::string& number = "1") {
        control->AddExistingTemplate(start, end, "", colour, number);
    }
};

TEST_F(TemplateTest, ColourStringsReadRedGreenBlue) {
    // The text, its value (none: the conversion fails), and the caller's string afterwards.
    const std::tuple<const char*, std::optional<std::int32_t>, const char*> rows[] = {
        // clang-format off
        {"C0C000", kBare, "C0C000"}, {"#c0c000", kBare, "c0c000"}, {"#C0C000FFEE", kBare, "C0C000FFEE"},
        {"#000001", 65536, "000001"}, {"#12345", 0x12 + 256 * 0x34 + 65536 * 5, "12345"},
        {"##C0C000", {}, "#C0C000"}, {"#C0C0", {}, "C0C0"}, {"#GG0000", {}, "GG0000"}, {"#", {}, ""}, {"", {}, ""},
        // clang-format on
    };
    for (const auto& [given, expected, left] : rows) {
        std::string text = given;
        std::optional<std::int32_t> value;
        EXPECT_EQ(failureOf([&] { value = control->vbRGBVal(text); }),
                  expected ? std::nullopt : std::optional(ErrorKind::TypeMismatch))
            << given;
        EXPECT_EQ(value, expected) << given;
        EXPECT_EQ(text, left) << given;
    }
}

TEST_F(TemplateTest, PaintingCutsBlocksToTheFiveMinuteGrid) {
    struct Row {
        const char* name;
        OleDate start, end;
        OleDate from, to; // the cells painted, `to` excluded
    };
    const Row rows[] = {
        {"9:00 to 9:05 is one cell", at(9, 0), at(9, 5), at(9, 0), at(9, 5)},
        {"an hour ends a minute early", at(9, 0), at(10, 0), at(9, 0), at(10, 0)},
        {"midnight printed in 8 characters", makeDate(2008, 1, 1), makeDateTime(2008, 1, 1, 1, 0, 0),
         at(0, 0), at(1, 0)},
        {"midnight printed in 10 characters", makeDate(2008, 10, 15), makeDateTime(2008, 10, 15, 1, 0, 0),
         at(0, 0), at(1, 0)},
        {"a day from midnight to midnight", makeDate(2008, 1, 15), makeDate(2008, 1, 15), at(0, 0),
         makeDate(2008, 1, 16)},
        {"times without a date", makeTime(14, 0, 0), makeTime(14, 30, 0), at(14, 0), at(14, 30)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        control->RefreshTimeslots("1");
        paint(row.start, row.end, "#00FF00");
        EXPECT_EQ(colourOf(0, row.from, row.to), kGreen);
        if (row.from != at(0, 0)) {
            EXPECT_NE(view(0).TimeSlotColor(addMinutes(row.from, -5)), kGreen);
        }
        if (row.to < makeDate(2008, 1, 16)) {
            EXPECT_NE(view(0).TimeSlotColor(row.to), kGreen);
        }
    }
    EXPECT_TRUE(log.empty()) << "painting tells the host nothing";
}

TEST_F(TemplateTest, CallersVariablesComeBackChanged) {
    OleDate end = at(10, 0);
    std::string colour = "#FF0000";
    control->AddExistingTemplate(at(9, 0), end, "", colour, "1");
    control->AddExistingTemplate(at(9, 0), end, "", colour, "1");
    EXPECT_EQ(end, at(9, 58));
    EXPECT_EQ(colour, "FF0000");
}

TEST_F(TemplateTest, PaintingLeavesTheSlotLengthTheListShows) {
    const std::pair<const char*, std::int32_t> rows[] = {
        {"60", 0}, {"30", 1}, {"15", 2}, {"10", 3}, {"5", 4}};
    for (const auto& [minutes, code] : rows) {
        widgetsOf(*control).cmbDayIncrement[0].setText(minutes);
        paint(at(9, 0), at(9, 30), "#FF0000");
        EXPECT_EQ(view(0).Increments(), code) << minutes;
    }
    // A list without a selection has nothing to restore from.
    view(1).setIncrements(1);
    paint(at(9, 0), at(9, 30), "#FF0000", "2");
    EXPECT_EQ(view(1).Increments(), 4);
}

TEST_F(TemplateTest, FailedPaintsLeaveTheGridAlone) {
    // The colour is read first and the column last, so a bad column still moves
    // the caller's end and takes its "#": colour, column, failure, then the
    // caller's colour and end.
    const std::tuple<const char*, const char*, ErrorKind, const char*, OleDate> rows[] = {
        {"#C0C0", "1", ErrorKind::TypeMismatch, "C0C0", at(10, 0)},
        {"#FF0000", "11", ErrorKind::SubscriptOutOfRange, "FF0000", at(9, 59)},
        {"#FF0000", "0", ErrorKind::SubscriptOutOfRange, "FF0000", at(9, 59)},
        {"#FF0000", "one", ErrorKind::TypeMismatch, "FF0000", at(9, 59)},
    };
    view(0).setIncrements(1);
    for (const auto& [given, number, kind, colourLeft, endLeft] : rows) {
        SCOPED_TRACE(number);
        std::string colour = given;
        OleDate end = at(10, 0);
        EXPECT_EQ(failureOf([&] { control->AddExistingTemplate(at(9, 0), end, "", colour, number); }), kind);
        EXPECT_EQ(colour, colourLeft);
        EXPECT_EQ(end, endLeft);
        for (int i = 0; i < kColumns; ++i)
            EXPECT_EQ(colourOf(i, at(0, 0), makeDate(2008, 1, 16)), PVDayView::kDefaultDayBackColor);
        EXPECT_EQ(view(0).Increments(), 1);
    }
}

TEST_F(TemplateTest, WipeLeavesTheBareGridAndTheStore) {
    control->AddResourceTemplate(at(9, 0), at(10, 0), "Surgery", "#FF0000", "4", "Y");
    widgetsOf(*control).cmbDayIncrement[3].setText("15");
    control->wipeTemplates(3);
    EXPECT_THROW(control->wipeTemplates(1 << 30), SubscriptOutOfRange);
    EXPECT_THROW(control->wipeTemplates(-(1 << 30)), SubscriptOutOfRange);
    EXPECT_EQ(colourOf(3, at(0, 0), makeDate(2008, 1, 16)), kBare);
    EXPECT_EQ(count(3), 1);
    EXPECT_EQ(view(3).Increments(), 2);
    EXPECT_EQ(colourOf(2, at(0, 0), makeDate(2008, 1, 16)), PVDayView::kDefaultDayBackColor);
}

// Only "Y" paints when a template is stored; the store keeps what the host gave.
TEST_F(TemplateTest, ReplayPaintsTheStoreAgainInItsOrder) {
    control->AddResourceTemplate(at(9, 0), at(11, 0), "Surgery", "#FF0000", "2", "N");
    control->AddResourceTemplate(at(10, 0), at(12, 0), "Lunch", "#00FF00", "2", "y");
    EXPECT_EQ(colourOf(1, at(0, 0), makeDate(2008, 1, 16)), PVDayView::kDefaultDayBackColor);
    EXPECT_EQ(cell(1, 4, 0), Variant("2"));
    EXPECT_EQ(cell(1, 5, 0), Variant());
    paint(at(14, 0), at(15, 0), "#0000FF", "2"); // painted, never stored
    for (int run = 0; run < 2; ++run) {
        SCOPED_TRACE(run);
        control->replayTemplates(1);
        EXPECT_EQ(colourOf(1, at(0, 0), at(9, 0)), kBare);
        EXPECT_EQ(colourOf(1, at(9, 0), at(10, 0)), kRed);
        EXPECT_EQ(colourOf(1, at(10, 0), at(12, 0)), kGreen) << "the later row wins the overlap";
        EXPECT_EQ(colourOf(1, at(12, 0), makeDate(2008, 1, 16)), kBare) << "the unstored block is gone";
        EXPECT_EQ(count(1), 2);
        EXPECT_EQ(cell(1, 1, 0), Variant(at(11, 0)));
        EXPECT_EQ(cell(1, 3, 1), Variant("#00FF00"));
    }
}

// A column holds 101 templates. The 102nd is refused before anything is written:
// the store, the count and the grid stay as the 101st left them, and the other
// columns keep their own stores. A column out of range stores nothing.
TEST_F(TemplateTest, TheHundredAndSecondTemplateIsRefused) {
    for (int i = 1; i <= kTemplatesPerColumn; ++i)
        control->AddResourceTemplate(at(8, 0), at(9, 0), "Block " + std::to_string(i), "#FF0000", "4", "N");
    EXPECT_EQ(count(3), 101);
    EXPECT_EQ(failureOf([&] {
                  control->AddResourceTemplate(at(9, 0), at(10, 0), "Block 102", "#00FF00", "4", "Y");
              }),
              ErrorKind::SubscriptOutOfRange);
    EXPECT_EQ(count(3), 101);
    EXPECT_EQ(cell(3, 2, 100), Variant("Block 101"));
    EXPECT_EQ(cell(3, 0, 100), Variant(at(8, 0)));
    EXPECT_EQ(view(3).TimeSlotColor(at(9, 0)), view(3).DayBackColor()) << "nothing painted";
    EXPECT_EQ(view(3).Increments(), 1);
    for (const char* number : {"11", "0", "one"})
        EXPECT_NE(
            failureOf([&] { control->AddResourceTemplate(at(9, 0), at(10, 0), "", "#FF0000", number, "Y"); }),
            std::nullopt);
    control->AddResourceTemplate(at(9, 0), at(10, 0), "Block 1", "#00FF00", "5", "Y");
    EXPECT_EQ(count(4), 1);
    EXPECT_EQ(count(0) + count(9), 0);
    EXPECT_EQ(view(4).TimeSlotColor(at(9, 0)), kGreen);
}

// A colour that does not convert is stored and counted, and fails its paint.
TEST_F(TemplateTest, ReplayStopsAtAStoredColourThatDoesNotConvert) {
    control->AddResourceTemplate(at(9, 0), at(10, 0), "", "#FF0000", "1", "N");
    EXPECT_EQ(failureOf([&] { control->AddResourceTemplate(at(10, 0), at(11, 0), "", "red", "1", "Y"); }),
              ErrorKind::TypeMismatch);
    EXPECT_EQ(view(0).TimeSlotColor(at(10, 0)), PVDayView::kDefaultDayBackColor);
    control->AddResourceTemplate(at(11, 0), at(12, 0), "", "#00FF00", "1", "N");
    EXPECT_EQ(failureOf([&] { control->replayTemplates(0); }), ErrorKind::TypeMismatch);
    EXPECT_EQ(colourOf(0, at(9, 0), at(10, 0)), kRed);
    EXPECT_EQ(colourOf(0, at(10, 0), at(12, 0)), kBare);
    EXPECT_EQ(count(0), 3);
    EXPECT_EQ(cell(0, 3, 1), Variant("red"));
}

} // namespace
