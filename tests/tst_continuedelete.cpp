#include "dialogs/ReopenDialog.h"
#include "dialogs/frmContinueDeleteProject.h"
#include "platform/TreeWalker.h"
#include "projectfiles/OpenMark.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto tag = ": QV_Developer::frmContinueDeleteProject-"_L1;

/// Plant, unfinished; Depot, released; Harbour, unfinished; and a name that leads elsewhere.
struct ListedProjects : TestProgram
{
    ProjectCatalogue catalogue{session, files};

    ListedProjects()
    {
        for (const QString &name : {u"Plant"_s, u"Depot"_s, u"..\\Docs"_s, u"Harbour"_s}) {
            session.projectId = name + u'1';
            session.projectLanguage = u"DEU"_s;
            list(name);
            if (!isSafeName(name))
                continue;
            files.makeFolder(u"S:\\Docs\\"_s + name);
            TableOfContents(session, files).CreateQVTOCFile(toc(name));
        }
        catalogue.release(u"Depot"_s, {2026, 1, 2});
        session.projectName = session.projectLanguage = u"before"_s;
    }
    static QString toc(const QString &name) { return u"S:\\Docs\\"_s + name + u"\\QV_Toc.xml"_s; }
    QStringList listed() { return catalogue.GetProdQVSelection_All().sliced(2); }
};

/// The window open in front of a world, with what an author does in it.
struct Window
{
    TestProgram &world;
    QPointer<frmContinueDeleteProject> form = new frmContinueDeleteProject(world.program);
    QComboBox *toContinue = control<QComboBox>(form, "cboSelPrjtoContinue");
    QComboBox *toDelete = control<QComboBox>(form, "cboProjectDelete");

    explicit Window(TestProgram &program)
        : world(program)
    {
        form->show();
    }
    ~Window() { delete form; }

    /// Presses the button and returns what was said.
    QStringList press(const char *button, const QList<Answer> &answers = {})
    {
        world.messages.answers = answers;
        click(form, button);
        return std::exchange(world.messages.shown, {});
    }
    bool shows(const char *name) const { return control<QWidget>(form, name)->isVisible(); }
};

} // namespace

class tst_continuedelete final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reopensAndContinues();
    void deletesOneAfterTheOther();
    void saysWhatIsWrongAndAsksBeforeItCloses();
};

void tst_continuedelete::reopensAndContinues()
{
    ListedProjects world;
    Window window(world);
    QCOMPARE(textsIn(window.toContinue->model()),
             QStringList({u"Plant"_s, u"..\\Docs"_s, u"Harbour"_s}));
    QCOMPARE(window.toContinue->currentText(), "Plant"_L1);
    QVERIFY(window.shows("fraContinueProject") && !window.shows("fraDeleteProject"));

    QTimer::singleShot(0, this, [] {
        auto *const dialog = openWindow<ReopenDialog>();
        auto *const sets = control<QTreeWidget>(dialog, "lstReleased");
        auto *const ok = dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
        QCOMPARE(sets->topLevelItem(0)->text(1), "2026-01-02"_L1);
        QVERIFY(sets->topLevelItemCount() == 1 && !ok->isEnabled());
        QTest::keyClicks(sets, u"dep"_s);
        QTest::keyClick(dialog, ok->isEnabled() ? Qt::Key_Return : Qt::Key_Escape);
    });
    QCOMPARE(window.press("cmdReopen"), QStringList());
    QCOMPARE(window.toContinue->currentText(), "Depot"_L1);
    QVERIFY(window.form->focusWidget() == window.toContinue && !window.shows("cmdReopen"));

    const QByteArray whole = world.bytes(world.toc(u"Harbour"_s));
    world.put(world.toc(u"Harbour"_s), "<QV_Toc>");
    deleteTree(world.files, u"S:\\Docs\\Plant"_s);
    for (const QString &culprit : {u"Plant"_s, u"..\\Docs"_s, u"Harbour\\QV_Toc.xml"_s}) {
        window.toContinue->setCurrentText(culprit.section(u"\\QV"_s, 0, 0));
        const QString said = window.press("cmdSelPrjtoContinue").value(0);
        QVERIFY2(said.contains(culprit), qPrintable(said));
        QVERIFY(said.endsWith(tag + "cmdSelPrjtoContinue"_L1));
    }
    QCOMPARE(world.session.projectName + world.session.projectLanguage, "beforebefore"_L1);
    QCOMPARE(window.press("cmdCancelContinueDelPrj", {Answer::No}).size(), 1); // asks as ever

    world.put(world.toc(u"Harbour"_s), whole);
    QCOMPARE(window.press("cmdSelPrjtoContinue"), QStringList()); // nobody is asked
    QCOMPARE(world.currentProject.handed, QStringList{u"Harbour|DEU"_s});
    QCOMPARE(world.session.projectName + world.session.projectId, "HarbourHarbour1"_L1);
    QCOMPARE(world.navigator.shown, QList{Form::MainUI});
    QTRY_VERIFY(!window.form);
}

