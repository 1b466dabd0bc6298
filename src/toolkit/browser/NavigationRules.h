#pragma once

#include <QString>
#include <QUrl>

/// What a page may do, decided in one place for all hooks of Qt WebEngine. In the core, so that a table can test it.

enum class Navigation {
    Load,        ///< our own page, or an anchor in it
    OpenOutside, ///< in the system's program for it
    Refuse,
};

/// Decides on a navigation: `url` as normalised by Chromium, `isStartPage` while the host itself loads a page,
/// `isMainFrame`, and `page`, the address on show.
/// In the main frame the host's own page loads, any other address that contains "http" opens outside, mail links open
/// outside, an anchor in the page loads, and the rest is refused. In other frames everything is refused, because frames
/// load without the reader.
Navigation DecideNavigation(const QUrl &url, bool isStartPage, bool isMainFrame, const QUrl &page);

/// The address that a navigation is meant for: `url` itself, or the address that one of our scripts has wrapped in it
/// because Chromium would drop it without asking.
QUrl AddressAskedFor(const QUrl &url);

/// Whether a page may request a resource. Our pages may request themselves, by our scheme, and data addresses. A web
/// page may request what it names, and the main frame may load a web page, because that navigation was decided before.
bool MayRequest(const QUrl &url, const QUrl &page, bool isForMainFrame);

bool IsWebAddress(const QUrl &url);

/// The scheme of composed pages.
inline constexpr char PageScheme[] = "lumivara";
