// The companion programs: the windows of two of them, and what the third one prints.
#include "Tour.h"

#include "components/Components.h"
#include "indexmanager/frmIndexManager.h"
#include "platform/Paths.h"
#include "startup/HelpFolder.h"
#include "viewer/ViewerWindow.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTabWidget>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

QTreeWidgetItem *unfolded(QTreeWidgetItem *parent, const QString &title)
{
    for (int i = 0; i < parent->childCount(); ++i) {
        if (parent->child(i)->text(0) == title) {
            parent->child(i)->setExpanded(true);
            return parent->child(i);
        }
    }
    tourFails(u"The help viewer has no entry "_s + title);
}

void press(QWidget *widget, Qt::Key key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
    settle(300);
}

void choose(QComboBox *box, const QString &text)
{
    const int index = box->findText(text, Qt::MatchStartsWith);
    if (index < 0)
        tourFails(text + u" cannot be chosen"_s);
    box->setCurrentIndex(index);
    settle(300);
}

/// As one types it in a shell.
QString typed(const QStringList &words)
{
    QString line = u"$ qvdev"_s;
    for (const QString &word : words)
        line += word.contains(u' ') ? u" \"%1\""_s.arg(word) : u' ' + word;
    return line;
}

} // namespace

void Tour::readInViewer(const QString &set, const QString &book, const QString &question)
{
    Session &session = m_world.session;
    const QString bin = m_world.files.nativePath(withoutBackslash(session.clientBinPath));
    ViewerWorld parts{session, m_world.files, m_world.parts.all.xmlCharacters,
                      HelpPages(m_world.files, findHelpFolder(m_world.files, {}, bin))};
    ViewerWindow viewer(parts);
    viewer.resize(900, 600);
    viewer.showTopic(u"QVT@qv@qvdev_ug@qv@Building a project"_s);
    viewer.show();
    settle(300);
    m_camera.take(&viewer, u"viewer-help"_s, u"The help viewer, asked for a topic"_s);

    auto *tree = child<QTreeWidget>(&viewer, "tvwContents");
    QTreeWidgetItem *ofSet = unfolded(tree->invisibleRootItem(), set);
    QTreeWidgetItem *ofBook = unfolded(unfolded(ofSet, u"Books"_s), book);
    tree->setCurrentItem(ofBook->child(0));
    press(tree, Qt::Key_Return);
    m_camera.take(&viewer, u"viewer-set"_s, u"A built set as its readers see it: "_s + set);

    child<QTabWidget>(&viewer, "tabParts")->setCurrentIndex(1);
    choose(child<QComboBox>(&viewer, "cboSet"), set);
    auto *search = child<QLineEdit>(&viewer, "txtSearch");
    type(search, question);
    press(search, Qt::Key_Return);
    if (child<QTreeWidget>(&viewer, "lstHits")->topLevelItemCount() == 0)
        tourFails(u"The help viewer found nothing"_s);
    m_camera.take(&viewer, u"viewer-search"_s, u"Searching it; what was found is marked"_s);
}

void Tour::manageIdentifiers()
{
    QPointer<QWidget> window = new frmIndexManager(m_world.program);
    window->resize(800, 500);
    window->show();
    settle(500);
    m_camera.take(window, u"index-identifiers"_s, u"The link identifiers of all sets"_s);

    auto *tabs = child<QTabWidget>(window, "tabPages");
    tabs->setCurrentIndex(1);
    choose(child<QComboBox>(tabs->currentWidget(), "cboSet"), u"Plant 300"_s);
    choose(child<QComboBox>(tabs->currentWidget(), "cboBook"), u"Debian-Fragen"_s);
    click(tabs->currentWidget(), "cmdFindLinks");
    settle(500);
    m_camera.take(window, u"index-who-links"_s, u"Who links to a book"_s);

    tabs->setCurrentIndex(2);
    settle(1000);
    m_camera.take(window, u"index-sets"_s, u"Sets whose link file is behind their pages"_s);

    tabs->setCurrentIndex(3);
    click(tabs->currentWidget(), "cmdFindMoved");
    settle(500);
    m_camera.take(window, u"index-repair"_s, u"Pages that moved, before links are repaired"_s);
    window->close();
    settle(200);
    delete window;
}

/// The program is the one that the sample installation got.
QString Tour::printedBy(const QList<QStringList> &commands)
{
    constexpr int refused = 1;
    QString text;
    for (const QStringList &words : commands) {
        text += typed(words) + u'\n';
        const ProcessEnd end = m_world.processes.run(
            m_world.session.clientBinPath + u"qvdev.exe"_s, words, {}, {},
            [&](const QByteArray &line) { text += QString::fromUtf8(line) + u'\n'; });
        if (end.kind != ProcessEnd::Kind::Exited || end.status == refused)
            tourFails(typed(words) + u": "_s + end.lastWords);
        text += u"(exit status %1)\n\n"_s.arg(end.status);
    }
    return text;
}

void Tour::workFromScripts()
{
    const QString set = u"Compressor"_s;
    m_camera.note(printedBy({{u"list"_s}, {u"report"_s, u"--bad"_s}}), u"qvdev-list"_s,
                  u"The command line: the projects, and links between them that lead nowhere"_s);
    m_camera.note(printedBy({{u"new"_s, set, u"--id"_s, u"C1"_s},
                             {u"import"_s, set, u"START"_s, m_ownPages.path(), u"--new-book"_s,
                              u"First steps"_s},
                             {u"who-links"_s, set, u"START"_s, u"start.html"_s}}),
                  u"qvdev-new"_s, u"A project made by a script"_s);
    m_camera.note(printedBy({{u"check"_s, set}}), u"qvdev-check"_s, u"Its quality checks"_s);
    m_camera.note(printedBy({{u"build"_s, set}, {u"pack"_s, set}}), u"qvdev-build"_s,
                  u"Built and packed"_s);
    if (m_world.files.exists(projectFolder(m_world.session.serverPath, u"Bottling Line"_s))) {
        m_camera.note(printedBy({{u"build"_s, u"Bottling Line"_s}}), u"qvdev-migrated"_s,
                      u"The migrated set is built, too"_s);
        readInViewer(u"Bottling Line"_s, u"Operator Guide"_s, u"fill"_s);
    }
}
