#include "startup/ContentFiles.h"
#include "startup/ExternalPrograms.h"
#include "startup/FileHelpers.h"
#include "startup/PageText.h"
#include "startup/clsRegAccess.h"

#include "platform/Xml.h"
#include "support/Errors.h"
#include "support/OrdinaryUser.h"
#include "support/System.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray meta(const QByteArray &charset)
{
    return "<META charset='" + charset + "'>";
}

} // namespace

class tst_startup final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesAreDecoded();
    void pagesAreWrittenBackOrRefused();
    void markersFollowTheProject();
    void unreadablePagesAreKept();
    void securingTwiceRestores();
    void foldersAndFilesAreWritten();
    void helpAndIndexManager();
    void compilerPathEndsAtNul();
};

void tst_startup::pagesAreDecoded()
{
    // `last` is the text after the declaration.
    const auto row = [](const char *name, const QByteArray &bytes, const QString &language,
                        const QString &last, const QByteArray &encoding) {
        if (!here::hasCharset(encoding))
            return;
        const PageText page = decodePage(bytes, language);
        QVERIFY2(page.text.mid(page.text.lastIndexOf(u'>') + 1) == last, name);
        QCOMPARE(page.encoding.name, encoding);
        QVERIFY2(!page.damaged, name);
        QCOMPARE(encodePage(page.text, page.encoding), bytes);
    };
    row("mark UTF-16LE", QByteArray("\xFF\xFE\xE4\0", 4), u"KOR"_s, u"ä"_s, "UTF-16LE");
    row("mark UTF-16BE", QByteArray("\xFE\xFF\0\xE4", 4), u"KOR"_s, u"ä"_s, "UTF-16BE");
    row("mark UTF-8", "\xEF\xBB\xBF" + meta("euc-kr") + "\xC3\xA4", u"ENU"_s, u"ä"_s, "UTF-8");
    row("7-bit", meta("iso-2022-jp") + "\x1B$B$\"\x1B(B", u"ENU"_s, u"あ"_s, "iso-2022-jp");
    row("UTF-8 under a false name", meta("iso-2022-jp") + "\xE3\x81\x82", u"JPN"_s, u"あ"_s,
        "UTF-8");
    row("Korean, declared", meta("ks_c_5601-1987") + "\x8C\x63\xB0\xA1", u"ENU"_s, u"똠가"_s,
        "windows-949");
    row("Japanese in XML", "<?xml version='1.0' encoding=\"Shift_JIS\"?>\x82\xA0\x87\x40", u"ENU"_s,
        u"あ①"_s, "Shift_JIS");
    row("Chinese behind a comment", "<!-- " + meta("big5") + " -->" + meta("gb2312") + "\x81\x40",
        u"ENU"_s, u"丂"_s, "GB18030");
    row("Chinese, long form",
        "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=Big5\">\xA4\xA4", u"ENU"_s,
        u"中"_s, "Big5");
    row("Western in a Korean project", meta("iso-8859-1") + "\x93\xE4\x94", u"KOR"_s, u"“ä”"_s,
        "windows-1252");
    row("undeclared German", "\x84\xFC", u"DEU"_s, u"„ü"_s, "windows-1252");
    row("undeclared Korean", "\xB0\xA1", u"KOR"_s, u"가"_s, "windows-949");
    row("undeclared Japanese", "\x82\xA0", u"JPN"_s, u"あ"_s, "windows-932");
    row("undeclared Chinese", "\xD6\xD0", u"CHS"_s, u"中"_s, "windows-936");
    row("undeclared Taiwanese", "\xA4\xA4", u"CHT"_s, u"中"_s, "windows-950");
    row("no UTF-8 in spite of its name", meta("utf-8") + "\xE4", u"DEU"_s, u"ä"_s, "windows-1252");
    row("unknown name", meta("klingon") + "\xE4", u"ENU"_s, u"ä"_s, "windows-1252");
    row("ASCII to be typed in", meta("windows-1251") + "a", u"ENU"_s, u"a"_s, "windows-1251");
}

void tst_startup::pagesAreWrittenBackOrRefused()
{
    const QByteArrayList damaged{
        QByteArray("\xFF\xFE\0", 3),     // half a unit
        QByteArray("\xFF\xFE\0\xD8", 4), // half a pair
        meta("utf-8") + "\xC3\xA4 \xE4", // UTF-8 but for one byte
        meta("euc-kr") + "\xB0\xA1\xB0", // cut off
        "\x81",                          // nothing in 1252
    };
    for (const QByteArray &bytes : damaged)
        QVERIFY2(decodePage(bytes, u"ENU"_s).damaged, bytes.toHex());

    const QvError error = raisedBy([] { encodePage(u"ä\n→"_s, {"windows-1252"}); });
    QCOMPARE(error.number(), 5);
    QVERIFY2(error.description().startsWith(
                 u"Line 2: the character \"→\" (U+2192) does not exist in windows-1252"_s),
             error.what());
    QCOMPARE(raisedBy([] { encodePage(u"a\xDC00"_s, {"UTF-8"}); }).number(), 5);
}

