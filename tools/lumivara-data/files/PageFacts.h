#pragma once

#include <QByteArray>
#include <QRegularExpression>

/// The facts about a stored page that a check needs, so that the pages themselves need not be kept.
struct PageFacts
{
    qsizetype byteCount = 0;
    /// Offset of the first byte that is not valid UTF-8, -1 if there is none.
    qsizetype firstBadByte = -1;
    /// The charset that a meta element or a byte order mark names, lower case; empty if none.
    QByteArray charset;
};

/// The declaration of a charset in a meta element; the charset itself is the first capture.
const QRegularExpression &DeclaredCharset();
PageFacts InspectPage(const QByteArray &page);

/// Offset of the first byte that does not belong to well-formed UTF-8 (no overlong forms, no surrogates, nothing above
/// U+10FFFF), -1 if there is none.
qsizetype FirstBadUtf8Byte(const QByteArray &bytes);
