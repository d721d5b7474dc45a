#include "controls/pages/FindInPages.h"

#include "controls/pages/HitDelegate.h"
#include "controls/pages/PageHitsModel.h"
#include "controls/pages/PageSearchRun.h"
#include "controls/parts/Handler.h"
#include "controls/session/LockedFiles.h"
#include "platform/Paths.h"
#include "startup/Session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace {

enum Scope { WholeProject, CurrentBook, GlobalPages };

QString quoted(const QString &text)
{
    constexpr qsizetype most = 30;
    return u'"' + (text.size() > most ? text.first(most) + u'\u2026' : text) + u'"';
}

} // namespace

FindInPages::FindInPages(ProjectSession &session, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_hits(new PageHitsModel(this))
    , m_text(new QLineEdit(this))
    , m_replacement(new QLineEdit(this))
    , m_problem(new QLabel(this))
    , m_count(new QLabel(this))
    , m_scope(new QComboBox(this))
    , m_matchCase(new QCheckBox(tr("Match &case"), this))
    , m_wholeWord(new QCheckBox(tr("Whole &word"), this))
    , m_isPattern(new QCheckBox(tr("Regular e&xpression"), this))
    , m_all(new QCheckBox(tr("&All hits"), this))
    , m_find(button("cmdFindAll", tr("F&ind all"), &FindInPages::find))
    , m_preview(button("cmdPreview", tr("&Preview replacing"), &FindInPages::preview))
    , m_replace(button("cmdReplaceChecked", tr("&Replace checked"), &FindInPages::replaceChecked))
    , m_stop(button("cmdStopSearch", tr("&Stop"), &FindInPages::stop))
    , m_table(new QTableView(this))
{
    setObjectName(u"dlgFindInPages"_s);
    setWindowTitle(tr("Find in all pages"));
    makeTable();
    layOut();
    for (QLineEdit *field : {m_text, m_replacement})
        connect(field, &QLineEdit::textChanged, this, &FindInPages::showState);
    for (QCheckBox *box : {m_matchCase, m_wholeWord, m_isPattern})
        connect(box, &QCheckBox::toggled, this, &FindInPages::showState);
    connect(m_text, &QLineEdit::returnPressed, m_find, &QPushButton::click);
    connect(m_replacement, &QLineEdit::returnPressed, m_preview, &QPushButton::click);
    connect(m_hits, &PageHitsModel::checksChanged, this, &FindInPages::showState);
    connect(m_all, &QCheckBox::clicked, this,
            [this] { m_hits->checkAll(m_all->checkState() != Qt::Unchecked); });
    connect(&m_session, &ProjectSession::wasReset, this, [this] {
        m_run.reset();
        m_running = m_complete = false;
        m_hits->start(false);
        showState();
    });
    showState();
}

FindInPages::~FindInPages() = default;

QPushButton *FindInPages::button(const char *name, const QString &text, void (FindInPages::*slot)())
{
    auto *made = new QPushButton(text, this);
    made->setObjectName(QLatin1StringView(name));
    connect(made, &QPushButton::clicked, this, slot);
    return made;
}

void FindInPages::makeTable()
{
    m_table->setObjectName(u"lstHits"_s);
    m_table->setAccessibleName(tr("Places where the text was found"));
    m_table->setModel(m_hits);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setTabKeyNavigation(false);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    for (const int column : {PageHitsModel::Text, PageHitsModel::After})
        m_table->setItemDelegateForColumn(column, new HitDelegate(m_table));
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 6);
    QHeaderView *header = m_table->horizontalHeader();
    const int letter = fontMetrics().averageCharWidth();
    header->resizeSection(PageHitsModel::Page, 36 * letter);
    header->resizeSection(PageHitsModel::Line, 7 * letter);
    header->resizeSection(PageHitsModel::Text, 50 * letter);
    header->setStretchLastSection(true);
    connect(m_table, &QTableView::activated, this, &FindInPages::openHit);
}

void FindInPages::layOut()
{
    auto *fields = new QGridLayout;
    addFields(fields);
    m_count->setObjectName(u"lblCount"_s);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(optionRow());
    layout->addLayout(buttonRow());
    layout->addLayout(countRow());
    layout->addWidget(m_table, 1);
    const int letter = fontMetrics().averageCharWidth();
    resize(130 * letter, 34 * fontMetrics().height());
}

