#include "components/NameRules.h"
#include "components/RegistryAccessComponent.h"
#include "components/WindowHelperComponent.h"
#include "platform/portable/PortableProcesses.h"
#include "platform/portable/SingleInstance.h"
#include "platform/portable/SocketWindows.h"
#include "platform/shared/IniRegistry.h"
#include "platform/shared/PortableLocale.h"
#include "platform/shared/ProgramEndNow.h"
#include "platform/widgets/MessageBoxes.h"
#include "platform/widgets/NativeFileDialogs.h"
#include "support/ChildProcess.h"
#include "support/Errors.h"
#include "support/FormDriver.h"
#include "support/TestProgram.h"

#include <future>

#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(content);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

/// Our test companion as a process of its own.
class Companion
{
public:
    Companion(const QString &className, const QString &caption)
    {
        m_process.start(QStringLiteral(COMPANION_PROGRAM), {className, caption});
    }
    ~Companion() { kill(); }
    QString line()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(10000))
                return u"(nothing)"_s;
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }
    bool ends() { return m_process.waitForFinished(10000); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

} // namespace

class tst_ports final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void namesPassOrAreRefusedWithTheirReason();
    void settingsSurvive();
    void theUsersSettingWins();
    void writersDoNotLoseEachOthersSettings();
    void componentsReadTheSettings();
    void programsStartByTheirFullPath();
    void programsThatAreWaitedForDoNotOutliveTheWait();
    void windowsOfOtherProgramsAreFound();
    void aSecondStartRaisesTheFirst();
    void theProgramEndsAfterItsLastJobs();
    void localNumbersAndDates();
    void boxesShowPlainText();
    void dialogFilters();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ports::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", m_folder->path().toUtf8());
    qunsetenv("QUOVANE_SETTINGS");
}

void tst_ports::namesPassOrAreRefusedWithTheirReason()
{
    const QString wide = u"日"_s.repeated(80);
    QList<QPair<QString, QString>> rows{{u"a@@@b"_s, u"@@@"_s},
                                        {u"a\tb"_s, u"U+0009"_s},
                                        {u"a\u200Bb"_s, u"U+200B"_s},
                                        {u"a\u202Etxt"_s, u"U+202E"_s},
                                        {u"a\U000E0041"_s, u"U+E0041"_s},
                                        {u"a"_s + QChar(0xD83D), u"U+D83D"_s},
                                        {u".."_s, u"."_s},
                                        {u"~a"_s, u"~"_s},
                                        {u"Plant."_s, u"."_s},
                                        {u"com1.x"_s, u"com1"_s},
                                        {u"a.QVdel12"_s, u".QVdel12"_s},
                                        {u"QVa_server.zip"_s, u"_server.zip"_s},
                                        {u"my FAVORITES"_s, u"my FAVORITES"_s},
                                        {wide, u"QVDEU_"_s + wide + u"_Server.Zip"_s}};
    for (const QChar forbidden : u"<>\"'/\\:*?|#"_s)
        rows.append({u"a"_s + forbidden + u'b', QString(forbidden)});
    ScriptedMessages messages;
    NameRules rules(messages);
    const auto check = [&](const QString &text) {
        return rules.CheckXMLCharacters(text, XmlCharacters::What::ProjectName);
    };
    for (const auto &[name, piece] : std::as_const(rows)) {
        QCOMPARE(check(name), QString());
        const Message box = messages.boxes.takeFirst();
        QCOMPARE(box.text, u"Invalid Character "_s + piece + u" Found in project name"_s);
        QCOMPARE(box.title, u"Quovane Developer Pro"_s);
        QCOMPARE(box.icon, MessageIcon::Information);
    }

    for (const QString &good : {u"Plant 300"_s, u"R&D (2) ä日\U0001F600"_s, u"a@@b"_s, u"Console"_s,
                                u"a.b~"_s, u"n"_s.repeated(99)})
        QCOMPARE(check(u" \t"_s + good + u' '), good);
    QCOMPARE(check(u"  "_s), QString());
    QVERIFY(messages.boxes.isEmpty());

    QCOMPARE(check(u"n"_s.repeated(100)), QString());
    QCOMPARE(messages.boxes.last().text,
             u"Length of Project Information should be less than 100"_s);
    QCOMPARE(rules.CheckXMLCharacters(u"a#"_s, XmlCharacters::What::ProjectId), QString());
    QCOMPARE(messages.boxes.last().text, u"Invalid Character # Found in project id"_s);
}

