#pragma once

class QWidget;

/// F6: gives the focus to the next pane of a window, in the order in which the eye meets them;
/// `step` is 1, or -1 for the one before. Panes are what the splitters that can be seen divide. A
/// pane gets the focus where it had it last.
void goToNextPane(QWidget *window, int step);

/// Makes F6 and Shift+F6 do so in a window.
void addPaneKeys(QWidget *window);
