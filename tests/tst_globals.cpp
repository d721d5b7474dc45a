#include "support/Audit.h"
#include "support/GlobalsDesk.h"

using namespace Qt::StringLiterals;

class tst_globals final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesTheId();
    void changesCategories();
    void offersToUnlock();
    void editsGlobalPages();
    void renamesTheFileOfAGlobalPage();
    void keepsListsMadeByHand();
    void changesQuickNavCategories();
    void dialogsServeKeysAndReaders();
};

void tst_globals::changesTheId()
{
    NamedProject sample;
    Desk desk(sample);
    auto *id = control<QLineEdit>(&desk.tab, "txtProjectId");
    QCOMPARE(id->text(), u"PLT"_s);
    id->setText(u"P"_s);
    QTest::keyClicks(id, u"*"_s);
    QVERIFY(control<QLabel>(&desk.tab, "txtProjectIdSays")->text().contains(u'*'));
    QTest::keyClick(id, Qt::Key_Backspace);
    QTest::keyClicks(id, u"7"_s);
    QTest::keyClick(id, Qt::Key_Return);
    QCOMPARE(ProjectCatalogue(sample.world.session, sample.world.files).entries().at(1).id,
             u"P7"_s);
    QTRY_VERIFY(control<QLabel>(&desk.tab, "lblSize")->text().contains(u" files"_s));
}

void tst_globals::changesCategories()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    TocBook valve = sample.addBook(u"Valve"_s, u"VALVE"_s);
    TableOfContents toc(world.session, world.files);
    TocBook now = sample.pump;
    now.categories = {u"Safety"_s, u"Repair"_s, u"Stray"_s};
    toc.changeBook(sample.name, sample.pump, now);
    now = valve;
    now.categories = {u"safety"_s};
    toc.changeBook(sample.name, valve, now);
    CategoryFile(world.files)
        .write(sample.folder + ProjectFile::categories, {{{}, u"Safety"_s, u"What harms"_s}});
    Desk desk(sample);
    const QByteArray before = world.bytes(sample.folder + ProjectFile::toc);
    QCOMPARE(desk.rows("tvwCategories"), (QStringList{u"Safety"_s, u"Stray"_s}));
    QCOMPARE(desk.table("tvwCategories")->topLevelItem(0)->text(2), u"2"_s);
    QCOMPARE(desk.table("tvwDefaultCategories")->topLevelItem(1)->text(2), u"1"_s);

    // Renamed everywhere, once in each book, in one step that can be undone.
    desk.choose("tvwCategories", u"Safety"_s);
    QDialog *dialog = desk.press("cmdChangeCategory");
    for (const auto *wrong : {"a, b", "STRAY", " "}) {
        Desk::enter(dialog, "txtCategoryName", QString::fromLatin1(wrong));
        QVERIFY2(!isEnabled(dialog, "cmdCategoryOk"), wrong);
    }
    Desk::enter(dialog, "txtCategoryName", u"Repair"_s);
    QSignalSpy refresh(&desk.tab, &ctlGlobalsTab::OnRefreshTree);
    click(dialog, "cmdCategoryOk");
    QCOMPARE(refresh.size(), 1);
    QCOMPARE(desk.toc().books.at(0).categories, (QStringList{u"Repair"_s, u"Stray"_s}));
    QCOMPARE(desk.toc().books.at(1).categories, QStringList{u"Repair"_s});
    QCOMPARE(desk.session.history().undoName(), u"Rename category Safety to Repair"_s);
    desk.session.undo();
    QCOMPARE(world.bytes(sample.folder + ProjectFile::toc), before);
    QCOMPARE(desk.rows("tvwCategories").first(), u"Safety"_s);

    // Joined: its books carry the other one; deleted: the author says what they get.
    QSignalSpy deletion(&desk.tab, &ctlGlobalsTab::OnCategoryDeletion);
    desk.choose("tvwCategories", u"Stray"_s);
    dialog = desk.press("cmdJoinCategory");
    control<QComboBox>(dialog, "cboInto")->setCurrentText(u"Safety"_s);
    click(dialog, "cmdReplaceOk");
    QCOMPARE(desk.toc().books.at(0).categories, (QStringList{u"Safety"_s, u"Repair"_s}));
    desk.choose("tvwCategories", u"Safety"_s);
    dialog = desk.press("cmdDeleteCategory");
    QCOMPARE(control<QListWidget>(dialog, "lstCategoryBooks")->count(), 2);
    click(dialog, "cmdReplaceOk");
    QCOMPARE(desk.toc().books.at(0).categories, QStringList{u"Repair"_s});
    QCOMPARE(desk.rows("tvwCategories"), QStringList());
    QCOMPARE(deletion.size(), 2);

    QSignalSpy addition(&desk.tab, &ctlGlobalsTab::OnCategoryAddition);
    desk.choose("tvwDefaultCategories", u"Repair"_s);
    QVERIFY(!desk.press("cmdAdoptCategory"));
    QCOMPARE(addition.size(), 1);
    QVERIFY(!isEnabled(&desk.tab, "cmdAdoptCategory"));
    QCOMPARE(CategoryFile(world.files).read(sample.folder + ProjectFile::categories).last().name,
             u"Repair"_s);
    QCOMPARE(world.messages.shown, QStringList());
}