void tst_ports::settingsSurvive()
{
    const QString machine = m_folder->filePath(u"etc/machine.ini"_s);
    const QString user = m_folder->filePath(u"home/user.ini"_s);
    IniRegistry registry(machine, user);
    QStringList values{u"C:\\Data"_s, u" blanks "_s, u"a=b;c#[d]%41"_s, u""_s, u"ä日\U0001F600"_s};
    values << QString(u"C:\\Data"_s + QChar(u'\0') + u"rest\r\n"_s) << QString(QChar(0xD83D));
    for (const QString &value : values) {
        QVERIFY(registry.setValue(Hive::CurrentUser, u"Software\\A"_s, u"Odd = [name]"_s, value));
        IniRegistry second(machine, user);
        QCOMPARE(second.value(Hive::CurrentUser, u"SOFTWARE\\a\\"_s, u"odd = [NAME]"_s), value);
    }
    QCOMPARE(registry.value(Hive::CurrentUser, u"Software\\A"_s, u"None"_s), std::nullopt);

    writeFile(user, "; by hand\n[HKEY_CURRENT_USER\\Software\\A]\n;B=old\nB = 100% C:\\x \n");
    QCOMPARE(registry.value(Hive::CurrentUser, u"Software\\A"_s, u"B"_s), u"100% C:\\x"_s);
    QVERIFY(registry.setValue(Hive::CurrentUser, u"Software\\A"_s, u"C"_s, u"1"_s));
    QCOMPARE(contentOf(user), "; by hand\n[HKEY_CURRENT_USER\\Software\\A]\n;B=old\n"
                              "B = 100% C:\\x\nC=1\n");
    writeFile(user, "\xC3\x28");
    QVERIFY(errorOf([&] {
                (void)registry.value(Hive::CurrentUser, u"A"_s, u"B"_s);
            }).startsWith(u"75: "_s));
    QVERIFY(!registry.setValue(Hive::CurrentUser, u"A"_s, u"B"_s, u"x"_s));
    QCOMPARE(contentOf(user), "\xC3\x28");
}

void tst_ports::theUsersSettingWins()
{
    const QString machine = m_folder->filePath(u"machine.ini"_s);
    const QString user = m_folder->filePath(u"home/user.ini"_s);
    const QString key = u"Software\\Talmeric\\Zel\\Quovane"_s;
    IniRegistry registry(machine, user);
    QVERIFY(registry.setValue(Hive::LocalMachine, key, u"Client"_s, u"C:\\Common\\"_s));
    QVERIFY(contentOf(machine).contains("Client=C:\\Common\\"));
    QVERIFY(!QFile::exists(user));

    QFile::setPermissions(machine, QFile::ReadOwner); // the machine's store refuses from here on
    QVERIFY(registry.setValue(Hive::LocalMachine, key, u"Client"_s, u"C:\\Mine\\"_s));
    QCOMPARE(registry.value(Hive::LocalMachine, key, u"Client"_s), u"C:\\Mine\\"_s);
    QVERIFY(contentOf(machine).contains("Client=C:\\Common\\"));

    QFile::setPermissions(machine, QFile::ReadOwner | QFile::WriteOwner);
    QVERIFY(registry.setValue(Hive::LocalMachine, key, u"Client"_s, u"C:\\New\\"_s));
    QCOMPARE(registry.value(Hive::LocalMachine, key, u"Client"_s), u"C:\\New\\"_s);

    QFile::setPermissions(machine, QFile::ReadOwner);
    QFile::setPermissions(user, QFile::ReadOwner);
    QVERIFY(!registry.setValue(Hive::LocalMachine, key, u"Server"_s, u"S:\\"_s));
}

void tst_ports::writersDoNotLoseEachOthersSettings()
{
    const QString file = m_folder->filePath(u"user.ini"_s);
    const auto writeMany = [&](const QString &prefix) {
        IniRegistry registry(file, file);
        bool good = true;
        for (int number = 0; number < 30; ++number)
            good &= registry.setValue(Hive::CurrentUser, u"K"_s, prefix + QString::number(number),
                                      u"x"_s);
        return good;
    };
    const ChildProcess other([&] { return writeMany(u"a"_s) ? 5 : 6; });
    QVERIFY(writeMany(u"b"_s));
    QCOMPARE(other.exitStatus(), 5);
    QCOMPARE(contentOf(file).count("=x\n"), 60);
}

