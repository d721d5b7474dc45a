#include "controls/pages/LinkChoices.h"

#include <algorithm>

using namespace Qt::StringLiterals;

void LinkChoices::show(QList<Choice> choices)
{
    beginResetModel();
    m_choices = std::move(choices);
    endResetModel();
}

int LinkChoices::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_choices.size());
}

QVariant LinkChoices::data(const QModelIndex &index, int role) const
{
    const Choice &choice = m_choices.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::ToolTipRole:
        return choice.text;
    case PathRole:
        return choice.path;
    case AnchorRole:
        return choice.anchor;
    case TitleRole:
        return choice.title;
    default:
        return {};
    }
}

QList<LinkChoices::Choice> pageChoices(const PageIndex &index)
{
    QList<LinkChoices::Choice> choices;
    for (const QString &path : index.pages()) {
        const QString title = index.page(path)->title;
        choices.append({u"%1 \u2013 %2"_s.arg(title, path), path, {}, title});
    }
    std::sort(choices.begin(), choices.end(), [](const auto &a, const auto &b) {
        return a.text.compare(b.text, Qt::CaseInsensitive) < 0;
    });
    return choices;
}

QList<LinkChoices::Choice> anchorChoices(const PageIndex &index, const QString &page)
{
    QList<LinkChoices::Choice> choices;
    const IndexedPage *target = index.page(page);
    if (target == nullptr)
        return choices;
    for (const QString &anchor : target->anchors)
        choices.append({u'#' + anchor, target->path, anchor, target->title});
    return choices;
}

QList<LinkChoices::Choice> pictureChoices(const PageIndex &index)
{
    QStringList paths;
    for (const QString &path : index.pages()) {
        for (const IndexedLink &link : index.page(path)->links) {
            if (link.kind == PageReference::Kind::Resource)
                paths.append(link.target);
        }
    }
    std::sort(paths.begin(), paths.end());
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    QList<LinkChoices::Choice> choices;
    for (const QString &path : paths)
        choices.append({path, path});
    return choices;
}