void FindInPages::addFields(QGridLayout *fields)
{
    const auto add = [&](const QString &text, QWidget *field, const QString &name) {
        auto *label = new QLabel(text, this);
        label->setBuddy(field);
        field->setObjectName(name);
        const int row = fields->rowCount();
        fields->addWidget(label, row, 0);
        fields->addWidget(field, row, 1);
    };
    m_text->setClearButtonEnabled(true);
    m_problem->setObjectName(u"lblFindProblem"_s);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_scope->addItems({tr("Whole project"), tr("Current book"), tr("Global pages")});
    add(tr("&Find:"), m_text, u"txtFindAll"_s);
    fields->addWidget(m_problem, fields->rowCount(), 1);
    add(tr("Replace wi&th:"), m_replacement, u"txtReplaceAll"_s);
    add(tr("&Look in:"), m_scope, u"cboScope"_s);
}

QBoxLayout *FindInPages::optionRow()
{
    auto *row = new QHBoxLayout;
    m_matchCase->setObjectName(u"chkMatchCase"_s);
    m_wholeWord->setObjectName(u"chkWholeWord"_s);
    m_isPattern->setObjectName(u"chkPattern"_s);
    m_isPattern->setToolTip(
        tr("In the replacement, \\1 to \\9 stand for what the groups of the expression found."));
    for (QWidget *box : {m_matchCase, m_wholeWord, m_isPattern})
        row->addWidget(box);
    row->addStretch();
    return row;
}

QBoxLayout *FindInPages::buttonRow()
{
    auto *row = new QHBoxLayout;
    for (QPushButton *button : {m_find, m_preview, m_replace, m_stop}) {
        button->setAutoDefault(false); // Enter in the list opens a hit
        row->addWidget(button);
    }
    row->addStretch();
    return row;
}

QBoxLayout *FindInPages::countRow()
{
    auto *row = new QHBoxLayout;
    m_all->setObjectName(u"chkAllHits"_s);
    row->addWidget(m_all);
    row->addWidget(m_count, 1);
    return row;
}

void FindInPages::open(const QString &text)
{
    if (!text.isEmpty())
        m_text->setText(text);
    show();
    raise();
    activateWindow();
    m_text->selectAll();
    m_text->setFocus();
}

FindOptions FindInPages::options() const
{
    return {m_text->text(), m_matchCase->isChecked(), m_wholeWord->isChecked(),
            m_isPattern->isChecked()};
}

void FindInPages::showState()
{
    const TextFinder finder(options());
    m_problem->setText(finder.problem());
    m_problem->setVisible(!finder.problem().isEmpty());
    const bool canFind = !finder.isIdle() && !m_session.projectName().isEmpty() && !m_running;
    m_find->setEnabled(canFind);
    m_preview->setEnabled(canFind);
    m_stop->setEnabled(m_running);
    const bool isPreviewed = m_run && m_complete && m_run->query().find == options()
                             && m_run->query().replacement == m_replacement->text();
    m_replace->setEnabled(isPreviewed && m_hits->checkedCount() > 0);
    m_replace->setToolTip(m_replace->isEnabled() ? QString()
                          : isPreviewed          ? tr("No hit is checked")
                                                 : tr("Preview the replacing first"));
    m_all->setVisible(isPreviewed && m_hits->hitCount() > 0);
    m_all->setCheckState(m_hits->checksOfAll());
    m_find->setToolTip(finder.isIdle() ? tr("Enter a text to find") : QString());
    showCount();
}

void FindInPages::find()
{
    start(false);
}

void FindInPages::preview()
{
    start(true);
}

QStringList FindInPages::folders() const
{
    QStringList folders;
    const auto addBook = [&](const TocBook &book) {
        if (insideOf(m_session.folder(), book.folder))
            folders.append(QString(book.folder).replace(u'/', u'\\'));
    };
    const int scope = m_scope->currentIndex();
    if (scope == CurrentBook && m_session.currentBook())
        addBook(*m_session.currentBook());
    if (scope == WholeProject) {
        for (const TocBook &book : m_session.books())
            addBook(book);
    }
    if (scope != CurrentBook)
        folders.append(ProjectFile::globalFolder);
    folders.removeDuplicates();
    return folders;
}

