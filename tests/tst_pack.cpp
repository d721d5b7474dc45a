#include "platform/Xml.h"
#include "projectfiles/changes/StagedFiles.h"
#include "support/DisturbedFiles.h"
#include "support/SampleProject.h"
#include "support/System.h"
#include "tools/pack/PackProject.h"

#include <QTest>

#include <zip.h>

using namespace Qt::StringLiterals;

namespace {

struct Entry
{
    QString name;
    QByteArray content;
    qint64 modified; ///< seconds
    bool isStored;
    bool operator==(const Entry &) const = default;
};

/// What any program finds in an archive.
QList<Entry> unpacked(const QByteArray &archive)
{
    zip_error_t error;
    zip_source_t *source =
        zip_source_buffer_create(archive.constData(), zip_uint64_t(archive.size()), 0, &error);
    zip_t *zip = zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error);
    QList<Entry> entries;
    for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
        zip_stat_t status;
        zip_stat_index(zip, zip_uint64_t(i), 0, &status);
        QByteArray content(qsizetype(status.size), '?');
        zip_file_t *file = zip_fopen_index(zip, zip_uint64_t(i), 0);
        const bool isWhole = zip_fread(file, content.data(), status.size) == content.size()
                             && zip_fclose(file) == 0; // which compares the checksum
        const zip_uint8_t *time = zip_file_extra_field_get_by_id(zip, zip_uint64_t(i), 0x5455, 0,
                                                                 nullptr, ZIP_FL_CENTRAL);
        qint64 seconds = 0;
        for (int byte = 4; time != nullptr && byte > 0; --byte)
            seconds = seconds * 256 + time[byte];
        entries.append({QString::fromUtf8(status.name), isWhole ? content : "damaged", seconds,
                        status.comp_method == ZIP_CM_STORE});
    }
    zip_close(zip);
    return entries;
}

QByteArray noise(int size)
{
    QByteArray bytes;
    quint32 state = 1;
    while (bytes.size() < size)
        bytes.append(char((state = state * 1664525 + 1013904223) >> 24));
    return bytes;
}

/// A project of all kinds of files.
class PackWorld : public SampleProject
{
public:
    const QString pack = folder + u"QVPlant 300_Server.Zip"_s;
    const QString page = folder + u"Book_OPG\\Käfer 入門.htm"_s;

    PackWorld()
    {
        addBook(u"Operator's Guide"_s, u"OPG"_s,
                {{u"start.htm"_s, QByteArray("<p>one</p>\r\n").repeated(900)},
                 {u"Käfer 入門.htm"_s, "<p>two</p>"}});
        put(u"Book_OPG\\empty.css"_s, {});
        put(u"Book_OPG\\noise.png"_s, noise(5000));
        put(u"Book_OPG\\plain.png"_s, QByteArray(5000, 'x'));
    }
    void put(const QString &path, const QByteArray &content) { world.put(folder + path, content); }

    BuildInput input() { return readBuildInput(world.session, world.files, name, u"DEU"_s); }
    PackResult make(PackOptions options = {})
    {
        DisturbedFiles files(world.files);
        files.syncs = false;
        return makeWith(files, options);
    }
    PackResult makeWith(FileSystem &files, PackOptions options = {}, const Progress &progress = {})
    {
        return packProject(files, input(), options, progress);
    }
    PackPlan plan()
    {
        return planPack(world.files, input(), ProjectListing::read(world.files, folder), {});
    }
    QByteArray bytes() { return world.bytes(pack); }
    QByteArray freshBytes()
    {
        world.files.removeFile(pack, true);
        make();
        return bytes();
    }
    QStringList names()
    {
        QStringList all;
        for (const Entry &entry : unpacked(bytes()))
            all.append(entry.name);
        return all;
    }
    /// The files that packing leaves at the top of the folder.
    QStringList packs() { return world.below(folder).filter(u"server.zip"_s, Qt::CaseInsensitive); }
};

void touch(const QString &native, qint64 seconds)
{
    QFile file(native);
    QVERIFY(file.open(QFile::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(seconds), QFile::FileModificationTime));
}

} // namespace

class tst_pack final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsWhatTheServerShallGet();
    void leavesOutWhatStaysHere();
    void sameFilesMakeTheSameBytes();
    void takesWhatIsUnchangedFromTheLastPack();
    void mistrustsADamagedLastPack();
    void showsTheDifferenceToTheLastPack();
    void warnsOfNamesThatOthersRefuse();
    void aFailureLeavesTheLastPack();
    void stopLeavesTheLastPack();
    void noticesFilesThatChangeMeanwhile();
};

