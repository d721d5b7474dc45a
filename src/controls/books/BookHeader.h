#pragma once

#include "controls/session/ProjectSession.h"

#include <QWidget>

class CategoryList;
class CheckedField;
class QLineEdit;
class QPushButton;

/// Name, acronym, place and categories of the current book. A change is written when the field is
/// left or Enter pressed; Escape, or leaving a field with a problem, brings the old text back.
class BookHeader final : public QWidget
{
    Q_OBJECT

public:
    explicit BookHeader(ProjectSession &session, QWidget *parent = nullptr);

    /// Shows the session's current book.
    void showCurrent();
    /// The same after somebody's change, but leaves what the author is typing.
    void refresh();

Q_SIGNALS:
    void renamed(const QString &name, const QString &acronym);
    void changed();      ///< anything; no build has taken it in
    void pagesChanged(); ///< the folder was renamed, and links with it

private:
    void layOut();
    QWidget *folderRow();
    void connectFields();
    void showCategories();
    void showFacts();
    void commit();
    void askFolder();
    void askCategory();
    bool change(const TocBook &now);
    void commitCategories();
    [[nodiscard]] bool isEdited() const;
    [[nodiscard]] QList<TocBook> others() const;

    ProjectSession &m_session;
    TocBook m_book; ///< as shown
    CheckedField *m_name;
    CheckedField *m_acronym;
    QLineEdit *m_folder;
    QLineEdit *m_file;
    CheckedField *m_type;
    QLineEdit *m_facts; ///< date of the last change, number of pages, lock of the book's file
    CategoryList *m_categories;
    QPushButton *cmdFolder;
    QPushButton *cmdCategory;
};
