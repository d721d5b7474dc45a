#include "indexmanager/WhoLinksPage.h"

#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/RowTable.h"
#include "indexmanager/PageOpening.h"
#include "indexmanager/ShortList.h"
#include "platform/Paths.h"
#include "resources/Counted.h"
#include "resources/Icons.h"
#include "startup/Session.h"
#include "startup/frmProgBar.h"
#include "tools/build/BuildInput.h"
#include "tools/rename/RenameSurvey.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

WhoLinksPage::WhoLinksPage(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_index(std::make_shared<IdentifierIndex>())
    , m_table(new RowTable({{tr("State"), 24, TableColumn::State},
                            {tr("Set"), 22},
                            {tr("Page that links"), 36},
                            {tr("Leads to"), 36},
                            {tr("By identifier")}},
                           this))
    , m_state(plainLabel({}, this))
{
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(makeChoice());
    m_table->setObjectName(u"lstLinks"_s);
    m_table->setAccessibleName(tr("Pages that link here"));
    layout->addWidget(m_table, 1);
    layout->addWidget(m_state);
    connect(m_sets, &QComboBox::currentIndexChanged, this, &WhoLinksPage::readBooks);
    connect(m_books, &QComboBox::currentIndexChanged, this, &WhoLinksPage::listPages);
    connect(m_pages, &QComboBox::currentIndexChanged, this, &WhoLinksPage::forgetLinks);
    connect(m_find, &QPushButton::clicked, this, &WhoLinksPage::findLinks);
    connect(m_table, &RowTable::rowActivated, this, [this](int row) {
        const LinkingPage &link = m_links.at(row);
        handled(m_program, [&] { openStoredPage(m_program, link.set + u'\\' + link.page); });
    });
    forgetLinks();
}

QWidget *WhoLinksPage::makeChoice()
{
    auto *const row = new QWidget(this);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    m_sets = addBox(row, tr("Se&t:"), u"cboSet"_s);
    m_books = addBox(row, tr("&Book:"), u"cboBook"_s);
    m_pages = addBox(row, tr("&Page:"), u"cboPage"_s);
    m_find = new QPushButton(icon("find"_L1), tr("&Find links"), row);
    m_find->setObjectName(u"cmdFindLinks"_s);
    layout->addWidget(m_find);
    return row;
}

QComboBox *WhoLinksPage::addBox(QWidget *row, const QString &caption, const QString &name)
{
    auto *const box = new QComboBox(row);
    box->setObjectName(name);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(12);
    auto *const label = new QLabel(caption, row);
    label->setBuddy(box);
    auto *const layout = static_cast<QHBoxLayout *>(row->layout());
    layout->addWidget(label);
    layout->addWidget(box, 1);
    return box;
}

void WhoLinksPage::setIndex(std::shared_ptr<const IdentifierIndex> index)
{
    m_index = std::move(index);
    const QString before = m_sets->currentText();
    {
        const QSignalBlocker quiet(m_sets);
        m_sets->clear();
        m_sets->addItem(tr("Choose a set"));
        for (const SetLinks &set : m_index->sets())
            m_sets->addItem(set.set, set.set);
        m_sets->setCurrentIndex(std::max(0, m_sets->findText(before)));
    }
    readBooks();
}

/// Books and pages of the set, as its outlines name them.
void WhoLinksPage::readBooks()
{
    const QSignalBlocker quiet(m_books);
    m_books->clear();
    m_books->addItem(tr("All books"));
    m_choices.clear();
    const QString set = m_sets->currentData().toString();
    handled(m_program, [&] {
        if (set.isEmpty())
            return;
        Session session = m_program.session;
        BuildInput input;
        const auto work = [&](const Progress &progress) {
            input =
                readBuildInput(session, m_program.files, set, languageOf(m_program, set), progress);
        };
        runWithProgress(m_program, window(), tr("Reading the books..."), work);
        listBooks(input);
    });
    listPages();
}

void WhoLinksPage::listBooks(const BuildInput &input)
{
    const auto add = [this](const QString &name, const QString &folder, const auto &pages) {
        BookChoice choice{folder, {}};
        for (const auto &page : pages) {
            if (const auto path = insideOf(folder, page.file))
                choice.pages.append({page.title, *path});
        }
        m_choices.append(choice);
        m_books->addItem(name);
    };
    for (const BuildBook &book : input.books) {
        if (!book.folder.isEmpty()) // else it lies outside the set
            add(book.entry.name, book.folder, flattened(book.book.pages));
    }
    if (!input.globalPages.isEmpty())
        add(tr("Global pages"), withBackslash(ProjectFile::globalFolder), input.globalPages);
}

void WhoLinksPage::listPages()
{
    const QSignalBlocker quiet(m_pages);
    m_pages->clear();
    m_pages->addItem(tr("All pages"));
    if (const int book = m_books->currentIndex() - 1; book >= 0) {
        for (const auto &[title, path] : m_choices.at(book).pages)
            m_pages->addItem(tr("%1 (%2)").arg(title, path), path);
    }
    m_books->setEnabled(m_books->count() > 1);
    m_pages->setEnabled(m_pages->count() > 1);
    forgetLinks();
}

void WhoLinksPage::forgetLinks()
{
    m_links.clear();
    m_table->setPlaceholder(tr("Choose a set, a book or a page, then press Find links."));
    m_table->setRows({});
    m_state->clear();
    m_find->setEnabled(!m_sets->currentData().toString().isEmpty());
}

LinkedPlace WhoLinksPage::chosen() const
{
    LinkedPlace place{.set = m_sets->currentData().toString()};
    if (const int book = m_books->currentIndex() - 1; book >= 0)
        place.folder = m_choices.at(book).folder;
    place.page = m_pages->currentData().toString();
    return place;
}

void WhoLinksPage::findLinks()
{
    handled(m_program, [this] {
        WhoLinks found;
        const auto work = [&, place = chosen()](const Progress &progress) {
            found = whoLinksTo(m_program, *m_index, place, progress);
        };
        runWithProgress(m_program, window(), tr("Looking for links..."), work);
        showLinks(std::move(found));
    });
}

void WhoLinksPage::showLinks(WhoLinks found)
{
    m_links = std::move(found.links);
    QList<TableRow> rows;
    for (const LinkingPage &link : std::as_const(m_links)) {
        const bool isGood = link.problem.isEmpty();
        rows.append({{isGood ? tr("Good") : link.problem, link.set, link.page, link.leadsTo,
                      link.identifier},
                     isGood ? LinkMark::Good : LinkMark::Bad});
    }
    m_table->setPlaceholder(tr("No page links here."));
    m_table->setRows(std::move(rows));
    QString state = counted(m_links.size(), tr("1 link leads here."), tr("%1 links lead here."));
    if (found.pagesWereRead)
        state += u' ' + tr("The list of links was older than the pages, so the pages were read.");
    if (!found.unread.isEmpty())
        state += u' ' + tr("Not read: %1.").arg(shortList(found.unread, u", "_s));
    m_state->setText(state);
}
