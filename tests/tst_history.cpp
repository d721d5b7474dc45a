#include "controls/books/BookCommands.h"
#include "controls/books/PageCommands.h"
#include "controls/globals/CategoryCommands.h"
#include "controls/globals/GlobalPageCommands.h"
#include "controls/links/MoveCommands.h"
#include "controls/quicknav/QuickNavCommands.h"
#include "platform/TreeWalker.h"
#include "projectfiles/changes/ChangePlan.h"
#include "support/DisturbedFiles.h"
#include "support/Errors.h"
#include "support/SampleProject.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Everything of the project but what is no author's.
QMap<QString, QByteArray> authorFiles(FileSystem &files, const QString &folder)
{
    QMap<QString, QByteArray> found;
    walkTree(files, folder, [&](const TreeEntry &entry) {
        if (!entry.relative.startsWith(ProjectFile::backupFolder))
            found.insert(entry.relative, entry.status.kind == FileKind::File
                                             ? files.readFile(entry.path)
                                             : QByteArray("folder"));
    });
    return found;
}

/// A project with its session, on files that are not flushed: a walk of many commands takes
/// seconds.
struct Desk
{
    SampleProject sample;
    DisturbedFiles files{sample.world.files};
    Program program{sample.world.session,   files,
                    sample.world.registry,  sample.world.processes,
                    sample.world.windows,   sample.world.clock,
                    sample.world.messages,  sample.world.dialogs,
                    sample.world.locale,    sample.world.ending,
                    sample.world.navigator, sample.world.currentProject,
                    sample.world.components};
    ProjectSession session{program};

    Desk()
    {
        files.syncs = false;
        const QByteArray page = "<html><head><title>T</title></head><body><a href=\"b.htm\">b</a>"
                                "</body></html>";
        sample.addBook(u"Pump"_s, u"PUMP"_s, {{u"a.htm"_s, page}, {u"b.htm"_s, page}});
        sample.addBook(u"Valve"_s, u"VALVE"_s, {{u"a.htm"_s, page}, {u"b.htm"_s, page}});
        sample.addQuickNav(u"PUMP"_s);
        sample.addGlobals();
        session.open(sample.name);
    }
    QMap<QString, QByteArray> tree() { return authorFiles(sample.world.files, sample.folder); }
};

/// An author who does whatever comes to hand.
class Author final
{
public:
    Author(ProjectSession &session, quint32 seed)
        : m_session(session)
        , m_random(seed)
    {
    }

    /// One command; many of them are refused, which changes nothing.
    void act()
    {
        trap([](const QvError &) {},
             [this] {
                 switch (below(6)) {
                 case 0:
                     return actOnBooks();
                 case 1:
                     return actOnPages();
                 case 2:
                     return actOnPlaces();
                 case 3:
                     return actOnCategories();
                 case 4:
                     return actOnGlobals();
                 default:
                     return actOnQuickNav();
                 }
             });
    }

private:
    int below(int limit) { return m_random.bounded(limit); }
    QString word() { return u"Word %1"_s.arg(below(30)); }
    template <typename List>
    auto one(const List &list)
    {
        if (list.isEmpty())
            throw QvError(InvalidCall, {}, u"Nothing to choose from"_s);
        return list.at(below(static_cast<int>(list.size())));
    }
    TocBook book() { return one(m_session.books()); }
    QString page(const TocBook &entry) { return one(flattened(m_session.book(entry).pages)).id; }

    void actOnBooks()
    {
        BookCommands commands(m_session);
        TocBook entry = m_session.books().isEmpty() ? TocBook() : book();
        const TocBook old = entry;
        const QString acronym = u"B%1"_s.arg(below(30));
        switch (below(4)) {
        case 0:
            commands.create({word(),
                             acronym,
                             m_session.projectName(),
                             u"Book_"_s + acronym,
                             u"Book_%1.xml"_s.arg(acronym),
                             {},
                             {}});
            break;
        case 1:
            (below(2) == 0 ? entry.name : entry.acronym) = acronym;
            commands.change(old, entry);
            break;
        case 2:
            commands.move(entry, below(5));
            break;
        default:
            if (below(3) == 0)
                commands.remove(entry, below(2) == 0);
        }
    }

