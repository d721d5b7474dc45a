// What every system's files adapter promises to the program; tst_files has what only Linux has.

#include "platform/FileStreams.h"
#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "support/Errors.h"
#include "support/System.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class tst_fileport final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhyItRefuses();
    void keepsNamesAsTheyAreOnTheDisk();
    void replacesWholeFilesOnly();
    void goesBelowLongPaths();
    void locksAgainstOthers();
};

void tst_fileport::tellsWhyItRefuses()
{
    TestProgram world;
    FileSystem &files = world.files;
    for (const QString &name : {u"Docs\\a.htm"_s, u"Docs\\b.htm"_s, u"Docs\\F\\in.htm"_s})
        world.put(u"S:\\"_s + name, "old");
    files.setAttributes(u"S:\\Docs\\b.htm"_s, ReadOnlyFile);
    const QString a = u"S:\\Docs\\a.htm"_s, b = u"S:\\Docs\\b.htm"_s, folder = u"S:\\Docs\\F"_s,
                  none = u"S:\\Docs\\none"_s, nowhere = u"S:\\None\\x"_s;
    const auto folderOf = [&](const QString &path) { return withoutBackslash(parentFolder(path)); };

    // The texts, but for the system's own reason in brackets at the end.
    const std::pair<std::function<void()>, QString> rows[] = {
        {[&] { (void)files.readFile(none); }, u"53: The file cannot be read: "_s + none},
        {[&] { (void)files.readFile(nowhere); }, u"76: The file cannot be read: "_s + nowhere},
        {[&] { (void)files.openFile(none); }, u"53: The file cannot be read: "_s + none},
        {[&] { files.replaceFile(nowhere, "x"); }, u"76: "_s},
        {[&] { files.replaceFile(folder, "x"); }, u"75: The file cannot be written"_s},
        {[&] { files.replaceFile(b, "x"); },
         u"70: The file cannot be written, it is read-only: "_s + b},
        {[&] { files.removeFile(b); }, u"70: The file cannot be deleted, it is read-only: "_s + b},
        {[&] { files.removeFile(none); }, u"53: The file cannot be deleted: "_s + none},
        {[&] { files.removeFile(folder); }, u"75: The file cannot be deleted"_s},
        {[&] { files.removeFolder(folder); }, u"75: The folder cannot be deleted: "_s + folder},
        {[&] { (void)files.entries(folderOf(nowhere)); }, u"76: The folder cannot be read"_s},
        {[&] { files.makeFolder(folder); }, u"75: "_s},
        {[&] { files.makeFolder(nowhere); }, u"76: "_s},
        {[&] { files.copyFile(a, u"S:\\Docs\\B.HTM"_s); }, u"75: The copy cannot be made: "_s},
        {[&] { files.copyFile(none, u"S:\\Docs\\c"_s); }, u"53: "_s},
        {[&] { files.move(a, u"S:\\Docs\\B.htm"_s); }, u"75: The name cannot be changed: "_s},
        {[&] { files.move(a, a); }, u"75: The name cannot be changed: "_s},
        {[&] { files.move(none, u"S:\\Docs\\c"_s); }, u"53: The name cannot be changed: "_s},
        {[&] { files.move(folder, folder + u"\\in"_s); }, u"75: The name cannot be changed: "_s},
        {[&] { files.setAttributes(none, ReadOnlyFile); }, u"53: "_s},
        {[&] { (void)files.status(u"Docs\\a.htm"_s); }, u"76: The path is not a full one: "_s},
        {[&] { (void)files.status(u"S:\\Docs\\..\\x"_s); }, u"75: "_s}};
    for (const auto &[call, text] : rows) {
        const QString said = errorOf(call);
        QVERIFY2(said.startsWith(text), qPrintable(text + u" | "_s + said));
    }
    QCOMPARE(world.below(u"S:\\Docs"_s), (QStringList{u"F"_s, u"a.htm"_s, u"b.htm"_s}));
    QCOMPARE(world.bytes(b), "old");
}

