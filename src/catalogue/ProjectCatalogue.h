#pragma once

#include "components/ProjectRanking.h"
#include "components/ServerProducts.h"
#include "platform/FileSystem.h"
#include "platform/SystemLocale.h"
#include "startup/Session.h"

#include <QDate>
#include <QStringList>

#include <pugixml.hpp>

#include <functional>
#include <memory>

inline constexpr QLatin1StringView favourites{"My Favorites"};
inline constexpr QLatin1StringView defaultRank{"500"};

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

    /// A released set carries its date of addition: it can be copied, and is no longer offered for
    /// continuing. Both raise 5 when no project of exactly that name is listed.
    void release(const QString &name, QDate date);
    void reopen(const QString &name);
    /// Takes the entries of exactly that name out of the list; none is no error. "My Favorites"
    /// stays.
    void remove(const QString &name);
    /// Gives the project of exactly that name another one, and its place below Docs. Raises 5 when
    /// it is not listed, or when another project has the new name without regard to case.
    void rename(const QString &name, const QString &newName);
    /// Gives it another ID. Raises 5 when no project of exactly that name is listed.
    void setId(const QString &name, const QString &id);

private:
    void setAddDate(const QString &name, const QString &date);
    void change(const QString &name, const std::function<void(pugi::xml_node entry)> &edit,
                const std::function<void(const pugi::xml_document &)> &check = {});
    QString path() const;

    Session &m_session;
    FileSystem &m_files;
};

/// Sorts the two parallel lists newest first, in place; index 0 is never touched, entries of one
/// day keep their order.
void SortProjectOnDates(QStringList &names, QList<QDate> &dates);

/// The day that a stored date names: ISO, the system's short form, day.month.year or
/// month/day/year, a time behind it passed over. Unreadable ones are invalid, which is the oldest.
QDate dateOf(const QString &text, SystemLocale &locale);

/// The server component and the ranking component, which live with their file.
std::unique_ptr<ServerProducts> makeServerProducts(Session &session, FileSystem &files);
std::unique_ptr<ProjectRanking> makeProjectRanking(Session &session, FileSystem &files);
