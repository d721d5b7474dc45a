#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// The help topic for the control that has the focus: that of the nearest part of the window around
/// it, or around the dialog, that has one, else "What do you want to do".
QString helpTopicOf(const QWidget *focused);

/// Every topic that the product's windows ask for.
QStringList helpTopics();
