#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "platform/Xml.h"
#include "projectfiles/changes/ChangePlan.h"
#include "projectfiles/changes/FinishChanges.h"
#include "projectfiles/changes/StagedFiles.h"
#include "support/DisturbedFiles.h"
#include "support/Errors.h"
#include "support/TestProgram.h"

#include <QRandomGenerator>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

using Tree = QMap<QString, QByteArray>; ///< what authors have; folders end in a backslash

Tree treeOf(FileSystem &files, const QString &folder)
{
    Tree tree;
    walkTree(files, folder, [&](const TreeEntry &entry) {
        if (entry.relative.startsWith("_Backup"_L1))
            return;
        if (entry.status.kind == FileKind::Folder)
            tree.insert(entry.relative + u'\\', {});
        else
            tree.insert(entry.relative, files.readFile(entry.path));
    });
    return tree;
}

QString shown(const Tree &tree)
{
    QStringList lines;
    for (auto file = tree.cbegin(); file != tree.cend(); ++file)
        lines.append(file.key() + u'=' + QString::fromUtf8(*file));
    return lines.join(u'\n');
}

/// One operation on files; the same one on the disk and on staged files.
void doAtRandom(FileSystem &files, const QString &base, QRandomGenerator &random)
{
    const auto name = [&] {
        static const QStringList names{u"a"_s,       u"b"_s,        u"A"_s,       u"F"_s,
                                       u"F\\a"_s,    u"f\\b.xml"_s, u"F/G"_s,     u"F\\G\\a"_s,
                                       u"F\\g\\c"_s, u"H"_s,        u"H\\G\\a"_s, u"H\\a"_s};
        return base + names.at(random.bounded(static_cast<int>(names.size())));
    };
    const int what = random.bounded(12);
    const QString one = name();
    const QString two = name();
    const QByteArray content = QByteArray::number(random.bounded(1000));
    if (what < 4)
        files.replaceFile(one, content);
    else if (what < 6)
        files.makeFolder(one);
    else if (what < 9)
        files.move(one, two);
    else if (what < 10)
        files.removeFile(one);
    else if (what < 11)
        files.removeFolder(one);
    else
        files.copyFile(one, two);
}

void fill(FileSystem &files, const QString &folder)
{
    for (const auto *below : {"", "F", "F\\G"})
        files.makeFolder(folder + QString::fromLatin1(below));
    for (const auto *file : {"a", "b", "F\\a", "F\\b.xml", "F\\G\\a"})
        files.replaceFile(folder + QString::fromLatin1(file), QByteArray("old ") + file,
                          {.sync = false});
}

/// A change with steps of every kind that hang together.
FileChanges sampleChange(FileSystem &files, const QString &folder)
{
    StagedFiles staged(files, folder);
    staged.makeFolder(folder + u"N"_s);
    staged.replaceFile(folder + u"N\\new"_s, "new");
    staged.replaceFile(folder + u"F\\b.xml"_s, "<b/>");
    staged.move(folder + u"F"_s, folder + u"M"_s);
    staged.replaceFile(folder + u"M\\b.xml"_s, "<c/>");
    staged.replaceFile(folder + u"a"_s, "other a");
    staged.removeFile(folder + u"b"_s);
    staged.move(folder + u"M\\G\\a"_s, folder + u"b"_s);
    staged.removeFolder(folder + u"M\\G"_s);
    FileChanges changes = staged.changes();
    changes.name = u"Turn all over"_s;
    return changes;
}

struct World : TestProgram
{
    const QString folder = u"S:\\Docs\\Plant\\"_s;
    DisturbedFiles disturbed{files};

    World()
    {
        disturbed.syncs = false;
        fill(files, folder);
        files.replaceFile(folder + ProjectFile::toc, "list", {.sync = false});
    }
    /// The next program opens the project.
    QStringList finish()
    {
        disturbed.disturb = [] {};
        return finishChanges(disturbed, folder);
    }
    /// Whether somebody would finish something now.
    bool isInForce() { return !ChangePlan::inForce(files, folder).isEmpty(); }
};

} // namespace

