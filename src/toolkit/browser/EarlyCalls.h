#pragma once

#include <QByteArray>

/// The page, UTF-8, without what makes Chromium call another machine before any request that could be blocked. In
/// Qt 6.8 a link for preconnecting opens a connection as soon as its mark-up has been scanned. Links become
/// "meta", which is empty, too, and may stand in the same places: a page needs none, because nothing that they name is
/// loaded. Frames lose the page that they hold in an attribute, which may have such links in any disguise; other
/// frames do not load. Other bytes stay.
QByteArray WithoutEarlyCalls(const QByteArray &page);
