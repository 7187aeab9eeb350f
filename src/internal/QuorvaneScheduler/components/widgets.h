#pragma once
// Models of the widget set: just the state and notifications the control uses.
// A widget that takes the focus tells the container, which then names it as the
// active control.

#include <QuorvaneScheduler/export.h>
#include <QuorvaneScheduler/ole_date.h>
#include <QuorvaneScheduler/components/platform.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

// Position and visibility shared by every widget, in twips.
struct QUORVANE_EXPORT WidgetBase {
    std::string name; // as the container reports it: "txtPatName", "cmbResource(3)"
    Container* container = nullptr;
    bool visible = true;
    bool enabled = true;
    float left = 0, top = 0, width = 0, height = 0;
    std::string toolTipText;

    void setFocus() {
        if (container) container->setActiveControl(name);
    }
    bool hasFocus() const { return container && container->activeControl() == name; }

    // Opens a gesture of the user on this widget (see Container::userGesture).
    Container::GestureScope userGesture(std::string pattern, std::vector<Variant> values = {}) const {
        return container ? container->userGesture(std::move(pattern), std::move(values))
                         : Container::GestureScope(nullptr);
    }
};

// A drop-down pick list whose text is always one of its items (or empty with no
// selection). Selecting from code runs onClick before the assignment returns,
// exactly as a user's pick does.
class QUORVANE_EXPORT PickList : public WidgetBase {
public:
    std::function<void()> onClick;

    void clear();
    void addItem(std::string item);
    int listCount() const { return static_cast<int>(items_.size()); }
    // An index outside the list reads as an empty text.
    const std::string& list(int index) const;
    int listIndex() const { return index_; }
    const std::string& text() const;

    // Selects the first item equal to the text; a text that is no item fails with
    // InvalidPropertyValue and leaves the selection as it was.
    void setText(const std::string& text);
    // -1 clears the selection; an index below -1 or past the end fails with
    // InvalidPropertyValue and leaves the selection as it was.
    void setListIndex(int index);
    // The user's pick of an item: the same as setListIndex, heard as a gesture.
    void userPick(int index);

private:
    void select(int index);

    std::vector<std::string> items_;
    int index_ = -1;
};

class QUORVANE_EXPORT TextField : public WidgetBase {
public:
    static constexpr std::int32_t kButtonFace = static_cast<std::int32_t>(0x8000000F);

    std::string text;
    std::string label;                   // the caption of the label beside the field, if any
    std::int32_t backColor = 0x80000005; // the window colour
    std::int32_t foreColor = 0x80000008; // the window text colour
    bool locked = false;                 // read only for the user
    bool multiLine = false;
    bool tabStop = true;
    bool rightAligned = false;
    int maxLength = 0; // characters the user may type; 0 for no limit
    // Key press of the field's own handler, when it has one (character code).
    std::function<void(int)> onKeyPress;

    // The user's typing, which replaces the text: a one-line field keeps the
    // first line only, and the text stops at maxLength characters. Code that
    // writes `text` is bound by neither.
    void userType(std::string_view typed);
};

class QUORVANE_EXPORT Button : public WidgetBase {
public:
    std::string caption;
    std::function<void()> onClick;
    // A user's click: runs the handler when the button is visible and enabled.
    bool click() {
        if (!visible || !enabled) return false;
        callHook(onClick);
        return true;
    }
    bool userClick() {
        if (!visible || !enabled) return false;
        const auto gesture = userGesture("click " + name);
        return click();
    }
};

class QUORVANE_EXPORT ScrollBar : public WidgetBase {
public:
    std::int16_t min = 1, max = 5, value = 1;
    std::int16_t smallChange = 1, largeChange = 1;
    std::string tag;
    std::function<void()> onChange;

    // A maximum below the value pulls the value down to it, which is a change.
    void setMax(std::int16_t m);
    // Outside min..max is InvalidPropertyValue; a new value runs onChange.
    void setValue(std::int16_t v);
    // The user moves the thumb: the same as setValue, heard as a gesture.
    void userScroll(std::int16_t v);
};

class QUORVANE_EXPORT MenuItem {
public:
    static constexpr const char* kSeparator = "-";

    std::string name; // as the container knows it: "mnoPrint", "mnoSchedulePatientType(3)"
    std::string caption;
    std::string tag;
    bool visible = true;
    bool enabled = true;
    bool checked = false;
    std::function<void()> onClick;
    std::vector<MenuItem*> children; // a submenu's items, owned elsewhere
    Container* container = nullptr;

    bool isSeparator() const { return caption == kSeparator; }
    // The user picks the item from its open menu: runs onClick.
    void userPick();
};

// A context menu: a menu of the control's own (with a caption the user never
// sees, since the menu is only ever opened as a popup) whose items open at a
// point. Opening it is a request to the host's window; the control only says
// which menu and where.
class QUORVANE_EXPORT PopupMenu : public MenuItem {
public:
    std::vector<MenuItem*> items; // owned by the control
    std::function<void(PopupMenu&, float x, float y)> onPopup;
    void popup(float x = 0, float y = 0) {
        callHook(onPopup, *this, x, y);
    }
};

class QUORVANE_EXPORT Label : public WidgetBase {
public:
    std::string caption;
};

class QUORVANE_EXPORT Form : public WidgetBase {
public:
    std::string caption;
};

// The month calendar: marks set by code, and a change event for a user's pick only.
class QUORVANE_EXPORT PVCalendar : public WidgetBase {
public:
    explicit PVCalendar(Platform& platform);
    bool DateSelected(OleDate d) const;
    void setDateSelected(OleDate d, bool on);
    OleDate Value() const { return value_; }

    std::function<void(OleDate)> Change;
    // A user's pick of a date: moves the calendar there and raises Change.
    void userPick(OleDate d);
    std::vector<OleDate> markedDates() const;

private:
    std::vector<std::int32_t> marked_; // day numbers, kept sorted
    OleDate value_;
};

} // namespace quorvane
