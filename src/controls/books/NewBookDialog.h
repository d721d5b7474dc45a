#pragma once

#include "controls/session/ProjectSession.h"

#include <QDialog>

class CategoryList;
class CheckedField;
class QPushButton;

/// *New book*: name, acronym, folder (proposed from the acronym) and categories. Makes the book
/// when it is accepted; a failure is shown and the dialog stays.
class NewBookDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit NewBookDialog(ProjectSession &session, QWidget *parent = nullptr);

    /// The book as entered.
    [[nodiscard]] TocBook book() const;

private:
    void accept() override;
    void layOut();
    void proposeFolder();
    void judge();

    ProjectSession &m_session;
    CheckedField *m_name;
    CheckedField *m_acronym;
    CheckedField *m_folder;
    CategoryList *m_categories;
    QPushButton *m_create;
};
