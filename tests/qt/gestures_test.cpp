// The user's mouse and keys on the window. Each test plays real Qt events on
// the painted day views and compares what the host hears, line by line, with
// what the host console prints for the console's gestures of the same name:
// the window must never raise more, fewer or other events than the console.

#include <QuorvaneScheduler/control_internals.h>
#include "window_fixture.h"

#include <QuorvaneScheduler/errors.h>

#include <QApplication>
#include <QComboBox>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

namespace quorvane::test {
namespace {

// The captions of a menu, "-" for a line; or the names of its checked items.
QStringList itemsOf(const QMenu& menu, bool checkedNames = false) {
    QStringList out;
    for (const QAction* a : menu.actions())
        if (!checkedNames || a->isChecked())
            out << (checkedNames ? a->objectName() : a->isSeparator() ? QStringLiteral("-") : a->text());
    return out;
}

// Picks an item of an open menu with the mouse; an item of a submenu opens the
// submenu first.
void pick(QMenu& menu, const QString& name) {
    for (QAction* a : menu.actions()) {
        if (a->objectName() == name) {
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(a).center());
            return;
        }
        if (QMenu* sub = a->menu(); sub && sub->findChild<QAction*>(name)) {
            QTest::mouseMove(&menu, menu.actionGeometry(a).center());
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(a).center());
            if (!QTest::qWaitFor([sub] { return sub->isVisible(); })) ADD_FAILURE() << "submenu did not open";
            pick(*sub, name);
            return;
        }
    }
    ADD_FAILURE() << "no item " << name.toStdString();
}

// The host ends every busy phase at once, as a host that stores quickly does.
void endBusyPhases(SchedulerWidget& w) {
    auto done = [&w] { w.control().FocusControl(); };
    QObject::connect(&w, &SchedulerWidget::resourceAfterDrag, &w, done);
    QObject::connect(&w, &SchedulerWidget::resourceAfterResize, &w, done);
    QObject::connect(&w, &SchedulerWidget::resourceBeforeRemove, &w, done);
    QObject::connect(&w, &SchedulerWidget::appointmentSelected, &w, done);
}
const char* const kEndBusyPhases = "on ResourceAfterDrag call FocusControl\n"
                                   "on ResourceAfterResize call FocusControl\n"
                                   "on ResourceBeforeRemove call FocusControl\n"
                                   "on AppointmentSelected call FocusControl\n";

TEST_F(WindowTest, ClicksOnSlotsAndOverlappingAppointments) {
    endBusyPhases(*window);
    QSignalSpy selected(window.get(), &SchedulerWidget::appointmentSelected);
    QTest::mouseClick(&day(1), Qt::LeftButton, {}, at(1, 14, 0));
    EXPECT_TRUE(model(1).TimeSlotSelected(makeTime(14, 0, 0)));
    EXPECT_EQ(window->control().ResourceNumber(), "2");
    // The second of two overlapping appointments, found in its own lane.
    QTest::mouseClick(&day(0), Qt::LeftButton, {}, on(0, 2));
    EXPECT_EQ(model(0).appointmentSet().GetSelectedAppointment()->Key(), 2);
    QTest::mouseDClick(&day(0), Qt::LeftButton, {}, on(0, 1));
    EXPECT_EQ(model(0).appointmentSet().GetSelectedAppointment()->Key(), 1);
    EXPECT_EQ(selected.count(), 1);
    EXPECT_EQ(widgetsOf(window->control()).txtAppAppointmentId.text, "1201");
    EXPECT_EQ(took(), consoleTranscript(kMorning, std::string(kEndBusyPhases) +
                                                      "user click dvwResource(1) at #2:00:00 PM#\n"
                                                      "user click dvwResource(0) on 2\n"
                                                      "user click dvwResource(0) on 1\n"
                                                      "user dblclick dvwResource(0) on 1\n"));
}

