#pragma once

#include "controls/session/ProjectSession.h"

#include <QDialog>

class QComboBox;

/// *Move to another book*: asks for the book.
class BookChoiceDialog final : public QDialog
{
    Q_OBJECT

public:
    BookChoiceDialog(ProjectSession &session, const TocBook &from, QWidget *parent);

    [[nodiscard]] std::optional<TocBook> book() const;

private:
    QList<TocBook> m_others;
    QComboBox *cboBook;
};
