#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// A file, or a folder with all that is in it, that must not outlive the work: removed with this object, or when an
/// interrupt ends the process. Links in it are removed and not followed, and what another user has put in its place
/// stays. Any thread.
class Leftover
{
public:
    /// Absolute, of a thing that exists.
    explicit Leftover(const QString &path);
    ~Leftover();
    Q_DISABLE_COPY_MOVE(Leftover)

    const QString &Path() const { return m_path; }
    /// Runs the step that finishes the work and makes `result` of it, as one with regard to interrupts: either of both
    /// is done, and told, or neither. What stays at the path goes as before.
    static void Complete(const QString &result, const std::function<void()> &step);

    /// Ends the children, removes all that there is, and gives the results so far; none if a last step is running and
    /// does not come to its end. Nothing can be completed any more: only for a process that ends.
    static std::optional<QStringList> RemoveAll();

private:
    QString m_path;
};

/// A child process that an interrupt ends, by SIGKILL, before anything is removed.
class ChildOfWork
{
public:
    explicit ChildOfWork(qint64 processId);
    /// Once it has ended.
    ~ChildOfWork();
    Q_DISABLE_COPY_MOVE(ChildOfWork)

private:
    qint64 m_id;
};
