#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;

/// An entry field that says below itself, while the author types, what is wrong with the text.
class CheckedField final : public QWidget
{
    Q_OBJECT

public:
    using Rule = std::function<QString(const QString &)>; ///< the problem, "" for none

    /// `objectName` names the line edit. `advice` is shown when there is no problem.
    CheckedField(const QString &objectName, const QString &accessibleName, Rule problem,
                 Rule advice = {}, QWidget *parent = nullptr);

    [[nodiscard]] QString text() const; ///< without blanks at its ends
    void setText(const QString &text);  ///< not the author's doing: an empty text is no problem yet
    [[nodiscard]] QString problem() const;
    [[nodiscard]] bool isEdited() const { return m_edited; } ///< by the author, since `setText`

Q_SIGNALS:
    void edited();
    void editingFinished();
    void escaped(); ///< Escape was pressed

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void judge();

    QLineEdit *m_edit;
    QLabel *m_says;
    Rule m_problem, m_advice;
    bool m_edited = false;
};
