#include "controls/pages/InsertLinkDialog.h"

#include "controls/pages/LinkChoices.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>

using namespace Qt::StringLiterals;

QString linkTo(const QString &reference, const QString &text)
{
    return u"<a href=\"%1\">%2</a>"_s.arg(reference, text);
}

InsertLinkDialog::InsertLinkDialog(const PageIndex &index, const QString &page,
                                   const QString &selected, QWidget *parent)
    : QDialog(parent)
    , m_index(index)
    , m_page(page)
    , m_selected(selected)
    , m_choices(new LinkChoices(this))
    , m_shown(new QSortFilterProxyModel(this))
    , m_filter(new QLineEdit(this))
    , m_pages(new QListView(this))
    , m_anchor(new QComboBox(this))
    , m_text(new QLineEdit(this))
{
    setObjectName(u"dlgInsertLink"_s);
    setWindowTitle(tr("Insert link"));
    m_choices->show(pageChoices(m_index));
    m_shown->setSourceModel(m_choices);
    m_shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_pages->setModel(m_shown);
    m_pages->setUniformItemSizes(true);
    m_pages->setTextElideMode(Qt::ElideMiddle);
    m_text->setText(selected);
    m_text->setEnabled(!selected.contains(u'\n'));
    m_filter->installEventFilter(this);
    layOut();
    connect(m_filter, &QLineEdit::textChanged, this, &InsertLinkDialog::filter);
    connect(m_pages->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &InsertLinkDialog::showPage);
    connect(m_pages, &QListView::doubleClicked, this, &QDialog::accept);
    filter({});
    const int letter = fontMetrics().averageCharWidth();
    resize(80 * letter, 30 * fontMetrics().height());
}

void InsertLinkDialog::layOut()
{
    m_filter->setObjectName(u"txtFilter"_s);
    m_filter->setClearButtonEnabled(true);
    m_filter->setPlaceholderText(tr("Part of a title or path"));
    m_pages->setObjectName(u"lstPages"_s);
    m_anchor->setObjectName(u"cboAnchor"_s);
    m_text->setObjectName(u"txtLinkText"_s);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_insert = buttons->addButton(tr("&Insert"), QDialogButtonBox::AcceptRole);
    m_insert->setObjectName(u"cmdInsertLink"_s);
    m_insert->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *form = new QFormLayout(this);
    form->addRow(tr("&Filter:"), m_filter);
    form->addRow(tr("&Page:"), m_pages);
    form->addRow(tr("Pl&ace in it:"), m_anchor);
    form->addRow(tr("&Text of the link:"), m_text);
    form->addRow(buttons);
}

// Down and Up in the filter move through the list, so that the hands stay where they are.
bool InsertLinkDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        const int step = key->key() == Qt::Key_Down ? 1 : key->key() == Qt::Key_Up ? -1 : 0;
        const QModelIndex next = m_shown->index(m_pages->currentIndex().row() + step, 0);
        if (step != 0 && next.isValid())
            m_pages->setCurrentIndex(next);
        if (step != 0)
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void InsertLinkDialog::filter(const QString &text)
{
    m_shown->setFilterFixedString(text);
    if (!m_pages->currentIndex().isValid())
        m_pages->setCurrentIndex(m_shown->index(0, 0));
    showPage();
}

void InsertLinkDialog::showPage()
{
    const QModelIndex current = m_pages->currentIndex();
    m_insert->setEnabled(current.isValid());
    m_insert->setToolTip(current.isValid() ? QString() : tr("Choose a page"));
    m_anchor->clear();
    m_anchor->addItem(tr("(the page)"));
    for (const auto &choice :
         anchorChoices(m_index, current.data(LinkChoices::PathRole).toString()))
        m_anchor->addItem(choice.text, choice.anchor);
    m_text->setPlaceholderText(current.data(LinkChoices::TitleRole).toString());
}

QString InsertLinkDialog::link() const
{
    const QModelIndex current = m_pages->currentIndex();
    const QString reference = referenceTo(m_page, current.data(LinkChoices::PathRole).toString(),
                                          m_anchor->currentData().toString());
    if (!m_text->isEnabled() || (!m_selected.isEmpty() && m_text->text() == m_selected))
        return linkTo(reference, m_selected);
    const QString text = m_text->text().isEmpty() ? m_text->placeholderText() : m_text->text();
    return linkTo(reference, text.toHtmlEscaped());
}