// On a free slot the menu books; a Qt host answers the booking from a slot.
TEST_F(WindowTest, RightClickOpensTheMenuOfWhatLiesUnderThePointer) {
    ctlScheduler& c = window->control();
    QObject::connect(window.get(), &SchedulerWidget::addApptWithPatient, [&c](const QString& number) {
        const auto key = static_cast<std::int32_t>(std::stol(widgetsOf(c).txtAppKey.text));
        c.SetAppId(number.toStdString(), "1204", key, widgetsOf(c).txtAppPatEID.text);
        c.SetStatus(c.GetDayView(number.toStdString())->appointmentSet().Item(key), "Scheduled");
        c.FocusControl();
    });
    QTest::mouseClick(&day(0), Qt::LeftButton, {}, at(0, 15, 0));
    QTest::mouseClick(&day(0), Qt::RightButton, {}, at(0, 15, 0));
    ASSERT_TRUE(window->openMenu());
    EXPECT_EQ(
        itemsOf(*window->openMenu()),
        (QStringList{"Schedule Patient", "Find Next Available", "Search Appointments", "Recall List",
                     "Show Today", "Week View", "-", "Print Day's Facesheets", "Print Day's Superbills",
                     "Print Schedule", "-", "Display All Appointments", "Refresh All Schedules (Ctrl+Z)"}));
    QMenu* types = window->openMenu()->findChild<QMenu*>("mnoSchedulePatient");
    ASSERT_TRUE(types);
    EXPECT_EQ(itemsOf(*types), QStringList{"General"}) << "types the column has not are not shown";
    pick(*window->openMenu(), "mnoSchedulePatientGeneral");
    const AppointmentRef booked = model(0).appointmentSet().Item(3);
    ASSERT_TRUE(booked);
    EXPECT_EQ(booked->Tag + " " + booked->Text + " " + c.GetStatus(booked),
              "1204~~5531 Edsger Dijkstra Scheduled");
    EXPECT_TRUE(window->isEnabled());

    // On an appointment, its status checked and the recurrence caption.
    const std::tuple<std::int32_t, const char*, const char*> cases[] = {{2, "Add Recurrence", "mnoScheduled"},
                                                                        {1, "Edit Recurrence", "mnoConfirm"}};
    for (const auto& [key, recurrence, checked] : cases) {
        QTest::mouseClick(&day(0), Qt::RightButton, {}, on(0, key));
        QMenu* menu = window->openMenu();
        ASSERT_TRUE(menu);
        EXPECT_EQ(menu->objectName(), "mnuRightClickSchedulerApp");
        EXPECT_EQ(menu->findChild<QAction*>("mnoAddEditRecurrenceApp")->text(), recurrence);
        EXPECT_EQ(itemsOf(*menu, true), QStringList{checked});
        EXPECT_EQ(itemsOf(*menu).size(), 27);
        if (key == 2 && QTest::qWaitFor([menu] { return menu->isVisible(); })) saveShot(shot(), "menu");
        menu->close();
    }
    EXPECT_EQ(stateOf(c).objCurrentApp->Key(), 1);
    EXPECT_EQ(took(), consoleTranscript(kMorning, "on AddApptWithPatient call FocusControl\n"
                                                  "user click dvwResource(0) at #3:00:00 PM#\n"
                                                  "user rightclick dvwResource(0) at #3:00:00 PM#\n"
                                                  "user menu mnoSchedulePatientGeneral\n"
                                                  "user rightclick dvwResource(0) on 2\n"
                                                  "user rightclick dvwResource(0) on 1\n"));
}

