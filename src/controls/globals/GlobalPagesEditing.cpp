// What an author does with the list of global pages.

#include "controls/globals/GlobalPageCommands.h"
#include "controls/globals/GlobalPageDialog.h"
#include "controls/globals/GlobalPages.h"
#include "controls/links/MovePages.h"
#include "controls/pages/PagePane.h"
#include "controls/parts/Handler.h"
#include "controls/parts/NameDialog.h"
#include "controls/parts/Tables.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "resources/Counted.h"
#include "startup/PageText.h"
#include "startup/Session.h"
#include "tools/html/HtmlScan.h"

#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int usesShown = 15;

QString listed(const QStringList &uses)
{
    QString text = uses.first(qMin<qsizetype>(usesShown, uses.size())).join(u'\n');
    if (uses.size() > usesShown)
        text += GlobalPages::tr("\nand %1 more").arg(uses.size() - usesShown);
    return text;
}

} // namespace

void GlobalPages::askNew()
{
    const auto run = [this](const GlobalPage &page) {
        return perform(page, tr("The global page %1 was added.").arg(page.title),
                       [&] { GlobalPageCommands(m_session).create(page); });
    };
    auto *dialog = new GlobalPageDialog(
        m_session, {.title = tr("New global page"), .button = tr("&Create page"), .page = {}}, run,
        this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void GlobalPages::askFile()
{
    const QString file = m_session.program().fileDialogs.openFile(
        tr("Add global page"), {}, u"HTML files(*.htm;*.html)|*.htm;*.html"_s);
    if (!file.isEmpty())
        takeFiles({file});
}

// One dialog after the other: each knows what the one before it did. Cancel leaves out the rest.
void GlobalPages::takeFiles(const QStringList &files)
{
    if (files.isEmpty())
        return;
    const QString file = files.first();
    const Program &program = m_session.program();
    const PageText text = decodePage(program.files.readFile(file), program.session.projectLanguage);
    const HtmlFacts facts = scanHtml(text.text);
    GlobalPage page;
    page.title = facts.title.isEmpty() ? facts.firstHeading : facts.title;
    page.file = lastComponent(file);
    const auto run = [this, file](const GlobalPage &wanted) {
        return perform(wanted, tr("The global page %1 was added.").arg(wanted.title),
                       [&] { GlobalPageCommands(m_session).take(file, wanted); });
    };
    auto *dialog = new GlobalPageDialog(
        m_session, {.title = tr("Add global page"), .button = tr("&Add page"), .page = page}, run,
        this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, rest = files.sliced(1)] {
        handled(m_session.program(), [&] { takeFiles(rest); });
    });
    dialog->open();
}

void GlobalPages::askChange()
{
    const auto page = chosen();
    if (!page)
        return;
    const auto run = [this](const GlobalPage &now) {
        return perform(now, tr("The global page %1 was changed.").arg(now.title),
                       [&] { GlobalPageCommands(m_session).change(now); });
    };
    auto *dialog = new GlobalPageDialog(
        m_session, {.title = tr("Title and type"), .button = tr("&Change"), .page = *page}, run,
        this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void GlobalPages::askRenameFile()
{
    const auto page = chosen();
    if (!page || !m_pane->save())
        return;
    const TocBook book = globalBook();
    const auto problem = [this, book, old = page->file](const QString &file) {
        return MovePages(m_session, this).problemOfFile(book, old, file);
    };
    const auto run = [this, book, page = *page](const QString &file) {
        return perform(page, tr("The file of %1 is now called %2.").arg(page.title, file), [&] {
            // Cancelled or the same name: nothing was done, nothing is said.
            if (!MovePages(m_session, window()).renameFile(book, page.id, file))
                throw Unwinding{Unwinding::Reason::Stopped};
        });
    };
    auto *dialog =
        new NameDialog({tr("Rename file"), tr("&File of the page:"), tr("&Rename"), page->file},
                       problem, run, this);
    dialog->open();
}

void GlobalPages::askDelete()
{
    const auto page = chosen();
    if (!page || !m_pane->save())
        return;
    const QStringList uses = GlobalPageCommands(m_session).usesOf(*page);
    QString question =
        tr("Delete the global page \"%1\" and its file %2?").arg(page->title, page->file);
    if (!uses.isEmpty())
        question += u"\n\n"_s
                    + tr("Links to it will lead nowhere in %1:")
                          .arg(counted(uses.size(), tr("1 page"), tr("%1 pages")))
                    + u'\n' + listed(uses);
    const Choice choice{question, {tr("Delete Page"), tr("Cancel")}};
    if (m_session.program().messages.choose(choice) != 0)
        return;
    perform(*page, tr("The global page %1 was deleted.").arg(page->title),
            [&] { GlobalPageCommands(m_session).remove(*page); });
}

void GlobalPages::move(int places)
{
    const auto page = chosen();
    const int place = page ? rowOf(page->id) + places : -1;
    if (place >= 0)
        moveTo(*page, place);
}

void GlobalPages::moveTo(const GlobalPage &page, int place)
{
    if (place >= tvwGlobalPages->topLevelItemCount())
        return;
    perform(page, tr("The global page %1 was moved.").arg(page.title),
            [&] { GlobalPageCommands(m_session).moveTo(page, place); });
}

void GlobalPages::unlock()
{
    const auto page = chosen();
    if (!page)
        return;
    GlobalPageCommands(m_session).unlock(*page);
    Q_EMIT m_session.done(tr("The global page %1 was unlocked.").arg(page->title));
}

void GlobalPages::obey(const ProjectRequest &request)
{
    using Action = ProjectRequest::Action;
    const bool isList = request.node.kind == Node::Kind::Globals;
    handled(m_session.program(), [&] {
        if (request.action == Action::New) {
            askNew();
        } else if (request.action == Action::AddFiles) {
            takeFiles(request.files);
        } else if (!isList && rowOf(request.node.page) >= 0) {
            chooseId(request.node.page);
            obeyForChosen(request);
        }
    });
}

void GlobalPages::obeyForChosen(const ProjectRequest &request)
{
    using Action = ProjectRequest::Action;
    switch (request.action) {
    case Action::Rename:
        return askChange();
    case Action::RenameFile:
        return askRenameFile();
    case Action::Delete:
        return askDelete();
    case Action::MoveUp:
        return move(-1);
    case Action::MoveDown:
        return move(1);
    case Action::MoveTo:
        if (const auto page = chosen())
            moveTo(*page, request.place);
        return;
    case Action::Unlock:
        return unlock();
    default: // books and quick navigation know the others
        return;
    }
}

/// Does it, keeps the page chosen and says so. False when it was not done.
bool GlobalPages::perform(const GlobalPage &page, const QString &done,
                          const std::function<void()> &body)
{
    if (!wasDone(m_session.program(), body))
        return false;
    if (page.id.isEmpty()) // a new one, which stands behind the others
        chooseId(m_session.globalPages().last().id);
    Q_EMIT changed(page.title, page.type);
    Q_EMIT m_session.done(done);
    return true;
}
