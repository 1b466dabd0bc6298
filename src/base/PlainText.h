#pragma once

#include <QString>

/// Plain text of an HTML string, by rules and not by parsing: a tag is everything from "<" to ">". Removes tags, CR,
/// LF, and each space or tab before another one, a line end or a tag, so words may join. An unclosed tag swallows the
/// rest. Then decodes &quot; &apos; &gt; &lt; and &amp; once; every other reference stays. An empty text gives an empty
/// text.
QString StripHtml(const QString &html);
