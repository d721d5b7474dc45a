#pragma once

#include <QDialog>
#include <QSize>
#include <QString>

class QDialogButtonBox;
class QLabel;
class QPushButton;

// What the report windows at the end of a merge and of a migration have in common.

QLabel *reportLabel(const QString &text, QWidget *parent);

/// Says where the log lies, to be copied; the tool tip shows the path in this machine's own form.
QLabel *logLabel(const QString &text, const QString &nativePath, QWidget *parent);

/// Buttons with Close, which is the default and closes the dialog.
QDialogButtonBox *closeBox(QDialog *dialog);
QPushButton *addReportButton(QDialogButtonBox *box, const QString &caption, const QString &name);

/// How large such a window opens.
QSize reportSize(const QWidget &dialog);
