#pragma once

#include "controls/ctlBooksTab.h"
#include "controls/pages/PageEditor.h"
#include "controls/session/ProjectSession.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"

/// The books editor on the sample project, shown in an active window.
class Desk
{
public:
    explicit Desk(SampleProject &project)
        : sample(project)
        , session(project.world.program)
        , tab(project.world.program, session)
    {
        tab.setProjectName(sample.name);
        tab.resize(1000, 600);
        tab.show();
        tab.activateWindow();
        static_cast<void>(QTest::qWaitForWindowActive(&tab));
    }

    void open(const TocBook &book, const QString &page = QStringLiteral("P0001"))
    {
        session.select(book, page);
    }
    void insert(const QString &text)
    {
        QTextCursor cursor = source()->textCursor();
        cursor.movePosition(QTextCursor::Start);
        cursor.insertText(text);
    }
    QPlainTextEdit *source() const
    {
        return tab.findChild<PageEditor *>()->findChild<QPlainTextEdit *>();
    }
    QList<TocBook> listed() const
    {
        return TableOfContents(sample.world.session, sample.world.files).read(sample.name).books;
    }
    Book file(const TocBook &book) const
    {
        return BookFile(sample.world.session, sample.world.files).read(sample.name, book);
    }
    /// Titles in order, those below a page in brackets.
    QString outline() const { return below(pages()->invisibleRootItem()); }
    static QString below(const QTreeWidgetItem *parent)
    {
        QStringList titles;
        for (int row = 0; row < parent->childCount(); ++row) {
            const QTreeWidgetItem *item = parent->child(row);
            titles.append(item->childCount() == 0
                              ? item->text(0)
                              : QStringLiteral("%1(%2)").arg(item->text(0), below(item)));
        }
        return titles.join(QLatin1Char(' '));
    }
    QString text(const char *label) const { return control<QLabel>(&tab, label)->text(); }
    QTreeWidget *pages() const { return control<QTreeWidget>(&tab, "tvwPages"); }
    QListWidget *books() const { return control<QListWidget>(&tab, "lstBooks"); }
    void pressSave() { QTest::keyClick(source(), Qt::Key_S, Qt::ControlModifier); }
    void enter(const QWidget *form, const char *field, const QString &text)
    {
        auto *edit = control<QLineEdit>(form, field);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }

    SampleProject &sample;
    ProjectSession session;
    ctlBooksTab tab;
};
