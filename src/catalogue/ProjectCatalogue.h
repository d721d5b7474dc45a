#pragma once

#include "components/ProjectRanking.h"
#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QDate>
#include <QStringList>

#include <memory>

inline constexpr QLatin1StringView favourites{"My Favorites"};

/// One entry of the catalogue, as stored.
struct CatalogueEntry
{
    QString id;   ///< QV_Acro
    QString name; ///< folder name below Docs
    QString location;
    QString addDate;
    QString rank;
    QString language;
};

/// The catalogue of all projects, "<server path>Docs\QV_Selection.xml". Each operation loads,
/// works and saves; changes are made under the catalogue's lock. A catalogue that is missing gives
/// empty lists; one that cannot be read raises, naming the file and the reason, and is left alone.
class ProjectCatalogue
{
public:
    ProjectCatalogue(Session &session, FileSystem &files);

    bool CreateSelectionFile(const QString &path);
    /// True when the current project's name is free (without regard to case). Makes the catalogue
    /// when it is missing.
    bool bCheckQVSelectionforProdName();
    /// Appends the current project, and "My Favorites" when it is missing.
    void UpdateQVSelection();
    /// Names in file order without "My Favorites", from index 2; the first two slots are empty.
    QStringList GetProdQVSelection_All();
    /// "<name>#<rank>" in file order, favourites included, from index 1; slot 0 is empty.
    QStringList GetProdQVSelection_Data();
    void UpdateRankInSelectionFile(ProjectRanking &ranking, const QStringList &items);

    /// All entries as stored, favourites included. No catalogue: none.
    QList<CatalogueEntry> entries();

private:
    QString path() const;

    Session &m_session;
    FileSystem &m_files;
};

/// Sorts the two parallel lists newest first, in place; index 0 is never touched, entries of one
/// day keep their order.
void SortProjectOnDates(QStringList &names, QList<QDate> &dates);

/// The ranking component, which lives with the file it writes.
std::unique_ptr<ProjectRanking> makeProjectRanking(Session &session, FileSystem &files);
