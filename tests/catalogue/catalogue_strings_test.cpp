// The catalogue setters on their own. The group list's click handling is
// replaced by a recorder, so each test sees what assigning the strings does and
// nothing of the group selection behind it; the scenarios show the whole chain.

#include <QuorvaneScheduler/control_internals.h>
#include "control/control_fixture.h"

using namespace quorvane;
using quorvane::test::ControlFixture;

namespace {

const std::string kGroups = "10~Main Office~Y~501~Provider One~Staff~Surgery~~"
                            "10~Main Office~Y~502~Provider Two~Staff~Nursing~~"
                            "20~Annex~N~610~Room A~Rooms~Exam";

using Items = std::vector<std::string>;

Items itemsOf(const PickList& list) {
    Items out;
    for (int i = 0; i < list.listCount(); ++i)
        out.push_back(list.list(i));
    return out;
}

struct CatalogueTest : ControlFixture {
    CatalogueTest() { fresh(); }
    // A new control for the next row of a table of cases.
    void fresh() {
        control = std::make_unique<ctlScheduler>(platform);
        control->setEventSink(&sink);
        w().cmbResourceGroup.onClick = [this] { clicks.push_back(w().cmbResourceGroup.text()); };
        clicks.clear(), log.clear();
    }
    SchedulerWidgets& w() { return widgetsOf(*control); }
    const SchedulerState& s() { return stateOf(*control); }
    // An item in every column's lists, and a selection in the key list, which
    // has no handler: what an earlier group leaves behind.
    void fillColumnLists() {
        for (int i = 0; i < kColumns; ++i) {
            w().cmbResourceCatType[i].addItem("Old");
            w().cmbResource[i].addItem("Old One");
            w().cmbResourceValue[i].addItem("999");
            w().cmbResourceValue[i].setListIndex(0);
        }
    }
    int columnItems() {
        int n = 0;
        for (int i = 0; i < kColumns; ++i)
            n += w().cmbResourceCatType[i].listCount() + w().cmbResource[i].listCount() +
                 w().cmbResourceValue[i].listCount() + (w().cmbResourceValue[i].listIndex() + 1);
        return n;
    }

    Items clicks;
};

} // namespace

// The report comes first, so a string that fails is still reported, once.
TEST_F(CatalogueTest, EachSetterReportsUnderItsOwnNameBeforeItParses) {
    const std::tuple<const char*, std::string, std::optional<ErrorKind>> cases[] = {
        {"ResourceGroupViews", "10~Main Office~2~4", {}},
        {"ResourceGroupViews", "", ErrorKind::SubscriptOutOfRange},
        {"ResourceGroupDefaults", "10~Main Office~501~1", {}},
        {"ResourceGroupDefaults", "", ErrorKind::SubscriptOutOfRange},
        {"ResourceGroupDefaults", "10~Main Office~501", ErrorKind::SubscriptOutOfRange},
        {"ResourceGroups", kGroups, {}},
        {"ResourceGroups", "10~Main", ErrorKind::SubscriptOutOfRange},
        {"Resources", "1~2~3~4", {}},
        {"Resources", "", ErrorKind::SubscriptOutOfRange},
    };
    for (const auto& [name, text, error] : cases) {
        SCOPED_TRACE(std::string(name) + " = \"" + text + "\"");
        log.clear();
        EXPECT_EQ(failureOf([&] { invoke(name, MemberKind::PropertyLet, {Variant(text)}); }), error);
        EXPECT_EQ(log, Items{"changed " + std::string(name)});
    }
}

// The items of the group list, and the texts the list's click handling ran with.
TEST_F(CatalogueTest, GroupListHasOneItemPerRunAndSelectsTheLastFlaggedGroup) {
    // clang-format off
    const struct { const char* name; std::string groups; Items items, clicks; } cases[] = {
        {"one record not flagged", "10~Main~N~501~P~Staff~Surgery", {"Main"}, {}},
        {"flag compared exactly", "10~A~y~1~P~C~S~~20~B~Yes~2~P~C~S~~30~C~ Y~3~P~C~S", {"A", "B", "C"}, {}},
        {"last flagged group wins", "10~A~Y~1~P~C~S~~20~B~Y~2~P~C~S~~30~C~N~3~P~C~S", {"A", "B", "C"}, {"B"}},
        {"only the first row of a run counts", "10~A~N~1~P~C~S~~10~A~Y~2~P~C~S", {"A"}, {}},
        {"later rows of a run do not clear the flag", "10~A~Y~1~P~C~S~~10~A~N~2~P~C~S", {"A"}, {"A"}},
        {"a group back after a gap is listed again", "10~A~N~1~P~C~S~~20~B~N~2~P~C~S~~10~A~N~3~P~C~S", {"A", "B", "A"}, {}},
        {"runs are of identifiers, not names", "10~A~N~1~P~C~S~~11~A~N~2~P~C~S~~11~B~N~3~P~C~S", {"A", "A"}, {}},
        {"an empty first identifier matches the empty start", "~A~Y~1~P~C~S~~20~B~N~2~P~C~S", {"B"}, {}},
        {"surplus fields and an empty last field", "10~A~Y~1~P~C~S~x~y~~20~B~N~2~P~C~", {"A", "B"}, {"A"}},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fresh();
        control->setResourceGroups(c.groups);
        EXPECT_EQ(itemsOf(w().cmbResourceGroup), c.items);
        EXPECT_EQ(clicks, c.clicks);
        EXPECT_EQ(w().cmbResourceGroup.text(), c.clicks.empty() ? "" : c.clicks.back());
    }
    // The list is never emptied: the same groups again list their items twice.
    // Groups that fail to parse never reach it, even when they flag a default;
    // the table has taken its new size.
    fresh();
    control->setResourceGroups(kGroups);
    control->setResourceGroups(kGroups);
    EXPECT_EQ(failureOf([&] { control->setResourceGroups("40~Lab~Y~701~Bench~Lab~Blood~~50~Home~Y~801"); }),
              ErrorKind::SubscriptOutOfRange);
    EXPECT_EQ(s().arrResourceGroups.rows(), 2);
    EXPECT_EQ(itemsOf(w().cmbResourceGroup), (Items{"Main Office", "Annex", "Main Office", "Annex"}));
    EXPECT_EQ(clicks, (Items{"Main Office", "Main Office"}));
}