    void actOnPages()
    {
        PageCommands commands(m_session);
        const TocBook entry = book();
        const QString file = u"page%1.htm"_s.arg(below(30));
        const int what = below(8);
        if (what < 3) {
            commands.add(entry, word(), file, {});
            return;
        }
        const QString id = page(entry);
        const QList<bool (PageCommands::*)(const TocBook &, const QStringList &)> moves{
            &PageCommands::moveUp, &PageCommands::moveDown, &PageCommands::promote,
            &PageCommands::demote};
        if (what == 3)
            commands.rename(entry, id, word());
        else if (what == 4)
            commands.remove(entry, {id}, below(2) == 0);
        else if (what == 5)
            commands.duplicate(entry, id);
        else
            (commands.*one(moves))(entry, {id});
    }

    void actOnPlaces()
    {
        MoveCommands commands(m_session);
        const TocBook entry = book();
        const QString name = u"Moved%1"_s.arg(below(30));
        if (below(4) == 0)
            commands.carryOut(commands.planFolder(entry, u"Book_"_s + name), true);
        else
            commands.carryOut(commands.planFile(entry, page(entry), name + u".htm"_s),
                              below(4) != 0);
    }

    void actOnCategories()
    {
        CategoryCommands commands(m_session);
        if (below(2) == 0)
            commands.add(word(), u"said of it"_s);
        else if (below(2) == 0)
            commands.change(one(knownCategories(m_session)).category.name, word(), {});
        else
            commands.remove(one(knownCategories(m_session)).category.name, word());
    }

    void actOnGlobals()
    {
        GlobalPageCommands commands(m_session);
        if (below(2) == 0) {
            GlobalPage page;
            page.title = word();
            page.type = u"Free"_s;
            page.file = u"Book_Free%1.htm"_s.arg(below(30));
            commands.create(page);
        } else if (below(2) == 0) {
            commands.moveTo(one(m_session.globalPages()), below(4));
        } else {
            commands.remove(one(m_session.globalPages()));
        }
    }

    void actOnQuickNav()
    {
        QuickNavCommands commands(m_session);
        const QuickNavRef top{};
        if (below(3) == 0) {
            commands.add(top, word());
            return;
        }
        const QuickNavRef view{0, one(m_session.quickNav().views).id};
        if (below(3) == 0)
            commands.rename(view, word());
        else if (below(2) == 0)
            commands.moveBy(view, below(2) == 0 ? 1 : -1);
        else
            commands.remove(view);
    }

    ProjectSession &m_session;
    QRandomGenerator m_random;
};

} // namespace

class tst_history final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesBackFromALongWalk();
    void refusesOverOtherPeoplesWork();
    void emptiesItsBin();
    void noticesWhatOthersChange();
    void finishesAtTheNextOpen();
};

void tst_history::comesBackFromALongWalk()
{
    Desk desk;
    const auto start = desk.tree();
    Author author(desk.session, 20260314);
    QRandomGenerator random(7);
    ChangeHistory &history = desk.session.history();
    QSignalSpy changes(&history, &ChangeHistory::changed);
    for (int turn = 0; changes.size() < 1000 && turn < 10000; ++turn) {
        const int what = random.bounded(10);
        if (what == 0)
            desk.session.undo();
        else if (what == 1)
            desk.session.redo();
        else
            author.act();
    }
    QVERIFY(changes.size() >= 1000);
    while (history.canRedo())
        desk.session.redo();
    const auto end = desk.tree();
    int undone = 0;
    for (; history.canUndo(); ++undone)
        desk.session.undo();
    QVERIFY(undone > 500);
    QCOMPARE(desk.tree().keys(), start.keys());
    QVERIFY(desk.tree() == start);
    while (history.canRedo())
        desk.session.redo();
    QCOMPARE(desk.tree().keys(), end.keys());
    QVERIFY(desk.tree() == end);
}

