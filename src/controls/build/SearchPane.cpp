#include "controls/build/SearchPane.h"

#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "projectfiles/KeyWordFile.h"
#include "tools/words/SearchQuery.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostShown = 500; // nobody looks further

} // namespace

SearchPane::SearchPane(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , txtSearch(new QLineEdit(this))
    , lblHits(plainLabel({}, this))
    , lstHits(nullptr)
{
    auto *caption = new QLabel(tr("Search &for:"), this);
    caption->setBuddy(txtSearch);
    txtSearch->setObjectName(u"txtSearch"_s);
    txtSearch->setClearButtonEnabled(true);
    QPushButton *cmdSearch = makeButton(u"cmdSearch"_s, "find"_L1, tr("&Search"), this);
    auto *row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(txtSearch, 1);
    row->addWidget(cmdSearch);
    lblHits->setObjectName(u"lblHits"_s);
    lstHits = makeTable(u"lstFound"_s, tr("Pages found, best first"),
                        {tr("Page"), tr("File"), tr("Why")}, 2, this);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(lblHits);
    layout->addWidget(lstHits, 1);
    connect(txtSearch, &QLineEdit::returnPressed, this, &SearchPane::search);
    connect(cmdSearch, &QPushButton::clicked, this, &SearchPane::search);
    connect(lstHits, &QTreeWidget::itemActivated, this,
            [this](const QTreeWidgetItem *hit) { Q_EMIT pageRequested(hit->text(1)); });
}

SearchPane::~SearchPane() = default;

void SearchPane::setProject(const BuiltProject &project)
{
    m_project = project;
    m_query.reset();
    lstHits->clear();
    lblHits->clear();
}

SearchQuery &SearchPane::query()
{
    if (!m_query) {
        Session session = m_project.session();
        m_query =
            std::make_unique<SearchQuery>(m_program.files, m_project.folder(),
                                          readKeyWords(session, m_program.files, m_project.name()));
    }
    return *m_query;
}

void SearchPane::search()
{
    lstHits->clear();
    const auto noSearch = [this](const QvError &error) { lblHits->setText(error.description()); };
    trap(noSearch, [this] { showHits(); });
}

void SearchPane::showHits()
{
    const QString question = txtSearch->text();
    if (question.trimmed().isEmpty()) {
        lblHits->setText(tr("Enter what a reader would look for."));
        return;
    }
    const SearchResult result = query().find(question);
    lblHits->setText(summaryOf(result, mostShown));
    for (const SearchHit &hit : result.hits.first(qMin(mostShown, result.hits.size())))
        addRow(lstHits, {hit.page.title, hit.page.target, hit.reason},
               hit.page.title + u". "_s + hit.reason);
    if (lstHits->topLevelItemCount() > 0) {
        lstHits->setCurrentItem(lstHits->topLevelItem(0));
        lstHits->setFocus();
    }
}
