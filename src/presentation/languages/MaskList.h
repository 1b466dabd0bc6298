#pragma once

#include <QStringList>

/// A list of file masks, compiled once: "*" stands for any text, dots and slashes included, "?" for one UTF-16 unit,
/// every other character for itself. Case does not count.
class TDKLang_MaskList
{
public:
    TDKLang_MaskList() = default;
    explicit TDKLang_MaskList(const QStringList &masks);
    /// True if a mask matches the whole of `text`. An empty list matches nothing.
    bool Matches(const QString &text) const;

private:
    QStringList m_masks;
};
