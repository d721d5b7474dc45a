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
    void addPage(const QString &page);
    void layOut();
    [[nodiscard]] QString page() const; ///< the chosen one, "" for none
    /// What was left of the chosen page. Raises 53 when nothing is any more.
    [[nodiscard]] QList<KeptText> left();
    void openPage();
    void saveText();
    void discard();

    ProjectSession &m_session;
    KeptTexts m_texts;
    QListWidget *m_list;
};