void tst_continuedelete::deletesOneAfterTheOther()
{
    ListedProjects world;
    Window window(world);
    window.form->showHalf(frmContinueDeleteProject::Half::Delete);
    const QStringList questions{u"Are you sure you want to delete?"_s,
                                u"Do you want to delete files associated with Project ?"_s};
    QCOMPARE(window.press("cmdContinueDelPrj", {Answer::Cancel}), questions.first(1));
    QCOMPARE(world.messages.boxes.first().details, "Project: Plant"_L1);
    QCOMPARE(world.listed(), textsIn(window.toDelete->model()));

    QCOMPARE(window.press("cmdContinueDelPrj", {Answer::Ok, Answer::No}), questions);
    QVERIFY2(world.messages.boxes.last().enterRefuses, "a stray key deletes no files");
    QVERIFY(world.files.fileExists(world.toc(u"Plant"_s)));
    {
        const OpenMark elsewhere(world.files, u"S:\\Docs\\Depot\\"_s);
        const QStringList said =
            window.press("cmdContinueDelPrj", {Answer::Ok, Answer::Yes, Answer::No});
        QCOMPARE(said.first(2), questions);
        QVERIFY2(said.constLast().contains("\"Depot\" is open in another QV Developer"_L1),
                 qPrintable(said.constLast()));
        QVERIFY(world.messages.boxes.last().enterRefuses);
        QVERIFY(world.files.fileExists(world.toc(u"Depot"_s)));
        QVERIFY(world.listed().contains("Depot"_L1)
                && window.toDelete->currentText() == "Depot"_L1);
    }
    QCOMPARE(window.press("cmdContinueDelPrj", {Answer::Ok, Answer::Yes}), questions);
    QVERIFY(!world.files.exists(u"S:\\Docs\\Depot"_s));
    QCOMPARE(world.listed(), QStringList({u"..\\Docs"_s, u"Harbour"_s}));

    // A name that leads elsewhere can only be taken out of the list.
    const QStringList said = window.press("cmdContinueDelPrj", {Answer::Ok, Answer::Yes});
    QVERIFY(said.size() == 3 && said.last().endsWith(tag + "cmdContinueDelPrj"_L1));
    QVERIFY(world.files.fileExists(world.toc(u"Harbour"_s)));
    QCOMPARE(window.toDelete->currentText(), "..\\Docs"_L1);
    window.press("cmdContinueDelPrj", {Answer::Ok, Answer::No});
    window.press("cmdContinueDelPrj", {Answer::Ok, Answer::Yes});
    QCOMPARE(world.listed() + textsIn(window.toDelete->model()), QStringList());
    QCOMPARE(window.toDelete->placeholderText(), "Harbour"_L1); // still to be read
    QCOMPARE(window.press("cmdContinueDelPrj").value(0), "Select a project to continue"_L1);

    window.form->showHalf(frmContinueDeleteProject::Half::Continue); // filled on load
    QVERIFY(!window.shows("cmdReopen"));
    QVERIFY(window.press("cmdSelPrjtoContinue").value(0).contains("\"Plant\" is no longer"_L1));
}

void tst_continuedelete::saysWhatIsWrongAndAsksBeforeItCloses()
{
    TestProgram world;
    world.processes.missing = true;
    Window window(world); // there is no list yet
    QCOMPARE(window.press("cmdSelPrjtoContinue").value(0), "Select a project to continue"_L1);
    const QString failed = window.press("cmdHelpContinueDelPrj").value(0);
    QVERIFY(failed.startsWith("Error 53 ("_L1) && failed.contains(") in procedure cmdHelpC"_L1));
    world.messages.answers = {Answer::No};
    window.form->close();
    QVERIFY(window.form->isVisible());
    QCOMPARE(world.messages.shown, QStringList{u"Do you want to close Quovane Developer?"_s});
    click(window.form, "cmdBack");
    QVERIFY(world.session.gbBackToLauncher && world.navigator.loadforms == 1);
    QTRY_VERIFY(!window.form);

    world.put(cataloguePath(world.server), "<QV_Selection_List>");
    const Window broken(world);
    QCOMPARE(world.messages.shown.size(), 3);
    QVERIFY(world.messages.shown[1].endsWith(tag + "GetProdQVSelection_Incomplete"_L1));
    QVERIFY(world.messages.shown[2].endsWith(tag + "UpdateDlExProjectInfo"_L1));
}

QV_FORM_TEST_MAIN(tst_continuedelete)
#include "tst_continuedelete.moc"
