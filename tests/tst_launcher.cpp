#include "dialogs/CompanionPrograms.h"
#include "dialogs/SampleInstallation.h"
#include "dialogs/frmSelPrjType.h"
#include "platform/Paths.h"
#include "platform/native/NativePlatform.h"
#include "startup/StartUp.h"
#include "startup/frmOrvantisVRXSplashScreen.h"
#include "support/FormDriver.h"
#include "support/System.h"
#include "support/TestProgram.h"

using namespace Qt::StringLiterals;

class tst_launcher final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheChoicesAfterTheSplash();
    void asksOnlyWhenTheUserLeaves();
    void comesBackWithoutASplash();
    void hasNothingToChooseWhenLoadingFails();
    void asksForTheServerOnTheFirstRun();
    void putsTheProgramsIntoTheSample();
    void quitsOnTheFirstRun();
    void startsAsTheArgumentsSay();

private:
    static QString splashFlag(const TestProgram &world)
    {
        return world.registry.values.value(
            MemoryRegistry::place(Hive::CurrentUser, RegistryKey::splash, u"SplashScreen"_s));
    }
};

void tst_launcher::showsTheChoicesAfterTheSplash()
{
    TestProgram world;
    world.session.serverPath.clear();
    world.session.clientBinPath.clear();
    world.files.makeFolder(u"S:\\Docs\\Plant.qvdel1"_s); // a deletion that was cut short
    frmSelPrjType form(world.program);
    QVERIFY(!control<QGroupBox>(&form, "fraSelProjectType")->isVisibleTo(&form));
    form.show();

    QCOMPARE(form.windowTitle(), "Quovane Developer Pro"_L1);
    QCOMPARE(world.session.serverPath, "S:\\"_L1);
    QCOMPARE(world.session.clientBinPath, "C:\\Client\\Bin\\"_L1);
    QVERIFY(control<QGroupBox>(&form, "fraSelProjectType")->isVisible());
    QCOMPARE(control<QGroupBox>(&form, "fraSelProjectType")->title(), "Select Project Type"_L1);
    QCOMPARE(control<QPushButton>(&form, "cmdAddNewProject")->text(), "&Add "_L1);
    QCOMPARE(control<QPushButton>(&form, "cmdDeleteProject")->text(), "&Delete "_L1);
    QCOMPARE(form.focusWidget()->objectName(), "cmdAddNewProject"_L1);
    QVERIFY2(world.clock.elapsed >= std::chrono::seconds(5), "the splash stayed for its time");
    QVERIFY(!openWindow<frmOrvantisVRXSplashScreen>());
    QCOMPARE(splashFlag(world), "0"_L1);
    QCOMPARE(world.files.entries(u"S:\\Docs"_s).size(), 0);
}

void tst_launcher::asksOnlyWhenTheUserLeaves()
{
    TestProgram world;
    world.session.gbFromMainWindow = true;
    QPointer form = new frmSelPrjType(world.program);
    form->show();
    QVERIFY2(world.clock.elapsed == std::chrono::seconds(0), "no splash from the main window");
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form));

    world.messages.answers = {Answer::No, Answer::No, Answer::No};
    world.messages.echo = [&](const QStringList &) { // the close box behind the question
        QCloseEvent again;
        QCoreApplication::sendEvent(form->windowHandle(), &again);
    };
    click(form, "cmdCancel");
    QVERIFY(form->windowHandle()->handle() != nullptr);
    world.messages.echo = nullptr;
    QTest::keyClick(form, Qt::Key_Escape);
    form->close();
    QVERIFY(form && form->isVisible());
    QCOMPARE(world.messages.shown.size(), 3);
    QCOMPARE(world.messages.boxes.last().text, "Do you want to close Quovane Developer?"_L1);
    QCOMPARE(world.messages.boxes.last().title, "QV Developer"_L1);
    QVERIFY(world.messages.boxes.last().buttons == Buttons::YesNo);

    QTest::keyClick(form, Qt::Key_F1);
    QCOMPARE(world.processes.started, QStringList{u"C:\\Client\\Bin\\StartApp.exe|"
                                                  "QVT@qv@qvdev_ug@qv@What do you want to do"_s});

    QTest::keyClick(form, Qt::Key_A, Qt::AltModifier);
    QTRY_COMPARE(world.navigator.shown, QList{Form::SelPrjTypetoAdd});
    QTRY_VERIFY(!form);
    QCOMPARE(world.messages.shown.size(), 3);
}