// A command names the locked files that it writes, and does nothing until they may be unlocked.
void tst_globals::offersToUnlock()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    TocBook now = sample.pump;
    now.categories = {u"Safety"_s};
    TableOfContents(world.session, world.files).changeBook(sample.name, sample.pump, now);
    CategoryFile(world.files)
        .write(sample.folder + ProjectFile::categories, {{{}, u"Safety"_s, {}}});
    const QString toc = sample.folder + ProjectFile::toc;
    const QString own = sample.folder + ProjectFile::categories;
    Desk desk(sample);
    const auto rename = [&](int answer) {
        for (const QString &path : {toc, own})
            world.files.setAttributes(path, ReadOnlyFile);
        world.messages.choices = {answer};
        desk.choose("tvwCategories", u"Safety"_s);
        QDialog *dialog = desk.press("cmdChangeCategory");
        Desk::enter(dialog, "txtCategoryName", u"Care"_s);
        click(dialog, "cmdCategoryOk");
        const bool done = !dialog->isVisible();
        dialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return done;
    };
    QVERIFY(!rename(1));
    QCOMPARE(world.messages.shown,
             QStringList{
                 u"These files are locked against changes:\nQV_BookCategories.xml\nQV_Toc.xml"_s});
    QCOMPARE(desk.toc().books.first().categories, QStringList{u"Safety"_s});
    QVERIFY(world.files.status(toc).readOnly && world.files.status(own).readOnly);
    QVERIFY(!desk.session.history().canUndo());

    QVERIFY(rename(0));
    QCOMPARE(desk.toc().books.first().categories, QStringList{u"Care"_s});
    QCOMPARE(desk.rows("tvwCategories"), QStringList{u"Care"_s});
    desk.session.undo();
    QCOMPARE(desk.rows("tvwCategories"), QStringList{u"Safety"_s});
    QCOMPARE(world.messages.unexpected, QStringList());
}

