#pragma once
#include "desk_window.h"

#include <QStringList>

#include <functional>

namespace practice {

// The user's hands on the desk's window: real mouse and key events, each
// followed by the event loop's turn.
class DeskUser {
public:
    explicit DeskUser(DeskWindow& desk);
    void settle();
    // Clicks a column (0 to 9) at a slot's time, or on an appointment.
    void clickAt(int column, quorvane::OleDate time, Qt::MouseButton button = Qt::LeftButton);
    void clickOn(int column, std::int32_t key, Qt::MouseButton button = Qt::LeftButton);
    // Picks an item of the context menu that stands open.
    void pick(const char* item);
    // Drags an appointment to another column's slot in a few moves;
    // `beforeDrop` runs while it hangs over the slot.
    void drag(int fromColumn, std::int32_t key, int toColumn, quorvane::OleDate time,
              const std::function<void()>& beforeDrop = {});
    // Moves a pick list's selection down by `steps` items with the keyboard.
    void choose(const char* list, int steps);

    // The keyboard alone. A key goes where the focus is.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    // Tab until the focus stands on a column's grid; false if it never does.
    bool tabTo(int column);
    // Walks the open context menu with the arrow keys to an item, into its
    // submenu if it lies there, and takes it with Return.
    bool pickByKeys(const char* item);

private:
    DeskWindow& desk_;
};

// Plays a morning at the desk with real mouse and key events and writes its
// screenshots (and the printout's PDF) into `folder`; gives their paths.
QStringList playMorning(DeskWindow& desk, const QString& folder);

} // namespace practice
