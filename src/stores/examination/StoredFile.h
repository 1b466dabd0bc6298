#pragma once

#include <QString>

/// What the pages of a database file say before Firebird sees it: Firebird believes its header, and opens what its list
/// of files names. Layout of on-disk structure 12, as in Firebird 3.
struct StoredFile
{
    quint64 pageBytes = 0;
    quint64 pageCount = 0;   ///< by the file's length
    quint64 cacheBytes = 0;  ///< that the header asks for; 0 for Firebird's default
    bool isReadOnly = false; ///< Firebird's own flag
    bool namesFiles = false; ///< shadows, or other files that belong to it
    QString fault = {};      ///< why Firebird must not open it, a sentence without the file's name; empty if it may

    /// Caches of this size are taken as an honest wish, greater ones as damage.
    static constexpr quint64 MostCacheBytes = quint64{256} * 1024 * 1024;
    bool WantsTooMuchCache() const { return cacheBytes > MostCacheBytes; }
};

/// Reads the header, and the first bytes of every page. Throws DatabaseError if the file can't be read, and for what
/// is no regular file.
StoredFile ReadStoredFile(const QString &path);

/// Changes a private copy so that Firebird opens it without writing and without opening any other file: sets the
/// read-only flag, takes the size of the cache back to the default, removes the list of other files.
/// REQUIRES: nobody has the file open. Throws DatabaseError.
void MakeHarmless(const QString &copyPath);
