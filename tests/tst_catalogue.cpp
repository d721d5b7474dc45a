#include "catalogue/ProjectCatalogue.h"
#include "catalogue/StatusIndicators.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr auto cataloguePathText = "S:\\Docs\\QV_Selection.xml"_L1;
constexpr auto statusPath = "S:\\Docs\\Plant\\QV_StatusIndicators.xml"_L1;
constexpr auto emptySkeleton = "<QV_Selection_List>\n\t<QVs/>\n</QV_Selection_List>\n"_L1;

QString entry(const QString &id, const QString &name, const QString &attributes,
              const QString &location)
{
    return u"\t\t<QV>\n\t\t\t<QV_Acro>%1</QV_Acro>\n\t\t\t<QV_Name %3>%2</QV_Name>\n"
           "\t\t\t<QV_Location>%4</QV_Location>\n\t\t</QV>\n"_s.arg(id, name, attributes, location);
}

QString statusLines(const QString &value)
{
    return u"<!-- Talmeric International, Industrial Control\n    Orvantis VRX R100 - Tools\n"
           "    Quovane Developer Status Indicators Data File \n    \n    Version 0.1 \n"
           "    Information 'quovane@talmeric.invalid' -->\n<QV_StatusIndicator>\n"
           "\t<DoctoDoc>%1</DoctoDoc>\n\t<ContextSettings>%1</ContextSettings>\n"
           "\t<QuickNav>%1</QuickNav>\n\t<SearchIndex>%1</SearchIndex>\n"
           "</QV_StatusIndicator>\n"_s.arg(value);
}

struct World : TestProgram
{
    ProjectCatalogue catalogue{session, files};
    StatusIndicators status{session, files, currentProject};

    void become(const QString &name, const QString &id, const QString &language)
    {
        session.projectName = name;
        session.projectId = id;
        session.projectLanguage = language;
    }
};

} // namespace

class tst_catalogue final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void growsFromNothing();
    void refusesANameThatAnotherAuthorTook();
    void storesRanksAndKeepsTheRest();
    void leavesABrokenFileAlone();
    void sortsLikeAnExchangeSort();
    void statusFileHasItsFixedForm();
    void statusFileIsMadeUsable();
};

void tst_catalogue::growsFromNothing()
{
    World world;
    world.become(u"Plant"_s, u"P01"_s, u"ENU"_s);
    QCOMPARE(world.catalogue.GetProdQVSelection_All(), QStringList(2));
    QCOMPARE(world.catalogue.GetProdQVSelection_Data(), QStringList(1));
    world.catalogue.UpdateQVSelection();
    const auto rank = [&] {
        world.catalogue.UpdateRankInSelectionFile(*world.parts.ranking, {u"Plant#1"_s});
    };
    QCOMPARE(errorOf(rank), u"53: 53: File not found: "_s + cataloguePathText);
    QVERIFY(world.catalogue.entries().isEmpty() && !world.files.exists(cataloguePathText));

    QVERIFY(world.catalogue.bCheckQVSelectionforProdName());
    QCOMPARE(world.bytes(cataloguePathText), xmlFile(emptySkeleton));

    world.catalogue.UpdateQVSelection();
    const QString first =
        entry(u"MyFav"_s, u"My Favorites"_s, u"AddDate=\"\""_s, u"MyFav\\QV_Favorites\\"_s)
        + entry(u"P01"_s, u"Plant"_s,
                u"AddDate=\"\" Pro=\"Yes\" Enable=\"Yes\" Rank=\"500\" LANGUAGE=\"ENU\""_s,
                u"Docs\\Plant\\"_s);
    const QString head = u"<QV_Selection_List>\n\t<QVs>\n"_s;
    const QString tail = u"\t</QVs>\n</QV_Selection_List>\n"_s;
    QCOMPARE(world.bytes(cataloguePathText), xmlFile(head + first + tail));

    world.become(u"DEU_O'Hare & <Co>"_s, u"P02"_s, u"DEU"_s);
    QVERIFY(world.catalogue.bCheckQVSelectionforProdName());
    world.catalogue.UpdateQVSelection();
    const QString second =
        entry(u"P02"_s, u"DEU_O'Hare &amp; &lt;Co&gt;"_s,
              u"AddDate=\"\" Pro=\"Yes\" Enable=\"Yes\" Rank=\"500\" LANGUAGE=\"DEU\""_s,
              u"Docs\\DEU_O'Hare &amp; &lt;Co&gt;\\"_s);
    QCOMPARE(world.bytes(cataloguePathText), xmlFile(head + first + second + tail));
    QVERIFY(!world.catalogue.bCheckQVSelectionforProdName());
    world.session.projectName = u"pLANT"_s;
    QVERIFY(!world.catalogue.bCheckQVSelectionforProdName());

    QCOMPARE(world.catalogue.GetProdQVSelection_All(),
             (QStringList{{}, {}, u"Plant"_s, u"DEU_O'Hare & <Co>"_s}));
    QCOMPARE(world.catalogue.GetProdQVSelection_Data(),
             (QStringList{{}, u"My Favorites#500"_s, u"Plant#500"_s, u"DEU_O'Hare & <Co>#500"_s}));
}