void tst_history::refusesOverOtherPeoplesWork()
{
    Desk desk;
    CategoryCommands commands(desk.session);
    commands.add(u"First"_s);
    commands.add(u"Second"_s);
    const QString path = desk.sample.folder + ProjectFile::categories;
    desk.sample.world.put(path, "somebody else's");
    const QvError error = raisedBy([&] { desk.session.undo(); });
    QVERIFY2(error.description().contains("cannot be undone any more"_L1)
                 && error.description().contains(desk.session.shownPath(path))
                 && error.description().contains("give the opposite command"_L1),
             error.what());
    QCOMPARE(desk.sample.world.bytes(path), "somebody else's");
    QVERIFY(!desk.session.history().canUndo());
}

void tst_history::emptiesItsBin()
{
    Desk desk;
    const QString bin = desk.sample.folder + u"_Backup\\Undo-1"_s;
    BookCommands(desk.session).remove(desk.session.books().first(), true);
    QVERIFY(desk.files.folderExists(bin));
    // Another session leaves it alone and has one of its own; what a dead one left goes.
    desk.sample.world.put(desk.sample.folder + u"_Backup\\Undo-7\\1\\left.htm"_s, "x");
    ProjectSession other(desk.program);
    other.open(desk.sample.name);
    QVERIFY(desk.files.folderExists(bin));
    QVERIFY(!desk.files.exists(desk.sample.folder + u"_Backup\\Undo-7"_s));
    QVERIFY(other.binPlace(u"x"_s).contains("Undo-2"_L1));
    desk.session.undo();
    QCOMPARE(desk.session.books().size(), 2);
    desk.session.open({});
    QVERIFY(!desk.files.exists(bin));
    QVERIFY(!desk.files.exists(bin + u".lock"_s));
}

void tst_history::noticesWhatOthersChange()
{
    Desk desk;
    QSignalSpy books(&desk.session, &ProjectSession::booksChanged);
    QSignalSpy files(&desk.session, &ProjectSession::filesChanged);
    const QString page = desk.sample.folder + u"Book_PUMP\\a.htm"_s;
    desk.session.watch(page, stampOf(desk.files, page));
    desk.sample.addBook(u"Theirs"_s, u"THEIRS"_s);
    desk.sample.world.put(page, "theirs");
    desk.session.noticeChanges();
    QTRY_COMPARE(desk.session.books().size(), 3);
    QTRY_VERIFY(!files.isEmpty()
                && files.last().first().toStringList().contains(u"Book_PUMP\\a.htm"_s));
    QCOMPARE(books.size(), 1);

    // What cannot be read is said once, and what was read stays.
    desk.sample.world.put(desk.sample.folder + ProjectFile::toc, "broken");
    desk.session.noticeChanges();
    QTRY_COMPARE(desk.sample.world.messages.shown.size(), 1);
    QCOMPARE(desk.session.books().size(), 3);
}

void tst_history::finishesAtTheNextOpen()
{
    Desk desk;
    int operations = 0;
    desk.files.disturb = [&] {
        if (++operations > 6)
            throw QvError(PermissionDenied, {}, u"The share is gone."_s);
    };
    BookCommands commands(desk.session);
    TocBook now = desk.session.books().first();
    now.name = u"Renamed"_s;
    const TocBook old = desk.session.books().first();
    QVERIFY_THROWS_EXCEPTION(QvError, commands.change(old, now));
    QVERIFY(!ChangePlan::inForce(desk.files, desk.sample.folder).isEmpty());
    desk.files.disturb = [] {};
    ProjectSession next(desk.program);
    next.open(desk.sample.name);
    QCOMPARE(next.books().first().name, u"Renamed"_s);
    QCOMPARE(next.book(next.books().first()).name, u"Renamed"_s);
    QCOMPARE(desk.sample.world.messages.shown.size(), 1);
    QVERIFY2(desk.sample.world.messages.shown.first().endsWith("has been completed."_L1),
             qPrintable(desk.sample.world.messages.shown.first()));
    QVERIFY(ChangePlan::inForce(desk.files, desk.sample.folder).isEmpty());
}

QTEST_GUILESS_MAIN(tst_history)
#include "tst_history.moc"
