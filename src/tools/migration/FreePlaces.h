#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// Gives files and folders of a new project names that are free, without regard to case. Paths are
/// relative to the project folder; the pieces are safe names.
class FreePlaces final
{
public:
    FreePlaces();

    /// A folder that no other has: "Book_A_2" when the name is taken.
    QString ownFolder(const QStringList &pieces);
    /// A file in a folder ("" or with a backslash at its end), which `pieces` may lead further
    /// down from: "a_2.htm" when the name is taken, by a folder too.
    QString file(const QString &folder, const QStringList &pieces);
    /// The product's folder of global pages; until then nothing gets a place in it.
    QString globalFolder();

private:
    enum class Kind { File, Folder };
    struct Taken
    {
        QString path;
        Kind kind;
    };

    QString folders(const QString &top, const QStringList &pieces);
    QString sharedFolder(const QString &path);
    QString take(const QString &path, Kind kind);

    QHash<QString, Taken> m_taken;    ///< by folded path
    QHash<QString, QString> m_shared; ///< folders that files may lie in, by folded wish
    QHash<QString, int> m_next;       ///< the next number to try, by folded path
};
