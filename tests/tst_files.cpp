#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "platform/portable/PortableFiles.h"
#include "support/ChildProcess.h"
#include "support/Errors.h"
#include "support/OrdinaryUser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A fresh folder that the files adapter sees as drive S:.
class Disk
{
public:
    QTemporaryDir folder;
    PortableFiles files{folder.path()};

    Disk() { QDir(folder.path()).mkpath(u"s/Docs"_s); }

    QString native(const QString &below) const { return folder.filePath(u"s/"_s + below); }
    QStringList names(const QString &below) const
    {
        return QDir(native(below))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QByteArray bytes(const QString &below) const
    {
        QFile file(native(below));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "(cannot be read)"_ba;
    }
    void put(const QString &below, const QByteArray &content)
    {
        QDir(folder.path()).mkpath(QFileInfo(native(below)).path());
        QFile file(native(below));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    void link(const QString &target, const QString &below)
    {
        QVERIFY(QFile::link(target, native(below)));
    }
    mode_t mode(const QString &below) const
    {
        struct stat info
        {
        };
        return lstat(QFile::encodeName(native(below)).constData(), &info) == 0
                   ? info.st_mode & 07777
                   : 0;
    }
    void setMode(const QString &below, mode_t mode)
    {
        QCOMPARE(chmod(QFile::encodeName(native(below)).constData(), mode), 0);
    }
    void changedHoursAgo(const QString &below, int hours)
    {
        const timespec then{time(nullptr) - hours * 60 * 60, 0};
        const timespec times[]{then, then};
        const QByteArray path = QFile::encodeName(native(below));
        QCOMPARE(utimensat(AT_FDCWD, path.constData(), times, 0), 0);
    }
};

} // namespace

class tst_files final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAndPaths();
    void pathsOfTheProductAndOfTheMachine();
    void capitalsDoNotMatter();
    void writerReplacesTheWholeFile();
    void writerRefusesAndLeavesNothing();
    void fullDiskKeepsTheOldFile();
    void missingIsToldFromUnreadable();
    void movesAndAttributes();
    void walksWithoutFollowingLinks();
    void copiesATree();
    void deletesATree();
    void whatKilledProgramsLeftIsRemoved();
    void lockKeepsOthersOut();
};

void tst_files::namesAndPaths()
{
    for (const QString &name : {u"Plant 300"_s, u"Operator's Guide"_s, u".hidden"_s, u"設備"_s,
                                u"COM10"_s, u"Console"_s, u"a..b"_s, u"x&y"_s, QString(255, u'n')})
        QVERIFY2(isSafeName(name), qPrintable(name));
    QStringList refused =
        u"|.|..|a\\b|a/b|C:|a*|a?|a\"b|a\tb|nul|Aux.txt|com1|LPT\u00B2.x|con .txt|"
        "end.|end "_s.split(u'|');
    refused << u"a|b"_s << QString(QChar(0xD800)) << QString(256, u'n');
    for (const QString &name : std::as_const(refused))
        QVERIFY2(!isSafeName(name), qPrintable(name));

    const QString base = u"S:\\Docs\\Plant"_s;
    const auto inside = [&](const QString &value) {
        return insideOf(base, value).value_or(u"-"_s);
    };
    QCOMPARE(inside(u"Book_A/pages/./p.htm"_s), base + u"\\Book_A\\pages\\p.htm"_s);
    QCOMPARE(inside(u"Book_A\\"_s), base + u"\\Book_A\\"_s);
    for (const QString &value : {u""_s, u"."_s, u"\\x"_s, u"/etc/passwd"_s, u"\\\\host\\share\\x"_s,
                                 u"C:\\x"_s, u"C:x"_s, u"a\\..\\..\\x"_s, u"..\\Plant2\\x"_s,
                                 u"a\\.. \\x"_s, u"a\\nul.xml"_s, u"p.htm:stream"_s})
        QVERIFY2(!insideOf(base, value), qPrintable(value));

    Disk disk;
    disk.put(u"Docs/Plant/QV_Toc.xml"_s, "x");
    disk.link(disk.native(u"Docs/Plant"_s), u"Docs/Alias"_s);
    const auto project = [&](const QString &name) {
        return errorOf([&] { existingProjectFolder(disk.files, u"S:\\"_s, name); });
    };
    QCOMPARE(existingProjectFolder(disk.files, u"S:\\"_s, u"Plant"_s), u"S:\\Docs\\Plant\\"_s);
    QCOMPARE(project(u"Plant\\..\\.."_s),
             u"75: The project name cannot be the name of a folder: Plant\\..\\.."_s);
    QCOMPARE(project(u"None"_s), u"76: The project folder is not there: S:\\Docs\\None\\"_s);
    QCOMPARE(project(u"Alias"_s), u"75: The project folder is a link: S:\\Docs\\Alias\\"_s);
}

