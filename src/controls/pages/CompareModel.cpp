#include "controls/pages/CompareModel.h"

#include "controls/pages/HitDelegate.h"
#include "resources/PlainTip.h"

#include <QBrush>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Kind = DiffRow::Kind;

QStringList linesOf(QString text)
{
    return text.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').split(u'\n');
}

QString signOf(Kind kind)
{
    switch (kind) {
    case Kind::Changed:
        return u"\u2260"_s;
    case Kind::Removed:
        return u"\u2212"_s;
    case Kind::Added:
        return u"+"_s;
    case Kind::Same:
        break;
    }
    return {};
}

QColor tinted(const QPalette &palette, int hue)
{
    const QColor base = palette.color(QPalette::Base);
    const QColor tint = QColor::fromHsl(hue, 200, 128);
    const auto mix = [](int a, int b) { return (a * 4 + b) / 5; };
    return {mix(base.red(), tint.red()), mix(base.green(), tint.green()),
            mix(base.blue(), tint.blue())};
}

QColor colourOf(Kind kind, const QPalette &palette)
{
    return tinted(palette, kind == Kind::Changed ? 45 : kind == Kind::Removed ? 0 : 120);
}

} // namespace

CompareModel::CompareModel(const QString &left, const QString &right, const QPalette &palette,
                           QObject *parent)
    : QAbstractTableModel(parent)
    , m_left(linesOf(left))
    , m_right(linesOf(right))
    , m_rows(compareLines(m_left, m_right))
    , m_palette(palette)
{
}

int CompareModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CompareModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CompareModel::data(const QModelIndex &index, int role) const
{
    const DiffRow &row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::AccessibleTextRole:
        return words(row);
    case Qt::ToolTipRole:
        return plainTip(text(row, index.column()));
    case HitDelegate::BeginRole:
    case HitDelegate::LengthRole:
        return place(row, index.column(), role);
    case Qt::BackgroundRole:
        return row.kind == Kind::Same ? QVariant() : QBrush(colourOf(row.kind, m_palette));
    case Qt::TextAlignmentRole:
        if (index.column() == Sign)
            return int(Qt::AlignCenter);
        return index.column() == LeftLine || index.column() == RightLine
                   ? int(Qt::AlignRight | Qt::AlignVCenter)
                   : QVariant();
    default:
        return {};
    }
}

QString CompareModel::text(const DiffRow &row, int column) const
{
    const int line = column < Sign ? row.left : row.right;
    if (column == Sign)
        return signOf(row.kind);
    if (line < 0)
        return {};
    if (column == LeftLine || column == RightLine)
        return QString::number(line + 1);
    return column == LeftText ? m_left[line] : m_right[line];
}

/// Where the two versions of a line differ: what lies between what is alike at its ends.
QVariant CompareModel::place(const DiffRow &row, int column, int role) const
{
    if (row.kind != Kind::Changed || (column != LeftText && column != RightText))
        return {};
    const QString &one = column == LeftText ? m_left[row.left] : m_right[row.right];
    const QString &other = column == LeftText ? m_right[row.right] : m_left[row.left];
    const qsizetype shorter = qMin(one.size(), other.size());
    const qsizetype begin =
        std::mismatch(one.cbegin(), one.cbegin() + shorter, other.cbegin()).first - one.cbegin();
    if (role == HitDelegate::BeginRole)
        return begin;
    const auto end =
        std::mismatch(one.crbegin(), one.crbegin() + (shorter - begin), other.crbegin()).first;
    return one.size() - begin - (end - one.crbegin());
}

QString CompareModel::words(const DiffRow &row) const
{
    switch (row.kind) {
    case Kind::Changed:
        return tr("Line %1 differs. Theirs: %2. Mine: %3")
            .arg(QString::number(row.right + 1), m_left[row.left], m_right[row.right]);
    case Kind::Removed:
        return tr("Only in theirs, line %1: %2")
            .arg(QString::number(row.left + 1), m_left[row.left]);
    case Kind::Added:
        return tr("Only in mine, line %1: %2")
            .arg(QString::number(row.right + 1), m_right[row.right]);
    case Kind::Same:
        break;
    }
    return m_right[row.right];
}

QVariant CompareModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == LeftText    ? tr("Theirs, as saved on disk")
           : section == RightText ? tr("Mine, not saved yet")
                                  : QString();
}

bool CompareModel::begins(int row) const
{
    return m_rows[row].kind != Kind::Same && (row == 0 || m_rows[row - 1].kind == Kind::Same);
}

int CompareModel::difference(int from, int direction) const
{
    for (int row = from + direction; row >= 0 && row < rowCount(); row += direction) {
        if (begins(row))
            return row;
    }
    return -1;
}

int CompareModel::differences() const
{
    int count = 0;
    for (int row = 0; row < rowCount(); ++row)
        count += begins(row) ? 1 : 0;
    return count;
}
