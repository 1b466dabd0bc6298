#pragma once

#include <QString>

#include <memory>

/// A statement run by the engine's own interface and nothing of ours: what a dataset is measured against.
class RawStatement
{
public:
    /// Attaches to the file by the client library, which the process has loaded already. Throws std::runtime_error.
    RawStatement(const QString &clientLibrary, const QString &databasePath, const QString &sql);
    ~RawStatement();
    RawStatement(const RawStatement &) = delete;
    RawStatement &operator=(const RawStatement &) = delete;

    /// Runs the select with its one text parameter, where it has one, and fetches every row. The number of rows.
    int FetchWhole(const QString &parameter = {});
    /// Runs the select, whose first column is a blob, and reads every blob into one buffer. The number of bytes.
    qint64 ReadBlobs();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