void tst_pack::holdsWhatTheServerShallGet()
{
    PackWorld world;
    world.put(u"qvplant 300_SERVER.zip"_s, "of other capitals");
    world.world.files.setAttributes(world.folder + u"qvplant 300_SERVER.zip"_s, ReadOnlyFile);
    touch(world.world.files.nativePath(world.page), 1'234'567'891);

    const PackResult result = world.make();
    QCOMPARE(world.packs(), QStringList{u"QVPlant 300_Server.Zip"_s});
    QVERIFY(world.world.files.status(world.pack).readOnly);
    const QList<Entry> entries = unpacked(world.bytes());
    QCOMPARE(
        world.names(),
        (QStringList{u"QV_Package.xml"_s, u"Plant 300/Book_OPG/Book_OPG.xml"_s,
                     u"Plant 300/Book_OPG/K\u00E4fer 入門.htm"_s, u"Plant 300/Book_OPG/empty.css"_s,
                     u"Plant 300/Book_OPG/noise.png"_s, u"Plant 300/Book_OPG/plain.png"_s,
                     u"Plant 300/Book_OPG/start.htm"_s, u"Plant 300/QV_Toc.xml"_s}));
    QCOMPARE(result.count, 7);
    QCOMPARE(result.packedBytes, world.bytes().size());
    for (const Entry &entry : entries.sliced(1)) {
        const QString path = u"S:\\Docs\\"_s + QString(entry.name).replace(u'/', u'\\');
        QCOMPARE(entry.content, world.world.bytes(path));
        QCOMPARE(entry.modified, world.world.files.status(path).modified.toSecsSinceEpoch());
        QCOMPARE(entry.isStored, path.endsWith("empty.css"_L1) || path.endsWith("noise.png"_L1));
    }
    QVERIFY(result.packedBytes < result.bytes);

    const pugi::xml_document document = parseXml(entries.first().content, u"list"_s, "QV_Package");
    const pugi::xml_node list = document.child("QV_Package");
    QCOMPARE(textOf(list.child("Package_Project")), u"Plant 300"_s);
    QCOMPARE(textOf(list.child("Package_Language")), u"DEU"_s);
    const pugi::xml_node second = list.child("Package_Files").first_child().next_sibling();
    QCOMPARE(textOf(second), entries.at(2).name);
    QCOMPARE(valueOf(second.attribute("Size")), u"10"_s);
    QCOMPARE(valueOf(second.attribute("Sum")), u"8371831e"_s);
    QCOMPARE(valueOf(second.attribute("Date")), u"2009-02-13T23:31:31.000Z"_s);
}

void tst_pack::leavesOutWhatStaysHere()
{
    PackWorld world;
    world.make();
    const QStringList before = world.names();
    for (const QString &path :
         {u"QVOld_Server.Zip"_s, u"DocToDoc_Log.txt"_s, u"Plant 300_QA_Log.txt"_s,
          u"QV_PageFacts.bin"_s, u"QV_SearchWords.bin"_s, u"QV_QAReport.xml"_s,
          u"QV_QABaseline.xml"_s, u"_Backup\\QV_Toc.xml.1"_s, u"_Backup\\Open-1.lock"_s,
          u"QV_Toc.xml.qvtmp12"_s, u"Search_Words.qvnew\\a.xml"_s,
          u"Search_Words\\SearchWords_Log.txt"_s, u"Search_Words.qvold\\a.xml"_s})
        world.put(path, "ours");
    world.make();
    QCOMPARE(world.names(), before);

    // An author's own files may be called so.
    world.put(u"Book_OPG\\Error_Log.txt"_s, "a sample");
    world.put(u"Book_OPG\\Gemfile.lock"_s, "a sample");
    world.make();
    QCOMPARE(world.names().size(), before.size() + 2);

    world.put(u"Texts\\more.md"_s, "an original");
    world.put(u"Texts\\all.zip"_s, "an original");
    Toc toc = TableOfContents(world.world.session, world.world.files).read(world.name);
    BookFile file(world.world.session, world.world.files);
    Book book = file.read(world.name, toc.books.first());
    book.sources = {
        {SourceKind::import, world.folder + u"Texts\\more.md"_s, {}, {}, u"start.htm"_s},
        {SourceKind::source, u"S:\\Docs\\Other\\Texts\\all.zip\\in\\it.htm"_s, {}, {}, u"x"_s},
        {SourceKind::source, world.folder + u"Book_OPG\\start.htm"_s, {}, {}, u"start.htm"_s}};
    file.write(world.name, toc.books.first(), book);
    world.make();
    QCOMPARE(world.names().size(), before.size() + 2);
    QVERIFY(world.names().contains(u"Plant 300/Book_OPG/start.htm"_s)); // a page all the same
    world.make({.withSources = true});
    QCOMPARE(world.names().size(), before.size() + 4);
}

void tst_pack::sameFilesMakeTheSameBytes()
{
    PackWorld world;
    world.make({.threads = 1});
    const QByteArray first = world.bytes();
    world.make({.threads = 3});
    QCOMPARE(world.bytes(), first);
    QCOMPARE(world.freshBytes(), first);

    // Also where files are held in memory.
    world.world.files.removeFile(world.pack);
    StagedFiles staged(world.world.files, world.folder);
    QCOMPARE(world.makeWith(staged, {.threads = 1}).reused, 0);
    QCOMPARE(staged.readFile(world.pack), first);
    QCOMPARE(world.makeWith(staged, {.threads = 1}).reused, 7);
    QCOMPARE(staged.readFile(world.pack), first);
    QVERIFY(world.packs().isEmpty());
}

void tst_pack::takesWhatIsUnchangedFromTheLastPack()
{
    PackWorld world;
    QCOMPARE(world.make().reused, 0);
    world.world.put(world.page, "<p>changed</p>");
    world.put(u"Book_OPG\\new.htm"_s, "<p>new</p>");
    world.world.files.removeFile(world.folder + u"Book_OPG\\plain.png"_s);
    const PackResult result = world.make();
    QCOMPARE(result.count, 7);
    QCOMPARE(result.reused, 5);
    const QByteArray packed = world.bytes();
    QCOMPARE(packed, world.freshBytes());
}

void tst_pack::mistrustsADamagedLastPack()
{
    PackWorld world;
    world.make();
    const QByteArray good = world.bytes();
    int leastReused = 7;
    for (qsizetype place = 0; place < good.size(); place += 13) {
        QByteArray bad = good;
        bad[place] = char(bad[place] ^ 0x55);
        world.world.files.replaceFile(world.pack, bad, {.sync = false});
        leastReused = std::min(leastReused, world.make().reused);
        QCOMPARE(unpacked(world.bytes()), unpacked(good));
    }
    QCOMPARE(leastReused, 0);
    world.world.put(world.pack, "no archive at all");
    QVERIFY(world.plan().lastProblem.startsWith(world.pack + u" cannot be opened: "_s));
    QCOMPARE(world.make().reused, 0);
    QCOMPARE(world.bytes(), good);
}

void tst_pack::showsTheDifferenceToTheLastPack()
{
    using Change = PackItem::Change;
    PackWorld world;
    QCOMPARE(world.plan().count(Change::Added), 7);
    QVERIFY(!world.plan().isCurrent());
    world.make();
    QVERIFY(world.plan().isCurrent());
    touch(world.world.files.nativePath(world.page), 1'234'567'891); // the same content
    QVERIFY(world.plan().isCurrent());

    world.world.put(world.page, "<p>longer now</p>");
    world.put(u"Book_OPG\\new.htm"_s, "new");
    world.world.files.removeFile(world.folder + u"Book_OPG\\plain.png"_s);
    const PackPlan plan = world.plan();
    QStringList seen;
    for (const PackItem &item : plan.items) {
        if (item.change != Change::Unchanged)
            seen.append(u"%1 %2 %3 %4"_s.arg(int(item.change))
                            .arg(item.path)
                            .arg(item.before)
                            .arg(item.size));
    }
    QCOMPARE(seen, (QStringList{u"1 Book_OPG\\K\u00E4fer 入門.htm 10 17"_s,
                                u"0 Book_OPG\\new.htm 0 3"_s, u"2 Book_OPG\\plain.png 5000 0"_s}));
    QVERIFY(plan.last.isValid());
}

void tst_pack::warnsOfNamesThatOthersRefuse()
{
    PackWorld world;
    const auto putNative = [&](const QString &name) {
        QFile file(world.world.native(u"Docs/Plant 300/Book_OPG/"_s + name));
        QVERIFY(file.open(QFile::WriteOnly));
    };
    if constexpr (!here::takesEveryName)
        QSKIP("Only one of them can be made here.");
    for (const QString &name : {u"START.htm"_s, u"aux.htm"_s, u"a?.htm"_s, u"b\u0001.htm"_s,
                                QString(190, u'l') + u".htm"_s})
        putNative(name);
    QStringList warnings;
    for (const Finding &finding : world.plan().warnings)
        warnings.append(finding.code + u' ' + finding.file.right(9));
    warnings.sort();
    QCOMPARE(warnings,
             (QStringList{u"PACK01 start.htm"_s, u"PACK02 G\\aux.htm"_s, u"PACK02 PG\\a?.htm"_s,
                          u"PACK03 lllll.htm"_s, u"PACK04 PG\\b\u0001.htm"_s}));
    world.make();
    QCOMPARE(world.names().size(), 12); // but for the one that cannot be listed
    QVERIFY(world.names().contains(u"Plant 300/Book_OPG/START.htm"_s));
}

void tst_pack::aFailureLeavesTheLastPack()
{
    PackWorld world;
    world.make();
    const QByteArray last = world.bytes();
    world.put(u"Book_OPG\\large.dat"_s, noise(3'000'000)); // written in several pieces
    int pieces = 0;
    for (bool isDone = false; !isDone; ++pieces) {
        DisturbedFiles files(world.world.files);
        files.syncs = false;
        files.disturb = [left = pieces]() mutable {
            if (left-- == 0)
                throw QvError(PermissionDenied, {}, u"The disk is full"_s);
        };
        const QString error = errorOf([&] { world.makeWith(files); });
        isDone = error.isEmpty();
        if (isDone)
            break;
        QCOMPARE(error, u"70: The disk is full. The packed copy is as it was. When that is mended, "
                        "pack again."_s);
        QCOMPARE(world.bytes(), last);
        QCOMPARE(world.packs().size(), 1);
    }
    QVERIFY2(pieces >= 4, QByteArray::number(pieces));
    QVERIFY(world.bytes() != last);

    DisturbedFiles unreadable(world.world.files);
    unreadable.look = [calls = 0]() mutable {
        if (++calls == 12)
            throw QvError(PermissionDenied, {}, u"The file cannot be read: x"_s);
    };
    QVERIFY(errorOf([&] {
                world.makeWith(unreadable, {.threads = 1});
            }).startsWith(u"70: The file cannot be read: x. The packed copy is as it was."_s));
}

void tst_pack::stopLeavesTheLastPack()
{
    PackWorld world;
    world.make();
    const QByteArray last = world.bytes();
    world.world.put(world.page, "changed");
    int steps = 0;
    int lastDone = 0;
    for (bool stopped = true; stopped; ++steps) {
        Stopper stopper;
        int left = steps;
        lastDone = 0;
        const Progress progress = stopper.when([&](int done, const QString &) {
            lastDone = std::max(lastDone, done);
            return left-- == 0;
        });
        stopped = false;
        try {
            world.makeWith(world.world.files, {}, progress);
        } catch (const Unwinding &) {
            stopped = true;
            QCOMPARE(world.bytes(), last);
            QCOMPARE(world.packs().size(), 1);
        }
    }
    QVERIFY2(steps > 14, QByteArray::number(steps)); // each file is read, and packed
    QVERIFY(lastDone > 0);
    QVERIFY(world.bytes() != last);
}

void tst_pack::noticesFilesThatChangeMeanwhile()
{
    PackWorld world;
    int changes = 0;
    const auto packWhileItChanges = [&](int times) {
        DisturbedFiles files(world.world.files);
        world.world.put(world.page, "<p>other");
        files.disturb = [&] { // when the archive is begun: all was read once
            if (times-- > 0)
                world.world.put(world.page, "<p>change " + QByteArray::number(++changes));
        };
        return errorOf([&] { world.makeWith(files); });
    };
    QCOMPARE(packWhileItChanges(1), QString());
    QCOMPARE(unpacked(world.bytes()).at(2).content, "<p>change 1");
    QCOMPARE(packWhileItChanges(1000),
             u"75: "_s + world.page
                 + u" changed while it was packed. The packed copy is as it was. Finish what "
                   "writes this file, then pack again."_s);
    QCOMPARE(unpacked(world.bytes()).at(2).content, "<p>change 1");
}

QTEST_GUILESS_MAIN(tst_pack)
#include "tst_pack.moc"