void tst_catalogue::refusesANameThatAnotherAuthorTook()
{
    World world;
    world.become(u"Plant"_s, u"P01"_s, u"ENU"_s);
    Session otherAuthor = world.session;
    otherAuthor.projectName = u"PLANT"_s;
    ProjectCatalogue other(otherAuthor, world.files);
    QVERIFY(world.catalogue.bCheckQVSelectionforProdName());
    QVERIFY(other.bCheckQVSelectionforProdName());

    other.UpdateQVSelection();
    const QByteArray before = world.bytes(cataloguePathText);
    const QvError error = raisedBy([&] { world.catalogue.UpdateQVSelection(); });
    QCOMPARE(error.number(), 5);
    QCOMPARE(error.source(), u"QV_Developer::UpdateQVSelection"_s);
    QCOMPARE(error.description(), u"5: Project already exists: Plant"_s);
    QCOMPARE(world.session.errorText, error.description());
    QCOMPARE(world.bytes(cataloguePathText), before);
}

void tst_catalogue::storesRanksAndKeepsTheRest()
{
    World world;
    const QString foreign = u"\t\t<!-- ours -->\n\t\t<QV Hidden=\"x\">\n\t\t\t<QV_Name />\n"
                            "\t\t\t<Owner>Ann</Owner>\n\t\t</QV>\n"_s;
    world.put(
        cataloguePathText,
        xmlFile(u"<QV_Selection_List>\n\t<QVs>\n"_s + foreign
                + entry(u"A"_s, u"Plant"_s, u"AddDate=\"2025-01-31\" LANGUAGE=\"JPN\""_s, u"x"_s)
                + entry(u"B"_s, u"Line #2"_s, u"Rank=\"500\""_s, {})
                + entry(u"C"_s, u"Other"_s, u"Rank=\"9\""_s, {})
                + u"\t</QVs>\n</QV_Selection_List>\n"_s));
    world.catalogue.UpdateRankInSelectionFile(
        *world.parts.ranking, {{}, u" Plant#7 "_s, u"Line #2#32000"_s, u"Gone#1"_s});
    QCOMPARE(world.catalogue.GetProdQVSelection_Data(),
             (QStringList{{}, u"#500"_s, u"Plant#7"_s, u"Line #2#32000"_s, u"Other#9"_s}));
    world.parts.ranking->UpdateProjectRank(u"Other"_s, u"1"_s);
    QCOMPARE(world.catalogue.entries().last().rank, u"1"_s);

    QVERIFY(xmlText(world.bytes(cataloguePathText)).contains(foreign));
    const QvError error = raisedBy([&] {
        world.catalogue.UpdateRankInSelectionFile(*world.parts.ranking,
                                                  {u"Plant#8"_s, u"Other"_s, u"Other#2"_s});
    });
    QCOMPARE(error.description(), u"5: This entry has no rank: Other"_s);
    QCOMPARE(world.catalogue.GetProdQVSelection_Data().sliced(2),
             (QStringList{u"Plant#8"_s, u"Line #2#32000"_s, u"Other#1"_s}));
}

void tst_catalogue::leavesABrokenFileAlone()
{
    World world;
    world.become(u"Plant"_s, u"P01"_s, u"ENU"_s);
    const QString whole = emptySkeleton;
    const QByteArrayList broken{
        {},
        xmlFile(whole).chopped(20),
        xmlFile(whole) + 'x',
        xmlFile(whole + whole),
        xmlFile(u"<QV_Selection_List/>\n"_s),
        xmlFile(u"<QV_Master><QVs/></QV_Master>\n"_s),
        xmlFile(u"<!DOCTYPE x [<!ENTITY a \"b\">]>\n"_s + whole),
    };
    const QList<std::function<void()>> operations{
        [&] { world.catalogue.bCheckQVSelectionforProdName(); },
        [&] { world.catalogue.UpdateQVSelection(); },
        [&] { world.catalogue.GetProdQVSelection_All(); },
        [&] { world.catalogue.GetProdQVSelection_Data(); },
        [&] { world.catalogue.UpdateRankInSelectionFile(*world.parts.ranking, {u"Plant#1"_s}); },
        [&] { world.catalogue.entries(); },
    };
    for (const QByteArray &bytes : broken) {
        world.put(cataloguePathText, bytes);
        for (const auto &operation : operations) {
            const QvError error = raisedBy(operation);
            QCOMPARE(error.number(), 75);
            QVERIFY2(error.description().contains(cataloguePathText + u" cannot be read: "_s),
                     qPrintable(error.description()));
        }
        QCOMPARE(world.bytes(cataloguePathText), bytes);
    }
}