void tst_fileport::keepsNamesAsTheyAreOnTheDisk()
{
    TestProgram world;
    FileSystem &files = world.files;
    world.put(u"S:\\Docs\\Käfer 入門.htm"_s, "old");
    const QString other = u"s:/Docs/KÄFER 入門.HTM"_s;
    QCOMPARE(files.readFile(other), "old");
    files.replaceFile(other, "new");
    QCOMPARE(world.below(u"S:\\Docs"_s), QStringList{u"Käfer 入門.htm"_s});
    QVERIFY(files.nativePath(other).endsWith(u"Käfer 入門.htm"_s));
    QCOMPARE(files.productPath(files.nativePath(other)), u"S:\\Docs\\Käfer 入門.htm"_s);

    files.move(other, u"S:\\Docs\\käfer 入門.htm"_s); // only the capitals
    QCOMPARE(world.below(u"S:\\Docs"_s), QStringList{u"käfer 入門.htm"_s});
    QCOMPARE(world.bytes(other), "new");
}

void tst_fileport::replacesWholeFilesOnly()
{
    TestProgram world;
    FileSystem &files = world.files;
    const QString path = u"S:\\Docs\\big.bin"_s;
    world.put(path, "old");
    files.setAttributes(path, ReadOnlyFile);
    {
        const auto begun = files.startFile(path, {.throughReadOnly = true});
        begun->write(70'000, "end", 3);
        begun->write(0, "begin", 5);
        QCOMPARE(world.bytes(path), "old");
    } // not put in place
    QCOMPARE(world.below(u"S:\\Docs"_s), QStringList{u"big.bin"_s});
    const auto file = files.startFile(path, {.throughReadOnly = true});
    file->write(70'000, "end", 3);
    file->write(0, "begin", 5);
    file->putInPlace();
    QCOMPARE(world.bytes(path), "begin" + QByteArray(69'995, '\0') + "end");
    QVERIFY(files.status(path).readOnly);
    QCOMPARE(files.readFile(path, 7), QByteArray("begin\0\0", 7));

    const QDateTime time(QDate(2021, 5, 6), QTime(7, 8, 10), Qt::UTC);
    here::setTime(world.native(u"Docs"_s), time); // of a folder, which stays writable
    QCOMPARE(files.status(u"S:\\Docs"_s).modified, time);
    files.copyFile(path, u"S:\\Docs\\copy.bin"_s);
    QCOMPARE(files.status(u"S:\\Docs\\copy.bin"_s).modified, files.status(path).modified);
    QVERIFY(files.status(u"S:\\Docs\\copy.bin"_s).readOnly);
}

void tst_fileport::goesBelowLongPaths()
{
    TestProgram world;
    FileSystem &files = world.files;
    QString folder = u"S:\\Docs\\Deep"_s;
    files.makeFolder(folder);
    for (int level = 0; level < 12; ++level) {
        folder += u'\\' + QString(40, QChar(u'a' + level));
        files.makeFolder(folder);
    }
    files.replaceFile(folder + u"\\page.htm"_s, "deep");
    QCOMPARE(files.readFile(folder + u"\\page.htm"_s), "deep");
    int seen = 0;
    walkTree(files, u"S:\\Docs\\Deep"_s, [&](const TreeEntry &) { ++seen; });
    QCOMPARE(seen, 13);
    files.move(u"S:\\Docs\\Deep"_s, u"S:\\Docs\\Moved"_s);
    deleteTree(files, u"S:\\Docs\\Moved"_s);
    QCOMPARE(world.below(u"S:\\Docs"_s), QStringList());
}

void tst_fileport::locksAgainstOthers()
{
    TestProgram world;
    const QString path = u"S:\\Docs\\QV_Selection.xml.lock"_s;
    {
        const auto held = world.files.lock(path, path, 0ms);
        QVERIFY(held);
        QVERIFY(!NativeFiles(world.folder.path()).lock(path, path, 30ms));
    }
    QVERIFY(NativeFiles(world.folder.path()).lock(path, path, 0ms));
}

QTEST_GUILESS_MAIN(tst_fileport)
#include "tst_fileport.moc"
