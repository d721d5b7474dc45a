#include "dialogs/MergeFindingsDialog.h"
#include "dialogs/ProjectCreation.h"
#include "dialogs/frmMergeProjects.h"
#include "support/FormDriver.h"
#include "support/SampleProject.h"

using namespace Qt::StringLiterals;

namespace {

/// The merge dialog open in front of three projects that all have a book Alpha.
struct Desk : TestProgram
{
    QPointer<frmMergeProjects> form;

    Desk()
    {
        for (const QString &name : {u"Plant"_s, u"Dock"_s, u"harbour"_s}) {
            ProjectCreation creation(program);
            creation.name(name, u"P01"_s, u"ENU"_s);
            (void)(creation.nameIsFree() && creation.addNew(name));
            ProjectFiles(*this, name).addBook(u"Alpha"_s, u"ALP"_s, {{u"start.htm"_s, "Start"}});
            ProjectCatalogue(session, files).release(name, QDate(2026, 1, 1));
        }
        open();
    }
    ~Desk() { delete form; }

    void open()
    {
        delete form;
        form = new frmMergeProjects(program);
        form->show();
    }
    void fill(int projects, const QString &name, const QString &id)
    {
        for (int row = 0; row < projects; ++row)
            list("lstAvaProjects")->item(row)->setSelected(true);
        click(form, "cmdAddMerge");
        control<QLineEdit>(form, "txtMergeProjName")->setText(name);
        control<QLineEdit>(form, "txtMergProjId")->setText(id);
    }
    QListWidget *list(const char *name) const { return control<QListWidget>(form, name); }
    QString names(const char *listName) const
    {
        return textsIn(list(listName)->model()).join(u' ');
    }
    QString focus() const { return form->focusWidget()->objectName(); }
};

} // namespace

class tst_mergedialog final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesProjectsByMouseAndKeys();
    void refusals();
    void mergesAndTellsWhatItChanged();
    void staysUntilTheAuthorLeaves();
};

