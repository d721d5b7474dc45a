// Whole builds of a project, without windows: what a build of the changes makes is what a build of
// everything makes, and whatever stands in the way costs no more than what it concerns.

#include "support/DisturbedFiles.h"
#include "support/Errors.h"
#include "support/SampleProject.h"
#include "tools/build/BuildRun.h"

#include <QRandomGenerator>
#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

using Files = QMap<QString, QByteArray>;

constexpr std::array derived{"DocToDoc"_L1, "DynamicHelp"_L1, "QuickNav"_L1, "Search_Words"_L1};

QByteArray page(const QByteArray &body)
{
    return "<!DOCTYPE html><html lang=en><title>Pumps</title><h1 id=top>Pumps</h1><p>" + body;
}

struct BuildWorld : SampleProject
{
    DisturbedFiles files{world.files};
    const QString book = folder + u"Book_REP\\"_s;
    QRandomGenerator random{5};

    BuildWorld()
    {
        files.syncs = false;
        QList<QPair<QString, QByteArray>> pages;
        for (int number = 1; number <= 12; ++number)
            pages.append({u"p%1.htm"_s.arg(number), anyPage()});
        addBook(u"Repair"_s, u"REP"_s, pages);
        addQuickNav(u"REP"_s);
        addGlobals();
    }

    QByteArray anyPage()
    {
        static const QByteArrayList pieces{
            "pump valve ",
            "Pumpen R100 ",
            "ポンプ ",
            "<a href=p3.htm#top>3</a> ",
            "<a href=gone.htm>",
            "<a href=P4.HTM>4</a> ",
            "<!-- open ",
            "<img src=a.png> ",
            "<b>",
            "<h2>valve</h2>",
            "<a href=qvlink:ID1>",
            "<a id=x data-qv-ibd=ID1>",
        };
        QByteArray body;
        for (int left = random.bounded(12); left > 0; --left)
            body += pieces.at(random.bounded(int(pieces.size())));
        return page(body);
    }

    BuildResult build(const BuildOrder &order = {
                          .tools = {allBuildTools.begin(), allBuildTools.end()}})
    {
        return runBuild(world.session, files, name, u"ENU"_s, order, {}, {});
    }

    /// What a build makes, but for the logs: they tell of the run.
    Files made()
    {
        Files all{{u"QV_LinkID.xml"_s, world.bytes(folder + ProjectFile::links)}};
        for (const QLatin1StringView place : derived) {
            for (const QString &file : world.below(folder + place)) {
                if (!file.endsWith(u"_Log.txt"_s) && file.contains(u'.'))
                    all.insert(place + u'\\' + file, world.bytes(folder + place + u'\\' + file));
            }
        }
        return all;
    }

    QString anyPagePath()
    {
        QStringList pages = world.below(book);
        pages.removeIf([](const QString &file) { return !file.endsWith(u".htm"_s); });
        return book + pages.at(random.bounded(int(pages.size())));
    }

    void edit()
    {
        const int number = m_edits++;
        const QString path = anyPagePath();
        switch (number % 6) {
        case 0:
            world.put(book + u"new%1.htm"_s.arg(number), anyPage());
            break;
        case 1:
            world.files.move(path, book + u"renamed%1.htm"_s.arg(number));
            break;
        case 2:
            world.files.removeFile(path);
            break;
        case 3: // as long as it was
            world.put(path, world.bytes(path).replace("valve", "crane"));
            break;
        case 4: // a damaged cache
            damage(folder + (number % 12 < 6 ? u"QV_PageFacts.bin"_s : u"QV_SearchWords.bin"_s));
            [[fallthrough]];
        default:
            world.put(path, anyPage());
        }
    }

    void damage(const QString &path)
    {
        QByteArray bytes = world.bytes(path);
        bytes[random.bounded(int(bytes.size()))] ^= 0x10;
        world.put(path, bytes);
    }

private:
    int m_edits = 0;
};

} // namespace

class tst_buildrun final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buildsChangesAsItBuildsEverything();
    void worksWithoutItsCaches();
    void leavesAloneWhatIsInTheWay();
    void keepsWhatAuthorsPutBesideItsFiles();
    void letsOneBuildAtATime();
    void standsFoldersThatVanish();
};

void tst_buildrun::buildsChangesAsItBuildsEverything()
{
    BuildWorld project;
    QVERIFY(project.build().success);
    const QList<BuildTool> all{allBuildTools.begin(), allBuildTools.end()};
    for (int number = 0; number < 48; ++number) {
        project.edit();
        if (number % 5 == 0) { // other tools learn of that change later
            QVERIFY(
                project.build({.tools = {all.at(number % 4)}, .checks = CheckLevel::Off}).success);
            project.edit();
        }
        QVERIFY(project.build().success);
        const Files changes = project.made();
        QVERIFY(project.build({.tools = all, .everything = true, .threads = 1}).success);
        QVERIFY2(project.made() == changes, QByteArray::number(number));
    }
}

