#include "controls/links/LinkChangesDialog.h"
#include "controls/links/LinksPane.h"
#include "controls/links/MoveCommands.h"
#include "controls/links/MovePages.h"
#include "controls/session/ProjectPages.h"
#include "projectfiles/KeyWordFile.h"
#include "support/Errors.h"
#include "support/NextDialog.h"
#include "support/SampleProject.h"
#include "tools/RelativePath.h"

using namespace Qt::StringLiterals;

namespace {

/// The project, opened, with the bytes of all files that authors work on.
class LinkWorld : public SampleProject
{
public:
    ProjectSession session{world.program};
    TocBook pumps, valves;

    /// Two books; each page is made of its body.
    void addBooks(const QByteArray &start, const QByteArray &other)
    {
        pumps =
            addBook(u"Pumps"_s, u"PMP"_s, {{u"start.htm"_s, start}, {u"more.htm"_s, "<p>More"}});
        valves = addBook(u"Valves"_s, u"VLV"_s, {{u"other.htm"_s, other}});
        session.open(name);
    }
    QByteArray page(const QString &path) { return world.bytes(folder + path); }
    QMap<QString, QByteArray> allBytes(const QString &below = {})
    {
        QMap<QString, QByteArray> all;
        for (const FolderEntry &entry : world.files.entries(folder + below)) {
            const QString path = below + entry.name;
            if (entry.status.kind == FileKind::File)
                all.insert(path, page(path));
            else if (entry.name != ProjectFile::backupFolder)
                all.insert(allBytes(path + u'\\'));
        }
        return all;
    }
    QStringList files(const TocBook &book)
    {
        QStringList names;
        for (const BookPage &page : flattened(session.book(book).pages))
            names.append(page.id + u' ' + page.file);
        return names;
    }
    QString stateOf(const QString &path, int link)
    {
        const PageIndex &index = session.pages().current();
        return index.problemOf(index.page(path)->links.at(link));
    }
};

} // namespace

