#pragma once

#include "imports/ImportRun.h"
#include "stores/engine/FileStamp.h"

#include <QWidget>

#include <functional>
#include <memory>

class QMimeData;

namespace Ui {
class frmImport;
}

/// The assistant for texts and dictionaries that a reader brings: it looks what is in them, tells what would be left
/// out, takes them over and brings the result on show. The tool does the work in a process of its own; until it has
/// finished nothing changes, and the replaced file stays beside. A tool window, see OpenForm().
class TfrmImport : public QWidget
{
    Q_OBJECT
public:
    /// `openNew` makes the program go on with the file that now bears the database's name; what it throws is told.
    explicit TfrmImport(std::function<void(ImportTarget)> openNew, QWidget *parent = nullptr);
    ~TfrmImport() override;

    /// Looks at a file or folder, as if the reader had chosen it. Does nothing while an import runs.
    void Look(const QString &path);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    enum class Step { Source, Looking, Found, Importing, Done };

    void GoTo(Step step);
    void ChooseFolder();
    void ChooseFile();
    void StartImport();
    /// Does the job in earnest.
    void Run(const QString &work);
    void Cancel();
    void TakeBack();
    /// The file alone; `marksFault` tells why its marks did not come with it, if there was something.
    void RenameBack(const QString &marksFault);
    void ShowProgress(ImportProgress progress);
    void TakeEnd(const ImportReport &report, bool wasCancelled);
    void ShowFound(const ImportReport &report);
    /// `sentence` tells what has been done, or what not.
    void ShowDone(const QString &sentence);
    /// Whether the database is another file than when the job began.
    bool HasReplaced() const;
    /// Lets the program go on with the file that is there now; the sentence that tells how that went, if one is due.
    QString OpenNew();

    std::function<void(ImportTarget)> m_openNew;
    ImportJob m_job;
    ImportRun m_run;
    FileStamp m_before; ///< the database when the job began
    bool m_isTakingBack = false;
    Step m_step = Step::Source;
    std::unique_ptr<Ui::frmImport> ui;
};

/// The file or folder that is dragged, if it is one of this machine and nothing else is with it; else empty.
QString DroppedPath(const QMimeData *data);
