#pragma once

#include "tools/build/BuildInput.h"

#include <QByteArray>
#include <QSet>
#include <QString>

#include <functional>

/// A folder of derived files that is written anew beside the old one ("Search_Words.qvnew") and
/// takes its place as a whole at the end. Until then the old one stays as it is; when this goes
/// without `putInPlace`, what was written is removed.
class FreshFolder final
{
public:
    /// `name` of a folder of the project; it may be missing. Raises 75 when something else has that
    /// name, or a book lies there.
    FreshFolder(FileSystem &files, const BuildInput &input, const QString &name);
    FreshFolder(const FreshFolder &) = delete;
    FreshFolder &operator=(const FreshFolder &) = delete;
    ~FreshFolder();

    /// A file that was read-only in the old folder is read-only in the new one.
    void write(const QString &name, const QByteArray &content);
    /// Takes over what the old folder holds beside the files written so far and those that
    /// `isOurs` says true to.
    void keepOthers(const std::function<bool(const QString &name)> &isOurs = {});
    /// Flushes everything to the disk. Nothing may be written any more.
    void flush();
    /// Flushes what was not yet, then puts the folder in place of the old one, which goes.
    void putInPlace();

private:
    [[nodiscard]] QString freshPath(const QString &name) const;

    FileSystem &m_files;
    QString m_folder;
    QSet<QString> m_readOnly; ///< files of the old folder, folded
    QSet<QString> m_written;  ///< folded
    bool m_flushed = false;
    bool m_done = false;
};

/// Finishes or removes what a dying program left of a fresh folder at `folder`; a build does it
/// before it begins.
void recoverFreshFolder(FileSystem &files, const QString &folder);
