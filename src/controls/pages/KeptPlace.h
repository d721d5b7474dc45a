#pragma once

#include "platform/FileSystem.h"

#include <memory>

/// Whether the program that keeps a text is running.
enum class Keeper { Gone, Running, Unknown };

/// A file in which a running program keeps text. The operating-system lock on "<file>.lock" tells
/// the others that it runs; it is let go with this, and what is kept stays for whoever comes next.
class KeptPlace final
{
public:
    /// Null when it is a running program's. A lock file that is made gets the permissions of
    /// `like`. Raises as FileSystem::lock.
    static std::unique_ptr<KeptPlace> claim(FileSystem &files, const QString &path,
                                            const QString &like);
    /// The same for a file that nobody keeps; where no lock can be made it is ours all the same,
    /// for text is better kept without one than not at all.
    static std::unique_ptr<KeptPlace> take(FileSystem &files, const QString &path,
                                           const QString &like);

    KeptPlace(FileSystem &files, QString path, std::unique_ptr<FileLock> lock);
    KeptPlace(const KeptPlace &) = delete;
    KeptPlace &operator=(const KeptPlace &) = delete;
    ~KeptPlace();

    [[nodiscard]] const QString &path() const { return m_path; }

private:
    FileSystem &m_files;
    QString m_path;
    std::unique_ptr<FileLock> m_lock;
};

/// Who keeps the text of a file. The lock that a dead program left is removed.
Keeper keeperOf(FileSystem &files, const QString &path);

/// The file of which this is the lock; "" when it is none.
QString fileOfLock(const QString &path);
