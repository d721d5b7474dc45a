#pragma once

#include <QDialog>

/// The pages of which unsaved text was kept; one of them can be opened.
class KeptTextsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Paths relative to the project folder.
    explicit KeptTextsDialog(const QStringList &pages, QWidget *parent = nullptr);

Q_SIGNALS:
    void pageRequested(const QString &page);
};
