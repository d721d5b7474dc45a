#pragma once

#include <QStyledItemDelegate>

#include <functional>

/// Edits a cell of a list or tree: says while the author types what is wrong with the text, and
/// hands on only what is right.
class CheckedDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// The problem of a text in a cell, "" for none.
    using Rule = std::function<QString(const QModelIndex &cell, const QString &text)>;

    /// `objectName` names the field; `textRole` is what it begins with.
    CheckedDelegate(const QString &objectName, const QString &accessibleName, Rule problem,
                    int textRole, QObject *parent);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;

Q_SIGNALS:
    void judged(const QString &problem) const; ///< "" when there is none, or editing has ended
    /// Another text than before; `id` is what Qt::UserRole of the row's first column holds. Connect
    /// it queued: the view is still editing.
    void entered(const QString &id, int column, const QString &text) const;

private:
    QString m_objectName, m_accessibleName;
    Rule m_problem;
    int m_textRole;
    mutable bool m_refused = false; ///< what was wrong stays said
};
