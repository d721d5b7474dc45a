#include "controls/quicknav/QuickNavLinkDelegate.h"

#include "controls/quicknav/QuickNavLinkTable.h"

#include <QCompleter>
#include <QLineEdit>

using namespace Qt::StringLiterals;

QuickNavLinkDelegate::QuickNavLinkDelegate(QuickNavLinkTable &table)
    : QStyledItemDelegate(&table)
    , m_table(table)
{
}

QWidget *QuickNavLinkDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                            const QModelIndex &index) const
{
    if (index.column() != QuickNavLinkTable::Title && index.column() != QuickNavLinkTable::Anchor)
        return nullptr;
    auto *edit = new QLineEdit(parent);
    edit->setFrame(false);
    edit->setObjectName(u"txtLink"_s);
    edit->setMaxLength(1000);
    if (index.column() == QuickNavLinkTable::Title) {
        edit->setAccessibleName(tr("Title of the link"));
        return edit;
    }
    edit->setAccessibleName(tr("Place in the page"));
    auto *completer = new QCompleter(m_table.anchorsFor(index.row()), edit);
    completer->setFilterMode(Qt::MatchContains);
    edit->setCompleter(completer);
    return edit;
}

// Written once the editor has closed: the table is filled anew then.
void QuickNavLinkDelegate::setModelData(QWidget *editor, QAbstractItemModel *,
                                        const QModelIndex &index) const
{
    m_table.m_typed = {m_table.m_links.value(index.row()), index.column(), index.data().toString(),
                       qobject_cast<QLineEdit *>(editor)->text()};
}