void tst_files::pathsOfTheProductAndOfTheMachine()
{
    Disk disk;
    PortableFiles &files = disk.files;
    QCOMPARE(files.nativePath(u"S:/Docs\\\\Plant\\"_s), disk.native(u"Docs/Plant"_s));
    QCOMPARE(files.nativePath(u"\\srv\\qv\\"_s), u"/srv/qv"_s);
    QCOMPARE(files.productPath(disk.native(u"Docs/Plant"_s)), u"S:\\Docs\\Plant"_s);
    QCOMPARE(files.productPath(disk.folder.filePath(u"s"_s)), u"S:\\"_s);
    QCOMPARE(files.productPath(u"/srv/../srv/qv/"_s), u"\\srv\\qv"_s);

    files.makeFolder(u"C:\\IBD_Report"_s);
    QVERIFY(QDir(disk.folder.filePath(u"c/IBD_Report"_s)).exists());
    QVERIFY(files.folderExists(u"C:\\"_s) && files.folderExists(u"C:"_s));
    QVERIFY(!files.exists(u"D:\\"_s));

    // The administrator mounts the server folder somewhere else and links the drive to it.
    QVERIFY(QFile::link(disk.folder.filePath(u"s"_s), disk.folder.filePath(u"t"_s)));
    QVERIFY(files.folderExists(u"T:\\"_s) && files.folderExists(u"T:\\Docs"_s));
    QCOMPARE(files.entries(u"T:\\"_s).size(), 1);

    const auto refusal = [&](const QString &path) {
        return errorOf([&] { (void)files.exists(path); });
    };
    QCOMPARE(refusal(u"S:\\Docs\\..\\x"_s),
             u"75: A path must not hold \".\" or \"..\": S:\\Docs\\..\\x"_s);
    QCOMPARE(refusal(u"\\\\host\\share\\x"_s),
             u"76: Network names cannot be used here; connect a drive letter to the folder and use"
             " that: \\\\host\\share\\x"_s);
    QCOMPARE(refusal(u"S:\\"_s + QChar(0xDC00)).left(3), u"75:"_s);
}

void tst_files::capitalsDoNotMatter()
{
    Disk disk;
    PortableFiles &files = disk.files;
    disk.put(u"Docs/Plant/QV_Toc.xml"_s, "old");
    QCOMPARE(files.readFile(u"S:\\DOCS\\plant\\QV_TOC.xml"_s), "old");
    files.replaceFile(u"S:\\docs\\Plant\\QV_TOC.xml"_s, "new");
    QCOMPARE(disk.names(u"Docs/Plant"_s), QStringList{u"QV_Toc.xml"_s});
    QCOMPARE(disk.bytes(u"Docs/Plant/QV_Toc.xml"_s), "new");
    QVERIFY(errorOf([&] { files.makeFolder(u"S:\\DOCS\\PLANT"_s); }).startsWith(u"75:"_s));
    QCOMPARE(files.nativePath(u"s:\\docs\\PLANT"_s), disk.native(u"Docs/Plant"_s));

    disk.put(u"Docs/Ärger.htm"_s, "umlaut");
    QCOMPARE(files.readFile(u"S:\\Docs\\äRGER.HTM"_s), "umlaut");

    disk.put(u"Docs/a.xml"_s, "small");
    disk.put(u"Docs/A.XML"_s, "capital");
    QCOMPARE(files.readFile(u"S:\\Docs\\a.xml"_s), "small");
    QCOMPARE(files.readFile(u"S:\\Docs\\A.XML"_s), "capital");
    const QString two = errorOf([&] { (void)files.exists(u"S:\\Docs\\A.xml"_s); });
    QVERIFY2(two.startsWith(u"75: Two names differ only in their capitals"_s), qPrintable(two));
    QVERIFY(two.contains(u"\"a.xml\""_s) && two.contains(u"\"A.XML\""_s));
}

