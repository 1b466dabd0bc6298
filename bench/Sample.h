#pragma once

#include <QString>
#include <QTemporaryDir>

/// The product folder, settings of its own, and files made for measuring.
class SampleFiles
{
public:
    SampleFiles();

    /// Folder of the product with trailing separator, as built beside the benchmarks.
    QString Folder() const { return m_folder; }
    QString Executable() const { return m_folder + QStringLiteral("Lumivara"); }
    QString ConfigFolder() const { return m_scratch.filePath(QStringLiteral("config")); }
    QString ScratchFile(const QString &name) const { return m_scratch.filePath(name); }
    /// File with the page that the program shows first: the bytes that it hands to the engine.
    QString FirstPage() const { return m_scratch.filePath(QStringLiteral("first.html")); }

private:
    void ComposeFirstPage();

    QTemporaryDir m_scratch;
    QString m_folder;
};

/// Made at the first call.
const SampleFiles &Sample();
