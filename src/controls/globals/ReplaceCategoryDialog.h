#pragma once

#include <QDialog>

#include <functional>

class QComboBox;

/// Asks what the books of a category shall carry when it goes.
class ReplaceCategoryDialog final : public QDialog
{
    Q_OBJECT

public:
    struct Task
    {
        QString title, question, button;
        QStringList books;
        QStringList categories; ///< those that may replace it
        bool mayTakeAway;       ///< the books may also carry none instead
    };
    /// `run` does it with the category chosen, "" for none; when it raises, the dialog stays.
    using Run = std::function<bool(const QString &into)>;
    ReplaceCategoryDialog(const Task &task, Run run, QWidget *parent = nullptr);

private:
    void accept() override;

    Run m_run;
    QComboBox *cboInto;
    bool m_mayTakeAway;
};