void tst_mergedialog::movesProjectsByMouseAndKeys()
{
    Desk desk;
    QListWidget *const available = desk.list("lstAvaProjects");
    QListWidget *const chosen = desk.list("lstProjectsToMerge");
    QCOMPARE(desk.names("lstAvaProjects"), "Plant Dock harbour"_L1); // no favourites
    QVERIFY(!isEnabled(desk.form, "cmdAddMerge") && !isEnabled(desk.form, "cmdRemove"));

    available->item(2)->setSelected(true);
    available->item(0)->setSelected(true);
    click(desk.form, "cmdAddMerge");
    QVERIFY(isEnabled(desk.form, "cmdAddMerge") && !isEnabled(desk.form, "cmdRemove"));
    click(desk.form, "cmdAddMerge"); // the next one has been selected
    QCOMPARE(desk.names("lstProjectsToMerge"), "Plant harbour Dock"_L1);
    QVERIFY(!isEnabled(desk.form, "cmdAddMerge") && desk.focus() == "lstProjectsToMerge"_L1);

    QTest::keyClick(chosen, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(chosen, Qt::Key_Delete);
    QCOMPARE(desk.names("lstAvaProjects"), "Dock harbour Plant"_L1);
    QVERIFY(!isEnabled(desk.form, "cmdRemove") && !isEnabled(desk.form, "cmdAddMerge"));
    QTest::keyClicks(available, u"h"_s);
    QTest::keyClick(available, Qt::Key_Return);
    QCOMPARE(desk.names("lstProjectsToMerge"), "harbour"_L1);
    const QPoint first = chosen->visualItemRect(chosen->item(0)).center();
    QTest::mouseClick(chosen->viewport(), Qt::LeftButton, {}, first);
    QTest::mouseDClick(chosen->viewport(), Qt::LeftButton, {}, first);
    QCOMPARE(desk.names("lstAvaProjects"), "Dock harbour Plant"_L1);
}

void tst_mergedialog::refusals()
{
    struct Row
    {
        int projects;
        QString name, id, message, focus;
    };
    const QString lists = u"lstAvaProjects"_s, name = u"txtMergeProjName"_s,
                  id = u"txtMergProjId"_s;
    const QList<Row> rows{
        {1, {}, {}, u"Merging of projects can be done with two or more projects"_s, lists},
        {2, u"  "_s, {}, u"Please enter project name"_s, name},
        {2, u"a:b"_s, u" "_s, u"Please enter project id"_s, id},
        {2, u"a:b"_s, u"C"_s, u"Invalid Character : Found in project name"_s, name},
        {2, u"Coast"_s, u"C|1"_s, u"Invalid Character | Found in project id"_s, id},
        {2, u" HARBOUR "_s, u"C"_s, u"Project already exists"_s, name}};
    Desk desk;
    const QStringList before = desk.below(u"S:\\Docs"_s);
    for (const Row &row : rows) {
        desk.open();
        desk.fill(row.projects, row.name, row.id);
        click(desk.form, "cmdMergeContinue");
        QCOMPARE(desk.messages.boxes.size(), 1);
        QCOMPARE(desk.messages.boxes.first().title, "Quovane Developer Pro"_L1);
        QCOMPARE(desk.messages.boxes.takeFirst().text, row.message);
        QCOMPARE(desk.focus(), row.focus);
        QCOMPARE(desk.below(u"S:\\Docs"_s), before);
    }
}

void tst_mergedialog::mergesAndTellsWhatItChanged()
{
    Desk desk;
    desk.fill(2, u" Coast "_s, u" C01 "_s);
    QTest::keyClick(control<QWidget>(desk.form, "txtMergProjId"), Qt::Key_Return);
    QPointer list = desk.form->findChild<MergeFindingsDialog *>();
    QVERIFY2(list, qPrintable(desk.messages.shown.join(u'\n')));
    QVERIFY(list->isVisible() && list->isModal() && desk.navigator.shown.isEmpty());
    QVERIFY(control<QLabel>(list, "lblLog")->text().endsWith("S:\\Docs\\Coast\\Merge_Log.txt"_L1));

    auto *const table = control<QTableWidget>(list, "lstFindings");
    const QString what = titleOf(MergeFinding::Kind::BookRenamed);
    const QList<QTableWidgetItem *> renamed = table->findItems(what, Qt::MatchExactly);
    QCOMPARE(renamed.size(), 1);
    table->selectRow(renamed.first()->row());
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    const QString copied = QGuiApplication::clipboard()->text();
    QVERIFY(copied.startsWith(what + u"\tDock\tAlpha\tALP1\t"_s) && copied.count(u'\n') == 1);
    table->clearSelection();
    click(list, "cmdCopy");
    QCOMPARE(QGuiApplication::clipboard()->text().count(u'\n'), table->rowCount());

    click(list, "cmdClose");
    QCOMPARE(desk.navigator.shown, QList{Form::MainUI});
    QCOMPARE(desk.currentProject.handed.last(), "Coast|ENU"_L1);
    QCOMPARE(desk.messages.shown, QStringList());
    QTRY_VERIFY(!desk.form);
    const CatalogueEntry entry = ProjectCatalogue(desk.session, desk.files).entries().last();
    QCOMPARE(entry.name + u' ' + entry.id, "Coast C01"_L1);
    QCOMPARE(TableOfContents(desk.session, desk.files).read(u"Coast"_s).books.size(), 2);
}

void tst_mergedialog::staysUntilTheAuthorLeaves()
{
    Desk desk;
    const QString toc = u"S:\\Docs\\Dock\\QV_Toc.xml"_s;
    const QStringList before = desk.below(u"S:\\Docs"_s);
    desk.fill(2, u"Coast"_s, u"C01"_s);
    desk.ending.atOnce = true; // Stop is pressed at once
    click(desk.form, "cmdMergeContinue");
    QCOMPARE(desk.messages.shown, QStringList());

    desk.ending.atOnce = false;
    // The base, deeper than anything is copied.
    desk.put(u"S:\\Docs\\Plant"_s + u"\\d"_s.repeated(70) + u"\\x"_s, "x");
    click(desk.form, "cmdMergeContinue");
    QVERIFY(desk.messages.boxes.last().text.startsWith("at location S:\\Docs\\Coast\n"_L1));
    QCOMPARE(desk.ending.ended, 1);

    desk.put(toc, "<broken");
    click(desk.form, "cmdMergeContinue");
    const QString error = desk.messages.shown.takeLast();
    QVERIFY(error.startsWith("Error 75 ("_L1) && error.contains(toc));
    QVERIFY(error.endsWith(") in procedure cmdMergeContinue_Click of Form frmMergeProjects"_L1));
    QCOMPARE(desk.below(u"S:\\Docs"_s), before);
    QCOMPARE(desk.names("lstProjectsToMerge"), "Plant Dock"_L1);
    QVERIFY(desk.form->isVisible() && desk.navigator.shown.isEmpty());

    const QString old = u"S:\\Docs\\Coast\\Old\\a.htm"_s;
    desk.put(old, "old");
    desk.messages.choices = {2}; // Cancel
    click(desk.form, "cmdMergeContinue");
    QVERIFY(desk.messages.shown.last().contains("S:\\Docs\\Coast is already there"_L1));
    desk.messages.choices = {0}; // List It Again, which takes a project
    click(desk.form, "cmdMergeContinue");
    QVERIFY(desk.messages.shown.last().contains("Coast\\QV_Toc.xml"_L1));
    QVERIFY(desk.files.fileExists(old) && desk.form->isVisible());

    QTest::keyClick(desk.form, Qt::Key_Escape); // asks; no answer means No
    QCOMPARE(desk.messages.shown.last(), "Do you want to close Quovane Developer?"_L1);
    QCOMPARE(desk.messages.boxes.last().title, "QV Developer"_L1);
    desk.messages.shown.clear();
    click(desk.form, "cmdMergeBack");
    QVERIFY(desk.navigator.loadforms == 1 && desk.session.gbBackToLauncher);
    QTRY_VERIFY(!desk.form);
    QCOMPARE(desk.messages.shown, QStringList());
}

QV_FORM_TEST_MAIN(tst_mergedialog)
#include "tst_mergedialog.moc"
