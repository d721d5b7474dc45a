#include "dialogs/frmRankBookSet.h"
#include "support/FormDriver.h"
#include "support/TestProgram.h"
#include "support/XmlFile.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto catalogueFile = "S:\\Docs\\QV_Selection.xml"_L1;
constexpr auto invalid = "Invalid Rank. Default Rank value(500) is applied"_L1;
constexpr auto updated = "Ranks are updated successfully"_L1;
constexpr auto saved = "Book sets with their corresponding Ranks are saved successfully"_L1;

/// A catalogue of "<name>=<rank>" entries.
QByteArray catalogueOf(const QStringList &sets)
{
    QString entries;
    for (const QString &set : sets)
        entries += u"\t\t<QV>\n\t\t\t<QV_Name Rank=\"%1\">%2</QV_Name>\n\t\t</QV>\n"_s.arg(
            set.section(u'=', 1), set.section(u'=', 0, 0));
    return xmlFile(u"<QV_Selection_List>\n\t<QVs>\n"_s + entries
                   + u"\t</QVs>\n</QV_Selection_List>\n"_s);
}

/// The dialog in front of a catalogue, with what an author does in it.
struct Ranking
{
    TestProgram world;
    QPointer<frmRankBookSet> form = new frmRankBookSet(world.program);
    QTableView *grid = control<QTableView>(form, "fgdBooksetRank");
    QLineEdit *editor = control<QLineEdit>(form, "txtRankHolder");

    explicit Ranking(const QStringList &sets)
    {
        world.put(catalogueFile, catalogueOf(sets));
        form->show();
        form->activateWindow();
        [[maybe_unused]] const bool active = QTest::qWaitForWindowActive(form);
    }
    ~Ranking() { delete form; }

    QModelIndex cell(int row, int column = 1) const { return grid->model()->index(row, column); }
    QString text(int row, int column = 1) const { return cell(row, column).data().toString(); }
    QRect place(int row, int column = 1) const { return grid->visualRect(cell(row, column)); }
    void press(int row, int column = 1) const
    {
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, place(row, column).center());
    }
    void key(Qt::Key key) const { QTest::keyClick(form->focusWidget(), key); }
    void edit(int row, const QString &typed) const
    {
        press(row);
        editor->clear();
        QTest::keyClicks(editor, typed);
    }
    QStringList takeMessages() { return std::exchange(world.messages.shown, {}); }
};

} // namespace

class tst_rank final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheCatalogue();
    void validatesRanks();
    void storesWhatIsApplied();
    void commitsBeforeTheGridMoves();
    void worksByKeyboardAlone();
    void storesNothingWithoutApply();
    void saysWhatIsWrongWithTheCatalogue();
};

void tst_rank::showsTheCatalogue()
{
    const Ranking dialog({u"My Favorites"_s, u"Plant=7"_s, u"Pump #2"_s});
    QCOMPARE(dialog.grid->model()->rowCount(), 2);
    QCOMPARE(dialog.text(0, 0) + dialog.text(0), "Plant 7"_L1);
    QCOMPARE(dialog.text(1, 0) + dialog.text(1), "Pump #2 500"_L1);
    QCOMPARE(dialog.cell(1).data(Qt::AccessibleTextRole).toString(), "Pump #2, rank 500"_L1);

    dialog.press(1);
    QHeaderView *const header = dialog.grid->horizontalHeader();
    const auto *const nameBox = control<QLineEdit>(dialog.form, "txtBooksetName");
    const auto *const rankBox = control<QLineEdit>(dialog.form, "txtBooksetRank");
    QCOMPARE(nameBox->text() + rankBox->text(), "BookSet Name Rank "_L1);
    dialog.form->resize(1000, 500);
    const int name = header->sectionSize(0);
    const int rest = dialog.grid->viewport()->width() - name;
    QVERIFY(name > 700);
    QTRY_COMPARE(nameBox->geometry(), QRect(0, 0, name, header->height()));
    QCOMPARE(rankBox->geometry(), QRect(name, 0, rest, header->height()));
    QCOMPARE(dialog.editor->geometry(), dialog.place(1));
}

void tst_rank::validatesRanks()
{
    TestProgram world;
    frmRankBookSet form(world.program);
    for (const QString &typed : {u"1"_s, u"32000"_s, u" 0042"_s, QString()})
        QCOMPARE(form.ValidateRank(typed), QString(typed).replace(" 0042"_L1, "42"_L1));
    const QStringList wrong{u"0"_s,     u"-3"_s,  u"32001"_s, u"1.5"_s, u"1,000"_s,
                            u"500.0"_s, u"12a"_s, u" "_s,     u"nan"_s, u"99999999999"_s};
    for (const QString &typed : wrong)
        QVERIFY2(form.ValidateRank(typed) == "500"_L1, qPrintable(typed));
    QCOMPARE(world.messages.shown, QStringList(wrong.size(), invalid));
}

