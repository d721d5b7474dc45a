#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// The help topic for the control that has the focus: that of the nearest part of the window around
/// it that has one, else the topic of the main window.
QString helpTopicOf(const QWidget *focused);

/// Every topic that the program asks for.
QStringList helpTopics();
