#include "toolkit/browser/EarlyCalls.h"

#include <QByteArrayView>

namespace {

bool IsEndOfName(char c)
{
    return QByteArrayView(" \t\n\f\r/>=").contains(c);
}

/// True if `name`, in any case, stands there as a whole.
bool IsName(const QByteArray &page, qsizetype at, QByteArrayView name)
{
    const QByteArrayView rest = QByteArrayView(page).sliced(at);
    return rest.size() > name.size() && rest.first(name.size()).compare(name, Qt::CaseInsensitive) == 0 &&
           IsEndOfName(rest[name.size()]);
}

void HideFramedPages(QByteArray &page)
{
    constexpr QByteArrayView name("srcdoc");
    for (qsizetype at = 1; at < page.size(); ++at) {
        if (QByteArrayView(" \t\n\f\r/\"'").contains(page.at(at - 1)) && IsName(page, at, name))
            page[at + name.size() - 1] = '-';
    }
}

} // namespace

QByteArray WithoutEarlyCalls(const QByteArray &page)
{
    QByteArray quiet = page;
    bool hasFrame = false;
    for (qsizetype at = page.indexOf('<'); at >= 0; at = page.indexOf('<', at + 1)) {
        if (IsName(page, at + 1, "link"))
            quiet.replace(at + 1, 4, "meta");
        hasFrame = hasFrame || IsName(page, at + 1, "iframe");
    }
    if (hasFrame)
        HideFramedPages(quiet);
    // A mark at the beginning would have Chromium read other characters than these.
    const bool isOtherwiseMarked = page.startsWith("\xFE\xFF") || page.startsWith("\xFF\xFE");
    return isOtherwiseMarked ? "\xEF\xBB\xBF" + quiet : quiet;
}
