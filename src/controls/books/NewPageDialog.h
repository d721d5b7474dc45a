#pragma once

#include "controls/books/OutlineEdit.h"
#include "controls/session/ProjectSession.h"

#include <QDialog>

class CheckedField;
class QComboBox;
class QPushButton;

/// *New page*: title, file (proposed from the title) and place. Makes the page when it is accepted;
/// a failure is shown and the dialog stays.
class NewPageDialog final : public QDialog
{
    Q_OBJECT

public:
    NewPageDialog(ProjectSession &session, const TocBook &book, const OutlinePlace &place,
                  QWidget *parent);

    [[nodiscard]] QString title() const;
    [[nodiscard]] const QString &pageId() const { return m_id; } ///< of the page that was made

private:
    void accept() override;
    void layOut();
    void offerPlaces(const OutlinePlace &place);
    void proposeFile();
    void judge();
    [[nodiscard]] QString fileProblem(const QString &file) const;

    ProjectSession &m_session;
    TocBook m_book;
    QList<OutlinePlace> m_places;
    QString m_id;
    CheckedField *m_title;
    CheckedField *m_file;
    QComboBox *cboPlace;
    QPushButton *cmdCreate;
};
