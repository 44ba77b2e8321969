#pragma once

#include <QIcon>

namespace Brindle {

/// The pictures of the program. They are drawn from lines, so they are sharp at every scaling of the screen, and in the
/// colours of the user's theme.
enum class Glyph {
    Program,
    Back,
    Forward,
    StopLoading,
    Refresh,
    Home,
    Start,
    Stop,
    Settings,
    Updates,
    SelectAll,
    ClearSelection,
    Delete,
    DeleteAll,
    Website,
    Map,
    Details,
    Export,
};

QIcon IconOf(Glyph glyph);
/// The same, faded, for what makes no sense now.
QIcon FadedIconOf(Glyph glyph);

} // namespace Brindle
