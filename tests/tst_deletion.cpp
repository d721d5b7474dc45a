#include "dialogs/ProjectDeletion.h"
#include "platform/TreeWalker.h"
#include "support/Locked.h"
#include "support/OrdinaryUser.h"
#include "support/System.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Outcome = ProjectDeletion::Outcome;

struct World : TestProgram
{
    ProjectDeletion deletion{program};

    /// Lists a project with two files, one of them read-only in a read-only folder.
    void make(const QString &name)
    {
        list(name);
        const QString path = u"S:\\Docs\\"_s + name;
        put(path + u"\\QV_Toc.xml"_s, "toc");
        put(path + u"\\Book_A\\p.htm"_s, "page");
        files.setAttributes(path + u"\\Book_A\\p.htm"_s, ReadOnlyFile);
        files.setAttributes(path + u"\\Book_A"_s, ReadOnlyFile);
    }
    /// The listed projects, then everything below Docs, with a mark at what is read-only.
    QStringList everything()
    {
        QStringList found = components.serverProducts.GetAvailableProducts();
        walkTree(files, u"S:\\Docs"_s, [&](const TreeEntry &entry) {
            if (!entry.relative.startsWith(u"QV_Selection"_s))
                found.append(entry.relative + (entry.status.readOnly ? u"!"_s : QString()));
        });
        return found;
    }
    /// Deletes with a progress that calls `reached` at every step and is stopped when it says so.
    ProjectDeletion::Result remove(const QString &name, const std::function<bool(int)> &reached)
    {
        Stopper stop;
        return deletion.remove(name, true,
                               stop.when([&](int done, auto &) { return reached(done); }));
    }
};

} // namespace

class tst_deletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deletesWithAndWithoutFiles();
    void refusesWhatIsNotItsOwnFolder();
    void stops();
    void leavesTheEntryWhenAFileResists();
};

void tst_deletion::deletesWithAndWithoutFiles()
{
    World world;
    world.make(u"Keep"_s);
    world.deletion.remove(u"Keep"_s, false);
    world.make(u"Other"_s);
    const QStringList before = world.everything();
    world.make(u"Plant"_s);
    QStringList steps;
    const Progress progress{[&](int done, int total, const QString &what) {
                                steps.append(u"%1/%2 %3"_s.arg(done).arg(total).arg(what));
                            },
                            {}};
    const OrdinaryUser user;
    QCOMPARE(world.deletion.remove(u"Plant"_s, true, progress).outcome, Outcome::Deleted);
    QCOMPARE(steps, (QStringList{u"0/2 "_s, u"1/2 p.htm"_s, u"2/2 QV_Toc.xml"_s}));
    QCOMPARE(world.everything(), before);
}

void tst_deletion::refusesWhatIsNotItsOwnFolder()
{
    World world;
    for (const QString &name : {u"Plant"_s, u"Unlisted"_s, u"Linked"_s, u"Pump"_s})
        world.make(name);
    QVERIFY(QDir(world.native(u"Docs"_s)).rename(u"Linked"_s, u"../Elsewhere"_s));
    const bool isLinked = here::link(world.native(u"Elsewhere"_s), world.native(u"Docs/Linked"_s));
    world.deletion.remove(u"Unlisted"_s, false);
    const QString catalogue = u"S:\\Docs\\QV_Selection.xml"_s;
    QString list = xmlText(world.bytes(catalogue)).section(u'\n', 1);
    list.replace(u">Linked<"_s, u">plANT<"_s).replace(u">Docs\\Linked\\<"_s, u">S:\\docs/pump<"_s);
    world.put(catalogue, xmlFile(list));

    const QString unsafe = u"This cannot be the name of a folder in S:\\Docs\\"_s;
    const QString shared = u"The project \"plANT\" in the list has the same folder, S:\\Docs\\"_s;
    QMap<QString, QString> reasons{
        {u"Linked"_s, u"The project folder is a link: S:\\Docs\\Linked\\"_s},
        {u"Unlisted"_s, u"It is not in the list of projects any more"_s},
        {u"Plant"_s, shared + u"Plant\\"_s},
        {u"Pump"_s, shared + u"Pump\\"_s}};
    for (const auto *hostile : {u"", u"..", u"..\\Plant", u"Plant\\..\\..", u"C:\\x", u"Plant.",
                                u"Plant ", u"NUL.htm", u"Plant\\", u"Plant/Book_A", u"*"})
        reasons.insert(QString::fromUtf16(hostile), unsafe);
    if (!isLinked)
        reasons.remove(u"Linked"_s);
    const QStringList before = world.everything();
    for (auto reason = reasons.cbegin(); reason != reasons.cend(); ++reason)
        QCOMPARE(
            errorOf([&] { world.deletion.remove(reason.key(), true); }),
            u"75: The files of the project \"%1\" are not deleted. %2. Nothing was changed. To "
            "take it out of the list only, delete it again without its files."_s.arg(reason.key(),
                                                                                     *reason));
    QVERIFY(errorOf([&] { world.deletion.remove(u"My Favorites"_s, false); }).startsWith(u"75:"_s));
    QCOMPARE(world.everything(), before);
    QVERIFY(QFile::exists(world.native(u"Elsewhere/Book_A/p.htm"_s)));
}