class tst_changes final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stagedFilesActAsTheDisk();
    void refusesWhatItCannotTakeBack();
    void happensAtOnceOrNotAtAll();
    void finishesWhatADeadProgramBegan();
    void leavesAloneWhatOthersChanged();
    void putsDamagedPlansAside();
    void waitsForALivingProgram();
};

// Whatever a command does, it meets the same errors on staged files as on the disk; the change
// then makes of the disk what the command would have made, and the reverse brings all back.
void tst_changes::stagedFilesActAsTheDisk()
{
    for (quint32 seed = 1; seed <= 60; ++seed) {
        TestProgram world;
        const QString disk = u"S:\\Docs\\Disk\\"_s;
        const QString project = u"S:\\Docs\\Plant\\"_s;
        fill(world.files, disk);
        fill(world.files, project);
        const Tree before = treeOf(world.files, project);
        DisturbedFiles quick(world.files);
        quick.syncs = false;
        StagedFiles staged(world.files, project);
        QRandomGenerator onDisk(seed);
        QRandomGenerator onStaged(seed);
        for (int turn = 0; turn < 40; ++turn) {
            const auto failed = [](const auto &body) {
                bool hasFailed = false;
                trap([&](const QvError &) { hasFailed = true; }, body);
                return hasFailed;
            };
            const QByteArray where =
                "seed " + QByteArray::number(seed) + " turn " + QByteArray::number(turn);
            const bool diskFailed = failed([&] { doAtRandom(quick, disk, onDisk); });
            const bool stagedFailed = failed([&] { doAtRandom(staged, project, onStaged); });
            QVERIFY2(diskFailed == stagedFailed, where);
            QVERIFY2(treeOf(world.files, disk) == treeOf(staged, project),
                     where + '\n' + shown(treeOf(world.files, disk)).toUtf8() + "\n--\n"
                         + shown(treeOf(staged, project)).toUtf8());
        }
        QCOMPARE(treeOf(world.files, project), before);
        FileChanges changes = staged.changes();
        for (int round = 0; round < 2; ++round) {
            applyChanges(quick, project, changes);
            QCOMPARE(shown(treeOf(world.files, project)), shown(treeOf(world.files, disk)));
            changes = changes.reversed();
            applyChanges(quick, project, changes);
            QCOMPARE(shown(treeOf(world.files, project)), shown(before));
            changes = changes.reversed();
        }
    }
}

void tst_changes::refusesWhatItCannotTakeBack()
{
    World world;
    world.files.setAttributes(world.folder + u"a"_s, ReadOnlyFile);
    StagedFiles staged(world.files, world.folder);
    const auto number = [](const auto &body) { return raisedBy(body).number(); };
    QCOMPARE(number([&] { staged.replaceFile(world.folder + u"a"_s, "x"); }), PermissionDenied);
    QCOMPARE(number([&] { staged.removeFile(world.folder + u"a"_s); }), PermissionDenied);
    QCOMPARE(number([&] { staged.replaceFile(u"S:\\Docs\\Other\\a"_s, "x"); }), PathNotFound);
    QCOMPARE(number([&] { staged.replaceFile(u"S:\\Docs\\a"_s, "x"); }), PathFileAccess);
    QCOMPARE(number([&] { staged.replaceFile(world.folder + u"..\\Other"_s, "x"); }),
             PathFileAccess);
    QCOMPARE(number([&] { staged.setAside(world.folder + u"b"_s, world.folder + u"..\\b"_s); }),
             PathFileAccess);
    QVERIFY(staged.changes().isEmpty());

    // Somebody else was faster: nothing happens, and the file is named.
    staged.replaceFile(world.folder + u"b"_s, "mine");
    staged.replaceFile(world.folder + u"c"_s, "mine");
    FileChanges changes = staged.changes();
    world.put(world.folder + u"b"_s, "theirs");
    const QvError error = raisedBy([&] { applyChanges(world.files, world.folder, changes); });
    QCOMPARE(error.number(), PathFileAccess);
    QCOMPARE(
        error.description(),
        u"Another author changed S:\\Docs\\Plant\\b meanwhile. Nothing was changed; please look "
        "at it and try again."_s);
    QCOMPARE(world.bytes(world.folder + u"b"_s), "theirs");
    QVERIFY(!world.files.exists(world.folder + u"c"_s));
    QVERIFY(!world.isInForce());
}

