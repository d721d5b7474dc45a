#pragma once

#include "controls/session/ProjectSession.h"

#include <QDialog>

class QRadioButton;

/// *Delete page*: shows the pages with all below them and what leads there, and asks whether their
/// files go too. Deletes nothing itself.
class DeletePagesDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Raises 53 or 75 when the book cannot be read.
    DeletePagesDialog(ProjectSession &session, const TocBook &book, const QStringList &pages,
                      QWidget *parent);

    [[nodiscard]] bool alsoFiles() const;

private:
    void layOut(const TocBook &book, const QList<BookPage> &pages);

    ProjectSession &m_session;
    QRadioButton *m_alsoFiles;
    QRadioButton *m_entryOnly;
};
