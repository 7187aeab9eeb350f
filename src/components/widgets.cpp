#include <QuorvaneScheduler/components/widgets.h>
#include <QuorvaneScheduler/errors.h>

#include <algorithm>

namespace quorvane {

namespace {

const std::string kNoText;

void run(const std::function<void()>& handler) { callHook(handler); }

} // namespace

void Container::runForUser(const std::function<void()>& handler) {
    try {
        handler();
    } catch (const RuntimeError& e) {
        untrappedError(e);
    }
}

void PickList::clear() {
    items_.clear();
    index_ = -1;
}

void PickList::addItem(std::string item) { items_.push_back(std::move(item)); }

const std::string& PickList::list(int index) const {
    if (index < 0 || index >= listCount()) return kNoText;
    return items_[static_cast<std::size_t>(index)];
}

const std::string& PickList::text() const { return list(index_); }

void PickList::setText(const std::string& text) {
    const auto it = std::find(items_.begin(), items_.end(), text);
    if (it == items_.end()) throw InvalidPropertyValue("no item \"" + text.substr(0, 64) + "\" in " + name);
    select(static_cast<int>(it - items_.begin()));
}

void PickList::setListIndex(int index) {
    if (index < -1 || index >= listCount())
        throw InvalidPropertyValue("list index " + std::to_string(index) + " out of range in " + name);
    select(index);
}

void PickList::userPick(int index) {
    if (index < -1 || index >= listCount())
        throw InvalidPropertyValue("list index " + std::to_string(index) + " out of range in " + name);
    const auto gesture = userGesture("pick " + name + " %", {Variant(list(index))});
    select(index);
}

// Runs the click handling even when the item was selected already: a caller that
// assigns the current text relies on the handler running again.
void PickList::select(int index) {
    index_ = index;
    run(onClick);
}

void TextField::userType(std::string_view typed) {
    if (!multiLine) typed = typed.substr(0, typed.find_first_of("\r\n"));
    if (maxLength > 0) {
        // Characters, not bytes: a UTF-8 sequence counts once and is never cut.
        int count = 0;
        std::size_t end = 0;
        for (; end < typed.size(); ++end) {
            const bool starts = (static_cast<unsigned char>(typed[end]) & 0xC0) != 0x80;
            if (starts && ++count > maxLength) break;
        }
        typed = typed.substr(0, end);
    }
    const auto gesture = userGesture("type " + name + " %", {Variant(std::string(typed))});
    text = std::string(typed);
}

void ScrollBar::setMax(std::int16_t m) {
    max = m;
    if (value <= max) return;
    value = max;
    run(onChange);
}

void ScrollBar::userScroll(std::int16_t v) {
    const auto gesture = userGesture("scroll " + name + " %", {Variant(v)});
    setValue(v);
}

void MenuItem::userPick() {
    const auto gesture =
        container ? container->userGesture("menu " + name) : Container::GestureScope(nullptr);
    run(onClick);
}

void ScrollBar::setValue(std::int16_t v) {
    if (v < min || v > max)
        throw InvalidPropertyValue("scroll bar value " + std::to_string(v) + " out of range");
    if (v == value) return;
    value = v;
    run(onChange);
}

} // namespace quorvane
