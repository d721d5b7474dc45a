#include "controls/import/ImportPlanModel.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QComboBox>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString kindText(const ImportItem &item)
{
    using Model = ImportPlanModel;
    switch (item.kind) {
    case ImportItem::Kind::Page:
        if (!item.isMade())
            return Model::tr("Page");
        if (item.format == ImportFormat::Markdown)
            return Model::tr("Page from Markdown");
        return item.format == ImportFormat::Table ? Model::tr("Page with a table")
                                                  : Model::tr("Page from text");
    case ImportItem::Kind::Picture:
        return Model::tr("Picture");
    case ImportItem::Kind::Style:
        return Model::tr("Style sheet");
    case ImportItem::Kind::Script:
        return Model::tr("Script");
    case ImportItem::Kind::File:
        break;
    }
    return Model::tr("File");
}

QString actionText(const ImportItem &item, ImportAction action)
{
    switch (action) {
    case ImportAction::Copy:
        return ImportPlanModel::tr("New");
    case ImportAction::KeepSame:
        return ImportPlanModel::tr("Already there");
    case ImportAction::Skip:
        return ImportPlanModel::tr("Skip");
    case ImportAction::Replace:
        return ImportPlanModel::tr("Replace (the old one is backed up)");
    case ImportAction::Rename:
        break;
    }
    return ImportPlanModel::tr("Rename to %1").arg(lastComponent(item.renamed));
}

QString encodingText(const ImportItem &item)
{
    if (!item.isPage() || item.encoding.name.isEmpty())
        return {};
    const QString name = QString::fromLatin1(item.encoding.name);
    if (item.damaged)
        return ImportPlanModel::tr("%1, damaged").arg(name);
    return item.encoding.mark ? ImportPlanModel::tr("%1 with mark").arg(name) : name;
}

QString stateText(const ImportItem &item)
{
    if (!item.refusal.isEmpty())
        return ImportPlanModel::tr("Cannot be added: %1").arg(item.refusal);
    const QString action = actionText(item, item.action);
    return item.conflict.isEmpty() || item.action == ImportAction::KeepSame
               ? action
               : ImportPlanModel::tr("%1: %2").arg(action, item.conflict);
}

/// Where the author finds it; as it is where it has no such form.
QString nativePath(FileSystem &files, const ImportItem &item)
{
    QString path = item.remembered;
    trap([](const QvError &) {}, [&] { path = files.nativePath(item.remembered); });
    return path;
}

bool isEditable(const ImportItem &item)
{
    return item.refusal.isEmpty() && item.actions.size() > 1;
}

} // namespace

ImportPlanModel::ImportPlanModel(FileSystem &files, ImportPlan plan, QObject *parent)
    : QAbstractTableModel(parent)
    , m_files(files)
    , m_plan(std::move(plan))
{
}

int ImportPlanModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_plan.items.size());
}

int ImportPlanModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ImportPlanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList names{tr("Title"),    tr("File"), tr("Kind"),
                            tr("Encoding"), tr("Size"), tr("In the book")};
    return names.value(section);
}

QVariant ImportPlanModel::data(const QModelIndex &index, int role) const
{
    const ImportItem &item = m_plan.items[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return shown(item, index.column());
    case SortRole:
        return sortKey(item, index.column());
    case Qt::CheckStateRole:
        if (index.column() == Title)
            return item.included && item.refusal.isEmpty() ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::ToolTipRole:
        return index.column() == InBook ? stateText(item) : nativePath(m_files, item);
    case Qt::EditRole:
        return item.actions.indexOf(item.action);
    case Qt::TextAlignmentRole:
        return index.column() == Size ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case ActionsRole: {
        QStringList texts;
        for (const ImportAction action : item.actions)
            texts.append(actionText(item, action));
        return texts;
    }
    default:
        return {};
    }
}

QVariant ImportPlanModel::shown(const ImportItem &item, int column) const
{
    switch (column) {
    case Title:
        return item.isPage() ? item.title : lastComponent(item.target);
    case File:
        return item.target;
    case Kind:
        return kindText(item);
    case Encoding:
        return encodingText(item);
    case Size:
        return QLocale().formattedDataSize(item.size, 1, QLocale::DataSizeTraditionalFormat);
    default:
        return stateText(item);
    }
}

QVariant ImportPlanModel::sortKey(const ImportItem &item, int column) const
{
    return column == Size ? QVariant(item.size) : shown(item, column);
}

/// What cannot be added is greyed out; its last column says why.
Qt::ItemFlags ImportPlanModel::flags(const QModelIndex &index) const
{
    const ImportItem &item = m_plan.items[index.row()];
    if (!item.refusal.isEmpty())
        return index.column() == InBook ? Qt::ItemIsEnabled | Qt::ItemIsSelectable
                                        : Qt::ItemIsSelectable;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == Title)
        flags |= Qt::ItemIsUserCheckable;
    if (index.column() == InBook && isEditable(item))
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool ImportPlanModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    ImportItem &item = m_plan.items[index.row()];
    if (role == Qt::CheckStateRole && index.column() == Title) {
        item.included = value.toInt() == Qt::Checked;
    } else if (role == Qt::EditRole && index.column() == InBook && value.toInt() >= 0
               && value.toInt() < item.actions.size()) {
        item.action = item.actions[value.toInt()];
    } else {
        return false;
    }
    changed(index.row(), index.row());
    return true;
}

void ImportPlanModel::decideAll(ImportAction action)
{
    for (ImportItem &item : m_plan.items) {
        if (item.actions.contains(action))
            item.action = action;
    }
    if (!m_plan.items.isEmpty())
        changed(0, rowCount() - 1);
}

void ImportPlanModel::check(const QList<int> &rows, bool checked)
{
    for (const int row : rows)
        m_plan.items[row].included = checked;
    if (!m_plan.items.isEmpty())
        changed(0, rowCount() - 1);
}

void ImportPlanModel::changed(int firstRow, int lastRow)
{
    Q_EMIT dataChanged(index(firstRow, 0), index(lastRow, ColumnCount - 1));
    Q_EMIT decided();
}

QWidget *ImportActionDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                            const QModelIndex &index) const
{
    auto *box = new QComboBox(parent);
    box->setAccessibleName(ImportPlanModel::tr("What happens to this file"));
    box->addItems(index.data(ImportPlanModel::ActionsRole).toStringList());
    return box;
}

void ImportActionDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    static_cast<QComboBox *>(editor)->setCurrentIndex(index.data(Qt::EditRole).toInt());
}

void ImportActionDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                        const QModelIndex &index) const
{
    model->setData(index, static_cast<QComboBox *>(editor)->currentIndex());
}

void ImportActionDelegate::initStyleOption(QStyleOptionViewItem *option,
                                           const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideRight;
}
