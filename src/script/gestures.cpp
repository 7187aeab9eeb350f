// The user's gestures, played through the widgets the way a window delivers them.

#include <QuorvaneScheduler/script/script_reader.h>
#include <QuorvaneScheduler/control_internals.h>
#include <QuorvaneScheduler/script/console.h>

namespace quorvane::host {

namespace {

OleDate timeValue(const Variant& v) {
    try {
        return v.toDate();
    } catch (const RuntimeError&) {
        throw ScriptError("expected a date or time");
    }
}

std::string textValue(const Variant& v) {
    if (!v.asString()) throw ScriptError("expected a text");
    return *v.asString();
}

// Text fields the user can type into.
bool isEditable(std::string_view name) {
    return name == "txtAppComments" || name == "txtAppChiefComplaint" || name == "txtAppPriorAuthNum";
}

void collectShown(const std::vector<MenuItem*>& items, std::vector<std::string>& names) {
    for (const MenuItem* item : items) {
        if (!item->visible || item->isSeparator()) continue;
        names.push_back(item->name);
        collectShown(item->children, names);
    }
}

MenuItem* findShown(const std::vector<MenuItem*>& items, const std::string& name) {
    for (MenuItem* item : items) {
        if (!item->visible) continue;
        if (item->name == name) return item;
        if (MenuItem* child = findShown(item->children, name)) return child;
    }
    return nullptr;
}

} // namespace

void Console::doGesture(const Gesture& g) {
    const std::string& a = g.action;
    if (a == "menu") {
        if (!openMenu_) throw ScriptError("no context menu is open");
        PopupMenu* menu = openMenu_;
        openMenu_ = nullptr;
        std::string name = g.widget.name;
        if (g.widget.hasArgs) {
            if (g.widget.args.size() != 1) throw ScriptError("a menu item takes one index");
            name += "(" + std::to_string(wholeNumber(g.widget.args[0], "the menu index")) + ")";
        }
        MenuItem* item = findShown(menu->items, name);
        if (!item) {
            std::vector<std::string> shown;
            collectShown(menu->items, shown);
            throw ScriptError("'" + name + "' is not shown in " + menu->name + nearestNames(name, shown));
        }
        if (item->isSeparator()) throw ScriptError("'" + name + "' is a separator");
        if (!control_->UserControlEnabled() || !item->enabled) return emit("~ disabled");
        item->userPick();
        return;
    }
    openMenu_ = nullptr; // any other gesture closes an open menu first

    SchedulerWidgets& w = widgetsOf(*control_);
    const Segment& target = g.widget;
    const bool enabled = control_->UserControlEnabled();

    if (target.name == "dvwResource" && target.hasArgs && a != "pick" && a != "key" && a != "calendar") {
        const DayViewRef view = dayView(target);
        if (!enabled) return emit("~ disabled");
        if (!view->Visible) return emit("~ hidden");
        return dayViewGesture(g, *view);
    }
    if (a == "calendar") {
        const OleDate d = timeValue(evaluate(g.values.at(0)));
        if (!enabled) return emit("~ disabled");
        if (!w.calCalendar->visible) return emit("~ hidden");
        w.calCalendar->userPick(d);
        return;
    }
    if (a == "pick") {
        PickList* list = nullptr;
        try {
            list = pickList(target);
        } catch (const SubscriptOutOfRange&) {
            throw ScriptError("no pick list " + target.name + " at that index");
        }
        if (!list) throw ScriptError("'" + target.name + "' is no pick list" + suggestWidget(target.name));
        const std::string item = textValue(evaluate(g.values.at(0)));
        if (!enabled) return emit("~ disabled");
        if (!list->visible) return emit("~ hidden");
        int found = -1;
        for (int i = 0; i < list->listCount() && found < 0; ++i)
            if (list->list(i) == item) found = i;
        if (found < 0) throw ScriptError(quote(item) + " is no item of " + list->name);
        list->userPick(found);
        return;
    }
    if (a == "key") {
        const std::int32_t code = wholeNumber(g.values.at(0), "the key code");
        if (code < 0 || code > 255) throw ScriptError("a key code is 0 to 255");
        TextField* field = nullptr;
        if (g.hasTarget) {
            if (target.hasArgs || g.target.hasArgs)
                throw ScriptError("'" + g.target.name + "' is no text field");
            field = ControlInternals::findTextField(*control_, g.target.name);
            if (!field)
                throw ScriptError("'" + g.target.name + "' is no text field" + suggestWidget(g.target.name));
        } else {
            field = ControlInternals::findTextField(*control_, platform_.container.activeControl());
        }
        if (!enabled) return emit("~ disabled");
        if (field && !field->visible) return emit("~ hidden");
        if (g.hasTarget) field->setFocus();
        control_->userKeyPress(code, field);
        return;
    }
    if (target.hasArgs) throw ScriptError("'" + target.name + "(...)' takes no gesture " + a);
    if (a == "scroll" && target.name == "sbSchedule") {
        if (!g.aim.empty()) throw ScriptError("user scroll sbSchedule takes a value");
        const std::int32_t value = wholeNumber(g.values.at(0), "the scroll value");
        if (!enabled) return emit("~ disabled");
        if (!w.sbSchedule.visible) return emit("~ hidden");
        if (value < w.sbSchedule.min || value > w.sbSchedule.max)
            throw ScriptError("the scroll bar runs from " + std::to_string(w.sbSchedule.min) + " to " +
                              std::to_string(w.sbSchedule.max));
        w.sbSchedule.userScroll(static_cast<std::int16_t>(value));
        return;
    }
    if (a == "click" && g.aim.empty()) {
        Button* button = ControlInternals::findButton(*control_, target.name);
        if (!button) throw ScriptError("'" + target.name + "' is no button" + suggestWidget(target.name));
        if (!enabled || !button->enabled) return emit("~ disabled");
        if (!button->visible) return emit("~ hidden");
        button->userClick();
        return;
    }
    if (a == "type" && g.aim.empty()) {
        TextField* field = ControlInternals::findTextField(*control_, target.name);
        if (!field || !isEditable(target.name))
            throw ScriptError("'" + target.name + "' is no field the user types in");
        const std::string text = textValue(evaluate(g.values.at(0)));
        if (!enabled) return emit("~ disabled");
        if (!field->visible) return emit("~ hidden");
        field->userType(text);
        return;
    }
    throw ScriptError("no gesture " + a + " on '" + target.name + "'");
}

void Console::dayViewGesture(const Gesture& g, PVDayView& view) {
    const std::string& a = g.action;
    const std::string where = "dvwResource(" + std::to_string(view.Index()) + ")";
    auto keyOf = [&](const Expr& e) {
        const std::int32_t key = wholeNumber(e, "the key");
        if (!view.appointmentSet().Item(key))
            throw ScriptError(where + " holds no appointment " + std::to_string(key));
        return key;
    };
    auto visibleTime = [&](const Expr& e) {
        const OleDate t = timeValue(evaluate(e));
        if (!view.pointOfTime(t))
            throw ScriptError(generalDateText(t) + " is outside the visible grid of " + where);
        return t;
    };
    auto visibleKey = [&](const Expr& e) {
        const std::int32_t key = keyOf(e);
        if (!view.pointOfAppointment(key))
            throw ScriptError("appointment " + std::to_string(key) + " is outside the visible grid of " +
                              where);
        return key;
    };

    if (a == "click" || a == "rightclick" || a == "dblclick") {
        const bool right = a == "rightclick";
        if (g.aim == "at" && a != "dblclick") {
            view.userClickAt(visibleTime(g.values.at(0)), right);
        } else if (g.aim == "on") {
            const std::int32_t key = visibleKey(g.values.at(0));
            if (a == "dblclick")
                view.userDblClickOn(key);
            else
                view.userClickOn(key, right);
        } else {
            throw ScriptError("user " + a + " " + where + " needs 'on KEY'" +
                              (a == "dblclick" ? "" : " or 'at TIME'"));
        }
    } else if (a == "slot") {
        view.userSlot(timeValue(evaluate(g.values.at(0))));
    } else if (a == "type") {
        if (g.aim != "at") throw ScriptError("user type " + where + " needs 'at TIME'");
        const OleDate t = visibleTime(g.values.at(0));
        const Variant text = evaluate(g.values.at(1));
        if (!text.asString()) throw ScriptError("expected a text");
        view.userType(t, *text.asString());
    } else if (a == "resize") {
        const std::int32_t key = visibleKey(g.values.at(0));
        const OleDate end = timeValue(evaluate(g.values.at(1)));
        if (!view.userResize(key, end))
            throw ScriptError("the new end is outside the visible grid of " + where);
    } else if (a == "delete") {
        view.userDelete(keyOf(g.values.at(0)));
    } else if (a == "drag") {
        const std::int32_t key = visibleKey(g.values.at(0));
        if (g.target.name != "dvwResource" || !g.target.hasArgs)
            throw ScriptError("expected a day view to drop on");
        const DayViewRef target = dayView(g.target);
        const OleDate t = timeValue(evaluate(g.values.at(1)));
        if (!target->Visible) return emit("~ hidden");
        if (!target->pointOfTime(t))
            throw ScriptError(generalDateText(t) + " is outside the visible grid of dvwResource(" +
                              std::to_string(target->Index()) + ")");
        view.userDrag(key, *target, t);
    } else if (a == "scroll") {
        if (g.aim != "to") throw ScriptError("user scroll " + where + " needs 'to TIME'");
        view.userScroll(timeValue(evaluate(g.values.at(0))));
    } else if (a == "date") {
        view.userDate(timeValue(evaluate(g.values.at(0))));
    } else {
        throw ScriptError("no gesture " + a + " on a day view");
    }
}

} // namespace quorvane::host
