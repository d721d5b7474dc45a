#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <pugixml.hpp>

/// A book on its way from its own project's table of contents into the merged one.
struct MergedBook
{
    QString name;
    QString acronym;    ///< in the merged project
    QString ownAcronym; ///< in its own
    QString folder, file;
    bool acronymDoubled = false; ///< another book of the merged project has the acronym too
    pugi::xml_node element;      ///< in the merged table; null when the book was left out

    [[nodiscard]] bool isRenamed() const { return acronym != ownAcronym; }
};

/// The folders of all books of a table of contents, as they stand there.
QStringList bookFoldersOf(const pugi::xml_document &toc);

/// The table of contents of a merged project: takes in the books of other projects. Works in
/// memory; names and acronyms are compared exactly.
class TocMerge final
{
public:
    /// `merged` is the table of the base project's copy; `project` names the merged project.
    TocMerge(pugi::xml_document merged, QString project);

    /// Adds the books of one project in document order. A taken acronym gets the suffix "1", tried
    /// once; a book whose name and (new) acronym are both taken, though perhaps by two books, is
    /// left out. Returns all of them.
    QList<MergedBook> ReadBookNodesfromQVTOC(const pugi::xml_document &source);

    [[nodiscard]] const pugi::xml_document &document() const { return m_document; }
    [[nodiscard]] int bookCount() const;

private:
    [[nodiscard]] QString RenameBookAcroIfSame(const QString &acronym) const;
    [[nodiscard]] bool checkIfBookPresent(const QString &name, const QString &acronym) const;
    pugi::xml_node CreateBookNode(const MergedBook &book, const QString &type,
                                  const pugi::xml_node &categories);
    void note(const pugi::xml_node &book);

    pugi::xml_document m_document;
    QString m_project;
    pugi::xml_node m_books;
    QSet<QString> m_names, m_acronyms;
};
