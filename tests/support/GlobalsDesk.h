#pragma once

#include "catalogue/RenamePlan.h"
#include "controls/ctlGlobalsTab.h"
#include "controls/session/ProjectSession.h"
#include "projectfiles/GlobalBook.h"
#include "support/LinkFile.h"
#include "support/NextDialog.h"
#include "support/SampleProject.h"

inline QByteArray latinPage()
{
    return "<meta charset=\"windows-1252\"><p>**Plant 300** \xDC"
           "bersicht</p>";
}

/// The listed project "Plant 300" with all that names it.
class NamedProject : public SampleProject
{
public:
    NamedProject()
    {
        world.session.projectId = QStringLiteral("PLT");
        world.list(name);
        world.list(QStringLiteral("Other"));
        world.session.projectName = name;
        pump = addBook(
            QStringLiteral("Pump"), QStringLiteral("PUMP"),
            {{QStringLiteral("a.htm"), latinPage()},
             {QStringLiteral("b.htm"), utf16Bytes(QStringLiteral("<p>**Plant 300** \u6C34</p>"))},
             {QStringLiteral("c.htm"), "<p>**Plant 30** \xFF</p>"}});
        makeGlobalBookIfMissing(world.session, world.files, world.components.globalInformation);
        world.put(folder + QStringLiteral("QVPlant 300_Server.Zip"), "packed");
        world.put(folder + ProjectFile::links, links());
        world.put(QStringLiteral("S:\\Docs\\Other\\QV_LinkID.xml"), links());
    }

    static QByteArray links()
    {
        return xmlFile(
            QStringLiteral("<LINKS><IBD>")
            + linkTarget(QStringLiteral("T"), QStringLiteral("Plant 300\\Book_PUMP\\a.htm#x"))
            + linkTarget(QStringLiteral("U"), QStringLiteral("Plant 3000\\a.htm"))
            + QStringLiteral("</IBD><IBS>")
            + linkReference(QStringLiteral("T"), QStringLiteral("plant 300/Book_PUMP/b.htm"))
            + QStringLiteral("</IBS></LINKS>\n"));
    }

    TocBook pump;
};

/// The editor on a project, in an active window; boxes are found by their class.
class Desk
{
public:
    explicit Desk(SampleProject &project)
        : sample(project)
        , session(project.world.program)
        , tab(session)
    {
        tab.setProjectName(sample.name);
        tab.resize(1000, 700);
        tab.show();
        tab.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&tab));
        for (int page = tabs()->count(); page > 0;) // each is made when it is first shown
            tabs()->setCurrentIndex(--page);
    }

    QTreeWidget *table(const char *name) const { return control<QTreeWidget>(&tab, name); }
    QStringList rows(const char *name) const { return textsIn(table(name)->model()); }
    void choose(const char *name, const QString &row)
    {
        const auto found = table(name)->findItems(row, Qt::MatchExactly, 0);
        QCOMPARE(found.size(), 1);
        tabs()->setCurrentIndex(pageOf(table(name)));
        table(name)->setCurrentItem(found.first());
    }
    QTabWidget *tabs() const { return control<QTabWidget>(&tab, "tabGlobals"); }
    int pageOf(QWidget *part) const
    {
        int page = 0;
        while (!tabs()->widget(page)->isAncestorOf(part))
            ++page;
        return page;
    }
    QDialog *press(const char *button)
    {
        tabs()->setCurrentIndex(pageOf(control<QWidget>(&tab, button)));
        click(&tab, button);
        return openWindow<QDialog>();
    }
    static void enter(QDialog *dialog, const char *field, const QString &text)
    {
        auto *edit = control<QLineEdit>(dialog, field);
        edit->selectAll();
        edit->insert(text);
    }
    QList<GlobalPage> pages()
    {
        return readGlobalPages(sample.world.session, sample.world.files, session.projectName());
    }
    Toc toc() const
    {
        return TableOfContents(sample.world.session, sample.world.files)
            .read(session.projectName());
    }

    SampleProject &sample;
    ProjectSession session;
    ctlGlobalsTab tab;
};