void tst_catalogue::sortsLikeAnExchangeSort()
{
    QStringList names{u"zero"_s, u"old"_s, u"new"_s, u"twin"_s, u"newest"_s};
    QList<QDate> dates{{2030, 1, 1}, {2026, 3, 1}, {2026, 3, 9}, {2026, 3, 9}, {2026, 4, 1}};
    const QStringList expectedNames{u"zero"_s, u"newest"_s, u"new"_s, u"twin"_s, u"old"_s};
    const QList<QDate> expectedDates{dates[0], dates[4], dates[2], dates[3], dates[1]};
    SortProjectOnDates(names, dates);
    QCOMPARE(names, expectedNames);
    QCOMPARE(dates, expectedDates);

    dates.removeLast();
    const QvError error = raisedBy([&] { SortProjectOnDates(names, dates); });
    QCOMPARE(error.description(),
             u"Error (9) in procedure SortProjectOnDates of Module qvDeveloper"_s);
    QCOMPARE(names, expectedNames);
}

void tst_catalogue::statusFileHasItsFixedForm()
{
    World world;
    world.become(u"Plant"_s, u"P01"_s, u"DEU"_s);
    world.files.makeFolder(u"S:\\Docs\\Plant"_s);
    world.status.UpdateStatusXml(255);
    QVERIFY(!world.files.exists(statusPath));
    QVERIFY(!world.status.lights());

    world.status.AddProjectName();
    QCOMPARE(world.bytes(statusPath), xmlFile(statusLines(u"16777215"_s)));
    QCOMPARE(world.currentProject.handed, QStringList{u"Plant|DEU"_s});
    world.status.UpdateStatusXml(255);
    QCOMPARE(world.bytes(statusPath), xmlFile(statusLines(u"255"_s)));

    world.files.setAttributes(statusPath, ReadOnlyFile);
    const QvError error = raisedBy([&] { world.status.UpdateStatusXml(neutralColour); });
    QCOMPARE(error.number(), 70);
    QCOMPARE(error.source(), u"QV_Developer::UpdateStatusXml"_s);
    QVERIFY2(error.description().startsWith("Error(70): "_L1), qPrintable(error.description()));
    QCOMPARE(world.session.errorText, error.description());
    QCOMPARE(world.bytes(statusPath), xmlFile(statusLines(u"255"_s)));
}

void tst_catalogue::statusFileIsMadeUsable()
{
    World world;
    world.become(u"Plant"_s, u"P01"_s, u"ENU"_s);
    world.files.makeFolder(u"S:\\Docs\\Plant"_s);
    const QByteArray torn = xmlFile(statusLines(u"1"_s)).first(200);
    const QString aside = u"S:\\Docs\\Plant\\_Backup\\QV_StatusIndicators.xml.unreadable"_s;
    for (const QString &number : {u"1"_s, u"2"_s}) {
        world.put(statusPath, torn);
        world.status.UpdateStatusXml(5);
        QCOMPARE(world.bytes(statusPath), torn);
        world.status.AddProjectName();
        QCOMPARE(world.bytes(statusPath), xmlFile(statusLines(u"16777215"_s)));
        QCOMPARE(world.bytes(aside + number), torn);
    }

    world.put(statusPath, xmlFile(u"<QV_StatusIndicator>\n\t<QuickNav>green</QuickNav>\n"
                                  "\t<DoctoDoc> 3046706 </DoctoDoc>\n</QV_StatusIndicator>\n"_s));
    world.status.AddProjectName();
    const auto lights = world.status.lights();
    QVERIFY(lights);
    QCOMPARE(lights->docToDoc, std::optional<qint64>(3046706));
    QCOMPARE(lights->quickNav, std::optional<qint64>());
    QCOMPARE(lights->contextSettings, std::optional<qint64>(neutralColour));
    QCOMPARE(lights->searchIndex, std::optional<qint64>(neutralColour));
    QCOMPARE(world.currentProject.handed.size(), 3);
}

QTEST_GUILESS_MAIN(tst_catalogue)
#include "tst_catalogue.moc"
