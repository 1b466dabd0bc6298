#pragma once

#include <QString>
#include <QUrl>

/// What a page may do, decided in one place for every hook of the engine. In core so that a table can test it.

enum class Navigation {
    Load,        ///< our own page, or a place in it
    OpenOutside, ///< to the system's program for it
    Refuse,
};

/// What becomes of a navigation: address as the engine normalised it, whether the host is loading a page itself
/// (`isStartPage`), whether it is for the main frame, and the address of the page on show.
/// In the main frame the host's own page loads, any other address holding "http" goes outside, mail links go outside, a
/// place in the page loads, and the rest is refused. In a frame everything is refused: frames load unasked.
Navigation DecideNavigation(const QUrl &url, bool isStartPage, bool isMainFrame, const QUrl &page);

/// The address that a navigation is meant for: itself, but for one of ours by which a script asks for an address that
/// the engine would drop without asking.
QUrl AddressAskedFor(const QUrl &url);

/// Whether a page may request a resource. Of our pages only the page itself by our scheme and data addresses. Of the
/// web what a page of the web names, and a page for the main frame: there the navigation was decided before.
bool MayRequest(const QUrl &url, const QUrl &page, bool isForMainFrame);

bool IsWebAddress(const QUrl &url);

/// The scheme of composed pages.
inline constexpr char PageScheme[] = "lumivara";