void tst_startup::markersFollowTheProject()
{
    TestProgram world;
    world.session.projectName = u"New"_s;
    world.session.projectLanguage = u"ENU"_s;
    const QString folder = u"S:\\Docs\\my.html set\\"_s;
    world.put(folder + u"a.HTM"_s, "**Old** **old** **Old** \x80");
    world.put(folder + u"Book_A\\b.html"_s, "**Old**");
    world.files.setAttributes(folder + u"Book_A\\b.html"_s, ReadOnlyFile);
    world.put(folder + u"Book_A\\plain.html.txt"_s, "no marker");
    world.put(folder + u"Book_A\\notes.txt"_s, "**Old**");
    const QByteArray picture("\x89PNG\0**Old**", 12);
    world.put(folder + u"Book_A\\sub\\picture.htm"_s, picture);
    world.put(folder + u"qvOLD_server.zip"_s, "packed");
    world.put(folder + u"Book_A\\QVOld_Server.Zip"_s, "packed");

    ContentFiles content(world.session, world.files);
    QCOMPARE(content.QVUpdateFiles(folder, u"Old"_s, 1), QStringList());

    QCOMPARE(world.bytes(folder + u"a.HTM"_s), utf16Bytes(u"**New** **old** **New** €"_s));
    QCOMPARE(world.bytes(folder + u"Book_A\\b.html"_s), utf16Bytes(u"**New**"_s));
    QVERIFY(world.files.status(folder + u"Book_A\\b.html"_s).readOnly);
    QCOMPARE(world.bytes(folder + u"Book_A\\plain.html.txt"_s), utf16Bytes(u"no marker"_s));
    QCOMPARE(world.bytes(folder + u"Book_A\\notes.txt"_s), "**Old**");
    QCOMPARE(world.bytes(folder + u"Book_A\\sub\\picture.htm"_s), picture);
    QVERIFY(!world.files.exists(folder + u"qvOLD_server.zip"_s));
    QVERIFY(world.files.exists(folder + u"Book_A\\QVOld_Server.Zip"_s));

    Stopper stop;
    const Progress stopping = stop.when([](int, auto &) { return true; });
    QVERIFY_THROWS_EXCEPTION(Unwinding, content.QVUpdateFiles(folder, u"New"_s, 0, stopping));

    world.session.projectName = u"Newer"_s;
    content.QVUpdateFiles(folder, u"New"_s, 0);
    QCOMPARE(world.bytes(folder + u"a.HTM"_s), utf16Bytes(u"**Newer** **old** **Newer** €"_s));
}

void tst_startup::unreadablePagesAreKept()
{
    if constexpr (!here::hasRights)
        QSKIP("No page can be kept from its owner here.");
    const OrdinaryUser user;
    TestProgram world;
    world.session.projectName = u"New"_s;
    const QString folder = u"S:\\Docs\\Plant\\"_s;
    for (const QString &name : {u"a.htm"_s, u"a.html"_s, u"b.htm"_s})
        world.put(folder + name, "**Old**");
    QFile::setPermissions(world.native(u"Docs/Plant/a.htm"_s), QFile::WriteOwner);
    QFile::setPermissions(world.native(u"Docs/Plant/a.html"_s), QFile::WriteOwner);

    ContentFiles content(world.session, world.files);
    QCOMPARE(content.QVUpdateFiles(folder, u"Old"_s, 1),
             (QStringList{folder + u"a.htm"_s, folder + u"a.html"_s}));
    QCOMPARE(world.bytes(folder + u"a.htm"_s), utf16Bytes({}));
    QCOMPARE(world.bytes(folder + u"b.htm"_s), utf16Bytes(u"**New**"_s));
    for (const QString &kept : {u"a.page-unreadable"_s, u"a.page-unreadable-2"_s}) {
        QFile::setPermissions(world.native(u"Docs/Plant/"_s + kept), QFile::ReadOwner);
        QCOMPARE(world.bytes(folder + kept), "**Old**");
    }

    const QvError error =
        raisedBy([&] { content.QVUpdateFiles(u"S:\\Docs\\None"_s, u"Old"_s, 0); });
    QCOMPARE(error.number(), 76);
    QCOMPARE(error.source(), u"QV_Developer-QVDeveloper::QVUpdateFiles()"_s);
    QCOMPARE(error.description(), world.session.errorText);
}