void tst_launcher::comesBackWithoutASplash()
{
    TestProgram world;
    world.session.gbBackToLauncher = true;
    QPointer form = new frmSelPrjType(world.program);
    form->loadform();
    QVERIFY(form->isVisible() && splashFlag(world).isEmpty());
    QVERIFY(!world.session.gbBackToLauncher);

    world.windows.open = {u"Nairurda"_s};
    world.messages.answers = {Answer::Yes, Answer::Yes};
    click(form, "cmdCancel");
    QCOMPARE(world.messages.shown,
             (QStringList{u"Do you want to close Quovane Developer?"_s,
                          u"Index Manager is still running, do you want to close it?"_s}));
    QCOMPARE(world.windows.closed.size(), 1);
    QTRY_VERIFY(!form);
}

void tst_launcher::hasNothingToChooseWhenLoadingFails()
{
    TestProgram unwritable;
    QVERIFY(QDir(unwritable.native(u"Docs"_s)).removeRecursively());
    TestProgram notInstalled;
    notInstalled.registry.values.remove(
        MemoryRegistry::place(Hive::LocalMachine, RegistryKey::product, u"Client"_s));
    for (TestProgram *const world : {&unwritable, &notInstalled}) {
        frmSelPrjType form(world->program);
        form.show();
        QCOMPARE(world->messages.shown.size(), 1);
        QVERIFY(!control<QGroupBox>(&form, "fraSelProjectType")->isVisible());
    }
    QCOMPARE(unwritable.messages.shown.first(),
             "Your QV server S:\\  does not have sufficient privileges to do the operation."_L1);
    QVERIFY(unwritable.messages.boxes.first().details.contains("S:\\Docs\\TempFile.txt"_L1));
    QCOMPARE(unwritable.ending.ended, 1);
    QVERIFY(notInstalled.messages.shown.first().contains("Client"_L1));
    QVERIFY(
        notInstalled.messages.shown.first().endsWith(": QV_Developer::frmSelPrjType-Form_Load"_L1));
}

void tst_launcher::asksForTheServerOnTheFirstRun()
{
    TestProgram world;
    world.registry.values.clear();
    world.files.makeFolder(u"C:\\Try"_s);
    world.dialogs.paths = {u"\\\\server\\qv"_s, u"C:\\Try"_s, u"C:\\Try"_s};
    world.messages.choices = {0, 0, 1};
    frmSelPrjType form(world.program);
    form.show();

    const QStringList said = world.messages.shown;
    QCOMPARE(said.size(), 5); // three questions, two refusals
    QVERIFY(said[1].contains("\\\\server\\qv is a network name"_L1));
    QVERIFY(said[1].contains("drive letter"_L1));
    QVERIFY(said[3].contains("no folder Docs in C:\\Try"_L1));

    QCOMPARE(world.session.serverPath, "C:\\Try\\Quovane Sample\\Server\\"_L1);
    QCOMPARE(world.session.clientBinPath, "C:\\Try\\Quovane Sample\\Client\\Bin\\"_L1);
    QVERIFY(world.files.folderExists(u"C:\\Try\\Quovane Sample\\Client\\Bin"_s));
    const QString docs = u"C:\\Try\\Quovane Sample\\Server\\Docs\\"_s;
    QVERIFY(CategoryFile(world.files).read(docs + u"QV_DefaultCategories.xml"_s).size() > 3);
    QVERIFY(world.files.fileExists(docs + u"QV_Selection.xml"_s));
    QVERIFY(ProjectCatalogue(world.session, world.files).entries().isEmpty());
    QVERIFY(control<QGroupBox>(&form, "fraSelProjectType")->isVisible());

    world.registry.values.clear(); // a second sample never touches the first
    world.dialogs.paths = {u"C:\\Try"_s, u"C:\\Try\\Quovane Sample\\Server"_s};
    world.messages.choices = {1, 0};
    frmSelPrjType again(world.program);
    again.show();
    QVERIFY(world.messages.shown[6].contains("already something at C:\\Try\\Quovane Sample"_L1));
    QCOMPARE(world.session.serverPath, "C:\\Try\\Quovane Sample\\Server\\"_L1);
}

