#pragma once

#include "platform/Paths.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/CategoryFile.h"
#include "projectfiles/TableOfContents.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

#include <QPair>

/// The files of a project, as a test needs them.
class ProjectFiles
{
public:
    const QString name;
    const QString folder = QStringLiteral("S:\\Docs\\") + name + u'\\';

    ProjectFiles(TestProgram &world, const QString &project)
        : name(project)
        , m_world(world)
    {
    }

    /// Lists a book and writes its file and its pages (file name, bytes); titles are the file names
    /// without ".htm".
    TocBook addBook(const QString &bookName, const QString &acronym,
                    const QList<QPair<QString, QByteArray>> &pages = {})
    {
        const QString bookFolder = QStringLiteral("Book_") + acronym;
        const TocBook entry{
            bookName, acronym, name, bookFolder, bookFolder + QStringLiteral(".xml"), {}, {}};
        Book book;
        book.name = bookName;
        book.acronym = acronym;
        for (const auto &[file, bytes] : pages) {
            const QString id = QStringLiteral("P%1").arg(book.pages.size() + 1, 4, 10, QChar(u'0'));
            book.pages.append({id, QString(file).remove(QStringLiteral(".htm")), file, {}, {}});
        }
        BookFile(m_world.session, m_world.files).write(name, entry, book);
        for (const auto &[file, bytes] : pages)
            m_world.put(folder + bookFolder + u'\\' + file, bytes);
        TableOfContents(m_world.session, m_world.files).addBook(name, entry);
        return entry;
    }

    /// One view, group, topic and category with a link to `book`'s page P0001 and a dead one.
    void addQuickNav(const QString &acronym)
    {
        QString links;
        for (const auto *page : {"P0001", "P0009"})
            links +=
                QStringLiteral(R"(<Link Book="%1" Page="%2"><Link_Title>To %2</Link_Title></Link>)")
                    .arg(acronym, QLatin1String(page));
        m_world.put(folder + ProjectFile::quickNav, xmlFile(QStringLiteral(R"(<QV_QuickNav>
<View ID="1"><View_Name>The view</View_Name><Group ID="2"><Group_Name>The group</Group_Name>
<Topic ID="3"><Topic_Name>The topic</Topic_Name><Category ID="4">
<Category_Name>The category</Category_Name>%1</Category></Topic></Group></View></QV_QuickNav>)")
                                                                .arg(links)));
    }

    /// The global book with a page that is there and one that is not.
    void addGlobals()
    {
        const QString place = folder + ProjectFile::globalFolder + u'\\';
        QString pages;
        for (const QString &page : {QStringLiteral("welcome"), QStringLiteral("legal")})
            pages += QStringLiteral("<Page ID='%1' Type='Free'><Page_Title>%1</Page_Title>"
                                    "<Page_File>%1.htm</Page_File></Page>")
                         .arg(page);
        m_world.put(place + ProjectFile::globalBook,
                    xmlFile(QStringLiteral("<Book_Master><Book><Book_Name>Global Information"
                                           "</Book_Name></Book><Global_Pages>%1</Global_Pages>"
                                           "</Book_Master>\n")
                                .arg(pages)));
        m_world.put(place + QStringLiteral("welcome.htm"), "<html><body>Welcome</body></html>");
    }

private:
    TestProgram &m_world;
};

struct SampleWorld
{
    TestProgram world;
};

/// The project "Plant 300" on disk, with default categories and the books a test adds.
class SampleProject : public SampleWorld, public ProjectFiles
{
public:
    SampleProject()
        : ProjectFiles(world, QStringLiteral("Plant 300"))
    {
        world.session.projectLanguage = QStringLiteral("ENU");
        world.files.makeFolder(withoutBackslash(folder));
        TableOfContents(world.session, world.files).CreateQVTOCFile(folder + ProjectFile::toc);
        CategoryFile(world.files)
            .write(defaultCategoriesPath(world.server),
                   {{{}, QStringLiteral("Operation"), {}}, {{}, QStringLiteral("Repair"), {}}});
    }
};