void tst_globals::editsGlobalPages()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    world.session.projectLanguage = u"JPN"_s;
    const QString place = sample.folder + u"_Global Information\\"_s;
    Desk desk(sample);
    QSignalSpy changed(&desk.tab, &ctlGlobalsTab::OnAddGlobalPage);

    // A new page has a title in the project's language; of each type there is one.
    QDialog *dialog = desk.press("cmdNewGlobalPage");
    QCOMPARE(control<QLineEdit>(dialog, "txtPageFile")->text(), u"Book_Welcome.htm"_s);
    for (const QString &wrong :
         {QString(300, u'\u9875') + u".htm"_s, u"..\\a.htm"_s, u"CON.htm"_s}) {
        Desk::enter(dialog, "txtPageFile", wrong);
        QVERIFY2(!isEnabled(dialog, "cmdPageOk"), qPrintable(wrong));
    }
    Desk::enter(dialog, "txtPageFile", u"x.htm"_s); // said in two lines, for which there is room
    const auto *says = control<QLabel>(dialog, "txtPageFileSays");
    QTRY_VERIFY(says->height() >= says->heightForWidth(says->width()));
    Desk::enter(dialog, "txtPageFile", u"Book_Welcome.htm"_s);
    click(dialog, "cmdPageOk");
    QCOMPARE(changed.last(), (QVariantList{u"ようこそ"_s, u"Welcome"_s, true}));
    QVERIFY(QString::fromUtf8(world.bytes(place + u"Book_Welcome.htm"_s))
                .contains(u"<html lang=\"ja\">"_s));
    QCOMPARE(control<QTextBrowser>(&desk.tab, "globalPreview")->toPlainText().trimmed(),
             u"ようこそ"_s);

    // A page from elsewhere comes with its pictures and its bytes.
    world.put(u"S:\\in\\legal.html"_s, "<title>Law</title><img src=\"p/x.png\">\xFC");
    world.put(u"S:\\in\\p\\x.png"_s, "picture");
    world.dialogs.paths = {u"S:\\in\\legal.html"_s};
    dialog = desk.press("cmdAddGlobalFile");
    auto *types = control<QComboBox>(dialog, "cboPageType");
    QVERIFY(!(types->model()->flags(types->model()->index(0, 0)) & Qt::ItemIsEnabled));
    QCOMPARE(types->currentData().toString(), u"Legal"_s);
    click(dialog, "cmdPageOk");
    QCOMPARE(world.bytes(place + u"Book_legal.html"_s), world.bytes(u"S:\\in\\legal.html"_s));
    QCOMPARE(world.bytes(place + u"p\\x.png"_s), "picture");

    // Order and title by keys.
    QTreeWidget *table = desk.table("tvwGlobalPages");
    desk.choose("tvwGlobalPages", u"Law"_s);
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(desk.rows("tvwGlobalPages"), (QStringList{u"Law"_s, u"ようこそ"_s}));
    QVERIFY(!isEnabled(&desk.tab, "cmdGlobalPageUp"));
    QTest::keyClick(table, Qt::Key_F2);
    dialog = openWindow<QDialog>();
    Desk::enter(dialog, "txtPageTitle", u"Notices"_s);
    click(dialog, "cmdPageOk");
    QCOMPARE(desk.pages().first().title, u"Notices"_s);

    // The file keeps its links when it gets another name.
    world.put(sample.folder + u"Book_PUMP\\a.htm"_s,
              "<a href=\"../_Global%20Information/Book_legal.html\">law</a>");
    world.messages.choices = {0};
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Delete);
    QVERIFY2(world.messages.shown.last().contains(u"Book_PUMP\\a.htm"_s),
             qPrintable(world.messages.shown.last()));
    QVERIFY(!world.files.exists(place + u"Book_legal.html"_s));
    QCOMPARE(desk.rows("tvwGlobalPages"), QStringList{u"ようこそ"_s});
    desk.session.undo();
    QCOMPARE(world.bytes(place + u"Book_legal.html"_s), world.bytes(u"S:\\in\\legal.html"_s));
    QCOMPARE(desk.rows("tvwGlobalPages"), (QStringList{u"Notices"_s, u"ようこそ"_s}));

    // A lock is shown in the list, and gone from it once the page is unlocked.
    world.files.setAttributes(place + u"Book_legal.html"_s, ReadOnlyFile);
    desk.session.reread();
    const auto problem = [&] { return table->topLevelItem(0)->text(3); };
    QCOMPARE(problem(), u"locked"_s);
    desk.choose("tvwGlobalPages", u"Notices"_s);
    control<QTabWidget>(&desk.tab, "tabGlobalPage")->setCurrentIndex(1);
    world.messages.choices = {0};
    click(control<QWidget>(&desk.tab, "globalSource"), "cmdUnlockPage");
    QCOMPARE(problem(), QString());

    // The tree asks for the same.
    ProjectRequest request{
        ProjectRequest::Action::MoveDown,
        {.kind = ProjectRequest::Node::Kind::GlobalPage, .page = desk.pages().first().id}};
    Q_EMIT desk.session.requested(request);
    QCOMPARE(desk.rows("tvwGlobalPages"), (QStringList{u"ようこそ"_s, u"Notices"_s}));
    QCOMPARE(world.messages.unexpected, QStringList());
}