TEST_F(CatalogueTest, EmptyGroupsHideTheScrollBarAndTellTheUser) {
    for (bool loaded : {false, true}) {
        SCOPED_TRACE(loaded);
        fresh();
        if (loaded) control->setResourceGroups(kGroups);
        clicks.clear(), log.clear();
        EXPECT_NO_THROW(control->setResourceGroups(""));

        EXPECT_EQ(log,
                  (Items{"changed ResourceGroups", "msgbox You have not been assigned any scheduler groups.  "
                                                   "Please contact your System Administrator."}));
        EXPECT_FALSE(w().sbSchedule.visible);
        EXPECT_TRUE(clicks.empty());
        EXPECT_EQ(s().arrResourceGroups.isSet(), loaded);
        EXPECT_EQ(s().arrResourceGroups.rows(), loaded ? 3 : 0);
        EXPECT_EQ(itemsOf(w().cmbResourceGroup), (loaded ? Items{"Main Office", "Annex"} : Items{}));
    }
}

// The category list of all ten columns, built from runs of the current group's
// rows; the resource lists are emptied and nothing is selected.
TEST_F(CatalogueTest, CategoryListsFollowTheRunsOfTheCurrentGroup) {
    const std::string I = "     "; // the indent of a sub-type
    // clang-format off
    const struct { const char* name; std::string groups; Items categories; } cases[] = {
        {"the other group", "10~Main~N~1~P~Staff~Surgery~~20~Annex~Y~2~R~Rooms~Exam", {"Rooms", I + "Exam"}},
        {"a sub-type repeated in a run is listed once", "10~M~Y~1~P~Staff~Surgery~~10~M~Y~2~Q~Staff~Surgery",
         {"Staff", I + "Surgery"}},
        {"a category back after a gap is listed again",
         "10~M~Y~1~P~Staff~Surgery~~10~M~Y~2~R~Rooms~Exam~~10~M~Y~3~Q~Staff~Surgery",
         {"Staff", I + "Surgery", "Rooms", I + "Exam", "Staff", I + "Surgery"}},
        {"a sub-type back within its category is listed again",
         "10~M~Y~1~P~Staff~Surgery~~10~M~Y~2~Q~Staff~Nursing~~10~M~Y~3~S~Staff~Surgery",
         {"Staff", I + "Surgery", I + "Nursing", I + "Surgery"}},
        {"a new category starts its sub-types afresh", "10~M~Y~1~P~Staff~General~~10~M~Y~2~R~Rooms~General",
         {"Staff", I + "General", "Rooms", I + "General"}},
        {"a category and a sub-type of one text", "10~M~Y~1~P~Staff~Staff", {"Staff", I + "Staff"}},
        {"rows of other groups do not break a run",
         "10~M~Y~1~P~Staff~Surgery~~20~A~N~2~R~Rooms~Exam~~10~M~Y~3~Q~Staff~Surgery", {"Staff", I + "Surgery"}},
        {"an empty last sub-type lists nothing", "10~M~Y~1~P~Staff~Surgery~~10~M~Y~2~Q~Staff~", {"Staff", I + "Surgery"}},
        {"an empty last sub-type under a new category", "10~M~Y~1~P~Staff~Surgery~~10~M~Y~2~R~Rooms~",
         {"Staff", I + "Surgery", "Rooms"}},
        {"no group selected", "10~M~N~1~P~Staff~Surgery", {}},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fresh();
        control->setResourceGroups(c.groups);
        fillColumnLists();
        log.clear();
        control->setResources("r~r~r~r");
        for (int i = 0; i < kColumns; ++i) {
            EXPECT_EQ(itemsOf(w().cmbResourceCatType[i]), c.categories) << "column " << i;
            EXPECT_EQ(w().cmbResourceCatType[i].listIndex(), -1);
        }
        EXPECT_EQ(columnItems(), 10 * static_cast<int>(c.categories.size()));
        EXPECT_EQ(log, Items{"changed Resources"}) << "filling the lists raises nothing";
    }
}

// Resources that fail to parse never reach the lists; resources before any
// groups reach them, empty them, and fail at the walk of the groups.
TEST_F(CatalogueTest, ResourcesEmptyTheListsOnlyOnceTheyParsed) {
    // clang-format off
    const struct { const char* name; bool groups; std::string resources; int listItems, rows; } cases[] = {
        {"short record", true, "a~b~c~d~~e~f~g", 40, 2},
        {"empty string", true, "", 40, 0},
        {"no groups yet", false, "a~b~c~d~~e~f~g~h", 0, 2},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fresh();
        if (c.groups) control->setResourceGroups(kGroups);
        fillColumnLists();
        EXPECT_EQ(failureOf([&] { control->setResources(c.resources); }), ErrorKind::SubscriptOutOfRange);
        EXPECT_EQ(columnItems(), c.listItems);
        EXPECT_EQ(s().arrResources.rows(), c.rows);
        EXPECT_EQ(c.rows ? s().arrResources.at(1, 2) : "g", "g");
    }
}
