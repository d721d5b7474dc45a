#include "controls/quicknav/NodeNameDelegate.h"

#include "controls/quicknav/NodeList.h"

#include <QKeyEvent>
#include <QLineEdit>

using namespace Qt::StringLiterals;

NodeNameDelegate::NodeNameDelegate(NodeList &list)
    : QStyledItemDelegate(&list)
    , m_list(list)
{
}

QWidget *NodeNameDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    QWidget *made = QStyledItemDelegate::createEditor(parent, option, index);
    auto *edit = qobject_cast<QLineEdit *>(made);
    if (edit == nullptr)
        return made;
    edit->setObjectName(u"txtNodeName"_s);
    edit->setAccessibleName(tr("Name of the %1").arg(QuickNavTree::word(m_list.m_level)));
    m_list.beginEdit(index.row());
    connect(edit, &QLineEdit::textChanged, this, [this, edit](const QString &text) {
        const QString problem = m_list.problemOf(text);
        edit->setAccessibleDescription(problem);
        Q_EMIT m_list.nameProblem(problem);
    });
    return edit;
}

void NodeNameDelegate::setModelData(QWidget *editor, QAbstractItemModel *,
                                    const QModelIndex &) const
{
    const QString name = qobject_cast<QLineEdit *>(editor)->text().trimmed();
    if (m_list.m_edit && m_list.problemOf(name).isEmpty())
        m_list.m_edit->name = name;
}

bool NodeNameDelegate::eventFilter(QObject *watched, QEvent *event)
{
    const auto *edit = qobject_cast<QLineEdit *>(watched);
    if (edit != nullptr && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab;
        if (isEnter && m_list.m_edit && !m_list.problemOf(edit->text()).isEmpty())
            return true;
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}
