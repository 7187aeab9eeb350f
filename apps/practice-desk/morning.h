#pragma once
#include "desk_window.h"

#include <QStringList>

namespace practice {

// Plays a morning at the desk with real mouse and key events and writes its
// screenshots (and the printout's PDF) into `folder`; gives their paths.
QStringList playMorning(DeskWindow& desk, const QString& folder);

} // namespace practice