TEST_F(WindowTest, DragAcrossColumnsShowsWhereItLands) {
    endBusyPhases(*window);
    QSignalSpy dragged(window.get(), &SchedulerWidget::resourceAfterDrag);
    // Ada Byron, 9:00 to 10:00, taken at its middle, to the row of 1 PM in the second column.
    const QPoint from = on(0, 1);
    const QPoint to = day(0).mapFrom(window.get(), day(1).mapTo(window.get(), at(1, 13, 0)));
    QTest::mousePress(&day(0), Qt::LeftButton, {}, from);
    for (int step = 1; step <= 8; ++step)
        QTest::mouseMove(&day(0), from + (to - from) * step / 8);
    // The drop shows in the target, in the appointment's colour over the cells.
    const QImage image = shot();
    saveShot(image, "drag");
    const QPoint landing = day(1).mapTo(window.get(), day(1).fromView({50, 10 * PVDayView::kRowPixels + 6}));
    const QColor preview = image.pixelColor(landing);
    EXPECT_TRUE(preview.red() > 240 && preview.green() > 240 && preview.blue() < 120)
        << preview.name().toStdString();
    EXPECT_EQ(dragged.count(), 0) << "nothing happens before the drop";
    QTest::mouseRelease(&day(0), Qt::LeftButton, {}, to);

    EXPECT_EQ(dragged.count(), 1);
    EXPECT_EQ(model(0).appointmentSet().Item(1), nullptr);
    const AppointmentRef moved = model(1).appointmentSet().Item(2);
    ASSERT_TRUE(moved);
    EXPECT_EQ(generalDateText(moved->StartDateTime), "1/15/2008 1:00:00 PM");
    EXPECT_EQ(generalDateText(moved->EndDateTime), "1/15/2008 2:00:00 PM");
    EXPECT_EQ(moved->Tag, "1201~77~5501");
    EXPECT_EQ(took(),
              consoleTranscript(kMorning, std::string(kEndBusyPhases) +
                                              "user click dvwResource(0) on 1\n"
                                              "user drag dvwResource(0) 1 to dvwResource(1) #1:00:00 PM#\n"));
}

TEST_F(WindowTest, DragWithinAColumnResizeByTheBottomEdgeAndDelete) {
    endBusyPhases(*window);
    QSignalSpy dragged(window.get(), &SchedulerWidget::resourceAfterDrag);
    QSignalSpy resized(window.get(), &SchedulerWidget::resourceAfterResize);
    QSignalSpy removed(window.get(), &SchedulerWidget::resourceBeforeRemove);
    // Grace Hopper, 11:00 to 11:30, two rows down.
    drag(day(1), on(1, 1), on(1, 1) + QPoint(0, 40));
    const AppointmentRef moved = model(1).appointmentSet().Item(2);
    ASSERT_TRUE(moved);
    EXPECT_EQ(generalDateText(moved->StartDateTime), "1/15/2008 12:00:00 PM");

    // Its bottom edge, pulled down to 1:30 PM.
    const auto box = model(1).appointmentBoxes().front();
    const QPoint edge = day(1).fromView({(box.left + box.right) / 2, box.bottom - 2});
    drag(day(1), edge, edge + QPoint(0, 40));
    EXPECT_EQ(generalDateText(moved->EndDateTime), "1/15/2008 1:30:00 PM");
    EXPECT_EQ(dragged.count(), 1);
    EXPECT_EQ(resized.count(), 1);

    // The Delete key asks, and only Yes reaches the host.
    answerNext(false);
    QTest::keyClick(&day(1), Qt::Key_Delete);
    EXPECT_EQ(model(1).appointmentSet().Count(), 1);
    EXPECT_EQ(removed.count(), 0);
    answerNext(true);
    QTest::keyClick(&day(1), Qt::Key_Delete);
    EXPECT_EQ(model(1).appointmentSet().Count(), 0);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0), (QVariantList{"502", "2"}));
    EXPECT_EQ(took(),
              consoleTranscript(kMorning, std::string(kEndBusyPhases) +
                                              "user click dvwResource(1) on 1\n"
                                              "user drag dvwResource(1) 1 to dvwResource(1) #12:00:00 PM#\n"
                                              "user click dvwResource(1) on 2\n"
                                              "user resize dvwResource(1) 2 to #1:30:00 PM#\n"
                                              "answer No\nuser delete dvwResource(1) 2\n"
                                              "answer Yes\nuser delete dvwResource(1) 2\n"));
}

