#pragma once

#include <QString>

/// The text of a stored page or excerpt without tags: each block on its own line, cells and words separated by one
/// blank.
QString TextOfHtml(const QString &html);