void tst_ports::componentsReadTheSettings()
{
    qputenv("QUOVANE_SETTINGS", m_folder->path().toUtf8());
    IniRegistry registry;
    RegistryAccessComponent access(registry);
    QVERIFY(errorOf([&] { access.GetQVServer(); }).startsWith(u"5: "_s));
    access.SetQVServer(u"S:\\Quovane"_s);
    QCOMPARE(access.GetQVServer(), u"S:\\Quovane\\"_s);
    const QString file = m_folder->filePath(u"machine.ini"_s);
    QCOMPARE(contentOf(file), "[HKEY_LOCAL_MACHINE\\Software\\Talmeric\\Zel\\Quovane]\n"
                              "QVServer=S:\\Quovane\\\n");
}

void tst_ports::programsStartByTheirFullPath()
{
    PortableFiles files(m_folder->path());
    PortableProcesses processes(files);
    QDir(m_folder->path()).mkpath(u"c/Client/Bin"_s);
    const QString bin = m_folder->filePath(u"c/Client/Bin/"_s);
    const QString out = bin + u"out"_s;
    const QByteArray script = "#!/bin/sh\nprintf '[%s]' \"$@\" > '" + out.toUtf8() + ".part'\nmv '"
                              + out.toUtf8() + ".part' '" + out.toUtf8() + "'\n";
    writeFile(bin + u"StartApp"_s, script);

    const QStringList arguments{u" "_s, u"two words"_s, u"\"quoted\" $(touch x); 'y'"_s, u""_s};
    processes.start(u"C:\\Client\\Bin\\StartApp.exe"_s, arguments);
    QTRY_COMPARE(contentOf(out), "[ ][two words][\"quoted\" $(touch x); 'y'][]");
    QCOMPARE(errorOf([&] { processes.start(u"C:\\Client\\Bin\\No.exe"_s, {}); }),
             u"53: File not found: C:\\Client\\Bin\\No.exe"_s);
    QVERIFY(QFile::setPermissions(bin + u"StartApp"_s, QFile::ReadOwner));
    QVERIFY(errorOf([&] {
                processes.start(u"C:\\Client\\Bin\\StartApp"_s, {});
            }).startsWith(u"70: "_s));

    const QByteArray searchPath = qgetenv("PATH");
    writeFile(bin + u"xdg-open"_s, script);
    writeFile(bin + u"Log 1.txt"_s, "log");
    QFile::remove(out);
    qputenv("PATH", bin.toUtf8() + ':' + searchPath);
    processes.openText(u"C:\\Client\\Bin\\Log 1.txt"_s);
    QTRY_COMPARE(contentOf(out), '[' + bin.toUtf8() + "Log 1.txt]");
    qputenv("PATH", "/nowhere");
    const QString noViewer = errorOf([&] { processes.openText(u"C:\\Client\\Bin\\Log 1.txt"_s); });
    qputenv("PATH", searchPath);
    QVERIFY2(noViewer.startsWith(u"53: "_s) && noViewer.contains(u"xdg-open"_s),
             qPrintable(noViewer));
}