// Each operation fails once, and once with all that follow, as when the share is gone.
void tst_changes::happensAtOnceOrNotAtAll()
{
    for (const bool forGood : {false, true}) {
        bool failed = true;
        for (int at = 1; failed; ++at) {
            World world;
            const Tree before = treeOf(world.files, world.folder);
            FileChanges changes = sampleChange(world.disturbed, world.folder);
            int operation = 0;
            world.disturbed.disturb = [&] {
                if (++operation == at || (forGood && operation > at))
                    throw QvError(PermissionDenied, {}, u"The disk is full."_s);
            };
            failed = false;
            trap([&](const QvError &) { failed = true; },
                 [&] { applyChanges(world.disturbed, world.folder, changes); });
            if (failed && !forGood) {
                QCOMPARE(shown(treeOf(world.files, world.folder)), shown(before));
                QVERIFY(!world.isInForce());
            }
            world.finish();
            QVERIFY(!world.isInForce());
            const Tree after = treeOf(world.files, world.folder);
            if (after == before)
                continue;
            QCOMPARE(after.value(u"b"_s), "old F\\G\\a");
            QCOMPARE(after.value(u"M\\b.xml"_s), "<c/>");
            QCOMPARE(after.value(u"a"_s), "other a");
            QCOMPARE(after.size(), 8);
        }
    }

    World world;
    const Tree before = treeOf(world.files, world.folder);
    Stopper stopper;
    FileChanges changes = sampleChange(world.files, world.folder);
    QVERIFY_THROWS_EXCEPTION(
        Unwinding, applyChanges(world.files, world.folder, changes,
                                stopper.when([](int done, const QString &) { return done == 5; })));
    QCOMPARE(shown(treeOf(world.files, world.folder)), shown(before));
    QVERIFY(!world.isInForce());
}

// A program that dies does nothing more, not even take back; the next open finishes its change.
void tst_changes::finishesWhatADeadProgramBegan()
{
    struct Death
    {
    };
    World other;
    FileChanges whole = sampleChange(other.files, other.folder);
    applyChanges(other.disturbed, other.folder, whole);
    const Tree after = treeOf(other.files, other.folder);
    int finished = 0;
    bool died = true;
    for (int at = 1; died; ++at) {
        World world;
        const Tree before = treeOf(world.files, world.folder);
        FileChanges changes = sampleChange(world.files, world.folder);
        int operation = 0;
        world.disturbed.disturb = [&] {
            if (++operation >= at)
                throw Death{};
        };
        died = false;
        try {
            applyChanges(world.disturbed, world.folder, changes);
        } catch (...) {
            died = true;
        }
        died = died || operation >= at;
        const bool wasInForce = world.isInForce();
        const QStringList said = world.finish();
        QVERIFY(!world.isInForce());
        const Tree left = treeOf(world.files, world.folder);
        QVERIFY2(left == after || (left == before && !wasInForce), qPrintable(shown(left)));
        if (said.isEmpty())
            continue;
        QCOMPARE(said,
                 QStringList{u"The interrupted change \"Turn all over\" has been completed."_s});
        QCOMPARE(world.bytes(world.folder + u"_Backup\\F\\b.xml.1"_s), "old F\\b.xml");
        ++finished;
    }
    QVERIFY(finished > 6);
}