void tst_globals::renamesTheFileOfAGlobalPage()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    sample.addGlobals();
    const QString place = sample.folder + u"_Global Information\\"_s;
    const QString linking = sample.folder + u"Book_PUMP\\a.htm"_s;
    const QByteArray before = "<a href=\"../_Global%20Information/welcome.htm#x\">w</a>\xDC";
    world.put(linking, before);
    Desk desk(sample);
    QSignalSpy changed(&desk.tab, &ctlGlobalsTab::OnAddGlobalPage);
    desk.choose("tvwGlobalPages", u"welcome"_s);
    const auto rename = [&](const char *answer) {
        QDialog *dialog = desk.press("cmdRenameGlobalFile");
        Desk::enter(dialog, "txtNewName", u"legal"_s);
        const bool refused = !isEnabled(dialog, "cmdAcceptName"); // no page by its ending
        Desk::enter(dialog, "txtNewName", u"Book_\u6B22.htm"_s);
        answerDialog(answer);
        click(dialog, "cmdAcceptName");
        dialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return refused;
    };
    QVERIFY(rename("cmdCancel"));
    QVERIFY(world.files.exists(place + u"welcome.htm"_s));
    QCOMPARE(changed.size(), 0);

    QVERIFY(rename("cmdChangeLinks"));
    QCOMPARE(desk.pages().first().file, u"Book_\u6B22.htm"_s);
    QCOMPARE(world.bytes(linking),
             "<a href=\"../_Global%20Information/Book_%E6%AC%A2.htm#x\">w</a>\xDC");
    QCOMPARE(changed.size(), 1);
    QCOMPARE(control<QTextBrowser>(&desk.tab, "globalPreview")->toPlainText(), u"Welcome"_s);
    desk.session.undo();
    QCOMPARE(world.bytes(linking), before);
    QVERIFY(world.files.exists(place + u"welcome.htm"_s));
    QCOMPARE(world.messages.shown, QStringList());
}

// Entries without an id, with one twice, and with what is not known here.
void tst_globals::keepsListsMadeByHand()
{
    NamedProject sample;
    TestProgram &world = sample.world;
    const QString book = sample.folder + u"_Global Information\\Book_Global.xml"_s;
    const auto page = [](const QString &attributes, const QString &title) {
        return u"<Page %1 Type='Free'><Page_Title>%2</Page_Title><Page_File>%2.htm</Page_File>"
               "<Extra>%2</Extra></Page>"_s.arg(attributes, title);
    };
    world.put(
        book,
        xmlFile(u"<Book_Master><Book/><Global_Pages>%1%2%3%4</Global_Pages></Book_Master>"_s.arg(
            page(u"ID='G0001'"_s, u"a"_s), page(u"ID='G0001'"_s, u"b"_s), page({}, u"c"_s),
            page({}, u"d"_s))));
    Desk desk(sample);
    desk.choose("tvwGlobalPages", u"b"_s);
    QDialog *dialog = desk.press("cmdChangeGlobalPage");
    Desk::enter(dialog, "txtPageTitle", u"beta"_s);
    click(dialog, "cmdPageOk");
    desk.choose("tvwGlobalPages", u"d"_s);
    click(&desk.tab, "cmdGlobalPageUp");
    QCOMPARE(desk.rows("tvwGlobalPages"), (QStringList{u"a"_s, u"beta"_s, u"d"_s, u"c"_s}));
    for (const auto *kept : {"a", "b", "c", "d"})
        QVERIFY2(
            xmlText(world.bytes(book)).contains(u"<Extra>%1</Extra>"_s.arg(QLatin1String(kept))),
            kept);

    // What cannot be read is said, and never written over.
    const QByteArray torn = world.bytes(book).chopped(40);
    world.put(book, torn);
    desk.session.reread();
    QVERIFY(control<QLabel>(&desk.tab, "lblPagesProblem")->text().contains(u"Book_Global.xml"_s));
    dialog = desk.press("cmdNewGlobalPage");
    if (dialog != nullptr)
        click(dialog, "cmdPageOk");
    QVERIFY(world.messages.shown.last().contains(u"Book_Global.xml"_s));
    QCOMPARE(world.bytes(book), torn);
    QVERIFY(!world.files.exists(sample.folder + u"_Global Information\\Book_Welcome.htm"_s));
}

