#pragma once

#include "tools/PageIndex.h"

#include <QAbstractListModel>

/// What a page can refer to: other pages by title and path, anchors of one page, or pictures.
class LinkChoices final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { PathRole = Qt::UserRole, AnchorRole, TitleRole };
    struct Choice
    {
        QString text;        ///< as shown, and searched
        QString path;        ///< relative to the project folder
        QString anchor = {}; ///< "" for the file itself
        QString title = {};
    };

    using QAbstractListModel::QAbstractListModel;
    void show(QList<Choice> choices);
    [[nodiscard]] const Choice &choice(int row) const { return m_choices.at(row); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

private:
    QList<Choice> m_choices;
};

QList<LinkChoices::Choice> pageChoices(const PageIndex &index);
QList<LinkChoices::Choice> anchorChoices(const PageIndex &index, const QString &page);
/// The files that pages show already.
QList<LinkChoices::Choice> pictureChoices(const PageIndex &index);
