#pragma once

#include "projectfiles/BookFile.h"

#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;
class QTreeWidget;

/// The context ids of a page: symbolic name and number, edited in place and judged while they are
/// typed.
class ContextIdTable final : public QWidget
{
    Q_OBJECT

public:
    /// What the other pages of the project use; asked for when the author begins to type.
    using Others = std::function<QList<ContextId>()>;
    explicit ContextIdTable(Others others, QWidget *parent = nullptr);

    /// `title` of the page proposes names.
    void setIds(const QList<ContextId> &ids, const QString &title);

Q_SIGNALS:
    void changed(const QList<ContextId> &ids); ///< by the author; not yet shown

private:
    enum Column { NameColumn, NumberColumn };

    void layOut();
    void connectTable();
    void add();
    void remove();
    [[nodiscard]] QList<ContextId> allBut(int row) const;
    [[nodiscard]] QString problemOf(const QModelIndex &cell, const QString &text) const;
    [[nodiscard]] QString freeName(const QList<ContextId> &taken) const;
    void enter(int row, int column, const QString &text);
    void say(const QString &problem);

    Others m_others;
    QList<ContextId> m_ids;
    QString m_title;
    QTreeWidget *tvwContextIds;
    QPushButton *cmdAdd;
    QPushButton *cmdRemove;
    QLabel *m_says;
};