void tst_globals::changesQuickNavCategories()
{
    NamedProject sample;
    sample.addQuickNav(u"PUMP"_s);
    Desk desk(sample);
    QSignalSpy changed(&desk.tab, &ctlGlobalsTab::OnAdditionQNCategory);
    QDialog *dialog = desk.press("cmdAddQuickNavCategory");
    Desk::enter(dialog, "txtCategoryName", u"the category"_s);
    click(dialog, "cmdCategoryOk");
    QCOMPARE(changed.last(), QVariantList{true});
    QCOMPARE(desk.table("tvwQuickNavCategories")->topLevelItem(0)->text(1), u"1"_s);

    // Two of one name in a topic could not be told apart.
    const QByteArray before = sample.world.bytes(sample.folder + ProjectFile::quickNav);
    sample.world.put(
        sample.folder + ProjectFile::quickNav,
        utf16Bytes(xmlText(before).replace(
            u"</Topic>"_s,
            u"<Category ID='9'><Category_Name>steps</Category_Name></Category></Topic>"_s)));
    desk.session.reread();
    dialog = desk.press("cmdRenameQuickNavCategory");
    Desk::enter(dialog, "txtCategoryName", u"Steps"_s);
    click(dialog, "cmdCategoryOk");
    QVERIFY(sample.world.messages.shown.last().contains(u"Rename or delete one of them"_s));
    sample.world.put(sample.folder + ProjectFile::quickNav, before);
    desk.session.reread();
    click(dialog, "cmdCategoryOk");
    const auto inTree = [&] {
        return desk.session.quickNav()
            .views.at(0)
            .children.at(0)
            .children.at(0)
            .children.at(0)
            .name;
    };
    QCOMPARE(inTree(), u"Steps"_s);
    QCOMPARE(desk.rows("tvwQuickNavCategories"), QStringList{u"Steps"_s});

    sample.world.messages.answers = {Answer::Yes};
    desk.table("tvwQuickNavCategories")->setFocus();
    QTest::keyClick(desk.table("tvwQuickNavCategories"), Qt::Key_Delete);
    QCOMPARE(desk.rows("tvwQuickNavCategories"), QStringList());
    desk.session.undo();
    desk.session.undo();
    QCOMPARE(desk.rows("tvwQuickNavCategories"), QStringList{u"the category"_s});
    QCOMPARE(inTree(), u"The category"_s);
    QCOMPARE(changed.size(), 3);
}

void tst_globals::dialogsServeKeysAndReaders()
{
    audit::startReading();
    NamedProject sample;
    sample.addGlobals();
    sample.addQuickNav(u"PUMP"_s);
    TocBook now = sample.pump;
    now.categories = {u"Safety"_s};
    TableOfContents(sample.world.session, sample.world.files)
        .changeBook(sample.name, sample.pump, now);
    Desk desk(sample);
    desk.choose("tvwGlobalPages", u"welcome"_s);
    desk.choose("tvwCategories", u"Safety"_s);
    for (const auto *button :
         {"cmdRenameProject", "cmdNewGlobalPage", "cmdChangeGlobalPage", "cmdRenameGlobalFile",
          "cmdAddCategory", "cmdJoinCategory", "cmdDeleteCategory", "cmdAddQuickNavCategory"}) {
        const std::unique_ptr<QDialog> dialog(desk.press(button));
        QVERIFY2(dialog, button);
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        const QStringList found = audit::findingsIn(dialog.get());
        QVERIFY2(found.isEmpty(), qPrintable(QLatin1StringView(button) + found.join(u'\n')));
    }
}

QV_FORM_TEST_MAIN(tst_globals)
#include "tst_globals.moc"