void tst_files::writerReplacesTheWholeFile()
{
    Disk disk;
    const QByteArray large(3'000'000, 'x');
    disk.files.replaceFile(u"S:\\Docs\\new.xml"_s, large);
    QCOMPARE(disk.bytes(u"Docs/new.xml"_s), large);
    const mode_t mask = umask(0);
    umask(mask);
    QCOMPARE(disk.mode(u"Docs/new.xml"_s), 0666 & ~mask);

    disk.setMode(u"Docs/new.xml"_s, 0662);
    disk.files.replaceFile(u"S:\\Docs\\new.xml"_s, "short");
    QCOMPARE(disk.bytes(u"Docs/new.xml"_s), "short");
    QCOMPARE(disk.mode(u"Docs/new.xml"_s), mode_t(0662));
    QCOMPARE(disk.files.readFile(u"S:\\Docs\\new.xml"_s, 3), "sho");

    // A name as long as the disk allows, and a trap where the temporary file wants to go.
    const QString name = QString(83, u'設') + u"xxxx.x"_s;
    disk.put(u"outside"_s, "outside");
    disk.link(disk.native(u"outside"_s), u"Docs/n.qvtmp%1"_s.arg(getpid()));
    disk.files.replaceFile(u"S:\\Docs\\n"_s, "n");
    disk.files.replaceFile(u"S:\\Docs\\"_s + name, "long");
    QCOMPARE(disk.bytes(u"Docs/"_s + name), "long");
    QCOMPARE(disk.names(u"Docs"_s), (QStringList{u"n"_s, u"new.xml"_s, name}));
    QCOMPARE(disk.bytes(u"outside"_s), "outside");
}

void tst_files::writerRefusesAndLeavesNothing()
{
    Disk disk;
    disk.put(u"Docs/p.htm"_s, "old");
    disk.setMode(u"Docs/p.htm"_s, 0444);
    disk.put(u"outside.xml"_s, "outside");
    disk.link(disk.native(u"outside.xml"_s), u"Docs/link.xml"_s);
    const QStringList before = disk.names(u"Docs"_s);
    const auto refusal = [&](const QString &name) {
        return errorOf([&] { disk.files.replaceFile(u"S:\\Docs\\"_s + name, "new"); });
    };
    QCOMPARE(refusal(u"p.htm"_s),
             u"70: The file cannot be written, it is read-only: S:\\Docs\\p.htm"_s);
    QCOMPARE(refusal(u"link.xml"_s),
             u"75: The file cannot be written: S:\\Docs\\link.xml (It is a link)"_s);
    QCOMPARE(refusal(u"None\\x.xml"_s).left(3), u"76:"_s);
    disk.files.makeFolder(u"S:\\Docs\\Folder"_s);
    QCOMPARE(refusal(u"Folder"_s).left(3), u"75:"_s);
    disk.files.removeFolder(u"S:\\Docs\\Folder"_s);

    QCOMPARE(disk.names(u"Docs"_s), before);
    QCOMPARE(disk.bytes(u"Docs/p.htm"_s), "old");
    QCOMPARE(disk.bytes(u"outside.xml"_s), "outside");

    disk.files.replaceFile(u"S:\\Docs\\p.htm"_s, "through",
                           {.sync = false, .throughReadOnly = true});
    QCOMPARE(disk.bytes(u"Docs/p.htm"_s), "through");
    QCOMPARE(disk.mode(u"Docs/p.htm"_s), mode_t(0444));
}

