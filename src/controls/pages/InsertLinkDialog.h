#pragma once

#include "tools/PageIndex.h"

#include <QDialog>

class LinkChoices;
class QComboBox;
class QLineEdit;
class QListView;
class QPushButton;
class QSortFilterProxyModel;

/// A link's element as a page's source has it. `text` is shown by the reader.
QString linkTo(const QString &reference, const QString &text);

/// Chooses a page of the project, a place in it, and the text of a link to it.
class InsertLinkDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `page` is the one that gets the link, relative to the project folder; `selected` is source
    /// that becomes the link's content.
    InsertLinkDialog(const PageIndex &index, const QString &page, const QString &selected,
                     QWidget *parent = nullptr);

    [[nodiscard]] QString link() const; ///< as source

private:
    void layOut();
    void filter(const QString &text);
    void showPage();
    bool eventFilter(QObject *watched, QEvent *event) override;

    PageIndex m_index;
    QString m_page, m_selected;
    LinkChoices *m_choices;
    QSortFilterProxyModel *m_shown;
    QLineEdit *m_filter;
    QListView *m_pages;
    QComboBox *m_anchor;
    QLineEdit *m_text;
    QPushButton *m_insert = nullptr;
};
