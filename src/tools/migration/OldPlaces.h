#pragma once

#include <QHash>
#include <QList>
#include <QString>

/// A path of the database as seen from a folder ("" or with a backslash at its end): with
/// backslashes, "." and ".." worked out. One that climbs out of the project begins with "..\",
/// one with a drive or root with "|"; both are good for being compared only.
QString oldPlace(const QString &folder, const QString &path);

/// True when it lies in the project.
bool isInProject(const QString &oldPlace);

/// What is at a place of the database, and where it lies now.
struct MovedPlace
{
    enum class Kind { Page, GlobalPage, Image, Folder };

    QString before, now; ///< folders without backslash
    int family = 0;      ///< what belongs to one book: preferred among its own
    Kind kind = Kind::Image;
    qsizetype at = 0; ///< place in its list of the book set
};

/// Everything that links of the database may mean.
class OldPlaces final
{
public:
    /// The folders above it are noted with it.
    void add(const MovedPlace &place);

    /// What is meant by a place: in the letters given before other letter case, files before
    /// folders, the family before others, the first before later ones. Null for nothing.
    [[nodiscard]] const MovedPlace *find(const QString &before, int family) const;
    /// False when everything lies where it lay.
    [[nodiscard]] bool anyMoved() const { return m_anyMoved; }

private:
    void addFolder(const MovedPlace &inside);

    QList<MovedPlace> m_places;
    QHash<QString, QList<qsizetype>> m_byFolded;
    bool m_anyMoved = false;
};
