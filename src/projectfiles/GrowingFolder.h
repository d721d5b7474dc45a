#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"

#include <functional>

/// A project's folder while it is made: it grows as "<name>.qvnew" beside its place, so that no
/// half project ever stands under a project's name. All paths are without a backslash at the end.
class GrowingFolder final
{
public:
    GrowingFolder(FileSystem &files, QString place);

    [[nodiscard]] bool isUnused(); ///< the place is not there, or nothing is in it
    /// Removes what a killed program left of `growing()`, which the caller then makes and fills,
    /// and makes the place with `makePlace`: it stands empty meanwhile.
    void begin(const std::function<void()> &makePlace);
    /// Flushes what has grown and puts it in place.
    void putInPlace(const Progress &progress);
    /// Puts what has grown in place as it is, after a failure. When that fails too, it stays where
    /// `path()` says.
    void leaveInPlace();
    /// Removes all that was made since `begin`, as far as the disk lets it.
    void discard();

    [[nodiscard]] QString path() const; ///< where the files lie now
    [[nodiscard]] const QString &place() const { return m_place; }
    [[nodiscard]] QString growing() const;

private:
    void move();

    FileSystem &m_files;
    QString m_place;
    bool m_wasThere = false;
    bool m_isInPlace = false;
};
