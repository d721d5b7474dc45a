#include "viewer/SearchTab.h"

#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/KeyWordFile.h"
#include "tools/words/SearchQuery.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostShown = 200; // nobody looks further
constexpr int targetRole = Qt::UserRole;

} // namespace

SearchTab::SearchTab(ViewerWorld &world, QWidget *parent)
    : QWidget(parent)
    , m_world(world)
    , cboSet(new QComboBox(this))
    , txtSearch(new QLineEdit(this))
    , lblHits(plainLabel({}, this))
    , lstHits(
          makeTable(u"lstHits"_s, tr("Pages found, best first"), {tr("Page"), tr("Why")}, 1, this))
{
    cboSet->setObjectName(u"cboSet"_s);
    cboSet->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    txtSearch->setObjectName(u"txtSearch"_s);
    txtSearch->setClearButtonEnabled(true);
    lblHits->setObjectName(u"lblHits"_s);
    auto *layout = new QFormLayout(this);
    layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->addRow(tr("Book s&et:"), cboSet);
    layout->addRow(tr("Search f&or:"), txtSearch);
    layout->addRow(lblHits);
    layout->addRow(lstHits);
    setFocusProxy(txtSearch);
    m_ahead.setInterval(0);
    connect(&m_ahead, &QTimer::timeout, this, &SearchTab::readAhead);
    connect(cboSet, &QComboBox::currentIndexChanged, this, [this] {
        forget();
        search();
    });
    connect(txtSearch, &QLineEdit::textChanged, this, &SearchTab::search);
    connect(txtSearch, &QLineEdit::returnPressed, this, &SearchTab::enter);
    connect(lstHits, &QTreeWidget::itemActivated, this, &SearchTab::choose);
    connect(lstHits, &QTreeWidget::itemClicked, this, &SearchTab::choose);
}

SearchTab::~SearchTab() = default;

void SearchTab::reload()
{
    const QString before = cboSet->currentText();
    {
        const QSignalBlocker quiet(cboSet);
        cboSet->clear();
        for (const BookSet &set : std::as_const(m_world.sets))
            cboSet->addItem(set.name);
        cboSet->setCurrentIndex(qMax(0, cboSet->findText(before)));
    }
    forget();
    search();
}

void SearchTab::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_ahead.start();
}

void SearchTab::hideEvent(QHideEvent *event)
{
    m_ahead.stop();
    QWidget::hideEvent(event);
}

void SearchTab::forget()
{
    m_query.reset();
    if (isVisible())
        m_ahead.start();
}

// So that the first key stroke need not wait for the files. What is wrong with them is told when
// something is searched.
void SearchTab::readAhead()
{
    const bool isMore =
        cboSet->count() > 0 && trap([](const QvError &) {}, [this] { return query().readMore(); });
    if (!isMore)
        m_ahead.stop();
}

void SearchTab::chooseSet(const QString &set)
{
    const int index = cboSet->findText(set);
    if (index >= 0)
        cboSet->setCurrentIndex(index);
}

SearchQuery &SearchTab::query()
{
    if (!m_query) {
        const QString set = cboSet->currentText();
        m_query = std::make_unique<SearchQuery>(m_world.files,
                                                projectFolder(m_world.session.serverPath, set),
                                                readKeyWords(m_world.session, m_world.files, set));
    }
    return *m_query;
}

void SearchTab::search()
{
    lstHits->clear();
    lblHits->clear();
    m_asked.clear();
    const QString question = txtSearch->text();
    if (question.trimmed().isEmpty())
        return;
    if (cboSet->count() == 0) {
        lblHits->setText(tr("There is no book set to search."));
        return;
    }
    const auto noSearch = [this](const QvError &error) { lblHits->setText(error.description()); };
    trap(noSearch, [&] { showHits(question); });
}

void SearchTab::showHits(const QString &question)
{
    const SearchResult result = query().find(question);
    m_asked = QStringList(question) + result.names;
    lblHits->setText(summaryOf(result, mostShown));
    for (const SearchHit &hit : result.hits.first(qMin(mostShown, result.hits.size()))) {
        QTreeWidgetItem *const row =
            addRow(lstHits, {hit.page.title, hit.reason}, hit.page.title + u". "_s + hit.reason);
        row->setData(0, targetRole, hit.page.target);
    }
    if (lstHits->topLevelItemCount() > 0)
        lstHits->setCurrentItem(lstHits->topLevelItem(0));
}

// Enter opens the best page; from there the arrow keys go through the others.
void SearchTab::enter()
{
    if (lstHits->topLevelItemCount() == 0)
        return;
    lstHits->setFocus();
    choose(lstHits->currentItem());
}

void SearchTab::choose(const QTreeWidgetItem *hit)
{
    const ViewerPlace place{cboSet->currentText(), hit->data(0, targetRole).toString()};
    Q_EMIT hitChosen(place, m_asked);
}
