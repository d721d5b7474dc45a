#pragma once

#include "controls/session/ProjectSession.h"

#include <QDialog>

class QRadioButton;
class QVBoxLayout;

/// *Delete book*: shows the book's pages and asks whether only its entry goes or its files too.
/// Deletes when it is accepted; a failure is shown and the dialog stays.
class DeleteBookDialog final : public QDialog
{
    Q_OBJECT

public:
    DeleteBookDialog(ProjectSession &session, const TocBook &book, QWidget *parent = nullptr);

private:
    void accept() override;
    void layOut();
    void addPages(QVBoxLayout *layout);

    ProjectSession &m_session;
    TocBook m_book;
    QRadioButton *m_entryOnly;
    QRadioButton *m_alsoFiles;
};
