#pragma once

#include "controls/pages/KeptTexts.h"

#include <QDialog>

class ProjectSession;
class QListWidget;

/// The pages of which unsaved text was kept: each can be opened, its text saved elsewhere, and
/// refused, also when no book lists the page any more.
class KeptTextsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Paths relative to the project folder.
    KeptTextsDialog(ProjectSession &session, const QStringList &pages, QWidget *parent = nullptr);

Q_SIGNALS:
    void pageRequested(const QString &page);

private:
    void layOut();
    [[nodiscard]] QString page() const; ///< the chosen one, "" for none
    void openPage();
    void saveText();
    void discard();

    ProjectSession &m_session;
    KeptTexts m_texts;
    QListWidget *m_list;
};
