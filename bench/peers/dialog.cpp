// A plain dialog with the launcher's number of controls: the yardstick of starting and opening.
#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QDialog dialog;
    dialog.setWindowTitle(u"Plain"_s);
    auto *grid = new QGridLayout(&dialog);
    for (int row = 0; row < 6; ++row) {
        grid->addWidget(new QLabel(u"Row %1"_s.arg(row)), row, 0);
        grid->addWidget(new QPushButton(u"Do it"_s), row, 1);
    }
    dialog.show();
    // Leaves once the window is up and everything pending has been handled, as the benchmark does.
    QTimer::singleShot(0, &app, [&app] { QTimer::singleShot(0, &app, &QApplication::quit); });
    return QApplication::exec();
}