void tst_files::fullDiskKeepsTheOldFile()
{
    Disk disk;
    disk.put(u"Docs/QV_Toc.xml"_s, "old");
    disk.put(u"big.htm"_s, QByteArray(300'000, 'b'));
    rlimit limit{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{100'000, limit.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const QByteArray large(200'000, 'x');
    const QString written =
        errorOf([&] { disk.files.replaceFile(u"S:\\Docs\\QV_Toc.xml"_s, large); });
    const QString copied =
        errorOf([&] { disk.files.copyFile(u"S:\\big.htm"_s, u"S:\\Docs\\b"_s); });
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, oldHandler);

    QCOMPARE(written, u"75: The file cannot be written: S:\\Docs\\QV_Toc.xml (File too large)"_s);
    QCOMPARE(copied, u"75: The copy cannot be written: S:\\Docs\\b (File too large)"_s);
    QCOMPARE(disk.bytes(u"Docs/QV_Toc.xml"_s), "old");
    QCOMPARE(disk.names(u"Docs"_s), QStringList{u"QV_Toc.xml"_s});
}

void tst_files::missingIsToldFromUnreadable()
{
    Disk disk;
    PortableFiles &files = disk.files;
    disk.put(u"Docs/file"_s, "x");
    disk.link(u"/nowhere"_s, u"Docs/dangling"_s);
    QCOMPARE(mkfifo(QFile::encodeName(disk.native(u"Docs/pipe"_s)).constData(), 0600), 0);
    const auto kind = [&](const QString &name) {
        return files.status(u"S:\\Docs\\"_s + name).kind;
    };
    QCOMPARE(kind(u"none"_s), FileKind::Missing);
    QCOMPARE(kind(u"file\\below"_s), FileKind::Missing);
    QCOMPARE(kind(u"dangling"_s), FileKind::Link);
    QCOMPARE(kind(u"pipe"_s), FileKind::Other);
    QVERIFY(errorOf([&] { (void)kind(QString(300, u'n')); }).startsWith(u"75:"_s));

    const auto read = [&](const QString &path) {
        return errorOf([&] { (void)files.readFile(path); });
    };
    QCOMPARE(read(u"S:\\Docs\\none"_s),
             u"53: The file cannot be read: S:\\Docs\\none (No such file or directory)"_s);
    QVERIFY(read(u"S:\\None\\none"_s).startsWith(u"76:"_s));
    QVERIFY(read(u"S:\\Docs\\pipe"_s).startsWith(u"75:"_s));
    QVERIFY(read(u"S:\\Docs\\dangling"_s).startsWith(u"75:"_s));
    QVERIFY(errorOf([&] { (void)files.entries(u"S:\\None"_s); }).startsWith(u"76:"_s));

    QFile odd(QString(disk.native(u"Docs/a\\b"_s)));
    QVERIFY(odd.open(QIODevice::WriteOnly));
    QCOMPARE(errorOf([&] { (void)files.entries(u"S:\\Docs"_s); }),
             u"75: The folder holds a name that cannot be used: S:\\Docs (a\\b)"_s);
}

void tst_files::movesAndAttributes()
{
    Disk disk;
    PortableFiles &files = disk.files;
    disk.put(u"Docs/a.htm"_s, "a");
    disk.put(u"Docs/b.htm"_s, "b");
    QVERIFY(errorOf([&] {
                files.move(u"S:\\Docs\\a.htm"_s, u"S:\\Docs\\B.htm"_s);
            }).startsWith(u"75: The name cannot be changed: S:\\Docs\\B.htm"_s));
    QVERIFY(errorOf([&] {
                files.copyFile(u"S:\\Docs\\a.htm"_s, u"S:\\Docs\\B.HTM"_s);
            }).startsWith(u"75: The copy cannot be made: S:\\Docs\\B.HTM"_s));
    QCOMPARE(disk.bytes(u"Docs/b.htm"_s), "b");
    files.move(u"S:\\Docs\\a.htm"_s, u"S:\\Docs\\A.HTM"_s);
    QCOMPARE(disk.names(u"Docs"_s), (QStringList{u"A.HTM"_s, u"b.htm"_s}));

    // Shared folders: what the group could write before, it can write again.
    disk.setMode(u"Docs"_s, 0775);
    disk.setMode(u"Docs/b.htm"_s, 0664);
    files.setAttributes(u"S:\\Docs\\b.htm"_s, ReadOnlyFile);
    QCOMPARE(disk.mode(u"Docs/b.htm"_s), mode_t(0444));
    QCOMPARE(files.attributes(u"S:\\Docs\\b.htm"_s), int(ReadOnlyFile));
    QCOMPARE(errorOf([&] { files.removeFile(u"S:\\Docs\\b.htm"_s); }),
             u"70: The file cannot be deleted, it is read-only: S:\\Docs\\b.htm"_s);
    files.setAttributes(u"S:\\Docs\\b.htm"_s, 0);
    QCOMPARE(disk.mode(u"Docs/b.htm"_s), mode_t(0664));
    files.removeFile(u"S:\\Docs\\b.htm"_s);
    QCOMPARE(disk.names(u"Docs"_s), QStringList{u"A.HTM"_s});
}

void tst_files::walksWithoutFollowingLinks()
{
    Disk disk;
    disk.put(u"Docs/P/b/x.htm"_s, "x");
    disk.put(u"Docs/P/a.htm"_s, "a");
    disk.put(u"outside/secret"_s, "s");
    disk.link(disk.native(u"outside"_s), u"Docs/P/link"_s);
    QStringList met;
    walkTree(disk.files, u"S:\\Docs\\P\\"_s, [&](const TreeEntry &entry) {
        QCOMPARE(entry.path, u"S:\\Docs\\P\\"_s + entry.relative);
        met.append(entry.relative);
    });
    QCOMPARE(met, (QStringList{u"a.htm"_s, u"b"_s, u"b\\x.htm"_s, u"link"_s}));
    QVERIFY(errorOf([&] {
                walkTree(disk.files, u"S:\\Docs\\P\\link"_s, [](const TreeEntry &) {});
            }).contains(u"It is a link"_s));

    const QString deepest = u"Docs/Deep"_s + u"/d"_s.repeated(64);
    int count = 0;
    const auto walkDeep = [&] {
        walkTree(disk.files, u"S:\\Docs\\Deep"_s, [&](const TreeEntry &) { ++count; });
    };
    QDir(disk.folder.path()).mkpath(disk.native(deepest));
    walkDeep();
    QCOMPARE(count, 64);
    disk.put(deepest + u"/x"_s, "x");
    QVERIFY(errorOf(walkDeep).startsWith(u"75: The folders lie more than 64 levels deep"_s));
    QVERIFY(errorOf([&] { deleteTree(disk.files, u"S:\\Docs\\Deep"_s); }).startsWith(u"75:"_s));
    QVERIFY(QFile::exists(disk.native(deepest + u"/x"_s)));
}

void tst_files::copiesATree()
{
    Disk disk;
    disk.put(u"Docs/P/Book_A/p.htm"_s, "page");
    disk.put(u"Docs/P/Book_A/big.png"_s, QByteArray(200'000, 'p'));
    disk.put(u"Docs/P/Search/s.xml"_s, "derived");
    disk.put(u"Docs/P/QV_Toc.xml"_s, "toc");
    disk.link(disk.native(u"Docs/P/QV_Toc.xml"_s), u"Docs/P/Book_A/link"_s);
    disk.setMode(u"Docs/P/Book_A/p.htm"_s, 0440);
    disk.setMode(u"Docs/P/Book_A"_s, 0555);
    const QDateTime old(QDate(2001, 2, 3), QTime(4, 5), Qt::UTC);
    QFile toc(disk.native(u"Docs/P/QV_Toc.xml"_s));
    QVERIFY(toc.open(QIODevice::ReadWrite)
            && toc.setFileTime(old, QFileDevice::FileModificationTime));

    QStringList told;
    const Progress progress{[&](int done, int total, const QString &what) {
                                told.append(u"%1/%2 %3"_s.arg(done).arg(total).arg(what));
                            },
                            {}};
    const QString from = u"S:\\Docs\\P\\"_s;
    const QStringList links =
        copyTree(disk.files, from, u"S:\\Docs\\Q"_s, progress,
                 [](const TreeEntry &entry) { return entry.relative == u"Search"_s; });
    QCOMPARE(links, QStringList{u"Book_A\\link"_s});
    QCOMPARE(told, (QStringList{u"0/3 "_s, u"1/3 QV_Toc.xml"_s, u"2/3 big.png"_s, u"3/3 p.htm"_s}));
    QCOMPARE(disk.names(u"Docs/Q"_s), (QStringList{u"Book_A"_s, u"QV_Toc.xml"_s}));
    QCOMPARE(disk.names(u"Docs/Q/Book_A"_s), (QStringList{u"big.png"_s, u"p.htm"_s}));
    QCOMPARE(disk.bytes(u"Docs/Q/Book_A/big.png"_s), QByteArray(200'000, 'p'));
    QCOMPARE(disk.mode(u"Docs/Q/Book_A/p.htm"_s), mode_t(0440));
    QVERIFY(disk.mode(u"Docs/Q/Book_A"_s) & 0200);
    QCOMPARE(disk.files.status(u"S:\\Docs\\Q\\QV_Toc.xml"_s).modified, old);

    QCOMPARE(errorOf([&] { copyTree(disk.files, from, u"S:\\DOCS\\p\\Copy"_s); }),
             u"75: A folder cannot be copied into itself: S:\\DOCS\\p\\Copy"_s);
    disk.put(u"Docs/R/qv_toc.XML"_s, "mine");
    QCOMPARE(errorOf([&] { copyTree(disk.files, from, u"S:\\Docs\\R"_s); }),
             u"75: The copy cannot be made: S:\\Docs\\R\\QV_Toc.xml (File exists)"_s);
    QCOMPARE(disk.bytes(u"Docs/R/qv_toc.XML"_s), "mine");

    std::stop_source stop;
    stop.request_stop();
    const Progress stopped{{}, stop.get_token()};
    QVERIFY_THROWS_EXCEPTION(Unwinding, copyTree(disk.files, from, u"S:\\Docs\\T"_s, stopped));
    for (const QString &folder : {u"Docs/P/Book_A"_s, u"Docs/Q/Book_A"_s, u"Docs/R/Book_A"_s}) {
        if (QFile::exists(disk.native(folder)))
            disk.setMode(folder, 0755);
    }
}

void tst_files::deletesATree()
{
    Disk disk;
    disk.put(u"Docs/P/Book_A/p.htm"_s, "page");
    disk.setMode(u"Docs/P/Book_A/p.htm"_s, 0444);
    disk.setMode(u"Docs/P/Book_A"_s, 0555);
    disk.put(u"outside/keep"_s, "kept");
    disk.link(disk.native(u"outside"_s), u"Docs/P/link"_s);
    disk.link(disk.native(u"outside"_s), u"Docs/Alias"_s);
    const auto refusal = [&](const QString &folder) {
        const OrdinaryUser user;
        return errorOf([&] { deleteTree(disk.files, folder); });
    };
    disk.setMode(u"Docs"_s, 0555);
    const QString locked = refusal(u"S:\\Docs\\P"_s);
    disk.setMode(u"Docs"_s, 0755);
    QCOMPARE(locked, u"70: The name cannot be changed: S:\\Docs\\P (Permission denied)"_s);
    QCOMPARE(disk.names(u"Docs"_s), (QStringList{u"Alias"_s, u"P"_s}));
    QCOMPARE(disk.mode(u"Docs/P/Book_A/p.htm"_s), mode_t(0444));
    deleteTree(disk.files, u"S:\\docs\\p\\"_s);
    QCOMPARE(disk.names(u"Docs"_s), QStringList{u"Alias"_s});
    QCOMPARE(disk.bytes(u"outside/keep"_s), "kept");

    QVERIFY(refusal(u"S:\\Docs\\Alias"_s).startsWith(u"75:"_s));
    QVERIFY(refusal(u"S:\\Docs\\P"_s).startsWith(u"76:"_s));
    QVERIFY(refusal(u"S:\\"_s).startsWith(u"75:"_s));
    QCOMPARE(disk.bytes(u"outside/keep"_s), "kept");

    disk.put(u"Docs/P.qvdel1/Book_A/p.htm"_s, "page");
    disk.put(u"Docs/P.qvdelta/p.htm"_s, "page");
    disk.put(u"Docs/Q.qvdel2"_s, "a file");
    disk.put(u"Docs/R.qvdel3/p.htm"_s, "listed in the catalogue");
    removeLeftovers(disk.files, u"S:\\Docs"_s, {u"r.QVDEL3"_s});
    QCOMPARE(disk.names(u"Docs"_s),
             (QStringList{u"Alias"_s, u"P.qvdelta"_s, u"Q.qvdel2"_s, u"R.qvdel3"_s}));
}

void tst_files::whatKilledProgramsLeftIsRemoved()
{
    Disk disk;
    const QStringList folders{u"a.qvnew"_s, u"fresh.qvnew"_s, u"listed.qvnew"_s, u"o.qvtmp1"_s};
    const QStringList single{u"b.xml.qvtmp77"_s, u"fresh.xml.qvtmp78"_s, u"n.qvnew"_s,
                             u"n.qvtmp"_s};
    for (const QString &name : folders)
        disk.put(u"Docs/"_s + name + u"/p.htm"_s, "page");
    for (const QString &name : single)
        disk.put(u"Docs/"_s + name, "half");
    for (const QString &name : folders + single) {
        if (!name.startsWith(u"fresh"_s))
            disk.changedHoursAgo(u"Docs/"_s + name, 25);
    }
    disk.setMode(u"Docs/b.xml.qvtmp77"_s, 0444);
    removeAbandoned(disk.files, u"S:\\Docs\\"_s, {u"Listed.qvnew"_s});
    QCOMPARE(disk.names(u"Docs"_s),
             (QStringList{u"fresh.qvnew"_s, u"fresh.xml.qvtmp78"_s, u"listed.qvnew"_s, u"n.qvnew"_s,
                          u"n.qvtmp"_s, u"o.qvtmp1"_s}));
}

void tst_files::lockKeepsOthersOut()
{
    Disk disk;
    disk.put(u"Docs/QV_Selection.xml"_s, "c");
    disk.setMode(u"Docs/QV_Selection.xml"_s, 0660);
    const auto lock = [&](std::chrono::milliseconds patience) {
        return disk.files.lock(u"S:\\Docs\\QV_Selection.xml.lock"_s,
                               u"S:\\Docs\\QV_Selection.xml"_s, patience);
    };
    auto mine = lock(0ms);
    QVERIFY(mine);
    QCOMPARE(disk.mode(u"Docs/QV_Selection.xml.lock"_s), mode_t(0660));
    QVERIFY(!lock(0ms));
    QCOMPARE(ChildProcess([&] { return lock(20ms) ? 1 : 2; }).exitStatus(), 2);
    mine.reset();
    QVERIFY(QFile::exists(disk.native(u"Docs/QV_Selection.xml.lock"_s)));

    // A process that dies with the lock in its hands.
    QCOMPARE(ChildProcess([&] { return lock(0ms).release() ? 3 : 4; }).exitStatus(), 3);
    QVERIFY(lock(0ms));
}

QTEST_GUILESS_MAIN(tst_files)
#include "tst_files.moc"
