#pragma once

#include "indexmanager/WhoLinks.h"
#include "startup/Program.h"

#include <QWidget>

#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class RowTable;
struct BuildInput;

/// Who links here: an author chooses a set, one of its books, one of its pages, and sees the pages
/// that lead to it.
class WhoLinksPage final : public QWidget
{
    Q_OBJECT

public:
    explicit WhoLinksPage(Program &program, QWidget *parent = nullptr);

    /// What was found before is of the past then.
    void setIndex(std::shared_ptr<const IdentifierIndex> index);

private:
    struct BookChoice
    {
        QString folder;                           ///< relative to the set's folder, with backslash
        QList<std::pair<QString, QString>> pages; ///< title and relative path
    };

    [[nodiscard]] QWidget *makeChoice();
    [[nodiscard]] QComboBox *addBox(QWidget *row, const QString &caption, const QString &name);
    void readBooks();
    void listBooks(const BuildInput &input);
    void listPages();
    void forgetLinks();
    void findLinks();
    void showLinks(WhoLinks found);
    [[nodiscard]] LinkedPlace chosen() const;

    Program &m_program;
    std::shared_ptr<const IdentifierIndex> m_index;
    QList<BookChoice> m_choices; ///< of the set at hand
    QList<LinkingPage> m_links;  ///< as the table has them
    QComboBox *m_sets = nullptr;
    QComboBox *m_books = nullptr;
    QComboBox *m_pages = nullptr;
    QPushButton *m_find = nullptr;
    RowTable *m_table;
    QLabel *m_state;
};
