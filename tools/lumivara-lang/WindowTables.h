#pragma once

#include "lumivara-lang/NumberLedger.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// One numbered text of a window.
struct WindowText
{
    int number = 0;
    QString name;                   ///< component.property, such as "btnCopy.Hint"
    QString value;                  ///< as the window's description has it; lines parted by CR LF
    bool isMeantForReaders = false; ///< false for names of no interest, which a language file need not mention
};

/// The table of one window, made from its description and the numbers given out so far.
struct WindowTable
{
    QString uiPath;
    QString section;
    QByteArray langData;       ///< what belongs into the file at LangDataPath()
    QList<WindowText> texts;   ///< by number
    QList<WindowText> newOnes; ///< those without a number so far: the one here is the one to give
    QList<WindowText> gone;    ///< those with a number that are no longer in the .ui file; without a value

    /// Main.ui -> Main.langdata
    QString LangDataPath() const;
};

/// Numbers the texts of one description. Throws ToolError for one that can't be read.
WindowTable NumberWindow(const QString &uiPath, const NumberLedger &ledger);

/// The sources that the tool works on.
class SourceTree
{
public:
    /// Throws ToolError if there are no sources at `root`.
    explicit SourceTree(const QString &root);

    QString LedgerPath() const { return m_root + QStringLiteral("/data/languages/numbers.tsv"); }
    QString EnglishPath() const { return m_root + QStringLiteral("/data/languages/English.lng"); }
    /// The tables of all windows that readers see, in the order of their paths.
    QList<WindowTable> Windows(const NumberLedger &ledger) const;

private:
    QString m_root;
};