void tst_deletion::stops()
{
    World world;
    world.make(u"Plant"_s);
    const QStringList before = world.everything();
    const auto stopAt = [](int step) { return [step](int done) { return done == step; }; };
    QVERIFY_THROWS_EXCEPTION(Unwinding, world.remove(u"Plant"_s, stopAt(0)));
    QCOMPARE(world.everything(), before);

    const auto result = world.remove(u"Plant"_s, stopAt(1));
    QCOMPARE(result.outcome, Outcome::LeftAside);
    QCOMPARE(result.leftAside, u"S:\\Docs\\Plant.qvdel1"_s);
    QVERIFY(world.files.fileExists(result.leftAside + u"\\QV_Toc.xml"_s));
    removeLeftovers(world.files, u"S:\\Docs"_s);
    QCOMPARE(world.everything(), QStringList());
}

void tst_deletion::leavesTheEntryWhenAFileResists()
{
    World world;
    world.make(u"Plant"_s);
    const QString book = u"S:\\Docs\\Plant\\Book_A"_s;
    const QStringList before = world.everything();
    world.files.setAttributes(book, 0);
    std::optional<Locked> locked;
    const auto lock = [&](int done) {
        if (done == 0)
            locked.emplace(world.native(u"Docs/Plant/Book_A/p.htm"_s), Locked::Against::Removing);
        return false;
    };
    const QString said = errorOf([&] { world.remove(u"Plant"_s, lock); });
    QVERIFY2(said.contains(u"\\p.htm ("_s) && said.contains("). Nothing was changed."_L1),
             qPrintable(said));
    locked.reset();
    world.files.setAttributes(book, ReadOnlyFile);
    QCOMPARE(world.everything(), before);

    const auto disturb = [&](int done) {
        if (done == 1)
            world.put(u"S:\\Docs\\Plant.qvdel1\\written meanwhile"_s, "x");
        return false;
    };
    QString left = errorOf([&] { world.remove(u"Plant"_s, disturb); });
    left.replace(left.indexOf(u'('), left.indexOf(u')') - left.indexOf(u'('), u"(not empty"_s);
    QCOMPARE(left,
             u"75: The files of the project \"Plant\" could not all be deleted. The folder cannot "
             "be deleted: S:\\Docs\\Plant.qvdel1\\ (not empty). What is left lies aside. "
             "The project is still in the list: delete it again to take it out. The next start of "
             "QV Developer then removes what is left."_s);
    removeLeftovers(world.files, u"S:\\Docs"_s, {u"Plant"_s}); // kept as long as it is listed
    QCOMPARE(world.everything().first(), u"Plant"_s);
    QCOMPARE(world.deletion.remove(u"Plant"_s, true).outcome, Outcome::FolderWasGone);
    QCOMPARE(world.everything().first(), u"Plant.qvdel1"_s);
}

QTEST_GUILESS_MAIN(tst_deletion)
#include "tst_deletion.moc"
