#pragma once

#include <QtTest>
#include <QtWidgets>

// Drives a form by the names of its controls, as an author does with mouse and keys.

template <typename Widget>
Widget *control(const QWidget *form, const char *name)
{
    auto *const found = form->findChild<Widget *>(QString::fromLatin1(name));
    if (!found)
        qFatal("There is no control %s", name);
    return found;
}

inline void click(QWidget *form, const char *name)
{
    auto *const button = control<QAbstractButton>(form, name);
    QTest::mouseClick(button, Qt::LeftButton, {},
                      {10, button->height() / 2}); // on an option's mark
}

inline bool isEnabled(const QWidget *form, const char *name)
{
    return control<QWidget>(form, name)->isEnabled();
}

/// What a list or one level of a tree shows in its first column.
inline QStringList textsIn(const QAbstractItemModel *model, const QModelIndex &parent = {})
{
    QStringList texts;
    for (int row = 0; row < model->rowCount(parent); ++row)
        texts.append(model->index(row, 0, parent).data().toString());
    return texts;
}

/// The open window of this class; null when there is none.
template <typename Window>
Window *openWindow()
{
    for (QWidget *const widget : QApplication::topLevelWidgets()) {
        if (auto *const window = qobject_cast<Window *>(widget); window && window->isVisible())
            return window;
    }
    return nullptr;
}

/// Runs a test of windows: no screen needed, the same style everywhere, settings of its own.
template <typename Test>
int runFormTest(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setQuitOnLastWindowClosed(false);
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    Test test;
    return QTest::qExec(&test, argc, argv);
}

/// The main function of such a program.
#define QV_FORM_TEST_MAIN(Test)                                                                    \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        return runFormTest<Test>(argc, argv);                                                      \
    }
