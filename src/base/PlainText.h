#pragma once

#include <QString>

/// Plain text of an HTML string, by rule and not by parsing: "<" opens a tag and ">" ends it, whatever stands between.
/// Tags go, and CR and LF everywhere; of a space or tab nothing stays before another one, a line end or a tag, so words
/// may join. An unclosed tag swallows the rest. Then &quot; &apos; &gt; &lt; and &amp; are decoded, one level deep;
/// every other reference stays as it stands. An empty text gives an empty text.
QString StripHtml(const QString &html);