void tst_startup::securingTwiceRestores()
{
    TestProgram world;
    const QString folder = u"S:\\Docs\\Plant\\"_s;
    const QString top = folder + u"top.xml"_s, one = folder + u"sub\\x.xml"_s,
                  two = folder + u"sub\\deep\\y.xml"_s, book = folder + u"sub\\Book_1.xml"_s,
                  small = folder + u"sub\\book_2.xml"_s;
    for (const QString &path : {top, one, two, book, small})
        world.put(path, "x");
    world.files.setAttributes(two, ReadOnlyFile);
    const auto readOnly = [&] {
        QString bits;
        for (const QString &path : {top, one, two, book, small})
            bits += world.files.status(path).readOnly ? u'r' : u'-';
        return bits;
    };

    ContentFiles content(world.session, world.files);
    content.SecureContentFiles(folder);
    QCOMPARE(readOnly(), u"-r--r"_s);
    content.SecureContentFiles(folder);
    QCOMPARE(readOnly(), u"--r--"_s);
    content.SetAttribute(folder + u"sub"_s, 0);
    QCOMPARE(readOnly(), u"-----"_s);
    content.SetAttribute(folder + u"sub"_s, 1);
    QCOMPARE(readOnly(), u"-rr-r"_s);
}

void tst_startup::foldersAndFilesAreWritten()
{
    TestProgram world;
    FileHelpers helpers(world.session, world.files);
    QVERIFY(helpers.mbCreateFilePath(u"S:\\A\\B"_s));
    QVERIFY(helpers.mbCreateFilePath(u"S:\\A\\B"_s));
    QVERIFY(world.files.folderExists(u"S:\\A\\B"_s));
    if (here::link(world.native(u"A"_s), world.native(u"linked"_s))) {
        QVERIFY(helpers.mbCreateFilePath(u"S:\\linked\\C"_s));
        QVERIFY(world.files.folderExists(u"S:\\A\\C"_s));
        QCOMPARE(raisedBy([&] { helpers.mbCreateFilePath(u"S:\\linked"_s); }).number(), 75);
    }
    const QvError network = raisedBy([&] { helpers.mbCreateFilePath(u"\\\\server\\share"_s); });
    QCOMPARE(network.source(), u"QV_Developer::mbCreateFilePath"_s);

    helpers.EnterToFile(u"S:\\A\\t.txt"_s, u"longer than the next"_s);
    helpers.EnterToFile(u"S:\\A\\t.txt"_s, u"ä\n"_s);
    QCOMPARE(world.bytes(u"S:\\A\\t.txt"_s), QByteArray("\xFF\xFE\xE4\0\n\0", 6));
    QCOMPARE(helpers.ReadFileText(u"S:\\A\\t.txt"_s), u"ä\n"_s);
    QCOMPARE(helpers.ReadFileText(u"S:\\A\\none.txt"_s), QString());
    QCOMPARE(world.session.errorText, network.description());
    const QvError missing = raisedBy([&] { helpers.EnterToFile(u"S:\\None\\t.txt"_s, {}); });
    QCOMPARE(missing.source(), u"QV_Developer-QVDeveloper::EnterToFile()"_s);
    QVERIFY2(missing.description().startsWith(u"76: "_s), missing.what());
}

void tst_startup::helpAndIndexManager()
{
    TestProgram world;
    CheckIndexManagerApp(world.program);
    QCOMPARE(world.messages.shown, QStringList());

    world.windows.open = {u"Quovane"_s, u"Nairurda"_s};
    OpenHelpTopic(world.program, u"Content"_s, u" "_s);
    OpenHelpTopic(world.program, u"Content"_s, whatToDoTopic);
    QCOMPARE(world.windows.raised,
             (QStringList{u"Quovane|Content|"_s,
                          u"Quovane|Content|QVT@qv@qvdev_ug@qv@What do you want to do"_s}));
    QCOMPARE(world.processes.started.size(), 0);

    world.messages.answers = {Answer::No};
    CheckIndexManagerApp(world.program);
    QCOMPARE(world.windows.closed, QStringList());
    QCOMPARE(world.messages.boxes.last().title, u"Quovane Developer Pro"_s);
}

void tst_startup::compilerPathEndsAtNul()
{
    TestProgram world;
    clsRegAccess access(world.registry);
    QCOMPARE(access.mstrGetDesPath(u"Source"_s), QString());
    const QString place = MemoryRegistry::place(
        Hive::LocalMachine, u"Software\\Talmeric\\Zel\\Quovane\\Compiler\\DBTOXML\\Source"_s,
        u"Path"_s);
    world.registry.values[place] = u"D:\\Old"_s + QChar::Null + u"rest"_s;
    QCOMPARE(access.mstrGetDesPath(u"source"_s), u"D:\\Old"_s);
}

QTEST_GUILESS_MAIN(tst_startup)
#include "tst_startup.moc"
