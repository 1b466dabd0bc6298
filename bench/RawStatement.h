#pragma once

#include <QString>
#include <QVariant>

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

    /// Runs the select with its parameters, integers and texts in their order, and fetches so many rows or, with -1,
    /// every one. The number of rows.
    int Fetch(const QVariantList &parameters = {}, int rows = -1);
    /// The same up to the row whose first column, a text, is this one. Its number from 1; 0 if there is none.
    int FetchTo(const QVariantList &parameters, const QString &text);
    /// Runs the select, whose first column is a blob, and reads every blob into one buffer. The number of bytes.
    qint64 ReadBlobs(const QVariantList &parameters = {});
    /// Runs a statement without rows with its parameters: integers, texts, and byte arrays as blobs.
    void Execute(const QVariantList &parameters);
    void Commit();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
