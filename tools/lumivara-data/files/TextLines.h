#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringDecoder>

class QIODevice;

/// The lines of a text file one by one, each as UTF-8 bytes with its line end. UTF-16 with a byte order mark is
/// converted; a byte order mark itself is left out. What is no UTF-8, or no whole UTF-16, stays as bytes that are no
/// UTF-8, for the caller to see.
class TextLines
{
public:
    /// The longest line in bytes that is kept by default; of a longer one the beginning is, and IsCut() tells.
    static constexpr qsizetype MostBytes = 32 << 20;

    /// The device is open and outlives this. Throws ToolError with `fileName` where reading fails.
    TextLines(QIODevice &device, const QString &fileName, qsizetype most = MostBytes);

    /// False at the end.
    bool Next(QByteArray &line);
    qsizetype Most() const { return m_most; }
    /// True if the last line was longer than that.
    bool IsCut() const { return m_isCut; }
    /// The number of the last line, from 1.
    qsizetype Number() const { return m_number; }
    /// Goes back by so many lines.
    void GiveBack(const QByteArrayList &lines);

    bool WasConverted() const { return m_decoder.isValid(); }

private:
    /// False at the end of the file.
    bool Refill();

    QIODevice &m_device;
    QString m_fileName;
    qsizetype m_most;
    QByteArrayList m_again; ///< the next one last
    QByteArray m_buffer;    ///< what was read, from m_from on not given yet
    qsizetype m_from = 0;
    QStringDecoder m_decoder;
    QString m_halfPair; ///< the first unit of a pair whose second one was not read yet
    qsizetype m_number = 0;
    bool m_isCut = false;
};

/// A text with its line ends converted to LF.
QString WithUnixLineEnds(QString text);