TEST_F(WindowTest, WheelAndScrollBarMoveTheTopOfTheGrid) {
    QWheelEvent wheel(QPointF(at(0, 9, 0)), QPointF(day(0).mapToGlobal(at(0, 9, 0))), {}, {0, -120},
                      Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&day(0), &wheel);
    EXPECT_EQ(generalDateText(model(0).TopIndex()), "1/15/2008 9:30:00 AM");
    auto* bar = day(0).findChild<QScrollBar*>("topIndexScroll");
    ASSERT_TRUE(bar);
    QTest::mouseClick(bar, Qt::LeftButton, {}, QPoint(bar->width() / 2, bar->height() - 4));
    EXPECT_EQ(generalDateText(model(0).TopIndex()), "1/15/2008 10:00:00 AM");
    EXPECT_EQ(bar->value(), 20);
    EXPECT_EQ(took(), consoleTranscript(kMorning, "user scroll dvwResource(0) to #9:30:00 AM#\n"
                                                  "user scroll dvwResource(0) to #10:00:00 AM#\n"));
}

TEST_F(WindowTest, TypingOnASelectedSlotBooksItsText) {
    QTest::mouseClick(&day(0), Qt::LeftButton, {}, at(0, 15, 0));
    QTest::keyClicks(&day(0), "Walk-in");
    ASSERT_TRUE(day(0).slotEditor());
    EXPECT_EQ(day(0).slotEditor()->text(), "Walk-in");
    QTest::keyClick(&day(0), Qt::Key_Return);
    const AppointmentRef typed = model(0).appointmentSet().Item(3);
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->Text, "Walk-in");
    EXPECT_EQ(generalDateText(typed->StartDateTime), "1/15/2008 3:00:00 PM");
    // Escape drops what was typed.
    QTest::keyClicks(&day(0), "x");
    QTest::keyClick(day(0).slotEditor(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return day(0).slotEditor() == nullptr; }));
    EXPECT_EQ(model(0).appointmentSet().Count(), 3);
    EXPECT_EQ(took(), consoleTranscript(kMorning, "user click dvwResource(0) at #3:00:00 PM#\n"
                                                  "user type dvwResource(0) at #3:00:00 PM# \"Walk-in\"\n"));
}

// A host that books only through its own path turns the slot editor off; a
// column that shows no resource never offers it.
TEST_F(WindowTest, TheSlotEditorIsTheHostsToOfferAndNeverOnAnEmptyColumn) {
    window->setSlotEditorEnabled(false);
    QTest::mouseClick(&day(0), Qt::LeftButton, {}, at(0, 15, 0));
    QTest::keyClicks(&day(0), "Walk-in");
    EXPECT_FALSE(day(0).slotEditor());
    window->setSlotEditorEnabled(true);
    window->control().setResourceListIndex(1, "-1");
    window->refresh();
    ASSERT_EQ(window->control().ResourceValue(1), "");
    QTest::mouseClick(&day(1), Qt::LeftButton, {}, at(1, 15, 0));
    QTest::keyClicks(&day(1), "Walk-in");
    EXPECT_FALSE(day(1).slotEditor());
    EXPECT_EQ(model(1).appointmentSet().Count(), 0);
}

// An appointment ending at the last minute there is: a drag over it shows no
// preview where the arithmetic would pass the end of time, and fails nothing.
TEST_F(WindowTest, ADragAtTheEndOfTimeShowsNoPreviewAndFailsNothing) {
    QSignalSpy errors(window.get(), &SchedulerWidget::untrappedError);
    window->control().setResourceDate(0, Variant(makeDate(9999, 12, 31)));
    window->control().AddAppointment("1", "Last", makeDateTime(9999, 12, 31, 9, 0, 0),
                                     makeDateTime(9999, 12, 31, 23, 59, 0), "1", "Scheduled", "", "5501");
    window->refresh();
    const AppointmentRef last = model(0).appointmentSet().FirstAppointment();
    ASSERT_TRUE(last);
    drag(day(0), on(0, last->Key()), on(0, last->Key()) + QPoint(0, 120));
    EXPECT_TRUE(window->isEnabled() || !window->control().UserControlEnabled());
    EXPECT_EQ(errors.count(), 0);
}

