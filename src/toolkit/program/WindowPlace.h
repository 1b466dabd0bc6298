#pragma once

#include <QMargins>

class QSize;
class QWidget;

/// Windows stand whole on their screen, with the frame that the desktop adds. It does so after a window has shown, so
/// each of these functions acts twice: at once for the expected frame, and again for the real one.

/// The frame of a window on show; null until the desktop has added it, and while the window is minimised or maximised.
QMargins FrameOf(const QWidget &window);

/// The largest size of a window that leaves room for its frame on its screen.
QSize RoomOnScreen(const QWidget &window);

/// Puts the window, with its frame, over the middle of its screen. If it is larger than the screen, it shrinks as far
/// as it may. Call it when the size is known, before the window shows.
void CentreOnScreen(QWidget &window);
/// The same over the middle of the window's owner, but no part outside the screen.
void CentreOnOwner(QWidget &window);
/// The same where the desktop puts the window.
void KeepOnScreen(QWidget &window);