void FindInPages::start(bool replacing)
{
    if (!m_session.mayLeave())
        return; // text that is not saved would be searched as it was
    Program &program = m_session.program();
    const QStringList places = folders();
    PageQuery query{options(), {}};
    if (replacing)
        query.replacement = m_replacement->text();
    m_hits->start(replacing);
    m_complete = false;
    m_running = !places.isEmpty();
    m_progress = m_running ? QString() : tr("No book is chosen. Choose one in the tree first.");
    if (!m_running)
        return showState();
    m_run = std::make_unique<PageSearchRun>(
        program.files, SearchedPages{m_session.folder(), program.session.projectLanguage, {}},
        places, query);
    connect(m_run.get(), &PageSearchRun::found, m_hits, &PageHitsModel::add);
    connect(m_run.get(), &PageSearchRun::progressed, this, [this](int done, int total) {
        m_progress = tr("Searching: page %1 of %2").arg(done).arg(total);
        showCount();
    });
    connect(m_run.get(), &PageSearchRun::finished, this, &FindInPages::finish);
    showState();
}

void FindInPages::stop()
{
    if (m_run)
        m_run->stop();
}

void FindInPages::finish(bool stopped, const QString &problem)
{
    m_running = false;
    m_complete = !stopped && problem.isEmpty();
    m_progress = stopped ? tr("Stopped.") : problem;
    showState();
    if (m_hits->rowCount() > 0 && !m_table->currentIndex().isValid())
        m_table->setCurrentIndex(m_hits->index(0, 0));
}

void FindInPages::showCount()
{
    const auto hits = m_hits->hitCount();
    const auto pages = m_hits->pageCount();
    QString count;
    if (hits == 0)
        count = m_complete && !m_running ? tr("Not found.") : QString();
    else
        count = tr("Hits: %1   Pages: %2").arg(hits).arg(pages);
    if (m_run && m_run->query().replacement && hits > 0)
        count += tr("   Checked: %1").arg(m_hits->checkedCount());
    m_count->setText(m_progress.isEmpty() || m_complete ? count : m_progress + u"   "_s + count);
}

void FindInPages::openHit(const QModelIndex &index)
{
    if (const PageHit *hit = m_hits->hit(index.row()))
        Q_EMIT placeRequested(m_hits->page(index.row()).path, hit->place.start, hit->place.length);
}

void FindInPages::replaceChecked()
{
    const QList<FoundPage> pages = m_hits->checkedPages();
    handled(m_session.program(), [&] {
        if (m_session.mayLeave() && unlockFirst(pages))
            replaceIn(pages);
    });
}

bool FindInPages::unlockFirst(const QList<FoundPage> &pages)
{
    QStringList locked;
    for (const FoundPage &page : pages) {
        if (page.locked)
            locked.append(page.path);
    }
    if (!mayUnlock(m_session, locked))
        return false;
    UnlockedFiles unlocked(m_session);
    unlocked.unlock(locked);
    unlocked.keep();
    return true;
}

void FindInPages::replaceIn(const QList<FoundPage> &pages)
{
    const auto hits = m_hits->checkedCount();
    const auto command = [&](StagedFiles &files, const Progress &progress) {
        int done = 0;
        for (const FoundPage &page : pages) {
            progress.step(done++, static_cast<int>(pages.size()), page.path);
            const auto isWanted = [&](qsizetype hit) { return m_hits->isChecked(page.path, hit); };
            files.replaceFile(m_session.folder() + page.path,
                              replacedPage(files, m_run->pages(), page, m_run->query(), isWanted));
        }
    };
    const QString name = tr("Replace %1").arg(quoted(m_run->query().find.text));
    if (!m_session.performLong(name, tr("Replacing..."), command))
        return;
    m_complete = false;
    m_hits->start(true);
    m_progress = tr("Hits replaced: %1   Pages changed: %2").arg(hits).arg(pages.size());
    showState();
    Q_EMIT m_session.done(m_progress);
    Q_EMIT replaced();
}