// The grid by keys only: each key is one of the view's gestures, so the host
// hears what the same gestures in the console make it hear.
TEST_F(WindowTest, KeysReachTheControlFirstThenTheField) {
    QSignalSpy refresh(window.get(), &SchedulerWidget::refreshAllSchedules);
    auto* field = window->findChild<QPlainTextEdit*>("txtAppChiefComplaint");
    ASSERT_TRUE(field);
    QTest::mouseClick(field->viewport(), Qt::LeftButton);
    QTest::keyClicks(field, "Knee");
    EXPECT_EQ(widgetsOf(window->control()).txtAppChiefComplaint.text, "Knee");
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Q, Qt::ControlModifier); // no chart number: a message
    EXPECT_EQ(refresh.count(), 1);
    EXPECT_EQ(took(), consoleTranscript(kMorning, "user key 26 in txtAppChiefComplaint\n"
                                                  "user key 17 in txtAppChiefComplaint\n"));
}

// A host's failure inside a gesture reaches the host as untrappedError, never
// Qt's event loop: raised in a day view's event, and in a pick list's, which
// no model catches. FocusControl ends the busy phase and puts the focus in the pane.
TEST_F(WindowTest, AHostFailureInAGestureIsReportedAndTheWindowGoesOn) {
    QSignalSpy errors(window.get(), &SchedulerWidget::untrappedError);
    auto fail = [] { throw Overflow("the host's store is full"); };
    QObject::connect(window.get(), &SchedulerWidget::resourceAfterDrag, fail);
    QObject::connect(window.get(), &SchedulerWidget::resourceOnClick, fail);
    drag(day(1), on(1, 1), on(1, 1) + QPoint(0, 40));
    // The busy phase the host failed in goes on, and the window takes no gesture
    // until the host ends it.
    EXPECT_FALSE(window->isEnabled());
    QTest::mouseClick(&day(1), Qt::LeftButton, {}, at(1, 14, 0));
    EXPECT_FALSE(model(1).TimeSlotSelected(makeTime(14, 0, 0)));
    window->control().FocusControl();
    EXPECT_TRUE(window->isEnabled());
    QWidget* chiefComplaint = window->findChild<QWidget*>("txtAppChiefComplaint");
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->focusWidget() == chiefComplaint; }));
    auto* resources = window->findChild<QComboBox*>("cmbResource(0)");
    ASSERT_TRUE(resources);
    resources->setFocus();
    QTest::keyClick(resources, Qt::Key_Down);
    EXPECT_EQ(widgetsOf(window->control()).cmbResource[0].text(), "Dr. Park");
    ASSERT_EQ(errors.count(), 2);
    EXPECT_EQ(errors.at(1).at(0).toString(), "the host's store is full");
}

} // namespace
} // namespace quorvane::test

namespace quorvane::test {
namespace {

// The signals moc reads are declared by hand; each event of the list has its
// own, with as many parameters.
TEST(EventSignals, EveryEventHasItsSignal) {
    int signals = 0;
    for (const EventInfo& e : eventTable()) {
        const QMetaMethod m =
            SchedulerWidget::eventSignal(QLatin1String(e.name.data(), static_cast<qsizetype>(e.name.size())));
        ASSERT_TRUE(m.isValid()) << e.name;
        EXPECT_EQ(m.parameterCount(), static_cast<int>(e.params.size())) << e.name;
        ++signals;
    }
    EXPECT_EQ(signals, 37);
}

} // namespace
} // namespace quorvane::test
