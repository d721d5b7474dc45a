#include "controls/books/EntryList.h"

#include "controls/parts/CheckedField.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

EntryList::EntryList(const Texts &texts, const Rule &problem, QWidget *parent)
    : QWidget(parent)
    , m_list(new QListWidget(this))
    , m_field(new CheckedField(
          u"txt"_s + texts.name, texts.field,
          [this, problem](const QString &text) { return problem(text, entries()); }, {}, this))
    , m_add(new QPushButton(texts.add, this))
    , m_remove(new QPushButton(texts.remove, this))
{
    m_list->setObjectName(u"lst"_s + texts.name);
    m_list->setAccessibleName(texts.list);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_add->setObjectName(u"cmdAdd"_s + texts.name);
    m_remove->setObjectName(u"cmdRemove"_s + texts.name);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_field, 0, 0);
    layout->addWidget(m_add, 0, 1, Qt::AlignTop);
    layout->addWidget(m_list, 1, 0);
    layout->addWidget(m_remove, 1, 1, Qt::AlignTop);
    setTabOrder(m_field, m_add);
    setTabOrder(m_add, m_list);
    setTabOrder(m_list, m_remove);

    connect(m_field, &CheckedField::edited, this, &EntryList::judge);
    connect(m_field->findChild<QLineEdit *>(), &QLineEdit::returnPressed, this,
            &EntryList::requestAdd);
    connect(m_add, &QPushButton::clicked, this, &EntryList::requestAdd);
    connect(m_remove, &QPushButton::clicked, this, &EntryList::requestRemove);
    connect(new QShortcut(QKeySequence::Delete, m_list, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &EntryList::requestRemove);
    connect(m_list, &QListWidget::currentRowChanged, this, [this] {
        judge();
        Q_EMIT chosenChanged();
    });
    judge();
}

void EntryList::setEntries(const QStringList &entries)
{
    const QString before = chosen();
    const int row = m_list->currentRow();
    {
        const QSignalBlocker quiet(m_list);
        m_list->clear();
        m_list->addItems(entries);
        for (int i = 0; i < m_list->count(); ++i)
            m_list->item(i)->setToolTip(entries.at(i));
        const auto place = entries.indexOf(before);
        m_list->setCurrentRow(place >= 0
                                  ? static_cast<int>(place)
                                  : qMin(qMax(row, 0), static_cast<int>(entries.size()) - 1));
    }
    judge();
    Q_EMIT chosenChanged();
}

QStringList EntryList::entries() const
{
    QStringList texts;
    for (int row = 0; row < m_list->count(); ++row)
        texts.append(m_list->item(row)->text());
    return texts;
}

QString EntryList::chosen() const
{
    const QListWidgetItem *const item = m_list->currentItem();
    return item == nullptr ? QString() : item->text();
}

void EntryList::requestAdd()
{
    const QString entry = m_field->text();
    if (!m_add->isEnabled())
        return;
    m_field->setText({});
    judge();
    Q_EMIT addRequested(entry);
}

void EntryList::requestRemove()
{
    if (const QString entry = chosen(); !entry.isEmpty())
        Q_EMIT removeRequested(entry);
}

void EntryList::judge()
{
    const QString problem = m_field->problem();
    m_add->setEnabled(problem.isEmpty());
    m_add->setToolTip(problem);
    m_remove->setEnabled(m_list->currentItem() != nullptr);
    m_remove->setToolTip(m_remove->isEnabled() ? QString() : tr("Choose an entry of the list."));
}