void tst_rank::storesWhatIsApplied()
{
    Ranking dialog({u"My Favorites"_s, u"A#B=1"_s, u"Plant=2"_s, u"Old=1.5"_s, u"Pump=4"_s});
    dialog.edit(0, u" 0032000"_s);
    dialog.key(Qt::Key_Return);
    QVERIFY(!dialog.editor->isVisible() && dialog.text(0) == "32000"_L1);
    dialog.edit(1, {});       // left empty
    dialog.edit(3, u"abc"_s); // still open when the ranks are applied
    click(dialog.form, "cmdApply");
    QCOMPARE(dialog.takeMessages(), QStringList({invalid, updated})); // no word about Old
    QCOMPARE(dialog.world.bytes(catalogueFile),
             catalogueOf(
                 {u"My Favorites"_s, u"A#B=32000"_s, u"Plant=500"_s, u"Old=500"_s, u"Pump=500"_s}));
    QCOMPARE(dialog.text(1), "500"_L1); // filled again
}

void tst_rank::commitsBeforeTheGridMoves()
{
    Ranking dialog(QStringList(20000, u"Set=1000"_s));
    dialog.edit(2, u"no"_s);
    dialog.press(4, 0); // a name is no cell to edit
    QVERIFY(!dialog.editor->isVisible() && dialog.text(2) == "500"_L1);
    QCOMPARE(dialog.takeMessages(), QStringList(invalid));

    QScrollBar *const bar = dialog.grid->verticalScrollBar();
    dialog.edit(2, u"12"_s);
    bar->setValue(bar->maximum());
    QVERIFY(!dialog.editor->isVisible() && dialog.text(2) == "12"_L1);
    bar->setValue(0);
    dialog.edit(2, u"13"_s); // the current cell is opened again
    dialog.key(Qt::Key_PageDown);
    QVERIFY(bar->value() > 0 && dialog.text(2) == "13"_L1);
    QCOMPARE(dialog.editor->geometry(), dialog.place(dialog.grid->currentIndex().row()));
}

void tst_rank::worksByKeyboardAlone()
{
    Ranking dialog({u"A=1"_s, u"B=2"_s, u"C=3"_s});
    for (const Qt::Key key : {Qt::Key_7, Qt::Key_Down, Qt::Key_8, Qt::Key_Up, Qt::Key_Return})
        dialog.key(key);
    QCOMPARE(dialog.text(0) + dialog.text(1), "78"_L1); // a digit replaces the rank
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_5, Qt::Key_Escape})
        dialog.key(key); // drops the edit; the dialog stays without a question
    dialog.key(Qt::Key_F2);
    QCOMPARE(dialog.editor->text() + dialog.editor->accessibleName(), "3Rank of C"_L1);
    dialog.key(Qt::Key_9);
    dialog.key(Qt::Key_Tab); // Back
    dialog.key(Qt::Key_Tab);
    QCOMPARE(dialog.text(2), "9"_L1);
    dialog.key(Qt::Key_Return); // on Apply
    QCOMPARE(dialog.world.bytes(catalogueFile), catalogueOf({u"A=7"_s, u"B=8"_s, u"C=9"_s}));
}

void tst_rank::storesNothingWithoutApply()
{
    for (const bool ok : {true, false}) {
        Ranking dialog({u"Plant=2"_s});
        dialog.world.messages.answers = {Answer::No};
        dialog.key(Qt::Key_Escape);
        QVERIFY(dialog.form->isVisible());
        QCOMPARE(dialog.takeMessages(), QStringList(u"Do you want to close Quovane Developer?"_s));

        dialog.edit(0, u"9"_s);
        dialog.key(Qt::Key_Return);
        dialog.edit(0, u"x"_s);
        click(dialog.form, ok ? "cmdOK" : "cmdBack");
        QCOMPARE(dialog.takeMessages(), ok ? QStringList(saved) : QStringList());
        QVERIFY(dialog.world.session.gbBackToLauncher && dialog.world.navigator.loadforms == 1);
        QTRY_VERIFY(!dialog.form);
        QCOMPARE(dialog.world.bytes(catalogueFile), catalogueOf({u"Plant=2"_s}));
    }
}

void tst_rank::saysWhatIsWrongWithTheCatalogue()
{
    Ranking dialog({u"Plant=2"_s});
    dialog.world.put(catalogueFile, "no catalogue");
    dialog.edit(0, u"9"_s);
    click(dialog.form, "cmdApply");
    const QString said = dialog.takeMessages().join(u'|');
    QVERIFY2(said.startsWith("Error "_L1) && said.contains("QV_Selection.xml"_L1),
             qPrintable(said));
    QVERIFY(said.endsWith(") in procedure cmdApply_Click of Form frmRankBookSet"_L1));
    QCOMPARE(dialog.text(0), "9"_L1); // not lost: Apply can be tried again
    QCOMPARE(dialog.world.bytes(catalogueFile), "no catalogue");

    dialog.world.files.removeFile(catalogueFile);
    click(dialog.form, "cmdApply");
    QVERIFY(dialog.takeMessages().join(u'|').startsWith("Error 53 ("_L1));
    QCOMPARE(dialog.text(0), "9"_L1);
}

QV_FORM_TEST_MAIN(tst_rank)
#include "tst_rank.moc"