void tst_changes::leavesAloneWhatOthersChanged()
{
    World world;
    FileChanges changes = sampleChange(world.files, world.folder);
    int operation = 0;
    world.disturbed.disturb = [&] {
        if (++operation > 6)
            throw 0;
    };
    QVERIFY_THROWS_EXCEPTION(QvError, applyChanges(world.disturbed, world.folder, changes));
    QVERIFY(world.isInForce());
    world.put(world.folder + u"a"_s, "theirs, and longer");

    // Somebody who has the project open and changes several files comes to it first.
    StagedFiles staged(world.files, world.folder);
    staged.replaceFile(world.folder + u"x"_s, "x");
    staged.replaceFile(world.folder + u"y"_s, "y");
    FileChanges mine = staged.changes();
    const QString said =
        raisedBy([&] { applyChanges(world.files, world.folder, mine); }).description();
    QCOMPARE(said, u"The interrupted change \"Turn all over\" has been completed, but for what "
                   "somebody else changed meanwhile:\nS:\\Docs\\Plant\\a\nWhat it was to do there "
                   "is kept as S:\\Docs\\Plant\\_Backup\\Change-1.kept\nNothing else was changed; "
                   "please try again."_s);
    QCOMPARE(world.bytes(world.folder + u"a"_s), "theirs, and longer");
    QCOMPARE(world.bytes(world.folder + u"b"_s), "old F\\G\\a");
    QVERIFY(!world.files.exists(world.folder + u"x"_s));
    applyChanges(world.files, world.folder, mine);
    QCOMPARE(world.bytes(world.folder + u"y"_s), "y");
}

void tst_changes::putsDamagedPlansAside()
{
    const QString plan = u"_Backup\\Change-1.xml"_s;
    const auto hostile = [](const QString &step) {
        return utf16Bytes(
            u"<?xml version=\"1.0\" encoding=\"utf-16\"?><QV_Change><Change_Data "
            "Size=\"0\" Sum=\"0\"/><Change_Steps>%1</Change_Steps></QV_Change>"_s.arg(step));
    };
    const QList<QByteArray> lists{
        "<QV_Change>",
        hostile(
            u"<Step Kind=\"Move\"><Step_Path>a</Step_Path><Step_To>..\\..\\a</Step_To></Step>"_s),
        hostile(u"<Step Kind=\"Write\" At=\"0\" Size=\"9\"><Step_Path>a</Step_Path></Step>"_s),
        hostile(u"<Step Kind=\"Format\"><Step_Path>a</Step_Path></Step>"_s),
        hostile(u"<Step Kind=\"Write\"><Step_Path>C:\\a/../b</Step_Path></Step>"_s)};
    for (const QByteArray &list : lists) {
        World world;
        const Tree before = treeOf(world.files, world.folder);
        world.put(world.folder + plan, list);
        const QStringList said = world.finish();
        QCOMPARE(said.size(), 1);
        QVERIFY2(
            said.first().startsWith("What an interrupted change was to do cannot be read any"_L1)
                && said.first().endsWith("S:\\Docs\\Plant\\_Backup\\Change-1.damaged"_L1),
            qPrintable(said.first()));
        QCOMPARE(shown(treeOf(world.files, world.folder)), shown(before));
        QCOMPARE(world.bytes(world.folder + u"_Backup\\Change-1.damaged"_s), list);
        QCOMPARE(world.finish(), QStringList());
    }
}

void tst_changes::waitsForALivingProgram()
{
    World world;
    FileChanges changes = sampleChange(world.files, world.folder);
    auto living = lockChanges(world.files, world.folder, std::chrono::seconds(0));
    (void)ChangePlan::write(world.files, world.folder, changes, {});
    std::jthread ends([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ChangePlan::inForce(world.files, world.folder).first().remove();
        living.reset();
    });
    const Tree before = treeOf(world.files, world.folder);
    QCOMPARE(world.finish(), QStringList());
    QCOMPARE(shown(treeOf(world.files, world.folder)), shown(before));
    QVERIFY(!world.isInForce());
}

QTEST_GUILESS_MAIN(tst_changes)
#include "tst_changes.moc"