void tst_buildrun::worksWithoutItsCaches()
{
    BuildWorld project;
    QVERIFY(project.build().success);
    const Files before = project.made();
    for (const QString &cache : {u"QV_PageFacts.bin"_s, u"QV_SearchWords.bin"_s}) {
        project.world.files.removeFile(project.folder + cache);
        project.world.put(project.folder + cache + u"\\kept.txt"_s, "kept"); // where it should lie
    }
    project.world.put(project.book + u"p1.htm"_s, page("turbine"));
    QVERIFY(project.build().success);
    const Files changed = project.made();
    QVERIFY(changed != before);
    QVERIFY(project.build().success);
    QCOMPARE(project.made(), changed);
    QCOMPARE(project.world.bytes(project.folder + u"QV_PageFacts.bin\\kept.txt"_s), "kept");
}

void tst_buildrun::leavesAloneWhatIsInTheWay()
{
    BuildWorld project;
    const QString place = project.folder + u"Search_Words"_s;
    project.world.put(place, "the author's own");
    project.world.put(project.folder + u"DocToDoc.qvold"_s, "this too");
    for (int time = 0; time < 2; ++time) {
        const BuildResult result = project.build();
        QVERIFY(!result.success);
        QCOMPARE(result.of(BuildTool::SearchIndex)->outcome, ToolReport::Outcome::Failed);
        QCOMPARE(result.of(BuildTool::SearchIndex)->summary,
                 u"A build makes a folder %1, but something else has that name. Rename it or move "
                 "it away, then build again."_s.arg(place));
        QCOMPARE(result.of(BuildTool::DocToDoc)->outcome, ToolReport::Outcome::Failed);
        QVERIFY(result.of(BuildTool::ContextSettings)->outcome != ToolReport::Outcome::Failed);
        QVERIFY(result.of(BuildTool::QuickNav)->outcome != ToolReport::Outcome::Failed);
    }
    QCOMPARE(project.world.bytes(place), "the author's own");
    QCOMPARE(project.world.bytes(project.folder + u"DocToDoc.qvold"_s), "this too");
    project.world.files.removeFile(place);
    project.world.files.removeFile(project.folder + u"DocToDoc.qvold"_s);
    QVERIFY(project.build().success);
}

void tst_buildrun::keepsWhatAuthorsPutBesideItsFiles()
{
    BuildWorld project;
    for (const QLatin1StringView place : derived)
        project.world.put(project.folder + place + u"\\own\\notes.txt"_s, "the author's own");
    project.world.put(project.folder + u"Search_Words\\Words_017.xml"_s, "of a larger project");
    QVERIFY(project.build().success);
    for (const QLatin1StringView place : derived)
        QCOMPARE(project.world.bytes(project.folder + place + u"\\own\\notes.txt"_s),
                 "the author's own");
    QVERIFY(!project.made().contains(u"Search_Words\\Words_017.xml"_s));

    const TocBook book{
        u"Words"_s, u"WRD"_s, project.name, u"search_words\\Book_WRD"_s, u"Book_WRD.xml"_s, {}, {}};
    TableOfContents(project.world.session, project.world.files).addBook(project.name, book);
    const QString page = project.folder + u"Search_Words\\Book_WRD\\page.htm"_s;
    project.world.put(page, ::page("turbine"));
    const BuildResult result = project.build();
    QCOMPARE(result.of(BuildTool::SearchIndex)->outcome, ToolReport::Outcome::Failed);
    QCOMPARE(result.of(BuildTool::SearchIndex)->summary,
             u"The book \"Words\" lies in the folder Search_Words, which a build writes anew as a "
             "whole. Give the book a folder of its own, then build again."_s);
    QCOMPARE(project.world.bytes(page), ::page("turbine"));
    QVERIFY(result.of(BuildTool::DocToDoc)->outcome != ToolReport::Outcome::Failed);
}

void tst_buildrun::letsOneBuildAtATime()
{
    BuildWorld project;
    QVERIFY(project.build().success);
    const Files before = project.made();
    project.world.put(project.book + u"p1.htm"_s, page("turbine"));
    const QString path = project.folder + u"_Backup\\Build.lock"_s;
    {
        const auto other = project.world.files.lock(path, project.folder + ProjectFile::toc, {});
        QVERIFY(other);
        const QvError error = raisedBy([&] { (void)project.build(); });
        QCOMPARE(error.number(), PermissionDenied);
        QCOMPARE(error.description(),
                 u"Another QV Developer builds or packs this project now. Try again "
                 "when it has ended. The file that it holds is "_s
                     + path);
        QCOMPARE(project.made(), before);
    }
    QVERIFY(project.build().success);
    QVERIFY(project.made() != before);
}

void tst_buildrun::standsFoldersThatVanish()
{
    BuildWorld project;
    const QString inner = project.book + u"inner"_s;
    const QString page = inner + u"\\notes.htm"_s;
    bool vanished = true;
    for (int looks = 0; vanished; ++looks) {
        vanished = false;
        project.world.put(page, ::page("turbine"));
        std::atomic_int left = looks;
        project.files.look = [&] {
            if (left-- != 0)
                return;
            project.world.files.removeFile(page);
            project.world.files.removeFolder(inner);
            vanished = true;
        };
        const BuildOrder order{.tools = {BuildTool::DocToDoc}, .checks = CheckLevel::Off};
        QVERIFY2(project.build(order).success, QByteArray::number(looks));
    }
}

QTEST_GUILESS_MAIN(tst_buildrun)
#include "tst_buildrun.moc"
