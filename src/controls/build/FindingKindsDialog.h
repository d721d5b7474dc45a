#pragma once

#include <QDialog>
#include <QStringList>

#include <functional>

class QTreeWidget;

/// All kinds of findings, each with a mark whether it is looked for.
class FindingKindsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// `decide` gets the codes that are switched off when the author says so; it tells whether that
    /// was done, and the dialog stays open when it was not.
    using Decide = std::function<bool(const QStringList &switchedOff)>;
    FindingKindsDialog(const QStringList &switchedOff, Decide decide, QWidget *parent);

    void accept() override;

private:
    const Decide m_decide;
    const QStringList m_unknown; ///< switched off, but of no kind that this program has
    QTreeWidget *lstKinds;
};