void tst_ports::programsThatAreWaitedForDoNotOutliveTheWait()
{
    using Kind = ProcessEnd::Kind;
    PortableFiles files(m_folder->path());
    PortableProcesses processes(files);
    QDir(m_folder->path()).mkpath(u"c/Bin"_s);
    writeFile(m_folder->filePath(u"c/Bin/run"_s),
              "#!/bin/sh\n"
              "ulimit -v\n"
              "case $1 in\n"
              "exit) printf 'noise\\nlast words\\n' >&2; printf '\\nunended'; exit 7;;\n"
              "crash) kill -SEGV $$;;\n"
              "endless) exec cat /dev/zero;;\n"
              "polite) trap 'echo tidy; exit' TERM; echo ready; while :; do sleep 0.05; done;;\n"
              "*) exec sleep 1000;;\n"
              "esac\n");
    QStringList lines;
    std::stop_source stop;
    ProcessLimits limits{.memory = 1'024'000'000};
    const auto listen = [&](const QByteArray &line) {
        lines.append(QString::fromUtf8(line));
        if (line == "ready")
            stop.request_stop();
    };
    const auto run = [&](const QString &program, const QString &way) {
        lines.clear();
        return std::async(
                   std::launch::async, // on a worker, as windows do
                   [&] { return processes.run(program, {way}, limits, stop.get_token(), listen); })
            .get();
    };

    const QString program = u"C:\\Bin\\run.exe"_s;
    const ProcessEnd end = run(program, u"exit"_s);
    QVERIFY(end.kind == Kind::Exited && end.status == 7 && end.lastWords == "last words"_L1);
#if defined(__SANITIZE_ADDRESS__)
    const QString limit = u"unlimited"_s;
#else
    const QString limit = u"1000000"_s;
#endif
    QCOMPARE(lines, QStringList({limit, u""_s, u"unended"_s}));
    QCOMPARE(run(program, u"crash"_s).kind, Kind::Crashed);
    QCOMPARE(run(program, u"endless"_s).kind, Kind::Silent);
    QCOMPARE(run(program, u"polite"_s).kind, Kind::Stopped);
    QCOMPARE(lines, QStringList({limit, u"ready"_s, u"tidy"_s}));
    stop = std::stop_source();
    limits.silence = std::chrono::seconds(1);
    QCOMPARE(run(program, u"sleep"_s).kind, Kind::Silent);
    QCOMPARE(::waitpid(-1, nullptr, WNOHANG), -1); // there is no child any more

    const QString beside = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    limits = {};
    QCOMPARE(run(beside, u"-functions"_s).kind, Kind::Exited);
    QVERIFY(lines.contains(u"settingsSurvive()"_s));
    QVERIFY(errorOf([&] { run(u"no_such_program"_s, {}); }).startsWith(u"53: "_s));
    QFile::setPermissions(m_folder->filePath(u"c/Bin/run"_s), QFile::ReadOwner);
    QVERIFY(errorOf([&] { run(program, {}); }).startsWith(u"70: "_s));
}

void tst_ports::windowsOfOtherProgramsAreFound()
{
    const SingleInstance own("tst_ports");
    SocketWindows windows(own);
    WindowHelperComponent helper(windows);
    const QString className = u"WindowsForms10.Window.8.app3"_s;
    QVERIFY(!windows.exists(className, u"Nairurda"_s));
    Companion manager(className, u"Nairurda"_s);
    Companion viewer(u"Viewer"_s, u"Quovane"_s);
    QCOMPARE(manager.line(), u"ready"_s);
    QCOMPARE(viewer.line(), u"ready"_s);
    QVERIFY(windows.exists(className, u"Nairurda"_s));
    QVERIFY(!windows.exists(u"Other"_s, u"Nairurda"_s));
    QVERIFY(helper.checkWindowExists(u"Quovane"_s));

    helper.setDynCall(u"Content"_s);
    helper.setDynCallInfo(u"QVT@qv\nä"_s);
    helper.maximizeWindow(u"Quovane"_s);
    QCOMPARE(viewer.line(), u"raise Content|QVT@qv"_s);
    QCOMPARE(viewer.line(), u"ä"_s);
    windows.close(className, u"Nairurda"_s);
    QCOMPARE(manager.line(), u"close"_s);
    QVERIFY(manager.ends());
    QVERIFY(!windows.exists(className, u"Nairurda"_s));

    viewer.kill(); // leaves its socket behind
    QDir sockets(m_folder->filePath(u"quovane"_s), u"*.window"_s, QDir::Name, QDir::System);
    QCOMPARE(sockets.entryList().size(), 1);
    QVERIFY(!helper.checkWindowExists(u"Quovane"_s));
    sockets.refresh();
    QCOMPARE(sockets.entryList().size(), 0);
}

void tst_ports::aSecondStartRaisesTheFirst()
{
    const QString caption = u"Quovane Developer Pro"_s;
    const QString front = m_folder->filePath(u"quovane-developer"_s);
    const QString started = m_folder->filePath(u"started"_s);
    QVERIFY(QFile::copy(QStringLiteral(FRONT_PROGRAM), front));
    writeFile(m_folder->filePath(u"qvdeveloper"_s),
              "#!/bin/sh\nprintf '[%s]' \"$@\" > '" + started.toUtf8() + "'\n");
    {
        Companion first(u"QVDeveloper"_s, caption);
        QCOMPARE(first.line(), u"ready"_s);
        Companion second(u"QVDeveloper"_s, caption);
        QCOMPARE(first.line(), u"raise |"_s);
        QCOMPARE(second.line(), u"second"_s);
        QVERIFY(second.ends());
        QCOMPARE(QProcess::execute(front, {}), 0);
        QCOMPARE(first.line(), u"raise |"_s);
        QVERIFY(!QFile::exists(started));
    }
    // The first one was killed: the system has released its lock.
    QCOMPARE(QProcess::execute(front, {u"IBL"_s, u"two words"_s}), 0);
    QCOMPARE(contentOf(started), "[IBL][two words]");
    Companion third(u"QVDeveloper"_s, caption);
    QCOMPARE(third.line(), u"ready"_s);

    QVERIFY(QFile::remove(m_folder->filePath(u"qvdeveloper"_s)));
    third.kill();
    QCOMPARE(QProcess::execute(front, {}), 1);
}

void tst_ports::theProgramEndsAfterItsLastJobs()
{
    const QString file = m_folder->filePath(u"jobs"_s);
    const auto note = [&](const char *name) { writeFile(file, contentOf(file) + name); };
    const ChildProcess program([&]() -> int {
        ProgramEndNow ending;
        ending.before([&] { note("first "); });
        const int taken = ending.before([&] { note("taken "); });
        ending.before([] { throw 1; });
        ending.before([&] {
            note("last ");
            ending.endNow();
        });
        ending.forget(taken);
        ending.endNow();
    });
    QCOMPARE(program.exitStatus(), 1);
    QCOMPARE(contentOf(file), "last first ");
}

void tst_ports::localNumbersAndDates()
{
    PortableLocale german(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(german.shortDate(QDate(2024, 3, 9)), u"09.03.2024"_s);
    QCOMPARE(german.fromShortDate(u"09.03.2024"_s), QDate(2024, 3, 9));
    QVERIFY(german.isNumeric(u"300"_s) && german.isNumeric(u"1,5"_s) && german.isNumeric(u"-2"_s));
    for (const QString &text : {u""_s, u"R300"_s, u"inf"_s, u"nan"_s, u"3 0 0"_s})
        QVERIFY2(!german.isNumeric(text), qPrintable(text));
}

void tst_ports::boxesShowPlainText()
{
    const auto whenShown = [](const std::function<void(QMessageBox &)> &act) {
        QTimer::singleShot(0, qApp, [act] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(box);
            act(*box);
        });
    };
    MessageBoxes messages;
    whenShown([](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), u"QV Developer"_s);
        QCOMPARE(box.text(), u"<b>x</b> & y"_s);
        QCOMPARE(box.informativeText(), u"<img src=x>"_s);
        const auto labels = box.findChildren<QLabel *>();
        for (const QLabel *label : labels)
            QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    QCOMPARE(messages.show({.text = u"<b>x</b> & y"_s,
                            .buttons = Buttons::YesNo,
                            .title = u"QV Developer"_s,
                            .details = u"<img src=x>"_s}),
             Answer::No);
    whenShown([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
    QCOMPARE(messages.show({.text = u"?"_s, .buttons = Buttons::YesNo}), Answer::Yes);
    whenShown([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
    QCOMPARE(messages.show({.text = u"?"_s, .buttons = Buttons::YesNo, .enterRefuses = true}),
             Answer::No);
    whenShown([](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), u"Quovane Developer Pro"_s);
        QCOMPARE(box.icon(), QMessageBox::Critical);
        box.close();
    });
    QCOMPARE(messages.show({.text = u"!"_s, .icon = MessageIcon::Critical}), Answer::Ok);

    const Choice choice{.text = u"Which?"_s,
                        .answers = {u"List again"_s, u"Start new"_s, u"Stop"_s}};
    whenShown([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QCOMPARE(messages.choose(choice), 2);
    whenShown([](QMessageBox &box) { box.buttons().value(1)->click(); });
    QCOMPARE(messages.choose(choice), 1);
}

void tst_ports::dialogFilters()
{
    QCOMPARE(dialogFilter(u"MDB files(*.mdb)|*.mdb"_s), u"MDB files (*.mdb)"_s);
    QCOMPARE(dialogFilter(u"Pages|*.htm;*.html|All files|*"_s),
             u"Pages (*.htm *.html);;All files (*)"_s);
}

QV_FORM_TEST_MAIN(tst_ports)
#include "tst_ports.moc"
