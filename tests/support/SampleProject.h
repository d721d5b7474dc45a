#pragma once

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "projectfiles/BookFile.h"
#include "projectfiles/CategoryFile.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/TableOfContents.h"
#include "support/TestProgram.h"

#include <QPair>

/// The project "Plant 300" on disk, with default categories and the books a test adds.
class SampleProject
{
public:
    TestProgram world;
    const QString name = QStringLiteral("Plant 300");
    const QString folder = QStringLiteral("S:\\Docs\\Plant 300\\");

    SampleProject()
    {
        world.session.projectLanguage = QStringLiteral("ENU");
        world.files.makeFolder(QStringLiteral("S:\\Docs\\Plant 300"));
        TableOfContents(world.session, world.files).CreateQVTOCFile(folder + ProjectFile::toc);
        CategoryFile(world.files)
            .write(defaultCategoriesPath(world.server),
                   {{{}, QStringLiteral("Operation"), {}}, {{}, QStringLiteral("Repair"), {}}});
    }

    /// Lists a book and writes its file and its pages (file name, bytes); titles are the file names
    /// without ".htm".
    TocBook addBook(const QString &bookName, const QString &acronym,
                    const QList<QPair<QString, QByteArray>> &pages = {})
    {
        const TocBook entry{bookName,
                            acronym,
                            name,
                            QStringLiteral("Book_") + acronym,
                            QStringLiteral("Book_%1.xml").arg(acronym),
                            {},
                            {}};
        Book book;
        book.name = bookName;
        book.acronym = acronym;
        for (const auto &[file, bytes] : pages) {
            const QString id = QStringLiteral("P%1").arg(book.pages.size() + 1, 4, 10, QChar(u'0'));
            book.pages.append({id, QString(file).remove(QStringLiteral(".htm")), file, {}, {}});
        }
        BookFile(world.session, world.files).write(name, entry, book);
        for (const auto &[file, bytes] : pages)
            world.put(folder + entry.folder + u'\\' + file, bytes);
        TableOfContents(world.session, world.files).addBook(name, entry);
        return entry;
    }

    /// One view, group, topic and category with a link to `book`'s page P0001 and a dead one.
    void addQuickNav(const QString &acronym)
    {
        pugi::xml_document document;
        pugi::xml_node node = document.append_child("QV_QuickNav");
        for (const char *level : {"View", "Group", "Topic", "Category"}) {
            node = node.append_child(level);
            setAttribute(node, "ID", QString::fromLatin1(level));
            appendText(node, QByteArray(level).append("_Name").constData(),
                       QStringLiteral("The ") + QString::fromLatin1(level).toLower());
        }
        for (const char *page : {"P0001", "P0009"}) {
            pugi::xml_node link = node.append_child("Link");
            setAttribute(link, "Book", acronym);
            setAttribute(link, "Page", QString::fromLatin1(page));
            appendText(link, "Link_Title", QStringLiteral("To ") + QString::fromLatin1(page));
        }
        world.files.makeFolder(folder + QStringLiteral("QuickNav"));
        saveXml(world.files, folder + ProjectFile::quickNav, document);
    }

    /// The global book with a page that is there and one that is not.
    void addGlobals()
    {
        const QString place = folder + ProjectFile::globalFolder + u'\\';
        world.files.makeFolder(withoutBackslash(place));
        makeGlobalInformation(world.files)->createGlobalBook(place, name);
        pugi::xml_document document =
            loadXml(world.files, place + ProjectFile::globalBook, "Book_Master");
        pugi::xml_node pages = document.document_element().child("Global_Pages");
        for (const auto &file : {QStringLiteral("welcome.htm"), QStringLiteral("legal.htm")}) {
            pugi::xml_node page = pages.append_child("Page");
            setAttribute(page, "ID", file);
            setAttribute(page, "Type", QStringLiteral("Free"));
            appendText(page, "Page_Title", QString(file).remove(QStringLiteral(".htm")));
            appendText(page, "Page_File", file);
        }
        saveXml(world.files, place + ProjectFile::globalBook, document);
        world.put(place + QStringLiteral("welcome.htm"), "<html><body>Welcome</body></html>");
    }
};
