#pragma once

#include <QString>

/// The text of a stored page or excerpt: blocks on lines of their own, cells and blanks parted by one blank, without
/// tags.
QString TextOfHtml(const QString &html);
