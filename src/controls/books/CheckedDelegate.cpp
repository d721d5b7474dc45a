#include "controls/books/CheckedDelegate.h"

#include <QLineEdit>

CheckedDelegate::CheckedDelegate(const QString &objectName, const QString &accessibleName,
                                 Rule problem, int textRole, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_objectName(objectName)
    , m_accessibleName(accessibleName)
    , m_problem(std::move(problem))
    , m_textRole(textRole)
{
}

QWidget *CheckedDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                       const QModelIndex &index) const
{
    auto *field = new QLineEdit(parent);
    field->setObjectName(m_objectName);
    field->setAccessibleName(m_accessibleName);
    m_refused = false;
    const QPersistentModelIndex cell(index);
    connect(field, &QLineEdit::textEdited, this, [this, cell](const QString &text) {
        if (cell.isValid())
            Q_EMIT judged(m_problem(cell, text.trimmed()));
    });
    connect(field, &QObject::destroyed, this, [this] {
        if (!m_refused)
            Q_EMIT judged({});
    });
    return field;
}

void CheckedDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    static_cast<QLineEdit *>(editor)->setText(index.data(m_textRole).toString());
}

void CheckedDelegate::setModelData(QWidget *editor, QAbstractItemModel *,
                                   const QModelIndex &index) const
{
    const QString text = static_cast<QLineEdit *>(editor)->text().trimmed();
    if (text == index.data(m_textRole).toString())
        return;
    const QString problem = m_problem(index, text);
    m_refused = !problem.isEmpty();
    if (m_refused)
        Q_EMIT judged(problem);
    else
        Q_EMIT entered(index.siblingAtColumn(0).data(Qt::UserRole).toString(), index.column(),
                       text);
}
