#pragma once

#include "lumivara-data/sealed/Frames.h"

#include <QElapsedTimer>

class Report;

/// What a sealed process says to the one that started it. It takes the standard output over: Firebird, which may write
/// there too, gets nothing instead.
class SealedStream
{
public:
    SealedStream();

    void Row(const QString &table, const QList<QVariant> &values);
    void Value(const QString &key, const QString &value);
    /// Findings, notes and counts of a report without a console.
    void Send(const Report &report);
    /// Few of many calls are passed on.
    void Progress(const QString &work, qsizetype done, qsizetype total, const QString &unit);
    void Failure(const QString &text);
    void Done();

private:
    void Write(const Frame &frame);

    int m_output;
    QString m_work;
    QElapsedTimer m_sinceProgress;
};