class tst_pagelinks final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theIndexSaysWhereLinksLead()
    {
        LinkWorld project;
        project.addBooks(
            "<h1>Start <b>here</b></h1>\n<a name=top1></a><p id='a&amp;b'>\n"
            "<a href='../Book_VLV/other.htm#x'>To <i>other</i></a>\n"
            "<a href='More.htm'>m</a><a href='gone.htm'>g</a><a href='#a&amp;b'>s</a>\n"
            "<a href='../../../x.htm'>o</a><a href='http://a.invalid/'>w</a>"
            "<a href='../../**Plant 300**/Book_PMP/more.htm?q'>p</a><a href='..'>f</a>",
            "<base href='../Book_PMP/'><p id=y><img src=p.png><a href=start.htm#top1>");
        project.world.put(project.folder + u"Book_PMP\\p.png"_s, "png");
        const PageIndex &index = project.session.pages().current();
        const IndexedPage &start = *index.page(u"book_pmp\\START.htm"_s);
        QCOMPARE(start.title, u"Start here"_s);
        QCOMPARE(start.anchors, (QStringList{u"top1"_s, u"a&b"_s}));
        QStringList links;
        for (const IndexedLink &link : start.links + start.outside)
            links.append(
                u"%1 %2|%3|%4"_s.arg(link.line).arg(link.text, link.target, index.problemOf(link)));
        QCOMPARE(links, (QStringList{
                            u"3 To other|Book_VLV\\other.htm|The page has no place \"x\"."_s,
                            u"4 m|Book_PMP\\More.htm|The file is called Book_PMP\\more.htm: letter "
                            "case differs."_s,
                            u"4 g|Book_PMP\\gone.htm|The page is missing."_s,
                            u"4 s|Book_PMP\\start.htm|"_s,
                            u"5 p|Book_PMP\\more.htm|"_s,
                            u"5 f||It leads to a folder."_s,
                            u"5 o||It leads out of the project."_s,
                            u"5 w||"_s,
                        }));
        const IndexedPage &other = *index.page(u"Book_VLV\\other.htm"_s);
        QCOMPARE(other.links.at(0).target, u"Book_PMP\\p.png"_s);
        QVERIFY(index.problemOf(other.links.at(0)).isEmpty());
        QCOMPARE(index.usesOf(u"Book_PMP\\start.htm"_s).size(), 2); // its own and the other book's
        QCOMPARE(index.problemsIn(start.path), 5);
    }

    void onlyWhatChangedIsReadAgain()
    {
        LinkWorld project;
        project.addBooks("<a href=more.htm>", "<a href=../Book_PMP/start.htm>");
        QTRY_VERIFY(project.session.pages().isReady()); // in the background, unasked
        QCOMPARE(project.session.pages().latest().usesOf(u"Book_PMP\\start.htm"_s).size(), 1);

        project.world.put(project.folder + u"Book_PMP\\more.htm"_s, "<a href='start.htm'>");
        project.world.files.removeFile(project.folder + u"Book_VLV\\other.htm"_s);
        const PageIndex &index = project.session.pages().current();
        const QList<PageUse> uses = index.usesOf(u"Book_PMP\\start.htm"_s);
        QCOMPARE(uses.size(), 1);
        QCOMPARE(uses.first().page, u"Book_PMP\\more.htm"_s);
        QVERIFY(index.page(u"Book_VLV\\other.htm"_s) == nullptr);

        QSignalSpy updated(&project.session.pages(), &ProjectPages::updated);
        project.session.perform(u"Write"_s, [&](StagedFiles &files) {
            files.replaceFile(project.folder + u"Book_PMP\\more.htm"_s, "<a href='other.htm'>");
        });
        QTRY_VERIFY(!updated.isEmpty());
        QVERIFY(project.session.pages().latest().usesOf(u"Book_PMP\\start.htm"_s).isEmpty());
        project.session.open({});
        QVERIFY(!project.session.pages().isReady());
    }

    void referencesChangeAsLittleAsPossible()
    {
        struct Case
        {
            QString written, folder, target, newFolder, newTarget, expected;
        };
        const QString a = u"A\\"_s;
        const QList<Case> cases{
            {u"x.htm#k?"_s, a, u"A\\x.htm"_s, a, u"A\\y z.htm"_s, u"y%20z.htm#k?"_s},
            {u"./../A/x.htm?q#k"_s, a, u"A\\x.htm"_s, a, u"A\\y.htm"_s, u"./../A/y.htm?q#k"_s},
            {u"..\\B&amp;C\\x%2ehtm"_s, a, u"B&C\\x.htm"_s, u"N\\M\\"_s, u"B&C\\x.htm"_s,
             u"..\\..\\B&amp;C\\x%2ehtm"_s},
            {u"&#228;.htm#&#228;"_s, a, u"A\\\u00e4.htm"_s, u"B\\"_s, u"A\\\u00e4.htm"_s,
             u"../A/&#228;.htm#&#228;"_s},
            {u"../../**P**/B/x.htm"_s, a, u"B\\x.htm"_s, a, u"C\\D\\x.htm"_s,
             u"../../**P**/C/D/x.htm"_s},
            {u"../B/x.htm"_s, a, u"B\\x.htm"_s, u"B\\"_s, u"B\\x.htm"_s, u"x.htm"_s},
            {u" ./x.htm "_s, a, u"A\\x.htm"_s, u"B\\"_s, u"B\\x.htm"_s, u" ./x.htm "_s},
            {u"../"_s, u"A\\b\\"_s, u"A"_s, u"C\\"_s, u"A"_s, u"../A/"_s},
            {u"x.htm"_s, a, u"A\\x.htm"_s, a, u"A\\c:d.htm"_s, u"c%3Ad.htm"_s},
        };
        for (const Case &one : cases)
            QCOMPARE(
                redirected(one.written, {one.folder, one.target}, {one.newFolder, one.newTarget}),
                one.expected);
    }

    void renamingKeepsEveryOtherByte_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char *name, const QByteArray &front, const QByteArray &back) {
            QTest::newRow(name) << front + "'../Book_PMP/start.htm#k'" + back
                                << front + "'../Book_PMP/first%20page.htm#k'" + back;
        };
        row("UTF-8 with mark", "\xEF\xBB\xBF\xC3\xA4\r\n<a href=", ">\xE2\x82\xAC</a>\r");
        row("broken UTF-8",
            "<meta charset=utf-8>\xC3\xA4\xFF../Book_PMP/start.htm#k <a href=", ">\xE4</a>\0x");
        row("windows-1252 with unused bytes", "\xE4\x81\x8D<a href=", ">\x9D</a>");
        row("EUC-KR", "<meta charset=euc-kr>\xB0\xA1\xB0\xA2<a href=", ">\xC7\xD1\xB1\xDB</a>");
        const auto wide = [](const QString &text) { return utf16Bytes(text); };
        QTest::newRow("UTF-16") << wide(u"\u4e2d<a href=../Book_PMP/start.htm>\u6587"_s)
                                << wide(u"\u4e2d<a href=../Book_PMP/first%20page.htm>\u6587"_s);
    }
    void renamingKeepsEveryOtherByte()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        LinkWorld project;
        project.addBooks("<p id=k>", before);
        MoveCommands commands(project.session);
        const PlannedMove planned =
            commands.planFile(project.pumps, u"P0001"_s, u"first page.htm"_s);
        QVERIFY(commands.carryOut(planned, true));
        QCOMPARE(project.page(u"Book_VLV\\other.htm"_s), after);
    }

    void aRenameFollowsEverywhereAndIsUndone()
    {
        LinkWorld project;
        project.addQuickNav(u"PMP"_s);
        project.world.put(project.folder + ProjectFile::links,
                          xmlFile(u"<LINKS><IBD><ID><LinkID>L</LinkID><LinkIDSourceFile>"
                                  "Plant 300\\Book_PMP\\start.htm#k</LinkIDSourceFile></ID></IBD>"
                                  "<IBS/></LINKS>"_s));
        project.addBooks("<a href='start.htm#k'><a href=#k><a id=k href=more.htm>",
                         "<a href='../Book_PMP/START.HTM'>");
        const auto before = project.allBytes();
        MoveCommands commands(project.session);
        QVERIFY(commands.carryOut(commands.planFile(project.pumps, u"P0001"_s, u"sub\\Start.htm"_s),
                                  true));
        QCOMPARE(project.page(u"Book_PMP\\sub\\Start.htm"_s),
                 "<a href='Start.htm#k'><a href=#k><a id=k href=../more.htm>");
        QCOMPARE(project.page(u"Book_VLV\\other.htm"_s), "<a href='../Book_PMP/sub/Start.htm'>");
        QCOMPARE(project.files(project.pumps),
                 (QStringList{u"P0001 sub\\Start.htm"_s, u"P0002 more.htm"_s}));
        QVERIFY(QString::fromUtf16(reinterpret_cast<const char16_t *>(
                                       project.page(ProjectFile::links).constData() + 2))
                    .contains(u"Plant 300\\Book_PMP\\sub\\Start.htm#k"));
        QCOMPARE(project.session.history().undoName(), u"Rename page start.htm"_s);
        const auto after = project.allBytes();
        project.session.undo();
        QCOMPARE(project.allBytes(), before);
        project.session.redo();
        QCOMPARE(project.allBytes(), after);

        // Only the letter case
        QVERIFY(commands.carryOut(commands.planFile(project.pumps, u"P0001"_s, u"sub\\START.htm"_s),
                                  true));
        QCOMPARE(project.world.below(project.folder + u"Book_PMP\\sub"_s),
                 QStringList{u"START.htm"_s});
        QCOMPARE(project.stateOf(u"Book_VLV\\other.htm"_s, 0), QString());
    }

    void namesThatAreNoGoodAreRefused()
    {
        LinkWorld project;
        project.addBooks("", "");
        const MoveCommands commands(project.session);
        const auto problem = [&](const QString &file) {
            return commands.problemOfFile(project.pumps, u"start.htm"_s, file);
        };
        QCOMPARE(problem(u" "_s), u"The file needs a name."_s);
        QCOMPARE(problem(u"..\\x.htm"_s), u"\"..\\x.htm\" cannot be the name of a file."_s);
        QCOMPARE(problem(u"x.txt"_s), u"The name of a page ends in .htm or .html."_s);
        QCOMPARE(problem(u"MORE.HTM"_s), u"There is a file of that name already."_s);
        QCOMPARE(problem(u"START.htm"_s), QString());
        QCOMPARE(commands.problemOfFolder(project.pumps, u"Book_vlv"_s),
                 u"There is a folder of that name already."_s);
        QCOMPARE(commands.problemOfFolder(project.pumps, u"quicknav"_s),
                 u"The product keeps files of its own in \"quicknav\"."_s);
        QCOMPARE(problem(u"a#b.htm"_s), u"\"a#b.htm\" cannot be the name of a file."_s);
        QCOMPARE(commands.problemOfFolder(project.pumps, u"Book_PMP\\in"_s),
                 u"A folder cannot be moved into itself or out of a folder of its own."_s);
    }

    void pagesGoToAnotherBookWithWhatRefersToThem()
    {
        LinkWorld project;
        project.addQuickNav(u"PMP"_s);
        project.addBooks("<img src='p.png'><a href=more.htm>", "<a href='../Book_PMP/start.htm'>");
        project.world.put(project.folder + u"Book_VLV\\start.htm"_s, "taken");
        writeKeyWords(project.world.session, project.world.files, project.name,
                      {{u"pump"_s, u"Author"_s, {}, {{u"PMP"_s, u"P0001"_s}}}});
        project.session.select(project.pumps, u"P0001"_s);
        const auto before = project.allBytes();
        answerDialog("cmdChangeLinks");
        QVERIFY(MovePages(project.session, nullptr)
                    .moveToBook(project.pumps, {u"P0001"_s}, project.valves, {}, {{}, 0}));
        QCOMPARE(project.files(project.pumps), QStringList{u"P0002 more.htm"_s});
        QCOMPARE(project.files(project.valves),
                 (QStringList{u"P0002 start-2.htm"_s, u"P0001 other.htm"_s}));
        QCOMPARE(project.page(u"Book_VLV\\start-2.htm"_s),
                 "<img src='../Book_PMP/p.png'><a href=../Book_PMP/more.htm>");
        QCOMPARE(project.page(u"Book_VLV\\other.htm"_s), "<a href='start-2.htm'>");
        const QuickNavLink &link =
            project.session.quickNav().views[0].children[0].children[0].children[0].links[0];
        QCOMPARE(link.book + link.page, u"VLVP0002"_s);
        const KeyWord::Page moved{u"VLV"_s, u"P0002"_s};
        QCOMPARE(readKeyWords(project.world.session, project.world.files, project.name)[0].pages,
                 QList{moved});
        QCOMPARE(project.session.currentBook()->acronym + project.session.currentPage(),
                 u"VLVP0002"_s);
        project.session.undo();
        QCOMPARE(project.allBytes(), before);
    }

    void aBookFolderIsRenamed()
    {
        LinkWorld project;
        project.addBooks("<a href=more.htm><a href=../Book_VLV/other.htm>",
                         "<link rel=stylesheet href=s.css><a href='../book_pmp/start.htm#k'>");
        project.world.put(project.folder + u"Book_VLV\\s.css"_s,
                          "a { background: url(../Book_PMP/p.png) } /* ../Book_PMP/ */");
        project.session.select(project.pumps, u"P0002"_s);
        const auto before = project.allBytes();
        answerDialog("cmdChangeLinks");
        QVERIFY(MovePages(project.session, nullptr)
                    .renameBookFolder(project.pumps, u"Book_P\u00fcmp"_s));
        QCOMPARE(project.page(u"Book_VLV\\other.htm"_s),
                 "<link rel=stylesheet href=s.css><a href='../Book_P%C3%BCmp/start.htm#k'>");
        QCOMPARE(project.page(u"Book_VLV\\s.css"_s),
                 "a { background: url(../Book_P%C3%BCmp/p.png) } /* ../Book_PMP/ */");
        QCOMPARE(project.page(u"Book_P\u00fcmp\\start.htm"_s), before[u"Book_PMP\\start.htm"_s]);
        QCOMPARE(project.session.currentBook()->folder, u"Book_P\u00fcmp"_s);
        QCOMPARE(project.session.currentPage(), u"P0002"_s);
        QCOMPARE(project.session.book(*project.session.currentBook()).path,
                 u"Docs\\Plant 300\\Book_P\u00fcmp\\"_s);
        project.session.undo();
        QCOMPARE(project.allBytes(), before);
    }

    void theAuthorSeesAndDecides()
    {
        LinkWorld project;
        project.addBooks("", "<a href='../Book_PMP/start.htm'>");
        const QString locked = project.folder + u"Book_VLV\\other.htm"_s;
        project.world.files.setAttributes(locked, ReadOnlyFile);
        const auto before = project.allBytes();
        MovePages pages(project.session, nullptr);
        QString shown;
        answerDialog("cmdCancel", [&](const QWidget *dialog) {
            shown = control<QPushButton>(dialog, "cmdChangeLinks")->text();
        });
        QVERIFY(!pages.renameFile(project.pumps, u"P0001"_s, u"new.htm"_s));
        QCOMPARE(shown, u"&Unlock them and go on"_s);
        QCOMPARE(project.allBytes(), before);

        answerDialog("cmdFilesOnly");
        QVERIFY(pages.renameFile(project.pumps, u"P0001"_s, u"new.htm"_s));
        QCOMPARE(project.world.bytes(locked), "<a href='../Book_PMP/start.htm'>");
        QVERIFY(project.world.files.status(locked).readOnly);
        project.session.undo();

        QSignalSpy done(&project.session, &ProjectSession::done);
        answerDialog("cmdChangeLinks");
        QVERIFY(pages.renameFile(project.pumps, u"P0001"_s, u"new.htm"_s));
        QCOMPARE(project.world.bytes(locked), "<a href='../Book_PMP/new.htm'>");
        QCOMPARE(done.last().first().toString(),
                 u"The page start.htm is now called new.htm. Links changed: 1."_s);

        // What another author changed after the list was made stays, and all the rest with it.
        MoveCommands commands(project.session);
        const PlannedMove planned = commands.planFile(project.pumps, u"P0001"_s, u"start.htm"_s);
        project.world.files.replaceFile(locked, "<b><a href='../Book_PMP/new.htm'>");
        const QvError error = raisedBy([&] { commands.carryOut(planned, true); });
        QCOMPARE(error.number(), int(PathFileAccess));
        QVERIFY(error.description().contains(locked));
        QVERIFY(project.world.files.fileExists(project.folder + u"Book_PMP\\new.htm"_s));
    }

    void lockedFilesThatFollowAreOfferedForUnlocking()
    {
        LinkWorld project;
        project.addBooks("<a href=more.htm>", "<a href='../Book_PMP/start.htm'>");
        const QString bookFile = project.folder + u"Book_PMP\\Book_PMP.xml"_s;
        project.world.files.setAttributes(bookFile, ReadOnlyFile);
        const auto before = project.allBytes();
        MovePages pages(project.session, nullptr);
        const auto rename = [&] {
            return pages.renameFile(project.pumps, u"P0001"_s, u"sub\\new.htm"_s);
        };
        ScriptedMessages &messages = project.world.messages;
        messages.choices = {1, 0};
        answerDialog("cmdFilesOnly");
        QVERIFY_THROWS_EXCEPTION(Unwinding, rename());
        QCOMPARE(messages.shown, QStringList{u"These files are locked against changes:\n"
                                             "Book_PMP\\Book_PMP.xml"_s});
        QCOMPARE(project.allBytes(), before);
        QVERIFY(project.world.files.status(bookFile).readOnly);
        QVERIFY(!project.session.history().canUndo());

        answerDialog("cmdFilesOnly");
        QVERIFY(rename());
        QCOMPARE(project.files(project.pumps),
                 (QStringList{u"P0001 sub\\new.htm"_s, u"P0002 more.htm"_s}));
        QCOMPARE(project.page(u"Book_PMP\\sub\\new.htm"_s), "<a href=../more.htm>");
        QCOMPARE(project.page(u"Book_VLV\\other.htm"_s), "<a href='../Book_PMP/start.htm'>");
        project.session.undo();
        QCOMPARE(project.allBytes(), before);
    }

    void thePaneListsLinksBothWays()
    {
        LinkWorld project;
        project.addQuickNav(u"PMP"_s);
        project.addBooks("<a href='gone.htm'>Go</a>\n<a href='http://a.invalid/'>Web</a>",
                         "\n<a href='../Book_PMP/start.htm#no'>Here</a>");
        LinksPane pane(project.session);
        pane.show();
        project.session.select(project.pumps, u"P0001"_s);
        (void)project.session.pages().current();

        const auto rows = [&](const char *name) {
            QStringList lines;
            const QAbstractItemModel *const model = control<QTreeView>(&pane, name)->model();
            for (int row = 0; row < model->rowCount(); ++row) {
                QStringList cells;
                for (int column = 0; column < model->columnCount(); ++column)
                    cells.append(model->index(row, column).data().toString());
                lines.append(cells.join(u'|'));
            }
            return lines;
        };
        QCOMPARE(rows("lstLinksIn"),
                 (QStringList{u"Book_VLV\\other.htm|2|Here|No such place"_s,
                              u"Quick navigation: The view > The group > The topic > The category"
                              "||To P0001|Good"_s}));
        QCOMPARE(rows("lstLinksOut"),
                 (QStringList{u"Book_PMP\\gone.htm|1|Go|File missing"_s,
                              u"http://a.invalid/|2|Web|Outside, not checked"_s}));
        QCOMPARE(control<QTreeView>(&pane, "lstLinksIn")->accessibleDescription(),
                 u"Links to this page: 2, with problems: 1"_s);

        QSignalSpy asked(&pane, &LinksPane::placeRequested);
        auto *const in = control<QTreeView>(&pane, "lstLinksIn");
        in->setFocus();
        QTest::keyClick(in, Qt::Key_Return);
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0][0].toString(), u"Book_VLV\\other.htm"_s);
        QCOMPARE(asked[0][1].toLongLong(), 10);
        QSignalSpy wanted(&pane, &LinksPane::quickNavRequested);
        QTest::keyClick(in, Qt::Key_Down);
        QTest::keyClick(in, Qt::Key_Return);
        QCOMPARE(wanted, (QList<QVariantList>{{QStringList{u"The view"_s, u"The group"_s,
                                                           u"The topic"_s, u"The category"_s}}}));

        control<QLineEdit>(&pane, "txtLinkFilter")->setText(u"quick"_s);
        QCOMPARE(rows("lstLinksIn").size(), 1);
        QCOMPARE(rows("lstLinksOut").size(), 0);
    }
};

QV_FORM_TEST_MAIN(tst_pagelinks)
#include "tst_pagelinks.moc"