// Each of the programs here says where it was started from.
void tst_launcher::putsTheProgramsIntoTheSample()
{
    TestProgram world;
    const QByteArray script = "#!/bin/sh\necho $0 $1\n";
    for (const char *const file : {"bin/StartApp", "bin/qvdev", "bin/unknown", "bin/Qt6Core.dll",
                                   "bin/platforms/qwindows.dll", "bin/imageformats/qjpeg.dll"})
        world.put(u"X:\\"_s + QString::fromLatin1(file).replace(u'/', u'\\'), script);
    world.put(u"X:\\share\\quovane\\help\\index.html"_s, "<title>Start</title>");
    world.put(u"X:\\share\\quovane\\help\\pictures\\a.png"_s, "a");
    const QString programs = world.folder.filePath(u"x/bin"_s);
    for (const QString &name : {u"/StartApp"_s, u"/qvdev"_s})
        QVERIFY(QFile::setPermissions(programs + name, QFile::Permissions(0x7555)));

    createSampleInstallation(world.program, u"C:\\Sample"_s, programs);
    const QString bin = u"C:\\Sample\\Client\\Bin\\"_s;
    QCOMPARE(world.below(withoutBackslash(bin)),
             (QStringList{u"Qt6Core.dll"_s, u"StartApp"_s, u"help"_s, u"imageformats"_s,
                          u"platforms"_s, u"qvdev"_s}));
    QVERIFY(world.files.fileExists(bin + u"platforms\\qwindows.dll"_s)
            && world.files.fileExists(bin + u"imageformats\\qjpeg.dll"_s));
    QCOMPARE(world.bytes(bin + u"help\\pictures\\a.png"_s), "a");
    const auto start = [&](const QString &argument) {
        QByteArray said;
        NativeProcesses(world.files)
            .run(bin + u"StartApp.exe"_s, {argument}, {}, {},
                 [&](const QByteArray &line) { said += line; });
        return said;
    };
    if constexpr (here::runsScripts)
        QCOMPARE(start(u"x"_s), world.files.nativePath(bin + u"StartApp"_s).toUtf8() + " x");

    // A build later only what changed is copied again.
    world.put(bin + u"help\\index.html"_s, "<title>Old and longer</title>");
    world.files.removeFile(u"X:\\bin\\StartApp"_s, true);
    world.put(u"X:\\bin\\StartApp"_s, script + "echo new\n");
    QVERIFY(QFile::setPermissions(programs + u"/StartApp"_s, QFile::Permissions(0x7755)));
    const QString kept = world.files.nativePath(bin + u"qvdev"_s);
    const QDateTime statusChange = QFileInfo(kept).metadataChangeTime();
    copyCompanions(world.files, programs, bin);
    if constexpr (here::runsScripts)
        QVERIFY(start(u"y"_s).endsWith("StartApp ynew"));
    QVERIFY(world.bytes(bin + u"StartApp"_s).endsWith("echo new\n"));
    QCOMPARE(world.bytes(bin + u"help\\index.html"_s), "<title>Start</title>");
    QCOMPARE(QFileInfo(kept).metadataChangeTime(), statusChange);
}

void tst_launcher::quitsOnTheFirstRun()
{
    TestProgram world;
    world.registry.values.clear();
    world.messages.choices = {2};
    QPointer form = new frmSelPrjType(world.program);
    form->show();
    QVERIFY(!form->isVisible());
    QTRY_VERIFY(!form);
    QCOMPARE(world.messages.shown.size(), 1);
    QVERIFY(world.registry.values.isEmpty());
}

void tst_launcher::startsAsTheArgumentsSay()
{
    TestProgram world;
    QVERIFY(Main(world.program, {u"IBL"_s, u"more"_s}));
    QCOMPARE(world.navigator.shown, QList{Form::SelPrjType});

    QVERIFY(!Main(world.program, {u"iBl"_s}));
    QCOMPARE(world.processes.started, QStringList{u"C:\\Client\\Bin\\QV_IBLIndexMgr.exe"_s});
    world.processes.missing = true;
    QVERIFY(!Main(world.program, {u"ibl"_s}));
    QCOMPARE(world.messages.shown,
             QStringList{u"Error(53) in procedure mnuIndexManager_Click of Form frmMainUI"_s});
    QVERIFY(world.messages.boxes.first().details.contains("QV_IBLIndexMgr.exe"_L1));

    world.windows.running = true;
    QVERIFY(!Main(world.program, {}));
    QCOMPARE(world.windows.raised, QStringList{u"Quovane Developer Pro||"_s});
    QCOMPARE(world.navigator.shown.size(), 1);
}

QV_FORM_TEST_MAIN(tst_launcher)
#include "tst_launcher.moc"
