#pragma once

#include "imports/ImportJob.h"

#include <QObject>
#include <QProcess>
#include <QTimer>

/// A run of lumivara-data in a process of its own, so that the window lives on and a crash is a message. One at a time;
/// its end, also by Cancel, is told by Ended.
class ImportRun : public QObject
{
    Q_OBJECT
public:
    explicit ImportRun(QObject *parent = nullptr);
    /// Ends the process; the tool leaves everything as it was.
    ~ImportRun() override;

    /// Starts a job. REQUIRES: none runs.
    void Start(const ImportJob &job);
    bool IsRunning() const { return m_process.state() != QProcess::NotRunning; }
    /// Asks the tool to stop and leave everything as it was; kills it if it does not.
    void Cancel();

signals:
    void Progressed(ImportProgress progress);
    /// `report.failure` is empty where the tool did not come to say anything: it crashed or could not be started.
    void Ended(const ImportReport &report, bool wasCancelled);

private:
    void TakeErrors();
    void TakeEnd();

    QProcess m_process;
    QByteArray m_errors;
    bool m_isCancelled = false;
    QTimer m_patience; ///< with a tool that was asked to stop
};
